/*
** compress_unpack.cpp - the unpacker. It trusts nothing and checks nothing:
** the header is skipped, positions wrap in the ring, and the first missing
** byte ends the output. Each code byte yields at most 9 output bytes, so the
** output stays proportional to the input whatever the file holds.
*/
#include "utils/compress.h"

#include <cstring>

namespace {

void put_byte(lzss_state *st, int *r, int c, lz_sink *dst) {
    lz_write(dst, static_cast<uint8_t>(c));
    st->ring[*r] = static_cast<uint8_t>(c);
    *r = (*r + 1) & (lz_ring_size - 1);
}

} // namespace

int32_t lzss_unpack(lzss_state *st, lz_source *src, lz_sink *dst) {
    /* Magic and declared length: read past, neither is trusted. */
    for (int i = 0; i < lz_header_size; i++)
        if (lz_read(src) < 0)
            return lz_sink_finish(dst);
    std::memset(st->ring, 0, sizeof st->ring);
    int r = lz_ring_start;
    unsigned flags = 0;
    for (;;) {
        flags >>= 1;
        if ((flags & 0x100) == 0) {
            int c = lz_read(src);
            if (c < 0)
                break;
            flags = static_cast<unsigned>(c) | 0xFF00;
        }
        if (flags & 1) {
            int c = lz_read(src);
            if (c < 0)
                break;
            put_byte(st, &r, c, dst);
            continue;
        }
        int b1 = lz_read(src);
        if (b1 < 0)
            break;
        int b2 = lz_read(src);
        if (b2 < 0)
            break;
        int pos = b1 | ((b2 & 0xF0) << 4);
        int count = (b2 & 0x0F) + lz_threshold + 1;
        /* Byte by byte, so a reference may overlap what it writes. */
        for (int k = 0; k < count; k++)
            put_byte(st, &r, st->ring[(pos + k) & (lz_ring_size - 1)], dst);
    }
    return lz_sink_finish(dst);
}
