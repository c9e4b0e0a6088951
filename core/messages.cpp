/*
** messages.cpp - message lookup for zdgeterrmsg, the no-op warning report,
** and Shift-JIS to UTF-8 for showing the Japanese texts on a terminal.
*/
#include "core/messages.h"

#include <cstdio>
#include <cstring>

#include "core/run_state.h"
#include "platform/platform.h"

const char *message_lookup(int32_t code, int32_t language) {
    const message_row *row = language ? english_messages : japanese_messages;
    for (; row->code != 0; row++)
        if (row->code == code)
            return row->text;
    return nullptr;
}

int32_t error_message(int32_t code, char *text) {
    /* The file and line of the error are not part of the text: a host gets
       the line from zdascbin and shows it on its own. */
    if (!text)
        return 0;
    const char *found = message_lookup(code, message_language);
    if (!found)
        found = message_language ? english_fallback : japanese_fallback;
    std::snprintf(text, 512, "%s\n", found);
    return 0;
}

void report_warning(int32_t) {}

namespace {

const char *glyph_utf8(uint16_t code) {
    size_t lo = 0, hi = sjis_glyph_count;
    while (lo < hi) {
        size_t mid = lo + (hi - lo) / 2;
        if (sjis_glyphs[mid].code == code)
            return sjis_glyphs[mid].utf8;
        if (sjis_glyphs[mid].code < code)
            lo = mid + 1;
        else
            hi = mid;
    }
    return nullptr;
}

/* Appends bytes to out as far as they fit; n counts them all. */
void put_bytes(const char *bytes, size_t len, char *out, size_t out_size, size_t &n) {
    for (size_t i = 0; i < len; i++, n++)
        if (out_size > 0 && n < out_size - 1)
            out[n] = bytes[i];
}

} // namespace

size_t sjis_to_utf8(const char *text, char *out, size_t out_size) {
    static const char replacement[] = "\xEF\xBF\xBD";
    size_t n = 0;
    const unsigned char *p = reinterpret_cast<const unsigned char *>(text ? text : "");
    while (*p) {
        unsigned b = *p;
        if (b < 0x80) {
            put_bytes(reinterpret_cast<const char *>(p), 1, out, out_size, n);
            p++;
        } else if (b >= 0xA1 && b <= 0xDF) {
            unsigned cp = 0xFF61 + (b - 0xA1);
            char u[3] = {static_cast<char>(0xE0 | (cp >> 12)), static_cast<char>(0x80 | ((cp >> 6) & 0x3F)),
                         static_cast<char>(0x80 | (cp & 0x3F))};
            put_bytes(u, 3, out, out_size, n);
            p++;
        } else if (platform_is_lead_byte(b) && p[1]) {
            const char *g = glyph_utf8(static_cast<uint16_t>((b << 8) | p[1]));
            const char *u = g ? g : replacement;
            put_bytes(u, std::strlen(u), out, out_size, n);
            p += 2;
        } else {
            put_bytes(replacement, 3, out, out_size, n);
            p++;
        }
    }
    if (out_size > 0)
        out[n < out_size ? n : out_size - 1] = 0;
    return n;
}
