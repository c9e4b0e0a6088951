// One binary line to one listing line: the item loop, the columns, the
// shared value, data item and index decoders, and the line exports.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "bin2asc/decode_line.h"
#include "core/dictionary.h"
#include "text/decode_helpers.h"
#include "text/put_line.h"
#include "vorex_zd.h"

namespace {

using bytes = std::vector<uint8_t>;

/* Captures printed lines in the compare buffer, the sink's plain path. */
class Decode : public ::testing::Test {
  protected:
    void SetUp() override {
        dict_init(1);
        buf_[0] = 0;
        compare_mode = 1;
        compare_buffer = buf_;
        compare_buffer_size = sizeof buf_;
    }
    void TearDown() override {
        compare_mode = 0;
        compare_buffer = nullptr;
        compare_buffer_size = 0;
        for (auto &saved : saved_)
            set_opcode_printer(saved.first, saved.second);
        dict_init(1);
    }
    /* Prints one line and returns it without its CR LF. */
    std::string line(bytes b, uint32_t number = 1, int32_t nested = 0) {
        buf_[0] = 0;
        data_ = b;
        data_.resize(b.size() + 8, 0);
        cursor_setup(&cur_, data_.data(), static_cast<int32_t>(b.size()), number);
        rc_ = decode_line(&cur_, 1, nested);
        std::string out = buf_;
        EXPECT_GE(out.size(), 2u);
        EXPECT_EQ(out.substr(out.size() - 2), "\r\n");
        return out.substr(0, out.size() - 2);
    }
    /* Runs one decoder on the bytes and returns the text it appended. */
    std::string helper(int32_t (*decoder)(line_cursor *), bytes b, int32_t expect_rc = 0) {
        data_ = b;
        data_.resize(b.size() + 8, 0);
        cursor_setup(&cur_, data_.data(), static_cast<int32_t>(b.size()), 1);
        EXPECT_EQ(decoder(&cur_), expect_rc);
        return cur_.text;
    }
    void install(uint8_t op, line_printer p) { saved_.push_back({op, set_opcode_printer(op, p)}); }

    char buf_[4096];
    bytes data_;
    line_cursor cur_;
    int32_t rc_ = -1;
    std::vector<std::pair<uint8_t, line_printer>> saved_;
};

/* Stand-ins for family printers, to see what the line loop does with them. */
int32_t fake_motion(line_cursor *c) {
    cursor_append(c, "J P[1] ");
    c->pos += 1;
    return 0;
}
int32_t failing_printer(line_cursor *c) {
    c->pos += 1;
    return 1;
}
int32_t idle_printer(line_cursor *) { return 0; }
int32_t fake_close_paren(line_cursor *c) {
    cursor_append(c, ")");
    c->pos += 1;
    return 0;
}
int32_t fake_if(line_cursor *c) {
    cursor_append(c, "IF ");
    c->pos += 1;
    return 0;
}

TEST_F(Decode, EmptyAndTerminatorOnlyLines) {
    EXPECT_EQ(line({}), "   1:   ;");
    EXPECT_EQ(rc_, 0);
    EXPECT_EQ(line({255}), "   1:   ;");
    EXPECT_EQ(line({255, 255}), "   1:   ;");
}

TEST_F(Decode, OpcodesWithoutAPrinterPrintError) {
    for (uint8_t op : {2, 8, 9, 14, 240, 241, 250}) {
        EXPECT_EQ(line({op}), "   1:  ERROR ;") << int(op);
        EXPECT_EQ(rc_, 1);
    }
    /* What was built before the fault is left in the cursor. */
    EXPECT_EQ(line({3, 2, 0, 1, 8}), "   1:  ERROR ;");
    EXPECT_STREQ(cur_.text, "R[1]");
    EXPECT_EQ(cur_.pos, 6u);
}

TEST_F(Decode, NumberColumnWidthsAndDaughterBlank) {
    EXPECT_EQ(line({255}, 42), "  42:   ;");
    EXPECT_EQ(line({255}, 10000), "10000:   ;");
    EXPECT_EQ(line({255}, 3, 1), "    3:   ;");
}

TEST_F(Decode, ValueArguments) {
    struct value_case {
        bytes b;
        const char *text;
    };
    const value_case cases[] = {
        {{0}, "..."},
        {{1, 0, 0}, "Constant"},
        {{1, 1, 5}, "5"},
        {{1, 1, 0xFB}, "(-5)"},
        {{1, 2, 0, 1, 0, 0}, "65536"},
        {{1, 2, 0xFF, 0xFF, 0xFF, 0xFE}, "(-2)"},
        {{1, 3, 0x3F, 0xC0, 0, 0}, "1.5"},
        {{1, 3, 0xBF, 0xC0, 0, 0}, "(-1.5)"},
    };
    for (const value_case &c : cases)
        EXPECT_EQ(line(c.b), std::string("   1:  ") + c.text + " ;");
    EXPECT_EQ(line({1, 9, 0}), "   1:  ERROR ;");
}

TEST_F(Decode, DataItemsWithTheirIndices) {
    struct item_case {
        bytes b;
        const char *text;
    };
    const item_case cases[] = {
        {{3, 2, 0, 1}, "R[1]"},
        {{3, 2, 0, 0}, "R[...]"},
        {{3, 2, 0x80, 2}, "R[R[2]]"},
        {{3, 2, 0x80, 0}, "R[R[...]]"},
        {{3, 2, 0xC0, 3}, "R[AR[3]]"},
        {{4, 2, 0, 1, 2, 0, 2}, "PR[1,2]"},
        {{5, 242, 3, 2, 0, 4}, "P[GP1,2:4]"},
        {{4, 242, 1, 2, 0, 4}, "PR[GP1:4]"},
        {{10, 2, 0, 0}, "DI[...]"},
        {{36, 2, 0, 0}, "SI[0]"},
        {{39, 2, 0, 0, 2, 0, 1}, "UO[0,1]"},
        {{15, 2, 0, 7}, "DO[7]"},
        {{18, 2, 1, 0}, "WO[256]"},
        {{25, 2, 0, 1}, "TIMER[1]"},
        {{29, 2, 0, 1}, "SEMAPHORE[1]"},
        {{41, 2, 0, 7}, "F[7]"},
        {{42, 2, 0, 7}, "M[7]"},
        {{66, 2, 0, 1}, "TCP_SPD[1]"},
        {{3, 2, 0, 1, 3, 2, 0, 2}, "R[1]R[2]"},
    };
    for (const item_case &c : cases)
        EXPECT_EQ(line(c.b), std::string("   1:  ") + c.text + " ;");
    /* A tag 2 behind an index is a second index, even one cut short. */
    EXPECT_EQ(line({3, 2, 0, 1, 2}), "   1:  R[1,...] ;");
    /* A prefix with a broken index fails the line. */
    EXPECT_EQ(line({3, 9, 0, 1}), "   1:  ERROR ;");
}

TEST_F(Decode, DataItemBehindAClosingParenthesisGetsAComma) {
    install(116, fake_close_paren);
    EXPECT_EQ(line({116, 15, 2, 0, 1}), "   1:  ),DO[1] ;");
    EXPECT_EQ(line({15, 2, 0, 1}), "   1:  DO[1] ;");
}

TEST_F(Decode, PalletizingBrackets) {
    EXPECT_EQ(line({7, 0, 1, 0, 2, 0, 3}), "   1:  [1,2,3] ;");
    EXPECT_EQ(line({7, 0, 0, 0x80, 5, 0x80, 0}), "   1:  [*,R[5],R[...]] ;");
    install(120, fake_if);
    EXPECT_EQ(line({120, 7, 0x81, 2, 0, 0, 0, 3}), "   1:  IF [1-2,*,3] ;");
}

TEST_F(Decode, GroupMask) {
    EXPECT_EQ(line({242, 0x05}), "   1:  GP1,3: ;");
    EXPECT_EQ(line({242, 0xFF}), "   1:  GP1,2,3,4,5,6,7,8: ;");
}

TEST_F(Decode, ArgumentListsPrintParenthesesAndCommas) {
    EXPECT_EQ(line({61, 2, 1, 1, 1, 1, 1, 2, 64}), "   1:  (1,2) ;");
    EXPECT_EQ(line({61, 1, 1, 1, 7, 64}), "   1:  (7) ;");
    EXPECT_EQ(line({61, 3, 0, 3, 2, 0, 1, 1, 0, 0, 64}), "   1:  (...,R[1],Constant) ;");
    /* No arguments: the count starts below zero, commas never stop. */
    EXPECT_EQ(line({61, 0, 1, 1, 1, 1, 1, 2}), "   1:  (1,2, ;");
}

TEST_F(Decode, MotionOpcodesDropTheTwoBlanks) {
    install(254, fake_motion);
    install(253, fake_motion);
    EXPECT_EQ(line({254}), "   1:J P[1]  ;");
    EXPECT_EQ(line({255, 253}), "   1:J P[1]  ;");
    install(254, failing_printer);
    EXPECT_EQ(line({254, 1, 2}), "   1:ERROR ;");
    EXPECT_EQ(rc_, 1);
}

TEST_F(Decode, APrinterThatTakesNothingFailsTheLine) {
    install(200, idle_printer);
    EXPECT_EQ(line({200}), "   1:  ERROR ;");
}

TEST_F(Decode, Remarks) {
    EXPECT_EQ(line({30, 'h', 'i', ' ', 'x', 0}), "   1:  !hi x ;");
    EXPECT_EQ(line({30, 0}), "   1:  ! ;");
    EXPECT_EQ(line({30, 'a', 'b'}), "   1:  !ab ;");
}

TEST_F(Decode, OverlongTextStaysInItsBuffer) {
    bytes b = {30};
    b.insert(b.end(), 700, 'x');
    b.push_back(0);
    std::string out = line(b);
    EXPECT_EQ(std::string(cur_.text).size(), 511u);
    EXPECT_EQ(out, "   1:  !" + std::string(510, 'x') + " ;");
}

TEST_F(Decode, JapaneseWordsComeFromTheDictionary) {
    dict_init(0);
    EXPECT_EQ(line({3, 2, 0, 1}), "   1:  \xDA\xBC\xDE[1] ;");
    EXPECT_EQ(line({1, 0, 0}), "   1:  \xC3\xB2\xBD\xB3 ;");
}

TEST_F(Decode, IndexForms) {
    struct index_case {
        int32_t (*decoder)(line_cursor *);
        bytes b;
        const char *text;
    };
    const index_case cases[] = {
        {decode_index_single, {2, 0x80, 5}, "R[5]"},
        {decode_index_single, {2, 0xC0, 5}, "R[16389]"},
        {decode_index_single, {2, 0, 0}, "..."},
        {decode_index_single, {2, 1, 0, 2, 0, 1}, "256"},
        {decode_index, {2, 0, 0}, "..."},
        {decode_index, {2, 0, 0, 2, 0, 0}, "...,..."},
        {decode_index, {2, 0xC0, 0}, "AR[...]"},
        {decode_index, {2, 0xFF, 0xFF}, "AR[16383]"},
        {decode_index0, {2, 0, 0}, "0"},
        {decode_index0, {2, 0, 0, 2, 0, 0}, "0,0"},
        {decode_index0, {2, 0x80, 0}, "R[...]"},
        {decode_index_direct, {2, 0, 0}, "0"},
        {decode_index_direct, {2, 0xC0, 1}, "R[16385]"},
        {decode_index_signed, {2, 0x40, 5}, "-5"},
        {decode_index_signed, {2, 0x40, 0}, "..."},
        {decode_index_signed, {2, 0, 0}, "0"},
        {decode_index_signed, {2, 0x80, 3}, "R[3]"},
        {decode_index_signed, {2, 0xC1, 0}, "R[256]"},
    };
    for (const index_case &c : cases)
        EXPECT_EQ(helper(c.decoder, c.b), c.text);
    EXPECT_EQ(helper(decode_index, {3, 0, 1}, 1), "");
    EXPECT_EQ(cur_.pos, 0u);
}

TEST_F(Decode, BigEndianReads) {
    const uint8_t neg[] = {0x80, 5}, pos[] = {0, 5}, big[] = {0xFF, 0xFF};
    EXPECT_EQ(decode_be16_signmag(neg), -5);
    EXPECT_EQ(decode_be16_signmag(pos), 5);
    EXPECT_EQ(decode_be16_signmag(big), -32767);
    EXPECT_EQ(decode_be16(big), 65535);
    const uint8_t word[] = {0xFF, 0xFF, 0xFF, 0xFE}, one[] = {0x3F, 0x80, 0, 0};
    EXPECT_EQ(decode_be32(word), -2);
    EXPECT_EQ(decode_bereal(one), 1.0f);
    char num[16];
    format_index_number(0, num, sizeof num);
    EXPECT_STREQ(num, "...");
    format_index_number(-3, num, sizeof num);
    EXPECT_STREQ(num, "-3");
}

TEST_F(Decode, ReadsPastTheLineAreZeros) {
    /* A long value cut after two bytes reads zeros, not the neighbours. */
    data_ = {1, 2, 0x12, 0x34, 0xEE, 0xEE};
    cursor_setup(&cur_, data_.data(), 4, 1);
    EXPECT_EQ(decode_value_arg(&cur_), 0);
    EXPECT_STREQ(cur_.text, "305397760");
}

TEST_F(Decode, LineExportIsAValidityTest) {
    char text[64] = "garbage";
    const uint8_t unknown[] = {2};
    EXPECT_EQ(zdbinasc_line(nullptr, 0, text), 1);
    EXPECT_STREQ(text, "");
    std::strcpy(text, "garbage");
    EXPECT_EQ(zdbinasc_line(unknown, 1, text), 0);
    EXPECT_STREQ(text, "");
    const uint8_t good[] = {3, 2, 0, 1, 255};
    EXPECT_EQ(zdbinasc_line(good, 5, text), 1);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(zdbinasc_line(good, -1, text), 0);
    /* Nothing reaches the sink. */
    EXPECT_STREQ(buf_, "");
}

TEST_F(Decode, PositionExportPrintsToTheSinkAndReturnsEmptyText) {
    const uint8_t uninit[] = {0, 2, 0, 5};
    char text[64] = "garbage";
    EXPECT_EQ(zdbinasc_pos(uninit, text), 1);
    EXPECT_STREQ(text, "");
    std::string out = buf_;
    EXPECT_EQ(out.substr(0, 7), "P[5]{\r\n");
    /* An uninitialised record closes twice. */
    EXPECT_EQ(out.substr(out.size() - 8), "};\r\n};\r\n");
    /* Outside a compare there is no destination, and nothing breaks. */
    compare_mode = 0;
    std::strcpy(text, "garbage");
    EXPECT_EQ(zdbinasc_pos(uninit, text), 1);
    EXPECT_STREQ(text, "");
}

TEST_F(Decode, ProgramLineExport) {
    const char *words[] = {"", "JOB", "PROCESS", "MACRO", "Cond", ""};
    zdbinasc_dicinit(1);
    for (int subtype = 0; subtype <= 5; subtype++) {
        char text[512];
        EXPECT_EQ(zdbinasc_prog("NAME", subtype, text), 0);
        EXPECT_EQ(std::string(text), std::string("/PROG  NAME\t") + words[subtype] + "\r\n") << subtype;
    }
    zdbinasc_dicinit(0);
    char text[512];
    zdbinasc_prog("X", 1, text);
    EXPECT_STREQ(text, "/PROG  X\t\xBC\xDE\xAE\xCC\xDE\r\n");
    zdbinasc_dicinit(1);
}

} // namespace
