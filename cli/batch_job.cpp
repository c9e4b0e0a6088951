/*
** batch_job.cpp - one file of a batch, as a worker process runs it. The
** library names its output after its input and writes it beside it, so a
** file is translated through a link in the worker's scratch folder, and
** the result is moved to its place only when the translation succeeded:
** a failed file leaves nothing behind, and the source folder never sees a
** scratch file. Also the two test hooks that make a worker crash or hang.
*/
#include "cli/batch.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "core/messages.h"
#include "core/run_state.h"
#include "vorex_zd.h"

namespace fs = std::filesystem;

namespace {

/* Bytes of a file looked at to tell a binary from a listing. */
constexpr size_t head_size = 4096;
/* A listing read back to name a construct or a warning's line is read up
   to this size; the lines looked at lie far before it. */
constexpr size_t text_limit = 64u << 20;

batch_result failure(int32_t code, const std::string &message) {
    batch_result r;
    r.done = true;
    r.code = code;
    r.message = message;
    return r;
}

std::string base_name(const std::string &path) {
    size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

/* Test hooks, honoured only here in the worker: VOREX_ZD_TEST_CRASH_ON and
   VOREX_ZD_TEST_HANG_ON name a file (its last path component) on which the
   worker dies of a segmentation fault or stops answering. */
void test_hooks(const std::string &path) {
    const char *crash = std::getenv("VOREX_ZD_TEST_CRASH_ON");
    if (crash && *crash && base_name(path) == crash) {
        struct rlimit none = {0, 0};
        setrlimit(RLIMIT_CORE, &none);
        signal(SIGSEGV, SIG_DFL);
        raise(SIGSEGV);
        _exit(139);
    }
    const char *hang = std::getenv("VOREX_ZD_TEST_HANG_ON");
    if (hang && *hang && base_name(path) == hang)
        for (;;)
            pause();
}

/* Opens path to see that it is a readable file; its first bytes to head. */
bool probe(const std::string &path, std::string &head, std::string &why) {
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) {
        why = std::strerror(errno);
        return false;
    }
    struct stat st;
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        why = "not a regular file";
        ::close(fd);
        return false;
    }
    head.resize(head_size);
    ssize_t n = ::read(fd, head.data(), head.size());
    ::close(fd);
    if (n < 0) {
        why = std::strerror(errno);
        return false;
    }
    head.resize(static_cast<size_t>(n));
    return true;
}

std::string read_text(const std::string &path) {
    std::string text;
    FILE *f = std::fopen(path.c_str(), "rb");
    if (!f)
        return text;
    char buf[65536];
    size_t n;
    while (text.size() < text_limit && (n = std::fread(buf, 1, sizeof buf, f)) > 0)
        text.append(buf, n);
    std::fclose(f);
    return text;
}

/* A link in the scratch folder named so that the library takes the same
   keyword language from it as from the source's own name. */
bool make_link(const std::string &source, const std::string &link, std::string &why) {
    /* The worker never changes folder, so its folder is asked for once. */
    static std::string cwd;
    if (cwd.empty() && source[0] != '/') {
        std::error_code ec;
        cwd = fs::current_path(ec).string();
        if (ec) {
            why = ec.message();
            return false;
        }
    }
    std::string target = source[0] == '/' ? source : cwd + "/" + source;
    if (::symlink(target.c_str(), link.c_str()) != 0) {
        /* Left over from a run that ended early. */
        if (errno != EEXIST || ::unlink(link.c_str()) != 0 || ::symlink(target.c_str(), link.c_str()) != 0) {
            why = std::strerror(errno);
            return false;
        }
    }
    return true;
}

bool copy_file_to(FILE *in, FILE *out) {
    char buf[65536];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, in)) > 0)
        if (std::fwrite(buf, 1, n, out) != n)
            return false;
    return !std::ferror(in);
}

/* Puts the scratch translation at dest ("-" standard output) by way of a
   temporary file beside it, so that dest is either old or whole. */
bool deliver(const std::string &scratch, const std::string &dest, std::string &why) {
    FILE *in = std::fopen(scratch.c_str(), "rb");
    if (!in) {
        why = std::strerror(errno);
        return false;
    }
    if (dest == "-") {
        bool ok = copy_file_to(in, stdout) && std::fflush(stdout) == 0;
        std::fclose(in);
        if (!ok)
            why = std::strerror(errno);
        return ok;
    }
    std::error_code ec;
    fs::path parent = fs::path(dest).parent_path();
    if (!parent.empty())
        fs::create_directories(parent, ec);
    std::string tmp = dest + ".tmp";
    FILE *out = std::fopen(tmp.c_str(), "wb");
    if (!out) {
        why = std::strerror(errno);
        std::fclose(in);
        return false;
    }
    bool ok = copy_file_to(in, out);
    ok = std::fclose(out) == 0 && ok;
    std::fclose(in);
    if (ok && std::rename(tmp.c_str(), dest.c_str()) != 0)
        ok = false;
    if (!ok) {
        why = std::strerror(errno);
        std::remove(tmp.c_str());
    }
    return ok;
}

/* The scratch name of a listing: only the extension's language matters to
   the library, and a name without one leaves the choice to the lexer. */
std::string listing_link_name(const std::string &path) {
    std::string base = base_name(path);
    size_t dot = base.find_last_of('.');
    if (dot == std::string::npos)
        return "L";
    std::string ext = base.substr(dot);
    for (char &c : ext)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return ext == ".PJ" ? "L.PJ" : "L.PE";
}

/* The parser's syntax family, 0x150055 to 0x15005C, arrives as 85 to 92;
   no other code of the library has those low values, so the upper half
   goes back on whether or not the code has a message of its own. */
int32_t full_code(uint16_t word, int language) {
    if (word >= 85 && word <= 92)
        return word + 0x150000;
    return cli_full_code(word, language);
}

std::string spot_text(const char *raw) {
    std::string s(raw, strnlen(raw, 512));
    while (!s.empty() && (s.back() == ' ' || s.back() == '\r' || s.back() == '\n'))
        s.pop_back();
    std::string out(s.size() * 3 + 1, '\0');
    size_t n = sjis_to_utf8(s.c_str(), out.data(), out.size());
    out.resize(n < out.size() ? n : out.size() - 1);
    return out;
}

void collect_warnings(batch_result &r, const std::string &text) {
    int32_t count = zdgetspotwarningscount();
    for (int32_t k = 1; k <= count && k <= 10000; k++) {
        char buf[513] = {0};
        if (zdgetspotwarnings(k, buf) != k)
            break;
        batch_warning w;
        w.line = statement_line(text, buf);
        w.text = "spot position in Cartesian form: " + spot_text(buf);
        r.warnings.push_back(std::move(w));
    }
}

batch_result run_listing(const batch_plan &plan, const batch_item &item, const std::string &scratch) {
    std::string head, why;
    if (!probe(item.path, head, why))
        return failure(batch_code_unreadable, "cannot open the listing: " + why);
    std::string name = listing_link_name(item.path);
    std::string link = scratch + "/" + name;
    std::string tp = scratch + "/L.TP";
    if (!make_link(item.path, link, why))
        return failure(batch_code_internal, "internal error: cannot prepare the scratch folder: " + why);
    /* A name without extension takes the language a fresh library would. */
    if (name == "L")
        dict_select = -1;
    uint16_t code = 0, line = 0;
    bool ok = zdascbin(link.c_str(), &code, &line) == 1;
    ::unlink(link.c_str());
    batch_result r;
    r.done = true;
    bool need_text = !ok || zdgetspotwarningscount() > 0;
    std::string text = need_text ? read_text(item.path) : std::string();
    collect_warnings(r, text);
    if (!ok) {
        ::unlink(tp.c_str());
        int32_t full = full_code(code, plan.language);
        r.code = full;
        r.line = line;
        if (code == 1) {
            r.message = "cannot open the listing";
            return r;
        }
        r.message = cli_message_text(full, plan.language);
        construct_hit hit;
        if (construct_find(text, line, hit)) {
            r.construct = hit.id;
            r.message = construct_note(r.message, hit);
        } else if (looks_binary(head)) {
            r.message += " (the file holds binary data: a .TP program, not a listing)";
        }
        return r;
    }
    struct stat st;
    if (::stat(tp.c_str(), &st) != 0) {
        batch_result f = failure(batch_code_unwritable, "the translation wrote no program");
        f.warnings = r.warnings;
        return f;
    }
    if (plan.write_outputs && !deliver(tp, item.output, why)) {
        ::unlink(tp.c_str());
        batch_result f = failure(batch_code_unwritable, "cannot write " + item.output + ": " + why);
        f.warnings = r.warnings;
        return f;
    }
    ::unlink(tp.c_str());
    r.ok = true;
    return r;
}

batch_result run_program(const batch_plan &plan, const batch_item &item, const std::string &scratch) {
    std::string head, why;
    if (!probe(item.path, head, why))
        return failure(batch_code_unreadable, "cannot open the program: " + why);
    std::string link = scratch + "/S.TP";
    std::string listing = scratch + (plan.japanese ? "/L.PJ" : "/L.PE");
    if (!make_link(item.path, link, why))
        return failure(batch_code_internal, "internal error: cannot prepare the scratch folder: " + why);
    bool ok = zdbinasc_file(link.c_str(), listing.c_str()) == 1;
    ::unlink(link.c_str());
    batch_result r;
    r.done = true;
    if (!ok) {
        ::unlink(listing.c_str());
        return failure(batch_code_not_program, looks_like_listing(head)
                                                   ? "not a .TP program: the file is a text listing"
                                                   : "not a readable .TP program (damaged or cut short)");
    }
    if (plan.write_outputs && !deliver(listing, item.output, why)) {
        ::unlink(listing.c_str());
        return failure(batch_code_unwritable,
                       "cannot write " + (item.output == "-" ? std::string("to standard output") : item.output) +
                           ": " + why);
    }
    ::unlink(listing.c_str());
    r.ok = true;
    return r;
}

} // namespace

batch_result batch_run_item(const batch_plan &plan, const batch_item &item, const std::string &scratch) {
    test_hooks(item.path);
    if (item.kind == kind_program)
        return run_program(plan, item, scratch);
    return run_listing(plan, item, scratch);
}
