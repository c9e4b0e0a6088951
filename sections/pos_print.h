/*
** pos_print.h - the /POS section of a binary program as listing text: the
** loaded position records of cur_side, the lookup by number that motion
** lines use to mark a record used and fetch its comment, and the printer
** of a single record for a caller outside a run.
*/
#ifndef VZ_SECTIONS_POS_PRINT_H
#define VZ_SECTIONS_POS_PRINT_H

#include <cstddef>
#include <cstdint>

/* Prints "/POS" and every record of cur_side marked used, in file order.
   Returns 0. */
int32_t print_pos_section();

/* Marks the first record of that number used: 0, or 1 when there is none. */
int32_t mark_position_used(int32_t number);
/* The comment of the first record of that number (zero-terminated, inside
   the record), or null when there is none or it has no comment. */
const uint8_t *position_comment(int32_t number);
/* The same comment copied into out, cut to size - 1 and never read past
   its record: 1 when there is one, else 0 and out is "". */
int32_t position_comment_text(int32_t number, char *out, size_t size);
/* Index of the first record of that number in pos_records[cur_side], or
   -1. Constant time per call once the side's index is built. */
int32_t find_position(int32_t number);
/* Drops the number index of both sides; the next lookup rebuilds it. */
void position_index_reset();

/* Prints one group record: the Cartesian or joint form, by its form
   byte; other forms print nothing. avail is the number of bytes of the
   record that may be read from grp on. */
void intppos(const uint8_t *grp, int32_t avail);

/* Prints one record given with its two length bytes, as a single-record
   caller sees it: groups in file order, stopping at the first clear mask
   bit, and the closing line. */
void print_position_record(const uint8_t *record);

#endif
