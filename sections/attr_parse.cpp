/*
** attr_parse.cpp - the /ATTR section of a listing. Clauses come in one
** fixed order and each may be left out; a clause out of its turn ends the
** section, and the section driver then fails on what follows.
*/
#include "sections/attr_parse.h"

#include <cstring>

#include "binfmt/image.h"
#include "core/error_codes.h"
#include "text/lexer.h"

namespace {

enum : int32_t {
    w_star = 89, w_minus = 87, w_equal = 82, w_colon = 120, w_comma = 121, w_semicolon = 132,
    w_abort_request = 151, w_busy_lamp_off = 153, w_control_code = 154, w_comment = 155,
    w_create = 156, w_date = 157, w_default_group = 158, w_file_name = 159, w_line_count = 161,
    w_memory_size = 162, w_modified = 163, w_owner = 164, w_pause_request = 165,
    w_prog_size = 166, w_protect = 167, w_read_write = 168, w_read = 169, w_stack_size = 170,
    w_task_priority = 171, w_tcd = 172, w_time = 173, w_time_slice = 174, w_version = 175,
};

constexpr int32_t bad = ASC_BAD_ATTR_DATA;

/* Consumes the next token; bad unless it has the code. */
int32_t want(scan_ctx *ctx, int32_t code) {
    token_rec tok;
    next_token(ctx, &tok);
    return tok.code == code ? 0 : bad;
}

int32_t want_int(scan_ctx *ctx, int32_t *value) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code != tok_integer)
        return bad;
    *value = tok.int_value;
    return 0;
}

/* True, with the keyword consumed, when the clause starts here. */
bool clause(scan_ctx *ctx, int32_t code) {
    token_rec tok;
    peek_token(ctx, &tok);
    if (tok.code != code)
        return false;
    next_token(ctx, &tok);
    return true;
}

/* "= integer ;" */
int32_t int_clause(scan_ctx *ctx, int32_t *value) {
    int32_t rc = want(ctx, w_equal);
    if (rc == 0)
        rc = want_int(ctx, value);
    if (rc == 0)
        rc = want(ctx, w_semicolon);
    return rc;
}

int32_t set_word(int32_t field, int32_t value) {
    uint16_t v = static_cast<uint16_t>(value);
    return attr_set(image_name, field, &v, 2);
}

int32_t parse_owner(scan_ctx *ctx) {
    token_rec tok;
    int32_t rc = want(ctx, w_equal);
    if (rc != 0)
        return rc;
    next_token(ctx, &tok);
    if (tok.code == w_semicolon)
        return 0; /* "OWNER = ;" keeps the field */
    attr_set(image_name, ATTR_OWNER, tok.text, static_cast<int32_t>(sizeof tok.text));
    return want(ctx, w_semicolon);
}

/* Comment characters: printable bytes and Shift-JIS, no control codes. */
bool comment_char_ok(unsigned char c) { return c >= 0x20 && c != 0x7F; }

int32_t parse_comment(scan_ctx *ctx) {
    token_rec tok;
    int32_t rc = want(ctx, w_equal);
    if (rc != 0)
        return rc;
    for (peek_token(ctx, &tok); tok.code != w_semicolon && tok.code != tok_eof; peek_token(ctx, &tok))
        next_token(ctx, &tok);
    char *open = std::strchr(ctx->source_text, '"');
    if (!open)
        return bad;
    char *semi = std::strchr(open + 1, ';');
    if (!semi)
        return bad;
    char *end = semi;
    for (char *p = semi - 1; p > open; p--)
        if (*p == '"') {
            end = p;
            break;
        }
    char text[17] = {0};
    size_t n = static_cast<size_t>(end - (open + 1));
    if (n > 16)
        n = 16;
    std::memcpy(text, open + 1, n);
    for (size_t i = 0; i < n; i++)
        if (!comment_char_ok(static_cast<unsigned char>(text[i])))
            return ASC_BAD_CHAR;
    attr_set(image_name, ATTR_COMMENT, text, static_cast<int32_t>(sizeof text));
    return want(ctx, w_semicolon);
}

/* "= DATE yy-mm-dd TIME hh:mm:ss ;" */
int32_t parse_date(scan_ctx *ctx, uint32_t *packed) {
    static const int32_t separators[6] = {w_date, w_minus, w_minus, w_time, w_colon, w_colon};
    int32_t part[6];
    int32_t rc = want(ctx, w_equal);
    for (int i = 0; rc == 0 && i < 6; i++) {
        rc = want(ctx, separators[i]);
        if (rc == 0)
            rc = want_int(ctx, &part[i]);
    }
    if (rc == 0)
        rc = want(ctx, w_semicolon);
    if (rc == 0)
        *packed = pack_attr_date(part[0], part[1], part[2], part[3], part[4], part[5]);
    return rc;
}

int32_t parse_file_name(scan_ctx *ctx) {
    token_rec tok;
    int32_t rc = want(ctx, w_equal);
    if (rc != 0)
        return rc;
    peek_token(ctx, &tok);
    if (tok.code == tok_integer || tok.code == tok_real)
        return bad;
    if (tok.code != w_semicolon)
        next_token(ctx, &tok); /* the name is never stored */
    return want(ctx, w_semicolon);
}

int32_t parse_protect(scan_ctx *ctx) {
    token_rec tok;
    int32_t rc = want(ctx, w_equal);
    if (rc != 0)
        return rc;
    next_token(ctx, &tok);
    if (tok.code == w_read_write)
        image_attr.protect = TP_PROTECT_READ_WRITE;
    else if (tok.code == w_read)
        image_attr.protect = TP_PROTECT_READ;
    else
        return bad;
    return want(ctx, w_semicolon);
}

/* "TCD: STACK_SIZE = n, TASK_PRIORITY = n, ..., PAUSE_REQUEST = n;" */
int32_t parse_tcd(scan_ctx *ctx) {
    static const int32_t words[6] = {w_stack_size, w_task_priority, w_time_slice,
                                     w_busy_lamp_off, w_abort_request, w_pause_request};
    static const int32_t fields[6] = {ATTR_STACK_SIZE, ATTR_TASK_PRIORITY, ATTR_TIME_SLICE,
                                      ATTR_BUSY_LAMP_OFF, ATTR_ABORT_REQUEST, ATTR_PAUSE_REQUEST};
    int32_t rc = want(ctx, w_colon);
    for (int i = 0; rc == 0 && i < 6; i++) {
        int32_t value = 0;
        rc = want(ctx, words[i]);
        if (rc == 0)
            rc = want(ctx, w_equal);
        if (rc == 0)
            rc = want_int(ctx, &value);
        if (rc == 0)
            rc = want(ctx, i < 5 ? w_comma : w_semicolon);
        if (rc == 0)
            set_word(fields[i], value);
    }
    return rc;
}

/* "= 1,*,*,*,* ;": any integer sets the bit of its place. */
int32_t parse_default_group(scan_ctx *ctx, uint16_t *mask) {
    token_rec tok;
    int32_t rc = want(ctx, w_equal);
    if (rc != 0)
        return rc;
    *mask = 0;
    for (int place = 0; place < 5; place++) {
        next_token(ctx, &tok);
        if (tok.code == tok_integer)
            *mask = static_cast<uint16_t>(*mask | (1u << place));
        else if (tok.code != w_star)
            return bad;
        peek_token(ctx, &tok);
        if (tok.code == w_semicolon)
            break;
        if ((rc = want(ctx, w_comma)) != 0)
            return rc;
    }
    return want(ctx, w_semicolon);
}

/* Up to eight digits read as a bit pattern, the last digit bit 0. */
uint32_t digit_bits(const char *text) {
    uint32_t bits = 0;
    for (int i = 0; i < 8 && text[i] >= '0' && text[i] <= '9'; i++)
        bits = (bits << 1) | (text[i] != '0' ? 1u : 0u);
    return bits & 0xFF;
}

int32_t parse_control_code(scan_ctx *ctx) {
    token_rec high, low;
    int32_t rc = want(ctx, w_equal);
    if (rc != 0)
        return rc;
    next_token(ctx, &high);
    if (high.code != tok_integer)
        return bad;
    next_token(ctx, &low);
    if (low.code != tok_integer)
        return bad;
    if (high.int_value & 1)
        ctx->control_r_mode = 1;
    set_word(ATTR_CONTROL_CODE, static_cast<int32_t>((digit_bits(high.text) << 8) | digit_bits(low.text)));
    return want(ctx, w_semicolon);
}

/* Clauses up to PROTECT; TCD and the rest follow in parse_attr_section. */
int32_t parse_head_clauses(scan_ctx *ctx) {
    int32_t rc = 0, value = 0;
    if (clause(ctx, w_owner) && (rc = parse_owner(ctx)) != 0)
        return rc;
    if (clause(ctx, w_comment) && (rc = parse_comment(ctx)) != 0)
        return rc;
    if (clause(ctx, w_prog_size)) {
        if ((rc = int_clause(ctx, &value)) != 0)
            return rc;
        image_attr.prog_size = static_cast<uint32_t>(value);
    }
    if (clause(ctx, w_create) && (rc = parse_date(ctx, &image_attr.create)) != 0)
        return rc;
    if (clause(ctx, w_modified) && (rc = parse_date(ctx, &image_attr.modified)) != 0)
        return rc;
    if (clause(ctx, w_file_name) && (rc = parse_file_name(ctx)) != 0)
        return rc;
    if (clause(ctx, w_version)) {
        if ((rc = int_clause(ctx, &value)) != 0)
            return rc;
        set_word(ATTR_VERSION, value);
    }
    if (clause(ctx, w_line_count)) {
        if ((rc = int_clause(ctx, &value)) != 0)
            return rc;
        image_attr.line_count = static_cast<uint16_t>(value);
    }
    if (clause(ctx, w_memory_size)) {
        if ((rc = int_clause(ctx, &value)) != 0)
            return rc;
        image_attr.memory_size = static_cast<uint32_t>(value);
    }
    if (clause(ctx, w_protect))
        return parse_protect(ctx);
    image_attr.protect = TP_PROTECT_READ_WRITE;
    return 0;
}

} // namespace

uint32_t pack_attr_date(int32_t year, int32_t month, int32_t day, int32_t hour, int32_t minute,
                        int32_t second) {
    if (year < 80)
        year += 100;
    year -= 80;
    return (static_cast<uint32_t>(year) << 25) | (static_cast<uint32_t>(month) << 21) |
           (static_cast<uint32_t>(day) << 16) | (static_cast<uint32_t>(hour) << 11) |
           (static_cast<uint32_t>(minute) << 5) | static_cast<uint32_t>(second);
}

int32_t parse_attr_section(scan_ctx *ctx) {
    int32_t rc = parse_head_clauses(ctx);
    if (rc != 0)
        return rc;
    if (clause(ctx, w_tcd) && (rc = parse_tcd(ctx)) != 0)
        return rc;
    uint16_t mask = ctx->subtype == 4 ? 0 : 1;
    if (clause(ctx, w_default_group)) {
        if ((rc = parse_default_group(ctx, &mask)) != 0)
            return rc;
        if (ctx->subtype == 4 && mask != 0)
            return 193;
    }
    set_word(ATTR_DEFAULT_GROUP, mask);
    ctx->group_mask = mask;
    if (!clause(ctx, w_control_code))
        return 0;
    return parse_control_code(ctx);
}
