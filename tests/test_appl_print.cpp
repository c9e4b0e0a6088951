// The /APPL section printed from application blocks made byte by byte:
// each form's exact text, the order by group number, the skip of a second
// group with one label, the lookups by label, and hostile blocks.
#include <gtest/gtest.h>

#include "bin2asc/loader.h"
#include "core/alloc.h"
#include "sections/appl_records.h"
#include "sections/appl_section.h"
#include "test_appl_util.h"
#include "test_decode_tp.h"
#include "text/decode_tables.h"
#include "vorex_zd.h"

namespace {

using appl_test::block;
using appl_test::record;

std::string muap(int mask) {
    std::string m("MUAP\0\0\0\0\0\0\0\0", 12);
    m[4] = static_cast<char>(mask >> 24);
    m[5] = static_cast<char>(mask >> 16);
    m[6] = static_cast<char>(mask >> 8);
    m[7] = static_cast<char>(mask);
    return m;
}

/* A program with no lines and no positions around an application block. */
std::string file_with(const std::string &appl) {
    tp::bytes b = tp::name_record("TEST");
    tp::append(b, tp::attr_block());
    tp::append(b, tp::line_block({}));
    tp::append(b, tp::pos_block({}));
    return std::string(b.begin(), b.end()) + appl;
}

/* The /APPL lines printed for a block, in English or Japanese. */
std::string printed(const std::vector<std::string> &records, const std::string &ext = ".PE") {
    int32_t result = 0;
    std::string text = vzt::binary_to_listing(file_with(block(records)), ext, &result);
    EXPECT_EQ(result, 1);
    return appl_test::appl_lines(text);
}

struct print_case {
    std::vector<std::string> records;
    const char *text;
};

TEST(ApplPrint, EachFormPrintsItsExactText) {
    const print_case cases[] = {
        {{}, ""},
        {{record(0, 0, muap(1))}, "\tARC : TRUE;\r\n"},
        {{record(0, 0, muap(2))}, "\tSPOT : TRUE;\r\n"},
        {{record(0, 0, muap(8))}, "\tHANDLING : TRUE;\r\n"},
        {{record(0, 0, muap(16))}, "\tLASER : TRUE;\r\n"},
        {{record(0, 0, muap(32))}, "\tDISPENSE : TRUE;\r\n"},
        {{record(0, 0, muap(64))}, "\tPAINT : TRUE;\r\n"},
        // Only single known bits print.
        {{record(0, 0, muap(3))}, ""},
        {{record(0, 0, muap(4))}, ""},
        {{record(0, 0, muap(0))}, ""},
        {{record(0, 0, muap(0x100))}, ""},
        {{record(0, 0, std::string("MUAP\0\0\0", 7))}, ""},
        {{record(0, 0, std::string("ARCW\0", 5))}, "  ARC Welding Equipment Number : 0 ;\r\n"},
        {{record(0, 0, "ARCW\x02")}, "  ARC Welding Equipment Number : 2 ;\r\n"},
        {{record(0, 0, "ARCW\x03")}, "  ARC Welding Equipment : 1,1,*,* ;\r\n"},
        {{record(0, 0, "ARCW\x0A")}, "  ARC Welding Equipment : *,1,*,1 ;\r\n"},
        {{record(0, 0, "ARCW\x0F")}, "  ARC Welding Equipment : 1,1,1,1 ;\r\n"},
        {{record(0, 0, "ARCW\x10")}, "\r\n"},
        {{record(0, 0, "ARCW")}, ""},
        {{record(0, 0, "SPOT\x01")}, "\tSPOT Welding Equipment Number : 1 ;\r\n"},
        {{record(0, 0, "SPOT\xFF")}, "\tSPOT Welding Equipment Number : 255 ;\r\n"},
        {{record(0, 0, "SLN1\x04")}, "  ANALOG PRO-FLO Equipment Number : 4 ;\r\n"},
        {{record(0, 1, std::string(1, '\0')), record(0, 0, "MOTN")}, "\tSmartfollow Schedule Number : 1 ;\r\n"},
        {{record(0, 1, "\xFF"), record(0, 0, "MOTN")}, "\tSmartfollow Schedule Number : 256 ;\r\n"},
        {{record(0, 0, "MOTN")}, ""},
        // Labels without a text, and a group without its record 0.
        {{record(1, 0, "LANG"), record(0, 0, "XYZW\x01")}, ""},
        {{record(0, 1, "SPOT\x01")}, ""},
        {{record(0, 0, "MN")}, ""},
    };
    for (const print_case &c : cases)
        EXPECT_EQ(printed(c.records), c.text) << vzt::hex(block(c.records));
}

TEST(ApplPrint, DispenseProcessAndJob) {
    const std::string process("\x01\x02\x03\x00\x00\x0F\xFF\xFF\x00\x14\xFF\xF6", 12);
    EXPECT_EQ(printed({record(2, 1, process), record(2, 0, "SLPR"), record(1, 0, "SLAT\0\0\0\x01"),
                       record(0, 0, std::string("MNAT\0\x11\xF2\xDF", 8))}),
              "DISPENSE_PROCESS;\r\n"
              "   CYCLE_TIME\t\t: 1.5;\r\n"
              "   LAST_CYCLE_TIME\t: 2.0;\r\n"
              "   GUN_ON_TIME\t\t: *uninit*;\r\n"
              "   LAST_GUN_ON_TIME\t: -1.0;\r\n"
              "   DEFAULT_USER_FRAME\t: 1;\r\n"
              "   DEFAULT_TOOL_FRAME\t: 2;\r\n"
              "   EQUIPMENT_NUMBER\t: 3;\r\n");
    const std::string job("\x00\x0A\x00\x1E\x00\x14\x00\x28\x00\x37\xFF\xFF\xFF\xFF\xFF\xFE", 16);
    EXPECT_EQ(printed({record(0, 1, job), record(0, 0, "SLJB")}),
              "   DISPENSE_JOB;\r\n"
              "   CYCLE_TIME\t\t: 1.0;\r\n"
              "   LAST_CYCLE_TIME\t: 2.0;\r\n"
              "   GUN_ON_TIME\t\t: 3.0;\r\n"
              "   LAST_GUN_ON_TIME\t: 4.0;\r\n"
              "   MATERIAL_VOLUME\t: 5.5;\r\n"
              "   LAST_MAT_VOLUME\t: *uninit*;\r\n"
              "   PART_ID\t\t: -2;\r\n");
    // Without its data record only the head line stands.
    EXPECT_EQ(printed({record(0, 0, "SLPR")}), "DISPENSE_PROCESS;\r\n");
}

TEST(ApplPrint, MasksFirstThenGroupsByNumber) {
    // The mask group has the highest number and still prints first; the
    // others follow their numbers, not the order labels are tested in.
    EXPECT_EQ(printed({record(3, 0, muap(2)), record(2, 1, "\x01"), record(2, 0, "MOTN"), record(1, 0, "ARCW\x01"),
                       record(0, 0, "SPOT\x02")}),
              "\tSPOT : TRUE;\r\n"
              "\tSPOT Welding Equipment Number : 2 ;\r\n"
              "  ARC Welding Equipment Number : 1 ;\r\n"
              "\tSmartfollow Schedule Number : 2 ;\r\n");
}

TEST(ApplPrint, SecondGroupOfALabelIsSkippedExceptSchedules) {
    EXPECT_EQ(printed({record(2, 0, "SPOT\x01"), record(1, 0, "ARCW\x01"), record(0, 0, "SPOT\x01")}),
              "\tSPOT Welding Equipment Number : 1 ;\r\n"
              "  ARC Welding Equipment Number : 1 ;\r\n");
    // Another number in the fifth byte is another label: both print.
    EXPECT_EQ(printed({record(1, 0, "ARCW\x02"), record(0, 0, "ARCW\x01")}),
              "  ARC Welding Equipment Number : 1 ;\r\n"
              "  ARC Welding Equipment Number : 2 ;\r\n");
    // Only the first of two equal mask groups prints.
    EXPECT_EQ(printed({record(1, 0, muap(1)), record(0, 0, muap(1))}), "\tARC : TRUE;\r\n");
    EXPECT_EQ(printed({record(1, 1, "\x04"), record(1, 0, "MOTN"), record(0, 1, "\x02"), record(0, 0, "MOTN")}),
              "\tSmartfollow Schedule Number : 3 ;\r\n"
              "\tSmartfollow Schedule Number : 5 ;\r\n");
}

TEST(ApplPrint, JapaneseWordsFromTheDictionary) {
    using appl_test::jword;
    EXPECT_EQ(printed({record(1, 0, "SPOT\x01"), record(0, 0, muap(1))}, ".PJ"),
              "\t" + jword(317) + " : TRUE;\r\n\t" + jword(299) + " " + jword(336) + " " + jword(337) + " " +
                  jword(335) + " : 1 ;\r\n");
}

TEST(ApplPrint, EmptyBlockPrintsItsHeadAlone) {
    std::string text = vzt::binary_to_listing(file_with(block({})));
    EXPECT_NE(text.find("\r\n/APPL\r\n/MN\r\n"), std::string::npos) << text;
}

TEST(ApplPrint, HostileBlocksFailTheFileAndWriteNothing) {
    const std::string cases[] = {
        std::string("\x05\xFF\xFF", 3),                                  // wrong marker
        block({record(0, 0, "MOTN"), record(1, 0, "SPOT\x01")}),         // groups rising
        block({record(1, 0, "MOTN"), record(1, 2, "\x01")}),             // records rising
        std::string("\x04\x00\x00\x00\x00\x09MOTN", 10),                 // record cut short
        std::string("\x04\x00\x00", 3),                                  // no end mark
    };
    for (const std::string &appl : cases) {
        int32_t result = -1;
        std::string text = vzt::binary_to_listing(file_with(appl), ".PE", &result);
        EXPECT_EQ(result, 0) << vzt::hex(appl);
        EXPECT_EQ(text, "") << vzt::hex(appl);
    }
}

TEST(ApplPrint, TruncationAtEveryByteFailsUntilTheEndMark) {
    const std::string full =
        file_with(block({record(2, 1, "\x01"), record(2, 0, "MOTN"), record(1, 0, "ARCW\x05"), record(0, 0, muap(1))}));
    const size_t appl_at = file_with("").size();
    for (size_t cut = appl_at; cut <= full.size(); cut++) {
        int32_t result = -1;
        std::string text = vzt::binary_to_listing(full.substr(0, cut), ".PE", &result);
        if (cut < full.size()) {
            EXPECT_EQ(result, 0) << "cut at " << cut;
        } else {
            EXPECT_EQ(result, 1);
            EXPECT_EQ(appl_test::appl_lines(text),
                      "\tARC : TRUE;\r\n  ARC Welding Equipment : 1,*,1,* ;\r\n\tSmartfollow Schedule Number : 2 ;\r\n");
        }
    }
}

/* The lookups by label in the loaded tables, read straight from a stream. */
class ApplRecords : public ::testing::Test {
protected:
    void SetUp() override {
        lmalloc_begin();
        cur_side = 0;
        decode_tables_forget(0);
    }
    void TearDown() override {
        free_appl_block();
        if (bin_stream)
            std::fclose(bin_stream);
        bin_stream = nullptr;
        lmalloc_end();
    }
    int32_t load(const std::string &appl) {
        bin_stream = std::tmpfile();
        std::fwrite(appl.data(), 1, appl.size(), bin_stream);
        std::rewind(bin_stream);
        return read_appl_block();
    }
    static int32_t find(const std::string &label) {
        return appl_find(reinterpret_cast<const uint8_t *>(label.data()), static_cast<int32_t>(label.size()));
    }
};

TEST_F(ApplRecords, FindComparesFourFiveOrSevenBytes) {
    ASSERT_EQ(load(block({record(6, 0, "CCBDabcX"), record(5, 0, "CCBDabYZ"), record(4, 0, "MOTNx"),
                          record(3, 0, "MOTNy"), record(2, 0, "PLCG\x02"), record(1, 0, "PLCG\x01"),
                          record(0, 0, "SLPR")})),
              0);
    EXPECT_EQ(find("PLCG\x02"), 2);
    EXPECT_EQ(find("PLCG\x01zz"), 1);
    EXPECT_EQ(find("PLCG\x03"), -1);
    EXPECT_EQ(find("MOTNz"), 3);         // four bytes only
    EXPECT_EQ(find("CCBDabc"), 6);       // seven bytes
    EXPECT_EQ(find("CCBDabY"), 5);
    EXPECT_EQ(find("CCBDab"), -1);       // the seventh byte of a short label is 0
    EXPECT_EQ(find(std::string("SLPR\0", 5)), 0);   // bytes past a record compare as 0
    EXPECT_EQ(find("SLPRx"), -1);
    EXPECT_EQ(appl_label_compare_length(reinterpret_cast<const uint8_t *>("CCIA"), 4), 7);
    EXPECT_EQ(appl_label_compare_length(reinterpret_cast<const uint8_t *>("MOT"), 3), 5);
}

TEST_F(ApplRecords, RecordsByNumberWithinBounds) {
    ASSERT_EQ(load(block({record(2, 3, "abc"), record(2, 0, "LNTK"), record(0, 0, "")})), 0);
    EXPECT_EQ(appl_record_count(2), 4);
    EXPECT_EQ(appl_record_count(1), 0);
    EXPECT_EQ(appl_record_count(3), 0);
    EXPECT_EQ(appl_record_count(-1), 0);
    int32_t length = -1;
    const uint8_t *data = appl_record(2, 3, &length);
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(data), static_cast<size_t>(length)), "abc");
    EXPECT_EQ(appl_record(2, 1, &length), nullptr);
    EXPECT_EQ(length, 0);
    EXPECT_EQ(appl_record(2, 4, &length), nullptr);
    char label[5];
    EXPECT_EQ(appl_group_label(2, label), 0);
    EXPECT_STREQ(label, "LNTK");
    EXPECT_EQ(appl_group_label(0, label), 0);
    EXPECT_STREQ(label, "");
    EXPECT_EQ(appl_group_label(1, label), 1);
}

TEST_F(ApplRecords, NothingLoadedFindsNothing) {
    EXPECT_EQ(find("MOTN"), -1);
    EXPECT_EQ(appl_record_count(0), 0);
    ASSERT_EQ(load(block({})), 0);
    EXPECT_EQ(find("MOTN"), -1);
}

TEST(ApplPrint, MuapTextRule) {
    dict_init(1);
    char out[64];
    for (int bit = 0; bit < 32; bit++) {
        std::string label = muap(1 << bit);
        muap_text(reinterpret_cast<const uint8_t *>(label.data()), 12, out, sizeof out);
        bool prints = bit == 0 || bit == 1 || bit == 3 || bit == 4 || bit == 5 || bit == 6;
        EXPECT_EQ(out[0] != 0, prints) << bit;
    }
    std::string label = muap(16);
    muap_text(reinterpret_cast<const uint8_t *>(label.data()), 12, out, sizeof out);
    EXPECT_STREQ(out, "\tLASER : TRUE;");
}

} // namespace
