/*
** exports_compress.cpp - file compression exports (not landed yet: each returns its failure result).
*/
#include "vorex_zd.h"

extern "C" {

int32_t zdcompress(const char *, const char *) { return 1; }

int32_t zduncompress(const char *, const char *) { return 1; }

} // extern "C"
