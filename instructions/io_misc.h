/*
** io_misc.h - I/O and miscellaneous statements, both ways: the output
** assignments with PULSE, PAYLOAD, OVERRIDE, RSR, SEMAPHORE, UALM, the
** PREG lock, MONITOR, TOOL ATTACH/DETACH, SEND, OCP, STICK and COL DETECT,
** Grind, Sample, TORQ_LIMIT, PS, TC_ONLINE and IBGN.
**
** Listing side: the statement's first token is still the lookahead on
** entry; each parser consumes the statement with its ";" unless said
** otherwise and returns 0 or the first error code.
** Binary side: each printer starts with pos on its opcode and leaves pos
** behind what it consumed.
*/
#ifndef VZ_INSTRUCTIONS_IO_MISC_H
#define VZ_INSTRUCTIONS_IO_MISC_H

#include <cstdint>

#include "text/line_cursor.h"
#include "text/scan_ctx.h"

/* ---- opcodes of the family ---- */
enum : uint8_t {
    op_override = 24, op_remark_text = 30, op_tc_online = 43, op_pulse = 51,
    op_lock_preg = 52, op_unlock_preg = 53, op_sample = 59, op_ocp = 139, op_send = 140,
    op_torq_limit = 146, op_monitor = 147, op_payload = 149, op_ibgn_start = 171,
    op_ibgn_end = 172, op_ibgn_rec_start = 173, op_ibgn_rec_end = 174, op_tool = 176,
    op_stick_detect = 223, op_col_detect = 224, op_grind = 225, op_ps = 251,
};

/* Pulse time limit in tenths of a second: integers up to 25 s, reals
   below 25.5 s. */
constexpr int32_t pulse_int_max = 25;
constexpr float pulse_real_limit = 25.5f;
constexpr int32_t override_max = 100;
constexpr int32_t torq_limit_max = 100;
constexpr int32_t ibgn_max = 16;
/* IBGN START and END numbers share the label table, above any label. */
constexpr int32_t ibgn_start_label_base = 32500;
constexpr int32_t ibgn_end_label_base = 32600;

/* ---- output assignments ---- */

/* True for DO RO SO UO WO F M AO GO: the words of an output assignment. */
bool is_output_word(int32_t code);
/* DO[i]=value ; and the rest of the set: the tag, the bracket, 100, the
   value (ON, OFF, PULSE, R[], AR[], a mixed expression, "...", and for AO
   and GO a constant). */
int32_t parse_output_assignment(scan_ctx *ctx);
/* The same inside a time-before clause: only AO GO RO DO, the value may
   also be a constant; the ";" is left to the caller. */
int32_t parse_output_clause(scan_ctx *ctx);
/* PULSE[,t sec]: 51 and the time in tenths (0 for none). */
int32_t parse_pulse(scan_ctx *ctx);

/* ---- statements ---- */

int32_t parse_payload(scan_ctx *ctx);     /* PAYLOAD[i] ; */
int32_t parse_override(scan_ctx *ctx);    /* OVERRIDE=n% ;  OVERRIDE=R[i] ; */
int32_t parse_rsr(scan_ctx *ctx);         /* RSR[i]=ENABLE|DISABLE ; */
int32_t parse_semaphore(scan_ctx *ctx);   /* SEMAPHORE[i]=ON|OFF|... ; */
int32_t parse_ualm(scan_ctx *ctx);        /* UALM[i] ; */
/* LOCK PREG, UNLOCK PREG; the ";" is left to the dispatcher. */
int32_t parse_lock_preg(scan_ctx *ctx);
int32_t parse_monitor(scan_ctx *ctx);     /* MONITOR [END] name ; */
/* TOOL ATTACH[i], TOOL DETACH[i]; the ";" is left to the dispatcher. */
int32_t parse_tool(scan_ctx *ctx);
int32_t parse_send(scan_ctx *ctx);        /* SEND R[i] ; */
int32_t parse_ocp(scan_ctx *ctx);         /* OCP START|END ; */
int32_t parse_detect(scan_ctx *ctx);      /* STICK|COL DETECT ON|OFF ; */
/* Grind START[i], Grind End; the ";" is left to the dispatcher. */
int32_t parse_grind(scan_ctx *ctx);
int32_t parse_sample(scan_ctx *ctx);      /* Sample Start[i] ;  Sample End ; */
int32_t parse_torq_limit(scan_ctx *ctx);  /* TORQ_LIMIT n% ;  TORQ_LIMIT[i] ; */
int32_t parse_ps(scan_ctx *ctx);          /* PS +d mm +t sec statement */
int32_t parse_tc_online(scan_ctx *ctx);   /* TC_ONLINE ENABLE|DISABLE|(expr) ; */
/* IBGN [REC] START|END[i] ; also as the action of IF. */
int32_t parse_ibgn(scan_ctx *ctx);

/* ---- printers ---- */

/* 24, 30, 31, 52..54, 59, 139..141, 146..149, 223..225, 251: the
   miscellaneous statements, each by its opcode. */
int32_t print_misc(line_cursor *cur);
int32_t print_tc_online(line_cursor *cur); /* 43 */
int32_t print_pulse(line_cursor *cur);     /* 51 */
int32_t print_ibgn(line_cursor *cur);      /* 171..174 */
int32_t print_tool(line_cursor *cur);      /* 176 */

#endif
