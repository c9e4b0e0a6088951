/*
** io_misc_parse.cpp - the listing side of the output assignments, PULSE
** and the small statements of the I/O family.
*/
#include "instructions/io_misc.h"

#include <cmath>

#include "binfmt/image.h"
#include "core/error_codes.h"
#include "core/messages.h"
#include "instructions/control.h"
#include "instructions/control_text.h"
#include "instructions/registers.h"
#include "text/emit.h"
#include "text/lexer.h"

namespace {

constexpr uint8_t index_tag = 2;
constexpr uint8_t op_assign_byte = 100;
constexpr uint8_t item_rsr = 20;
constexpr uint8_t item_ualm = 21;
constexpr uint8_t item_semaphore = 29;
constexpr uint8_t item_constant = 1;
constexpr uint8_t vw_on_code = 1, vw_off_code = 0, vw_enable_code = 2, vw_disable_code = 3;

/* Item tag of an output word, or -1. */
int32_t output_tag(int32_t code) {
    switch (code) {
    case w_do: return 15;
    case w_ro: return 16;
    case w_so: return 38;
    case w_uo: return 39;
    case w_wo: return 18;
    case w_f: return 41;
    case w_m:
    case w_m_315: return 42;
    case w_ao: return 17;
    case w_go: return 23;
    default: return -1;
    }
}

bool analog_word(int32_t code) { return code == w_ao || code == w_go; }

int32_t expect_or_syntax(scan_ctx *ctx, int32_t code) {
    return expect_token(ctx, static_cast<uint16_t>(code)) != 0 ? ASC_SYNTAX_ERROR : 0;
}

/* The item word, its tag and bracket, "=" and the assignment byte. */
int32_t parse_output_head(scan_ctx *ctx, int32_t *word) {
    token_rec tok;
    next_token(ctx, &tok);
    int32_t tag = output_tag(tok.code);
    if (tag < 0)
        return ASC_SYNTAX_ERROR;
    *word = tok.code;
    emit_byte(ctx, static_cast<uint8_t>(tag));
    int32_t rc = parse_bracket(ctx);
    if (rc != 0)
        return rc;
    if (expect_or_syntax(ctx, w_equal) != 0)
        return ASC_SYNTAX_ERROR;
    return emit_byte(ctx, op_assign_byte);
}

/* ON, OFF, PULSE, R[], AR[] or "..." as the value of an output; 1 when
   the lookahead is none of them. */
int32_t parse_switch_value(scan_ctx *ctx, int32_t *rc) {
    token_rec tok;
    switch (peek_code(ctx)) {
    case w_r: *rc = parse_register_item(ctx); return 0;
    case w_ar: *rc = parse_ar_item(ctx); return 0;
    case w_pulse: *rc = parse_pulse(ctx); return 0;
    case w_on:
        next_token(ctx, &tok);
        *rc = emit_value_word(ctx, vw_on_code);
        return 0;
    case w_off:
        next_token(ctx, &tok);
        *rc = emit_value_word(ctx, vw_off_code);
        return 0;
    case w_dot:
        *rc = take_dots(ctx);
        emit_byte(ctx, 0);
        return 0;
    default:
        return 1;
    }
}

int32_t parse_digital_value(scan_ctx *ctx) {
    if (peek_code(ctx) == w_lparen)
        return parse_mixed(ctx);
    int32_t rc = 0;
    if (parse_switch_value(ctx, &rc) != 0)
        return ASC_SYNTAX_ERROR;
    return rc;
}

/* AO and GO: a "(" not followed by "-" opens a mixed expression; a
   bracketed negative number is a constant. */
int32_t parse_analog_value(scan_ctx *ctx) {
    token_rec first, second;
    mark_tokens(ctx);
    next_token(ctx, &first);
    next_token(ctx, &second);
    rewind_tokens(ctx);
    if (first.code == w_lparen && second.code != w_minus)
        return parse_mixed(ctx);
    if (first.code == w_dot) {
        int32_t rc = take_dots(ctx);
        emit_byte(ctx, 0);
        return rc;
    }
    if (first.code == w_ar)
        return parse_ar_item(ctx);
    if (first.code == w_r)
        return parse_register_item(ctx);
    return parse_constant(ctx);
}

int32_t read_sign(scan_ctx *ctx, token_rec *tok) {
    next_token(ctx, tok);
    if (tok->code != w_minus)
        return 1;
    next_token(ctx, tok);
    return -1;
}

/* The statement that a PS prefix governs. */
int32_t parse_ps_statement(scan_ctx *ctx) {
    int32_t code = peek_code(ctx);
    switch (code) {
    case w_r:
    case w_pr:
        return parse_assignment(ctx);
    case w_do:
    case w_ro:
    case w_wo:
    case w_f:
    case w_so:
    case w_uo:
        return parse_output_assignment(ctx);
    case w_if:
        return parse_if(ctx);
    case w_tc_online:
        return parse_tc_online(ctx);
    case w_dot: {
        int32_t rc = take_dots(ctx);
        emit_byte(ctx, 0);
        if (rc == 0)
            rc = expect_or_syntax(ctx, w_equal);
        if (rc == 0) {
            emit_byte(ctx, op_assign_byte);
            rc = parse_mixed(ctx);
        }
        return rc != 0 ? rc : take_semicolon(ctx);
    }
    default:
        return ASC_SYNTAX_ERROR;
    }
}

/* The number inside an IBGN bracket: "...", "*n" or n, 0..16. */
int32_t parse_ibgn_number(scan_ctx *ctx, int32_t *number, bool *marked) {
    token_rec tok;
    *number = 0;
    *marked = false;
    if (at_dots(ctx))
        return take_dots(ctx);
    next_token(ctx, &tok);
    if (tok.code == w_star) {
        *marked = true;
        next_token(ctx, &tok);
    }
    if (tok.code != tok_integer)
        return ASC_SYNTAX_ERROR;
    *number = tok.int_value;
    return (*number < 0 || *number > ibgn_max) ? ASC_OUT_OF_RANGE : 0;
}

} // namespace

/* ---- output assignments ---- */

bool is_output_word(int32_t code) { return output_tag(code) >= 0; }

int32_t parse_output_assignment(scan_ctx *ctx) {
    int32_t word = 0;
    int32_t rc = parse_output_head(ctx, &word);
    if (rc != 0)
        return rc;
    rc = analog_word(word) ? parse_analog_value(ctx) : parse_digital_value(ctx);
    return rc != 0 ? rc : take_semicolon(ctx);
}

int32_t parse_output_clause(scan_ctx *ctx) {
    int32_t code = peek_code(ctx);
    if (code != w_ao && code != w_go && code != w_ro && code != w_do)
        return ASC_SYNTAX_ERROR;
    int32_t word = 0;
    int32_t rc = parse_output_head(ctx, &word);
    if (rc != 0)
        return rc;
    if (parse_switch_value(ctx, &rc) == 0)
        return rc;
    return parse_constant(ctx);
}

int32_t parse_pulse(scan_ctx *ctx) {
    if (expect_or_syntax(ctx, w_pulse) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_pulse);
    if (peek_code(ctx) != w_comma)
        return emit_byte(ctx, 0);
    token_rec tok;
    next_token(ctx, &tok);
    next_token(ctx, &tok);
    int32_t tenths;
    if (tok.code == tok_integer && tok.int_value >= 0 && tok.int_value <= pulse_int_max) {
        tenths = tok.int_value * 10;
    } else if (tok.code == tok_real && tok.real_value >= 0.0f && tok.real_value < pulse_real_limit) {
        float scaled = tok.real_value * 10.0f;
        tenths = static_cast<int32_t>(scaled);
    } else {
        return ASC_SYNTAX_ERROR;
    }
    if (expect_or_syntax(ctx, w_sec) != 0)
        return ASC_SYNTAX_ERROR;
    return emit_byte(ctx, static_cast<uint8_t>(tenths));
}

/* ---- statements ---- */

int32_t parse_payload(scan_ctx *ctx) {
    if (expect_or_syntax(ctx, w_payload) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_payload);
    int32_t rc = parse_bracket(ctx);
    return rc != 0 ? rc : take_semicolon(ctx);
}

int32_t parse_override(scan_ctx *ctx) {
    if (expect_or_syntax(ctx, w_override) != 0 || expect_or_syntax(ctx, w_equal) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_override);
    emit_byte(ctx, op_assign_byte);
    token_rec tok;
    peek_token(ctx, &tok);
    int32_t rc;
    if (tok.code == w_r) {
        rc = parse_register_item(ctx);
    } else if (tok.code == w_ar) {
        rc = parse_ar_item(ctx);
    } else {
        /* A literal percentage out of range is a syntax error here. */
        next_token(ctx, &tok);
        if (tok.code != tok_integer || tok.int_value < 0 || tok.int_value > override_max)
            return ASC_SYNTAX_ERROR;
        emit_byte(ctx, item_constant);
        emit_intval(ctx, tok.int_value);
        rc = expect_or_syntax(ctx, w_percent);
    }
    return rc != 0 ? rc : take_semicolon(ctx);
}

int32_t parse_rsr(scan_ctx *ctx) {
    if (expect_or_syntax(ctx, w_rsr) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, item_rsr);
    int32_t rc = parse_bracket(ctx);
    if (rc != 0)
        return rc;
    if (expect_or_syntax(ctx, w_equal) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_assign_byte);
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code == w_enable)
        emit_value_word(ctx, vw_enable_code);
    else if (tok.code == w_disable)
        emit_value_word(ctx, vw_disable_code);
    else
        return ASC_SYNTAX_ERROR;
    return take_semicolon(ctx);
}

int32_t parse_semaphore(scan_ctx *ctx) {
    if (expect_or_syntax(ctx, w_semaphore) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, item_semaphore);
    int32_t rc = parse_bracket(ctx);
    if (rc != 0)
        return rc;
    if (expect_or_syntax(ctx, w_equal) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_assign_byte);
    token_rec tok;
    int32_t code = peek_code(ctx);
    if (code == w_dot) {
        rc = take_dots(ctx);
        emit_byte(ctx, 0);
    } else if (code == w_on || code == w_off) {
        next_token(ctx, &tok);
        emit_value_word(ctx, code == w_on ? vw_on_code : vw_off_code);
    } else {
        return ASC_SYNTAX_ERROR;
    }
    return rc != 0 ? rc : take_semicolon(ctx);
}

int32_t parse_ualm(scan_ctx *ctx) {
    if (expect_or_syntax(ctx, w_ualm) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, item_ualm);
    int32_t rc = parse_bracket(ctx);
    return rc != 0 ? rc : take_semicolon(ctx);
}

int32_t parse_lock_preg(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code != w_lock && tok.code != w_unlock)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, tok.code == w_lock ? op_lock_preg : op_unlock_preg);
    next_token(ctx, &tok);
    return (tok.code == w_pr || tok.code == w_preg) ? 0 : ASC_SYNTAX_ERROR;
}

int32_t parse_monitor(scan_ctx *ctx) {
    /* The program name is a free name, as behind CALL. */
    uint32_t saved_split = split_digits_on;
    split_digits_on = 0;
    token_rec tok;
    next_token(ctx, &tok);
    uint8_t mode = 0;
    if (tok.code == w_monitor_end) {
        mode = 1;
    } else if (tok.code == w_monitor && is_end_word(peek_code(ctx))) {
        next_token(ctx, &tok);
        mode = 1;
    } else if (tok.code != w_monitor) {
        split_digits_on = saved_split;
        return ASC_SYNTAX_ERROR;
    }
    peek_token(ctx, &tok);
    split_digits_on = saved_split;
    emit_byte(ctx, op_monitor);
    emit_byte(ctx, mode);
    int32_t rc = parse_called_name(ctx, call_name_max, true);
    return rc != 0 ? rc : take_semicolon(ctx);
}

int32_t parse_tool(scan_ctx *ctx) {
    token_rec tok;
    if (expect_or_syntax(ctx, w_tool) != 0)
        return ASC_SYNTAX_ERROR;
    next_token(ctx, &tok);
    uint8_t mode;
    if (tok.code == w_attach || tok.code == w_attach_597)
        mode = 0;
    else if (tok.code == w_detach || tok.code == w_detach_598)
        mode = 1;
    else
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_tool);
    emit_byte(ctx, mode);
    return parse_bracket(ctx);
}

int32_t parse_send(scan_ctx *ctx) {
    if (expect_or_syntax(ctx, w_send) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_send);
    if (peek_code(ctx) != w_r)
        return ASC_SYNTAX_ERROR;
    int32_t rc = parse_register_item(ctx);
    return rc != 0 ? rc : take_semicolon(ctx);
}

int32_t parse_ocp(scan_ctx *ctx) {
    token_rec tok;
    if (expect_or_syntax(ctx, w_ocp) != 0)
        return ASC_SYNTAX_ERROR;
    next_token(ctx, &tok);
    uint8_t mode;
    if (is_start_word(tok.code))
        mode = 1;
    else if (is_end_word(tok.code))
        mode = 2;
    else
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_ocp);
    emit_byte(ctx, mode);
    return take_semicolon(ctx);
}

int32_t parse_detect(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code != w_stick && tok.code != w_col)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, tok.code == w_stick ? op_stick_detect : op_col_detect);
    if (expect_or_syntax(ctx, w_detect) != 0)
        return ASC_SYNTAX_ERROR;
    next_token(ctx, &tok);
    if (tok.code != w_on && tok.code != w_off)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, tok.code == w_on ? 0 : 1);
    return take_semicolon(ctx);
}

int32_t parse_grind(scan_ctx *ctx) {
    token_rec tok;
    if (expect_or_syntax(ctx, w_grind) != 0)
        return ASC_SYNTAX_ERROR;
    next_token(ctx, &tok);
    emit_byte(ctx, op_grind);
    if (is_end_word(tok.code))
        return emit_byte(ctx, 2);
    if (!is_start_word(tok.code))
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, 1);
    return parse_bracket(ctx);
}

int32_t parse_sample(scan_ctx *ctx) {
    token_rec tok;
    if (expect_or_syntax(ctx, w_sample) != 0)
        return ASC_SYNTAX_ERROR;
    next_token(ctx, &tok);
    emit_byte(ctx, op_sample);
    int32_t rc = 0;
    if (is_end_word(tok.code)) {
        emit_byte(ctx, 2);
    } else if (is_start_word(tok.code)) {
        emit_byte(ctx, 1);
        rc = parse_bracket(ctx);
    } else {
        return ASC_SYNTAX_ERROR;
    }
    return rc != 0 ? rc : take_semicolon(ctx);
}

int32_t parse_torq_limit(scan_ctx *ctx) {
    if (expect_or_syntax(ctx, w_torq_limit) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_torq_limit);
    token_rec tok;
    peek_token(ctx, &tok);
    int32_t rc = 0;
    if (tok.code == tok_integer || tok.code == tok_real) {
        next_token(ctx, &tok);
        int32_t tenths;
        /* The integer 100 passes, the real 100.0 does not. */
        if (tok.code == tok_integer) {
            if (tok.int_value < 0 || tok.int_value > torq_limit_max)
                return ASC_OUT_OF_RANGE;
            tenths = tok.int_value * 10;
        } else {
            if (!(tok.real_value >= 0.0f && tok.real_value < static_cast<float>(torq_limit_max)))
                return ASC_OUT_OF_RANGE;
            float scaled = tok.real_value * 10.0f;
            tenths = static_cast<int32_t>(scaled);
        }
        emit_byte(ctx, index_tag);
        emit_word(ctx, static_cast<uint16_t>(tenths));
        accept_token(ctx, w_percent);
    } else {
        accept_token(ctx, w_lbracket);
        rc = parse_index(ctx);
        accept_token(ctx, w_rbracket);
    }
    return rc != 0 ? rc : take_semicolon(ctx);
}

int32_t parse_ps(scan_ctx *ctx) {
    if (expect_or_syntax(ctx, w_ps) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_ps);
    emit_byte(ctx, 1);
    token_rec tok;
    accept_token(ctx, w_plus);
    int32_t sign = read_sign(ctx, &tok);
    if (tok.code != tok_integer)
        return ASC_SYNTAX_ERROR;
    emit_word(ctx, static_cast<uint16_t>(sign * tok.int_value));
    if (expect_or_syntax(ctx, w_mm) != 0)
        return ASC_SYNTAX_ERROR;
    accept_token(ctx, w_plus);
    sign = read_sign(ctx, &tok);
    int32_t thousandths;
    if (tok.code == tok_integer) {
        thousandths = static_cast<int32_t>(static_cast<int64_t>(sign) * tok.int_value * 1000);
    } else if (tok.code == tok_real) {
        float scaled = static_cast<float>(sign) * tok.real_value * 1000.0f;
        if (!(std::fabs(scaled) < 2.0e9f))
            return ASC_OUT_OF_RANGE;
        thousandths = static_cast<int32_t>(std::lround(scaled));
    } else {
        return ASC_SYNTAX_ERROR;
    }
    emit_word(ctx, static_cast<uint16_t>(thousandths));
    if (expect_or_syntax(ctx, w_sec) != 0)
        return ASC_SYNTAX_ERROR;
    return parse_ps_statement(ctx);
}

int32_t parse_tc_online(scan_ctx *ctx) {
    if (expect_or_syntax(ctx, w_tc_online) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op_tc_online);
    token_rec tok;
    int32_t code = peek_code(ctx);
    int32_t rc;
    if (code == w_enable || code == w_disable) {
        next_token(ctx, &tok);
        rc = emit_value_word(ctx, code == w_enable ? vw_enable_code : vw_disable_code);
    } else {
        rc = parse_mixed(ctx);
    }
    return rc != 0 ? rc : take_semicolon(ctx);
}

int32_t parse_ibgn(scan_ctx *ctx) {
    token_rec tok;
    if (expect_or_syntax(ctx, w_ibgn) != 0)
        return ASC_SYNTAX_ERROR;
    next_token(ctx, &tok);
    bool rec = tok.code == w_rec;
    if (rec)
        next_token(ctx, &tok);
    uint8_t op;
    if (is_start_word(tok.code))
        op = rec ? op_ibgn_rec_start : op_ibgn_start;
    else if (is_end_word(tok.code))
        op = rec ? op_ibgn_rec_end : op_ibgn_end;
    else
        return ASC_SYNTAX_ERROR;
    if (expect_or_syntax(ctx, w_lbracket) != 0)
        return ASC_SYNTAX_ERROR;
    int32_t number;
    bool marked;
    int32_t rc = parse_ibgn_number(ctx, &number, &marked);
    if (rc != 0)
        return rc;
    if (!rec && !marked && number != 0) {
        /* START and END numbers live in the label table above the labels;
           a repeat is kept with the mark, as a repeated label is. */
        int32_t base = op == op_ibgn_start ? ibgn_start_label_base : ibgn_end_label_base;
        rc = note_label(base + number);
        if (rc == IMAGE_DUP_NUMBER) {
            report_warning(IMAGE_DUP_NUMBER);
            marked = true;
        } else if (rc != 0) {
            return rc;
        }
    }
    if (expect_or_syntax(ctx, w_rbracket) != 0)
        return ASC_SYNTAX_ERROR;
    emit_byte(ctx, op);
    emit_byte(ctx, index_tag);
    emit_word(ctx, static_cast<uint16_t>(number | (marked ? label_dup_mark : 0)));
    return take_semicolon(ctx);
}
