/*
** registers_cond.cpp - condition expressions on the listing side: one
** comparison by the kind of its left side, and chains of comparisons
** joined by one kind of AND/OR.
*/
#include "core/error_codes.h"
#include "instructions/registers.h"
#include "instructions/registers_words.h"
#include "text/emit.h"
#include "text/lexer.h"

using namespace regs;

namespace {

constexpr int32_t connector_max = 4;

int32_t parse_compare(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    int32_t op = compare_op_of(tok.code);
    if (op < 0)
        return ASC_SYNTAX_ERROR;
    return emit_byte(ctx, static_cast<uint8_t>(op));
}

/* Right side of a register, analogue or ERR_NUM compare. */
int32_t parse_numeric_right(scan_ctx *ctx) {
    int32_t code = peek_code(ctx);
    if (code == w_r)
        return parse_register_item(ctx);
    if (code == w_ar)
        return parse_ar_item(ctx);
    return parse_constant(ctx);
}

/* Right side of a digital compare. ON+ and OFF- arrive joined on reading
   in English and as words of their own in Japanese. */
int32_t parse_digital_right(scan_ctx *ctx, int32_t for_if) {
    token_rec tok;
    int32_t code = peek_code(ctx);
    if (item_set_of(code) & set_digital)
        return parse_io_item(ctx);
    if (code == w_r)
        return parse_register_item(ctx);
    next_token(ctx, &tok);
    switch (tok.code) {
    case w_on: return emit_value_word(ctx, vw_on);
    case w_off: return emit_value_word(ctx, vw_off);
    case w_on_plus:
        if (for_if == 1)
            return ASC_SYNTAX_ERROR;
        return emit_value_word(ctx, vw_on_plus);
    case w_off_minus:
        if (for_if == 1)
            return ASC_SYNTAX_ERROR;
        return emit_value_word(ctx, vw_off_minus);
    default:
        return ASC_SYNTAX_ERROR;
    }
}

/* PL[i] = [pattern] or PL[j]; only = and <> compare pallets. */
int32_t parse_pallet_compare(scan_ctx *ctx) {
    token_rec tok;
    int32_t rc = parse_tagged_item(ctx, 0, 0);
    if (rc)
        return rc;
    next_token(ctx, &tok);
    if (tok.code != w_equal && tok.code != w_not_equal)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, tok.code == w_equal ? op_equal : op_not_equal);
    int32_t code = peek_code(ctx);
    if (code == w_lbracket)
        return parse_pl_pattern(ctx);
    if (code == w_pl)
        return parse_tagged_item(ctx, 0, 0);
    return ASC_SYNTAX_ERROR;
}

} // namespace

int32_t parse_condition(scan_ctx *ctx, int32_t for_if) {
    token_rec tok;
    accept_token(ctx, w_colon);
    int32_t code = peek_code(ctx);
    int32_t rc;
    if (code == w_pl)
        return parse_pallet_compare(ctx);
    if (code == w_r || is_sysvar_word(code) || (item_set_of(code) & set_analog)) {
        rc = is_sysvar_word(code) ? parse_sysvar(ctx) : parse_tagged_item(ctx, 0, 0);
    } else if (code == w_err_num) {
        if (for_if == 1)
            return ASC_SYNTAX_ERROR;
        next_token(ctx, &tok);
        rc = emit_byte(ctx, tag_err_num);
    } else if (item_set_of(code) & set_digital) {
        rc = parse_io_item(ctx);
        if (rc == 0)
            rc = parse_compare(ctx);
        return rc ? rc : parse_digital_right(ctx, for_if);
    } else {
        return ASC_SYNTAX_ERROR;
    }
    if (rc == 0)
        rc = parse_compare(ctx);
    return rc ? rc : parse_numeric_right(ctx);
}

int32_t parse_condition_chain(scan_ctx *ctx, int32_t for_if) {
    token_rec tok;
    int32_t rc = parse_condition(ctx, for_if);
    int32_t count = 0;
    int32_t kind = 0;
    while (rc == 0) {
        int32_t code = peek_code(ctx);
        if (code != w_and && code != w_or)
            return 0;
        if (count >= connector_max)
            return ASC_TOO_MANY_AND_OR;
        if (kind != 0 && kind != code)
            return ASC_BAD_AND_OR;
        kind = code;
        next_token(ctx, &tok);
        emit_byte(ctx, code == w_and ? op_and : op_or);
        count++;
        rc = parse_condition(ctx, for_if);
    }
    return rc;
}
