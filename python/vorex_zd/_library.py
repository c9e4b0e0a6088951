"""Finds and loads libvorex_zd.so, declares the C prototypes of its 22
exports, and holds the one lock that every call into the library takes.

The library keeps all its state in module variables and is not re-entrant,
so the lock is re-entrant on the Python side only: a public function takes
it once around the whole sequence of C calls that makes up one operation.
"""

import ctypes
import os
import threading
from pathlib import Path

LIBRARY_NAME = "libvorex_zd.so"
ENV_VARIABLE = "VOREX_ZD_LIBRARY"

# Every call into the library happens under this lock.
LOCK = threading.RLock()

_char_p = ctypes.c_char_p
_out_text = ctypes.POINTER(ctypes.c_char)
_bytes_in = ctypes.POINTER(ctypes.c_uint8)
_u16_out = ctypes.POINTER(ctypes.c_uint16)
_i32 = ctypes.c_int32

# name: (result type, argument types), as include/vorex_zd.h declares them.
PROTOTYPES = {
    "zdascbin": (_i32, [_char_p, _u16_out, _u16_out]),
    "zdbinasc_file": (_i32, [_char_p, _char_p]),
    "zdbinasc_file_dmp": (_i32, [_char_p, _char_p]),
    "compare_files": (_i32, [_char_p, _char_p, _out_text, _i32]),
    "zdbinasc_line": (_i32, [_bytes_in, _i32, _out_text]),
    "zdbinasc_pos": (_i32, [_bytes_in, _out_text]),
    "zdbinasc_prog": (_i32, [_char_p, _i32, _out_text]),
    "zdbinasc_dicinit": (_i32, [_i32]),
    "zdgeterrmsg": (_i32, [_i32, _out_text]),
    "zdgetspotwarningscount": (_i32, []),
    "zdgetspotwarnings": (_i32, [_i32, _out_text]),
    "zdsetzentohan": (_i32, [_i32]),
    "zdgetzentohan": (_i32, []),
    "zdreadparam": (_i32, [_char_p]),
    "zdsetparam": (_i32, [_char_p, _char_p, _char_p]),
    "zdclearparam": (None, []),
    "zdgetnumrobot": (_i32, [_u16_out]),
    "zdgetrobotname": (_i32, [ctypes.c_uint16, _out_text, _out_text]),
    "zdgetrobotnamejpn": (_i32, [ctypes.c_uint16, _out_text, _out_text]),
    "addrobotconfig": (_i32, [_char_p, _char_p, _char_p, _char_p,
                              _i32, _i32, _i32, _i32, _i32, _i32, _i32]),
    "zdcompress": (_i32, [_char_p, _char_p]),
    "zduncompress": (_i32, [_char_p, _char_p]),
}


class LibraryNotFoundError(ImportError):
    """No candidate path held a loadable libvorex_zd.so; `tried` lists
    (path, reason) pairs in the order they were tried."""

    def __init__(self, tried):
        self.tried = list(tried)
        lines = ["vorex_zd: cannot load %s; tried:" % LIBRARY_NAME]
        lines += ["  %s: %s" % (path, reason) for path, reason in self.tried]
        lines.append("Install the package with pip, or set %s to the path of a "
                     "built library (for example build/%s)." % (ENV_VARIABLE, LIBRARY_NAME))
        super().__init__("\n".join(lines))


def candidate_paths(environ=None):
    """The library beside the package first, then the one that the
    environment variable names. A path is a (label, Path or None) pair; None
    stands for an unset variable, so that the report can say so."""
    environ = os.environ if environ is None else environ
    beside = Path(__file__).resolve().parent / LIBRARY_NAME
    named = environ.get(ENV_VARIABLE, "")
    return [("beside the package", beside),
            (ENV_VARIABLE, Path(named) if named else None)]


def declare(lib):
    """Sets result and argument types of every export; a missing export
    raises AttributeError naming it."""
    for name, (restype, argtypes) in PROTOTYPES.items():
        try:
            function = getattr(lib, name)
        except AttributeError:
            raise AttributeError("export %s is missing" % name) from None
        function.restype = restype
        function.argtypes = argtypes
    return lib


def load(candidates):
    """Loads the first candidate that opens and has all the exports.
    Returns (library, path)."""
    tried = []
    for label, path in candidates:
        if path is None:
            tried.append((label, "not set"))
            continue
        where = "%s (%s)" % (path, label)
        if not path.is_file():
            tried.append((where, "no such file"))
            continue
        try:
            lib = ctypes.CDLL(str(path))
            declare(lib)
        except (OSError, AttributeError) as exc:
            tried.append((where, str(exc)))
            continue
        return lib, path
    raise LibraryNotFoundError(tried)


lib, path = load(candidate_paths())
