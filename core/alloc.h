/*
** alloc.h - the tracked allocator. Every block a run allocates hangs on one
** list, and lmalloc_end frees them all at once, so parsers need no unwind
** path: an error simply returns and the run frame releases everything.
*/
#ifndef VZ_CORE_ALLOC_H
#define VZ_CORE_ALLOC_H

#include <cstddef>
#include <cstdint>

void lmalloc_begin();
void *lmalloc(size_t size);
void *lcalloc(size_t count, size_t size);
int32_t lzalloc(void **out, size_t size);
void *lrealloc(void *block, size_t size);
void lfree(void *block);
void lmalloc_end();
/* Sizes 0 to 9 are raised to 10; *rounded gets the size rounded up to even.
   Returns 283 on failure, else 0. */
int32_t lalloc_even(void **out, size_t size, size_t *rounded);
/* Blocks on the current list; for tests of the clean-up. */
size_t lmalloc_live_blocks();
/* Identity of the open list, 0 while none is open. A holder of tracked
   pointers compares it with the value it saw when it allocated, so that it
   never touches blocks that an lmalloc_end has already freed. */
uint64_t lmalloc_list_id();

#endif
