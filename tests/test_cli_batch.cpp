// vorex-zd over whole backups, run as a process over generated trees:
// folders and file classes, the text and JSON reports, named constructs,
// crashed and hung workers, exit status, mirrored outputs, and the same
// report for every number of workers.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

extern char **environ;

namespace fs = std::filesystem;

namespace {

struct run_result {
    int status = -1;
    std::string out;
    std::string err;
};

std::string slurp(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

void spit(const std::string &path, const std::string &data) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << data;
}

std::vector<std::string> lines_of(const std::string &text) {
    std::vector<std::string> v;
    std::istringstream in(text);
    for (std::string l; std::getline(in, l);)
        v.push_back(l);
    return v;
}

/* Every file below dir, as paths relative to it. */
std::set<std::string> tree_of(const std::string &dir) {
    std::set<std::string> s;
    std::error_code ec;
    for (auto it = fs::recursive_directory_iterator(dir, ec); it != fs::recursive_directory_iterator(); it.increment(ec))
        if (!it->is_directory())
            s.insert(fs::relative(it->path(), dir).string());
    return s;
}

class CliBatch : public ::testing::Test {
  protected:
    void SetUp() override {
        char tmpl[] = "/tmp/vz-batch-XXXXXX";
        root_ = mkdtemp(tmpl);
        tmp_ = root_ + "/tmp";
        fs::create_directories(tmp_);
    }
    void TearDown() override {
        std::error_code ec;
        fs::permissions(root_, fs::perms::all, fs::perm_options::add, ec);
        for (auto it = fs::recursive_directory_iterator(root_, ec); it != fs::recursive_directory_iterator();
             it.increment(ec))
            if (it->symlink_status(ec).type() == fs::file_type::directory)
                fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ec);
        fs::remove_all(root_, ec);
    }

    /* Runs the command with args and extra environment, stdout and stderr
       kept apart; scratch files of the command go to tmp_. */
    run_result run(std::vector<std::string> args, std::vector<std::string> env = {}) {
        args.insert(args.begin(), VZ_CLI_BINARY);
        env.push_back("TMPDIR=" + tmp_);
        std::vector<std::string> envs;
        for (char **e = environ; *e; e++)
            if (std::strncmp(*e, "TMPDIR=", 7) != 0 && std::strncmp(*e, "VOREX_ZD_TEST_", 14) != 0)
                envs.push_back(*e);
        envs.insert(envs.end(), env.begin(), env.end());
        std::vector<char *> argv, envp;
        for (std::string &a : args)
            argv.push_back(a.data());
        argv.push_back(nullptr);
        for (std::string &e : envs)
            envp.push_back(e.data());
        envp.push_back(nullptr);
        std::string out_file = root_ + "/.stdout", err_file = root_ + "/.stderr";
        posix_spawn_file_actions_t fa;
        posix_spawn_file_actions_init(&fa);
        posix_spawn_file_actions_addopen(&fa, 1, out_file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        posix_spawn_file_actions_addopen(&fa, 2, err_file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        run_result r;
        pid_t pid;
        if (posix_spawn(&pid, argv[0], &fa, nullptr, argv.data(), envp.data()) == 0) {
            int st = 0;
            waitpid(pid, &st, 0);
            r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
        }
        posix_spawn_file_actions_destroy(&fa);
        r.out = slurp(out_file);
        r.err = slurp(err_file);
        fs::remove(out_file);
        fs::remove(err_file);
        return r;
    }

    std::string path(const std::string &rel) const { return root_ + "/" + rel; }

    static std::string listing(const std::string &name, const std::string &mn, const std::string &attr = "",
                               const std::string &appl = "") {
        return "/PROG  " + name + "\n/ATTR\nOWNER\t\t= MNEDITOR;\nCOMMENT\t\t= \"test\";\n" + attr +
               "PROTECT\t\t= READ_WRITE;\nDEFAULT_GROUP\t= 1,*,*,*,*;\n/APPL\n" + appl + "/MN\n" + mn + "/POS\n/END\n";
    }
    static std::string good(const std::string &name) {
        return listing(name, "   1:  !Pick up the part ;\n   2:  ;\n   3:  !Done ;\n");
    }
    /* Japanese keywords: no /ATTR, whose words differ by language. */
    static std::string good_japanese(const std::string &name) {
        return "/PROG  " + name + "\n/MN\n   1:  !\xB1\xB2 ;\n   2:  ;\n/POS\n/END\n";
    }

    /* A .TP file made by the command itself from a good listing. */
    std::string program_bytes() {
        std::string src = tmp_ + "/MAKE.PE";
        spit(src, good("MAKE"));
        run({"to-bin", src});
        std::string tp = slurp(tmp_ + "/MAKE.TP");
        fs::remove(src);
        fs::remove(tmp_ + "/MAKE.TP");
        return tp;
    }

    std::string root_, tmp_;
};

/* The line of report text that belongs to file, or "". */
std::string line_for(const std::string &report, const std::string &file) {
    for (const std::string &l : lines_of(report))
        if (l.compare(0, file.size(), file) == 0 && l.size() > file.size() &&
            (l[file.size()] == ':' || l[file.size()] == '"'))
            return l;
    return "";
}

/* The JSON object line of file, or "". */
std::string object_for(const std::string &report, const std::string &file) {
    std::string head = "{\"file\": \"" + file + "\", ";
    for (const std::string &l : lines_of(report))
        if (l.compare(0, head.size(), head) == 0)
            return l;
    return "";
}

TEST_F(CliBatch, FoldersGiveListingsAndProgramsOfAnyCase) {
    const char *listings[] = {"a/ONE.PE", "a/two.pe", "a/b/three.LS", "a/b/four.Pj", "a/b/c/five.ls"};
    for (const char *f : listings)
        spit(path(f), std::string(f).back() == 'j' ? good_japanese("P") : good("P"));
    spit(path("a/prog.tp"), program_bytes());
    spit(path("a/PROG2.TP"), program_bytes());
    for (const char *f : {"a/notes.txt", "a/b/README", "a/b/x.lsx", "a/b/y.tpp"})
        spit(path(f), "not a program");

    run_result r = run({"check", "--format", "json", path("a")});
    EXPECT_EQ(r.status, 0) << r.out << r.err;
    std::vector<std::string> files;
    for (const std::string &l : lines_of(r.out)) {
        std::smatch m;
        if (std::regex_search(l, m, std::regex("^\\{\"file\": \"([^\"]*)\"")))
            files.push_back(m[1]);
    }
    std::vector<std::string> want = {"a/PROG2.TP", "a/ONE.PE", "a/b/c/five.ls", "a/b/four.Pj", "a/b/three.LS",
                                     "a/prog.tp", "a/two.pe"};
    for (std::string &w : want)
        w = path(w);
    std::sort(want.begin(), want.end());
    EXPECT_EQ(files, want);

    /* to-bin takes only the listings of a folder, to-text only the programs. */
    r = run({"to-bin", "--format", "json", "-o", path("out"), path("a")});
    EXPECT_EQ(r.status, 0) << r.out;
    EXPECT_EQ(lines_of(r.out).size(), 6u);
    r = run({"to-text", "--format", "json", "-o", path("txt"), path("a")});
    EXPECT_EQ(r.status, 0) << r.out;
    EXPECT_EQ(lines_of(r.out).size(), 3u);
    EXPECT_EQ(tree_of(path("txt")), (std::set<std::string>{"PROG2.PE", "prog.PE"}));
}

TEST_F(CliBatch, FileNamedOnTheCommandLineIsTakenWhateverItsName) {
    spit(path("listing.txt"), good("TXT"));
    spit(path("noext"), good("NOEXT"));
    run_result r = run({"to-bin", path("listing.txt"), path("noext")});
    EXPECT_EQ(r.status, 0) << r.out;
    EXPECT_EQ(r.out, "2 files: 2 ok, 0 failed\n");
    EXPECT_TRUE(fs::exists(path("listing.TP")));
    EXPECT_TRUE(fs::exists(path("noext.TP")));
    /* check tells a program by its .tp name and anything else is a listing. */
    r = run({"check", path("listing.TP"), path("listing.txt")});
    EXPECT_EQ(r.status, 0) << r.out;
}

TEST_F(CliBatch, NamedConstructsInTextAndJson) {
    const struct {
        const char *file;
        std::string text;
        const char *construct;
        const char *what;
    } cases[] = {
        {"if.ls", listing("IFS", "   1:  !a ;\n   2:  IF R[1]=1 THEN ;\n   3:  !b ;\n   4:  ENDIF ;\n"),
         "if-then-block", "a block IF ... THEN / ELSE / ENDIF"},
        {"else.ls", listing("ELS", "   1:  !a ;\n   2:  ELSE ;\n   3:  !b ;\n"), "if-then-block",
         "a block IF ... THEN / ELSE / ENDIF"},
        {"endif.ls", listing("ENDI", "   1:  !a ;\n   2:  ENDIF ;\n"), "if-then-block",
         "a block IF ... THEN / ELSE / ENDIF"},
        {"for.ls", listing("FORS", "   1:  !a ;\n   2:  FOR R[1]=1 TO 10 ;\n   3:  !b ;\n   4:  ENDFOR ;\n"),
         "for-loop", "a FOR ... TO/DOWNTO ... ENDFOR loop"},
        {"down.ls", listing("DOWN", "   1:  FOR R[2]=10 DOWNTO 1 ;\n   2:  ENDFOR ;\n"), "for-loop",
         "a FOR ... TO/DOWNTO ... ENDFOR loop"},
        {"comment.ls", listing("CMT", "   1:  !a ;\n   2:  //L P[1] 100mm/sec FINE ;\n   3:  !b ;\n"),
         "comment-line", "a line commented out with //"},
        {"appl.ls", listing("APL", "   1:  !a ;\n", "", "AUTO_SINGULARITY_HEADER;\n  ENABLE_SINGULARITY_AVOIDANCE : TRUE;\n"),
         "appl-header", "the /APPL header AUTO_SINGULARITY_HEADER"},
        {"bell.ls", listing("BEL", "   1:  !a ;\n", "", "BELL_JOB;\n"), "appl-header",
         "the /APPL header BELL_JOB"},
        {"attr.ls", listing("ATR", "   1:  !a ;\n", "STORAGE\t\t= SHADOW;\n"), "attr-field",
         "the /ATTR field STORAGE"},
    };
    for (const auto &c : cases)
        spit(path("bad/" + std::string(c.file)), c.text);
    run_result text = run({"check", path("bad")});
    run_result json = run({"check", "--format", "json", path("bad")});
    EXPECT_EQ(text.status, 1) << text.out;
    EXPECT_EQ(json.status, 1) << json.out;
    for (const auto &c : cases) {
        std::string f = path("bad/" + std::string(c.file));
        std::string note = std::string(" (uses ") + c.what + ", which this program format does not define)";
        std::string l = line_for(text.out, f);
        std::smatch m;
        ASSERT_TRUE(std::regex_match(l, m, std::regex("^(.*):([0-9]+): error ([0-9]+): (.*)$"))) << c.file << ": " << l;
        EXPECT_EQ(m[1].str(), f);
        std::string message = m[4];
        ASSERT_GT(message.size(), note.size()) << l;
        EXPECT_EQ(message.substr(message.size() - note.size()), note) << l;
        std::string o = object_for(json.out, f);
        EXPECT_NE(o.find("\"ok\": false, \"code\": " + m[3].str() + ", \"line\": " + m[2].str() + ", "),
                  std::string::npos)
            << o;
        EXPECT_NE(o.find("\"construct\": \"" + std::string(c.construct) + "\""), std::string::npos) << o;
        EXPECT_NE(o.find(note + "\""), std::string::npos) << o;
    }
}

TEST_F(CliBatch, PlainErrorsNameNoConstruct) {
    spit(path("x/undef.pe"), listing("UND", "   1:  !a ;\n   2:  FROB 12 ;\n"));
    spit(path("x/badattr.pe"), listing("BAT", "   1:  !a ;\n", "PROTECT\t\t= NOWHERE;\n"));
    run_result r = run({"check", "--format", "json", path("x")});
    EXPECT_EQ(r.status, 1);
    for (const char *f : {"x/undef.pe", "x/badattr.pe"}) {
        std::string o = object_for(r.out, path(f));
        EXPECT_NE(o.find("\"ok\": false"), std::string::npos) << o;
        EXPECT_NE(o.find("\"construct\": null"), std::string::npos) << o;
        EXPECT_EQ(o.find("(uses "), std::string::npos) << o;
    }
    std::string o = object_for(r.out, path("x/badattr.pe"));
    EXPECT_NE(o.find("\"code\": 1376341, \"line\": 5, \"message\": \"Wrong attribute data\""), std::string::npos) << o;
}

TEST_F(CliBatch, ReportsOfAMixedTree) {
    spit(path("t/ok1.pe"), good("OK1"));
    spit(path("t/ok2.ls"), good("OK2"));
    spit(path("t/crash.ls"), good("CRASH"));
    spit(path("t/text.tp"), good("TEXT"));
    fs::create_symlink("missing.ls", path("t/dangling.ls"));
    std::vector<std::string> hook = {"VOREX_ZD_TEST_CRASH_ON=crash.ls"};

    run_result r = run({"check", "-j", "2", path("t")}, hook);
    EXPECT_EQ(r.status, 2) << r.out; /* a path that cannot be read */
    std::vector<std::string> l = lines_of(r.out);
    ASSERT_EQ(l.size(), 4u) << r.out;
    EXPECT_TRUE(std::regex_match(l[0], std::regex(std::regex_replace(path("t/crash.ls"), std::regex("[.]"), "\\.") +
                                                  ": error 3: internal error: the translation .*")))
        << l[0];
    EXPECT_EQ(l[1], path("t/dangling.ls") + ": error 1: cannot read: No such file or directory");
    EXPECT_EQ(l[2], path("t/text.tp") + ": error 2: not a .TP program: the file is a text listing");
    EXPECT_EQ(l[3], "5 files: 2 ok, 3 failed (most frequent codes: 1 x1, 2 x1, 3 x1)");

    r = run({"check", "--format", "json", "-j", "2", path("t")}, hook);
    EXPECT_EQ(r.status, 2);
    l = lines_of(r.out);
    ASSERT_EQ(l.size(), 6u) << r.out;
    EXPECT_EQ(l[1], "{\"file\": \"" + path("t/dangling.ls") +
                        "\", \"ok\": false, \"code\": 1, \"line\": 0, \"message\": \"cannot read: No such file or "
                        "directory\", \"construct\": null, \"warnings\": []}");
    EXPECT_EQ(l[2], "{\"file\": \"" + path("t/ok1.pe") +
                        "\", \"ok\": true, \"code\": 0, \"line\": 0, \"message\": \"\", \"construct\": null, "
                        "\"warnings\": []}");
    EXPECT_NE(l[0].find("\"code\": 3, \"line\": 0, \"message\": \"internal error: the translation "), std::string::npos);
    EXPECT_EQ(l[5], "{\"summary\": {\"files\": 5, \"ok\": 2, \"failed\": 3, \"by_code\": {\"1\": 1, \"2\": 1, \"3\": 1}}}");
    EXPECT_EQ(r.err, "");
}

TEST_F(CliBatch, SameBytesForEveryNumberOfWorkers) {
    for (int i = 0; i < 12; i++)
        spit(path("m/ok" + std::to_string(i) + ".pe"), good("OK"));
    spit(path("m/sub/crash.pe"), good("C"));
    spit(path("m/sub/for.ls"), listing("F", "   1:  FOR R[1]=1 TO 3 ;\n   2:  ENDFOR ;\n"));
    spit(path("m/sub/attr.ls"), listing("A", "   1:  !a ;\n", "STORAGE\t\t= CMOS;\n"));
    spit(path("m/prog.tp"), program_bytes());
    spit(path("m/cut.tp"), program_bytes().substr(0, 30));
    std::vector<std::string> hook = {"VOREX_ZD_TEST_CRASH_ON=crash.pe"};
    for (const char *format : {"text", "json"}) {
        run_result one = run({"check", "--format", format, "-j", "1", path("m")}, hook);
        run_result two = run({"check", "--format", format, "-j", "2", path("m")}, hook);
        run_result many = run({"check", "--format", format, "-j", "5", path("m")}, hook);
        EXPECT_EQ(one.status, 1);
        EXPECT_EQ(two.status, 1);
        EXPECT_EQ(one.out, two.out) << format;
        EXPECT_EQ(one.out, many.out) << format;
        EXPECT_NE(one.out.find(std::string(format) == "text" ? "17 files: 13 ok, 4 failed"
                                                             : "\"files\": 17, \"ok\": 13, \"failed\": 4,"),
                  std::string::npos)
            << one.out;
    }
}

TEST_F(CliBatch, HungWorkerCostsOnlyItsFile) {
    spit(path("h/a.pe"), good("A"));
    spit(path("h/hang.pe"), good("H"));
    spit(path("h/z.pe"), good("Z"));
    run_result r = run({"check", "--timeout", "0.5", "-j", "1", path("h")}, {"VOREX_ZD_TEST_HANG_ON=hang.pe"});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, path("h/hang.pe") +
                         ": error 3: internal error: the translation took longer than 0.5 s (--timeout)\n"
                         "3 files: 2 ok, 1 failed (most frequent codes: 3 x1)\n");
}

TEST_F(CliBatch, MirroredOutputsAndNothingLeftOfFailures) {
    spit(path("src/r1/MAIN.LS"), good("MAIN"));
    spit(path("src/r1/sub dir/Über.pe"), good("UBER"));
    spit(path("src/r2/bad.ls"), listing("BAD", "   1:  FOR R[1]=1 TO 3 ;\n"));
    spit(path("src/r2/crash.pj"), good("CRASH"));
    std::set<std::string> before = tree_of(path("src"));

    run_result r = run({"to-bin", "-j", "2", "-o", path("out"), path("src")}, {"VOREX_ZD_TEST_CRASH_ON=crash.pj"});
    EXPECT_EQ(r.status, 1) << r.out;
    EXPECT_EQ(tree_of(path("out")), (std::set<std::string>{"r1/MAIN.TP", "r1/sub dir/Über.TP"}));
    EXPECT_EQ(tree_of(path("src")), before);
    EXPECT_TRUE(tree_of(tmp_).empty());

    /* The same outputs as a translation beside the source gives. */
    r = run({"to-bin", path("src/r1/MAIN.LS")});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(slurp(path("out/r1/MAIN.TP")), slurp(path("src/r1/MAIN.TP")));
    ASSERT_FALSE(slurp(path("out/r1/MAIN.TP")).empty());

    /* And back to listings, mirrored again. */
    r = run({"to-text", "-o", path("back"), path("out")});
    EXPECT_EQ(r.status, 0) << r.out;
    EXPECT_EQ(tree_of(path("back")), (std::set<std::string>{"r1/MAIN.PE", "r1/sub dir/Über.PE"}));
    EXPECT_EQ(slurp(path("back/r1/MAIN.PE")).substr(0, 13), "/PROG  MAIN\t\r");
}

TEST_F(CliBatch, FailureKeepsAnEarlierOutputUntouched) {
    spit(path("p/prog.pe"), listing("PROG", "   1:  ENDFOR ;\n"));
    spit(path("p/prog.TP"), "old");
    spit(path("o/prog.TP"), "old too");
    EXPECT_EQ(run({"to-bin", path("p/prog.pe")}).status, 1);
    EXPECT_EQ(run({"to-bin", "-o", path("o"), path("p/prog.pe")}).status, 1);
    EXPECT_EQ(slurp(path("p/prog.TP")), "old");
    EXPECT_EQ(slurp(path("o/prog.TP")), "old too");
}

TEST_F(CliBatch, CheckLeavesNoFileAnywhere) {
    spit(path("c/ok.pe"), good("OK"));
    spit(path("c/prog.tp"), program_bytes());
    spit(path("c/bad.ls"), listing("B", "   1:  //x ;\n"));
    std::set<std::string> before = tree_of(path("c"));
    run_result r = run({"check", "-j", "2", path("c")});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(tree_of(path("c")), before);
    EXPECT_TRUE(tree_of(tmp_).empty());
    r = run({"to-bin", "--check", path("c")});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(tree_of(path("c")), before);
}

TEST_F(CliBatch, WrongKindOfFileIsNamed) {
    std::string tp = program_bytes();
    spit(path("w/prog.TP"), tp);
    spit(path("w/copy.pe"), tp);
    run_result r = run({"to-bin", path("w/copy.pe")});
    EXPECT_EQ(r.status, 1);
    std::string l = line_for(r.out, path("w/copy.pe"));
    EXPECT_NE(l.find(" (the file holds binary data: a .TP program, not a listing)"), std::string::npos) << l;
    EXPECT_FALSE(fs::exists(path("w/copy.TP")));
    /* A .TP named as a listing would be written over by its own output. */
    r = run({"to-bin", path("w/prog.TP")});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(slurp(path("w/prog.TP")), tp);

    spit(path("w/list.tp"), good("L"));
    r = run({"to-text", path("w/list.tp")});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, path("w/list.tp") + ": error 2: not a .TP program: the file is a text listing\n"
                                         "1 files: 0 ok, 1 failed (most frequent codes: 2 x1)\n");
    EXPECT_FALSE(fs::exists(path("w/list.PE")));
}

TEST_F(CliBatch, TwoSourcesOfOneOutput) {
    spit(path("d/A.PE"), good("A"));
    spit(path("d/A.ls"), good("A"));
    run_result r = run({"to-bin", "-j", "2", path("d")});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, path("d/A.ls") + ": error 4: cannot write " + path("d/A.TP") + ": it is the output of " +
                         path("d/A.PE") + "\n2 files: 1 ok, 1 failed (most frequent codes: 4 x1)\n");
}

TEST_F(CliBatch, OddTreesEndAndReport) {
    spit(path("o/x y/名前 1.pe"), good("N"));
    spit(path("o/sj\x83\x65.ls"), good("S"));
    spit(path("o/quote\"d.ls"), good("Q"));
    fs::create_directories(path("o/empty"));
    fs::create_directory_symlink("..", path("o/up"));   /* a loop, not entered */
    fs::create_symlink("l2.ls", path("o/l1.ls"));       /* a loop of links */
    fs::create_symlink("l1.ls", path("o/l2.ls"));
    mkfifo(path("o/pipe.ls").c_str(), 0600);            /* never opened */
    run_result r = run({"check", "--format", "json", path("o")});
    EXPECT_EQ(r.status, 2) << r.out;
    std::vector<std::string> l = lines_of(r.out);
    ASSERT_EQ(l.size(), 6u) << r.out;
    EXPECT_EQ(l[0].substr(0, 10 + path("o/l1.ls").size()), "{\"file\": \"" + path("o/l1.ls"));
    EXPECT_NE(l[0].find("\"code\": 1, \"line\": 0, \"message\": \"cannot read: Too many levels of symbolic links\""),
              std::string::npos);
    EXPECT_NE(object_for(r.out, path("o/quote\\\"d.ls")).find("\"ok\": true"), std::string::npos) << r.out;
    EXPECT_NE(object_for(r.out, path("o/sj\\udc83e.ls")).find("\"ok\": true"), std::string::npos) << r.out;
    EXPECT_NE(object_for(r.out, path("o/x y/名前 1.pe")).find("\"ok\": true"), std::string::npos) << r.out;
    EXPECT_EQ(l[5], "{\"summary\": {\"files\": 5, \"ok\": 3, \"failed\": 2, \"by_code\": {\"1\": 2}}}");

    r = run({"check", path("o/empty")});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "0 files: 0 ok, 0 failed\n");
    EXPECT_EQ(r.err, "vorex-zd check: no files to translate\n");
}

TEST_F(CliBatch, UnreadableFolderIsReportedAndTheBatchGoesOn) {
    if (geteuid() == 0)
        GTEST_SKIP() << "permissions do not bind the superuser";
    spit(path("u/ok.pe"), good("OK"));
    spit(path("u/locked/in.pe"), good("IN"));
    fs::permissions(path("u/locked"), fs::perms::none);
    run_result r = run({"check", path("u")});
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.out, path("u/locked") + ": error 1: cannot read the folder: Permission denied\n"
                                        "2 files: 1 ok, 1 failed (most frequent codes: 1 x1)\n");
}

TEST_F(CliBatch, ExitStatusAndUsage) {
    spit(path("g/ok.pe"), good("OK"));
    spit(path("g/bad.pe"), listing("B", "   1:  ENDIF ;\n"));
    EXPECT_EQ(run({"check", path("g/ok.pe")}).status, 0);
    EXPECT_EQ(run({"check", path("g/ok.pe"), path("g/bad.pe")}).status, 1);
    run_result r = run({"check", path("g/ok.pe"), path("g/none.pe")});
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.out, path("g/none.pe") + ": error 1: cannot read: No such file or directory\n"
                                         "2 files: 1 ok, 1 failed (most frequent codes: 1 x1)\n");
    const std::vector<std::vector<std::string>> usage = {
        {"check"},
        {"check", "-j", "0", path("g")},
        {"check", "-j", "x", path("g")},
        {"check", "--timeout", "0", path("g")},
        {"check", "--timeout", "-1", path("g")},
        {"check", "--format", "xml", path("g")},
        {"check", "-o", path("out"), path("g")},
        {"to-bin", "--check", "-o", path("out"), path("g")},
        {"to-bin", "-o", path("g/ok.pe"), path("g")},
        {"check", "--config", path("nowhere"), path("g")},
    };
    for (const auto &args : usage) {
        r = run(args);
        EXPECT_EQ(r.status, 2) << args[1];
        EXPECT_EQ(r.out, "") << args[1];
        EXPECT_FALSE(r.err.empty()) << args[1];
    }
    EXPECT_EQ(run({"check", "-j3", path("g/ok.pe")}).status, 0);
    EXPECT_EQ(run({"check", "--jobs", "2", "--quiet", path("g/ok.pe")}).status, 0);
}

TEST_F(CliBatch, ToTextSingleFileAndStandardOutput) {
    spit(path("s/prog.tp"), program_bytes());
    run_result r = run({"to-text", "-o", path("s/named.txt"), path("s/prog.tp")});
    EXPECT_EQ(r.status, 0);
    std::string text = slurp(path("s/named.txt"));
    EXPECT_EQ(text.substr(0, 13), "/PROG  MAKE\t\r");
    /* "-o -": listings on standard output in order, the report on standard error. */
    spit(path("s/prog2.tp"), program_bytes());
    r = run({"to-text", "-j", "2", "-o", "-", path("s/prog.tp"), path("s/prog2.tp")});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, text + text);
    EXPECT_EQ(r.err, "2 files: 2 ok, 0 failed\n");
    /* A trailing slash makes -o a folder even for one program. */
    r = run({"to-text", "--lang", "ja", "-o", path("new/"), path("s/prog.tp")});
    EXPECT_EQ(r.status, 0);
    EXPECT_TRUE(fs::exists(path("new/prog.PJ")));
}

TEST_F(CliBatch, JapaneseMessages) {
    spit(path("j/for.pe"), listing("F", "   1:  FOR R[1]=1 TO 3 ;\n"));
    run_result r = run({"check", "--lang", "ja", "--format", "json", path("j/for.pe")});
    std::string o = object_for(r.out, path("j/for.pe"));
    EXPECT_NE(o.find("\"code\": 161, "), std::string::npos) << o;
    EXPECT_NE(o.find("\"message\": \"定義されていない命令です (uses a FOR"), std::string::npos) << o;
}

/* The progress line shows only on a terminal, and not with --quiet. */
TEST_F(CliBatch, ProgressOnATerminalOnly) {
    for (int i = 0; i < 3; i++)
        spit(path("t/ok" + std::to_string(i) + ".pe"), good("OK"));
    for (bool quiet : {false, true}) {
        int master = posix_openpt(O_RDWR | O_NOCTTY);
        ASSERT_GE(master, 0);
        ASSERT_EQ(grantpt(master), 0);
        ASSERT_EQ(unlockpt(master), 0);
        std::string slave = ptsname(master);
        std::vector<std::string> args = {VZ_CLI_BINARY, "check", "-j", "1", path("t")};
        if (quiet)
            args.push_back("--quiet");
        std::vector<char *> argv;
        for (std::string &a : args)
            argv.push_back(a.data());
        argv.push_back(nullptr);
        posix_spawn_file_actions_t fa;
        posix_spawn_file_actions_init(&fa);
        posix_spawn_file_actions_addopen(&fa, 1, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&fa, 2, slave.c_str(), O_RDWR | O_NOCTTY, 0);
        pid_t pid;
        ASSERT_EQ(posix_spawn(&pid, argv[0], &fa, nullptr, argv.data(), environ), 0);
        posix_spawn_file_actions_destroy(&fa);
        int st = 0;
        waitpid(pid, &st, 0);
        std::string got;
        char buf[4096];
        pollfd pf = {master, POLLIN, 0};
        while (poll(&pf, 1, 200) > 0) {
            ssize_t n = read(master, buf, sizeof buf);
            if (n <= 0)
                break;
            got.append(buf, static_cast<size_t>(n));
        }
        close(master);
        EXPECT_EQ(WEXITSTATUS(st), 0);
        if (quiet) {
            EXPECT_EQ(got, "");
        } else {
            EXPECT_NE(got.find("3/3 files, "), std::string::npos) << got;
            EXPECT_NE(got.find(" files/s"), std::string::npos) << got;
            EXPECT_NE(got.find("\r\033[K"), std::string::npos) << got;
        }
    }
}

} // namespace
