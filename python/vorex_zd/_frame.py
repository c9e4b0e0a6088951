"""What the binding adds around the library's runs: the choice of the
message language, and the question whether a robot cell is loaded.

The library has no export for either. Its message language comes from the
LANGUAGE key of vorex_zd.ini, read at the start of each listing run from the
folder that VOREX_ZD_INI_DIR names; and a listing run on a file that does
not exist answers code 1 when a cell is loaded and does nothing at all when
none is. So one such run, with the binding's own ini folder in place for
its duration, sets the language and tells about the cell. It reads and
writes no file of the caller and leaves the spot warnings alone.

Callers hold the library lock.
"""

import atexit
import ctypes
import os
import shutil
import tempfile

from . import _library

INI_VARIABLE = "VOREX_ZD_INI_DIR"
INI_NAME = "vorex_zd.ini"
NO_LISTING = "no-listing-here.PE"

_state = {"folder": None}


def _private_folder():
    folder = _state["folder"]
    if folder is None or not os.path.isdir(folder):
        folder = tempfile.mkdtemp(prefix="vorex_zd-")
        atexit.register(shutil.rmtree, folder, True)
        _state["folder"] = folder
    return folder


def _set_environment(name, value):
    if value is None:
        os.environ.pop(name, None)
    else:
        os.environ[name] = value


def probe(language):
    """Sets the message language (1 English, 0 Japanese) and returns True
    when a robot cell is loaded."""
    folder = _private_folder()
    with open(os.path.join(folder, INI_NAME), "w", encoding="ascii") as ini:
        ini.write("[ZDTS]\nLANGUAGE=%d\n" % language)
    missing = os.fsencode(os.path.join(folder, NO_LISTING))
    code = ctypes.c_uint16(0)
    line = ctypes.c_uint16(0)
    saved = os.environ.get(INI_VARIABLE)
    _set_environment(INI_VARIABLE, folder)
    try:
        _library.lib.zdascbin(missing, ctypes.byref(code), ctypes.byref(line))
    finally:
        _set_environment(INI_VARIABLE, saved)
    return code.value != 0
