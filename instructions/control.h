/*
** control.h - control flow, both ways: labels, JMP, IF, SELECT and ELSE,
** WAIT, CALL with its argument list, RUN, ERROR_PROG and RESUME_PROG, END,
** ABORT, PAUSE, CLEAR_RESUME_PROG, CONCURRENT, RCV, the WHEN lines of a
** condition program, MESSAGE and the macro call printer.
**
** Listing side: every parser takes the scan context with the statement's
** first token still the lookahead, consumes the statement with its ";"
** (unless said otherwise) and returns 0 or the first error code.
** Binary side: every printer starts with pos on its opcode and leaves pos
** behind what it consumed.
*/
#ifndef VZ_INSTRUCTIONS_CONTROL_H
#define VZ_INSTRUCTIONS_CONTROL_H

#include <cstdint>

#include "text/line_cursor.h"
#include "text/scan_ctx.h"

/* ---- opcodes of the family ---- */
enum : uint8_t {
    op_error_prog = 27, op_resume_prog = 28, op_message = 31, op_clear_resume = 54,
    op_arg_list = 61, op_arg_string = 63, op_arg_list_end = 64, op_if = 120,
    op_select = 121, op_else = 122, op_wait_time = 123, op_wait_cond = 124,
    op_timeout = 125, op_jmp = 126, op_lbl_ref = 127, op_lbl_def = 128, op_call = 129,
    op_prog_name = 130, op_pause = 131, op_abort = 132, op_end = 133, op_run = 134,
    op_macro = 135, op_rcv = 141, op_when = 148, op_concurrent = 240, op_endconcur = 241,
};

/* Bit of a label or time word that marks a duplicate label or a register. */
constexpr uint16_t label_dup_mark = 0x8000;
constexpr int32_t label_max = 32767;
constexpr int32_t label_comment_max = 16;
constexpr int32_t message_max = 23;

/* ---- labels and jumps ---- */

/* JMP LBL[i] ;  126 and the reference. */
int32_t parse_jmp(scan_ctx *ctx);
/* LBL[i]: 127 and the bracket (Part of JMP, SKIP, TIMEOUT, RCV); no ";". */
int32_t parse_lbl_ref(scan_ctx *ctx);
/* LBL[n] ; or LBL[n:comment] ;  128, 2, the word, the comment, 0. A
   label defined twice is stored with 32768 added, with warning 102. */
int32_t parse_lbl_def(scan_ctx *ctx);

/* ---- branches ---- */

/* IF condition , action  (the action takes the ";"). */
int32_t parse_if(scan_ctx *ctx);
/* SELECT R[i]=v,JMP|CALL ;  the "=v,..." continuation line; ELSE ,... ; */
int32_t parse_select_family(scan_ctx *ctx);

/* ---- waits ---- */

/* Every WAIT form, by the token behind the word. */
int32_t parse_wait(scan_ctx *ctx);
/* The forms behind WAIT, the word already consumed. */
int32_t parse_wait_semaphore(scan_ctx *ctx);
int32_t parse_wait_mixed(scan_ctx *ctx);
int32_t parse_wait_time(scan_ctx *ctx);

/* ---- calls ---- */

/* CALL name[(args)] ; */
int32_t parse_call(scan_ctx *ctx);
/* The same without the ";", for the clause of a time-before option. */
int32_t parse_call_clause(scan_ctx *ctx);
/* The argument list behind a consumed "(": 61, the count, the arguments,
   64; consumes the ")". */
int32_t parse_call_arguments(scan_ctx *ctx);
/* A macro call's argument list behind its "(", and the statement's ";". */
int32_t parse_macro_arguments(scan_ctx *ctx);
/* RUN name ; */
int32_t parse_run(scan_ctx *ctx);
/* ERROR_PROG = name ;  RESUME_PROG = name ; */
int32_t parse_prog_name(scan_ctx *ctx);

/* ---- single words ---- */

/* END, ABORT, PAUSE, CLEAR_RESUME_PROG and the Japanese end word. The
   Japanese end word leaves its ";" to the dispatcher. */
int32_t parse_end_family(scan_ctx *ctx);
/* CONCURRENT ;  ENDCONCUR ; (the decoder has no entry for them) */
int32_t parse_concurrent(scan_ctx *ctx);

/* ---- the rest ---- */

/* WHEN|CONDITION condition , CALL ... ;  or ... ;  148 ... */
int32_t parse_when(scan_ctx *ctx);
/* RCV R[i],LBL[j] [TIMEOUT,LBL[k]] ; */
int32_t parse_rcv(scan_ctx *ctx);
/* MESSAGE[text] ;  at most 23 bytes of raw text. */
int32_t parse_message(scan_ctx *ctx);

/* ---- printers ---- */

/* 27, 28, 126..134: ERROR_PROG, RESUME_PROG, JMP, LBL references and
   definitions, CALL and P-SPS, program names, PAUSE, ABORT, END, RUN. */
int32_t print_control(line_cursor *cur);
/* 120..122: IF, SELECT, ELSE heads. */
int32_t print_branch(line_cursor *cur);
/* 123..125: WAIT by time, WAIT by condition, the TIMEOUT clause. */
int32_t print_wait(line_cursor *cur);
/* 135: a macro call; "MACRO_n " in front when macro_number_shown is on. */
int32_t print_macro_call(line_cursor *cur);
/* 54: CLEAR_RESUME_PROG. */
int32_t print_clear_resume(line_cursor *cur);
/* 31: MESSAGE[text]. */
int32_t print_message(line_cursor *cur);
/* 141: RCV and its register. */
int32_t print_rcv(line_cursor *cur);
/* 148: WHEN. */
int32_t print_when(line_cursor *cur);

/* Shows the number of a macro in front of its name; off unless a host
   turns it on. */
extern int32_t macro_number_shown;

#endif
