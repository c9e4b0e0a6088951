/*
** exports_decode.cpp - the binary-to-listing exports: whole files, one
** line, one position record, the program line, the dump and the compare.
*/
#include "vorex_zd.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bin2asc/decode_file.h"
#include "bin2asc/decode_line.h"
#include "core/alloc.h"
#include "sections/pos_print.h"
#include "text/put_line.h"
#include "utils/compare.h"
#include "utils/dump.h"

namespace {

char position_text[2048];

} // namespace

extern "C" {

int32_t zdbinasc_file(const char *source, const char *destination) {
    lmalloc_begin();
    compare_mode = 0;
    int32_t result = zdbinasc_file_sub(source, destination);
    lmalloc_end();
    return result;
}

int32_t zdbinasc_file_dmp(const char *source, const char *destination) {
    lmalloc_begin();
    compare_mode = 0;
    int32_t result = dump_file_sub(source, destination);
    lmalloc_end();
    return result;
}

/* The report goes into the caller's buffer through the text sink; a line
   that does not fit is dropped whole. Without a buffer to hold even its
   terminator the report has nowhere to go and the sink drops it all. */
int32_t compare_files(const char *left, const char *right, char *report, int32_t report_size) {
    lmalloc_begin();
    compare_mode = 1;
    compare_buffer = report_size > 0 ? report : nullptr;
    compare_buffer_size = report != nullptr ? report_size : 0;
    if (compare_buffer != nullptr)
        compare_buffer[0] = 0;
    int32_t result = compare_run(left, right);
    lmalloc_end();
    compare_mode = 0;
    compare_buffer = nullptr;
    compare_buffer_size = 0;
    return result;
}

/* A validity test of a line's bytes: the decoded text is dropped and the
   text argument always comes back empty. The bytes are copied, since the
   printers may write into a line and the caller's bytes are its own. */
int32_t zdbinasc_line(const uint8_t *bytes, int32_t length, char *text) {
    if (text)
        text[0] = 0;
    if (length < 0 || (bytes == nullptr && length > 0))
        return 0;
    uint8_t *copy = static_cast<uint8_t *>(std::calloc(static_cast<size_t>(length) + 8, 1));
    if (copy == nullptr)
        return 0;
    if (length > 0)
        std::memcpy(copy, bytes, static_cast<size_t>(length));
    line_cursor cur;
    cursor_setup(&cur, copy, length, 0);
    int32_t error = decode_line(&cur, 0, 0);
    std::free(copy);
    return error == 0 ? 1 : 0;
}

/* The record's lines go to the sink, which outside a run and a compare
   leads nowhere; nothing fills the text buffer, so the text comes back
   empty. */
int32_t zdbinasc_pos(const uint8_t *record, char *text) {
    position_text[0] = 0;
    trace("Enter zdbinasc_asc\n");
    if (record != nullptr)
        print_position_record(record);
    char debug[sizeof position_text + 32];
    std::snprintf(debug, sizeof debug, "zdbinasc_pos : %s\n", position_text);
    trace("%s", debug);
    if (text)
        std::strcpy(text, position_text);
    position_text[0] = 0;
    return 1;
}

int32_t zdbinasc_prog(const char *name, int32_t subtype, char *text) {
    char debug[600];
    std::snprintf(debug, sizeof debug, "%s %d\n", name ? name : "", subtype);
    trace("%s", debug);
    if (text)
        format_prog_line(name, subtype, text, 512);
    return 0;
}

} // extern "C"
