/*
** lexer_text.cpp - helpers on the raw bytes of the current statement, which
** parsers of free text (remarks, messages, names) read instead of tokens.
*/
#include "text/lexer.h"

#include <cstring>

void clear_source_text(scan_ctx *ctx) {
    std::memset(ctx->source_text, 0, sizeof ctx->source_text);
    ctx->source_len = 0;
}

void trim_source_text(scan_ctx *ctx) {
    /* The text is kept terminated at source_len; the last byte is forced to
       zero so a damaged length can never send the search past the buffer. */
    ctx->source_text[source_text_size - 1] = 0;
    char *semi = std::strchr(ctx->source_text, ';');
    if (!semi)
        return;
    size_t rest = std::strlen(semi + 1);
    std::memmove(ctx->source_text, semi + 1, rest + 1);
    ctx->source_len = static_cast<int32_t>(rest);
}

char *skip_blanks_forward(char *p) {
    if (*p != 0)
        p++;
    while (*p == ' ' || *p == '\t')
        p++;
    return p;
}

char *skip_blanks_back(char *p, const char *start) {
    if (p > start)
        p--;
    while (p > start && (*p == ' ' || *p == '\t'))
        p--;
    return p;
}

int32_t first_non_blank(const char *text) {
    while (*text == ' ' || *text == '\t')
        text++;
    return static_cast<signed char>(*text);
}
