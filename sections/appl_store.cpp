/*
** appl_store.cpp - application groups in the program image: new groups
** numbered one above the highest, their records, the groups every header
** of a kind makes, and the defaults the writer asks for.
*/
#include "sections/appl_store.h"

#include <cstring>

#include "binfmt/image_appl.h"
#include "binfmt/writer.h"
#include "core/config.h"

int32_t dispense_schedule = -1;
int32_t program_tracked = 0;

namespace {

constexpr int32_t muap_label_size = 12;
constexpr int32_t equipment_label_size = 5;
constexpr int32_t motion_label_size = 4;
constexpr int32_t track_label_size = 4;
constexpr int32_t track_record_size = 2;

void put_label(uint8_t *out, const char *label) { std::memcpy(out, label, 4); }

} // namespace

int32_t appl_new_group(const uint8_t *label, int32_t length, scan_ctx * /*ctx*/, int32_t *group) {
    int32_t next = 0;
    appl_type_count(&next);
    int32_t rc = appl_write(next, 0, label, length, APPL_MODE_REPLACE);
    if (rc == 0 && group)
        *group = next;
    return rc;
}

int32_t appl_add_record(int32_t group, int32_t n, const uint8_t *data, int32_t length) {
    return appl_write(group, n, data, length, APPL_MODE_REPLACE);
}

int32_t appl_image_has(const char *label) {
    int32_t type = 0, instance = 0;
    return appl_find(nullptr, label, 4, &type, &instance) == 0 ? 1 : 0;
}

int32_t appl_make_muap(uint32_t mask, scan_ctx *ctx) {
    uint8_t label[muap_label_size] = {};
    put_label(label, "MUAP");
    label[4] = static_cast<uint8_t>(mask >> 24);
    label[5] = static_cast<uint8_t>(mask >> 16);
    label[6] = static_cast<uint8_t>(mask >> 8);
    label[7] = static_cast<uint8_t>(mask);
    return appl_new_group(label, muap_label_size, ctx, nullptr);
}

int32_t appl_make_equipment(const char *label, int32_t number, scan_ctx *ctx) {
    uint8_t bytes[equipment_label_size];
    put_label(bytes, label);
    bytes[4] = static_cast<uint8_t>(number);
    return appl_new_group(bytes, equipment_label_size, ctx, nullptr);
}

int32_t appl_make_motion(int32_t schedule_byte, scan_ctx *ctx) {
    uint8_t label[motion_label_size];
    put_label(label, "MOTN");
    int32_t group = 0;
    int32_t rc = appl_new_group(label, motion_label_size, ctx, &group);
    uint8_t record = static_cast<uint8_t>(schedule_byte);
    return rc ? rc : appl_add_record(group, 1, &record, 1);
}

int32_t appl_spot_default(int32_t equipment) {
    constexpr uint32_t spot_bit = 2;
    int32_t rc = appl_image_has("MUAP") ? 0 : appl_make_muap(spot_bit, nullptr);
    return rc ? rc : appl_make_equipment("SPOT", equipment, nullptr);
}

int32_t appl_complete_groups() {
    int32_t rc = 0;
    if (!appl_image_has("MOTN")) {
        if (dispense_schedule >= 0)
            rc = appl_make_motion(dispense_schedule, nullptr);
        else if (opt_smartfollow)
            rc = appl_make_motion(0, nullptr);
    }
    if (rc == 0 && program_tracked && !appl_image_has("LNTK")) {
        uint8_t label[track_label_size];
        put_label(label, "LNTK");
        uint8_t record[track_record_size] = {0, 0};
        int32_t group = 0;
        rc = appl_new_group(label, track_label_size, nullptr, &group);
        if (rc == 0)
            rc = appl_add_record(group, 1, record, track_record_size);
    }
    return rc;
}

void appl_run_reset() {
    dispense_schedule = -1;
    program_tracked = 0;
    writer_set_spot_header_hook(appl_spot_default);
    writer_set_appl_complete_hook(appl_complete_groups);
}
