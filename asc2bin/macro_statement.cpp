/*
** macro_statement.cpp - a statement that no parser took may be the name of
** a macro of the cell. The name is taken raw from the source text, so its
** case and characters are the listing's own.
*/
#include "asc2bin/statement_loop.h"

#include <cstring>

#include "core/config.h"
#include "text/emit.h"
#include "text/lexer.h"

namespace {

constexpr int32_t not_a_macro = 100;
constexpr int32_t macro_name_max = 32;

bool blank(char c) { return c == ' ' || c == '\t'; }

/* The name between the first ":" (a line number) or the start and the
   next ";" or "(", without blanks at either end. */
int32_t macro_name(scan_ctx *ctx, char *out) {
    const char *p = std::strchr(ctx->source_text, ':');
    p = p ? p + 1 : ctx->source_text;
    while (blank(*p))
        p++;
    const char *end = p;
    while (*end && *end != ';' && *end != '(')
        end++;
    while (end > p && blank(end[-1]))
        end--;
    int32_t n = static_cast<int32_t>(end - p);
    if (n > macro_name_max)
        n = macro_name_max;
    std::memcpy(out, p, static_cast<size_t>(n));
    out[n] = 0;
    return n;
}

} // namespace

int32_t parse_macro_statement(scan_ctx *ctx) {
    token_rec tok;
    do
        next_token(ctx, &tok);
    while (tok.code != 132 && tok.code != 126 && tok.code != tok_eof);
    if (tok.code == tok_eof)
        return not_a_macro;
    char name[macro_name_max + 1];
    int32_t n = macro_name(ctx, name);
    int32_t row = macro_find(name);
    if (row < 0)
        return not_a_macro;
    /* Argument lists are parsed as CALL parses them. */
    if (tok.code == 126 && call_argument_parser == nullptr)
        return not_a_macro;
    emit_byte(ctx, 135);
    emit_byte(ctx, static_cast<uint8_t>(macro_table[row].number));
    emit_text(ctx, name, n);
    if (tok.code == 126)
        return call_argument_parser(ctx);
    return 0;
}
