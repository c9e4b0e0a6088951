/*
** cmd_to_text.cpp - the to-text subcommand: .TP programs to listings.
**
**   vorex-zd to-text [-o OUT|-] [--lang en|ja] PROGRAM.TP...
**
** Without -o each listing lands beside its program, named .PE (English
** keywords) or .PJ (Japanese, --lang ja). "-o -" writes the listings to
** standard output. The library picks the keyword language from the name
** it writes to, so each program is translated into a scratch file whose
** name says the language, and copied to its place only when the
** translation succeeded: a failure leaves an existing output untouched.
*/
#include "cli/cli.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

#include "vorex_zd.h"

namespace {

/* The program's path with its extension, if its base name has one,
   replaced by the listing's. */
std::string listing_beside(const std::string &program, bool japanese) {
    size_t slash = program.find_last_of('/');
    size_t base = slash == std::string::npos ? 0 : slash + 1;
    size_t dot = program.find_last_of('.');
    std::string stem = (dot != std::string::npos && dot > base) ? program.substr(0, dot) : program;
    return stem + (japanese ? ".PJ" : ".PE");
}

bool copy_stream(FILE *in, FILE *out) {
    char buf[8192];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, in)) > 0)
        if (std::fwrite(buf, 1, n, out) != n)
            return false;
    return !std::ferror(in);
}

/* Copies the scratch listing to dest, or to standard output for "". */
bool deliver(const std::string &scratch, const std::string &dest) {
    FILE *in = std::fopen(scratch.c_str(), "rb");
    if (in == nullptr) {
        std::fprintf(stderr, "%s: cannot read the translation: %s\n", scratch.c_str(), std::strerror(errno));
        return false;
    }
    FILE *out = dest.empty() ? stdout : std::fopen(dest.c_str(), "wb");
    if (out == nullptr) {
        std::fprintf(stderr, "%s: cannot write: %s\n", dest.c_str(), std::strerror(errno));
        std::fclose(in);
        return false;
    }
    bool ok = copy_stream(in, out);
    std::fclose(in);
    if (out == stdout)
        ok = std::fflush(stdout) == 0 && ok;
    else
        ok = std::fclose(out) == 0 && ok;
    if (!ok)
        std::fprintf(stderr, "%s: cannot write: %s\n", dest.empty() ? "-" : dest.c_str(), std::strerror(errno));
    return ok;
}

void explain_failure(const std::string &program) {
    FILE *f = std::fopen(program.c_str(), "rb");
    if (f == nullptr) {
        std::fprintf(stderr, "%s: cannot open: %s\n", program.c_str(), std::strerror(errno));
        return;
    }
    std::fclose(f);
    std::fprintf(stderr, "%s: not a readable .TP program (damaged or cut short)\n", program.c_str());
}

/* One program to dest ("" for standard output): true on success. */
bool translate_one(const std::string &program, const std::string &dest, bool japanese) {
    char dir[] = "/tmp/vorex-zd-XXXXXX";
    if (mkdtemp(dir) == nullptr) {
        std::fprintf(stderr, "%s: cannot make a scratch directory: %s\n", program.c_str(), std::strerror(errno));
        return false;
    }
    std::string scratch = std::string(dir) + (japanese ? "/listing.PJ" : "/listing.PE");
    bool ok = zdbinasc_file(program.c_str(), scratch.c_str()) == 1;
    if (!ok)
        explain_failure(program);
    else
        ok = deliver(scratch, dest);
    std::remove(scratch.c_str());
    rmdir(dir);
    return ok;
}

} // namespace

int cmd_to_text(cli_options &opts) {
    if (opts.args.empty()) {
        std::fprintf(stderr, "usage: vorex-zd to-text [-o OUT|-] [--lang en|ja] PROGRAM.TP...\n");
        return cli_usage;
    }
    bool to_stdout = opts.output == "-";
    if (!opts.output.empty() && !to_stdout && opts.args.size() > 1) {
        std::fprintf(stderr, "vorex-zd to-text: -o names one listing, but %zu programs were given\n",
                     opts.args.size());
        return cli_usage;
    }
    bool japanese = opts.lang == "ja";
    bool any_failed = false;
    for (const std::string &program : opts.args) {
        std::string dest;
        if (!to_stdout)
            dest = opts.output.empty() ? listing_beside(program, japanese) : opts.output;
        if (!translate_one(program, dest, japanese))
            any_failed = true;
    }
    return any_failed ? cli_failed : cli_ok;
}
