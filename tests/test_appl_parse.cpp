// /APPL headers to application groups: the exact bytes of the block the
// writer makes for each header, the mask lines, the implied groups, and
// each error code with its line.
#include <gtest/gtest.h>

#include "core/config.h"
#include "test_appl_util.h"
#include "vorex_zd.h"

namespace {

using appl_test::block;
using appl_test::program;
using appl_test::record;

const std::string muap_arc = std::string("MUAP\0\0\0\x01\0\0\0\0", 12);
const std::string muap_spot = std::string("MUAP\0\0\0\x02\0\0\0\0", 12);

std::string muap(int mask) {
    std::string m = muap_arc;
    m[7] = static_cast<char>(mask);
    return m;
}

class ApplParse : public ::testing::Test {
protected:
    void SetUp() override { vzt::load_builtin_cell(); }
    void TearDown() override { zdclearparam(); vzt::load_builtin_cell(); }

    /* The block of a listing that must translate. */
    std::string block_of(const std::string &body, const std::string &ext = ".PE") {
        auto r = vzt::listing_to_binary(program(body), ext);
        EXPECT_EQ(r.ok, 1) << body << " code " << r.code << " line " << r.line;
        return appl_test::appl_block(r.tp);
    }
};

struct block_case {
    const char *body;
    std::vector<std::string> records;
};

TEST_F(ApplParse, HeadersGiveTheirGroupsFromTheHighestDown) {
    const block_case cases[] = {
        {"", {}},
        {"  ARC : TRUE;\n", {record(0, 0, muap_arc)}},
        {"  SPOT : TRUE;\n", {record(0, 0, muap_spot)}},
        {"  HANDLING : TRUE;\n", {record(0, 0, muap(8))}},
        {"  PALLET : TRUE;\n", {record(0, 0, muap(8))}},
        {"  LASER : TRUE;\n  DISPENSE : TRUE;\n  PAINT : TRUE;\n", {record(0, 0, muap(64))}},
        // The last TRUE wins; FALSE leaves the mask; ";" and a second ":" optional.
        {"  ARC : TRUE;\n  SPOT :: TRUE\n  LASER : FALSE;\n", {record(0, 0, muap_spot)}},
        {"  ARC : FALSE;\n", {}},
        // ARC and SPOT write their mask group when there is none yet.
        {"  ARC Welding Equipment Number : 1 ;\n", {record(1, 0, "ARCW\x01"), record(0, 0, muap_arc)}},
        {"\tSPOT Welding Equipment Number : 3 ;\n", {record(1, 0, "SPOT\x03"), record(0, 0, muap_spot)}},
        {"  ARC : TRUE;\n  SPOT Welding Equipment Number : 1 ;\n",
         {record(1, 0, "SPOT\x01"), record(0, 0, muap_arc)}},
        {"  ARC Welding Equipment : 1,*,1,* ;\n", {record(1, 0, "ARCW\x05"), record(0, 0, muap_arc)}},
        {"  ARC Welding Equipment : *,1,*,* ;\n", {record(1, 0, "ARCW\x02"), record(0, 0, muap_arc)}},
        {"  ARC Welding Equipment : 1 1 1 1 ;\n", {record(1, 0, "ARCW\x0F"), record(0, 0, muap_arc)}},
        {"  ANALOG PRO-FLO Equipment Number : 5 ;\n", {record(0, 0, "SLN1\x05")}},
        {"\tSmartfollow Schedule Number : 3 ;\n", {record(0, 1, "\x02"), record(0, 0, "MOTN")}},
        {"  ARC Welding Equipment Number : 1 ;\n  ARC Welding Equipment Number : 2 ;\n",
         {record(2, 0, "ARCW\x02"), record(1, 0, "ARCW\x01"), record(0, 0, muap_arc)}},
        {"BIN[41,52,43,57,0C:01,02:];\n", {record(0, 2, ""), record(0, 1, "\x01\x02"), record(0, 0, "ARCW\x0C")}},
        // An odd chunk's last digit pairs with the next chunk.
        {"BIN[4D4,F54,4E]\n;\n", {record(0, 0, "MOTN")}},
        {"BIN[ 4C 41 4E 47 ] ;\n", {record(0, 0, "LANG")}},
    };
    for (const block_case &c : cases) {
        std::string body = c.body;
        std::string want = block(c.records);
        EXPECT_EQ(vzt::hex(block_of(c.body)), vzt::hex(want)) << body;
    }
}

TEST_F(ApplParse, BinRecordsPairDigitsAcrossChunks) {
    // A digit left before ":" stays for the next record: 0 and 1 make 01.
    std::string b = block_of("BIN[4D4,F54,4E,0:1];\n");
    EXPECT_EQ(vzt::hex(b), vzt::hex(block({record(0, 1, "\x01"), record(0, 0, "MOTN")})));
    // A ":" before "]" closes one more, empty record.
    b = block_of("BIN[4D4F544E0:1:];\n");
    EXPECT_EQ(vzt::hex(b), vzt::hex(block({record(0, 2, ""), record(0, 1, "\x01"), record(0, 0, "MOTN")})));
    // Left over at the end, the digit has no partner; so does an odd count
    // before ":" that nothing follows.
    EXPECT_EQ(vzt::listing_to_binary(program("BIN[4D4F544E0:];\n")).code, 89);
}

TEST_F(ApplParse, DispenseProcessMakesItsFixedGroups) {
    const std::string body =
        "DISPENSE_PROCESS;\n"
        "   CYCLE_TIME\t\t: 1.5;\n"
        "   LAST_CYCLE_TIME\t: 2;\n"
        "   GUN_ON_TIME\t\t: 0.3;\n"
        "   LAST_GUN_ON_TIME\t: 12.25;\n"
        "   DEFAULT_USER_FRAME\t: 1;\n"
        "   DEFAULT_TOOL_FRAME\t: 2;\n"
        "   EQUIPMENT_NUMBER\t: 3;\n";
    // 1.5 -> 15, 0.3 -> 3, 2 -> 20, 12.25 -> 122 (x10 + 0.1, truncated).
    const std::string data("\x01\x02\x03\x00\x00\x0F\x00\x03\x00\x14\x00\x7A", 12);
    const std::string mnat("MNAT\x00\x11\xF2\xDF", 8);
    const std::string slat("SLAT\x00\x00\x00\x01", 8);
    EXPECT_EQ(vzt::hex(block_of(body)),
              vzt::hex(block({record(2, 1, data), record(2, 0, "SLPR"), record(1, 0, slat), record(0, 0, mnat)})));
    // A schedule before or after puts its MOTN group first.
    std::vector<std::string> with_schedule = {record(3, 1, data), record(3, 0, "SLPR"), record(2, 0, slat),
                                              record(1, 0, mnat), record(0, 1, "\x04"), record(0, 0, "MOTN")};
    EXPECT_EQ(vzt::hex(block_of("SMARTFOLLOW_SCHEDULE : 5 ;\n" + body)), vzt::hex(block(with_schedule)));
    EXPECT_EQ(vzt::hex(block_of(body + "SMARTFOLLOW_SCHEDULE : 5;\n")), vzt::hex(block(with_schedule)));
}

TEST_F(ApplParse, DispenseJobMakesItsFixedGroups) {
    const std::string body =
        "   DISPENSE_JOB;\n"
        "   CYCLE_TIME\t\t: 1;\n"
        "   LAST_CYCLE_TIME\t: 2;\n"
        "   GUN_ON_TIME\t\t: 3;\n"
        "   LAST_GUN_ON_TIME\t: 4;\n"
        "   MATERIAL_VOLUME\t: 5.5;\n"
        "   LAST_MAT_VOLUME\t: 6553.5;\n"
        "   PART_ID\t\t: 305419896;\n";
    const std::string data("\x00\x0A\x00\x1E\x00\x14\x00\x28\x00\x37\xFF\xFF\x12\x34\x56\x78", 16);
    const std::string mnat("MNAT\x00\x11\xFE\xDF", 8);
    const std::string slat("SLAT\x00\x00\x00\x00", 8);
    EXPECT_EQ(vzt::hex(block_of(body)),
              vzt::hex(block({record(2, 1, data), record(2, 0, "SLJB"), record(1, 0, slat), record(0, 0, mnat)})));
}

TEST_F(ApplParse, SmartfollowOptionImpliesScheduleOne) {
    ASSERT_EQ(zdsetparam("PARAM", "SMARTFOLLOW", "1"), 1);
    EXPECT_EQ(vzt::hex(block_of("")), vzt::hex(block({record(0, 1, std::string(1, '\0')), record(0, 0, "MOTN")})));
    // Added behind the groups the listing made, and not when one was made.
    EXPECT_EQ(vzt::hex(block_of("  SPOT : TRUE;\n")),
              vzt::hex(block({record(1, 1, std::string(1, '\0')), record(1, 0, "MOTN"), record(0, 0, muap_spot)})));
    EXPECT_EQ(vzt::hex(block_of("\tSmartfollow Schedule Number : 2 ;\n")),
              vzt::hex(block({record(0, 1, "\x01"), record(0, 0, "MOTN")})));
    // A schedule line with no dispense header behind it becomes the group.
    EXPECT_EQ(vzt::hex(block_of("SMARTFOLLOW_SCHEDULE : 7 ;\n")),
              vzt::hex(block({record(0, 1, "\x06"), record(0, 0, "MOTN")})));
}

TEST_F(ApplParse, StrayScheduleLineMakesItsGroupAtWriteTime) {
    EXPECT_EQ(vzt::hex(block_of("  SPOT : TRUE;\nSMARTFOLLOW_SCHEDULE : 7 ;\n")),
              vzt::hex(block({record(1, 1, "\x06"), record(1, 0, "MOTN"), record(0, 0, muap_spot)})));
}

struct error_case {
    const char *body;
    uint16_t code;
    uint16_t line; // in the whole listing: /PROG is line 1, /APPL line 2
};

TEST_F(ApplParse, ErrorsCarryTheirCodeAndLine) {
    const error_case cases[] = {
        {"\tSPOT Welding Equipment Number : 0 ;\n", 107, 3},
        {"  ARC Welding Equipment Number : 0 ;\n", 107, 3},
        {"  ARC Welding Equipment : 1,2,*,* ;\n", 107, 3},
        {"  ARC Welding Equipment : 1,X,*,* ;\n", 89, 3},
        {"  ARC Welding Equipment Numbr : 1 ;\n", 89, 3},
        {"  ARC Welding Equipment Number : 1\n/MN\n", 89, 4},
        {"  ANALOG PRO-FLO Equipment Number : 6 ;\n", 107, 3},
        {"  ANALOG PRO-FLO Equipment Number : 0 ;\n", 107, 3},
        {"  ANALOG PRO FLO Equipment Number : 1 ;\n", 89, 3},
        {"\tSmartfollow Number : 1 ;\n", 89, 3},
        {"\tSPOT Welding Equipment Number : x ;\n", 167, 3},
        {"DISPENSE_PROCESS\n   CYCLE_TIME : 1;\n", 134, 4},
        {"DISPENSE_PROCESS;\n   CYCLE_TIME 1;\n", 135, 4},
        {"DISPENSE_PROCESS;\n   CYCLE_TIME : 1\n   LAST_CYCLE_TIME : 1;\n", 134, 5},
        {"DISPENSE_PROCESS;\n   LAST_CYCLE_TIME : 1;\n", 89, 4},
        {"DISPENSE_PROCESS;\n   CYCLE_TIME : ON;\n", 89, 4},
        {"   DISPENSE_JOB;\n   CYCLE_TIME : 1;\n   LAST_CYCLE_TIME : 1;\n   GUN_ON_TIME : 1;\n"
         "   LAST_GUN_ON_TIME : 1;\n   MATERIAL_VOLUME : 1;\n   LAST_MAT_VOLUME : 1;\n   PART_ID : 1.5;\n",
         89, 10},
        {"SMARTFOLLOW_SCHEDULE 1;\n", 135, 3},
        {"BIN[4G];\n", 89, 3},
        {"BIN[414];\n", 89, 3},
        {"BIN[41]\n/MN\n", 89, 4},
        {"  LINE_TRACK;\n", 89, 3},
        {"PAINT_PROCESS;\n", 89, 3},
        {"PAINT_JOB;\n", 89, 3},
        // Any other first word goes to the pallet parser, which wants PALLETIZING.
        {"NO_SUCH_HEADER : 1 ;\n", 88, 3},
        {"PALLETIZING[1];\n", 88, 3},
    };
    for (const error_case &c : cases) {
        auto r = vzt::listing_to_binary(program(c.body));
        EXPECT_EQ(r.ok, 0) << c.body;
        EXPECT_EQ(r.code, c.code) << c.body;
        EXPECT_EQ(r.line, c.line) << c.body;
        EXPECT_FALSE(r.written) << c.body;
    }
}

TEST_F(ApplParse, MaskLineWithAnotherValueEndsTheListing) {
    // The value 1 of a section parser ends the listing as /END does: the
    // run succeeds and nothing behind the line is read.
    auto r = vzt::listing_to_binary(program("  ARC : MAYBE;\n  SPOT : TRUE;\n"));
    EXPECT_EQ(r.ok, 1);
    EXPECT_EQ(vzt::hex(appl_test::appl_block(r.tp)), vzt::hex(block({})));
}

TEST_F(ApplParse, JapaneseHeadersGiveTheSameBytes) {
    using appl_test::jword;
    const std::string english =
        "  ARC : TRUE;\n"
        "  ARC Welding Equipment Number : 2 ;\n"
        "\tSPOT Welding Equipment Number : 1 ;\n"
        "\tSmartfollow Schedule Number : 4 ;\n";
    const std::string japanese =
        "  " + jword(317) + " : " + jword(1212) + ";\n" +
        "  " + jword(317) + " " + jword(336) + " " + jword(337) + " " + jword(335) + " : 2 ;\n" +
        "\t" + jword(299) + " " + jword(336) + " " + jword(337) + " " + jword(335) + " : 1 ;\n" +
        "\t" + jword(333) + " " + jword(334) + " " + jword(335) + " : 4 ;\n";
    std::string from_english = block_of(english);
    EXPECT_EQ(vzt::hex(from_english),
              vzt::hex(block({record(3, 1, "\x03"), record(3, 0, "MOTN"), record(2, 0, "SPOT\x01"),
                              record(1, 0, "ARCW\x02"), record(0, 0, muap_arc)})));
    EXPECT_EQ(vzt::hex(block_of(japanese, ".PJ")), vzt::hex(from_english));
}

} // namespace
