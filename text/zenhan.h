/*
** zenhan.h - the two Shift-JIS width conversions: half-width (ASCII and
** katakana bytes) to full-width codes for output, and full-width codes to
** half-width bytes for input. Codes are 16 bits with the lead byte high.
*/
#ifndef VZ_TEXT_ZENHAN_H
#define VZ_TEXT_ZENHAN_H

#include <cstdint>

/* Full-width code of a single byte (0x20..0x7E, 0xA0..0xDF); any other
   value comes back unchanged. */
uint16_t half_to_full(uint16_t code);
/* Half-width form of a full-width code: below 256 for one byte, or base
   and voicing mark (high, low) such as 0xB6DE; the code itself when it has
   no half-width form. */
uint16_t full_to_half(uint16_t code);
/* Half-width kana that take a voicing mark: the ka..to and ha..ho rows. */
bool is_voicable(uint8_t byte);
/* Half-width kana that take the semi-voicing mark: the ha..ho row. */
bool is_semi_voicable(uint8_t byte);

/* The same conversions under their short names. */
inline uint16_t han_to_zen(uint16_t code) { return half_to_full(code); }
inline uint16_t zen_to_han(uint16_t code) { return full_to_half(code); }

#endif
