/*
** remark.h - the remark statement "!text" (opcode 30), both ways.
*/
#ifndef VZ_INSTRUCTIONS_REMARK_H
#define VZ_INSTRUCTIONS_REMARK_H

#include <cstdint>

#include "text/line_cursor.h"
#include "text/scan_ctx.h"

/* Emits 30 and at most 32 bytes of the raw text behind "!", up to the
   line's last ";" with the blanks before it cut. Consumes the line. */
int32_t parse_remark(scan_ctx *ctx);

/* Prints "!" and the text; steps over the closing zero. */
int32_t print_remark(line_cursor *cur);

#endif
