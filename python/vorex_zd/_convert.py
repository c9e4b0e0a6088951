"""Checks the arguments of the public functions and turns them into what
the C side takes (zero-terminated bytes, 32-bit integers), and turns the
library's Shift-JIS texts back into str.

Every check happens before the library is called: a wrong type is a
TypeError, a value the library cannot hold safely is a ValueError.
"""

import os
from pathlib import Path

ENCODING = "shift_jis"
INT32_MIN = -(1 << 31)
INT32_MAX = (1 << 31) - 1

LANGUAGES = {"en": 1, "ja": 0}


def path_text(value, what):
    """str of a str or os.PathLike path argument."""
    if isinstance(value, (str, os.PathLike)):
        text = os.fspath(value)
        if isinstance(text, str):
            if not text:
                raise ValueError("%s is empty" % what)
            return text
    raise TypeError("%s must be str or os.PathLike, not %s" % (what, type(value).__name__))


def path_bytes(value, what, max_bytes=None):
    """The path as the bytes the C side opens; refuses a zero byte, which
    would cut the path short, and paths longer than the library's name
    buffers when max_bytes is given."""
    encoded = os.fsencode(path_text(value, what))
    if b"\0" in encoded:
        raise ValueError("%s holds a zero byte" % what)
    if max_bytes is not None and len(encoded) > max_bytes:
        raise ValueError("%s is %d bytes long; the library takes at most %d"
                         % (what, len(encoded), max_bytes))
    return encoded


def existing_file(value, what):
    """Path of an input file that must exist; FileNotFoundError if not."""
    text = path_text(value, what)
    if "\0" in text:
        raise ValueError("%s holds a zero byte" % what)
    path = Path(text)
    if not path.is_file():
        if path.exists():
            raise IsADirectoryError(21, "%s is not a file" % what, str(path))
        raise FileNotFoundError(2, "%s does not exist" % what, str(path))
    return path


def check_writable(target):
    """Refuses an output path the library could not open, which it would
    report as a plain failure or, for a listing run, not at all."""
    folder = target.parent
    if not folder.is_dir():
        raise FileNotFoundError(2, "the output folder does not exist", str(folder))
    if target.exists() and not os.access(target, os.W_OK):
        raise PermissionError(13, "the output file is not writable", str(target))
    if not os.access(folder, os.W_OK):
        raise PermissionError(13, "the output folder is not writable", str(folder))


def text_bytes(value, what, max_bytes=None):
    """A text argument in Shift-JIS, without zero bytes."""
    if not isinstance(value, str):
        raise TypeError("%s must be str, not %s" % (what, type(value).__name__))
    try:
        encoded = value.encode(ENCODING)
    except UnicodeEncodeError:
        raise ValueError("%s cannot be written in Shift-JIS: %r" % (what, value)) from None
    if b"\0" in encoded:
        raise ValueError("%s holds a zero character" % what)
    if max_bytes is not None and len(encoded) > max_bytes:
        raise ValueError("%s is %d bytes long; at most %d are allowed"
                         % (what, len(encoded), max_bytes))
    return encoded


def integer(value, what, low=INT32_MIN, high=INT32_MAX):
    """An int in [low, high]; bool counts as int, as it does in Python."""
    if not isinstance(value, int):
        raise TypeError("%s must be int, not %s" % (what, type(value).__name__))
    if not low <= value <= high:
        raise ValueError("%s must lie in %d..%d, not %d" % (what, low, high, value))
    return int(value)


def language_flag(language):
    """1 for "en", 0 for "ja", as the library numbers its languages."""
    if not isinstance(language, str):
        raise TypeError("language must be str, not %s" % type(language).__name__)
    try:
        return LANGUAGES[language]
    except KeyError:
        raise ValueError('language must be "en" or "ja", not %r' % language) from None


def buffer_text(raw):
    """The zero-terminated text at the start of raw, decoded from Shift-JIS;
    a byte that is no Shift-JIS becomes U+FFFD rather than an error."""
    end = raw.find(b"\0")
    if end >= 0:
        raw = raw[:end]
    return raw.decode(ENCODING, errors="replace")
