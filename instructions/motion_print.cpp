/*
** motion_print.cpp - motion heads (254) and group segments (253) as text.
** A head prints "J P[1] 100% FINE "; a C line puts its second text line
** (the first position of the bytes, the speed, the termination) behind a
** line break and seven blanks. Every position of kind P marks its record
** used and shows the record's comment.
*/
#include "instructions/motion.h"

#include <cstdio>
#include <cstring>

#include "core/dictionary.h"
#include "instructions/motion_tokens.h"
#include "sections/pos_print.h"
#include "text/decode_helpers.h"

line_printer motion_offset_printer = nullptr;
int32_t (*motion_pallet_printer)(line_cursor *cur, char *out, size_t size) = nullptr;

namespace {

using namespace motion_words;

constexpr uint8_t kind_p = 0;
constexpr uint8_t kind_pr = 1;
constexpr uint8_t kind_pal = 2;
constexpr uint8_t op_offset = 206;
constexpr uint8_t op_tool_offset = 220;
constexpr int32_t side_size = 256;
/* A C line's second text line is indented to stand under the first. */
constexpr const char *c_second_line = "\r\n       ";

void append_word(char *out, size_t size, int32_t code) { text_append(out, size, dict_word(code)); }

void append_number_or_dots(char *out, size_t size, int32_t n) {
    char num[32];
    format_index_number(n, num, sizeof num);
    text_append(out, size, num);
}

/* The unit text of a speed; compound units are three words. */
void append_unit(char *out, size_t size, int32_t unit) {
    static const int16_t compound[][2] = {{w_mm, w_sec}, {w_cm, w_min}, {w_inch, w_min}, {w_deg, w_sec}};
    switch (unit) {
    case 0: append_word(out, size, w_percent); break;
    case 1:
    case 2:
    case 3:
    case 4:
        text_appendf(out, size, "%s%s%s", dict_word(compound[unit - 1][0]), dict_word(w_slash),
                     dict_word(compound[unit - 1][1]));
        break;
    case 5: append_word(out, size, w_sec); break;
    case 6: append_word(out, size, w_msec); break;
    default: text_append(out, size, "--UNKNOWN--"); break;
    }
}

/* Position, speed and termination of a J, L or A head into the text. */
int32_t print_plain_head(line_cursor *cur, int32_t word) {
    char *text = cur->text;
    size_t size = sizeof cur->text;
    append_word(text, size, word);
    text_append(text, size, " ");
    if (print_position_ref(cur, text, size) || print_speed(cur, text, size) || print_termination(cur, text, size))
        return 1;
    return 0;
}

int32_t print_circular_head(line_cursor *cur) {
    char *text = cur->text;
    size_t size = sizeof cur->text;
    char position[side_size] = "", speed[side_size] = "", termination[side_size] = "";
    append_word(text, size, w_c);
    text_append(text, size, " ");
    if (print_position_ref(cur, position, sizeof position) || print_position_ref(cur, text, size) ||
        print_speed(cur, speed, sizeof speed) || print_termination(cur, termination, sizeof termination))
        return 1;
    uint8_t next = cursor_peek(cur, 0);
    if ((next == op_offset || next == op_tool_offset) && motion_offset_printer) {
        uint32_t before = cur->pos;
        if (motion_offset_printer(cur) != 0 || cur->pos <= before)
            return 1;
    }
    text_append(text, size, c_second_line);
    text_append(text, size, position);
    text_append(text, size, speed);
    text_append(text, size, termination);
    return 0;
}

} // namespace

int32_t print_motion(line_cursor *cur) {
    uint8_t type = cursor_peek(cur, 1);
    cur->pos += 2;
    switch (type) {
    case MOTION_J: return print_plain_head(cur, w_j);
    case MOTION_L: return print_plain_head(cur, w_l);
    case MOTION_A: return print_plain_head(cur, w_a_jp);
    case MOTION_C: return print_circular_head(cur);
    default: return 1;
    }
}

int32_t print_position_ref(line_cursor *cur, char *out, size_t size) {
    uint8_t kind = cursor_peek(cur, 0);
    if (kind == kind_pal)
        return motion_pallet_printer ? motion_pallet_printer(cur, out, size) : 1;
    if (kind != kind_p && kind != kind_pr)
        return 1;
    uint8_t hi = cursor_peek(cur, 1);
    uint8_t lo = cursor_peek(cur, 2);
    cur->pos += 3;
    int32_t number = (hi & 63) * 256 + lo;
    append_word(out, size, kind == kind_p ? w_p : w_pr);
    append_word(out, size, w_lbracket);
    if (hi & 0x80) {
        append_word(out, size, (hi & 0x40) ? w_ar : w_r);
        append_word(out, size, w_lbracket);
    }
    append_number_or_dots(out, size, number);
    if (kind == kind_p) {
        mark_position_used(number);
        char comment[LINE_TEXT_SIZE];
        if (position_comment_text(number, comment, sizeof comment)) {
            append_word(out, size, w_colon);
            text_append(out, size, comment);
        }
    }
    if (hi & 0x80)
        append_word(out, size, w_rbracket);
    append_word(out, size, w_rbracket);
    text_append(out, size, " ");
    return 0;
}

int32_t print_speed(line_cursor *cur, char *out, size_t size) {
    int32_t value = cursor_be16(cur, cur->pos);
    uint8_t unit_byte = cursor_peek(cur, 2);
    cur->pos += 3;
    int32_t mode = unit_byte >> 6;
    int32_t unit = unit_byte & 63;
    if (mode == 3) {
        append_word(out, size, w_weld_speed);
        text_append(out, size, " ");
        return 0;
    }
    if (mode != 0) {
        append_word(out, size, w_r);
        append_word(out, size, w_lbracket);
        if (mode == 2) {
            append_word(out, size, w_r);
            append_word(out, size, w_lbracket);
        }
        if (value == 0)
            text_append(out, size, "...");
        else
            text_appendf(out, size, "%d", value);
        append_word(out, size, w_rbracket);
        if (mode == 2)
            append_word(out, size, w_rbracket);
    } else if (unit == 3 || unit == 5) {
        text_appendf(out, size, "%.1f", static_cast<double>(static_cast<float>(value) / 10.0f));
    } else {
        text_appendf(out, size, "%d", value);
    }
    append_unit(out, size, unit);
    text_append(out, size, " ");
    return 0;
}

int32_t print_termination(line_cursor *cur, char *out, size_t size) {
    uint8_t t0 = cursor_peek(cur, 0);
    uint8_t t1 = cursor_peek(cur, 1);
    cur->pos += 2;
    if (t0 == 0) {
        append_word(out, size, w_fine);
        text_append(out, size, " ");
    } else if (t0 == 64 && t1 == 0) {
        text_appendf(out, size, "%s %s%s...%s ", dict_word(w_cnt), dict_word(w_r), dict_word(w_lbracket),
                     dict_word(w_rbracket));
    } else if (t0 == 64) {
        text_appendf(out, size, "%s %s%s%d%s ", dict_word(w_cnt), dict_word(w_r), dict_word(w_lbracket), t1,
                     dict_word(w_rbracket));
    } else if ((t0 & 0xC0) == 0xC0) {
        text_appendf(out, size, "%s%d ", dict_word(w_cd), (t0 & 63) * 256 + t1);
    } else {
        text_appendf(out, size, "%s%d ", dict_word(w_cnt), t1);
    }
    return 0;
}

int32_t print_group_segment(line_cursor *cur) {
    if (cur->group == 0) {
        uint8_t kind = cursor_peek(cur, 1);
        if (kind > 1)
            return 1;
        std::snprintf(cur->text, sizeof cur->text, "%s", dict_word(kind == 0 ? w_independent_gp : w_simultaneous_gp));
    }
    uint8_t group = cursor_peek(cur, 5);
    if (group < 1 || group > 5)
        return 1;
    cur->group = group;
    cursor_appendf(cur, "\r\n     GP%d ", group);
    cur->pos += 6;
    return 0;
}
