// Lists of FoamReader that are passed over, or become text.
#include "FoamReader.h"

#include <algorithm>
#include <charconv>

namespace meridyn::polymesh {

namespace {

/// Bytes of one entry of a list "List<entry>" in binary form; 0 where it is written as text.
std::uint64_t rawSize(const std::string& type, const FoamHeader& header)
{
    if (!header.isBinary || type.size() < 6 || type.back() != '>')
        return 0;
    const std::string entry = type.substr(5, type.size() - 6);
    return entry == "label"  ? header.labelBytes
           : entry == "bool" ? 1
                             : std::uint64_t{foamComponents(entry)} * header.scalarBytes;
}

/// The shortest text that gives the same number.
std::string textOf(double value)
{
    char text[32];
    return {text, std::to_chars(std::begin(text), std::end(text), value).ptr};
}

} // namespace

void FoamReader::skipRaw(std::uint64_t bytes)
{
    _inRawData = true;
    std::vector<char> piece(std::min<std::uint64_t>(bytes, std::uint64_t{1} << 16));
    for (std::uint64_t left = bytes; left > 0;) {
        const std::uint64_t count = std::min<std::uint64_t>(left, piece.size());
        rawBytes(piece.data(), count);
        left -= count;
    }
    endRaw();
}

/// Passes over a list in text form that begins here: nearly all of its bytes are numbers, so only brackets count.
void FoamReader::skipText()
{
    int depth = 0;
    do {
        skipBlanks(); // and comments
        if (!_source.ensure(1))
            failExpecting("the end of a list", {});
        const char* at = _source.begin();
        for (; at != _source.end() && *at != '/'; ++at) {
            depth += *at == '(' || *at == '{' ? 1 : *at == ')' || *at == '}' ? -1 : 0;
            if (depth <= 0)
                break;
        }
        if (at == _source.begin() || (at != _source.end() && depth <= 0))
            ++at; // the last bracket; or a "/" that begins no comment
        _source.advance(at);
    } while (depth > 0);
}

void FoamReader::skipList(const std::string& type)
{
    const std::uint64_t bytes = rawSize(type, _header);
    if (bytes == 0 || seesMark())
        return; // text: the marks are told apart by whoever skips the entry
    const Opening opening = open("values to be passed over", bytes, FoamReader::anyCount);
    if (isRaw(opening)) {
        skipRaw(opening.count * bytes);
        return;
    }
    for (FoamToken token = opening.isCountAlone ? FoamToken{FoamToken::Mark, ")"} : next();
         !token.is(')') && !token.is('}'); token = next())
        if (token.kind == FoamToken::End)
            failExpecting("the end of a list", token);
}

std::optional<std::string> FoamReader::listText(const std::string& type, std::uint64_t largestCount)
{
    if (seesMark())
        return type; // without a count: its entries are read as they come
    const std::uint64_t size = count("the number of entries of a list");
    std::string text = type + " " + std::to_string(size);
    const std::uint64_t bytes = rawSize(type, _header);
    if (bytes == 0 || !sees('(')) {
        if (size <= largestCount || !sees('('))
            return text; // the entries follow as text
        skipText();
        return std::nullopt;
    }
    expect('(');
    if (size > _source.leftAtMost() / bytes)
        fail("a list has a count of " + std::to_string(size) + ", but the file ends after at most " +
             std::to_string(_source.leftAtMost()) + " bytes more");
    if (size > largestCount) {
        skipRaw(size * bytes);
        return std::nullopt;
    }
    const std::string entry = type.substr(5, type.size() - 6);
    const unsigned components = std::max(1U, foamComponents(entry));
    std::vector<double> numbers;
    std::vector<std::uint32_t> labels;
    std::vector<char> bools(entry == "bool" ? size : 0);
    if (entry == "label")
        rawLabels(size, labels);
    else if (entry == "bool") {
        _inRawData = true;
        rawBytes(bools.data(), size);
    } else
        rawScalars(size * components, numbers);
    endRaw();
    numbers.insert(numbers.end(), labels.begin(), labels.end());
    numbers.insert(numbers.end(), bools.begin(), bools.end());
    text += " (";
    for (std::size_t n = 0; n < numbers.size(); ++n) {
        const bool isFirst = n % components == 0, isLast = (n + 1) % components == 0;
        text += n == 0 ? "" : " ";
        text += (isFirst && entry != "scalar" && foamComponents(entry) > 0 ? "(" : "") + textOf(numbers[n]) +
                (isLast && entry != "scalar" && foamComponents(entry) > 0 ? ")" : "");
    }
    return text + ')';
}

} // namespace meridyn::polymesh
