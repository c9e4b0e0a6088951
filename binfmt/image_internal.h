/*
** image_internal.h - what the parts of prog_image share among themselves:
** the identity of the tracked list the stores live on, and the resets that
** image_begin runs. Not for use outside binfmt/.
*/
#ifndef VZ_BINFMT_IMAGE_INTERNAL_H
#define VZ_BINFMT_IMAGE_INTERNAL_H

#include <cstdint>

/* True while the stores' blocks are on the open tracked list. */
bool image_live();
/* Makes the stores usable: when their list is gone (or was never begun),
   forgets the stale pointers and adopts the open list. False when no list
   can be had. */
bool image_ensure();

/* Empty states of the pointer stores; they free nothing. */
void image_lines_reset();
void image_pos_reset();
void image_numbers_reset();
void image_appl_reset();
/* Gives both number tables their first slots. */
void image_numbers_begin();
/* Frees the line nodes (not their bytes). */
void image_lines_release();

#endif
