/*
** control_print.cpp - the binary side of control flow: jumps and labels,
** calls and program names (with the P-SPS daughter reference), the IF,
** SELECT and ELSE heads, waits, the single words, MESSAGE, RCV, WHEN and
** macro calls.
*/
#include "instructions/control.h"

#include <cstdlib>
#include <cstring>

#include "core/dictionary.h"
#include "instructions/control_text.h"
#include "text/decode_helpers.h"

int32_t macro_number_shown = 0;

namespace {

constexpr uint8_t index_tag = 2;
constexpr int32_t daughter_dots = 8;
constexpr int32_t daughter_name_len = 12;

/* JMP, CALL, RUN and the program-name statements stand behind a ","
   unless they open the line. */
void comma_unless_first(line_cursor *cur) {
    if (cur->pos != 0)
        cursor_append_word(cur, w_comma);
}

/* "........nnnn": the name a P-SPS clause gives its daughter. */
bool daughter_name(const char *name) {
    return std::strlen(name) == daughter_name_len &&
           std::strncmp(name, "........", daughter_dots) == 0;
}

/* The zero-terminated text behind the opcode and its fixed bytes. */
void read_text_at(line_cursor *cur, uint32_t skip, char *out, size_t size) {
    cur->pos += skip;
    decode_text(cur, out, size);
}

/* The name that a 129 stands in front of, without moving pos. */
void peek_called_name(const line_cursor *cur, char *out, size_t size) {
    size_t n = 0;
    uint32_t i = cur->pos + 2;
    if (cursor_byte(cur, cur->pos + 1) == op_prog_name)
        for (uint8_t c; (c = cursor_byte(cur, i)) != 0 && n + 1 < size; i++)
            out[n++] = static_cast<char>(c);
    out[n] = 0;
}

int32_t print_call_head(line_cursor *cur) {
    char name[LINE_TEXT_SIZE];
    peek_called_name(cur, name, sizeof name);
    comma_unless_first(cur);
    if (daughter_name(name)) {
        cursor_append_word(cur, w_p_sps);
        cur->p_sps_number = std::atoi(name + daughter_dots);
    } else {
        cursor_append_word(cur, w_call);
        cursor_append(cur, " ");
    }
    cur->pos += 1;
    return 0;
}

int32_t print_prog_name(line_cursor *cur) {
    char name[LINE_TEXT_SIZE];
    read_text_at(cur, 1, name, sizeof name);
    if (daughter_name(name))
        return 0;
    if (name[0] == 0) {
        char dots[8];
        format_three_dots(dots, sizeof dots);
        cursor_append(cur, dots);
    } else {
        cursor_append(cur, name);
    }
    return 0;
}

/* LBL[n], LBL[*n] or LBL[...], with ":comment" when there is one. The
   duplicate mark is cleared in the line as it is printed. */
int32_t print_label_definition(line_cursor *cur) {
    if (cursor_peek(cur, 1) != index_tag)
        return 1;
    uint8_t hi = cursor_peek(cur, 2);
    int32_t number = ((hi & 0x7F) << 8) | cursor_peek(cur, 3);
    cursor_set_byte(cur, cur->pos + 2, static_cast<uint8_t>(hi & 0x7F));
    char comment[LINE_TEXT_SIZE];
    read_text_at(cur, 4, comment, sizeof comment);
    cursor_append_word(cur, w_lbl);
    cursor_append_word(cur, w_lbracket);
    if (number == 0 && !(hi & 0x80)) {
        char dots[8];
        format_three_dots(dots, sizeof dots);
        cursor_append(cur, dots);
    } else if (hi & 0x80) {
        cursor_appendf(cur, "*%d", number);
    } else {
        cursor_appendf(cur, "%d", number);
    }
    if (comment[0] != 0) {
        cursor_append_word(cur, w_colon);
        cursor_append(cur, comment);
    }
    cursor_append_word(cur, w_rbracket);
    return 0;
}

/* LBL[index] and a blank: the target of JMP, SKIP and RCV. */
int32_t print_label_reference(line_cursor *cur) {
    cursor_append_word(cur, w_lbl);
    cursor_append_word(cur, w_lbracket);
    cur->pos += 1;
    if (decode_index(cur) != 0)
        return 1;
    cursor_append_word(cur, w_rbracket);
    cursor_append(cur, " ");
    return 0;
}

int32_t print_word_then_blank(line_cursor *cur, int32_t word, bool comma) {
    if (comma)
        comma_unless_first(cur);
    cursor_append_word(cur, word);
    cursor_append(cur, " ");
    cur->pos += 1;
    return 0;
}

int32_t print_bare_word(line_cursor *cur, int32_t word) {
    cursor_append_word(cur, word);
    cur->pos += 1;
    return 0;
}

} // namespace

int32_t print_control(line_cursor *cur) {
    switch (cursor_peek(cur, 0)) {
    case op_error_prog: return print_word_then_blank(cur, w_error_prog, true);
    case op_resume_prog: return print_word_then_blank(cur, w_resume_prog, true);
    case op_jmp: return print_word_then_blank(cur, w_jmp, true);
    case op_lbl_ref: return print_label_reference(cur);
    case op_lbl_def: return print_label_definition(cur);
    case op_call: return print_call_head(cur);
    case op_prog_name: return print_prog_name(cur);
    case op_pause: return print_bare_word(cur, w_pause);
    case op_abort: return print_bare_word(cur, w_abort);
    case op_end: return print_bare_word(cur, w_end);
    case op_run: return print_word_then_blank(cur, w_run, true);
    default: return 1;
    }
}

int32_t print_branch(line_cursor *cur) {
    switch (cursor_peek(cur, 0)) {
    case op_if: return print_word_then_blank(cur, w_if, false);
    case op_select: return print_word_then_blank(cur, w_select, false);
    case op_else:
        cursor_append(cur, "        ");
        return print_word_then_blank(cur, w_else, false);
    default: return 1;
    }
}

int32_t print_wait(line_cursor *cur) {
    uint8_t op = cursor_peek(cur, 0);
    if (op == op_timeout) {
        if (cursor_peek(cur, 1) != op_lbl_ref)
            return 1;
        cursor_append(cur, " ");
        cursor_append_word(cur, w_timeout);
        cursor_append_word(cur, w_comma);
        cursor_append_word(cur, w_lbl);
        cursor_append_word(cur, w_lbracket);
        cur->pos += 2;
        if (decode_index(cur) != 0)
            return 1;
        cursor_append_word(cur, w_rbracket);
        return 0;
    }
    if (op != op_wait_time && op != op_wait_cond)
        return 1;
    cursor_append_word(cur, w_wait);
    cursor_append(cur, " ");
    cur->pos += 1;
    if (op == op_wait_cond)
        return 0;
    if (cursor_peek(cur, 0) != index_tag)
        return 1;
    uint16_t word = cursor_be16(cur, cur->pos + 1);
    if (word & 0x8000)
        return decode_index(cur);
    cursor_appendf(cur, "%9.2f", word / 100.0);
    cursor_append_word(cur, w_lparen);
    cursor_append_word(cur, w_sec);
    cursor_append_word(cur, w_rparen);
    cur->pos += 3;
    return 0;
}

int32_t print_macro_call(line_cursor *cur) {
    int32_t number = cursor_peek(cur, 1);
    char name[LINE_TEXT_SIZE];
    read_text_at(cur, 2, name, sizeof name);
    if (macro_number_shown)
        cursor_appendf(cur, "%s%d ", dict_word(w_macro_prefix), number);
    cursor_append(cur, name);
    return 0;
}

int32_t print_clear_resume(line_cursor *cur) { return print_bare_word(cur, w_clear_resume_prog); }

int32_t print_message(line_cursor *cur) {
    char text[LINE_TEXT_SIZE];
    read_text_at(cur, 1, text, sizeof text);
    cursor_append_word(cur, w_message);
    cursor_append_word(cur, w_lbracket);
    if (text[0] == 0)
        format_three_dots(text, sizeof text);
    cursor_append(cur, text);
    cursor_append_word(cur, w_rbracket);
    return 0;
}

int32_t print_rcv(line_cursor *cur) {
    cursor_append_word(cur, w_rcv);
    cursor_append(cur, " ");
    cur->pos += 1;
    if (decode_data_item(cur) != 0)
        return 1;
    cursor_append(cur, " ");
    return 0;
}

int32_t print_when(line_cursor *cur) { return print_word_then_blank(cur, w_when, false); }
