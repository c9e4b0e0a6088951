"""Finding and loading libvorex_zd.so: the order of the candidates and the
report of what was tried when none loads."""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import vorex_zd
from vorex_zd import _library

PACKAGE_PARENT = Path(vorex_zd.__file__).resolve().parents[1]
LIBC = Path("/lib/x86_64-linux-gnu/libc.so.6")


class Candidates(unittest.TestCase):
    def test_beside_the_package_comes_first(self):
        labels = _library.candidate_paths({"VOREX_ZD_LIBRARY": "/opt/x/libvorex_zd.so"})
        self.assertEqual(labels, [
            ("beside the package", Path(_library.__file__).resolve().parent / "libvorex_zd.so"),
            ("VOREX_ZD_LIBRARY", Path("/opt/x/libvorex_zd.so"))])

    def test_unset_variable_is_named_in_the_report(self):
        with self.assertRaises(vorex_zd.LibraryNotFoundError) as caught:
            _library.load(_library.candidate_paths({})[1:])
        self.assertEqual(caught.exception.tried, [("VOREX_ZD_LIBRARY", "not set")])

    def test_first_loadable_candidate_wins(self):
        lib, path = _library.load([("gone", Path("/nonexistent/libvorex_zd.so")),
                                   ("real", vorex_zd.library_path)])
        self.assertEqual(path, vorex_zd.library_path)
        self.assertEqual(lib.zdgetzentohan.restype, _library.ctypes.c_int32)

    def test_every_reason_is_reported(self):
        with tempfile.TemporaryDirectory() as folder:
            not_elf = Path(folder) / "libvorex_zd.so"
            not_elf.write_bytes(b"not a shared object\n" * 20)
            candidates = [("a", Path(folder) / "absent.so"), ("b", not_elf)]
            if LIBC.is_file():
                candidates.append(("c", LIBC))
            with self.assertRaises(vorex_zd.LibraryNotFoundError) as caught:
                _library.load(candidates)
        tried = caught.exception.tried
        self.assertEqual(tried[0], ("%s (a)" % (Path(folder) / "absent.so"), "no such file"))
        self.assertEqual(tried[1][0], "%s (b)" % not_elf)
        self.assertIn("invalid ELF header", tried[1][1])
        if LIBC.is_file():
            self.assertEqual(tried[2], ("%s (c)" % LIBC, "export zdascbin is missing"))
        self.assertIsInstance(caught.exception, ImportError)

    def test_import_without_a_library_says_where_it_looked(self):
        env = dict(os.environ, PYTHONPATH=str(PACKAGE_PARENT),
                   VOREX_ZD_LIBRARY="/nonexistent/libvorex_zd.so")
        beside = Path(vorex_zd.__file__).resolve().parent / "libvorex_zd.so"
        if beside.exists():
            self.skipTest("an installed library lies beside the package")
        run = subprocess.run([sys.executable, "-c", "import vorex_zd"], env=env,
                             capture_output=True, text=True, timeout=60)
        self.assertNotEqual(run.returncode, 0)
        self.assertIn("cannot load libvorex_zd.so; tried:", run.stderr)
        self.assertIn("%s (beside the package): no such file" % beside, run.stderr)
        self.assertIn("/nonexistent/libvorex_zd.so (VOREX_ZD_LIBRARY): no such file", run.stderr)

    def test_import_with_the_variable_works(self):
        env = dict(os.environ, PYTHONPATH=str(PACKAGE_PARENT),
                   VOREX_ZD_LIBRARY=str(vorex_zd.library_path))
        run = subprocess.run([sys.executable, "-c",
                              "import vorex_zd; print(vorex_zd.message(161))"],
                             env=env, capture_output=True, text=True, timeout=60)
        self.assertEqual((run.returncode, run.stdout), (0, "Undefined instruction\n"), run.stderr)


if __name__ == "__main__":
    unittest.main()
