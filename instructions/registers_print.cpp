/*
** registers_print.cpp - the binary side of registers and expressions:
** operators, value words, the items the line core does not decode itself
** (AR, TIMER_OVERFLOW, "$" names, ERR_NUM, quoted text), the frame and
** tool statements and CALMATRIX. A register line has no opcode of its
** own: the line loop prints its byte groups one after the other.
*/
#include <cstring>

#include "core/dictionary.h"
#include "instructions/registers.h"
#include "instructions/registers_words.h"
#include "text/decode_helpers.h"

using namespace regs;

namespace {

/* SELECT continuation lines start with "=" under the SELECT's value. */
constexpr const char *select_indent = "       ";

/* Words of the operator bytes 100..117. */
const int16_t operator_words[] = {
    w_equal, w_plus, w_minus, w_star, w_slash, w_div, w_mod, w_equal, w_not_equal,
    w_less, w_less_equal, w_greater, w_greater_equal, w_and, w_or, w_lparen, w_rparen, w_bang,
};

struct value_word {
    uint8_t sub_code;
    int16_t word;
};

const value_word value_words[] = {
    {vw_off, w_off},       {vw_on, w_on},           {vw_enable, w_enable},
    {vw_disable, w_disable}, {vw_start, w_start},   {vw_stop, w_stop},
    {vw_reset, w_reset},   {vw_lpos, w_lpos},       {vw_jpos, w_jpos},
    {vw_open, w_open_backup}, {vw_close, w_close_backup}, {vw_high, w_high},
    {vw_middle, w_m_alt},  {vw_low, w_low},         {vw_star, w_star},
    {vw_off_minus, w_off_minus}, {vw_on_plus, w_on_plus},
};

bool text_ends_in_blank(const line_cursor *cur) {
    size_t n = std::strlen(cur->text);
    return n > 0 && cur->text[n - 1] == ' ';
}

bool byte_back_is_close(const line_cursor *cur, uint32_t back) {
    return cur->pos >= back && cursor_byte(cur, cur->pos - back) == op_close_paren;
}

/* WORD[index]: an indexed item the line core has no row for. */
int32_t print_indexed(line_cursor *cur, int32_t word) {
    if (byte_back_is_close(cur, 1))
        cursor_append_word(cur, w_comma);
    cursor_append_word(cur, word);
    cursor_append_word(cur, w_lbracket);
    cur->pos += 1;
    if (decode_index(cur))
        return 1;
    cursor_append_word(cur, w_rbracket);
    return 0;
}

/* "[GP1,2]" behind UFRAME_NUM and UTOOL_NUM, from a 242 mask. */
void print_group_list(line_cursor *cur) {
    uint8_t mask = cursor_peek(cur, 1);
    cur->pos += 2;
    cursor_append_word(cur, w_lbracket);
    cursor_append_word(cur, w_gp);
    bool first = true;
    for (int bit = 0; bit < 8; bit++) {
        if (!(mask & (1u << bit)))
            continue;
        if (!first)
            cursor_append_word(cur, w_comma);
        cursor_appendf(cur, "%d", bit + 1);
        first = false;
    }
    cursor_append_word(cur, w_rbracket);
}

} // namespace

int32_t print_operator(line_cursor *cur) {
    uint8_t op = cursor_peek(cur, 0);
    if (op < op_assign || op > op_not)
        return 1;
    if (op == op_equal && cur->pos == 0) {
        cur->text[0] = 0;
        cursor_append(cur, select_indent);
    }
    if (op < op_open_paren && !text_ends_in_blank(cur))
        cursor_append(cur, " ");
    cursor_append_word(cur, operator_words[op - op_assign]);
    if (op < op_open_paren || op == op_close_paren)
        cursor_append(cur, " ");
    cur->pos += 1;
    return 0;
}

int32_t print_value_word(line_cursor *cur) {
    uint8_t sub = cursor_peek(cur, 1);
    for (const value_word &v : value_words) {
        if (v.sub_code == sub) {
            cursor_append_word(cur, v.word);
            cur->pos += 2;
            return 0;
        }
    }
    return 1;
}

int32_t print_ar_item(line_cursor *cur) { return print_indexed(cur, w_ar); }

int32_t print_timer_overflow(line_cursor *cur) { return print_indexed(cur, w_timer_overflow); }

int32_t print_quoted_text(line_cursor *cur) {
    char text[LINE_TEXT_SIZE];
    cur->pos += 1;
    decode_text(cur, text, sizeof text);
    cursor_append_word(cur, w_quote);
    cursor_append(cur, text);
    cursor_append_word(cur, w_quote);
    return 0;
}

int32_t print_sysvar(line_cursor *cur) {
    char text[LINE_TEXT_SIZE];
    if (byte_back_is_close(cur, 2))
        cursor_append_word(cur, w_comma);
    cur->pos += 1;
    decode_text(cur, text, sizeof text);
    cursor_append(cur, text);
    return 0;
}

int32_t print_err_num(line_cursor *cur) {
    cursor_append_word(cur, w_err_num);
    cur->pos += 1;
    return 0;
}

int32_t print_frame(line_cursor *cur) {
    uint8_t op = cursor_peek(cur, 0);
    if (op == tag_uframe_num || op == tag_utool_num) {
        cursor_append_word(cur, op == tag_uframe_num ? w_uframe_num : w_utool_num);
        cur->pos += 1;
        if (cursor_peek(cur, 0) == tag_group_mask)
            print_group_list(cur);
        return 0;
    }
    if (op != tag_uframe && op != tag_utool)
        return 1;
    cursor_append(cur, " ");
    cursor_append_word(cur, op == tag_uframe ? w_uframe : w_utool);
    cursor_append_word(cur, w_lbracket);
    cur->pos += 1;
    if (cursor_peek(cur, 0) == tag_group_mask)
        decode_group_mask(cur);
    if (decode_index(cur))
        return 1;
    cursor_append_word(cur, w_rbracket);
    return 0;
}

int32_t print_calmatrix(line_cursor *cur) {
    cursor_append_word(cur, w_calmatrix);
    cur->pos += 1;
    return 0;
}
