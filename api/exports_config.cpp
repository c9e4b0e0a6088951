/*
** exports_config.cpp - messages, spot warnings and the robot cell configuration exports (not landed yet: each returns its failure result).
*/
#include "vorex_zd.h"

#include <cstring>

extern "C" {

int32_t zdgeterrmsg(int32_t, char *text) {
    if (text)
        std::strcpy(text, "Syntax Error\n");
    return 0;
}

int32_t zdgetspotwarningscount(void) { return 0; }

int32_t zdgetspotwarnings(int32_t, char *text) {
    if (text)
        text[0] = 0;
    return 0;
}

int32_t zdreadparam(const char *) { return 1; }

int32_t zdsetparam(const char *, const char *, const char *) { return 0; }

void zdclearparam(void) {}

int32_t zdgetnumrobot(uint16_t *) { return 1; }

int32_t zdgetrobotname(uint16_t, char *key, char *name) {
    if (key)
        key[0] = 0;
    if (name)
        name[0] = 0;
    return 0;
}

int32_t zdgetrobotnamejpn(uint16_t, char *key, char *name) {
    if (key)
        key[0] = 0;
    if (name)
        name[0] = 0;
    return 0;
}

int32_t addrobotconfig(const char *, const char *, const char *, const char *, int32_t, int32_t,
                       int32_t, int32_t, int32_t, int32_t, int32_t) {
    return 0;
}

} // extern "C"
