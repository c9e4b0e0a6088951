/*
** appl_print.cpp - the /APPL section printed from the loaded application
** block: the mask groups first, then every other group that has a text,
** in the order of the group numbers. Of groups with one label only the
** first prints, except motion schedules, which all print.
*/
#include "sections/appl_section.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "binfmt/tp_format.h"
#include "core/dictionary.h"
#include "sections/appl_internal.h"
#include "sections/appl_records.h"
#include "text/decode_tables.h"
#include "text/line_cursor.h"
#include "text/put_line.h"

namespace {

constexpr int32_t muap_mask_at = 4;
constexpr int32_t equipment_at = 4;
constexpr int32_t arc_number_max = 2;
constexpr int32_t arc_places_max = 15;

const char *w(int32_t code) { return dict_word(code); }

void put_formatted(const char *format, ...) __attribute__((format(printf, 1, 2)));
void put_formatted(const char *format, ...) {
    char line[LINE_TEXT_SIZE];
    va_list ap;
    va_start(ap, format);
    std::vsnprintf(line, sizeof line, format, ap);
    va_end(ap);
    put_line(line);
}

/* The equipment byte of a group's label, or -1 when the label has none. */
int32_t equipment_byte(int32_t group) {
    int32_t length = 0;
    const uint8_t *label = appl_record(group, 0, &length);
    return label != nullptr && length > equipment_at ? label[equipment_at] : -1;
}

int32_t print_arc_equipment(int32_t group) {
    int32_t value = equipment_byte(group);
    if (value < 0)
        return 1;
    if (value <= arc_number_max) {
        put_formatted("  %s %s %s %s %s %d %s", w(aw_arc), w(aw_welding), w(aw_equipment), w(aw_number),
                      w(aw_colon), value, w(aw_semicolon));
    } else if (value <= arc_places_max) {
        char places[16];
        std::snprintf(places, sizeof places, "%s,%s,%s,%s", value & 1 ? "1" : "*", value & 2 ? "1" : "*",
                      value & 4 ? "1" : "*", value & 8 ? "1" : "*");
        put_formatted("  %s %s %s %s %s %s", w(aw_arc), w(aw_welding), w(aw_equipment), w(aw_colon), places,
                      w(aw_semicolon));
    } else {
        put_line("");
    }
    return 0;
}

int32_t print_spot_equipment(int32_t group) {
    int32_t value = equipment_byte(group);
    if (value < 0)
        return 1;
    put_formatted("\t%s %s %s %s %s %d %s", w(aw_spot), w(aw_welding), w(aw_equipment), w(aw_number),
                  w(aw_colon), value, w(aw_semicolon));
    return 0;
}

int32_t print_sealing_equipment(int32_t group) {
    int32_t value = equipment_byte(group);
    if (value < 0)
        return 1;
    put_formatted("  %s %s%s%s %s %s %s %d %s", w(aw_analog), w(aw_pro), w(aw_minus), w(aw_flo),
                  w(aw_equipment), w(aw_number), w(aw_colon), value, w(aw_semicolon));
    return 0;
}

int32_t print_motion_schedule(int32_t group) {
    int32_t length = 0;
    const uint8_t *data = appl_record(group, 1, &length);
    if (data == nullptr || length < 1)
        return 1;
    put_formatted("\t%s %s %s %s %d %s", w(aw_smartfollow), w(aw_schedule), w(aw_number), w(aw_colon),
                  data[0] + 1, w(aw_semicolon));
    return 0;
}

/* The labels that print, in the order they are tested; a null printer
   belongs to a family that has not plugged its printer in. */
struct label_row {
    const char *label;
    appl_group_printer print;
};

label_row label_rows[] = {
    {"PLCG", nullptr}, {"SPOT", print_spot_equipment}, {"ARCW", print_arc_equipment},
    {"SLN1", print_sealing_equipment}, {"PAPR", nullptr}, {"PAJB", nullptr},
    {"SLPR", print_dispense_process}, {"SLJB", print_dispense_job},
    {"BLT0", nullptr}, {"BLT1", nullptr}, {"BLT2", nullptr}, {"BLT3", nullptr},
    {"BCT0", nullptr}, {"BCT1", nullptr}, {"BCT2", nullptr}, {"BCT3", nullptr},
    {"BRT0", nullptr}, {"BRT1", nullptr}, {"BRT2", nullptr}, {"BRT3", nullptr},
    {"BTJB", nullptr},
    {"BTP0", nullptr}, {"BTP1", nullptr}, {"BTP2", nullptr}, {"BTP3", nullptr}, {"BTP4", nullptr},
    {"BTP5", nullptr}, {"BTP6", nullptr}, {"BTP7", nullptr}, {"BTP8", nullptr}, {"BTP9", nullptr},
    {"BLZ0", nullptr}, {"BLZ1", nullptr}, {"BLZ2", nullptr}, {"BLZ3", nullptr},
    {"BCZ0", nullptr}, {"BCZ1", nullptr}, {"BCZ2", nullptr}, {"BCZ3", nullptr},
    {"BRZ0", nullptr}, {"BRZ1", nullptr}, {"BRZ2", nullptr}, {"BRZ3", nullptr},
    {"PARE", nullptr}, {"PAR2", nullptr}, {"PAR3", nullptr},
    {"MOTN", print_motion_schedule}, {"LNTK", nullptr},
};

label_row *label_row_of(const char *label) {
    for (label_row &row : label_rows)
        if (std::strncmp(row.label, label, TP_APPL_LABEL_SIZE) == 0)
            return &row;
    return nullptr;
}

/* A group prints only as the first of its label, a motion schedule
   always. *label gets its four letters. */
bool group_prints(int32_t group, char label[5]) {
    if (appl_group_label(group, label) != 0)
        return false;
    if (std::strcmp(label, "MOTN") == 0)
        return true;
    int32_t length = 0;
    const uint8_t *data = appl_record(group, 0, &length);
    return appl_find(data, length) == group;
}

void print_mask_group(int32_t group) {
    int32_t length = 0;
    const uint8_t *label = appl_record(group, 0, &length);
    char line[LINE_TEXT_SIZE];
    muap_text(label, length, line, sizeof line);
    if (line[0] != 0)
        put_line(line);
}

} // namespace

void muap_text(const uint8_t *label, int32_t length, char *out, size_t size) {
    if (size == 0)
        return;
    out[0] = 0;
    if (label == nullptr || length < muap_mask_at + 4)
        return;
    uint32_t mask = (static_cast<uint32_t>(label[4]) << 24) | (static_cast<uint32_t>(label[5]) << 16) |
                    (static_cast<uint32_t>(label[6]) << 8) | label[7];
    int32_t word;
    switch (mask) {
    case 1: word = aw_arc; break;
    case 2: word = aw_spot; break;
    case 8: word = aw_handling; break;
    case 16: word = aw_laser; break;
    case 32: word = aw_dispense; break;
    case 64: word = aw_paint; break;
    default: return;
    }
    std::snprintf(out, size, "\t%s : TRUE;", w(word));
}

int32_t appl_set_group_printer(const char *label, appl_group_printer print) {
    label_row *row = label != nullptr ? label_row_of(label) : nullptr;
    if (row == nullptr)
        return 1;
    row->print = print;
    return 0;
}

int32_t print_appl_section() {
    int32_t s = cur_side;
    if (!appl_loaded[s])
        return 0;
    put_formatted("%s%s", w(aw_slash), w(aw_appl));
    int32_t low = appl_low_group[s];
    int32_t high = appl_high_group[s];
    if (low < 0)
        return 0;
    char label[5];
    for (int32_t g = low; g <= high; g++)
        if (group_prints(g, label) && std::strcmp(label, "MUAP") == 0)
            print_mask_group(g);
    for (int32_t g = low; g <= high; g++) {
        if (!group_prints(g, label))
            continue;
        const label_row *row = label_row_of(label);
        if (row != nullptr && row->print != nullptr)
            row->print(g);
    }
    return 0;
}
