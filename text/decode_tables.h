/*
** decode_tables.h - the loaded binary program, per side: what the block
** readers fill and the section and line printers read.
**
** Every table exists twice, indexed by side: 0 is the program of a
** translation and the left one of a compare, 1 the right one of a compare.
** The memory hangs on the run's tracked allocator. Records keep their
** bytes as read, length bytes in front:
**   line record      hi, lo, payload, six zero guard bytes
**   position record  hi, lo, payload, six zero guard bytes (so bytes 2
**                    to 7 exist even in a record cut shorter; they are 0)
**   appl record      type hi, lo, instance hi, lo, length, payload
** The guards let a reader that runs over a text stop at a zero, but a
** printer still bounds its reads by the record's own length. A side's
** pointers die with the allocator scope that loaded them: free a side
** only in the scope that loaded it, and call decode_tables_forget before
** touching a side that an earlier scope left behind.
*/
#ifndef VZ_TEXT_DECODE_TABLES_H
#define VZ_TEXT_DECODE_TABLES_H

#include <cstdint>
#include <cstdio>

#include "binfmt/tp_format.h"

constexpr int DECODE_SIDES = 2;
constexpr int NAME_SLOT_SIZE = 20;
constexpr int ATTR_BLOCK_ROOM = 80; /* the least an attribute block gets */

/* Side addressed by all block readers and printers. */
extern int32_t cur_side;
/* The binary file being read. */
extern FILE *bin_stream;

/* Main program name record: 0, byte, flag, [sub type,] 16 name field bytes. */
extern uint8_t prog_header[DECODE_SIDES][NAME_SLOT_SIZE];
extern int32_t prog_has_subtype[DECODE_SIDES];
extern int32_t prog_subtype[DECODE_SIDES];

/* Main attribute block, tag and length included; at least ATTR_BLOCK_ROOM
   bytes, zero beyond what the file gave. Null when not loaded. */
extern uint8_t *attr_block[DECODE_SIDES];
/* Bytes of attr_block that came from the file (length plus 3). */
extern int32_t attr_block_size[DECODE_SIDES];

extern uint8_t **main_lines[DECODE_SIDES];
extern int32_t main_line_count[DECODE_SIDES];
extern int32_t main_line_capacity[DECODE_SIDES];

/* Position records in file order; pos_comments[i] points into record i or
   is null; pos_used[i] is set by the line printers that refer to it. */
extern uint8_t **pos_records[DECODE_SIDES];
extern uint8_t **pos_comments[DECODE_SIDES];
extern int32_t *pos_used[DECODE_SIDES];
extern int32_t pos_count[DECODE_SIDES];
extern int32_t pos_capacity[DECODE_SIDES];

/* Application records: appl_groups[side][type][instance], rows sized by
   the first (highest) record of each type; appl_high_record[side][type]
   is that highest instance. appl_high_group is the highest type, and
   appl_low_group the last type read; both -1 when empty. appl_loaded is
   set once a block was read whole, even an empty one. */
extern uint8_t ***appl_groups[DECODE_SIDES];
extern int32_t *appl_high_record[DECODE_SIDES];
extern int32_t appl_high_group[DECODE_SIDES];
extern int32_t appl_low_group[DECODE_SIDES];
extern int32_t appl_loaded[DECODE_SIDES];

/* Daughters: slots 1 to 7999. daughter_number is the number parsed from
   the name, which is what a P-SPS reference matches. */
extern int32_t daughter_high[DECODE_SIDES];
extern uint8_t daughter_header[DECODE_SIDES][TP_DAUGHTER_SLOTS][NAME_SLOT_SIZE];
extern int32_t daughter_has_subtype[DECODE_SIDES][TP_DAUGHTER_SLOTS];
extern int32_t daughter_subtype[DECODE_SIDES][TP_DAUGHTER_SLOTS];
extern int32_t daughter_number[DECODE_SIDES][TP_DAUGHTER_SLOTS];
extern uint8_t daughter_attr[DECODE_SIDES][TP_DAUGHTER_SLOTS][TP_ATTR_DAUGHTER_SLOT];
extern uint8_t **daughter_lines[DECODE_SIDES][TP_DAUGHTER_SLOTS];
extern int32_t daughter_line_count[DECODE_SIDES][TP_DAUGHTER_SLOTS];
extern int32_t daughter_line_capacity[DECODE_SIDES][TP_DAUGHTER_SLOTS];
/* Highest slot whose number was written, daughter_high or above: a name
   record cut short still leaves its number behind. */
extern int32_t daughter_top[DECODE_SIDES];

/* Set while the /ATTR printer meets bit 8 of CONTROL_CODE: Cartesian
   positions then print in the R form. Cleared by the attribute reader. */
extern int32_t control_r_mode;

/* Forgets every table of a side without freeing: the pointers may belong
   to a scope that has already ended. Readers call it before a load. */
void decode_tables_forget(int32_t side);

/* Payload length of a line or position record from its two length bytes. */
inline int32_t record_length(const uint8_t *record) { return (record[0] << 8) | record[1]; }

#endif
