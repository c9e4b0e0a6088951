/*
** batch_walk.cpp - from the command line's operands to the sorted list of
** files of a batch: the recursive folder walk, the file classes by
** extension, the output path of each file (beside it or mirrored under
** -o DIR), and the paths that cannot be read or would clash.
*/
#include "cli/batch.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <system_error>

namespace fs = std::filesystem;

namespace {

struct walk_state {
    const batch_plan &plan;
    std::vector<batch_item> &items;
};

std::string lower(std::string s) {
    for (char &c : s)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return s;
}

std::string join(const std::string &dir, const std::string &name) {
    if (dir.empty())
        return name;
    return dir.back() == '/' ? dir + name : dir + "/" + name;
}

std::string base_name(const std::string &path) {
    size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

/* Where the translation of path goes; rel is its path below the operand. */
std::string output_of(const batch_plan &plan, batch_kind kind, const std::string &path,
                      const std::string &rel) {
    if (!plan.write_outputs)
        return "";
    if (plan.to_stdout)
        return "-";
    if (!plan.output_file.empty())
        return plan.output_file;
    const char *ext = kind == kind_listing ? ".TP" : (plan.japanese ? ".PJ" : ".PE");
    if (plan.output_dir.empty())
        return batch_replace_extension(path, ext);
    return batch_replace_extension(join(plan.output_dir, rel), ext);
}

void add_file(walk_state &w, const std::string &path, const std::string &rel, batch_kind kind) {
    batch_item it;
    it.path = path;
    it.kind = kind;
    it.output = output_of(w.plan, kind, path, rel);
    w.items.push_back(std::move(it));
}

void add_failure(walk_state &w, const std::string &path, int32_t code, const std::string &message) {
    batch_item it;
    it.path = path;
    it.preset = true;
    it.preset_code = code;
    it.preset_message = message;
    w.items.push_back(std::move(it));
}

bool wanted(const batch_plan &plan, int cls) {
    return (cls == 1 && plan.take_listings) || (cls == 2 && plan.take_programs);
}

void walk_folder(walk_state &w, const std::string &dir, const std::string &rel_dir, int depth) {
    std::error_code ec;
    fs::directory_iterator it(dir, ec);
    if (ec) {
        add_failure(w, dir, batch_code_unreadable, "cannot read the folder: " + ec.message());
        return;
    }
    /* Entries are gathered first so that a folder's order never matters. */
    std::vector<std::string> names;
    for (fs::directory_iterator end; it != end; it.increment(ec)) {
        if (ec)
            break;
        names.push_back(it->path().filename().string());
    }
    if (ec)
        add_failure(w, dir, batch_code_unreadable, "cannot read the folder: " + ec.message());
    std::sort(names.begin(), names.end());
    for (const std::string &name : names) {
        std::string path = join(dir, name);
        std::string rel = rel_dir.empty() ? name : rel_dir + "/" + name;
        struct stat ls;
        if (::lstat(path.c_str(), &ls) != 0) {
            /* Removed while we looked, or unreachable. */
            if (wanted(w.plan, batch_file_class(name)))
                add_failure(w, path, batch_code_unreadable, std::string("cannot read: ") + std::strerror(errno));
            continue;
        }
        if (S_ISDIR(ls.st_mode)) {
            /* Deep enough for any backup; a deeper tree is a mistake or a trap. */
            if (depth < 256)
                walk_folder(w, path, rel, depth + 1);
            else
                add_failure(w, path, batch_code_unreadable, "cannot read the folder: too deeply nested");
            continue;
        }
        int cls = batch_file_class(name);
        if (!wanted(w.plan, cls))
            continue;
        struct stat st;
        if (::stat(path.c_str(), &st) != 0) {
            /* A dangling link or a loop of links under a listing's name. */
            add_failure(w, path, batch_code_unreadable, std::string("cannot read: ") + std::strerror(errno));
            continue;
        }
        /* Links to folders are not entered: a tree with a link loop stays finite.
           Pipes and devices are never opened, so they cannot stall the batch. */
        if (!S_ISREG(st.st_mode))
            continue;
        add_file(w, path, rel, cls == 2 ? kind_program : kind_listing);
    }
}

batch_kind operand_kind(const batch_plan &plan, const std::string &path) {
    if (plan.take_listings && !plan.take_programs)
        return kind_listing;
    if (plan.take_programs && !plan.take_listings)
        return kind_program;
    return batch_file_class(path) == 2 ? kind_program : kind_listing;
}

void take_operand(walk_state &w, const std::string &arg) {
    struct stat st;
    if (::stat(arg.c_str(), &st) != 0) {
        add_failure(w, arg, batch_code_unreadable, std::string("cannot read: ") + std::strerror(errno));
        return;
    }
    if (S_ISDIR(st.st_mode)) {
        walk_folder(w, arg, "", 0);
        return;
    }
    if (!S_ISREG(st.st_mode)) {
        add_failure(w, arg, batch_code_unreadable, "cannot read: not a file or folder");
        return;
    }
    add_file(w, arg, base_name(arg), operand_kind(w.plan, arg));
}

/* Two files whose translations would land on one path: the first in sorted
   order keeps it, the others fail, whatever the number of workers. An output
   that is the source itself fails too. */
void refuse_clashes(std::vector<batch_item> &items) {
    std::map<std::string, size_t> owner;
    for (size_t i = 0; i < items.size(); i++) {
        batch_item &it = items[i];
        if (it.preset || it.output.empty() || it.output == "-")
            continue;
        std::string out = fs::path(it.output).lexically_normal().string();
        std::error_code ec;
        if (out == fs::path(it.path).lexically_normal().string() || fs::equivalent(it.output, it.path, ec)) {
            it.preset = true;
            it.preset_code = batch_code_unwritable;
            it.preset_message = "cannot write " + it.output + ": it is the source itself";
            continue;
        }
        auto [pos, fresh] = owner.emplace(out, i);
        if (!fresh) {
            it.preset = true;
            it.preset_code = batch_code_unwritable;
            it.preset_message = "cannot write " + it.output + ": it is the output of " + items[pos->second].path;
        }
    }
}

} // namespace

int batch_file_class(const std::string &name) {
    std::string base = base_name(name);
    size_t dot = base.find_last_of('.');
    if (dot == std::string::npos)
        return 0;
    std::string ext = lower(base.substr(dot + 1));
    if (ext == "ls" || ext == "pe" || ext == "pj")
        return 1;
    if (ext == "tp")
        return 2;
    return 0;
}

std::string batch_replace_extension(const std::string &path, const char *ext) {
    size_t slash = path.find_last_of('/');
    size_t base = slash == std::string::npos ? 0 : slash + 1;
    size_t dot = path.find_last_of('.');
    std::string stem = (dot != std::string::npos && dot > base) ? path.substr(0, dot) : path;
    return stem + ext;
}

bool batch_collect(const batch_plan &plan, const std::vector<std::string> &operands,
                   std::vector<batch_item> &items) {
    if (!plan.output_dir.empty()) {
        struct stat st;
        if (::stat(plan.output_dir.c_str(), &st) == 0 && !S_ISDIR(st.st_mode)) {
            std::fprintf(stderr, "vorex-zd %s: -o %s: not a folder\n", plan.command, plan.output_dir.c_str());
            return false;
        }
    }
    walk_state w{plan, items};
    for (const std::string &arg : operands)
        take_operand(w, arg);
    std::stable_sort(items.begin(), items.end(),
                     [](const batch_item &a, const batch_item &b) { return a.path < b.path; });
    items.erase(std::unique(items.begin(), items.end(),
                            [](const batch_item &a, const batch_item &b) { return a.path == b.path; }),
                items.end());
    refuse_clashes(items);
    return true;
}
