/*
** batch_construct.cpp - naming what a failed listing uses that this
** program format does not define: constructs of later revisions of the
** controller language (block IF, FOR loops, lines commented out, /APPL
** headers and /ATTR fields no parser takes). The library only says where
** it stopped; this file looks at the listing text there. It also finds the
** line of a spot warning's statement and tells binary data from listings.
*/
#include "cli/batch.h"

#include <cstring>

#include "core/dictionary.h"
#include "core/messages.h"

namespace {

enum section_id { sec_none, sec_prog, sec_attr, sec_appl, sec_mn, sec_pos, sec_end };

/* Japanese words of the two keywords the block IF shares with the
   language: IF (40) and ELSE (43). */
const char jp_if[] = "\xD3\xBC";
const char jp_else[] = "\xBF\xC9\xC0";

/* Keyword codes of the words that may start an /ATTR line. */
const int32_t attr_codes[] = {164, 155, 166, 156, 163, 159, 175, 161, 162, 167,
                              172, 158, 154, 170, 171, 174, 153, 151, 165};
/* Keyword codes of the words an /APPL header parser takes first:
   LINE_TRACK, SPOT, ARC, ANALOG, SMARTFOLLOW, SMARTFOLLOW_SCHEDULE,
   PAINT_PROCESS, PAINT_JOB, BIN, DISPENSE_PROCESS, DISPENSE_JOB,
   PALLETIZING, and the application words of "word : TRUE;". */
const int32_t appl_codes[] = {1721, 299, 317, 558, 333, 1406, 1200, 1215, 679,
                              1402, 1403, 240, 251, 1220, 1221, 1222, 1623};
/* Headers the printer knows but no parser reads: BELL_JOB, RECIP_ZONE. */
const int32_t appl_print_only[] = {1600, 1700};

bool word_byte(unsigned char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '$' || (c >= 0xA1 && c <= 0xDF);
}

size_t skip_blanks(const std::string &s, size_t i) {
    while (i < s.size() && (s[i] == ' ' || s[i] == '\t'))
        i++;
    return i;
}

/* The word at i, upper-cased, and the index behind it. */
std::string word_at(const std::string &s, size_t &i) {
    std::string w;
    while (i < s.size() && word_byte(static_cast<unsigned char>(s[i]))) {
        char c = s[i++];
        /* Longer than any keyword: kept short enough to quote in a message. */
        if (w.size() < 64)
            w += (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return w;
}

/* Every word of the text, in order. */
std::vector<std::string> words_of(const std::string &s) {
    std::vector<std::string> v;
    for (size_t i = 0; i < s.size();) {
        if (word_byte(static_cast<unsigned char>(s[i])))
            v.push_back(word_at(s, i));
        else
            i++;
    }
    return v;
}

/* Keyword code of a word in either language; 222 or 229 when unknown. */
int32_t code_of(const std::string &word) {
    int32_t code = keyword_search(english_reading_table, word.c_str());
    if (code == 222 || code == 229)
        code = keyword_search(japanese_reading_table, word.c_str());
    return code;
}

template <size_t N> bool in(const int32_t (&set)[N], int32_t code) {
    for (int32_t c : set)
        if (c == code)
            return true;
    return false;
}

std::string to_utf8(const std::string &sjis) {
    std::string out(sjis.size() * 3 + 1, '\0');
    size_t n = sjis_to_utf8(sjis.c_str(), out.data(), out.size());
    out.resize(n < out.size() ? n : out.size() - 1);
    return out;
}

/* A section head line: "/" and a section word at the start. */
section_id section_of(const std::string &line) {
    size_t i = skip_blanks(line, 0);
    if (i >= line.size() || line[i] != '/' || i + 1 >= line.size() || line[i + 1] == '/')
        return sec_none;
    i++;
    std::string w = word_at(line, i);
    if (w == "PROG")
        return sec_prog;
    if (w == "ATTR")
        return sec_attr;
    if (w == "APPL")
        return sec_appl;
    if (w == "MN")
        return sec_mn;
    if (w == "POS")
        return sec_pos;
    if (w == "END" || w == "\xBC\xAD\xB3\xD8\xAE\xB3")
        return sec_end;
    return sec_none;
}

/* The statement of an /MN line: behind "n:" when the line has one. */
std::string statement_of(const std::string &line) {
    size_t i = skip_blanks(line, 0);
    size_t j = i;
    while (j < line.size() && line[j] >= '0' && line[j] <= '9')
        j++;
    j = skip_blanks(line, j);
    if (j < line.size() && line[j] == ':')
        i = skip_blanks(line, j + 1);
    return line.substr(i);
}

bool only_end_follows(const std::string &s, size_t i) {
    i = skip_blanks(s, i);
    return i >= s.size() || s[i] == ';';
}

bool mn_construct(const std::string &line, construct_hit &hit) {
    std::string st = statement_of(line);
    if (st.compare(0, 2, "//") == 0) {
        hit = {"comment-line", "a line commented out with //"};
        return true;
    }
    size_t i = 0;
    std::string first = word_at(st, i);
    std::vector<std::string> words = words_of(st);
    auto has = [&](const char *w) {
        for (size_t k = 1; k < words.size(); k++)
            if (words[k] == w)
                return true;
        return false;
    };
    if (((first == "IF" || first == jp_if) && has("THEN")) || first == "ENDIF" ||
        ((first == "ELSE" || first == jp_else) && only_end_follows(st, i))) {
        hit = {"if-then-block", "a block IF ... THEN / ELSE / ENDIF"};
        return true;
    }
    if ((first == "FOR" && (has("TO") || has("DOWNTO"))) || first == "ENDFOR") {
        hit = {"for-loop", "a FOR ... TO/DOWNTO ... ENDFOR loop"};
        return true;
    }
    return false;
}

bool attr_construct(const std::string &line, construct_hit &hit) {
    size_t i = skip_blanks(line, 0);
    std::string w = word_at(line, i);
    if (w.empty() || (w[0] >= '0' && w[0] <= '9'))
        return false;
    if (in(attr_codes, code_of(w)))
        return false;
    hit = {"attr-field", "the /ATTR field " + to_utf8(w)};
    return true;
}

bool appl_construct(const std::string &line, construct_hit &hit) {
    size_t i = skip_blanks(line, 0);
    std::string w = word_at(line, i);
    if (w.empty() || (w[0] >= '0' && w[0] <= '9'))
        return false;
    int32_t code = code_of(w);
    if (in(appl_codes, code))
        return false;
    /* A known word that is no header is taken for a line inside a header's
       block (pallet, paint, tracking data), which is not ours to name. */
    if (code != 222 && code != 229 && !in(appl_print_only, code))
        return false;
    hit = {"appl-header", "the /APPL header " + to_utf8(w)};
    return true;
}

/* A line that the lexer passes over whole while it looks one token ahead:
   blank, a remark, an empty statement. */
bool passive(const std::string &line) {
    std::string st = statement_of(line);
    size_t i = skip_blanks(st, 0);
    return i >= st.size() || st[i] == '!' || st[i] == ';';
}

/* Splits text into lines (LF or CR LF) up to line `last` (1-based). */
std::vector<std::string> lines_upto(const std::string &text, int32_t last) {
    std::vector<std::string> v;
    size_t pos = 0;
    while (pos <= text.size() && static_cast<int32_t>(v.size()) < last) {
        size_t nl = text.find('\n', pos);
        size_t end = nl == std::string::npos ? text.size() : nl;
        std::string l = text.substr(pos, end - pos);
        if (!l.empty() && l.back() == '\r')
            l.pop_back();
        v.push_back(std::move(l));
        if (nl == std::string::npos)
            break;
        pos = nl + 1;
    }
    return v;
}

} // namespace

bool construct_find(const std::string &text, int32_t line, construct_hit &hit) {
    if (line < 1)
        return false;
    std::vector<std::string> lines = lines_upto(text, line);
    if (lines.empty())
        return false;
    int32_t last = static_cast<int32_t>(lines.size());
    /* The section of each line up to the reported one. */
    std::vector<section_id> sec(lines.size());
    section_id cur = sec_none;
    for (size_t k = 0; k < lines.size(); k++) {
        section_id s = section_of(lines[k]);
        if (s != sec_none) {
            cur = s;
            sec[k] = sec_none; /* the head line itself holds nothing to name */
        } else {
            sec[k] = cur;
        }
    }
    /* The reported line, the one before, and further back over lines the
       lexer reads past; the earliest construct is the one that stopped it. */
    int32_t first = last - 1;
    while (first > 1 && first > last - 4 && passive(lines[first - 1]) && sec[first - 1] != sec_none)
        first--;
    if (first < 1)
        first = 1;
    for (int32_t n = first; n <= last; n++) {
        const std::string &l = lines[n - 1];
        bool found = false;
        switch (sec[n - 1]) {
        case sec_mn:
            found = mn_construct(l, hit);
            break;
        case sec_attr:
            found = attr_construct(l, hit);
            break;
        case sec_appl:
            found = appl_construct(l, hit);
            break;
        default:
            break;
        }
        if (found) {
            dict_reset_reading();
            return true;
        }
    }
    dict_reset_reading();
    return false;
}

std::string construct_note(const std::string &message, const construct_hit &hit) {
    return message + " (uses " + hit.what + ", which this program format does not define)";
}

int32_t statement_line(const std::string &text, const std::string &statement) {
    /* Trimmed, and without its own "n:" if it kept one. */
    std::string want = statement_of(statement);
    while (!want.empty() && (want.back() == ' ' || want.back() == '\t' || want.back() == '\r' || want.back() == '\n'))
        want.pop_back();
    if (want.empty())
        return 0;
    int32_t n = 0;
    bool in_mn = false;
    size_t pos = 0;
    while (pos < text.size()) {
        size_t nl = text.find('\n', pos);
        size_t end = nl == std::string::npos ? text.size() : nl;
        std::string l = text.substr(pos, end - pos);
        n++;
        section_id s = section_of(l);
        if (s != sec_none)
            in_mn = s == sec_mn;
        else if (in_mn && statement_of(l).compare(0, want.size(), want) == 0)
            return n;
        if (nl == std::string::npos)
            break;
        pos = nl + 1;
    }
    return 0;
}

bool looks_binary(const std::string &head) { return std::memchr(head.data(), 0, head.size()) != nullptr; }

bool looks_like_listing(const std::string &head) {
    size_t i = 0;
    while (i < head.size() && (head[i] == ' ' || head[i] == '\t' || head[i] == '\r' || head[i] == '\n'))
        i++;
    return head.compare(i, 5, "/PROG") == 0;
}
