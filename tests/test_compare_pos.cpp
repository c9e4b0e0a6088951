// The compare of position records: framing, heads, the first group only,
// the tolerance of reals, configuration turns and letters.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/config.h"
#include "test_compare_util.h"

namespace {

using cmpt::bytes;
using cmpt::program_parts;

const char *const diff_at_0 = "Position Data Diff at 0\r\n";

std::string compare_positions(const std::vector<bytes> &left, const std::vector<bytes> &right) {
    program_parts l, r;
    l.positions = left;
    r.positions = right;
    cmpt::outcome o = cmpt::compare(l, r);
    EXPECT_EQ(o.result, 0);
    return o.report;
}

bytes cart(float x, std::initializer_list<int> turns = {0, 0, 0}, int flags = 0) {
    return cmpt::position(1, {cmpt::cartesian(1, {x, 2, 3, 4, 5, 6}, turns, flags)});
}

/* Keeps group 1's configuration mask as the test found it. */
class CompareTurns : public ::testing::Test {
  protected:
    void SetUp() override { saved_ = scr_grp[0].config_mask; }
    void TearDown() override { scr_grp[0].config_mask = saved_; }
    uint32_t saved_ = 0;
};

TEST(ComparePositions, CountsThatDifferStopThePositionCompare) {
    EXPECT_EQ(compare_positions({cart(1)}, {cart(9), cart(2)}), "The number of positions error\n\r\n");
}

TEST(ComparePositions, RealsPassWithinOneTenth) {
    struct row {
        float left, right;
        const char *report;
    };
    const row rows[] = {
        {1.0f, 1.05f, ""},
        {2.0f, 2.1f, ""}, // 0.0999999 apart as singles
        {2.1f, 2.0f, ""},
        {1.2f, 1.0f, "[difffloat]   1.20 <->   1.00\n\r\nPosition Data Diff at 0\r\n"},
        {-1.0f, -1.25f, "[difffloat]  -1.00 <->  -1.25\n\r\nPosition Data Diff at 0\r\n"},
        {1000.0f, 1000.125f, "[difffloat] 1000.00 <-> 1000.12\n\r\nPosition Data Diff at 0\r\n"},
    };
    for (const row &r : rows)
        EXPECT_EQ(compare_positions({cart(r.left)}, {cart(r.right)}), r.report) << r.left << " " << r.right;
}

TEST(ComparePositions, UnsetRealsAreEqualOnlyToUnsetOnes) {
    bytes unset = cart(0);
    bytes other = cart(0);
    for (int i = 0; i < 4; i++)
        unset[8 + i] = i == 0 ? 0x7F : 0xFF; // X of the first group
    EXPECT_EQ(compare_positions({unset}, {unset}), "");
    EXPECT_EQ(compare_positions({unset}, {other}), std::string("[difffloat]\r\n") + diff_at_0);
    EXPECT_EQ(compare_positions({other}, {unset}), std::string("[difffloat]\r\n") + diff_at_0);
}

TEST(ComparePositions, OnlyTheFirstGroupIsLookedAt) {
    bytes left = cmpt::position(1, {cmpt::joint(1, {1, 2, 3, 4, 5, 6}), cmpt::joint(2, {1})});
    bytes right = cmpt::position(1, {cmpt::joint(1, {1, 2, 3, 4, 5, 6}), cmpt::joint(2, {50})});
    EXPECT_EQ(compare_positions({left}, {right}), "");
    bytes changed = cmpt::position(1, {cmpt::joint(1, {1, 2, 3, 4, 5, 7}), cmpt::joint(2, {1})});
    EXPECT_EQ(compare_positions({left}, {changed}),
              std::string("[difffloat]   6.00 <->   7.00\n\r\n") + diff_at_0);
}

TEST(ComparePositions, EachHeadFaultHasItsReason) {
    struct row {
        const char *what;
        bytes left, right;
        const char *reason;
    };
    bytes j6 = cmpt::position(1, {cmpt::joint(1, {1, 2, 3, 4, 5, 6})});
    bytes commented = j6;
    commented[3] = 29;
    const row rows[] = {
        {"payload length", j6, cmpt::position(1, {cmpt::joint(1, {1, 2, 3, 4, 5})}), "Position Size Error"},
        {"number", j6, cmpt::position(2, {cmpt::joint(1, {1, 2, 3, 4, 5, 6})}),
         "Position ID, group mask or comment offset ERROR"},
        {"mask", j6, cmpt::position(1, {cmpt::joint(1, {1, 2, 3, 4, 5, 6})}, 3),
         "Position ID, group mask or comment offset ERROR"},
        {"comment offset", j6, commented, "Position ID, group mask or comment offset ERROR"},
        {"first group size", cmpt::position(1, {cmpt::joint(1, {1, 2, 3}), cmpt::joint(2, {1})}),
         cmpt::position(1, {cmpt::joint(1, {1}), cmpt::joint(2, {1, 2, 3})}), "Position Group 1 Size Error"},
        {"joint against Cartesian", cmpt::position(1, {cmpt::joint(1, {1, 2, 3, 4, 5, 6, 7})}), cart(1),
         "Position Representation Error 9<->2"},
        {"user frame", j6, cmpt::position(1, {cmpt::joint(1, {1, 2, 3, 4, 5, 6}, 2)}),
         "Position AxesNum, GNum or UT/UF Error"},
        {"group number", j6, cmpt::position(1, {cmpt::joint(2, {1, 2, 3, 4, 5, 6})}),
         "Position AxesNum, GNum or UT/UF Error"},
    };
    for (const row &r : rows)
        EXPECT_EQ(compare_positions({r.left}, {r.right}), std::string(r.reason) + "\r\n" + diff_at_0) << r.what;
}

TEST(ComparePositions, CartesianFormsTwoAndSixPassForEachOther) {
    bytes left = cart(1), right = cart(1);
    right[5] = 6;
    EXPECT_EQ(compare_positions({left}, {right}), "");
    right[5] = 0x16; // the high nibble of the form byte is not the form
    EXPECT_EQ(compare_positions({left}, {right}), "");
}

TEST(ComparePositions, UnsetRecordsAreEqualWhateverTheirNumbers) {
    EXPECT_EQ(compare_positions({cmpt::unset_position(1)}, {cmpt::unset_position(5)}), "");
    EXPECT_EQ(compare_positions({cmpt::unset_position(1)}, {cart(1)}),
              std::string("Position Size Error\r\n") + diff_at_0);
}

TEST(ComparePositions, SwappedRecordsDifferAtBothPlaces) {
    bytes p1 = cmpt::position(1, {cmpt::joint(1, {1})}), p2 = cmpt::position(2, {cmpt::joint(1, {1})});
    const char *reason = "Position ID, group mask or comment offset ERROR\r\n";
    EXPECT_EQ(compare_positions({p1, p2}, {p2, p1}),
              std::string(reason) + "Position Data Diff at 0\r\n" + reason + "Position Data Diff at 1\r\n");
}

TEST(ComparePositions, ExtendedAxesAreCompared) {
    bytes left = cmpt::position(1, {cmpt::cartesian(1, {1, 2, 3, 4, 5, 6}, {0, 0, 0}, 0, {10, 20})});
    bytes right = cmpt::position(1, {cmpt::cartesian(1, {1, 2, 3, 4, 5, 6}, {0, 0, 0}, 0, {10, 20.5f})});
    EXPECT_EQ(compare_positions({left}, {left}), "");
    EXPECT_EQ(compare_positions({left}, {right}), std::string("[difffloat]  20.00 <->  20.50\n\r\n") + diff_at_0);
}

TEST(ComparePositions, GroupRecordsClaimingMoreThanTheRecordHoldReadZeros) {
    // A joint group of 60 axes in a record of 12 bytes: the reals past the
    // record read as 0 on both sides.
    bytes left = {0, 1, 1, 0, 244, 9, 0x81, 1, 0x3F, 0x80, 0, 0};
    bytes right = left;
    EXPECT_EQ(compare_positions({left}, {right}), "");
    right[8] = 0x40;
    EXPECT_EQ(compare_positions({left}, {right}), std::string("[difffloat]   1.00 <->   4.00\n\r\n") + diff_at_0);
}

TEST_F(CompareTurns, TurnsCountWhereGroupOneHasThem) {
    scr_grp[0].config_mask = 0;
    EXPECT_EQ(compare_positions({cart(1, {0, 0, 0})}, {cart(1, {1, 2, 3})}), "");
    scr_grp[0].config_mask = 0x00000001u;
    EXPECT_EQ(compare_positions({cart(1, {0, 2, 3})}, {cart(1, {1, 0, 0})}),
              std::string("Config Turn4 Error\r\n") + diff_at_0);
    scr_grp[0].config_mask = 0x00000100u;
    EXPECT_EQ(compare_positions({cart(1, {0, 2, 3})}, {cart(1, {1, 2, 0})}), "");
    EXPECT_EQ(compare_positions({cart(1, {0, 2, 3})}, {cart(1, {0, 1, 3})}),
              std::string("Config Turn5 Error\r\n") + diff_at_0);
    scr_grp[0].config_mask = 0x00020000u;
    EXPECT_EQ(compare_positions({cart(1, {0, 0, 3})}, {cart(1, {0, 0, -1})}),
              std::string("Config Turn6 Error\r\n") + diff_at_0);
}

TEST_F(CompareTurns, FlagLettersCountAndTheLowBitsDoNot) {
    scr_grp[0].config_mask = 0;
    EXPECT_EQ(compare_positions({cart(1, {0, 0, 0}, 0xA0)}, {cart(1, {0, 0, 0}, 0xA7)}), "");
    EXPECT_EQ(compare_positions({cart(1, {0, 0, 0}, 0xA0)}, {cart(1, {0, 0, 0}, 0x20)}),
              std::string("Diff config\r\n") + diff_at_0);
}

} // namespace
