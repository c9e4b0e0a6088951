/*
** control_call.cpp - the listing side of CALL and its argument list (which
** macro calls share), RUN, ERROR_PROG and RESUME_PROG.
*/
#include "instructions/control.h"

#include <cstring>

#include "core/error_codes.h"
#include "instructions/control_text.h"
#include "instructions/registers.h"
#include "text/emit.h"
#include "text/lexer.h"

namespace {

constexpr uint8_t op_assign_byte = 100;
/* Room for the text of one quoted argument; the line limit refuses a
   longer one anyway. */
constexpr int32_t quoted_max = 254;

bool real_char(char c, char before) {
    if ((c >= '0' && c <= '9') || c == '.' || c == 'E' || c == 'e')
        return true;
    return (c == '+' || c == '-') && (before == 'E' || before == 'e');
}

/* A real token keeps no text of its own: its lexeme is taken from the
   raw statement text, upper-cased as the lexer does for words. */
void real_text(const scan_ctx *ctx, const token_rec *tok, char *out, size_t size) {
    size_t n = 0;
    const char *p = tok->source_pos;
    const char *end = ctx->source_text + source_text_size;
    if (p < ctx->source_text || p >= end)
        p = end;
    char before = 0;
    while (p < end && n + 1 < size && real_char(*p, before)) {
        before = *p;
        out[n++] = (*p == 'e') ? 'E' : *p;
        p++;
    }
    out[n] = 0;
}

/* 'text': opcode 63, the texts of the tokens between the quotes joined
   (so without the blanks between them), and a zero. */
int32_t parse_quoted_argument(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok); /* the opening quote */
    emit_byte(ctx, op_arg_string);
    char text[quoted_max + 1];
    int32_t n = 0;
    for (;;) {
        next_token(ctx, &tok);
        if (tok.code == tok_eof || tok.code == w_semicolon)
            return ASC_SYNTAX_ERROR;
        if (tok.code == w_quote)
            break;
        char piece[token_text_size];
        if (tok.code == tok_real)
            real_text(ctx, &tok, piece, sizeof piece);
        else
            std::memcpy(piece, tok.text, sizeof piece);
        piece[token_text_size - 1] = 0;
        for (const char *p = piece; *p && *p != '\'' && n < quoted_max; p++)
            text[n++] = *p;
    }
    text[n] = 0;
    return emit_text(ctx, text, n);
}

int32_t parse_argument(scan_ctx *ctx) {
    switch (peek_code(ctx)) {
    case w_r:
        return parse_register_item(ctx);
    case w_ar:
        return parse_ar_item(ctx);
    case w_quote:
        return parse_quoted_argument(ctx);
    case w_dot: {
        int32_t rc = take_dots(ctx);
        emit_byte(ctx, 0);
        return rc;
    }
    case tok_integer:
    case tok_real:
    case w_constant:
    case w_minus:
    case w_lparen:
        return parse_constant(ctx);
    default:
        return ASC_SYNTAX_ERROR;
    }
}

/* Behind an argument: "," for the next one, ")" for the end; other
   tokens between arguments are stepped over. 1 at ")". */
int32_t argument_separator(scan_ctx *ctx, int32_t *rc) {
    token_rec tok;
    accept_token(ctx, w_colon);
    for (;;) {
        next_token(ctx, &tok);
        if (tok.code == w_comma)
            return 0;
        if (tok.code == w_rparen)
            return 1;
        if (tok.code == tok_eof || tok.code == w_semicolon) {
            *rc = ASC_SYNTAX_ERROR;
            return 1;
        }
    }
}

} // namespace

int32_t parse_call_arguments(scan_ctx *ctx) {
    emit_byte(ctx, op_arg_list);
    emit_byte(ctx, 0);
    int32_t count_at = ctx->line_len - 1;
    int32_t count = 0;
    int32_t rc = 0;
    if (peek_code(ctx) == w_rparen) {
        accept_token(ctx, w_rparen);
    } else {
        do {
            rc = parse_argument(ctx);
            if (rc != 0)
                return rc;
            count++;
        } while (argument_separator(ctx, &rc) == 0);
        if (rc != 0)
            return rc;
    }
    emit_byte(ctx, op_arg_list_end);
    return emit_patch(ctx, count_at - ctx->line_len, static_cast<uint8_t>(count));
}

int32_t parse_macro_arguments(scan_ctx *ctx) {
    int32_t rc = parse_call_arguments(ctx);
    return rc != 0 ? rc : take_semicolon(ctx);
}

int32_t parse_call_clause(scan_ctx *ctx) {
    /* A called name such as ABC1 must stay whole: no digit splitting while
       the name is lexed, which happens as CALL is consumed. */
    uint32_t saved_split = split_digits_on;
    split_digits_on = 0;
    int32_t rc = expect_token(ctx, w_call) != 0 ? ASC_SYNTAX_ERROR : 0;
    token_rec tok;
    peek_token(ctx, &tok);
    split_digits_on = saved_split;
    if (rc != 0)
        return rc;
    emit_byte(ctx, op_call);
    rc = parse_called_name(ctx, call_name_max, true);
    if (rc != 0)
        return rc;
    if (peek_code(ctx) == w_lparen) {
        accept_token(ctx, w_lparen);
        return parse_call_arguments(ctx);
    }
    return 0;
}

int32_t parse_call(scan_ctx *ctx) {
    int32_t rc = parse_call_clause(ctx);
    return rc != 0 ? rc : take_semicolon(ctx);
}

int32_t parse_run(scan_ctx *ctx) {
    if (expect_token(ctx, w_run) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_run);
    int32_t rc = parse_called_name(ctx, run_name_max, false);
    return rc != 0 ? rc : take_semicolon(ctx);
}

int32_t parse_prog_name(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code != w_error_prog && tok.code != w_resume_prog)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, tok.code == w_error_prog ? op_error_prog : op_resume_prog);
    if (expect_token(ctx, w_equal) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_assign_byte);
    int32_t rc = parse_called_name(ctx, run_name_max, false);
    return rc != 0 ? rc : take_semicolon(ctx);
}
