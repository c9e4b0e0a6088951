// Motion statements to bytes: J, L, C, A heads with every speed and
// termination form, position references, group segments, the max speed
// statements, and the errors of each check with their line numbers.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/config.h"
#include "core/dictionary.h"
#include "test_support.h"
#include "vorex_zd.h"

namespace {

// Payload of each line of the main program's line block.
std::vector<std::string> lines_of(const std::string &tp) {
    std::vector<std::string> out;
    size_t p = 20 + 77;
    if (tp.size() <= p || static_cast<uint8_t>(tp[p]) != 2)
        return out;
    p++;
    while (p + 2 <= tp.size()) {
        size_t len = (static_cast<uint8_t>(tp[p]) << 8) | static_cast<uint8_t>(tp[p + 1]);
        if (len == 0xFFFF)
            break;
        out.push_back(tp.substr(p + 2, len));
        p += 2 + len;
    }
    return out;
}

// A listing of one statement; the positions it uses need no /POS record.
std::string one_line(const std::string &statement, const std::string &attr = "") {
    return vzt::listing(statement + "\n", "", attr);
}

class MotionParse : public ::testing::Test {
  protected:
    void SetUp() override { vzt::load_builtin_cell(); }
    void TearDown() override { vzt::load_builtin_cell(); }
};

struct bytes_case {
    const char *statement;
    std::string bytes;
};

TEST_F(MotionParse, HeadsEncodeTypePositionSpeedAndTermination) {
    using vzt::bytes;
    const bytes_case cases[] = {
        {"J P[1] 100% FINE ;", bytes({254, 1, 0, 0, 1, 0, 100, 0, 0, 0})},
        {"L P[2] 250mm/sec CNT50 ;", bytes({254, 2, 0, 0, 2, 0, 250, 1, 128, 50})},
        {"A P[3] 300cm/min CNT0 ;", bytes({254, 6, 0, 0, 3, 1, 44, 2, 128, 0})},
        {"L P[1] 10inch/min FINE ;", bytes({254, 2, 0, 0, 1, 0, 100, 3, 0, 0})},
        {"L P[1] 12.5inch/min FINE ;", bytes({254, 2, 0, 0, 1, 0, 125, 3, 0, 0})},
        {"L P[1] 90deg/sec FINE ;", bytes({254, 2, 0, 0, 1, 0, 90, 4, 0, 0})},
        {"L P[1] 1.5sec FINE ;", bytes({254, 2, 0, 0, 1, 0, 15, 5, 0, 0})},
        {"J P[1] 25.4sec FINE ;", bytes({254, 1, 0, 0, 1, 0, 254, 5, 0, 0})},
        {"J P[1] 2sec CNT100 ;", bytes({254, 1, 0, 0, 1, 0, 20, 5, 128, 100})},
        {"J P[1] 500msec FINE ;", bytes({254, 1, 0, 0, 1, 1, 244, 6, 0, 0})},
        {"L P[1] 32000msec FINE ;", bytes({254, 2, 0, 0, 1, 125, 0, 6, 0, 0})},
        {"J P[1] R[3]% FINE ;", bytes({254, 1, 0, 0, 1, 0, 3, 64, 0, 0})},
        {"J P[1] R[...]sec FINE ;", bytes({254, 1, 0, 0, 1, 0, 0, 69, 0, 0})},
        {"L P[1] R[R[4]]mm/sec FINE ;", bytes({254, 2, 0, 0, 1, 0, 4, 129, 0, 0})},
        {"L P[1] R[2:speed]mm/sec FINE ;", bytes({254, 2, 0, 0, 1, 0, 2, 65, 0, 0})},
        {"L P[1] WELD_SPEED FINE ;", bytes({254, 2, 0, 0, 1, 0, 0, 193, 0, 0})},
        {"J P[1] WELD_SPEED FINE ;", bytes({254, 1, 0, 0, 1, 0, 0, 193, 0, 0})},
        {"L P[1] 100mm/sec CNT R[5] ;", bytes({254, 2, 0, 0, 1, 0, 100, 1, 64, 5})},
        {"L P[1] 100mm/sec CNT R[...] ;", bytes({254, 2, 0, 0, 1, 0, 100, 1, 64, 0})},
        {"L P[1] 100mm/sec CD300 ;", bytes({254, 2, 0, 0, 1, 0, 100, 1, 193, 44})},
        {"A P[1] 100mm/sec CD0 ;", bytes({254, 6, 0, 0, 1, 0, 100, 1, 192, 0})},
        {"L P[1] 100mm/sec CD1000 ;", bytes({254, 2, 0, 0, 1, 0, 100, 1, 195, 232})},
        // A literal speed wraps in its 16-bit word without a check.
        {"L P[1] 99999mm/sec FINE ;", bytes({254, 2, 0, 0, 1, 0x86, 0x9F, 1, 0, 0})},
        {"J P[...] 100% FINE ;", bytes({254, 1, 0, 0, 0, 0, 100, 0, 0, 0})},
        {"J P[7:some words] 100% FINE ;", bytes({254, 1, 0, 0, 7, 0, 100, 0, 0, 0})},
        {"J P[32767] 100% FINE ;", bytes({254, 1, 0, 0x7F, 0xFF, 0, 100, 0, 0, 0})},
        {"L PR[3] 100mm/sec FINE ;", bytes({254, 2, 1, 0, 3, 0, 100, 1, 0, 0})},
        {"L PR[R[3]] 100mm/sec FINE ;", bytes({254, 2, 1, 128, 3, 0, 100, 1, 0, 0})},
        {"L PR[AR[2]] 100mm/sec FINE ;", bytes({254, 2, 1, 192, 2, 0, 100, 1, 0, 0})},
        {"L PR[...] 100mm/sec FINE ;", bytes({254, 2, 1, 0, 0, 0, 100, 1, 0, 0})},
        {"L PR[4:home] 100mm/sec FINE ;", bytes({254, 2, 1, 0, 4, 0, 100, 1, 0, 0})},
        // PR numbers are not range-checked: 99999 wraps into the mode bits.
        {"L PR[99999] 100mm/sec FINE ;", bytes({254, 2, 1, 0x86, 0x9F, 0, 100, 1, 0, 0})},
    };
    for (const bytes_case &c : cases) {
        auto r = vzt::listing_to_binary(one_line(c.statement));
        ASSERT_EQ(r.ok, 1) << c.statement << " code " << r.code << " line " << r.line;
        auto lines = lines_of(r.tp);
        ASSERT_EQ(lines.size(), 1u) << c.statement;
        EXPECT_EQ(vzt::hex(lines[0]), vzt::hex(c.bytes)) << c.statement;
    }
}

TEST_F(MotionParse, CircularPutsTheSecondTextPositionFirst) {
    using vzt::bytes;
    const std::string head = bytes({254, 3, 0, 0, 2, 0, 0, 1});
    const std::string tail = bytes({0, 100, 1, 0, 0});
    const bytes_case cases[] = {
        {"C P[1] \n    P[2] 100mm/sec FINE ;", head + tail},
        {"C P[1] \n    :P[2] 100mm/sec FINE ;", head + tail},
        {"C P[1] OFFSET\n    :P[2] 100mm/sec FINE ;", head + tail + bytes({206})},
        {"C P[1] OFFSET: P[2] 100mm/sec FINE ;", head + tail + bytes({206})},
        {"C P[1] OFFSET,PR[3]\n    :P[2] 100mm/sec FINE ;", head + tail + bytes({206, 4, 2, 0, 3})},
        {"C P[1] OFFSET,PR[R[3]]: P[2] 100mm/sec FINE ;", head + tail + bytes({206, 4, 2, 128, 3})},
        {"C P[1] OFFSET,PR[...] P[2] 100mm/sec FINE ;", head + tail + bytes({206, 4, 2, 0, 0})},
        {"C P[1] TOOL_OFFSET P[2] 100mm/sec FINE ;", head + tail + bytes({220})},
        {"C P[1] TOOL_OFFSET,PR[5] P[2] 100mm/sec FINE ;", head + tail + bytes({220, 4, 2, 0, 5})},
        {"C P[1] \n    P[2] 100mm/sec CD10 ;", head + bytes({0, 100, 1, 192, 10})},
    };
    for (const bytes_case &c : cases) {
        auto r = vzt::listing_to_binary(one_line(c.statement));
        ASSERT_EQ(r.ok, 1) << c.statement << " code " << r.code << " line " << r.line;
        auto lines = lines_of(r.tp);
        ASSERT_EQ(lines.size(), 1u) << c.statement;
        EXPECT_EQ(vzt::hex(lines[0]), vzt::hex(c.bytes)) << c.statement;
    }
}

TEST_F(MotionParse, GroupSegmentsCarryTheirLength) {
    using vzt::bytes;
    ASSERT_EQ(zdsetparam("ROBOT", "GA6-1400-12", "2"), 1);
    const std::string attr = "DEFAULT_GROUP = 1,1,*,*,*;\n";
    auto r = vzt::listing_to_binary(one_line("INDEPENDENT GP\n  GP1: J P[1] 100% FINE\n"
                                             "  GP2: L P[2] 50mm/sec CNT R[2] ;",
                                             attr));
    ASSERT_EQ(r.ok, 1) << r.code << " line " << r.line;
    auto lines = lines_of(r.tp);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(vzt::hex(lines[0]), vzt::hex(bytes({253, 0, 0, 10, 242, 1, 254, 1, 0, 0, 1, 0, 100, 0, 0, 0,
                                                  253, 0, 0, 10, 242, 2, 254, 2, 0, 0, 2, 0, 50, 1, 64, 2})));

    r = vzt::listing_to_binary(one_line("SIMULTANEOUS GP GP1 L P[1] 100mm/sec FINE ;"));
    ASSERT_EQ(r.ok, 1) << r.code << " line " << r.line;
    lines = lines_of(r.tp);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(vzt::hex(lines[0]), vzt::hex(bytes({253, 1, 0, 10, 242, 1, 254, 2, 0, 0, 1, 0, 100, 1, 0, 0})));
}

TEST_F(MotionParse, MaxSpeedStatements) {
    using vzt::bytes;
    const bytes_case cases[] = {
        {"JOINT_MAX_SPEED[1] = 50 ;", bytes({58, 1, 2, 0, 1, 100, 1, 1, 50})},
        {"JOINT_MAX_SPEED[R[1]] = 2.5 ;", bytes({58, 1, 2, 128, 1, 100, 1, 3, 0x40, 0x20, 0, 0})},
        {"JOINT_MAX_SPEED[GP1:2] = 1000 ;", bytes({58, 1, 242, 1, 2, 0, 2, 100, 1, 2, 0, 0, 3, 0xE8})},
        {"JOINT_MAX_SPEED[3] = R[4] ;", bytes({58, 1, 2, 0, 3, 100, 3, 2, 0, 4})},
        {"LINEAR_MAX_SPEED = R[3] ;", bytes({58, 2, 100, 3, 2, 0, 3})},
        {"LINEAR_MAX_SPEED = AR[1] ;", bytes({58, 2, 100, 62, 2, 0, 1})},
        {"LINEAR_MAX_SPEED = ... ;", bytes({58, 2, 100, 0})},
        {"LINEAR_MAX_SPEED = (-5) ;", bytes({58, 2, 100, 1, 1, 0xFB})},
    };
    for (const bytes_case &c : cases) {
        auto r = vzt::listing_to_binary(one_line(c.statement));
        ASSERT_EQ(r.ok, 1) << c.statement << " code " << r.code << " line " << r.line;
        auto lines = lines_of(r.tp);
        ASSERT_EQ(lines.size(), 1u) << c.statement;
        EXPECT_EQ(vzt::hex(lines[0]), vzt::hex(c.bytes)) << c.statement;
    }
}

TEST_F(MotionParse, JapaneseWordsReachTheSameBytes) {
    using vzt::bytes;
    auto w = [](int code) { return std::string(reading_word(japanese_reading_table, static_cast<uint16_t>(code))); };
    struct jp_case {
        std::string statement;
        std::string bytes;
    };
    const jp_case cases[] = {
        // J, P, FINE: the words of codes 3, 5 and 2.
        {w(3) + " " + w(5) + "[1] 100% " + w(2) + " ;", bytes({254, 1, 0, 0, 1, 0, 100, 0, 0, 0})},
        // The second circular form has a word of its own, code 6.
        {w(6) + " " + w(5) + "[2] 100mm/sec " + w(1) + "50 ;", bytes({254, 6, 0, 0, 2, 0, 100, 1, 128, 50})},
        // J and the word "max" join into JOINT_MAX_SPEED; "speed" is optional.
        {w(3) + " " + w(614) + " " + w(417) + "[1] = 50 ;", bytes({58, 1, 2, 0, 1, 100, 1, 1, 50})},
        {w(4) + " " + w(614) + " = 7 ;", bytes({58, 2, 100, 1, 1, 7})},
        {w(391) + " " + w(393) + "\n GP1: " + w(4) + " " + w(5) + "[1] " + w(388) + " " + w(380) + "5 ;",
         bytes({253, 0, 0, 10, 242, 1, 254, 2, 0, 0, 1, 0, 0, 193, 192, 5})},
    };
    for (const jp_case &c : cases) {
        auto r = vzt::listing_to_binary(one_line(c.statement), ".PJ");
        ASSERT_EQ(r.ok, 1) << c.statement << " code " << r.code << " line " << r.line;
        auto lines = lines_of(r.tp);
        ASSERT_EQ(lines.size(), 1u) << c.statement;
        EXPECT_EQ(vzt::hex(lines[0]), vzt::hex(c.bytes)) << c.statement;
    }
}

struct error_case {
    const char *mn;
    int32_t code;
    uint16_t line;
};

// The listing's first statement stands on line 5. A failed statement is
// tried once more as a macro name, which reads up to its ";": the line word
// is then the line of the token behind it.
TEST_F(MotionParse, ChecksFailWithTheirCodeAndLine) {
    const error_case cases[] = {
        {"J P[0] 100% FINE ;\n", 107, 6},
        {"J P[32768] 100% FINE ;\n", 107, 6},
        {"J P[R[1]] 100% FINE ;\n", 1376345, 6},
        {"J P[-1] 100% FINE ;\n", 1376345, 6},
        {"J P[1] 101% FINE ;\n", 107, 6},
        {"J P[1] 32001msec FINE ;\n", 107, 6},
        {"L P[1] 100.5mm/sec FINE ;\n", 1376345, 6},
        {"J P[1] 100% CD50 ;\n", 1376345, 6},
        {"L P[1] 100% FINE ;\n", 1376345, 6},
        {"J P[1] 100mm/sec FINE ;\n", 1376345, 6},
        {"L P[1] 100mm/min FINE ;\n", 1376345, 6},
        {"L P[1] 100mm/sec CNT101 ;\n", 107, 6},
        {"L P[1] 100mm/sec CNT R[300] ;\n", 107, 6},
        {"L P[1] 100mm/sec CD1001 ;\n", 107, 6},
        {"L P[1] 100mm/sec HALT ;\n", 1376345, 6},
        {"L P[1] 100mm/sec FINE NOSUCHOPTION ;\n", 1376345, 6},
        {"L P[1] 100mm/sec FINE\n", 1376345, 8},
        {"J P[1] 100% FINE ;\nJ P[0] 100% FINE ;\n", 107, 7},
        {"J P[1] 100% FINE ;\n;\nL P[2] 100% FINE ;\n", 1376345, 8},
        {"C PAL_1[A_1] \n  P[2] 100mm/sec FINE ;\n", 106, 7},
        {"C P[1] \n  P[2] 100mm/sec FINE CD ;\n", 1376345, 7},
        {"C P[1] SKIP P[2] 100mm/sec FINE ;\n", 1376345, 6},
        {"C P[1] OFFSET,PR[R[X]] P[2] 100mm/sec FINE ;\n", 1376345, 6},
        {"INDEPENDENT GP\n GP1: C P[1] P[2] 100mm/sec FINE ;\n", 1376345, 7},
        {"INDEPENDENT GP GP2: J P[1] 100% FINE ;\n", 1376345, 6},
        {"INDEPENDENT GP\n GP1: J P[1] 100% FINE\n GP2: J P[2] 100% FINE ;\n", 1376345, 8},
        {"LINEAR_MAX_SPEED[GP1] = 5 ;\n", 1376345, 6},
        {"JOINT_MAX_SPEED[1] 5 ;\n", 1376345, 6},
    };
    for (const error_case &c : cases) {
        auto r = vzt::listing_to_binary(vzt::listing(c.mn));
        EXPECT_EQ(r.ok, 0) << c.mn;
        EXPECT_EQ(r.code, static_cast<uint16_t>(c.code & 0xFFFF)) << c.mn;
        EXPECT_EQ(r.line, c.line) << c.mn;
        EXPECT_FALSE(r.written) << c.mn;
    }
}

TEST_F(MotionParse, GroupsOfTheMaskMustAllAppearInOrder) {
    ASSERT_EQ(zdsetparam("ROBOT", "GA6-1400-12", "2"), 1);
    const std::string attr = "DEFAULT_GROUP = 1,1,*,*,*;\n";
    const char *bad[] = {
        "INDEPENDENT GP\n GP1: J P[1] 100% FINE ;\n",
        "INDEPENDENT GP\n GP2: J P[1] 100% FINE\n GP1: J P[2] 100% FINE ;\n",
        "SIMULTANEOUS GP\n GP1: J P[1] 100% FINE\n GP1: J P[2] 100% FINE ;\n",
    };
    for (const char *mn : bad) {
        auto r = vzt::listing_to_binary(vzt::listing(mn, "", attr));
        EXPECT_EQ(r.code, 89) << mn;
    }
}

TEST_F(MotionParse, LinesNoteTheirPositionsForTheWriter) {
    // Positions used without a record become two-byte stubs, in number order.
    auto r = vzt::listing_to_binary(vzt::listing("L P[9] 100mm/sec FINE ;\nJ P[3] 100% FINE ;\n"
                                                 "C P[5] \n P[3] 100mm/sec FINE ;\nJ P[...] 100% FINE ;\n"
                                                 "L PR[4] 100mm/sec FINE ;\n"));
    ASSERT_EQ(r.ok, 1) << r.code << " line " << r.line;
    size_t p = 20 + 77 + 1;
    while (p + 2 <= r.tp.size() && !(static_cast<uint8_t>(r.tp[p]) == 0xFF && static_cast<uint8_t>(r.tp[p + 1]) == 0xFF))
        p += 2 + ((static_cast<uint8_t>(r.tp[p]) << 8) | static_cast<uint8_t>(r.tp[p + 1]));
    ASSERT_LT(p + 2, r.tp.size());
    std::string pos = r.tp.substr(p + 2, 1 + 3 * 4 + 2);
    EXPECT_EQ(vzt::hex(pos), vzt::hex(vzt::bytes({3, 0, 2, 0, 3, 0, 2, 0, 5, 0, 2, 0, 9, 0xFF, 0xFF})));
}

} // namespace
