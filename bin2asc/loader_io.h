/*
** loader_io.h - byte reads from bin_stream for the block readers, and the
** growing arrays they share. Internal to bin2asc.
*/
#ifndef VZ_BIN2ASC_LOADER_IO_H
#define VZ_BIN2ASC_LOADER_IO_H

#include <cstddef>
#include <cstdint>

/* One byte; false at the end of the file or with no stream. */
bool load_byte(uint8_t *out);
/* Up to n bytes into out; the number actually read. */
size_t load_bytes(void *out, size_t n);
/* Reads and drops n bytes; false if the file ended first. */
bool load_skip(size_t n);

/* Grows a pointer array by step entries, clearing the new ones: 0, or 1
   when memory ran out (the array is then as it was). */
int32_t grow_pointer_array(void ***array, int32_t *capacity, int32_t step);
/* Reads one record's two length bytes; 2 at the end of the file, and
   *end set when they are the end mark 255, 255. */
int32_t load_record_head(uint8_t *hi, uint8_t *lo, bool *end);
/* Allocates a record of payload length hi * 256 + lo with its length
   bytes, the payload read from the file and six zero bytes behind it, so
   that even a record of payload 0 has bytes 2 to 7 to read: 0, 1 or 2.
   On a short read *out is set all the same. */
int32_t load_record(uint8_t hi, uint8_t lo, uint8_t **out);
/* The lines of a line block behind its tag, until the end mark; count is
   stored only when the end mark is met. The array grows as lines come. */
int32_t load_line_records(uint8_t ***lines, int32_t *count, int32_t *capacity);

/* Lines and positions grow in these steps, from the first capacity. */
constexpr int32_t LINE_ARRAY_STEP = 1000;
constexpr int32_t POS_ARRAY_FIRST = 200;
constexpr int32_t POS_ARRAY_STEP = 100;

#endif
