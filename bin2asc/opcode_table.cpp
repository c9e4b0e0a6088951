/*
** opcode_table.cpp - the one place that maps an opcode byte to the printer
** of its instruction family. An opcode that no row names is undecodable:
** its line prints "ERROR".
**
** A family adds its rows to family_rows below. Opcode 61, the argument
** list head, is handled by the line loop itself, since it steers the
** commas of the items that follow it.
*/
#include <cstring>

#include "bin2asc/decode_line.h"
#include "core/dictionary.h"
#include "instructions/appl_instruction.h"
#include "instructions/motion.h"
#include "instructions/remark.h"
#include "instructions/control.h"
#include "instructions/io_misc.h"
#include "instructions/registers.h"
#include "text/decode_helpers.h"

namespace {

struct opcode_row {
    uint8_t first;
    uint8_t last;
    line_printer printer;
};

/* 64 ends an argument list, 255 ends a statement; neither ends the line. */
int32_t step_over_opcode(line_cursor *cur) {
    cur->pos += 1;
    return 0;
}

/* The items that the line core decodes itself. */
const opcode_row core_rows[] = {
    {0, 1, decode_value_arg},     {3, 7, decode_data_item},   {10, 13, decode_data_item},
    {15, 18, decode_data_item},   {20, 23, decode_data_item}, {25, 25, decode_data_item},
    {29, 29, decode_data_item},   {36, 39, decode_data_item}, {41, 42, decode_data_item},
    {66, 66, decode_data_item},   {64, 64, step_over_opcode}, {242, 242, decode_group_mask},
    {255, 255, step_over_opcode},
};

/* Instruction families, each with the opcodes it prints. */
const opcode_row family_rows[] = {
    {30, 30, print_remark},
    {58, 58, print_max_speed},
    {253, 253, print_group_segment},
    {254, 254, print_motion},
    {24, 24, print_misc},
    {27, 28, print_control},
    {31, 31, print_misc},
    {43, 43, print_tc_online},
    {51, 51, print_pulse},
    {52, 54, print_misc},
    {59, 59, print_misc},
    {120, 122, print_branch},
    {123, 125, print_wait},
    {126, 134, print_control},
    {135, 135, print_macro_call},
    {139, 141, print_misc},
    {146, 149, print_misc},
    {171, 174, print_ibgn},
    {176, 176, print_tool},
    {223, 225, print_misc},
    {251, 251, print_misc},
    {26, 26, print_sysvar},
    {32, 35, print_frame},
    {40, 40, print_err_num},
    {50, 50, print_value_word},
    {57, 57, print_timer_overflow},
    {62, 62, print_ar_item},
    {63, 63, print_quoted_text},
    {100, 117, print_operator},
    {142, 142, print_calmatrix},
    {150, 150, print_appl_instruction},
};

line_printer printers[256];
bool printers_ready = false;

void fill_rows(const opcode_row *rows, size_t count) {
    for (size_t i = 0; i < count; i++)
        for (int op = rows[i].first; op <= rows[i].last; op++)
            printers[op] = rows[i].printer;
}

void ready_table() {
    if (printers_ready)
        return;
    std::memset(printers, 0, sizeof printers);
    fill_rows(core_rows, sizeof core_rows / sizeof core_rows[0]);
    fill_rows(family_rows, sizeof family_rows / sizeof family_rows[0]);
    printers_ready = true;
}

} // namespace

line_printer opcode_printer(uint8_t opcode) {
    ready_table();
    return printers[opcode];
}

line_printer set_opcode_printer(uint8_t opcode, line_printer printer) {
    ready_table();
    line_printer old = printers[opcode];
    printers[opcode] = printer;
    return old;
}
