// Motion lines from bytes to text: heads, speeds and terminations in all
// their forms, the C line's second text line, group segments, position
// comments, lines that fail, and the max speed heads.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "core/dictionary.h"
#include "instructions/motion.h"
#include "test_decode_tp.h"
#include "test_support.h"
#include "text/line_cursor.h"
#include "vorex_zd.h"

namespace {

using tp::bytes;

// The /MN body of a listing printed from these lines and position records.
std::string printed_mn(const std::vector<bytes> &lines, const std::vector<bytes> &positions = {}) {
    bytes file = tp::name_record("TEST");
    tp::append(file, tp::attr_block());
    tp::append(file, tp::line_block(lines));
    tp::append(file, tp::pos_block(positions));
    tp::append(file, tp::appl_block({}));
    std::string text = vzt::binary_to_listing(std::string(file.begin(), file.end()));
    size_t from = text.find("/MN\r\n");
    size_t to = text.find("\r\n/POS\r\n");
    if (from == std::string::npos || to == std::string::npos)
        return "<no /MN>";
    return text.substr(from + 5, to - from - 5);
}

bytes head(uint8_t type, bytes tail) {
    bytes b = {254, type, 0, 0, 1};
    tp::append(b, tail);
    return b;
}

struct print_case {
    bytes line;
    const char *text;
};

class MotionPrint : public ::testing::Test {
  protected:
    void SetUp() override { vzt::load_builtin_cell(); }
};

TEST_F(MotionPrint, HeadsSpeedsAndTerminations) {
    const print_case cases[] = {
        {head(1, {0, 100, 0, 0, 0}), "   1:J P[1] 100% FINE  ;"},
        {head(2, {0, 250, 1, 128, 50}), "   1:L P[1] 250mm/sec CNT50  ;"},
        {head(6, {1, 44, 2, 128, 0}), "   1:A P[1] 300cm/min CNT0  ;"},
        {head(2, {0, 100, 3, 0, 0}), "   1:L P[1] 10.0inch/min FINE  ;"},
        {head(2, {0, 90, 4, 0, 0}), "   1:L P[1] 90deg/sec FINE  ;"},
        {head(2, {0, 15, 5, 0, 0}), "   1:L P[1] 1.5sec FINE  ;"},
        {head(1, {1, 244, 6, 0, 0}), "   1:J P[1] 500msec FINE  ;"},
        {head(1, {0, 3, 64, 0, 0}), "   1:J P[1] R[3]% FINE  ;"},
        {head(1, {0, 0, 69, 0, 0}), "   1:J P[1] R[...]sec FINE  ;"},
        {head(2, {0, 4, 129, 0, 0}), "   1:L P[1] R[R[4]]mm/sec FINE  ;"},
        {head(2, {0, 0, 193, 0, 0}), "   1:L P[1] WELD_SPEED FINE  ;"},
        {head(2, {0, 42, 197, 0, 0}), "   1:L P[1] WELD_SPEED FINE  ;"},
        {head(2, {0, 5, 7, 0, 0}), "   1:L P[1] 5--UNKNOWN-- FINE  ;"},
        {head(2, {0x86, 0x9F, 1, 0, 0}), "   1:L P[1] 34463mm/sec FINE  ;"},
        {head(2, {0, 100, 1, 64, 0}), "   1:L P[1] 100mm/sec CNT R[...]  ;"},
        {head(2, {0, 100, 1, 64, 5}), "   1:L P[1] 100mm/sec CNT R[5]  ;"},
        {head(2, {0, 100, 1, 193, 44}), "   1:L P[1] 100mm/sec CD300  ;"},
        {head(2, {0, 100, 1, 255, 255}), "   1:L P[1] 100mm/sec CD16383  ;"},
        // Only the parser limits CNT to 100; any other t0 prints as CNT.
        {head(2, {0, 100, 1, 128, 150}), "   1:L P[1] 100mm/sec CNT150  ;"},
        {head(2, {0, 100, 1, 32, 7}), "   1:L P[1] 100mm/sec CNT7  ;"},
        {{254, 1, 0, 0, 0, 0, 100, 0, 0, 0}, "   1:J P[...] 100% FINE  ;"},
        {{254, 1, 0, 128, 3, 0, 100, 0, 0, 0}, "   1:J P[R[3]] 100% FINE  ;"},
        {{254, 2, 1, 128, 3, 0, 100, 1, 0, 0}, "   1:L PR[R[3]] 100mm/sec FINE  ;"},
        {{254, 2, 1, 192, 2, 0, 100, 1, 0, 0}, "   1:L PR[AR[2]] 100mm/sec FINE  ;"},
        {{254, 2, 1, 0, 0, 0, 100, 1, 0, 0}, "   1:L PR[...] 100mm/sec FINE  ;"},
        // The register's number keeps six bits of its high byte.
        {{254, 2, 1, 0x86, 0x9F, 0, 100, 1, 0, 0}, "   1:L PR[R[1695]] 100mm/sec FINE  ;"},
    };
    for (const print_case &c : cases)
        EXPECT_EQ(printed_mn({c.line}), c.text) << vzt::hex(std::string(c.line.begin(), c.line.end()));
}

TEST_F(MotionPrint, BadLinesPrintError) {
    const bytes bad[] = {
        head(4, {0, 100, 1, 0, 0}),
        head(5, {0, 100, 1, 0, 0}),
        {254, 2, 3, 0, 1, 0, 100, 1, 0, 0},
        {254, 2, 2, 1, 1, 0, 100, 1, 0, 0},
        {253, 2, 0, 10, 242, 1},
        {253, 0, 0, 10, 242, 6},
        {253, 0, 0, 10, 242, 0},
    };
    for (const bytes &b : bad)
        EXPECT_EQ(printed_mn({b}), "   1:ERROR ;") << vzt::hex(std::string(b.begin(), b.end()));
}

TEST_F(MotionPrint, CircularLinePrintsOnTwoTextLines) {
    bytes c = {254, 3, 0, 0, 2, 0, 0, 1, 0, 100, 1, 0, 0};
    EXPECT_EQ(printed_mn({c}), "   1:C P[1] \r\n       P[2] 100mm/sec FINE  ;");
    bytes c_cd = {254, 3, 0, 0, 7, 1, 0, 3, 0, 50, 1, 192, 20};
    EXPECT_EQ(printed_mn({c_cd}), "   1:C PR[3] \r\n       P[7] 50mm/sec CD20  ;");
}

TEST_F(MotionPrint, GroupSegmentsOpenTheirTextLines) {
    bytes line = {253, 0, 0, 10, 242, 1, 254, 1, 0, 0, 1, 0, 100, 0, 0, 0,
                  253, 0, 0, 10, 242, 2, 254, 2, 0, 0, 2, 0, 50, 1, 64, 2};
    EXPECT_EQ(printed_mn({line}),
              "   1:Independent GP\r\n     GP1 J P[1] 100% FINE \r\n     GP2 L P[2] 50mm/sec CNT R[2]  ;");
    bytes sim = {253, 1, 0, 10, 242, 3, 254, 1, 0, 0, 1, 0, 100, 0, 0, 0};
    EXPECT_EQ(printed_mn({sim}), "   1:Simultaneous GP\r\n     GP3 J P[1] 100% FINE  ;");
}

TEST_F(MotionPrint, PositionCommentsFollowTheNumber) {
    bytes with_comment = {0, 2, 1, 0};
    bytes joint = {12, 9, (2 << 3) | 1, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    tp::append(with_comment, joint);
    with_comment[3] = static_cast<uint8_t>(4 + joint.size() - 3);
    tp::append(with_comment, {'h', 'i', 0, 0});
    bytes line2 = {254, 2, 0, 0, 2, 0, 100, 1, 0, 0};
    bytes line_reg = {254, 2, 0, 128, 2, 0, 100, 1, 0, 0};
    bytes line_pr = {254, 2, 1, 0, 2, 0, 100, 1, 0, 0};
    EXPECT_EQ(printed_mn({line2, line_reg, line_pr}, {with_comment}),
              "   1:L P[2:hi] 100mm/sec FINE  ;\r\n"
              "   2:L P[R[2:hi]] 100mm/sec FINE  ;\r\n"
              "   3:L PR[2] 100mm/sec FINE  ;");
}

TEST_F(MotionPrint, MaxSpeedHeads) {
    dict_init(1);
    struct max_case {
        bytes line;
        const char *text;
        uint32_t pos;
    };
    const max_case cases[] = {
        {{58, 1, 2, 0, 1, 100}, "JOINT_MAX_SPEED[1]", 5},
        {{58, 1, 2, 128, 4, 100}, "JOINT_MAX_SPEED[R[4]]", 5},
        {{58, 1, 242, 3, 2, 0, 2, 100}, "JOINT_MAX_SPEED[GP1,2:2]", 7},
        {{58, 2, 100, 0}, "LINEAR_MAX_SPEED", 2},
        {{58, 2, 242, 1, 100, 0}, "LINEAR_MAX_SPEED[GP1]", 4},
    };
    for (const max_case &c : cases) {
        bytes copy = c.line;
        line_cursor cur;
        cursor_setup(&cur, copy.data(), static_cast<int32_t>(copy.size()), 1);
        EXPECT_EQ(print_max_speed(&cur), 0);
        EXPECT_STREQ(cur.text, c.text);
        EXPECT_EQ(cur.pos, c.pos) << c.text;
    }
    bytes broken = {58, 1, 242, 1, 7, 0, 1};
    line_cursor cur;
    cursor_setup(&cur, broken.data(), static_cast<int32_t>(broken.size()), 1);
    EXPECT_NE(print_max_speed(&cur), 0);
}

TEST_F(MotionPrint, CutAndRandomLinesStayInsideTheirBytes) {
    zdbinasc_dicinit(1);
    char out[512];
    const bytes full = {253, 0, 0, 20, 242, 1, 254, 3, 0, 0, 2, 0, 0, 1, 0, 100, 1, 0, 0, 206};
    for (size_t n = 1; n <= full.size(); n++) {
        std::vector<uint8_t> cut(full.begin(), full.begin() + static_cast<long>(n));
        int32_t ok = zdbinasc_line(cut.data(), static_cast<int32_t>(n), out);
        EXPECT_TRUE(ok == 0 || ok == 1) << n;
        EXPECT_STREQ(out, "");
    }
    uint32_t seed = 99;
    auto next = [&seed]() {
        seed = seed * 1103515245u + 12345u;
        return static_cast<uint8_t>(seed >> 16);
    };
    for (int round = 0; round < 3000; round++) {
        std::vector<uint8_t> line(2 + next() % 20);
        line[0] = (round % 3 == 0) ? 253 : (round % 3 == 1 ? 254 : 58);
        for (size_t i = 1; i < line.size(); i++)
            line[i] = next();
        uint8_t type = line[1];
        int32_t ok = zdbinasc_line(line.data(), static_cast<int32_t>(line.size()), out);
        bool bad_type = line[0] == 254 && type != 1 && type != 2 && type != 3 && type != 6;
        bool bad_kind = line[0] == 253 && type > 1;
        if (bad_type || bad_kind) {
            EXPECT_EQ(ok, 0) << round;
        }
    }
}

} // namespace
