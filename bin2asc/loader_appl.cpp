/*
** loader_appl.cpp - the reader of the application block: records by type
** and instance, in falling order, into tables sized by the first record
** of the block and the first record of each type.
**
** Rows are sized from numbers in the file, so a hostile file could ask for
** far more table than it has bytes: the rows of one side are held to a
** budget of cells, and a file past it reads as if memory had run out.
*/
#include <cstring>

#include "bin2asc/loader.h"
#include "bin2asc/loader_io.h"
#include "binfmt/tp_format.h"
#include "core/alloc.h"
#include "text/decode_tables.h"

namespace {

/* Far above any real program (a few types of a few records), far below
   what would hurt: 4M pointers, 32 MB. */
constexpr size_t appl_cell_budget = size_t(1) << 22;

void *alloc_cleared(size_t count, size_t size) {
    void *p = lmalloc(count * size);
    if (p)
        std::memset(p, 0, count * size);
    return p;
}

int32_t read_word(int32_t *out) {
    uint8_t hi, lo;
    if (!load_byte(&hi) || !load_byte(&lo))
        return LOAD_FORMAT;
    *out = (hi << 8) | lo;
    return LOAD_OK;
}

/* The tables by type, sized by the first (highest) type. */
int32_t start_tables(int32_t s, int32_t type, size_t *cells) {
    size_t n = static_cast<size_t>(type) + 1;
    appl_groups[s] = static_cast<uint8_t ***>(alloc_cleared(n, sizeof(uint8_t **)));
    appl_high_record[s] = static_cast<int32_t *>(alloc_cleared(n, sizeof(int32_t)));
    if (appl_groups[s] == nullptr || appl_high_record[s] == nullptr)
        return LOAD_NO_MEMORY;
    appl_high_group[s] = type;
    *cells += n;
    return LOAD_OK;
}

/* The row of a type, sized by its first (highest) instance. */
int32_t start_row(int32_t s, int32_t type, int32_t instance, size_t *cells) {
    size_t n = static_cast<size_t>(instance) + 1;
    if (*cells + n > appl_cell_budget)
        return LOAD_NO_MEMORY;
    uint8_t **row = static_cast<uint8_t **>(alloc_cleared(n, sizeof(uint8_t *)));
    if (row == nullptr)
        return LOAD_NO_MEMORY;
    *cells += n;
    appl_groups[s][type] = row;
    appl_high_record[s][type] = instance;
    return LOAD_OK;
}

int32_t read_record_body(int32_t type, int32_t instance, uint8_t **out) {
    uint8_t length;
    if (!load_byte(&length))
        return LOAD_FORMAT;
    uint8_t *rec = static_cast<uint8_t *>(lmalloc(static_cast<size_t>(length) + TP_APPL_RECORD_HEAD));
    if (rec == nullptr)
        return LOAD_NO_MEMORY;
    rec[0] = static_cast<uint8_t>(type >> 8);
    rec[1] = static_cast<uint8_t>(type);
    rec[2] = static_cast<uint8_t>(instance >> 8);
    rec[3] = static_cast<uint8_t>(instance);
    rec[4] = length;
    if (load_bytes(rec + TP_APPL_RECORD_HEAD, length) != length) {
        lfree(rec);
        return LOAD_FORMAT;
    }
    *out = rec;
    return LOAD_OK;
}

} // namespace

int32_t read_appl_block() {
    int32_t s = cur_side;
    appl_groups[s] = nullptr;
    appl_high_record[s] = nullptr;
    appl_high_group[s] = appl_low_group[s] = -1;
    appl_loaded[s] = 0;
    uint8_t tag;
    if (!load_byte(&tag) || tag != TP_TAG_APPL)
        return LOAD_FORMAT;
    size_t cells = 0;
    int32_t last_type = -1;
    for (;;) {
        int32_t type, instance;
        if (read_word(&type))
            return LOAD_FORMAT;
        if (type == TP_END_MARK) {
            appl_low_group[s] = last_type;
            appl_loaded[s] = 1;
            return LOAD_OK;
        }
        int32_t rc;
        if (appl_groups[s] == nullptr) {
            if ((rc = start_tables(s, type, &cells)))
                return rc;
        } else if (type > appl_high_group[s]) {
            return LOAD_FORMAT;
        }
        if (read_word(&instance))
            return LOAD_FORMAT;
        if (appl_groups[s][type] == nullptr) {
            if ((rc = start_row(s, type, instance, &cells)))
                return rc;
        } else if (instance > appl_high_record[s][type]) {
            return LOAD_FORMAT;
        }
        uint8_t *rec;
        if ((rc = read_record_body(type, instance, &rec)))
            return rc;
        lfree(appl_groups[s][type][instance]); /* a repeated instance replaces */
        appl_groups[s][type][instance] = rec;
        last_type = type;
    }
}

int32_t skip_daughter_appl_block() {
    uint8_t tag;
    if (!load_byte(&tag) || tag != TP_TAG_APPL)
        return LOAD_FORMAT;
    for (;;) {
        int32_t type, instance;
        if (read_word(&type))
            return LOAD_FORMAT;
        if (type == TP_END_MARK)
            return LOAD_OK;
        uint8_t length;
        if (read_word(&instance) || !load_byte(&length) || !load_skip(length))
            return LOAD_FORMAT;
    }
}
