// Packing and unpacking: exact code bytes for small inputs worked out by
// hand, long runs whose references follow a known pattern across the ring
// wrap, round trips, hostile packed files, the exports and the CLI.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "core/alloc.h"
#include "utils/compress.h"
#include "vorex_zd.h"

namespace {

using bytes = std::vector<uint8_t>;
namespace fs = std::filesystem;

int vector_flush(void *ctx, const uint8_t *data, size_t size) {
    static_cast<bytes *>(ctx)->insert(static_cast<bytes *>(ctx)->end(), data, data + size);
    return 0;
}

bytes pack(const bytes &in) {
    static lzss_state st;
    static lz_source src;
    static lz_sink dst;
    bytes out;
    lz_source_memory(&src, in.data(), in.size());
    lz_sink_custom(&dst, vector_flush, &out);
    EXPECT_EQ(lzss_pack(&st, &src, static_cast<uint32_t>(in.size()), &dst), 0);
    return out;
}

bytes unpack(const bytes &in) {
    static lzss_state st;
    static lz_source src;
    static lz_sink dst;
    bytes out;
    lz_source_memory(&src, in.data(), in.size());
    lz_sink_custom(&dst, vector_flush, &out);
    EXPECT_EQ(lzss_unpack(&st, &src, &dst), 0);
    return out;
}

bytes text_bytes(const std::string &s) { return bytes(s.begin(), s.end()); }

bytes header(uint32_t size) {
    return {0xFE, 0xEF, 0x00, 0x01, static_cast<uint8_t>(size >> 24), static_cast<uint8_t>(size >> 16),
            static_cast<uint8_t>(size >> 8), static_cast<uint8_t>(size)};
}

bytes cat(bytes a, const bytes &b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

bytes random_bytes(size_t n, unsigned seed, int alphabet = 256) {
    std::mt19937 gen(seed);
    bytes out(n);
    for (auto &b : out)
        b = static_cast<uint8_t>(gen() % static_cast<unsigned>(alphabet));
    return out;
}

// Lines shaped like a program listing, with numbers that drift.
bytes listing_text(size_t n, unsigned seed) {
    static const char *const words[] = {"J P[", "L P[", "WAIT ", "DO[", "R[", "CALL SUB", "LBL[",
                                        "JMP LBL[", "IF R[", "ARC Start[", "Weave Sine["};
    std::mt19937 gen(seed);
    std::string s;
    for (int line = 1; s.size() < n; line++) {
        char buf[96];
        std::snprintf(buf, sizeof buf, "%4d:  %s%u] %u%s FINE ;\r\n", line, words[gen() % 11],
                      static_cast<unsigned>(gen() % 50), static_cast<unsigned>(gen() % 2000),
                      gen() % 2 ? "mm/sec" : "%");
        s += buf;
    }
    s.resize(n);
    return text_bytes(s);
}

// The packed form of a long run of one byte. Every string of the run fully
// matches the string filed just before it, which took over the single node
// under the run's root; so each reference points one byte behind the place
// it is coded at. Only the start differs: 'A' has nothing to match and goes
// out as a literal, while zeros match the zero ring at once, at 4060, the
// last of the 18 strings filed before the start. Valid for 'A' once the whole
// ring holds 'A' (length of at least 4114).
bytes expected_run(uint8_t value, uint32_t length) {
    std::vector<std::pair<int, int>> items; // (position, length); length 0: literal
    uint32_t left = length;
    int r = lz_ring_start;
    if (value != 0) {
        items.push_back({0, 0});
        left--;
        r++;
    }
    while (left >= 3) {
        int n = left < 18 ? static_cast<int>(left) : 18;
        items.push_back({r == lz_ring_start ? 4060 : (r - 1) & 4095, n});
        r += n;
        left -= static_cast<uint32_t>(n);
    }
    for (; left > 0; left--)
        items.push_back({0, 0});
    bytes out = header(length);
    for (size_t i = 0; i < items.size(); i += 8) {
        size_t flag_at = out.size();
        out.push_back(0);
        for (size_t k = i; k < items.size() && k < i + 8; k++) {
            auto [pos, n] = items[k];
            if (n == 0) {
                out[flag_at] = static_cast<uint8_t>(out[flag_at] | (1u << (k - i)));
                out.push_back(value);
            } else {
                out.push_back(static_cast<uint8_t>(pos & 0xFF));
                out.push_back(static_cast<uint8_t>(((pos >> 4) & 0xF0) | (n - 3)));
            }
        }
    }
    return out;
}

struct exact_case {
    const char *name;
    bytes input;
    bytes code; // the bytes after the header
};

TEST(CompressExact, SmallInputsGiveHandWorkedBytes) {
    const exact_case cases[] = {
        {"empty", {}, {}},
        {"one byte", text_bytes("A"), {0x01, 'A'}},
        {"two bytes", text_bytes("AB"), {0x03, 'A', 'B'}},
        // Three zeros match the zero ring at 4060 = 0xFDC.
        {"three zeros", {0, 0, 0}, {0x00, 0xDC, 0xF0}},
        // Nothing earlier to match: the two later 'A's only find 2 and 1 bytes.
        {"three equal bytes", text_bytes("AAA"), {0x07, 'A', 'A', 'A'}},
        // The second byte finds "AAA" at 4078 = 0xFEE: a self-overlapping reference.
        {"four equal bytes", text_bytes("AAAA"), {0x01, 'A', 0xEE, 0xF0}},
        // A repeat of two bytes stays literal; three make a reference.
        {"two-byte repeat", text_bytes("ABAB"), {0x0F, 'A', 'B', 'A', 'B'}},
        {"three-byte repeat", text_bytes("ABCABC"), {0x07, 'A', 'B', 'C', 0xEE, 0xF0}},
        // Exactly eight items fill one group; nothing follows it.
        {"eight literals", text_bytes("ABCDEFGH"), {0xFF, 'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H'}},
        {"nine literals", text_bytes("ABCDEFGHI"),
         {0xFF, 'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H', 0x01, 'I'}},
        // The third "ABC" keeps the first match (4078), not the nearer 4082.
        {"earlier match kept", text_bytes("ABCxABCyABCz"),
         {0xAF, 'A', 'B', 'C', 'x', 0xEE, 0xF0, 'y', 0xEE, 0xF0, 'z'}},
        // A match of 18 from 4078 needs the mirror byte at 4096 (the 19th 'A').
        {"full match over the wrap", bytes(20, 'A'), {0x05, 'A', 0xEE, 0xFF, 'A'}},
        {"zero run of 20", bytes(20, 0), {0x06, 0xDC, 0xFF, 0x00, 0x00}},
    };
    for (const exact_case &c : cases) {
        SCOPED_TRACE(c.name);
        bytes want = cat(header(static_cast<uint32_t>(c.input.size())), c.code);
        bytes got = pack(c.input);
        EXPECT_EQ(got, want);
        EXPECT_EQ(unpack(got), c.input);
    }
}

TEST(CompressExact, LongRunsFollowTheReferencePattern) {
    // 5000 bytes pass the 4096-byte ring and the mirror several times.
    for (uint32_t n : {4096u + 18u, 5000u, 5005u, 5006u, 5007u, 9000u}) {
        SCOPED_TRACE(n);
        bytes run(n, 'A');
        bytes want = expected_run('A', n);
        EXPECT_EQ(pack(run), want);
        EXPECT_EQ(unpack(want), run);
    }
    for (uint32_t n : {3u, 18u, 19u, 20u, 21u, 4096u, 5000u, 70000u}) {
        SCOPED_TRACE(n);
        bytes run(n, 0);
        bytes want = expected_run(0, n);
        EXPECT_EQ(pack(run), want);
        EXPECT_EQ(unpack(want), run);
    }
}

TEST(CompressExact, HeaderCarriesTheDeclaredLengthBigEndian) {
    static lzss_state st;
    static lz_source src;
    static lz_sink dst;
    const uint8_t data[] = {'x', 'y'};
    bytes out;
    lz_source_memory(&src, data, sizeof data);
    lz_sink_custom(&dst, vector_flush, &out);
    lzss_pack(&st, &src, 0x01020304u, &dst);
    EXPECT_EQ(out, bytes({0xFE, 0xEF, 0x00, 0x01, 0x01, 0x02, 0x03, 0x04, 0x03, 'x', 'y'}));
}

// Walks one subtree: parent links agree and the strings rise in order.
void check_subtree(const lzss_state &st, int node, int up, std::vector<int> &order, size_t &count) {
    if (node == lz_nil)
        return;
    ASSERT_LT(node, lz_ring_size);
    ASSERT_EQ(st.parent[node], up) << "node " << node;
    ASSERT_LT(++count, 5000u) << "cycle";
    check_subtree(st, st.left[node], node, order, count);
    order.push_back(node);
    check_subtree(st, st.right[node], node, order, count);
}

TEST(CompressTree, StaysAnOrderedTreeAfterPacking) {
    bytes data = listing_text(30000, 7);
    bytes noise = random_bytes(9000, 3, 4);
    data.insert(data.end(), noise.begin(), noise.end());
    static lzss_state st;
    for (size_t n : {size_t(1), size_t(17), size_t(19), size_t(4100), size_t(12345), data.size()}) {
        SCOPED_TRACE(n);
        static lz_source src;
        static lz_sink dst;
        bytes out;
        lz_source_memory(&src, data.data(), n);
        lz_sink_custom(&dst, vector_flush, &out);
        lzss_pack(&st, &src, static_cast<uint32_t>(n), &dst);
        size_t reachable = 0;
        for (int root = lz_ring_size + 1; root <= lz_ring_size + 256; root++) {
            std::vector<int> order;
            check_subtree(st, st.right[root], root, order, reachable);
            for (int node : order)
                ASSERT_EQ(st.ring[node], root - lz_ring_size - 1);
            for (size_t i = 1; i < order.size(); i++)
                ASSERT_LT(std::memcmp(&st.ring[order[i - 1]] + 1, &st.ring[order[i]] + 1, 17), 0);
        }
        size_t linked = 0;
        for (int i = 0; i < lz_ring_size; i++)
            linked += st.parent[i] != lz_nil;
        EXPECT_EQ(linked, reachable);
        EXPECT_EQ(unpack(out), bytes(data.begin(), data.begin() + static_cast<long>(n)));
    }
}

TEST(CompressRoundTrip, VariedDataComesBackWhole) {
    const size_t sizes[] = {1, 2, 3, 17, 18, 19, 4077, 4078, 4095, 4096, 4097, 4113, 8191, 8192, 8193, 70001};
    for (size_t n : sizes) {
        SCOPED_TRACE(n);
        for (const bytes &data : {random_bytes(n, unsigned(n)), random_bytes(n, unsigned(n) + 1, 3),
                                  listing_text(n, unsigned(n)), bytes(n, 0), bytes(n, 0xFF)}) {
            bytes packed = pack(data);
            ASSERT_EQ(unpack(packed), data);
        }
    }
}

TEST(CompressRoundTrip, TextShrinksAndNoiseGrowsByAtMostAnEighth) {
    bytes text = listing_text(200000, 11);
    EXPECT_LT(pack(text).size(), text.size() / 2);
    bytes noise = random_bytes(200000, 12);
    bytes packed = pack(noise);
    EXPECT_LE(packed.size(), 8 + noise.size() + (noise.size() + 7) / 8);
}

TEST(CompressHostile, UnpackIgnoresMagicAndDeclaredLength) {
    EXPECT_EQ(unpack({0, 0, 0, 0, 0, 0, 0, 0, 0x01, 'A'}), text_bytes("A"));
    EXPECT_EQ(unpack({0xFE, 0xEF, 0x00, 0x01, 0xFF, 0xFF, 0xFF, 0xFF, 0x03, 'h', 'i'}), text_bytes("hi"));
    EXPECT_EQ(unpack({0x12, 0x34, 0x56, 0x78, 0x00, 0x00, 0x00, 0x00, 0x01, 'z'}), text_bytes("z"));
}

TEST(CompressHostile, ShortAndTruncatedFilesGiveShorterOutput) {
    for (size_t n = 0; n <= 9; n++)
        EXPECT_TRUE(unpack(bytes(n, 0xFE)).empty()) << n;
    bytes data = listing_text(3000, 5);
    bytes packed = pack(data);
    for (size_t cut = 0; cut <= packed.size(); cut++) {
        bytes out = unpack(bytes(packed.begin(), packed.begin() + static_cast<long>(cut)));
        ASSERT_LE(out.size(), data.size());
        ASSERT_TRUE(std::equal(out.begin(), out.end(), data.begin())) << cut;
    }
}

TEST(CompressHostile, ReferencesReadTheRingAsIs) {
    const struct {
        const char *name;
        bytes code;
        bytes want;
    } cases[] = {
        // A reference before anything was written reads the zero ring.
        {"fresh ring", {0x00, 0x00, 0x00}, bytes(3, 0)},
        // Position 0xFEE length 5 right after "XYZ" overlaps its own output.
        {"overlap", {0x07, 'X', 'Y', 'Z', 0xEE, 0xF2}, text_bytes("XYZXYZXY")},
        // 18 literals fill 4078..4095; position 4095 (0xFFF) then wraps to
        // 0, which the same reference has just written.
        {"wrap",
         {0xFF, 'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', 0xFF, 'i', 'j', 'k', 'l', 'm', 'n', 'o', 'p',
          0x03, 'q', 'r', 0xFF, 0xF0},
         text_bytes("abcdefghijklmnopqrrrr")},
        // The flag byte arrives, its first item does not.
        {"lone flag", {0x00}, {}},
        {"half reference", {0x00, 0xEE}, {}},
        // A missing literal ends the output after what came before.
        {"missing literal", {0x03, 'q'}, text_bytes("q")},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(unpack(cat(header(0x7FFFFFFF), c.code)), c.want);
    }
}

TEST(CompressHostile, GarbageUnpacksToBoundedOutput) {
    for (unsigned seed = 0; seed < 40; seed++) {
        bytes junk = random_bytes(1 + seed * 997, seed);
        bytes out = unpack(junk);
        // A flag byte and eight references: 17 bytes give at most 144.
        EXPECT_LE(out.size(), junk.size() / 17 * 144 + 144) << seed;
    }
    bytes worst = header(0xFFFFFFFF);
    for (int g = 0; g < 1000; g++) {
        worst.push_back(0x00);
        for (int i = 0; i < 8; i++) {
            worst.push_back(0x34);
            worst.push_back(0x1F);
        }
    }
    EXPECT_EQ(unpack(worst).size(), 1000u * 8 * 18);
}

class CompressFiles : public ::testing::Test {
protected:
    fs::path dir;
    void SetUp() override {
        dir = fs::path(::testing::TempDir()) / ("vz_compress_" + std::to_string(::getpid()));
        fs::create_directories(dir);
    }
    void TearDown() override { fs::remove_all(dir); }
    std::string path(const char *name) const { return (dir / name).string(); }
    static void write_file(const std::string &p, const bytes &b) {
        std::ofstream(p, std::ios::binary).write(reinterpret_cast<const char *>(b.data()),
                                                 static_cast<std::streamsize>(b.size()));
    }
    static bytes read_file(const std::string &p) {
        std::ifstream f(p, std::ios::binary);
        return bytes(std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>());
    }
};

TEST_F(CompressFiles, EmptyFileGivesTheBareHeader) {
    write_file(path("empty"), {});
    ASSERT_EQ(zdcompress(path("empty").c_str(), path("empty.z").c_str()), 0);
    EXPECT_EQ(read_file(path("empty.z")), bytes({0xFE, 0xEF, 0x00, 0x01, 0, 0, 0, 0}));
    ASSERT_EQ(zduncompress(path("empty.z").c_str(), path("empty.out").c_str()), 0);
    EXPECT_TRUE(fs::exists(path("empty.out")));
    EXPECT_EQ(fs::file_size(path("empty.out")), 0u);
}

TEST_F(CompressFiles, ExportsMatchTheCoderAndRoundTripAMegabyte) {
    const bytes inputs[] = {listing_text(1 << 20, 1), random_bytes(1 << 20, 2), bytes(1 << 20, 0),
                            text_bytes("ABCxABCyABCz")};
    for (const bytes &data : inputs) {
        write_file(path("in"), data);
        ASSERT_EQ(zdcompress(path("in").c_str(), path("in.z").c_str()), 0);
        EXPECT_EQ(read_file(path("in.z")), pack(data));
        ASSERT_EQ(zduncompress(path("in.z").c_str(), path("out").c_str()), 0);
        EXPECT_EQ(read_file(path("out")), data);
    }
    EXPECT_EQ(lmalloc_live_blocks(), 0u);
}

TEST_F(CompressFiles, OpenFailuresReturnOne) {
    write_file(path("in"), text_bytes("abc"));
    // Missing source: the destination is not created.
    EXPECT_EQ(zdcompress(path("missing").c_str(), path("never").c_str()), 1);
    EXPECT_EQ(zduncompress(path("missing").c_str(), path("never").c_str()), 1);
    EXPECT_FALSE(fs::exists(path("never")));
    // Destination in a directory that does not exist.
    EXPECT_EQ(zdcompress(path("in").c_str(), path("no/such/out").c_str()), 1);
    EXPECT_EQ(zduncompress(path("in").c_str(), path("no/such/out").c_str()), 1);
    EXPECT_EQ(zdcompress(nullptr, path("x").c_str()), 1);
    EXPECT_EQ(zdcompress(path("in").c_str(), nullptr), 1);
}

TEST_F(CompressFiles, UncompressingAnyFileSucceeds) {
    write_file(path("text"), text_bytes("just some text, not packed at all"));
    EXPECT_EQ(zduncompress(path("text").c_str(), path("out").c_str()), 0);
    // "just som" is taken for the header. Then 'e' (0x65) and 'a' (0x61) are
    // flag bytes, and each clear bit turns two letters into a reference into
    // the untouched zero part of the ring; the last clear bit finds no bytes.
    bytes want = text_bytes(" ");
    auto zeros = [&](size_t n) { want.insert(want.end(), n, 0); };
    zeros(8);             // "te": length 5 + 3
    want.push_back('x');
    zeros(15);            // "t,"
    zeros(17);            // " n"
    want.push_back('o');
    want.push_back('t');
    zeros(3);             // " p"
    want.push_back('c');
    zeros(8);             // "ke"
    zeros(3);             // "d "
    zeros(7);             // "at"
    zeros(4);             // " a"
    want.push_back('l');
    want.push_back('l');
    EXPECT_EQ(read_file(path("out")), want);
}

TEST_F(CompressFiles, HeaderHoldsTheFileSize) {
    write_file(path("in"), listing_text(0x10203, 4));
    ASSERT_EQ(zdcompress(path("in").c_str(), path("in.z").c_str()), 0);
    bytes packed = read_file(path("in.z"));
    ASSERT_GE(packed.size(), 8u);
    EXPECT_EQ(bytes(packed.begin(), packed.begin() + 8), bytes({0xFE, 0xEF, 0x00, 0x01, 0x00, 0x01, 0x02, 0x03}));
}

#ifdef VZ_CLI_BINARY
int run_cli(const std::string &args, std::string *output) {
    std::string cmd = std::string(VZ_CLI_BINARY) + " " + args + " 2>&1";
    FILE *p = ::popen(cmd.c_str(), "r");
    if (!p)
        return -1;
    char buf[256];
    output->clear();
    while (std::fgets(buf, sizeof buf, p))
        *output += buf;
    int status = ::pclose(p);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(CompressFiles, CommandLinePacksExpandsAndReports) {
    bytes data = listing_text(50000, 9);
    write_file(path("prog.ls"), data);
    std::string out;
    EXPECT_EQ(run_cli("compress " + path("prog.ls") + " " + path("prog.z"), &out), 0) << out;
    EXPECT_EQ(read_file(path("prog.z")), pack(data));
    EXPECT_EQ(run_cli("expand " + path("prog.z") + " -o " + path("back.ls"), &out), 0) << out;
    EXPECT_EQ(read_file(path("back.ls")), data);

    EXPECT_EQ(run_cli("compress " + path("gone") + " " + path("x.z"), &out), 1);
    EXPECT_EQ(out.rfind(path("gone") + ": cannot open for reading", 0), 0u) << out;
    EXPECT_EQ(run_cli("expand " + path("prog.z") + " " + path("no/dir/x"), &out), 1);
    EXPECT_EQ(out, path("no/dir/x") + ": cannot open for writing\n");

    EXPECT_EQ(run_cli("compress " + path("prog.ls") + " " + path("prog.ls"), &out), 2);
    EXPECT_EQ(out, path("prog.ls") + ": same file as the input\n");
    EXPECT_EQ(read_file(path("prog.ls")), data);
    EXPECT_EQ(run_cli("compress " + path("prog.ls"), &out), 2);
    EXPECT_EQ(run_cli("expand a b c", &out), 2);
}
#endif

} // namespace
