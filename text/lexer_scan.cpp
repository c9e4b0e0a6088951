/*
** lexer_scan.cpp - the character layer (pushback stack, double-byte
** reduction) and the lexeme layer: a state machine over 22 character classes
** that cuts the input into words, numbers, blanks and one-byte lexemes, and
** copies every byte it reads into the statement's raw source text.
*/
#include "text/lexer.h"

#include "core/run_state.h"
#include "platform/platform.h"
#include "text/zenhan.h"

int32_t push_stack[push_stack_size];
int32_t push_count = 0;
uint32_t split_digits_on = 1;
uint32_t keep_newlines = 0;

namespace {

enum char_class : int8_t {
    cc_letter, cc_e, cc_digit, cc_blank, cc_dollar, cc_dot, cc_minus, cc_plus,
    cc_comma, cc_colon, cc_semicolon, cc_less, cc_equal, cc_greater, cc_percent,
    cc_star, cc_slash, cc_lbracket, cc_rbracket, cc_lbrace, cc_rbrace, cc_other,
    cc_count, /* 22 columns */
    cc_control = cc_count, /* no column: the machine falls back to start */
};

constexpr char_class class_of_byte(int b) {
    if (b >= 'A' && b <= 'Z')
        return b == 'E' ? cc_e : cc_letter;
    if (b >= '0' && b <= '9')
        return cc_digit;
    switch (b) {
    case 0x00: case 0x5E: case '_': return cc_letter;
    case 0x09: case 0x0A: case 0x0D: case 0x20: case 0xA0: return cc_blank;
    case '$': return cc_dollar;
    case '.': return cc_dot;
    case '-': return cc_minus;
    case '+': return cc_plus;
    case ',': return cc_comma;
    case ':': return cc_colon;
    case ';': return cc_semicolon;
    case '<': return cc_less;
    case '=': return cc_equal;
    case '>': return cc_greater;
    case '%': return cc_percent;
    case '*': return cc_star;
    case '/': return cc_slash;
    case '[': return cc_lbracket;
    case ']': return cc_rbracket;
    case '{': return cc_lbrace;
    case '}': return cc_rbrace;
    default: break;
    }
    if ((b >= 0x80 && b <= 0x9F) || b >= 0xA6)
        return cc_letter;
    if (b < 0x20)
        return cc_control;
    /* ! " # & ' ( ) ? @ \ ` | ~ DEL and 0xA1..0xA5; a..z never get here,
       since bytes are upper-cased before the lookup. */
    return cc_other;
}

struct class_table {
    int8_t of[256];
    constexpr class_table() : of() {
        for (int b = 0; b < 256; b++)
            of[b] = class_of_byte(b);
    }
};
constexpr class_table classes;

/* States keep their historic numbers; 2, 3, 11 and 12 are unused. */
enum : int8_t {
    st_start = 0, st_word = 1, st_integer = 4, st_point = 5, st_fraction = 6,
    st_exponent = 7, st_exp_sign = 8, st_power = 9, st_dot = 10, st_blank = 13,
    st_less = 14, st_equal = 15, st_greater = 16, st_count = 17,
};

/* Table entries below 0 are ends. All ends but "take" give the byte back. */
enum : int8_t {
    end_word = -1,  /* plain word, also a one-byte lexeme */
    end_int = -2,
    end_real = -3,
    end_bad = -4,   /* broken number: goes on as a word */
    end_blank = -5,
    end_take = -6,  /* the byte belongs to the lexeme: <= <> >= =< => */
};

constexpr int8_t W = end_word, I = end_int, R = end_real, B = end_bad, K = end_blank,
                 T = end_take;

/* Columns: letter E digit blank $ . - + , : ; < = > % * / [ ] { } other */
constexpr int8_t next_state[st_count][cc_count] = {
    /* 0 start */ {1, 1, 4, 13, 1, 10, W, W, W, W, W, 14, 15, 16, W, W, W, W, W, W, W, W},
    /* 1 word  */ {1, 1, 1, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W},
    /* 2 -     */ {W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W},
    /* 3 -     */ {W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W},
    /* 4 int   */ {I, 7, 4, I, I, 5, I, I, I, I, I, I, I, I, I, I, I, I, I, I, I, I},
    /* 5 point */ {R, 7, 6, R, R, R, R, R, R, R, R, R, R, R, R, R, R, R, R, R, R, R},
    /* 6 frac  */ {R, 7, 6, R, R, R, R, R, R, R, R, R, R, R, R, R, R, R, R, R, R, R},
    /* 7 exp   */ {B, B, 9, B, B, B, 8, 8, B, B, B, B, B, B, B, B, B, B, B, B, B, B},
    /* 8 expsg */ {B, B, 9, B, B, B, B, B, B, B, B, B, B, B, B, B, B, B, B, B, B, B},
    /* 9 power */ {R, R, 9, R, R, R, R, R, R, R, R, R, R, R, R, R, R, R, R, R, R, R},
    /* 10 dot  */ {B, B, 6, B, B, R, B, B, B, B, B, B, B, B, B, B, B, B, B, B, B, B},
    /* 11 -    */ {W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W},
    /* 12 -    */ {W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W},
    /* 13 blnk */ {K, K, K, 13, K, K, K, K, K, K, K, K, K, K, K, K, K, K, K, K, K, K},
    /* 14 <    */ {W, W, W, W, W, W, W, W, W, W, W, W, T, T, W, W, W, W, W, W, W, W},
    /* 15 =    */ {W, W, W, W, W, W, W, W, W, W, W, T, W, T, W, W, W, W, W, W, W, W},
    /* 16 >    */ {W, W, W, W, W, W, W, W, W, W, W, W, T, W, W, W, W, W, W, W, W, W},
};

int32_t kind_of_end(int8_t end) {
    switch (end) {
    case end_int: return lexeme_integer;
    case end_real: return lexeme_real;
    case end_blank: return lexeme_blank;
    default: return lexeme_word;
    }
}

/* Appends one raw byte to the statement text while there is room. */
void keep_source_byte(scan_ctx *ctx, int32_t c) {
    if (ctx->source_len < 0)
        ctx->source_len = 0;
    if (ctx->source_len >= source_text_limit)
        return;
    char b = 0;
    if (c >= 0)
        b = (c == '\n' && !keep_newlines) ? ' ' : static_cast<char>(c);
    ctx->source_text[ctx->source_len++] = b;
    ctx->source_text[ctx->source_len] = 0;
}

/* The byte that ended a lexeme goes back to the input and out of the
   statement text, and its line feed is uncounted until it is read again. */
void give_back(scan_ctx *ctx, int32_t c) {
    push_char(c);
    if (c == '\n')
        input_line_no--;
    if (ctx->source_len > 0)
        ctx->source_len--;
    ctx->source_text[ctx->source_len] = 0;
}

} // namespace

void push_char(int32_t byte) {
    /* The lexer gives back at most one byte per lexeme plus the digits of a
       cut word (under 40), so a full stack means a fault: the byte is dropped
       rather than written past the stack. */
    if (push_count < 0)
        push_count = 0;
    if (push_count >= push_stack_size)
        return;
    push_stack[push_count++] = byte;
}

int32_t read_char(scan_ctx *ctx) {
    if (push_count > 0)
        return push_stack[--push_count];
    int c = ctx->stream ? std::fgetc(ctx->stream) : EOF;
    if (c == EOF)
        return -1;
    if (zentohan_flag != 0 && platform_is_lead_byte(static_cast<unsigned>(c))) {
        int c2 = std::fgetc(ctx->stream);
        /* A lead byte cut off by the end of the file stays a byte of its own. */
        if (c2 == EOF)
            return c;
        uint16_t half = full_to_half(static_cast<uint16_t>((c << 8) | c2));
        if (half < 256)
            return half;
        push_char(half & 0xFF);
        return half >> 8;
    }
    return c;
}

int32_t scan_lexeme(scan_ctx *ctx, lexeme_buf *lx) {
    if (ctx->source_len < 0 || ctx->source_len > source_text_limit)
        ctx->source_len = 0;
    lx->source_pos = ctx->source_text + ctx->source_len;
    lx->len = 0;
    lx->text[0] = 0;
    int32_t state = st_start;
    int32_t prev = 0;
    int32_t count = 0; /* bytes of the lexeme, also those not kept */
    bool trail = false;
    for (;;) {
        int32_t raw = read_char(ctx);
        if (raw == '\n')
            input_line_no++;
        int32_t c = (raw >= 'a' && raw <= 'z') ? raw - ('a' - 'A') : raw;
        keep_source_byte(ctx, raw);
        if (raw < 0) {
            lx->len = 0;
            lx->text[0] = 0;
            lx->kind = lexeme_eof;
            return lexeme_eof;
        }
        /* A lexeme longer than the buffer keeps its first 255 bytes; the
           rest is read and classified but not stored. */
        if (lx->len < lexeme_buf_size - 1) {
            lx->text[lx->len++] = static_cast<char>(c);
            lx->text[lx->len] = 0;
        }
        count++;
        int8_t next;
        if (platform_is_lead_byte(static_cast<unsigned>(prev)) && !trail) {
            next = st_word;
            trail = true;
        } else {
            trail = false;
            int8_t cls = classes.of[c];
            next = cls == cc_control ? static_cast<int8_t>(st_start) : next_state[state][cls];
        }
        prev = c;
        if (next >= 0) {
            state = next;
            continue;
        }
        lx->kind = kind_of_end(next);
        if (next != end_take && count > 1) {
            give_back(ctx, raw);
            if (lx->len > 0 && lx->len == count)
                lx->text[--lx->len] = 0;
        }
        return lx->kind;
    }
}
