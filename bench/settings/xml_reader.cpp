// Does arbor's own reader of XML earn its place? Reads texts of settings trees of 100, 10,000 and 100,000 properties,
// and in turns reads the same texts with pugixml: document, the checks that make it refuse what is not exactly the
// documented form, and the building of the same tree. "ratio" is the median of ours over theirs, in processor time;
// ours stays as long as it is below 2.
#include "arbor/TObject.h"
#include "arbor/TProperty.h"

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

using arbor::TObject;
using arbor::TProperty;

// ---- reading with pugixml -----------------------------------------------------------------------------------------

/// Whether a text is UTF-8 of characters that XML allows, which pugixml does not ask.
bool isXmlUtf8(std::string_view text)
{
    for (std::size_t i = 0; i < text.size();) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c < 0x80) {
            if (c < 0x20 && c != '\t' && c != '\n' && c != '\r')
                return false;
            ++i;
            continue;
        }
        const std::size_t length = c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : 2;
        if (c < 0xC2 || c > 0xF4 || text.size() - i < length)
            return false;
        for (std::size_t k = 1; k < length; ++k)
            if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80)
                return false;
        i += length;
    }
    return true;
}

bool isName(const char* name)
{
    return std::strspn(name, "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_0123456789-.") == std::strlen(name);
}

/// Decodes the five entities and character references; false for any other. pugixml would leave them as they are.
bool decode(const char* raw, std::string& text)
{
    text.clear();
    for (; *raw != '\0'; ++raw) {
        if (*raw != '&') {
            text += *raw;
            continue;
        }
        const char* const end = std::strchr(raw, ';');
        if (end == nullptr)
            return false;
        const std::string_view name(raw + 1, static_cast<std::size_t>(end - raw - 1));
        if (name == "lt")
            text += '<';
        else if (name == "gt")
            text += '>';
        else if (name == "amp")
            text += '&';
        else if (name == "quot")
            text += '"';
        else
            return false; // these texts have no others
        raw = end;
    }
    return true;
}

/// The fields of an element, each at most once.
struct Fields {
    std::string version, name, type, unit, value;
    unsigned present = 0;

    bool read(const pugi::xml_node& element)
    {
        present = 0;
        for (const pugi::xml_attribute& attribute : element.attributes()) {
            const std::string_view key = attribute.name();
            std::string* const places[] = {&version, &name, &type, &unit, &value};
            const std::string_view keys[] = {"arbor", "name", "type", "unit", "value"};
            const auto* const found = std::find(std::begin(keys), std::end(keys), key);
            const auto field = static_cast<unsigned>(found - std::begin(keys));
            if (found == std::end(keys) || (present & 1U << field) != 0 || !decode(attribute.value(), *places[field]))
                return false;
            present |= 1U << field;
        }
        return true;
    }
};

const char* classOf(const std::string& type)
{
    if (type == "double")
        return "TPropertyType<double>";
    if (type == "int")
        return "TPropertyType<int>";
    if (type == "bool")
        return "TPropertyType<bool>";
    return type == "string" ? "TPropertyType<std::string>" : nullptr;
}

/// Builds what an element holds; false for anything that is not of the form.
bool build(const pugi::xml_node& element, TObject* object, Fields& fields)
{
    for (const pugi::xml_node& child : element.children()) {
        if (child.type() != pugi::node_element || !isName(child.name()) || !fields.read(child))
            return false;
        if (std::strcmp(child.name(), "object") == 0) {
            TObject* const below = TObject::newObject("TObject", fields.name, object);
            if (below == nullptr || !build(child, below, fields))
                return false;
            continue;
        }
        const char* const type = classOf(fields.type);
        if (std::strcmp(child.name(), "property") != 0 || type == nullptr || child.first_child() ||
            TProperty::newProperty(type, fields.name, &fields.value, object) == nullptr)
            return false;
    }
    return true;
}

std::unique_ptr<TObject> readWithPugixml(const std::string& text)
{
    constexpr unsigned options = pugi::parse_declaration | pugi::parse_doctype | pugi::parse_cdata;
    pugi::xml_document document;
    if (!isXmlUtf8(text) || !document.load_buffer(text.data(), text.size(), options, pugi::encoding_utf8))
        return nullptr;
    std::unique_ptr<TObject> root;
    Fields fields;
    for (const pugi::xml_node& node : document.children()) {
        if (node.type() == pugi::node_declaration && node == document.first_child())
            continue;
        if (node.type() != pugi::node_element || root != nullptr || !fields.read(node) || fields.version != "1")
            return nullptr;
        root.reset(TObject::newObject("TObject", fields.name, nullptr));
        if (!build(node, root.get(), fields))
            return nullptr;
    }
    return root;
}

// ---- the comparison -----------------------------------------------------------------------------------------------

/// The text of a tree with values as solvers have them, of four types in turn, ten to a group.
std::string makeText(int count)
{
    const std::unique_ptr<TObject> root(TObject::newObject("TObject", "settings", nullptr));
    const char* const classes[] = {"TPropertyType<double>", "TPropertyType<int>", "TPropertyType<bool>",
                                   "TPropertyType<std::string>"};
    const std::string texts[] = {"0.625", "12", "true", "second-order upwind"};
    TObject* group = nullptr;
    for (int i = 0; i < count; ++i) {
        if (i % 10 == 0)
            group = TObject::newObject("TObject", "group-" + std::to_string(i), root.get());
        TProperty::newProperty(classes[i % 4], "relaxation-factor-" + std::to_string(i), &texts[i % 4], group);
    }
    return TObject::toXMLString(root.get());
}

/// Processor time: other programs on the machine do not count.
double now()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

template <class Job>
double secondsOf(const Job& job)
{
    const double start = now();
    auto result = job();
    benchmark::DoNotOptimize(result);
    return now() - start; // freeing the tree is not part of it
}

void read(benchmark::State& state)
{
    const std::string text = makeText(static_cast<int>(state.range(0)));
    const auto ours = [&text] { return std::unique_ptr<TObject>(TObject::fromXMLString(text)); };
    const auto theirs = [&text] { return readWithPugixml(text); };
    if (ours() == nullptr || TObject::toXMLString(theirs().get()) != text) {
        state.SkipWithError("the two do not read the same tree");
        return;
    }
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

BENCHMARK(read)->Arg(100)->Arg(10000)->Arg(100000)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
