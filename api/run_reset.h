/*
** run_reset.h - puts the per-run state of the listing side back to its
** defaults at the start of each listing-to-binary run.
*/
#ifndef VZ_API_RUN_RESET_H
#define VZ_API_RUN_RESET_H

/* Family defaults (arc and weave, spot) and the application header store. */
void run_state_reset();
/* Names and flags of the run: source name, the spot flags of the writer,
   the lexer's pushback stack. */
void run_names_reset();

#endif
