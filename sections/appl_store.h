/*
** appl_store.h - the listing side of the application block: groups made
** in the program image as the /APPL parsers read them, the run's state of
** the headers, and the groups the writer completes before it writes.
*/
#ifndef VZ_SECTIONS_APPL_STORE_H
#define VZ_SECTIONS_APPL_STORE_H

#include <cstdint>

#include "text/scan_ctx.h"

/* Schedule of a dispense header minus 1 (the byte of a MOTN record), -1
   when the listing gave none. */
extern int32_t dispense_schedule;
/* Set when a line tracking header was read. */
extern int32_t program_tracked;

/* Adds a group one above the highest in the image, with label (length
   bytes) as its record 0; *group gets its number. 0, or the status of
   the image store. */
int32_t appl_new_group(const uint8_t *label, int32_t length, scan_ctx *ctx, int32_t *group);
/* Stores record n of a group. 0 or the image store's status. */
int32_t appl_add_record(int32_t group, int32_t n, const uint8_t *data, int32_t length);
/* 1 when the image holds a group whose record 0 starts with the four
   letters of label, else 0. */
int32_t appl_image_has(const char *label);

/* The mask group "MUAP" with the mask in its 32-bit field. */
int32_t appl_make_muap(uint32_t mask, scan_ctx *ctx);
/* An equipment group: four letters and the number byte ("SPOT", 1). */
int32_t appl_make_equipment(const char *label, int32_t number, scan_ctx *ctx);
/* A motion schedule group: "MOTN" and record 1, the schedule minus 1. */
int32_t appl_make_motion(int32_t schedule_byte, scan_ctx *ctx);

/* The spot header the writer makes for spot instructions without one:
   "MUAP" with the spot bit when the image has none, then "SPOT" with the
   equipment number. */
int32_t appl_spot_default(int32_t equipment);
/* The groups a program implies: a motion schedule (the dispense schedule,
   or 1 when the SMARTFOLLOW option is configured) when no "MOTN" group
   was made; an "LNTK" group of schedule 0 for a tracked program without
   one. */
int32_t appl_complete_groups();

/* Start of a listing run: the header state to its defaults, and the two
   defaults above handed to the writer. */
void appl_run_reset();

#endif
