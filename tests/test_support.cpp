// Shared helpers of the tests (no tests of their own).
#include "test_support.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include "core/config.h"
#include "vorex_zd.h"

namespace fs = std::filesystem;

namespace vzt {

namespace {

// Never destroyed: the clean-up below runs at exit and needs it alive.
std::vector<std::string> &dirs() {
    static auto *list = new std::vector<std::string>;
    return *list;
}

struct cleanup {
    ~cleanup() {
        std::error_code ec;
        for (const std::string &d : dirs())
            fs::remove_all(d, ec);
    }
} cleanup_at_exit;

std::string read_file(const std::string &path, bool *exists) {
    std::ifstream in(path, std::ios::binary);
    if (exists)
        *exists = static_cast<bool>(in);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

void write_file(const std::string &path, const std::string &data) {
    std::ofstream out(path, std::ios::binary);
    out << data;
}

} // namespace

std::string scratch_dir() {
    char tmpl[] = "/tmp/vzt-XXXXXX";
    const char *d = mkdtemp(tmpl);
    std::string dir = d ? d : "/tmp";
    dirs().push_back(dir);
    return dir;
}

void load_builtin_cell() { config_load(nullptr); }

asc_result listing_to_binary(const std::string &text, const std::string &ext, const std::string &name) {
    std::string dir = scratch_dir();
    std::string path = dir + "/" + name + ext;
    write_file(path, text);
    asc_result r;
    r.ok = zdascbin(path.c_str(), &r.code, &r.line);
    r.tp = read_file(dir + "/" + name + ".TP", &r.written);
    return r;
}

std::string binary_to_listing(const std::string &tp, const std::string &ext, int32_t *result) {
    std::string dir = scratch_dir();
    std::string in = dir + "/TEST.TP";
    std::string out = dir + "/TEST" + ext;
    write_file(in, tp);
    int32_t rc = zdbinasc_file(in.c_str(), out.c_str());
    if (result)
        *result = rc;
    bool exists = false;
    std::string text = read_file(out, &exists);
    return exists ? text : "";
}

std::string listing(const std::string &mn, const std::string &pos, const std::string &attr,
                    const std::string &appl) {
    return "/PROG  TEST\n/ATTR\n" + attr + "/APPL\n" + appl + "/MN\n" + mn + "/POS\n" + pos + "/END\n";
}

std::string crlf(const std::string &text) {
    std::string out;
    for (char c : text) {
        if (c == '\n')
            out += '\r';
        out += c;
    }
    return out;
}

std::string hex(const std::string &data) {
    std::string out;
    char buf[4];
    for (unsigned char c : data) {
        std::snprintf(buf, sizeof buf, "%02X ", c);
        out += buf;
    }
    return out;
}

std::string bytes(std::initializer_list<int> values) {
    std::string out;
    for (int v : values)
        out += static_cast<char>(v);
    return out;
}

} // namespace vzt
