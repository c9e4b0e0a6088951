/*
** image.h - prog_image, the in-memory program that the listing side builds
** and the writer walks: attribute fields, program name, line lists of the
** main program and its daughters, the sorted position list, and the two
** number tables of positions used and labels defined. The application
** record store is in binfmt/image_appl.h.
**
** Everything here is module state for one run. image_begin sets it up
** (and opens a fresh tracked allocation list); image_release followed by
** lmalloc_end drops it. All blocks come from the tracked allocator.
*/
#ifndef VZ_BINFMT_IMAGE_H
#define VZ_BINFMT_IMAGE_H

#include <cstdint>

#include "binfmt/tp_format.h"

/* Results of this store that the parsers test by value. */
constexpr int32_t IMAGE_DUP_NUMBER = 102;   /* ASC_DUP_POS, duplicated label */
constexpr int32_t IMAGE_UNUSED_POS = 103;   /* ASC_UNUSED_POS */
constexpr int32_t IMAGE_NO_MEMORY = 115;    /* ASC_NO_MEMORY */
constexpr int32_t IMAGE_LINE_TOO_LONG = 197;

/* Controller-style status codes of the attribute and application stores. */
constexpr int32_t IMAGE_BUFFER_SHORT = 458763;      /* 0x7000B */
constexpr int32_t IMAGE_ATTR_READ_ONLY = 458786;    /* 0x70022 */
constexpr int32_t IMAGE_ATTR_SHORT_SIZE = 458806;   /* 0x70036 */
constexpr int32_t IMAGE_BAD_MODE = 458813;          /* 0x7003D */
constexpr int32_t IMAGE_BAD_SUM = 458855;           /* 0x70067 */
constexpr int32_t IMAGE_NO_RECORD = 458871;         /* 0x70077 */
constexpr int32_t IMAGE_BEYOND_TABLE = 458872;      /* 0x70078 */
constexpr int32_t IMAGE_NO_SUCH_NAME = 458875;      /* 0x7007B */
constexpr int32_t IMAGE_CREATE_FIRST = 458878;      /* 0x7007E */
constexpr int32_t IMAGE_STORE_FAILED = 589860;      /* 0x90024 */

/* ---- attribute fields ------------------------------------------------ */

/* The 72 field bytes of the attribute block, in file order. Fields the
   attribute parser fills without attr_set (PROG_SIZE, CREATE, MODIFIED,
   LINE_COUNT, MEMORY_SIZE, PROTECT) are written here directly. */
struct image_attributes {
    char owner[TP_ATTR_OWNER_SIZE];     /* zero-padded, at most 9 chars */
    char comment[TP_ATTR_COMMENT_SIZE]; /* zero-padded, at most 16 chars */
    uint32_t prog_size;
    uint32_t create;                    /* packed date */
    uint32_t modified;                  /* packed date */
    uint32_t reserved1;                 /* always written 0 */
    uint16_t version;
    uint16_t line_count;
    uint32_t memory_size;
    uint16_t protect;
    uint16_t stack_size;
    uint16_t task_priority;             /* written as 50 whatever it holds */
    uint16_t time_slice;
    uint16_t busy_lamp_off;
    uint16_t abort_request;
    uint16_t pause_request;
    uint16_t default_group;
    uint16_t control_code;
    uint16_t reserved2;                 /* nothing sets it */
};

extern image_attributes image_attr;
/* Program name, at most 8 characters, zero-terminated. */
extern char image_name[12];
/* Source text pointer of attribute field 8; kept, never written. */
extern const char *image_source_text;
/* Sub type byte of the name record (TP_SUBTYPE_*); the section driver sets
   it with image_set_subtype once it has read the /PROG head. */
extern uint8_t image_subtype;

/* Attribute field numbers of attr_set. */
enum attr_field : int32_t {
    ATTR_NAME = 0,
    ATTR_OWNER = 1,
    ATTR_COMMENT = 2,
    ATTR_SOURCE = 8,
    ATTR_VERSION = 9,
    ATTR_DEFAULT_GROUP = 10,
    ATTR_PROTECT = 11,
    ATTR_STACK_SIZE = 12,
    ATTR_TASK_PRIORITY = 13,
    ATTR_TIME_SLICE = 14,
    ATTR_BUSY_LAMP_OFF = 15,
    ATTR_ABORT_REQUEST = 16,
    ATTR_PAUSE_REQUEST = 17,
    ATTR_CONTROL_CODE = 18,
};

/* Opens a fresh tracked list and sets every store to its empty state:
   attribute fields cleared, DEFAULT_GROUP 1, TASK_PRIORITY 50, PROTECT 1,
   empty name and comment, sub type 0, both number tables at 128 free slots,
   no lines, no daughters, no positions, no application records; and gives
   the spot warning list its first size. */
void image_begin();
/* Frees the line nodes of the main program and of every daughter. Call it
   before lmalloc_end; harmless when the image was never begun or its list
   is already gone. */
void image_release();

/* Copies at most 8 characters of name (up to its zero) into image_name.
   Returns 0. */
int32_t image_set_name(const char *name);
void image_set_subtype(uint8_t subtype);

/* Sets one attribute field. program is accepted for the controller-style
   call and not looked at. value points at the field's value: a text for
   ATTR_NAME, ATTR_OWNER, ATTR_COMMENT (at most size bytes of it are read,
   up to its zero), a text pointer stored as is for ATTR_SOURCE, a 16-bit
   integer (int16_t or uint16_t) for the numbers 9 to 18.
   Returns 0, or IMAGE_ATTR_READ_ONLY for numbers 3 to 7, or
   IMAGE_ATTR_SHORT_SIZE for a 16-bit field with size below 2. Numbers
   below 0 and above 18 are ignored with 0. */
int32_t attr_set(const char *program, int32_t field, const void *value, int32_t size);

/* ---- line lists -------------------------------------------------------- */

/* Node of a line list. The list's last node is always empty (data null):
   appending fills it and hangs a fresh empty node behind it. */
struct line_node {
    line_node *next;
    uint8_t *data;    /* private copy of the line's bytes */
    int32_t length;
};

/* Head of one list, with a cursor so that a walk by index costs O(1) per
   step. */
struct line_list {
    line_node head;   /* the first entry itself */
    line_node *tail;  /* the empty node at the end; null before first use */
    int32_t count;
    line_node *cursor;
    int32_t cursor_index;
};

/* Highest daughter number used (the listing side's daughter_high); the
   writer writes daughters 1 to it. The statement dispatcher also sets and
   clears it directly. Named apart from the loader's per-side table. */
extern int32_t image_daughter_high;

/* Appends a copy of a line to the main program. 197 for a length above
   255 (or below 0), 115 when memory fails (the list stays as it was),
   else 0. */
int32_t line_append(const uint8_t *data, int32_t length);
/* The same for daughter number (1 to 7999); raises image_daughter_high. A
   number outside the table is refused with 115. */
int32_t daughter_line_append(const uint8_t *data, int32_t length, int32_t daughter);
/* Line index (from 0) of the main program: 0 and data/length set, or 1 when
   index is at or past the end. */
int32_t line_at(int32_t index, const uint8_t **data, int32_t *length);
int32_t daughter_line_at(int32_t index, const uint8_t **data, int32_t *length, int32_t daughter);
int32_t line_count();
int32_t daughter_line_count(int32_t daughter);

/* ---- positions --------------------------------------------------------- */

/* Inserts a copy of a position record in number order; its first two bytes
   are the number, big-endian. 102 when the number is already there, 1 when
   memory fails or the record is shorter than 2 or longer than 65534 bytes,
   else 0. */
int32_t pos_append(const uint8_t *record, int32_t length);
/* 102 when the number has a record, else 0. */
int32_t pos_exists(int32_t number);
/* 1 when the number has a record, else 0. */
int32_t pos_defined(int32_t number);
/* Record index (from 0) in number order: 0 and data/length set, or 1 past
   the end. */
int32_t pos_at(int32_t index, const uint8_t **data, int32_t *length);
int32_t pos_record_count();

/* ---- number tables ----------------------------------------------------- */

/* A growing array of 32-bit numbers: 128 slots first, 32 more whenever no
   slot is free. Entries = capacity - free_slots. */
struct number_table {
    int32_t *values;
    int32_t capacity;
    int32_t free_slots;
};

/* Position numbers the lines use, ascending, no duplicates. */
extern number_table position_numbers;
/* Labels the lines define, in order of definition, no duplicates. */
extern number_table label_numbers;

int32_t number_count(const number_table *table);
/* Records a position number a line uses. 0, or 1 when memory fails. */
int32_t note_position(int32_t number);
/* 0 when a line used the number, else 103. */
int32_t position_known(int32_t number);
/* Records a defined label. 0; 102 when the label is already defined; 115
   when memory fails. */
int32_t note_label(int32_t number);

#endif
