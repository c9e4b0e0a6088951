/*
** writer_blocks.cpp - the block writers of the .TP writer: name record,
** attribute block, line block, position block and application block, for
** the main program and for daughters.
*/
#include <cstdio>
#include <cstring>

#include "binfmt/image.h"
#include "binfmt/image_appl.h"
#include "binfmt/writer.h"
#include "binfmt/writer_internal.h"
#include "core/messages.h"

namespace {

void write_end_mark() {
    write_byte(TP_END_BYTE);
    write_byte(TP_END_BYTE);
}

void write_text_field(const char *text, int32_t text_size, int32_t field_size) {
    char field[TP_ATTR_COMMENT_SIZE] = {};
    int32_t n = text_size < field_size ? text_size : field_size;
    for (int32_t i = 0; i < n && text[i] != '\0'; i++)
        field[i] = text[i];
    write_bytes(field, field_size);
}

} // namespace

void daughter_name(int32_t daughter, char out[14]) {
    char text[32] = {};
    std::memcpy(text, image_name, TP_MAIN_NAME_MAX);
    text[TP_MAIN_NAME_MAX] = '\0';
    size_t length = std::strlen(text);
    while (length < TP_MAIN_NAME_MAX)
        text[length++] = TP_DAUGHTER_PAD;
    char joined[32];
    std::snprintf(joined, sizeof joined, TP_DAUGHTER_NAME_FORMAT, text, static_cast<int>(daughter));
    std::memset(out, 0, TP_NAME_FIELD_SIZE);
    size_t n = std::strlen(joined);
    std::memcpy(out, joined, n < TP_NAME_FIELD_SIZE ? n : TP_NAME_FIELD_SIZE);
}

int32_t write_name_record(int32_t daughter) {
    char name[TP_NAME_FIELD_SIZE] = {};
    if (daughter == 0)
        std::memcpy(name, image_name, sizeof image_name);
    else
        daughter_name(daughter, name);
    write_byte(TP_TAG_NAME);
    write_byte(0);
    write_byte(TP_NAME_HAS_SUBTYPE);
    write_byte(image_subtype);
    write_bytes(name, TP_NAME_FIELD_SIZE);
    write_end_mark();
    take_write_count();
    return 0;
}

int32_t write_attr_block(int32_t daughter) {
    const image_attributes &a = image_attr;
    take_write_count();
    write_byte(TP_TAG_ATTR);
    write_word(TP_ATTR_FIELDS_SIZE);
    write_text_field(a.owner, TP_ATTR_OWNER_SIZE, TP_ATTR_OWNER_SIZE);
    write_text_field(a.comment, TP_ATTR_COMMENT_SIZE, TP_ATTR_COMMENT_SIZE);
    write_long(a.prog_size);
    write_long(a.create);
    write_long(a.modified);
    write_long(0);
    write_word(a.version);
    write_word(daughter ? daughter_line_count(daughter) : a.line_count);
    write_long(a.memory_size);
    write_word(a.protect);
    write_word(a.stack_size);
    /* The controller runs every program at priority 50; the listing's
       value only earns a warning. */
    if (a.task_priority != TP_TASK_PRIORITY)
        report_warning(WRITER_WARN_TASK_PRIORITY);
    write_word(TP_TASK_PRIORITY);
    write_word(a.time_slice);
    write_word(a.busy_lamp_off);
    write_word(a.abort_request);
    write_word(a.pause_request);
    write_word(daughter ? TP_DAUGHTER_DEFAULT_GROUP : a.default_group);
    write_word(daughter ? TP_DAUGHTER_CONTROL_CODE : a.control_code);
    write_word(a.reserved2);
    write_end_mark();
    /* A count other than 77 means the field list and the length 72 have
       drifted apart, or the stream refused bytes. */
    return take_write_count() == TP_ATTR_BLOCK_SIZE ? 0 : WRITER_ATTR_SIZE;
}

int32_t write_line_block(int32_t daughter) {
    write_byte(TP_TAG_LINES);
    const uint8_t *data = nullptr;
    int32_t length = 0;
    for (int32_t i = 0;; i++) {
        int32_t rc = daughter ? daughter_line_at(i, &data, &length, daughter) : line_at(i, &data, &length);
        if (rc != 0)
            break;
        write_word(length);
        write_bytes(data, length);
    }
    write_end_mark();
    take_write_count();
    return 0;
}

int32_t write_pos_block() {
    write_byte(TP_TAG_POS);
    int32_t list_index = 0;
    int32_t count = number_count(&position_numbers);
    for (int32_t i = 0; i < count; i++) {
        int32_t number = position_numbers.values[i];
        if (pos_defined(number)) {
            const uint8_t *data = nullptr;
            int32_t length = 0;
            if (pos_at(list_index, &data, &length) != 0)
                break;
            list_index++;
            write_word(length);
            write_bytes(data, length);
        } else {
            /* Used by a line, not defined: the number alone. */
            write_word(TP_POS_UNINIT_LENGTH);
            write_byte(number >> 8);
            write_byte(number);
        }
    }
    write_end_mark();
    take_write_count();
    return 0;
}

int32_t write_appl_block() {
    int32_t status = writer_complete_appl();
    if (status != 0)
        return status;
    write_byte(TP_TAG_APPL);
    int32_t types = 0;
    appl_type_count(&types);
    /* Falling order: the loader sizes its tables from the first record. */
    for (int32_t type = types - 1; type >= 0; type--) {
        int32_t instances = 0;
        status = appl_instance_count(type, &instances);
        if (status == IMAGE_NO_RECORD)
            continue;
        if (status != 0)
            return status;
        for (int32_t instance = instances - 1; instance >= 0; instance--) {
            uint8_t buffer[256];
            status = appl_read(type, instance, buffer, sizeof buffer);
            if (status == IMAGE_NO_RECORD)
                continue;
            if (status != 0)
                return status;
            write_word(type);
            write_word(instance);
            write_byte(buffer[0]);
            write_bytes(buffer + 1, buffer[0]);
        }
    }
    write_end_mark();
    take_write_count();
    return status;
}

int32_t write_empty_pos_block() {
    write_byte(TP_TAG_POS);
    write_end_mark();
    take_write_count();
    return 0;
}

int32_t write_empty_appl_block() {
    write_byte(TP_TAG_APPL);
    write_end_mark();
    take_write_count();
    return 0;
}
