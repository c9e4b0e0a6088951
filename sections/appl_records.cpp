/*
** appl_records.cpp - lookups in the loaded application tables of cur_side.
** Every read is bounded by the tables' sizes and the records' own lengths:
** the tables come from a file that may be hostile.
*/
#include "sections/appl_records.h"

#include <cstring>

#include "binfmt/tp_format.h"
#include "text/decode_tables.h"

namespace {

constexpr int32_t label_compare_default = 5;
constexpr int32_t label_compare_motion = 4;
constexpr int32_t label_compare_cc = 7;

const char *const seven_byte_labels[] = {"CCBD", "CCBA", "CCID", "CCIA"};

bool starts_with(const uint8_t *label, int32_t length, const char *word) {
    return length >= TP_APPL_LABEL_SIZE && std::memcmp(label, word, TP_APPL_LABEL_SIZE) == 0;
}

bool group_in_range(int32_t group) {
    int32_t s = cur_side;
    return appl_groups[s] != nullptr && appl_high_record[s] != nullptr && group >= 0 &&
           group <= appl_high_group[s] && appl_groups[s][group] != nullptr;
}

} // namespace

int32_t appl_label_compare_length(const uint8_t *label, int32_t length) {
    if (label == nullptr)
        return label_compare_default;
    if (starts_with(label, length, "MOTN"))
        return label_compare_motion;
    for (const char *word : seven_byte_labels)
        if (starts_with(label, length, word))
            return label_compare_cc;
    return label_compare_default;
}

int32_t appl_record_count(int32_t group) {
    return group_in_range(group) ? appl_high_record[cur_side][group] + 1 : 0;
}

const uint8_t *appl_record(int32_t group, int32_t n, int32_t *length) {
    if (length)
        *length = 0;
    if (n < 0 || n >= appl_record_count(group))
        return nullptr;
    const uint8_t *rec = appl_groups[cur_side][group][n];
    if (rec == nullptr)
        return nullptr;
    if (length)
        *length = rec[TP_APPL_RECORD_HEAD - 1];
    return rec + TP_APPL_RECORD_HEAD;
}

int32_t appl_find(const uint8_t *label, int32_t length) {
    int32_t s = cur_side;
    if (label == nullptr || appl_low_group[s] < 0)
        return -1;
    int32_t compared = appl_label_compare_length(label, length);
    for (int32_t g = appl_low_group[s]; g <= appl_high_group[s]; g++) {
        int32_t have = 0;
        const uint8_t *data = appl_record(g, 0, &have);
        if (data == nullptr)
            continue;
        int32_t i = 0;
        while (i < compared && appl_data_byte(label, length, i) == appl_data_byte(data, have, i))
            i++;
        if (i == compared)
            return g;
    }
    return -1;
}

int32_t appl_group_label(int32_t group, char out[5]) {
    std::memset(out, 0, 5);
    int32_t length = 0;
    const uint8_t *data = appl_record(group, 0, &length);
    if (data == nullptr)
        return 1;
    for (int32_t i = 0; i < TP_APPL_LABEL_SIZE && i < length && data[i] != 0; i++)
        out[i] = static_cast<char>(data[i]);
    return 0;
}
