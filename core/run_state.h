/*
** run_state.h - module state that the exports and the run frames share:
** languages, names of the current run, line counters, group count and the
** double-byte reduction switch. One instance per loaded library.
*/
#ifndef VZ_CORE_RUN_STATE_H
#define VZ_CORE_RUN_STATE_H

#include <cstdint>
#include <cstdio>

/* 1: English messages and default ".PE"; 0: Japanese and ".PJ". */
extern int32_t message_language;
/* Language of the listing being read or written: -1 undecided, 0 JP, 1 EN. */
extern int32_t dict_select;
extern char source_name[512];
extern char output_name[512];
extern FILE *source_stream;
extern FILE *output_stream;
/* Physical line of the listing; 1 when parsing begins, -1 while writing. */
extern int32_t input_line_no;
/* Line of the token the lexer delivered last. */
extern int32_t token_line_no;
/* Motion groups of the loaded configuration; a run needs at least 1. */
extern int8_t group_count;
/* Not 0: the lexer reduces double-byte input characters to single bytes. */
extern uint32_t zentohan_flag;

#endif
