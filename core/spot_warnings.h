/*
** spot_warnings.h - the spot warning list: lines that weld on a position
** pair, flagged when /POS shows a position of such a line in a certain
** form. It lives outside the tracked allocator, so that the host can read
** it after the run that filled it.
*/
#ifndef VZ_CORE_SPOT_WARNINGS_H
#define VZ_CORE_SPOT_WARNINGS_H

#include <cstdint>

constexpr int32_t SPOT_WARNING_TEXT = 512;
constexpr int32_t SPOT_WARNINGS_FIRST = 128;
constexpr int32_t SPOT_WARNINGS_STEP = 32;

struct spot_warning {
    int32_t first_pos;
    int32_t second_pos;
    int32_t flagged;
    char text[SPOT_WARNING_TEXT];
};

/* Empties the list and gives it back its first size; a listing run calls
   this as it begins its image. */
void spot_warnings_reset();
/* Adds an unflagged entry with text cut to 511 bytes. 0 and nothing done
   unless the spot option (servo gun) is configured; 1 when both numbers
   are 0; 115 when memory fails; else 0. */
int32_t spot_warning_add(int32_t first_pos, int32_t second_pos, const char *text);
/* Flags every entry with first_pos or second_pos equal to number. 0 and
   nothing done unless the spot option is configured; 1 for number 0;
   else 0. */
int32_t spot_warning_flag(int32_t number);
/* Flagged entries. */
int32_t spot_warnings_count();
/* Copies the 512 text bytes of the n-th flagged entry (from 1) and returns
   n; returns 0 and leaves text alone past the end. n of 0 copies the first
   entry if it is not flagged and returns 0. */
int32_t spot_warning_text(int32_t n, char *text);
/* Entries, flagged or not; for tests. */
int32_t spot_warnings_entries();

#endif
