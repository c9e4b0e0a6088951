// vorex-zd to-text: where listings land, their keywords, standard output,
// and the exit status and messages of failures.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <sys/wait.h>

#include "test_decode_tp.h"

namespace {

struct run_result {
    int status;
    std::string out;
    std::string err;
};

run_result run_cli(const std::string &args, const tp::scratch_dir &dir) {
    std::string err_file = dir.file("stderr.txt");
    std::string cmd = std::string(VZ_CLI_BINARY) + " " + args + " 2>'" + err_file + "'";
    run_result r{-1, "", ""};
    FILE *p = popen(cmd.c_str(), "r");
    if (p == nullptr)
        return r;
    char buf[4096];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, p)) > 0)
        r.out.append(buf, n);
    int status = pclose(p);
    r.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    r.err = tp::read_file(err_file);
    return r;
}

std::string q(const std::string &s) { return "'" + s + "'"; }

class CliToText : public ::testing::Test {
  protected:
    void SetUp() override {
        tp::write_file(dir_.file("prog.TP"), tp::program("PROG", {tp::remark("hi"), {1, 0, 0}}));
        tp::write_file(dir_.file("bad.TP"), {0, 0, 1});
    }
    tp::scratch_dir dir_;
};

TEST_F(CliToText, ListingLandsBesideTheProgram) {
    run_result r = run_cli("to-text " + q(dir_.file("prog.TP")), dir_);
    EXPECT_EQ(r.status, 0) << r.err;
    std::string text = tp::read_file(dir_.file("prog.PE"));
    EXPECT_EQ(text.substr(0, 14), "/PROG  PROG\t\r\n");
    EXPECT_NE(text.find("   1:  !hi ;\r\n   2:  Constant ;\r\n"), std::string::npos);
}

TEST_F(CliToText, JapaneseKeywordsWithLangJa) {
    run_result r = run_cli("to-text --lang ja " + q(dir_.file("prog.TP")), dir_);
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_FALSE(tp::file_exists(dir_.file("prog.PE")));
    EXPECT_NE(tp::read_file(dir_.file("prog.PJ")).find("   2:  \xC3\xB2\xBD\xB3 ;"), std::string::npos);
}

TEST_F(CliToText, OutputOptionAndStandardOutput) {
    run_result r = run_cli("to-text -o " + q(dir_.file("listing.txt")) + " " + q(dir_.file("prog.TP")), dir_);
    EXPECT_EQ(r.status, 0) << r.err;
    std::string text = tp::read_file(dir_.file("listing.txt"));
    EXPECT_NE(text.find("Constant"), std::string::npos);
    r = run_cli("to-text -o - " + q(dir_.file("prog.TP")), dir_);
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, text);
    /* --lang ja holds whatever the output is called. */
    r = run_cli("to-text --lang ja -o - " + q(dir_.file("prog.TP")), dir_);
    EXPECT_NE(r.out.find("\xC3\xB2\xBD\xB3"), std::string::npos);
}

TEST_F(CliToText, FailuresNameTheFileAndKeepOldOutput) {
    tp::write_text(dir_.file("bad.PE"), "old");
    run_result r = run_cli("to-text " + q(dir_.file("bad.TP")) + " " + q(dir_.file("prog.TP")) + " " +
                               q(dir_.file("missing.TP")),
                           dir_);
    /* A path that cannot be read makes the status 2; the report is on
       standard output, one "path: error CODE: message" line per failure. */
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(tp::read_file(dir_.file("bad.PE")), "old");
    EXPECT_TRUE(tp::file_exists(dir_.file("prog.PE")));
    EXPECT_NE(r.out.find(dir_.file("bad.TP") + ": error 2: not a readable .TP program"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find(dir_.file("missing.TP") + ": error 1: cannot read"), std::string::npos) << r.out;
}

TEST_F(CliToText, UsageErrors) {
    EXPECT_EQ(run_cli("to-text", dir_).status, 2);
    run_result r = run_cli("to-text -o x.PE " + q(dir_.file("prog.TP")) + " " + q(dir_.file("prog.TP")), dir_);
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(run_cli("to-text --lang fr " + q(dir_.file("prog.TP")), dir_).status, 2);
}

} // namespace
