/*
** section_driver.h - reads the /PROG head of a listing and walks its
** sections, handing each to its section parser. Writes nothing itself.
*/
#ifndef VZ_ASC2BIN_SECTION_DRIVER_H
#define VZ_ASC2BIN_SECTION_DRIVER_H

#include <cstdint>

#include "text/scan_ctx.h"

/* The context of the running (or last) listing run, for code that is not
   handed one. Freed with the run's tracked memory. */
extern scan_ctx *active_ctx;

/* Parses source_stream into the program image: 0 or an error code. */
int32_t parse_listing();

/* 1 for "_", letters, digits and half-width katakana 0xA6..0xDF. */
int32_t name_char_ok(int32_t c);

#endif
