// How does looking up a zone's element range grow with the number of zones? One look-up is what every zone form of
// the reader and the writer adds to its range form (twice: first and last id).

#include "KelBase.h"

#include <benchmark/benchmark.h>

#include <numeric>
#include <vector>

using namespace meridyn;

static std::vector<int> declareZones(KelBase& base, int count)
{
    std::vector<int> ids(static_cast<std::size_t>(count));
    std::iota(ids.begin(), ids.end(), 1);
    base.setZoneIds(KEL_FACE_ZONE, ids);
    for (const int id : ids) {
        base.setZoneSizeInfo(id, KEL_ZONE_FIRST_ID, static_cast<unsigned64>(id));
    }
    return ids;
}

/// A zone far from the last one each time, so that no look-up profits from the one before it.
static int nextZone(int zoneId, int count)
{
    return static_cast<int>((zoneId + 7919LL) % count) + 1;
}

static void zoneLookup(benchmark::State& state)
{
    KelBase base;
    const int count = static_cast<int>(state.range(0));
    declareZones(base, count);
    unsigned64 value = 0;
    int zoneId = 1;
    for (auto _ : state) {
        base.getZoneSizeInfo(zoneId, KEL_ZONE_FIRST_ID, value);
        benchmark::DoNotOptimize(value);
        zoneId = nextZone(zoneId, count);
    }
}
BENCHMARK(zoneLookup)->Arg(1)->Arg(100)->Arg(100000);

static void zoneDeclaration(benchmark::State& state)
{
    for (auto _ : state) {
        KelBase base;
        benchmark::DoNotOptimize(declareZones(base, static_cast<int>(state.range(0))));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(zoneDeclaration)->Arg(1)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
