/*
** registers_items.cpp - the small pieces of every register statement on
** the listing side: item words and their tags, index brackets with their
** group prefixes, constants, and the pallet pattern.
*/
#include "instructions/registers.h"

#include "core/error_codes.h"
#include "instructions/registers_words.h"
#include "text/emit.h"
#include "text/lexer.h"

using namespace regs;

namespace {

constexpr int32_t direct_index_limit = 32768;
constexpr int32_t pattern_part_max = 127;

struct item_row {
    int32_t code;
    uint8_t tag;
    uint32_t sets;
};

const item_row item_rows[] = {
    {w_r, tag_r, 0},
    {w_pr, tag_pr, 0},
    {w_p, tag_p, 0},
    {w_pl, tag_pl, 0},
    {w_di, tag_di, set_input | set_digital},
    {w_ri, tag_ri, set_input | set_digital},
    {w_ai, tag_ai, set_input | set_analog},
    {w_wi, tag_wi, set_input | set_digital},
    {w_do, tag_do, set_output | set_digital},
    {w_ro, tag_ro, set_output | set_digital},
    {w_ao, tag_ao, set_output | set_analog},
    {w_wo, tag_wo, set_output | set_digital},
    {w_rsr, tag_rsr, 0},
    {w_ualm, tag_ualm, 0},
    {w_gi, tag_gi, set_input | set_analog},
    {w_go, tag_go, set_output | set_analog},
    {w_timer, tag_timer, 0},
    {w_semaphore, tag_semaphore, 0},
    {w_uframe, tag_uframe, 0},
    {w_utool, tag_utool, 0},
    {w_si, tag_si, set_input | set_digital},
    {w_ui, tag_ui, set_input | set_digital},
    {w_so, tag_so, set_output | set_digital},
    {w_uo, tag_uo, set_output | set_digital},
    {w_f, tag_f, set_flag},
    {w_m, tag_m, set_flag},
    {w_m_alt, tag_m, set_flag},
    {w_timer_overflow, tag_timer_overflow, 0},
    {w_ar, tag_ar, 0},
    {w_tcp_spd, tag_tcp_spd, set_flag},
};

const item_row *item_row_of(int32_t code) {
    for (const item_row &r : item_rows)
        if (r.code == code)
            return &r;
    return nullptr;
}

/* R[n] or AR[n] inside an index: the inner bracket with a number or
   "...", no comment. */
int32_t parse_register_index(scan_ctx *ctx, bool ar) {
    token_rec tok;
    next_token(ctx, &tok); /* R or AR */
    if (expect_token(ctx, w_lbracket))
        return ASC_SYNTAX_ERROR;
    int32_t n = 0;
    if (peek_code(ctx) == w_dot) {
        if (expect_dots(ctx))
            return ASC_SYNTAX_ERROR;
    } else {
        next_token(ctx, &tok);
        if (tok.code != tok_integer)
            return ASC_SYNTAX_ERROR;
        n = tok.int_value;
    }
    if (expect_token(ctx, w_rbracket))
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, tag_index);
    if (ar)
        return emit_word_c0(ctx, static_cast<uint16_t>(n));
    return emit_word(ctx, static_cast<uint16_t>(static_cast<uint32_t>(n) + 32768u));
}

/* A comment behind a direct number is read and dropped: the line has no
   room for it. */
int32_t skip_index_comment(scan_ctx *ctx) {
    token_rec tok;
    if (peek_code(ctx) != w_colon)
        return 0;
    for (;;) {
        peek_token(ctx, &tok);
        if (tok.code == w_rbracket)
            return 0;
        if (tok.code == tok_eof)
            return ASC_SYNTAX_ERROR;
        next_token(ctx, &tok);
    }
}

/* One part of a pallet pattern: R[n], R[...], *, n or a-b. */
int32_t parse_pattern_part(scan_ctx *ctx, uint16_t *word) {
    token_rec tok;
    int32_t code = peek_code(ctx);
    if (code == w_r) {
        next_token(ctx, &tok);
        if (expect_token(ctx, w_lbracket))
            return ASC_SYNTAX_ERROR;
        int32_t n = 0;
        if (peek_code(ctx) == w_dot) {
            if (expect_dots(ctx))
                return ASC_SYNTAX_ERROR;
        } else {
            next_token(ctx, &tok);
            if (tok.code != tok_integer)
                return ASC_SYNTAX_ERROR;
            n = tok.int_value;
        }
        *word = static_cast<uint16_t>(n | 0x8000);
        return expect_token(ctx, w_rbracket);
    }
    next_token(ctx, &tok);
    if (tok.code == w_star) {
        *word = 0;
        return 0;
    }
    if (tok.code != tok_integer)
        return ASC_SYNTAX_ERROR;
    int32_t a = tok.int_value;
    if (a > pattern_part_max)
        return ASC_OUT_OF_RANGE;
    if (peek_code(ctx) != w_minus) {
        *word = static_cast<uint16_t>(a);
        return 0;
    }
    next_token(ctx, &tok);
    next_token(ctx, &tok);
    if (tok.code != tok_integer)
        return ASC_SYNTAX_ERROR;
    if (tok.int_value > pattern_part_max)
        return ASC_OUT_OF_RANGE;
    *word = static_cast<uint16_t>(((a | 0x80) << 8) | tok.int_value);
    return 0;
}

} // namespace

namespace regs {

uint32_t item_set_of(int32_t code) {
    const item_row *r = item_row_of(code);
    return r ? r->sets : 0;
}

int32_t expect_dots(scan_ctx *ctx) {
    for (int i = 0; i < 3; i++)
        if (expect_token(ctx, w_dot))
            return ASC_SYNTAX_ERROR;
    return 0;
}

int32_t peek_code(scan_ctx *ctx) {
    token_rec tok;
    peek_token(ctx, &tok);
    return tok.code;
}

void peek_two(scan_ctx *ctx, int32_t *first, int32_t *second) {
    token_rec a, b;
    mark_tokens(ctx);
    next_token(ctx, &a);
    next_token(ctx, &b);
    rewind_tokens(ctx);
    *first = a.code;
    *second = b.code;
}

int32_t emit_number_token(scan_ctx *ctx, const token_rec *tok, bool negate) {
    emit_byte(ctx, tag_constant);
    if (tok->code == w_constant) {
        emit_byte(ctx, 0);
        return emit_byte(ctx, 0);
    }
    if (tok->code == tok_integer) {
        /* Integer tokens are never negative: the negation cannot overflow. */
        return emit_intval(ctx, negate ? -tok->int_value : tok->int_value);
    }
    return emit_realval(ctx, negate ? -tok->real_value : tok->real_value);
}

int32_t parse_group_prefix_end(scan_ctx *ctx, int32_t *end) {
    token_rec tok;
    *end = 0;
    int32_t code = peek_code(ctx);
    if (code != w_gp && (code < w_gp1 || code > w_gp5))
        return 0;
    next_token(ctx, &tok);
    uint32_t mask = code == w_gp ? 0 : 1u << (code - w_gp1);
    for (;;) {
        next_token(ctx, &tok);
        if (tok.code == w_colon || tok.code == w_rbracket)
            break;
        if (tok.code == w_comma)
            continue;
        if (tok.code != tok_integer || tok.int_value >= 9)
            return ASC_SYNTAX_ERROR;
        /* Groups the program does not move are dropped without a word. */
        if (tok.int_value >= 1) {
            uint32_t bit = 1u << (tok.int_value - 1);
            if (ctx->group_mask & bit)
                mask |= bit;
        }
    }
    *end = tok.code;
    emit_byte(ctx, tag_group_mask);
    return emit_byte(ctx, static_cast<uint8_t>(mask));
}

int32_t parse_bracket_mode(scan_ctx *ctx, int32_t pair_mode) {
    if (expect_token(ctx, w_lbracket))
        return ASC_SYNTAX_ERROR;
    int32_t rc = parse_group_prefix(ctx);
    if (rc == 0)
        rc = parse_index(ctx);
    if (rc)
        return rc;
    if (pair_mode == 1 || (pair_mode == 2 && peek_code(ctx) == w_comma)) {
        if (expect_token(ctx, w_comma))
            return ASC_SYNTAX_ERROR;
        rc = parse_index(ctx);
        if (rc)
            return rc;
    }
    return expect_token(ctx, w_rbracket);
}

int32_t parse_tagged_item(scan_ctx *ctx, uint32_t allowed, int32_t pair_mode) {
    token_rec tok;
    /* Read, not peeked: a Japanese TIMER_OVERFLOW is two words that only
       the read joins. */
    next_token(ctx, &tok);
    const item_row *r = item_row_of(tok.code);
    if (r == nullptr || (allowed != 0 && (r->sets & allowed) == 0))
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, r->tag);
    return parse_bracket_mode(ctx, r->tag == tag_pr ? pair_mode : 0);
}

} // namespace regs

int32_t item_tag_of(int32_t code) {
    const item_row *r = item_row_of(code);
    return r ? r->tag : -1;
}

int32_t compare_op_of(int32_t code) {
    switch (code) {
    case w_equal: return op_equal;
    case w_not_equal: return op_not_equal;
    case w_less: return op_less;
    case w_less_equal: return op_less_equal;
    case w_greater: return op_greater;
    case w_greater_equal: return op_greater_equal;
    default: return -1;
    }
}

int32_t emit_value_word(scan_ctx *ctx, uint8_t sub_code) {
    emit_byte(ctx, tag_value_word);
    return emit_byte(ctx, sub_code);
}

int32_t parse_index(scan_ctx *ctx) {
    token_rec tok;
    peek_token(ctx, &tok);
    if (tok.code == w_dot) {
        if (expect_dots(ctx))
            return ASC_SYNTAX_ERROR;
        emit_byte(ctx, tag_index);
        return emit_word(ctx, 0);
    }
    if (tok.code == w_r || tok.code == w_ar)
        return parse_register_index(ctx, tok.code == w_ar);
    if (tok.code != tok_integer || tok.int_value >= direct_index_limit)
        return ASC_SYNTAX_ERROR;
    next_token(ctx, &tok);
    emit_byte(ctx, tag_index);
    emit_word(ctx, static_cast<uint16_t>(tok.int_value));
    return skip_index_comment(ctx);
}

int32_t parse_bracket(scan_ctx *ctx) { return parse_bracket_mode(ctx, 0); }

int32_t parse_bracket_pair(scan_ctx *ctx) { return parse_bracket_mode(ctx, 1); }

int32_t parse_group_prefix(scan_ctx *ctx) {
    int32_t end;
    return parse_group_prefix_end(ctx, &end);
}

int32_t parse_constant(scan_ctx *ctx) {
    token_rec tok;
    bool paren = false;
    bool negate = false;
    int32_t code = peek_code(ctx);
    if (code == w_lparen) {
        next_token(ctx, &tok);
        paren = true;
        if (peek_code(ctx) == w_minus) {
            next_token(ctx, &tok);
            negate = true;
        }
    } else if (code == w_minus) {
        next_token(ctx, &tok);
        negate = true;
    }
    next_token(ctx, &tok);
    if (!is_number_word(tok.code))
        return ASC_SYNTAX_ERROR;
    emit_number_token(ctx, &tok, negate);
    if (paren && expect_token(ctx, w_rparen))
        return ASC_SYNTAX_ERROR;
    return 0;
}

int32_t parse_input_item(scan_ctx *ctx) { return parse_tagged_item(ctx, set_input, 0); }

int32_t parse_output_item(scan_ctx *ctx) { return parse_tagged_item(ctx, set_output, 0); }

int32_t parse_io_item(scan_ctx *ctx) { return parse_tagged_item(ctx, set_digital, 0); }

int32_t parse_analog_item(scan_ctx *ctx) { return parse_tagged_item(ctx, set_analog, 0); }

int32_t parse_register_item(scan_ctx *ctx) {
    if (peek_code(ctx) != w_r)
        return ASC_SYNTAX_ERROR;
    return parse_tagged_item(ctx, 0, 0);
}

int32_t parse_ar_item(scan_ctx *ctx) {
    if (peek_code(ctx) != w_ar)
        return ASC_SYNTAX_ERROR;
    return parse_tagged_item(ctx, 0, 0);
}

int32_t parse_data_item(scan_ctx *ctx) { return parse_tagged_item(ctx, 0, 2); }

int32_t parse_pl_pattern(scan_ctx *ctx) {
    uint16_t words[3];
    if (expect_token(ctx, w_lbracket))
        return ASC_SYNTAX_ERROR;
    for (int i = 0; i < 3; i++) {
        if (i > 0 && expect_token(ctx, w_comma))
            return ASC_SYNTAX_ERROR;
        int32_t rc = parse_pattern_part(ctx, &words[i]);
        if (rc)
            return rc;
    }
    if (expect_token(ctx, w_rbracket))
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, tag_pl_triple);
    for (uint16_t w : words)
        emit_word(ctx, w);
    return 0;
}
