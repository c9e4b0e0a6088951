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

    /* --- encoder fields of the statement dispatcher go below --- */
};

#endif
