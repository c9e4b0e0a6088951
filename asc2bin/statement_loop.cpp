/*
** statement_loop.cpp - the /MN section. Each statement is encoded as it is
** read; labels and positions are kept by number, so nothing is patched
** later. A statement no parser takes is tried once more as a macro call.
*/
#include "asc2bin/statement_loop.h"

#include "asc2bin/dispatch.h"
#include "binfmt/image.h"
#include "core/messages.h"
#include "instructions/control.h"
#include "text/emit.h"
#include "text/lexer.h"

namespace {

enum : int32_t {
    w_slash = 80, w_minus = 87, w_colon = 120, w_semicolon = 132, w_when = 379, w_condition = 281,
};

constexpr int32_t max_condition_lines = 11;
constexpr int32_t max_line_bytes = 255;

struct statement_flags {
    bool no_store = false;  /* the line is not stored (daughter close) */
    bool keep_main = false; /* the line opened a daughter: it stays in main */
};

bool is_motion_word(int32_t code) {
    return code == 0 || code == 3 || code == 4 || code == 6 || code == 306;
}

/* "1:" in front of a statement: dropped, lines take their numbers from
   their order. Two integers are no line number. */
void skip_line_number(scan_ctx *ctx) {
    token_rec first, second;
    mark_tokens(ctx);
    next_token(ctx, &first);
    next_token(ctx, &second);
    rewind_tokens(ctx);
    if (first.code == tok_integer && second.code == w_colon) {
        next_token(ctx, &first);
        next_token(ctx, &second);
    }
}

/* 3 to 100 minus signs and ";" close the open daughter. */
int32_t close_daughter(scan_ctx *ctx, statement_flags &flags) {
    token_rec tok;
    int32_t count = 0;
    peek_token(ctx, &tok);
    while (tok.code == w_minus) {
        next_token(ctx, &tok);
        count++;
        peek_token(ctx, &tok);
    }
    if (count < 3 || count > 100)
        return ASC_SYNTAX_ERROR;
    if (expect_token(ctx, w_semicolon) != 0)
        return ASC_SYNTAX_ERROR;
    if (ctx->daughter_no == 0)
        return 196;
    ctx->daughter_no = 0;
    flags.no_store = true;
    return 0;
}

int32_t run_statement(scan_ctx *ctx, int32_t code, statement_flags &flags) {
    token_rec tok;
    if (code == w_semicolon) {
        next_token(ctx, &tok);
        return emit_byte(ctx, 255);
    }
    if (code == w_minus)
        return close_daughter(ctx, flags);
    bool motion = is_motion_word(code);
    if (motion && ctx->daughter_no >= 1)
        return 195;
    const dispatch_row *row = find_statement_parser(code);
    if (!row)
        return ASC_UNDEF_INSTRUCTION;
    int32_t rc = row->parse(ctx);
    if (rc != 0)
        return rc;
    if (row->semicolon_by_dispatcher && expect_token(ctx, w_semicolon) != 0)
        return ASC_SYNTAX_ERROR;
    if (motion && ctx->daughter_no >= 1)
        flags.keep_main = true;
    return 0;
}

int32_t store_line(scan_ctx *ctx, const statement_flags &flags) {
    if (flags.no_store)
        return 0;
    if (ctx->line_overflow || ctx->line_len > max_line_bytes)
        return IMAGE_LINE_TOO_LONG;
    if (ctx->daughter_no != 0 && !flags.keep_main)
        return daughter_line_append(ctx->line_buf, ctx->line_len, ctx->daughter_no);
    return line_append(ctx->line_buf, ctx->line_len);
}

} // namespace

int32_t (*call_argument_parser)(scan_ctx *ctx) = parse_macro_arguments;

int32_t parse_mn_section(scan_ctx *ctx) {
    ctx->line_len = 0;
    ctx->pal_index = 0;
    ctx->pal_group = 0;
    ctx->daughter_no = 0;
    ctx->daughter_last = 0;
    image_daughter_high = 0;
    int32_t condition_lines = 0;
    token_rec tok;
    for (;;) {
        peek_token(ctx, &tok);
        /* End of file ends the section too, so that a listing without a
           closing section head still reaches the driver's end. */
        if (tok.code == w_slash || tok.code == tok_eof)
            break;
        ctx->encoding_on = 1;
        skip_line_number(ctx);
        emit_reset(ctx);
        ctx->first_pos = ctx->second_pos = ctx->pos_flag = 0;
        statement_flags flags;
        peek_token(ctx, &tok);
        int32_t rc;
        if (tok.code == w_when || tok.code == w_condition) {
            if (ctx->subtype != 4 || condition_lines >= max_condition_lines)
                return ASC_SYNTAX_ERROR;
            rc = parse_condition_statement(ctx);
            if (rc != 0)
                return rc;
            condition_lines++;
        } else if (ctx->subtype == 4) {
            return ASC_SYNTAX_ERROR;
        } else {
            rc = run_statement(ctx, tok.code, flags);
            if (rc != 0) {
                emit_reset(ctx);
                flags = statement_flags();
                if (parse_macro_statement(ctx) != 0)
                    return rc;
            }
        }
        rc = store_line(ctx, flags);
        if (rc != 0)
            return rc;
        peek_token(ctx, &tok);
        trim_source_text(ctx);
    }
    return ctx->daughter_no >= 1 ? 194 : 0;
}
