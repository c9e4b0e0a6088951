/*
** exports_config.cpp - the exports of messages, spot warnings and the robot
** cell configuration; each hands over to the core piece that owns the work.
*/
#include "vorex_zd.h"

#include "core/config.h"
#include "core/messages.h"
#include "core/spot_warnings.h"

extern "C" {

int32_t zdgeterrmsg(int32_t code, char *text) { return error_message(code, text); }

int32_t zdgetspotwarningscount(void) { return spot_warnings_count(); }

int32_t zdgetspotwarnings(int32_t number, char *text) { return spot_warning_text(number, text); }

int32_t zdreadparam(const char *directory) { return config_read_dir(directory); }

int32_t zdsetparam(const char *section, const char *key, const char *value) {
    return config_set(section, key, value);
}

void zdclearparam(void) { config_clear(); }

int32_t zdgetnumrobot(uint16_t *count) { return robot_model_count(count); }

int32_t zdgetrobotname(uint16_t row, char *key, char *english_name) {
    robot_model_names(row, 1, key, english_name);
    return 0;
}

int32_t zdgetrobotnamejpn(uint16_t row, char *key, char *japanese_name) {
    robot_model_names(row, 0, key, japanese_name);
    return 0;
}

int32_t addrobotconfig(const char *key, const char *japanese_name, const char *english_name,
                       const char *axis_letters, int32_t turn1, int32_t turn2, int32_t turn3,
                       int32_t f, int32_t l, int32_t u, int32_t t) {
    return robot_model_add(key, japanese_name, english_name, axis_letters, turn1, turn2, turn3, f, l,
                           u, t);
}

} // extern "C"
