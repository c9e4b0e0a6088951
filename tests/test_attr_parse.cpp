// The /ATTR section of a listing into the attribute block.
#include <gtest/gtest.h>

#include "sections/attr_parse.h"
#include "test_support.h"

namespace {

using vzt::bytes;
using vzt::hex;

class AttrParse : public ::testing::Test {
protected:
    void SetUp() override { vzt::load_builtin_cell(); }
};

// The 72 field bytes behind the attribute block's tag and length.
std::string fields_of(const std::string &tp) { return tp.size() >= 95 ? tp.substr(23, 72) : ""; }

uint32_t be32(const std::string &s, size_t at) {
    return (static_cast<uint32_t>(static_cast<uint8_t>(s[at])) << 24) |
           (static_cast<uint32_t>(static_cast<uint8_t>(s[at + 1])) << 16) |
           (static_cast<uint32_t>(static_cast<uint8_t>(s[at + 2])) << 8) |
           static_cast<uint32_t>(static_cast<uint8_t>(s[at + 3]));
}

uint16_t be16(const std::string &s, size_t at) {
    return static_cast<uint16_t>((static_cast<uint8_t>(s[at]) << 8) | static_cast<uint8_t>(s[at + 1]));
}

const char *const printed_attr =
    "OWNER\t        = MNEDITOR;\n"
    "COMMENT\t        = \"hello world\";\n"
    "PROG_SIZE        = 321;\n"
    "CREATE\t        = DATE 05-01-20  TIME 12:34:56;\n"
    "MODIFIED        = DATE 99-12-31  TIME 23:59:58;\n"
    "FILE_NAME        = ;\n"
    "VERSION        = 3;\n"
    "LINE_COUNT        = 2;\n"
    "MEMORY_SIZE        = 500;\n"
    "PROTECT\t        = READ;\n"
    "TCD:  STACK_SIZE  = 1,\n"
    "      TASK_PRIORITY  = 10,\n"
    "      TIME_SLICE  = 2,\n"
    "      BUSY_LAMP_OFF  = 3,\n"
    "      ABORT_REQUEST  = 4,\n"
    "      PAUSE_REQUEST  = 5;\n"
    "DEFAULT_GROUP        = 1,*,1,*,*;\n"
    "CONTROL_CODE        = 00000001 10000001;\n";

TEST_F(AttrParse, EveryFieldLandsAtItsPlace) {
    auto r = vzt::listing_to_binary(vzt::listing("", "", printed_attr));
    ASSERT_EQ(r.ok, 1) << r.code << " line " << r.line;
    std::string f = fields_of(r.tp);
    std::string owner = std::string("MNEDITOR") + std::string(2, '\0');
    EXPECT_EQ(hex(f.substr(0, 10)), hex(owner));
    std::string comment = std::string("hello world") + std::string(7, '\0');
    EXPECT_EQ(hex(f.substr(10, 18)), hex(comment));
    EXPECT_EQ(be32(f, 28), 321u);
    EXPECT_EQ(be32(f, 32), pack_attr_date(5, 1, 20, 12, 34, 56));
    EXPECT_EQ(be32(f, 32) >> 25, 25u); // 2005 - 1980
    EXPECT_EQ(be32(f, 36) >> 25, 19u); // 1999 - 1980
    EXPECT_EQ(be32(f, 40), 0u);
    EXPECT_EQ(be16(f, 44), 3);
    EXPECT_EQ(be16(f, 46), 2);
    EXPECT_EQ(be32(f, 48), 500u);
    EXPECT_EQ(be16(f, 52), 2);  // READ
    EXPECT_EQ(be16(f, 54), 1);  // STACK_SIZE
    EXPECT_EQ(be16(f, 56), 50); // TASK_PRIORITY is always written 50
    EXPECT_EQ(hex(f.substr(58, 8)), hex(bytes({0, 2, 0, 3, 0, 4, 0, 5})));
    EXPECT_EQ(be16(f, 66), 5);      // groups 1 and 3
    EXPECT_EQ(be16(f, 68), 0x0181); // 00000001 10000001
    EXPECT_EQ(be16(f, 70), 0);
}

TEST_F(AttrParse, PackedDateSpillsUnmasked) {
    EXPECT_EQ(pack_attr_date(80, 1, 1, 0, 0, 0), (1u << 21) | (1u << 16));
    EXPECT_EQ(pack_attr_date(79, 0, 0, 0, 0, 0), 99u << 25);
    EXPECT_EQ(pack_attr_date(0, 0, 0, 0, 0, 32), 20u << 25 | 1u << 5);
    EXPECT_EQ(pack_attr_date(0, 16, 0, 0, 0, 0), 21u << 25);
}

struct group_case {
    const char *clause;
    uint16_t mask;
};

TEST_F(AttrParse, DefaultGroupMarks) {
    const group_case cases[] = {
        {"DEFAULT_GROUP = 1,*,*,*,*;\n", 1}, {"DEFAULT_GROUP = *,1,*,*,*;\n", 2},
        {"DEFAULT_GROUP = 0,*,*,*,*;\n", 1}, {"DEFAULT_GROUP = 1,1,1,1,1;\n", 31},
        {"DEFAULT_GROUP = *,*;\n", 0},        {"", 1},
    };
    for (const group_case &c : cases) {
        auto r = vzt::listing_to_binary(vzt::listing("", "", c.clause));
        ASSERT_EQ(r.ok, 1) << c.clause << r.code;
        EXPECT_EQ(be16(fields_of(r.tp), 66), c.mask) << c.clause;
    }
}

TEST_F(AttrParse, TextFieldRules) {
    auto r = vzt::listing_to_binary(vzt::listing("", "", "OWNER = ;\nCOMMENT = \"0123456789abcdefXYZ\";\n"));
    ASSERT_EQ(r.ok, 1) << r.code;
    std::string f = fields_of(r.tp);
    EXPECT_EQ(hex(f.substr(0, 10)), hex(std::string(10, '\0')));
    EXPECT_EQ(hex(f.substr(10, 18)), hex(std::string("0123456789abcdef") + std::string(2, '\0')));
    EXPECT_EQ(be16(f, 52), 1); // PROTECT defaults to READ_WRITE
}

struct attr_error {
    const char *attr;
    const char *head;
    uint16_t code;
};

TEST_F(AttrParse, Errors) {
    const uint16_t wrong = 1376341 & 0xFFFF;
    const attr_error cases[] = {
        {"PROTECT = FOO;\n", "/PROG  TEST", wrong},
        {"OWNER MNEDITOR;\n", "/PROG  TEST", wrong},
        {"COMMENT = abc;\n", "/PROG  TEST", wrong},
        {"PROG_SIZE = 1.5;\n", "/PROG  TEST", wrong},
        {"CREATE = DATE 05/01/20 TIME 1:2:3;\n", "/PROG  TEST", wrong},
        {"FILE_NAME = 12;\n", "/PROG  TEST", wrong},
        {"TCD:  STACK_SIZE = 0;\n", "/PROG  TEST", wrong},
        {"DEFAULT_GROUP = 1,X,*,*,*;\n", "/PROG  TEST", wrong},
        {"CONTROL_CODE = 00000000;\n", "/PROG  TEST", wrong},
        {"COMMENT = \"a\x01" "b\";\n", "/PROG  TEST", 159},
        {"DEFAULT_GROUP = 1,*,*,*,*;\n", "/PROG  TEST Cond", 193},
        // A clause out of its turn ends the section: the driver then fails.
        {"PROTECT = READ;\nOWNER = X;\n", "/PROG  TEST", 1376348 & 0xFFFF},
    };
    for (const attr_error &c : cases) {
        std::string text = std::string(c.head) + "\n/ATTR\n" + c.attr + "/MN\n/END\n";
        auto r = vzt::listing_to_binary(text);
        EXPECT_EQ(r.ok, 0) << c.attr;
        EXPECT_EQ(r.code, c.code) << c.attr;
        EXPECT_FALSE(r.written) << c.attr;
    }
}

TEST_F(AttrParse, ConditionProgramWithoutGroupClauseHasNoGroup) {
    auto r = vzt::listing_to_binary("/PROG  TEST Cond\n/ATTR\nOWNER = X;\n/END\n");
    ASSERT_EQ(r.ok, 1) << r.code;
    EXPECT_EQ(be16(fields_of(r.tp), 66), 0);
}

} // namespace
