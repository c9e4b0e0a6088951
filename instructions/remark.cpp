/*
** remark.cpp - "!text" both ways. The text is taken raw from the source
** line, not from tokens, so blanks and punctuation inside it survive.
*/
#include "instructions/remark.h"

#include <cstring>

#include "text/emit.h"
#include "text/lexer.h"

namespace {

constexpr int32_t remark_max = 32;
constexpr uint8_t op_remark = 30;

} // namespace

int32_t parse_remark(scan_ctx *ctx) {
    token_rec tok;
    int32_t saved_keep = keep_newlines;
    keep_newlines = 1;
    next_token(ctx, &tok); /* "!" */
    int32_t bang_line = tok.line;
    /* Read through the physical line: the lookahead then stands on the
       next line's first token. */
    peek_token(ctx, &tok);
    while (tok.code != 210 && tok.line == bang_line) {
        next_token(ctx, &tok);
        peek_token(ctx, &tok);
    }
    keep_newlines = saved_keep;

    char *text = std::strchr(ctx->source_text, '!');
    char *start = text ? text + 1 : ctx->source_text + ctx->source_len;
    char *end = start;
    while (*end && *end != '\n')
        end++;
    char *last_semi = nullptr;
    for (char *p = start; p < end; p++)
        if (*p == ';')
            last_semi = p;
    if (last_semi)
        end = last_semi;
    while (end > start && (end[-1] == ' ' || end[-1] == '\t' || end[-1] == '\r'))
        end--;
    int32_t count = static_cast<int32_t>(end - start);
    if (count > remark_max)
        count = remark_max;
    emit_byte(ctx, op_remark);
    int32_t rc = emit_text(ctx, start, count);
    /* Semicolons past the kept text must not cut the raw text either:
       trimming after the statement has to find the line's last one. The
       next line's first token came in with its line feed kept; later
       statements read that text as the lexer usually leaves it. */
    for (char *p = start; p < end; p++)
        if (*p == ';')
            *p = ' ';
    for (char *p = end; *p; p++)
        if (*p == '\n')
            *p = ' ';
    return rc;
}

int32_t print_remark(line_cursor *cur) {
    uint32_t p = cur->pos + 1;
    size_t used = std::strlen(cur->text);
    if (used + 1 < sizeof cur->text)
        cur->text[used++] = '!';
    while (p < static_cast<uint32_t>(cur->length) && cur->bytes[p] != 0) {
        if (used + 1 < sizeof cur->text)
            cur->text[used++] = static_cast<char>(cur->bytes[p]);
        p++;
    }
    cur->text[used] = 0;
    cur->pos = p + 1; /* the closing zero */
    return 0;
}
