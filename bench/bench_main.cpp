/*
** bench_main.cpp - entry point of vorex_zd_bench; the benchmarks live in the
** other files of this folder and register themselves.
*/
#include <benchmark/benchmark.h>

BENCHMARK_MAIN();
