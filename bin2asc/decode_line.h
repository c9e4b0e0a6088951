/*
** decode_line.h - one binary line to one numbered listing line, the
** opcode table that picks each item's printer, and the /MN section with
** its daughters.
*/
#ifndef VZ_BIN2ASC_DECODE_LINE_H
#define VZ_BIN2ASC_DECODE_LINE_H

#include <cstdint>

#include "text/line_cursor.h"

/* Decodes the whole line: 0, or 1 if it could not be decoded. With print
   not 0 the assembled line goes to put_line; nested not 0 gives the
   daughter's number column. cur->text holds the instruction text without
   the number column on return, on failure as far as it got. */
int32_t decode_line(line_cursor *cur, int32_t print, int32_t nested);

/* The printer of an opcode, or null when no family takes it. */
line_printer opcode_printer(uint8_t opcode);
/* Puts a printer in the table (null removes it) and returns the one it
   replaced. The table's rows in opcode_table.cpp are the families' place;
   this call is for a caller that needs to swap one in at run time. */
line_printer set_opcode_printer(uint8_t opcode, line_printer printer);

/* The /MN section of cur_side, each daughter printed behind the line that
   refers to it. */
int32_t print_mn_section();
/* The lines of the daughter with that number: 0, or 1 if there is none. */
int32_t print_daughter_lines(int32_t number);

/* Pairs of daughter numbers that the compare matched, per side. */
constexpr int32_t P_SPS_PAIRS_MAX = 8000;
extern int32_t p_sps_pairs[2][P_SPS_PAIRS_MAX];
extern int32_t p_sps_pair_count;
/* Notes one pair at the running count; pairs past the table are dropped. */
void add_p_sps_number(int32_t left, int32_t right);

#endif
