/*
** statement_loop.h - the /MN section: statement by statement, optional line
** numbers, dispatch by first token, daughters, storing finished lines.
*/
#ifndef VZ_ASC2BIN_STATEMENT_LOOP_H
#define VZ_ASC2BIN_STATEMENT_LOOP_H

#include <cstdint>

#include "text/scan_ctx.h"

int32_t parse_mn_section(scan_ctx *ctx);

/* A statement no parser took may be a macro name: 0, or 100 when it is
   none (the caller then reports the statement's own error). */
int32_t parse_macro_statement(scan_ctx *ctx);

/* The argument list of a call behind its "(": emits 61, the count, the
   arguments and 64. Set by the control-flow family; null until then. */
extern int32_t (*call_argument_parser)(scan_ctx *ctx);

#endif
