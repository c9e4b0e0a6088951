/*
** registers_assign.cpp - the register statements on the listing side:
** R and PR assignments with their three modes, system variable and unset
** assignments, TIMER and TIMER_OVERFLOW, the frame and tool statements
** and CALMATRIX.
*/
#include "core/error_codes.h"
#include "instructions/registers.h"
#include "instructions/registers_words.h"
#include "text/emit.h"
#include "text/lexer.h"

using namespace regs;

namespace {

constexpr int32_t position_operator_max = 5;
constexpr int32_t frame_number_max = 15;

enum assign_mode { mode_register = 1, mode_pr_element = 2, mode_position = 3 };

int32_t expect_assign(scan_ctx *ctx) {
    if (expect_token(ctx, w_equal))
        return ASC_SYNTAX_ERROR;
    return emit_byte(ctx, op_assign);
}

int32_t expect_end(scan_ctx *ctx) { return expect_token(ctx, w_semicolon); }

/* PR[i,j] on the left is an element, PR[i] the whole register: the left
   side is tried as a pair with encoding off, then read again. */
assign_mode pr_mode(scan_ctx *ctx) {
    token_rec tok;
    uint8_t saved = ctx->encoding_on;
    ctx->encoding_on = 0;
    mark_tokens(ctx);
    next_token(ctx, &tok);
    int32_t rc = parse_bracket_pair(ctx);
    rewind_tokens(ctx);
    ctx->encoding_on = saved;
    return rc == 0 ? mode_pr_element : mode_position;
}

/* Right side of R[..]= and PR[i,j]=: "(" not followed by "-" is the mixed
   form, so that R[1]=(-3) stays a constant. */
int32_t parse_value_side(scan_ctx *ctx) {
    int32_t first, second;
    peek_two(ctx, &first, &second);
    if (first == w_lparen && second != w_minus)
        return parse_mixed(ctx);
    if (is_sysvar_word(first))
        return parse_sysvar(ctx);
    return parse_arith(ctx);
}

int32_t parse_position_operand(scan_ctx *ctx) {
    token_rec tok;
    int32_t code = peek_code(ctx);
    if (code == w_p || code == w_pr)
        return parse_tagged_item(ctx, 0, 0);
    if (code == w_jpos || code == w_lpos) {
        next_token(ctx, &tok);
        return emit_value_word(ctx, code == w_jpos ? vw_jpos : vw_lpos);
    }
    return ASC_SYNTAX_ERROR;
}

int32_t parse_position_expr(scan_ctx *ctx) {
    token_rec tok;
    int32_t rc = parse_position_operand(ctx);
    int32_t count = 0;
    while (rc == 0) {
        int32_t code = peek_code(ctx);
        if (code != w_plus && code != w_minus)
            return 0;
        if (count >= position_operator_max)
            return ASC_TOO_MANY_ARITH;
        next_token(ctx, &tok);
        emit_byte(ctx, code == w_plus ? op_plus : op_minus);
        count++;
        rc = parse_position_operand(ctx);
    }
    return rc;
}

/* PR[i]= a position expression, a system variable, UFRAME[] or UTOOL[]. */
int32_t parse_position_side(scan_ctx *ctx) {
    int32_t code = peek_code(ctx);
    if (code == w_p || code == w_pr || code == w_jpos || code == w_lpos)
        return parse_position_expr(ctx);
    if (is_sysvar_word(code))
        return parse_sysvar(ctx);
    if (code == w_uframe || code == w_utool)
        return parse_tagged_item(ctx, 0, 0);
    return ASC_SYNTAX_ERROR;
}

/* ON, OFF, R[], AR[] or "..." behind TIMER_OVERFLOW[i]=. */
int32_t parse_overflow_value(scan_ctx *ctx) {
    token_rec tok;
    int32_t code = peek_code(ctx);
    if (code == w_r || code == w_ar)
        return parse_tagged_item(ctx, 0, 0);
    if (code == w_dot) {
        if (expect_dots(ctx))
            return ASC_SYNTAX_ERROR;
        return emit_byte(ctx, tag_unset);
    }
    next_token(ctx, &tok);
    if (tok.code == w_on || tok.code == w_off)
        return emit_value_word(ctx, tok.code == w_on ? vw_on : vw_off);
    return ASC_SYNTAX_ERROR;
}

/* TIMER_OVERFLOW[i]=value behind its word, without the ";". */
int32_t parse_overflow_body(scan_ctx *ctx) {
    emit_byte(ctx, tag_timer_overflow);
    int32_t rc = parse_bracket(ctx);
    if (rc == 0)
        rc = expect_assign(ctx);
    return rc ? rc : parse_overflow_value(ctx);
}

} // namespace

int32_t parse_assignment(scan_ctx *ctx) {
    token_rec tok;
    int32_t code = peek_code(ctx);
    assign_mode mode;
    if (code == w_r)
        mode = mode_register;
    else if (code == w_pr)
        mode = pr_mode(ctx);
    else
        return ASC_SYNTAX_ERROR;

    next_token(ctx, &tok);
    emit_byte(ctx, code == w_r ? tag_r : tag_pr);
    int32_t rc = mode == mode_pr_element ? parse_bracket_pair(ctx) : parse_bracket(ctx);
    if (rc == 0)
        rc = expect_assign(ctx);
    if (rc == 0)
        rc = mode == mode_position ? parse_position_side(ctx) : parse_value_side(ctx);
    return rc ? rc : expect_end(ctx);
}

int32_t parse_sysvar_assignment(scan_ctx *ctx) {
    token_rec tok;
    int32_t rc = parse_sysvar(ctx);
    if (rc == 0)
        rc = expect_assign(ctx);
    if (rc)
        return rc;
    int32_t first, second;
    peek_two(ctx, &first, &second);
    if (first == w_pr) {
        rc = parse_tagged_item(ctx, 0, 2);
    } else if (first == w_jpos || first == w_lpos) {
        next_token(ctx, &tok);
        rc = emit_value_word(ctx, first == w_jpos ? vw_jpos : vw_lpos);
    } else if (first == w_r || first == w_ar) {
        rc = parse_tagged_item(ctx, 0, 0);
    } else if (first == w_lparen && second != w_minus) {
        rc = parse_mixed(ctx);
    } else {
        rc = parse_constant(ctx);
    }
    return rc ? rc : expect_end(ctx);
}

int32_t parse_unset_assignment(scan_ctx *ctx) {
    token_rec tok;
    if (expect_dots(ctx))
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, tag_unset);
    int32_t code = peek_code(ctx);
    if (code == w_semicolon) {
        next_token(ctx, &tok);
        return 0;
    }
    if (code != w_equal)
        return ASC_SYNTAX_ERROR;
    int32_t rc = expect_assign(ctx);
    if (rc == 0)
        rc = parse_mixed(ctx);
    return rc ? rc : expect_end(ctx);
}

int32_t parse_timer_statement(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    int32_t rc;
    if (tok.code == w_timer_overflow) {
        rc = parse_overflow_body(ctx);
        return rc ? rc : expect_end(ctx);
    }
    if (tok.code != w_timer)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, tag_timer);
    rc = parse_bracket(ctx);
    if (rc == 0)
        rc = expect_assign(ctx);
    if (rc)
        return rc;
    next_token(ctx, &tok);
    switch (tok.code) {
    case w_start: rc = emit_value_word(ctx, vw_start); break;
    case w_stop: rc = emit_value_word(ctx, vw_stop); break;
    case w_reset: rc = emit_value_word(ctx, vw_reset); break;
    default: return ASC_SYNTAX_ERROR;
    }
    return rc ? rc : expect_end(ctx);
}

int32_t parse_timer_overflow_statement(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code != w_timer_overflow)
        return ASC_SYNTAX_ERROR;
    return parse_overflow_body(ctx);
}

int32_t parse_frame_assignment(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code != w_uframe && tok.code != w_utool)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, tok.code == w_uframe ? tag_uframe : tag_utool);
    int32_t rc = parse_bracket(ctx);
    if (rc == 0)
        rc = expect_assign(ctx);
    if (rc)
        return rc;
    if (peek_code(ctx) != w_pr)
        return ASC_SYNTAX_ERROR;
    rc = parse_tagged_item(ctx, 0, 0);
    return rc ? rc : expect_end(ctx);
}

int32_t parse_frame_number(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code != w_uframe_num && tok.code != w_utool_num)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, tok.code == w_uframe_num ? tag_uframe_num : tag_utool_num);
    int32_t rc;
    if (peek_code(ctx) == w_lbracket) {
        next_token(ctx, &tok);
        int32_t end = 0;
        rc = parse_group_prefix_end(ctx, &end);
        if (rc)
            return rc;
        if (end == 0 || (end == w_colon && expect_token(ctx, w_rbracket)))
            return ASC_SYNTAX_ERROR;
    }
    rc = expect_assign(ctx);
    if (rc)
        return rc;
    int32_t code = peek_code(ctx);
    if (code == w_r || code == w_ar) {
        rc = parse_tagged_item(ctx, 0, 0);
    } else {
        next_token(ctx, &tok);
        if (tok.code != tok_integer || tok.int_value > frame_number_max)
            return ASC_SYNTAX_ERROR;
        emit_byte(ctx, tag_constant);
        rc = emit_intval(ctx, tok.int_value);
    }
    return rc ? rc : expect_end(ctx);
}

int32_t parse_calmatrix(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code != w_calmatrix)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, tag_calmatrix);
    return expect_end(ctx);
}
