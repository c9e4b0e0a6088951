/*
** compress_io.cpp - buffered byte streams of the packer and unpacker, and
** the whole-file calls that open the two files, run the coder and close
** both on every way out.
*/
#include "utils/compress.h"

#include "core/alloc.h"

namespace {

size_t file_fill(void *ctx, uint8_t *buf, size_t cap) {
    return std::fread(buf, 1, cap, static_cast<FILE *>(ctx));
}

int file_flush(void *ctx, const uint8_t *bytes, size_t size) {
    return std::fwrite(bytes, 1, size, static_cast<FILE *>(ctx)) == size ? 0 : 1;
}

bool refill(lz_source *src) {
    if (src->at_end || !src->fill)
        return src->at_end = true, false;
    size_t got = src->fill(src->ctx, src->buf, sizeof src->buf);
    if (got == 0 || got > sizeof src->buf)
        return src->at_end = true, false;
    src->next = src->buf;
    src->end = src->buf + got;
    return true;
}

void drain(lz_sink *dst) {
    if (dst->used && !dst->failed && dst->flush(dst->ctx, dst->buf, dst->used) != 0)
        dst->failed = 1;
    dst->used = 0;
}

/* Size by seeking to the end, as the header wants it before any byte is
   read; a stream that cannot seek gives the low bits of -1. */
uint32_t file_size(FILE *fp) {
    long size = -1;
    if (std::fseek(fp, 0, SEEK_END) == 0)
        size = std::ftell(fp);
    std::fseek(fp, 0, SEEK_SET);
    return static_cast<uint32_t>(size);
}

/* Opens source, then destination; on failure closes what did open. */
int32_t open_pair(const char *source, const char *destination, FILE **in, FILE **out) {
    *in = source ? std::fopen(source, "rb") : nullptr;
    if (!*in)
        return compress_open_failed;
    *out = destination ? std::fopen(destination, "wb") : nullptr;
    if (!*out) {
        std::fclose(*in);
        return compress_open_failed;
    }
    return compress_ok;
}

/* Runs one coder over two open files; pack says which. */
int32_t run_files(const char *source, const char *destination, bool pack) {
    FILE *in, *out;
    if (open_pair(source, destination, &in, &out) != compress_ok)
        return compress_open_failed;
    lzss_state *st = nullptr;
    int32_t rc = compress_open_failed;
    if (lzalloc(reinterpret_cast<void **>(&st), sizeof *st) == 0) {
        lz_source src;
        lz_sink dst;
        lz_source_file(&src, in);
        lz_sink_file(&dst, out);
        if (pack)
            lzss_pack(st, &src, file_size(in), &dst);
        else
            lzss_unpack(st, &src, &dst);
        /* Only an open failure is a result; write errors pass silently. */
        rc = compress_ok;
        lfree(st);
    }
    std::fclose(in);
    std::fclose(out);
    return rc;
}

} // namespace

void lz_source_memory(lz_source *src, const uint8_t *data, size_t size) {
    src->fill = nullptr;
    src->ctx = nullptr;
    src->next = data;
    src->end = data ? data + size : data;
    src->at_end = false;
}

void lz_source_custom(lz_source *src, size_t (*fill)(void *, uint8_t *, size_t), void *ctx) {
    src->fill = fill;
    src->ctx = ctx;
    src->next = src->end = src->buf;
    src->at_end = false;
}

void lz_source_file(lz_source *src, FILE *fp) { lz_source_custom(src, file_fill, fp); }

int lz_read(lz_source *src) {
    if (src->next == src->end && !refill(src))
        return -1;
    return *src->next++;
}

void lz_sink_custom(lz_sink *dst, int (*flush)(void *, const uint8_t *, size_t), void *ctx) {
    dst->flush = flush;
    dst->ctx = ctx;
    dst->used = 0;
    dst->failed = 0;
}

void lz_sink_file(lz_sink *dst, FILE *fp) { lz_sink_custom(dst, file_flush, fp); }

void lz_write(lz_sink *dst, uint8_t byte) {
    if (dst->used == sizeof dst->buf)
        drain(dst);
    dst->buf[dst->used++] = byte;
}

void lz_write_bytes(lz_sink *dst, const uint8_t *bytes, size_t size) {
    for (size_t i = 0; i < size; i++)
        lz_write(dst, bytes[i]);
}

int32_t lz_sink_finish(lz_sink *dst) {
    drain(dst);
    return dst->failed;
}

int32_t compress_file(const char *source, const char *destination) {
    return run_files(source, destination, true);
}

int32_t uncompress_file(const char *source, const char *destination) {
    return run_files(source, destination, false);
}
