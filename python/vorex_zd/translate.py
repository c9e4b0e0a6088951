"""Listing to binary and binary to listing."""

import ctypes
import os
from pathlib import Path

from . import _convert, _frame, _library, cell
from .errors import TranslateError
from .messages import message, widen_code

NAME_BUFFER = 512          # the library's buffers of the listing and .TP names
LISTING_PATH_MAX = NAME_BUFFER - 1 - len(".TP")
LISTING_DID_NOT_OPEN = 1


def binary_name(listing):
    """Where the library puts the .TP of a listing path (bytes): the part
    behind the last "." of the whole path becomes ".TP", with no "." the
    name gets ".TP" appended."""
    dot = listing.rfind(b".")
    base = listing if dot < 0 else listing[:dot]
    return base + b".TP"


def _use_cell(config, listing):
    if config is not None:
        cell.load_config(config)
    elif not cell.cell_is_set():
        cell.load_config(None)
    if not _frame.probe(1):
        raise TranslateError("no robot cell is loaded: load_config() or set_param() first",
                             path=listing)


def to_binary(listing, config=None):
    """Translates a listing (.PE English, .PJ Japanese, any other extension
    English) into a .TP program and returns the path of the .TP.

    The .TP lies beside the listing, the extension replaced by ".TP". config
    names a cell directory to load first; with None the loaded cell is used,
    the built-in one if none was loaded. A listing the library refuses raises
    TranslateError with its code and line, and no .TP is written."""
    source = _convert.existing_file(listing, "listing")
    encoded = _convert.path_bytes(listing, "listing", LISTING_PATH_MAX)
    target = Path(os.fsdecode(binary_name(encoded)))
    _convert.check_writable(target)
    with _library.LOCK:
        _use_cell(config, source)
        code = ctypes.c_uint16(0)
        line = ctypes.c_uint16(0)
        ok = _library.lib.zdascbin(encoded, ctypes.byref(code), ctypes.byref(line))
        if ok != 1:
            full = widen_code(code.value)
            # Code 1 has no message row: the listing did not open.
            text = "cannot open the listing" if full == LISTING_DID_NOT_OPEN else message(full, "en")
            raise TranslateError(text, code=full, line=line.value, path=source)
    if not target.is_file():
        raise TranslateError("the program could not be written", path=target)
    return target


def to_listing(tp, dest=None):
    """Prints a .TP program as a listing and returns its path. dest defaults
    to the .TP's path with the extension ".PE"; a dest ending in ".PJ" (any
    case) gets Japanese keywords, any other English."""
    source = _convert.existing_file(tp, "tp")
    target = source.with_suffix(".PE") if dest is None else Path(_convert.path_text(dest, "dest"))
    encoded_source = _convert.path_bytes(source, "tp")
    encoded_target = _convert.path_bytes(target, "dest")
    if target.exists() and os.path.samefile(source, target):
        raise ValueError("dest is the program itself: %s" % target)
    _convert.check_writable(target)
    with _library.LOCK:
        ok = _library.lib.zdbinasc_file(encoded_source, encoded_target)
    if ok != 1:
        raise TranslateError("not a readable .TP program", path=source)
    return target
