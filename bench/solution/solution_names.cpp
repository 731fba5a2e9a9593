// Does the time per name stay the same, from 1,000 to 100,000 variables and from 10 KB to 1 MB of joined names?
// The counter "per_name" is the time of one name in seconds; a quadratic would multiply it by a hundred.
#include "KelSolutionModel.h"
#include "KelUtilities.h"

#include <benchmark/benchmark.h>

using namespace meridyn;

namespace {

using Names = std::vector<std::string>;

Names makeNames(std::int64_t count)
{
    Names names;
    for (std::int64_t n = 0; n < count; ++n)
        names.push_back("variable-" + std::to_string(n * 7919 % count));
    return names;
}

void setPerName(benchmark::State& state, std::size_t count)
{
    using benchmark::Counter;
    state.counters["per_name"] =
        Counter(double(count), Counter::kIsIterationInvariantRate | Counter::kInvert); // seconds
}

void fill(KelSolutionModel& model, const Names& names)
{
    int id = 0;
    for (const std::string& name : names)
        model.createVariable(name, id);
}

void createVariables(benchmark::State& state)
{
    const Names names = makeNames(state.range(0));
    for (auto _ : state) {
        KelSolutionModel model;
        fill(model, names);
    }
    setPerName(state, names.size());
}
BENCHMARK(createVariables)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond);

void findVariables(benchmark::State& state)
{
    const Names names = makeNames(state.range(0));
    KelSolutionModel model;
    fill(model, names);
    int id = 0;
    for (auto _ : state)
        for (const std::string& name : names)
            benchmark::DoNotOptimize(model.findVariableByUniqueName(name, id));
    setPerName(state, names.size());
}
BENCHMARK(findVariables)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond);

std::string joined(const Names& names)
{
    std::string text;
    KelUtilities::joinString(names, text, ',', false, false);
    return text;
}

void splitNames(benchmark::State& state)
{
    const std::string text = joined(makeNames(state.range(0)));
    for (auto _ : state) {
        Names tokens;
        KelUtilities::splitString(text, tokens, true, ',');
        benchmark::DoNotOptimize(tokens.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    setPerName(state, static_cast<std::size_t>(state.range(0)));
}
BENCHMARK(splitNames)->RangeMultiplier(10)->Range(700, 70000)->Unit(benchmark::kMillisecond); // 10 KB to 1 MB

void joinNames(benchmark::State& state)
{
    const Names names = makeNames(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(joined(names));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(joined(names).size()));
    setPerName(state, names.size());
}
BENCHMARK(joinNames)->RangeMultiplier(10)->Range(700, 70000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
