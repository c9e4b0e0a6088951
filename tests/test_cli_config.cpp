// The message and models subcommands, run as a user runs them.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct run_result {
    int status;
    std::string out;
};

/* Runs the tool through the shell with args (already quoted) and the
   given prefix (environment or cd); stderr is dropped. */
run_result run(const std::string &args, const std::string &prefix = "") {
    std::string cmd = prefix + " \"" VZ_CLI_BINARY "\" " + args + " 2>/dev/null";
    run_result r{-1, ""};
    FILE *p = popen(cmd.c_str(), "r");
    if (!p)
        return r;
    char buf[4096];
    size_t n;
    while ((n = fread(buf, 1, sizeof buf, p)) > 0)
        r.out.append(buf, n);
    int st = pclose(p);
    r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    return r;
}

std::vector<std::string> lines(const std::string &text) {
    std::vector<std::string> v;
    std::istringstream in(text);
    for (std::string l; std::getline(in, l);)
        v.push_back(l);
    return v;
}

TEST(CliConfigMessage, EnglishTextOfACode) {
    run_result r = run("message 1376341");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "Wrong attribute data\n");
}

TEST(CliConfigMessage, DeliveredCodeGetsItsLostHalfBack) {
    const struct {
        const char *code;
        const char *text;
    } cases[] = {
        {"89", "Syntax error in instruction\n"},   /* 1376345 */
        {"86", "Syntax error in position data\n"}, /* 1376342 */
        {"92", "Invalid section encountered\n"},   /* 1376348 */
        {"88", "Syntax Error\n"},                  /* 1376344 has no row either */
        {"102", "Duplicated Position data\n"},     /* its own row wins */
        {"174", " \n"},
        {"0", "Syntax Error\n"},
        {"65625", "Syntax Error\n"},               /* not a 16-bit word */
        {"0x150059", "Syntax error in instruction\n"},
    };
    for (const auto &c : cases) {
        run_result r = run(std::string("message ") + c.code);
        EXPECT_EQ(r.status, 0) << c.code;
        EXPECT_EQ(r.out, c.text) << c.code;
    }
}

TEST(CliConfigMessage, SeveralCodesOneLineEach) {
    run_result r = run("message 167 1 186");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "Expecting an integer.\nSyntax Error\nIncorrect Bell Zone Number.\n");
}

TEST(CliConfigMessage, JapaneseInUtf8) {
    run_result r = run("message --lang ja 1376341 89 186 188");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "アトリビュートデータが正しくありません\n"
                     "文法エラーです\n"
                     "文法エラーです\n"
                     "ｶﾂとﾏﾀﾊが一緒に使用されています\n");
}

TEST(CliConfigMessage, EnglishWhateverTheIniSays) {
    fs::path dir = fs::temp_directory_path() / ("vz_cli_ini_" + std::to_string(getpid()));
    fs::create_directories(dir);
    std::ofstream(dir / "vorex_zd.ini") << "[ZDTS]\nLANGUAGE=0\n";
    run_result r = run("message 167", "cd '" + dir.string() + "' && VOREX_ZD_INI_DIR='" + dir.string() + "'");
    fs::remove_all(dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "Expecting an integer.\n");
}

TEST(CliConfigMessage, UsageErrors) {
    EXPECT_EQ(run("message").status, 2);
    EXPECT_EQ(run("message twelve").status, 2);
    EXPECT_EQ(run("message 12x").status, 2);
    EXPECT_EQ(run("message 99999999999").status, 2);
    EXPECT_EQ(run("message --lang fr 102").status, 2);
}

TEST(CliConfigModels, ListsEveryRow) {
    run_result r = run("models");
    EXPECT_EQ(r.status, 0);
    std::vector<std::string> v = lines(r.out);
    ASSERT_EQ(v.size(), 72u);
    EXPECT_EQ(v[0], "  ARMLESS           0  No arm, free axes only");
    int marked = 0;
    for (const std::string &l : v)
        if (l[0] == '*') {
            marked++;
            EXPECT_EQ(l, "* GA6-1400-12       6  General-purpose 6-axis arm 1400mm 12kg");
        }
    EXPECT_EQ(marked, 1);
}

TEST(CliConfigModels, SameFromAnyDirectoryAndFromTheDefaultCell) {
    run_result here = run("models");
    run_result elsewhere = run("models", "cd / &&");
    run_result dir = run("models --config '" VZ_SOURCE_DIR "/config/default'");
    EXPECT_EQ(elsewhere.status, 0);
    EXPECT_EQ(dir.status, 0);
    EXPECT_EQ(elsewhere.out, here.out);
    EXPECT_EQ(dir.out, here.out);
}

TEST(CliConfigModels, MarksTheModelsOfAnotherCell) {
    fs::path dir = fs::temp_directory_path() / ("vz_cli_cell_" + std::to_string(getpid()));
    fs::create_directories(dir);
    std::string robot = "2\n\"SC4-0400-03\"\n";
    for (int g = 0; g < 2; g++) {
        for (int i = 0; i < 9; i++)
            robot += "\"\"\n";
        if (g == 0)
            robot += "\"ARMLESS\"\n";
    }
    std::ofstream(dir / "robot.cfg") << robot;
    run_result r = run("models --config '" + dir.string() + "'");
    run_result missing = run("models --config '" + (dir / "nothing").string() + "'");
    fs::remove_all(dir);
    EXPECT_EQ(r.status, 0);
    std::vector<std::string> v = lines(r.out);
    ASSERT_EQ(v.size(), 72u);
    EXPECT_EQ(v[0].substr(0, 10), "* ARMLESS ");
    int marked = 0;
    for (const std::string &l : v)
        marked += l[0] == '*';
    EXPECT_EQ(marked, 2);
    EXPECT_NE(r.out.find("* SC4-0400-03"), std::string::npos);
    EXPECT_EQ(missing.status, 2);
    EXPECT_EQ(missing.out, "");
}

TEST(CliConfigModels, JapaneseNames) {
    run_result r = run("models --lang ja");
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("* GA6-1400-12       6  汎用6軸ロボット リーチ1400mm 可搬12kg\n"), std::string::npos);
    EXPECT_EQ(lines(r.out).size(), 72u);
    EXPECT_EQ(r.out.find("\xEF\xBF\xBD"), std::string::npos);
}

TEST(CliConfigModels, TakesNoOperands) { EXPECT_EQ(run("models extra").status, 2); }

} // namespace
