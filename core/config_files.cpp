/*
** config_files.cpp - the readers of the four files of a robot cell
** (macro.cfg, spot.cfg, arc.cfg, robot.cfg) and zdreadparam's order of
** reading them. A file that does not open is passed over silently; the
** readers set everything through the setters, whose refusals they ignore.
*/
#include "core/config.h"

#include <cstdio>
#include <cstring>
#include <string>

namespace {

/* Next character of the source, or EOF. */
int next_char(cfg_source *src) {
    if (src->file)
        return std::getc(src->file);
    if (src->pos >= src->size)
        return EOF;
    return static_cast<unsigned char>(src->text[src->pos++]);
}

using cfg_reader = int32_t (*)(cfg_source *);

int32_t read_file(const std::string &dir, const char *name, cfg_reader reader) {
    std::string path = dir + name;
    FILE *f = std::fopen(path.c_str(), "r");
    if (!f)
        return 0;
    cfg_source src = {f, nullptr, 0, 0};
    int32_t result = reader(&src);
    std::fclose(f);
    return result;
}

} // namespace

int32_t cfg_read_line(cfg_source *src, char *buf, size_t size) {
    size_t n = 0;
    int c = next_char(src);
    if (c == EOF)
        return 0;
    for (; c != EOF && c != '\n'; c = next_char(src))
        if (n + 1 < size)
            buf[n++] = static_cast<char>(c);
    if (n > 0 && buf[n - 1] == '\r')
        n--;
    if (size > 0)
        buf[n] = 0;
    return 1;
}

int32_t read_quoted_line(cfg_source *src, char *buf, size_t size) {
    char line[CFG_LINE_MAX];
    if (!cfg_read_line(src, line, sizeof line))
        return 0;
    size_t len = std::strlen(line);
    size_t n = len >= 2 ? len - 2 : 0;
    if (n + 1 > size)
        n = size ? size - 1 : 0;
    if (size == 0)
        return 1;
    if (n)
        std::memcpy(buf, line + 1, n);
    buf[n] = 0;
    return 1;
}

int32_t read_macro_cfg(cfg_source *src) {
    char line[CFG_LINE_MAX];
    if (!cfg_read_line(src, line, sizeof line))
        return 0;
    int32_t count = config_atoi(line);
    for (int32_t number = 1; number <= count; number++) {
        if (!read_quoted_line(src, line, sizeof line))
            break;
        if (!line[0])
            continue;
        char text[16];
        std::snprintf(text, sizeof text, "%d", static_cast<int>(number));
        set_macro_param(line, text);
    }
    return 0;
}

int32_t read_spot_cfg(cfg_source *src) {
    char gun[CFG_LINE_MAX], stroke[CFG_LINE_MAX], pressure[CFG_LINE_MAX];
    if (!cfg_read_line(src, gun, sizeof gun) || !cfg_read_line(src, stroke, sizeof stroke) ||
        !cfg_read_line(src, pressure, sizeof pressure))
        return 0;
    set_spot_param(config_atoi(gun) == 2 ? "SERVOGUN" : "AIRGUN", "");
    set_spot_param("STROKE", stroke);
    set_spot_param("PRESSURE", pressure);
    return 0;
}

void arc_cfg_defaults() {
    arc_process = 0;
    arc_power = 1;
    arc_wire_unit = 0;
}

int32_t read_arc_cfg(cfg_source *src) {
    char process[CFG_LINE_MAX], power[CFG_LINE_MAX], unit[CFG_LINE_MAX];
    if (!read_quoted_line(src, process, sizeof process) || !read_quoted_line(src, power, sizeof power) ||
        !read_quoted_line(src, unit, sizeof unit))
        return 0;
    set_arc_param("PROCESS", std::strcmp(process, "TIG") == 0 ? "TIG" : "MIG");
    set_arc_param("POWER", std::strcmp(power, "WIRE") == 0 ? "WIRE" : "CURRENT");
    set_arc_param("WIRE_UNIT", unit);
    return 0;
}

int32_t read_robot_cfg(cfg_source *src) {
    char line[CFG_LINE_MAX];
    if (!cfg_read_line(src, line, sizeof line))
        return 0;
    int32_t groups = config_atoi(line);
    if (groups < 1 || groups > MAX_GROUPS)
        return 0;
    for (int32_t group = 1; group <= groups; group++) {
        if (!read_quoted_line(src, line, sizeof line))
            return 0;
        std::string text = line;
        text += ' ';
        for (int32_t axis = 0; axis < MAX_GROUP_AXES; axis++) {
            if (!read_quoted_line(src, line, sizeof line))
                return 0;
            text += line;
        }
        char number[4] = {static_cast<char>('0' + group), 0};
        set_robot_param(text.c_str(), number);
    }
    return 1;
}

int32_t config_read_dir(const char *directory) {
    std::string dir = directory ? directory : "";
    if (!dir.empty()) {
        if (dir.back() == '\\')
            dir.back() = '/';
        else if (dir.back() != '/')
            dir += '/';
    }
    config_clear();
    read_file(dir, "macro.cfg", read_macro_cfg);
    read_file(dir, "spot.cfg", read_spot_cfg);
    arc_cfg_defaults();
    read_file(dir, "arc.cfg", read_arc_cfg);
    return read_file(dir, "robot.cfg", read_robot_cfg);
}
