// Lists of FoamReader that are neither of labels nor of numbers.
#include "FoamReader.h"

#include <algorithm>

namespace meridyn::polymesh {

namespace {

/// Counts per element travel as short.
constexpr std::uint64_t largestNodeCount = 32767;

bool flagOf(const std::string& text, unsigned char& flag)
{
    for (const char* yes : {"1", "true", "yes", "on", "y", "t"})
        if (text == yes) {
            flag = 1;
            return true;
        }
    flag = 0;
    for (const char* no : {"0", "false", "no", "off", "n", "f"})
        if (text == no)
            return true;
    return false;
}

} // namespace

std::vector<unsigned char> FoamReader::flags(const char* what, std::uint64_t largestCount)
{
    const Opening opening = open(what, 1, largestCount);
    std::vector<unsigned char> values;
    if (isRaw(opening)) {
        values.resize(std::min(opening.count, _source.leftAtMost()));
        _inRawData = true;
        rawBytes(reinterpret_cast<char*>(values.data()), values.size());
        std::transform(values.begin(), values.end(), values.begin(), [](unsigned char c) { return c != 0 ? 1 : 0; });
        endRaw();
        return values;
    }
    while (!atClose(opening, values.size(), what)) {
        if (values.size() == largestCount)
            fail(std::string("the list of ") + what + " has more than " + std::to_string(largestCount) + " entries");
        const FoamToken token = next();
        unsigned char flag = 0;
        if (token.kind != FoamToken::Word || !flagOf(token.text, flag))
            failExpecting(std::string("0 or 1 in the list of ") + what, token);
        values.push_back(flag);
    }
    if (opening.isRepeated)
        values.resize(opening.count, values.front());
    return values;
}

void FoamReader::faces(std::vector<std::uint64_t>& offsets, std::vector<std::uint32_t>& nodes, std::uint64_t limit)
{
    if (_header.className == "faceCompactList")
        compactFaces(offsets, nodes, limit);
    else
        plainFaces(offsets, nodes, limit);
}

/// Two lists: where the points of each face begin, and one more; then the points of all faces.
void FoamReader::compactFaces(std::vector<std::uint64_t>& offsets, std::vector<std::uint32_t>& nodes,
                              std::uint64_t limit)
{
    const std::vector<std::uint32_t> begins = labels("face offsets", FoamReader::anyCount, FoamReader::anyCount);
    nodes = labels("face points", limit, FoamReader::anyCount);
    offsets.assign(begins.begin(), begins.end());
    if (offsets.empty() && nodes.empty())
        offsets.push_back(0);
    if (offsets.empty() || offsets.front() != 0 || offsets.back() != nodes.size())
        fail("expected face offsets from 0 to " + std::to_string(nodes.size()) + ", found " +
             (offsets.empty() ? "none" : std::to_string(offsets.front()) + " to " + std::to_string(offsets.back())));
    for (std::size_t n = 1; n < offsets.size(); ++n)
        if (offsets[n] < offsets[n - 1] + 3 || offsets[n] - offsets[n - 1] > largestNodeCount)
            fail("expected face " + std::to_string(n - 1) + " to have 3 to " + std::to_string(largestNodeCount) +
                 " points, found offsets " + std::to_string(offsets[n - 1]) + " and " + std::to_string(offsets[n]));
}

void FoamReader::plainFaces(std::vector<std::uint64_t>& offsets, std::vector<std::uint32_t>& nodes, std::uint64_t limit)
{
    const char* const what = "points of a face";
    limit = std::min<std::uint64_t>(limit, FoamReader::anyCount);
    Opening opening = open("faces", 4, FoamReader::anyCount);
    offsets.assign(1, 0);
    offsets.reserve(std::min(opening.count, _source.plausiblyLeft() / 4) + 1);
    while (!atClose(opening, offsets.size() - 1, "faces")) {
        const Opening face = open(what, 1, largestNodeCount);
        const std::size_t from = nodes.size();
        if (isRaw(face)) {
            rawLabels(face.count, nodes);
            checkLabels(what, nodes, from, limit);
            endRaw();
        } else
            while (!atClose(face, nodes.size() - from, what)) {
                const std::uint64_t label = textLabel(what);
                nodes.push_back(static_cast<std::uint32_t>(std::min(label, FoamReader::anyCount)));
                if (label >= limit || face.isRepeated || nodes.size() - from > largestNodeCount)
                    fail("point " + std::to_string(nodes.size() - from - 1) + " of face " +
                         std::to_string(offsets.size() - 1) + " is out of range: expected " +
                         (limit == 0 ? "none" : "0 to " + std::to_string(limit - 1)) + ", found " +
                         std::to_string(label));
            }
        if (nodes.size() - from < 3)
            fail("expected face " + std::to_string(offsets.size() - 1) + " to have 3 to " +
                 std::to_string(largestNodeCount) + " points, found " + std::to_string(nodes.size() - from));
        offsets.push_back(nodes.size());
    }
}

} // namespace meridyn::polymesh
