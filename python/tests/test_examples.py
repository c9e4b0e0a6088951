"""The example listings of the source tree and of the tests' data, both
ways through the binding: listing to .TP, .TP to a listing in the same
language, and that listing to the very same .TP again."""

import unittest

import vorex_zd
from helpers import DATA, EXAMPLES, ScratchTestCase


def listings(folder):
    if not folder.is_dir():
        return []
    return sorted(p for p in folder.iterdir()
                  if p.is_file() and p.suffix.upper() in (".PE", ".PJ"))


class Examples(ScratchTestCase):
    def round_trip(self, source):
        copy = self.copy(source)
        tp = vorex_zd.to_binary(copy)
        program = tp.read_bytes()
        printed = vorex_zd.to_listing(tp, self.dir / ("printed" + source.suffix))
        again = vorex_zd.to_binary(printed)
        self.assertEqual(again.read_bytes(), program)
        reprinted = vorex_zd.to_listing(again, self.dir / ("reprinted" + source.suffix))
        self.assertEqual(reprinted.read_bytes(), printed.read_bytes())
        return printed

    def test_data_listings_come_back_byte_for_byte(self):
        found = listings(DATA)
        self.assertTrue(found)
        for source in found:
            with self.subTest(listing=source.name):
                printed = self.round_trip(source)
                self.assertEqual(printed.read_bytes(), source.read_bytes())

    def test_examples_of_the_source_tree(self):
        found = listings(EXAMPLES)
        if not found:
            self.skipTest("examples/ holds no listing")
        for source in found:
            with self.subTest(listing=source.name):
                self.round_trip(source)


if __name__ == "__main__":
    unittest.main()
