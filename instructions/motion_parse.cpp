/*
** motion_parse.cpp - J, L, A and C lines and the group-motion wrapper to
** bytes. A motion head is: 254, type, position (a C line: two, the second
** text position first), speed (value word and unit byte), termination (two
** bytes), then whatever the option loop adds.
*/
#include "instructions/motion.h"

#include <cstring>

#include "binfmt/image.h"
#include "core/error_codes.h"
#include "instructions/motion_tokens.h"
#include "text/emit.h"
#include "text/lexer.h"

int32_t speed_mode = 0;
int32_t cd_seen = 0;
int32_t (*motion_option_loop)(scan_ctx *ctx, int32_t loop, int32_t motion_word) = nullptr;
int32_t (*motion_pallet_parser)(scan_ctx *ctx) = nullptr;

namespace {

using namespace motion_words;

constexpr int32_t err_syntax = ASC_SYNTAX_ERROR;
constexpr int32_t err_range = ASC_OUT_OF_RANGE;
constexpr int32_t err_pal_on_c = 106;
constexpr uint8_t kind_p = 0;
constexpr uint8_t kind_pr = 1;
constexpr uint8_t op_offset = 206;
constexpr uint8_t op_tool_offset = 220;
constexpr uint8_t tag_pr = 4;
constexpr uint8_t tag_index = 2;

int32_t expect(scan_ctx *ctx, int32_t code) { return expect_token(ctx, static_cast<uint16_t>(code)); }

int32_t peek_code(scan_ctx *ctx) {
    token_rec tok;
    peek_token(ctx, &tok);
    return tok.code;
}

void emit_word_of(scan_ctx *ctx, uint8_t hi, uint8_t lo) {
    emit_byte(ctx, hi);
    emit_byte(ctx, lo);
}

/* Throws away a ":comment" up to, not including, the "]". */
void skip_comment(scan_ctx *ctx) {
    if (peek_code(ctx) != w_colon)
        return;
    token_rec tok;
    next_token(ctx, &tok);
    while (peek_code(ctx) != w_rbracket && peek_code(ctx) != tok_eof)
        next_token(ctx, &tok);
}

/* "P[n]" or "PR[...]" after the word: the number's word, hi byte with the
   register mode bits. */
int32_t parse_p_number(scan_ctx *ctx, uint16_t *word) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code == w_dot) {
        *word = 0;
        return motion_take_dots(ctx) ? 0 : err_syntax;
    }
    if (tok.code != tok_integer)
        return err_syntax;
    if (tok.int_value < 1 || tok.int_value > 32767)
        return err_range;
    if (note_position(tok.int_value) != 0)
        return ASC_NO_MEMORY;
    if (ctx->first_pos == 0)
        ctx->first_pos = tok.int_value;
    else
        ctx->second_pos = tok.int_value;
    *word = static_cast<uint16_t>(tok.int_value);
    return 0;
}

/* The inside of R[ or AR[ behind PR[: taken as read; "..." is 0. */
int32_t parse_inner_register(scan_ctx *ctx, int32_t *n) {
    token_rec tok;
    if (expect(ctx, w_lbracket))
        return err_syntax;
    next_token(ctx, &tok);
    if (tok.code == w_dot)
        *n = motion_take_dots(ctx) ? 0 : -1;
    else
        *n = tok.code == tok_integer ? tok.int_value : 0;
    if (*n < 0)
        return err_syntax;
    skip_comment(ctx);
    return expect(ctx, w_rbracket) ? err_syntax : 0;
}

int32_t parse_pr_number(scan_ctx *ctx, uint16_t *word) {
    token_rec tok;
    next_token(ctx, &tok);
    int32_t n = 0;
    uint8_t mode = 0;
    if (tok.code == w_dot) {
        if (!motion_take_dots(ctx))
            return err_syntax;
    } else if (tok.code == tok_integer) {
        n = tok.int_value;
    } else if (tok.code == w_r || tok.code == w_ar) {
        int32_t rc = parse_inner_register(ctx, &n);
        if (rc)
            return rc;
        mode = tok.code == w_r ? 128 : 192;
    } else {
        return err_syntax;
    }
    uint8_t hi = static_cast<uint8_t>(((n >> 8) + mode) & 0xFF);
    *word = static_cast<uint16_t>(hi << 8 | (n & 0xFF));
    return 0;
}

/* A register number inside R[ ... ] of a speed: an integer or "...". */
int32_t parse_speed_register(scan_ctx *ctx, int32_t *n) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code == w_dot) {
        *n = 0;
        return motion_take_dots(ctx) ? 0 : err_syntax;
    }
    if (tok.code != tok_integer)
        return err_syntax;
    *n = tok.int_value;
    return 0;
}

/* R[n], R[...] or R[R[n]] after the R. */
int32_t parse_speed_reg_form(scan_ctx *ctx, uint16_t *word) {
    int32_t n = 0, rc;
    if (expect(ctx, w_lbracket))
        return err_syntax;
    if (peek_code(ctx) == w_r) {
        token_rec tok;
        next_token(ctx, &tok);
        if (expect(ctx, w_lbracket))
            return err_syntax;
        if ((rc = parse_speed_register(ctx, &n)) != 0)
            return rc;
        skip_comment(ctx);
        if (expect(ctx, w_rbracket))
            return err_syntax;
        speed_mode = 2;
    } else {
        if ((rc = parse_speed_register(ctx, &n)) != 0)
            return rc;
        speed_mode = 1;
    }
    skip_comment(ctx);
    if (expect(ctx, w_rbracket))
        return err_syntax;
    *word = static_cast<uint16_t>(n);
    return 0;
}

/* Unit byte: the register mode in the top bits; WELD_SPEED takes none. */
int32_t emit_unit(scan_ctx *ctx, int32_t unit) {
    return emit_byte(ctx, static_cast<uint8_t>(speed_mode * 64 + unit));
}

/* The second half of a compound unit: "/" and min or sec. */
bool take_per(scan_ctx *ctx, int32_t code) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code != w_slash)
        return false;
    next_token(ctx, &tok);
    return tok.code == code;
}

/* OFFSET / TOOL_OFFSET between the two positions of a C line: its mode
   (1 none, 2 and 4 plain, 3 and 5 with a register) and the register word. */
struct c_offset {
    int32_t mode = 1;
    uint16_t word = 0;
};

int32_t parse_c_offset_register(scan_ctx *ctx, c_offset *off) {
    token_rec tok;
    next_token(ctx, &tok); /* "," */
    if (expect(ctx, w_pr) || expect(ctx, w_lbracket))
        return err_syntax;
    next_token(ctx, &tok);
    int32_t n = 0;
    bool indirect = false;
    if (tok.code == w_dot) {
        if (!motion_take_dots(ctx))
            return err_syntax;
    } else if (tok.code == tok_integer) {
        n = tok.int_value;
    } else if (tok.code == w_r) {
        if (expect(ctx, w_lbracket))
            return err_syntax;
        next_token(ctx, &tok);
        if (tok.code != tok_integer || expect(ctx, w_rbracket))
            return err_syntax;
        n = tok.int_value;
        indirect = true;
    } else {
        return err_syntax;
    }
    if (expect(ctx, w_rbracket))
        return err_syntax;
    accept_token(ctx, w_colon);
    uint8_t hi = static_cast<uint8_t>(((n >> 8) + (indirect ? 128 : 0)) & 0xFF);
    off->word = static_cast<uint16_t>(hi << 8 | (n & 0xFF));
    return 0;
}

int32_t parse_c_offset(scan_ctx *ctx, c_offset *off) {
    token_rec tok;
    int32_t code = peek_code(ctx);
    if (code == w_colon) {
        next_token(ctx, &tok);
        return 0;
    }
    if (code == w_p || code == w_pr)
        return 0;
    if (code != w_offset && code != w_tool_offset)
        return err_syntax;
    next_token(ctx, &tok);
    int32_t plain = code == w_offset ? 2 : 4;
    code = peek_code(ctx);
    if (code == w_p || code == w_pr) {
        off->mode = plain;
        return 0;
    }
    if (code == w_colon) {
        next_token(ctx, &tok);
        off->mode = plain;
        return 0;
    }
    if (code != w_comma)
        return err_syntax;
    off->mode = plain + 1;
    return parse_c_offset_register(ctx, off);
}

void emit_c_offset(scan_ctx *ctx, const c_offset &off) {
    if (off.mode == 1)
        return;
    emit_byte(ctx, off.mode <= 3 ? op_offset : op_tool_offset);
    if (off.mode == 3 || off.mode == 5) {
        emit_byte(ctx, tag_pr);
        emit_byte(ctx, tag_index);
        emit_word(ctx, off.word);
    }
}

int32_t run_option_loop(scan_ctx *ctx, int32_t loop, int32_t word) {
    return motion_option_loop ? motion_option_loop(ctx, loop, word) : 0;
}

/* C P[1] [offset] (newline) P[2] speed termination options. */
int32_t parse_circular(scan_ctx *ctx) {
    emit_byte(ctx, MOTION_C);
    int32_t rc = parse_position_ref(ctx, w_c);
    if (rc)
        return rc;
    /* The first text position goes behind the second in the bytes. */
    uint8_t kept[3];
    int32_t at = static_cast<int32_t>(ctx->line_ptr - ctx->line_buf);
    if (ctx->encoding_on == 1 && at >= 3) {
        std::memcpy(kept, ctx->line_ptr - 3, 3);
        ctx->line_ptr -= 3;
        ctx->line_len = static_cast<uint16_t>(ctx->line_len - 3);
    }
    c_offset off;
    if ((rc = parse_c_offset(ctx, &off)) != 0)
        return rc;
    if ((rc = parse_position_ref(ctx, w_c)) != 0)
        return rc;
    if (ctx->encoding_on == 1 && at >= 3)
        for (uint8_t b : kept)
            emit_byte(ctx, b);
    if ((rc = parse_speed(ctx)) != 0 || (rc = parse_speed_unit_linear(ctx)) != 0 ||
        (rc = parse_termination(ctx, w_c)) != 0)
        return rc;
    emit_c_offset(ctx, off);
    return run_option_loop(ctx, MOTION_LOOP_C, w_c);
}

int32_t parse_head(scan_ctx *ctx, int32_t word, uint8_t type, bool joint_units, int32_t loop) {
    emit_byte(ctx, type);
    int32_t rc;
    if ((rc = parse_position_ref(ctx, word)) != 0 || (rc = parse_speed(ctx)) != 0)
        return rc;
    rc = joint_units ? parse_speed_unit_joint(ctx) : parse_speed_unit_linear(ctx);
    if (rc || (rc = parse_termination(ctx, word)) != 0)
        return rc;
    return run_option_loop(ctx, loop, word);
}

} // namespace

bool motion_take_dots(scan_ctx *ctx) {
    token_rec tok;
    for (int32_t i = 0; i < 2; i++) {
        next_token(ctx, &tok);
        if (tok.code != w_dot)
            return false;
    }
    return true;
}

int32_t parse_motion_statement(scan_ctx *ctx) { return parse_motion(ctx, 0); }

int32_t parse_motion(scan_ctx *ctx, int32_t nested) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code == w_joint_max_speed)
        return parse_joint_max_speed(ctx);
    if (tok.code == w_linear_max_speed)
        return parse_linear_max_speed(ctx);
    emit_byte(ctx, OP_MOTION);
    int32_t rc;
    switch (tok.code) {
    case w_j: rc = parse_head(ctx, w_j, MOTION_J, true, MOTION_LOOP_J); break;
    case w_l: rc = parse_head(ctx, w_l, MOTION_L, false, MOTION_LOOP_LA); break;
    case w_a_jp:
    case w_a: rc = parse_head(ctx, tok.code, MOTION_A, false, MOTION_LOOP_LA); break;
    case w_c: rc = nested ? err_syntax : parse_circular(ctx); break;
    default: rc = err_syntax; break;
    }
    if (rc)
        return rc;
    if (!nested && expect(ctx, w_semicolon))
        return err_syntax;
    return 0;
}

int32_t parse_position_ref(scan_ctx *ctx, int32_t motion_word) {
    token_rec tok;
    int32_t code = peek_code(ctx);
    if (code == w_pal) {
        if (motion_word == w_c)
            return err_pal_on_c;
        return motion_pallet_parser ? motion_pallet_parser(ctx) : err_syntax;
    }
    next_token(ctx, &tok);
    if (code != w_p && code != w_pr)
        return err_syntax;
    emit_byte(ctx, code == w_p ? kind_p : kind_pr);
    if (expect(ctx, w_lbracket))
        return err_syntax;
    uint16_t word = 0;
    int32_t rc = code == w_p ? parse_p_number(ctx, &word) : parse_pr_number(ctx, &word);
    if (rc)
        return rc;
    emit_word(ctx, word);
    skip_comment(ctx);
    return expect(ctx, w_rbracket) ? err_syntax : 0;
}

int32_t parse_speed(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    uint16_t word = 0;
    int32_t unit = peek_code(ctx);
    if (tok.code == tok_real) {
        speed_mode = 0;
        if (unit != w_inch && unit != w_sec)
            return err_syntax;
        float tenths = tok.real_value * 10.0f;
        /* Truncated as a 32-bit integer would be; out of its range the
           value saturates rather than being undefined. */
        int32_t whole = tenths >= 2147483520.0f    ? INT32_MAX
                        : tenths <= -2147483648.0f ? INT32_MIN
                                                   : static_cast<int32_t>(tenths);
        word = static_cast<uint16_t>(whole);
    } else if (tok.code == tok_integer) {
        speed_mode = 0;
        word = static_cast<uint16_t>(tok.int_value);
        if (unit == w_inch || unit == w_sec)
            word = static_cast<uint16_t>(word * 10);
        else if (unit == w_percent && word > 100)
            return err_range;
        else if (unit == w_msec && word > 32000)
            return err_range;
    } else if (tok.code == w_r) {
        int32_t rc = parse_speed_reg_form(ctx, &word);
        if (rc)
            return rc;
    } else if (tok.code == w_weld_speed) {
        speed_mode = 3;
    } else {
        return err_syntax;
    }
    return emit_word(ctx, word);
}

int32_t parse_speed_unit_joint(scan_ctx *ctx) {
    if (speed_mode == 3)
        return emit_byte(ctx, 193);
    token_rec tok;
    next_token(ctx, &tok);
    switch (tok.code) {
    case w_sec: return emit_unit(ctx, 5);
    case w_percent: return emit_unit(ctx, 0);
    case w_msec: return emit_unit(ctx, 6);
    default: return err_syntax;
    }
}

int32_t parse_speed_unit_linear(scan_ctx *ctx) {
    if (speed_mode == 3)
        return emit_byte(ctx, 193);
    token_rec tok;
    next_token(ctx, &tok);
    switch (tok.code) {
    case w_mm: return take_per(ctx, w_sec) ? emit_unit(ctx, 1) : err_syntax;
    case w_cm: return take_per(ctx, w_min) ? emit_unit(ctx, 2) : err_syntax;
    case w_inch: return take_per(ctx, w_min) ? emit_unit(ctx, 3) : err_syntax;
    case w_deg: return take_per(ctx, w_sec) ? emit_unit(ctx, 4) : err_syntax;
    case w_sec: return emit_unit(ctx, 5);
    case w_msec: return emit_unit(ctx, 6);
    default: return err_syntax;
    }
}

int32_t parse_termination(scan_ctx *ctx, int32_t motion_word) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code == w_fine) {
        cd_seen = 0;
        emit_byte(ctx, 0);
        return emit_byte(ctx, 0);
    }
    if (tok.code == w_cnt) {
        next_token(ctx, &tok);
        if (tok.code == tok_integer) {
            if (tok.int_value < 0 || tok.int_value > 100)
                return err_range;
            cd_seen = tok.int_value == 100 ? 1 : 0;
            emit_byte(ctx, 128);
            return emit_byte(ctx, static_cast<uint8_t>(tok.int_value));
        }
        if (tok.code != w_r)
            return err_syntax;
        cd_seen = 0;
        emit_byte(ctx, 64);
        if (expect(ctx, w_lbracket))
            return err_syntax;
        next_token(ctx, &tok);
        if (tok.code == w_dot) {
            if (!motion_take_dots(ctx))
                return err_syntax;
            emit_byte(ctx, 0);
        } else if (tok.code == tok_integer) {
            if (tok.int_value < 0 || tok.int_value > 255)
                return err_range;
            emit_byte(ctx, static_cast<uint8_t>(tok.int_value));
        } else {
            return err_syntax;
        }
        return expect(ctx, w_rbracket) ? err_syntax : 0;
    }
    if (tok.code == w_cd) {
        if (motion_word == w_j)
            return err_syntax;
        next_token(ctx, &tok);
        if (tok.code != tok_integer)
            return err_syntax;
        cd_seen = 1;
        if (tok.int_value < 0 || tok.int_value > 1000)
            return err_range;
        emit_byte(ctx, static_cast<uint8_t>(192 + tok.int_value / 256));
        return emit_byte(ctx, static_cast<uint8_t>(tok.int_value % 256));
    }
    return err_syntax;
}

int32_t parse_group_motion(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    uint8_t kind = tok.code == w_simultaneous ? 1 : 0;
    accept_token(ctx, w_gp);
    accept_token(ctx, w_group_jp);
    for (int32_t g = 1; g <= 5; g++) {
        if (!(ctx->group_mask & (1 << (g - 1))))
            continue;
        emit_byte(ctx, OP_GROUP_MOTION);
        emit_byte(ctx, kind);
        emit_word_of(ctx, 0, 10);
        emit_byte(ctx, 242);
        emit_byte(ctx, static_cast<uint8_t>(g));
        int32_t behind = ctx->line_len;
        accept_token(ctx, w_colon);
        next_token(ctx, &tok);
        if (tok.code != w_gp)
            return err_syntax;
        next_token(ctx, &tok);
        if (tok.code != tok_integer || tok.int_value != g)
            return err_syntax;
        accept_token(ctx, w_colon);
        int32_t rc = parse_motion(ctx, 1);
        if (rc)
            return rc;
        int32_t count = ctx->line_len - behind;
        int32_t back = static_cast<int32_t>(ctx->line_ptr - ctx->line_buf) - (behind - 4);
        emit_patch(ctx, -back, static_cast<uint8_t>(count >> 8));
        emit_patch(ctx, -back + 1, static_cast<uint8_t>(count));
    }
    return expect(ctx, w_semicolon) ? err_syntax : 0;
}
