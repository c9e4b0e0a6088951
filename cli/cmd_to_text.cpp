/*
** cmd_to_text.cpp - the to-text subcommand: .TP programs to listings.
**
**   vorex-zd to-text [-o DIR|LISTING|-] [--lang en|ja] PROGRAM.TP|FOLDER...
**
** Each listing lands beside its program, named .PE (English keywords) or
** .PJ (Japanese, --lang ja). -o names a folder (an existing one, one
** written with a trailing "/", or any -o when a folder is translated), in
** which the source tree is mirrored; otherwise it names the listing of the
** one program given. "-o -" writes the listings to standard output, and the
** report then goes to standard error. A failure leaves an existing output
** untouched.
*/
#include "cli/batch.h"

#include <sys/stat.h>

namespace {

bool is_folder(const std::string &path) {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

} // namespace

int cmd_to_text(cli_options &opts) {
    if (opts.args.empty()) {
        std::fprintf(stderr, "usage: vorex-zd to-text [-o DIR|LISTING|-] [--lang en|ja] PROGRAM.TP|FOLDER...\n");
        return cli_usage;
    }
    batch_plan plan = batch_plan_from(opts, "to-text");
    plan.take_listings = false;
    plan.take_programs = true;
    plan.write_outputs = true;
    if (opts.output == "-") {
        /* One worker keeps the listings on standard output in order. */
        plan.to_stdout = true;
        plan.jobs = 1;
    } else if (!opts.output.empty()) {
        bool folder_operand = false;
        for (const std::string &a : opts.args)
            folder_operand |= is_folder(a);
        if (is_folder(opts.output) || opts.output.back() == '/' || folder_operand) {
            plan.output_dir = opts.output;
        } else if (opts.args.size() > 1) {
            std::fprintf(stderr, "vorex-zd to-text: -o names one listing, but %zu programs were given\n",
                         opts.args.size());
            return cli_usage;
        } else {
            plan.output_file = opts.output;
        }
    }
    return batch_main(plan, opts);
}
