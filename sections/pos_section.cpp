/*
** pos_section.cpp - the /POS section of a listing. Position records come
** with the motion family; a section without records ends at the next head.
*/
#include "sections/pos_section.h"

#include "core/error_codes.h"
#include "text/lexer.h"

int32_t parse_pos_section(scan_ctx *ctx) {
    token_rec tok;
    peek_token(ctx, &tok);
    if (tok.code == 80 || tok.code == tok_eof)
        return 0;
    return ASC_POS_SYNTAX;
}
