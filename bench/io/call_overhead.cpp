// What does the frame add to a call? A writer that only counts is called by element, by range and by zone, against a
// direct call of its range form through the virtual table and against a plain function. An element call should cost no
// more than three virtual calls, and a zone call should hardly depend on the number of zones.

#include "KelConsumer.h"

#include <benchmark/benchmark.h>

#include <numeric>
#include <vector>

using namespace meridyn;

namespace {

class CountingConsumer : public KelConsumer {
public:
    void setCell0sForFacesInRange(unsigned64 first, unsigned64 last, const unsigned64* cells, unsigned64 count) override
    {
        _sum += first + last + *cells + count;
        benchmark::DoNotOptimize(_sum);
    }

private:
    unsigned64 _sum = 0;
};

[[gnu::noinline]] void plainFunction(unsigned64& sum, unsigned64 first, unsigned64 last, const unsigned64* cells,
                                     unsigned64 count)
{
    sum += first + last + *cells + count;
    benchmark::DoNotOptimize(sum);
}

/// Zones of one face each, whose ids are those of the faces.
void declareZones(KelBase& base, int count)
{
    std::vector<int> ids(static_cast<std::size_t>(count));
    std::iota(ids.begin(), ids.end(), 1);
    base.setZoneIds(KEL_FACE_ZONE, ids);
    for (const int id : ids) {
        base.setZoneSizeInfo(id, KEL_ZONE_FIRST_ID, static_cast<unsigned64>(id));
        base.setZoneSizeInfo(id, KEL_ZONE_LAST_ID, static_cast<unsigned64>(id));
    }
}

void plainCall(benchmark::State& state)
{
    const unsigned64 cell = 41;
    unsigned64 sum = 0, face = 0;
    for (auto _ : state) {
        ++face;
        plainFunction(sum, face, face, &cell, 1);
    }
}

void virtualCall(benchmark::State& state)
{
    CountingConsumer counter;
    KelConsumer* writer = &counter;
    benchmark::DoNotOptimize(writer);
    const unsigned64 cell = 41;
    unsigned64 face = 0;
    for (auto _ : state) {
        ++face;
        writer->setCell0sForFacesInRange(face, face, &cell, 1);
    }
}

void elementCall(benchmark::State& state)
{
    CountingConsumer counter;
    KelConsumer* writer = &counter;
    benchmark::DoNotOptimize(writer);
    unsigned64 face = 0;
    for (auto _ : state)
        writer->setCell0ForFace(++face, 41);
}

void zoneCall(benchmark::State& state)
{
    CountingConsumer counter;
    KelConsumer* writer = &counter;
    benchmark::DoNotOptimize(writer);
    const int count = static_cast<int>(state.range(0));
    declareZones(counter, count);
    const unsigned64 cell = 41;
    int zone = 1;
    for (auto _ : state) {
        writer->setCell0sForFacesInZone(zone, &cell, 1);
        zone = static_cast<int>((zone + 7919LL) % count) + 1; // far from the last one
    }
}

} // namespace

BENCHMARK(plainCall);
BENCHMARK(virtualCall);
BENCHMARK(elementCall);
BENCHMARK(zoneCall)->Arg(1)->Arg(10000);

BENCHMARK_MAIN();
