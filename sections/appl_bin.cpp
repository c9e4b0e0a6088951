/*
** appl_bin.cpp - BIN[...] in /APPL: a group written as hex bytes, for
** labels that have no text of their own. Records are separated by ":",
** the first one is the group's label record; "," only separates chunks of
** digits, and a digit left over from a chunk pairs with the next one.
*/
#include <cstdint>

#include "binfmt/tp_format.h"
#include "core/error_codes.h"
#include "sections/appl_internal.h"
#include "sections/appl_store.h"
#include "text/lexer.h"

namespace {

struct bin_state {
    uint8_t record[TP_APPL_RECORD_MAX];
    int32_t length;  /* bytes of the record so far */
    int32_t pending; /* a digit waiting for its partner, or -1 */
    int32_t group;   /* -1 until the label record made the group */
    int32_t next;    /* number of the next record of the group */
};

int32_t hex_value(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

/* Each pair of digits gives a byte; the last digit of an odd count waits. */
int32_t take_digits(bin_state *st, const char *text) {
    for (const char *p = text; *p; p++) {
        int32_t digit = hex_value(*p);
        if (digit < 0)
            return ASC_SYNTAX_ERROR;
        if (st->pending < 0) {
            st->pending = digit;
            continue;
        }
        if (st->length >= TP_APPL_RECORD_MAX)
            return ASC_OUT_OF_RANGE;
        st->record[st->length++] = static_cast<uint8_t>(st->pending * 16 + digit);
        st->pending = -1;
    }
    return 0;
}

/* The bytes collected so far form a record: the first one opens the
   group, the others follow it. */
int32_t close_record(bin_state *st, scan_ctx *ctx) {
    int32_t rc;
    if (st->group < 0)
        rc = appl_new_group(st->record, st->length, ctx, &st->group);
    else
        rc = appl_add_record(st->group, st->next++, st->record, st->length);
    st->length = 0;
    return rc;
}

} // namespace

int32_t parse_bin_records(scan_ctx *ctx) {
    accept_token(ctx, aw_bin);
    accept_token(ctx, aw_lbracket);
    bin_state st;
    st.length = 0;
    st.pending = -1;
    st.group = -1;
    st.next = 1;
    token_rec tok;
    for (;;) {
        next_token(ctx, &tok);
        int32_t rc = 0;
        if (tok.code == aw_comma)
            continue;
        if (tok.code == aw_colon || tok.code == aw_rbracket)
            rc = close_record(&st, ctx);
        else if (tok.code == tok_eof || tok.code == tok_real)
            rc = ASC_SYNTAX_ERROR; /* a real keeps no text to take digits from */
        else
            rc = take_digits(&st, tok.text);
        if (rc)
            return rc;
        if (tok.code == aw_rbracket)
            break;
    }
    /* A digit without its partner cannot make a byte. */
    if (st.pending >= 0)
        return ASC_SYNTAX_ERROR;
    return expect_token(ctx, aw_semicolon);
}
