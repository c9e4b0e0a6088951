/*
** main.cpp - argument parsing and subcommand dispatch of vorex-zd.
*/
#include "cli/cli.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#ifndef VOREX_ZD_VERSION
#define VOREX_ZD_VERSION "0"
#endif

namespace {

const cli_command commands[] = {
    {"to-bin", "to-bin [--config DIR] [--check] [-o DIR] [BATCH OPTIONS] LISTING|FOLDER...",
     "translate listings (.ls/.pe/.pj) to .TP beside them or under -o DIR", cmd_to_bin},
    {"to-text", "to-text [-o DIR|LISTING|-] [--lang en|ja] [BATCH OPTIONS] PROGRAM.TP|FOLDER...",
     "translate .TP programs to listings", cmd_to_text},
    {"check", "check [--config DIR] [BATCH OPTIONS] FILE|FOLDER...",
     "translate listings and programs, report, write nothing", cmd_check},
    {"compare", "compare LEFT.TP RIGHT.TP", "report the differences of two .TP programs", cmd_compare},
    {"dump", "dump [-o DUMP] PROGRAM.TP...", "write a byte dump (.dmp) of .TP programs", cmd_dump},
    {"compress", "compress IN OUT", "compress a file", cmd_compress},
    {"expand", "expand IN OUT", "expand a compressed file", cmd_expand},
    {"message", "message [--lang en|ja] CODE...", "print the message text of error codes", cmd_message},
    {"models", "models [--config DIR] [--lang en|ja]", "list the robot models", cmd_models},
};

void print_help(FILE *out) {
    std::fprintf(out, "usage: vorex-zd [--help] [--version] COMMAND [OPTIONS] FILE...\n\n"
                      "Translates robot controller programs between listings and .TP binaries.\n\n"
                      "commands:\n");
    for (const cli_command &c : commands)
        std::fprintf(out, "  %-10s %s\n", c.name, c.summary);
    std::fprintf(out, "\noptions:\n"
                      "  --config DIR   robot cell configuration (robot.cfg, macro.cfg, spot.cfg, arc.cfg)\n"
                      "  --lang en|ja   language of messages\n"
                      "  --check        translate without writing any file (to-bin)\n"
                      "  -o PATH        output path, where the command takes one; a folder for\n"
                      "                 to-bin and to-text batches, mirroring the source tree\n\n"
                      "batch options (to-bin, to-text, check):\n"
                      "  -j N           worker processes (default: one per core)\n"
                      "  --timeout S    seconds one file may take (default 60)\n"
                      "  --format F     report as text (default) or json (JSON Lines)\n"
                      "  --quiet        no progress line on a terminal\n\n"
                      "usage of each command:\n");
    for (const cli_command &c : commands)
        std::fprintf(out, "  vorex-zd %s\n", c.usage);
}

bool parse_count(const std::string &text, int &out) {
    char *end = nullptr;
    errno = 0;
    long v = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || *end || errno || v < 1 || v > 1024)
        return false;
    out = static_cast<int>(v);
    return true;
}

bool parse_seconds(const std::string &text, double &out) {
    char *end = nullptr;
    errno = 0;
    double v = std::strtod(text.c_str(), &end);
    /* Below a day, so that the poll interval stays an int of milliseconds. */
    if (text.empty() || *end || errno || !(v > 0) || v > 86400)
        return false;
    out = v;
    return true;
}

/* Splits options from operands; returns false on a usage error. */
bool parse_options(int argc, char **argv, int first, cli_options &opts) {
    for (int i = first; i < argc; i++) {
        const char *a = argv[i];
        auto value = [&](std::string &dst) {
            if (i + 1 >= argc) {
                std::fprintf(stderr, "vorex-zd: %s needs a value\n", a);
                return false;
            }
            dst = argv[++i];
            return true;
        };
        if (std::strcmp(a, "--config") == 0) {
            if (!value(opts.config_dir))
                return false;
        } else if (std::strcmp(a, "--lang") == 0) {
            if (!value(opts.lang))
                return false;
            if (opts.lang != "en" && opts.lang != "ja") {
                std::fprintf(stderr, "vorex-zd: --lang takes en or ja\n");
                return false;
            }
        } else if (std::strcmp(a, "-o") == 0) {
            if (!value(opts.output))
                return false;
        } else if (std::strcmp(a, "--check") == 0) {
            opts.check = true;
        } else if (std::strcmp(a, "-j") == 0 || std::strcmp(a, "--jobs") == 0 ||
                   (std::strncmp(a, "-j", 2) == 0 && a[2] != 0)) {
            std::string n;
            if (a[1] == 'j' && a[2] != 0)
                n = a + 2;
            else if (!value(n))
                return false;
            if (!parse_count(n, opts.jobs)) {
                std::fprintf(stderr, "vorex-zd: -j takes a number of processes from 1 to 1024\n");
                return false;
            }
        } else if (std::strcmp(a, "--timeout") == 0) {
            std::string t;
            if (!value(t))
                return false;
            if (!parse_seconds(t, opts.timeout)) {
                std::fprintf(stderr, "vorex-zd: --timeout takes a number of seconds above 0\n");
                return false;
            }
        } else if (std::strcmp(a, "--format") == 0) {
            if (!value(opts.format))
                return false;
            if (opts.format != "text" && opts.format != "json") {
                std::fprintf(stderr, "vorex-zd: --format takes text or json\n");
                return false;
            }
        } else if (std::strcmp(a, "--quiet") == 0 || std::strcmp(a, "-q") == 0) {
            opts.quiet = true;
        } else if (std::strcmp(a, "--") == 0) {
            for (i++; i < argc; i++)
                opts.args.push_back(argv[i]);
        } else if (a[0] == '-' && a[1] != 0) {
            std::fprintf(stderr, "vorex-zd: unknown option %s\n", a);
            return false;
        } else {
            opts.args.push_back(a);
        }
    }
    return true;
}

} // namespace

int cli_not_available(const char *name) {
    std::fprintf(stderr, "vorex-zd %s: not available yet\n", name);
    return cli_usage;
}

int main(int argc, char **argv) {
    if (argc < 2) {
        print_help(stderr);
        return cli_usage;
    }
    if (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0) {
        print_help(stdout);
        return cli_ok;
    }
    if (std::strcmp(argv[1], "--version") == 0) {
        std::printf("vorex-zd %s\n", VOREX_ZD_VERSION);
        return cli_ok;
    }
    for (const cli_command &c : commands) {
        if (std::strcmp(argv[1], c.name) != 0)
            continue;
        cli_options opts;
        if (!parse_options(argc, argv, 2, opts))
            return cli_usage;
        return c.run(opts);
    }
    std::fprintf(stderr, "vorex-zd: unknown command '%s' (see vorex-zd --help)\n", argv[1]);
    return cli_usage;
}
