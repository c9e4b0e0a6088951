/*
** appl_instruction.cpp - the family-byte table of opcode 150. A family
** adds one row naming the family bytes it prints.
*/
#include "instructions/appl_instruction.h"

#include <cstddef>

namespace {

struct family_row {
    uint8_t first;
    uint8_t last;
    line_printer printer;
};

/* Family bytes: 1 arc, 2 spot, 4 laser, 5 and 7-16 dispense, 6 paint. */
const family_row family_rows[] = {
    {0, 0, nullptr},
};

} // namespace

int32_t print_appl_instruction(line_cursor *cur) {
    uint8_t family = cursor_peek(cur, 3);
    for (const family_row &row : family_rows)
        if (row.printer != nullptr && family >= row.first && family <= row.last)
            return row.printer(cur);
    return 1;
}
