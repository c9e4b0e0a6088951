/*
** dictionary.cpp - lookups in the keyword tables: code to word for the
** printers (through a cache of 4096 codes) and word to code for the lexer
** (halving search over a sorted reading table, with a cache of 1024 codes
** for the reverse lookup of the digit splitter).
*/
#include "core/dictionary.h"

#include <cstddef>

const dict_entry *dict_table = nullptr;
int32_t reading_last = 0;

namespace {

constexpr int32_t word_cache_size = 4096;
constexpr int32_t reading_cache_size = 1024;
constexpr int32_t code_unknown_word = 222;
constexpr int32_t code_unknown_dollar = 229;

const char unknown_text[] = " ***UNKNOWN*** ";

/* Code to text of the selected printing table; null means not known yet. */
const char *word_cache[word_cache_size];
/* Code to text of the reading table that was counted last. */
const char *reading_cache[reading_cache_size];
/* The table reading_last and reading_cache belong to. */
const dict_entry *reading_counted = nullptr;

unsigned char upper_az(unsigned char c)
{
    return (c >= 'a' && c <= 'z') ? static_cast<unsigned char>(c - 32) : c;
}

/* Counts the rows and clears the reverse cache. A table other than the one
   counted before is counted afresh, so a caller that switches tables
   without a reset still searches the right bounds. */
void count_reading(const dict_entry *table)
{
    if (reading_last != 0 && table == reading_counted)
        return;
    int32_t rows = 0;
    while (table[rows].text[0] != '\0')
        rows++;
    reading_last = rows - 1;
    reading_counted = table;
    for (int32_t i = 0; i < reading_cache_size; i++)
        reading_cache[i] = nullptr;
}

/* strcmp over unsigned bytes, with the row upper-cased (a to z) as it is
   read: the mixed-case rows such as "mm" match the lexer's "MM". */
int compare_row(const unsigned char *word, const char *row_text)
{
    const unsigned char *row = reinterpret_cast<const unsigned char *>(row_text);
    for (;; word++, row++) {
        unsigned char r = upper_az(*row);
        if (*word != r)
            return *word < r ? -1 : 1;
        if (r == 0)
            return 0;
    }
}

const char *scan_print_table(int32_t code)
{
    for (const dict_entry *row = dict_table; row->text[0] != '\0'; row++) {
        if (row->code == code)
            return row->text;
    }
    return nullptr;
}

} // namespace

void dict_init(int32_t language)
{
    for (int32_t i = 0; i < word_cache_size; i++)
        word_cache[i] = nullptr;
    dict_table = (language == 1) ? english_print_table : japanese_print_table;
}

const char *dict_word(int32_t code)
{
    bool cached = code >= 0 && code < word_cache_size;
    if (cached && word_cache[code] != nullptr)
        return word_cache[code];
    if (dict_table == nullptr)
        return unknown_text;
    const char *text = scan_print_table(code);
    if (cached)
        word_cache[code] = text;
    return text != nullptr ? text : unknown_text;
}

int32_t keyword_search(const dict_entry *reading_table, const char *word)
{
    if (reading_table == nullptr || word == nullptr)
        return code_unknown_word;
    count_reading(reading_table);
    const unsigned char *key = reinterpret_cast<const unsigned char *>(word);
    int32_t low = 0;
    int32_t high = reading_last;
    while (low <= high) {
        int32_t mid = (low + high) / 2;
        int order = compare_row(key, reading_table[mid].text);
        if (order == 0)
            return reading_table[mid].code;
        if (low == high)
            break;
        if (order > 0)
            low = mid + 1;
        else
            high = mid - 1;
    }
    return key[0] == '$' ? code_unknown_dollar : code_unknown_word;
}

const char *reading_word(const dict_entry *reading_table, uint16_t code)
{
    if (reading_table == nullptr)
        return nullptr;
    count_reading(reading_table);
    bool cached = code < reading_cache_size;
    if (cached && reading_cache[code] != nullptr)
        return reading_cache[code];
    for (const dict_entry *row = reading_table; row->text[0] != '\0'; row++) {
        if (static_cast<uint16_t>(row->code) == code) {
            if (cached)
                reading_cache[code] = row->text;
            return row->text;
        }
    }
    return nullptr;
}

void dict_reset_reading()
{
    reading_last = 0;
}
