/*
** decode_tables.cpp - the storage of the loaded program's per-side tables.
*/
#include "text/decode_tables.h"

#include <cstring>

int32_t cur_side = 0;
FILE *bin_stream = nullptr;

uint8_t prog_header[DECODE_SIDES][NAME_SLOT_SIZE];
int32_t prog_has_subtype[DECODE_SIDES];
int32_t prog_subtype[DECODE_SIDES];

uint8_t *attr_block[DECODE_SIDES];
int32_t attr_block_size[DECODE_SIDES];

uint8_t **main_lines[DECODE_SIDES];
int32_t main_line_count[DECODE_SIDES];
int32_t main_line_capacity[DECODE_SIDES];

uint8_t **pos_records[DECODE_SIDES];
uint8_t **pos_comments[DECODE_SIDES];
int32_t *pos_used[DECODE_SIDES];
int32_t pos_count[DECODE_SIDES];
int32_t pos_capacity[DECODE_SIDES];

uint8_t ***appl_groups[DECODE_SIDES];
int32_t *appl_high_record[DECODE_SIDES];
int32_t appl_high_group[DECODE_SIDES] = {-1, -1};
int32_t appl_low_group[DECODE_SIDES] = {-1, -1};
int32_t appl_loaded[DECODE_SIDES];

int32_t daughter_high[DECODE_SIDES];
uint8_t daughter_header[DECODE_SIDES][TP_DAUGHTER_SLOTS][NAME_SLOT_SIZE];
int32_t daughter_has_subtype[DECODE_SIDES][TP_DAUGHTER_SLOTS];
int32_t daughter_subtype[DECODE_SIDES][TP_DAUGHTER_SLOTS];
int32_t daughter_number[DECODE_SIDES][TP_DAUGHTER_SLOTS];
uint8_t daughter_attr[DECODE_SIDES][TP_DAUGHTER_SLOTS][TP_ATTR_DAUGHTER_SLOT];
uint8_t **daughter_lines[DECODE_SIDES][TP_DAUGHTER_SLOTS];
int32_t daughter_line_count[DECODE_SIDES][TP_DAUGHTER_SLOTS];
int32_t daughter_line_capacity[DECODE_SIDES][TP_DAUGHTER_SLOTS];
int32_t daughter_top[DECODE_SIDES];

int32_t control_r_mode = 0;

void decode_tables_forget(int32_t side) {
    if (side < 0 || side >= DECODE_SIDES)
        return;
    std::memset(prog_header[side], 0, sizeof prog_header[side]);
    prog_has_subtype[side] = prog_subtype[side] = 0;
    attr_block[side] = nullptr;
    attr_block_size[side] = 0;
    main_lines[side] = nullptr;
    main_line_count[side] = main_line_capacity[side] = 0;
    pos_records[side] = pos_comments[side] = nullptr;
    pos_used[side] = nullptr;
    pos_count[side] = pos_capacity[side] = 0;
    appl_groups[side] = nullptr;
    appl_high_record[side] = nullptr;
    appl_high_group[side] = appl_low_group[side] = -1;
    appl_loaded[side] = 0;
    daughter_high[side] = daughter_top[side] = 0;
    std::memset(daughter_has_subtype[side], 0, sizeof daughter_has_subtype[side]);
    std::memset(daughter_subtype[side], 0, sizeof daughter_subtype[side]);
    std::memset(daughter_number[side], 0, sizeof daughter_number[side]);
    std::memset(daughter_lines[side], 0, sizeof daughter_lines[side]);
    std::memset(daughter_line_count[side], 0, sizeof daughter_line_count[side]);
    std::memset(daughter_line_capacity[side], 0, sizeof daughter_line_capacity[side]);
}
