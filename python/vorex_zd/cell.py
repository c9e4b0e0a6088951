"""The robot cell the library translates for, its table of robot models,
and the spot warnings of the last translation."""

import ctypes
from collections import namedtuple
from pathlib import Path

from . import _convert, _library
from .errors import TranslateError
from .messages import message

RobotModel = namedtuple("RobotModel", "key english_name japanese_name")
RobotModel.__doc__ = "One row of the robot model table; names are str."

NAME_BUFFER = 1024         # the library copies at most 511 bytes and a zero
WARNING_BUFFER = 1024      # a warning is 512 bytes
NAME_MAX_BYTES = 511       # what the name buffers give back whole
MAX_AXIS_LETTERS = 9       # axes of one group
NO_ROBOT_CFG = 122         # "Could not open file robot configuration file..."
BAD_ROBOT_CFG = 121        # "Invalid data in robot configuration file..."

# The built-in cell: one group with a general-purpose six-axis arm, no
# macros, an air gun, MIG welding with CURRENT power and wire speed in
# mm/sec; the same settings as config/default of the source tree.
BUILTIN_CELL = (
    ("ARC", "PROCESS", "MIG"),
    ("ARC", "POWER", "CURRENT"),
    ("ARC", "WIRE_UNIT", "MM_SEC"),
    ("SPOT", "AIRGUN", ""),
    ("SPOT", "STROKE", "0"),
    ("SPOT", "PRESSURE", "0"),
    ("ROBOT", "GA6-1400-12", "1"),
)

# None until the binding or its caller sets a cell; to_binary then loads the
# built-in one, and leaves a cell alone that the caller has set.
_state = {"cell": None}


def cell_is_set():
    return _state["cell"] is not None


def load_config(directory=None):
    """Loads a robot cell: the four files robot.cfg, macro.cfg, spot.cfg
    and arc.cfg of directory, or the built-in cell when directory is None.
    Raises FileNotFoundError for a directory that does not exist and
    TranslateError when robot.cfg is missing (code 122) or does not read
    (code 121)."""
    with _library.LOCK:
        if directory is None:
            _load_builtin()
            return
        encoded = _convert.path_bytes(directory, "directory")
        folder = Path(_convert.path_text(directory, "directory"))
        if not folder.is_dir():
            raise FileNotFoundError(2, "no such cell directory", str(folder))
        _state["cell"] = "directory"
        if _library.lib.zdreadparam(encoded) == 1:
            return
        robot_cfg = folder / "robot.cfg"
        code = BAD_ROBOT_CFG if robot_cfg.is_file() else NO_ROBOT_CFG
        raise TranslateError(message(code, "en"), code=code, path=robot_cfg)


def _load_builtin():
    _library.lib.zdclearparam()
    _state["cell"] = "builtin"
    for section, key, value in BUILTIN_CELL:
        if not set_param(section, key, value):
            raise TranslateError("the built-in cell was refused at %s %s=%s" % (section, key, value))


def set_param(section, key, value):
    """One setting of the cell: section "ROBOT", "MACRO", "SPOT", "ARC" or
    "PARAM" (any case), with the key and value the library defines for it;
    e.g. set_param("ROBOT", "GA6-1400-12", "1") puts that model in group 1.
    Returns True when the library took the setting."""
    args = [_convert.text_bytes(v, w) for v, w in
            ((section, "section"), (key, "key"), (value, "value"))]
    with _library.LOCK:
        _state["cell"] = "settings"
        return _library.lib.zdsetparam(*args) == 1


def clear_config():
    """Clears the cell: no groups, macros, spot settings or options. The
    arc settings and the robot model table stay, as the library keeps
    them. A translation needs a robot again afterwards."""
    with _library.LOCK:
        _state["cell"] = "cleared"
        _library.lib.zdclearparam()


def robot_models():
    """Every row of the robot model table, as RobotModel named tuples."""
    with _library.LOCK:
        count = ctypes.c_uint16(0)
        if _library.lib.zdgetnumrobot(ctypes.byref(count)) != 0:
            raise TranslateError("the robot model table has no end row")
        rows = []
        for row in range(count.value):
            key = ctypes.create_string_buffer(NAME_BUFFER)
            english = ctypes.create_string_buffer(NAME_BUFFER)
            japanese = ctypes.create_string_buffer(NAME_BUFFER)
            _library.lib.zdgetrobotname(row, key, english)
            _library.lib.zdgetrobotnamejpn(row, key, japanese)
            rows.append(RobotModel(_convert.buffer_text(key.raw),
                                   _convert.buffer_text(english.raw),
                                   _convert.buffer_text(japanese.raw)))
        return rows


def _letter_states(letters):
    if not isinstance(letters, (tuple, list)) or len(letters) != 4:
        raise TypeError("letters must be a tuple of four ints (F, L, U, T)")
    return [_convert.integer(v, "letters item") for v in letters]


def add_robot_model(key, english_name, japanese_name="", axis_letters="",
                    turns=(0, 0, 0), letters=(0, 0, 0, 0)):
    """Adds a row to the robot model table for the rest of the process.

    axis_letters has one letter per axis ("L" a linear one); turns are the
    three turn columns (1 the field exists); letters gives F, L, U and T,
    each 1 when the configuration letter exists, -1 when it is on by
    default, 0 neither. Raises TranslateError when the table is full."""
    encoded_key = _convert.text_bytes(key, "key", NAME_MAX_BYTES)
    if not encoded_key:
        raise ValueError("key is empty")
    english = _convert.text_bytes(english_name, "english_name", NAME_MAX_BYTES)
    japanese = _convert.text_bytes(japanese_name, "japanese_name", NAME_MAX_BYTES)
    axes = _convert.text_bytes(axis_letters, "axis_letters", MAX_AXIS_LETTERS)
    if not isinstance(turns, (tuple, list)) or len(turns) != 3:
        raise TypeError("turns must be a tuple of three ints")
    turn_values = [_convert.integer(v, "turns item") for v in turns]
    letter_values = _letter_states(letters)
    with _library.LOCK:
        added = _library.lib.addrobotconfig(encoded_key, japanese, english, axes,
                                            *turn_values, *letter_values)
    if added != 1:
        raise TranslateError("the robot model table is full; %s was not added" % key)


def spot_warnings():
    """The spot warnings of the last translation to binary, as str, in
    their order."""
    with _library.LOCK:
        count = _library.lib.zdgetspotwarningscount()
        warnings = []
        for number in range(1, count + 1):
            buffer = ctypes.create_string_buffer(WARNING_BUFFER)
            if _library.lib.zdgetspotwarnings(number, buffer) != number:
                break
            warnings.append(_convert.buffer_text(buffer.raw))
        return warnings
