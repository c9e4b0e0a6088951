/*
** compare_pos.cpp - position records, pair by pair in file order: framing
** and head bytes exactly, the first group record by its form, and reals
** with a tolerance of 0.1.
*/
#include <cstdio>
#include <cstring>

#include "core/config.h"
#include "text/decode_tables.h"
#include "text/put_line.h"
#include "utils/compare.h"

namespace {

constexpr double real_tolerance = 0.1;
constexpr int32_t group_at = 6;      /* first group record, behind length, number, mask, K */
constexpr int32_t reals_at = 4;      /* in a group record */
constexpr int32_t turns_at = 28;
constexpr int32_t flags_at = 31;
constexpr int32_t cartesian_reals = 6;
constexpr int32_t cartesian_words = 7; /* six reals and the configuration word */
constexpr uint8_t flag_letters = 0xF0;

/* A record read with its bounds: bytes past them read as 0. */
struct record_view {
    const uint8_t *bytes;
    int32_t size;
};

uint8_t view_byte(record_view v, int32_t i) { return (i >= 0 && i < v.size) ? v.bytes[i] : 0; }

void view_word(record_view v, int32_t at, uint8_t out[4]) {
    for (int32_t i = 0; i < 4; i++)
        out[i] = view_byte(v, at + i);
}

bool real_differs(record_view l, record_view r, int32_t at) {
    uint8_t a[4], b[4];
    view_word(l, at, a);
    view_word(r, at, b);
    return difffloat(a, b) != 0;
}

/* count reals from at on; stops at the first that differs. */
int32_t reals_differ(record_view l, record_view r, int32_t at, int32_t count) {
    for (int32_t i = 0; i < count; i++)
        if (real_differs(l, r, at + 4 * i))
            return 1;
    return 0;
}

int32_t fail(const char *reason) {
    put_line(reason);
    return 1;
}

/* A turn number counts only where group 1's configuration has it. */
bool turn_configured(int32_t turn) { return ((scr_grp[0].config_mask >> (8 * turn)) & 0xFF) != 0; }

int32_t compare_cartesian(record_view l, record_view r, int32_t g, int32_t count) {
    if (reals_differ(l, r, g + reals_at, cartesian_reals))
        return 1;
    static const char *const turn_errors[3] = {"Config Turn4 Error", "Config Turn5 Error",
                                               "Config Turn6 Error"};
    for (int32_t t = 0; t < 3; t++)
        if (turn_configured(t) && view_byte(l, g + turns_at + t) != view_byte(r, g + turns_at + t))
            return fail(turn_errors[t]);
    if ((view_byte(l, g + flags_at) & flag_letters) != (view_byte(r, g + flags_at) & flag_letters))
        return fail("Diff config");
    return reals_differ(l, r, g + reals_at + 4 * cartesian_words, count - cartesian_words);
}

bool is_joint(int32_t form) { return form == 0 || form == 9; }
bool is_cartesian(int32_t form) { return form == 2 || form == 6; }

} // namespace

int32_t difffloat(const uint8_t *left, const uint8_t *right) {
    bool left_unset = std::memcmp(left, "\x7F\xFF\xFF\xFF", 4) == 0;
    bool right_unset = std::memcmp(right, "\x7F\xFF\xFF\xFF", 4) == 0;
    if (left_unset && right_unset)
        return 0;
    if (left_unset || right_unset) {
        put_line("[difffloat]");
        return 1;
    }
    float a, b;
    uint32_t ua = (static_cast<uint32_t>(left[0]) << 24) | (left[1] << 16) | (left[2] << 8) | left[3];
    uint32_t ub = (static_cast<uint32_t>(right[0]) << 24) | (right[1] << 16) | (right[2] << 8) | right[3];
    std::memcpy(&a, &ua, 4);
    std::memcpy(&b, &ub, 4);
    double d = static_cast<double>(a) - static_cast<double>(b);
    if (d >= -real_tolerance && d <= real_tolerance)
        return 0;
    char line[128];
    std::snprintf(line, sizeof line, "[difffloat] %6.2f <-> %6.2f\n", static_cast<double>(a),
                  static_cast<double>(b));
    put_line(line);
    return 1;
}

int32_t compare_position(const uint8_t *left, int32_t left_size, const uint8_t *right,
                         int32_t right_size) {
    record_view l = {left, left_size}, r = {right, right_size};
    int32_t length = (view_byte(l, 0) << 8) | view_byte(l, 1);
    if (length != ((view_byte(r, 0) << 8) | view_byte(r, 1)))
        return fail("Position Size Error");
    if (length == TP_END_MARK || length == TP_POS_UNINIT_LENGTH)
        return 0;
    for (int32_t i = 2; i < group_at; i++)
        if (view_byte(l, i) != view_byte(r, i))
            return fail("Position ID, group mask or comment offset ERROR");
    const int32_t g = group_at;
    if (view_byte(l, g) != view_byte(r, g)) {
        char line[64];
        std::snprintf(line, sizeof line, "Position Group %d Size Error", 1);
        return fail(line);
    }
    int32_t lform = view_byte(l, g + 1) & 15, rform = view_byte(r, g + 1) & 15;
    if (lform != rform && !(is_cartesian(lform) && is_cartesian(rform))) {
        char line[64];
        std::snprintf(line, sizeof line, "Position Representation Error %d<->%d", lform, rform);
        return fail(line);
    }
    if (view_byte(l, g + 2) != view_byte(r, g + 2) || view_byte(l, g + 3) != view_byte(r, g + 3))
        return fail("Position AxesNum, GNum or UT/UF Error");
    int32_t count = (view_byte(l, g) - reals_at) / 4;
    if (is_joint(lform))
        return reals_differ(l, r, g + reals_at, count);
    if (is_cartesian(lform))
        return compare_cartesian(l, r, g, count);
    return 0;
}

void compare_positions() {
    if (pos_count[0] != pos_count[1]) {
        put_line("The number of positions error\n");
        return;
    }
    for (int32_t i = 0; i < pos_count[0]; i++) {
        const uint8_t *left = pos_records[0][i];
        const uint8_t *right = pos_records[1][i];
        if (compare_position(left, record_length(left) + 2, right, record_length(right) + 2) == 0)
            continue;
        cur_side = 0;
        char line[64];
        std::snprintf(line, sizeof line, "Position Data Diff at %d", i);
        put_line(line);
    }
}
