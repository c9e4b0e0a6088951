/*
** dump.h - the byte dump of a binary program file: every block framed with
** its begin and end lines, lines and records as hexadecimal bytes, and the
** helpers the compare report shares with it.
*/
#ifndef VZ_UTILS_DUMP_H
#define VZ_UTILS_DUMP_H

#include <cstddef>
#include <cstdint>

/* Dumps source into destination (empty: a name made from the source, in
   the current directory). 1 success, 0 failure; nothing is written unless
   every block of the source read. */
int32_t dump_file_sub(const char *source, const char *destination);

/* The dump name for an empty destination: the source's name behind its
   last path separator, cut at its first dot, with ".dmp". */
void default_dump_name(const char *source, char *out, size_t size);

/* Rows of eight blanks and "%02x " per byte, sixteen bytes a row; a
   count of 0 prints nothing. */
void dump_bytes(const uint8_t *bytes, int32_t count);
/* One line: eight blanks, "BIN[", the bytes as "%02X" joined by ",", "];". */
void dump_bin(const uint8_t *bytes, int32_t count);

/* The framed dumps of one name record (20-byte slot) and of one attribute
   block image (at least 75 bytes), as the dump and the compare print them. */
void dump_name_record(const uint8_t *record);
void dump_attr_block(const uint8_t *block);

/* The application block of cur_side: begin line, tag, one head line and
   one BIN line per group, end mark, end line. */
void dump_appl_section();
/* The dump of the groups of one application type, behind its head line.
   Built in: one BIN line of all the type's records. */
typedef void (*appl_type_dumper)(int32_t type);
/* Puts another dumper of a type's records in place (null restores the
   built-in one) and returns the one it replaced. The hook lets the owner
   of the application headers take over the record form. */
appl_type_dumper set_appl_type_dumper(appl_type_dumper dumper);
/* The built-in record form, for a replacement that wraps it. */
void dump_appl_type_bin(int32_t type);

/* Application records of a side, with bounds checked: the record (five
   head bytes, then the data) or null. */
const uint8_t *appl_record_at(int32_t side, int32_t type, int32_t instance);
/* Data length of a record from its fifth head byte. */
inline int32_t appl_data_length(const uint8_t *record) { return record[4]; }
/* The first `size - 1` data bytes of a type's record 0 as a text, zeros
   past its data; "" when the type has no record 0. */
void appl_label_text(int32_t side, int32_t type, char *out, size_t size);
/* The first type, from 0 up, whose record 0 begins with the first length
   bytes of label (bytes past a record's data count as 0); -1 if none. */
int32_t appl_label_find(int32_t side, const uint8_t *label, int32_t length);

#endif
