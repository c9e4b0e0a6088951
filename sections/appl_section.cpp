/*
** appl_section.cpp - the /APPL section of a listing. The application
** headers come with their families; a section without headers ends at the
** next head, and a header this build does not know fails.
*/
#include "sections/appl_section.h"

#include "core/error_codes.h"
#include "text/lexer.h"

int32_t parse_appl_section(scan_ctx *ctx) {
    token_rec tok;
    peek_token(ctx, &tok);
    if (tok.code == 80 || tok.code == tok_eof)
        return 0;
    return ASC_SYNTAX_ERROR;
}
