/*
** image.cpp - the frame of prog_image: begin and release of a run's image,
** the program name and sub type, and the attribute field store.
*/
#include "binfmt/image.h"

#include <cstring>

#include "binfmt/image_internal.h"
#include "core/alloc.h"
#include "core/spot_warnings.h"

image_attributes image_attr;
char image_name[12];
const char *image_source_text = nullptr;
uint8_t image_subtype = TP_SUBTYPE_NONE;

namespace {

/* The tracked list the pointer stores were built on; 0 before any run. */
uint64_t image_list_id = 0;

void reset_pointer_stores() {
    image_lines_reset();
    image_pos_reset();
    image_numbers_reset();
    image_appl_reset();
}

/* Copies at most max characters of a text of at most size bytes, up to its
   zero, into a zero-filled field. */
void copy_text(char *field, int32_t field_size, const void *value, int32_t size, int32_t max) {
    std::memset(field, 0, static_cast<size_t>(field_size));
    if (!value || size <= 0)
        return;
    const char *text = static_cast<const char *>(value);
    int32_t limit = size < max ? size : max;
    for (int32_t i = 0; i < limit && text[i] != '\0'; i++)
        field[i] = text[i];
}

uint16_t *field_16(int32_t field) {
    switch (field) {
    case ATTR_VERSION: return &image_attr.version;
    case ATTR_DEFAULT_GROUP: return &image_attr.default_group;
    case ATTR_PROTECT: return &image_attr.protect;
    case ATTR_STACK_SIZE: return &image_attr.stack_size;
    case ATTR_TASK_PRIORITY: return &image_attr.task_priority;
    case ATTR_TIME_SLICE: return &image_attr.time_slice;
    case ATTR_BUSY_LAMP_OFF: return &image_attr.busy_lamp_off;
    case ATTR_ABORT_REQUEST: return &image_attr.abort_request;
    case ATTR_PAUSE_REQUEST: return &image_attr.pause_request;
    case ATTR_CONTROL_CODE: return &image_attr.control_code;
    default: return nullptr;
    }
}

} // namespace

bool image_live() {
    return image_list_id != 0 && image_list_id == lmalloc_list_id();
}

bool image_ensure() {
    if (image_live())
        return true;
    /* The blocks the stores pointed at died with their list. */
    reset_pointer_stores();
    if (lmalloc_list_id() == 0)
        lmalloc_begin();
    image_list_id = lmalloc_list_id();
    image_numbers_begin();
    return image_list_id != 0;
}

void image_begin() {
    lmalloc_begin();
    image_list_id = lmalloc_list_id();
    reset_pointer_stores();

    std::memset(&image_attr, 0, sizeof image_attr);
    std::memset(image_name, 0, sizeof image_name);
    image_source_text = nullptr;
    image_subtype = TP_SUBTYPE_NONE;
    uint16_t value = 1;
    attr_set(image_name, ATTR_DEFAULT_GROUP, &value, 2);
    value = TP_TASK_PRIORITY;
    attr_set(image_name, ATTR_TASK_PRIORITY, &value, 2);
    image_attr.protect = TP_PROTECT_READ_WRITE;

    image_numbers_begin();
    spot_warnings_reset();
}

void image_release() {
    /* Only nodes on the open list may be freed; a list already ended took
       them with it. */
    if (image_live())
        image_lines_release();
    reset_pointer_stores();
    image_list_id = 0;
}

int32_t image_set_name(const char *name) {
    copy_text(image_name, sizeof image_name, name, TP_MAIN_NAME_MAX + 1, TP_MAIN_NAME_MAX);
    return 0;
}

void image_set_subtype(uint8_t subtype) { image_subtype = subtype; }

int32_t attr_set(const char * /*program*/, int32_t field, const void *value, int32_t size) {
    if (field < ATTR_NAME || field > ATTR_CONTROL_CODE)
        return 0;
    if (field >= 3 && field <= 7)
        return IMAGE_ATTR_READ_ONLY;
    switch (field) {
    case ATTR_NAME:
        copy_text(image_name, sizeof image_name, value, size, TP_MAIN_NAME_MAX);
        return 0;
    case ATTR_OWNER:
        copy_text(image_attr.owner, TP_ATTR_OWNER_SIZE, value, size, TP_ATTR_OWNER_MAX);
        return 0;
    case ATTR_COMMENT:
        copy_text(image_attr.comment, TP_ATTR_COMMENT_SIZE, value, size, TP_ATTR_COMMENT_MAX);
        return 0;
    case ATTR_SOURCE:
        image_source_text = static_cast<const char *>(value);
        return 0;
    default:
        break;
    }
    if (size < 2)
        return IMAGE_ATTR_SHORT_SIZE;
    if (!value)
        return 0;
    std::memcpy(field_16(field), value, 2);
    return 0;
}
