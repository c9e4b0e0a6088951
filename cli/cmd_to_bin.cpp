/*
** cmd_to_bin.cpp - the to-bin subcommand: listings, named or found in
** folders, become .TP files beside them or, with -o DIR, in a mirror of
** the source tree. With --check nothing is written (the same as check
** over listings only).
*/
#include "cli/batch.h"

int cmd_to_bin(cli_options &opts) {
    if (opts.args.empty()) {
        std::fprintf(stderr, "usage: vorex-zd to-bin [--config DIR] [--check] [-o DIR] LISTING|FOLDER...\n");
        return cli_usage;
    }
    batch_plan plan = batch_plan_from(opts, "to-bin");
    plan.take_listings = true;
    plan.take_programs = false;
    plan.write_outputs = !opts.check;
    if (opts.check && !opts.output.empty()) {
        std::fprintf(stderr, "vorex-zd to-bin: --check writes no files; -o does not apply\n");
        return cli_usage;
    }
    plan.output_dir = opts.output;
    return batch_main(plan, opts);
}
