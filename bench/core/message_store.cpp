// What does a message cost: posted, collected by severity and swept? The time per message should not depend on how
// many there are.

#include "KelBase.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"

#include <benchmark/benchmark.h>

using namespace meridyn;

static void postAndCollect(benchmark::State& state)
{
    KelBase base;
    const KelError error("/faces/cell0 has 12 values, 20 expected", "endWriting");
    const KelWarning warning("Invalid ZoneSizeType.", "setZoneSize");
    const KelInfo info("reading the case", "startReading");
    const KelMessage* const messages[] = {&error, &warning, &info};
    KelMessageRegistrar& registrar = *base.getMessageRegistrar();
    for (auto _ : state) {
        for (int i = 0; i < state.range(0); ++i) {
            registrar.registerMessage(*messages[i % 3]);
        }
        benchmark::DoNotOptimize(base.getErrors(true, true));
        benchmark::DoNotOptimize(base.getWarnings(true, true));
        benchmark::DoNotOptimize(base.getInfos(true, true));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(postAndCollect)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
