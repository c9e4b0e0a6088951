// The text sink: listing stream with CR LF, compare buffer limits, the
// widening of half-width kana on output, and the width tables it uses.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <unistd.h>

#include "text/put_line.h"
#include "text/zenhan.h"

namespace {

class PutLine : public ::testing::Test {
  protected:
    void SetUp() override { stream_ = std::tmpfile(); }
    void TearDown() override {
        list_stream = nullptr;
        list_indent = 0;
        hantozen_flag = 0;
        compare_mode = 0;
        compare_buffer = nullptr;
        compare_buffer_size = 0;
        if (stream_)
            std::fclose(stream_);
    }
    /* What put_line wrote for text to a fresh stream. */
    std::string written(const char *text) {
        std::rewind(stream_);
        if (ftruncate(fileno(stream_), 0) != 0)
            ADD_FAILURE() << "truncate";
        list_stream = stream_;
        put_line(text);
        std::fflush(stream_);
        std::rewind(stream_);
        std::string s;
        int c;
        while ((c = std::fgetc(stream_)) != EOF)
            s.push_back(static_cast<char>(c));
        return s;
    }
    FILE *stream_ = nullptr;
};

TEST_F(PutLine, ListingLinesEndInCrLf) {
    EXPECT_EQ(written("/MN"), "/MN\r\n");
    EXPECT_EQ(written(""), "\r\n");
    /* A text with its own line feed leaves a blank line behind it. */
    EXPECT_EQ(written("Warning\n"), "Warning\n\r\n");
}

TEST_F(PutLine, IndentIsSixBlanksPerCount) {
    list_indent = 2;
    EXPECT_EQ(written("x"), std::string(12, ' ') + "x\r\n");
}

TEST_F(PutLine, NoDestinationSwallowsTheLine) {
    list_stream = nullptr;
    put_line("goes nowhere");
    SUCCEED();
}

TEST_F(PutLine, CompareBufferTakesLinesUpToItsSizeLessOne) {
    char buf[12] = "";
    compare_mode = 1;
    compare_buffer = buf;
    compare_buffer_size = sizeof buf;
    EXPECT_EQ(compare_append("abc"), 0);      /* 5 bytes */
    EXPECT_EQ(compare_append("defgh"), 1);    /* 5 + 7 = 12: dropped whole */
    EXPECT_STREQ(buf, "abc\r\n");
    EXPECT_EQ(compare_append("defg"), 0);     /* 5 + 6 = 11 fits */
    EXPECT_STREQ(buf, "abc\r\ndefg\r\n");
    EXPECT_EQ(compare_append(""), 1);
}

TEST_F(PutLine, CompareModeBypassesIndentAndWidening) {
    char buf[64] = "";
    compare_mode = 1;
    compare_buffer = buf;
    compare_buffer_size = sizeof buf;
    list_indent = 3;
    hantozen_flag = 1;
    list_stream = stream_;
    put_line("\xB6\xDE x");
    EXPECT_STREQ(buf, "\xB6\xDE x\r\n");
}

TEST_F(PutLine, WideningJoinsVoicingMarksWhereTheKanaTakesThem) {
    hantozen_flag = 1;
    struct widen_case {
        const char *in;
        const char *out;
    };
    const widen_case cases[] = {
        {"\xB6\xDE", "\x83\x4B\r\n"},         /* ka + mark: ga */
        {"\xB1\xDE", "\x83\x41\x81\x4A\r\n"}, /* a is not voicable: two codes */
        {"\xCA\xDF", "\x83\x70\r\n"},         /* ha + semi mark: pa */
        {"\xB6\xDF", "\x83\x4A\x81\x4B\r\n"}, /* ka takes no semi mark */
        {"\xB3\xDE", "\x83\x45\x81\x4A\r\n"}, /* u + mark stays two codes */
        {"\xC4\xDE", "\x83\x68\r\n"},         /* to: end of the voicable ka row */
        {"\xCE\xDF", "\x83\x7C\r\n"},         /* ho + semi mark: po */
        {"A1 \xB6", "A1 \x83\x4A\r\n"},       /* ASCII stays, last kana ends cleanly */
        {"\x88\x9F", "\x88\x9F\r\n"},         /* a double-byte character passes */
        {"\xA1\xB0", "\x81\x42\x81\x5B\r\n"},
    };
    for (const widen_case &c : cases)
        EXPECT_EQ(written(c.in), c.out) << c.in;
}

TEST_F(PutLine, HalfToFullTables) {
    struct pair {
        uint16_t half, full;
    };
    const pair cases[] = {
        {0x20, 0x8140}, {0x21, 0x8149}, {'0', 0x824F}, {'9', 0x8258}, {'A', 0x8260}, {'z', 0x829A},
        {0x22, 0x8168}, {0x5C, 0x818F}, {0x7E, 0x8150}, {0xA0, 0x8140}, {0xA5, 0x8145},
        {0xA6, 0x8392}, {0xA7, 0x8340}, {0xAF, 0x8362}, {0xB0, 0x815B}, {0xB1, 0x8341},
        {0xB6, 0x834A}, {0xC4, 0x8367}, {0xCA, 0x836E}, {0xCE, 0x837A}, {0xDC, 0x838F},
        {0xDD, 0x8393}, {0xDE, 0x814A}, {0xDF, 0x814B}, {0x7F, 0x7F}, {0xE0, 0xE0},
    };
    for (const pair &p : cases)
        EXPECT_EQ(half_to_full(p.half), p.full) << std::hex << p.half;
}

TEST_F(PutLine, FullToHalfTables) {
    struct pair {
        uint16_t full, half;
    };
    const pair cases[] = {
        {0x8341, 0xB1},   /* katakana a */
        {0x82A0, 0xB1},   /* hiragana a, by way of katakana */
        {0x82AA, 0xB6DE}, /* hiragana ga */
        {0x834B, 0xB6DE}, /* katakana ga */
        {0x8370, 0xCADF}, /* pa */
        {0x837C, 0xCEDF}, /* po */
        {0x8394, 0xB3DE}, /* vu */
        {0x8340, 0xA7},   /* small a */
        {0x8383, 0xAC},   /* small ya */
        {0x838E, 0xDC},   /* small wa */
        {0x8395, 0xB6},   /* small ka */
        {0x8260, 0x41},   /* full-width A */
        {0x8140, 0x20},   /* full-width blank */
        {0x8142, 0xA1},   /* ideographic full stop */
        {0x815B, 0xB0},   /* long vowel mark */
        {0x814A, 0xDE},   /* voicing mark */
        {0x889F, 0x889F}, /* a kanji stays */
        {0x837F, 0x837F}, /* not a character */
    };
    for (const pair &p : cases)
        EXPECT_EQ(full_to_half(p.full), p.half) << std::hex << p.full;
}

} // namespace
