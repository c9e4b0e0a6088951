/*
** tp_format.h - the .TP container: block tags, end marks, record sizes,
** field offsets and limits. The writer and the loader both take these
** values from here and from nowhere else.
**
** A file is a plain run of blocks with no magic and no checksum:
**   name record (0), attribute block (1), line block (2), position block (3),
**   application block (4), and, only when the program has daughters, the
**   byte 5 followed by the same five blocks per daughter. All multi-byte
**   values are big-endian.
*/
#ifndef VZ_BINFMT_TP_FORMAT_H
#define VZ_BINFMT_TP_FORMAT_H

#include <cstdint>

/* Block tags, in file order. */
constexpr uint8_t TP_TAG_NAME = 0;
constexpr uint8_t TP_TAG_ATTR = 1;
constexpr uint8_t TP_TAG_LINES = 2;
constexpr uint8_t TP_TAG_POS = 3;
constexpr uint8_t TP_TAG_APPL = 4;
constexpr uint8_t TP_TAG_DAUGHTERS = 5;

/* Two bytes 255, 255 end every block; in the line, position and
   application blocks they stand where the next record's first word would. */
constexpr uint8_t TP_END_BYTE = 0xFF;
constexpr uint16_t TP_END_MARK = 0xFFFF;

/* Name record: tag, 0, has-subtype flag, subtype, 14 name bytes, end mark.
   The short form (read only) has flag 0, no subtype and is 19 bytes. */
constexpr int TP_NAME_RECORD_SIZE = 20;
constexpr int TP_NAME_RECORD_SHORT_SIZE = 19;
constexpr int TP_NAME_FIELD_SIZE = 14;
constexpr uint8_t TP_NAME_HAS_SUBTYPE = 1;
constexpr int TP_NAME_OFF_FLAG = 2;
constexpr int TP_NAME_OFF_SUBTYPE = 3;
constexpr int TP_NAME_OFF_TEXT = 4;
constexpr int TP_NAME_OFF_TEXT_SHORT = 3;
constexpr int TP_MAIN_NAME_MAX = 8;
constexpr int TP_DAUGHTER_NAME_LEN = 12;

/* Program sub types of the name record. */
constexpr uint8_t TP_SUBTYPE_NONE = 0;
constexpr uint8_t TP_SUBTYPE_JOB = 1;
constexpr uint8_t TP_SUBTYPE_PROCESS = 2;
constexpr uint8_t TP_SUBTYPE_MACRO = 3;
constexpr uint8_t TP_SUBTYPE_COND = 4;

/* Attribute block: tag, 16-bit length (always 72 on writing), 72 bytes of
   fields, end mark. Offsets count from the tag byte. */
constexpr int TP_ATTR_FIELDS_SIZE = 72;
constexpr int TP_ATTR_BLOCK_SIZE = 77;
constexpr int TP_ATTR_DAUGHTER_SLOT = 80; /* the loader's room per daughter */
constexpr int TP_ATTR_OWNER_SIZE = 10;
constexpr int TP_ATTR_COMMENT_SIZE = 18;
constexpr int TP_ATTR_OWNER_MAX = 9;
constexpr int TP_ATTR_COMMENT_MAX = 16;
constexpr int TP_ATTR_OFF_LENGTH = 1;
constexpr int TP_ATTR_OFF_OWNER = 3;
constexpr int TP_ATTR_OFF_COMMENT = 13;
constexpr int TP_ATTR_OFF_PROG_SIZE = 31;
constexpr int TP_ATTR_OFF_CREATE = 35;
constexpr int TP_ATTR_OFF_MODIFIED = 39;
constexpr int TP_ATTR_OFF_RESERVED1 = 43;
constexpr int TP_ATTR_OFF_VERSION = 47;
constexpr int TP_ATTR_OFF_LINE_COUNT = 49;
constexpr int TP_ATTR_OFF_MEMORY_SIZE = 51;
constexpr int TP_ATTR_OFF_PROTECT = 55;
constexpr int TP_ATTR_OFF_STACK_SIZE = 57;
constexpr int TP_ATTR_OFF_TASK_PRIORITY = 59;
constexpr int TP_ATTR_OFF_TIME_SLICE = 61;
constexpr int TP_ATTR_OFF_BUSY_LAMP_OFF = 63;
constexpr int TP_ATTR_OFF_ABORT_REQUEST = 65;
constexpr int TP_ATTR_OFF_PAUSE_REQUEST = 67;
constexpr int TP_ATTR_OFF_DEFAULT_GROUP = 69;
constexpr int TP_ATTR_OFF_CONTROL_CODE = 71;
constexpr int TP_ATTR_OFF_RESERVED2 = 73;
constexpr int TP_ATTR_OFF_END = 75;
/* Values the writer fixes whatever the listing said. */
constexpr uint16_t TP_TASK_PRIORITY = 50;
constexpr uint16_t TP_DAUGHTER_DEFAULT_GROUP = 0;
constexpr uint16_t TP_DAUGHTER_CONTROL_CODE = 65;
/* PROTECT values. */
constexpr uint16_t TP_PROTECT_READ_WRITE = 1;
constexpr uint16_t TP_PROTECT_READ = 2;

/* Line block: tag, then per line a 16-bit length and that many payload
   bytes, then the end mark. An empty listing line has the payload 255. */
constexpr int TP_LINE_MAX = 255;            /* what the encoder may store */
constexpr int TP_LINE_LENGTH_MAX = 65534;   /* what the framing can hold */
constexpr uint8_t TP_EMPTY_LINE = 0xFF;

/* Position block: tag, then per record a 16-bit length L and L bytes whose
   first word is the position number, then the end mark. L = 2 marks an
   uninitialised position: the number alone. */
constexpr int TP_POS_UNINIT_LENGTH = 2;
constexpr int TP_POS_OFF_NUMBER = 0;        /* in the payload */
constexpr int TP_POS_OFF_GROUP_MASK = 2;
constexpr int TP_POS_OFF_COMMENT_K = 3;
constexpr int TP_POS_OFF_GROUPS = 4;
/* A real with these bits is an unset value. */
constexpr uint32_t TP_REAL_UNSET = 0x7FFFFFFFu;

/* Application block: tag, then per record a 16-bit type, a 16-bit
   instance, an 8-bit length and the payload, then the end mark. Records
   stand in falling order of type, and of instance within a type. */
constexpr int TP_APPL_RECORD_HEAD = 5;
constexpr int TP_APPL_RECORD_MAX = 255;
constexpr int TP_APPL_LABEL_SIZE = 4;

/* Daughters: sub-programs after the daughter tag, one group of five blocks
   each, in ascending number. A daughter's name is the main name padded
   with "." to 8 characters and its number in four digits; a line refers to
   it by eight dots and the number. */
constexpr int TP_DAUGHTER_SLOTS = 8000;
constexpr char TP_DAUGHTER_PAD = '.';
#define TP_DAUGHTER_NAME_FORMAT "%s%04d"
#define TP_DAUGHTER_REF_FORMAT "........%04d"
constexpr int TP_DAUGHTER_REF_LEN = 12;
constexpr int TP_DAUGHTER_REF_NUMBER_AT = 8; /* the number starts here */

#endif
