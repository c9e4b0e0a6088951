"""Python binding of the vorex_zd robot program translator.

Translates robot controller programs between their text listing (.PE
English, .PJ Japanese half-width katakana in Shift-JIS) and the binary .TP
a controller loads, compares and dumps .TP programs, and compresses files.
It calls libvorex_zd.so through ctypes; paths are str or pathlib.Path, and
Japanese texts come back as str.

    import vorex_zd
    tp = vorex_zd.to_binary("MAIN.PE")          # the built-in robot cell
    listing = vorex_zd.to_listing(tp, "MAIN.PJ")
    try:
        vorex_zd.to_binary("BROKEN.PE")
    except vorex_zd.TranslateError as e:
        print(e.path, e.line, e.code, e.message)

Failures of the library raise TranslateError (attributes code, line, path,
message); a missing input file raises FileNotFoundError, wrong argument
types TypeError, before the library is called.

The library keeps all its state (robot cell, message language, spot
warnings, dictionary) in global variables and is not re-entrant. Every call
takes one module lock, so threads are safe but run one at a time. For
parallel work use processes (multiprocessing, concurrent.futures
ProcessPoolExecutor), each of which loads its own copy of the library.

The library is found beside this package (where pip installs it), else at
the path in the environment variable VOREX_ZD_LIBRARY.
"""

from ._library import LibraryNotFoundError, path as library_path
from .cell import (RobotModel, add_robot_model, clear_config, load_config, robot_models,
                   set_param, spot_warnings)
from .errors import TranslateError
from .lines import line_decodes, position_text, program_line, set_zentohan, zentohan
from .messages import message
from .translate import to_binary, to_listing
from .utilities import compare, compress, dump, expand

__version__ = "0.1.0"

__all__ = [
    "LibraryNotFoundError", "RobotModel", "TranslateError", "add_robot_model", "clear_config",
    "compare", "compress", "dump", "expand", "library_path", "line_decodes", "load_config",
    "message", "position_text", "program_line", "robot_models", "set_param", "set_zentohan",
    "spot_warnings", "to_binary", "to_listing", "zentohan",
]
