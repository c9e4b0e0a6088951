// The /POS section of a listing to position records: the bytes of joint,
// Cartesian and extended-axis records, comments, configuration strings,
// frames, unset values, dropped positions, and every error with its line.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "core/config.h"
#include "sections/pos_section.h"
#include "test_support.h"
#include "vorex_zd.h"

namespace {

// Payloads of the position block's records.
std::vector<std::string> records_of(const std::string &tp) {
    std::vector<std::string> out;
    size_t p = 20 + 77;
    if (tp.size() <= p || static_cast<uint8_t>(tp[p]) != 2)
        return out;
    p++;
    auto word = [&](size_t at) {
        return (static_cast<uint8_t>(tp[at]) << 8) | static_cast<uint8_t>(tp[at + 1]);
    };
    while (p + 2 <= tp.size() && word(p) != 0xFFFF)
        p += 2 + word(p);
    p += 2;
    if (p >= tp.size() || tp[p] != 3)
        return out;
    p++;
    while (p + 2 <= tp.size() && word(p) != 0xFFFF) {
        out.push_back(tp.substr(p + 2, word(p)));
        p += 2 + word(p);
    }
    return out;
}

std::string be32(float f) {
    uint32_t bits;
    std::memcpy(&bits, &f, sizeof bits);
    return vzt::bytes({int(bits >> 24), int((bits >> 16) & 0xFF), int((bits >> 8) & 0xFF), int(bits & 0xFF)});
}

const std::string unset = vzt::bytes({0x7F, 0xFF, 0xFF, 0xFF});

const char *cartesian_body =
    "   GP1:\n"
    "        UF : 0, UT : 1,           CONFIG : 'N U T, 0, 0, 0',\n"
    "        X =   100.000  mm,  Y =     0.000  mm,  Z =   200.000  mm,\n"
    "        W =   180.000 deg,  P =     0.000 deg,  R =     0.000 deg\n";

const char *joint_body =
    "   GP1:\n"
    "        UF : F, UT : 1,\n"
    "        J1=    0.000 deg,  J2=   10.000 deg,  J3=    0.000 deg,\n"
    "  J4=    0.000 deg,  J5=  -90.000 deg,  J6= *uninit* deg\n";

class PosSection : public ::testing::Test {
  protected:
    void SetUp() override { vzt::load_builtin_cell(); }
    void TearDown() override { vzt::load_builtin_cell(); }

    // One motion line per number, then the /POS text.
    static vzt::asc_result run(const std::string &pos, std::vector<int> used = {1},
                               const std::string &attr = "") {
        std::string mn;
        for (int n : used)
            mn += "J P[" + std::to_string(n) + "] 100% FINE ;\n";
        return vzt::listing_to_binary(vzt::listing(mn, pos, attr));
    }
};

TEST_F(PosSection, CartesianRecordBytes) {
    auto r = run(std::string("P[1]{\n") + cartesian_body + "};\n");
    ASSERT_EQ(r.ok, 1) << r.code << " line " << r.line;
    auto recs = records_of(r.tp);
    ASSERT_EQ(recs.size(), 1u);
    std::string expect = vzt::bytes({0, 1, 1, 0, 32, 2, 1, 0x01}) + be32(100) + be32(0) + be32(200) + be32(180) +
                         be32(0) + be32(0) + vzt::bytes({0, 0, 0, 0x30});
    EXPECT_EQ(vzt::hex(recs[0]), vzt::hex(expect));
}

TEST_F(PosSection, JointRecordWithCommentBytes) {
    auto r = run(std::string("P[2 : \"hello\"] {\n") + joint_body + "};\n", {2});
    ASSERT_EQ(r.ok, 1) << r.code << " line " << r.line;
    auto recs = records_of(r.tp);
    ASSERT_EQ(recs.size(), 1u);
    const float k = 0.017453292f;
    std::string expect = vzt::bytes({0, 2, 1, 29, 28, 9, (6 << 3) | 1, 0xF1}) + be32(0) + be32(10.0f * k) +
                         be32(0) + be32(0) + be32(-90.0f * k) + unset + "hello" + vzt::bytes({0});
    EXPECT_EQ(vzt::hex(recs[0]), vzt::hex(expect));
}

TEST_F(PosSection, CommentFieldsArePaddedToEvenSizes) {
    struct comment_case {
        const char *head;
        std::string field;
    };
    const comment_case cases[] = {
        {"P[1:\"\"]{", vzt::bytes({0, 0})},
        {"P[1:\"ab\"]{", std::string("ab") + vzt::bytes({0, 0})},
        {"P[1:\"abcdefghijklmnop\"]{", std::string("abcdefghijklmnop") + vzt::bytes({0, 0})},
        {"P[1:\"abcdefghijklmnopq\"]{", std::string("abcdefghijklmnop") + vzt::bytes({0, 0})},
        {"P[1 : \"two words\"] {", std::string("two words") + vzt::bytes({0})},
        {"P[1:\"say \"hi\"\"]{", std::string("say \"hi\"") + vzt::bytes({0, 0})},
        // A ] that is the trail byte of a double-byte character stays.
        {"P[1:\"a\x81]b\"]{", std::string("a\x81]b") + vzt::bytes({0, 0})},
    };
    for (const comment_case &c : cases) {
        auto r = run(std::string(c.head) + "\n" + cartesian_body + "};\n");
        ASSERT_EQ(r.ok, 1) << c.head << " code " << r.code << " line " << r.line;
        auto recs = records_of(r.tp);
        ASSERT_EQ(recs.size(), 1u);
        EXPECT_EQ(static_cast<uint8_t>(recs[0][3]), 4 + 32 - 3) << c.head;
        EXPECT_EQ(vzt::hex(recs[0].substr(36)), vzt::hex(c.field)) << c.head;
    }
}

TEST_F(PosSection, FramesConfigurationAndValueForms) {
    auto r = run("P[1]{\n   GP1:\n"
                 "        UF : F, UT : A,           CONFIG : 'F D B, 1, -2, 3',\n"
                 "        X =  -100  mm,  Y = ********  mm,  Z = *uninit*  mm,\n"
                 "        W =   -0.500 deg,  P = -*uninit* deg,  R =     7 deg\n};\n");
    ASSERT_EQ(r.ok, 1) << r.code << " line " << r.line;
    auto recs = records_of(r.tp);
    ASSERT_EQ(recs.size(), 1u);
    std::string expect = vzt::bytes({0, 1, 1, 0, 32, 2, 1, 0xFA}) + be32(-100) + unset + unset + be32(-0.5f) +
                         vzt::bytes({0xFF, 0xFF, 0xFF, 0xFF}) + be32(7) + vzt::bytes({1, 0xFE, 3, 0x80});
    EXPECT_EQ(vzt::hex(recs[0]), vzt::hex(expect));
}

TEST_F(PosSection, ExtendedAxesAndTwoGroups) {
    ASSERT_EQ(zdsetparam("ROBOT", "GA6-1400-12 RL", "1"), 1);
    ASSERT_EQ(zdsetparam("ROBOT", "GA6-1400-12", "2"), 1);
    std::string pos = "P[1]{\n   GP1:\n"
                      "        UF : 0, UT : 0,           CONFIG : 'N U T, 0, 0, 0',\n"
                      "        X =     1.000  mm,  Y =     2.000  mm,  Z =     3.000  mm,\n"
                      "        W =     4.000 deg,  P =     5.000 deg,  R =     6.000 deg,\n"
                      "  E1=   90.000 deg,  E2=   50.000  mm\n"
                      "   GP2:\n        UF : 1, UT : 2,\n"
                      "        J1=    1.000 deg,  J2=    2.000 deg,  J3=    3.000 deg,\n"
                      "  J4=    4.000 deg,  J5=    5.000 deg,  J6=    6.000 deg\n};\n";
    auto r = run(pos, {1}, "DEFAULT_GROUP = 1,1,*,*,*;\n");
    ASSERT_EQ(r.ok, 1) << r.code << " line " << r.line;
    auto recs = records_of(r.tp);
    ASSERT_EQ(recs.size(), 1u);
    const float k = 0.017453292f;
    std::string grp1 = vzt::bytes({40, 6, (2 << 3) | 1, 0}) + be32(1) + be32(2) + be32(3) + be32(4) + be32(5) +
                       be32(6) + vzt::bytes({0, 0, 0, 0x30}) + be32(90.0f * 3.141592654f / 180.0f) + be32(50);
    std::string grp2 = vzt::bytes({28, 9, (6 << 3) | 2, 0x12});
    for (int i = 1; i <= 6; i++)
        grp2 += be32(static_cast<float>(i) * k);
    EXPECT_EQ(vzt::hex(recs[0]), vzt::hex(vzt::bytes({0, 1, 3, 0}) + grp1 + grp2));
}

TEST_F(PosSection, UnsetGroupDropsThePosition) {
    auto r = run("P[1]{\n   GP*:\n        UF : F, UT : F,             CONFIG : '*uninit*',\n"
                 "        X = *uninit*  mm,  Y = *uninit*  mm,  Z = *uninit*  mm,\n"
                 "        W = *uninit* deg,  P = *uninit* deg,  R = *uninit* deg\n};\n"
                 "P[2]{\n" +
                     std::string(cartesian_body) + "};\n",
                 {1, 2});
    ASSERT_EQ(r.ok, 1) << r.code << " line " << r.line;
    auto recs = records_of(r.tp);
    ASSERT_EQ(recs.size(), 2u);
    EXPECT_EQ(vzt::hex(recs[0]), vzt::hex(vzt::bytes({0, 1})));
    EXPECT_EQ(recs[1].size(), 36u);
}

TEST_F(PosSection, RFormStoresTheInvertedFrame) {
    float values[6] = {100, 0, 0, 0, 0, 0};
    position_invert(values);
    EXPECT_FLOAT_EQ(values[0], -100.0f);
    EXPECT_NEAR(values[1], 0.0f, 1e-5);
    EXPECT_NEAR(values[5], 0.0f, 1e-4);
    float turned[6] = {10, 20, 30, 90, 0, 0};
    float back[6];
    std::memcpy(back, turned, sizeof back);
    position_invert(back);
    position_invert(back);
    for (int i = 0; i < 6; i++)
        EXPECT_NEAR(back[i], turned[i], 1e-3) << i;

    auto r = run("P[1]{\n   GP1:\n        UF : 0, UT : 0,           CONFIG : 'N U T, 0, 0, 0',\n"
                 "        RX =   100.000  mm,  RY =     0.000  mm,  RZ =     0.000  mm,\n"
                 "        RW =     0.000 deg,  RP =     0.000 deg,  RR =     0.000 deg\n};\n",
                 {1}, "CONTROL_CODE = 00000001 00000000;\n");
    ASSERT_EQ(r.ok, 1) << r.code << " line " << r.line;
    auto recs = records_of(r.tp);
    ASSERT_EQ(recs.size(), 1u);
    EXPECT_EQ(vzt::hex(recs[0].substr(8, 4)), vzt::hex(be32(-100)));
}

struct pos_error {
    std::string pos;
    int32_t code;
    uint16_t line;
};

// /POS stands on line 6 (one motion line), its first record on line 7.
TEST_F(PosSection, ErrorsWithTheirLines) {
    const std::string cart = cartesian_body;
    auto with = [&](const std::string &from, const std::string &to) {
        std::string s = cart;
        size_t at = s.find(from);
        return at == std::string::npos ? std::string("<bad case>") : s.replace(at, from.size(), to);
    };
    const pos_error cases[] = {
        {"P[2]{\n" + cart + "};\n", 103, 7},
        {"P[1]{\n" + cart + "};\nP[1]{\n" + cart + "};\n", 102, 13},
        {"Q[1]{\n" + cart + "};\n", 1376342, 7},
        {"P[X]{\n" + cart + "};\n", 1376342, 7},
        {"P[1:abc]{\n" + cart + "};\n", 1376342, 7},
        {"P[1]\n" + cart + "};\n", 1376342, 8},
        {"P[1:\"a\tb\"]{\n" + cart + "};\n", 159, 7},
        {"P[1]{\n" + with("GP1:", "GP2:") + "};\n", 185, 8},
        {"P[1]{\n" + with("GP1:", "GP6:") + "};\n", 1376342, 8},
        {"P[1]{\n" + with("GP1:", "XX1:") + "};\n", 1376342, 8},
        {"P[1]{\n" + with("UT : 1,", "UT : 16,") + "};\n", 1376344, 9},
        {"P[1]{\n" + with("UF : 0", "UF : G") + "};\n", 1376344, 9},
        {"P[1]{\n" + with("UF : 0,", "UF : 0") + "};\n", 1376342, 9},
        {"P[1]{\n" + with("'N U T", "'X U T") + "};\n", 114, 9},
        {"P[1]{\n" + with("'N U T", "'NU T") + "};\n", 114, 9},
        {"P[1]{\n" + with("0, 0, 0'", "0, 0 0'") + "};\n", 114, 9},
        {"P[1]{\n" + with("0, 0, 0'", "0, 0, X'") + "};\n", 114, 9},
        {"P[1]{\n" + with("0, 0, 0',", "0, 0, 0'") + "};\n", 114, 10},
        {"P[1]{\n" + with("X =", "RX =") + "};\n", 1376342, 10},
        {"P[1]{\n" + with("Y =     0.000", "Y = zero") + "};\n", 1376342, 10},
        {"P[1]{\n" + with("200.000  mm", "200.000 deg") + "};\n", 1376342, 10},
        {"P[1]{\n" + with("180.000 deg", "180.000 mm") + "};\n", 1376342, 11},
        {"P[1]{\n" + with("CONFIG", "KONFIG") + "};\n", 1376342, 9},
        {"P[1]{\n" + cart, 1376342, 12},
        {"P[1]{\n   GP1:\n        UF : 0, UT : 0,\n"
         "        J1=   -5 deg,  J2=    0.000 deg,  J3=    0.000 deg,\n"
         "  J4=    0.000 deg,  J5=    0.000 deg,  J6=    0.000 deg\n};\n",
         1376342, 10},
        {"P[1]{\n   GP*:\n        UF : F, UT : F,\n", 1376342, 11},
    };
    for (const pos_error &c : cases) {
        auto r = run(c.pos);
        EXPECT_EQ(r.ok, 0) << c.pos;
        EXPECT_EQ(r.code, static_cast<uint16_t>(c.code & 0xFFFF)) << c.pos;
        EXPECT_EQ(r.line, c.line) << c.pos;
        EXPECT_FALSE(r.written) << c.pos;
    }
}

TEST_F(PosSection, EveryGroupOfTheMaskMustBeThere) {
    ASSERT_EQ(zdsetparam("ROBOT", "GA6-1400-12", "2"), 1);
    auto r = run(std::string("P[1]{\n") + cartesian_body + "};\n", {1}, "DEFAULT_GROUP = 1,1,*,*,*;\n");
    EXPECT_EQ(r.code, 185);
}

} // namespace
