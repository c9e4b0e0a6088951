/*
** compress_pack.cpp - the packer: header, then groups of one flag byte and
** up to eight items, a set flag bit (from the lowest) for a literal byte and
** a clear one for a two-byte ring reference.
*/
#include "utils/compress.h"

#include <cstring>

namespace {

/* One group under construction: flag byte first, then at most 16 item bytes. */
struct code_group {
    uint8_t bytes[17];
    int used;
    uint8_t mask;
};

void group_reset(code_group *g) {
    g->bytes[0] = 0;
    g->used = 1;
    g->mask = 1;
}

void write_header(lz_sink *dst, uint32_t size) {
    const uint8_t head[lz_header_size] = {
        0xFE, 0xEF, 0x00, 0x01,
        static_cast<uint8_t>(size >> 24), static_cast<uint8_t>(size >> 16),
        static_cast<uint8_t>(size >> 8), static_cast<uint8_t>(size),
    };
    lz_write_bytes(dst, head, sizeof head);
}

/* Adds the item for the string at r; returns how many bytes it covers. */
int put_item(lzss_state *st, code_group *g, int r, int lookahead, lz_sink *dst) {
    if (st->match_length > lookahead)
        st->match_length = lookahead;
    if (st->match_length <= lz_threshold) {
        st->match_length = 1;
        g->bytes[0] |= g->mask;
        g->bytes[g->used++] = st->ring[r];
    } else {
        int pos = st->match_position;
        g->bytes[g->used++] = static_cast<uint8_t>(pos);
        g->bytes[g->used++] = static_cast<uint8_t>(((pos >> 4) & 0xF0) |
                                                   (st->match_length - (lz_threshold + 1)));
    }
    g->mask = static_cast<uint8_t>(g->mask << 1);
    if (g->mask == 0) {
        lz_write_bytes(dst, g->bytes, static_cast<size_t>(g->used));
        group_reset(g);
    }
    return st->match_length;
}

} // namespace

int32_t lzss_pack(lzss_state *st, lz_source *src, uint32_t declared_size, lz_sink *dst) {
    write_header(dst, declared_size);
    lzss_tree_init(st);
    /* The whole ring starts at zero, the mirror included, so that matches
       against the not yet written part are the same on every call. */
    std::memset(st->ring, 0, sizeof st->ring);
    int s = 0, r = lz_ring_start, len = 0, c;
    while (len < lz_max_match && (c = lz_read(src)) >= 0)
        st->ring[r + len++] = static_cast<uint8_t>(c);
    if (len == 0)
        return lz_sink_finish(dst);
    for (int i = 1; i <= lz_max_match; i++)
        lzss_tree_insert(st, r - i);
    lzss_tree_insert(st, r);

    code_group g;
    group_reset(&g);
    do {
        int last = put_item(st, &g, r, len, dst);
        int i = 0;
        for (; i < last && (c = lz_read(src)) >= 0; i++) {
            lzss_tree_delete(st, s);
            st->ring[s] = static_cast<uint8_t>(c);
            if (s < lz_max_match - 1)
                st->ring[s + lz_ring_size] = static_cast<uint8_t>(c);
            s = (s + 1) & (lz_ring_size - 1);
            r = (r + 1) & (lz_ring_size - 1);
            lzss_tree_insert(st, r);
        }
        /* Input is over: the look-ahead drains one byte per step. */
        for (; i < last; i++) {
            lzss_tree_delete(st, s);
            s = (s + 1) & (lz_ring_size - 1);
            r = (r + 1) & (lz_ring_size - 1);
            if (--len)
                lzss_tree_insert(st, r);
        }
    } while (len > 0);
    if (g.used > 1)
        lz_write_bytes(dst, g.bytes, static_cast<size_t>(g.used));
    return lz_sink_finish(dst);
}
