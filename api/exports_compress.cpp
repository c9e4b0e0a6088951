/*
** exports_compress.cpp - the file compression exports: each runs in its own
** tracked allocation scope, so nothing the coder allocates outlives the call.
*/
#include "vorex_zd.h"

#include "core/alloc.h"
#include "utils/compress.h"

extern "C" {

int32_t zdcompress(const char *in_path, const char *out_path) {
    lmalloc_begin();
    int32_t rc = compress_file(in_path, out_path);
    lmalloc_end();
    return rc;
}

int32_t zduncompress(const char *in_path, const char *out_path) {
    lmalloc_begin();
    int32_t rc = uncompress_file(in_path, out_path);
    lmalloc_end();
    return rc;
}

} // extern "C"
