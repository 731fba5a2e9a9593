// What does it cost to make and to end a KelBase, the least that any reader or writer costs?

#include "KelBase.h"

#include <benchmark/benchmark.h>

using namespace meridyn;

static void makeAndEnd(benchmark::State& state)
{
    const KelBase first; // the first of a process looks for mapping files
    for (auto _ : state) {
        KelBase base;
        benchmark::DoNotOptimize(base.getMessageRegistrar());
    }
}
BENCHMARK(makeAndEnd);

BENCHMARK_MAIN();
