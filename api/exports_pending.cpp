/*
** exports_pending.cpp - exports whose work has not landed yet. Each returns
** its failure result; none pretends to have done the work.
*/
#include "vorex_zd.h"

#include <cstring>

extern "C" {

int32_t zdascbin(const char *, uint16_t *error_code, uint16_t *line_no) {
    if (error_code)
        *error_code = 1;
    if (line_no)
        *line_no = 0;
    return 0;
}

int32_t zdbinasc_file(const char *, const char *) { return 0; }
int32_t zdbinasc_file_dmp(const char *, const char *) { return 0; }
int32_t compare_files(const char *, const char *, char *report, int32_t report_size) {
    if (report && report_size > 0)
        report[0] = 0;
    return 1;
}
int32_t zdbinasc_line(const uint8_t *, int32_t, char *text) {
    if (text)
        text[0] = 0;
    return 0;
}
int32_t zdbinasc_pos(const uint8_t *, char *text) {
    if (text)
        text[0] = 0;
    return 1;
}
int32_t zdbinasc_prog(const char *, int32_t, char *text) {
    if (text)
        text[0] = 0;
    return 0;
}
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
int32_t zdcompress(const char *, const char *) { return 1; }
int32_t zduncompress(const char *, const char *) { return 1; }

} // extern "C"
