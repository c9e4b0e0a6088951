/*
** config_setters.cpp - the setters behind zdsetparam: one robot group, one
** macro name, one spot, arc or option setting. Each returns 0 when it took
** the setting and 1 when it refused it; the configuration files go through
** the same setters.
*/
#include "core/config.h"

#include <cstring>

#include "core/run_state.h"

namespace {

const char *text_or_empty(const char *text) { return text ? text : ""; }

bool starts_with(const char *text, const char *prefix) {
    return std::strncmp(text, prefix, std::strlen(prefix)) == 0;
}

/* 0 for the two values an on/off option takes, 1 for any other. */
int32_t flag_result(int32_t value) { return value == 0 || value == 1 ? 0 : 1; }

/* Splits "MODEL LETTERS" into the model key and the letters behind it,
   blanks dropped; keeps the first MAX_GROUP_AXES letters and returns how
   many there are, or -1 when the key does not fit the group's model text. */
int32_t split_robot_key(const char *text, char *model, char *letters) {
    size_t n = 0;
    while (text[n] && text[n] != ' ')
        n++;
    if (n >= GROUP_MODEL_TEXT)
        return -1;
    std::memcpy(model, text, n);
    model[n] = 0;
    int32_t count = 0;
    for (const char *p = text + n; *p; p++) {
        if (*p == ' ')
            continue;
        if (count < MAX_GROUP_AXES)
            letters[count] = *p;
        count++;
    }
    letters[count < MAX_GROUP_AXES ? count : MAX_GROUP_AXES] = 0;
    return count;
}

uint32_t config_mask_of(const robot_model &m) {
    uint32_t mask = 0;
    if (m.has_f)
        mask |= 1u << 31;
    if (m.has_l)
        mask |= 1u << 30;
    if (m.has_u)
        mask |= 1u << 29;
    if (m.has_t)
        mask |= 1u << 28;
    mask |= (static_cast<uint32_t>(m.turn[2]) & 0xFF) << 16;
    mask |= (static_cast<uint32_t>(m.turn[1]) & 0xFF) << 8;
    mask |= static_cast<uint32_t>(m.turn[0]) & 0xFF;
    return mask;
}

/* Axis kinds of group index g: the model's linear axes, then the extended
   axes, of which the letter L marks a linear one. */
void set_axis_kinds(int32_t g, const char *model, const char *letters, int32_t first_extended) {
    for (int32_t i = 0; i < MAX_GROUP_AXES; i++)
        axis_is_linear[g][i] = 0;
    if (const robot_linear_row *lin = robot_linear_find(model))
        for (int32_t i = 0; i < ROBOT_LINEAR_FLAGS; i++)
            axis_is_linear[g][i] = lin->linear[i];
    for (int32_t e = 0; letters[e]; e++) {
        int32_t index = first_extended + e;
        if (index < MAX_GROUP_AXES)
            axis_is_linear[g][index] = letters[e] == 'L' || letters[e] == 'l';
    }
}

} // namespace

int32_t set_robot_param(const char *key, const char *value) {
    int32_t group = config_atoi(value);
    if (group < 1 || group > MAX_GROUPS || !key)
        return 1;
    char model[GROUP_MODEL_TEXT];
    char letters[MAX_GROUP_AXES + 1];
    int32_t extended = split_robot_key(key, model, letters);
    if (extended < 0)
        return 1;
    int32_t row = robot_model_find(model);
    if (row < 0)
        return 1;
    bench_model = starts_with(model, "BENCHARM") || starts_with(model, "WELDMINI");
    bool armless = std::strcmp(model, "ARMLESS") == 0;
    /* An arm takes up to three extended axes; without an arm the free axes
       are the group's own, as many as a group has. */
    if (extended > (armless ? MAX_GROUP_AXES : 3))
        return 1;

    int32_t g = group - 1;
    const robot_model &m = robot_models[row];
    group_model_row[g] = row;
    std::memcpy(group_model[g], model, std::strlen(model) + 1);
    scr_grp[g].num_axes = static_cast<uint8_t>(m.axes + extended);
    scr_grp[g].num_rob_axes = static_cast<uint8_t>(m.axes);
    scr_grp[g].config_mask = config_mask_of(m);
    set_axis_kinds(g, model, letters, m.axes);
    if (armless)
        scr_grp[g].num_rob_axes = scr_grp[g].num_axes;
    if (group_count < group)
        group_count = static_cast<int8_t>(group);
    return 0;
}

int32_t macro_find(const char *name) {
    if (!name)
        return -1;
    for (int32_t i = 0; i < macro_count; i++)
        if (std::strcmp(macro_table[i].name, name) == 0)
            return i;
    return -1;
}

int32_t set_macro_param(const char *key, const char *value) {
    const char *name = text_or_empty(key);
    size_t len = std::strlen(name);
    if (len == 0 || len > MACRO_NAME_MAX)
        return 1;
    int32_t number = config_atoi(value);
    int32_t row = macro_find(name);
    if (row >= 0) {
        macro_table[row].number = number;
        return 0;
    }
    if (macro_count >= MACRO_CAPACITY)
        return 1;
    std::memcpy(macro_table[macro_count].name, name, len + 1);
    macro_table[macro_count].number = number;
    macro_count++;
    return 0;
}

int32_t set_spot_param(const char *key, const char *value) {
    if (config_same_word(key, "SERVOGUN")) {
        spot_servo_gun = 1;
        return 0;
    }
    if (config_same_word(key, "AIRGUN")) {
        spot_servo_gun = 0;
        return 0;
    }
    if (config_same_word(key, "STROKE")) {
        spot_stroke = config_atoi(value);
        return flag_result(spot_stroke);
    }
    if (config_same_word(key, "PRESSURE")) {
        /* The key word, not the value, is converted: the pressure option
           is always 0. Kept as the controller side expects it. */
        spot_pressure = config_atoi(key);
        return flag_result(spot_pressure);
    }
    return 1;
}

int32_t set_arc_param(const char *key, const char *value) {
    const char *v = text_or_empty(value);
    if (config_same_word(key, "ASTIME")) {
        /* Like PRESSURE, the key word is converted: always 0. */
        arc_astime = config_atoi(key);
        return 0;
    }
    if (config_same_word(key, "POWER")) {
        if (std::strcmp(v, "WIRE") == 0) {
            arc_power = 0;
            arc_wire_mode = 1;
            return 0;
        }
        if (std::strcmp(v, "CURRENT") == 0) {
            arc_power = 1;
            return 0;
        }
        return 1;
    }
    if (config_same_word(key, "PROCESS")) {
        if (std::strcmp(v, "TIG") == 0) {
            arc_process = 1;
            return 0;
        }
        if (std::strcmp(v, "MIG") == 0 || std::strcmp(v, "CO2") == 0) {
            arc_process = 0;
            return 0;
        }
        return 1;
    }
    if (config_same_word(key, "WIRE_UNIT")) {
        static const char *const units[] = {"MM_SEC", "CM_MIN", "IPM"};
        for (int32_t i = 0; i < 3; i++)
            if (std::strcmp(v, units[i]) == 0) {
                arc_wire_unit = i;
                return 0;
            }
        return 1;
    }
    return 1;
}

int32_t set_option_param(const char *key, const char *value) {
    int32_t *option = nullptr;
    if (config_same_word(key, "SMARTFOLLOW"))
        option = &opt_smartfollow;
    else if (config_same_word(key, "VISION_Q770"))
        option = &opt_vision;
    else if (config_same_word(key, "DISPENSE"))
        option = &opt_dispense;
    if (!option)
        return 1;
    *option = config_atoi(value);
    return flag_result(*option);
}

int32_t config_set(const char *section, const char *key, const char *value) {
    int32_t (*setter)(const char *, const char *) = nullptr;
    if (config_same_word(section, "ROBOT"))
        setter = set_robot_param;
    else if (config_same_word(section, "MACRO"))
        setter = set_macro_param;
    else if (config_same_word(section, "SPOT"))
        setter = set_spot_param;
    else if (config_same_word(section, "ARC"))
        setter = set_arc_param;
    else if (config_same_word(section, "PARAM"))
        setter = set_option_param;
    if (!setter)
        return 0;
    return setter(key, value) == 0 ? 1 : 0;
}
