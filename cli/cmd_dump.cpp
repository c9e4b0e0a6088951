/*
** cmd_dump.cpp - the dump subcommand: the byte dump of .TP programs.
**
**   vorex-zd dump [-o DUMP|-] PROGRAM.TP...
**
** Without -o each dump lands beside its program, with the extension
** ".dmp". "-o -" writes the dumps to standard output. A program that does
** not read leaves no dump and an existing one untouched.
*/
#include "cli/cli.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <unistd.h>

#include "vorex_zd.h"

namespace {

std::string dump_beside(const std::string &program) {
    size_t slash = program.find_last_of('/');
    size_t base = slash == std::string::npos ? 0 : slash + 1;
    size_t dot = program.find_last_of('.');
    std::string stem = (dot != std::string::npos && dot > base) ? program.substr(0, dot) : program;
    return stem + ".dmp";
}

/* Whether dest could be written, without creating it. */
bool writable(const std::string &dest) {
    if (access(dest.c_str(), F_OK) == 0)
        return access(dest.c_str(), W_OK) == 0;
    std::filesystem::path dir = std::filesystem::path(dest).parent_path();
    return access(dir.empty() ? "." : dir.c_str(), W_OK | X_OK) == 0;
}

void explain_failure(const std::string &program, const std::string &dest) {
    FILE *f = std::fopen(program.c_str(), "rb");
    if (f == nullptr) {
        std::fprintf(stderr, "%s: cannot open: %s\n", program.c_str(), std::strerror(errno));
        return;
    }
    std::fclose(f);
    if (!writable(dest)) {
        std::fprintf(stderr, "%s: cannot write: %s\n", dest.c_str(), std::strerror(errno));
        return;
    }
    std::fprintf(stderr, "%s: not a readable .TP program (damaged or cut short)\n", program.c_str());
}

bool copy_to_stdout(const std::string &path) {
    FILE *in = std::fopen(path.c_str(), "rb");
    if (in == nullptr)
        return false;
    char buf[8192];
    size_t n;
    bool ok = true;
    while (ok && (n = std::fread(buf, 1, sizeof buf, in)) > 0)
        ok = std::fwrite(buf, 1, n, stdout) == n;
    std::fclose(in);
    return std::fflush(stdout) == 0 && ok;
}

/* Through a scratch file, which the library needs as its output. */
bool dump_to_stdout(const std::string &program) {
    char dir[] = "/tmp/vorex-zd-XXXXXX";
    if (mkdtemp(dir) == nullptr) {
        std::fprintf(stderr, "%s: cannot make a scratch directory: %s\n", program.c_str(), std::strerror(errno));
        return false;
    }
    std::string scratch = std::string(dir) + "/program.dmp";
    bool ok = zdbinasc_file_dmp(program.c_str(), scratch.c_str()) == 1;
    if (!ok)
        explain_failure(program, scratch);
    else if (!(ok = copy_to_stdout(scratch)))
        std::fprintf(stderr, "vorex-zd dump: cannot write the dump: %s\n", std::strerror(errno));
    std::remove(scratch.c_str());
    rmdir(dir);
    return ok;
}

bool dump_one(const std::string &program, const std::string &dest) {
    std::error_code ec;
    if (std::filesystem::equivalent(program, dest, ec)) {
        std::fprintf(stderr, "%s: same file as the program\n", dest.c_str());
        return false;
    }
    if (zdbinasc_file_dmp(program.c_str(), dest.c_str()) == 1)
        return true;
    explain_failure(program, dest);
    return false;
}

} // namespace

int cmd_dump(cli_options &opts) {
    if (opts.args.empty()) {
        std::fprintf(stderr, "usage: vorex-zd dump [-o DUMP|-] PROGRAM.TP...\n");
        return cli_usage;
    }
    bool to_stdout = opts.output == "-";
    if (!opts.output.empty() && !to_stdout && opts.args.size() > 1) {
        std::fprintf(stderr, "vorex-zd dump: -o names one dump, but %zu programs were given\n", opts.args.size());
        return cli_usage;
    }
    bool any_failed = false;
    for (const std::string &program : opts.args) {
        bool ok = to_stdout ? dump_to_stdout(program)
                            : dump_one(program, opts.output.empty() ? dump_beside(program) : opts.output);
        any_failed = any_failed || !ok;
    }
    return any_failed ? cli_failed : cli_ok;
}
