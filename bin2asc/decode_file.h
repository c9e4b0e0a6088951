/*
** decode_file.h - one binary program file to one listing: the keyword
** language and the name of the output, the read of all blocks, and the
** sections printed in listing order.
*/
#ifndef VZ_BIN2ASC_DECODE_FILE_H
#define VZ_BIN2ASC_DECODE_FILE_H

#include <cstddef>
#include <cstdint>

/* Translates source into the listing destination (empty: a name made
   from the source, in the current directory). 1 success, 0 failure; no
   output is created unless every block of the source read. */
int32_t zdbinasc_file_sub(const char *source, const char *destination);

/* 0 Japanese keywords when ".PJ" stands anywhere in the destination with
   its last two characters upper-cased, else 1 English. */
int32_t listing_keyword_language(const char *destination);
/* The listing name for an empty destination: the source's name behind its
   last path separator, cut at its first dot, with ".PE" when english is
   not 0, else ".PJ". */
void default_listing_name(const char *source, int32_t english, char *out, size_t size);

/* The /PROG line of the loaded program of cur_side. */
int32_t print_prog_header();
/* The /PROG line of zdbinasc_prog: name, tab, sub type word, CR LF. */
void format_prog_line(const char *name, int32_t subtype, char *out, size_t size);
/* Dictionary word of a program sub type, or null for none. */
const char *subtype_word(int32_t subtype);

#endif
