/*
** put_line.cpp - the text sink: listing stream or compare buffer, the
** optional widening of half-width kana on output, and the trace.
**
** Listings are written with CR LF whatever the platform's text mode does,
** so the stream is written as bytes and the CR is ours.
*/
#include "text/put_line.h"

#include <cstdarg>
#include <cstring>

#include "platform/platform.h"
#include "text/zenhan.h"

int32_t compare_mode = 0;
char *compare_buffer = nullptr;
int32_t compare_buffer_size = 0;
FILE *list_stream = nullptr;
int32_t list_indent = 0;
int32_t hantozen_flag = 0;

namespace {

constexpr uint8_t voiced_mark = 222;
constexpr uint8_t semi_voiced_mark = 223;

void put_code(uint16_t code) {
    if (code >> 8)
        std::fputc(code >> 8, list_stream);
    std::fputc(code & 0xFF, list_stream);
}

/* ASCII passes as it is; a kana byte becomes its full-width code, and a
   voicing mark behind a kana that takes it joins into the one code. A lead
   byte passes through the table unchanged and its trail byte comes round
   as a byte of its own. */
void put_widened(const char *text) {
    const uint8_t *p = reinterpret_cast<const uint8_t *>(text);
    while (*p) {
        uint8_t c = *p++;
        if (c < 128) {
            std::fputc(c, list_stream);
            continue;
        }
        uint16_t code = half_to_full(c);
        uint8_t m = *p; /* the terminator at worst, then put back */
        if (m == voiced_mark && is_voicable(c)) {
            code = static_cast<uint16_t>(code + 1);
            p++;
        } else if (m == semi_voiced_mark && is_semi_voicable(c)) {
            code = static_cast<uint16_t>(code + 2);
            p++;
        }
        put_code(code);
    }
}

} // namespace

int32_t compare_append(const char *text) {
    if (compare_buffer == nullptr || compare_buffer_size <= 0)
        return 1;
    size_t used = std::strlen(compare_buffer);
    size_t add = std::strlen(text) + 2;
    if (used + add >= static_cast<size_t>(compare_buffer_size))
        return 1;
    std::memcpy(compare_buffer + used, text, add - 2);
    compare_buffer[used + add - 2] = 13;
    compare_buffer[used + add - 1] = 10;
    compare_buffer[used + add] = 0;
    return 0;
}

void put_line(const char *text) {
    if (compare_mode) {
        compare_append(text);
        return;
    }
    if (list_stream == nullptr)
        return;
    for (int32_t i = 0; i < list_indent; i++)
        std::fputs("      ", list_stream);
    if (hantozen_flag == 0)
        std::fputs(text, list_stream);
    else
        put_widened(text);
    std::fputs("\r\n", list_stream);
}

void trace(const char *format, ...) {
    char buf[1024];
    va_list ap;
    va_start(ap, format);
    std::vsnprintf(buf, sizeof buf, format, ap);
    va_end(ap);
    platform_debug_trace(buf);
}
