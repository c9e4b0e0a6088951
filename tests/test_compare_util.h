// Helpers of the compare tests: position and application records built
// byte by byte, and a compare of two programs in a scratch folder.
#ifndef VZ_TESTS_TEST_COMPARE_UTIL_H
#define VZ_TESTS_TEST_COMPARE_UTIL_H

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

#include "test_decode_tp.h"
#include "vorex_zd.h"

namespace cmpt {

using tp::bytes;

inline void put_real(bytes &b, float f) {
    uint32_t u;
    std::memcpy(&u, &f, 4);
    tp::put32(b, u);
}

inline void put_unset(bytes &b) { tp::put32(b, 0x7FFFFFFFu); }

/* A Cartesian group record: X Y Z W P R, turns, flags, extended axes. */
inline bytes cartesian(int group, std::initializer_list<float> xyzwpr, std::initializer_list<int> turns = {0, 0, 0},
                       int flags = 0, std::initializer_list<float> ext = {}, int uf = 0, int ut = 1) {
    bytes b;
    int n = static_cast<int>(ext.size());
    b.push_back(static_cast<uint8_t>(32 + 4 * n));
    b.push_back(n ? 6 : 2);
    b.push_back(static_cast<uint8_t>(n * 8 + group));
    b.push_back(static_cast<uint8_t>(uf * 16 + ut));
    for (float f : xyzwpr)
        put_real(b, f);
    for (int t : turns)
        b.push_back(static_cast<uint8_t>(t));
    b.push_back(static_cast<uint8_t>(flags));
    for (float f : ext)
        put_real(b, f);
    return b;
}

/* A joint group record of as many axes as values. */
inline bytes joint(int group, std::initializer_list<float> values, int uf = 0, int ut = 1) {
    bytes b;
    int n = static_cast<int>(values.size());
    b.push_back(static_cast<uint8_t>(4 + 4 * n));
    b.push_back(9);
    b.push_back(static_cast<uint8_t>(n * 8 + group));
    b.push_back(static_cast<uint8_t>(uf * 16 + ut));
    for (float f : values)
        put_real(b, f);
    return b;
}

/* A position payload: number, group mask, no comment, the groups. */
inline bytes position(int number, const std::vector<bytes> &groups, int mask = -1) {
    bytes b;
    tp::put16(b, number);
    b.push_back(static_cast<uint8_t>(mask >= 0 ? mask : (1 << groups.size()) - 1));
    b.push_back(0);
    for (const bytes &g : groups)
        tp::append(b, g);
    return b;
}

inline bytes unset_position(int number) {
    bytes b;
    tp::put16(b, number);
    return b;
}

inline bytes text_bytes(const std::string &s) { return bytes(s.begin(), s.end()); }

/* Record 0 of a group: the label's four letters and its number byte. */
inline bytes label(const char *four, int number = -1) {
    bytes b = text_bytes(four);
    if (number >= 0)
        b.push_back(static_cast<uint8_t>(number));
    return b;
}

/* A CALL of daughter n: the line a P-SPS clause stands on. */
inline bytes p_sps_call(int n) {
    char name[16];
    std::snprintf(name, sizeof name, "........%04d", n);
    bytes b = {129, 130};
    tp::append(b, text_bytes(name));
    b.push_back(0);
    return b;
}

/* A whole program from its blocks; daughters follow their tag when any. */
struct program_parts {
    std::string name = "MAIN";
    int subtype = 0;
    tp::attr_fields attr;
    std::vector<bytes> lines;
    std::vector<bytes> positions;
    std::vector<tp::appl_record> appl;
    std::vector<bytes> daughters;
};

inline bytes build(const program_parts &p) {
    bytes b = tp::name_record(p.name.c_str(), p.subtype);
    tp::append(b, tp::attr_block(p.attr));
    tp::append(b, tp::line_block(p.lines));
    tp::append(b, tp::pos_block(p.positions));
    tp::append(b, tp::appl_block(p.appl));
    if (!p.daughters.empty()) {
        b.push_back(5);
        for (const bytes &d : p.daughters)
            tp::append(b, d);
    }
    return b;
}

struct outcome {
    int32_t result;
    std::string report;
};

/* Compares two programs written to a scratch folder. */
inline outcome compare(const bytes &left, const bytes &right, int32_t size = 1 << 20) {
    tp::scratch_dir dir;
    tp::write_file(dir.file("L.TP"), left);
    tp::write_file(dir.file("R.TP"), right);
    std::vector<char> buffer(static_cast<size_t>(size) + 16, 'Z');
    outcome o;
    o.result = compare_files(dir.file("L.TP").c_str(), dir.file("R.TP").c_str(), buffer.data(), size);
    o.report = std::string(buffer.data(), strnlen(buffer.data(), static_cast<size_t>(size)));
    // Nothing may be written past the size the library was told.
    for (size_t i = static_cast<size_t>(size); i < buffer.size(); i++)
        if (buffer[i] != 'Z')
            ADD_FAILURE() << "byte " << i << " written past the report buffer";
    return o;
}

inline outcome compare(const program_parts &left, const program_parts &right) {
    return compare(build(left), build(right));
}

} // namespace cmpt

#endif
