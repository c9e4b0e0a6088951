/*
** config_state.cpp - the module state of the robot cell configuration, its
** clearing, the "$SCR" / "$SCR_GRP" system variables and small helpers the
** setters and readers share.
*/
#include "core/config.h"

#include <climits>
#include <cstring>

#include "core/run_state.h"

scr_group scr_grp[MAX_GROUPS];
char group_model[MAX_GROUPS][GROUP_MODEL_TEXT];
int32_t group_model_row[MAX_GROUPS] = {-1, -1, -1, -1, -1};
int32_t axis_is_linear[MAX_GROUPS][MAX_GROUP_AXES];
int32_t bench_model = 0;

macro_row macro_table[MACRO_CAPACITY];
int32_t macro_count = 0;

int32_t spot_servo_gun = 0;
int32_t spot_stroke = 0;
int32_t spot_pressure = 0;

int32_t arc_process = 0;
int32_t arc_power = 1;
int32_t arc_wire_mode = 0;
int32_t arc_wire_unit = 0;
int32_t arc_astime = 0;

int32_t opt_smartfollow = 0;
int32_t opt_vision = 0;
int32_t opt_dispense = 0;
int32_t track_sensor_default = 0;
int32_t dispense_default = 0;

void config_clear() {
    spot_servo_gun = 0;
    spot_stroke = 0;
    spot_pressure = 0;
    std::memset(macro_table, 0, sizeof macro_table);
    macro_count = 0;
    group_count = 0;
    opt_smartfollow = 0;
    opt_vision = 0;
    opt_dispense = 0;
    track_sensor_default = 5;
    dispense_default = 5;
}

int32_t system_variable(const char *, const char *name, int32_t, int32_t, void **out) {
    if (!name || !out)
        return 0;
    if (std::strcmp(name, "$SCR_GRP") == 0)
        *out = scr_grp;
    else if (std::strcmp(name, "$SCR") == 0)
        *out = &group_count;
    return 0;
}

const scr_group *group_record(int32_t group) {
    if (group < 1 || group > MAX_GROUPS)
        return nullptr;
    return &scr_grp[group - 1];
}

int32_t group_default_config(int32_t group, int8_t turns[3], uint8_t *flags) {
    turns[0] = turns[1] = turns[2] = 0;
    *flags = 0;
    if (group < 1 || group > MAX_GROUPS)
        return 1;
    int32_t row = group_model_row[group - 1];
    if (row < 0 || row >= ROBOT_MODEL_CAPACITY || !robot_models[row].key)
        return 1;
    const robot_model &m = robot_models[row];
    for (int i = 0; i < 3; i++)
        turns[i] = static_cast<int8_t>(m.default_turn[i]);
    *flags = static_cast<uint8_t>((m.default_f ? 0x80 : 0) | (m.default_l ? 0x40 : 0) |
                                  (m.default_u ? 0x20 : 0) | (m.default_t ? 0x10 : 0));
    return 0;
}

int32_t config_atoi(const char *text) {
    if (!text)
        return 0;
    while (*text == ' ' || (*text >= '\t' && *text <= '\r'))
        text++;
    bool negative = *text == '-';
    if (*text == '-' || *text == '+')
        text++;
    int64_t value = 0;
    for (; *text >= '0' && *text <= '9'; text++) {
        value = value * 10 + (*text - '0');
        if (value > static_cast<int64_t>(INT32_MAX) + 1)
            value = static_cast<int64_t>(INT32_MAX) + 1;
    }
    if (negative)
        value = -value;
    if (value > INT32_MAX)
        value = INT32_MAX;
    return static_cast<int32_t>(value);
}

bool config_same_word(const char *a, const char *b) {
    a = a ? a : "";
    b = b ? b : "";
    for (;; a++, b++) {
        unsigned ca = static_cast<unsigned char>(*a), cb = static_cast<unsigned char>(*b);
        if (ca >= 'a' && ca <= 'z')
            ca -= 32;
        if (cb >= 'a' && cb <= 'z')
            cb -= 32;
        if (ca != cb)
            return false;
        if (ca == 0)
            return true;
    }
}
