"""Shared pieces of the binding's tests: a scratch folder per test, small
listings, and the places of the source tree the tests read."""

import shutil
import tempfile
import unittest
from pathlib import Path

import vorex_zd

TESTS = Path(__file__).resolve().parent
DATA = TESTS / "data"
SOURCE_TREE = TESTS.parents[1]
EXAMPLES = SOURCE_TREE / "examples"
DEFAULT_CELL = SOURCE_TREE / "config" / "default"

# Bytes of the English and Japanese listings of data/, in the printer's own
# layout, so that they come back byte for byte.
PICKUP_PE = DATA / "PICKUP.PE"
PICKUP_PJ = DATA / "PICKUP.PJ"


def listing(mn_lines=(), head="/PROG  TEST"):
    """A short listing with LF line ends: the head, empty /ATTR and /APPL,
    the /MN lines numbered from 1, empty /POS."""
    mn = "".join("%4d:  %s\n" % (n, text) for n, text in enumerate(mn_lines, 1))
    return head + "\n/ATTR\n/APPL\n/MN\n" + mn + "/POS\n/END\n"


class ScratchTestCase(unittest.TestCase):
    """Each test gets a fresh folder and the built-in robot cell."""

    def setUp(self):
        self.dir = Path(tempfile.mkdtemp(prefix="vorex_zd-test-"))
        self.addCleanup(shutil.rmtree, self.dir, True)
        vorex_zd.load_config()
        self.addCleanup(vorex_zd.load_config)
        vorex_zd.set_zentohan(False)

    def write(self, name, text, encoding="shift_jis"):
        """Writes text (str, encoded; or bytes as they are) and returns its
        path."""
        path = self.dir / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(text if isinstance(text, bytes) else text.encode(encoding))
        return path

    def copy(self, source, name=None):
        target = self.dir / (name or source.name)
        shutil.copyfile(source, target)
        return target

    def program(self, mn_lines=(), name="TEST.PE"):
        """Translates a short listing and returns the .TP's path."""
        return vorex_zd.to_binary(self.write(name, listing(mn_lines)))
