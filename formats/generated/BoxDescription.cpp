#include "BoxDescription.h"

#include <charconv>
#include <cmath>
#include <functional>
#include <map>
#include <sstream>
#include <type_traits>
#include <vector>

namespace meridyn {

namespace {

/// Ids, and the product of blocks and the largest number of partitions, stay below 2^64 with this many.
constexpr unsigned64 largestBlockCount = unsigned64{1} << 44;

template <class T>
bool parseNumber(const std::string& text, T& value)
{
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if constexpr (std::is_floating_point_v<T>)
        if (!std::isfinite(value)) // "inf" and "nan" are numbers to from_chars
            return false;
    return result.ec == std::errc() && result.ptr == end;
}

template <class T>
bool parseTriple(const std::string& text, std::array<T, 3>& values)
{
    std::array<T, 3> parsed{};
    std::size_t begin = 0;
    for (std::size_t n = 0; n < 3; ++n) {
        const std::size_t end = n < 2 ? text.find('x', begin) : text.size();
        if (end == std::string::npos || !parseNumber(text.substr(begin, end - begin), parsed[n]) || !(parsed[n] > 0))
            return false;
        begin = end + 1;
    }
    values = parsed;
    return true;
}

bool parseBlocks(const std::string& text, std::array<unsigned64, 3>& blocks)
{
    std::array<unsigned64, 3> parsed{};
    if (!parseTriple(text, parsed))
        return false;
    unsigned64 left = largestBlockCount;
    for (const unsigned64 n : parsed)
        left /= n;
    if (left == 0)
        return false;
    blocks = parsed;
    return true;
}

bool parseShape(const std::string& text, BlockTemplate::Shape& shape)
{
    static const std::map<std::string, BlockTemplate::Shape> shapes = {
        {"hex", BlockTemplate::Shape::Hexahedra},  {"tet", BlockTemplate::Shape::Tetrahedra},
        {"prism", BlockTemplate::Shape::Prisms},   {"pyramid", BlockTemplate::Shape::Pyramids},
        {"poly", BlockTemplate::Shape::Polyhedra},
    };
    const auto found = shapes.find(text);
    if (found == shapes.end())
        return false;
    shape = found->second;
    return true;
}

template <class T>
std::function<bool(const std::string&)> inRange(T& value, T least, T largest)
{
    return [&value, least, largest](const std::string& text) {
        T parsed{};
        if (!parseNumber(text, parsed) || parsed < least || parsed > largest)
            return false;
        value = parsed;
        return true;
    };
}

std::function<bool(const std::string&)> flag(bool& value)
{
    return [&value](const std::string& text) { return text.empty() && (value = true); };
}

} // namespace

bool BoxDescription::parse(const std::string& text, BoxDescription& description, std::string& problem)
{
    BoxDescription box;
    struct Word {
        const char* expected;
        std::function<bool(const std::string&)> take;
    };
    const std::map<std::string, Word> words = {
        {"box",
         {"three numbers from 1, like 'box:4x4x4', of at most 2^44 blocks",
          [&](const auto& t) { return parseBlocks(t, box.blocks); }}},
        {"size",
         {"three lengths above 0, like 'size:1x2x0.5'", [&](const auto& t) { return parseTriple(t, box.size); }}},
        {"cells", {"hex, tet, prism, pyramid or poly", [&](const auto& t) { return parseShape(t, box.shape); }}},
        {"zones", {"a number from 1 to 10000", inRange<unsigned64>(box.cellZones, 1, 10000)}},
        {"fields", {"a number from 0 to 10000", inRange(box.fields, 0, 10000)}},
        {"phases", {"a number from 1 to 1000", inRange(box.phases, 1, 1000)}},
        {"levels", {"a number from 1 to 1000000", inRange(box.levels, 1, 1000000)}},
        {"partitions", {"a number from 1 to 1000000", inRange(box.partitions, 1, 1000000)}},
        {"periodic", {"no value", flag(box.periodic)}},
        {"hanging", {"no value", flag(box.hanging)}},
    };

    std::istringstream stream(text);
    std::string word;
    for (bool isFirst = true; stream >> word; isFirst = false) {
        const std::size_t colon = word.find(':');
        const std::string key = word.substr(0, colon);
        const auto found = words.find(key);
        if (found == words.end() || (key == "box") != isFirst) {
            problem = "'" + word + "' is not known here; expected 'box:<nx>x<ny>x<nz>' followed by options";
            return false;
        }
        if (!found->second.take(colon == std::string::npos ? std::string() : word.substr(colon + 1))) {
            problem = "'" + word + "': expected " + found->second.expected;
            return false;
        }
    }
    if (word.empty())
        problem = "an empty text; expected 'box:<nx>x<ny>x<nz>'";
    else if (box.cellZones > box.blocks[2])
        problem = "'zones:" + std::to_string(box.cellZones) + "': more than the " + std::to_string(box.blocks[2]) +
                  " layers in z";
    else if (box.hanging && (box.shape != BlockTemplate::Shape::Hexahedra || box.blocks[2] < 2))
        problem = "'hanging': expected hexahedra and at least two layers in z";
    else {
        description = box;
        return true;
    }
    return false;
}

} // namespace meridyn
