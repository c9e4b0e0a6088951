/*
** pos_section.cpp - the /POS section of a listing. Each position becomes
** one record: number, group mask, comment offset, the group records and
** the padded comment. Only numbers that a motion line used are accepted,
** and each only once. Joint values are stored in radians for rotary axes;
** the R form of a Cartesian position is stored inverted.
*/
#include "sections/pos_section.h"

#include <cmath>
#include <cstring>

#include "binfmt/image.h"
#include "core/config.h"
#include "core/error_codes.h"
#include "core/spot_warnings.h"
#include "platform/platform.h"
#include "text/lexer.h"

namespace {

enum : int32_t {
    w_p = 5, w_r = 21, w_deg = 71, w_mm = 74, w_slash = 80, w_equal = 82, w_minus = 87,
    w_star = 89, w_colon = 120, w_comma = 121, w_quote = 123, w_lbracket = 124, w_lbrace = 125,
    w_dot = 127, w_rbracket = 129, w_rbrace = 130, w_semicolon = 132, w_apostrophe = 133,
    w_gp = 143, w_config = 180, w_e1 = 181, w_gp1 = 184, w_gp5 = 188, w_j1 = 189, w_uf = 199,
    w_ut = 200, w_uninit = 231,
};

constexpr int32_t err_pos = ASC_POS_SYNTAX;
constexpr int32_t err_frame = ASC_SYNTAX_ERROR2;
constexpr float deg_to_rad = 0.017453292f;
/* A record: 4 head bytes, five groups of at most 40 bytes, a comment. */
constexpr int32_t record_room = 256;
constexpr int32_t comment_marker = 127;

/* The record being built. */
struct pos_build {
    uint8_t bytes[record_room];
    int32_t size;        /* running size: head and group records */
    uint8_t seen;        /* groups given, bit 0 = group 1 */
    char comment[POS_COMMENT_MAX + 1];
    bool has_comment;
};

/* The letters of a configuration string, in their order. */
struct config_letter {
    uint32_t mask_bit;
    uint8_t flag;
    char set;
    char clear;
};
constexpr config_letter config_letters[4] = {
    {1u << 31, 0x80, 'F', 'N'},
    {1u << 30, 0x40, 'L', 'R'},
    {1u << 29, 0x20, 'U', 'D'},
    {1u << 28, 0x10, 'T', 'B'},
};

int32_t expect_pos(scan_ctx *ctx, int32_t code) {
    token_rec tok;
    next_token(ctx, &tok);
    return tok.code == code ? 0 : err_pos;
}

bool peek_is(scan_ctx *ctx, int32_t code) {
    token_rec tok;
    peek_token(ctx, &tok);
    return tok.code == code;
}

void put_be32(uint8_t *at, uint32_t v) {
    at[0] = static_cast<uint8_t>(v >> 24);
    at[1] = static_cast<uint8_t>(v >> 16);
    at[2] = static_cast<uint8_t>(v >> 8);
    at[3] = static_cast<uint8_t>(v);
}

uint32_t real_bits(float v) {
    uint32_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    return bits;
}

float bits_real(uint32_t bits) {
    float v;
    std::memcpy(&v, &bits, sizeof v);
    return v;
}

/* Appends four bytes of a value to the record, if there is room. */
void add_value(pos_build *b, uint32_t bits) {
    if (b->size + 4 > record_room - (POS_COMMENT_MAX + 2))
        return;
    put_be32(b->bytes + b->size, bits);
    b->size += 4;
}

/* ---- comment ------------------------------------------------------------ */

/* The comment from the raw text: from the first double quote up to the
   first "]" that is not the trail byte of a double-byte character, cut at
   the last double quote in it. */
int32_t take_comment(scan_ctx *ctx, pos_build *b) {
    const char *text = ctx->source_text;
    const char *open = std::strchr(text, '"');
    b->comment[0] = 0;
    b->has_comment = true;
    if (!open)
        return 0;
    const char *start = open + 1;
    const char *end = start;
    bool after_lead = false;
    while (*end) {
        uint8_t c = static_cast<uint8_t>(*end);
        if (c == ']' && !after_lead)
            break;
        after_lead = !after_lead && platform_is_lead_byte(c);
        end++;
    }
    const char *last_quote = nullptr;
    for (const char *p = start; p < end; p++)
        if (*p == '"')
            last_quote = p;
    if (last_quote)
        end = last_quote;
    int32_t n = static_cast<int32_t>(end - start);
    if (n > POS_COMMENT_MAX)
        n = POS_COMMENT_MAX;
    for (int32_t i = 0; i < n; i++)
        if (!pos_comment_char_ok(static_cast<uint8_t>(start[i])))
            return ASC_BAD_CHAR;
    std::memcpy(b->comment, start, static_cast<size_t>(n));
    b->comment[n] = 0;
    return 0;
}

/* ":" '"' text '"' up to the "]", which stays for the caller. */
int32_t parse_comment(scan_ctx *ctx, pos_build *b) {
    token_rec tok;
    next_token(ctx, &tok);
    next_token(ctx, &tok);
    if (tok.code != w_quote)
        return err_pos;
    peek_token(ctx, &tok);
    while (tok.code != w_rbracket && tok.code != tok_eof) {
        next_token(ctx, &tok);
        peek_token(ctx, &tok);
    }
    return take_comment(ctx, b);
}

/* ---- values ------------------------------------------------------------- */

/* UF or UT: 0 to 15, as a number or a hexadecimal letter. */
int32_t parse_frame_value(scan_ctx *ctx, int32_t *out) {
    token_rec tok;
    next_token(ctx, &tok);
    int32_t v;
    if (tok.code == tok_integer) {
        v = tok.int_value;
    } else if (tok.text[0] >= 'A' && tok.text[0] <= 'F' && tok.text[1] == 0) {
        v = tok.text[0] - 'A' + 10;
    } else {
        return err_frame;
    }
    if (v < 0 || v > 15)
        return err_frame;
    *out = v;
    return 0;
}

/* The unset mark after its first "*": seven more, or "uninit" and "*". */
int32_t parse_unset_rest(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code == w_uninit) {
        next_token(ctx, &tok);
        return tok.code == w_star ? 0 : err_pos;
    }
    for (int32_t i = 0; i < 6; i++) {
        if (tok.code != w_star)
            return err_pos;
        next_token(ctx, &tok);
    }
    return tok.code == w_star ? 0 : err_pos;
}

/* A signed number or the unset mark. Integers are values only where
   allow_int is set. *unset tells the mark. */
int32_t parse_number(scan_ctx *ctx, bool allow_int, uint32_t *bits, bool *unset) {
    token_rec tok;
    next_token(ctx, &tok);
    bool minus = tok.code == w_minus;
    if (minus)
        next_token(ctx, &tok);
    *unset = false;
    float v;
    if (tok.code == tok_real) {
        v = tok.real_value;
    } else if (tok.code == tok_integer && allow_int) {
        v = static_cast<float>(tok.int_value);
    } else if (tok.code == w_star) {
        int32_t rc = parse_unset_rest(ctx);
        if (rc)
            return rc;
        *unset = true;
        *bits = TP_REAL_UNSET | (minus ? 0x80000000u : 0);
        return 0;
    } else {
        return err_pos;
    }
    *bits = real_bits(minus ? -v : v);
    return 0;
}

/* A joint or extended axis value with its unit: rotary axes in degrees
   are stored in radians, linear ones in millimetres as they stand. */
int32_t parse_axis_value(scan_ctx *ctx, bool linear, bool ext, uint32_t *bits) {
    bool unset;
    int32_t rc = parse_number(ctx, ext, bits, &unset);
    if (rc)
        return rc;
    token_rec tok;
    next_token(ctx, &tok);
    if (unset)
        return 0;
    if (linear && tok.code == w_mm)
        return 0;
    if (!linear && tok.code == w_deg) {
        float v = bits_real(*bits);
        *bits = real_bits(ext ? v * 3.141592654f / 180.0f : v * deg_to_rad);
        return 0;
    }
    return err_pos;
}

/* ---- group records ------------------------------------------------------ */

struct group_info {
    int32_t group;
    int32_t frames;     /* UF << 4 | UT */
    int32_t num_axes;
    int32_t num_rob_axes;
    uint32_t config_mask;
};

void write_group_head(pos_build *b, int32_t size, uint8_t form, int32_t axes, const group_info &g) {
    uint8_t *h = b->bytes + b->size;
    h[0] = static_cast<uint8_t>(size);
    h[1] = form;
    h[2] = static_cast<uint8_t>((axes << 3) | (g.group & 7));
    h[3] = static_cast<uint8_t>(g.frames);
    b->size += 4;
}

/* J1= value deg, J2= ... The axis word and the value are not checked, so a
   bad value leaves its axis out; a missing comma fails. */
int32_t parse_joint(scan_ctx *ctx, pos_build *b, const group_info &g) {
    write_group_head(b, 4 * g.num_axes + 4, POS_FORM_JOINT, g.num_axes, g);
    for (int32_t n = 1; n <= g.num_axes; n++) {
        token_rec tok;
        if (n > 9)
            return err_pos;
        next_token(ctx, &tok);
        next_token(ctx, &tok);
        bool linear = axis_is_linear[g.group - 1][n - 1] != 0;
        uint32_t bits;
        if (parse_axis_value(ctx, linear, false, &bits) == 0)
            add_value(b, bits);
        if (n < g.num_axes && expect_pos(ctx, w_comma) != 0)
            return err_pos;
    }
    /* Spot lines on this position get their warning flagged. */
    if (g.group == 1)
        spot_warning_flag(b->bytes[0] << 8 | b->bytes[1]);
    return 0;
}

/* One letter of the configuration string. */
int32_t parse_config_letter(scan_ctx *ctx, const config_letter &l, uint8_t *flags) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.text[0] == 0 || tok.text[1] != 0)
        return ASC_CONFIG_ERROR;
    if (tok.text[0] == l.set)
        *flags = static_cast<uint8_t>(*flags | l.flag);
    else if (tok.text[0] == l.clear)
        *flags = static_cast<uint8_t>(*flags & ~l.flag);
    else
        return ASC_CONFIG_ERROR;
    return 0;
}

/* A turn number; held as 0 unless the field is an editable one. */
int32_t parse_turn(scan_ctx *ctx, uint32_t field, int8_t *turn) {
    token_rec tok;
    next_token(ctx, &tok);
    bool minus = tok.code == w_minus;
    if (minus)
        next_token(ctx, &tok);
    if (tok.code != tok_integer)
        return ASC_CONFIG_ERROR;
    *turn = field == 1 ? static_cast<int8_t>(minus ? -tok.int_value : tok.int_value) : 0;
    return 0;
}

/* CONFIG : 'N U T, 0, 0, 0', */
int32_t parse_config(scan_ctx *ctx, const group_info &g, int8_t turns[3], uint8_t *flags) {
    group_default_config(g.group, turns, flags);
    if (expect_pos(ctx, w_config) || expect_pos(ctx, w_colon) || expect_pos(ctx, w_apostrophe))
        return err_pos;
    for (const config_letter &l : config_letters) {
        if (!(g.config_mask & l.mask_bit))
            continue;
        int32_t rc = parse_config_letter(ctx, l, flags);
        if (rc)
            return rc;
    }
    uint32_t field[3] = {g.config_mask & 0xFF, (g.config_mask >> 8) & 0xFF, (g.config_mask >> 16) & 0xFF};
    if (field[0] | field[1] | field[2]) {
        if (expect_pos(ctx, w_comma))
            return ASC_CONFIG_ERROR;
        for (int32_t i = 0; i < 3; i++) {
            /* The commas stand where the printer puts them. */
            if (i == 1 && !(field[1] | field[2]))
                break;
            if (i == 2 && !field[2])
                break;
            if (i > 0 && expect_pos(ctx, w_comma))
                return ASC_CONFIG_ERROR;
            if (field[i] == 0) {
                turns[i] = 0;
                continue;
            }
            int32_t rc = parse_turn(ctx, field[i], &turns[i]);
            if (rc)
                return rc;
        }
    } else {
        turns[0] = turns[1] = turns[2] = 0;
    }
    if (expect_pos(ctx, w_apostrophe) || expect_pos(ctx, w_comma))
        return ASC_CONFIG_ERROR;
    return 0;
}

/* The label of one of the six values: the letter, or R and the letter in
   the R form. */
bool label_ok(const token_rec &tok, char letter, bool r_mode) {
    if (r_mode)
        return tok.text[0] == 'R' && tok.text[1] == letter && tok.text[2] == 0;
    return tok.text[0] == letter && tok.text[1] == 0;
}

int32_t parse_six_values(scan_ctx *ctx, bool r_mode, float values[6], uint32_t bits[6]) {
    static const char letters[6] = {'X', 'Y', 'Z', 'W', 'P', 'R'};
    for (int32_t i = 0; i < 6; i++) {
        token_rec tok;
        if (i > 0 && expect_pos(ctx, w_comma))
            return err_pos;
        next_token(ctx, &tok);
        if (!label_ok(tok, letters[i], r_mode) || expect_pos(ctx, w_equal))
            return err_pos;
        bool unset;
        int32_t rc = parse_number(ctx, true, &bits[i], &unset);
        if (rc)
            return rc;
        if (expect_pos(ctx, i < 3 ? w_mm : w_deg))
            return err_pos;
        values[i] = bits_real(bits[i]);
    }
    return 0;
}

/* E1= value mm, ... of the Cartesian form; bad values are left out. */
int32_t parse_ext_axes(scan_ctx *ctx, pos_build *b, const group_info &g, int32_t ext) {
    accept_token(ctx, w_comma);
    for (int32_t e = 0; e < ext; e++) {
        token_rec tok;
        next_token(ctx, &tok);
        next_token(ctx, &tok);
        if (tok.code != w_equal)
            return err_pos;
        int32_t axis = g.num_rob_axes + e;
        bool linear = axis < MAX_GROUP_AXES && axis_is_linear[g.group - 1][axis] != 0;
        uint32_t bits;
        if (parse_axis_value(ctx, linear, true, &bits) == 0)
            add_value(b, bits);
        if (e + 1 < ext && expect_pos(ctx, w_comma))
            return err_pos;
    }
    return 0;
}

int32_t parse_cartesian(scan_ctx *ctx, pos_build *b, const group_info &g) {
    int32_t ext = g.num_axes - g.num_rob_axes;
    if (ext > 3)
        ext = 3;
    uint8_t form = ext >= 1 ? POS_FORM_CARTESIAN_EXT : POS_FORM_CARTESIAN;
    write_group_head(b, 32 + 4 * (ext > 0 ? ext : 0), form, ext > 0 ? ext : 0, g);
    int8_t turns[3];
    uint8_t flags;
    int32_t rc = parse_config(ctx, g, turns, &flags);
    if (rc)
        return rc;
    float values[6];
    uint32_t bits[6];
    bool r_mode = ctx->control_r_mode != 0;
    rc = parse_six_values(ctx, r_mode, values, bits);
    if (rc)
        return rc;
    if (r_mode) {
        position_invert(values);
        for (int32_t i = 0; i < 6; i++)
            bits[i] = real_bits(values[i]);
    }
    for (int32_t i = 0; i < 6; i++)
        add_value(b, bits[i]);
    uint8_t *tail = b->bytes + b->size;
    tail[0] = static_cast<uint8_t>(turns[0]);
    tail[1] = static_cast<uint8_t>(turns[1]);
    tail[2] = static_cast<uint8_t>(turns[2]);
    tail[3] = flags;
    b->size += 4;
    return ext > 0 ? parse_ext_axes(ctx, b, g, ext) : 0;
}

/* GP1: UF : 0, UT : 1, and the form. *dropped for GP*: the whole
   position is left out. */
int32_t parse_group(scan_ctx *ctx, pos_build *b, bool *dropped) {
    token_rec tok;
    group_info g = {};
    next_token(ctx, &tok);
    if (tok.code == w_gp) {
        next_token(ctx, &tok);
        if (tok.code == w_star) {
            do {
                next_token(ctx, &tok);
            } while (tok.code != w_rbrace && tok.code != tok_eof);
            if (tok.code == tok_eof)
                return err_pos;
            accept_token(ctx, w_semicolon);
            *dropped = true;
            return 0;
        }
        if (tok.code != tok_integer || tok.int_value < 1 || tok.int_value > MAX_GROUPS)
            return err_pos;
        g.group = tok.int_value;
    } else if (tok.code >= w_gp1 && tok.code <= w_gp5) {
        g.group = tok.code - w_gp1 + 1;
    } else {
        return err_pos;
    }
    int32_t bit = 1 << (g.group - 1);
    if (!(b->bytes[2] & bit))
        return ASC_BAD_GROUP;
    b->seen = static_cast<uint8_t>(b->seen | bit);
    int32_t uf = 0, ut = 0, rc;
    if (expect_pos(ctx, w_colon) || expect_pos(ctx, w_uf) || expect_pos(ctx, w_colon))
        return err_pos;
    if ((rc = parse_frame_value(ctx, &uf)) != 0)
        return rc;
    if (expect_pos(ctx, w_comma) || expect_pos(ctx, w_ut) || expect_pos(ctx, w_colon))
        return err_pos;
    if ((rc = parse_frame_value(ctx, &ut)) != 0)
        return rc;
    if (expect_pos(ctx, w_comma))
        return err_pos;
    g.frames = uf << 4 | ut;
    void *var = nullptr;
    system_variable("*SYSTEM*", "$SCR_GRP", 0, 0, &var);
    const scr_group *rec = var ? static_cast<const scr_group *>(var) + (g.group - 1) : nullptr;
    g.num_axes = rec ? rec->num_axes : 0;
    g.num_rob_axes = rec ? rec->num_rob_axes : 0;
    g.config_mask = rec ? rec->config_mask : 0;
    if (g.num_axes < g.num_rob_axes)
        return err_pos;
    /* Room for five groups of nine axes is always there; a damaged
       configuration must still not run past the record. */
    if (g.num_axes > MAX_GROUP_AXES)
        return err_pos;
    peek_token(ctx, &tok);
    if (tok.code == w_config)
        return parse_cartesian(ctx, b, g);
    if (tok.code == w_j1)
        return parse_joint(ctx, b, g);
    return err_pos;
}

/* The record is complete: comment, K, store. */
int32_t store_record(pos_build *b) {
    int32_t length = b->size;
    if (b->has_comment) {
        int32_t n = static_cast<int32_t>(std::strlen(b->comment));
        int32_t field = (n + 2) & ~1;
        std::memset(b->bytes + length, 0, static_cast<size_t>(field));
        std::memcpy(b->bytes + length, b->comment, static_cast<size_t>(n));
        b->bytes[3] = static_cast<uint8_t>(b->size - 3);
        length += field;
    }
    int32_t rc = pos_append(b->bytes, length);
    if (rc == IMAGE_DUP_NUMBER)
        return ASC_DUP_POS;
    return rc == 0 ? 0 : ASC_NO_MEMORY;
}

/* P[n : "comment"] { groups }; */
int32_t parse_position(scan_ctx *ctx) {
    token_rec tok;
    if (expect_pos(ctx, w_p))
        return err_pos;
    /* The raw text starts afresh here, so that the comment's quote is the
       first one in it. */
    clear_source_text(ctx);
    if (expect_pos(ctx, w_lbracket))
        return err_pos;
    next_token(ctx, &tok);
    if (tok.code != tok_integer)
        return err_pos;
    int32_t number = tok.int_value;
    if (position_known(number) != 0)
        return ASC_UNUSED_POS;
    if (pos_defined(number))
        return ASC_DUP_POS;
    pos_build b;
    std::memset(&b, 0, sizeof b);
    b.bytes[0] = static_cast<uint8_t>(number >> 8);
    b.bytes[1] = static_cast<uint8_t>(number);
    b.bytes[2] = static_cast<uint8_t>(ctx->group_mask);
    b.bytes[3] = 0;
    int32_t rc;
    if (peek_is(ctx, w_colon) && (rc = parse_comment(ctx, &b)) != 0)
        return rc;
    if (b.has_comment)
        b.bytes[3] = comment_marker;
    if (expect_pos(ctx, w_rbracket) || expect_pos(ctx, w_lbrace))
        return err_pos;
    b.size = 4;
    while (!peek_is(ctx, w_rbrace)) {
        bool dropped = false;
        if ((rc = parse_group(ctx, &b, &dropped)) != 0)
            return rc;
        if (dropped)
            return 0;
    }
    next_token(ctx, &tok);
    accept_token(ctx, w_semicolon);
    if ((b.seen & b.bytes[2]) != b.bytes[2])
        return ASC_BAD_GROUP;
    return store_record(&b);
}

} // namespace

int32_t pos_comment_char_ok(uint8_t c) { return c >= 0x20 && c != 0x7F ? 1 : 0; }

int32_t parse_pos_section(scan_ctx *ctx) {
    for (;;) {
        token_rec tok;
        peek_token(ctx, &tok);
        if (tok.code == w_slash || tok.code == tok_eof)
            return 0;
        int32_t rc = parse_position(ctx);
        if (rc)
            return rc;
    }
}

void position_invert(float values[6]) {
    const float k = 0.017453292f;
    float w = values[3] * k, p = values[4] * k, r = values[5] * k;
    float sw = std::sin(w), cw = std::cos(w), sp = std::sin(p), cp = std::cos(p);
    float sr = std::sin(r), cr = std::cos(r);
    float n[3] = {cr * cp, sr * cp, -sp};
    float o[3] = {cr * sp * sw - sr * cw, sr * sp * sw + cr * cw, cp * sw};
    float a[3] = {cr * sp * cw + sr * sw, sr * sp * cw - cr * sw, cp * cw};
    float x = values[0], y = values[1], z = values[2];
    /* The inverse rotation is the transpose: its columns are the rows. */
    float ni[3] = {n[0], o[0], a[0]};
    float oi[3] = {n[1], o[1], a[1]};
    float ai[3] = {n[2], o[2], a[2]};
    values[0] = -(n[0] * x + n[1] * y + n[2] * z);
    values[1] = -(o[0] * x + o[1] * y + o[2] * z);
    values[2] = -(a[0] * x + a[1] * y + a[2] * z);
    float r2 = 0.0f;
    if (!(std::fabs(ni[0]) < 0.00001f && std::fabs(ni[1]) < 0.00001f))
        r2 = std::atan2(ni[1], ni[0]);
    float sr2 = std::sin(r2), cr2 = std::cos(r2);
    float p2 = std::atan2(-ni[2], cr2 * ni[0] + sr2 * ni[1]);
    float w2 = std::atan2(sr2 * ai[0] - cr2 * ai[1], cr2 * oi[1] - sr2 * oi[0]);
    const float to_deg = 57.29578f;
    values[3] = w2 * to_deg;
    values[4] = p2 * to_deg;
    values[5] = r2 * to_deg;
}
