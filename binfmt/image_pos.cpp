/*
** image_pos.cpp - the position records of prog_image, a doubly linked list
** kept in number order. A bit per possible number answers "is it defined"
** without a walk, and a cursor makes a walk by index linear.
*/
#include <cstring>

#include "binfmt/image.h"
#include "binfmt/image_internal.h"
#include "core/alloc.h"

namespace {

struct pos_node {
    pos_node *next;
    pos_node *prev;
    uint8_t *data;    /* private copy of the record, number first */
    uint16_t length;
    uint16_t number;
};

pos_node *pos_head = nullptr;
pos_node *pos_tail = nullptr;
int32_t pos_total = 0;
pos_node *pos_cursor = nullptr;
int32_t pos_cursor_index = 0;
/* One bit per 16-bit position number that has a record. */
uint8_t pos_bits[65536 / 8];

bool bit_test(int32_t number) {
    if (number < 0 || number > 0xFFFF)
        return false;
    return (pos_bits[number >> 3] >> (number & 7)) & 1;
}

void insert_before(pos_node *fresh, pos_node *at) {
    fresh->next = at;
    fresh->prev = at->prev;
    if (at->prev)
        at->prev->next = fresh;
    else
        pos_head = fresh;
    at->prev = fresh;
}

void insert_last(pos_node *fresh) {
    fresh->next = nullptr;
    fresh->prev = pos_tail;
    if (pos_tail)
        pos_tail->next = fresh;
    else
        pos_head = fresh;
    pos_tail = fresh;
}

} // namespace

void image_pos_reset() {
    pos_head = pos_tail = nullptr;
    pos_total = 0;
    pos_cursor = nullptr;
    pos_cursor_index = 0;
    std::memset(pos_bits, 0, sizeof pos_bits);
}

int32_t pos_append(const uint8_t *record, int32_t length) {
    if (!record || length < 2 || length > TP_LINE_LENGTH_MAX)
        return 1;
    if (!image_ensure())
        return 1;
    uint16_t number = static_cast<uint16_t>(record[0] << 8 | record[1]);
    if (bit_test(number))
        return IMAGE_DUP_NUMBER;
    /* Find the first node with a higher number; listings mostly come in
       ascending order, so look at the tail first. */
    pos_node *at = nullptr;
    if (pos_tail && pos_tail->number > number) {
        at = pos_head;
        while (at && at->number < number)
            at = at->next;
    }
    uint8_t *copy = static_cast<uint8_t *>(lmalloc(static_cast<size_t>(length)));
    pos_node *fresh = static_cast<pos_node *>(lmalloc(sizeof(pos_node)));
    if (!copy || !fresh) {
        lfree(copy);
        lfree(fresh);
        return 1;
    }
    std::memcpy(copy, record, static_cast<size_t>(length));
    fresh->data = copy;
    fresh->length = static_cast<uint16_t>(length);
    fresh->number = number;
    if (at)
        insert_before(fresh, at);
    else
        insert_last(fresh);
    pos_total++;
    pos_cursor = nullptr; /* indexes behind the insertion moved */
    pos_bits[number >> 3] = static_cast<uint8_t>(pos_bits[number >> 3] | 1 << (number & 7));
    return 0;
}

int32_t pos_exists(int32_t number) { return pos_defined(number) ? IMAGE_DUP_NUMBER : 0; }

int32_t pos_defined(int32_t number) {
    if (!image_live())
        return 0;
    return bit_test(number) ? 1 : 0;
}

int32_t pos_at(int32_t index, const uint8_t **data, int32_t *length) {
    if (!image_live() || index < 0 || index >= pos_total)
        return 1;
    pos_node *node = pos_head;
    int32_t at = 0;
    if (pos_cursor && pos_cursor_index <= index) {
        node = pos_cursor;
        at = pos_cursor_index;
    }
    while (node && at < index) {
        node = node->next;
        at++;
    }
    if (!node)
        return 1;
    pos_cursor = node;
    pos_cursor_index = at;
    if (data)
        *data = node->data;
    if (length)
        *length = node->length;
    return 0;
}

int32_t pos_record_count() { return image_live() ? pos_total : 0; }
