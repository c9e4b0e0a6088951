// Whole files to listings: the exact text of every section, the keyword
// language and output name rules, daughters inlined behind their line,
// and what damaged files give.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>

#include "bin2asc/decode_file.h"
#include "bin2asc/decode_line.h"
#include "core/dictionary.h"
#include "core/run_state.h"
#include "test_decode_tp.h"
#include "text/decode_helpers.h"
#include "text/decode_tables.h"
#include "vorex_zd.h"

namespace {

using tp::bytes;

const char *const default_attr =
    "/ATTR\r\n"
    "OWNER\t        = ;\r\n"
    "COMMENT\t        = \"\";\r\n"
    "PROG_SIZE        = 0;\r\n"
    "CREATE\t        = DATE 80-00-00  TIME 00:00:00;\r\n"
    "MODIFIED        = DATE 80-00-00  TIME 00:00:00;\r\n"
    "FILE_NAME        = ;\r\n"
    "VERSION        = 0;\r\n"
    "LINE_COUNT        = 0;\r\n"
    "MEMORY_SIZE        = 0;\r\n"
    "PROTECT\t        = READ_WRITE;\r\n"
    "TCD:  STACK_SIZE  = 0,\r\n"
    "      TASK_PRIORITY  = 50,\r\n"
    "      TIME_SLICE  = 0,\r\n"
    "      BUSY_LAMP_OFF  = 0,\r\n"
    "      ABORT_REQUEST  = 0,\r\n"
    "      PAUSE_REQUEST  = 0;\r\n"
    "DEFAULT_GROUP        = 1,*,*,*,*;\r\n"
    "CONTROL_CODE        = 00000000 00000000;\r\n";

class DecodeFile : public ::testing::Test {
  protected:
    void SetUp() override { unsetenv("VOREX_ZD_INI_DIR"); }
    void TearDown() override {
        unsetenv("VOREX_ZD_INI_DIR");
        for (auto &saved : saved_)
            set_opcode_printer(saved.first, saved.second);
    }
    /* Writes the program and translates it to out.PE; the listing text. */
    std::string translate(const bytes &program, int32_t expect = 1, const char *out = "out.PE") {
        tp::write_file(dir_.file("in.TP"), program);
        EXPECT_EQ(zdbinasc_file(dir_.file("in.TP").c_str(), dir_.file(out).c_str()), expect);
        return tp::read_file(dir_.file(out));
    }
    void set_ini_language(int value) {
        tp::write_text(dir_.file("vorex_zd.ini"), "[ZDTS]\nLANGUAGE=" + std::to_string(value) + "\n");
        setenv("VOREX_ZD_INI_DIR", dir_.path().c_str(), 1);
    }
    void install(uint8_t op, line_printer p) { saved_.push_back({op, set_opcode_printer(op, p)}); }

    tp::scratch_dir dir_;
    std::vector<std::pair<uint8_t, line_printer>> saved_;
};

TEST_F(DecodeFile, SmallProgramPrintsEverySection) {
    bytes program = tp::program("A", {tp::remark("X")});
    ASSERT_EQ(program.size(), 111u);
    EXPECT_EQ(translate(program), std::string("/PROG  A\t\r\n") + default_attr +
                                      "/APPL\r\n"
                                      "/MN\r\n"
                                      "   1:  !X ;\r\n"
                                      "/POS\r\n"
                                      "/END\r\n");
}

TEST_F(DecodeFile, ProgramLineCarriesItsSubtypeWord) {
    const char *words[] = {"", "JOB", "PROCESS", "MACRO", "Cond", "", ""};
    for (int subtype = 0; subtype <= 6; subtype++) {
        std::string text = translate(tp::program("MAINPROG", {}, subtype));
        EXPECT_EQ(text.substr(0, text.find("\r\n")), std::string("/PROG  MAINPROG\t") + words[subtype]);
    }
    bytes short_form = tp::program("S", {});
    short_form.erase(short_form.begin() + 2, short_form.begin() + 4);
    short_form.insert(short_form.begin() + 2, 0);
    std::string text = translate(short_form);
    EXPECT_EQ(text.substr(0, text.find("\r\n")), "/PROG  S\t");
}

TEST_F(DecodeFile, AttributeSectionPrintsEveryField) {
    tp::attr_fields a;
    a.owner = "MNEDITOR";
    a.comment = "Weld cell 3";
    a.prog_size = 1234;
    a.create = tp::packed_date(2005, 1, 2, 10, 20, 30);
    a.modified = tp::packed_date(1999, 12, 31, 23, 59, 31);
    a.version = 0xFFFF;
    a.line_count = 5;
    a.memory_size = 0x80000000u;
    a.protect = 2;
    a.stack_size = 512;
    a.time_slice = 3;
    a.busy_lamp_off = 1;
    a.abort_request = 0;
    a.pause_request = 2;
    a.default_group = 0x15;
    a.control_code = 0x0181;
    control_r_mode = 0;
    std::string text = translate(tp::program("P", {}, 0, a));
    EXPECT_EQ(text, "/PROG  P\t\r\n"
                    "/ATTR\r\n"
                    "OWNER\t        = MNEDITOR;\r\n"
                    "COMMENT\t        = \"Weld cell 3\";\r\n"
                    "PROG_SIZE        = 1234;\r\n"
                    "CREATE\t        = DATE 05-01-02  TIME 10:20:30;\r\n"
                    "MODIFIED        = DATE 99-12-31  TIME 23:59:31;\r\n"
                    "FILE_NAME        = ;\r\n"
                    "VERSION        = -1;\r\n"
                    "LINE_COUNT        = 5;\r\n"
                    "MEMORY_SIZE        = -2147483648;\r\n"
                    "PROTECT\t        = READ;\r\n"
                    "TCD:  STACK_SIZE  = 512,\r\n"
                    "      TASK_PRIORITY  = 50,\r\n"
                    "      TIME_SLICE  = 3,\r\n"
                    "      BUSY_LAMP_OFF  = 1,\r\n"
                    "      ABORT_REQUEST  = 0,\r\n"
                    "      PAUSE_REQUEST  = 2;\r\n"
                    "DEFAULT_GROUP        = 1,*,1,*,1;\r\n"
                    "CONTROL_CODE        = 00000001 10000001;\r\n"
                    "/APPL\r\n/MN\r\n/POS\r\n/END\r\n");
    /* Bit 8 of the control code asks for the R form of positions. */
    EXPECT_EQ(control_r_mode, 1);
}

TEST_F(DecodeFile, ProtectOtherThanTwoIsReadWrite) {
    for (int protect : {0, 1, 3}) {
        tp::attr_fields a;
        a.protect = protect;
        EXPECT_NE(translate(tp::program("P", {}, 0, a)).find("PROTECT\t        = READ_WRITE;\r\n"),
                  std::string::npos);
    }
}

TEST_F(DecodeFile, JapaneseKeywordsForAJapaneseListingName) {
    tp::attr_fields a;
    a.protect = 2;
    std::string text = translate(tp::program("A", {{3, 2, 0, 1}}, 1, a), 1, "out.pj");
    EXPECT_EQ(dict_select, 0);
    EXPECT_EQ(text.substr(0, text.find("/MN")),
              "/PROG  A\t\xBC\xDE\xAE\xCC\xDE\r\n"
              "/ATTR\r\n"
              "\xBB\xB8\xBE\xB2\xBC\xAC\t        = ;\r\n"
              "\xBA\xD2\xDD\xC4\t        = \"\";\r\n"
              "\xCC\xDF\xDB\xB8\xDE\xD7\xD1 \xBB\xB2\xBD\xDE        = 0;\r\n"
              "\xBB\xB8\xBE\xB2\t        = \xCB\xC2\xDE\xB9 80-00-00  \xBC\xDE\xBA\xB8 00:00:00;\r\n"
              "\xBC\xAD\xB3\xBE\xB2\t        = \xCB\xC2\xDE\xB9 80-00-00  \xBC\xDE\xBA\xB8 00:00:00;\r\n"
              "\xCC\xA7\xB2\xD9 \xD2\xB2\t        = ;\r\n"
              "\xCA\xDE\xB0\xBC\xDE\xAE\xDD\t        = 0;\r\n"
              "\xB7\xDE\xAE\xB3\xBD\xB3\t        = 0;\r\n"
              "\xD2\xD3\xD8\xB0 \xBB\xB2\xBD\xDE        = 0;\r\n"
              "\xCE\xBA\xDE\t        = \xD6\xD0\xBA\xD0;\r\n"
              "TCD:  \xBD\xC0\xAF\xB8 \xBB\xB2\xBD\xDE  = 0,\r\n"
              "      \xD5\xB3\xBE\xDD\xC4\xDE  = 50,\r\n"
              "      \xC0\xB2\xD1 \xBD\xD7\xB2\xBD  = 0,\r\n"
              "      \xCB\xDE\xBC\xDE\xB0 \xD7\xDD\xCC\xDF \xB5\xCC  = 0,\r\n"
              "      \xB7\xAE\xB3\xBE\xB2\xBC\xAD\xB3\xD8\xAE\xB3 \xD6\xB3\xB7\xAD\xB3  = 0,\r\n"
              "      \xB2\xC1\xBC\xDE\xC3\xB2\xBC \xD6\xB3\xB7\xAD\xB3  = 0;\r\n"
              "\xCB\xAE\xB3\xBC\xDE\xAD\xDD \xB8\xDE\xD9\xB0\xCC\xDF        = 1,*,*,*,*;\r\n"
              "\xBA\xDD\xC4\xDB\xB0\xD9 \xBA\xB0\xC4\xDE        = 00000000 00000000;\r\n"
              "/APPL\r\n");
    EXPECT_NE(text.find("   1:  \xDA\xBC\xDE[1] ;\r\n"), std::string::npos);
}

TEST_F(DecodeFile, KeywordLanguageFromTheFoldedDestinationName) {
    struct name_case {
        const char *name;
        int32_t english;
    };
    const name_case cases[] = {
        {"x.pj", 0},     {"x.Pj", 0},       {"x.PJ", 0},  {"x.PJ.bak", 0}, {"x.pjx", 1}, {"x.pj.bak", 1},
        {"x.txt", 1},    {"x.PE", 1},       {"", 1},      {"J", 1},        {"a.PJdir/x.pe", 0},
    };
    for (const name_case &c : cases)
        EXPECT_EQ(listing_keyword_language(c.name), c.english) << c.name;
    EXPECT_EQ(listing_keyword_language(nullptr), 1);
}

TEST_F(DecodeFile, DestinationIsOpenedUnderItsOwnSpelling) {
    translate(tp::program("A", {}), 1, "out.pj");
    EXPECT_TRUE(tp::file_exists(dir_.file("out.pj")));
    EXPECT_FALSE(tp::file_exists(dir_.file("out.PJ")));
    std::string text = translate(tp::program("A", {{1, 0, 0}}), 1, "out.txt");
    EXPECT_NE(text.find("   1:  Constant ;"), std::string::npos);
}

TEST_F(DecodeFile, DefaultNames) {
    char name[256];
    default_listing_name("C:\\dir\\a.b.TP", 1, name, sizeof name);
    EXPECT_STREQ(name, "a.PE");
    default_listing_name("prog", 0, name, sizeof name);
    EXPECT_STREQ(name, "prog.PJ");
    default_listing_name("/tmp/x.d/prog.TP", 1, name, sizeof name);
    EXPECT_STREQ(name, "prog.PE");
    default_listing_name("", 1, name, sizeof name);
    EXPECT_STREQ(name, ".PE");
}

TEST_F(DecodeFile, EmptyDestinationWritesToTheCurrentDirectory) {
    tp::scratch_dir cwd;
    tp::in_directory here(cwd.path());
    bytes program = tp::program("A", {{1, 0, 0}});
    /* A file whose name is a controller path, backslashes and all. */
    tp::write_file(cwd.file("C:\\dir\\a.b.TP"), program);
    set_ini_language(1);
    EXPECT_EQ(zdbinasc_file("C:\\dir\\a.b.TP", ""), 1);
    EXPECT_EQ(message_language, 1);
    EXPECT_TRUE(tp::file_exists(cwd.file("a.PE")));

    /* LANGUAGE 0 names the listing .PJ, and its keywords stay English. */
    tp::write_file(dir_.file("noext"), program);
    set_ini_language(0);
    EXPECT_EQ(zdbinasc_file(dir_.file("noext").c_str(), ""), 1);
    EXPECT_EQ(message_language, 0);
    std::string text = tp::read_file(cwd.file("noext.PJ"));
    EXPECT_NE(text.find("   1:  Constant ;"), std::string::npos);
    EXPECT_FALSE(tp::file_exists(dir_.file("noext.PJ")));

    /* No ini file at all reads as LANGUAGE 0. */
    unsetenv("VOREX_ZD_INI_DIR");
    EXPECT_EQ(zdbinasc_file(dir_.file("noext").c_str(), ""), 1);
    EXPECT_EQ(message_language, 0);
}

TEST_F(DecodeFile, MissingSourceOrUnwritableOutputFails) {
    EXPECT_EQ(zdbinasc_file(dir_.file("none.TP").c_str(), dir_.file("out.PE").c_str()), 0);
    EXPECT_FALSE(tp::file_exists(dir_.file("out.PE")));
    tp::write_file(dir_.file("in.TP"), tp::program("A", {}));
    EXPECT_EQ(zdbinasc_file(dir_.file("in.TP").c_str(), dir_.file("no/such/dir.PE").c_str()), 0);
}

TEST_F(DecodeFile, UndecodableLinePrintsErrorAndTheRunSucceeds) {
    std::string text = translate(tp::program("A", {tp::remark("a"), {9, 1, 2}, {255}}));
    EXPECT_NE(text.find("/MN\r\n   1:  !a ;\r\n   2:  ERROR ;\r\n   3:   ;\r\n/POS"), std::string::npos);
}

/* Stands in for the P-SPS printer: takes the daughter reference of a
   CALL-like line and notes its number. */
int32_t fake_p_sps(line_cursor *c) {
    c->pos += 2;
    char name[32];
    decode_text(c, name, sizeof name);
    c->p_sps_number = std::atoi(name + 8);
    cursor_append(c, "P-SPS ");
    return 0;
}

bytes p_sps_line(int number) {
    char ref[16];
    std::snprintf(ref, sizeof ref, "........%04d", number);
    bytes b = {129, 130};
    b.insert(b.end(), ref, ref + 12);
    b.push_back(0);
    return b;
}

bytes program_with_daughters() {
    bytes b = tp::program("MAIN", {tp::remark("m1"), p_sps_line(2), p_sps_line(7), p_sps_line(1)});
    b.push_back(5);
    tp::append(b, tp::daughter("MAIN....0001", {tp::remark("one")}));
    tp::append(b, tp::daughter("MAIN....0002", {tp::remark("two a"), {8}, {255}}));
    return b;
}

TEST_F(DecodeFile, DaughtersPrintBehindTheLineThatRefersToThem) {
    install(129, fake_p_sps);
    std::string text = translate(program_with_daughters());
    size_t mn = text.find("/MN\r\n");
    ASSERT_NE(mn, std::string::npos);
    EXPECT_EQ(text.substr(mn), "/MN\r\n"
                               "   1:  !m1 ;\r\n"
                               "   2:  P-SPS  ;\r\n"
                               "    1:  !two a ;\r\n"
                               "    2:  ERROR ;\r\n"
                               "    3:   ;\r\n"
                               "     ----- ;\r\n"
                               "   3:  P-SPS  ;\r\n"
                               "   4:  P-SPS  ;\r\n"
                               "    1:  !one ;\r\n"
                               "     ----- ;\r\n"
                               "/POS\r\n/END\r\n");
}

TEST_F(DecodeFile, TruncatedDaughterAreaStillTranslates) {
    install(129, fake_p_sps);
    bytes full = program_with_daughters();
    bytes cut(full.begin(), full.end() - 1);
    std::string text = translate(cut);
    EXPECT_NE(text.find("   4:  P-SPS  ;\r\n    1:  !one ;\r\n     ----- ;\r\n/POS"), std::string::npos);
    /* The second daughter's lines were read before its last block broke. */
    EXPECT_NE(text.find("    1:  !two a ;"), std::string::npos);
}

TEST_F(DecodeFile, EndRightAfterTheApplicationBlockTranslates) {
    EXPECT_NE(translate(tp::program("A", {})).find("/END\r\n"), std::string::npos);
}

TEST_F(DecodeFile, TruncationAtEveryOffsetFailsOrTranslates) {
    bytes full = tp::name_record("P", 2);
    tp::append(full, tp::attr_block());
    tp::append(full, tp::line_block({tp::remark("abc"), {3, 2, 0, 1}, {255}}));
    bytes rec;
    tp::put16(rec, 1);
    tp::append(rec, {1, 0, 4, 9, 0, 0});
    tp::append(full, tp::pos_block({rec}));
    tp::append(full, tp::appl_block({{1, 0, {'A', 'R', 'C', 'W', 1}}}));
    size_t appl_end = full.size();
    full.push_back(5);
    tp::append(full, tp::daughter("P.......0001", {tp::remark("d")}));
    const std::string out = dir_.file("kept.PE");
    for (size_t cut = 0; cut <= full.size(); cut++) {
        tp::write_text(out, "old listing");
        tp::write_file(dir_.file("cut.TP"), bytes(full.begin(), full.begin() + static_cast<long>(cut)));
        int32_t result = zdbinasc_file(dir_.file("cut.TP").c_str(), out.c_str());
        if (cut < appl_end) {
            EXPECT_EQ(result, 0) << "cut at " << cut;
            EXPECT_EQ(tp::read_file(out), "old listing") << "cut at " << cut;
        } else {
            EXPECT_EQ(result, 1) << "cut at " << cut;
            EXPECT_NE(tp::read_file(out).find("/END\r\n"), std::string::npos);
        }
    }
}

TEST_F(DecodeFile, DamagedFilesNeverCrash) {
    bytes base = program_with_daughters();
    std::mt19937 rng(12345);
    for (int round = 0; round < 400; round++) {
        bytes b = base;
        int flips = 1 + static_cast<int>(rng() % 6);
        for (int i = 0; i < flips; i++)
            b[rng() % b.size()] = static_cast<uint8_t>(rng());
        if (rng() % 4 == 0)
            b.resize(rng() % b.size());
        tp::write_file(dir_.file("d.TP"), b);
        int32_t result = zdbinasc_file(dir_.file("d.TP").c_str(), dir_.file("d.PE").c_str());
        EXPECT_TRUE(result == 0 || result == 1);
    }
}

} // namespace
