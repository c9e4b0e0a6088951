/*
** control_text.cpp - shared pieces of the control-flow and I/O parsers:
** dots, semicolons, raw statement text and called program names.
*/
#include "instructions/control_text.h"

#include <cstring>

#include "core/error_codes.h"
#include "text/emit.h"
#include "text/lexer.h"

namespace {

constexpr uint8_t op_prog_name = 130;

/* A name ends where a call's argument list, the statement or a blank
   begins. Line ends count as blanks: a name never spans lines. */
bool ends_name(char c) {
    return c == 0 || c == '(' || c == ';' || c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool inside_source(const scan_ctx *ctx, const char *p) {
    return p >= ctx->source_text && p < ctx->source_text + source_text_size;
}

} // namespace

int32_t peek_code(scan_ctx *ctx) {
    token_rec tok;
    peek_token(ctx, &tok);
    return tok.code;
}

bool is_end_word(int32_t code) {
    return code == w_end || code == w_end_jp || code == w_end_326 || code == w_end_329;
}

bool is_start_word(int32_t code) {
    return code == w_start || code == w_start_561 || code == w_start_665;
}

bool at_dots(scan_ctx *ctx) { return peek_code(ctx) == w_dot; }

int32_t take_dots(scan_ctx *ctx) {
    for (int i = 0; i < 3; i++)
        if (expect_token(ctx, w_dot) != 0)
            return ASC_SYNTAX_ERROR;
    return 0;
}

int32_t take_semicolon(scan_ctx *ctx) {
    return expect_token(ctx, w_semicolon) != 0 ? ASC_SYNTAX_ERROR : 0;
}

int32_t read_raw_statement(scan_ctx *ctx, char **semicolon) {
    token_rec tok, next;
    int32_t prev = -1;
    for (;;) {
        next_token(ctx, &tok);
        if (tok.code == tok_eof)
            return ASC_SYNTAX_ERROR;
        if (tok.code == w_semicolon) {
            if (prev == w_rbracket)
                break;
            peek_token(ctx, &next);
            if (next.code == tok_eof || next.line != tok.line)
                break;
        }
        prev = tok.code;
    }
    /* A statement longer than the raw text buffer has lost its end. */
    if (!inside_source(ctx, tok.source_pos) || *tok.source_pos != ';')
        return ASC_SYNTAX_ERROR;
    *semicolon = tok.source_pos;
    return 0;
}

int32_t parse_called_name(scan_ctx *ctx, int32_t max, bool raw) {
    token_rec tok;
    peek_token(ctx, &tok);
    if (tok.code == tok_integer || tok.code == tok_real)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_prog_name);
    if (tok.code == w_dot) {
        int32_t rc = take_dots(ctx);
        emit_byte(ctx, 0);
        return rc;
    }
    next_token(ctx, &tok);
    const char *text = tok.text;
    if (raw && tok.code != tok_eof && inside_source(ctx, tok.source_pos))
        text = tok.source_pos;
    char name[token_text_size];
    int32_t n = 0;
    while (n < max && n < token_text_size - 1 && !ends_name(text[n])) {
        name[n] = text[n];
        n++;
    }
    name[n] = 0;
    if (tok.code == tok_eof)
        n = 0;
    return emit_text(ctx, name, n);
}
