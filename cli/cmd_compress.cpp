/*
** cmd_compress.cpp - the compress and expand subcommands: one IN OUT pair
** per call, through the library's exports.
*/
#include "cli/cli.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "vorex_zd.h"

namespace {

/* IN OUT, or IN -o OUT; anything else is a usage error. */
bool pick_paths(const cli_options &opts, std::string &in, std::string &out) {
    if (opts.args.size() == 2 && opts.output.empty()) {
        in = opts.args[0];
        out = opts.args[1];
        return true;
    }
    if (opts.args.size() == 1 && !opts.output.empty()) {
        in = opts.args[0];
        out = opts.output;
        return true;
    }
    return false;
}

/* The export only says that a file did not open; find out which one. */
void report_open_failure(const std::string &in, const std::string &out) {
    errno = 0;
    FILE *fp = std::fopen(in.c_str(), "rb");
    if (!fp) {
        std::fprintf(stderr, "%s: cannot open for reading: %s\n", in.c_str(),
                     std::strerror(errno ? errno : ENOENT));
        return;
    }
    std::fclose(fp);
    std::fprintf(stderr, "%s: cannot open for writing\n", out.c_str());
}

int run(cli_options &opts, const char *name, int32_t (*work)(const char *, const char *)) {
    std::string in, out;
    if (!pick_paths(opts, in, out)) {
        std::fprintf(stderr, "usage: vorex-zd %s IN OUT\n", name);
        return cli_usage;
    }
    /* Opening OUT for writing would empty IN before a byte is read. */
    std::error_code ec;
    if (std::filesystem::equivalent(in, out, ec)) {
        std::fprintf(stderr, "%s: same file as the input\n", out.c_str());
        return cli_usage;
    }
    if (work(in.c_str(), out.c_str()) != 0) {
        report_open_failure(in, out);
        return cli_failed;
    }
    return cli_ok;
}

} // namespace

int cmd_compress(cli_options &opts) { return run(opts, "compress", zdcompress); }
int cmd_expand(cli_options &opts) { return run(opts, "expand", zduncompress); }
