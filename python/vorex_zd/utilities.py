"""Work on whole files: compare and dump of .TP programs, compression."""

import ctypes
import os
from pathlib import Path

from . import _convert, _library
from .errors import TranslateError

# The compare report goes into a buffer whose size the library is told; a
# line that does not fit is dropped without notice. No report line comes
# near REPORT_MARGIN bytes, so a report that ends further than that from the
# end of the buffer is whole, else the compare runs again with twice the room.
REPORT_START = 1 << 20
REPORT_LIMIT = 1 << 26
REPORT_MARGIN = 4096


def _report(left, right, size):
    """(result, report text, report length in bytes) of one compare."""
    buffer = ctypes.create_string_buffer(size)
    result = _library.lib.compare_files(left, right, buffer, size)
    raw = buffer.value
    return result, _convert.buffer_text(raw), len(raw)


def compare(left, right):
    """The library's report of the differences of two .TP programs: "" when
    they are equal in everything the compare looks at (a report beyond
    64 MiB is cut there). Raises TranslateError (code 1 or 2) when one of
    them does not load."""
    left_path = _convert.existing_file(left, "left")
    right_path = _convert.existing_file(right, "right")
    left_bytes = _convert.path_bytes(left, "left")
    right_bytes = _convert.path_bytes(right, "right")
    size = REPORT_START
    with _library.LOCK:
        while True:
            result, report, length = _report(left_bytes, right_bytes, size)
            if result != 0 or length + REPORT_MARGIN < size or size >= REPORT_LIMIT:
                break
            size *= 2
    if result != 0:
        # The library names the file that did not load: "<path> not found".
        failed = left_path
        if not report.startswith(os.fsdecode(left_bytes) + " ") and \
                report.startswith(os.fsdecode(right_bytes) + " "):
            failed = right_path
        text = report.strip() or "the programs could not be compared"
        raise TranslateError(text, code=result, path=failed)
    return report


def dump(tp, dest=None):
    """Writes the byte dump of a .TP program and returns its path; dest
    defaults to the program's path with the extension ".dmp"."""
    source = _convert.existing_file(tp, "tp")
    target = source.with_suffix(".dmp") if dest is None else Path(_convert.path_text(dest, "dest"))
    encoded_source = _convert.path_bytes(source, "tp")
    encoded_target = _convert.path_bytes(target, "dest")
    if target.exists() and os.path.samefile(source, target):
        raise ValueError("dest is the program itself: %s" % target)
    _convert.check_writable(target)
    with _library.LOCK:
        ok = _library.lib.zdbinasc_file_dmp(encoded_source, encoded_target)
    if ok != 1:
        raise TranslateError("the program could not be dumped", path=source)
    return target


def _pack(export, src, dst, verb):
    source = _convert.existing_file(src, "src")
    target = Path(_convert.path_text(dst, "dst"))
    encoded_source = _convert.path_bytes(src, "src")
    encoded_target = _convert.path_bytes(dst, "dst")
    if target.exists() and os.path.samefile(source, target):
        raise ValueError("cannot %s a file onto itself: %s" % (verb, target))
    _convert.check_writable(target)
    with _library.LOCK:
        result = export(encoded_source, encoded_target)
    if result != 0:
        raise TranslateError("a file did not open", code=result, path=target)
    return target


def compress(src, dst):
    """Packs src into dst (LZSS with the FE EF 00 01 header) and returns
    dst as a Path."""
    return _pack(_library.lib.zdcompress, src, dst, "compress")


def expand(src, dst):
    """Unpacks a file packed by compress into dst and returns dst as a
    Path. The header is not checked: any file unpacks to something."""
    return _pack(_library.lib.zduncompress, src, dst, "expand")
