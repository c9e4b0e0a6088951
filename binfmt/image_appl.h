/*
** image_appl.h - the application record store of prog_image. Records are
** addressed like a controller's program data: by type (the application
** group) and instance (the record within it). Record 0 of a type holds its
** label ("MUAP", "SPOT" ...). Failures are the controller-style codes of
** binfmt/image.h (IMAGE_NO_RECORD, IMAGE_BEYOND_TABLE, ...).
**
** In memory a record is its length byte, the 8-bit sum of its payload and
** the payload. Type and instance run from 0 to 65534.
*/
#ifndef VZ_BINFMT_IMAGE_APPL_H
#define VZ_BINFMT_IMAGE_APPL_H

#include <cstdint>

#include "binfmt/image.h"

/* A type row: one record pointer per instance slot. */
struct appl_type_row {
    uint16_t slots;    /* highest instance stored + 1 */
    uint16_t in_use;   /* instances that hold a record */
    int32_t capacity;  /* allocated pointers, at least slots */
    uint8_t **records; /* length, sum, payload; null where none */
};

/* The root: one row pointer per type slot. */
struct appl_root {
    uint16_t slots;    /* highest type stored + 1 */
    uint16_t in_use;   /* types that hold a row */
    int32_t capacity;
    appl_type_row **rows;
};

/* Null until the first record of a run. */
extern appl_root *image_root;

/* Write modes of appl_write. Bit 0 alone builds the record and stores
   nothing. */
constexpr int32_t APPL_MODE_DRY = 1;
constexpr int32_t APPL_MODE_REPLACE = 2;   /* store, dropping an old record */
constexpr int32_t APPL_MODE_OVERWRITE = 4; /* old record must exist, same length */
constexpr int32_t APPL_MODE_EITHER = 6;    /* overwrite if same length, else replace */

/* Finds the type whose record 0 starts with the name_length bytes of name.
   program is not looked at. On success *type is the type and *instance 0.
   With an empty name (name_length 0 or name null) gives the first type that
   holds no row, which is one above the highest when the types are dense.
   IMAGE_NO_SUCH_NAME when no type matches. */
int32_t appl_find(const char *program, const char *name, int32_t name_length,
                  int32_t *type, int32_t *instance);
/* Type slots of the root (0 before the first record). Returns 0. */
int32_t appl_type_count(int32_t *count);
/* Instance slots of a type. IMAGE_BEYOND_TABLE past the root,
   IMAGE_NO_RECORD for a type without a row. */
int32_t appl_instance_count(int32_t type, int32_t *count);
/* Copies the record's length byte and payload into buffer (1 + length
   bytes). IMAGE_BEYOND_TABLE / IMAGE_NO_RECORD when there is none,
   IMAGE_BUFFER_SHORT when size is below 1 + length, IMAGE_BAD_SUM when the
   stored sum does not match the payload. */
int32_t appl_read(int32_t type, int32_t instance, uint8_t *buffer, int32_t size);
/* Writes one record of length bytes (0 to 255) by mode (APPL_MODE_*).
   Results: 0; IMAGE_NO_RECORD when overwriting a record that does not
   exist; IMAGE_BAD_MODE for an unknown mode or an overwrite of another
   length; IMAGE_BEYOND_TABLE for a type or instance outside 0..65534 or a
   length outside 0..255; IMAGE_STORE_FAILED when memory fails. */
int32_t appl_write(int32_t type, int32_t instance, const uint8_t *data, int32_t length, int32_t mode);

#endif
