/*
** pos_section.h - the /POS section of a listing.
*/
#ifndef VZ_SECTIONS_POS_SECTION_H
#define VZ_SECTIONS_POS_SECTION_H

#include <cstdint>

#include "text/scan_ctx.h"

/* Position records up to the next section head; 0 or an error code. */
int32_t parse_pos_section(scan_ctx *ctx);

#endif
