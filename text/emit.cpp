/*
** emit.cpp - the line emitters. The buffer holds 512 bytes while a line may
** be at most 255; bytes past the buffer are dropped and the overflow is
** remembered, so that the statement loop refuses the line (197) instead of
** writing past its buffer.
*/
#include "text/emit.h"

#include <cstring>

namespace {

inline bool encoding(const scan_ctx *ctx) { return ctx->encoding_on == 1; }

void put_raw(scan_ctx *ctx, const uint8_t *bytes, int32_t n) {
    for (int32_t i = 0; i < n; i++) {
        int32_t at = static_cast<int32_t>(ctx->line_ptr - ctx->line_buf);
        if (at >= line_buf_size) {
            ctx->line_overflow = 1;
        } else {
            *ctx->line_ptr++ = bytes[i];
        }
        ctx->line_len = static_cast<uint16_t>(ctx->line_len + 1);
    }
}

void put_be16(scan_ctx *ctx, uint16_t v) {
    uint8_t b[2] = {static_cast<uint8_t>(v >> 8), static_cast<uint8_t>(v)};
    put_raw(ctx, b, 2);
}

void put_be32(scan_ctx *ctx, uint32_t v) {
    uint8_t b[4] = {static_cast<uint8_t>(v >> 24), static_cast<uint8_t>(v >> 16),
                    static_cast<uint8_t>(v >> 8), static_cast<uint8_t>(v)};
    put_raw(ctx, b, 4);
}

} // namespace

void emit_reset(scan_ctx *ctx) {
    ctx->line_ptr = ctx->line_buf;
    ctx->line_len = 0;
    ctx->line_overflow = 0;
}

int32_t emit_byte(scan_ctx *ctx, uint8_t value) {
    if (encoding(ctx))
        put_raw(ctx, &value, 1);
    return 0;
}

int32_t emit_intval(scan_ctx *ctx, int32_t value) {
    if (!encoding(ctx))
        return 0;
    if (value >= -128 && value <= 127) {
        uint8_t b[2] = {1, static_cast<uint8_t>(value)};
        put_raw(ctx, b, 2);
    } else {
        uint8_t tag = 2;
        put_raw(ctx, &tag, 1);
        put_be32(ctx, static_cast<uint32_t>(value));
    }
    return 0;
}

int32_t emit_realval(scan_ctx *ctx, float value) {
    if (!encoding(ctx))
        return 0;
    uint32_t bits;
    std::memcpy(&bits, &value, 4);
    uint8_t tag = 3;
    put_raw(ctx, &tag, 1);
    put_be32(ctx, bits);
    return 0;
}

int32_t emit_long(scan_ctx *ctx, uint32_t value) {
    if (encoding(ctx))
        put_be32(ctx, value);
    return 0;
}

int32_t emit_long_b(scan_ctx *ctx, uint32_t value) { return emit_long(ctx, value); }

int32_t emit_word(scan_ctx *ctx, uint16_t value) {
    if (encoding(ctx))
        put_be16(ctx, value);
    return 0;
}

int32_t emit_word_80(scan_ctx *ctx, uint16_t value) {
    return emit_word(ctx, static_cast<uint16_t>(value | 0x8000));
}

int32_t emit_word_c0(scan_ctx *ctx, uint16_t value) {
    return emit_word(ctx, static_cast<uint16_t>(value | 0xC000));
}

int32_t emit_word_raw(scan_ctx *ctx, uint16_t value) { return emit_word(ctx, value); }

int32_t emit_patch(scan_ctx *ctx, int32_t offset, uint8_t value) {
    if (!encoding(ctx))
        return 0;
    uint8_t *at = ctx->line_ptr + offset;
    if (at >= ctx->line_buf && at < ctx->line_buf + line_buf_size)
        *at = value;
    return 0;
}

int32_t emit_text(scan_ctx *ctx, char *text, int32_t count) {
    if (!encoding(ctx))
        return 0;
    for (int32_t i = 0; i < count; i++) {
        uint8_t b = static_cast<uint8_t>(text[i]);
        if (b == '\t')
            b = ' ';
        put_raw(ctx, &b, 1);
        if (text[i] == ';')
            text[i] = ' ';
    }
    uint8_t zero = 0;
    put_raw(ctx, &zero, 1);
    return 0;
}

int32_t line_length(const scan_ctx *ctx) { return ctx->line_len; }

uint16_t neg_word(int32_t value) {
    if (value >= 0)
        return static_cast<uint16_t>(value);
    return static_cast<uint16_t>((static_cast<uint32_t>(-static_cast<int64_t>(value)) & 0xFFFF) | 0x8000);
}
