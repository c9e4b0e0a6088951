/*
** profile.cpp - a private profile reader in the manner of an ini file:
** "[section]" heads, "key=value" lines, case-blind names, ";" comments.
*/
#include "platform/platform.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <strings.h>
#include <string>

namespace {

std::string trim(const std::string &s) {
    size_t b = s.find_first_not_of(" \t\r\n");
    if (b == std::string::npos)
        return "";
    size_t e = s.find_last_not_of(" \t\r\n");
    return s.substr(b, e - b + 1);
}

size_t copy_out(const char *text, char *out, size_t out_size) {
    if (out_size == 0)
        return 0;
    size_t n = std::strlen(text);
    if (n >= out_size)
        n = out_size - 1;
    std::memcpy(out, text, n);
    out[n] = 0;
    return n;
}

bool find_value(FILE *f, const char *section, const char *key, std::string &value) {
    char buf[1024];
    bool in_section = false;
    while (std::fgets(buf, sizeof buf, f)) {
        std::string line = trim(buf);
        if (line.empty() || line[0] == ';')
            continue;
        if (line[0] == '[') {
            size_t close = line.find(']');
            std::string name = trim(line.substr(1, close == std::string::npos ? std::string::npos : close - 1));
            in_section = strcasecmp(name.c_str(), section) == 0;
            continue;
        }
        if (!in_section)
            continue;
        size_t eq = line.find('=');
        if (eq == std::string::npos)
            continue;
        if (strcasecmp(trim(line.substr(0, eq)).c_str(), key) == 0) {
            value = trim(line.substr(eq + 1));
            return true;
        }
    }
    return false;
}

} // namespace

size_t platform_profile_string(const char *section, const char *key, const char *def,
                               char *out, size_t out_size, const char *file) {
    std::string path;
    const char *dir = std::getenv("VOREX_ZD_INI_DIR");
    if (dir && *dir) {
        path = dir;
        if (path.back() != '/')
            path += '/';
    }
    path += file;
    FILE *f = std::fopen(path.c_str(), "r");
    if (!f)
        return copy_out(def, out, out_size);
    std::string value;
    bool found = find_value(f, section, key, value);
    std::fclose(f);
    return copy_out(found ? value.c_str() : def, out, out_size);
}

void platform_debug_trace(const char *text) {
    if (text && std::getenv("VOREX_ZD_TRACE"))
        std::fputs(text, stderr);
}
