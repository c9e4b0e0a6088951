"""The robot cell: configuration calls, the model table and the spot
warnings of the last translation."""

import unittest

import vorex_zd
from helpers import DEFAULT_CELL, PICKUP_PE, ScratchTestCase


class ModelTable(unittest.TestCase):
    def test_built_in_rows(self):
        models = vorex_zd.robot_models()
        self.assertGreaterEqual(len(models), 72)
        self.assertEqual(models[0], vorex_zd.RobotModel(
            "ARMLESS", "No arm, free axes only", "ロボットなし 付加軸のみ"))
        row = {m.key: m for m in models}["GA6-1400-12"]
        self.assertEqual(row.english_name, "General-purpose 6-axis arm 1400mm 12kg")
        self.assertEqual(row.japanese_name, "汎用6軸ロボット リーチ1400mm 可搬12kg")
        self.assertIsInstance(models, list)
        builtin = [m.key for m in models[:72]]
        self.assertEqual(builtin, sorted(builtin))

    def test_added_model_is_a_new_last_row(self):
        before = vorex_zd.robot_models()
        vorex_zd.add_robot_model("PYBIND-RAIL-7", "Arm on a rail", "ﾚｰﾙ ﾉ ｱｰﾑ",
                                 axis_letters="LRRRRRR", turns=(1, 1, 1), letters=(1, 0, 1, -1))
        after = vorex_zd.robot_models()
        self.assertEqual(after[:len(before)], before)
        self.assertEqual(after[len(before):], [
            vorex_zd.RobotModel("PYBIND-RAIL-7", "Arm on a rail", "ﾚｰﾙ ﾉ ｱｰﾑ")])
        # A cell can use the new model at once.
        self.assertTrue(vorex_zd.set_param("ROBOT", "PYBIND-RAIL-7", "1"))
        vorex_zd.load_config()

    def test_bad_model_arguments(self):
        for kwargs, error in [
                (dict(key=7, english_name="x"), TypeError),
                (dict(key="K", english_name=None), TypeError),
                (dict(key="", english_name="x"), ValueError),
                (dict(key="K", english_name="x", axis_letters="R" * 10), ValueError),
                (dict(key="K", english_name="x", turns=(1, 1)), TypeError),
                (dict(key="K", english_name="x", turns=(1, 1, 1 << 40)), ValueError),
                (dict(key="K" * 600, english_name="x"), ValueError),
                (dict(key="K", english_name="€"), ValueError)]:
            with self.subTest(kwargs=kwargs):
                count = len(vorex_zd.robot_models())
                with self.assertRaises(error):
                    vorex_zd.add_robot_model(**kwargs)
                self.assertEqual(len(vorex_zd.robot_models()), count)


class Settings(ScratchTestCase):
    def test_set_param_results(self):
        cases = [
            (("ROBOT", "GA6-1400-12", "1"), True),
            (("ROBOT", "NO-SUCH-ARM", "1"), False),
            (("ROBOT", "GA6-1400-12", "6"), False),
            (("MACRO", "GRIP", "3"), True),
            (("MACRO", "A_NAME_OF_17_CHAR", "3"), False),
            (("SPOT", "STROKE", "5"), False),
            (("NOSUCH", "KEY", "1"), False),
        ]
        for args, expected in cases:
            with self.subTest(args=args):
                self.assertIs(vorex_zd.set_param(*args), expected)

    def test_set_param_types(self):
        with self.assertRaises(TypeError):
            vorex_zd.set_param("ROBOT", "GA6-1400-12", 1)
        with self.assertRaises(ValueError):
            vorex_zd.set_param("ROBOT", "GA6\0", "1")

    def test_load_config_from_a_directory_and_built_in(self):
        self.assertIsNone(vorex_zd.load_config(DEFAULT_CELL))
        self.assertTrue(vorex_zd.to_binary(self.copy(PICKUP_PE)).is_file())
        self.assertIsNone(vorex_zd.load_config(str(DEFAULT_CELL)))
        self.assertIsNone(vorex_zd.load_config())
        with self.assertRaises(TypeError):
            vorex_zd.load_config(5)

    def test_no_spot_warnings_without_the_spot_option(self):
        vorex_zd.to_binary(self.copy(PICKUP_PE))
        self.assertEqual(vorex_zd.spot_warnings(), [])


if __name__ == "__main__":
    unittest.main()
