// The listing lexer: lexemes, numbers, keyword codes, joins, lines, the
// look-back ring and the double-byte handling, fed from real files.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "test_lexer_fixture.h"

namespace {

using codes_t = std::vector<int32_t>;

struct code_case {
    const char *input;
    codes_t codes;
};

void PrintTo(const code_case &c, std::ostream *os) { *os << case_name(c.input); }

class LexerCodes : public ::testing::TestWithParam<code_case> {};

TEST_P(LexerCodes, EnglishListing) {
    lexer_run run(GetParam().input);
    EXPECT_EQ(run.codes(), GetParam().codes) << GetParam().input;
}

INSTANTIATE_TEST_SUITE_P(
    Lexemes, LexerCodes,
    ::testing::Values(
        code_case{"12AB ;", {105, 222, 132}},
        code_case{". ;", {127, 132}},
        code_case{".. ;", {127, 127, 132}},
        code_case{"1EX ;", {222, 300, 132}},
        code_case{"=< => ;", {222, 222, 132}},
        code_case{"<= >= <> < = > ;", {85, 83, 90, 86, 82, 84, 132}},
        code_case{"== >> ;", {82, 82, 84, 84, 132}},
        code_case{"CNT100 ;", {1, 105, 132}},
        code_case{"CNT ;", {1, 132}},
        code_case{"CNTX1 ;", {222, 132}},
        code_case{"PAL_12 EV5 CTV3 CT7 ;", {249, 105, 551, 105, 553, 105, 11, 105, 132}},
        code_case{"-5 +5 ;", {87, 105, 91, 105, 132}},
        code_case{"ON+ ;", {386, 132}},
        code_case{"ON + ;", {386, 132}},
        code_case{"ON\r\n+ ;", {386, 132}},
        code_case{"OFF- ;", {387, 132}},
        code_case{"TIME AFTER TIME BEFORE ;", {384, 383, 132}},
        code_case{"PAL REG AUXILIARY POS ;", {255, 270, 132}},
        code_case{"ON\tOFF\rON\nOFF ;", {109, 108, 109, 108, 132}},
        code_case{"ON\fOFF ;", {222, 132}},
        code_case{"ON", {}},
        code_case{"$ABC AB$C ;", {229, 222, 229, 132}},
        code_case{"skip condition ;", {16, 132}},
        code_case{"mm MM Mm ;", {74, 74, 74, 132}},
        code_case{"q[1]=(k) \"x\" 'y' ! ;", {222, 124, 105, 129, 82, 126, 222, 131, 123, 300,
                                            123, 133, 301, 133, 218, 132}}));

struct number_case {
    const char *input;
    int32_t code;
    int32_t int_value;
    float real_value;
};

void PrintTo(const number_case &c, std::ostream *os) { *os << case_name(c.input); }

class LexerNumbers : public ::testing::TestWithParam<number_case> {};

TEST_P(LexerNumbers, ValueAndKind) {
    const number_case &c = GetParam();
    lexer_run run(std::string(c.input) + " ;");
    token_rec t = run.next();
    ASSERT_EQ(t.code, c.code) << c.input;
    if (c.code == tok_integer)
        EXPECT_EQ(t.int_value, c.int_value) << c.input;
    else
        EXPECT_FLOAT_EQ(t.real_value, c.real_value) << c.input;
    EXPECT_EQ(run.next().code, 132) << c.input;
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, LexerNumbers,
    ::testing::Values(number_case{"12", 105, 12, 0}, number_case{"0", 105, 0, 0},
                      number_case{"007", 105, 7, 0}, number_case{"1E5", 111, 0, 1e5f},
                      number_case{"1e5", 111, 0, 1e5f}, number_case{"1.5E-3", 111, 0, 1.5e-3f},
                      number_case{"2E+2", 111, 0, 200.0f}, number_case{"1.", 111, 0, 1.0f},
                      number_case{"1.E2", 111, 0, 100.0f}, number_case{".5", 111, 0, 0.5f},
                      number_case{"25.4", 111, 0, 25.4f},
                      number_case{"2147483647", 105, 2147483647, 0},
                      number_case{"2147483648", 105, 2147483647, 0},
                      number_case{"2147483904", 111, 0, 2147483904.0f},
                      number_case{"99999999999", 111, 0, 99999999999.0f},
                      number_case{"1000000000000000000000000000000000000", 111, 0, 1e36f},
                      // Beyond the real range the integer conversion saturates.
                      number_case{"99999999999999999999999999999999999999", 105, 2147483647, 0}));

TEST(LexerTokens, TextIsUpperCasedAndRealKeepsSlotText) {
    lexer_run run("abc 1.5 xyz ;");
    token_rec t = run.next();
    EXPECT_STREQ(t.text, "ABC");
    EXPECT_EQ(t.code, 222);
    t = run.next();
    EXPECT_EQ(t.code, 111);
    // A real sets no text: the slot still holds the word lexed before it.
    EXPECT_STREQ(t.text, "ABC");
    EXPECT_STREQ(run.next().text, "XYZ");
}

TEST(LexerTokens, BrokenExponentKeepsItsText) {
    lexer_run run("1EX 1E+ ;");
    token_rec t = run.next();
    EXPECT_EQ(t.code, 222);
    EXPECT_STREQ(t.text, "1E");
    EXPECT_STREQ(run.next().text, "X");
    t = run.next();
    EXPECT_EQ(t.code, 222);
    EXPECT_STREQ(t.text, "1E+");
}

TEST(LexerTokens, JoinedTextAndLineAcrossALineBreak) {
    lexer_run run("\nSKIP\n  CONDITION DI ;");
    token_rec t = run.next();
    EXPECT_EQ(t.code, 16);
    EXPECT_STREQ(t.text, "SKIP CONDITION");
    EXPECT_EQ(t.line, 2);
    EXPECT_EQ(run.next().code, 37);
}

TEST(LexerTokens, PeekShowsFirstWordOfACompoundAndMovesNothing) {
    lexer_run run("SKIP CONDITION ;");
    EXPECT_EQ(run.peek().code, 15);
    token_rec again = run.peek();
    EXPECT_EQ(again.code, 15);
    EXPECT_STREQ(again.text, "SKIP");
    EXPECT_EQ(run.next().code, 16);
    EXPECT_EQ(run.next().code, 132);
    EXPECT_EQ(run.next().code, tok_eof);
    EXPECT_EQ(run.next().code, tok_eof);
}

TEST(LexerLines, CrLfCountsOneLineAndTokenLineFollowsTheConsumer) {
    lexer_run run("ON\r\nOFF\r\n\r\nON\n;");
    token_rec t = run.next();
    EXPECT_EQ(t.line, 1);
    EXPECT_EQ(token_line_no, 1);
    // The lookahead already stands on the next token.
    EXPECT_EQ(input_line_no, 2);
    EXPECT_EQ(run.next().line, 2);
    t = run.next();
    EXPECT_EQ(t.line, 4);
    EXPECT_EQ(token_line_no, 4);
    EXPECT_EQ(run.next().line, 5);
}

TEST(LexerLines, NumberEndedByLineFeedStaysOnItsLine) {
    lexer_run run("12\n34\n");
    EXPECT_EQ(run.next().line, 1);
    token_rec t = run.next();
    EXPECT_EQ(t.int_value, 34);
    EXPECT_EQ(t.line, 2);
    EXPECT_EQ(run.next().code, tok_eof);
}

TEST(LexerRing, MarkReadTwoRewindAcrossTheWrap) {
    std::string text;
    for (int i = 1; i <= 300; i++)
        text += std::to_string(i) + " ";
    text += ";";
    lexer_run run(text);
    for (int i = 1; i <= 300; i++) {
        ASSERT_EQ(run.peek().int_value, i);
        ASSERT_EQ(mark_tokens(run.ctx), 0);
        EXPECT_EQ(mark_tokens(run.ctx), 1);
        ASSERT_EQ(run.next().int_value, i);
        token_rec second = run.next();
        ASSERT_EQ(rewind_tokens(run.ctx), 0);
        ASSERT_EQ(run.next().int_value, i) << "rewound read " << i;
        ASSERT_EQ(run.peek().code, second.code);
    }
    EXPECT_EQ(run.next().code, 132);
    EXPECT_EQ(rewind_tokens(run.ctx), 1);
}

TEST(LexerRing, RewindOverNinetyEightTokens) {
    std::string text;
    for (int i = 0; i < 120; i++)
        text += std::to_string(i) + " ";
    lexer_run run(text + ";");
    for (int i = 0; i < 10; i++)
        run.next();
    mark_tokens(run.ctx);
    for (int i = 10; i < 108; i++)
        ASSERT_EQ(run.next().int_value, i);
    rewind_tokens(run.ctx);
    for (int i = 10; i < 120; i++)
        ASSERT_EQ(run.next().int_value, i);
    EXPECT_EQ(run.next().code, 132);
}

TEST(LexerSource, RawBytesPositionsAndTrim) {
    lexer_run run("l p[1] ;\r\nj");
    token_rec t = run.next();
    EXPECT_EQ(t.source_pos, run.ctx->source_text);
    t = run.next();
    EXPECT_EQ(t.source_pos, run.ctx->source_text + 2);
    for (int i = 0; i < 4; i++)
        run.next();
    // The lookahead "j" was lost to the file end; its bytes are still there,
    // the CR raw, the LF as a blank, the file end as a zero byte.
    EXPECT_STREQ(run.ctx->source_text, "l p[1] ;\r j");
    EXPECT_EQ(run.ctx->source_len, 12);
    trim_source_text(run.ctx);
    EXPECT_STREQ(run.ctx->source_text, "\r j");
    EXPECT_EQ(run.ctx->source_len, 3);
}

TEST(LexerSource, KeepNewlinesStoresLineFeeds) {
    keep_newlines = 1;
    lexer_run run("! hi\nON ;");
    run.next();
    run.next();
    keep_newlines = 0;
    EXPECT_STREQ(run.ctx->source_text, "! hi\nON");
}

TEST(LexerSource, TextIsCappedAt254Bytes) {
    std::string text;
    for (int i = 0; i < 200; i++)
        text += "ON ";
    lexer_run run(text + ";");
    EXPECT_EQ(run.codes().size(), 201u);
    EXPECT_EQ(run.ctx->source_len, 254);
    EXPECT_EQ(std::strlen(run.ctx->source_text), 254u);
}

TEST(LexerLimits, LongLexemeIsCutAndTheNextTokenIsIntact) {
    std::string word(300, 'Q');
    lexer_run run(word + " ON ;");
    token_rec t = run.next();
    EXPECT_EQ(t.code, 222);
    EXPECT_EQ(std::strlen(t.text), 40u);
    EXPECT_EQ(run.next().code, 109);
}

TEST(LexerLimits, RepeatedJoinIsCutAtTheRecord) {
    // 60 (ABORT) followed by 283 joins back to 60, again and again.
    std::string text = "\xB7\xAE\xB3\xBE\xB2\xBC\xAD\xB3\xD8\xAE\xB3";
    for (int i = 0; i < 12; i++)
        text += " \xBC\xAD\xB3\xD8\xAE\xB3";
    lexer_run run(text + " ;", 0);
    token_rec t = run.next();
    EXPECT_EQ(t.code, 60);
    EXPECT_EQ(std::strlen(t.text), static_cast<size_t>(token_text_size - 1));
    EXPECT_EQ(std::memcmp(t.text, "\xB7\xAE\xB3\xBE\xB2\xBC\xAD\xB3\xD8\xAE\xB3 \xBC", 13), 0);
    EXPECT_EQ(run.next().code, 132);
}

TEST(LexerLimits, PushStackDropsWhatDoesNotFit) {
    lexer_reset_run();
    for (int i = 0; i < push_stack_size + 50; i++)
        push_char('A');
    EXPECT_EQ(push_count, push_stack_size);
    lexer_reset_run();
    EXPECT_EQ(push_count, 0);
}

TEST(LexerJapanese, KeywordsSplitsAndJoins) {
    // ﾅﾒﾗｶ100 ; ｵﾝ + ; ｲﾁﾎｾｲ ｼﾞｮｳｹﾝ
    lexer_run run("\xC5\xD2\xD7\xB6" "100 ; \xB5\xDD + ; \xB2\xC1\xCE\xBE\xB2 "
                  "\xBC\xDE\xAE\xB3\xB9\xDD ;",
                  0);
    EXPECT_EQ(run.codes(), (codes_t{1, 105, 132, 386, 132, 14, 132}));
}

TEST(LexerDoubleByte, TrailByteStaysInTheWord) {
    // 0x83 0x5B: the trail byte has the class of "[".
    lexer_run run("A\x83\x5B" "B \x82\x61 ;");
    token_rec t = run.next();
    EXPECT_EQ(t.code, 222);
    EXPECT_STREQ(t.text, "A\x83[B");
    // A trail byte between a and z is upper-cased like any byte.
    EXPECT_STREQ(run.next().text, "\x82\x41");
    EXPECT_EQ(run.next().code, 132);
}

TEST(LexerDoubleByte, ReductionToHalfWidth) {
    // Full-width ナメラカ１００ reads as ﾅﾒﾗｶ100; が gives ｶﾞ in two bytes.
    lexer_run run("\x83\x69\x83\x81\x83\x89\x83\x4A\x82\x50\x82\x4F\x82\x4F \x82\xAA ;", 0, 1);
    EXPECT_EQ(run.next().code, 1);
    EXPECT_EQ(run.next().int_value, 100);
    EXPECT_STREQ(run.next().text, "\xB6\xDE");
    EXPECT_EQ(run.next().code, 132);
}

TEST(LexerDoubleByte, ReadCharWithoutAHalfForm) {
    // 亜 has no half-width form: both bytes pass; a lone lead byte at the end
    // of the file is a byte of its own.
    lexer_run run("\x88\x9F\x82", 1, 1);
    EXPECT_EQ(read_char(run.ctx), 0x88);
    EXPECT_EQ(read_char(run.ctx), 0x9F);
    EXPECT_EQ(read_char(run.ctx), 0x82);
    EXPECT_EQ(read_char(run.ctx), -1);
}

} // namespace
