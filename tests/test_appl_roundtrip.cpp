// Application headers both ways: a listing in the printer's layout comes
// back as the same text, and its .TP as the same bytes, in English and in
// Japanese; the Japanese listing gives the English one's bytes.
#include <gtest/gtest.h>

#include "core/config.h"
#include "test_appl_util.h"
#include "vorex_zd.h"

namespace {

class ApplRoundTrip : public ::testing::Test {
protected:
    void SetUp() override { vzt::load_builtin_cell(); }
    void TearDown() override {
        zdclearparam();
        vzt::load_builtin_cell();
    }

    /* body is the /APPL section exactly as the printer writes it. */
    void both_ways(const std::string &body) {
        auto first = vzt::listing_to_binary(appl_test::program(body));
        ASSERT_EQ(first.ok, 1) << body << " code " << first.code << " line " << first.line;
        std::string english = vzt::binary_to_listing(first.tp, ".PE");
        EXPECT_EQ(appl_test::appl_lines(english), vzt::crlf(body));
        auto again = vzt::listing_to_binary(english);
        ASSERT_EQ(again.ok, 1) << english;
        EXPECT_EQ(vzt::hex(again.tp), vzt::hex(first.tp)) << body;

        std::string japanese = vzt::binary_to_listing(first.tp, ".PJ");
        auto from_japanese = vzt::listing_to_binary(japanese, ".PJ");
        ASSERT_EQ(from_japanese.ok, 1) << japanese << " code " << from_japanese.code;
        EXPECT_EQ(vzt::hex(from_japanese.tp), vzt::hex(first.tp)) << body;
        EXPECT_EQ(vzt::binary_to_listing(from_japanese.tp, ".PJ"), japanese);
    }
};

TEST_F(ApplRoundTrip, EachFormAlone) {
    const char *const bodies[] = {
        "",
        "\tARC : TRUE;\n",
        "\tSPOT : TRUE;\n",
        "\tHANDLING : TRUE;\n",
        "\tLASER : TRUE;\n",
        "\tDISPENSE : TRUE;\n",
        "\tARC : TRUE;\n  ARC Welding Equipment Number : 1 ;\n",
        "\tARC : TRUE;\n  ARC Welding Equipment : 1,*,1,* ;\n",
        "\tSPOT : TRUE;\n\tSPOT Welding Equipment Number : 2 ;\n",
        "  ANALOG PRO-FLO Equipment Number : 3 ;\n",
        "\tSmartfollow Schedule Number : 7 ;\n",
        "DISPENSE_PROCESS;\n"
        "   CYCLE_TIME\t\t: 1.5;\n"
        "   LAST_CYCLE_TIME\t: 2.0;\n"
        "   GUN_ON_TIME\t\t: 0.3;\n"
        "   LAST_GUN_ON_TIME\t: 12.2;\n"
        "   DEFAULT_USER_FRAME\t: 1;\n"
        "   DEFAULT_TOOL_FRAME\t: 2;\n"
        "   EQUIPMENT_NUMBER\t: 1;\n",
        "   DISPENSE_JOB;\n"
        "   CYCLE_TIME\t\t: 1.0;\n"
        "   LAST_CYCLE_TIME\t: 2.0;\n"
        "   GUN_ON_TIME\t\t: 3.0;\n"
        "   LAST_GUN_ON_TIME\t: 4.0;\n"
        "   MATERIAL_VOLUME\t: 5.5;\n"
        "   LAST_MAT_VOLUME\t: 655.3;\n"
        "   PART_ID\t\t: 123456;\n",
    };
    for (const char *body : bodies)
        both_ways(body);
}

TEST_F(ApplRoundTrip, HeadersCombined) {
    both_ways("\tSPOT : TRUE;\n"
              "  ARC Welding Equipment Number : 2 ;\n"
              "\tSPOT Welding Equipment Number : 1 ;\n"
              "\tSmartfollow Schedule Number : 3 ;\n"
              "  ARC Welding Equipment : 1,*,*,1 ;\n");
    both_ways("\tSmartfollow Schedule Number : 2 ;\n"
              "DISPENSE_PROCESS;\n"
              "   CYCLE_TIME\t\t: 0.0;\n"
              "   LAST_CYCLE_TIME\t: 0.0;\n"
              "   GUN_ON_TIME\t\t: 0.0;\n"
              "   LAST_GUN_ON_TIME\t: 0.0;\n"
              "   DEFAULT_USER_FRAME\t: 0;\n"
              "   DEFAULT_TOOL_FRAME\t: 0;\n"
              "   EQUIPMENT_NUMBER\t: 2;\n");
}

TEST_F(ApplRoundTrip, BinGroupsComeBackInTheirPrintedForm) {
    // Groups written as hex print as their labels' text, which reads back
    // to the same bytes.
    auto first = vzt::listing_to_binary(
        appl_test::program("BIN[4D,55,41,50,00,00,00,02,00,00,00,00];\n"
                           "BIN[53,50,4F,54,01];\n"
                           "BIN[41,52,43,57,01];\n"
                           "BIN[4D,4F,54,4E:02];\n"));
    ASSERT_EQ(first.ok, 1) << first.code;
    std::string english = vzt::binary_to_listing(first.tp);
    EXPECT_EQ(appl_test::appl_lines(english), "\tSPOT : TRUE;\r\n"
                                              "\tSPOT Welding Equipment Number : 1 ;\r\n"
                                              "  ARC Welding Equipment Number : 1 ;\r\n"
                                              "\tSmartfollow Schedule Number : 3 ;\r\n");
    auto again = vzt::listing_to_binary(english);
    EXPECT_EQ(vzt::hex(again.tp), vzt::hex(first.tp));
}

TEST_F(ApplRoundTrip, PlacesThatMakeANumberPrintAsTheNumber) {
    auto first = vzt::listing_to_binary(appl_test::program("  ARC Welding Equipment : *,1,*,* ;\n"));
    ASSERT_EQ(first.ok, 1);
    std::string english = vzt::binary_to_listing(first.tp);
    EXPECT_EQ(appl_test::appl_lines(english), "\tARC : TRUE;\r\n  ARC Welding Equipment Number : 2 ;\r\n");
    EXPECT_EQ(vzt::hex(vzt::listing_to_binary(english).tp), vzt::hex(first.tp));
}

TEST_F(ApplRoundTrip, ImpliedScheduleIsPrintedAndKept) {
    ASSERT_EQ(zdsetparam("PARAM", "SMARTFOLLOW", "1"), 1);
    auto first = vzt::listing_to_binary(appl_test::program("\tARC : TRUE;\n"));
    ASSERT_EQ(first.ok, 1);
    std::string english = vzt::binary_to_listing(first.tp);
    EXPECT_EQ(appl_test::appl_lines(english), "\tARC : TRUE;\r\n\tSmartfollow Schedule Number : 1 ;\r\n");
    EXPECT_EQ(vzt::hex(vzt::listing_to_binary(english).tp), vzt::hex(first.tp));
}

} // namespace
