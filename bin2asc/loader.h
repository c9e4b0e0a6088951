/*
** loader.h - the block readers of a binary program file. They read from
** bin_stream at its current place into the tables of cur_side
** (text/decode_tables.h), checking framing only: tags, end marks and
** lengths. Each returns 0, 1 when memory ran out, 2 on a format fault or a
** premature end of the file.
*/
#ifndef VZ_BIN2ASC_LOADER_H
#define VZ_BIN2ASC_LOADER_H

#include <cstdint>

constexpr int32_t LOAD_OK = 0;
constexpr int32_t LOAD_NO_MEMORY = 1;
constexpr int32_t LOAD_FORMAT = 2;

/* Main program, in file order. */
int32_t read_prog_block();
int32_t read_attr_block();
int32_t read_line_block();
int32_t read_pos_block();
int32_t read_appl_block();
/* The daughter area; a fault in it only ends the set of daughters, so the
   result is always 0. */
int32_t read_daughters();

/* One daughter, slot 1 to 7999. */
int32_t read_daughter_prog_block(int32_t slot);
int32_t read_daughter_attr_block(int32_t slot);
int32_t read_daughter_line_block(int32_t slot);
int32_t skip_daughter_pos_block();
int32_t skip_daughter_appl_block();

/* Release of what the readers took, for cur_side. */
void free_attr_block();
void free_appl_block();
void free_line_blocks();
void free_pos_block();

/* The six readers of a whole file, all of them, each going on at the
   place where the one before stopped; codes[i] gets each result (prog,
   attr, lines, pos, appl, daughters). Failures are traced. Returns 0 when
   all six gave 0, else 1. The tables of cur_side are forgotten first. */
int32_t read_program_blocks(int32_t codes[6]);
/* All four release operations of cur_side. */
void free_program_blocks();

#endif
