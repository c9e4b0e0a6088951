/*
** dump_appl.cpp - the application block in the dump, and the bounded
** lookups of application records by type, instance and label that the
** dump and the compare share.
*/
#include <cstdio>
#include <cstring>
#include <string>

#include "text/decode_tables.h"
#include "text/put_line.h"
#include "utils/dump.h"

namespace {

constexpr int32_t label_room = 8;

appl_type_dumper type_dumper = dump_appl_type_bin;

/* Data byte i of a record, 0 past its data. */
uint8_t data_byte(const uint8_t *record, int32_t i) {
    return i < appl_data_length(record) ? record[TP_APPL_RECORD_HEAD + i] : 0;
}

bool label_matches(const uint8_t *record, const uint8_t *label, int32_t length) {
    for (int32_t i = 0; i < length; i++)
        if (data_byte(record, i) != label[i])
            return false;
    return true;
}

void append_hex(std::string &line, uint8_t byte) {
    static const char digits[] = "0123456789ABCDEF";
    line += digits[byte >> 4];
    line += digits[byte & 15];
}

} // namespace

const uint8_t *appl_record_at(int32_t side, int32_t type, int32_t instance) {
    if (side < 0 || side >= DECODE_SIDES || appl_groups[side] == nullptr)
        return nullptr;
    if (type < 0 || type > appl_high_group[side] || appl_groups[side][type] == nullptr)
        return nullptr;
    if (appl_high_record[side] == nullptr || instance < 0 || instance > appl_high_record[side][type])
        return nullptr;
    return appl_groups[side][type][instance];
}

void appl_label_text(int32_t side, int32_t type, char *out, size_t size) {
    if (size == 0)
        return;
    out[0] = 0;
    const uint8_t *record = appl_record_at(side, type, 0);
    if (record == nullptr)
        return;
    size_t i = 0;
    for (; i + 1 < size; i++)
        out[i] = static_cast<char>(data_byte(record, static_cast<int32_t>(i)));
    out[i] = 0;
}

int32_t appl_label_find(int32_t side, const uint8_t *label, int32_t length) {
    if (side < 0 || side >= DECODE_SIDES || length > label_room)
        return -1;
    for (int32_t type = 0; type <= appl_high_group[side]; type++) {
        const uint8_t *record = appl_record_at(side, type, 0);
        if (record != nullptr && label_matches(record, label, length))
            return type;
    }
    return -1;
}

appl_type_dumper set_appl_type_dumper(appl_type_dumper dumper) {
    appl_type_dumper old = type_dumper;
    type_dumper = dumper != nullptr ? dumper : dump_appl_type_bin;
    return old;
}

/* The form a listing's BIN clause takes: all records of the type from
   record 0 up, each as hex bytes joined by ",", the records joined by ":". */
void dump_appl_type_bin(int32_t type) {
    int32_t s = cur_side;
    std::string line = "        BIN[";
    bool first = true;
    int32_t high = appl_record_at(s, type, 0) != nullptr ? appl_high_record[s][type] : -1;
    for (int32_t instance = 0; instance <= high; instance++) {
        const uint8_t *record = appl_record_at(s, type, instance);
        if (record == nullptr)
            continue;
        if (!first)
            line += ':';
        first = false;
        for (int32_t i = 0; i < appl_data_length(record); i++) {
            if (i > 0)
                line += ',';
            append_hex(line, record[TP_APPL_RECORD_HEAD + i]);
        }
    }
    line += "];";
    put_line(line.c_str());
}

/* Types from the last one read up to the highest; a type without its
   record 0 has no label and is passed over, and of several MOTN types only
   the first one shows. */
void dump_appl_section() {
    int32_t s = cur_side;
    put_line("Application Data Block Begin");
    put_line("        04");
    static const uint8_t motn[label_room] = {'M', 'O', 'T', 'N'};
    int32_t first_motn = appl_label_find(s, motn, 4);
    int32_t low = appl_low_group[s] > 0 ? appl_low_group[s] : 0;
    for (int32_t type = low; type <= appl_high_group[s]; type++) {
        if (appl_record_at(s, type, 0) == nullptr)
            continue;
        char label[TP_APPL_LABEL_SIZE + 1];
        appl_label_text(s, type, label, sizeof label);
        if (std::memcmp(label, "MOTN", 4) == 0 && type != first_motn)
            continue;
        char head[64];
        std::snprintf(head, sizeof head, "    Application Data %d = %4s", type, label);
        put_line(head);
        type_dumper(type);
    }
    put_line("        ff ff");
    put_line("Application Data Block End");
    put_line("");
}
