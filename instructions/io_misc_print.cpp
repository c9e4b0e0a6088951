/*
** io_misc_print.cpp - the binary side of the I/O family: PULSE, OVERRIDE,
** the PREG lock, Sample, OCP, SEND, TORQ_LIMIT, MONITOR, PAYLOAD, the
** DETECT switches, Grind, PS, TC_ONLINE, IBGN and TOOL, and the opcode
** switch of the miscellaneous statements.
*/
#include "instructions/io_misc.h"

#include <cstdint>

#include "core/dictionary.h"
#include "instructions/control.h"
#include "instructions/control_text.h"
#include "instructions/remark.h"
#include "text/decode_helpers.h"

namespace {

constexpr uint8_t index_tag = 2;
constexpr uint8_t op_assign_byte = 100;
constexpr uint8_t op_group_mask = 242;
constexpr uint8_t item_constant = 1;

void blank(line_cursor *cur) { cursor_append(cur, " "); }

/* "[index]" at pos. */
int32_t print_bracketed_index(line_cursor *cur) {
    cursor_append_word(cur, w_lbracket);
    if (decode_index(cur) != 0)
        return 1;
    cursor_append_word(cur, w_rbracket);
    return 0;
}

int32_t print_override(line_cursor *cur) {
    if (cursor_peek(cur, 1) != op_assign_byte)
        return 1;
    cursor_append_word(cur, w_override);
    cursor_append(cur, " = ");
    cur->pos += 2;
    /* A register value is left to the line loop. */
    if (cursor_peek(cur, 0) != item_constant)
        return 0;
    if (decode_value_arg(cur) != 0)
        return 1;
    cursor_append_word(cur, w_percent);
    return 0;
}

int32_t print_lock(line_cursor *cur, int32_t word) {
    cursor_append_word(cur, word);
    blank(cur);
    cursor_append_word(cur, w_preg);
    blank(cur);
    cur->pos += 1;
    return 0;
}

int32_t print_sample(line_cursor *cur) {
    uint8_t mode = cursor_peek(cur, 1);
    cur->pos += 2;
    if (mode == 2) {
        cursor_append_word(cur, w_sample_end);
        return 0;
    }
    if (mode != 1)
        return 1;
    cursor_append_word(cur, w_sample_start);
    return print_bracketed_index(cur);
}

int32_t print_ocp(line_cursor *cur) {
    uint8_t mode = cursor_peek(cur, 1);
    if (mode != 1 && mode != 2)
        return 1;
    cursor_append_word(cur, w_ocp);
    blank(cur);
    cursor_append_word(cur, mode == 1 ? w_start : w_end);
    cur->pos += 2;
    return 0;
}

int32_t print_send(line_cursor *cur) {
    cursor_append_word(cur, w_send);
    blank(cur);
    cur->pos += 1;
    if (decode_data_item(cur) != 0)
        return 1;
    blank(cur);
    return 0;
}

/* A direct number is the limit in tenths of a percent; a register form
   prints as the register. */
int32_t print_torq_limit(line_cursor *cur) {
    cursor_append_word(cur, w_torq_limit);
    blank(cur);
    cur->pos += 1;
    if (cursor_peek(cur, 0) != index_tag)
        return 1;
    uint8_t hi = cursor_peek(cur, 1);
    if (hi & 0x80)
        return decode_index(cur);
    int32_t tenths = cursor_be16(cur, cur->pos + 1);
    cursor_appendf(cur, "%.1f%s", tenths / 10.0, dict_word(w_percent));
    cur->pos += 3;
    return 0;
}

int32_t print_monitor(line_cursor *cur) {
    uint8_t mode = cursor_peek(cur, 1);
    if (mode > 1)
        return 1;
    cursor_append_word(cur, mode == 0 ? w_monitor : w_monitor_end);
    blank(cur);
    cur->pos += 2;
    return 0;
}

int32_t print_payload(line_cursor *cur) {
    cursor_append_word(cur, w_payload);
    cursor_append_word(cur, w_lbracket);
    cur->pos += 1;
    uint8_t next = cursor_peek(cur, 0);
    if (next == op_group_mask && decode_group_mask(cur) != 0)
        return 1;
    if (cursor_peek(cur, 0) == index_tag) {
        if (decode_index(cur) != 0)
            return 1;
    } else if (next != op_group_mask) {
        cur->pos += 2;
    }
    cursor_append_word(cur, w_rbracket);
    return 0;
}

int32_t print_detect(line_cursor *cur, int32_t word) {
    uint8_t state = cursor_peek(cur, 1);
    if (state > 1)
        return 1;
    cursor_append_word(cur, word);
    blank(cur);
    cursor_append_word(cur, w_detect);
    blank(cur);
    cursor_append_word(cur, state == 0 ? w_on : w_off);
    cur->pos += 2;
    return 0;
}

int32_t print_grind(line_cursor *cur) {
    uint8_t mode = cursor_peek(cur, 1);
    if (mode != 1 && mode != 2)
        return 1;
    cursor_append_word(cur, w_grind);
    blank(cur);
    cur->pos += 2;
    if (mode == 2) {
        cursor_append_word(cur, w_end_326);
        return 0;
    }
    cursor_append_word(cur, w_start);
    return print_bracketed_index(cur);
}

/* PS: the distance in mm and the time in thousandths, signed. */
int32_t print_ps(line_cursor *cur) {
    if (cursor_peek(cur, 1) != 1)
        return 1;
    int32_t mm = static_cast<int16_t>(cursor_be16(cur, cur->pos + 2));
    int32_t ms = static_cast<int16_t>(cursor_be16(cur, cur->pos + 4));
    cursor_append_word(cur, w_ps);
    blank(cur);
    cursor_appendf(cur, mm < 0 ? "%dmm " : "+%dmm ", mm);
    cursor_appendf(cur, ms < 0 ? "%.2fsec " : "+%.2fsec ", ms / 1000.0);
    cur->pos += 6;
    return 0;
}

} // namespace

int32_t print_misc(line_cursor *cur) {
    switch (cursor_peek(cur, 0)) {
    case op_override: return print_override(cur);
    case op_remark_text: return print_remark(cur);
    case op_message: return print_message(cur);
    case op_lock_preg: return print_lock(cur, w_lock);
    case op_unlock_preg: return print_lock(cur, w_unlock);
    case op_clear_resume: return print_clear_resume(cur);
    case op_sample: return print_sample(cur);
    case op_ocp: return print_ocp(cur);
    case op_send: return print_send(cur);
    case op_rcv: return print_rcv(cur);
    case op_torq_limit: return print_torq_limit(cur);
    case op_monitor: return print_monitor(cur);
    case op_when: return print_when(cur);
    case op_payload: return print_payload(cur);
    case op_stick_detect: return print_detect(cur, w_stick);
    case op_col_detect: return print_detect(cur, w_col);
    case op_grind: return print_grind(cur);
    case op_ps: return print_ps(cur);
    default: return 1;
    }
}

int32_t print_tc_online(line_cursor *cur) {
    cursor_append_word(cur, w_tc_online);
    blank(cur);
    cur->pos += 1;
    return 0;
}

int32_t print_pulse(line_cursor *cur) {
    uint8_t tenths = cursor_peek(cur, 1);
    cursor_append_word(cur, w_pulse);
    if (tenths != 0) {
        cursor_appendf(cur, "%s%.1f", dict_word(w_comma), tenths / 10.0);
        cursor_append_word(cur, w_sec);
    }
    cur->pos += 2;
    return 0;
}

int32_t print_ibgn(line_cursor *cur) {
    uint8_t op = cursor_peek(cur, 0);
    if (op < op_ibgn_start || op > op_ibgn_rec_end || cursor_peek(cur, 1) != index_tag)
        return 1;
    if (cur->pos != 0)
        cursor_append_word(cur, w_comma);
    cursor_append_word(cur, w_ibgn);
    blank(cur);
    if (op == op_ibgn_rec_start || op == op_ibgn_rec_end) {
        cursor_append_word(cur, w_rec);
        blank(cur);
    }
    bool start = op == op_ibgn_start || op == op_ibgn_rec_start;
    cursor_append_word(cur, start ? w_start_665 : w_end_329);
    cursor_append_word(cur, w_lbracket);
    uint16_t word = cursor_be16(cur, cur->pos + 2);
    int32_t number = word & 0x7FFF;
    if (word & label_dup_mark) {
        cursor_appendf(cur, "*%d", number);
    } else if (number == 0) {
        char dots[8];
        format_three_dots(dots, sizeof dots);
        cursor_append(cur, dots);
    } else {
        cursor_appendf(cur, "%d", number);
    }
    cursor_append_word(cur, w_rbracket);
    cur->pos += 4;
    return 0;
}

int32_t print_tool(line_cursor *cur) {
    uint8_t mode = cursor_peek(cur, 1);
    if (mode > 1)
        return 1;
    cursor_append_word(cur, w_tool);
    blank(cur);
    cursor_append_word(cur, mode == 0 ? w_attach : w_detach);
    cur->pos += 2;
    if (print_bracketed_index(cur) != 0)
        return 1;
    /* Two bytes the controller puts behind the index; a listing run does
       not write them, and the loop stops at the line's end anyway. */
    cur->pos += 2;
    return 0;
}
