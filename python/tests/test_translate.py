"""Listings to .TP and back through the binding: round trips in both
languages, where the files go, and errors with their code and line."""

import os
import unittest

import vorex_zd
from helpers import PICKUP_PE, PICKUP_PJ, ScratchTestCase, listing


class RoundTrip(ScratchTestCase):
    def test_both_languages_make_the_same_program_but_for_the_remark(self):
        english = vorex_zd.to_binary(self.copy(PICKUP_PE)).read_bytes()
        japanese = vorex_zd.to_binary(self.copy(PICKUP_PJ)).read_bytes()
        katakana = "!ﾌﾞﾋﾝ ｦ ﾂｶﾑ".encode("shift_jis")[1:]
        # Each line is framed by its two-byte length; a remark is 0x1E, its
        # text and a zero byte.
        english_line = b"\x00\x13\x1eclose the gripper\x00"
        japanese_line = b"\x00\x0c\x1e" + katakana + b"\x00"
        self.assertIn(english_line, english)
        self.assertEqual(japanese.replace(japanese_line, english_line), english)

    def test_default_listing_lies_beside_the_program_in_english(self):
        tp = vorex_zd.to_binary(self.copy(PICKUP_PJ))
        listing_path = vorex_zd.to_listing(tp)
        self.assertEqual(listing_path, self.dir / "PICKUP.PE")
        self.assertEqual(listing_path.read_bytes(), PICKUP_PE.read_bytes()
                         .replace(b"close the gripper", "ﾌﾞﾋﾝ ｦ ﾂｶﾑ".encode("shift_jis")))


class OutputNames(ScratchTestCase):
    """The .TP lies where the library puts it, and the binding says so."""

    CASES = [
        ("prog.pe", "prog.TP"),
        ("prog.Pj", "prog.TP"),
        ("prog.pjx", "prog.TP"),
        ("two.dots.PE", "two.dots.TP"),
        # No dot in the file name: the library cuts at the folder's dot.
        ("my.dir/PROG", "my.TP"),
    ]

    def test_binary_lies_where_the_library_writes_it(self):
        for name, expected in self.CASES:
            with self.subTest(name=name):
                source = self.write(name, listing(["!x ;"]))
                tp = vorex_zd.to_binary(source)
                self.assertEqual(tp, self.dir / expected)
                self.assertTrue(tp.is_file())
                tp.unlink()

    def test_japanese_extension_reads_katakana_keywords(self):
        # ｺﾒﾝﾄ is COMMENT in Japanese: only a .PJ listing knows the word.
        text = "/PROG  TEST\n/ATTR\nｺﾒﾝﾄ = \"kana\";\n/APPL\n/MN\n/POS\n/END\n"
        tp = vorex_zd.to_binary(self.write("kana.pj", text))
        self.assertIn(b"kana", tp.read_bytes())
        with self.assertRaises(vorex_zd.TranslateError):
            vorex_zd.to_binary(self.write("kana.pe", text))

    def test_listing_path_longer_than_the_library_takes_is_refused(self):
        deep = self.dir
        while len(os.fsencode(str(deep))) < 520:
            deep = deep / ("d" * 60)
        deep.mkdir(parents=True)
        source = deep / "P.PE"
        source.write_text(listing())
        with self.assertRaisesRegex(ValueError, "at most 508"):
            vorex_zd.to_binary(source)
        self.assertFalse((deep / "P.TP").exists())


class TranslateErrors(ScratchTestCase):
    CASES = [
        # name, listing, code, line (one token ahead of the faulty line)
        ("undefined instruction", listing(["!ok ;", "FOOBAR ;"]), 161, 7,
         "Undefined instruction"),
        ("no /PROG head", "/ATTR\n/APPL\n/MN\n/POS\n/END\n", 1376347, 2,
         "Invalid /PROG section"),
        ("unknown section", listing(["!x ;"]).replace("/POS", "/FOO\n/POS"), 1376348, 7,
         "Invalid section encountered"),
        ("empty file", "", 1376347, 1, "Invalid /PROG section"),
    ]

    def test_errors_carry_code_line_path_and_english_message(self):
        for name, text, code, line, message in self.CASES:
            with self.subTest(name=name):
                source = self.write("BAD.PE", text)
                with self.assertRaises(vorex_zd.TranslateError) as caught:
                    vorex_zd.to_binary(source)
                error = caught.exception
                self.assertEqual((error.code, error.line, error.path, error.message),
                                 (code, line, str(source), message))
                self.assertEqual(str(error), "%s:%d: error %d: %s" % (source, line, code, message))
                self.assertFalse((self.dir / "BAD.TP").exists())

    def test_error_in_a_japanese_listing_has_the_english_message(self):
        source = self.write("BAD.PJ", listing(["!ok ;", "FOOBAR ;"]))
        with self.assertRaises(vorex_zd.TranslateError) as caught:
            vorex_zd.to_binary(source)
        self.assertEqual((caught.exception.code, caught.exception.message),
                         (161, "Undefined instruction"))

    def test_failed_run_leaves_an_earlier_program_untouched(self):
        source = self.write("KEEP.PE", listing(["!first ;"]))
        before = vorex_zd.to_binary(source).read_bytes()
        self.write("KEEP.PE", listing(["FOOBAR ;"]))
        with self.assertRaises(vorex_zd.TranslateError):
            vorex_zd.to_binary(source)
        self.assertEqual((self.dir / "KEEP.TP").read_bytes(), before)

    def test_missing_files_raise_before_the_library_runs(self):
        with self.assertRaises(FileNotFoundError):
            vorex_zd.to_binary(self.dir / "absent.PE")
        with self.assertRaises(FileNotFoundError):
            vorex_zd.to_listing(self.dir / "absent.TP")
        tp = self.program(["!x ;"])
        with self.assertRaises(FileNotFoundError):
            vorex_zd.to_listing(tp, self.dir / "no-folder" / "out.PE")

    def test_unreadable_program_raises_translate_error(self):
        for name, data in [("empty.TP", b""), ("text.TP", b"not a program\n" * 8)]:
            with self.subTest(name=name):
                source = self.write(name, data)
                with self.assertRaises(vorex_zd.TranslateError) as caught:
                    vorex_zd.to_listing(source, self.dir / "out.PE")
                self.assertEqual(caught.exception.path, str(source))
                self.assertIsNone(caught.exception.code)

    def test_wrong_argument_types(self):
        source = self.write("T.PE", listing())
        for call in (lambda: vorex_zd.to_binary(42),
                     lambda: vorex_zd.to_binary(os.fsencode(str(source))),
                     lambda: vorex_zd.to_binary(source, config=3),
                     lambda: vorex_zd.to_listing(None),
                     lambda: vorex_zd.to_listing(source, dest=1.5)):
            with self.assertRaises(TypeError):
                call()
        with self.assertRaises(ValueError):
            vorex_zd.to_binary(str(self.dir / "a\0b.PE"))

    def test_printing_a_program_onto_itself_is_refused(self):
        tp = self.program(["!x ;"])
        with self.assertRaises(ValueError):
            vorex_zd.to_listing(tp, tp)
        self.assertTrue(tp.read_bytes().startswith(b"\x00\x00\x01\x00TEST"))


class CellChoice(ScratchTestCase):
    def test_missing_config_directory_raises_file_not_found(self):
        with self.assertRaises(FileNotFoundError):
            vorex_zd.to_binary(self.copy(PICKUP_PE), config=self.dir / "no-cell")

    def test_config_directory_without_robot_cfg(self):
        empty = self.dir / "cell"
        empty.mkdir()
        with self.assertRaises(vorex_zd.TranslateError) as caught:
            vorex_zd.to_binary(self.copy(PICKUP_PE), config=empty)
        self.assertEqual(caught.exception.code, 122)
        self.assertEqual(caught.exception.path, str(empty / "robot.cfg"))
        self.assertTrue(caught.exception.message.startswith("Could not open file robot"))

    def test_config_directory_with_a_bad_robot_cfg(self):
        cell = self.dir / "cell"
        cell.mkdir()
        (cell / "robot.cfg").write_text("6\n")
        with self.assertRaises(vorex_zd.TranslateError) as caught:
            vorex_zd.load_config(cell)
        self.assertEqual(caught.exception.code, 121)

    def test_cleared_cell_refuses_to_translate(self):
        vorex_zd.clear_config()
        source = self.copy(PICKUP_PE)
        with self.assertRaisesRegex(vorex_zd.TranslateError, "no robot cell is loaded"):
            vorex_zd.to_binary(source)
        self.assertFalse((self.dir / "PICKUP.TP").exists())
        self.assertTrue(vorex_zd.set_param("ROBOT", "GA6-1400-12", "1"))
        self.assertTrue(vorex_zd.to_binary(source).is_file())

    def test_macro_set_for_the_cell_becomes_a_statement(self):
        source = self.write("M.PE", listing(["OPEN_HAND ;"]))
        with self.assertRaises(vorex_zd.TranslateError) as caught:
            vorex_zd.to_binary(source)
        self.assertEqual(caught.exception.code, 161)
        self.assertTrue(vorex_zd.set_param("MACRO", "OPEN_HAND", "3"))
        self.assertIn(b"\x00\x0c\x87\x03OPEN_HAND\x00", vorex_zd.to_binary(source).read_bytes())


if __name__ == "__main__":
    unittest.main()
