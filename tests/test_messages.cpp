// Error messages in both languages, the fallback texts, the named codes
// and the conversion of the Japanese tables to UTF-8.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

#include "core/messages.h"
#include "core/run_state.h"
#include "vorex_zd.h"

namespace {

class Messages : public ::testing::Test {
protected:
    void SetUp() override { saved = message_language; }
    void TearDown() override { message_language = saved; }

    std::string message(int32_t code, int32_t language) {
        message_language = language;
        char text[512];
        std::memset(text, 'x', sizeof text);
        EXPECT_EQ(zdgeterrmsg(code, text), 0);
        return text;
    }

    int32_t saved = 0;
};

struct message_case {
    int32_t code;
    const char *english;
    const char *japanese;
};

const message_case cases[] = {
    {1376341, "Wrong attribute data\n",
     "\x83\x41\x83\x67\x83\x8A\x83\x72\x83\x85\x81\x5B\x83\x67\x83\x66\x81\x5B\x83\x5E\x82\xAA\x90\xB3"
     "\x82\xB5\x82\xAD\x82\xA0\x82\xE8\x82\xDC\x82\xB9\x82\xF1\n"},
    {1376345, "Syntax error in instruction\n", "\x95\xB6\x96\x40\x83\x47\x83\x89\x81\x5B\x82\xC5\x82\xB7\n"},
    {1376348, "Invalid section encountered\n", "\x95\xB6\x96\x40\x83\x47\x83\x89\x81\x5B\x82\xC5\x82\xB7\n"},
    {167, "Expecting an integer.\n", "\x90\xAE\x90\x94\x82\xAA\x95\x4B\x97\x76\x82\xC5\x82\xB7\n"},
    {117, "Expecting a comma\n", "','\x82\xAA\x95\x4B\x97\x76\x82\xC5\x82\xB7\n"},
    /* "same": the Japanese table holds the English text. */
    {118, "Invalid Backup option\n", "Invalid Backup option\n"},
    {165, "Last Gun statement not Gun=OFF.  Please fix ASCII source file.\n",
     "Last Gun statement not Gun=OFF.  Please fix ASCII source file.\n"},
    {180, "Error in robot configuration file: invalid numberof axes\n",
     "Error in robot configuration file: invalid numberof axes\n"},
    /* One blank. */
    {174, " \n", " \n"},
    /* Half-width katakana in a Japanese text. */
    {188, "Invalid combination of AND/OR.\n",
     "\xB6\xC2\x82\xC6\xCF\xC0\xCA\x82\xAA\x88\xEA\x8F\x8F\x82\xC9\x8E\x67\x97\x70\x82\xB3\x82\xEA\x82\xC4"
     "\x82\xA2\x82\xDC\x82\xB7\n"},
    /* No Japanese row: the Japanese fallback. */
    {186, "Incorrect Bell Zone Number.\n", "\x95\xB6\x96\x40\x83\x47\x83\x89\x81\x5B\x82\xC5\x82\xB7\n"},
    {187, "Incorrect Bell Trigger Number.\n", "\x95\xB6\x96\x40\x83\x47\x83\x89\x81\x5B\x82\xC5\x82\xB7\n"},
    /* No row in either table: the fallback. 0 ends the tables. */
    {0, "Syntax Error\n", "\x95\xB6\x96\x40\x83\x47\x83\x89\x81\x5B\x82\xC5\x82\xB7\n"},
    {1, "Syntax Error\n", "\x95\xB6\x96\x40\x83\x47\x83\x89\x81\x5B\x82\xC5\x82\xB7\n"},
    {89, "Syntax Error\n", "\x95\xB6\x96\x40\x83\x47\x83\x89\x81\x5B\x82\xC5\x82\xB7\n"},
    {283, "Syntax Error\n", "\x95\xB6\x96\x40\x83\x47\x83\x89\x81\x5B\x82\xC5\x82\xB7\n"},
    {1376344, "Syntax Error\n", "\x95\xB6\x96\x40\x83\x47\x83\x89\x81\x5B\x82\xC5\x82\xB7\n"},
    {723124237, "Syntax Error\n", "\x95\xB6\x96\x40\x83\x47\x83\x89\x81\x5B\x82\xC5\x82\xB7\n"},
    {-1, "Syntax Error\n", "\x95\xB6\x96\x40\x83\x47\x83\x89\x81\x5B\x82\xC5\x82\xB7\n"},
};

TEST_F(Messages, TextOfEachCodeInBothLanguages) {
    for (const message_case &c : cases) {
        EXPECT_EQ(message(c.code, 1), c.english) << c.code;
        EXPECT_EQ(message(c.code, 0), c.japanese) << c.code;
    }
}

TEST_F(Messages, NullTextIsTolerated) { EXPECT_EQ(zdgeterrmsg(102, nullptr), 0); }

int32_t rows(const message_row *table) {
    int32_t n = 0;
    while (table[n].code != 0)
        n++;
    return n;
}

TEST_F(Messages, TablesHoldTheirRowsInOrder) {
    EXPECT_EQ(rows(english_messages), 93);
    EXPECT_EQ(rows(japanese_messages), 91);
    EXPECT_EQ(english_messages[0].code, 1376341);
    EXPECT_EQ(english_messages[15].code, 1376345);
    EXPECT_EQ(english_messages[92].code, 187);
    EXPECT_EQ(japanese_messages[90].code, 193);
    std::set<int32_t> english;
    for (const message_row *r = english_messages; r->code; r++) {
        EXPECT_TRUE(english.insert(r->code).second) << "twice: " << r->code;
        EXPECT_LT(std::strlen(r->text), 100u) << r->code;
    }
    for (const message_row *r = japanese_messages; r->code; r++)
        EXPECT_TRUE(english.count(r->code)) << r->code;
    EXPECT_EQ(message_lookup(186, 0), nullptr);
    EXPECT_EQ(message_lookup(187, 0), nullptr);
    EXPECT_EQ(message_lookup(0, 1), nullptr);
}

TEST_F(Messages, NamedCodes) {
    EXPECT_EQ(ASC_SYNTAX_ERROR, 1376345);
    EXPECT_EQ(ASC_SYNTAX_ERROR & 0xFFFF, 89);
    EXPECT_EQ(ASC_SYNTAX_ERROR2, 1376344);
    EXPECT_EQ(ASC_BAD_ATTR_DATA, 1376341);
    EXPECT_EQ(ASC_POS_SYNTAX, 1376342);
    EXPECT_EQ(ASC_BAD_PROG_SECTION, 1376347);
    EXPECT_EQ(ASC_EXPECT_INT, 167);
    EXPECT_EQ(ASC_NO_MEMORY, 115);
    EXPECT_EQ(ASC_BLANK_MESSAGE, 174);
    EXPECT_EQ(ASC_BAD_BELL_TRIGGER, 187);
    EXPECT_EQ(ASC_COND_NO_GROUP, 193);
}

TEST_F(Messages, WarningVocabulary) {
    EXPECT_EQ(rows(english_warnings), 5);
    EXPECT_EQ(rows(japanese_warnings), 5);
    EXPECT_STREQ(english_warnings[4].text, "Set task priority to 50");
    EXPECT_EQ(english_warnings[2].code, 102);
    EXPECT_STREQ(english_warnings[2].text, "Duplicated label");
    /* Reporting changes nothing a host can see. */
    message_language = 1;
    report_warning(104);
    EXPECT_EQ(message(104, 1), "Undefined pallet number\n");
}

std::string utf8(const char *sjis) {
    char out[1024];
    sjis_to_utf8(sjis, out, sizeof out);
    return out;
}

TEST_F(Messages, ShiftJisToUtf8) {
    EXPECT_EQ(utf8("abc 1"), "abc 1");
    EXPECT_EQ(utf8("\xA1\xB6\xDF"), "\xEF\xBD\xA1\xEF\xBD\xB6\xEF\xBE\x9F");
    EXPECT_EQ(utf8("\x95\xB6\x96\x40"), "\xE6\x96\x87\xE6\xB3\x95"); /* two kanji */
    EXPECT_EQ(utf8("','\x82\xAA"), "','\xE3\x81\x8C");
    /* A character no table uses, a lone lead byte at the end, a stray byte. */
    EXPECT_EQ(utf8("\x88\x9F"), "\xEF\xBF\xBD");
    EXPECT_EQ(utf8("a\x95"), "a\xEF\xBF\xBD");
    EXPECT_EQ(utf8("\x80z"), "\xEF\xBF\xBDz");
    EXPECT_EQ(utf8(nullptr), "");
}

TEST_F(Messages, ShiftJisToUtf8StopsAtTheBuffer) {
    char out[5];
    std::memset(out, 'x', sizeof out);
    EXPECT_EQ(sjis_to_utf8("\xB6\xB6", out, sizeof out), 6u);
    EXPECT_EQ(out[4], 0);
    EXPECT_EQ(std::string(out, 3), "\xEF\xBD\xB6");
    EXPECT_EQ(sjis_to_utf8("abc", nullptr, 0), 3u);
}

TEST_F(Messages, EveryJapaneseTextHasItsGlyphs) {
    for (const message_row *r = japanese_messages; r->code; r++)
        EXPECT_EQ(utf8(r->text).find("\xEF\xBF\xBD"), std::string::npos) << r->code;
    for (const message_row *r = japanese_warnings; r->code; r++)
        EXPECT_EQ(utf8(r->text).find("\xEF\xBF\xBD"), std::string::npos) << r->code;
    EXPECT_EQ(utf8(japanese_fallback), "\xE6\x96\x87\xE6\xB3\x95\xE3\x82\xA8\xE3\x83\xA9\xE3\x83\xBC\xE3\x81\xA7"
                                       "\xE3\x81\x99");
    for (size_t i = 1; i < sjis_glyph_count; i++)
        EXPECT_LT(sjis_glyphs[i - 1].code, sjis_glyphs[i].code);
}

} // namespace
