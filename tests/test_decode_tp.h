// Builds .TP files byte by byte for the loader and decoder tests, and
// gives them a scratch directory to live in.
#ifndef VZ_TESTS_TEST_DECODE_TP_H
#define VZ_TESTS_TEST_DECODE_TP_H

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>
#include <vector>

namespace tp {

using bytes = std::vector<uint8_t>;

inline void put16(bytes &b, int v) {
    b.push_back(static_cast<uint8_t>(v >> 8));
    b.push_back(static_cast<uint8_t>(v));
}

inline void put32(bytes &b, uint32_t v) {
    put16(b, static_cast<int>(v >> 16));
    put16(b, static_cast<int>(v & 0xFFFF));
}

inline void append(bytes &b, const bytes &more) { b.insert(b.end(), more.begin(), more.end()); }

inline void end_mark(bytes &b) { put16(b, 0xFFFF); }

/* Name record as the writer writes it (20 bytes), or the short form (19). */
inline bytes name_record(const char *name, int subtype = 0, bool short_form = false) {
    bytes b = {0, 0};
    if (short_form) {
        b.push_back(0);
    } else {
        b.push_back(1);
        b.push_back(static_cast<uint8_t>(subtype));
    }
    for (int i = 0; i < 14; i++)
        b.push_back(i < static_cast<int>(std::strlen(name)) ? static_cast<uint8_t>(name[i]) : 0);
    end_mark(b);
    return b;
}

/* The attribute fields, defaults as a listing without /ATTR gets them. */
struct attr_fields {
    std::string owner;
    std::string comment;
    uint32_t prog_size = 0, create = 0, modified = 0, memory_size = 0;
    int version = 0, line_count = 0, protect = 1, stack_size = 0, task_priority = 50;
    int time_slice = 0, busy_lamp_off = 0, abort_request = 0, pause_request = 0;
    int default_group = 1, control_code = 0;
};

inline void put_text(bytes &b, const std::string &s, size_t width) {
    for (size_t i = 0; i < width; i++)
        b.push_back(i < s.size() ? static_cast<uint8_t>(s[i]) : 0);
}

inline bytes attr_block(const attr_fields &a = attr_fields()) {
    bytes b = {1};
    put16(b, 72);
    put_text(b, a.owner, 10);
    put_text(b, a.comment, 18);
    put32(b, a.prog_size);
    put32(b, a.create);
    put32(b, a.modified);
    put32(b, 0);
    put16(b, a.version);
    put16(b, a.line_count);
    put32(b, a.memory_size);
    for (int v : {a.protect, a.stack_size, a.task_priority, a.time_slice, a.busy_lamp_off,
                  a.abort_request, a.pause_request, a.default_group, a.control_code, 0})
        put16(b, v);
    end_mark(b);
    return b;
}

/* Packed date: year - 1980 in bits 31-25, then month, day, hour, minute,
   second. */
inline uint32_t packed_date(int year, int month, int day, int hour, int minute, int second) {
    return (static_cast<uint32_t>(year - 1980) << 25) | (static_cast<uint32_t>(month) << 21) |
           (static_cast<uint32_t>(day) << 16) | (static_cast<uint32_t>(hour) << 11) |
           (static_cast<uint32_t>(minute) << 5) | static_cast<uint32_t>(second);
}

/* A tag byte, records framed by a two-byte length, the end mark. */
inline bytes framed_block(uint8_t tag, const std::vector<bytes> &records) {
    bytes b = {tag};
    for (const bytes &r : records) {
        put16(b, static_cast<int>(r.size()));
        append(b, r);
    }
    end_mark(b);
    return b;
}

inline bytes line_block(const std::vector<bytes> &lines) { return framed_block(2, lines); }
inline bytes pos_block(const std::vector<bytes> &records) { return framed_block(3, records); }

struct appl_record {
    int type, instance;
    bytes data;
};

inline bytes appl_block(const std::vector<appl_record> &records) {
    bytes b = {4};
    for (const appl_record &r : records) {
        put16(b, r.type);
        put16(b, r.instance);
        b.push_back(static_cast<uint8_t>(r.data.size()));
        append(b, r.data);
    }
    end_mark(b);
    return b;
}

/* A remark line: opcode 30, the text, its zero. */
inline bytes remark(const std::string &text) {
    bytes b = {30};
    for (char c : text)
        b.push_back(static_cast<uint8_t>(c));
    b.push_back(0);
    return b;
}

/* Name, attributes, lines, no positions, no application records. */
inline bytes program(const char *name, const std::vector<bytes> &lines, int subtype = 0,
                     const attr_fields &a = attr_fields()) {
    bytes b = name_record(name, subtype);
    append(b, attr_block(a));
    append(b, line_block(lines));
    append(b, pos_block({}));
    append(b, appl_block({}));
    return b;
}

/* One daughter's five blocks, as the writer writes them. */
inline bytes daughter(const char *name, const std::vector<bytes> &lines) {
    bytes b = name_record(name, 0);
    attr_fields a;
    a.default_group = 0;
    a.control_code = 65;
    a.line_count = static_cast<int>(lines.size());
    append(b, attr_block(a));
    append(b, line_block(lines));
    append(b, pos_block({}));
    append(b, appl_block({}));
    return b;
}

inline void write_file(const std::string &path, const bytes &b) {
    FILE *f = std::fopen(path.c_str(), "wb");
    ASSERT_NE(f, nullptr) << path;
    if (!b.empty())
        std::fwrite(b.data(), 1, b.size(), f);
    std::fclose(f);
}

inline void write_text(const std::string &path, const std::string &s) {
    write_file(path, bytes(s.begin(), s.end()));
}

inline bool file_exists(const std::string &path) { return access(path.c_str(), F_OK) == 0; }

inline std::string read_file(const std::string &path) {
    std::string s;
    FILE *f = std::fopen(path.c_str(), "rb");
    if (f == nullptr)
        return "<missing>";
    char buf[4096];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0)
        s.append(buf, n);
    std::fclose(f);
    return s;
}

/* A scratch directory, removed with everything in it. */
class scratch_dir {
  public:
    scratch_dir() {
        char tmpl[] = "/tmp/vz-decode-XXXXXX";
        char *d = mkdtemp(tmpl);
        path_ = d ? d : "/tmp";
    }
    ~scratch_dir() {
        std::string cmd = "rm -rf '" + path_ + "'";
        if (std::system(cmd.c_str()) != 0)
            std::fprintf(stderr, "could not remove %s\n", path_.c_str());
    }
    std::string file(const std::string &name) const { return path_ + "/" + name; }
    const std::string &path() const { return path_; }

  private:
    std::string path_;
};

/* Runs a block of code with the current directory set to dir. */
class in_directory {
  public:
    explicit in_directory(const std::string &dir) {
        if (getcwd(old_, sizeof old_) == nullptr)
            old_[0] = 0;
        if (chdir(dir.c_str()) != 0)
            ADD_FAILURE() << "chdir " << dir;
    }
    ~in_directory() {
        if (old_[0] && chdir(old_) != 0)
            std::fprintf(stderr, "could not return to %s\n", old_);
    }

  private:
    char old_[4096];
};

} // namespace tp

#endif
