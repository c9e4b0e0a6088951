/*
** cmd_message.cpp - the message subcommand: the text of error codes, in
** English unless --lang ja is given (Japanese converted to UTF-8).
**
** A listing run delivers its error code in 16 bits, which loses the upper
** half 0x150000 of the syntax family (1376345 arrives as 89). A code below
** 65536 that has no row of its own, while the code with 0x150000 added
** back has one, is shown as that code: 89 prints "Syntax error in
** instruction". Any other code prints its own row or the fallback text.
*/
#include "cli/cli.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

bool parse_code(const std::string &text, int32_t &code) {
    const char *s = text.c_str();
    char *end = nullptr;
    errno = 0;
    long long v = std::strtoll(s, &end, 0);
    /* Leading zeros are decimal here, not octal. */
    if (s[0] == '0' && s[1] >= '0' && s[1] <= '9')
        v = std::strtoll(s, &end, 10);
    if (text.empty() || *end || errno || v < INT32_MIN || v > INT32_MAX)
        return false;
    code = static_cast<int32_t>(v);
    return true;
}

} // namespace

int cmd_message(cli_options &opts) {
    if (opts.args.empty()) {
        std::fprintf(stderr, "usage: vorex-zd message [--lang en|ja] CODE...\n");
        return cli_usage;
    }
    std::vector<int32_t> codes;
    for (const std::string &a : opts.args) {
        int32_t code;
        if (!parse_code(a, code)) {
            std::fprintf(stderr, "vorex-zd message: not an error code: %s\n", a.c_str());
            return cli_usage;
        }
        codes.push_back(code);
    }
    int language = cli_language(opts);
    for (int32_t code : codes)
        std::printf("%s\n", cli_message_text(cli_full_code(code, language), language).c_str());
    return cli_ok;
}
