/*
** exports_decode.cpp - binary-to-listing, dump and compare exports (not landed yet: each returns its failure result).
*/
#include "vorex_zd.h"

extern "C" {

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

} // extern "C"
