/*
** decode_helpers.h - what every opcode printer leans on: appending words
** and formatted text to a line, big-endian reads, and the shared decoders
** of value arguments, data items, indices and group masks.
**
** All appends stop at the end of the line's text buffer; all reads go
** through cursor_byte and so read 0 past the end of the payload.
*/
#ifndef VZ_TEXT_DECODE_HELPERS_H
#define VZ_TEXT_DECODE_HELPERS_H

#include <cstddef>
#include <cstdint>

#include "text/line_cursor.h"

/* --- text of the line --- */
void cursor_append(line_cursor *cur, const char *text);
void cursor_append_word(line_cursor *cur, int32_t code);
void cursor_appendf(line_cursor *cur, const char *format, ...) __attribute__((format(printf, 2, 3)));
/* The same appends into any zero-terminated buffer of size bytes. */
void text_append(char *buf, size_t size, const char *text);
void text_appendf(char *buf, size_t size, const char *format, ...) __attribute__((format(printf, 3, 4)));

/* --- big-endian values --- */
uint16_t decode_be16(const uint8_t *p);
/* Sign and magnitude: a set high bit negates the other 15 bits. */
int32_t decode_be16_signmag(const uint8_t *p);
int32_t decode_be32(const uint8_t *p);
float decode_bereal(const uint8_t *p);
/* The same at index i of a line, reading 0 past its end. */
uint16_t cursor_be16(const line_cursor *cur, uint32_t i);
int32_t cursor_be16_signmag(const line_cursor *cur, uint32_t i);
int32_t cursor_be32(const line_cursor *cur, uint32_t i);
float cursor_bereal(const line_cursor *cur, uint32_t i);

/* Copies the zero-terminated text at pos into out (cut to size - 1) and
   steps pos behind its zero; a text that runs to the end of the payload
   ends there, as the record's guard bytes would end it. */
void decode_text(line_cursor *cur, char *out, size_t size);

/* --- shared decoders; each starts at pos and returns 0 or 1 --- */
/* Opcode 0 ("...") or 1 and a kind byte: Constant, byte, long or real. */
int32_t decode_value_arg(line_cursor *cur);
/* A prefix byte (R, PR, P, DI, ...) and its bracketed index. */
int32_t decode_data_item(line_cursor *cur);
/* Prefix 7: the row, column and layer of a palletizing register. */
int32_t decode_pl_triple(line_cursor *cur);
/* Opcode 242 and a group mask byte: GP1,2: */
int32_t decode_group_mask(line_cursor *cur);

/* Three-byte indices (tag 2, hi, lo), told apart by what the top bits of
   hi mean and by how a direct number prints. */
int32_t decode_index_single(line_cursor *cur); /* R[n]; direct 0 is "..." */
int32_t decode_index(line_cursor *cur);        /* AR[n], R[n]; 0 is "..."; second index */
int32_t decode_index0(line_cursor *cur);       /* as decode_index; direct 0 is "0" */
int32_t decode_index_direct(line_cursor *cur); /* R[n]; direct as "%d" */
int32_t decode_index_signed(line_cursor *cur); /* R[n]; bit 6 a minus sign */

/* "%d", or three dots for 0. */
void format_index_number(int32_t n, char *out, size_t size);
void format_three_dots(char *out, size_t size);

#endif
