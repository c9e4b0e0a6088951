/*
** section_driver.cpp - the /PROG head and the section loop. The first error
** of any section parser ends the run; a parser's result 1 ends the listing
** as "/END" does, and counts as success.
*/
#include "asc2bin/section_driver.h"

#include <cstring>

#include "asc2bin/statement_loop.h"
#include "binfmt/image.h"
#include "core/alloc.h"
#include "core/messages.h"
#include "core/run_state.h"
#include "sections/appl_section.h"
#include "sections/attr_parse.h"
#include "sections/pos_section.h"
#include "text/lexer.h"

scan_ctx *active_ctx = nullptr;

namespace {

enum : int32_t {
    w_slash = 80, w_prog = 216, w_attr = 152, w_appl = 150, w_mn = 213, w_pos = 198, w_end = 62,
    w_job = 339, w_process = 338, w_macro = 340, w_cond = 389,
};

int32_t subtype_of(int32_t code) {
    switch (code) {
    case w_job: return 1;
    case w_process: return 2;
    case w_macro: return 3;
    case w_cond: return 4;
    default: return 0;
    }
}

/* /PROG NAME [subtype]: the name may come as a keyword and an integer
   (ACC10 lexes as ACC, 10) and is put together again here. */
int32_t parse_prog_head(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code != w_slash)
        return ASC_BAD_PROG_SECTION;
    next_token(ctx, &tok);
    if (tok.code != w_prog)
        return ASC_BAD_PROG_SECTION;
    next_token(ctx, &tok);
    if (tok.code == 105 || tok.code == 111)
        return ASC_BAD_PROG_SECTION;
    char name[64] = {0};
    std::memcpy(name, tok.text, 8);
    name[8] = 0;
    peek_token(ctx, &tok);
    if (tok.code == 105) {
        next_token(ctx, &tok);
        std::strncat(name, tok.text, sizeof name - std::strlen(name) - 1);
    }
    name[8] = 0;
    for (const char *p = name; *p; p++)
        if (!name_char_ok(static_cast<signed char>(*p)))
            return ASC_BAD_CHAR;
    image_set_name(name);
    std::memset(ctx->prog_name, 0, sizeof ctx->prog_name);
    std::memcpy(ctx->prog_name, name, sizeof ctx->prog_name);
    peek_token(ctx, &tok);
    ctx->subtype = static_cast<uint8_t>(subtype_of(tok.code));
    image_set_subtype(ctx->subtype);
    if (ctx->subtype != 0)
        next_token(ctx, &tok);
    ctx->prog_no = 1;
    return 0;
}

int32_t parse_section(scan_ctx *ctx, int32_t word) {
    switch (word) {
    case w_attr: return parse_attr_section(ctx);
    case w_appl: return parse_appl_section(ctx);
    case w_mn: return parse_mn_section(ctx);
    case w_pos: return parse_pos_section(ctx);
    case w_end: return 1;
    default: return ASC_BAD_SECTION;
    }
}

} // namespace

int32_t name_char_ok(int32_t c) {
    unsigned u = static_cast<unsigned>(c) & 0xFF;
    if (c == '_' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'))
        return 1;
    return (c < 0 && u >= 0xA6 && u <= 0xDF) ? 1 : 0;
}

int32_t parse_listing() {
    scan_ctx *ctx = static_cast<scan_ctx *>(lmalloc(sizeof(scan_ctx)));
    if (!ctx)
        return 283;
    std::memset(ctx, 0, sizeof *ctx);
    active_ctx = ctx;
    ctx->stream = source_stream;
    ctx->control_r_mode = 0;
    int32_t rc = lexer_start(ctx);
    if (rc != 0)
        return rc;
    ctx->encoding_on = 1;
    ctx->group_mask = 1;
    rc = parse_prog_head(ctx);
    if (rc != 0)
        return rc;
    token_rec tok;
    for (;;) {
        next_token(ctx, &tok);
        if (tok.code == 210)
            break;
        if (tok.code != w_slash) {
            rc = ASC_BAD_SECTION;
            break;
        }
        clear_source_text(ctx);
        ctx->line_len = 0;
        ctx->pal_index = 0;
        ctx->pal_group = 0;
        next_token(ctx, &tok);
        rc = parse_section(ctx, tok.code);
        if (rc != 0)
            break;
    }
    return rc == 1 ? 0 : rc;
}
