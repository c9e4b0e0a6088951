/*
** batch_cmd.cpp - the frame of a batch command (to-bin, to-text, check):
** the plan from the options, the cell, the walk, the pool of workers, the
** report in sorted-path order, and the exit status.
*/
#include "cli/batch.h"

#include <unistd.h>

namespace {

struct report_ctx {
    batch_report rep;
    batch_progress progress;
    const std::vector<batch_item> *items;
    const std::vector<batch_result> *results;
};

void deliver_one(void *ctx, size_t index) {
    auto *c = static_cast<report_ctx *>(ctx);
    progress_clear(c->progress);
    report_file(c->rep, (*c->items)[index], (*c->results)[index]);
    std::fflush(c->rep.out);
    progress_step(c->progress);
}

int default_jobs() {
    long n = ::sysconf(_SC_NPROCESSORS_ONLN);
    return n > 0 ? static_cast<int>(n) : 1;
}

} // namespace

batch_plan batch_plan_from(const cli_options &opts, const char *command) {
    batch_plan plan;
    plan.command = command;
    plan.jobs = opts.jobs > 0 ? opts.jobs : default_jobs();
    plan.timeout = opts.timeout;
    plan.json = opts.format == "json";
    plan.quiet = opts.quiet;
    plan.language = cli_language(opts);
    plan.japanese = opts.lang == "ja";
    return plan;
}

int batch_main(const batch_plan &plan, const cli_options &opts) {
    std::vector<batch_item> items;
    if (!batch_collect(plan, opts.args, items))
        return cli_usage;
    bool listings = false;
    for (const batch_item &it : items)
        listings |= !it.preset && it.kind == kind_listing;
    /* The cell is loaded once here; every worker starts with it. */
    if (listings && !cli_load_config(opts, plan.command))
        return cli_usage;

    std::vector<batch_result> results(items.size());
    bool unreadable = false;
    for (size_t i = 0; i < items.size(); i++) {
        if (!items[i].preset)
            continue;
        results[i].done = true;
        results[i].code = items[i].preset_code;
        results[i].message = items[i].preset_message;
    }
    report_ctx ctx;
    ctx.rep.out = plan.to_stdout ? stderr : stdout;
    ctx.rep.json = plan.json;
    ctx.items = &items;
    ctx.results = &results;
    progress_begin(ctx.progress, items.size(), plan.quiet || plan.to_stdout);
    if (items.empty())
        std::fprintf(stderr, "vorex-zd %s: no files to translate\n", plan.command);

    bool whole = batch_run_pool(plan, items, results, batch_sink{deliver_one, &ctx});
    progress_clear(ctx.progress);
    if (!whole) {
        std::fflush(ctx.rep.out);
        std::fprintf(stderr, "vorex-zd %s: interrupted\n", plan.command);
        return 130;
    }
    report_summary(ctx.rep);
    for (const batch_result &r : results)
        unreadable |= !r.ok && r.code == batch_code_unreadable;
    if (unreadable)
        return cli_usage;
    return ctx.rep.failed ? cli_failed : cli_ok;
}

int cmd_check(cli_options &opts) {
    if (opts.args.empty()) {
        std::fprintf(stderr, "usage: vorex-zd check [--config DIR] [-j N] [--format text|json] PATH...\n");
        return cli_usage;
    }
    if (!opts.output.empty()) {
        std::fprintf(stderr, "vorex-zd check: writes no files; -o does not apply\n");
        return cli_usage;
    }
    batch_plan plan = batch_plan_from(opts, "check");
    return batch_main(plan, opts);
}
