/*
** attr_print.h - the /ATTR section of a listing, printed from the loaded
** attribute block of cur_side.
*/
#ifndef VZ_SECTIONS_ATTR_PRINT_H
#define VZ_SECTIONS_ATTR_PRINT_H

#include <cstddef>
#include <cstdint>

/* Prints /ATTR and its nineteen lines through put_line; sets
   control_r_mode when bit 8 of CONTROL_CODE is set. Always 0. */
int32_t print_attr_section();

/* The date text of a packed date: DATE yy-mm-dd  TIME hh:mm:ss. */
void format_packed_date(uint32_t packed, char *out, size_t size);

#endif
