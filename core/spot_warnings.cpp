/*
** spot_warnings.cpp - the spot warning list, in plain heap memory that
** grows by SPOT_WARNINGS_STEP entries and survives the run.
*/
#include "core/spot_warnings.h"

#include <cstdlib>
#include <cstring>

#include "core/config.h"
#include "core/error_codes.h"

namespace {

spot_warning *entries = nullptr;
int32_t entry_count = 0;
int32_t entry_capacity = 0;

/* Room for one more entry; false when memory fails. */
bool make_room() {
    if (entry_count < entry_capacity)
        return true;
    int32_t capacity = entry_capacity ? entry_capacity + SPOT_WARNINGS_STEP : SPOT_WARNINGS_FIRST;
    void *grown = std::realloc(entries, static_cast<size_t>(capacity) * sizeof(spot_warning));
    if (!grown)
        return false;
    entries = static_cast<spot_warning *>(grown);
    entry_capacity = capacity;
    return true;
}

} // namespace

void spot_warnings_reset() {
    entry_count = 0;
    if (entry_capacity > SPOT_WARNINGS_FIRST) {
        std::free(entries);
        entries = nullptr;
        entry_capacity = 0;
    }
}

int32_t spot_warning_add(int32_t first_pos, int32_t second_pos, const char *text) {
    if (!spot_servo_gun)
        return 0;
    if (first_pos == 0 && second_pos == 0)
        return 1;
    if (!make_room())
        return ASC_NO_MEMORY;
    spot_warning &w = entries[entry_count++];
    std::memset(&w, 0, sizeof w);
    w.first_pos = first_pos;
    w.second_pos = second_pos;
    if (text) {
        size_t n = std::strlen(text);
        if (n > SPOT_WARNING_TEXT - 1)
            n = SPOT_WARNING_TEXT - 1;
        std::memcpy(w.text, text, n);
    }
    return 0;
}

int32_t spot_warning_flag(int32_t number) {
    if (!spot_servo_gun)
        return 0;
    if (number == 0)
        return 1;
    for (int32_t i = 0; i < entry_count; i++)
        if (entries[i].first_pos == number || entries[i].second_pos == number)
            entries[i].flagged = 1;
    return 0;
}

int32_t spot_warnings_count() {
    int32_t n = 0;
    for (int32_t i = 0; i < entry_count; i++)
        n += entries[i].flagged != 0;
    return n;
}

int32_t spot_warning_text(int32_t n, char *text) {
    /* Counting before the compare is what lets n of 0 match an unflagged
       first entry; hosts count from 1 and never see it. */
    int32_t seen = 0;
    for (int32_t i = 0; i < entry_count; i++) {
        if (entries[i].flagged)
            seen++;
        if (seen == n) {
            if (text)
                std::memcpy(text, entries[i].text, SPOT_WARNING_TEXT);
            return n;
        }
    }
    return 0;
}

int32_t spot_warnings_entries() { return entry_count; }
