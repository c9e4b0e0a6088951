/*
** attr_print.cpp - the printer side of the /ATTR section: owner, comment,
** sizes, dates, protection, task control data, group marks and control
** code, in the columns that the dictionary words' own tabs give.
*/
#include "sections/attr_print.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "binfmt/tp_format.h"
#include "core/dictionary.h"
#include "text/decode_helpers.h"
#include "text/decode_tables.h"
#include "text/put_line.h"

namespace {

enum attr_word : int32_t {
    w_slash = 80, w_equal = 82, w_minus = 87, w_colon = 120, w_comma = 121, w_quote = 123,
    w_semicolon = 132, w_attr = 152, w_abort_request = 151, w_busy_lamp_off = 153,
    w_control_code = 154, w_comment = 155, w_create = 156, w_date = 157, w_default_group = 158,
    w_file_name = 159, w_line_count = 161, w_memory_size = 162, w_modified = 163, w_owner = 164,
    w_pause_request = 165, w_prog_size = 166, w_protect = 167, w_read_write = 168, w_read = 169,
    w_stack_size = 170, w_task_priority = 171, w_tcd = 172, w_time = 173, w_time_slice = 174,
    w_version = 175,
};

const char *w(int32_t code) { return dict_word(code); }

/* The loaded block and the bytes that may be read from it. */
struct attr_view {
    const uint8_t *block;
    size_t size;
};

uint16_t field16(const attr_view &a, int off) { return decode_be16(a.block + off); }
int16_t field_short(const attr_view &a, int off) { return static_cast<int16_t>(field16(a, off)); }
int32_t field32(const attr_view &a, int off) { return decode_be32(a.block + off); }

/* A text field up to its first zero, and never past the block. */
void field_text(const attr_view &a, int off, char *out, size_t size) {
    size_t n = strnlen(reinterpret_cast<const char *>(a.block + off), a.size - off);
    if (n >= size)
        n = size - 1;
    std::memcpy(out, a.block + off, n);
    out[n] = 0;
}

void print_fmt(const char *format, ...) __attribute__((format(printf, 1, 2)));
void print_fmt(const char *format, ...) {
    char line[LINE_TEXT_SIZE];
    va_list ap;
    va_start(ap, format);
    std::vsnprintf(line, sizeof line, format, ap);
    va_end(ap);
    put_line(line);
}

void print_text_line(int32_t word, const char *value) {
    print_fmt("%s        %s %s%s", w(word), w(w_equal), value, w(w_semicolon));
}

void print_long_line(int32_t word, int32_t value) {
    print_fmt("%s        %s %d%s", w(word), w(w_equal), value, w(w_semicolon));
}

void print_task_line(int32_t word, int16_t value, int32_t closing) {
    print_fmt("      %s  %s %hd%s", w(word), w(w_equal), value, w(closing));
}

void format_group_marks(uint16_t mask, char *out, size_t size) {
    char m[5];
    for (int bit = 0; bit < 5; bit++)
        m[bit] = (mask & (1u << bit)) ? '1' : '*';
    const char *c = w(w_comma);
    std::snprintf(out, size, "%c%s%c%s%c%s%c%s%c", m[0], c, m[1], c, m[2], c, m[3], c, m[4]);
}

/* Sixteen binary digits, bit 15 first, a blank between bits 8 and 7. */
void format_control_code(uint16_t code, char *out) {
    int n = 0;
    for (int bit = 15; bit >= 0; bit--) {
        out[n++] = (code & (1u << bit)) ? '1' : '0';
        if (bit == 8)
            out[n++] = ' ';
    }
    out[n] = 0;
}

void print_fields(const attr_view &a) {
    char text[LINE_TEXT_SIZE], value[64];
    field_text(a, TP_ATTR_OFF_OWNER, text, sizeof text);
    print_text_line(w_owner, text);
    field_text(a, TP_ATTR_OFF_COMMENT, text, sizeof text);
    print_fmt("%s        %s %s%s%s%s", w(w_comment), w(w_equal), w(w_quote), text, w(w_quote), w(w_semicolon));
    print_long_line(w_prog_size, field32(a, TP_ATTR_OFF_PROG_SIZE));
    format_packed_date(static_cast<uint32_t>(field32(a, TP_ATTR_OFF_CREATE)), value, sizeof value);
    print_text_line(w_create, value);
    format_packed_date(static_cast<uint32_t>(field32(a, TP_ATTR_OFF_MODIFIED)), value, sizeof value);
    print_text_line(w_modified, value);
    print_fmt("%s        %s %s", w(w_file_name), w(w_equal), w(w_semicolon));
    print_fmt("%s        %s %d%s", w(w_version), w(w_equal), field_short(a, TP_ATTR_OFF_VERSION), w(w_semicolon));
    print_fmt("%s        %s %hd%s", w(w_line_count), w(w_equal), field_short(a, TP_ATTR_OFF_LINE_COUNT),
              w(w_semicolon));
    print_long_line(w_memory_size, field32(a, TP_ATTR_OFF_MEMORY_SIZE));
    bool read_only = field16(a, TP_ATTR_OFF_PROTECT) == TP_PROTECT_READ;
    print_text_line(w_protect, w(read_only ? w_read : w_read_write));
}

void print_task_fields(const attr_view &a) {
    print_fmt("%s%s  %s  %s %hd%s", w(w_tcd), w(w_colon), w(w_stack_size), w(w_equal),
              field_short(a, TP_ATTR_OFF_STACK_SIZE), w(w_comma));
    print_task_line(w_task_priority, field_short(a, TP_ATTR_OFF_TASK_PRIORITY), w_comma);
    print_task_line(w_time_slice, field_short(a, TP_ATTR_OFF_TIME_SLICE), w_comma);
    print_task_line(w_busy_lamp_off, field_short(a, TP_ATTR_OFF_BUSY_LAMP_OFF), w_comma);
    print_task_line(w_abort_request, field_short(a, TP_ATTR_OFF_ABORT_REQUEST), w_comma);
    print_task_line(w_pause_request, field_short(a, TP_ATTR_OFF_PAUSE_REQUEST), w_semicolon);
}

void print_group_and_code(const attr_view &a) {
    char value[64];
    format_group_marks(field16(a, TP_ATTR_OFF_DEFAULT_GROUP), value, sizeof value);
    print_text_line(w_default_group, value);
    uint16_t code = field16(a, TP_ATTR_OFF_CONTROL_CODE);
    if (code & 0x100)
        control_r_mode = 1;
    format_control_code(code, value);
    print_text_line(w_control_code, value);
}

} // namespace

void format_packed_date(uint32_t packed, char *out, size_t size) {
    int year = static_cast<int>(((packed >> 25) + 80) % 100);
    std::snprintf(out, size, "%s %02d%s%02d%s%02d  %s %02d%s%02d%s%02d", w(w_date), year, w(w_minus),
                  static_cast<int>((packed >> 21) & 0xF), w(w_minus), static_cast<int>((packed >> 16) & 0x1F),
                  w(w_time), static_cast<int>((packed >> 11) & 0x1F), w(w_colon),
                  static_cast<int>((packed >> 5) & 0x3F), w(w_colon), static_cast<int>(packed & 0x1F));
}

int32_t print_attr_section() {
    const uint8_t *block = attr_block[cur_side];
    if (block == nullptr)
        return 0;
    size_t size = static_cast<size_t>(attr_block_size[cur_side]);
    if (size < ATTR_BLOCK_ROOM)
        size = ATTR_BLOCK_ROOM;
    attr_view a = {block, size};
    print_fmt("%s%s", w(w_slash), w(w_attr));
    print_fields(a);
    print_task_fields(a);
    print_group_and_code(a);
    return 0;
}
