"""The small exports: program line, line test, position record, and the
double-byte reduction switch."""

import unittest

import vorex_zd
from helpers import ScratchTestCase, listing


class ProgramLine(unittest.TestCase):
    CASES = [
        (0, "", ""),
        (1, "JOB", "ｼﾞｮﾌﾞ"),
        (2, "PROCESS", "ﾌﾟﾛｾｽ"),
        (3, "MACRO", "ﾏｸﾛ"),
        (4, "Cond", "ｼﾞｮｳﾀｲ"),
        (5, "", ""),
        (-1, "", ""),
    ]

    def test_sub_type_words_in_both_languages(self):
        for subtype, english, japanese in self.CASES:
            with self.subTest(subtype=subtype):
                self.assertEqual(vorex_zd.program_line("MAIN", subtype),
                                 "/PROG  MAIN\t%s\r\n" % english)
                self.assertEqual(vorex_zd.program_line("MAIN", subtype, "ja"),
                                 "/PROG  MAIN\t%s\r\n" % japanese)

    def test_arguments_are_checked(self):
        with self.assertRaises(TypeError):
            vorex_zd.program_line(b"MAIN", 1)
        with self.assertRaises(TypeError):
            vorex_zd.program_line("MAIN", "1")
        with self.assertRaises(ValueError):
            vorex_zd.program_line("M" * 256, 1)
        with self.assertRaises(ValueError):
            vorex_zd.program_line("MAIN", 1 << 31)
        with self.assertRaises(ValueError):
            vorex_zd.program_line("MAIN", 1, "fr")


class LineTest(ScratchTestCase):
    def test_line_bytes(self):
        cases = [
            (b"", True),                    # an empty line decodes
            (b"\x1eremark\x00", True),      # a remark
            (bytearray(b"\x1ex\x00"), True),
            (memoryview(b"\x1ex\x00"), True),
            (b"\xee\x01\x02", False),       # no such opcode
        ]
        for data, decodes in cases:
            with self.subTest(data=bytes(data)):
                self.assertIs(vorex_zd.line_decodes(data), decodes)
                self.assertIs(vorex_zd.line_decodes(data, "ja"), decodes)

    def test_wrong_types(self):
        for value in ("\x1e", 30, None, [30]):
            with self.subTest(value=value):
                with self.assertRaises(TypeError):
                    vorex_zd.line_decodes(value)


class PositionRecord(unittest.TestCase):
    def test_records_of_any_shape_come_back_empty(self):
        records = [
            b"",
            b"\x00",
            b"\x00\x02\x00\x01",                      # uninitialised position 1
            b"\xff\xff\x00\x01\x01\x00",              # claims 65535 bytes
            b"\x00\x10\x00\x02\x01\xf0" + bytes(10),  # comment offset far behind
        ]
        for record in records:
            with self.subTest(record=record):
                self.assertEqual(vorex_zd.position_text(record), "")

    def test_wrong_type(self):
        with self.assertRaises(TypeError):
            vorex_zd.position_text("\x00\x02")


class Zentohan(unittest.TestCase):
    def test_switch(self):
        self.addCleanup(vorex_zd.set_zentohan, False)
        self.assertIs(vorex_zd.set_zentohan(True), True)
        self.assertIs(vorex_zd.zentohan(), True)
        self.assertIs(vorex_zd.set_zentohan(0), False)
        self.assertIs(vorex_zd.zentohan(), False)
        with self.assertRaises(TypeError):
            vorex_zd.set_zentohan("on")


class DoubleByteListing(ScratchTestCase):
    def test_full_width_remark_is_reduced_when_switched_on(self):
        # "!ＡＢ ;" with full-width letters: reduced to "AB" only when on.
        text = listing(["!ＡＢ ;"])
        off = vorex_zd.to_binary(self.write("W.PE", text)).read_bytes()
        self.assertIn("ＡＢ".encode("shift_jis"), off)
        vorex_zd.set_zentohan(True)
        on = vorex_zd.to_binary(self.write("W.PE", text)).read_bytes()
        self.assertIn(b"\x1eAB\x00", on)


if __name__ == "__main__":
    unittest.main()
