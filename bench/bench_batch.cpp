/*
** bench_batch.cpp - files per second of "vorex-zd check" over a folder of
** 1,000 generated programs, with one worker process and with two. The
** programs hold what every build translates: /ATTR, remarks, empty
** statements, joint and linear motion with their /POS records.
**
** The command is found beside this benchmark's build folder (build/vorex-zd
** for build/bench/vorex_zd_bench), or at $VOREX_ZD_CLI.
*/
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

extern char **environ;

namespace fs = std::filesystem;

namespace {

constexpr int program_count = 1000;

std::string cli_path() {
    if (const char *env = std::getenv("VOREX_ZD_CLI"))
        return env;
    std::error_code ec;
    fs::path self = fs::read_symlink("/proc/self/exe", ec);
    return (self.parent_path().parent_path() / "vorex-zd").string();
}

std::string position(int n, int x) {
    char buf[400];
    std::snprintf(buf, sizeof buf,
                  "P[%d]{\n   GP1:\n        UF : 0, UT : 1,           CONFIG : 'N U T, 0, 0, 0',\n"
                  "        X =   %d.000  mm,  Y =  -250.500  mm,  Z =   200.000  mm,\n"
                  "        W =   180.000 deg,  P =     0.000 deg,  R =   -90.000 deg\n};\n",
                  n, x);
    return buf;
}

/* Program i: /ATTR, 40 statements, 8 positions. */
std::string program(int i) {
    char name[16];
    std::snprintf(name, sizeof name, "P%04d", i);
    std::string s = std::string("/PROG  ") + name + "\n/ATTR\nOWNER\t\t= MNEDITOR;\nCOMMENT\t\t= \"bench\";\n"
                    "PROG_SIZE\t= 0;\nCREATE\t\t= DATE 26-11-24  TIME 09:00:00;\n"
                    "MODIFIED\t= DATE 26-11-24  TIME 09:00:00;\nFILE_NAME\t= ;\nVERSION\t\t= 0;\n"
                    "LINE_COUNT\t= 40;\nMEMORY_SIZE\t= 0;\nPROTECT\t\t= READ_WRITE;\n"
                    "TCD:  STACK_SIZE\t= 0,\n      TASK_PRIORITY\t= 50,\n      TIME_SLICE\t= 0,\n"
                    "      BUSY_LAMP_OFF\t= 0,\n      ABORT_REQUEST\t= 0,\n      PAUSE_REQUEST\t= 0;\n"
                    "DEFAULT_GROUP\t= 1,*,*,*,*;\nCONTROL_CODE\t= 00000000 00000000;\n/APPL\n/MN\n";
    for (int k = 1; k <= 40; k++) {
        char line[96];
        int p = (k % 8) + 1;
        if (k % 5 == 0)
            std::snprintf(line, sizeof line, "%4d:  ;\n", k);
        else if (k % 5 == 1)
            std::snprintf(line, sizeof line, "%4d:  !step %d of %s ;\n", k, k, name);
        else if (k % 2 == 0)
            std::snprintf(line, sizeof line, "%4d:J P[%d] %d%% FINE  ;\n", k, p, 10 + k);
        else
            std::snprintf(line, sizeof line, "%4d:L P[%d] %dmm/sec CNT%d  ;\n", k, p, 100 + k, k % 100);
        s += line;
    }
    s += "/POS\n";
    for (int n = 1; n <= 8; n++)
        s += position(n, 100 + n + i % 50);
    return s + "/END\n";
}

/* The generated folder, made once and removed when the benchmark ends. */
struct corpus {
    std::string dir;
    corpus() {
        char tmpl[] = "/tmp/vorex-zd-bench-XXXXXX";
        if (::mkdtemp(tmpl) == nullptr)
            return;
        dir = tmpl;
        for (int i = 0; i < program_count; i++) {
            char file[32];
            std::snprintf(file, sizeof file, "/P%04d.ls", i);
            std::ofstream(dir + file, std::ios::binary) << program(i);
        }
    }
    ~corpus() {
        std::error_code ec;
        if (!dir.empty())
            fs::remove_all(dir, ec);
    }
};

const corpus &the_corpus() {
    static corpus c;
    return c;
}

/* Runs the command with its report sent to /dev/null; its exit status. */
int run_check(const std::string &cli, const std::string &dir, int jobs) {
    std::string j = std::to_string(jobs);
    std::vector<std::string> args = {cli, "check", "--quiet", "-j", j, dir};
    std::vector<char *> argv;
    for (std::string &a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t fa;
    posix_spawn_file_actions_init(&fa);
    posix_spawn_file_actions_addopen(&fa, 1, "/dev/null", O_WRONLY, 0);
    pid_t pid;
    int rc = posix_spawn(&pid, cli.c_str(), &fa, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&fa);
    if (rc != 0)
        return -1;
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void BM_CheckBackup(benchmark::State &state) {
    const corpus &c = the_corpus();
    std::string cli = cli_path();
    if (c.dir.empty() || !fs::exists(cli)) {
        state.SkipWithError(("no corpus or no command at " + cli).c_str());
        return;
    }
    int jobs = static_cast<int>(state.range(0));
    for (auto _ : state) {
        if (run_check(cli, c.dir, jobs) != 0) {
            state.SkipWithError("check did not pass every generated program");
            return;
        }
    }
    state.counters["files_per_second"] =
        benchmark::Counter(static_cast<double>(program_count) * static_cast<double>(state.iterations()),
                           benchmark::Counter::kIsRate);
}

BENCHMARK(BM_CheckBackup)->ArgName("jobs")->Arg(1)->Arg(2)->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
