// Programs that only move make the whole round trip: listing to .TP to
// listing gives the same text, and that listing gives the same .TP again,
// in English and in Japanese, with one and with two motion groups.
#include <gtest/gtest.h>

#include <string>

#include "core/dictionary.h"
#include "test_support.h"
#include "vorex_zd.h"

namespace {

// The part of a listing from "/MN" up to its end.
std::string from_mn(const std::string &listing) {
    size_t at = listing.find("/MN\r\n");
    return at == std::string::npos ? "<no /MN>" : listing.substr(at);
}

const char *one_group_mn =
    "/MN\n"
    "   1:J P[1] 100% FINE  ;\n"
    "   2:L P[2:hello] 250mm/sec CNT50  ;\n"
    "   3:C P[3] \n"
    "       P[4] 100mm/sec FINE  ;\n"
    "   4:A P[5] 1.5sec CD20  ;\n"
    "   5:J P[6] R[R[3]]% CNT R[5]  ;\n"
    "   6:L PR[R[3]] 12.5inch/min FINE  ;\n"
    "   7:L P[1] WELD_SPEED CNT R[...]  ;\n"
    "   8:J P[...] 500msec CNT100  ;\n"
    "   9:L P[2:hello] 90deg/sec CD1000  ;\n"
    "  10:A PR[AR[2]] 300cm/min FINE  ;\n"
    "  11:L P[7] R[...]sec FINE  ;\n"
    "  12:J P[1] R[4]% FINE  ;\n";

const char *uninit_body =
    "   GP*:\n"
    "        UF : F, UT : F,             CONFIG : '*uninit*',\n"
    "        X = *uninit*  mm,  Y = *uninit*  mm,  Z = *uninit*  mm,\n"
    "        W = *uninit* deg,  P = *uninit* deg,  R = *uninit* deg\n";

std::string one_group_pos() {
    std::string pos = "/POS\n"
                      "P[1]{\n"
                      "   GP1:\n"
                      "        UF : 0, UT : 1,           CONFIG : 'N U T, 0, 0, 0',\n"
                      "        X =   100.000  mm,  Y =  -250.500  mm,  Z =   200.000  mm,\n"
                      "        W =   180.000 deg,  P =     0.000 deg,  R =   -90.000 deg\n"
                      "};\n"
                      "P[2 : \"hello\"] {\n"
                      "   GP1:\n"
                      "        UF : F, UT : 1,\n"
                      "        J1=    0.000 deg,  J2=   10.000 deg,  J3=    0.000 deg,\n"
                      "  J4=    0.000 deg,  J5=  -90.000 deg,  J6= *uninit* deg\n"
                      "};\n";
    for (int n : {3, 4, 5, 6, 7})
        pos += "P[" + std::to_string(n) + "]{\n" + uninit_body + "};\n";
    return pos + "/END\n";
}

const char *two_group_mn =
    "/MN\n"
    "   1:Independent GP\n"
    "     GP1 J P[1] 100% FINE \n"
    "     GP2 J P[1] 50% CNT10  ;\n"
    "   2:Simultaneous GP\n"
    "     GP1 L P[2:both] 100mm/sec FINE \n"
    "     GP2 L P[2:both] 100mm/sec CD5  ;\n"
    "   3:J P[1] 50% FINE  ;\n";

const char *two_group_pos =
    "/POS\n"
    "P[1]{\n"
    "   GP1:\n"
    "        UF : 0, UT : 1,           CONFIG : 'F D B, 1, -1, 0',\n"
    "        X =     1.000  mm,  Y =     2.000  mm,  Z =     3.000  mm,\n"
    "        W =     4.000 deg,  P =     5.000 deg,  R =     6.000 deg\n"
    "   GP2:\n"
    "        UF : 0, UT : 0,\n"
    "        J1=    1.000 deg,  J2=    2.000 deg,  J3=    3.000 deg,\n"
    "  J4=    4.000 deg,  J5=    5.000 deg,  J6=    6.000 deg\n"
    "};\n"
    "P[2 : \"both\"] {\n"
    "   GP1:\n"
    "        UF : 2, UT : 3,\n"
    "        J1=   45.000 deg,  J2=    0.000 deg,  J3=    0.000 deg,\n"
    "  J4=    0.000 deg,  J5=    0.000 deg,  J6=    0.000 deg\n"
    "   GP2:\n"
    "        UF : 0, UT : 0,           CONFIG : 'N U T, 0, 0, 0',\n"
    "        X =    10.000  mm,  Y =    20.000  mm,  Z =    30.000  mm,\n"
    "        W =     0.000 deg,  P =     0.000 deg,  R =     0.000 deg\n"
    "};\n"
    "/END\n";

class MotionRoundTrip : public ::testing::Test {
  protected:
    void SetUp() override { vzt::load_builtin_cell(); }
    void TearDown() override { vzt::load_builtin_cell(); }

    // The listing in, its .TP, the listing out in both languages, and the
    // .TP of each printed listing.
    static void round_trip(const std::string &listing) {
        auto first = vzt::listing_to_binary(listing);
        ASSERT_EQ(first.ok, 1) << "code " << first.code << " line " << first.line;
        std::string english = vzt::binary_to_listing(first.tp, ".PE");
        EXPECT_EQ(from_mn(english), from_mn(vzt::crlf(listing)));
        auto again = vzt::listing_to_binary(english);
        ASSERT_EQ(again.ok, 1) << "code " << again.code << " line " << again.line;
        EXPECT_EQ(vzt::hex(again.tp), vzt::hex(first.tp));
        EXPECT_EQ(vzt::binary_to_listing(again.tp, ".PE"), english);

        std::string japanese = vzt::binary_to_listing(first.tp, ".PJ");
        dict_init(0);
        EXPECT_NE(japanese.find(std::string(dict_word(3)) + " " + dict_word(5) + "[1] 100% " + dict_word(2)),
                  std::string::npos)
            << japanese;
        auto from_japanese = vzt::listing_to_binary(japanese, ".PJ");
        ASSERT_EQ(from_japanese.ok, 1) << "code " << from_japanese.code << " line " << from_japanese.line;
        EXPECT_EQ(vzt::hex(from_japanese.tp), vzt::hex(first.tp));
        EXPECT_EQ(vzt::binary_to_listing(from_japanese.tp, ".PJ"), japanese);
    }
};

TEST_F(MotionRoundTrip, OneGroupProgram) {
    round_trip(std::string("/PROG  MOVES\n/ATTR\n") + one_group_mn + one_group_pos());
}

TEST_F(MotionRoundTrip, TwoGroupProgram) {
    ASSERT_EQ(zdsetparam("ROBOT", "GA6-1400-12", "2"), 1);
    round_trip(std::string("/PROG  MOVES2\n/ATTR\nDEFAULT_GROUP = 1,1,*,*,*;\n") + two_group_mn + two_group_pos);
}

TEST_F(MotionRoundTrip, RFormPositionsComeBack) {
    const std::string listing = std::string("/PROG  RFORM\n/ATTR\nCONTROL_CODE = 00000001 00000000;\n") +
                                "/MN\n   1:J P[1] 100% FINE  ;\n/POS\nP[1]{\n   GP1:\n"
                                "        UF : 0, UT : 1,           CONFIG : 'N U T, 0, 0, 0',\n"
                                "        RX =  -100.000  mm,  RY =    50.000  mm,  RZ =    25.000  mm,\n"
                                "        RW =     0.000 deg,  RP =     0.000 deg,  RR =     0.000 deg\n};\n/END\n";
    auto first = vzt::listing_to_binary(listing);
    ASSERT_EQ(first.ok, 1) << "code " << first.code << " line " << first.line;
    std::string printed = vzt::binary_to_listing(first.tp, ".PE");
    EXPECT_NE(printed.find("        RX =  -100.000  mm,  RY =    50.000  mm,  RZ =    25.000  mm,\r\n"),
              std::string::npos)
        << printed;
}

} // namespace
