/*
** run_reset.cpp - the per-run resets. Families with state of their own add
** their reset calls here, the one place a run starts from.
*/
#include "api/run_reset.h"

#include "binfmt/writer.h"
#include "core/run_state.h"
#include "sections/appl_store.h"
#include "text/lexer.h"

void run_state_reset() {
    appl_header_reset();
    appl_run_reset();
}

void run_names_reset() {
    source_name[0] = 0;
    set_spot_instructions_seen(0);
    set_spot_header_seen(0);
    lexer_reset_run();
}
