/*
** loader_io.cpp - byte reads from bin_stream, growing arrays and the
** record framing that lines and positions share.
*/
#include "bin2asc/loader_io.h"

#include <cstdio>
#include <cstring>

#include "bin2asc/loader.h"
#include "binfmt/tp_format.h"
#include "core/alloc.h"
#include "text/decode_tables.h"

bool load_byte(uint8_t *out) {
    if (bin_stream == nullptr)
        return false;
    int c = std::fgetc(bin_stream);
    if (c == EOF)
        return false;
    *out = static_cast<uint8_t>(c);
    return true;
}

size_t load_bytes(void *out, size_t n) {
    if (bin_stream == nullptr || n == 0)
        return 0;
    return std::fread(out, 1, n, bin_stream);
}

bool load_skip(size_t n) {
    uint8_t scratch[1024];
    while (n > 0) {
        size_t chunk = n < sizeof scratch ? n : sizeof scratch;
        if (load_bytes(scratch, chunk) != chunk)
            return false;
        n -= chunk;
    }
    return true;
}

int32_t grow_pointer_array(void ***array, int32_t *capacity, int32_t step) {
    size_t old_cap = static_cast<size_t>(*capacity);
    size_t new_cap = old_cap + static_cast<size_t>(step);
    void **grown = static_cast<void **>(lrealloc(*array, new_cap * sizeof(void *)));
    if (grown == nullptr)
        return LOAD_NO_MEMORY;
    std::memset(grown + old_cap, 0, (new_cap - old_cap) * sizeof(void *));
    *array = grown;
    *capacity = static_cast<int32_t>(new_cap);
    return LOAD_OK;
}

int32_t load_record_head(uint8_t *hi, uint8_t *lo, bool *end) {
    if (!load_byte(hi) || !load_byte(lo))
        return LOAD_FORMAT;
    *end = *hi == TP_END_BYTE && *lo == TP_END_BYTE;
    return LOAD_OK;
}

int32_t load_record(uint8_t hi, uint8_t lo, uint8_t **out) {
    size_t n = (static_cast<size_t>(hi) << 8) | lo;
    size_t size = n + 8; /* length bytes, payload, zero guard */
    uint8_t *rec = static_cast<uint8_t *>(lmalloc(size));
    if (rec == nullptr)
        return LOAD_NO_MEMORY;
    std::memset(rec, 0, size);
    rec[0] = hi;
    rec[1] = lo;
    *out = rec;
    if (load_bytes(rec + 2, n) != n)
        return LOAD_FORMAT;
    return LOAD_OK;
}

int32_t load_line_records(uint8_t ***lines, int32_t *count, int32_t *capacity) {
    for (int32_t i = 0;; i++) {
        uint8_t hi, lo;
        bool end;
        if (load_record_head(&hi, &lo, &end))
            return LOAD_FORMAT;
        if (end) {
            *count = i;
            return LOAD_OK;
        }
        /* Grown only for a record the file really holds, so that memory
           follows the file's size. */
        if (i >= *capacity) {
            void **arr = reinterpret_cast<void **>(*lines);
            if (grow_pointer_array(&arr, capacity, LINE_ARRAY_STEP))
                return LOAD_NO_MEMORY;
            *lines = reinterpret_cast<uint8_t **>(arr);
        }
        int32_t rc = load_record(hi, lo, &(*lines)[i]);
        if (rc)
            return rc;
    }
}
