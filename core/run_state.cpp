/*
** run_state.cpp - the static initial values of the shared module state.
*/
#include "core/run_state.h"

int32_t message_language = 0;
int32_t dict_select = -1;
char source_name[512];
char output_name[512];
FILE *source_stream = nullptr;
FILE *output_stream = nullptr;
int32_t input_line_no = 0;
int32_t token_line_no = 0;
int8_t group_count = 0;
uint32_t zentohan_flag = 0;
