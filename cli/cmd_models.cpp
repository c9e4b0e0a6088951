/*
** cmd_models.cpp - the models subcommand: every row of the robot model
** table as key, axes and display name, the models of the loaded cell
** marked with "*". The cell is the built-in one unless --config names a
** directory.
*/
#include "cli/cli.h"

#include <cstdint>
#include <cstdio>

#include "core/config.h"
#include "core/messages.h"
#include "core/run_state.h"
#include "vorex_zd.h"

namespace {

bool row_in_cell(int32_t row) {
    for (int32_t g = 0; g < group_count && g < MAX_GROUPS; g++)
        if (group_model_row[g] == row)
            return true;
    return false;
}

} // namespace

int cmd_models(cli_options &opts) {
    if (!opts.args.empty()) {
        std::fprintf(stderr, "usage: vorex-zd models [--config DIR] [--lang en|ja]\n");
        return cli_usage;
    }
    if (!cli_load_config(opts, "models"))
        return cli_usage;
    uint16_t count = 0;
    if (zdgetnumrobot(&count) != 0) {
        std::fprintf(stderr, "vorex-zd models: the model table has no end\n");
        return cli_failed;
    }
    bool japanese = cli_language(opts) == 0;
    for (uint16_t row = 0; row < count; row++) {
        char key[512], name[512], utf8[2048];
        if (japanese)
            zdgetrobotnamejpn(row, key, name);
        else
            zdgetrobotname(row, key, name);
        sjis_to_utf8(name, utf8, sizeof utf8);
        std::printf("%c %-16s %2d  %s\n", row_in_cell(row) ? '*' : ' ', key,
                    static_cast<int>(robot_models[row].axes), utf8);
    }
    return cli_ok;
}
