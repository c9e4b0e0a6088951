/*
** control_text.h - small pieces the control-flow and I/O statements share:
** the keyword codes they test, "..." as three dot tokens, the closing ";",
** free names and bracketed texts taken raw from the statement's source.
*/
#ifndef VZ_INSTRUCTIONS_CONTROL_TEXT_H
#define VZ_INSTRUCTIONS_CONTROL_TEXT_H

#include <cstdint>

#include "text/scan_ctx.h"

/* Keyword codes of the words these families read or print. */
enum : int32_t {
    w_pr = 20, w_r = 21, w_ao = 31, w_go = 33, w_pulse = 34, w_ro = 36, w_do = 38,
    w_if = 40, w_jmp = 41, w_lbl = 42, w_else = 43, w_select = 44, w_timeout = 50,
    w_wait = 51, w_abort = 60, w_call = 61, w_end = 62, w_error_prog = 63, w_pause = 64,
    w_resume_prog = 65, w_run = 66, w_mm = 74, w_sec = 75, w_minus = 87, w_star = 89,
    w_plus = 91, w_equal = 82, w_constant = 102, w_disable = 103, w_enable = 104,
    w_off = 108, w_on = 109, w_start = 113, w_colon = 120, w_comma = 121, w_dollar = 122,
    w_lbracket = 124, w_lparen = 126, w_dot = 127, w_percent = 128, w_rbracket = 129,
    w_rparen = 131, w_semicolon = 132, w_quote = 133, w_concurrent = 140,
    w_endconcur = 142, w_semaphore = 144, w_message = 214, w_override = 215, w_rcv = 217,
    w_bang = 218, w_rsr = 219, w_send = 221, w_ualm = 224, w_condition = 281,
    w_end_jp = 283, w_end_326 = 326, w_end_329 = 329, w_else_read = 330, w_m_315 = 315,
    w_torq_limit = 341, w_wo = 346, w_lock = 354, w_unlock = 355, w_preg = 356,
    w_so = 373, w_uo = 374, w_monitor = 378, w_when = 379, w_stick = 381,
    w_detect = 382, w_monitor_end = 385, w_payload = 555, w_ocp = 556, w_col = 557,
    w_start_561 = 561, w_clear_resume_prog = 578, w_grind = 579, w_ar = 590,
    w_tool = 591, w_attach = 592, w_detach = 593, w_attach_597 = 597,
    w_detach_598 = 598, w_f = 654, w_m = 655, w_tc_online = 656, w_ps = 658,
    w_p_sps = 659, w_ibgn = 664, w_start_665 = 665, w_rec = 666, w_sample = 674,
    w_sample_start = 675, w_sample_end = 676, w_macro_prefix = 230,
};

/* Program name limits: a CALL or MONITOR name, and a RUN, ERROR_PROG or
   RESUME_PROG name. */
constexpr int32_t call_name_max = 12;
constexpr int32_t run_name_max = 9;

/* Code of the lookahead token. */
int32_t peek_code(scan_ctx *ctx);
/* True for the words that read as END: END, the Japanese end word, End. */
bool is_end_word(int32_t code);
/* True for the words that read as START. */
bool is_start_word(int32_t code);

/* True when the lookahead is the first dot of "...". */
bool at_dots(scan_ctx *ctx);
/* Consumes "..." (three dot tokens): 0, else 1376345. */
int32_t take_dots(scan_ctx *ctx);
/* Consumes the statement's ";": 0, else 1376345. */
int32_t take_semicolon(scan_ctx *ctx);

/* Reads the tokens of the rest of a statement whose free text is taken
   raw: up to a ";" that follows a "]", or the ";" that ends the physical
   line. Returns that ";" in source_text, or null (then 1376345) when the
   file ends first. */
int32_t read_raw_statement(scan_ctx *ctx, char **semicolon);

/* The name of a called program behind its word: an integer or real is
   1376345; "..." gives the empty name; otherwise the token's raw text up
   to the first "(", ";", blank or tab, at most max bytes. Emits 130, the
   name and its zero. raw 0 copies the token's upper-cased text instead,
   as RUN and the program-name statements do. */
int32_t parse_called_name(scan_ctx *ctx, int32_t max, bool raw);

#endif
