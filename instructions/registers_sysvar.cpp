/*
** registers_sysvar.cpp - a system variable "$name" on the listing side.
** The name is taken from the raw statement text, not from tokens, so that
** brackets, dots and further "$" inside it pass whole.
*/
#include <cstring>

#include "core/error_codes.h"
#include "instructions/registers.h"
#include "instructions/registers_words.h"
#include "text/emit.h"
#include "text/lexer.h"

using namespace regs;

namespace {

constexpr int32_t sysvar_max = 31;

bool blank_behind_dollar(const char *text) {
    const char *dollar = std::strchr(text, '$');
    return dollar != nullptr && std::strchr(dollar, ' ') != nullptr;
}

/* The character that ends the name, judged at the lookahead; 0 while it
   is not known yet, -1 at the end of the file. */
int32_t delimiter_at(scan_ctx *ctx) {
    token_rec tok;
    peek_token(ctx, &tok);
    if (tok.code == tok_eof)
        return -1;
    if (tok.code == w_semicolon)
        return ';';
    if (blank_behind_dollar(ctx->source_text))
        return ' ';
    switch (tok.code) {
    case w_equal: return '=';
    case w_less: case w_less_equal: case w_not_equal: return '<';
    case w_greater: case w_greater_equal: return '>';
    case w_rparen: return ')';
    default: return 0;
    }
}

bool name_char_ok(unsigned char c) {
    if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'))
        return true;
    return std::strchr(" $*,-.@[]_", c) != nullptr && c != 0;
}

} // namespace

int32_t parse_sysvar(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    if (!is_sysvar_word(tok.code))
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, tag_sysvar);

    int32_t delim = delimiter_at(ctx);
    while (delim == 0) {
        next_token(ctx, &tok);
        delim = delimiter_at(ctx);
    }

    char copy[source_text_size];
    std::memcpy(copy, ctx->source_text, sizeof copy);
    copy[sizeof copy - 1] = 0;
    clear_source_text(ctx);

    char *start = std::strchr(copy, '$');
    if (start == nullptr || delim < 0)
        return ASC_SYNTAX_ERROR;
    char *cut = std::strrchr(copy, delim);
    if (cut == nullptr || cut < start)
        return ASC_SYNTAX_ERROR;
    while (cut > start && (cut[-1] == ' ' || cut[-1] == '\t'))
        cut--;
    int32_t count = static_cast<int32_t>(cut - start);
    if (count > sysvar_max)
        count = sysvar_max;
    for (int32_t i = 0; i < count; i++)
        if (!name_char_ok(static_cast<unsigned char>(start[i])))
            return ASC_BAD_CHAR;
    return emit_text(ctx, start, count);
}
