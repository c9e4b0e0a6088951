/*
** appl_internal.h - what the files of the /APPL section share: the
** keyword codes of its headers and the parsers and printers that live in
** files of their own. Not for use outside sections/appl_*.
*/
#ifndef VZ_SECTIONS_APPL_INTERNAL_H
#define VZ_SECTIONS_APPL_INTERNAL_H

#include <cstdint>

#include "text/scan_ctx.h"

enum appl_word : int32_t {
    aw_slash = 80, aw_minus = 87, aw_star = 89, aw_colon = 120, aw_comma = 121,
    aw_lbracket = 124, aw_rbracket = 129, aw_semicolon = 132, aw_appl = 150,
    aw_palletizing = 240, aw_pallet = 251, aw_spot = 299, aw_arc = 317,
    aw_smartfollow = 333, aw_schedule = 334, aw_number = 335, aw_welding = 336,
    aw_equipment = 337, aw_analog = 558, aw_pro = 559, aw_flo = 560, aw_bin = 679,
    aw_paint_process = 1200, aw_last_cycle_time = 1201, aw_last_gun_on_time = 1202,
    aw_user_frame = 1204, aw_tool_frame = 1205, aw_false = 1211, aw_true = 1212,
    aw_paint_job = 1215, aw_handling = 1220, aw_laser = 1221, aw_dispense = 1222,
    aw_dispense_process = 1402, aw_dispense_job = 1403, aw_cycle_time = 1404,
    aw_gun_on_time = 1405, aw_smartfollow_schedule = 1406, aw_equipment_number = 1407,
    aw_material_volume = 1408, aw_last_mat_volume = 1409, aw_part_id = 1410,
    aw_paint = 1623, aw_line_track = 1721,
};

/* `SMARTFOLLOW_SCHEDULE : n ;`, storing n - 1 in dispense_schedule. 135
   for a missing ":", 134 for a missing ";", 167 and 107 for the number. */
int32_t parse_schedule_clause(scan_ctx *ctx);
int32_t parse_dispense_process(scan_ctx *ctx);
int32_t parse_dispense_job(scan_ctx *ctx);
int32_t parse_bin_records(scan_ctx *ctx);

/* Group printers of the loaded block; 0, or 1 for a group they cannot
   print. */
int32_t print_dispense_process(int32_t group);
int32_t print_dispense_job(int32_t group);

#endif
