/*
** writer.h - the .TP writer: walks the finished prog_image and writes its
** blocks to output_stream (core/run_state.h), which the caller opens in
** binary mode before write_program and closes after it.
**
** Also here: the listing-side facts that decide the writer's defaults for
** the application block (spot instructions and a spot header seen), and
** the hooks through which the application layer makes those defaults.
*/
#ifndef VZ_BINFMT_WRITER_H
#define VZ_BINFMT_WRITER_H

#include <cstdint>

/* Result of the attribute block when its byte count drifts from 77; a
   stream that refuses bytes ends there too. */
constexpr int32_t WRITER_ATTR_SIZE = 101;
/* Warning for a task priority that the writer replaces by 50. */
constexpr int32_t WRITER_WARN_TASK_PRIORITY = 104;

/* Writes the whole program: name record, attribute, line, position and
   application blocks of the main program, then, when image_daughter_high
   is not 0, the byte 5 and the five blocks of each daughter 1 up to it.
   Stops at the first non-zero result and returns it, leaving what was
   written so far: 101 for an attribute block that did not come to 77
   bytes, a status of the application store, a hook's result. A stream
   error found at the end gives 101 as well. */
int32_t write_program();

/* Byte primitives. Each byte that the stream takes adds 1 to the count. */
void write_byte(int32_t value);              /* low 8 bits */
void write_bytes(const void *data, int32_t count);
void write_word(int32_t value);              /* 16 bits, high byte first */
void write_long(uint32_t value);             /* 32 bits, high byte first */
/* Bytes written since the last call; sets the count to 0. */
int32_t take_write_count();

/* Block writers. daughter 0 is the main program, 1 and up a daughter. */
int32_t write_name_record(int32_t daughter);
int32_t write_attr_block(int32_t daughter);
int32_t write_line_block(int32_t daughter);
int32_t write_pos_block();
int32_t write_appl_block();
int32_t write_empty_pos_block();
int32_t write_empty_appl_block();
/* The 14 name bytes of a daughter: the main name padded with "." to 8
   characters, then the number in four digits (more for 10000 and up). */
void daughter_name(int32_t daughter, char out[14]);

/* ---- defaults of the application block ------------------------------- */

/* Clears both flags below; called at the start of each listing run. */
void appl_header_reset();
/* Set by the spot parsers when the listing holds spot instructions. */
void set_spot_instructions_seen(int32_t seen);
int32_t spot_instructions_seen();
/* Set by the /APPL parser when the listing gave a spot header. */
void set_spot_header_seen(int32_t seen);
int32_t spot_header_seen();

/* Writes the default spot header record into the application store; the
   writer calls it with the argument 1 when spot instructions were seen and
   no spot header was. A non-zero result ends the writer with it. */
typedef int32_t (*spot_header_fn)(int32_t argument);
void writer_set_spot_header_hook(spot_header_fn hook);
/* Completes groups the application layer implies before the block is
   written (a motion schedule, say); called after the spot default. A
   non-zero result ends the writer with it. */
typedef int32_t (*appl_complete_fn)();
void writer_set_appl_complete_hook(appl_complete_fn hook);

#endif
