/*
** appl_instruction.h - opcode 150, the application instruction: one
** opcode shared by the arc, spot, laser, dispense and paint families,
** told apart by the family byte at offset 3.
*/
#ifndef VZ_INSTRUCTIONS_APPL_INSTRUCTION_H
#define VZ_INSTRUCTIONS_APPL_INSTRUCTION_H

#include <cstdint>

#include "text/line_cursor.h"

/* Hands the instruction to the printer of its family byte; a family byte
   no family prints (or a line too short to hold one) fails the line. */
int32_t print_appl_instruction(line_cursor *cur);

#endif
