/*
** registers_words.h - keyword codes and small token helpers that the
** register and expression files share among themselves. Not for other
** families: they go through registers.h.
*/
#ifndef VZ_INSTRUCTIONS_REGISTERS_WORDS_H
#define VZ_INSTRUCTIONS_REGISTERS_WORDS_H

#include <cstdint>

#include "text/scan_ctx.h"

namespace regs {

enum : int32_t {
    w_p = 5, w_pr = 20, w_r = 21, w_ai = 30, w_ao = 31, w_gi = 32, w_go = 33,
    w_ri = 35, w_ro = 36, w_di = 37, w_do = 38, w_timeout = 50,
    w_slash = 80, w_div = 81, w_equal = 82, w_greater_equal = 83, w_greater = 84,
    w_less_equal = 85, w_less = 86, w_minus = 87, w_mod = 88, w_star = 89,
    w_not_equal = 90, w_plus = 91, w_close = 100, w_constant = 102, w_disable = 103,
    w_enable = 104, w_jpos = 106, w_lpos = 107, w_off = 108, w_on = 109,
    w_reset = 112, w_start = 113, w_stop = 114, w_colon = 120, w_comma = 121,
    w_dollar = 122, w_lbracket = 124, w_lparen = 126, w_dot = 127, w_rbracket = 129,
    w_rparen = 131, w_semicolon = 132, w_quote = 133, w_gp = 143, w_semaphore = 144,
    w_gp1 = 184, w_gp5 = 188, w_bang = 218, w_rsr = 219, w_timer = 223, w_ualm = 224,
    w_uframe = 225, w_uframe_num = 226, w_utool_num = 227, w_utool = 228,
    w_pl = 241, w_open_backup = 312, w_close_backup = 313, w_high = 314,
    w_m_alt = 315, w_low = 316, w_calmatrix = 332, w_wi = 345, w_wo = 346,
    w_si = 371, w_ui = 372, w_so = 373, w_uo = 374, w_err_num = 375, w_and = 376,
    w_or = 377, w_on_plus = 386, w_off_minus = 387, w_timer_overflow = 587,
    w_ar = 590, w_f = 654, w_m = 655, w_tcp_spd = 657,
};

/* Item sets a parser accepts, as bits of item_set_of. */
enum : uint32_t {
    set_input = 1u << 0,   /* DI RI WI AI GI SI UI */
    set_output = 1u << 1,  /* DO RO WO AO GO SO UO */
    set_digital = 1u << 2, /* SI UI SO UO WI WO DI DO RI RO */
    set_analog = 1u << 3,  /* AI AO GI GO */
    set_flag = 1u << 4,    /* F M TCP_SPD: only the mixed form takes them */
};

/* Sets a keyword code belongs to (0 for none). */
uint32_t item_set_of(int32_t code);
/* 1 for a "$" word (229) or a lone "$" (122). */
inline bool is_sysvar_word(int32_t code) { return code == 229 || code == w_dollar; }
/* 1 for an integer, a real or Constant. */
inline bool is_number_word(int32_t code) { return code == 105 || code == 111 || code == w_constant; }

/* Consumes three "." tokens; 1376345 when one is missing. */
int32_t expect_dots(scan_ctx *ctx);
/* Peeks the code of the lookahead. */
int32_t peek_code(scan_ctx *ctx);
/* The next two codes without consuming them (mark, read, rewind). */
void peek_two(scan_ctx *ctx, int32_t *first, int32_t *second);
/* Emits 1 and the value of a consumed integer, real or Constant token,
   negated when asked. */
int32_t emit_number_token(scan_ctx *ctx, const token_rec *tok, bool negate);
/* The item word at the lookahead (consumed), its tag and its bracket;
   allowed is a mask of item_set_of bits, 0 for any indexed item. PR takes
   pair_mode 0 one index, 1 the pair, 2 either. */
int32_t parse_tagged_item(scan_ctx *ctx, uint32_t allowed, int32_t pair_mode);
/* "[", group prefix, index, then by pair_mode a second index, "]". */
int32_t parse_bracket_mode(scan_ctx *ctx, int32_t pair_mode);
/* Group prefix; *end gets the code that closed the list (0 when there
   was no prefix). */
int32_t parse_group_prefix_end(scan_ctx *ctx, int32_t *end);

} // namespace regs

#endif
