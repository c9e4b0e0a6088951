/*
** dispatch.h - the one table that maps a statement's first token to its
** family parser. Families register their rows here and nowhere else.
*/
#ifndef VZ_ASC2BIN_DISPATCH_H
#define VZ_ASC2BIN_DISPATCH_H

#include <cstdint>

#include "text/scan_ctx.h"

typedef int32_t (*statement_parser)(scan_ctx *ctx);

struct dispatch_row {
    int32_t code;               /* first token */
    statement_parser parse;     /* the token is still the lookahead on entry */
    bool semicolon_by_dispatcher;
};

/* The row of a first token, or null: then the statement is undefined (161). */
const dispatch_row *find_statement_parser(int32_t code);

/* WHEN / CONDITION lines, the only lines of a condition program. */
int32_t parse_condition_statement(scan_ctx *ctx);

#endif
