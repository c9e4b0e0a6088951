// Programs of remarks, empty statements and /ATTR clauses, with and without
// the /APPL and /POS lines: listing -> .TP -> listing -> .TP gives the same
// bytes, and the printed heads stand where they belong.
#include <gtest/gtest.h>

#include "test_support.h"

namespace {

class EmptySections : public ::testing::Test {
protected:
    void SetUp() override { vzt::load_builtin_cell(); }
};

const char *const bodies[] = {
    "/PROG  A\n/MN\n   1:  !X ;\n/END\n",
    "/PROG  A\n/APPL\n/MN\n   1:  !X ;\n   2:  ;\n/POS\n/END\n",
    "/PROG  A\n/ATTR\nOWNER = ME;\n/APPL\n/MN\n;\n/POS\n",
    "/PROG  A\n/ATTR\nCOMMENT = \"c\";\n/MN\n   1:  ;\n/POS\n/END\n",
    "/PROG  A MACRO\n/APPL\n/POS\n/END\n",
    "/PROG  A\n/POS\n/MN\n   1:  !late sections ;\n/APPL\n/END\n",
};

TEST_F(EmptySections, RoundTripGivesTheSameBytes) {
    for (const char *text : bodies) {
        auto first = vzt::listing_to_binary(text);
        ASSERT_EQ(first.ok, 1) << text << " code " << first.code;
        int32_t printed = 0;
        std::string listing = vzt::binary_to_listing(first.tp, ".PE", &printed);
        ASSERT_EQ(printed, 1) << text;
        auto second = vzt::listing_to_binary(listing);
        ASSERT_EQ(second.ok, 1) << listing << " code " << second.code;
        EXPECT_EQ(vzt::hex(second.tp), vzt::hex(first.tp)) << text;
        // And the printed text is a fixed point of the round trip.
        EXPECT_EQ(vzt::binary_to_listing(second.tp), listing);
    }
}

TEST_F(EmptySections, EmptyBlocksAndTheirHeads) {
    auto r = vzt::listing_to_binary("/PROG  A\n/APPL\n/MN\n/POS\n/END\n");
    ASSERT_EQ(r.ok, 1);
    ASSERT_GE(r.tp.size(), 9u);
    EXPECT_EQ(vzt::hex(r.tp.substr(r.tp.size() - 9)), vzt::hex(vzt::bytes({2, 255, 255, 3, 255, 255, 4, 255, 255})));
    std::string text = vzt::binary_to_listing(r.tp);
    EXPECT_NE(text.find("\r\n/APPL\r\n/MN\r\n/POS\r\n/END\r\n"), std::string::npos) << text;
}

TEST_F(EmptySections, UnknownApplHeaderFailsAndWritesNothing) {
    auto r = vzt::listing_to_binary("/PROG  A\n/APPL\nNO_SUCH_HEADER : 1 ;\n/MN\n/END\n");
    EXPECT_EQ(r.ok, 0);
    EXPECT_NE(r.code, 0);
    EXPECT_GT(r.line, 0);
    EXPECT_FALSE(r.written);
}

TEST_F(EmptySections, PositionRecordWithoutAnyUseFails) {
    auto r = vzt::listing_to_binary("/PROG  A\n/MN\n/POS\nP[1]{\n};\n/END\n");
    EXPECT_EQ(r.ok, 0);
    EXPECT_NE(r.code, 0);
    EXPECT_FALSE(r.written);
}

} // namespace
