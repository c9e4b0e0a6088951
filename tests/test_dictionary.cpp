/*
** test_dictionary.cpp - the keyword dictionary: every code's printed word in
** both languages, every reading row's code, the duplicate and shared rows,
** the out-of-order RS row, the fallback codes and the caches.
*/
#include "core/dictionary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

struct expect_print {
    int32_t code;
    const char *english;
    const char *japanese;
};

struct expect_reading {
    const char *word;
    int32_t code;
};

#include "tests/data/dict_expect.inc"

const std::string unknown = " ***UNKNOWN*** ";

std::string upper_az(const char *s)
{
    std::string out(s);
    for (char &c : out) {
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 32);
    }
    return out;
}

std::vector<dict_entry> rows_of(const dict_entry *table)
{
    std::vector<dict_entry> rows;
    for (; table->text[0] != '\0'; table++)
        rows.push_back(*table);
    return rows;
}

std::string word_or_unknown(const char *word)
{
    return word != nullptr ? std::string(word) : unknown;
}

/* Rows typed by hand from the code table, so that a fault of the generator
   cannot hide behind its own test data. nullptr: no such row. */
struct hand_row {
    int32_t code;
    const char *english;
    const char *japanese;
    const char *english_reading;
    const char *japanese_reading;
};

const hand_row hand_rows[] = {
    {0, "C", "\xB4\xDD\xBA", "C", "\xB4\xDD\xBA"},
    {1, "CNT", "\xC5\xD2\xD7\xB6", "CNT", "\xC5\xD2\xD7\xB6"},
    {4, "L", "\xC1\xAE\xB8\xBE\xDD", "L", "\xC1\xAE\xB8\xBE\xDD"},
    {10, "ACC", "\xB6\xBF\xB8\xC4\xDE", "ACC", "\xB6\xBF\xB8\xC4\xDE"},
    {14, "OFFSET CONDITION ",
     "\xB2\xC1\xCE\xBE\xB2 \xBC\xDE\xAE\xB3\xB9\xDD ", nullptr, nullptr},
    {16, "SKIP CONDITION", "\xBD\xB7\xAF\xCC\xDF \xBC\xDE\xAE\xB3\xB9\xDD",
     "SKIP CONDITION", nullptr},
    {20, "PR", "\xB2\xC1\xDA\xBC\xDE", "PR", "PR"},
    {43, "ELSE", "\xBF\xC9\xC0", "OTHERWISE", "\xBF\xC9\xC0"},
    {62, "END", "\xBC\xAD\xB3\xD8\xAE\xB3", "END", "END"},
    {82, "=", "=", "=", "="},
    {87, "-", "-", "-", "-"},
    {102, "Constant", "\xC3\xB2\xBD\xB3", "CONSTANT", "\xC3\xB2\xBD\xB3"},
    {123, "\"", "\"", "\"", "\""},
    {130, "}", "}", "}", "}"},
    {134, "_", nullptr, nullptr, nullptr},
    {155, "COMMENT\t", "\xBA\xD2\xDD\xC4\t", "COMMENT", "\xBA\xD2\xDD\xC4"},
    {159, "FILE_NAME", "\xCC\xA7\xB2\xD9 \xD2\xB2\t", "FILE_NAME",
     "\xCC\xA7\xB2\xD9"},
    {251, "PALLET  ", "\xC2\xD0\xB1\xB9\xDE\xD9", "PALLET",
     "\xC2\xD0\xB1\xB9\xDE\xD9"},
    {254, "PAL REG", "\xCA\xDF\xDA\xAF\xC4 \xDA\xBC\xDE\xBD\xC0", "PAL",
     "\xCA\xDF\xDA\xAF\xC4"},
    {264, "LINE", "2\xC3\xDD  ", "LINE", "2\xC3\xDD"},
    {280, nullptr, "\xBC\xDE\xAE\xB3\xB9\xDD", nullptr, nullptr},
    {283, nullptr, nullptr, nullptr, "\xBC\xAD\xB3\xD8\xAE\xB3"},
    {297, nullptr, nullptr, nullptr, "\xB5\xDC\xD8_"},
    {298, nullptr, nullptr, "END_", "END_"},
    {309, "END_", "\xB5\xDC\xD8_", nullptr, nullptr},
    {320, "Weave", "\xB3\xA8-\xCC\xDE", "WEAVE", "\xB3\xA8\xB0\xCC\xDE"},
    {327, nullptr, nullptr, nullptr, "\xB3\xA8"},
    {370, "INDEX2", "\xB2\xDD\xC3\xDE\xAF\xB8\xBD" "2", nullptr,
     "\xB2\xDD\xC3\xDE\xAF\xB8\xBD" "2"},
    {411, "GunSel", "GunSel", "GUNSEL", "GUNSEL"},
    {417, nullptr, nullptr, nullptr, "\xBF\xB8\xC4\xDE"},
    {552, "Ind.", "\xCB", "IND", nullptr},
    {576, "Volts", "Volts", "Volts", "Volts"},
    {580, "GUN1", "\xB6\xDE\xDD" "1", "GUN1", "\xB6\xDE\xDD" "1"},
    {594, "Zero", "\xBE\xDE\xDB", "Zero", "\xBE\xDE\xDB"},
    {607, "2D", "2D", "D", "D"},
    {659, "P-SPS", "DAUGHTER", "SPS", "DAUGHTER"},
    {673, nullptr, nullptr, "RR", "RR"},
    {1208, "LINE_TRACK_SCHEDULE_NUMBER",
     "\xD7\xB2\xDD\xC4\xD7\xAF\xB7\xDD\xB8\xDE \xBD\xB9\xBC\xDE\xAD\xB0\xD9 "
     "\xCA\xDE\xDD\xBA\xDE\xB3",
     "LINE_TRACK_SCHEDULE_NUMBER", "LINE_TRACK_SCHEDULE_NUMBER"},
    {1213, "PRESET_#", "PRESET_#", "PRESET_#", "PRESET_#"},
    {1600, "BELL_JOB", nullptr, "BELL_JOB", nullptr},
    {1605, "unknown", nullptr, "UNKNOWN", nullptr},
    {1654, "INBOARD_TRIGGER_LOC", nullptr, "INBOARD_TRIGGER_ZONE", nullptr},
    {1721, "LINE_TRACK", "\xD7\xB2\xDD\xC4\xD7\xAF\xB7\xDD\xB8\xDE",
     "LINE_TRACK", "LINE_TRACK"},
    {1727, "SELECTED_BOUNDARY",
     "\xBE\xDD\xC0\xB8\xBC\xC3\xB2\xD9 \xD8\xAE\xB3\xB2\xB7",
     "SELECTED_BOUNDARY", "\xBE\xDD\xC0\xB8\xBC\xC3\xB2\xD9"},
    {1728, nullptr, nullptr, nullptr, "\xBC\xAD\xB3\xD8\xAE\xB3\xBA\xDE\xC9"},
};

class DictionaryTest : public ::testing::Test {
protected:
    void SetUp() override { dict_reset_reading(); }
    void TearDown() override { dict_init(1); }
};

/* ---- printing tables ---- */

TEST_F(DictionaryTest, EveryCodePrintsItsEnglishWord)
{
    dict_init(1);
    for (const expect_print &e : expect_print_rows) {
        SCOPED_TRACE(e.code);
        EXPECT_EQ(dict_word(e.code), word_or_unknown(e.english));
        EXPECT_EQ(dict_word(e.code), word_or_unknown(e.english)); /* cached */
    }
}

TEST_F(DictionaryTest, EveryCodePrintsItsJapaneseWord)
{
    dict_init(0);
    for (const expect_print &e : expect_print_rows) {
        SCOPED_TRACE(e.code);
        EXPECT_EQ(dict_word(e.code), word_or_unknown(e.japanese));
        EXPECT_EQ(dict_word(e.code), word_or_unknown(e.japanese));
    }
}

TEST_F(DictionaryTest, CodesOutsideTheTableAreUnknown)
{
    std::set<int32_t> listed;
    for (const expect_print &e : expect_print_rows)
        listed.insert(e.code);
    EXPECT_EQ(listed.size(), 622u);
    for (int32_t language : {1, 0}) {
        dict_init(language);
        for (int32_t code = 0; code < 4096; code++) {
            if (listed.count(code) == 0) {
                ASSERT_EQ(dict_word(code), unknown) << code << " lang " << language;
            }
        }
    }
}

TEST_F(DictionaryTest, HandRowsPrint)
{
    for (const hand_row &h : hand_rows) {
        SCOPED_TRACE(h.code);
        dict_init(1);
        EXPECT_EQ(dict_word(h.code), word_or_unknown(h.english));
        dict_init(0);
        EXPECT_EQ(dict_word(h.code), word_or_unknown(h.japanese));
    }
}

TEST_F(DictionaryTest, RowCounts)
{
    EXPECT_EQ(rows_of(english_print_table).size(), 551u);
    EXPECT_EQ(rows_of(japanese_print_table).size(), 462u);
    EXPECT_EQ(rows_of(english_reading_table).size(), 513u);
    EXPECT_EQ(rows_of(japanese_reading_table).size(), 467u);
}

/* Codes with more than one printing row, and the texts of those rows. */
std::map<int32_t, std::vector<std::string>> repeated_codes(const dict_entry *table)
{
    std::map<int32_t, std::vector<std::string>> all;
    for (const dict_entry &r : rows_of(table))
        all[r.code].push_back(r.text);
    std::map<int32_t, std::vector<std::string>> repeated;
    for (auto &kv : all) {
        if (kv.second.size() > 1)
            repeated.insert(kv);
    }
    return repeated;
}

TEST_F(DictionaryTest, DuplicatePrintingRows)
{
    std::map<int32_t, std::vector<std::string>> english = {
        {20, {"PR", "PR"}}, {81, {"DIV", "DIV"}},
        {211, {"INDEX", "INDEX"}}, {561, {"START", "START"}}};
    EXPECT_EQ(repeated_codes(english_print_table), english);
    std::map<int32_t, std::vector<std::string>> japanese = {
        {20, {"\xB2\xC1\xDA\xBC\xDE", "PR"}},
        {81, {"DIV", "DIV"}},
        {1201, {"LAST_CYCLE_TIME", "LAST_CYCLE_TIME"}},
        {1202, {"LAST_GUN_ON_TIME", "LAST_GUN_ON_TIME"}},
        {1204, {"DEFAULT_USER_FRAME", "DEFAULT_USER_FRAME"}},
        {1205, {"DEFAULT_TOOL_FRAME", "DEFAULT_TOOL_FRAME"}}};
    EXPECT_EQ(repeated_codes(japanese_print_table), japanese);
}

TEST_F(DictionaryTest, FirstRowOfACodeWins)
{
    dict_init(0);
    const char *first = nullptr;
    for (const dict_entry *r = japanese_print_table; r->text[0]; r++) {
        if (r->code == 20) {
            first = r->text;
            break;
        }
    }
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(dict_word(20), first); /* the very row, not a copy */
    EXPECT_STREQ(dict_word(20), "\xB2\xC1\xDA\xBC\xDE");
}

struct shared_word {
    int32_t language;
    const char *word;
    std::vector<int32_t> codes;
};

TEST_F(DictionaryTest, WordsSharedByCodes)
{
    const shared_word cases[] = {
        {1, "L", {4, 316}}, {1, "P", {5, 304, 582}}, {1, "R", {21, 305}},
        {1, "A", {6, 306}}, {1, "M", {315, 655}}, {1, "OPEN", {110, 312}},
        {1, "CLOSE", {100, 313}}, {1, "END", {62, 329}},
        {1, "CONFIG", {180, 277}}, {1, "LINE", {264, 605}},
        {1, "ATTACH", {592, 597}}, {1, "DETACH", {593, 598}},
        {1, "POS", {198, 293}}, {1, "START", {113, 561, 665}},
        {0, "\xC2\xD0\xC3\xDD", {244, 278}},
        {0, "\xBD\xC4\xDB\xB0\xB8", {311, 583}},
        {0, "\xBC\xDE\xAE\xB3\xB9\xDD", {280, 379}},
        {0, "\xC4\xD7\xAF\xB7\xDD\xB8\xDE", {402, 506}},
        {0, "\xBB\xB7\xBC\xDE\xAF\xBA\xB3", {383, 599, 600}},
        {0, "\xB1\xC4\xBC\xDE\xAF\xBA\xB3", {384, 601}},
        {0, "\xBE\xDD\xBB", {509, 1502}},
        {0, "\xB2\xC1\xDA\xBC\xDE", {20, 356}},
        {0, "\xB9\xDD\xBC\xAD\xC2", {382, 564}},
        {0, "\xD1\xBA\xB3", {103, 1211}},
        {0, "\xD5\xB3\xBA\xB3", {104, 1212}},
    };
    for (const shared_word &c : cases) {
        dict_init(c.language);
        for (int32_t code : c.codes)
            EXPECT_STREQ(dict_word(code), c.word) << code;
    }
}

TEST_F(DictionaryTest, LanguageSwitchClearsTheCache)
{
    dict_init(0);
    EXPECT_STREQ(dict_word(20), "\xB2\xC1\xDA\xBC\xDE");
    dict_init(1);
    EXPECT_STREQ(dict_word(20), "PR");
    dict_init(0);
    EXPECT_STREQ(dict_word(20), "\xB2\xC1\xDA\xBC\xDE");
    EXPECT_EQ(dict_table, japanese_print_table);
    for (int32_t other : {-1, 2, 100}) {
        dict_init(1);
        EXPECT_STREQ(dict_word(0), "C");
        dict_init(other);
        EXPECT_EQ(dict_table, japanese_print_table) << other;
        EXPECT_STREQ(dict_word(0), "\xB4\xDD\xBA") << other;
    }
}

TEST_F(DictionaryTest, UnknownCodes)
{
    const int32_t codes[] = {-1, -2, -4096, INT32_MIN, 4096, 4097, 65536 + 20,
                             100000, INT32_MAX, 7, 105, 111, 210, 222, 229,
                             4095};
    for (int32_t language : {1, 0}) {
        dict_init(language);
        for (int32_t code : codes) {
            EXPECT_EQ(dict_word(code), unknown) << code;
            EXPECT_EQ(dict_word(code), unknown) << code; /* a miss is not stuck */
        }
    }
}

TEST_F(DictionaryTest, NoTableSelectedIsUnknown)
{
    dict_init(1);
    dict_table = nullptr; /* as before any selection */
    EXPECT_EQ(dict_word(0), unknown);
    EXPECT_EQ(dict_word(-5), unknown);
    EXPECT_EQ(dict_word(5000), unknown);
    dict_init(1);
    EXPECT_STREQ(dict_word(0), "C"); /* the miss above left no trace */
}

/* ---- reading tables ---- */

void check_every_reading_row(const dict_entry *table, const expect_reading *rows,
                             size_t count, bool english)
{
    for (size_t i = 0; i < count; i++) {
        const expect_reading &e = rows[i];
        SCOPED_TRACE(e.word);
        int32_t want = e.code;
        if (english && e.code == 574)
            want = 222; /* RS: passed over by the search */
        EXPECT_EQ(keyword_search(table, upper_az(e.word).c_str()), want);
    }
}

TEST_F(DictionaryTest, EveryEnglishReadingRowFindsItsCode)
{
    EXPECT_EQ(std::size(expect_english_reading_rows), 513u);
    check_every_reading_row(english_reading_table, expect_english_reading_rows,
                            std::size(expect_english_reading_rows), true);
}

TEST_F(DictionaryTest, EveryJapaneseReadingRowFindsItsCode)
{
    EXPECT_EQ(std::size(expect_japanese_reading_rows), 467u);
    check_every_reading_row(japanese_reading_table, expect_japanese_reading_rows,
                            std::size(expect_japanese_reading_rows), false);
}

TEST_F(DictionaryTest, ReadingWordIsTheFirstRowOfTheCode)
{
    struct lang {
        const dict_entry *table;
        const expect_reading *rows;
        size_t count;
    };
    const lang langs[] = {
        {english_reading_table, expect_english_reading_rows,
         std::size(expect_english_reading_rows)},
        {japanese_reading_table, expect_japanese_reading_rows,
         std::size(expect_japanese_reading_rows)}};
    for (const lang &l : langs) {
        std::map<int32_t, std::string> first;
        for (size_t i = 0; i < l.count; i++)
            first.emplace(l.rows[i].code, l.rows[i].word);
        for (const expect_print &e : expect_print_rows) {
            const char *got = reading_word(l.table, static_cast<uint16_t>(e.code));
            auto it = first.find(e.code);
            if (it == first.end())
                EXPECT_EQ(got, nullptr) << e.code;
            else
                EXPECT_STREQ(got, it->second.c_str()) << e.code;
        }
    }
}

TEST_F(DictionaryTest, HandRowsRead)
{
    for (const hand_row &h : hand_rows) {
        SCOPED_TRACE(h.code);
        EXPECT_STREQ(reading_word(english_reading_table, h.code), h.english_reading);
        EXPECT_STREQ(reading_word(japanese_reading_table, h.code),
                     h.japanese_reading);
        if (h.english_reading != nullptr) {
            EXPECT_EQ(keyword_search(english_reading_table,
                                     upper_az(h.english_reading).c_str()), h.code);
        }
        if (h.japanese_reading != nullptr) {
            EXPECT_EQ(keyword_search(japanese_reading_table,
                                     upper_az(h.japanese_reading).c_str()), h.code);
        }
    }
}

TEST_F(DictionaryTest, ReadingTablesAreSorted)
{
    std::vector<dict_entry> en = rows_of(english_reading_table);
    size_t out_of_order = 0;
    for (size_t i = 0; i + 1 < en.size(); i++) {
        if (upper_az(en[i].text) > upper_az(en[i + 1].text)) {
            out_of_order++;
            EXPECT_STREQ(en[i].text, "RS");
            EXPECT_EQ(en[i].code, 574);
            EXPECT_STREQ(en[i + 1].text, "RR");
            ASSERT_GT(i, 0u);
            EXPECT_STREQ(en[i - 1].text, "RPM");
            ASSERT_LT(i + 2, en.size());
            EXPECT_STREQ(en[i + 2].text, "RSR");
        }
    }
    EXPECT_EQ(out_of_order, 1u);
    std::vector<dict_entry> jp = rows_of(japanese_reading_table);
    for (size_t i = 0; i + 1 < jp.size(); i++)
        EXPECT_LE(upper_az(jp[i].text), upper_az(jp[i + 1].text)) << jp[i].text;
}

struct search_case {
    const char *word;
    int32_t english;
    int32_t japanese;
};

TEST_F(DictionaryTest, SearchCases)
{
    const search_case cases[] = {
        {"RS", 222, 574}, {"RR", 673, 673}, {"RSR", 219, 219},
        {"RPM", 404, 222}, {"RP", 672, 672},
        {"$", 122, 122}, {"$FOO", 229, 229}, {"$RS", 229, 229},
        {"FOO", 222, 222}, {"", 222, 222}, {"CNT1", 222, 222},
        {"DIV", 81, 81}, {"PR", 20, 20}, {"OTHERWISE", 43, 222},
        {"ELSE", 330, 222}, {"<=", 85, 85}, {"=<", 222, 222},
        {"CM", 70, 70}, {"DEG", 71, 71}, {"INCH", 72, 72},
        {"MASTER", 595, 222}, {"MIN", 73, 73}, {"MM", 74, 74},
        {"MSEC", 662, 662}, {"SEC", 75, 75}, {"VOLTS", 576, 576},
        {"ZERO", 594, 222},
        /* the word is taken as given: only the row is upper-cased */
        {"mm", 222, 222}, {"Volts", 222, 222},
        /* a prefix or an extension of a row is another word */
        {"CN", 222, 222}, {"CNTX", 222, 222}, {"A", 306, 306},
        {"\xB2\xC1\xDA\xBC\xDE", 222, 20}, {"\xB6\xB2\xBC", 222, 113},
        {"\xBD\xC0\xB0\xC4", 222, 113}, {"CONDITION", 281, 281},
        {"\xBC\xDE\xAE\xB3\xB9\xDD", 222, 281}, {"\xBB\xB0\xC1", 222, 400},
        {"\xCE\xBE\xB2\xB9\xB2\xBB\xDD", 222, 400}, {"WELDER", 1305, 1305},
        {"\xD6\xB3\xBE\xC2\xB7", 222, 1305}, {"LINE_TRACK", 1721, 1721},
        {"\xD7\xB2\xDD\xC4\xD7\xAF\xB7\xDD\xB8\xDE", 222, 1721},
        {"\xFF\xFF", 222, 222},
    };
    for (const search_case &c : cases) {
        EXPECT_EQ(keyword_search(english_reading_table, c.word), c.english) << c.word;
        EXPECT_EQ(keyword_search(japanese_reading_table, c.word), c.japanese)
            << c.word;
    }
}

TEST_F(DictionaryTest, MixedCaseRowsStayMixed)
{
    const char *english[] = {"cm", "deg", "inch", "Master", "min", "mm",
                             "msec", "sec", "Volts", "Zero"};
    const char *japanese[] = {"cm", "deg", "inch", "min", "mm", "msec", "sec",
                              "Volts"};
    std::set<std::string> en_mixed, jp_mixed;
    for (const dict_entry &r : rows_of(english_reading_table)) {
        if (upper_az(r.text) != r.text)
            en_mixed.insert(r.text);
    }
    for (const dict_entry &r : rows_of(japanese_reading_table)) {
        if (upper_az(r.text) != r.text)
            jp_mixed.insert(r.text);
    }
    EXPECT_EQ(en_mixed, std::set<std::string>(std::begin(english), std::end(english)));
    EXPECT_EQ(jp_mixed,
              std::set<std::string>(std::begin(japanese), std::end(japanese)));
}

TEST_F(DictionaryTest, JapaneseTwoSpellings)
{
    std::map<int32_t, std::multiset<std::string>> want = {
        {20, {"PR", "\xB2\xC1\xDA\xBC\xDE"}},
        {81, {"DIV", "DIV"}},
        {113, {"\xB6\xB2\xBC", "\xBD\xC0\xB0\xC4"}},
        {281, {"CONDITION", "\xBC\xDE\xAE\xB3\xB9\xDD"}},
        {400, {"\xBB\xB0\xC1", "\xCE\xBE\xB2\xB9\xB2\xBB\xDD"}},
        {1305, {"WELDER", "\xD6\xB3\xBE\xC2\xB7"}},
        {1721, {"LINE_TRACK", "\xD7\xB2\xDD\xC4\xD7\xAF\xB7\xDD\xB8\xDE"}}};
    std::map<int32_t, std::multiset<std::string>> got;
    for (const dict_entry &r : rows_of(japanese_reading_table))
        got[r.code].insert(r.text);
    for (auto it = got.begin(); it != got.end();) {
        it = it->second.size() > 1 ? std::next(it) : got.erase(it);
    }
    EXPECT_EQ(got, want);
    for (const dict_entry &r : rows_of(english_reading_table)) {
        EXPECT_EQ(std::count_if(english_reading_table,
                                english_reading_table + 513,
                                [&](const dict_entry &o) { return o.code == r.code; }),
                  1) << r.code;
    }
}

TEST_F(DictionaryTest, SplitListWords)
{
    /* The codes whose words the lexer cuts off glued digits, in its order. */
    const uint16_t codes[] = {10, 1, 230, 242, 243, 245, 246, 247, 248, 249,
                              297, 298, 11, 551, 350, 553, 417, 143, 380, 390};
    const char *english[] = {"ACC", "CNT", "MACRO_", "A_", "R_", "B_", "BX_",
                             "E_", "EX_", "PAL_", "END_", "CT", "EV", "CTV",
                             "GP", "CD", "CS"};
    const char *japanese[] = {
        "\xB6\xBF\xB8\xC4\xDE", "\xC5\xD2\xD7\xB6", "MACRO_", "\xBE_", "\xC6_",
        "B_", "BX_", "E_", "EX_", "\xB2\xC1_", "\xB5\xDC\xD8_", "END_",
        "\xBA\xB0\xC5\xB0\xB7\xAE\xD6\xB3\xC1",
        "\xC4\xDE\xB3\xB7\xCC\xB6\xBF\xB8\xC4\xDE",
        "\xCB\xC4\xDE\xB3\xB7\xCC\xB6\xBF\xB8\xC4\xDE",
        "\xDA\xDD\xBF\xDE\xB8\xB6\xB2\xC3\xDD", "\xBF\xB8\xC4\xDE", "GP",
        "\xBA\xB0\xC5", "\xDC\xD8\xB1\xB2"};
    std::vector<std::string> en_got, jp_got;
    for (uint16_t code : codes) {
        if (const char *w = reading_word(english_reading_table, code))
            en_got.push_back(w);
        if (const char *w = reading_word(japanese_reading_table, code))
            jp_got.push_back(w);
    }
    EXPECT_EQ(en_got, std::vector<std::string>(std::begin(english), std::end(english)));
    EXPECT_EQ(jp_got,
              std::vector<std::string>(std::begin(japanese), std::end(japanese)));
}

TEST_F(DictionaryTest, ReadingCountFollowsTheTable)
{
    EXPECT_EQ(reading_last, 0);
    EXPECT_EQ(keyword_search(english_reading_table, "CNT"), 1);
    EXPECT_EQ(reading_last, 512);
    EXPECT_STREQ(reading_word(english_reading_table, 1), "CNT");
    /* Another table without a reset: recounted, its own cache. */
    EXPECT_STREQ(reading_word(japanese_reading_table, 1), "\xC5\xD2\xD7\xB6");
    EXPECT_EQ(reading_last, 466);
    EXPECT_EQ(keyword_search(japanese_reading_table, "\xC5\xD2\xD7\xB6"), 1);
    EXPECT_EQ(keyword_search(english_reading_table, "ZERO"), 594);
    EXPECT_EQ(reading_last, 512);
    EXPECT_STREQ(reading_word(english_reading_table, 1), "CNT");
    /* Codes above the cache and the last row of each table. */
    EXPECT_STREQ(reading_word(english_reading_table, 1727), "SELECTED_BOUNDARY");
    EXPECT_STREQ(reading_word(english_reading_table, 1727), "SELECTED_BOUNDARY");
    EXPECT_EQ(reading_word(english_reading_table, 1728), nullptr);
    EXPECT_EQ(reading_word(english_reading_table, 0xFFFF), nullptr);
    dict_reset_reading();
    EXPECT_EQ(reading_last, 0);
    EXPECT_STREQ(reading_word(japanese_reading_table, 1728),
                 "\xBC\xAD\xB3\xD8\xAE\xB3\xBA\xDE\xC9");
    EXPECT_EQ(reading_last, 466);
}

TEST_F(DictionaryTest, FirstAndLastReadingRows)
{
    for (const dict_entry *table : {english_reading_table, japanese_reading_table}) {
        std::vector<dict_entry> rows = rows_of(table);
        ASSERT_FALSE(rows.empty());
        EXPECT_EQ(keyword_search(table, upper_az(rows.front().text).c_str()),
                  rows.front().code);
        EXPECT_EQ(keyword_search(table, upper_az(rows.back().text).c_str()),
                  rows.back().code);
        /* Words sorting before the first and after the last row. */
        EXPECT_EQ(keyword_search(table, "\x01"), 222);
        EXPECT_EQ(keyword_search(table, "\xFE\xFE\xFE"), 222);
    }
}

TEST_F(DictionaryTest, NullArguments)
{
    EXPECT_EQ(keyword_search(nullptr, "CNT"), 222);
    EXPECT_EQ(keyword_search(english_reading_table, nullptr), 222);
    EXPECT_EQ(reading_word(nullptr, 1), nullptr);
}

TEST_F(DictionaryTest, LongWordsDoNotMatch)
{
    std::string word(300, 'A');
    EXPECT_EQ(keyword_search(english_reading_table, word.c_str()), 222);
    word[0] = '$';
    EXPECT_EQ(keyword_search(japanese_reading_table, word.c_str()), 229);
    std::string almost = "LINE_TRACK_SCHEDULE_NUMBER" + std::string(40, '_');
    EXPECT_EQ(keyword_search(english_reading_table, almost.c_str()), 222);
}

} // namespace
