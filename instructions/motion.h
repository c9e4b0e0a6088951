/*
** motion.h - the motion family both ways: J, L, C and A lines (opcode
** 254), the Independent / Simultaneous group wrapper (opcode 253), and the
** JOINT_MAX_SPEED / LINEAR_MAX_SPEED statements (opcode 58).
**
** Options behind a motion head belong to their own family, which plugs in
** through motion_option_loop and motion_offset_printer; pallet positions
** plug in through the two pallet hooks. Until a hook is set its part of a
** line is refused.
*/
#ifndef VZ_INSTRUCTIONS_MOTION_H
#define VZ_INSTRUCTIONS_MOTION_H

#include <cstddef>
#include <cstdint>

#include "text/line_cursor.h"
#include "text/scan_ctx.h"

/* Opcodes and type bytes of the family. */
constexpr uint8_t OP_MAX_SPEED = 58;
constexpr uint8_t OP_GROUP_MOTION = 253;
constexpr uint8_t OP_MOTION = 254;
constexpr uint8_t MOTION_J = 1;
constexpr uint8_t MOTION_L = 2;
constexpr uint8_t MOTION_C = 3;
constexpr uint8_t MOTION_A = 6;

/* Which option loop a motion head ends in. */
enum motion_loop_kind : int32_t {
    MOTION_LOOP_J = 0,
    MOTION_LOOP_LA = 1,
    MOTION_LOOP_C = 2,
};

/* Speed register mode of the line being parsed: 0 literal, 1 R[], 2
   R[R[]], 3 WELD_SPEED. */
extern int32_t speed_mode;
/* 1 after CD and after a literal CNT100, else 0; CS reads it. */
extern int32_t cd_seen;

/* The option loop behind a termination: parses options of the given loop
   and returns 0 or the first error. motion_word is the keyword code of the
   motion head. Null until the options family sets it: a line then ends at
   its termination. */
extern int32_t (*motion_option_loop)(scan_ctx *ctx, int32_t loop, int32_t motion_word);
/* Printer of opcodes 206 and 220 (the offset clause) that a C line prints
   on its first text line. Null until the options family sets it. */
extern line_printer motion_offset_printer;
/* PAL_n[...] as a position: parse (lookahead on PAL_, which is still to be
   taken) and print (pos on kind byte 2; appends to out). Null until the
   palletizing family sets them: the line is then refused. */
extern int32_t (*motion_pallet_parser)(scan_ctx *ctx);
extern int32_t (*motion_pallet_printer)(line_cursor *cur, char *out, size_t size);

/* ---- listing side ---- */

/* A statement starting with C, J, L or A (also JOINT_MAX_SPEED and
   LINEAR_MAX_SPEED, which the Japanese lexer joins behind J and L). */
int32_t parse_motion_statement(scan_ctx *ctx);
/* A motion head and its options; nested is 1 inside a group segment, where
   the ";" is left to the wrapper. */
int32_t parse_motion(scan_ctx *ctx, int32_t nested);
int32_t parse_position_ref(scan_ctx *ctx, int32_t motion_word);
int32_t parse_speed(scan_ctx *ctx);
int32_t parse_speed_unit_joint(scan_ctx *ctx);
int32_t parse_speed_unit_linear(scan_ctx *ctx);
int32_t parse_termination(scan_ctx *ctx, int32_t motion_word);
/* INDEPENDENT / SIMULTANEOUS GP, one motion per group of the mask. */
int32_t parse_group_motion(scan_ctx *ctx);
int32_t parse_joint_max_speed(scan_ctx *ctx);
int32_t parse_linear_max_speed(scan_ctx *ctx);

/* ---- binary side ---- */

int32_t print_motion(line_cursor *cur);
int32_t print_group_segment(line_cursor *cur);
int32_t print_max_speed(line_cursor *cur);
/* The parts of a motion head, each at pos, appending to out. */
int32_t print_position_ref(line_cursor *cur, char *out, size_t size);
int32_t print_speed(line_cursor *cur, char *out, size_t size);
int32_t print_termination(line_cursor *cur, char *out, size_t size);

#endif
