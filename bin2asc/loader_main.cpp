/*
** loader_main.cpp - the readers of the main program's name record,
** attribute block, line block and position block.
*/
#include <cstring>

#include "bin2asc/loader.h"
#include "bin2asc/loader_io.h"
#include "binfmt/tp_format.h"
#include "core/alloc.h"
#include "text/decode_tables.h"
#include "text/put_line.h"

namespace {

constexpr int32_t name_field_size = 16; /* 14 name bytes and the end mark */

/* Comment of a position record, or null: at index 5 plus K, K being the
   byte at index 5, when that lies inside the record. */
uint8_t *position_comment_of(uint8_t *rec) {
    int32_t length = record_length(rec);
    if (length == TP_POS_UNINIT_LENGTH)
        return nullptr;
    int32_t k = rec[2 + TP_POS_OFF_COMMENT_K];
    if (k == 0 || 5 + k >= length + 2)
        return nullptr;
    return rec + 5 + k;
}

int32_t grow_positions(int32_t side) {
    int32_t cap = pos_capacity[side];
    int32_t step = cap == 0 ? POS_ARRAY_FIRST : POS_ARRAY_STEP;
    void **records = reinterpret_cast<void **>(pos_records[side]);
    void **comments = reinterpret_cast<void **>(pos_comments[side]);
    int32_t rcap = cap, ccap = cap;
    if (grow_pointer_array(&records, &rcap, step))
        return LOAD_NO_MEMORY;
    pos_records[side] = reinterpret_cast<uint8_t **>(records);
    if (grow_pointer_array(&comments, &ccap, step))
        return LOAD_NO_MEMORY;
    pos_comments[side] = reinterpret_cast<uint8_t **>(comments);
    int32_t *used = static_cast<int32_t *>(lrealloc(pos_used[side], static_cast<size_t>(cap + step) * sizeof(int32_t)));
    if (used == nullptr)
        return LOAD_NO_MEMORY;
    std::memset(used + cap, 0, static_cast<size_t>(step) * sizeof(int32_t));
    pos_used[side] = used;
    pos_capacity[side] = cap + step;
    return LOAD_OK;
}

} // namespace

int32_t read_prog_block() {
    int32_t s = cur_side;
    uint8_t *rec = prog_header[s];
    prog_has_subtype[s] = 0;
    prog_subtype[s] = 0;
    std::memset(rec, 0, NAME_SLOT_SIZE);
    uint8_t b;
    if (!load_byte(&b) || b != TP_TAG_NAME)
        return LOAD_FORMAT;
    if (!load_byte(&rec[1]) || !load_byte(&rec[2]))
        return LOAD_FORMAT;
    int32_t n = 3;
    if (rec[2] > 0) {
        prog_has_subtype[s] = 1;
        if (!load_byte(&rec[3]))
            return LOAD_FORMAT;
        prog_subtype[s] = rec[3];
        n = 4;
    }
    if (load_bytes(rec + n, name_field_size) != name_field_size)
        return LOAD_FORMAT;
    if (rec[n + 14] != TP_END_BYTE || rec[n + 15] != TP_END_BYTE)
        return LOAD_FORMAT;
    return LOAD_OK;
}

int32_t read_attr_block() {
    int32_t s = cur_side;
    uint8_t tag, t1, t2;
    if (!load_byte(&tag) || tag != TP_TAG_ATTR)
        return LOAD_FORMAT;
    control_r_mode = 0;
    if (!load_byte(&t1) || !load_byte(&t2))
        return LOAD_FORMAT;
    int32_t length = t1 * 256 + t2;
    trace("[readattr] t1=%d, t2=%d, i=%d", t1, t2, length);
    size_t size = static_cast<size_t>(length) + 3;
    if (size < ATTR_BLOCK_ROOM)
        size = ATTR_BLOCK_ROOM;
    uint8_t *block = static_cast<uint8_t *>(lmalloc(size));
    if (block == nullptr)
        return LOAD_NO_MEMORY;
    std::memset(block, 0, size);
    block[0] = TP_TAG_ATTR;
    block[1] = t1;
    block[2] = t2;
    attr_block[s] = block;
    attr_block_size[s] = length + 3;
    size_t got = load_bytes(block + 3, static_cast<size_t>(length));
    if (got != static_cast<size_t>(length)) {
        trace("[readattr] fread cnt=%d, i=%d", static_cast<int>(got), length);
        return LOAD_FORMAT;
    }
    uint8_t e1, e2;
    if (!load_byte(&e1) || !load_byte(&e2) || e1 != TP_END_BYTE || e2 != TP_END_BYTE)
        return LOAD_FORMAT;
    return LOAD_OK;
}

int32_t read_line_block() {
    int32_t s = cur_side;
    std::memset(daughter_lines[s], 0, sizeof daughter_lines[s]);
    std::memset(daughter_line_count[s], 0, sizeof daughter_line_count[s]);
    std::memset(daughter_line_capacity[s], 0, sizeof daughter_line_capacity[s]);
    std::memset(daughter_number[s], 0, sizeof daughter_number[s]);
    daughter_top[s] = 0;
    void **arr = nullptr;
    int32_t cap = 0;
    if (grow_pointer_array(&arr, &cap, LINE_ARRAY_STEP))
        return LOAD_NO_MEMORY;
    main_lines[s] = reinterpret_cast<uint8_t **>(arr);
    main_line_capacity[s] = cap;
    uint8_t tag;
    if (!load_byte(&tag) || tag != TP_TAG_LINES)
        return LOAD_FORMAT;
    return load_line_records(&main_lines[s], &main_line_count[s], &main_line_capacity[s]);
}

int32_t read_pos_block() {
    int32_t s = cur_side;
    pos_records[s] = pos_comments[s] = nullptr;
    pos_used[s] = nullptr;
    pos_capacity[s] = 0;
    if (grow_positions(s))
        return LOAD_NO_MEMORY;
    uint8_t tag;
    if (!load_byte(&tag) || tag != TP_TAG_POS)
        return LOAD_FORMAT;
    for (int32_t i = 0;; i++) {
        uint8_t hi, lo;
        bool end;
        if (load_record_head(&hi, &lo, &end))
            return LOAD_FORMAT;
        if (end) {
            pos_count[s] = i;
            return LOAD_OK;
        }
        /* Grown only for a record that is there: 200 records fit the
           first arrays exactly. */
        if (i >= pos_capacity[s] && grow_positions(s))
            return LOAD_NO_MEMORY;
        pos_used[s][i] = 0;
        int32_t rc = load_record(hi, lo, &pos_records[s][i]);
        if (rc)
            return rc;
        pos_comments[s][i] = position_comment_of(pos_records[s][i]);
    }
}
