// placeholder until the generated tables land
#include "core/dictionary.h"
const dict_entry english_print_table[] = {{"", 0}};
const dict_entry japanese_print_table[] = {{"", 0}};
const dict_entry english_reading_table[] = {{"", 0}};
const dict_entry japanese_reading_table[] = {{"", 0}};
