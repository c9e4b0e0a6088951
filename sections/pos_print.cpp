/*
** pos_print.cpp - position records as listing text. A record holds a
** number, a group mask, a comment offset and one group record per group;
** each group record prints in the joint or the Cartesian form. Reads stay
** inside the record whatever its bytes claim.
**
** Motion lines look records up by number while /MN prints, so that /POS,
** printed afterwards, shows only what was used. The first record of a
** number wins; a table from number to record index makes each lookup
** constant time however many positions a program holds.
*/
#include "sections/pos_print.h"

#include <cstdio>
#include <cstring>

#include "core/config.h"
#include "core/dictionary.h"
#include "sections/pos_section.h"
#include "text/decode_helpers.h"
#include "text/decode_tables.h"
#include "text/line_cursor.h"
#include "text/put_line.h"

namespace {

enum : int32_t {
    w_p = 5, w_deg = 71, w_mm = 74, w_equal = 82, w_star = 89, w_colon = 120, w_comma = 121,
    w_quote = 123, w_lbracket = 124, w_lbrace = 125, w_rbracket = 129, w_rbrace = 130,
    w_semicolon = 132, w_apostrophe = 133, w_gp = 143, w_config = 180, w_slash = 80,
    w_pos = 198, w_uf = 199, w_ut = 200, w_x = 300,
};

constexpr float rad_to_deg = 57.29583f;
constexpr int32_t text_size = LINE_TEXT_SIZE;
constexpr const char *invalid_data_line = "Error: Invalid position data in .TP file\n";
constexpr const char *ext_mismatch_line = "Warning: Extended axes mismatch in .TP file\n";

/* Bytes that may be read, from p on. */
struct rec_view {
    const uint8_t *p;
    int32_t len;
};

uint8_t view_byte(rec_view v, int32_t i) { return (i >= 0 && i < v.len) ? v.p[i] : 0; }

uint32_t view_bits(rec_view v, int32_t i) {
    return static_cast<uint32_t>(view_byte(v, i)) << 24 | static_cast<uint32_t>(view_byte(v, i + 1)) << 16 |
           static_cast<uint32_t>(view_byte(v, i + 2)) << 8 | view_byte(v, i + 3);
}

float bits_real(uint32_t bits) {
    float f;
    std::memcpy(&f, &bits, sizeof f);
    return f;
}

uint32_t real_bits(float f) {
    uint32_t bits;
    std::memcpy(&bits, &f, sizeof bits);
    return bits;
}

bool is_unset(uint32_t bits) { return bits == TP_REAL_UNSET; }

void format_real(uint32_t bits, char *out, size_t size) {
    if (is_unset(bits))
        std::snprintf(out, size, "%s%s%s", dict_word(w_star), "uninit", dict_word(w_star));
    else
        std::snprintf(out, size, "%8.3f", static_cast<double>(bits_real(bits)));
}

void format_real_width(uint32_t bits, int32_t width, char *out, size_t size) {
    char plain[64];
    format_real(bits, plain, sizeof plain);
    int32_t pad = is_unset(bits) ? 0 : width - static_cast<int32_t>(std::strlen(plain));
    std::snprintf(out, size, "%*s%s", pad > 0 ? pad : 0, "", plain);
}

const scr_group *group_of(int32_t group) {
    return (group >= 1 && group <= MAX_GROUPS) ? &scr_grp[group - 1] : nullptr;
}

bool axis_linear(int32_t group, int32_t axis) {
    if (group < 1 || group > MAX_GROUPS || axis < 0 || axis >= MAX_GROUP_AXES)
        return false;
    return axis_is_linear[group - 1][axis] != 0;
}

/* The letters and turn numbers of a configuration, by the group's mask. */
void format_config(rec_view grp, uint32_t mask, char *out, size_t size) {
    static const char letters[4][2] = {{'F', 'N'}, {'L', 'R'}, {'U', 'D'}, {'T', 'B'}};
    uint8_t flags = view_byte(grp, 31);
    out[0] = 0;
    for (int32_t i = 0; i < 4; i++) {
        if (!(mask & (1u << (31 - i))))
            continue;
        bool set = flags & (0x80 >> i);
        text_appendf(out, size, "%s%c", out[0] ? " " : "", set ? letters[i][0] : letters[i][1]);
    }
    uint32_t field[3] = {mask & 0xFF, (mask >> 8) & 0xFF, (mask >> 16) & 0xFF};
    if (!(field[0] | field[1] | field[2]))
        return;
    const char *comma = dict_word(w_comma);
    text_appendf(out, size, "%s ", comma);
    if (field[0])
        text_appendf(out, size, "%d", static_cast<int8_t>(view_byte(grp, 28)));
    if (!(field[1] | field[2]))
        return;
    text_appendf(out, size, "%s ", comma);
    if (field[1])
        text_appendf(out, size, "%d", static_cast<int8_t>(view_byte(grp, 29)));
    if (field[2])
        text_appendf(out, size, "%s %d", comma, static_cast<int8_t>(view_byte(grp, 30)));
}

void print_group_head(int32_t group) {
    char line[text_size];
    if (group < 1)
        std::snprintf(line, sizeof line, "   %s%s%s", dict_word(w_gp), dict_word(w_star), dict_word(w_colon));
    else
        std::snprintf(line, sizeof line, "   %s%d%s", dict_word(w_gp), group, dict_word(w_colon));
    put_line(line);
}

void frames_text(rec_view grp, char *out, size_t size) {
    uint8_t frames = view_byte(grp, 3);
    std::snprintf(out, size, "        %s %s %X%s %s %s %X%s", dict_word(w_uf), dict_word(w_colon), frames >> 4,
                  dict_word(w_comma), dict_word(w_ut), dict_word(w_colon), frames & 15, dict_word(w_comma));
}

/* Axis values "  J1= value deg," three to a row; the first row may start
   with six blanks. first_value is the offset of axis 1 in the record. */
void print_axis_rows(rec_view grp, int32_t group, const char *letter, const char *format, int32_t count,
                     int32_t first_axis, int32_t first_value, bool lead) {
    char row[text_size];
    std::snprintf(row, sizeof row, "%s", lead ? "      " : "");
    for (int32_t n = 1; n <= count; n++) {
        uint32_t bits = view_bits(grp, first_value + 4 * (n - 1));
        bool linear = axis_linear(group, first_axis + n - 1);
        if (!linear && !is_unset(bits))
            bits = real_bits(bits_real(bits) * rad_to_deg);
        char value[64];
        format_real(bits, value, sizeof value);
        text_appendf(row, sizeof row, format, letter, n, dict_word(w_equal), value,
                     dict_word(linear ? w_mm : w_deg));
        if (n == count) {
            put_line(row);
            return;
        }
        text_append(row, sizeof row, dict_word(w_comma));
        if (n % 3 == 0) {
            put_line(row);
            row[0] = 0;
        }
    }
}

void print_joint(rec_view grp, int32_t group) {
    char line[text_size];
    print_group_head(group);
    frames_text(grp, line, sizeof line);
    put_line(line);
    int32_t axes = view_byte(grp, 2) >> 3;
    print_axis_rows(grp, group, "J", "  %s%d%s %s %s", axes, 0, 4, true);
}

/* The X, Y, Z row and the W, P, R row. */
void print_six_values(const uint32_t bits[6], bool r_mode, bool more) {
    char v[6][80]; /* room for the widest float (3.4e38) and its padding */
    for (int32_t i = 0; i < 6; i++)
        format_real_width(bits[i], 9, v[i], sizeof v[i]);
    const char *eq = dict_word(w_equal), *comma = dict_word(w_comma);
    const char *mm = dict_word(w_mm), *deg = dict_word(w_deg);
    const char *r = r_mode ? "R" : "";
    char line[text_size];
    std::snprintf(line, sizeof line, "        %s%s %s %s  %s%s  %s%s %s %s  %s%s  %s%s %s %s  %s%s", r,
                  dict_word(w_x), eq, v[0], mm, comma, r, dict_word(w_x + 1), eq, v[1], mm, comma, r,
                  dict_word(w_x + 2), eq, v[2], mm, comma);
    put_line(line);
    std::snprintf(line, sizeof line, "        %s%s %s %s %s%s  %s%s %s %s %s%s  %s%s %s %s %s", r,
                  dict_word(w_x + 3), eq, v[3], deg, comma, r, dict_word(w_x + 4), eq, v[4], deg, comma, r,
                  dict_word(w_x + 5), eq, v[5], deg);
    if (more)
        text_append(line, sizeof line, comma);
    put_line(line);
}

void print_cartesian(rec_view grp, int32_t group) {
    char line[text_size];
    print_group_head(group);
    int32_t size = view_byte(grp, 0);
    int32_t ext = view_byte(grp, 2) >> 3;
    if (ext > 3)
        ext = 0;
    if (4 * ext + 32 != size) {
        put_line(ext_mismatch_line);
        ext = (size - 32) / 4;
    }
    const scr_group *g = group_of(group);
    uint32_t mask = g ? g->config_mask : 0;
    char config[128];
    format_config(grp, mask, config, sizeof config);
    frames_text(grp, line, sizeof line);
    const char *quote = dict_word(w_apostrophe);
    text_appendf(line, sizeof line, "           %s %s %s%s%s%s", dict_word(w_config), dict_word(w_colon), quote,
                 config, quote, dict_word(w_comma));
    put_line(line);
    uint32_t bits[6];
    for (int32_t i = 0; i < 6; i++)
        bits[i] = view_bits(grp, 4 + 4 * i);
    bool r_mode = control_r_mode != 0;
    if (r_mode) {
        float values[6];
        for (int32_t i = 0; i < 6; i++)
            values[i] = bits_real(bits[i]);
        position_invert(values);
        for (int32_t i = 0; i < 6; i++)
            bits[i] = real_bits(values[i]);
    }
    print_six_values(bits, r_mode, ext > 0);
    if (ext > 0)
        print_axis_rows(grp, group, "E", "  %s%d%s %s %3s", ext, g ? g->num_rob_axes : 0, 32, false);
}

void print_unset_body() {
    const char *eq = dict_word(w_equal), *colon = dict_word(w_colon), *comma = dict_word(w_comma);
    const char *mm = dict_word(w_mm), *deg = dict_word(w_deg);
    const char *quote = dict_word(w_apostrophe);
    const char *r = control_r_mode ? "R" : "";
    char line[text_size];
    print_group_head(0);
    std::snprintf(line, sizeof line, "        %s %s %c, %s %s %c,             %s %s %s%s%s%s", dict_word(w_uf), colon,
                  'F', dict_word(w_ut), colon, 'F', dict_word(w_config), colon, quote, "*uninit*", quote, comma);
    put_line(line);
    /* The R form of the first row has one blank less in front. */
    std::snprintf(line, sizeof line, "%s%s%s %s *uninit*  %s,  %s%s %s *uninit*  %s,  %s%s %s *uninit*  %s,",
                  control_r_mode ? "       " : "        ", r, dict_word(w_x), eq, mm, r, dict_word(w_x + 1), eq, mm,
                  r, dict_word(w_x + 2), eq, mm);
    put_line(line);
    std::snprintf(line, sizeof line, "        %s%s %s *uninit* %s,  %s%s %s *uninit* %s,  %s%s %s *uninit* %s", r,
                  dict_word(w_x + 3), eq, deg, r, dict_word(w_x + 4), eq, deg, r, dict_word(w_x + 5), eq, deg);
    put_line(line);
}

void print_position_head(int32_t number, const char *comment) {
    char line[text_size];
    if (comment == nullptr)
        std::snprintf(line, sizeof line, "%s%s%d%s%s", dict_word(w_p), dict_word(w_lbracket), number,
                      dict_word(w_rbracket), dict_word(w_lbrace));
    else
        std::snprintf(line, sizeof line, "%s%s%d %s %s%s%s%s %s", dict_word(w_p), dict_word(w_lbracket), number,
                      dict_word(w_colon), dict_word(w_quote), comment, dict_word(w_quote), dict_word(w_rbracket),
                      dict_word(w_lbrace));
    put_line(line);
}

void print_closing() {
    char line[16];
    std::snprintf(line, sizeof line, "%s%s", dict_word(w_rbrace), dict_word(w_semicolon));
    put_line(line);
}

/* The comment of a record (with its length bytes), copied up to a zero at
   an odd place of its field; false when it has none. */
bool record_comment(const uint8_t *record, char *out, size_t size) {
    int32_t total = record_length(record) + 2;
    out[0] = 0;
    if (total - 2 == TP_POS_UNINIT_LENGTH)
        return false;
    int32_t k = total > 5 ? record[5] : 0;
    if (k == 0)
        return false;
    int32_t at = 5 + k;
    size_t n = 0;
    for (int32_t i = 0; at + i < total && n + 1 < size; i++) {
        uint8_t c = record[at + i];
        if (c == 0 && (i & 1))
            break;
        out[n++] = static_cast<char>(c);
    }
    out[n] = 0;
    return true;
}

/* Loaded records carry guard bytes behind their payload; a caller's
   record is read only as far as its length says. */
int32_t record_number(const uint8_t *record) {
    return record_length(record) >= 2 ? (record[2] << 8 | record[3]) : 0;
}

/* ---- the number index ---------------------------------------------------- */

/* Per side: record index plus 1 of each number's first record, 0 none.
   The key tells the load it was built from; a load at the same addresses
   is told apart by the numbers at both ends and in the middle. */
struct number_index {
    int32_t first[65536];
    uint8_t **records;
    int32_t count;
    int32_t probe[3];
    bool built;
};

number_index indexes[DECODE_SIDES];

void probe_numbers(int32_t side, int32_t out[3]) {
    int32_t n = pos_count[side];
    int32_t at[3] = {0, n / 2, n - 1};
    for (int32_t i = 0; i < 3; i++) {
        const uint8_t *rec = (n > 0 && pos_records[side]) ? pos_records[side][at[i]] : nullptr;
        out[i] = rec ? record_number(rec) : -1;
    }
}

number_index *index_of_side(int32_t side) {
    if (side < 0 || side >= DECODE_SIDES)
        return nullptr;
    number_index &ix = indexes[side];
    int32_t probe[3];
    probe_numbers(side, probe);
    bool same = ix.built && ix.records == pos_records[side] && ix.count == pos_count[side] &&
                std::memcmp(ix.probe, probe, sizeof probe) == 0;
    if (same)
        return &ix;
    std::memset(ix.first, 0, sizeof ix.first);
    ix.records = pos_records[side];
    ix.count = pos_count[side];
    std::memcpy(ix.probe, probe, sizeof probe);
    ix.built = true;
    for (int32_t i = 0; ix.records && i < ix.count; i++) {
        if (!ix.records[i])
            continue;
        int32_t number = record_number(ix.records[i]);
        if (ix.first[number] == 0)
            ix.first[number] = i + 1;
    }
    return &ix;
}

} // namespace

void position_index_reset() {
    for (number_index &ix : indexes)
        ix.built = false;
}

int32_t find_position(int32_t number) {
    if (number < 0 || number > 0xFFFF)
        return -1;
    number_index *ix = index_of_side(cur_side);
    if (!ix || !ix->records)
        return -1;
    int32_t at = ix->first[number] - 1;
    if (at < 0 || at >= pos_count[cur_side] || !pos_records[cur_side][at] ||
        record_number(pos_records[cur_side][at]) != number) {
        /* Stale after all: build again from what is loaded now. */
        ix->built = false;
        ix = index_of_side(cur_side);
        at = ix->first[number] - 1;
    }
    return at;
}

int32_t mark_position_used(int32_t number) {
    int32_t at = find_position(number);
    if (at < 0 || !pos_used[cur_side])
        return 1;
    pos_used[cur_side][at] = 1;
    return 0;
}

const uint8_t *position_comment(int32_t number) {
    int32_t at = find_position(number);
    if (at < 0 || !pos_comments[cur_side])
        return nullptr;
    return pos_comments[cur_side][at];
}

int32_t position_comment_text(int32_t number, char *out, size_t size) {
    if (size == 0)
        return 0;
    out[0] = 0;
    int32_t at = find_position(number);
    if (at < 0 || !pos_comments[cur_side] || !pos_comments[cur_side][at])
        return 0;
    return record_comment(pos_records[cur_side][at], out, size) ? 1 : 0;
}

void intppos(const uint8_t *grp, int32_t avail) {
    rec_view v = {grp, avail > 0 ? avail : 0};
    int32_t group = view_byte(v, 2) & 7;
    switch (view_byte(v, 1) & 15) {
    case POS_FORM_JOINT_OLD:
    case POS_FORM_JOINT:
        print_joint(v, group);
        break;
    case POS_FORM_CARTESIAN:
    case POS_FORM_CARTESIAN_EXT:
        print_cartesian(v, group);
        break;
    default:
        break;
    }
}

int32_t print_pos_section() {
    char line[32];
    std::snprintf(line, sizeof line, "%s%s", dict_word(w_slash), dict_word(w_pos));
    put_line(line);
    int32_t s = cur_side;
    for (int32_t i = 0; i < pos_count[s]; i++) {
        const uint8_t *rec = pos_records[s] ? pos_records[s][i] : nullptr;
        if (!rec || !pos_used[s] || !pos_used[s][i])
            continue;
        int32_t length = record_length(rec);
        int32_t number = record_number(rec);
        if (length == TP_POS_UNINIT_LENGTH) {
            print_position_head(number, nullptr);
            print_unset_body();
            print_closing();
            continue;
        }
        char comment[text_size];
        bool has = record_comment(rec, comment, sizeof comment);
        print_position_head(number, has ? comment : nullptr);
        /* Groups print in group order, whatever their order in the file. */
        const uint8_t *by_group[MAX_GROUPS + 1] = {};
        int32_t avail_of[MAX_GROUPS + 1] = {};
        int32_t mask = length > 2 ? rec[4] : 0;
        int32_t left = length - 4;
        int32_t at = 6;
        for (int32_t bit = 0; bit <= 5; bit++) {
            if (!(mask & (1 << bit)))
                continue;
            if (left < 1) {
                put_line(invalid_data_line);
                break;
            }
            int32_t group = (at + 2 < length + 2) ? (rec[at + 2] & 7) : 0;
            if (group >= 1 && group <= MAX_GROUPS) {
                by_group[group] = rec + at;
                avail_of[group] = length + 2 - at;
            }
            int32_t size = rec[at];
            at += size;
            left -= size;
            if (at > length + 2) {
                left = 0;
                at = length + 2;
            }
        }
        for (int32_t g = 1; g <= MAX_GROUPS; g++)
            if (by_group[g])
                intppos(by_group[g], avail_of[g]);
        print_closing();
    }
    /* The next load may sit at the same addresses: start its index afresh. */
    position_index_reset();
    return 0;
}

void print_position_record(const uint8_t *record) {
    int32_t length = record_length(record);
    int32_t number = record_number(record);
    if (length == TP_POS_UNINIT_LENGTH) {
        print_position_head(number, nullptr);
        print_unset_body();
        print_closing();
        print_closing();
        return;
    }
    char comment[text_size];
    bool has = record_comment(record, comment, sizeof comment);
    print_position_head(number, has ? comment : nullptr);
    int32_t mask = length > 2 ? record[4] : 0;
    int32_t left = length - 4;
    int32_t at = 6;
    for (int32_t bit = 1; bit <= 32 && (mask & bit); bit <<= 1) {
        if (left < 1) {
            put_line(invalid_data_line);
            break;
        }
        int32_t avail = length + 2 - at;
        intppos(record + at, avail);
        trace("Exit intppos\n");
        int32_t size = avail > 0 ? record[at] : 0;
        at += size;
        left -= size;
    }
    trace("Exit pos loop\n");
    print_closing();
}
