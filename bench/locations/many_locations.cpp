// Does the location model stay n log n? Each job runs with 1,000, 10,000 and 100,000 regions; "per_region" is the
// time for one of them, and what to look at is how little it grows from line to line.
#include "KelLocationModel.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using meridyn::KelLocationModel;

/// Half of the regions are bodies, half faces; each body uses one face and has zones of its own.
std::unique_ptr<KelLocationModel> makeModel(int regions)
{
    auto model = std::make_unique<KelLocationModel>();
    int part = 0;
    int body = 0;
    int face = 0;
    int use = 0;
    model->createPart(3, "part", part);
    for (int i = 0; i < regions / 2; ++i) {
        model->createBody(part, "body-" + std::to_string(i), body);
        model->createFace(part, "face-" + std::to_string(i), face);
        model->createFaceUse(body, face, i % 2, use);
        model->setBodyZones(body, 0, {i + 1});
        model->setFaceUseZoneSides(use, 0, {-i - 1});
    }
    return model;
}

void perRegion(benchmark::State& state)
{
    state.counters["per_region"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void create(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(makeModel(static_cast<int>(state.range(0))));
    perRegion(state);
}

void findByName(benchmark::State& state)
{
    const auto model = makeModel(static_cast<int>(state.range(0)));
    int id = 0;
    for (auto _ : state)
        for (int i = 0; i < state.range(0) / 2; ++i) {
            benchmark::DoNotOptimize(model->findBody(1, "body-" + std::to_string(i), id));
            benchmark::DoNotOptimize(model->findFace(1, "face-" + std::to_string(i), id));
        }
    perRegion(state);
}

void findById(benchmark::State& state)
{
    const auto model = makeModel(static_cast<int>(state.range(0)));
    int part = 0;
    for (auto _ : state)
        for (int i = 1; i <= state.range(0) / 2; ++i) {
            benchmark::DoNotOptimize(model->getBodyPart(i, part));
            benchmark::DoNotOptimize(model->getFacePart(i, part));
        }
    perRegion(state);
}

void resolve(benchmark::State& state, const char* location)
{
    const auto model = makeModel(static_cast<int>(state.range(0)));
    std::vector<int> cells;
    std::vector<int> sides;
    model->resolveLocation(location, 0, 0, cells, sides); // the allocator tidies up after the larger case before
    for (auto _ : state) {
        cells.clear();
        sides.clear();
        benchmark::DoNotOptimize(model->resolveLocation(location, 0, 0, cells, sides));
    }
    perRegion(state);
}

void stateAndReset(benchmark::State& state)
{
    const auto model = makeModel(static_cast<int>(state.range(0)));
    KelLocationModel copy;
    copy.reset(model->state()); // warms up, as above
    for (auto _ : state)
        benchmark::DoNotOptimize(copy.reset(model->state()));
    perRegion(state);
}

void createAndClear(benchmark::State& state)
{
    for (auto _ : state) {
        const auto model = makeModel(static_cast<int>(state.range(0)));
        model->deletePart(1);
    }
    perRegion(state);
}

} // namespace

BENCHMARK(create)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK(createAndClear)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK(findByName)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK(findById)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK_CAPTURE(resolve, one_part, "part")->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK_CAPTURE(resolve, wildcard, "*-*7*")->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK(stateAndReset)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK_MAIN();
