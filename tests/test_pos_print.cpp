// Position records to listing text: what /POS shows and in which order,
// the joint and Cartesian forms with their rows, extended axes, the R form,
// unset records, damaged records, the lookup by number, and the single
// record printer of zdbinasc_pos.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "core/dictionary.h"
#include "sections/pos_print.h"
#include "test_decode_tp.h"
#include "test_support.h"
#include "text/put_line.h"
#include "vorex_zd.h"

namespace {

using tp::bytes;

void put_real(bytes &b, float f) {
    uint32_t bits;
    std::memcpy(&bits, &f, sizeof bits);
    tp::put32(b, bits);
}

bytes joint_group(int group, uint8_t frames, const std::vector<float> &radians) {
    bytes b = {static_cast<uint8_t>(4 + 4 * radians.size()), 9,
               static_cast<uint8_t>((radians.size() << 3) | group), frames};
    for (float f : radians)
        put_real(b, f);
    return b;
}

bytes cartesian_group(int group, uint8_t frames, const std::vector<float> &six, bytes config,
                      const std::vector<float> &ext = {}) {
    bytes b = {static_cast<uint8_t>(32 + 4 * ext.size()), static_cast<uint8_t>(ext.empty() ? 2 : 6),
               static_cast<uint8_t>((ext.size() << 3) | group), frames};
    for (float f : six)
        put_real(b, f);
    tp::append(b, config);
    for (float f : ext)
        put_real(b, f);
    return b;
}

bytes record(int number, uint8_t mask, const std::vector<bytes> &groups, const std::string &comment = "",
             bool has_comment = false) {
    bytes b = {static_cast<uint8_t>(number >> 8), static_cast<uint8_t>(number), mask, 0};
    for (const bytes &g : groups)
        tp::append(b, g);
    if (has_comment || !comment.empty()) {
        b[3] = static_cast<uint8_t>(b.size() - 3);
        for (char c : comment)
            b.push_back(static_cast<uint8_t>(c));
        b.push_back(0);
        if (b.size() % 2)
            b.push_back(0);
    }
    return b;
}

bytes uses(int number) { return {254, 1, 0, static_cast<uint8_t>(number >> 8), static_cast<uint8_t>(number), 0, 100, 0, 0, 0}; }

// The /POS section of a listing printed from these lines and records.
std::string printed_pos(const std::vector<bytes> &lines, const std::vector<bytes> &records,
                        const tp::attr_fields &attr = tp::attr_fields()) {
    bytes file = tp::name_record("TEST");
    tp::append(file, tp::attr_block(attr));
    tp::append(file, tp::line_block(lines));
    tp::append(file, tp::pos_block(records));
    tp::append(file, tp::appl_block({}));
    std::string text = vzt::binary_to_listing(std::string(file.begin(), file.end()));
    size_t from = text.find("/POS\r\n");
    size_t to = text.find("/END\r\n");
    if (from == std::string::npos || to == std::string::npos)
        return "<no /POS>";
    return text.substr(from + 6, to - from - 6);
}

const std::vector<float> home = {100, 0, 200, 180, 0, 0};
const bytes nut = {0, 0, 0, 0x30};

const char *home_text = "   GP1:\r\n"
                        "        UF : 0, UT : 1,           CONFIG : 'N U T, 0, 0, 0',\r\n"
                        "        X =   100.000  mm,  Y =     0.000  mm,  Z =   200.000  mm,\r\n"
                        "        W =   180.000 deg,  P =     0.000 deg,  R =     0.000 deg\r\n";

const char *unset_text = "   GP*:\r\n"
                         "        UF : F, UT : F,             CONFIG : '*uninit*',\r\n"
                         "        X = *uninit*  mm,  Y = *uninit*  mm,  Z = *uninit*  mm,\r\n"
                         "        W = *uninit* deg,  P = *uninit* deg,  R = *uninit* deg\r\n";

class PosPrint : public ::testing::Test {
  protected:
    void SetUp() override { vzt::load_builtin_cell(); }
    void TearDown() override { vzt::load_builtin_cell(); }
};

TEST_F(PosPrint, OnlyUsedRecordsPrintInFileOrder) {
    bytes p1 = record(1, 1, {cartesian_group(1, 0x01, home, nut)});
    bytes p2 = record(2, 1, {cartesian_group(1, 0x01, home, nut)}, "hello");
    bytes p3 = record(3, 1, {cartesian_group(1, 0x01, home, nut)});
    std::string text = printed_pos({uses(3), uses(1), uses(3)}, {p2, p3, p1});
    EXPECT_EQ(text, std::string("P[3]{\r\n") + home_text + "};\r\nP[1]{\r\n" + home_text + "};\r\n");
    text = printed_pos({uses(2)}, {p2});
    EXPECT_EQ(text, std::string("P[2 : \"hello\"] {\r\n") + home_text + "};\r\n");
}

TEST_F(PosPrint, CommentsAndFrames) {
    bytes empty_comment = record(4, 1, {cartesian_group(1, 0xF0, home, {1, 0xFE, 3, 0x80})}, "", true);
    std::string text = printed_pos({uses(4)}, {empty_comment});
    EXPECT_EQ(text, "P[4 : \"\"] {\r\n   GP1:\r\n"
                    "        UF : F, UT : 0,           CONFIG : 'F D B, 1, -2, 3',\r\n"
                    "        X =   100.000  mm,  Y =     0.000  mm,  Z =   200.000  mm,\r\n"
                    "        W =   180.000 deg,  P =     0.000 deg,  R =     0.000 deg\r\n};\r\n");
}

TEST_F(PosPrint, JointRowsAndAxisKinds) {
    ASSERT_EQ(zdsetparam("ROBOT", "GA6-1400-12 L", "1"), 1);
    const float k = 0.017453292f;
    bytes p = record(1, 1, {joint_group(1, 0x12, {0, 10 * k, -90 * k, 0, 0, 0, 250.5f})});
    std::string text = printed_pos({uses(1)}, {p});
    EXPECT_EQ(text, "P[1]{\r\n   GP1:\r\n        UF : 1, UT : 2,\r\n"
                    "        J1=    0.000 deg,  J2=   10.000 deg,  J3=  -90.000 deg,\r\n"
                    "  J4=    0.000 deg,  J5=    0.000 deg,  J6=    0.000 deg,\r\n"
                    "  J7=  250.500 mm\r\n};\r\n");
    // Form 0 prints as joint too; an unset joint value prints without scaling.
    bytes old = joint_group(1, 0, {0});
    old[1] = 0;
    tp::put32(old, 0x7FFFFFFF);
    old[0] = 12;
    old[2] = (2 << 3) | 1;
    text = printed_pos({uses(1)}, {record(1, 1, {old})});
    EXPECT_EQ(text, "P[1]{\r\n   GP1:\r\n        UF : 0, UT : 0,\r\n"
                    "        J1=    0.000 deg,  J2= *uninit* deg\r\n};\r\n");
}

TEST_F(PosPrint, ExtendedAxesAndGroupOrder) {
    ASSERT_EQ(zdsetparam("ROBOT", "GA6-1400-12 RL", "1"), 1);
    ASSERT_EQ(zdsetparam("ROBOT", "GA6-1400-12", "2"), 1);
    const float k = 0.017453292f;
    bytes g1 = cartesian_group(1, 0, {1, 2, 3, 4, 5, 6}, nut, {90 * k, 50});
    bytes g2 = joint_group(2, 0, {0, 0, 0, 0, 0, 0});
    std::string text = printed_pos({uses(1)}, {record(1, 3, {g2, g1})});
    EXPECT_EQ(text, "P[1]{\r\n   GP1:\r\n"
                    "        UF : 0, UT : 0,           CONFIG : 'N U T, 0, 0, 0',\r\n"
                    "        X =     1.000  mm,  Y =     2.000  mm,  Z =     3.000  mm,\r\n"
                    "        W =     4.000 deg,  P =     5.000 deg,  R =     6.000 deg,\r\n"
                    "  E1=   90.000 deg,  E2=   50.000  mm\r\n"
                    "   GP2:\r\n        UF : 0, UT : 0,\r\n"
                    "        J1=    0.000 deg,  J2=    0.000 deg,  J3=    0.000 deg,\r\n"
                    "  J4=    0.000 deg,  J5=    0.000 deg,  J6=    0.000 deg\r\n};\r\n");
}

TEST_F(PosPrint, DamagedRecordsWarnAndGoOn) {
    // Four extended axes count as none; the size then agrees.
    bytes four = cartesian_group(1, 0x01, home, nut);
    four[2] = (4 << 3) | 1;
    EXPECT_EQ(printed_pos({uses(1)}, {record(1, 1, {four})}), std::string("P[1]{\r\n") + home_text + "};\r\n");
    // A size that disagrees: the warning, and the axes the size allows.
    bytes one = cartesian_group(1, 0x01, home, nut, {0});
    one[2] = 1;
    std::string text = printed_pos({uses(1)}, {record(1, 1, {one})});
    EXPECT_NE(text.find("   GP1:\r\nWarning: Extended axes mismatch in .TP file\n\r\n        UF : 0"), std::string::npos)
        << text;
    EXPECT_NE(text.find("R =     0.000 deg,\r\n  E1=    0.000 deg\r\n};"), std::string::npos) << text;
    // A mask bit without data left.
    text = printed_pos({uses(1)}, {record(1, 3, {cartesian_group(1, 0x01, home, nut)})});
    EXPECT_EQ(text, std::string("P[1]{\r\nError: Invalid position data in .TP file\n\r\n") + home_text + "};\r\n");
    // An unknown form prints nothing of its group.
    bytes odd = cartesian_group(1, 0x01, home, nut);
    odd[1] = 5;
    EXPECT_EQ(printed_pos({uses(1)}, {record(1, 1, {odd})}), "P[1]{\r\n};\r\n");
}

TEST_F(PosPrint, UnsetRecordsAndTheRForm) {
    EXPECT_EQ(printed_pos({uses(7)}, {{0, 7}}), std::string("P[7]{\r\n") + unset_text + "};\r\n");
    tp::attr_fields attr;
    attr.control_code = 0x100;
    std::string text = printed_pos({uses(7), uses(1)}, {{0, 7}, record(1, 1, {cartesian_group(1, 0, {100, 0, 0, 0, 0, 0}, nut)})}, attr);
    EXPECT_NE(text.find("P[7]{\r\n   GP*:\r\n        UF : F, UT : F,             CONFIG : '*uninit*',\r\n"
                        "       RX = *uninit*  mm,  RY = *uninit*  mm,  RZ = *uninit*  mm,\r\n"
                        "        RW = *uninit* deg,  RP = *uninit* deg,  RR = *uninit* deg\r\n};\r\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("        RX =  -100.000  mm,  RY = "), std::string::npos) << text;
    EXPECT_NE(text.find(" mm,\r\n        RW = "), std::string::npos) << text;
}

TEST_F(PosPrint, LookupTakesTheFirstRecordOfANumber) {
    bytes first = record(5, 1, {cartesian_group(1, 0x01, home, nut)}, "first");
    bytes second = record(5, 1, {cartesian_group(1, 0x01, home, nut)}, "second");
    std::string text = printed_pos({uses(5)}, {first, second});
    EXPECT_EQ(text, std::string("P[5 : \"first\"] {\r\n") + home_text + "};\r\n");
    // A second file of the same shape at the same addresses is its own.
    bytes other = record(6, 1, {cartesian_group(1, 0x01, home, nut)}, "other");
    text = printed_pos({uses(6)}, {other, second});
    EXPECT_EQ(text, std::string("P[6 : \"other\"] {\r\n") + home_text + "};\r\n");
}

TEST_F(PosPrint, ManyPositionsPrintInOnePass) {
    std::vector<bytes> lines, records;
    const int count = 16000;
    for (int n = count; n >= 1; n--)
        records.push_back({static_cast<uint8_t>(n >> 8), static_cast<uint8_t>(n)});
    for (int n = 1; n <= count; n++)
        lines.push_back(uses(n));
    std::string text = printed_pos(lines, records);
    size_t heads = 0;
    for (size_t at = text.find("GP*:"); at != std::string::npos; at = text.find("GP*:", at + 1))
        heads++;
    EXPECT_EQ(heads, static_cast<size_t>(count));
    EXPECT_EQ(text.rfind("P[1]{"), text.size() - std::strlen(unset_text) - 11);
}

TEST_F(PosPrint, SingleRecordExportPrintsThroughTheSink) {
    zdbinasc_dicinit(1);
    char buffer[4096];
    buffer[0] = 0;
    compare_mode = 1;
    compare_buffer = buffer;
    compare_buffer_size = sizeof buffer;
    char out[2048] = "junk";

    EXPECT_EQ(zdbinasc_pos(reinterpret_cast<const uint8_t *>("\x00\x02\x00\x07"), out), 1);
    EXPECT_STREQ(out, "");
    EXPECT_EQ(std::string(buffer), std::string("P[7]{\r\n") + unset_text + "};\r\n};\r\n");

    // Groups in file order, up to the first clear mask bit.
    buffer[0] = 0;
    bytes rec = record(2, 5, {cartesian_group(1, 0x01, home, nut), cartesian_group(3, 0, home, nut)}, "hi");
    bytes framed;
    tp::put16(framed, static_cast<int>(rec.size()));
    tp::append(framed, rec);
    EXPECT_EQ(zdbinasc_pos(framed.data(), out), 1);
    EXPECT_EQ(std::string(buffer), std::string("P[2 : \"hi\"] {\r\n") + home_text + "};\r\n");

    buffer[0] = 0;
    bytes two = record(3, 3, {cartesian_group(2, 0, home, nut)});
    framed.clear();
    tp::put16(framed, static_cast<int>(two.size()));
    tp::append(framed, two);
    zdbinasc_pos(framed.data(), out);
    EXPECT_NE(std::string(buffer).find("\r\nError: Invalid position data in .TP file\n\r\n};\r\n"), std::string::npos)
        << buffer;

    compare_mode = 0;
    compare_buffer = nullptr;
    compare_buffer_size = 0;
}

TEST_F(PosPrint, DamagedRecordsNeverReadPastTheirLength) {
    zdbinasc_dicinit(1);
    std::vector<char> buffer(1 << 16);
    compare_mode = 1;
    compare_buffer = buffer.data();
    compare_buffer_size = static_cast<int32_t>(buffer.size());
    char out[2048];
    uint32_t seed = 12345;
    auto next = [&seed]() {
        seed = seed * 1103515245u + 12345u;
        return static_cast<uint8_t>(seed >> 16);
    };
    for (int round = 0; round < 3000; round++) {
        int length = next() % 80;
        // Exactly the bytes the length promises: a read past them is caught.
        std::vector<uint8_t> rec(static_cast<size_t>(length) + 2);
        rec[0] = 0;
        rec[1] = static_cast<uint8_t>(length);
        for (int i = 2; i < length + 2; i++)
            rec[static_cast<size_t>(i)] = next();
        if (length > 2 && round % 3 == 0)
            rec[4] = 0x1F;
        buffer[0] = 0;
        EXPECT_EQ(zdbinasc_pos(rec.data(), out), 1);
        EXPECT_STREQ(out, "");
        EXPECT_NE(std::string(buffer.data()).find("};"), std::string::npos) << round;
    }
    compare_mode = 0;
    compare_buffer = nullptr;
    compare_buffer_size = 0;
}

} // namespace
