/*
** motion_max_speed.cpp - JOINT_MAX_SPEED[i] = value and LINEAR_MAX_SPEED =
** value (opcode 58), both ways. The "=" and the value are plain data items
** behind the head, printed by the line loop; the head's index and its
** group prefix are read here with the index rules of the register family.
*/
#include "instructions/motion.h"

#include "core/error_codes.h"
#include "instructions/motion_tokens.h"
#include "text/decode_helpers.h"
#include "text/emit.h"
#include "text/lexer.h"

namespace {

using namespace motion_words;

constexpr int32_t err_syntax = ASC_SYNTAX_ERROR;
constexpr uint8_t kind_joint = 1;
constexpr uint8_t kind_linear = 2;
constexpr uint8_t op_assign = 100;
constexpr uint8_t op_group_mask = 242;
constexpr uint8_t tag_constant = 1;
constexpr uint8_t tag_index = 2;
constexpr uint8_t tag_register = 3;
constexpr uint8_t tag_arg_register = 62;

int32_t peek_code(scan_ctx *ctx) {
    token_rec tok;
    peek_token(ctx, &tok);
    return tok.code;
}

/* R[n] / AR[n] inside an index: an integer or "..." and the "]". */
int32_t parse_index_register(scan_ctx *ctx, uint8_t mode) {
    token_rec tok;
    if (expect_token(ctx, w_lbracket))
        return err_syntax;
    next_token(ctx, &tok);
    int32_t n = 0;
    if (tok.code == w_dot) {
        if (!motion_take_dots(ctx))
            return err_syntax;
    } else if (tok.code == tok_integer) {
        n = tok.int_value;
    } else {
        return err_syntax;
    }
    if (expect_token(ctx, w_rbracket))
        return err_syntax;
    emit_byte(ctx, tag_index);
    emit_byte(ctx, static_cast<uint8_t>(((n >> 8) & 0xFF) | mode));
    return emit_byte(ctx, static_cast<uint8_t>(n));
}

/* The inside of a bracket: "...", R[n], AR[n], or a number below 32768
   with an optional comment. */
int32_t parse_index_body(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code == w_dot) {
        if (!motion_take_dots(ctx))
            return err_syntax;
        emit_byte(ctx, tag_index);
        return emit_word(ctx, 0);
    }
    if (tok.code == w_r)
        return parse_index_register(ctx, 0x80);
    if (tok.code == w_ar)
        return parse_index_register(ctx, 0xC0);
    if (tok.code != tok_integer || tok.int_value < 0 || tok.int_value >= 32768)
        return err_syntax;
    emit_byte(ctx, tag_index);
    emit_word(ctx, static_cast<uint16_t>(tok.int_value));
    if (peek_code(ctx) == w_colon) {
        while (peek_code(ctx) != w_rbracket) {
            if (peek_code(ctx) == tok_eof)
                return err_syntax;
            next_token(ctx, &tok);
        }
    }
    return 0;
}

/* GP1,2: in front of an index: 242 and the mask of the groups that the
   program has. */
int32_t parse_group_prefix(scan_ctx *ctx) {
    token_rec tok;
    int32_t code = peek_code(ctx);
    if (code != w_gp && (code < w_gp1 || code > w_gp5))
        return 0;
    next_token(ctx, &tok);
    uint8_t mask = code == w_gp ? 0 : static_cast<uint8_t>(1 << (code - w_gp1));
    for (;;) {
        code = peek_code(ctx);
        if (code == w_rbracket)
            break;
        next_token(ctx, &tok);
        if (code == w_colon)
            break;
        if (code == w_comma)
            continue;
        if (code != tok_integer)
            return err_syntax;
        int32_t g = tok.int_value;
        if (g >= 1 && g < 9 && (ctx->group_mask & (1 << (g - 1))))
            mask = static_cast<uint8_t>(mask | 1 << (g - 1));
    }
    emit_byte(ctx, op_group_mask);
    return emit_byte(ctx, mask);
}

int32_t parse_bracket(scan_ctx *ctx) {
    int32_t rc;
    if (expect_token(ctx, w_lbracket))
        return err_syntax;
    if ((rc = parse_group_prefix(ctx)) != 0 || (rc = parse_index_body(ctx)) != 0)
        return rc;
    return expect_token(ctx, w_rbracket) ? err_syntax : 0;
}

/* A constant, with a sign or in "(-n)". */
int32_t parse_constant_value(scan_ctx *ctx) {
    token_rec tok;
    bool paren = false, minus = false;
    if (peek_code(ctx) == w_lparen) {
        next_token(ctx, &tok);
        paren = true;
    }
    if (peek_code(ctx) == w_minus) {
        next_token(ctx, &tok);
        minus = true;
    }
    next_token(ctx, &tok);
    if (tok.code == w_constant) {
        emit_byte(ctx, tag_constant);
        emit_byte(ctx, 0);
        emit_byte(ctx, 0);
    } else if (tok.code == tok_integer) {
        emit_byte(ctx, tag_constant);
        emit_intval(ctx, minus ? -tok.int_value : tok.int_value);
    } else if (tok.code == tok_real) {
        emit_byte(ctx, tag_constant);
        emit_realval(ctx, minus ? -tok.real_value : tok.real_value);
    } else {
        return err_syntax;
    }
    if (paren && expect_token(ctx, w_rparen))
        return err_syntax;
    return 0;
}

/* "= value ;" behind the head. */
int32_t parse_assigned_value(scan_ctx *ctx) {
    token_rec tok;
    if (expect_token(ctx, w_equal))
        return err_syntax;
    emit_byte(ctx, op_assign);
    int32_t code = peek_code(ctx);
    int32_t rc;
    if (code == w_dot) {
        next_token(ctx, &tok);
        if (!motion_take_dots(ctx))
            return err_syntax;
        rc = emit_byte(ctx, 0);
    } else if (code == w_r || code == w_ar) {
        next_token(ctx, &tok);
        emit_byte(ctx, code == w_r ? tag_register : tag_arg_register);
        rc = parse_bracket(ctx);
    } else {
        rc = parse_constant_value(ctx);
    }
    if (rc)
        return rc;
    return expect_token(ctx, w_semicolon) ? err_syntax : 0;
}

} // namespace

int32_t parse_joint_max_speed(scan_ctx *ctx) {
    accept_token(ctx, w_joint_max_speed);
    accept_token(ctx, w_speed_jp);
    emit_byte(ctx, OP_MAX_SPEED);
    emit_byte(ctx, kind_joint);
    int32_t rc = parse_bracket(ctx);
    if (rc)
        return rc;
    return parse_assigned_value(ctx);
}

int32_t parse_linear_max_speed(scan_ctx *ctx) {
    accept_token(ctx, w_linear_max_speed);
    accept_token(ctx, w_speed_jp);
    emit_byte(ctx, OP_MAX_SPEED);
    emit_byte(ctx, kind_linear);
    return parse_assigned_value(ctx);
}

int32_t print_max_speed(line_cursor *cur) {
    uint8_t kind = cursor_peek(cur, 1);
    cur->pos += 2;
    if (kind == kind_joint) {
        cursor_append_word(cur, w_joint_max_speed);
        uint8_t next = cursor_peek(cur, 0);
        if (next != tag_index && next != op_group_mask)
            return 0;
        cursor_append_word(cur, w_lbracket);
        if (next == op_group_mask && decode_group_mask(cur) != 0)
            return 1;
        if (decode_index(cur) != 0)
            return 1;
        cursor_append_word(cur, w_rbracket);
        return 0;
    }
    cursor_append_word(cur, w_linear_max_speed);
    if (cursor_peek(cur, 0) == op_group_mask) {
        cursor_append_word(cur, w_lbracket);
        cursor_appendf(cur, "GP%d", cursor_peek(cur, 1));
        cursor_append_word(cur, w_rbracket);
        cur->pos += 2;
    }
    return 0;
}
