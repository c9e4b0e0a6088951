/*
** dictionary.h - the keyword dictionary: keyword codes to words for the
** printers, words to codes for the lexer, in English and Japanese
** (Shift-JIS half-width katakana).
*/
#ifndef VZ_CORE_DICTIONARY_H
#define VZ_CORE_DICTIONARY_H

#include <cstdint>

/* One table row; a table ends at a row with empty text and code 0. */
struct dict_entry {
    const char *text;
    int32_t code;
};

extern const dict_entry english_print_table[];
extern const dict_entry japanese_print_table[];
extern const dict_entry english_reading_table[];
extern const dict_entry japanese_reading_table[];

/* Printing table of dict_word; null until the first dict_init. */
extern const dict_entry *dict_table;
/* Index of the last row of the reading table; 0 until counted. */
extern int32_t reading_last;

/* Clears the word cache and selects the printing table: 1 English, any
   other value Japanese. */
void dict_init(int32_t language);
/* Word of a code in the selected printing table; " ***UNKNOWN*** " on a
   miss. Never null. */
const char *dict_word(int32_t code);
/* Code of an upper-cased word in a reading table by halving search;
   229 for an unknown word starting with "$", else 222. The rows are
   upper-cased (a to z) as they are compared; the word is taken as given.
   The first call after dict_reset_reading, or on another table than the
   last one, counts the table and clears the cache of reading_word. */
int32_t keyword_search(const dict_entry *reading_table, const char *word);
/* Word of a code in a reading table (its first row in table order), or
   null. Codes up to 1023 are cached per counted table. */
const char *reading_word(const dict_entry *reading_table, uint16_t code);
/* Makes the next keyword_search recount its table and clear its cache. */
void dict_reset_reading();

#endif
