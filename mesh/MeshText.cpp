#include "mesh/MeshText.h"

#include "KelBase.h"

#include <array>
#include <charconv>

namespace meridyn::mesh {

namespace {

struct CategoryWords {
    const char* one;
    const char* many;
};

const CategoryWords& wordsOf(KelZoneCategory category)
{
    static const CategoryWords words[] = {{"node", "nodes"}, {"edge", "edges"}, {"face", "faces"}, {"cell", "cells"}};
    return words[category];
}

template <class... Precision>
std::string numberText(double value, Precision... precision)
{
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, precision...);
    return {buffer.data(), end.ptr};
}

} // namespace

std::string grouped(unsigned64 number)
{
    std::string text = std::to_string(number);
    for (std::size_t at = text.size(); at > 3;) {
        at -= 3;
        text.insert(at, ",");
    }
    return text;
}

std::string shortNumber(double value, int digits)
{
    const std::string exact = numberText(value);
    const std::string rounded = numberText(value, std::chars_format::general, digits);
    return exact.size() <= rounded.size() ? exact : rounded;
}

std::string counted(unsigned64 count, std::string_view one, std::string_view many)
{
    return grouped(count) + " " + std::string(count == 1 ? one : many);
}

const char* categoryName(KelZoneCategory category)
{
    return wordsOf(category).many;
}

const char* elementName(KelZoneCategory category)
{
    return wordsOf(category).one;
}

std::string zoneLabel(const KelBase& base, int zoneId)
{
    std::string name;
    base.getZoneStringInfo(zoneId, KEL_ZONE_STRING_0, name);
    return std::to_string(zoneId) + (name.empty() ? "" : " '" + name + "'");
}

} // namespace meridyn::mesh
