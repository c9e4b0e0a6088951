/*
** decode_line.cpp - the item loop of one line, the argument list commas,
** the printed columns, and the /MN section with its daughters.
*/
#include "bin2asc/decode_line.h"

#include "core/dictionary.h"
#include "text/decode_helpers.h"
#include "text/decode_tables.h"
#include "text/put_line.h"

int32_t p_sps_pairs[2][P_SPS_PAIRS_MAX];
int32_t p_sps_pair_count = 0;

namespace {

constexpr int32_t word_slash = 80;
constexpr int32_t word_colon = 120;
constexpr int32_t word_comma = 121;
constexpr int32_t word_lparen = 126;
constexpr int32_t word_rparen = 131;
constexpr int32_t word_semicolon = 132;
constexpr int32_t word_mn = 213;

constexpr uint8_t op_arg_list = 61;
constexpr uint8_t op_group_motion = 253;
constexpr uint8_t op_motion = 254;

/* The "(", "," and ")" of an argument list opened by opcode 61. */
struct arg_list {
    int32_t state; /* 0 none, 1 just opened, -1 inside */
    int32_t count; /* commas still to come */
};

void arg_list_step(line_cursor *cur, arg_list *list) {
    if (list->state == 0)
        return;
    if (list->state == 1) {
        cursor_append_word(cur, word_lparen);
        list->state = -1;
    } else if (list->count != 0) {
        /* A list of 0 arguments starts at -1 and never reaches 0: every
           later item gets a comma and the list never closes. */
        cursor_append_word(cur, word_comma);
        list->count--;
    } else {
        cursor_append_word(cur, word_rparen);
        list->state = 0;
    }
}

/* One item at pos: 0, or 1 and the line fails. */
int32_t decode_item(line_cursor *cur, arg_list *list, bool *two_blanks) {
    uint32_t before = cur->pos;
    uint8_t op = cursor_byte(cur, cur->pos);
    if (op == op_arg_list) {
        list->state = 1;
        list->count = cursor_peek(cur, 1) - 1;
        cur->pos += 2;
        return 0;
    }
    if (op == op_group_motion || op == op_motion)
        *two_blanks = false;
    line_printer printer = opcode_printer(op);
    if (printer == nullptr) {
        cur->pos = static_cast<uint32_t>(cur->length) + 1;
        return 1;
    }
    if (printer(cur) != 0)
        return 1;
    /* A printer that took nothing would hold the loop for ever. */
    return cur->pos > before ? 0 : 1;
}

void assemble_line(const line_cursor *cur, int32_t nested, bool two_blanks, int32_t error, char *out,
                   size_t size) {
    out[0] = 0;
    for (int32_t i = 0; i < cur->indent && i < 16; i++)
        text_append(out, size, "   ");
    text_appendf(out, size, nested ? " %4d%s" : "%4d%s", static_cast<int32_t>(cur->line_number),
                 dict_word(word_colon));
    if (two_blanks)
        text_append(out, size, "  ");
    text_append(out, size, error ? "ERROR" : cur->text);
    text_append(out, size, " ");
    text_append(out, size, dict_word(word_semicolon));
}

void print_line_record(uint8_t *rec, uint32_t number, int32_t nested, line_cursor *cur) {
    cursor_setup(cur, rec + 2, record_length(rec), number);
    decode_line(cur, 1, nested);
}

} // namespace

int32_t decode_line(line_cursor *cur, int32_t print, int32_t nested) {
    int32_t error = 0;
    bool two_blanks = true;
    arg_list list = {0, 0};
    while (cur->length > 0 && cur->pos < static_cast<uint32_t>(cur->length)) {
        error = decode_item(cur, &list, &two_blanks);
        if (error)
            break;
        arg_list_step(cur, &list);
    }
    if (print) {
        char line[LINE_TEXT_SIZE + 128];
        assemble_line(cur, nested, two_blanks, error, line, sizeof line);
        put_line(line);
    }
    return error;
}

int32_t print_mn_section() {
    char head[64];
    head[0] = 0;
    text_append(head, sizeof head, dict_word(word_slash));
    text_append(head, sizeof head, dict_word(word_mn));
    put_line(head);
    int32_t s = cur_side;
    line_cursor cur;
    for (int32_t i = 0; i < main_line_count[s]; i++) {
        print_line_record(main_lines[s][i], static_cast<uint32_t>(i) + 1, 0, &cur);
        if (cur.p_sps_number >= 1)
            print_daughter_lines(cur.p_sps_number);
    }
    return 0;
}

int32_t print_daughter_lines(int32_t number) {
    int32_t s = cur_side;
    /* Slots above daughter_top were never written in this load and hold
       0, as slot 0 does; searching them would find nothing new. */
    int32_t top = daughter_top[s] > daughter_high[s] ? daughter_top[s] : daughter_high[s];
    int32_t slot = 0;
    while (slot <= top && daughter_number[s][slot] != number)
        slot++;
    if (slot > top)
        return 1;
    line_cursor cur;
    for (int32_t j = 0; j < daughter_line_count[s][slot]; j++)
        print_line_record(daughter_lines[s][slot][j], static_cast<uint32_t>(j) + 1, 1, &cur);
    put_line("     ----- ;");
    return 0;
}

void add_p_sps_number(int32_t left, int32_t right) {
    if (p_sps_pair_count < 0 || p_sps_pair_count >= P_SPS_PAIRS_MAX)
        return;
    p_sps_pairs[0][p_sps_pair_count] = left;
    p_sps_pairs[1][p_sps_pair_count] = right;
    trace("[add_p_sps_number] %d: %d <-> %d", p_sps_pair_count, left, right);
    p_sps_pair_count++;
}
