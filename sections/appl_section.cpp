/*
** appl_section.cpp - the parser of the /APPL section: the mask lines at
** its head, then one header after another by its first word until the
** next section, with the equipment and motion schedule headers here and
** the dispense and BIN headers in files of their own.
*/
#include "sections/appl_section.h"

#include "binfmt/writer.h"
#include "core/error_codes.h"
#include "sections/appl_internal.h"
#include "sections/appl_store.h"
#include "text/lexer.h"

namespace {

/* Value of a mask line's first word, 0 for a word that starts none. */
uint32_t mask_word_value(int32_t code) {
    switch (code) {
    case aw_arc: return 1;
    case aw_spot: return 2;
    case aw_pallet: return 8;
    case aw_handling: return 8;
    case aw_laser: return 16;
    case aw_dispense: return 32;
    case aw_paint: return 64;
    default: return 0;
    }
}

/* A mask word is also the first word of other headers (ARC Welding ...):
   only a ":" behind it makes the line a mask line. */
bool mask_line_ahead(scan_ctx *ctx) {
    token_rec tok;
    mark_tokens(ctx);
    next_token(ctx, &tok);
    next_token(ctx, &tok);
    rewind_tokens(ctx);
    return tok.code == aw_colon;
}

/* The mask lines: the last TRUE wins, FALSE leaves the mask as it is. */
int32_t parse_appl_header(scan_ctx *ctx) {
    token_rec tok;
    uint32_t mask = 0;
    bool any_true = false;
    for (;;) {
        peek_token(ctx, &tok);
        uint32_t value = mask_word_value(tok.code);
        if (value == 0 || !mask_line_ahead(ctx))
            break;
        next_token(ctx, &tok);
        next_token(ctx, &tok);
        accept_token(ctx, aw_colon);
        next_token(ctx, &tok);
        if (tok.code == aw_true) {
            mask = value;
            any_true = true;
        } else if (tok.code != aw_false) {
            return 1;
        }
        accept_token(ctx, aw_semicolon);
    }
    return any_true ? appl_make_muap(mask, ctx) : 0;
}

/* Words that must follow one another exactly. */
int32_t expect_words(scan_ctx *ctx, const int32_t *codes, int32_t count) {
    for (int32_t i = 0; i < count; i++)
        if (expect_token(ctx, static_cast<uint16_t>(codes[i])) != 0)
            return ASC_SYNTAX_ERROR;
    return 0;
}

/* ": n ;" with n in low..high. */
int32_t parse_number_tail(scan_ctx *ctx, int32_t low, int32_t high, int32_t *out) {
    token_rec tok;
    if (expect_token(ctx, aw_colon) != 0)
        return ASC_SYNTAX_ERROR;
    int32_t rc = parse_int_range(ctx, &tok, out, low, high);
    if (rc == 0)
        rc = expect_token(ctx, aw_semicolon);
    return rc;
}

int32_t muap_if_absent(uint32_t mask, scan_ctx *ctx) {
    return appl_image_has("MUAP") ? 0 : appl_make_muap(mask, ctx);
}

int32_t parse_spot_header(scan_ctx *ctx) {
    static const int32_t words[] = {aw_spot, aw_welding, aw_equipment, aw_number};
    int32_t number = 0;
    int32_t rc = expect_words(ctx, words, 4);
    if (rc == 0)
        rc = parse_number_tail(ctx, 1, 255, &number);
    if (rc == 0)
        rc = muap_if_absent(2, ctx);
    if (rc == 0)
        rc = appl_make_equipment("SPOT", number, ctx);
    if (rc == 0)
        set_spot_header_seen(1);
    return rc;
}

/* Four places, each 1 or "*", a "," between them optional; the places
   are the bits 1, 2, 4, 8 in the order written. */
int32_t parse_arc_places(scan_ctx *ctx, int32_t *bits) {
    token_rec tok;
    *bits = 0;
    for (int32_t place = 0; place < 4; place++) {
        next_token(ctx, &tok);
        if (tok.code == tok_integer) {
            if (tok.int_value != 1)
                return ASC_OUT_OF_RANGE;
            *bits |= 1 << place;
        } else if (tok.code != aw_star) {
            return ASC_SYNTAX_ERROR;
        }
        accept_token(ctx, aw_comma);
    }
    return expect_token(ctx, aw_semicolon);
}

int32_t parse_arc_header(scan_ctx *ctx) {
    static const int32_t words[] = {aw_arc, aw_welding, aw_equipment};
    int32_t rc = expect_words(ctx, words, 3);
    if (rc)
        return rc;
    token_rec tok;
    peek_token(ctx, &tok);
    int32_t value = 0;
    if (tok.code == aw_number) {
        next_token(ctx, &tok);
        rc = parse_number_tail(ctx, 1, 255, &value);
    } else if (expect_token(ctx, aw_colon) != 0) {
        rc = ASC_SYNTAX_ERROR;
    } else {
        rc = parse_arc_places(ctx, &value);
    }
    if (rc == 0)
        rc = muap_if_absent(1, ctx);
    return rc ? rc : appl_make_equipment("ARCW", value, ctx);
}

int32_t parse_analog_header(scan_ctx *ctx) {
    static const int32_t words[] = {aw_analog, aw_pro, aw_minus, aw_flo, aw_equipment, aw_number};
    int32_t number = 0;
    int32_t rc = expect_words(ctx, words, 6);
    if (rc == 0)
        rc = parse_number_tail(ctx, 1, 5, &number);
    return rc ? rc : appl_make_equipment("SLN1", number, ctx);
}

int32_t parse_smartfollow_header(scan_ctx *ctx) {
    static const int32_t words[] = {aw_smartfollow, aw_schedule, aw_number};
    int32_t number = 0;
    int32_t rc = expect_words(ctx, words, 3);
    if (rc == 0)
        rc = parse_number_tail(ctx, 1, 256, &number);
    return rc ? rc : appl_make_motion(number - 1, ctx);
}

/* ---- headers of families that plug in -------------------------------- */

appl_header_parser line_track_parser = nullptr;
appl_header_parser paint_process_parser = nullptr;
appl_header_parser paint_job_parser = nullptr;
appl_header_parser pallet_parser = nullptr;

int32_t parse_line_track_entry(scan_ctx *ctx) {
    if (line_track_parser == nullptr || line_track_parser(ctx) != 0)
        return ASC_SYNTAX_ERROR;
    program_tracked = 1;
    return 0;
}

int32_t parse_paint_process_entry(scan_ctx *ctx) {
    return paint_process_parser ? paint_process_parser(ctx) : ASC_SYNTAX_ERROR;
}

int32_t parse_paint_job_entry(scan_ctx *ctx) {
    return paint_job_parser ? paint_job_parser(ctx) : ASC_SYNTAX_ERROR;
}

/* A header no other entry takes is read as a pallet definition, which
   must start with PALLETIZING. */
int32_t parse_pallet_entry(scan_ctx *ctx) {
    if (pallet_parser)
        return pallet_parser(ctx);
    token_rec tok;
    next_token(ctx, &tok);
    return ASC_SYNTAX_ERROR2;
}

struct header_row {
    int32_t code;
    appl_header_parser parse;
};

const header_row header_rows[] = {
    {aw_line_track, parse_line_track_entry},
    {aw_spot, parse_spot_header},
    {aw_arc, parse_arc_header},
    {aw_analog, parse_analog_header},
    {aw_smartfollow, parse_smartfollow_header},
    {aw_smartfollow_schedule, parse_schedule_clause},
    {aw_paint_process, parse_paint_process_entry},
    {aw_paint_job, parse_paint_job_entry},
    {aw_bin, parse_bin_records},
    {aw_dispense_process, parse_dispense_process},
    {aw_dispense_job, parse_dispense_job},
};

appl_header_parser header_parser_of(int32_t code) {
    for (const header_row &row : header_rows)
        if (row.code == code)
            return row.parse;
    return parse_pallet_entry;
}

} // namespace

int32_t appl_set_header_parser(int32_t code, appl_header_parser parse) {
    switch (code) {
    case aw_line_track: line_track_parser = parse; return 0;
    case aw_paint_process: paint_process_parser = parse; return 0;
    case aw_paint_job: paint_job_parser = parse; return 0;
    default: return 1;
    }
}

void appl_set_pallet_parser(appl_header_parser parse) { pallet_parser = parse; }

int32_t parse_appl_section(scan_ctx *ctx) {
    int32_t rc = parse_appl_header(ctx);
    if (rc)
        return rc;
    token_rec tok;
    for (;;) {
        peek_token(ctx, &tok);
        if (tok.code == aw_slash)
            return 0;
        rc = header_parser_of(tok.code)(ctx);
        if (rc)
            return rc;
    }
}
