/*
** registers.h - registers and expressions, both ways: data items, index
** brackets, group prefixes, constants, system variables, arithmetic,
** mixed and condition expressions, the register assignments, TIMER,
** TIMER_OVERFLOW, the frame and tool statements and CALMATRIX.
**
** Listing side. Every parser takes the scan context, returns 0 or the
** first error code, and emits its bytes into the line buffer through the
** emitters (nothing while encoding is off). "Consumes" names the tokens a
** parser reads; on entry its first token is still the lookahead.
**
** Binary side. The line loop prints a register line byte group by byte
** group; the printers below serve the opcodes named on each. Opcodes of
** this family that the line core serves itself: 0 and 1 (decode_value_arg)
** and the indexed data items of decode_data_item.
*/
#ifndef VZ_INSTRUCTIONS_REGISTERS_H
#define VZ_INSTRUCTIONS_REGISTERS_H

#include <cstdint>

#include "text/line_cursor.h"
#include "text/scan_ctx.h"

/* ---- data item tags (first byte of an item) ---- */
enum : uint8_t {
    tag_unset = 0, tag_constant = 1, tag_index = 2, tag_r = 3, tag_pr = 4, tag_p = 5,
    tag_pl = 6, tag_pl_triple = 7, tag_di = 10, tag_ri = 11, tag_ai = 12, tag_wi = 13,
    tag_do = 15, tag_ro = 16, tag_ao = 17, tag_wo = 18, tag_rsr = 20, tag_ualm = 21,
    tag_gi = 22, tag_go = 23, tag_timer = 25, tag_sysvar = 26, tag_semaphore = 29,
    tag_uframe_num = 32, tag_uframe = 33, tag_utool_num = 34, tag_utool = 35, tag_si = 36,
    tag_ui = 37, tag_so = 38, tag_uo = 39, tag_err_num = 40, tag_f = 41, tag_m = 42,
    tag_value_word = 50, tag_timer_overflow = 57, tag_ar = 62, tag_quoted = 63,
    tag_tcp_spd = 66, tag_calmatrix = 142, tag_group_mask = 242,
};

/* ---- operator bytes ---- */
enum : uint8_t {
    op_assign = 100, op_plus = 101, op_minus = 102, op_times = 103, op_divide = 104,
    op_div = 105, op_mod = 106, op_equal = 107, op_not_equal = 108, op_less = 109,
    op_less_equal = 110, op_greater = 111, op_greater_equal = 112, op_and = 113,
    op_or = 114, op_open_paren = 115, op_close_paren = 116, op_not = 117,
};

/* ---- value words: opcode 50 and a sub-code ---- */
enum : uint8_t {
    vw_off = 0, vw_on = 1, vw_enable = 2, vw_disable = 3, vw_start = 4, vw_stop = 5,
    vw_reset = 6, vw_lpos = 7, vw_jpos = 8, vw_open = 9, vw_close = 10, vw_high = 17,
    vw_middle = 18, vw_low = 19, vw_star = 20, vw_off_minus = 21, vw_on_plus = 22,
};

/* ---- small pieces ---- */

/* Item tag of a keyword code (R 3, PR 4, DI 10, ..., AR 62), or -1 for a
   word that names no indexed item. Both codes of M (655, 315) give 42. */
int32_t item_tag_of(int32_t code);
/* Comparison byte (107..112) of a keyword code, or -1. */
int32_t compare_op_of(int32_t code);
/* Emits 50 and the sub-code. */
int32_t emit_value_word(scan_ctx *ctx, uint8_t sub_code);

/* ---- listing side: items and indexes ---- */

/* Inside a bracket, behind "[": "...", R[n], R[...], AR[n], AR[...], or a
   direct number below 32768 with an optional ":comment" that is dropped.
   Emits 2 and the 16-bit word (R adds 32768, AR sets the top two bits).
   Stops in front of the closing "]". */
int32_t parse_index(scan_ctx *ctx);
/* "[", optional group prefix, parse_index, "]". */
int32_t parse_bracket(scan_ctx *ctx);
/* "[", optional group prefix, parse_index, ",", parse_index, "]". */
int32_t parse_bracket_pair(scan_ctx *ctx);
/* GP (or GP1..GP5), group numbers with ",", ended by ":" or "]" (both
   consumed): emits 242 and the mask. Anything else: nothing consumed,
   nothing emitted. */
int32_t parse_group_prefix(scan_ctx *ctx);
/* A constant: integer, real or Constant, with an optional "-" or a
   parenthesised "(-n)". Emits 1 and the value bytes. */
int32_t parse_constant(scan_ctx *ctx);
/* DI RI WI AI GI SI UI: consumes the word, emits the tag and the bracket. */
int32_t parse_input_item(scan_ctx *ctx);
/* DO RO WO AO GO SO UO: as parse_input_item. */
int32_t parse_output_item(scan_ctx *ctx);
/* The digital set SI UI SO UO WI WO DI DO RI RO. */
int32_t parse_io_item(scan_ctx *ctx);
/* The analogue and group set AI AO GI GO. */
int32_t parse_analog_item(scan_ctx *ctx);
/* R[...]: consumes R and the bracket, emits 3 and the index. */
int32_t parse_register_item(scan_ctx *ctx);
/* AR[...]: consumes AR and the bracket, emits 62 and the index. */
int32_t parse_ar_item(scan_ctx *ctx);
/* Any indexed item by its word (R, PR, P, DI ... TIMER, TIMER_OVERFLOW,
   AR, F, M, TCP_SPD ...): the tag and the bracket; PR takes one index or
   an item and element pair. */
int32_t parse_data_item(scan_ctx *ctx);
/* A "$" word: emits 26 and the raw variable text (at most 31 characters,
   159 for a character outside letters, digits and " $*,-.@[]_") and 0.
   Clears the raw statement text behind it. */
int32_t parse_sysvar(scan_ctx *ctx);
/* The pallet pattern "[row,col,layer]": emits 7 and three words. */
int32_t parse_pl_pattern(scan_ctx *ctx);

/* ---- listing side: expressions ---- */

/* One operand of an arithmetic expression. */
int32_t parse_operand(scan_ctx *ctx);
/* Operand, then up to five "+ -" or "* / DIV MOD" operators and operands;
   189 for mixed classes, 191 for a sixth operator. */
int32_t parse_arith(scan_ctx *ctx);
/* The free parenthesised form with compares, AND/OR, "(", ")" and "!";
   ends in front of ";" or TIMEOUT after ")", or behind a ",". */
int32_t parse_mixed(scan_ctx *ctx);
/* One comparison; for_if 1 refuses ERR_NUM, ON+ and OFF-. */
int32_t parse_condition(scan_ctx *ctx, int32_t for_if);
/* Comparisons joined by one kind of AND/OR: 188 mixed, 190 a fifth. */
int32_t parse_condition_chain(scan_ctx *ctx, int32_t for_if);

/* ---- listing side: statements (";" consumed unless said) ---- */

/* R[...]= or PR[...]= ... ;  (dispatch rows R and PR, also IF actions) */
int32_t parse_assignment(scan_ctx *ctx);
/* $name = ... ;  (dispatch rows "$" and "$word", also IF actions) */
int32_t parse_sysvar_assignment(scan_ctx *ctx);
/* ... = mixed ;  or ... ;  (dispatch row ".") */
int32_t parse_unset_assignment(scan_ctx *ctx);
/* TIMER[i]=START|STOP|RESET ;  (row TIMER; a Japanese TIMER_OVERFLOW,
   which peeks as TIMER, is taken here too) */
int32_t parse_timer_statement(scan_ctx *ctx);
/* TIMER_OVERFLOW[i]=ON|OFF|R[...]|AR[...]|... ; the ";" is left to the
   dispatcher (row TIMER_OVERFLOW). */
int32_t parse_timer_overflow_statement(scan_ctx *ctx);
/* UFRAME[i]=PR[j] ;  UTOOL[i]=PR[j] ; */
int32_t parse_frame_assignment(scan_ctx *ctx);
/* UFRAME_NUM[GP..]=n ;  UTOOL_NUM[GP..]=n ;  n is R[..], AR[..] or 0..15 */
int32_t parse_frame_number(scan_ctx *ctx);
/* CALMATRIX ; */
int32_t parse_calmatrix(scan_ctx *ctx);

/* ---- binary side: printers (pos on the opcode, 0 or 1) ---- */

int32_t print_value_word(line_cursor *cur);     /* 50 */
int32_t print_operator(line_cursor *cur);       /* 100..117 (107 first on a line: SELECT continuation) */
int32_t print_ar_item(line_cursor *cur);        /* 62 */
int32_t print_timer_overflow(line_cursor *cur); /* 57 */
int32_t print_quoted_text(line_cursor *cur);    /* 63 */
int32_t print_sysvar(line_cursor *cur);         /* 26 */
int32_t print_err_num(line_cursor *cur);        /* 40 */
int32_t print_frame(line_cursor *cur);          /* 32..35 */
int32_t print_calmatrix(line_cursor *cur);      /* 142 */

#endif
