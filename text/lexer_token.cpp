/*
** lexer_token.cpp - the token layer: numbers and keyword lookup of one
** lexeme, the current slot with its look-back ring, compound joining of
** adjacent words, and the start of a run (language of the listing).
*/
#include "text/lexer.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "core/run_state.h"

namespace {

/* Reads a real as the platform does, narrowed to single precision; fails on
   a range error, outside +-1e37, or when nothing converts. */
bool read_real(const char *text, float *out) {
    char *end = nullptr;
    errno = 0;
    double d = std::strtod(text, &end);
    if (end == text || errno == ERANGE || d < -1e37 || d > 1e37)
        return false;
    *out = static_cast<float>(d);
    return true;
}

/* Decimal integer with the saturation of a 32-bit strtol. */
bool read_int(const char *text, int32_t *out) {
    char *end = nullptr;
    errno = 0;
    long long v = std::strtoll(text, &end, 10);
    if (end == text)
        return false;
    if (v > INT32_MAX)
        v = INT32_MAX;
    if (v < INT32_MIN)
        v = INT32_MIN;
    *out = static_cast<int32_t>(v);
    return true;
}

/* The token keeps the first 40 bytes of its lexeme (up to a zero byte). */
void copy_text(char *dst, const char *src) {
    size_t n = strnlen(src, token_text_max);
    std::memcpy(dst, src, n);
    dst[n] = 0;
}

/* Words that may carry digits glued on, tried in this order. */
constexpr int32_t split_codes[] = {10,  1,   230, 242, 243, 245, 246, 247, 248, 249,
                                   297, 298, 11,  551, 350, 553, 417, 143, 380, 390};

struct join_row {
    int16_t first;
    int16_t second;
    int16_t result;
};

/* Pairs of adjacent tokens read as one compound; tried from the top. */
constexpr join_row join_table[] = {
    {223, 653, 587}, {3, 614, 588},   {4, 614, 589},   {13, 280, 14},   {13, 281, 14},
    {342, 280, 343}, {342, 281, 343}, {15, 280, 16},   {15, 281, 16},   {63, 282, 63},
    {65, 282, 65},   {60, 283, 60},   {166, 284, 166}, {159, 285, 159}, {162, 284, 162},
    {170, 284, 170}, {174, 286, 174}, {153, 287, 294}, {294, 108, 153}, {60, 288, 151},
    {64, 288, 165},  {158, 289, 158}, {154, 290, 154}, {254, 291, 255}, {254, 292, 255},
    {270, 198, 270}, {169, 295, 168}, {109, 91, 386},  {108, 87, 387},  {173, 384, 384},
    {173, 383, 383}, {632, 628, 362}, {62, 281, 361},
};

int32_t join_of(int32_t first, int32_t second) {
    for (const join_row &r : join_table)
        if (r.first == first && r.second == second)
            return r.result;
    return -1;
}

/* Appends " " and the second word; a compound longer than the record is cut
   at the record's end rather than run past it. */
void join_text(char *text, const char *second) {
    size_t at = strnlen(text, token_text_size - 1);
    const char *parts[2] = {" ", second};
    for (const char *part : parts)
        for (size_t i = 0; part[i] && at < token_text_size - 1 && i < token_text_size; i++)
            text[at++] = part[i];
    text[at] = 0;
}

int32_t ring_step(int32_t i) { return i >= token_ring_size - 1 ? 0 : i + 1; }

/* Ring indices come from a context nobody else writes; still, a bad one
   must not index outside the ring. */
int32_t ring_clamp(int32_t i) { return (i < 0 || i >= token_ring_size) ? 0 : i; }

} // namespace

void split_word_digits(scan_ctx *ctx, char *text) {
    if (!split_digits_on || std::strpbrk(text, "0123456789") == nullptr)
        return;
    size_t text_len = std::strlen(text);
    size_t cut = 0;
    for (int32_t code : split_codes) {
        const char *word = reading_word(ctx->reading_table, static_cast<uint16_t>(code));
        if (!word)
            continue;
        size_t n = std::strlen(word);
        if (text_len > n && text[n] >= '0' && text[n] <= '9' &&
            std::strncmp(text, word, n) == 0) {
            cut = n;
            break;
        }
    }
    if (cut == 0)
        return;
    for (size_t i = text_len; i > cut; i--) {
        push_char(static_cast<unsigned char>(text[i - 1]));
        if (ctx->source_len > 0)
            ctx->source_len--;
    }
    ctx->source_text[ctx->source_len] = 0;
    text[cut] = 0;
}

void lex_token(scan_ctx *ctx, token_rec *tok) {
    lexeme_buf lx;
    int32_t kind;
    do {
        kind = scan_lexeme(ctx, &lx);
    } while (kind == lexeme_blank);
    tok->source_pos = lx.source_pos;
    if (kind == lexeme_eof) {
        tok->code = tok_eof;
        return;
    }
    tok->line = input_line_no;
    if (kind == lexeme_integer) {
        copy_text(tok->text, lx.text);
        float f = 0;
        if (!read_real(tok->text, &f) || (f >= -2147483648.0f && f <= 2147483648.0f)) {
            tok->code = read_int(tok->text, &tok->int_value) ? tok_integer : tok_unknown;
            return;
        }
    }
    if ((kind == lexeme_integer || kind == lexeme_real) && std::strcmp(lx.text, ".") != 0) {
        if (read_real(lx.text, &tok->real_value)) {
            tok->code = tok_real;
            return;
        }
    }
    copy_text(tok->text, lx.text);
    split_word_digits(ctx, tok->text);
    tok->code = keyword_search(ctx->reading_table, tok->text);
}

void advance_token(scan_ctx *ctx) {
    ctx->ring_read = ring_clamp(ctx->ring_read);
    ctx->ring_write = ring_clamp(ctx->ring_write);
    if (ctx->ring_read != ctx->ring_write) {
        ctx->current = ctx->ring[ctx->ring_read];
        ctx->ring_read = ring_step(ctx->ring_read);
        if (!ctx->marked)
            ctx->ring_mark = ctx->ring_read;
    } else if (!ctx->marked) {
        lex_token(ctx, &ctx->current);
        ctx->ring_mark = ctx->ring_read;
    } else {
        lex_token(ctx, &ctx->current);
        ctx->ring[ctx->ring_write] = ctx->current;
        ctx->ring_write = ring_step(ctx->ring_write);
        ctx->ring_read = ctx->ring_write;
    }
    ctx->have_current = 1;
}

int32_t mark_tokens(scan_ctx *ctx) {
    if (ctx->marked)
        return 1;
    ctx->marked = 1;
    ctx->ring_read = ring_clamp(ctx->ring_read);
    ctx->ring_write = ring_clamp(ctx->ring_write);
    if (ctx->have_current && ctx->ring_read != ctx->ring_write) {
        /* The current token came from ring[ring_read - 1] and later tokens
           still wait behind it (an empty statement consumed only one of the
           tokens a previous mark read ahead). Storing it at ring_write would
           replay it after them, so step back onto it instead. */
        ctx->ring_read = ctx->ring_read == 0 ? token_ring_size - 1 : ctx->ring_read - 1;
        ctx->have_current = 0;
    }
    ctx->ring_mark = ctx->ring_read;
    if (ctx->have_current) {
        ctx->ring[ctx->ring_write] = ctx->current;
        ctx->ring_write = ring_step(ctx->ring_write);
        ctx->have_current = 0;
    }
    return 0;
}

int32_t rewind_tokens(scan_ctx *ctx) {
    if (!ctx->marked)
        return 1;
    ctx->marked = 0;
    ctx->ring_read = ctx->ring_mark;
    ctx->have_current = 0;
    return 0;
}

int32_t peek_token(scan_ctx *ctx, token_rec *tok) {
    if (!ctx->have_current)
        advance_token(ctx);
    *tok = ctx->current;
    token_line_no = tok->line;
    return 0;
}

int32_t next_token(scan_ctx *ctx, token_rec *tok) {
    peek_token(ctx, tok);
    advance_token(ctx);
    for (;;) {
        int32_t joined = join_of(tok->code, ctx->current.code);
        if (joined < 0)
            break;
        tok->code = joined;
        join_text(tok->text, ctx->current.text);
        advance_token(ctx);
    }
    return 0;
}

int32_t detect_listing_language(scan_ctx *ctx) {
    if (dict_select == 0 || dict_select == 1)
        return dict_select;
    char line[512];
    while (ctx->stream && std::fgets(line, sizeof line, ctx->stream)) {
        const unsigned char *p = reinterpret_cast<const unsigned char *>(line);
        while (*p == ' ' || *p == '\t')
            p++;
        /* CR LF counts as the line end it stands for. */
        if (*p == '/' || *p == '\n' || (p[0] == '\r' && p[1] == '\n'))
            continue;
        std::rewind(ctx->stream);
        return *p < 0x80 ? 1 : 0;
    }
    return -1;
}

int32_t lexer_start(scan_ctx *ctx) {
    ctx->marked = 0;
    ctx->have_current = 0;
    ctx->ring_write = ctx->ring_mark = ctx->ring_read = 0;
    /* The context comes unzeroed, and a real token keeps the slot's old
       text: start from empty texts so none is ever read unterminated. */
    std::memset(&ctx->current, 0, sizeof ctx->current);
    std::memset(ctx->ring, 0, sizeof ctx->ring);
    clear_source_text(ctx);
    int32_t lang = detect_listing_language(ctx);
    ctx->reading_table = lang == 1 ? english_reading_table : japanese_reading_table;
    return 0;
}

void lexer_reset_run() { push_count = 0; }
