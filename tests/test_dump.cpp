// The byte dump of a program file: the exact text of every block, rows
// and bracket lines, daughters, the output name, damaged files and the
// dump command.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <string>
#include <vector>

#include "test_compare_util.h"
#include "test_support.h"
#include "vorex_zd.h"

namespace {

using cmpt::bytes;
using cmpt::program_parts;

const char *const name_a =
    "Prog Data Block Begin\r\n"
    "        00 \r\n"
    "        00 01 00 41 00 00 00 00 00 00 00 00 00 00 00 00 \r\n"
    "        00 \r\n"
    "        ff ff \r\n"
    "Prog Data Block End\r\n"
    "\r\n";

/* The attribute block of a listing without /ATTR. */
const char *const default_attr =
    "Attr Data Block Begin\r\n"
    "        01 \r\n"
    "        00 48 00 00 00 00 00 00 00 00 00 00 00 00 00 00 \r\n"
    "        00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 \r\n"
    "        00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 \r\n"
    "        00 00 00 00 00 00 00 01 00 00 00 32 00 00 00 00 \r\n"
    "        00 00 00 00 00 01 00 00 00 00 \r\n"
    "        ff ff \r\n"
    "Attr Data Block End\r\n"
    "\r\n";

const char *const no_positions =
    "Position Data Block Begin\r\n"
    "        03\r\n"
    "        ff ff\r\n"
    "Position Data Block End\r\n"
    "\r\n";

const char *const no_appl =
    "Application Data Block Begin\r\n"
    "        04\r\n"
    "        ff ff\r\n"
    "Application Data Block End\r\n"
    "\r\n";

class Dump : public ::testing::Test {
  protected:
    /* Dumps the program to out.dmp; the dump's text. */
    std::string dump(const bytes &program, int32_t expect = 1) {
        tp::write_file(dir_.file("in.TP"), program);
        EXPECT_EQ(zdbinasc_file_dmp(dir_.file("in.TP").c_str(), dir_.file("out.dmp").c_str()), expect);
        return tp::read_file(dir_.file("out.dmp"));
    }
    tp::scratch_dir dir_;
};

TEST_F(Dump, PlainProgramDumpsEveryBlockExactly) {
    std::string expect = std::string(name_a) + default_attr +
                         "Line Data Block Begin\r\n"
                         "        02\r\n"
                         "    Line 1 : 3 bytes\r\n"
                         "        BIN[1E,58,00];\r\n"
                         "    Line 2 : 0 bytes\r\n"
                         "        BIN[];\r\n"
                         "        ff ff\r\n"
                         "Line Data Block End\r\n"
                         "\r\n" +
                         no_positions + no_appl;
    EXPECT_EQ(dump(tp::program("A", {tp::remark("X"), {}})), expect);
}

TEST_F(Dump, PositionsShowTheirLengthBytesAndNotTheirLastTwo) {
    program_parts p;
    p.name = "A";
    p.lines = {{254, 1}};
    p.positions = {cmpt::position(7, {cmpt::joint(1, {1.0f, -1.0f})}), cmpt::unset_position(300)};
    std::string text = dump(cmpt::build(p));
    const char *expect =
        "Position Data Block Begin\r\n"
        "        03\r\n"
        "    Position 7 : 16 bytes\r\n"
        "        00 10 00 07 01 00 0c 09 11 01 3f 80 00 00 bf 80 \r\n"
        "    Position 300 : 2 bytes\r\n"
        "        00 02 \r\n"
        "        ff ff\r\n"
        "Position Data Block End\r\n"
        "\r\n";
    EXPECT_NE(text.find(std::string("    Line 1 : 2 bytes\r\n        BIN[FE,01];\r\n")), std::string::npos) << text;
    EXPECT_NE(text.find(expect), std::string::npos) << text;
    EXPECT_EQ(text.substr(text.size() - std::string(no_appl).size()), no_appl);
}

TEST_F(Dump, ApplicationGroupsShowTheirLabelAndRecords) {
    program_parts p;
    p.name = "A";
    p.appl = {
        {3, 0, cmpt::label("MOTN")},       {2, 1, {4}}, {2, 0, cmpt::label("MOTN")}, {1, 0, {'A', 'B'}},
        {0, 2, {}},                        {0, 1, {5, 6}},
        {0, 0, cmpt::label("SPOT", 1)},
    };
    std::string text = dump(cmpt::build(p));
    const char *expect =
        "Application Data Block Begin\r\n"
        "        04\r\n"
        "    Application Data 0 = SPOT\r\n"
        "        BIN[53,50,4F,54,01:05,06:];\r\n"
        "    Application Data 1 =   AB\r\n"
        "        BIN[41,42];\r\n"
        "    Application Data 2 = MOTN\r\n"
        "        BIN[4D,4F,54,4E:04];\r\n"
        "        ff ff\r\n"
        "Application Data Block End\r\n"
        "\r\n";
    ASSERT_GE(text.size(), std::string(expect).size());
    EXPECT_EQ(text.substr(text.size() - std::string(expect).size()), expect) << text;
}

TEST_F(Dump, DaughtersFollowWithRowsAndTheMark) {
    bytes seventeen;
    for (int i = 0; i < 17; i++)
        seventeen.push_back(static_cast<uint8_t>(0xA0 + i));
    program_parts p;
    p.name = "A";
    p.lines = {cmpt::p_sps_call(1)};
    p.daughters = {tp::daughter("A.......0001", {seventeen, {}})};
    std::string text = dump(cmpt::build(p));
    std::string expect = std::string(no_appl) +
                         "----------------------------------------\r\n"
                         "Daughter 1\r\n"
                         "\r\n"
                         "Prog Data Block Begin\r\n"
                         "        00 \r\n"
                         "        00 01 00 41 2e 2e 2e 2e 2e 2e 2e 30 30 30 31 00 \r\n"
                         "        00 \r\n"
                         "        ff ff \r\n"
                         "Prog Data Block End\r\n"
                         "\r\n"
                         "Attr Data Block Begin\r\n"
                         "        01 \r\n"
                         "        00 48 00 00 00 00 00 00 00 00 00 00 00 00 00 00 \r\n"
                         "        00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 \r\n"
                         "        00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 \r\n"
                         "        00 02 00 00 00 00 00 01 00 00 00 32 00 00 00 00 \r\n"
                         "        00 00 00 00 00 00 00 41 00 00 \r\n"
                         "        ff ff \r\n"
                         "Attr Data Block End\r\n"
                         "\r\n"
                         "Line Data Block Begin\r\n"
                         "        02\r\n"
                         "    ! Line 1 : 17 bytes\r\n"
                         "        a0 a1 a2 a3 a4 a5 a6 a7 a8 a9 aa ab ac ad ae af \r\n"
                         "        b0 \r\n"
                         "    ! Line 2 : 0 bytes\r\n"
                         "        ff ff\r\n"
                         "Line Data Block End\r\n"
                         "\r\n";
    ASSERT_GE(text.size(), expect.size());
    EXPECT_EQ(text.substr(text.size() - expect.size()), expect) << text;
}

TEST_F(Dump, SixteenBytesMakeOneRow) {
    bytes sixteen(16, 0x11);
    program_parts p;
    p.name = "A";
    p.daughters = {tp::daughter("A.......0001", {sixteen})};
    std::string text = dump(cmpt::build(p));
    EXPECT_NE(text.find("    ! Line 1 : 16 bytes\r\n        11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 \r\n"
                        "        ff ff\r\n"),
              std::string::npos)
        << text;
}

TEST_F(Dump, AFileWithoutDaughtersEndsWithTheApplicationPart) {
    std::string text = dump(tp::program("A", {}));
    ASSERT_GE(text.size(), std::string(no_appl).size());
    EXPECT_EQ(text.substr(text.size() - std::string(no_appl).size()), no_appl);
    EXPECT_EQ(text.find("Daughter"), std::string::npos);
}

TEST_F(Dump, DamagedFilesWriteNothingAndLeaveAnOldDumpAlone) {
    bytes program = tp::program("A", {tp::remark("X")});
    tp::write_text(dir_.file("out.dmp"), "old dump");
    for (size_t cut : {size_t{0}, size_t{1}, size_t{19}, size_t{50}, program.size() - 1}) {
        EXPECT_EQ(dump(bytes(program.begin(), program.begin() + static_cast<long>(cut)), 0), "old dump") << cut;
    }
    EXPECT_EQ(zdbinasc_file_dmp(dir_.file("none.TP").c_str(), dir_.file("out.dmp").c_str()), 0);
    EXPECT_EQ(tp::read_file(dir_.file("out.dmp")), "old dump");
    // A damaged daughter area only ends the daughters.
    program_parts p;
    p.name = "A";
    p.daughters = {tp::daughter("A.......0001", {tp::remark("d")})};
    bytes with = cmpt::build(p);
    with.resize(with.size() - 3);
    std::string text = dump(with);
    EXPECT_NE(text.find("Daughter 1\r\n"), std::string::npos);
}

TEST_F(Dump, DefaultNameIsTheBaseNameCutAtItsFirstDot) {
    tp::write_file(dir_.file("prog.v1.TP"), tp::program("A", {}));
    {
        tp::in_directory here(dir_.path());
        EXPECT_EQ(zdbinasc_file_dmp(dir_.file("prog.v1.TP").c_str(), ""), 1);
    }
    EXPECT_TRUE(tp::file_exists(dir_.file("prog.dmp")));
    EXPECT_EQ(tp::read_file(dir_.file("prog.dmp")).find("Prog Data Block Begin\r\n"), 0u);
}

TEST_F(Dump, TranslatedListingDumpsItsLines) {
    vzt::load_builtin_cell();
    vzt::asc_result r = vzt::listing_to_binary(vzt::listing("   1:  !hello ;\n"));
    ASSERT_TRUE(r.written);
    std::string text = dump(bytes(r.tp.begin(), r.tp.end()));
    EXPECT_NE(text.find("    Line 1 : 7 bytes\r\n        BIN[1E,68,65,6C,6C,6F,00];\r\n"), std::string::npos) << text;
}

// ---- the command ----

int run(const std::string &args, std::string *out = nullptr) {
    std::string cmd = std::string(VZ_CLI_BINARY) + " " + args + " 2>/dev/null";
    FILE *p = popen(cmd.c_str(), "r");
    if (p == nullptr)
        return -1;
    char buf[4096];
    size_t n;
    std::string text;
    while ((n = std::fread(buf, 1, sizeof buf, p)) > 0)
        text.append(buf, n);
    int status = pclose(p);
    if (out)
        *out = text;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(Dump, CommandWritesBesideTheProgramOrToStandardOutput) {
    tp::write_file(dir_.file("P.TP"), tp::program("A", {tp::remark("X")}));
    EXPECT_EQ(run("dump " + dir_.file("P.TP")), 0);
    std::string beside = tp::read_file(dir_.file("P.dmp"));
    EXPECT_EQ(beside.find(name_a), 0u);
    std::string out;
    EXPECT_EQ(run("dump -o - " + dir_.file("P.TP"), &out), 0);
    EXPECT_EQ(out, beside);
    EXPECT_EQ(run("dump -o " + dir_.file("X.txt") + " " + dir_.file("P.TP")), 0);
    EXPECT_EQ(tp::read_file(dir_.file("X.txt")), beside);
    tp::write_file(dir_.file("BAD.TP"), {0, 0});
    EXPECT_EQ(run("dump " + dir_.file("BAD.TP")), 1);
    EXPECT_FALSE(tp::file_exists(dir_.file("BAD.dmp")));
    EXPECT_EQ(run("dump " + dir_.file("NONE.TP")), 1);
    EXPECT_EQ(run("dump"), 2);
    EXPECT_EQ(run("dump -o " + dir_.file("X.txt") + " " + dir_.file("P.TP") + " " + dir_.file("P.TP")), 2);
}

} // namespace
