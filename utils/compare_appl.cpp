/*
** compare_appl.cpp - application groups of both programs, matched by
** label rather than by group number, and compared record by record in
** the way each label's records call for.
*/
#include <cstdio>
#include <cstring>

#include "platform/platform.h"
#include "text/decode_tables.h"
#include "text/put_line.h"
#include "utils/compare.h"
#include "utils/dump.h"

namespace {

constexpr int32_t label_room = 8;
/* The generic record compare: three bytes, one passed over, then these. */
constexpr int32_t generic_head = 3;
constexpr int32_t generic_tail_at = 4;
constexpr int32_t generic_tail = 92;
/* Size of the palletizing configuration record. */
constexpr int32_t pal_cfg_size = 46;

uint8_t data_byte(const uint8_t *record, int32_t i) {
    return (i >= 0 && i < appl_data_length(record)) ? record[TP_APPL_RECORD_HEAD + i] : 0;
}

bool label_is(const char *label, const char *name) { return std::strncmp(label, name, 4) == 0; }

/* How many bytes of record 0 tell a group from another. */
int32_t label_compare_length(const char *label) {
    if (label_is(label, "MOTN"))
        return 4;
    if (label_is(label, "CCBD") || label_is(label, "CCBA") || label_is(label, "CCID") ||
        label_is(label, "CCIA"))
        return 7;
    return 5;
}

bool bytes_differ(const uint8_t *l, const uint8_t *r, int32_t from, int32_t count) {
    for (int32_t i = from; i < from + count; i++)
        if (data_byte(l, i) != data_byte(r, i))
            return true;
    return false;
}

/* ---- the palletizing configuration, field by field ---- */

struct pal_field {
    const char *name;
    int32_t (*value)(const uint8_t *d);
};

int32_t be16_at(const uint8_t *d, int32_t at) { return (d[at] << 8) | d[at + 1]; }

const pal_field pal_fields[] = {
    {"ap_item", [](const uint8_t *d) { return int32_t{d[0]}; }},
    {"pal_no", [](const uint8_t *d) { return int32_t{d[1]}; }},
    {"col_num", [](const uint8_t *d) { return int32_t{d[2]}; }},
    {"row_num", [](const uint8_t *d) { return int32_t{d[3]}; }},
    {"lay_num", [](const uint8_t *d) { return int32_t{d[4]}; }},
    {"col_cfg", [](const uint8_t *d) { return int32_t{d[5] >> 4}; }},
    {"row_cfg", [](const uint8_t *d) { return int32_t{d[5] & 15}; }},
    {"lay_cfg", [](const uint8_t *d) { return int32_t{d[6] >> 4}; }},
    {"col_inter", [](const uint8_t *d) { return int32_t{(d[6] >> 1) & 7}; }},
    {"row_inter", [](const uint8_t *d) { return int32_t{((d[6] & 1) << 2) | (d[7] >> 6)}; }},
    {"lay_inter", [](const uint8_t *d) { return int32_t{(d[7] >> 3) & 7}; }},
    {"aux_inter", [](const uint8_t *d) { return int32_t{d[7] & 7}; }},
    {"btm_po_num", [](const uint8_t *d) { return be16_at(d, 8); }},
    {"aux_pos_sw", [](const uint8_t *d) { return int32_t{d[10] >> 7}; }},
    {"lay_ptn_num", [](const uint8_t *d) { return int32_t{d[10] & 0x7F}; }},
    {"col_unit", [](const uint8_t *d) { return be16_at(d, 12); }},
    {"row_unit", [](const uint8_t *d) { return be16_at(d, 14); }},
    {"lay_unit", [](const uint8_t *d) { return be16_at(d, 16); }},
    {"rout_po_num", [](const uint8_t *d) { return int32_t{d[18]}; }},
    {"rout_ptn_num", [](const uint8_t *d) { return int32_t{d[19]}; }},
    {"appr_po_num", [](const uint8_t *d) { return int32_t{d[20]}; }},
    {"rtrt_po_num", [](const uint8_t *d) { return int32_t{d[21]}; }},
    {"pal_type", [](const uint8_t *d) { return int32_t{d[22] >> 7}; }},
    {"reg_no", [](const uint8_t *d) { return int32_t{d[22] & 0x7F}; }},
    {"incr_val", [](const uint8_t *d) { return int32_t{static_cast<int8_t>(d[23])}; }},
    {"pal_odr", [](const uint8_t *d) { return int32_t{d[24] >> 5}; }},
    {"grp_msk", [](const uint8_t *d) { return int32_t{d[24] & 0x1F}; }},
    {"exe_flg.cfg", [](const uint8_t *d) { return int32_t{(d[26] >> 7) & 1}; }},
    {"exe_flg.bit6", [](const uint8_t *d) { return int32_t{(d[26] >> 6) & 1}; }},
    {"exe_flg.bit5", [](const uint8_t *d) { return int32_t{(d[26] >> 5) & 1}; }},
    {"exe_flg.bit4", [](const uint8_t *d) { return int32_t{(d[26] >> 4) & 1}; }},
};

void pal_cfg_copy(const uint8_t *record, uint8_t out[pal_cfg_size]) {
    for (int32_t i = 0; i < pal_cfg_size; i++)
        out[i] = data_byte(record, i);
}

/* Every field that differs prints its line; the comment is not looked at. */
bool pal_cfg_differs(const uint8_t *l, const uint8_t *r) {
    uint8_t a[pal_cfg_size], b[pal_cfg_size];
    pal_cfg_copy(l, a);
    pal_cfg_copy(r, b);
    bool differs = false;
    for (const pal_field &f : pal_fields) {
        int32_t x = f.value(a), y = f.value(b);
        if (x == y)
            continue;
        char line[96];
        std::snprintf(line, sizeof line, "%s %d <-> %d\n", f.name, x, y);
        put_line(line);
        differs = true;
    }
    return differs;
}

bool records_differ(const char *label, const uint8_t *l, const uint8_t *r) {
    if (label_is(label, "PLCR"))
        return false;
    if (label_is(label, "PLCG"))
        return pal_cfg_differs(l, r);
    if (label_is(label, "PLBP") || label_is(label, "PAPR"))
        return appl_data_length(l) != appl_data_length(r) || bytes_differ(l, r, 0, appl_data_length(l));
    if (label_is(label, "PLPO"))
        return bytes_differ(l, r, 0, 2);
    return bytes_differ(l, r, 0, generic_head) || bytes_differ(l, r, generic_tail_at, generic_tail);
}

const uint8_t *record_probe(int32_t side, int32_t type, int32_t instance) {
    const uint8_t *record = appl_record_at(side, type, instance);
    return platform_is_bad_read_ptr(record, TP_APPL_RECORD_HEAD) ? nullptr : record;
}

/* Records 1 up of a group found on both sides; types[side] is the group's
   number on that side. */
void compare_group(int32_t base, const int32_t types[2], const char *label) {
    int32_t high = appl_high_record[0][types[0]];
    if (appl_high_record[1][types[1]] > high)
        high = appl_high_record[1][types[1]];
    char line[96];
    for (int32_t instance = 1; instance <= high; instance++) {
        const uint8_t *rec[2];
        bool missing = false;
        for (int32_t side = 0; side <= 1; side++) {
            rec[side] = record_probe(side, types[side], instance);
            if (rec[side] != nullptr)
                continue;
            std::snprintf(line, sizeof line, "Could not find Appl%d Index %d , %d", side, types[side],
                          instance);
            put_line(line);
            missing = true;
        }
        if (missing || !records_differ(label, rec[0], rec[1]))
            continue;
        std::snprintf(line, sizeof line, "Index %d , %d , Label = %s", types[base], instance, label);
        put_line(line);
        compare_hex_line(rec[0] + TP_APPL_RECORD_HEAD, appl_data_length(rec[0]));
        compare_hex_line(rec[1] + TP_APPL_RECORD_HEAD, appl_data_length(rec[1]));
    }
}

/* A group the partner lacks: a multi application mask counts only when
   the right program lacks it; some labels never count. */
void report_missing(int32_t partner, int32_t type, const char *label) {
    bool counts;
    if (label_is(label, "MUAP"))
        counts = partner == 1;
    else
        counts = !(label_is(label, "LNTK") || label_is(label, "LANG") || label_is(label, "ARCW") ||
                   label_is(label, "PLRI"));
    if (!counts)
        return;
    char line[96];
    std::snprintf(line, sizeof line, "Appl Block%d Not Found Index %d , Label = %s", partner, type, label);
    put_line(line);
}

} // namespace

/* The side with the higher types is the base, so that no type of the
   other side goes unseen; the left one on a tie. */
void compare_appl() {
    int32_t base = appl_high_group[1] > appl_high_group[0] ? 1 : 0;
    int32_t partner = 1 - base;
    for (int32_t type = 0; type <= appl_high_group[base]; type++) {
        const uint8_t *head = record_probe(base, type, 0);
        if (head == nullptr)
            continue;
        uint8_t label_bytes[label_room];
        for (int32_t i = 0; i < label_room; i++)
            label_bytes[i] = data_byte(head, i);
        char label[TP_APPL_LABEL_SIZE + 1];
        appl_label_text(base, type, label, sizeof label);
        int32_t found = appl_label_find(partner, label_bytes, label_compare_length(label));
        if (found < 0) {
            report_missing(partner, type, label);
            continue;
        }
        int32_t types[2];
        types[base] = type;
        types[partner] = found;
        compare_group(base, types, label);
    }
}
