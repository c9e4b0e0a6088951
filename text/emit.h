/*
** emit.h - the line emitters. Every statement parser builds its line through
** these, so the byte order (big-endian) and the 512-byte buffer guard live
** in one place. Each returns 0 and does nothing while encoding is off.
*/
#ifndef VZ_TEXT_EMIT_H
#define VZ_TEXT_EMIT_H

#include <cstdint>

#include "text/scan_ctx.h"

/* Points the line buffer back at its start and clears the overflow flag. */
void emit_reset(scan_ctx *ctx);

int32_t emit_byte(scan_ctx *ctx, uint8_t value);
/* -128..127: 1 and the byte; others: 2 and four bytes. */
int32_t emit_intval(scan_ctx *ctx, int32_t value);
/* 3 and the four bytes of the single-precision value. */
int32_t emit_realval(scan_ctx *ctx, float value);
int32_t emit_long(scan_ctx *ctx, uint32_t value);
int32_t emit_long_b(scan_ctx *ctx, uint32_t value);
int32_t emit_word(scan_ctx *ctx, uint16_t value);
int32_t emit_word_80(scan_ctx *ctx, uint16_t value);
int32_t emit_word_c0(scan_ctx *ctx, uint16_t value);
int32_t emit_word_raw(scan_ctx *ctx, uint16_t value);
/* Overwrites the byte at line_ptr + offset (offset < 0 looks back). */
int32_t emit_patch(scan_ctx *ctx, int32_t offset, uint8_t value);
/* count bytes, tabs as blanks, then a zero. Each ";" in text is blanked
   after it is emitted, so that trimming the source does not cut there. */
int32_t emit_text(scan_ctx *ctx, char *text, int32_t count);
int32_t line_length(const scan_ctx *ctx);

/* 16-bit sign-magnitude form: negatives become magnitude | 0x8000. */
uint16_t neg_word(int32_t value);

#endif
