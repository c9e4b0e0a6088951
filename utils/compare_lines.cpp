/*
** compare_lines.cpp - lines of the two programs, pair by pair: the trims
** that hide differences the decoder cannot show, the verdict by bytes and
** then by decoded text, and the report of a pair that differs.
*/
#include <cstdio>
#include <cstring>

#include "bin2asc/decode_line.h"
#include "text/decode_tables.h"
#include "text/put_line.h"
#include "utils/compare.h"

namespace {

/* Opcodes whose lines are trimmed before the compare. */
constexpr uint8_t op_blank_free = 26;
constexpr uint8_t op_remark = 30;
constexpr uint8_t op_macro = 135;
/* A macro call's name stands behind the opcode and the macro number. */
constexpr int32_t macro_name_at = 2;

uint8_t first_opcode(const line_cursor *cur) { return cur->length > 0 ? cur->bytes[0] : 0; }

/* Takes the blanks out of the first bound bytes, in place; the length
   becomes what stayed of them. */
void squeeze_blanks(line_cursor *cur, int32_t bound) {
    int32_t n = bound < cur->length ? bound : cur->length;
    int32_t kept = 0;
    for (int32_t i = 0; i < n; i++)
        if (cur->bytes[i] != ' ')
            cur->bytes[kept++] = cur->bytes[i];
    cur->length = kept;
}

/* Drops the last byte (the text's zero) and then the blanks before it. */
void trim_tail(line_cursor *cur) {
    if (cur->length > 0)
        cur->length--;
    while (cur->length > 0 && cur->bytes[cur->length - 1] == ' ')
        cur->length--;
}

/* A name that ends inside the line loses the blanks in front of its zero,
   the rest of the line moving up; one that runs to the end is trimmed as
   a text. */
void trim_macro(line_cursor *cur) {
    int32_t zero = macro_name_at;
    while (zero < cur->length && cur->bytes[zero] != 0)
        zero++;
    if (zero >= cur->length) {
        trim_tail(cur);
        return;
    }
    int32_t end = zero;
    while (end > macro_name_at && cur->bytes[end - 1] == ' ')
        end--;
    if (end < zero) {
        std::memmove(cur->bytes + end, cur->bytes + zero, static_cast<size_t>(cur->length - zero));
        cur->length -= zero - end;
    }
}

void rewind_cursor(line_cursor *cur) {
    cur->pos = 0;
    cur->text[0] = 0;
    cur->p_sps_number = 0;
    cur->group = 0;
}

/* Decodes a line on its own side's tables, printing nothing. */
int32_t decode_quietly(line_cursor *cur, int32_t side) {
    cur_side = side;
    rewind_cursor(cur);
    return decode_line(cur, 0, 0);
}

void note_p_sps(const line_cursor *left, const line_cursor *right) {
    if (left->p_sps_number != 0 || right->p_sps_number != 0)
        add_p_sps_number(left->p_sps_number, right->p_sps_number);
}

void print_side(line_cursor *cur, int32_t side) {
    compare_hex_line(cur->bytes, cur->length);
    cur_side = side;
    rewind_cursor(cur);
    if (decode_line(cur, 1, 0) != 0) {
        char line[80];
        std::snprintf(line, sizeof line, "Error line %d: Unknown mnemonic code",
                      static_cast<int32_t>(cur->line_number));
        put_line(line);
    }
}

} // namespace

int32_t lines_differ(line_cursor *left, line_cursor *right) {
    uint8_t op = first_opcode(left);
    bool both = left->length > 0 && right->length > 0 && op == first_opcode(right);
    if (both && op == op_blank_free) {
        squeeze_blanks(left, left->length);
        squeeze_blanks(right, left->length);
    } else if (both && op == op_remark) {
        trim_tail(left);
        trim_tail(right);
    } else if (both && op == op_macro) {
        trim_macro(left);
        trim_macro(right);
        if (left->length != right->length)
            return 1;
    }
    bool same_bytes = left->length == right->length &&
                      (left->length <= 0 ||
                       std::memcmp(left->bytes, right->bytes, static_cast<size_t>(left->length)) == 0);
    int32_t left_error = decode_quietly(left, 0);
    int32_t right_error = decode_quietly(right, 1);
    if (same_bytes) {
        note_p_sps(left, right);
        return 0;
    }
    if (left_error != 0 || right_error != 0)
        return 1;
    note_p_sps(left, right);
    return std::strcmp(left->text, right->text) != 0 ? 1 : 0;
}

void compare_lines(uint8_t *const *left, int32_t left_count, uint8_t *const *right,
                   int32_t right_count, int32_t daughter) {
    char line[80];
    if (left_count != right_count) {
        std::snprintf(line, sizeof line, "Line Count Error %d <-> %d", left_count, right_count);
        put_line(line);
        put_line("");
    }
    int32_t count = left_count < right_count ? left_count : right_count;
    for (int32_t i = 0; i < count; i++) {
        line_cursor l;
        cursor_setup(&l, left[i] + 2, record_length(left[i]), static_cast<uint32_t>(i) + 1);
        line_cursor r = l;
        r.bytes = right[i] + 2;
        r.length = record_length(right[i]);
        if (!lines_differ(&l, &r))
            continue;
        /* A daughter's heading carries its own line end: an empty line
           stands behind it. */
        std::snprintf(line, sizeof line, daughter ? "Line %d\n" : "Line %d", i + 1);
        put_line(line);
        print_side(&l, 0);
        print_side(&r, 1);
        put_line("");
    }
}
