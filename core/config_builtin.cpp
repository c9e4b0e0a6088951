/*
** config_builtin.cpp - the built-in robot cell, the same four files as
** config/default: one group with a general-purpose six-axis arm, no macros,
** an air gun, MIG welding with CURRENT power and wire speed in mm/sec. A
** tool loads it when no cell directory is given, from any directory.
*/
#include "core/config.h"

#include <cstring>

namespace {

struct builtin_file {
    const char *name;
    const char *text;
};

const builtin_file builtin_files[] = {
    {"robot.cfg", "1\n\"GA6-1400-12\"\n\"\"\n\"\"\n\"\"\n\"\"\n\"\"\n\"\"\n\"\"\n\"\"\n\"\"\n"},
    {"macro.cfg", "0\n"},
    {"spot.cfg", "1\n0\n0\n"},
    {"arc.cfg", "\"MIG\"\n\"CURRENT\"\n\"MM_SEC\"\n"},
};

int32_t read_builtin(const char *name, int32_t (*reader)(cfg_source *)) {
    const char *text = config_builtin_text(name);
    cfg_source src = {nullptr, text, std::strlen(text), 0};
    return reader(&src);
}

} // namespace

const char *config_builtin_text(const char *file_name) {
    if (!file_name)
        return nullptr;
    for (const builtin_file &f : builtin_files)
        if (std::strcmp(f.name, file_name) == 0)
            return f.text;
    return nullptr;
}

int32_t config_load_builtin() {
    /* The same order and readers as a cell directory. */
    config_clear();
    read_builtin("macro.cfg", read_macro_cfg);
    read_builtin("spot.cfg", read_spot_cfg);
    arc_cfg_defaults();
    read_builtin("arc.cfg", read_arc_cfg);
    return read_builtin("robot.cfg", read_robot_cfg);
}

int32_t config_load(const char *directory) {
    if (!directory || !directory[0])
        return config_load_builtin();
    return config_read_dir(directory);
}
