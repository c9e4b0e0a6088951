/*
** registers_expr.cpp - arithmetic expressions on the listing side: the
** plain form with its operator limits, and the parenthesised mixed form
** that also carries compares and AND/OR and has no limits.
*/
#include "core/error_codes.h"
#include "instructions/registers.h"
#include "instructions/registers_words.h"
#include "text/emit.h"
#include "text/lexer.h"

using namespace regs;

namespace {

constexpr int32_t arith_operator_max = 5;

/* Operator byte of an arithmetic word, or -1. */
int32_t arith_op_of(int32_t code) {
    switch (code) {
    case w_plus: return op_plus;
    case w_minus: return op_minus;
    case w_star: return op_times;
    case w_slash: return op_divide;
    case w_div: return op_div;
    case w_mod: return op_mod;
    default: return -1;
    }
}

bool additive(int32_t op) { return op == op_plus || op == op_minus; }

/* What the mixed parser saw last. */
enum mixed_state {
    seen_start, seen_operand, seen_arith, seen_compare, seen_logic, seen_open, seen_close,
    seen_not, seen_negative, seen_dots,
};

bool is_mixed_item_word(int32_t code) {
    return code == w_r || code == w_ar || is_sysvar_word(code) ||
           (item_set_of(code) & (set_digital | set_analog | set_flag)) != 0;
}

/* "(" inside the mixed form: a "(-n)" constant, else the operator. */
int32_t mixed_open(scan_ctx *ctx, mixed_state *last) {
    token_rec tok;
    next_token(ctx, &tok);
    if (peek_code(ctx) != w_minus) {
        *last = seen_open;
        return emit_byte(ctx, op_open_paren);
    }
    next_token(ctx, &tok);
    next_token(ctx, &tok);
    if (!is_number_word(tok.code))
        return ASC_SYNTAX_ERROR;
    emit_number_token(ctx, &tok, true);
    *last = seen_negative;
    return expect_token(ctx, w_rparen);
}

/* One step of the mixed loop. *done is set when the expression ended. */
int32_t mixed_step(scan_ctx *ctx, mixed_state *last, bool *done) {
    token_rec tok;
    accept_token(ctx, w_colon);
    int32_t code = peek_code(ctx);
    bool after_operand = *last == seen_operand;
    bool after_close = *last == seen_close;
    bool after_op = *last == seen_compare || *last == seen_arith || *last == seen_logic;

    if (code == w_pr || is_mixed_item_word(code)) {
        if (after_operand)
            return ASC_SYNTAX_ERROR;
        if (after_close) {
            *done = true;
            return 0;
        }
        *last = seen_operand;
        if (is_sysvar_word(code))
            return parse_sysvar(ctx);
        return parse_tagged_item(ctx, 0, 1);
    }
    if (arith_op_of(code) >= 0) {
        if (*last == seen_arith)
            return ASC_SYNTAX_ERROR;
        next_token(ctx, &tok);
        *last = seen_arith;
        return emit_byte(ctx, static_cast<uint8_t>(arith_op_of(code)));
    }
    if (compare_op_of(code) >= 0 || code == w_and || code == w_or) {
        if (after_op)
            return ASC_SYNTAX_ERROR;
        next_token(ctx, &tok);
        bool logic = code == w_and || code == w_or;
        *last = logic ? seen_logic : seen_compare;
        if (logic)
            return emit_byte(ctx, code == w_and ? op_and : op_or);
        return emit_byte(ctx, static_cast<uint8_t>(compare_op_of(code)));
    }
    if (is_number_word(code) || code == w_on || code == w_off || code == w_timer ||
        code == w_timer_overflow) {
        if (after_operand)
            return ASC_SYNTAX_ERROR;
        *last = seen_operand;
        if (code == w_timer || code == w_timer_overflow)
            return parse_tagged_item(ctx, 0, 0);
        next_token(ctx, &tok);
        if (tok.code == w_on || tok.code == w_off)
            return emit_value_word(ctx, tok.code == w_on ? vw_on : vw_off);
        if (!is_number_word(tok.code)) /* ON+ or OFF- joined on reading */
            return ASC_SYNTAX_ERROR;
        return emit_number_token(ctx, &tok, false);
    }
    switch (code) {
    case w_lparen:
        if (after_close)
            return ASC_SYNTAX_ERROR;
        return mixed_open(ctx, last);
    case w_rparen:
        if (*last == seen_not || *last == seen_arith || *last == seen_logic)
            return ASC_SYNTAX_ERROR;
        next_token(ctx, &tok);
        *last = seen_close;
        return emit_byte(ctx, op_close_paren);
    case w_bang:
        next_token(ctx, &tok);
        *last = seen_not;
        return emit_byte(ctx, op_not);
    case w_dot:
        if (after_close) {
            *done = true;
            return 0;
        }
        *last = seen_dots;
        if (expect_dots(ctx))
            return ASC_SYNTAX_ERROR;
        return emit_byte(ctx, tag_unset);
    case w_comma:
        next_token(ctx, &tok);
        *done = true;
        return 0;
    case w_semicolon:
    case w_timeout:
        if (!after_close)
            return ASC_SYNTAX_ERROR;
        *done = true;
        return 0;
    default:
        return ASC_SYNTAX_ERROR;
    }
}

} // namespace

int32_t parse_operand(scan_ctx *ctx) {
    accept_token(ctx, w_colon);
    int32_t code = peek_code(ctx);
    if (code == w_r || code == w_ar || code == w_timer || code == w_timer_overflow)
        return parse_tagged_item(ctx, 0, 0);
    if (code == w_pr)
        return parse_tagged_item(ctx, 0, 1);
    if (item_set_of(code) & (set_input | set_output))
        return parse_tagged_item(ctx, set_input | set_output, 0);
    if (code == w_dot) {
        if (expect_dots(ctx))
            return ASC_SYNTAX_ERROR;
        return emit_byte(ctx, tag_unset);
    }
    if (code == w_lparen || code == w_minus || is_number_word(code))
        return parse_constant(ctx);
    return ASC_SYNTAX_ERROR;
}

int32_t parse_arith(scan_ctx *ctx) {
    token_rec tok;
    int32_t rc = parse_operand(ctx);
    int32_t count = 0;
    int32_t first_op = -1;
    while (rc == 0) {
        int32_t op = arith_op_of(peek_code(ctx));
        if (op < 0)
            return 0;
        if (count >= arith_operator_max)
            return ASC_TOO_MANY_ARITH;
        if (first_op >= 0 && additive(first_op) != additive(op))
            return ASC_BAD_OPERATOR_MIX;
        if (first_op < 0)
            first_op = op;
        next_token(ctx, &tok);
        emit_byte(ctx, static_cast<uint8_t>(op));
        count++;
        rc = parse_operand(ctx);
    }
    return rc;
}

int32_t parse_mixed(scan_ctx *ctx) {
    mixed_state last = seen_start;
    bool done = false;
    int32_t rc = 0;
    while (rc == 0 && !done)
        rc = mixed_step(ctx, &last, &done);
    return rc;
}
