/*
** dispatch.cpp - first token to family parser. A token without a row has no
** statement of its own; the loop then reports 161 (after the macro try).
*/
#include "asc2bin/dispatch.h"

#include "core/messages.h"
#include "instructions/motion.h"
#include "instructions/remark.h"
#include "instructions/registers.h"

namespace {

const dispatch_row rows[] = {
    {218, parse_remark, false},
    {0, parse_motion_statement, false},
    {3, parse_motion_statement, false},
    {4, parse_motion_statement, false},
    {6, parse_motion_statement, false},
    {306, parse_motion_statement, false},
    {391, parse_group_motion, false},
    {392, parse_group_motion, false},
    {588, parse_joint_max_speed, false},
    {589, parse_linear_max_speed, false},
    {20, parse_assignment, false},
    {21, parse_assignment, false},
    {122, parse_sysvar_assignment, false},
    {127, parse_unset_assignment, false},
    {223, parse_timer_statement, false},
    {225, parse_frame_assignment, false},
    {226, parse_frame_number, false},
    {227, parse_frame_number, false},
    {228, parse_frame_assignment, false},
    {229, parse_sysvar_assignment, false},
    {332, parse_calmatrix, false},
    {587, parse_timer_overflow_statement, true},
};

} // namespace

const dispatch_row *find_statement_parser(int32_t code) {
    for (const dispatch_row &r : rows)
        if (r.code == code)
            return &r;
    return nullptr;
}

int32_t parse_condition_statement(scan_ctx *) {
    /* Condition lines come with the control-flow family. */
    return ASC_UNDEF_INSTRUCTION;
}
