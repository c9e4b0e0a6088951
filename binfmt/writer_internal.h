/*
** writer_internal.h - what the parts of the writer share: the completion
** of the application defaults. Not for use outside binfmt/.
*/
#ifndef VZ_BINFMT_WRITER_INTERNAL_H
#define VZ_BINFMT_WRITER_INTERNAL_H

#include "binfmt/writer.h"

/* Runs the spot default and the completion hook; 0 or the first result. */
int32_t writer_complete_appl();

#endif
