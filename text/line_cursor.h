/*
** line_cursor.h - the decoder's record of one binary line being turned
** into text, and the signature every opcode printer shares.
**
** A printer starts with pos on its opcode, appends to text and leaves pos
** behind what it consumed. Reads go through cursor_byte, which gives 0 for
** any index at or past length: a line record carries two zero guard bytes
** behind its payload, and the bound check makes every index behave as if
** the guard went on for ever, so a hostile length can never be followed
** out of the buffer.
*/
#ifndef VZ_TEXT_LINE_CURSOR_H
#define VZ_TEXT_LINE_CURSOR_H

#include <cstdint>

constexpr int LINE_TEXT_SIZE = 512;

struct line_cursor {
    uint8_t *bytes;              /* payload, behind the two length bytes */
    char text[LINE_TEXT_SIZE];   /* text built so far, zero-terminated */
    uint32_t pos;                /* read index into bytes */
    int32_t length;              /* payload length */
    int32_t indent;              /* three-blank indents; always 0 */
    uint32_t line_number;        /* number printed, from 1 per program */
    int32_t p_sps_number;        /* daughter this line refers to, 0 if none */
    int32_t group;               /* group opened by a multi-group head */
};

/* A family printer: 0 on success, anything else fails the line. */
typedef int32_t (*line_printer)(line_cursor *cur);

/* Byte at index i of the payload; 0 at or past the end. */
inline uint8_t cursor_byte(const line_cursor *cur, uint32_t i) {
    if (cur->bytes == nullptr || cur->length <= 0 || i >= static_cast<uint32_t>(cur->length))
        return 0;
    return cur->bytes[i];
}

/* Byte at pos plus offset. */
inline uint8_t cursor_peek(const line_cursor *cur, uint32_t offset) {
    return cursor_byte(cur, cur->pos + offset);
}

/* Writes a byte of the payload in place (printers clear flag bits this
   way); an index at or past the end is ignored. */
inline void cursor_set_byte(line_cursor *cur, uint32_t i, uint8_t value) {
    if (cur->bytes != nullptr && cur->length > 0 && i < static_cast<uint32_t>(cur->length))
        cur->bytes[i] = value;
}

/* Clears a cursor and points it at a payload. */
inline void cursor_setup(line_cursor *cur, uint8_t *bytes, int32_t length, uint32_t line_number) {
    cur->bytes = bytes;
    cur->text[0] = 0;
    cur->pos = 0;
    cur->length = length;
    cur->indent = 0;
    cur->line_number = line_number;
    cur->p_sps_number = 0;
    cur->group = 0;
}

#endif
