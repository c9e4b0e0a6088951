/*
** image_numbers.cpp - the two number tables of prog_image: the position
** numbers that lines use (ascending) and the labels that lines define (in
** order of definition). Each starts with 128 slots and grows by 32.
*/
#include <cstring>

#include "binfmt/image.h"
#include "binfmt/image_internal.h"
#include "core/alloc.h"

number_table position_numbers = {nullptr, 0, 0};
number_table label_numbers = {nullptr, 0, 0};

namespace {

constexpr int32_t first_slots = 128;
constexpr int32_t grow_slots = 32;

/* One bit per label number 0..65535, so that the duplicate test of a
   label needs no walk; other numbers are looked up by a walk. */
uint8_t label_bits[65536 / 8];

void table_begin(number_table *table) {
    table->values = static_cast<int32_t *>(lmalloc(first_slots * sizeof(int32_t)));
    table->capacity = table->values ? first_slots : 0;
    table->free_slots = table->capacity;
}

/* Makes one slot free; false when memory fails, the table unchanged. */
bool table_room(number_table *table) {
    if (table->free_slots > 0)
        return true;
    size_t bytes = static_cast<size_t>(table->capacity + grow_slots) * sizeof(int32_t);
    int32_t *grown = static_cast<int32_t *>(table->values ? lrealloc(table->values, bytes) : lmalloc(bytes));
    if (!grown)
        return false;
    table->values = grown;
    table->capacity += grow_slots;
    table->free_slots += grow_slots;
    return true;
}

/* Index of the first entry not below number in the ascending table. */
int32_t lower_bound(const number_table *table, int32_t number) {
    int32_t low = 0, high = number_count(table);
    while (low < high) {
        int32_t mid = low + (high - low) / 2;
        if (table->values[mid] < number)
            low = mid + 1;
        else
            high = mid;
    }
    return low;
}

bool label_present(int32_t number) {
    if (number >= 0 && number <= 0xFFFF)
        return (label_bits[number >> 3] >> (number & 7)) & 1;
    int32_t count = number_count(&label_numbers);
    for (int32_t i = 0; i < count; i++)
        if (label_numbers.values[i] == number)
            return true;
    return false;
}

} // namespace

void image_numbers_reset() {
    position_numbers = {nullptr, 0, 0};
    label_numbers = {nullptr, 0, 0};
    std::memset(label_bits, 0, sizeof label_bits);
}

void image_numbers_begin() {
    table_begin(&position_numbers);
    table_begin(&label_numbers);
}

int32_t number_count(const number_table *table) { return table->capacity - table->free_slots; }

int32_t note_position(int32_t number) {
    if (!image_ensure())
        return 1;
    number_table *table = &position_numbers;
    int32_t at = lower_bound(table, number);
    int32_t count = number_count(table);
    if (at < count && table->values[at] == number)
        return 0;
    if (!table_room(table))
        return 1;
    /* The same order as swapping each greater entry with the number in
       hand, without the walk over the smaller ones. */
    std::memmove(table->values + at + 1, table->values + at,
                 static_cast<size_t>(count - at) * sizeof(int32_t));
    table->values[at] = number;
    table->free_slots--;
    return 0;
}

int32_t position_known(int32_t number) {
    if (!image_live())
        return IMAGE_UNUSED_POS;
    const number_table *table = &position_numbers;
    int32_t at = lower_bound(table, number);
    if (at < number_count(table) && table->values[at] == number)
        return 0;
    return IMAGE_UNUSED_POS;
}

int32_t note_label(int32_t number) {
    if (!image_ensure())
        return IMAGE_NO_MEMORY;
    if (label_present(number))
        return IMAGE_DUP_NUMBER;
    if (!table_room(&label_numbers))
        return IMAGE_NO_MEMORY;
    label_numbers.values[number_count(&label_numbers)] = number;
    label_numbers.free_slots--;
    if (number >= 0 && number <= 0xFFFF)
        label_bits[number >> 3] = static_cast<uint8_t>(label_bits[number >> 3] | 1 << (number & 7));
    return 0;
}
