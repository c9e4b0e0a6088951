// The shared token checks, the raw text helpers and the choice of the
// listing's language.
#include <gtest/gtest.h>

#include <string>

#include "test_lexer_fixture.h"

namespace {

constexpr int32_t syntax_error = 1376345;

TEST(LexerParse, ExpectConsumesInBothCases) {
    lexer_run run("ON OFF ;");
    EXPECT_EQ(expect_token(run.ctx, 109), 0);
    EXPECT_EQ(expect_token(run.ctx, 109), syntax_error);
    EXPECT_EQ(run.next().code, 132);
}

TEST(LexerParse, AcceptConsumesOnlyAMatch) {
    lexer_run run("ON OFF ;");
    EXPECT_EQ(accept_token(run.ctx, 108), 0);
    EXPECT_EQ(run.peek().code, 109);
    EXPECT_EQ(accept_token(run.ctx, 109), 0);
    EXPECT_EQ(run.next().code, 108);
}

struct int_case {
    const char *input;
    int32_t min, max;
    int32_t result;
    int32_t value; // expected when result is 0
    int32_t after; // code of the token behind
};

void PrintTo(const int_case &c, std::ostream *os) { *os << case_name(c.input); }

class LexerIntRange : public ::testing::TestWithParam<int_case> {};

TEST_P(LexerIntRange, ResultValueAndPosition) {
    const int_case &c = GetParam();
    lexer_run run(c.input);
    token_rec tok;
    int32_t value = -777;
    EXPECT_EQ(parse_int_range(run.ctx, &tok, &value, c.min, c.max), c.result) << c.input;
    EXPECT_EQ(value, c.result == 0 ? c.value : -777) << c.input;
    EXPECT_EQ(run.next().code, c.after) << c.input;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, LexerIntRange,
    ::testing::Values(int_case{"5 ;", 0, 10, 0, 5, 132}, int_case{"0 ;", 0, 10, 0, 0, 132},
                      int_case{"10 ;", 0, 10, 0, 10, 132}, int_case{"11 ;", 0, 10, 107, 0, 132},
                      int_case{"-5 ;", -10, 10, 0, -5, 132},
                      int_case{"- 10 ;", -10, 10, 0, -10, 132},
                      int_case{"-5 ;", 0, 10, 107, 0, 132},
                      int_case{"ON ;", 0, 10, 167, 0, 132},
                      int_case{"- ON ;", 0, 10, 167, 0, 132},
                      int_case{"1.5 ;", 0, 10, 167, 0, 132},
                      int_case{"- - 1 ;", -10, 10, 167, 0, 105}));

TEST(LexerParse, RealSigned) {
    lexer_run run("2.5 -0.25 3 - 4 ;");
    token_rec tok;
    float v = 0;
    EXPECT_EQ(parse_real_signed(run.ctx, &tok, &v), 0);
    EXPECT_FLOAT_EQ(v, 2.5f);
    EXPECT_EQ(parse_real_signed(run.ctx, &tok, &v), 0);
    EXPECT_FLOAT_EQ(v, -0.25f);
    EXPECT_EQ(parse_real_signed(run.ctx, &tok, &v), 166);
    EXPECT_EQ(parse_real_signed(run.ctx, &tok, &v), 166);
    EXPECT_FLOAT_EQ(v, -0.25f);
    EXPECT_EQ(run.next().code, 132);
}

struct key_case {
    const char *input;
    int32_t result;
    int32_t value;
};

void PrintTo(const key_case &c, std::ostream *os) { *os << case_name(c.input); }

class LexerKeyInt : public ::testing::TestWithParam<key_case> {};

TEST_P(LexerKeyInt, KeyColonValueSemicolon) {
    const key_case &c = GetParam();
    lexer_run run(c.input);
    int32_t value = -1;
    EXPECT_EQ(parse_key_int(run.ctx, 1, &value, -100, 100), c.result) << c.input;
    if (c.result == 0) {
        EXPECT_EQ(value, c.value) << c.input;
        EXPECT_EQ(run.peek().code, 108) << "clause fully consumed: " << c.input;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, LexerKeyInt,
    ::testing::Values(key_case{"CNT : 5 ; OFF ;", 0, 5}, key_case{"CNT:-7; OFF ;", 0, -7},
                      key_case{"cnt : 5 ON 1.5 , ; OFF ;", 0, 5},
                      key_case{"ACC : 5 ;", syntax_error, 0}, key_case{"CNT 5 ;", 135, 0},
                      key_case{"CNT : ON ;", 167, 0}, key_case{"CNT : 500 ;", 107, 0},
                      key_case{"CNT : 5 OFF ", 134, 0}));

TEST(LexerParse, KeyReal) {
    lexer_run run("ACC : 2.5 ; ACC : -1.5 X ; ACC : 2 ; ACC : 1.0 ");
    float v = 0;
    EXPECT_EQ(parse_key_real(run.ctx, 10, &v), 0);
    EXPECT_FLOAT_EQ(v, 2.5f);
    EXPECT_EQ(parse_key_real(run.ctx, 10, &v), 0);
    EXPECT_FLOAT_EQ(v, -1.5f);
    EXPECT_EQ(parse_key_real(run.ctx, 10, &v), 166);
    run.next(); // the ";" left behind by the failed clause
    // The value is read, then the file ends before the ";".
    EXPECT_EQ(parse_key_real(run.ctx, 10, &v), 134);
}

TEST(LexerText, TrimAndClear) {
    lexer_run run("");
    std::strcpy(run.ctx->source_text, "L P[1] ; J P[2]");
    run.ctx->source_len = 15;
    trim_source_text(run.ctx);
    EXPECT_STREQ(run.ctx->source_text, " J P[2]");
    EXPECT_EQ(run.ctx->source_len, 7);
    trim_source_text(run.ctx); // no ";": unchanged
    EXPECT_STREQ(run.ctx->source_text, " J P[2]");
    EXPECT_EQ(run.ctx->source_len, 7);
    clear_source_text(run.ctx);
    EXPECT_EQ(run.ctx->source_len, 0);
    for (int i = 0; i < source_text_size; i++)
        ASSERT_EQ(run.ctx->source_text[i], 0) << i;
}

TEST(LexerText, BlankSkipping) {
    char text[] = "A \t B\t\t";
    EXPECT_EQ(skip_blanks_forward(text), text + 4);
    EXPECT_EQ(skip_blanks_forward(text + 4), text + 7);
    EXPECT_EQ(skip_blanks_forward(text + 7), text + 7); // stays on the zero
    EXPECT_EQ(skip_blanks_back(text + 4, text), text);
    EXPECT_EQ(skip_blanks_back(text + 7, text), text + 4);
    EXPECT_EQ(skip_blanks_back(text, text), text);
    char blanks[] = " \t ";
    EXPECT_EQ(skip_blanks_back(blanks + 3, blanks), blanks);
    EXPECT_EQ(first_non_blank(" \t X"), 'X');
    EXPECT_EQ(first_non_blank("\t\xB1"), static_cast<signed char>(0xB1));
    EXPECT_EQ(first_non_blank("  "), 0);
}

TEST(LexerLanguage, SelectedLanguagePassesThrough) {
    lexer_run en("\xB1 ;", 1);
    EXPECT_EQ(detect_listing_language(en.ctx), 1);
    EXPECT_EQ(en.ctx->reading_table, english_reading_table);
    lexer_run jp("A ;", 0);
    EXPECT_EQ(detect_listing_language(jp.ctx), 0);
    EXPECT_EQ(jp.ctx->reading_table, japanese_reading_table);
}

struct language_case {
    const char *input;
    int32_t language;
};

void PrintTo(const language_case &c, std::ostream *os) { *os << case_name(c.input); }

class LexerDetect : public ::testing::TestWithParam<language_case> {};

TEST_P(LexerDetect, FirstLineThatIsNoSectionHead) {
    const language_case &c = GetParam();
    lexer_run run(c.input, -1);
    EXPECT_EQ(run.ctx->reading_table,
              c.language == 1 ? english_reading_table : japanese_reading_table);
    std::rewind(run.file);
    EXPECT_EQ(detect_listing_language(run.ctx), c.language);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, LexerDetect,
    ::testing::Values(language_case{"/PROG A\n/ATTR\nOWNER = X ;\n", 1},
                      language_case{"/PROG A\r\n  \t/ATTR\r\n\r\n\n\xB5\xB0\xC5\xB0 ;\r\n", 0},
                      language_case{"  /PROG A\n   /MN\n", -1}, language_case{"", -1},
                      language_case{"\t\t1: L P[1] ;", 1}));

TEST(LexerLanguage, DetectionRewindsTheListing) {
    lexer_run run("/PROG A\n/MN\n 1: ON ;\n", -1);
    EXPECT_EQ(run.ctx->reading_table, english_reading_table);
    EXPECT_EQ(run.next().code, 80);
    EXPECT_EQ(run.next().code, 216);
}

} // namespace
