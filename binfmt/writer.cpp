/*
** writer.cpp - the byte primitives of the .TP writer, the order of blocks
** in a file, and the module state that sets the application defaults.
*/
#include "binfmt/writer.h"
#include "binfmt/writer_internal.h"

#include <cstdio>

#include "binfmt/image.h"
#include "core/run_state.h"

namespace {

int32_t write_count = 0;
int32_t spot_seen_flag = 0;
int32_t spot_header_flag = 0;
spot_header_fn spot_header_hook = nullptr;
appl_complete_fn appl_complete_hook = nullptr;

int32_t write_daughter(int32_t daughter) {
    int32_t rc = write_name_record(daughter);
    if (rc == 0)
        rc = write_attr_block(daughter);
    if (rc == 0)
        rc = write_line_block(daughter);
    if (rc == 0)
        rc = write_empty_pos_block();
    if (rc == 0)
        rc = write_empty_appl_block();
    return rc;
}

int32_t write_main() {
    int32_t rc = write_name_record(0);
    if (rc == 0)
        rc = write_attr_block(0);
    if (rc == 0)
        rc = write_line_block(0);
    if (rc == 0)
        rc = write_pos_block();
    if (rc == 0)
        rc = write_appl_block();
    return rc;
}

} // namespace

void write_byte(int32_t value) {
    /* Only bytes the stream takes count, so that a refusing stream shows
       in the attribute block's size check. */
    if (output_stream && std::fputc(value & 0xFF, output_stream) != EOF)
        write_count++;
}

void write_bytes(const void *data, int32_t count) {
    const uint8_t *bytes = static_cast<const uint8_t *>(data);
    for (int32_t i = 0; bytes && i < count; i++)
        write_byte(bytes[i]);
}

void write_word(int32_t value) {
    write_byte(value >> 8);
    write_byte(value);
}

void write_long(uint32_t value) {
    write_byte(static_cast<int32_t>(value >> 24));
    write_byte(static_cast<int32_t>(value >> 16));
    write_byte(static_cast<int32_t>(value >> 8));
    write_byte(static_cast<int32_t>(value));
}

int32_t take_write_count() {
    int32_t count = write_count;
    write_count = 0;
    return count;
}

int32_t write_program() {
    take_write_count();
    int32_t rc = write_main();
    if (rc == 0 && image_daughter_high > 0) {
        write_byte(TP_TAG_DAUGHTERS);
        take_write_count();
        /* No daughter beyond the table can hold a line. */
        int32_t last = image_daughter_high < TP_DAUGHTER_SLOTS ? image_daughter_high : TP_DAUGHTER_SLOTS - 1;
        for (int32_t d = 1; rc == 0 && d <= last; d++)
            rc = write_daughter(d);
    }
    /* A full disk shows only when the buffer goes out. */
    if (rc == 0 && output_stream && (std::fflush(output_stream) != 0 || std::ferror(output_stream)))
        rc = WRITER_ATTR_SIZE;
    return rc;
}

void appl_header_reset() {
    spot_seen_flag = 0;
    spot_header_flag = 0;
}

void set_spot_instructions_seen(int32_t seen) { spot_seen_flag = seen; }
int32_t spot_instructions_seen() { return spot_seen_flag; }
void set_spot_header_seen(int32_t seen) { spot_header_flag = seen; }
int32_t spot_header_seen() { return spot_header_flag; }

void writer_set_spot_header_hook(spot_header_fn hook) { spot_header_hook = hook; }
void writer_set_appl_complete_hook(appl_complete_fn hook) { appl_complete_hook = hook; }

/* The defaults the application block needs before it is written. */
int32_t writer_complete_appl() {
    int32_t rc = 0;
    if (spot_seen_flag && !spot_header_flag && spot_header_hook)
        rc = spot_header_hook(1);
    if (rc == 0 && appl_complete_hook)
        rc = appl_complete_hook();
    return rc;
}
