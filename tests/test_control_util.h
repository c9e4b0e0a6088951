// Helpers of the control-flow and I/O statement tests: one statement to its
// line bytes, to its printed line, and whole /MN bodies through both
// directions.
#ifndef VZ_TESTS_TEST_CONTROL_UTIL_H
#define VZ_TESTS_TEST_CONTROL_UTIL_H

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "binfmt/tp_format.h"
#include "core/dictionary.h"
#include "test_support.h"

namespace ctl {

// The 16-bit code word a listing run reports.
inline uint16_t code_word(int32_t code) { return static_cast<uint16_t>(code & 0xFFFF); }

// Payload of each line of the main program's line block, behind the name
// record and the attribute block.
inline std::vector<std::string> lines_of(const std::string &tp) {
    std::vector<std::string> out;
    size_t p = TP_NAME_RECORD_SIZE + TP_ATTR_BLOCK_SIZE;
    if (tp.size() <= p || static_cast<uint8_t>(tp[p]) != TP_TAG_LINES)
        return out;
    p++;
    while (p + 2 <= tp.size()) {
        size_t len = (static_cast<uint8_t>(tp[p]) << 8) | static_cast<uint8_t>(tp[p + 1]);
        if (len == TP_END_MARK)
            break;
        out.push_back(tp.substr(p + 2, len));
        p += 2 + len;
    }
    return out;
}

// The /MN lines of a printed listing, without their CR LF.
inline std::vector<std::string> mn_lines(const std::string &listing) {
    std::vector<std::string> out;
    size_t at = listing.find("/MN\r\n");
    if (at == std::string::npos)
        return out;
    at += 5;
    while (at < listing.size() && listing[at] != '/') {
        size_t end = listing.find("\r\n", at);
        if (end == std::string::npos)
            break;
        out.push_back(listing.substr(at, end - at));
        at = end + 2;
    }
    return out;
}

// A listing of the given /MN body, with a sub type word when it is given.
inline std::string program(const std::string &mn, const std::string &subtype = "") {
    std::string head = subtype.empty() ? "/PROG  TEST\n" : "/PROG  TEST " + subtype + "\n";
    return head + "/ATTR\n/MN\n" + mn + "/POS\n/END\n";
}

// The bytes of the one line that a statement gives; empty on failure
// (with a test failure naming the code).
inline std::string payload(const std::string &statement, const std::string &subtype = "") {
    auto r = vzt::listing_to_binary(program("   1:  " + statement + "\n", subtype));
    EXPECT_EQ(r.ok, 1) << statement << ": code " << r.code << " line " << r.line;
    auto lines = lines_of(r.tp);
    EXPECT_EQ(lines.size(), 1u) << statement;
    return lines.empty() ? "" : lines[0];
}

// The printed lines of a /MN body after a trip through the binary form.
inline std::vector<std::string> printed(const std::string &mn, const std::string &ext = ".PE",
                                        const std::string &subtype = "") {
    auto r = vzt::listing_to_binary(program(mn, subtype));
    EXPECT_EQ(r.ok, 1) << mn << ": code " << r.code << " line " << r.line;
    return mn_lines(vzt::binary_to_listing(r.tp, ext));
}

// The printed line of one statement.
inline std::string printed_one(const std::string &statement) {
    auto lines = printed("   1:  " + statement + "\n");
    return lines.empty() ? "" : lines[0];
}

// Listing -> .TP -> listing -> .TP -> listing: the two binaries and the two
// printed listings must be identical. Returns the first printed listing.
inline std::string round_trip(const std::string &listing, const std::string &ext) {
    auto first = vzt::listing_to_binary(listing, ext);
    EXPECT_EQ(first.ok, 1) << "code " << first.code << " line " << first.line;
    std::string text = vzt::binary_to_listing(first.tp, ext);
    auto second = vzt::listing_to_binary(text, ext);
    EXPECT_EQ(second.ok, 1) << "reparse: code " << second.code << " line " << second.line;
    EXPECT_EQ(vzt::hex(first.tp), vzt::hex(second.tp));
    EXPECT_EQ(text, vzt::binary_to_listing(second.tp, ext));
    return text;
}

struct error_case {
    std::string mn;     // /MN body
    int32_t code;       // expected error code (as the parsers return it)
    uint16_t line;      // expected line word
    std::string subtype = "";
};

inline void expect_errors(const std::vector<error_case> &cases) {
    for (const error_case &c : cases) {
        auto r = vzt::listing_to_binary(program(c.mn, c.subtype));
        EXPECT_EQ(r.ok, 0) << c.mn;
        EXPECT_EQ(r.code, code_word(c.code)) << c.mn;
        EXPECT_EQ(r.line, c.line) << c.mn;
        EXPECT_FALSE(r.written) << c.mn;
    }
}

// The Shift-JIS printing word of a code, for building Japanese lines.
inline std::string jp_word(int32_t code) {
    dict_init(0);
    std::string w = dict_word(code);
    dict_init(1);
    return w;
}

} // namespace ctl

#endif
