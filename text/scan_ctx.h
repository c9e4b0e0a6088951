/*
** scan_ctx.h - the token record and the per-run parser context of the
** listing side. The lexer owns the token fields; the statement dispatcher
** keeps its line encoder in the same context, so every parser is handed one
** pointer and nothing else.
*/
#ifndef VZ_TEXT_SCAN_CTX_H
#define VZ_TEXT_SCAN_CTX_H

#include <cstdint>
#include <cstdio>

#include "core/dictionary.h"

/* Token text is cut to 40 bytes; a joined compound may run on to 59. */
constexpr int32_t token_text_max = 40;
constexpr int32_t token_text_size = 60;
/* Look-back ring of the lexer; a mark reaches back this far at most. */
constexpr int32_t token_ring_size = 100;
/* Raw bytes of the current statement: 254 and a terminating zero. */
constexpr int32_t source_text_size = 256;
constexpr int32_t source_text_limit = 254;
/* The line buffer of one statement; a stored line is at most 255 bytes. */
constexpr int32_t line_buf_size = 512;

/* One lexical token. */
struct token_rec {
    char *source_pos;   /* where its first byte went in source_text */
    int32_t line;       /* input_line_no when the token was complete */
    int32_t code;       /* keyword code, or 105/111/210/222/229 */
    int32_t int_value;  /* integer tokens (105) */
    float real_value;   /* real tokens (111) */
    char text[token_text_size]; /* upper-cased lexeme; untouched by reals */
};

/* Per-run parser context. The section driver allocates it, without zeroing:
   lexer_start sets up every lexer field before the first token. */
struct scan_ctx {
    /* --- lexer fields --- */
    FILE *stream;
    uint8_t marked;       /* 1 while a mark is set */
    uint8_t have_current; /* 1 when current holds a valid token */
    int32_t ring_write;
    int32_t ring_mark;
    int32_t ring_read;
    token_rec current;    /* the one-token lookahead */
    token_rec ring[token_ring_size];
    const dict_entry *reading_table;
    char source_text[source_text_size];
    int32_t source_len;

    /* --- encoder fields of the statement dispatcher --- */
    uint8_t encoding_on;      /* 1: emitters store bytes; 0: tokens only */
    uint8_t line_overflow;    /* a statement ran past the line buffer */
    uint8_t line_buf[line_buf_size];
    uint8_t *line_ptr;        /* next free byte of line_buf */
    uint16_t line_len;        /* bytes of the line so far */
    int32_t first_pos;        /* first two positions of the line, for */
    int32_t second_pos;       /*   the spot warnings; cleared per line */
    int32_t pos_flag;         /* the line carries a spot warning */
    int32_t daughter_no;      /* daughter being filled; 0 main program */
    int32_t daughter_last;    /* highest daughter number given out */

    /* --- fields of the section driver --- */
    uint16_t group_mask;      /* default motion groups, from /ATTR */
    uint16_t prog_no;         /* always 1 */
    char prog_name[10];
    uint8_t subtype;          /* 0 none, 1 JOB, 2 PROCESS, 3 MACRO, 4 Cond */
    uint8_t pal_index;        /* palletizing counters, cleared per section */
    uint8_t pal_group;
    int32_t control_r_mode;   /* positions take the R form (from /ATTR) */
};

#endif
