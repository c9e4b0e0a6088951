/*
** loader_daughters.cpp - the daughter area: a tag byte 5 and then, per
** daughter, its name record, attribute block, line block and the position
** and application blocks, which are read and dropped. The area has no end
** mark: the end of the file, met by the next name record, ends it.
*/
#include <cstring>

#include "bin2asc/loader.h"
#include "bin2asc/loader_io.h"
#include "binfmt/tp_format.h"
#include "text/decode_tables.h"

namespace {

constexpr int32_t name_field_size = 16;

/* Scratch for slots beyond the tables. */
uint8_t scratch_header[NAME_SLOT_SIZE];
uint8_t scratch_attr[TP_ATTR_DAUGHTER_SLOT];

bool slot_in_table(int32_t slot) { return slot >= 0 && slot < TP_DAUGHTER_SLOTS; }

/* The number behind the eight dots, read as a decimal integer the way the
   C library reads one: blanks, a sign, digits; no digits give 0. */
int32_t parse_daughter_number(const uint8_t *field) {
    const uint8_t *p = field + TP_DAUGHTER_REF_NUMBER_AT;
    const uint8_t *end = field + name_field_size;
    while (p < end && (*p == ' ' || (*p >= '\t' && *p <= '\r')))
        p++;
    bool negative = false;
    if (p < end && (*p == '+' || *p == '-'))
        negative = *p++ == '-';
    int32_t n = 0;
    while (p < end && *p >= '0' && *p <= '9')
        n = n * 10 + (*p++ - '0');
    return negative ? -n : n;
}

} // namespace

int32_t read_daughter_prog_block(int32_t slot) {
    int32_t s = cur_side;
    bool in_table = slot_in_table(slot);
    uint8_t *rec = in_table ? daughter_header[s][slot] : scratch_header;
    if (in_table)
        daughter_has_subtype[s][slot] = daughter_subtype[s][slot] = 0;
    std::memset(rec, 0, NAME_SLOT_SIZE);
    uint8_t b;
    if (!load_byte(&b) || b != TP_TAG_NAME)
        return LOAD_FORMAT;
    if (!load_byte(&rec[1]) || !load_byte(&rec[2]))
        return LOAD_FORMAT;
    int32_t n = 3;
    if (rec[2] > 0) {
        if (!load_byte(&rec[3]))
            return LOAD_FORMAT;
        if (in_table) {
            daughter_has_subtype[s][slot] = 1;
            daughter_subtype[s][slot] = rec[3];
        }
        n = 4;
    }
    size_t got = load_bytes(rec + n, name_field_size);
    if (in_table) {
        daughter_number[s][slot] = parse_daughter_number(rec + n);
        if (slot > daughter_top[s])
            daughter_top[s] = slot;
    }
    if (got != name_field_size)
        return LOAD_FORMAT;
    if (slot > daughter_high[s])
        daughter_high[s] = slot;
    return LOAD_OK;
}

int32_t read_daughter_attr_block(int32_t slot) {
    uint8_t *block = slot_in_table(slot) ? daughter_attr[cur_side][slot] : scratch_attr;
    uint8_t tag, t1, t2;
    if (!load_byte(&tag) || tag != TP_TAG_ATTR)
        return LOAD_FORMAT;
    if (!load_byte(&t1) || !load_byte(&t2))
        return LOAD_FORMAT;
    size_t length = static_cast<size_t>(t1) * 256 + t2;
    block[0] = TP_TAG_ATTR;
    block[1] = t1;
    block[2] = t2;
    /* The slot holds what a written block holds; a longer one is read
       through and its tail dropped. */
    size_t room = TP_ATTR_DAUGHTER_SLOT - 3;
    size_t kept = length < room ? length : room;
    if (load_bytes(block + 3, kept) != kept || !load_skip(length - kept))
        return LOAD_FORMAT;
    uint8_t e1, e2;
    if (!load_byte(&e1) || !load_byte(&e2) || e1 != TP_END_BYTE || e2 != TP_END_BYTE)
        return LOAD_FORMAT;
    return LOAD_OK;
}

int32_t read_daughter_line_block(int32_t slot) {
    if (!slot_in_table(slot))
        return LOAD_NO_MEMORY;
    int32_t s = cur_side;
    /* The array comes with the first line: thousands of empty daughters
       then cost no memory. */
    daughter_lines[s][slot] = nullptr;
    daughter_line_capacity[s][slot] = 0;
    uint8_t tag;
    if (!load_byte(&tag) || tag != TP_TAG_LINES)
        return LOAD_FORMAT;
    return load_line_records(&daughter_lines[s][slot], &daughter_line_count[s][slot],
                             &daughter_line_capacity[s][slot]);
}

int32_t skip_daughter_pos_block() {
    uint8_t tag;
    if (!load_byte(&tag) || tag != TP_TAG_POS)
        return LOAD_FORMAT;
    for (;;) {
        uint8_t hi, lo;
        bool end;
        if (load_record_head(&hi, &lo, &end))
            return LOAD_FORMAT;
        if (end)
            return LOAD_OK;
        if (!load_skip((static_cast<size_t>(hi) << 8) | lo))
            return LOAD_FORMAT;
    }
}

int32_t read_daughters() {
    int32_t s = cur_side;
    daughter_high[s] = 0;
    uint8_t tag;
    if (!load_byte(&tag) || tag != TP_TAG_DAUGHTERS)
        return LOAD_OK;
    for (int32_t slot = 1; slot < TP_DAUGHTER_SLOTS; slot++) {
        int32_t rc[5];
        rc[0] = read_daughter_prog_block(slot);
        rc[1] = read_daughter_attr_block(slot);
        rc[2] = read_daughter_line_block(slot);
        rc[3] = skip_daughter_pos_block();
        rc[4] = skip_daughter_appl_block();
        if (rc[0] || rc[1] || rc[2] || rc[3] || rc[4])
            break;
    }
    return LOAD_OK;
}
