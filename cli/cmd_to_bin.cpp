/*
** cmd_to_bin.cpp - the to-bin subcommand: each listing becomes a .TP file
** beside it. With --check a listing is translated in a scratch folder, so
** that nothing beside it changes.
*/
#include "cli/cli.h"

#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>

#include "vorex_zd.h"

namespace fs = std::filesystem;

namespace {

/* Translates one listing; prints "file:line: error CODE: message" on a
   failure. */
bool translate_one(const std::string &path, int language) {
    uint16_t code = 0, line = 0;
    int32_t ok = zdascbin(path.c_str(), &code, &line);
    if (ok == 1)
        return true;
    int32_t full = cli_full_code(code, language);
    if (code == 1)
        std::fprintf(stderr, "%s: error 1: %s\n", path.c_str(),
                     language == 1 ? "cannot open the listing" : "cannot open the listing");
    else
        std::fprintf(stderr, "%s:%u: error %d: %s\n", path.c_str(), static_cast<unsigned>(line), full,
                     cli_message_text(full, language).c_str());
    return false;
}

/* Copies the listing into a fresh scratch folder and translates the copy. */
bool check_one(const std::string &path, int language) {
    std::error_code ec;
    fs::path dir = fs::temp_directory_path(ec) / ("vorex-zd-check-" + std::to_string(::getpid()));
    fs::create_directories(dir, ec);
    fs::path copy = dir / fs::path(path).filename();
    if (ec || !fs::copy_file(path, copy, fs::copy_options::overwrite_existing, ec)) {
        std::fprintf(stderr, "%s: error 1: cannot open the listing\n", path.c_str());
        fs::remove_all(dir, ec);
        return false;
    }
    uint16_t code = 0, line = 0;
    bool ok = zdascbin(copy.c_str(), &code, &line) == 1;
    if (!ok) {
        int32_t full = cli_full_code(code, language);
        std::fprintf(stderr, "%s:%u: error %d: %s\n", path.c_str(), static_cast<unsigned>(line), full,
                     cli_message_text(full, language).c_str());
    }
    fs::remove_all(dir, ec);
    return ok;
}

} // namespace

int cmd_to_bin(cli_options &opts) {
    if (opts.args.empty()) {
        std::fprintf(stderr, "usage: vorex-zd to-bin [--config DIR] [--check] LISTING...\n");
        return cli_usage;
    }
    if (!cli_load_config(opts, "to-bin"))
        return cli_usage;
    int language = cli_language(opts);
    int status = cli_ok;
    for (const std::string &path : opts.args) {
        bool ok = opts.check ? check_one(path, language) : translate_one(path, language);
        if (!ok)
            status = cli_failed;
    }
    return status;
}
