/*
** motion_tokens.h - keyword codes the motion parsers and printers share,
** and the small token helpers of the family's own files.
*/
#ifndef VZ_INSTRUCTIONS_MOTION_TOKENS_H
#define VZ_INSTRUCTIONS_MOTION_TOKENS_H

#include <cstdint>

#include "text/scan_ctx.h"

namespace motion_words {

enum : int32_t {
    w_c = 0, w_cnt = 1, w_fine = 2, w_j = 3, w_l = 4, w_p = 5, w_a_jp = 6, w_offset = 13,
    w_pr = 20, w_r = 21, w_cm = 70, w_deg = 71, w_inch = 72, w_min = 73, w_mm = 74, w_sec = 75,
    w_slash = 80, w_equal = 82, w_minus = 87, w_constant = 102, w_colon = 120, w_comma = 121,
    w_lbracket = 124, w_lparen = 126, w_dot = 127, w_percent = 128, w_rbracket = 129,
    w_rparen = 131, w_semicolon = 132, w_gp = 143, w_gp1 = 184, w_gp5 = 188, w_pal = 249,
    w_a = 306, w_tool_offset = 342, w_cd = 380, w_weld_speed = 388, w_independent = 391,
    w_simultaneous = 392, w_group_jp = 393, w_independent_gp = 394, w_simultaneous_gp = 395,
    w_speed_jp = 417, w_joint_max_speed = 588, w_linear_max_speed = 589, w_ar = 590,
    w_msec = 662,
};

} // namespace motion_words

/* Takes the two "." that follow a first one: true for "...". */
bool motion_take_dots(scan_ctx *ctx);

#endif
