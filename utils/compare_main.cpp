/*
** compare_main.cpp - the compare run: both files loaded side by side, the
** parts compared in report order, the program heads, the attribute fields
** that count, and the daughters paired by their P-SPS references.
*/
#include "utils/compare.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "bin2asc/decode_file.h"
#include "bin2asc/decode_line.h"
#include "bin2asc/loader.h"
#include "core/dictionary.h"
#include "core/run_state.h"
#include "sections/pos_print.h"
#include "text/decode_tables.h"
#include "text/put_line.h"
#include "utils/dump.h"

namespace {

void report(const char *format, int32_t a, int32_t b) {
    char line[160];
    std::snprintf(line, sizeof line, format, a, b);
    put_line(line);
}

void report_not_found(const char *path) {
    std::string line = path;
    line += " not found";
    put_line(line.c_str());
}

/* The read sequence of a listing run on one side, printing nothing and
   with English words for the decoded lines of the report. */
int32_t load_side(int32_t side, const char *path) {
    cur_side = side;
    decode_tables_forget(side);
    bin_stream = path != nullptr ? std::fopen(path, "rb") : nullptr;
    if (bin_stream == nullptr) {
        trace("[zdbinasc_file_sub] fopen source NG");
        report_not_found(path != nullptr ? path : "");
        return COMPARE_NOT_OPENED;
    }
    dict_select = 1;
    dict_init(dict_select);
    int32_t codes[6];
    int32_t failed = read_program_blocks(codes);
    std::fclose(bin_stream);
    bin_stream = nullptr;
    position_index_reset();
    if (failed) {
        report_not_found(path);
        return COMPARE_NOT_READ;
    }
    return COMPARE_LOADED;
}

/* Name text of a name record slot: behind the sub type byte if any. */
std::string record_name(const uint8_t *record, int32_t has_subtype) {
    const char *name = reinterpret_cast<const char *>(record) +
                       (has_subtype ? TP_NAME_OFF_TEXT : TP_NAME_OFF_TEXT_SHORT);
    return std::string(name, strnlen(name, TP_NAME_FIELD_SIZE));
}

int16_t attr_field(const uint8_t *block, int32_t offset) {
    return static_cast<int16_t>((block[offset] << 8) | block[offset + 1]);
}

void compare_daughter_pair(int32_t left_slot, int32_t right_slot) {
    compare_lines(daughter_lines[0][left_slot], daughter_line_count[0][left_slot],
                  daughter_lines[1][right_slot], daughter_line_count[1][right_slot], 1);
    compare_attr(daughter_attr[0][left_slot], daughter_attr[1][right_slot]);
}

void free_both_sides() {
    for (int32_t side = 1; side >= 0; side--) {
        cur_side = side;
        free_program_blocks();
    }
    position_index_reset();
}

} // namespace

void compare_hex_line(const uint8_t *bytes, int32_t count) {
    std::string line;
    line.reserve(3 * static_cast<size_t>(count > 0 ? count : 0));
    char cell[4];
    for (int32_t i = 0; i < count; i++) {
        std::snprintf(cell, sizeof cell, "%02x ", bytes[i]);
        line += cell;
    }
    put_line(line.c_str());
}

void compare_prog_headers() {
    bool same = record_name(prog_header[0], prog_has_subtype[0]) ==
                    record_name(prog_header[1], prog_has_subtype[1]) &&
                prog_subtype[0] == prog_subtype[1];
    if (same)
        return;
    for (int32_t side = 0; side <= 1; side++) {
        cur_side = side;
        print_prog_header();
        dump_name_record(prog_header[side]);
    }
}

int32_t compare_attr(const uint8_t *left, const uint8_t *right) {
    struct field {
        int32_t offset;
        const char *format;
    };
    static const field fields[] = {
        {TP_ATTR_OFF_LINE_COUNT, "Attr Line Count Error %d <-> %d"},
        {TP_ATTR_OFF_DEFAULT_GROUP, "Attr Default Group Error %d <-> %d"},
        {TP_ATTR_OFF_CONTROL_CODE, "Attr Control Code Error %d <-> %d"},
    };
    int32_t differ = 0;
    for (const field &f : fields) {
        int16_t a = attr_field(left, f.offset), b = attr_field(right, f.offset);
        if (a != b) {
            report(f.format, a, b);
            differ = 1;
        }
    }
    return differ;
}

int32_t search_daughter(int32_t index, int32_t side) {
    int32_t found = -1;
    if (index >= 0 && index < P_SPS_PAIRS_MAX) {
        int32_t number = p_sps_pairs[side][index];
        for (int32_t slot = 1; slot <= daughter_high[side] && slot < TP_DAUGHTER_SLOTS; slot++) {
            if (daughter_number[side][slot] == number) {
                found = slot;
                break;
            }
        }
    }
    trace("[search_daughter] %d, %d, %d", index, side, found);
    return found;
}

void compare_daughters() {
    if (daughter_high[0] != daughter_high[1]) {
        report("Daughter Count Error %d <-> %d", daughter_high[0], daughter_high[1]);
        put_line("");
    }
    int32_t count = daughter_high[0] > daughter_high[1] ? daughter_high[0] : daughter_high[1];
    for (int32_t index = 0; index < count && index < P_SPS_PAIRS_MAX; index++) {
        int32_t left = search_daughter(index, 0);
        int32_t right = search_daughter(index, 1);
        if (left < 0) {
            report("Cound not found Daughter %d in left file.", p_sps_pairs[0][index], 0);
            put_line("");
        }
        if (right < 0) {
            report("Cound not found Daughter %d in right file.", p_sps_pairs[1][index], 0);
            put_line("");
        }
        if (left >= 0 && right >= 0)
            compare_daughter_pair(left, right);
    }
}

int32_t compare_run(const char *left, const char *right) {
    /* Whatever an earlier run left on either side is not ours to free. */
    decode_tables_forget(0);
    decode_tables_forget(1);
    int32_t rc = load_side(0, left);
    if (rc == COMPARE_LOADED)
        rc = load_side(1, right);
    if (rc == COMPARE_LOADED) {
        compare_prog_headers();
        compare_attr(attr_block[0], attr_block[1]);
        std::memset(p_sps_pairs, 0, sizeof p_sps_pairs);
        p_sps_pair_count = 0;
        compare_lines(main_lines[0], main_line_count[0], main_lines[1], main_line_count[1], 0);
        compare_positions();
        compare_appl();
        compare_daughters();
    }
    free_both_sides();
    return rc;
}
