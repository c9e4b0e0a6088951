/*
** messages.h - error messages in English and Japanese (Shift-JIS), the
** warning vocabulary, and the conversion of those Japanese texts back to
** UTF-8 for a terminal. The named codes are in core/error_codes.h.
*/
#ifndef VZ_CORE_MESSAGES_H
#define VZ_CORE_MESSAGES_H

#include <cstddef>
#include <cstdint>

#include "core/error_codes.h"

/* One row of a message table; a table ends at code 0. */
struct message_row {
    int32_t code;
    const char *text;
};

extern const message_row english_messages[];
extern const message_row japanese_messages[];
/* Texts of the codes report_warning takes; nothing prints them. */
extern const message_row english_warnings[];
extern const message_row japanese_warnings[];
/* Text for a code without a row, without its line end. */
extern const char english_fallback[];
extern const char japanese_fallback[];

/* A double-byte Shift-JIS character (lead byte high) and its UTF-8. */
struct sjis_glyph {
    uint16_t code;
    const char *utf8;
};
/* Sorted by code; covers every double-byte character of the library's own
   Japanese texts. */
extern const sjis_glyph sjis_glyphs[];
extern const size_t sjis_glyph_count;

/* The row text of code in the table of language (1 English, 0 Japanese),
   searched from the top; null when the table has no row. Code 0 never has
   one, since it ends the table. */
const char *message_lookup(int32_t code, int32_t language);

/* What zdgeterrmsg gives: the row text of code in the table that
   message_language selects, or the fallback, followed by "\n", in text
   (at least 512 bytes). Returns 0. */
int32_t error_message(int32_t code, char *text);

/* Takes a warning code (100 to 104) and does nothing: these warnings are
   noticed by their callers and deliberately not reported. */
void report_warning(int32_t code);

/* Copies Shift-JIS text as UTF-8 into out (always zero-terminated when
   out_size > 0): ASCII as it is, half-width katakana to U+FF61..U+FF9F,
   double-byte characters through sjis_glyphs, anything else as U+FFFD.
   Returns the length the full conversion needs, without the zero. */
size_t sjis_to_utf8(const char *text, char *out, size_t out_size);

#endif
