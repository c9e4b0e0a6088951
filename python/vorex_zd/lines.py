"""The small exports: one line's bytes, one position record, the program
line, and the switch that reduces double-byte listing characters.

Each of the first three selects the keyword dictionary of its language
first, since the library leaves that to its caller."""

import ctypes

from . import _convert, _library

TEXT_BUFFER = 4096         # the library's own text buffers are 512 and 2048
PROGRAM_NAME_MAX = 255     # keeps the program line well inside its buffer
RECORD_SLACK = 1024        # zero bytes behind a record, past any group block


def _bytes_argument(data, what):
    if not isinstance(data, (bytes, bytearray, memoryview)):
        raise TypeError("%s must be bytes, not %s" % (what, type(data).__name__))
    return bytes(data)


def _select_dictionary(language):
    _library.lib.zdbinasc_dicinit(_convert.language_flag(language))


def line_decodes(data, language="en"):
    """True when the bytes of one /MN line decode. The library's text of
    the line is not handed out (it tests a line, it does not print one)."""
    payload = _bytes_argument(data, "data")
    _convert.integer(len(payload), "length of data", 0)
    _convert.language_flag(language)
    copy = (ctypes.c_uint8 * max(len(payload), 1)).from_buffer_copy(payload.ljust(1, b"\0"))
    text = ctypes.create_string_buffer(TEXT_BUFFER)
    with _library.LOCK:
        _select_dictionary(language)
        return _library.lib.zdbinasc_line(copy, len(payload), text) == 1


def position_text(record, language="en"):
    """The library's text of one stored position record (its two length
    bytes first, as in a .TP position block). The library hands back the
    empty string for every record; the call is kept for completeness."""
    payload = _bytes_argument(record, "record")
    _convert.language_flag(language)
    declared = int.from_bytes(payload[:2], "big") if len(payload) >= 2 else 0
    # The library reads as far as the record's own length bytes say, so
    # the copy is at least that long, with zeros behind it.
    size = max(len(payload), declared + 2) + RECORD_SLACK
    copy = (ctypes.c_uint8 * size).from_buffer_copy(payload.ljust(size, b"\0"))
    text = ctypes.create_string_buffer(TEXT_BUFFER)
    with _library.LOCK:
        _select_dictionary(language)
        _library.lib.zdbinasc_pos(copy, text)
    return _convert.buffer_text(text.raw)


def program_line(name, subtype, language="en"):
    """The /PROG line of a program, e.g. program_line("MAIN", 1) gives
    "/PROG  MAIN\\tJOB\\r\\n". Sub types: 1 JOB, 2 PROCESS, 3 MACRO, 4 Cond;
    others add no word."""
    encoded = _convert.text_bytes(name, "name", PROGRAM_NAME_MAX)
    number = _convert.integer(subtype, "subtype")
    _convert.language_flag(language)
    text = ctypes.create_string_buffer(TEXT_BUFFER)
    with _library.LOCK:
        _select_dictionary(language)
        _library.lib.zdbinasc_prog(encoded, number, text)
    return _convert.buffer_text(text.raw)


def set_zentohan(on):
    """Turns on (True) or off the reduction of double-byte characters of a
    listing to single-byte ones; returns the new setting."""
    if not isinstance(on, (bool, int)):
        raise TypeError("on must be bool, not %s" % type(on).__name__)
    with _library.LOCK:
        return _library.lib.zdsetzentohan(1 if on else 0) != 0


def zentohan():
    """The current double-byte reduction setting."""
    with _library.LOCK:
        return _library.lib.zdgetzentohan() != 0
