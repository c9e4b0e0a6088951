/*
** compress.h - LZSS packing and unpacking of whole files: a 4096-byte ring
** that starts out zero, a binary search tree over the ring's strings,
** matches of 3 to 18 bytes, and an 8-byte header (FE EF 00 01 and the
** big-endian unpacked length) in front of the code stream.
**
** The coder reads through an lz_source and writes through an lz_sink, so the
** same code serves files, memory and tests. Nothing here grows with the input:
** the state is one fixed block and the streams are buffered in fixed pieces.
*/
#ifndef VZ_UTILS_COMPRESS_H
#define VZ_UTILS_COMPRESS_H

#include <cstddef>
#include <cstdint>
#include <cstdio>

constexpr int lz_ring_size = 4096;                /* N */
constexpr int lz_max_match = 18;                  /* F */
constexpr int lz_threshold = 2;                   /* longest match sent as literals */
constexpr int lz_ring_start = lz_ring_size - lz_max_match; /* 4078 */
constexpr int lz_nil = lz_ring_size;              /* no node */
constexpr int lz_header_size = 8;
constexpr size_t lz_io_buffer = 8192;

/* Results of the file-level calls. */
enum compress_result { compress_ok = 0, compress_open_failed = 1 };

/* Ring and tree of one pack or unpack. Nodes are ring positions; the roots,
   one per first byte, sit at N + 1 + byte. */
struct lzss_state {
    uint8_t ring[lz_ring_size + lz_max_match - 1]; /* 17 mirror bytes above 4095 */
    uint16_t left[lz_ring_size + 257];
    uint16_t right[lz_ring_size + 257];
    uint16_t parent[lz_ring_size + 257];
    int match_position;
    int match_length;
};

/* Buffered byte input. With fill null the source is the memory span given to
   lz_source_memory; else fill is asked for more whenever the buffer is empty
   and returns 0 at the end (a read error counts as the end). */
struct lz_source {
    size_t (*fill)(void *ctx, uint8_t *buf, size_t cap);
    void *ctx;
    const uint8_t *next;
    const uint8_t *end;
    bool at_end;
    uint8_t buf[lz_io_buffer];
};

/* Buffered byte output. flush gets every full buffer and the rest at
   lz_sink_finish; a non-zero return marks the sink failed, and a failed sink
   drops further bytes. */
struct lz_sink {
    int (*flush)(void *ctx, const uint8_t *bytes, size_t size);
    void *ctx;
    size_t used;
    int32_t failed;
    uint8_t buf[lz_io_buffer];
};

void lz_source_memory(lz_source *src, const uint8_t *data, size_t size);
void lz_source_file(lz_source *src, FILE *fp);
void lz_source_custom(lz_source *src, size_t (*fill)(void *, uint8_t *, size_t), void *ctx);
/* Next byte, or -1 at the end. */
int lz_read(lz_source *src);

void lz_sink_file(lz_sink *dst, FILE *fp);
void lz_sink_custom(lz_sink *dst, int (*flush)(void *, const uint8_t *, size_t), void *ctx);
void lz_write(lz_sink *dst, uint8_t byte);
void lz_write_bytes(lz_sink *dst, const uint8_t *bytes, size_t size);
/* Hands the buffered rest to flush; returns the sink's failed flag. */
int32_t lz_sink_finish(lz_sink *dst);

/* Tree of the packer (compress_tree.cpp). */
void lzss_tree_init(lzss_state *st);
/* Files the string at ring position r and sets match_position/_length to the
   longest match met on the way down; a full match takes over its node. */
void lzss_tree_insert(lzss_state *st, int r);
void lzss_tree_delete(lzss_state *st, int p);

/* Writes the header with declared_size and packs src to its end. The state
   needs no preparation. Returns lz_sink_finish's result. */
int32_t lzss_pack(lzss_state *st, lz_source *src, uint32_t declared_size, lz_sink *dst);
/* Skips the 8 header bytes unchecked and unpacks until the packed data ends;
   the declared length is not used. Returns lz_sink_finish's result. */
int32_t lzss_unpack(lzss_state *st, lz_source *src, lz_sink *dst);

/* Whole files: 0 success, 1 a file did not open (or no memory for the
   state). Write errors are not reported. */
int32_t compress_file(const char *source, const char *destination);
int32_t uncompress_file(const char *source, const char *destination);

#endif
