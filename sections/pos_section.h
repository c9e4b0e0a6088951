/*
** pos_section.h - the /POS section of a listing: position records with
** their comment and one group record per motion group, Cartesian or joint,
** built into the record layout of the position block and stored in the
** image. Also the R-form conversion that parser and printer share.
*/
#ifndef VZ_SECTIONS_POS_SECTION_H
#define VZ_SECTIONS_POS_SECTION_H

#include <cstdint>

#include "text/scan_ctx.h"

/* Group record forms (low four bits of a group record's second byte). */
constexpr uint8_t POS_FORM_JOINT_OLD = 0;
constexpr uint8_t POS_FORM_CARTESIAN = 2;
constexpr uint8_t POS_FORM_CARTESIAN_EXT = 6;
constexpr uint8_t POS_FORM_JOINT = 9;

/* A position comment keeps at most this many characters. */
constexpr int32_t POS_COMMENT_MAX = 16;

/* Position records up to the next section head; 0 or an error code. */
int32_t parse_pos_section(scan_ctx *ctx);

/* X, Y, Z, W, P, R in place: the position of the inverted frame, so that
   applying it twice gives the values back (within float rounding). */
void position_invert(float values[6]);

/* 1 when a comment byte is allowed: printable bytes and Shift-JIS bytes,
   no control codes. */
int32_t pos_comment_char_ok(uint8_t c);

#endif
