// What do settings trees cost over an XML document? Builds, writes and reads trees of 100, 10,000 and 100,000
// properties, and in turns with pugixml alone the document of the same text. "ratio" is the median of ours over
// theirs; 3 is the aim. theirs holds texts only: it knows no types, no look-up by name and refuses nothing.
#include "arbor/TObject.h"
#include "arbor/TProperty.h"

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

using arbor::TObject;
using arbor::TProperty;

struct Value {
    std::string className;
    std::string xmlType;
    std::string name;
    std::string text;
};

/// Values as solvers have them, of four types in turn.
std::vector<Value> makeValues(int count)
{
    std::vector<Value> values;
    for (int i = 0; i < count; ++i) {
        const std::string name = "relaxation-factor-" + std::to_string(i);
        switch (i % 4) {
        case 0:
            values.push_back({"TPropertyType<double>", "double", name, std::to_string(i) + ".625"});
            break;
        case 1:
            values.push_back({"TPropertyType<int>", "int", name, std::to_string(i)});
            break;
        case 2:
            values.push_back({"TPropertyType<bool>", "bool", name, "true"});
            break;
        default:
            values.push_back({"TPropertyType<std::string>", "string", name, "second-order upwind"});
        }
    }
    return values;
}

std::unique_ptr<TObject> buildOurs(const std::vector<Value>& values)
{
    std::unique_ptr<TObject> root(TObject::newObject("TObject", "settings", nullptr));
    for (const Value& value : values)
        TProperty::newProperty(value.className, value.name, &value.text, root.get());
    return root;
}

std::unique_ptr<pugi::xml_document> buildTheirs(const std::vector<Value>& values)
{
    auto document = std::make_unique<pugi::xml_document>();
    pugi::xml_node root = document->append_child("object");
    root.append_attribute("arbor") = "1";
    root.append_attribute("name") = "settings";
    for (const Value& value : values) {
        pugi::xml_node node = root.append_child("property");
        node.append_attribute("name") = value.name.c_str();
        node.append_attribute("type") = value.xmlType.c_str();
        node.append_attribute("value") = value.text.c_str();
    }
    return document;
}

struct StringWriter : pugi::xml_writer {
    std::string text;
    void write(const void* data, size_t size) override { text.append(static_cast<const char*>(data), size); }
};

std::string writeTheirs(const pugi::xml_document& document)
{
    StringWriter writer;
    document.save(writer, "  ");
    return writer.text;
}

template <class Job>
double secondsOf(const Job& job)
{
    const auto start = std::chrono::steady_clock::now();
    auto result = job();
    benchmark::DoNotOptimize(result);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Runs the two in turns. Freeing what a job made is not part of its time.
template <class Ours, class Theirs>
void compare(benchmark::State& state, const Ours& ours, const Theirs& theirs)
{
    secondsOf(ours); // the first use of memory is dearer
    secondsOf(theirs);
    std::vector<double> ratios;
    for (auto _ : state) {
        const double seconds = secondsOf(ours);
        ratios.push_back(seconds / secondsOf(theirs));
        state.SetIterationTime(seconds);
    }
    const auto middle = ratios.begin() + static_cast<std::ptrdiff_t>(ratios.size() / 2);
    std::nth_element(ratios.begin(), middle, ratios.end());
    state.counters["ratio"] = *middle;
}

void build(benchmark::State& state)
{
    const auto values = makeValues(static_cast<int>(state.range(0)));
    compare(
        state, [&] { return buildOurs(values); }, [&] { return buildTheirs(values); });
}

void write(benchmark::State& state)
{
    const auto values = makeValues(static_cast<int>(state.range(0)));
    const auto ours = buildOurs(values);
    const auto theirs = buildTheirs(values);
    compare(
        state, [&] { return TObject::toXMLString(ours.get()); }, [&] { return writeTheirs(*theirs); });
}

void read(benchmark::State& state)
{
    const std::string text = TObject::toXMLString(buildOurs(makeValues(static_cast<int>(state.range(0)))).get());
    compare(
        state, [&] { return std::unique_ptr<TObject>(TObject::fromXMLString(text)); },
        [&] {
            auto document = std::make_unique<pugi::xml_document>();
            document->load_buffer(text.data(), text.size());
            return document;
        });
}

BENCHMARK(build)->Arg(100)->Arg(10000)->Arg(100000)->UseManualTime();
BENCHMARK(write)->Arg(100)->Arg(10000)->Arg(100000)->UseManualTime();
BENCHMARK(read)->Arg(100)->Arg(10000)->Arg(100000)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
