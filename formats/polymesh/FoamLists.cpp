// The lists of numbers of FoamReader: where nearly all bytes of a case are.
#include "FoamReader.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <utility>

namespace meridyn::polymesh {

namespace {

/// Longer than any number that is written; a longer one is cut there, and its rest is then found to be wrong.
constexpr std::size_t longestNumber = 512;

/// Entries of raw data that are read at once.
constexpr std::uint64_t rawPiece = std::uint64_t{1} << 16;

/// Stands for a label that does not fit; no limit lets it pass.
constexpr std::uint32_t noLabel = std::numeric_limits<std::uint32_t>::max();

bool isBlank(char c)
{
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

bool endsNumber(const char* at, const char* end)
{
    return at == end || isBlank(*at) || *at == ')' || *at == '(' || *at == ';' || *at == '}' || *at == '/';
}

} // namespace

void FoamReader::rawBytes(char* to, std::uint64_t count)
{
    const std::uint64_t from = _source.offset();
    const std::size_t got = _source.read(to, count);
    if (got != count)
        fail("expected " + std::to_string(count) + " bytes of binary data from byte " + std::to_string(from) +
             " on, found " + std::to_string(got));
}

/// Numbers as the machine has them that wrote the file, in the order of bytes of this one.
template <class Number>
void FoamReader::rawNumbers(Number* to, std::uint64_t count)
{
    char* const bytes = reinterpret_cast<char*>(to);
    rawBytes(bytes, count * sizeof(Number));
    if (_header.isBigEndian)
        for (std::uint64_t n = 0; n < count; ++n)
            std::reverse(bytes + n * sizeof(Number), bytes + (n + 1) * sizeof(Number));
}

void FoamReader::rawLabels(std::uint64_t count, std::vector<std::uint32_t>& values)
{
    _inRawData = true;
    std::vector<std::int64_t> wide;
    for (std::uint64_t done = 0; done < count;) {
        const std::uint64_t piece = std::min(rawPiece, count - done);
        const std::size_t from = values.size();
        values.resize(from + piece);
        if (_header.labelBytes == 4)
            rawNumbers(values.data() + from, piece); // negative ones become too large
        else {
            wide.resize(piece);
            rawNumbers(wide.data(), piece);
            std::transform(
                wide.begin(), wide.end(), values.begin() + static_cast<std::ptrdiff_t>(from),
                [](auto label) { return label < 0 || label >= noLabel ? noLabel : static_cast<std::uint32_t>(label); });
        }
        done += piece;
    }
}

void FoamReader::rawScalars(std::uint64_t count, std::vector<double>& values)
{
    _inRawData = true;
    std::vector<float> narrow;
    for (std::uint64_t done = 0; done < count;) {
        const std::uint64_t piece = std::min(rawPiece, count - done);
        const std::size_t from = values.size();
        values.resize(from + piece);
        if (_header.scalarBytes == 8)
            rawNumbers(values.data() + from, piece);
        else {
            narrow.resize(piece);
            rawNumbers(narrow.data(), piece);
            std::copy(narrow.begin(), narrow.end(), values.begin() + static_cast<std::ptrdiff_t>(from));
        }
        done += piece;
    }
}

FoamReader::Opening FoamReader::open(const char* what, std::uint64_t bytesPerEntry, std::uint64_t largestCount)
{
    Opening opening;
    if (!sees('(')) {
        opening.hasCount = true;
        opening.count = count("the number of entries of a list");
        if (opening.count > largestCount)
            fail(std::string("expected at most ") + std::to_string(largestCount) + " entries in the list of " + what +
                 ", found a count of " + std::to_string(opening.count));
        opening.isRepeated = largestCount < anyCount && sees('{'); // or a few bytes could ask for any memory
        opening.isCountAlone = opening.count == 0 && !sees('(') && !opening.isRepeated; // an empty binary list
        if (opening.isCountAlone)
            return opening;
    }
    if (!sees('(') && !opening.isRepeated)
        failExpecting(std::string("'(' of the list of ") + what, next());
    _source.advance(_source.begin() + 1);
    if (opening.hasCount && !opening.isRepeated && opening.count > _source.leftAtMost() / bytesPerEntry)
        fail("the list of " + std::string(what) + " has a count of " + std::to_string(opening.count) +
             ", but the file ends after at most " + std::to_string(_source.leftAtMost()) + " bytes more");
    return opening;
}

/// Whether the entries of a list follow in binary form.
bool FoamReader::isRaw(const Opening& opening) const
{
    return _header.isBinary && opening.hasCount && opening.count > 0 && !opening.isRepeated;
}

void FoamReader::endRaw()
{
    expect(')');
    _inRawData = false;
}

/// Whether a list in text form ends before its entry `index`; takes the closing mark then.
bool FoamReader::atClose(const Opening& opening, std::uint64_t index, const char* what)
{
    if (opening.isCountAlone)
        return true;
    const char close = opening.isRepeated ? '}' : ')';
    const std::uint64_t entries = opening.isRepeated ? 1 : opening.count;
    const bool isClosed = sees(close);
    if (isClosed && opening.hasCount && index < entries)
        fail("expected " + std::to_string(entries) + " entries in the list of " + what + ", found " +
             std::to_string(index));
    if (!isClosed && opening.hasCount && index == entries)
        failExpecting(std::string("'") + close + "' after entry " + std::to_string(index) + " of the list of " + what,
                      next());
    if (isClosed)
        _source.advance(_source.begin() + 1);
    return isClosed;
}

/// Takes a number that stands right here, which almost all do. Otherwise moves to it and gives false.
template <class Number>
bool FoamReader::takeNumber(Number& value)
{
    _source.ensure(longestNumber);
    const char* at = _source.begin();
    while (at != _source.end() && isBlank(*at))
        ++at;
    const auto [end, error] = std::from_chars(at, _source.end(), value);
    const bool isWhole = error == std::errc() && endsNumber(end, _source.end());
    _source.advance(isWhole ? end : at);
    return isWhole;
}

std::uint64_t FoamReader::textLabel(const char* what)
{
    std::uint64_t value = 0;
    if (takeNumber(value))
        return value;
    const FoamToken token = next(); // a comment may stand before it
    const char* tokenEnd = token.text.data() + token.text.size();
    const auto [stop, problem] = std::from_chars(token.text.data(), tokenEnd, value);
    if (token.kind != FoamToken::Word || problem != std::errc() || stop != tokenEnd)
        failExpecting(std::string("a label in the list of ") + what, token);
    return value;
}

double FoamReader::textScalar(const char* what)
{
    double value = 0;
    if (takeNumber(value))
        return value;
    const FoamToken token = next(); // with a comment before it, a plus sign, or beyond the range of a double
    if (token.kind == FoamToken::Word && foamNumber(token.text, value))
        return value;
    failExpecting(std::string("a number in the list of ") + what, token);
}

void FoamReader::checkLabels(const char* what, const std::vector<std::uint32_t>& values, std::size_t from,
                             std::uint64_t limit)
{
    for (std::size_t n = from; n < values.size(); ++n)
        if (values[n] >= limit)
            fail("entry " + std::to_string(n) + " of the list of " + what + " is out of range: expected " +
                 (limit == 0 ? "none" : "0 to " + std::to_string(limit - 1)) + ", found " +
                 (values[n] == noLabel ? "a negative or too large one" : std::to_string(values[n])));
}

std::vector<std::uint32_t> FoamReader::labels(const char* what, std::uint64_t limit, std::uint64_t largestCount)
{
    limit = std::min<std::uint64_t>(limit, noLabel);
    const unsigned bytes = _header.isBinary ? _header.labelBytes : 1;
    const Opening opening = open(what, bytes, largestCount);
    std::vector<std::uint32_t> values;
    values.reserve(std::min(opening.count, _source.plausiblyLeft() / bytes));
    if (isRaw(opening)) {
        rawLabels(opening.count, values);
        checkLabels(what, values, 0, limit);
        endRaw();
        return values;
    }
    while (!atClose(opening, values.size(), what)) {
        if (values.size() == largestCount)
            fail(std::string("the list of ") + what + " has more than " + std::to_string(largestCount) + " entries");
        const std::uint64_t label = textLabel(what);
        values.push_back(label >= noLabel ? noLabel : static_cast<std::uint32_t>(label));
        if (label >= limit)
            checkLabels(what, values, values.size() - 1, limit);
    }
    if (opening.isRepeated)
        values.resize(opening.count, values.front());
    return values;
}

std::vector<std::uint32_t> FoamReader::textLabels(const char* what, std::uint64_t limit, std::uint64_t largestCount)
{
    const bool wasBinary = std::exchange(_header.isBinary, false);
    std::vector<std::uint32_t> values = labels(what, limit, largestCount); // what it throws ends the use of the reader
    _header.isBinary = wasBinary;
    return values;
}

std::vector<double> FoamReader::scalars(const char* what, unsigned components, bool inParentheses,
                                        std::uint64_t largestCount)
{
    const std::uint64_t bytes = _header.isBinary ? std::uint64_t{components} * _header.scalarBytes : components;
    const Opening opening = open(what, bytes, largestCount);
    std::vector<double> values;
    values.reserve(std::min(opening.count, _source.plausiblyLeft() / bytes) * components);
    if (isRaw(opening)) {
        rawScalars(opening.count * components, values);
        endRaw();
        return values;
    }
    for (std::uint64_t n = 0; !atClose(opening, n, what); ++n) {
        if (n == largestCount)
            fail(std::string("the list of ") + what + " has more than " + std::to_string(largestCount) + " entries");
        if (inParentheses)
            expect('(');
        for (unsigned c = 0; c < components; ++c)
            values.push_back(textScalar(what));
        if (inParentheses)
            expect(')');
    }
    if (opening.isRepeated)
        for (std::uint64_t n = components; n < opening.count * components; ++n)
            values.push_back(values[n - components]);
    return values;
}

} // namespace meridyn::polymesh
