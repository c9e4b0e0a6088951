/*
** decode_helpers.cpp - bounded appends, big-endian reads and the value,
** data item, index and group mask decoders shared by all line printers.
*/
#include "text/decode_helpers.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "core/dictionary.h"

namespace {

constexpr int32_t word_p = 5;
constexpr int32_t word_r = 21;
constexpr int32_t word_pr = 20;
constexpr int32_t word_star = 89;
constexpr int32_t word_constant = 102;
constexpr int32_t word_colon = 120;
constexpr int32_t word_comma = 121;
constexpr int32_t word_lbracket = 124;
constexpr int32_t word_dot = 127;
constexpr int32_t word_rbracket = 129;
constexpr int32_t word_gp = 143;
constexpr int32_t word_ar = 590;

constexpr uint8_t index_tag = 2;
constexpr uint8_t op_close_paren = 116;
constexpr uint8_t op_group_mask = 242;
constexpr uint8_t op_if = 120;
constexpr uint8_t prefix_pl_triple = 7;

/* Prefix byte of a data item and the word it prints. */
struct item_word {
    uint8_t prefix;
    int16_t word;
};

const item_word item_words[] = {
    {3, 21},   {4, 20},   {5, 5},    {6, 241},  {10, 37},  {11, 35},  {12, 30},
    {13, 345}, {15, 38},  {16, 36},  {17, 31},  {18, 346}, {20, 219}, {21, 224},
    {22, 32},  {23, 33},  {25, 223}, {29, 144}, {36, 371}, {37, 372}, {38, 373},
    {39, 374}, {41, 654}, {42, 655}, {66, 657},
};

int32_t item_word_of(uint8_t prefix) {
    for (const item_word &w : item_words)
        if (w.prefix == prefix)
            return w.word;
    return -1;
}

/* How a three-byte index reads its hi byte. */
enum index_form { form_single, form_full, form_zero, form_direct, form_signed };

void append_register(line_cursor *cur, int32_t word, int32_t n) {
    char num[16];
    format_index_number(n, num, sizeof num);
    cursor_append_word(cur, word);
    cursor_append_word(cur, word_lbracket);
    cursor_append(cur, num);
    cursor_append_word(cur, word_rbracket);
}

void append_direct(line_cursor *cur, int32_t n, bool zero_as_dots) {
    char num[16];
    if (zero_as_dots)
        format_index_number(n, num, sizeof num);
    else
        std::snprintf(num, sizeof num, "%d", n);
    cursor_append(cur, num);
}

int32_t decode_one_index(line_cursor *cur, index_form form) {
    if (cursor_peek(cur, 0) != index_tag)
        return 1;
    int32_t hi = cursor_peek(cur, 1);
    int32_t lo = cursor_peek(cur, 2);
    cur->pos += 3;
    int32_t low7 = ((hi & 0x7F) << 8) | lo;
    int32_t low6 = ((hi & 0x3F) << 8) | lo;
    int32_t whole = (hi << 8) | lo;
    switch (form) {
    case form_single:
        if (hi & 0x80)
            append_register(cur, word_r, low7);
        else
            append_direct(cur, whole, true);
        break;
    case form_full:
    case form_zero:
        if ((hi & 0xC0) == 0xC0)
            append_register(cur, word_ar, low6);
        else if (hi & 0x80)
            append_register(cur, word_r, low7);
        else
            append_direct(cur, whole, form == form_full);
        break;
    case form_direct:
        if (hi & 0x80)
            append_register(cur, word_r, low7);
        else
            append_direct(cur, whole, false);
        break;
    case form_signed:
        if (hi & 0x80)
            append_register(cur, word_r, low6);
        else if (hi == 64 && lo == 0) {
            char dots[8];
            format_three_dots(dots, sizeof dots);
            cursor_append(cur, dots);
        } else
            append_direct(cur, (hi & 0x40) ? -low6 : low6, false);
        break;
    }
    return 0;
}

/* The item and element of a register pair: a second index may follow. */
int32_t decode_index_pair(line_cursor *cur, index_form form) {
    if (decode_one_index(cur, form))
        return 1;
    if (cursor_peek(cur, 0) == index_tag && cur->pos < static_cast<uint32_t>(cur->length)) {
        cursor_append_word(cur, word_comma);
        return decode_one_index(cur, form);
    }
    return 0;
}

/* One part of a palletizing bracket, at most 15 characters. */
void format_pl_part(char *out, size_t size, uint8_t hi, uint8_t lo, bool on_if_line) {
    int32_t value = ((hi & 0x7F) << 8) | lo;
    if (!(hi & 0x80)) {
        if (hi == 0 && lo == 0)
            std::snprintf(out, size, "%s", dict_word(word_star));
        else
            std::snprintf(out, size, "%d", value);
    } else if (on_if_line) {
        std::snprintf(out, size, "%d-%d", hi & 0x7F, lo);
    } else if (value == 0) {
        std::snprintf(out, size, "%s%s...%s", dict_word(word_r), dict_word(word_lbracket),
                      dict_word(word_rbracket));
    } else {
        std::snprintf(out, size, "%s%s%d%s", dict_word(word_r), dict_word(word_lbracket), value,
                      dict_word(word_rbracket));
    }
}

} // namespace

void text_append(char *buf, size_t size, const char *text) {
    if (size == 0 || text == nullptr)
        return;
    size_t used = strnlen(buf, size - 1);
    size_t room = size - 1 - used;
    size_t n = std::strlen(text);
    if (n > room)
        n = room;
    std::memcpy(buf + used, text, n);
    buf[used + n] = 0;
}

void text_appendf(char *buf, size_t size, const char *format, ...) {
    char tmp[LINE_TEXT_SIZE];
    va_list ap;
    va_start(ap, format);
    std::vsnprintf(tmp, sizeof tmp, format, ap);
    va_end(ap);
    text_append(buf, size, tmp);
}

void cursor_append(line_cursor *cur, const char *text) { text_append(cur->text, sizeof cur->text, text); }

void cursor_append_word(line_cursor *cur, int32_t code) { cursor_append(cur, dict_word(code)); }

void cursor_appendf(line_cursor *cur, const char *format, ...) {
    char tmp[LINE_TEXT_SIZE];
    va_list ap;
    va_start(ap, format);
    std::vsnprintf(tmp, sizeof tmp, format, ap);
    va_end(ap);
    cursor_append(cur, tmp);
}

uint16_t decode_be16(const uint8_t *p) { return static_cast<uint16_t>((p[0] << 8) | p[1]); }

int32_t decode_be16_signmag(const uint8_t *p) {
    if (p[0] & 0x80)
        return static_cast<int16_t>(-(((p[0] - 128) << 8) | p[1]));
    return (p[0] << 8) | p[1];
}

int32_t decode_be32(const uint8_t *p) {
    uint32_t v = (static_cast<uint32_t>(p[0]) << 24) | (static_cast<uint32_t>(p[1]) << 16) |
                 (static_cast<uint32_t>(p[2]) << 8) | p[3];
    return static_cast<int32_t>(v);
}

float decode_bereal(const uint8_t *p) {
    uint32_t v = static_cast<uint32_t>(decode_be32(p));
    float f;
    std::memcpy(&f, &v, sizeof f);
    return f;
}

uint16_t cursor_be16(const line_cursor *cur, uint32_t i) {
    uint8_t b[2] = {cursor_byte(cur, i), cursor_byte(cur, i + 1)};
    return decode_be16(b);
}

int32_t cursor_be16_signmag(const line_cursor *cur, uint32_t i) {
    uint8_t b[2] = {cursor_byte(cur, i), cursor_byte(cur, i + 1)};
    return decode_be16_signmag(b);
}

int32_t cursor_be32(const line_cursor *cur, uint32_t i) {
    uint8_t b[4] = {cursor_byte(cur, i), cursor_byte(cur, i + 1), cursor_byte(cur, i + 2),
                    cursor_byte(cur, i + 3)};
    return decode_be32(b);
}

float cursor_bereal(const line_cursor *cur, uint32_t i) {
    uint8_t b[4] = {cursor_byte(cur, i), cursor_byte(cur, i + 1), cursor_byte(cur, i + 2),
                    cursor_byte(cur, i + 3)};
    return decode_bereal(b);
}

void decode_text(line_cursor *cur, char *out, size_t size) {
    size_t n = 0;
    for (;;) {
        uint8_t c = cursor_peek(cur, 0);
        cur->pos++;
        if (c == 0)
            break;
        if (n + 1 < size)
            out[n++] = static_cast<char>(c);
    }
    if (size > 0)
        out[n] = 0;
}

void format_three_dots(char *out, size_t size) {
    const char *dot = dict_word(word_dot);
    std::snprintf(out, size, "%s%s%s", dot, dot, dot);
}

void format_index_number(int32_t n, char *out, size_t size) {
    if (n == 0)
        format_three_dots(out, size);
    else
        std::snprintf(out, size, "%d", n);
}

int32_t decode_value_arg(line_cursor *cur) {
    uint8_t op = cursor_peek(cur, 0);
    if (op == 0) {
        cursor_append(cur, "...");
        cur->pos += 1;
        return 0;
    }
    if (op != 1)
        return 1;
    uint8_t kind = cursor_peek(cur, 1);
    cur->pos += 2;
    switch (kind) {
    case 0:
        cursor_append_word(cur, word_constant);
        cur->pos += 1;
        return 0;
    case 1: {
        int32_t v = static_cast<int8_t>(cursor_peek(cur, 0));
        cur->pos += 1;
        cursor_appendf(cur, v < 0 ? "(%d)" : "%d", v);
        return 0;
    }
    case 2: {
        int32_t v = cursor_be32(cur, cur->pos);
        cur->pos += 4;
        cursor_appendf(cur, v < 0 ? "(%d)" : "%d", v);
        return 0;
    }
    case 3: {
        float v = cursor_bereal(cur, cur->pos);
        cur->pos += 4;
        cursor_appendf(cur, v < 0 ? "(%g)" : "%g", static_cast<double>(v));
        return 0;
    }
    default:
        return 1;
    }
}

int32_t decode_data_item(line_cursor *cur) {
    bool after_paren = cur->pos > 0 && cursor_byte(cur, cur->pos - 1) == op_close_paren;
    uint8_t prefix = cursor_peek(cur, 0);
    if (prefix == prefix_pl_triple)
        return decode_pl_triple(cur);
    int32_t word = item_word_of(prefix);
    if (word < 0)
        return 1;
    if (after_paren)
        cursor_append(cur, ",");
    cursor_append_word(cur, word);
    cursor_append_word(cur, word_lbracket);
    cur->pos += 1;
    if ((word == word_p || word == word_pr) && cursor_peek(cur, 0) == op_group_mask)
        decode_group_mask(cur);
    bool zero_form = word >= 371 && word <= 374;
    if (decode_index_pair(cur, zero_form ? form_zero : form_full))
        return 1;
    cursor_append_word(cur, word_rbracket);
    return 0;
}

int32_t decode_pl_triple(line_cursor *cur) {
    bool on_if_line = cursor_byte(cur, 0) == op_if;
    char part[3][16];
    for (int i = 0; i < 3; i++)
        format_pl_part(part[i], sizeof part[i], cursor_peek(cur, 1 + 2 * i), cursor_peek(cur, 2 + 2 * i),
                       on_if_line);
    cur->pos += 7;
    cursor_append_word(cur, word_lbracket);
    for (int i = 0; i < 3; i++) {
        if (i > 0)
            cursor_append_word(cur, word_comma);
        cursor_append(cur, part[i]);
    }
    cursor_append_word(cur, word_rbracket);
    return 0;
}

int32_t decode_group_mask(line_cursor *cur) {
    uint32_t mask = cursor_peek(cur, 1);
    cur->pos += 2;
    cursor_append_word(cur, word_gp);
    bool first = true;
    for (int bit = 0; bit < 32; bit++) {
        if (!(mask & (1u << bit)))
            continue;
        if (!first)
            cursor_append_word(cur, word_comma);
        cursor_appendf(cur, "%d", bit + 1);
        first = false;
    }
    cursor_append_word(cur, word_colon);
    return 0;
}

int32_t decode_index_single(line_cursor *cur) { return decode_one_index(cur, form_single); }
int32_t decode_index(line_cursor *cur) { return decode_index_pair(cur, form_full); }
int32_t decode_index0(line_cursor *cur) { return decode_index_pair(cur, form_zero); }
int32_t decode_index_direct(line_cursor *cur) { return decode_one_index(cur, form_direct); }
int32_t decode_index_signed(line_cursor *cur) { return decode_one_index(cur, form_signed); }
