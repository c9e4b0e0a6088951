/*
** cmd_compare.cpp - the compare subcommand: the library's report of the
** differences of two .TP programs on standard output.
**
**   vorex-zd compare LEFT.TP RIGHT.TP
**
** Exit status: 0 the programs are equal in all the compare looks at (the
** report is empty), 1 they differ (the report says how), 2 one of them
** could not be opened or read, or the command was used wrongly.
*/
#include "cli/cli.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "vorex_zd.h"

namespace {

/* The library drops a report line that does not fit its buffer, without
   telling. No line is longer than the hex bytes of the longest line a
   file can frame, so a report that ends further than that from the end
   of the buffer is whole; else the compare runs again with more room. */
constexpr size_t report_first = size_t{1} << 20;
constexpr size_t report_limit = size_t{1} << 30;
constexpr size_t longest_line = 3 * 65535 + 64;

void explain_failure(const std::string &path) {
    FILE *f = std::fopen(path.c_str(), "rb");
    if (f == nullptr) {
        std::fprintf(stderr, "%s: cannot open: %s\n", path.c_str(), std::strerror(errno));
        return;
    }
    std::fclose(f);
    std::fprintf(stderr, "%s: not a readable .TP program (damaged or cut short)\n", path.c_str());
}

/* The library names the file that failed: "<path> not found". */
const std::string &failed_file(const std::string &report, const std::string &left, const std::string &right) {
    if (report.compare(0, left.size() + 1, left + " ") != 0 && report.compare(0, right.size() + 1, right + " ") == 0)
        return right;
    return left;
}

} // namespace

int cmd_compare(cli_options &opts) {
    if (opts.args.size() != 2 || !opts.output.empty()) {
        std::fprintf(stderr, "usage: vorex-zd compare LEFT.TP RIGHT.TP\n"
                             "exit status: 0 equal, 1 different, 2 a program could not be read\n");
        return cli_usage;
    }
    const std::string &left = opts.args[0], &right = opts.args[1];
    std::vector<char> buffer;
    int32_t result = 0;
    size_t length = 0;
    for (size_t size = report_first;; size *= 2) {
        buffer.assign(size, 0);
        result = compare_files(left.c_str(), right.c_str(), buffer.data(), static_cast<int32_t>(size));
        length = strnlen(buffer.data(), size);
        if (result != 0 || length + longest_line < size || size >= report_limit)
            break;
    }
    std::string report(buffer.data(), length);
    if (result != 0) {
        explain_failure(failed_file(report, left, right));
        return cli_usage;
    }
    std::fwrite(report.data(), 1, report.size(), stdout);
    if (std::fflush(stdout) != 0) {
        std::fprintf(stderr, "vorex-zd compare: cannot write the report: %s\n", std::strerror(errno));
        return cli_usage;
    }
    return report.empty() ? cli_ok : cli_failed;
}
