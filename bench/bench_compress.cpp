/*
** bench_compress.cpp - throughput of packing and unpacking a few megabytes
** of listing-like text, in memory and through the file exports.
*/
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "utils/compress.h"
#include "vorex_zd.h"

namespace {

/* Program lines with drifting numbers: close to what hosts compress. */
std::vector<uint8_t> listing_like(size_t n) {
    static const char *const words[] = {"J P[", "L P[", "WAIT ", "DO[", "R[", "CALL SUB", "LBL[", "JMP LBL["};
    std::mt19937 gen(42);
    std::string s;
    for (int line = 1; s.size() < n; line++) {
        char buf[96];
        std::snprintf(buf, sizeof buf, "%4d:  %s%u] %u%s FINE ;\r\n", line, words[gen() % 8],
                      static_cast<unsigned>(gen() % 50), static_cast<unsigned>(gen() % 2000),
                      gen() % 2 ? "mm/sec" : "%");
        s += buf;
    }
    s.resize(n);
    return std::vector<uint8_t>(s.begin(), s.end());
}

int keep_bytes(void *ctx, const uint8_t *bytes, size_t size) {
    auto *out = static_cast<std::vector<uint8_t> *>(ctx);
    out->insert(out->end(), bytes, bytes + size);
    return 0;
}

std::vector<uint8_t> run_pack(lzss_state *st, const std::vector<uint8_t> &in) {
    static lz_source src;
    static lz_sink dst;
    std::vector<uint8_t> out;
    out.reserve(in.size());
    lz_source_memory(&src, in.data(), in.size());
    lz_sink_custom(&dst, keep_bytes, &out);
    lzss_pack(st, &src, static_cast<uint32_t>(in.size()), &dst);
    return out;
}

std::vector<uint8_t> run_unpack(lzss_state *st, const std::vector<uint8_t> &in, size_t hint) {
    static lz_source src;
    static lz_sink dst;
    std::vector<uint8_t> out;
    out.reserve(hint);
    lz_source_memory(&src, in.data(), in.size());
    lz_sink_custom(&dst, keep_bytes, &out);
    lzss_unpack(st, &src, &dst);
    return out;
}

lzss_state bench_state;

void BM_pack_listing(benchmark::State &state) {
    std::vector<uint8_t> text = listing_like(static_cast<size_t>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(run_pack(&bench_state, text));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}
BENCHMARK(BM_pack_listing)->Arg(1 << 20)->Arg(4 << 20)->Unit(benchmark::kMillisecond);

void BM_unpack_listing(benchmark::State &state) {
    std::vector<uint8_t> text = listing_like(static_cast<size_t>(state.range(0)));
    std::vector<uint8_t> packed = run_pack(&bench_state, text);
    for (auto _ : state)
        benchmark::DoNotOptimize(run_unpack(&bench_state, packed, text.size()));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}
BENCHMARK(BM_unpack_listing)->Arg(1 << 20)->Arg(4 << 20)->Unit(benchmark::kMillisecond);

/* The exports end to end, files and all, on 4 MB. */
void BM_export_round_trip(benchmark::State &state) {
    std::vector<uint8_t> text = listing_like(4 << 20);
    std::string base = "vz_bench_" + std::to_string(static_cast<long>(::getpid()));
    std::string plain = base + ".ls", packed = base + ".z", back = base + ".out";
    if (FILE *fp = std::fopen(plain.c_str(), "wb")) {
        std::fwrite(text.data(), 1, text.size(), fp);
        std::fclose(fp);
    }
    for (auto _ : state) {
        if (zdcompress(plain.c_str(), packed.c_str()) != 0 || zduncompress(packed.c_str(), back.c_str()) != 0) {
            state.SkipWithError("file did not open");
            break;
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
    std::remove(plain.c_str());
    std::remove(packed.c_str());
    std::remove(back.c_str());
}
BENCHMARK(BM_export_round_trip)->Unit(benchmark::kMillisecond);

} // namespace
