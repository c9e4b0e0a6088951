/*
** lexer_parse.cpp - the token checks that every statement parser shares:
** expect or accept a keyword, read a signed integer within a range or a
** signed real, and the KEY ":" value ";" form of the header sections.
*/
#include "text/lexer.h"

namespace {

constexpr int32_t err_syntax = 1376345;
constexpr int32_t err_out_of_range = 107;
constexpr int32_t err_expect_semicolon = 134;
constexpr int32_t err_expect_colon = 135;
constexpr int32_t err_expect_real = 166;
constexpr int32_t err_expect_int = 167;

constexpr int32_t code_minus = 87;
constexpr int32_t code_colon = 120;
constexpr int32_t code_semicolon = 132;

/* Reads one token; a leading minus is consumed and reported. */
bool next_signed(scan_ctx *ctx, token_rec *tok) {
    next_token(ctx, tok);
    if (tok->code != code_minus)
        return false;
    next_token(ctx, tok);
    return true;
}

/* Skips the rest of a KEY ":" value clause up to and with its ";". */
int32_t finish_clause(scan_ctx *ctx) {
    token_rec tok;
    do {
        next_token(ctx, &tok);
    } while (tok.code != code_semicolon && tok.code != tok_eof);
    return tok.code == code_semicolon ? 0 : err_expect_semicolon;
}

int32_t start_clause(scan_ctx *ctx, int32_t key) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code != key)
        return err_syntax;
    next_token(ctx, &tok);
    return tok.code == code_colon ? 0 : err_expect_colon;
}

} // namespace

int32_t expect_token(scan_ctx *ctx, uint16_t code) {
    token_rec tok;
    next_token(ctx, &tok);
    return tok.code == code ? 0 : err_syntax;
}

int32_t accept_token(scan_ctx *ctx, int32_t code) {
    token_rec tok;
    peek_token(ctx, &tok);
    if (tok.code == code)
        next_token(ctx, &tok);
    return 0;
}

int32_t parse_int_range(scan_ctx *ctx, token_rec *tok, int32_t *out, int32_t min,
                        int32_t max) {
    bool minus = next_signed(ctx, tok);
    if (tok->code != tok_integer)
        return err_expect_int;
    /* Integer tokens are never negative, so the negation cannot overflow. */
    int32_t value = minus ? -tok->int_value : tok->int_value;
    if (value < min || value > max)
        return err_out_of_range;
    *out = value;
    return 0;
}

int32_t parse_real_signed(scan_ctx *ctx, token_rec *tok, float *out) {
    bool minus = next_signed(ctx, tok);
    if (tok->code != tok_real)
        return err_expect_real;
    *out = minus ? -tok->real_value : tok->real_value;
    return 0;
}

int32_t parse_key_int(scan_ctx *ctx, int32_t key, int32_t *out, int32_t min, int32_t max) {
    int32_t rc = start_clause(ctx, key);
    if (rc)
        return rc;
    token_rec tok;
    rc = parse_int_range(ctx, &tok, out, min, max);
    if (rc)
        return rc;
    return finish_clause(ctx);
}

int32_t parse_key_real(scan_ctx *ctx, int32_t key, float *out) {
    int32_t rc = start_clause(ctx, key);
    if (rc)
        return rc;
    token_rec tok;
    rc = parse_real_signed(ctx, &tok, out);
    if (rc)
        return rc;
    return finish_clause(ctx);
}
