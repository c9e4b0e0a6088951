/*
** lexer.h - the listing lexer: bytes to tokens in three layers (characters
** with pushback, lexemes by a class-driven state machine, tokens with a
** look-back ring and compound joining), the small parse helpers every
** statement parser shares, and helpers on the raw statement text.
*/
#ifndef VZ_TEXT_LEXER_H
#define VZ_TEXT_LEXER_H

#include <cstdint>

#include "text/scan_ctx.h"

/* Codes the lexer makes itself; no dictionary row carries them. */
constexpr int32_t tok_integer = 105;
constexpr int32_t tok_real = 111;
constexpr int32_t tok_eof = 210;
constexpr int32_t tok_unknown = 222;
constexpr int32_t tok_unknown_dollar = 229;

constexpr int32_t push_stack_size = 512;
constexpr int32_t lexeme_buf_size = 256;

/* Module state. push_stack holds bytes given back to the input, last in
   first out. Parsers clear split_digits_on while they read a free name and
   set keep_newlines while they take a remark; both are restored by them. */
extern int32_t push_stack[push_stack_size];
extern int32_t push_count;
extern uint32_t split_digits_on;
extern uint32_t keep_newlines;

/* How a lexeme ended. A broken exponent ends as a word. */
enum lexeme_kind : int32_t {
    lexeme_word = 0,
    lexeme_integer = 1,
    lexeme_real = 2,
    lexeme_blank = 3,
    lexeme_eof = 4,
};

struct lexeme_buf {
    char text[lexeme_buf_size]; /* upper-cased bytes, zero-terminated */
    int32_t len;
    int32_t kind;
    char *source_pos;
};

/* ---- character and lexeme layer ---- */

/* Next input byte (0..255) or -1 at end of file. */
int32_t read_char(scan_ctx *ctx);
/* Gives a byte back to the input; dropped when the stack is full. */
void push_char(int32_t byte);
/* Reads one lexeme; returns its kind. */
int32_t scan_lexeme(scan_ctx *ctx, lexeme_buf *lx);

/* ---- token layer ---- */

/* Fills tok with the next token from the input (no ring, no joining). */
void lex_token(scan_ctx *ctx, token_rec *tok);
/* Cuts a keyword from digits glued to it (CNT100) and gives the digits
   back to the input. */
void split_word_digits(scan_ctx *ctx, char *text);
void advance_token(scan_ctx *ctx);
int32_t next_token(scan_ctx *ctx, token_rec *tok);
int32_t peek_token(scan_ctx *ctx, token_rec *tok);
int32_t mark_tokens(scan_ctx *ctx);
int32_t rewind_tokens(scan_ctx *ctx);

/* ---- run start ---- */

/* Resets the ring and source text and picks the reading table. */
int32_t lexer_start(scan_ctx *ctx);
/* 1 English, 0 Japanese, -1 undecided (empty listing). */
int32_t detect_listing_language(scan_ctx *ctx);
/* Per-run reset that the run frame calls before a listing is read. */
void lexer_reset_run();

/* ---- parse helpers ---- */

/* Consumes a token; 0 if it has the code, else 1376345. */
int32_t expect_token(scan_ctx *ctx, uint16_t code);
/* Consumes the next token only if it has the code. Always 0. */
int32_t accept_token(scan_ctx *ctx, int32_t code);
/* Optional "-", then an integer within min..max (inclusive).
   167 not an integer, 107 out of range. *out is set on success only. */
int32_t parse_int_range(scan_ctx *ctx, token_rec *tok, int32_t *out, int32_t min,
                        int32_t max);
/* Optional "-", then a real token; 166 for anything else. */
int32_t parse_real_signed(scan_ctx *ctx, token_rec *tok, float *out);
/* KEY ":" integer ... ";". 1376345, 135, 167, 107, 134. */
int32_t parse_key_int(scan_ctx *ctx, int32_t key, int32_t *out, int32_t min, int32_t max);
/* KEY ":" real ... ";". 1376345, 135, 166, 134. */
int32_t parse_key_real(scan_ctx *ctx, int32_t key, float *out);

/* ---- raw statement text ---- */

void clear_source_text(scan_ctx *ctx);
/* Drops source_text up to and with its first ";". */
void trim_source_text(scan_ctx *ctx);
/* Steps one byte forward (not past the terminator), then past blanks and
   tabs. */
char *skip_blanks_forward(char *p);
/* Steps one byte back, then back past blanks and tabs; never before start. */
char *skip_blanks_back(char *p, const char *start);
/* First byte that is neither blank nor tab, as a signed value. */
int32_t first_non_blank(const char *text);

#endif
