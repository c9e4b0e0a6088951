/*
** alloc.cpp - the tracked allocator. Each block carries a small header that
** links it into the run's list, so freeing one block costs no list walk and
** the whole run's cost stays linear in its size.
*/
#include "core/alloc.h"

#include <cstdlib>
#include <cstring>

namespace {

constexpr uint32_t block_magic = 0x564f5258u; /* "VORX" */

struct block_head {
    block_head *prev;
    block_head *next;
    uint64_t list_id;
    uint32_t magic;
    uint32_t pad;
};
static_assert(sizeof(block_head) % 16 == 0, "payload stays 16-byte aligned");

block_head list_head = {&list_head, &list_head, 0, 0, 0};
uint64_t current_list_id = 0;
bool list_open = false;
size_t live_blocks = 0;

void link_block(block_head *b) {
    b->prev = list_head.prev;
    b->next = &list_head;
    list_head.prev->next = b;
    list_head.prev = b;
    b->list_id = current_list_id;
    b->magic = block_magic;
    live_blocks++;
}

void unlink_block(block_head *b) {
    b->prev->next = b->next;
    b->next->prev = b->prev;
    b->magic = 0;
    live_blocks--;
}

block_head *head_of(void *block) {
    block_head *b = static_cast<block_head *>(block) - 1;
    if (b->magic != block_magic || b->list_id != current_list_id)
        return nullptr;
    return b;
}

} // namespace

void lmalloc_begin() {
    /* A second begin inside a run starts afresh; nothing is leaked. */
    lmalloc_end();
    current_list_id++;
    list_open = true;
}

void *lmalloc(size_t size) {
    if (!list_open)
        lmalloc_begin();
    if (size > SIZE_MAX - sizeof(block_head))
        return nullptr;
    block_head *b = static_cast<block_head *>(std::malloc(sizeof(block_head) + size));
    if (!b)
        return nullptr;
    link_block(b);
    return b + 1;
}

void *lcalloc(size_t count, size_t size) {
    if (size != 0 && count > (SIZE_MAX - 4) / size)
        return nullptr;
    size_t total = count * size + 4;
    void *p = lmalloc(total);
    if (p)
        std::memset(p, 0, total);
    return p;
}

int32_t lzalloc(void **out, size_t size) {
    void *p = lmalloc(size);
    if (!p)
        return 1;
    std::memset(p, 0, size);
    *out = p;
    return 0;
}

void *lrealloc(void *block, size_t size) {
    if (!block)
        return lmalloc(size);
    block_head *b = head_of(block);
    if (!b || size > SIZE_MAX - sizeof(block_head))
        return nullptr;
    block_head *prev = b->prev, *next = b->next;
    block_head *nb = static_cast<block_head *>(std::realloc(b, sizeof(block_head) + size));
    if (!nb)
        return nullptr;
    /* The neighbours still point at the old address: re-link in place. */
    prev->next = nb;
    next->prev = nb;
    return nb + 1;
}

void lfree(void *block) {
    if (!block)
        return;
    block_head *b = head_of(block);
    if (!b)
        return;
    unlink_block(b);
    std::free(b);
}

void lmalloc_end() {
    block_head *b = list_head.next;
    while (b != &list_head) {
        block_head *next = b->next;
        b->magic = 0;
        std::free(b);
        b = next;
    }
    list_head.next = list_head.prev = &list_head;
    live_blocks = 0;
    list_open = false;
}

int32_t lalloc_even(void **out, size_t size, size_t *rounded) {
    if (size < 10)
        size = 10;
    size = (size + 1) & ~static_cast<size_t>(1);
    void *p = lmalloc(size);
    if (!p)
        return 283;
    *out = p;
    if (rounded)
        *rounded = size;
    return 0;
}

size_t lmalloc_live_blocks() { return live_blocks; }

uint64_t lmalloc_list_id() { return list_open ? current_list_id : 0; }
