/*
** put_line.h - the one sink of all printed text: a listing stream, or,
** during a compare, the caller's report buffer; and the debug trace.
*/
#ifndef VZ_TEXT_PUT_LINE_H
#define VZ_TEXT_PUT_LINE_H

#include <cstdint>
#include <cstdio>

/* Not 0: put_line appends to compare_buffer instead of the stream. */
extern int32_t compare_mode;
extern char *compare_buffer;
extern int32_t compare_buffer_size;
/* The listing being written; null when none is open, and the text then
   goes nowhere. */
extern FILE *list_stream;
/* Six blanks per count before each listing line; nothing changes it. */
extern int32_t list_indent;
/* Half-to-full conversion on output; no interface sets it. */
extern int32_t hantozen_flag;

/* Writes one line and its line end, CR LF. */
void put_line(const char *text);
/* Appends text and CR LF to the compare buffer: 0, or 1 when the line
   did not fit and was dropped whole. */
int32_t compare_append(const char *text);
/* Debug text that leads nowhere unless the platform trace is switched on. */
void trace(const char *format, ...) __attribute__((format(printf, 1, 2)));

#endif
