// The compare of application groups, matched by label, and of daughters,
// paired by the P-SPS references of equal lines.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_compare_util.h"

namespace {

using cmpt::bytes;
using cmpt::program_parts;
using rec = tp::appl_record;

std::string compare_appl(const std::vector<rec> &left, const std::vector<rec> &right) {
    program_parts l, r;
    l.appl = left;
    r.appl = right;
    cmpt::outcome o = cmpt::compare(l, r);
    EXPECT_EQ(o.result, 0);
    return o.report;
}

bytes counted(int n, int first = 1) {
    bytes b;
    for (int i = 0; i < n; i++)
        b.push_back(static_cast<uint8_t>(first + i));
    return b;
}

std::string hex_line(const bytes &b) {
    std::string s;
    char cell[4];
    for (uint8_t v : b) {
        std::snprintf(cell, sizeof cell, "%02x ", v);
        s += cell;
    }
    return s + "\r\n";
}

TEST(CompareAppl, OtherLabelsCompareThreeBytesThenNinetyTwoFromTheFifth) {
    struct row {
        int changed; // data byte changed on the right
        bool reported;
    };
    const row rows[] = {{0, true}, {2, true}, {3, false}, {4, true}, {95, true}, {96, false}, {99, false}};
    bytes data = counted(100);
    for (const row &r : rows) {
        bytes other = data;
        other[static_cast<size_t>(r.changed)] ^= 0x40;
        std::string report = compare_appl({{0, 1, data}, {0, 0, cmpt::label("SPOT", 1)}},
                                          {{0, 1, other}, {0, 0, cmpt::label("SPOT", 1)}});
        std::string expect = r.reported ? "Index 0 , 1 , Label = SPOT\r\n" + hex_line(data) + hex_line(other) : "";
        EXPECT_EQ(report, expect) << "byte " << r.changed;
    }
}

TEST(CompareAppl, ShortRecordsCompareAsIfPaddedWithZeros) {
    EXPECT_EQ(compare_appl({{0, 1, {1, 2}}, {0, 0, cmpt::label("MOTN")}}, {{0, 1, {1, 2, 0, 0, 0}}, {0, 0, cmpt::label("MOTN")}}),
              "");
    EXPECT_EQ(compare_appl({{0, 1, {1, 2}}, {0, 0, cmpt::label("MOTN")}}, {{0, 1, {1, 2, 0, 0, 5}}, {0, 0, cmpt::label("MOTN")}}),
              "Index 0 , 1 , Label = MOTN\r\n01 02 \r\n01 02 00 00 05 \r\n");
}

TEST(CompareAppl, GroupsAreMatchedByLabelNotByNumber) {
    std::vector<rec> left = {{1, 1, {7}}, {1, 0, cmpt::label("SLPR")}, {0, 0, cmpt::label("MUAP")}};
    std::vector<rec> right = {{1, 0, cmpt::label("MUAP")}, {0, 1, {7}}, {0, 0, cmpt::label("SLPR")}};
    EXPECT_EQ(compare_appl(left, right), "");
    right[1].data = {8};
    EXPECT_EQ(compare_appl(left, right), "Index 1 , 1 , Label = SLPR\r\n07 \r\n08 \r\n");
}

TEST(CompareAppl, TheSideWithMoreTypesIsTheBase) {
    std::vector<rec> small = {{0, 0, cmpt::label("SPOT", 1)}};
    std::vector<rec> large = {{1, 0, cmpt::label("SLJB")}, {0, 0, cmpt::label("SPOT", 1)}};
    EXPECT_EQ(compare_appl(large, small), "Appl Block1 Not Found Index 1 , Label = SLJB\r\n");
    EXPECT_EQ(compare_appl(small, large), "Appl Block0 Not Found Index 1 , Label = SLJB\r\n");
}

TEST(CompareAppl, SomeLabelsAreNeverMissed) {
    const char *const quiet[] = {"LNTK", "LANG", "ARCW", "PLRI"};
    std::vector<rec> small = {{0, 0, cmpt::label("SPOT", 1)}};
    for (const char *label : quiet) {
        std::vector<rec> large = {{1, 0, cmpt::label(label, 1)}, {0, 0, cmpt::label("SPOT", 1)}};
        EXPECT_EQ(compare_appl(large, small), "") << label;
    }
    // The mask of applications counts only when the right side lacks it.
    std::vector<rec> with_mask = {{1, 0, cmpt::label("MUAP")}, {0, 0, cmpt::label("SPOT", 1)}};
    EXPECT_EQ(compare_appl(with_mask, small), "Appl Block1 Not Found Index 1 , Label = MUAP\r\n");
    EXPECT_EQ(compare_appl(small, with_mask), "");
}

TEST(CompareAppl, MissingRecordsAreNamedBySide) {
    std::vector<rec> three = {{0, 2, {2}}, {0, 1, {1}}, {0, 0, cmpt::label("SPOT", 1)}};
    std::vector<rec> two = {{0, 1, {1}}, {0, 0, cmpt::label("SPOT", 1)}};
    EXPECT_EQ(compare_appl(three, two), "Could not find Appl1 Index 0 , 2\r\n");
    EXPECT_EQ(compare_appl(two, three), "Could not find Appl0 Index 0 , 2\r\n");
    // A gap on both sides is missing on both.
    std::vector<rec> gap = {{0, 2, {2}}, {0, 0, cmpt::label("SPOT", 1)}};
    EXPECT_EQ(compare_appl(gap, gap), "Could not find Appl0 Index 0 , 1\r\nCould not find Appl1 Index 0 , 1\r\n");
}

TEST(CompareAppl, LabelsAreComparedOverTheirOwnLengths) {
    // MOTN on four bytes: another fifth byte is the same group.
    EXPECT_EQ(compare_appl({{0, 0, cmpt::label("MOTN", 1)}}, {{0, 0, cmpt::label("MOTN", 2)}}), "");
    // Other labels on five: the number byte tells groups apart.
    EXPECT_EQ(compare_appl({{0, 0, cmpt::label("SPOT", 1)}}, {{0, 0, cmpt::label("SPOT", 2)}}),
              "Appl Block1 Not Found Index 0 , Label = SPOT\r\n");
    // CCBD and its kin on seven.
    bytes ccbd = {'C', 'C', 'B', 'D', 1, 2, 3}, other = {'C', 'C', 'B', 'D', 1, 2, 4};
    EXPECT_EQ(compare_appl({{0, 0, ccbd}}, {{0, 0, other}}), "Appl Block1 Not Found Index 0 , Label = CCBD\r\n");
    bytes longer = {'C', 'C', 'B', 'D', 1, 2, 3, 9};
    EXPECT_EQ(compare_appl({{0, 0, ccbd}}, {{0, 0, longer}}), "");
}

bytes pal_cfg(int col_num, int order) {
    bytes d(46, 0);
    d[0] = 1;
    d[1] = 1;
    d[2] = static_cast<uint8_t>(col_num);
    d[3] = 2;
    d[4] = 3;
    d[5] = 0x12;
    d[24] = static_cast<uint8_t>(order << 5 | 1);
    const char comment[] = "pallet one";
    for (size_t i = 0; i < sizeof comment - 1; i++)
        d[28 + i] = static_cast<uint8_t>(comment[i]);
    return d;
}

TEST(CompareAppl, PalletConfigurationsAreComparedFieldByField) {
    bytes left = pal_cfg(3, 2), right = pal_cfg(4, 5);
    std::string report = compare_appl({{0, 1, left}, {0, 0, cmpt::label("PLCG", 1)}},
                                      {{0, 1, right}, {0, 0, cmpt::label("PLCG", 1)}});
    EXPECT_EQ(report, "col_num 3 <-> 4\n\r\npal_odr 2 <-> 5\n\r\nIndex 0 , 1 , Label = PLCG\r\n" + hex_line(left) +
                          hex_line(right));
    // The comment is not a field of the compare.
    bytes renamed = left;
    renamed[30] = 'X';
    EXPECT_EQ(compare_appl({{0, 1, left}, {0, 0, cmpt::label("PLCG", 1)}},
                           {{0, 1, renamed}, {0, 0, cmpt::label("PLCG", 1)}}),
              "");
}

TEST(CompareAppl, PalletGroupsOfOtherKindsFollowTheirOwnRules) {
    struct row {
        const char *label;
        bytes left, right;
        bool reported;
    };
    const row rows[] = {
        {"PLCR", {1, 2, 3}, {4, 5, 6, 7}, false},
        {"PLPO", {254, 0x21, 5}, {254, 0x21, 6}, false},
        {"PLPO", {254, 0x21, 5}, {254, 0x22, 5}, true},
        {"PLBP", {9, 1, 2}, {9, 1, 2, 0}, true},
        {"PLBP", {9, 1, 2}, {9, 1, 3}, true},
        {"PAPR", {1, 2, 3, 4}, {1, 2, 3, 5}, true},
        {"PAPR", {1, 2, 3, 4}, {1, 2, 3, 4}, false},
    };
    for (const row &r : rows) {
        std::string report = compare_appl({{0, 1, r.left}, {0, 0, cmpt::label(r.label, 1)}},
                                          {{0, 1, r.right}, {0, 0, cmpt::label(r.label, 1)}});
        std::string expect = r.reported ? std::string("Index 0 , 1 , Label = ") + r.label + "\r\n" +
                                              hex_line(r.left) + hex_line(r.right)
                                        : "";
        EXPECT_EQ(report, expect) << r.label;
    }
}

// ---- daughters ----

program_parts with_daughters(const std::vector<bytes> &main_lines, const std::vector<bytes> &daughters) {
    program_parts p;
    p.lines = main_lines;
    p.daughters = daughters;
    return p;
}

TEST(CompareDaughters, EqualDaughtersGiveNothing) {
    program_parts p = with_daughters({cmpt::p_sps_call(1), cmpt::p_sps_call(2)},
                                     {tp::daughter("MAIN....0001", {tp::remark("a")}),
                                      tp::daughter("MAIN....0002", {tp::remark("b")})});
    EXPECT_EQ(cmpt::compare(p, p).report, "");
}

TEST(CompareDaughters, ADaughterLineHeadingLeavesAnEmptyLine) {
    program_parts left = with_daughters({cmpt::p_sps_call(1)}, {tp::daughter("MAIN....0001", {tp::remark("a")})});
    program_parts right = with_daughters({cmpt::p_sps_call(1)}, {tp::daughter("MAIN....0001", {tp::remark("b")})});
    EXPECT_EQ(cmpt::compare(left, right).report,
              "Line 1\n\r\n1e 61 \r\n   1:  !a ;\r\n1e 62 \r\n   1:  !b ;\r\n\r\n");
}

TEST(CompareDaughters, LineCountsAndAttributesOfPairedDaughters) {
    program_parts left = with_daughters({cmpt::p_sps_call(1)}, {tp::daughter("MAIN....0001", {tp::remark("a")})});
    program_parts right = with_daughters(
        {cmpt::p_sps_call(1)}, {tp::daughter("MAIN....0001", {tp::remark("a"), tp::remark("b")})});
    EXPECT_EQ(cmpt::compare(left, right).report,
              "Line Count Error 1 <-> 2\r\n\r\nAttr Line Count Error 1 <-> 2\r\n");
}

TEST(CompareDaughters, DaughtersPairByReferenceNotByPlace) {
    program_parts left = with_daughters({cmpt::p_sps_call(1), cmpt::p_sps_call(2)},
                                        {tp::daughter("MAIN....0001", {tp::remark("one")}),
                                         tp::daughter("MAIN....0002", {tp::remark("two")})});
    program_parts right = with_daughters({cmpt::p_sps_call(1), cmpt::p_sps_call(2)},
                                         {tp::daughter("MAIN....0002", {tp::remark("two")}),
                                          tp::daughter("MAIN....0001", {tp::remark("one")})});
    EXPECT_EQ(cmpt::compare(left, right).report, "");
}

TEST(CompareDaughters, CountsAndUnpairedDaughters) {
    program_parts left = with_daughters({cmpt::p_sps_call(1), cmpt::p_sps_call(2)},
                                        {tp::daughter("MAIN....0001", {tp::remark("one")}),
                                         tp::daughter("MAIN....0002", {tp::remark("two")})});
    program_parts right = with_daughters({cmpt::p_sps_call(1), cmpt::p_sps_call(2)},
                                         {tp::daughter("MAIN....0001", {tp::remark("one")})});
    EXPECT_EQ(cmpt::compare(left, right).report,
              "Daughter Count Error 2 <-> 1\r\n\r\nCound not found Daughter 2 in right file.\r\n\r\n");
    EXPECT_EQ(cmpt::compare(right, left).report,
              "Daughter Count Error 1 <-> 2\r\n\r\nCound not found Daughter 2 in left file.\r\n\r\n");
}

TEST(CompareDaughters, DaughtersNoLineRefersToAreNotFound) {
    program_parts p = with_daughters({tp::remark("no call")}, {tp::daughter("MAIN....0001", {tp::remark("a")})});
    EXPECT_EQ(cmpt::compare(p, p).report,
              "Cound not found Daughter 0 in left file.\r\n\r\nCound not found Daughter 0 in right file.\r\n\r\n");
}

TEST(CompareDaughters, CallsThatPrintAlikePairTheirDaughters) {
    // The calls differ in their bytes but print the same, so the lines are
    // equal and daughter 1 on the left pairs with daughter 2 on the right.
    program_parts left = with_daughters({cmpt::p_sps_call(1)}, {tp::daughter("MAIN....0001", {tp::remark("a")})});
    program_parts right = with_daughters({cmpt::p_sps_call(2)}, {tp::daughter("MAIN....0002", {tp::remark("a")})});
    EXPECT_EQ(cmpt::compare(left, right).report, "");
    right.daughters = {tp::daughter("MAIN....0002", {tp::remark("b")})};
    EXPECT_EQ(cmpt::compare(left, right).report,
              "Line 1\n\r\n1e 61 \r\n   1:  !a ;\r\n1e 62 \r\n   1:  !b ;\r\n\r\n");
}

} // namespace
