/*
** appl_section.h - the /APPL section of a listing.
*/
#ifndef VZ_SECTIONS_APPL_SECTION_H
#define VZ_SECTIONS_APPL_SECTION_H

#include <cstdint>

#include "text/scan_ctx.h"

/* Application headers up to the next section head; 0 or an error code. */
int32_t parse_appl_section(scan_ctx *ctx);

#endif
