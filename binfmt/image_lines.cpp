/*
** image_lines.cpp - the line lists of prog_image: one for the main program
** and one per daughter, each a chain of nodes that ends in an empty node.
** Daughter lists are made on their first line.
*/
#include <cstring>

#include "binfmt/image.h"
#include "binfmt/image_internal.h"
#include "core/alloc.h"

int32_t image_daughter_high = 0;

namespace {

line_list main_lines;
line_list *daughter_heads[TP_DAUGHTER_SLOTS];

void list_clear(line_list *list) {
    std::memset(list, 0, sizeof *list);
    list->tail = &list->head;
}

line_list *daughter_list(int32_t daughter, bool create) {
    if (daughter < 1 || daughter >= TP_DAUGHTER_SLOTS)
        return nullptr;
    if (!image_live() && !create)
        return nullptr;
    if (!daughter_heads[daughter] && create) {
        line_list *list = static_cast<line_list *>(lmalloc(sizeof(line_list)));
        if (!list)
            return nullptr;
        list_clear(list);
        daughter_heads[daughter] = list;
    }
    return daughter_heads[daughter];
}

int32_t list_append(line_list *list, const uint8_t *data, int32_t length) {
    if (length < 0 || length > TP_LINE_MAX)
        return IMAGE_LINE_TOO_LONG;
    if (!list->tail)
        list->tail = &list->head;
    /* At least one byte, so that a filled node never has null data. */
    uint8_t *copy = static_cast<uint8_t *>(lmalloc(length > 0 ? static_cast<size_t>(length) : 1));
    line_node *fresh = static_cast<line_node *>(lmalloc(sizeof(line_node)));
    if (!copy || !fresh) {
        lfree(copy);
        lfree(fresh);
        return IMAGE_NO_MEMORY;
    }
    if (length > 0 && data)
        std::memcpy(copy, data, static_cast<size_t>(length));
    else if (length > 0)
        std::memset(copy, 0, static_cast<size_t>(length));
    fresh->next = nullptr;
    fresh->data = nullptr;
    fresh->length = 0;
    line_node *node = list->tail;
    node->data = copy;
    node->length = length;
    node->next = fresh;
    list->tail = fresh;
    list->count++;
    return 0;
}

int32_t list_at(line_list *list, int32_t index, const uint8_t **data, int32_t *length) {
    if (!list || index < 0 || index >= list->count)
        return 1;
    line_node *node = &list->head;
    int32_t at = 0;
    if (list->cursor && list->cursor_index <= index) {
        node = list->cursor;
        at = list->cursor_index;
    }
    while (at < index && node->next) {
        node = node->next;
        at++;
    }
    if (!node->next) /* the empty tail */
        return 1;
    list->cursor = node;
    list->cursor_index = at;
    if (data)
        *data = node->data;
    if (length)
        *length = node->length;
    return 0;
}

/* Frees the nodes behind the head, which is not a block of its own. */
void list_release(line_list *list) {
    line_node *node = list->head.next;
    while (node) {
        line_node *next = node->next;
        lfree(node);
        node = next;
    }
    list_clear(list);
}

} // namespace

void image_lines_reset() {
    list_clear(&main_lines);
    std::memset(daughter_heads, 0, sizeof daughter_heads);
    image_daughter_high = 0;
}

void image_lines_release() {
    list_release(&main_lines);
    for (int32_t i = 0; i < TP_DAUGHTER_SLOTS; i++) {
        if (daughter_heads[i]) {
            list_release(daughter_heads[i]);
            lfree(daughter_heads[i]);
            daughter_heads[i] = nullptr;
        }
    }
}

int32_t line_append(const uint8_t *data, int32_t length) {
    if (length < 0 || length > TP_LINE_MAX)
        return IMAGE_LINE_TOO_LONG;
    if (!image_ensure())
        return IMAGE_NO_MEMORY;
    return list_append(&main_lines, data, length);
}

int32_t daughter_line_append(const uint8_t *data, int32_t length, int32_t daughter) {
    if (length < 0 || length > TP_LINE_MAX)
        return IMAGE_LINE_TOO_LONG;
    if (daughter < 1 || daughter >= TP_DAUGHTER_SLOTS)
        return IMAGE_NO_MEMORY; /* no slot for it: the table is full */
    if (!image_ensure())
        return IMAGE_NO_MEMORY;
    line_list *list = daughter_list(daughter, true);
    if (!list)
        return IMAGE_NO_MEMORY;
    int32_t rc = list_append(list, data, length);
    if (rc == 0 && daughter > image_daughter_high)
        image_daughter_high = daughter;
    return rc;
}

int32_t line_at(int32_t index, const uint8_t **data, int32_t *length) {
    if (!image_live())
        return 1;
    return list_at(&main_lines, index, data, length);
}

int32_t daughter_line_at(int32_t index, const uint8_t **data, int32_t *length, int32_t daughter) {
    return list_at(daughter_list(daughter, false), index, data, length);
}

int32_t line_count() { return image_live() ? main_lines.count : 0; }

int32_t daughter_line_count(int32_t daughter) {
    line_list *list = daughter_list(daughter, false);
    return list ? list->count : 0;
}
