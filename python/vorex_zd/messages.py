"""Error messages in English and Japanese, and the widening of the 16-bit
code word that a listing run delivers."""

import ctypes

from . import _convert, _frame, _library

# A listing run's code word is 16 bits wide; the syntax family of codes
# (0x1500xx) loses this upper half in it.
LOST_HALF = 0x150000
MESSAGE_BUFFER = 1024  # the library writes at most 512 bytes


def _lookup(code, flag):
    """The library's text of code in the language flag, without its line
    end. Holds the lock."""
    with _library.LOCK:
        _frame.probe(flag)
        buffer = ctypes.create_string_buffer(MESSAGE_BUFFER)
        _library.lib.zdgeterrmsg(code, buffer)
        text = _convert.buffer_text(buffer.raw)
    return text[:-1] if text.endswith("\n") else text


def message(code, language="en"):
    """The library's message text of an error code, in "en" English or "ja"
    Japanese, without its line end. A code that the message table does not
    hold gives the table's fallback text ("Syntax Error")."""
    if not isinstance(code, int):
        raise TypeError("code must be int, not %s" % type(code).__name__)
    flag = _convert.language_flag(language)
    if not _convert.INT32_MIN <= code <= _convert.INT32_MAX:
        code = 0  # no 32-bit code: the table's end row, so the fallback
    return _lookup(code, flag)


def _has_row(code):
    """True when the English table holds code; the English rows never read
    like the fallback, the Japanese ones may."""
    return _lookup(code, 1) != _lookup(0, 1)


def widen_code(word):
    """The full code of a 16-bit code word: the word itself, unless only the
    word plus the lost upper half has a message row (89 -> 1376345)."""
    with _library.LOCK:
        if 0 <= word <= 0xFFFF and not _has_row(word) and _has_row(word + LOST_HALF):
            return word + LOST_HALF
    return word
