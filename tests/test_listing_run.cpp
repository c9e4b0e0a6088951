// Listing to binary through zdascbin: the /PROG head, the section loop, the
// statement loop, /ATTR, the run frame's names and its clean-up.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "core/config.h"
#include "core/run_state.h"
#include "test_support.h"
#include "vorex_zd.h"

namespace {

using vzt::bytes;
using vzt::hex;

class ListingRun : public ::testing::Test {
protected:
    void SetUp() override { vzt::load_builtin_cell(); }
};

// Default attribute block: PROTECT 1, TASK_PRIORITY 50, DEFAULT_GROUP 1.
std::string default_attr() {
    std::string a = bytes({1, 0, 72});
    a += std::string(44, '\0');                      // OWNER .. reserved
    a += std::string(8, '\0');                       // VERSION .. MEMORY_SIZE
    a += bytes({0, 1, 0, 0, 0, 50});                 // PROTECT, STACK, PRIORITY
    a += std::string(8, '\0');                       // TIME_SLICE .. PAUSE
    a += bytes({0, 1, 0, 0, 0, 0, 0xFF, 0xFF});      // GROUP, CONTROL, reserved, end
    return a;
}

std::string name_record(const std::string &name, int subtype) {
    std::string r = bytes({0, 0, 1, subtype}) + name;
    r.resize(18, '\0');
    return r + bytes({0xFF, 0xFF});
}

const std::string empty_tail = bytes({2, 0xFF, 0xFF, 3, 0xFF, 0xFF, 4, 0xFF, 0xFF});

TEST_F(ListingRun, SmallProgramGivesTheDocumentedHundredElevenBytes) {
    auto r = vzt::listing_to_binary("/PROG  A\n/MN\n   1:  !X ;\n/END\n");
    ASSERT_EQ(r.ok, 1) << r.code << " line " << r.line;
    std::string want = name_record("A", 0) + default_attr() + bytes({2, 0, 3, 0x1E, 'X', 0, 0xFF, 0xFF}) +
                       bytes({3, 0xFF, 0xFF, 4, 0xFF, 0xFF});
    EXPECT_EQ(r.tp.size(), 111u);
    EXPECT_EQ(hex(r.tp), hex(want));
}

TEST_F(ListingRun, ProgHeadAloneIsAnEmptyProgram) {
    for (const char *text : {"/PROG  EMPTY\n", "/PROG  EMPTY\n/END\n", "/PROG  EMPTY\r\n/END\r\n"}) {
        auto r = vzt::listing_to_binary(text);
        ASSERT_EQ(r.ok, 1) << text;
        EXPECT_EQ(hex(r.tp), hex(name_record("EMPTY", 0) + default_attr() + empty_tail)) << text;
    }
}

struct head_case {
    const char *listing;
    const char *name;   // expected name when it succeeds
    int subtype;
    uint16_t code;      // 0: success
};

TEST_F(ListingRun, ProgHeadCases) {
    const head_case cases[] = {
        {"/PROG  ABCDEFGHIJ\n", "ABCDEFGH", 0, 0},
        {"/PROG  abc 12\n", "ABC12", 0, 0},
        {"/PROG  ACC10\n", "ACC10", 0, 0},
        {"/PROG  ABC 1.5\n", "", 0, 1376348 & 0xFFFF},
        {"/PROG  1ABC\n", "", 0, 1376347 & 0xFFFF},
        {"/PROG  12\n", "", 0, 1376347 & 0xFFFF},
        {"/PROG\n", "PROG", 0, 0},
        {"/PROG  X JOB\n", "X", 1, 0},
        {"/PROG  X process\n", "X", 2, 0},
        {"/PROG  X MACRO\n", "X", 3, 0},
        {"/PROG  X Cond\n", "X", 4, 0},
        {"/PROG  X COND\n", "X", 4, 0},
        {"/PROG  X FOO\n", "", 0, 1376348 & 0xFFFF},
        {"/PROG  A\xFD" "B\n", "", 0, 159},
        {"/PROG  CALL\n", "CALL", 0, 0},
        {"/ATTR\n", "", 0, 1376347 & 0xFFFF},
        {"PROG X\n", "", 0, 1376347 & 0xFFFF},
        {"/PROG  X\n/FOO\n", "", 0, 1376348 & 0xFFFF},
        {"/PROG  X\nFOO\n", "", 0, 1376348 & 0xFFFF},
    };
    for (const head_case &c : cases) {
        auto r = vzt::listing_to_binary(c.listing);
        EXPECT_EQ(r.code, c.code) << c.listing;
        if (c.code == 0) {
            ASSERT_TRUE(r.written) << c.listing;
            EXPECT_EQ(hex(r.tp.substr(0, 20)), hex(name_record(c.name, c.subtype))) << c.listing;
        } else {
            EXPECT_EQ(r.ok, 0) << c.listing;
            EXPECT_FALSE(r.written) << c.listing;
        }
    }
}

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

TEST_F(ListingRun, StatementsTakeTheirNumbersFromTheirOrder) {
    auto r = vzt::listing_to_binary(vzt::listing("   7:  !A ;\n   3:  ;\n!B;\n   1 2 : ;\n"));
    // "1 2 :" is no line number: 1 is no statement of its own.
    EXPECT_EQ(r.code, 161);
    r = vzt::listing_to_binary(vzt::listing("   7:  !A ;\n   3:  ;\n!B;\n;\n"));
    ASSERT_EQ(r.ok, 1) << r.code << " line " << r.line;
    auto lines = lines_of(r.tp);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(hex(lines[0]), hex(bytes({30, 'A', 0})));
    EXPECT_EQ(hex(lines[1]), hex(bytes({255})));
    EXPECT_EQ(hex(lines[2]), hex(bytes({30, 'B', 0})));
    EXPECT_EQ(hex(lines[3]), hex(bytes({255})));
}

TEST_F(ListingRun, RemarkTextRules) {
    struct {
        const char *line;
        std::string stored;
    } cases[] = {
        {"   1:  !X ;\n", "X"},
        {"   1:  !  two  words\t;\n", "  two  words"},
        {"   1:  !a;b;c ;\n", "a;b;c"},
        {"   1:  !0123456789012345678901234567890123456789 ;\n", "01234567890123456789012345678901"},
        {"   1:  ! ;\n", ""},
    };
    for (const auto &c : cases) {
        auto r = vzt::listing_to_binary(vzt::listing(c.line));
        ASSERT_EQ(r.ok, 1) << c.line;
        auto lines = lines_of(r.tp);
        ASSERT_EQ(lines.size(), 1u) << c.line;
        std::string want = bytes({30}) + c.stored + std::string(1, '\0');
        EXPECT_EQ(hex(lines[0]), hex(want)) << c.line;
    }
}

struct error_case {
    const char *mn;
    uint16_t code;
    uint16_t line;
};

TEST_F(ListingRun, StatementErrorsCarryCodeAndLine) {
    // Line words run one token ahead: a failed statement is retried as a
    // macro call, which reads through its ";".
    const error_case cases[] = {
        // FOO on line 5: the macro try stops behind its ";".
        {"   1:  FOO ;\n   2:  !A ;\n", 161, 6},
        // The minus line took its own ";": the macro try reads through the
        // next statement's.
        {"   1:  !A ;\n   2:  ----- ;\n   3:  ;\n", 196, 8},
        {"   1:  -- ;\n   2:  ;\n", 1376345 & 0xFFFF, 6},
        // No ";" at all: the macro try reads to the end of the file.
        {"   1:  !A ;\n   2:  BAR\n", 161, 9},
    };
    for (const error_case &c : cases) {
        auto r = vzt::listing_to_binary(vzt::listing(c.mn));
        EXPECT_EQ(r.ok, 0) << c.mn;
        EXPECT_EQ(r.code, c.code) << c.mn;
        EXPECT_EQ(r.line, c.line) << c.mn;
        EXPECT_FALSE(r.written) << c.mn;
    }
}

TEST_F(ListingRun, ConditionProgramTakesOnlyConditionLines) {
    auto r = vzt::listing_to_binary("/PROG  X Cond\n/MN\n   1:  !A ;\n/END\n");
    EXPECT_EQ(r.code, 1376345 & 0xFFFF);
    r = vzt::listing_to_binary("/PROG  X\n/MN\n   1:  WHEN R[1]=1, CALL A ;\n/END\n");
    EXPECT_EQ(r.code, 1376345 & 0xFFFF);
}

TEST_F(ListingRun, FailedListingLeavesAnOlderFileUntouched) {
    std::string dir = vzt::scratch_dir();
    std::string path = dir + "/KEEP.PE";
    std::ofstream(dir + "/KEEP.TP", std::ios::binary) << "old";
    std::ofstream(path, std::ios::binary) << vzt::listing("   1:  FOO ;\n");
    uint16_t code = 0, line = 0;
    EXPECT_EQ(zdascbin(path.c_str(), &code, &line), 0);
    std::ifstream in(dir + "/KEEP.TP", std::ios::binary);
    std::string kept((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(kept, "old");
}

TEST_F(ListingRun, MissingListingGivesCodeOne) {
    uint16_t code = 9, line = 9;
    EXPECT_EQ(zdascbin("/nonexistent/dir/X.PE", &code, &line), 0);
    EXPECT_EQ(code, 1);
    EXPECT_EQ(line, 0);
}

TEST_F(ListingRun, WithoutConfigurationARunIsAQuietNoOp) {
    zdclearparam();
    ASSERT_LT(group_count, 1);
    std::string dir = vzt::scratch_dir();
    std::string path = dir + "/X.PE";
    std::ofstream(path, std::ios::binary) << vzt::listing("   1:  !A ;\n");
    uint16_t code = 9, line = 9;
    EXPECT_EQ(zdascbin(path.c_str(), &code, &line), 1);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(line, 0);
    EXPECT_FALSE(std::filesystem::exists(dir + "/X.TP"));
    EXPECT_EQ(zdascbin("/nonexistent/Y.PE", &code, &line), 1);
    EXPECT_EQ(code, 0);
}

TEST_F(ListingRun, ExtensionChoosesLanguageAndOutputNameIsUpperCaseTP) {
    struct {
        const char *file;
        const char *out;
        int language;
    } cases[] = {
        {"prog.pj", "prog.TP", 0}, {"PROG.PJ", "PROG.TP", 0}, {"prog.Pj", "prog.TP", 0},
        {"prog.pjx", "prog.TP", 1}, {"prog.pe", "prog.TP", 1}, {"prog.ls", "prog.TP", 1},
    };
    for (const auto &c : cases) {
        std::string dir = vzt::scratch_dir();
        std::string path = dir + "/" + c.file;
        std::ofstream(path, std::ios::binary) << "/PROG  A\n/END\n";
        uint16_t code = 0, line = 0;
        ASSERT_EQ(zdascbin(path.c_str(), &code, &line), 1) << c.file;
        EXPECT_EQ(dict_select, c.language) << c.file;
        EXPECT_TRUE(std::filesystem::exists(dir + "/" + c.out)) << c.file;
        EXPECT_STREQ(output_name, (dir + "/" + c.out).c_str());
    }
    // No dot: the last choice stays; a dot in a folder name cuts there.
    std::string dir = vzt::scratch_dir();
    std::filesystem::create_directory(dir + "/sub.x");
    std::string path = dir + "/sub.x/prog";
    std::ofstream(path, std::ios::binary) << "/PROG  A\n/END\n";
    uint16_t code = 0, line = 0;
    dict_select = 0;
    zdascbin(path.c_str(), &code, &line);
    EXPECT_STREQ(output_name, (dir + "/sub.TP").c_str());
    EXPECT_EQ(dict_select, 1);
    std::string plain = dir + "/noext";
    std::ofstream(plain, std::ios::binary) << "/PROG  A\n/END\n";
    dict_select = 0;
    zdascbin(plain.c_str(), &code, &line);
    EXPECT_EQ(dict_select, 0);
    EXPECT_STREQ(output_name, (dir + "/noext.TP").c_str());
}

TEST_F(ListingRun, JapaneseListingGivesTheSameBytes) {
    auto en = vzt::listing_to_binary("/PROG  A\n/MN\n   1:  !X ;\n   2:  ;\n/END\n", ".PE");
    auto ja = vzt::listing_to_binary("/PROG  A\n/MN\n   1:  !X ;\n   2:  ;\n/END\n", ".PJ");
    ASSERT_EQ(en.ok, 1);
    ASSERT_EQ(ja.ok, 1);
    EXPECT_EQ(hex(en.tp), hex(ja.tp));
}

} // namespace
