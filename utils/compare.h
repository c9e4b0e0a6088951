/*
** compare.h - the compare of two binary programs: the left one loaded on
** side 0, the right one on side 1, and a report of what differs in what
** matters to a robot program, sent through put_line into the compare
** buffer. Differences are told only by the report.
*/
#ifndef VZ_UTILS_COMPARE_H
#define VZ_UTILS_COMPARE_H

#include <cstdint>

#include "text/line_cursor.h"

/* Results of the compare run. */
constexpr int32_t COMPARE_LOADED = 0;
constexpr int32_t COMPARE_NOT_OPENED = 1;
constexpr int32_t COMPARE_NOT_READ = 2;

/* The whole compare, with compare_mode and the buffer already set:
   COMPARE_LOADED when both files loaded, whatever differs; else the code
   of the file that failed, whose name the report then holds. */
int32_t compare_run(const char *left, const char *right);

/* --- pieces, each printing its own report lines --- */

/* Program name and sub type; on a difference both /PROG lines and both
   name record dumps. */
void compare_prog_headers();
/* LINE_COUNT, DEFAULT_GROUP and CONTROL_CODE of two attribute block
   images (tag byte first); 1 when any differs. */
int32_t compare_attr(const uint8_t *left, const uint8_t *right);

/* Line lists of a program or a daughter, up to the lower count. */
void compare_lines(uint8_t *const *left, int32_t left_count, uint8_t *const *right,
                   int32_t right_count, int32_t daughter);
/* 1 when two set-up cursors (left of side 0, right of side 1) differ in
   what they print, or either does not decode. Remarks, messages and macro
   calls are trimmed in place first. P-SPS references seen while decoding
   are paired by add_p_sps_number. */
int32_t lines_differ(line_cursor *left, line_cursor *right);

/* Both position blocks, record by record in file order. */
void compare_positions();
/* Two position records with their length bytes, each readable over its
   length plus two bytes; 1 on a difference, its reason printed. */
int32_t compare_position(const uint8_t *left, int32_t left_size, const uint8_t *right,
                         int32_t right_size);
/* Two big-endian reals: 0 when both are unset or they lie within 0.1 of
   each other; else 1, with a [difffloat] line. */
int32_t difffloat(const uint8_t *left, const uint8_t *right);

/* The application groups, matched by label. */
void compare_appl();

/* The daughters, paired by the P-SPS numbers the equal lines gave. */
void compare_daughters();
/* Slot of the daughter whose number stands at index of the side's row of
   p_sps_pairs, or -1. */
int32_t search_daughter(int32_t index, int32_t side);

/* "%02x " of each byte, on one report line. */
void compare_hex_line(const uint8_t *bytes, int32_t count);

#endif
