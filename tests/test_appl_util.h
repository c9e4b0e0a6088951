// Helpers of the application header tests: the application block of a
// .TP as the writer wrote it, listings with an /APPL body, and the /APPL
// lines of a printed listing.
#ifndef VZ_TESTS_TEST_APPL_UTIL_H
#define VZ_TESTS_TEST_APPL_UTIL_H

#include <cstdint>
#include <string>
#include <vector>

#include "core/dictionary.h"
#include "test_support.h"

namespace appl_test {

/* Steps over one block framed by two-byte lengths and 255, 255; npos
   when the bytes end first. */
inline size_t skip_framed(const std::string &tp, size_t at) {
    at++; /* tag */
    while (at + 1 < tp.size()) {
        size_t length = (static_cast<uint8_t>(tp[at]) << 8) | static_cast<uint8_t>(tp[at + 1]);
        at += 2;
        if (length == 0xFFFF)
            return at;
        at += length;
    }
    return std::string::npos;
}

/* The application block of a file the writer made (no daughters): from
   its tag 4 to its end mark. Empty when the framing does not hold. */
inline std::string appl_block(const std::string &tp) {
    const size_t name_and_attr = 20 + 77;
    if (tp.size() < name_and_attr)
        return "";
    size_t at = skip_framed(tp, name_and_attr);                  /* lines */
    at = at == std::string::npos ? at : skip_framed(tp, at);   /* positions */
    if (at == std::string::npos || at >= tp.size() || tp[at] != 4)
        return "";
    return tp.substr(at);
}

/* One record of a block as the writer writes it. */
inline std::string record(int group, int n, const std::string &data) {
    std::string r;
    r += static_cast<char>(group >> 8);
    r += static_cast<char>(group);
    r += static_cast<char>(n >> 8);
    r += static_cast<char>(n);
    r += static_cast<char>(data.size());
    return r + data;
}

inline std::string block(const std::vector<std::string> &records) {
    std::string b(1, '\x04');
    for (const std::string &r : records)
        b += r;
    return b + "\xFF\xFF";
}

/* A program whose /APPL section holds body (lines ending in \n). */
inline std::string program(const std::string &body) {
    return "/PROG  TEST\n/APPL\n" + body + "/MN\n/POS\n/END\n";
}

/* The lines between "/APPL" and "/MN" of a printed listing (CR LF kept);
   "<none>" when the listing has no /APPL head. */
inline std::string appl_lines(const std::string &listing) {
    size_t head = listing.find("/APPL\r\n");
    size_t mn = listing.find("/MN\r\n");
    if (head == std::string::npos || mn == std::string::npos || mn < head)
        return "<none>";
    return listing.substr(head + 7, mn - head - 7);
}

/* The Japanese reading word of a keyword code, for hand-made listings. */
inline std::string jword(int32_t code) {
    const char *w = reading_word(japanese_reading_table, static_cast<uint16_t>(code));
    return w ? w : "<missing>";
}

} // namespace appl_test

#endif
