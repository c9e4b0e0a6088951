/*
** cli_common.cpp - what several subcommands share: loading the cell,
** the message language and the message text of an error code.
*/
#include "cli/cli.h"

#include <cstdio>
#include <cstring>

#include "core/config.h"
#include "core/messages.h"
#include "core/run_state.h"

namespace {

constexpr int32_t lost_half = 0x150000;

} // namespace

bool cli_load_config(const cli_options &opts, const char *command) {
    const char *dir = opts.config_dir.empty() ? nullptr : opts.config_dir.c_str();
    if (config_load(dir) == 1 && group_count >= 1)
        return true;
    std::fprintf(stderr, "vorex-zd %s: %s: the robot cell configuration did not load\n", command,
                 dir ? dir : "(built-in cell)");
    return false;
}

int cli_language(const cli_options &opts) { return opts.lang == "ja" ? 0 : 1; }

int32_t cli_full_code(int32_t code, int32_t language) {
    if (code >= 0 && code < 65536 && !message_lookup(code, language) &&
        message_lookup(code + lost_half, language))
        return code + lost_half;
    return code;
}

std::string cli_message_text(int32_t code, int32_t language) {
    const char *text = message_lookup(code, language);
    if (!text)
        text = language == 1 ? english_fallback : japanese_fallback;
    if (language == 1)
        return text;
    char buf[2048];
    sjis_to_utf8(text, buf, sizeof buf);
    return buf;
}
