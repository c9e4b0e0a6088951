/*
** appl_section.h - the /APPL section of a listing, both ways: the parser
** of its headers into application groups of the program image, the
** printer of the loaded application block.
**
** Headers and groups of families that live elsewhere (line tracking,
** paint, palletizing) plug in through the setters below.
*/
#ifndef VZ_SECTIONS_APPL_SECTION_H
#define VZ_SECTIONS_APPL_SECTION_H

#include <cstddef>
#include <cstdint>

#include "text/scan_ctx.h"

/* Mask lines, then headers up to the next section head ("/"). 0, an error
   code, or 1 when a mask line has a value other than TRUE or FALSE (which
   ends the listing). */
int32_t parse_appl_section(scan_ctx *ctx);

/* /APPL and the lines of its groups, from the loaded block of cur_side;
   nothing when no block is loaded. Always 0. */
int32_t print_appl_section();

/* The text of a MUAP label (mask in bytes 4 to 7): "\t<word> : TRUE;" for
   a mask of one known bit, else empty. */
void muap_text(const uint8_t *label, int32_t length, char *out, size_t size);

/* A header parser is given the context with its first word still the
   lookahead; 0 or an error code. */
typedef int32_t (*appl_header_parser)(scan_ctx *ctx);
/* Plugs in the parser of LINE_TRACK (1721), PAINT_PROCESS (1200) or
   PAINT_JOB (1215); null puts back the refusal. 0, or 1 for another code.
   A line tracking parser's failure is reported as 1376345, its success
   marks the program as tracked. */
int32_t appl_set_header_parser(int32_t code, appl_header_parser parse);
/* Plugs in the parser of a header that no other entry takes (the pallet
   parser, which starts with PALLETIZING); null puts back the refusal,
   1376344. */
void appl_set_pallet_parser(appl_header_parser parse);

/* A group printer is given the group number of the loaded block. */
typedef int32_t (*appl_group_printer)(int32_t group);
/* Plugs in the printer of a label of the table (PLCG, PAPR, PAJB, LNTK,
   the bell and zone tables ...); 0, or 1 for a label not in the table. */
int32_t appl_set_group_printer(const char *label, appl_group_printer print);

#endif
