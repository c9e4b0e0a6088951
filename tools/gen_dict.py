#!/usr/bin/env python3
"""gen_dict.py - builds the four keyword tables of core/dict_tables.cpp from
the keyword code table of the design document (Markdown, UTF-8).

    tools/gen_dict.py [DOC] [-o OUT]               writes core/dict_tables.cpp
    tools/gen_dict.py [DOC] --test-data [-o OUT]   writes tests/data/dict_expect.inc

DOC defaults to the design document in ../shared/ beside the project root. The code
table is the one whose header row starts "| Code | English | Japanese |".
Each line holds: code, English printing word, Japanese printing word,
English reading rows, Japanese reading rows. In a reading column "=" means
the printing word of that language, "-" no row, and " / " separates rows.
A double-quoted word keeps blanks at its edges; \\t and \\" are escapes.

Japanese half-width katakana U+FF61..U+FF9F become the Shift-JIS single
bytes 0xA1..0xDF; any other non-ASCII character is an error.
"""

import argparse
import os
import sys

PROJECT_ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
HEADER_START = "| Code | English | Japanese | English reading | Japanese reading |"

# Rows the code table does not show: it names only the first printing row
# of a code. Each entry is (code, text) and lands right after that first row.
EXTRA_ENGLISH_PRINT = [(20, "PR"), (81, "DIV"), (211, "INDEX"), (561, "START")]
EXTRA_JAPANESE_PRINT = [(20, "PR"), (81, "DIV"), (1201, "LAST_CYCLE_TIME"),
                        (1202, "LAST_GUN_ON_TIME"),
                        (1204, "DEFAULT_USER_FRAME"),
                        (1205, "DEFAULT_TOOL_FRAME")]
# "DIV" stands twice in the Japanese reading table.
EXTRA_JAPANESE_READING = [(81, "DIV")]

EXPECTED_COUNTS = {"english_print_table": 551, "japanese_print_table": 462,
                   "english_reading_table": 513,
                   "japanese_reading_table": 467}
EXPECTED_CODES = 622

# English reading rows kept out of sort order: RS sits right before RR,
# so that the halving search meets RR and reads RS as an unknown word.
ENGLISH_MISPLACED = ("RS", 574, "RR")


def to_sjis(text, where):
    out = bytearray()
    for ch in text:
        o = ord(ch)
        if o < 0x80:
            out.append(o)
        elif 0xFF61 <= o <= 0xFF9F:
            out.append(o - 0xFF61 + 0xA1)
        else:
            sys.exit("%s: character U+%04X is not half-width" % (where, o))
    return bytes(out)


def unquote(cell, where):
    if len(cell) >= 2 and cell[0] == '"' and cell[-1] == '"':
        body, out, i = cell[1:-1], [], 0
        while i < len(body):
            if body[i] == "\\" and i + 1 < len(body):
                nxt = body[i + 1]
                if nxt == "t":
                    out.append("\t")
                elif nxt in '"\\':
                    out.append(nxt)
                else:
                    sys.exit("%s: unknown escape \\%s" % (where, nxt))
                i += 2
            else:
                out.append(body[i])
                i += 1
        return "".join(out)
    return cell


def split_cells(line):
    # The words hold no "|", so a plain split serves.
    cells = line.strip().split("|")
    if cells[0] != "" or cells[-1] != "":
        return None
    return [c.strip() for c in cells[1:-1]]


def read_code_table(path):
    with open(path, encoding="utf-8") as f:
        lines = f.read().splitlines()
    try:
        start = lines.index(HEADER_START)
    except ValueError:
        sys.exit("%s: code table header not found" % path)
    rows = []
    for n, line in enumerate(lines[start + 2:], start + 3):
        if not line.startswith("|"):
            break
        cells = split_cells(line)
        if cells is None or len(cells) != 5:
            sys.exit("%s:%d: expected 5 cells" % (path, n))
        rows.append((n, cells))
    return rows


def printing_word(cell, reading_cell, where):
    # "-" is "no row" unless the reading column says "=": then the word is
    # the minus sign itself.
    if cell == "-" and reading_cell != "=":
        return None
    return to_sjis(unquote(cell, where), where)


def reading_words(cell, printing, where):
    if cell == "-":
        return []
    if cell == "=":
        if printing is None:
            sys.exit("%s: '=' with no printing word" % where)
        return [printing]
    return [to_sjis(unquote(p.strip(), where), where) for p in cell.split(" / ")]


def build(path):
    rows = read_code_table(path)
    en_print, jp_print, en_read, jp_read, codes = [], [], [], [], []
    last = -1
    for n, (code_s, en, jp, en_r, jp_r) in rows:
        where = "%s:%d" % (path, n)
        code = int(code_s)
        if code <= last:
            sys.exit("%s: codes out of order" % where)
        last = code
        en_w = printing_word(en, en_r, where)
        jp_w = printing_word(jp, jp_r, where)
        codes.append((code, en_w, jp_w))
        if en_w is not None:
            en_print.append((en_w, code))
        if jp_w is not None:
            jp_print.append((jp_w, code))
        en_read += [(w, code) for w in reading_words(en_r, en_w, where)]
        jp_read += [(w, code) for w in reading_words(jp_r, jp_w, where)]
    if len(codes) != EXPECTED_CODES:
        sys.exit("%s: %d codes, expected %d" % (path, len(codes), EXPECTED_CODES))
    insert_after_first(en_print, EXTRA_ENGLISH_PRINT)
    insert_after_first(jp_print, EXTRA_JAPANESE_PRINT)
    jp_read += [(w.encode("ascii"), c) for c, w in EXTRA_JAPANESE_READING]
    en_read = sort_reading(en_read)
    jp_read = sort_reading(jp_read)
    misplace(en_read)
    tables = {"english_print_table": en_print, "japanese_print_table": jp_print,
              "english_reading_table": en_read,
              "japanese_reading_table": jp_read}
    return tables, codes


def insert_after_first(table, extras):
    for code, text in extras:
        text = text.encode("ascii")
        for i, (w, c) in enumerate(table):
            if c == code:
                if code != 20 and w != text:
                    sys.exit("extra row %d %r differs from %r" % (code, text, w))
                table.insert(i + 1, (text, code))
                break
        else:
            sys.exit("extra row %d has no first row" % code)


def upper_az(word):
    return bytes(b - 32 if 0x61 <= b <= 0x7A else b for b in word)


def sort_reading(table):
    # Stable, so rows of one word keep the code order.
    return sorted(table, key=lambda r: upper_az(r[0]))


def misplace(table):
    word, code, before = ENGLISH_MISPLACED
    i = table.index((word.encode("ascii"), code))
    row = table.pop(i)
    j = [w for w, _ in table].index(before.encode("ascii"))
    table.insert(j, row)


def c_string(word):
    # A hex escape swallows every hex digit behind it, so a following
    # hex-digit character starts a new literal.
    parts, cur, after_hex = [], "", False
    for b in word:
        ch = chr(b)
        if b >= 0x80 or b < 0x20:
            if b == 0x09:
                cur += "\\t"
                after_hex = False
            else:
                cur += "\\x%02X" % b
                after_hex = True
            continue
        if after_hex and ch in "0123456789abcdefABCDEF":
            parts.append(cur)
            cur = ""
        after_hex = False
        cur += "\\" + ch if ch in '"\\' else ch
    parts.append(cur)
    return " ".join('"%s"' % p for p in parts)


def check_counts(tables):
    bad = []
    for name, rows in tables.items():
        if len(rows) != EXPECTED_COUNTS[name]:
            bad.append("%s: %d rows, expected %d"
                       % (name, len(rows), EXPECTED_COUNTS[name]))
    return bad


def write_tables(tables, out):
    o = ["/*",
         "** dict_tables.cpp - the keyword words of both languages: two printing",
         "** tables (code to word, first row of a code wins) and two reading tables",
         "** (word to code, sorted for the halving search). Japanese words are",
         "** Shift-JIS half-width katakana.",
         "**",
         "** Generated by tools/gen_dict.py; do not edit by hand.",
         "*/",
         '#include "core/dictionary.h"', ""]
    for name in ("english_print_table", "japanese_print_table",
                 "english_reading_table", "japanese_reading_table"):
        rows = tables[name]
        if name == "english_reading_table":
            o.append("/* RS (574) stands before RR on purpose: the halving "
                     "search finds RR, and")
            o.append("   RS reads as an unknown word in English listings. */")
        o.append("const dict_entry %s[] = {  /* %d rows */" % (name, len(rows)))
        for w, c in rows:
            o.append("    {%s, %d}," % (c_string(w), c))
        o.append('    {"", 0},')
        o.append("};")
        o.append("")
    write_file(out, "\n".join(o))


def write_test_data(tables, codes, out):
    o = ["/*",
         "** dict_expect.inc - expected words of every keyword code, taken",
         "** straight from the code table. Generated by tools/gen_dict.py",
         "** --test-data; do not edit by hand.",
         "**",
         "** expect_print rows: code, English word, Japanese word (nullptr: none).",
         "** expect_reading rows: word and its code, in the code table's order.",
         "*/", ""]
    o.append("static const expect_print expect_print_rows[] = {")
    for code, en, jp in codes:
        o.append("    {%d, %s, %s}," % (code, lit(en), lit(jp)))
    o.append("};")
    o.append("")
    for lang in ("english", "japanese"):
        rows = sorted(tables[lang + "_reading_table"], key=lambda r: r[1])
        o.append("static const expect_reading expect_%s_reading_rows[] = {" % lang)
        for w, c in rows:
            o.append("    {%s, %d}," % (c_string(w), c))
        o.append("};")
        o.append("")
    write_file(out, "\n".join(o))


def lit(word):
    return "nullptr" if word is None else c_string(word)


def write_file(path, text):
    os.makedirs(os.path.dirname(os.path.abspath(path)), exist_ok=True)
    with open(path, "w", encoding="ascii", newline="\n") as f:
        f.write(text)


def main():
    ap = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    ap.add_argument("doc", nargs="?",
                    default=os.path.join(PROJECT_ROOT, "..", "shared", "spec.md"))
    ap.add_argument("--test-data", action="store_true",
                    help="write the test expectations instead of the tables")
    ap.add_argument("-o", "--output")
    args = ap.parse_args()
    tables, codes = build(args.doc)
    bad = check_counts(tables)
    for msg in bad:
        print("gen_dict: " + msg, file=sys.stderr)
    if args.test_data:
        out = args.output or os.path.join(PROJECT_ROOT, "tests", "data",
                                          "dict_expect.inc")
        write_test_data(tables, codes, out)
    else:
        out = args.output or os.path.join(PROJECT_ROOT, "core", "dict_tables.cpp")
        write_tables(tables, out)
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
