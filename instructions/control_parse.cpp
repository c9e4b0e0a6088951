/*
** control_parse.cpp - the listing side of labels, jumps, IF, SELECT, WAIT,
** the single-word statements, RCV, MESSAGE and the WHEN lines.
*/
#include "instructions/control.h"

#include <cstring>

#include "binfmt/image.h"
#include "core/error_codes.h"
#include "core/messages.h"
#include "instructions/control_text.h"
#include "instructions/io_misc.h"
#include "instructions/registers.h"
#include "text/emit.h"
#include "text/lexer.h"

namespace {

constexpr uint8_t index_tag = 2;
constexpr uint8_t item_semaphore = 29;
constexpr uint8_t op_assign_byte = 100;
constexpr uint8_t op_compare_equal = 107;
/* A time word keeps bit 15 free for the register form. */
constexpr int64_t wait_time_max = 0x7FFF;
/* How far the register-time look-ahead may run inside the ring. */
constexpr int32_t wait_scan_limit = 60;

bool blank(char c) { return c == ' ' || c == '\t'; }

/* The last character before p that is no blank, or null. */
char *last_non_blank(scan_ctx *ctx, char *p) {
    while (p > ctx->source_text && blank(p[-1]))
        p--;
    return p > ctx->source_text ? p - 1 : nullptr;
}

/* Turns every ";" in [from, to) into a blank, so that trimming the raw
   text after the statement cuts at the statement's own ";". */
void blank_semicolons(char *from, const char *to) {
    for (char *p = from; p < to; p++)
        if (*p == ';')
            *p = ' ';
}

/* ":comment]" of a label: the raw text from behind the first ":" behind
   the first "[" up to the "]" that stands last before the ";". */
int32_t parse_label_comment(scan_ctx *ctx) {
    char *semi = nullptr;
    int32_t rc = read_raw_statement(ctx, &semi);
    if (rc != 0)
        return rc;
    char *close = last_non_blank(ctx, semi);
    if (close == nullptr || *close != ']')
        return ASC_BAD_CHAR;
    char *open = std::strchr(ctx->source_text, '[');
    char *colon = (open && open < close) ? std::strchr(open, ':') : nullptr;
    if (colon == nullptr || colon >= close)
        return ASC_BAD_CHAR;
    char *start = colon + 1;
    int32_t count = static_cast<int32_t>(close - start);
    if (count > label_comment_max)
        count = label_comment_max;
    rc = emit_text(ctx, start, count);
    blank_semicolons(start, close);
    return rc;
}

/* The number of a label definition; marked when it is a duplicate. */
int32_t parse_label_number(scan_ctx *ctx, int32_t *number, bool *marked) {
    token_rec tok;
    peek_token(ctx, &tok);
    *number = 0;
    *marked = false;
    if (tok.code == w_dot)
        return take_dots(ctx);
    next_token(ctx, &tok);
    if (tok.code == w_star) {
        next_token(ctx, &tok);
        if (tok.code != tok_integer)
            return ASC_SYNTAX_ERROR;
        *number = tok.int_value;
        *marked = true;
    } else if (tok.code == tok_integer) {
        *number = tok.int_value;
        if (*number != 0) {
            int32_t rc = note_label(*number);
            if (rc == IMAGE_DUP_NUMBER) {
                report_warning(IMAGE_DUP_NUMBER);
                *marked = true;
            } else if (rc != 0) {
                return rc;
            }
        }
    } else {
        return ASC_SYNTAX_ERROR;
    }
    if (*number < 0 || *number > label_max)
        return ASC_OUT_OF_RANGE;
    return 0;
}

/* The statement behind IF's condition. */
int32_t parse_if_action(scan_ctx *ctx) {
    int32_t code = peek_code(ctx);
    switch (code) {
    case w_r:
    case w_pr:
        return parse_assignment(ctx);
    case w_dollar:
    case tok_unknown_dollar:
        return parse_sysvar_assignment(ctx);
    case w_jmp:
        return parse_jmp(ctx);
    case w_call:
        return parse_call(ctx);
    case w_ibgn:
        return parse_ibgn(ctx);
    case w_dot: {
        int32_t rc = take_dots(ctx);
        if (rc == 0)
            rc = emit_byte(ctx, 0);
        if (rc == 0 && peek_code(ctx) == w_equal) {
            accept_token(ctx, w_equal);
            emit_byte(ctx, op_assign_byte);
            rc = parse_mixed(ctx);
        }
        return rc != 0 ? rc : take_semicolon(ctx);
    }
    default:
        break;
    }
    if (is_output_word(code))
        return parse_output_assignment(ctx);
    return ASC_SYNTAX_ERROR;
}

/* JMP or CALL, the only actions of SELECT and ELSE. */
int32_t parse_select_action(scan_ctx *ctx) {
    int32_t code = peek_code(ctx);
    if (code == w_jmp)
        return parse_jmp(ctx);
    if (code == w_call)
        return parse_call(ctx);
    return ASC_SYNTAX_ERROR;
}

/* "= value , action" of SELECT and of its continuation lines; the "=" is
   already consumed. */
int32_t parse_select_case(scan_ctx *ctx) {
    emit_byte(ctx, op_compare_equal);
    int32_t code = peek_code(ctx);
    int32_t rc;
    if (code == w_r)
        rc = parse_register_item(ctx);
    else if (code == w_ar)
        rc = parse_ar_item(ctx);
    else
        rc = parse_constant(ctx);
    if (rc != 0)
        return rc;
    if (expect_token(ctx, w_comma) != 0)
        return ASC_SYNTAX_ERROR;
    return parse_select_action(ctx);
}

/* "TIMEOUT,LBL[i]" if it follows, and the ";". */
int32_t parse_wait_end(scan_ctx *ctx) {
    if (peek_code(ctx) == w_timeout) {
        token_rec tok;
        next_token(ctx, &tok);
        emit_byte(ctx, op_timeout);
        if (expect_token(ctx, w_comma) != 0)
            return ASC_SYNTAX_ERROR;
        int32_t rc = parse_lbl_ref(ctx);
        if (rc != 0)
            return rc;
    }
    return take_semicolon(ctx);
}

/* WAIT R[i] alone (or before TIMEOUT) waits for the register's time;
   anything else behind the bracket makes it a condition. The look-ahead
   emits nothing and is rewound. */
bool wait_by_register(scan_ctx *ctx) {
    token_rec tok;
    mark_tokens(ctx);
    next_token(ctx, &tok); /* R */
    next_token(ctx, &tok);
    bool ok = tok.code == w_lbracket;
    int32_t depth = 1;
    for (int32_t n = 0; ok && depth > 0; n++) {
        next_token(ctx, &tok);
        if (tok.code == w_lbracket)
            depth++;
        else if (tok.code == w_rbracket)
            depth--;
        else if (tok.code == tok_eof || tok.code == w_semicolon || n >= wait_scan_limit)
            ok = false;
    }
    if (ok) {
        next_token(ctx, &tok);
        ok = tok.code == w_semicolon || tok.code == w_timeout;
    }
    rewind_tokens(ctx);
    return ok;
}

} // namespace

/* ---- labels and jumps ---- */

int32_t parse_jmp(scan_ctx *ctx) {
    if (expect_token(ctx, w_jmp) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_jmp);
    int32_t rc = parse_lbl_ref(ctx);
    return rc != 0 ? rc : take_semicolon(ctx);
}

int32_t parse_lbl_ref(scan_ctx *ctx) {
    if (expect_token(ctx, w_lbl) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_lbl_ref);
    return parse_bracket(ctx);
}

int32_t parse_lbl_def(scan_ctx *ctx) {
    if (expect_token(ctx, w_lbl) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_lbl_def);
    emit_byte(ctx, index_tag);
    if (expect_token(ctx, w_lbracket) != 0)
        return ASC_SYNTAX_ERROR;
    int32_t number;
    bool marked;
    int32_t rc = parse_label_number(ctx, &number, &marked);
    if (rc != 0)
        return rc;
    emit_word(ctx, static_cast<uint16_t>(number | (marked ? label_dup_mark : 0)));
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code == w_rbracket) {
        emit_byte(ctx, 0);
        return take_semicolon(ctx);
    }
    if (tok.code == w_colon)
        return parse_label_comment(ctx);
    return ASC_SYNTAX_ERROR;
}

/* ---- branches ---- */

int32_t parse_if(scan_ctx *ctx) {
    if (expect_token(ctx, w_if) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_if);
    int32_t rc = peek_code(ctx) == w_lparen ? parse_mixed(ctx) : parse_condition_chain(ctx, 1);
    if (rc != 0)
        return rc;
    accept_token(ctx, w_colon);
    accept_token(ctx, w_comma);
    accept_token(ctx, w_colon);
    return parse_if_action(ctx);
}

int32_t parse_select_family(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    switch (tok.code) {
    case w_select: {
        emit_byte(ctx, op_select);
        if (peek_code(ctx) != w_r)
            return ASC_SYNTAX_ERROR;
        int32_t rc = parse_register_item(ctx);
        if (rc != 0)
            return rc;
        if (expect_token(ctx, w_equal) != 0)
            return ASC_SYNTAX_ERROR;
        return parse_select_case(ctx);
    }
    case w_equal:
        return parse_select_case(ctx);
    case w_else:
    case w_else_read:
        emit_byte(ctx, op_else);
        if (expect_token(ctx, w_comma) != 0)
            return ASC_SYNTAX_ERROR;
        return parse_select_action(ctx);
    default:
        return ASC_SYNTAX_ERROR;
    }
}

/* ---- waits ---- */

int32_t parse_wait(scan_ctx *ctx) {
    if (expect_token(ctx, w_wait) != 0)
        return ASC_SYNTAX_ERROR;
    token_rec tok;
    peek_token(ctx, &tok);
    switch (tok.code) {
    case w_semaphore:
        return parse_wait_semaphore(ctx);
    case w_lparen:
        return parse_wait_mixed(ctx);
    case tok_integer:
    case tok_real:
    case w_constant:
        return parse_wait_time(ctx);
    case w_r:
        if (wait_by_register(ctx))
            return parse_wait_time(ctx);
        break;
    default:
        break;
    }
    emit_byte(ctx, op_wait_cond);
    int32_t rc = parse_condition_chain(ctx, 0);
    return rc != 0 ? rc : parse_wait_end(ctx);
}

int32_t parse_wait_semaphore(scan_ctx *ctx) {
    if (expect_token(ctx, w_semaphore) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_wait_cond);
    emit_byte(ctx, item_semaphore);
    int32_t rc = parse_bracket(ctx);
    return rc != 0 ? rc : parse_wait_end(ctx);
}

int32_t parse_wait_mixed(scan_ctx *ctx) {
    emit_byte(ctx, op_wait_cond);
    int32_t rc = parse_mixed(ctx);
    return rc != 0 ? rc : parse_wait_end(ctx);
}

int32_t parse_wait_time(scan_ctx *ctx) {
    token_rec tok;
    emit_byte(ctx, op_wait_time);
    peek_token(ctx, &tok);
    if (tok.code == w_r) {
        /* R[i]: the index with bit 15 set says "the time is in R[i]". */
        next_token(ctx, &tok);
        if (expect_token(ctx, w_lbracket) != 0)
            return ASC_SYNTAX_ERROR;
        int32_t rc = parse_index(ctx);
        if (rc != 0)
            return rc;
        if (expect_token(ctx, w_rbracket) != 0)
            return ASC_SYNTAX_ERROR;
        if (ctx->encoding_on == 1 && ctx->line_len >= 2)
            emit_patch(ctx, -2, static_cast<uint8_t>(ctx->line_ptr[-2] | 0x80));
        return parse_wait_end(ctx);
    }
    next_token(ctx, &tok);
    int64_t hundredths;
    if (tok.code == tok_integer) {
        hundredths = static_cast<int64_t>(tok.int_value) * 100;
    } else if (tok.code == tok_real) {
        float scaled = tok.real_value * 100.0f;
        if (!(scaled >= 0.0f && scaled < 65536.0f))
            return ASC_OUT_OF_RANGE;
        hundredths = static_cast<int64_t>(scaled);
    } else if (tok.code == w_constant) {
        hundredths = 0;
    } else {
        return ASC_SYNTAX_ERROR;
    }
    if (hundredths < 0 || hundredths > wait_time_max)
        return ASC_OUT_OF_RANGE;
    accept_token(ctx, w_lparen);
    if (expect_token(ctx, w_sec) != 0)
        return ASC_SYNTAX_ERROR;
    accept_token(ctx, w_rparen);
    emit_byte(ctx, index_tag);
    emit_word(ctx, static_cast<uint16_t>(hundredths));
    return parse_wait_end(ctx);
}

/* ---- single words ---- */

int32_t parse_end_family(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    switch (tok.code) {
    case w_end:
    case w_end_jp:
        emit_byte(ctx, op_end);
        break;
    case w_abort:
        emit_byte(ctx, op_abort);
        break;
    case w_pause:
        emit_byte(ctx, op_pause);
        break;
    case w_clear_resume_prog:
        emit_byte(ctx, op_clear_resume);
        break;
    default:
        return ASC_SYNTAX_ERROR;
    }
    /* The Japanese end word's row has the dispatcher take the ";". */
    return tok.code == w_end_jp ? 0 : take_semicolon(ctx);
}

int32_t parse_concurrent(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code == w_concurrent)
        emit_byte(ctx, op_concurrent);
    else if (tok.code == w_endconcur)
        emit_byte(ctx, op_endconcur);
    else
        return ASC_SYNTAX_ERROR;
    return take_semicolon(ctx);
}

/* ---- the rest ---- */

int32_t parse_when(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code != w_when && tok.code != w_condition)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_when);
    int32_t rc = parse_condition_chain(ctx, 0);
    if (rc != 0)
        return rc;
    accept_token(ctx, w_colon);
    accept_token(ctx, w_comma);
    int32_t code = peek_code(ctx);
    if (code == w_call)
        return parse_call(ctx);
    if (code != w_dot)
        return ASC_SYNTAX_ERROR;
    rc = take_dots(ctx);
    if (rc != 0)
        return rc;
    emit_byte(ctx, 0);
    return take_semicolon(ctx);
}

int32_t parse_rcv(scan_ctx *ctx) {
    if (expect_token(ctx, w_rcv) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_rcv);
    if (peek_code(ctx) != w_r)
        return ASC_SYNTAX_ERROR;
    int32_t rc = parse_register_item(ctx);
    if (rc != 0)
        return rc;
    accept_token(ctx, w_comma);
    rc = parse_lbl_ref(ctx);
    if (rc != 0)
        return rc;
    token_rec tok;
    peek_token(ctx, &tok);
    if (tok.code == w_comma) {
        next_token(ctx, &tok);
        if (peek_code(ctx) != w_timeout)
            return ASC_SYNTAX_ERROR;
    }
    if (peek_code(ctx) == w_timeout) {
        next_token(ctx, &tok);
        emit_byte(ctx, op_timeout);
        accept_token(ctx, w_comma);
        rc = parse_lbl_ref(ctx);
        if (rc != 0)
            return rc;
    }
    return take_semicolon(ctx);
}

int32_t parse_message(scan_ctx *ctx) {
    if (expect_token(ctx, w_message) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_message);
    if (expect_token(ctx, w_lbracket) != 0)
        return ASC_SYNTAX_ERROR;
    char *semi = nullptr;
    int32_t rc = read_raw_statement(ctx, &semi);
    if (rc != 0)
        return rc;
    char *close = last_non_blank(ctx, semi);
    char *open = std::strchr(ctx->source_text, '[');
    if (close == nullptr || *close != ']' || open == nullptr || open >= close)
        return ASC_BAD_CHAR;
    char *start = open + 1;
    int32_t count = static_cast<int32_t>(close - start);
    if (count > message_max)
        count = message_max;
    rc = emit_text(ctx, start, count);
    blank_semicolons(start, close);
    return rc;
}
