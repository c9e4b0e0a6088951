/*
** dispatch.cpp - first token to family parser. A token without a row has no
** statement of its own; the loop then reports 161 (after the macro try).
*/
#include "asc2bin/dispatch.h"

#include "core/messages.h"
#include "instructions/control.h"
#include "instructions/io_misc.h"
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
    /* control flow */
    {40, parse_if, false},
    {41, parse_jmp, false},
    {42, parse_lbl_def, false},
    {43, parse_select_family, false},
    {44, parse_select_family, false},
    {82, parse_select_family, false},
    {330, parse_select_family, false},
    {51, parse_wait, false},
    {60, parse_end_family, false},
    {62, parse_end_family, false},
    {64, parse_end_family, false},
    {283, parse_end_family, true},
    {578, parse_end_family, false},
    {61, parse_call, false},
    {63, parse_prog_name, false},
    {65, parse_prog_name, false},
    {66, parse_run, false},
    {140, parse_concurrent, false},
    {142, parse_concurrent, false},
    {214, parse_message, false},
    {217, parse_rcv, false},
    /* I/O and miscellaneous */
    {31, parse_output_assignment, false},
    {33, parse_output_assignment, false},
    {36, parse_output_assignment, false},
    {38, parse_output_assignment, false},
    {315, parse_output_assignment, false},
    {346, parse_output_assignment, false},
    {373, parse_output_assignment, false},
    {374, parse_output_assignment, false},
    {654, parse_output_assignment, false},
    {655, parse_output_assignment, false},
    {144, parse_semaphore, false},
    {215, parse_override, false},
    {219, parse_rsr, false},
    {221, parse_send, false},
    {224, parse_ualm, false},
    {341, parse_torq_limit, false},
    {354, parse_lock_preg, true},
    {355, parse_lock_preg, true},
    {378, parse_monitor, false},
    {385, parse_monitor, false},
    {381, parse_detect, false},
    {557, parse_detect, false},
    {555, parse_payload, false},
    {556, parse_ocp, false},
    {579, parse_grind, true},
    {591, parse_tool, true},
    {656, parse_tc_online, false},
    {658, parse_ps, false},
    {664, parse_ibgn, false},
    {674, parse_sample, false},
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

int32_t parse_condition_statement(scan_ctx *ctx) { return parse_when(ctx); }
