"""Messages of error codes in both languages, the fallback text, and the
module lock that keeps a message's language with its lookup."""

import threading
import unittest

import vorex_zd
from vorex_zd.messages import widen_code


class Messages(unittest.TestCase):
    CASES = [
        # code, English, Japanese
        (161, "Undefined instruction", "定義されていない命令です"),
        (1376345, "Syntax error in instruction", "文法エラーです"),
        (1376347, "Invalid /PROG section", "/PROG でエラーです"),
        (117, "Expecting a comma", "','が必要です"),
        (118, "Invalid Backup option", "Invalid Backup option"),
        (188, "Invalid combination of AND/OR.", "ｶﾂとﾏﾀﾊが一緒に使用されています"),
        (193, "When sub type is Cond, motion group is not available.",
         "サブタイプがｼﾞｮｳﾀｲのとき、動作グループは指定できません"),
        (174, " ", " "),
        # No row in the Japanese table: its fallback.
        (186, "Incorrect Bell Zone Number.", "文法エラーです"),
        # No row at all.
        (0, "Syntax Error", "文法エラーです"),
        (1, "Syntax Error", "文法エラーです"),
        (89, "Syntax Error", "文法エラーです"),
        (194, "Syntax Error", "文法エラーです"),
        (-5, "Syntax Error", "文法エラーです"),
        (1 << 40, "Syntax Error", "文法エラーです"),
    ]

    def test_messages_in_both_languages(self):
        for code, english, japanese in self.CASES:
            with self.subTest(code=code):
                self.assertEqual(vorex_zd.message(code), english)
                self.assertEqual(vorex_zd.message(code, "en"), english)
                self.assertEqual(vorex_zd.message(code, language="ja"), japanese)

    def test_wrong_argument_types_and_languages(self):
        with self.assertRaises(TypeError):
            vorex_zd.message("161")
        with self.assertRaises(TypeError):
            vorex_zd.message(161.0)
        with self.assertRaises(TypeError):
            vorex_zd.message(161, 1)
        with self.assertRaises(ValueError):
            vorex_zd.message(161, "de")

    def test_code_word_gets_its_lost_upper_half_back(self):
        cases = [(89, 1376345), (85, 1376341), (91, 1376347), (92, 1376348), (86, 1376342),
                 # no row with the upper half either: stays
                 (88, 88), (1, 1), (0, 0),
                 # a row of its own: stays
                 (161, 161), (174, 174)]
        for word, full in cases:
            with self.subTest(word=word):
                self.assertEqual(widen_code(word), full)


class Lock(unittest.TestCase):
    def test_threads_get_the_language_they_asked_for(self):
        wrong = []

        def ask(language, expected):
            for _ in range(40):
                text = vorex_zd.message(161, language)
                if text != expected:
                    wrong.append((language, text))

        threads = [threading.Thread(target=ask, args=case) for case in
                   [("en", "Undefined instruction"), ("ja", "定義されていない命令です")] * 3]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(wrong, [])


if __name__ == "__main__":
    unittest.main()
