/*
** attr_parse.h - the /ATTR section of a listing into the image's fields.
*/
#ifndef VZ_SECTIONS_ATTR_PARSE_H
#define VZ_SECTIONS_ATTR_PARSE_H

#include <cstdint>

#include "text/scan_ctx.h"

/* Clauses in their fixed order, each optional; 0 or an error code. Leaves
   the lexer in front of the next section head. */
int32_t parse_attr_section(scan_ctx *ctx);

/* Packs a date as the attribute block holds it: year (two digits, 80..79
   meaning 1980..2079) from bit 25, month 21, day 16, hour 11, minute 5,
   second 0; joined by OR, not masked. */
uint32_t pack_attr_date(int32_t year, int32_t month, int32_t day, int32_t hour, int32_t minute,
                        int32_t second);

#endif
