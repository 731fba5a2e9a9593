#include "FoamReader.h"

#include "FoamError.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace meridyn::polymesh {

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\n' || c == '\t' || c == '\r' || c == '\f' || c == '\v';
}

bool isMark(char c)
{
    return c == '(' || c == ')' || c == '{' || c == '}' || c == '[' || c == ']' || c == ';';
}

bool startsNumber(char c)
{
    return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.';
}

/// Long enough for any line of a message.
std::string shortened(const std::string& text)
{
    return text.size() <= 60 ? text : text.substr(0, 57) + "...";
}

} // namespace

unsigned foamComponents(std::string_view type)
{
    static constexpr std::pair<std::string_view, unsigned> types[] = {
        {"scalar", 1}, {"vector", 3}, {"symmTensor", 6}, {"tensor", 9}, {"sphericalTensor", 1}};
    const auto* const found =
        std::find_if(std::begin(types), std::end(types), [&](auto& t) { return t.first == type; });
    return found != std::end(types) ? found->second : 0;
}

bool foamNumber(std::string_view text, double& value)
{
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

// ---- failures -----------------------------------------------------------------------------------------------------

std::string FoamReader::context() const
{
    return _source.path() + ": " +
           (_inRawData ? "byte " + std::to_string(_source.offset())
                       : "line " + std::to_string(_source.lineOf(_source.offset())));
}

void FoamReader::fail(const std::string& problem) const
{
    throw FoamError(context() + ": " + problem);
}

void FoamReader::failExpecting(const std::string& expected, const FoamToken& found) const
{
    fail("expected " + expected + ", found " +
         (found.kind == FoamToken::End ? "the end of the file" : "'" + shortened(found.text) + "'"));
}

// ---- tokens -------------------------------------------------------------------------------------------------------

void FoamReader::skipComment()
{
    const bool isBlock = _source.begin()[1] == '*';
    _source.advance(_source.begin() + 2);
    while (_source.ensure(2)) {
        const char* at = _source.begin();
        if (isBlock ? at[0] == '*' && at[1] == '/' : at[0] == '\n') {
            _source.advance(at + (isBlock ? 2 : 1));
            return;
        }
        _source.advance(at + 1);
    }
    if (isBlock)
        fail("a comment is not closed");
    _source.advance(_source.end());
}

void FoamReader::skipBlanks()
{
    while (_source.ensure(1)) {
        const char* at = _source.begin();
        while (at != _source.end() && isBlank(*at))
            ++at;
        _source.advance(at);
        if (at == _source.end())
            continue;
        if (*at != '/' || !_source.ensure(2) || (_source.begin()[1] != '/' && _source.begin()[1] != '*'))
            return;
        skipComment();
    }
}

FoamToken FoamReader::quoted()
{
    FoamToken token{FoamToken::Text, {}};
    _source.advance(_source.begin() + 1);
    while (_source.ensure(1)) {
        const char c = *_source.begin();
        _source.advance(_source.begin() + 1);
        if (c == '"')
            return token;
        if (c == '\\' && _source.ensure(1) && *_source.begin() == '"') {
            token.text += '"';
            _source.advance(_source.begin() + 1);
        } else
            token.text += c;
    }
    fail("a quoted text is not closed");
}

/// Program text between "#{" and "#}".
FoamToken FoamReader::verbatim()
{
    FoamToken token{FoamToken::Text, {}};
    _source.advance(_source.begin() + 2);
    while (_source.ensure(2)) {
        if (_source.begin()[0] == '#' && _source.begin()[1] == '}') {
            _source.advance(_source.begin() + 2);
            return token;
        }
        token.text += *_source.begin();
        _source.advance(_source.begin() + 1);
    }
    fail("a text that begins with #{ is not closed");
}

/// A word or a number. Words may hold balanced parentheses, as in div(phi,U); numbers end before one, as in 4(0 1 2 3).
FoamToken FoamReader::plain()
{
    FoamToken token{FoamToken::Word, {}};
    const bool isNumber = startsNumber(*_source.begin());
    int depth = 0;
    while (_source.ensure(1)) {
        const char c = *_source.begin();
        if (!isNumber && c == '(')
            ++depth;
        else if (depth > 0 && c == ')')
            --depth;
        else if (isBlank(c) || isMark(c) || c == '"')
            break;
        token.text += c;
        _source.advance(_source.begin() + 1);
    }
    return token;
}

FoamToken FoamReader::next()
{
    skipBlanks();
    if (!_source.ensure(1))
        return {};
    const char c = *_source.begin();
    if (c == '"')
        return quoted();
    if (c == '#' && _source.ensure(2) && _source.begin()[1] == '{')
        return verbatim();
    if (!isMark(c))
        return plain();
    _source.advance(_source.begin() + 1);
    return {FoamToken::Mark, std::string(1, c)};
}

bool FoamReader::sees(char character)
{
    skipBlanks();
    return _source.ensure(1) && *_source.begin() == character;
}

bool FoamReader::seesMark()
{
    skipBlanks();
    return !_source.ensure(1) || isMark(*_source.begin());
}

void FoamReader::expect(char mark)
{
    if (sees(mark))
        _source.advance(_source.begin() + 1);
    else
        failExpecting(std::string("'") + mark + "'", next());
}

std::string FoamReader::word(const char* what)
{
    FoamToken token = next();
    if (token.kind != FoamToken::Word && token.kind != FoamToken::Text)
        failExpecting(what, token);
    return std::move(token.text);
}

std::uint64_t FoamReader::count(const char* what)
{
    const FoamToken token = next();
    std::uint64_t value = 0;
    const char* end = token.text.data() + token.text.size();
    const auto [stop, error] = std::from_chars(token.text.data(), end, value);
    if (token.kind != FoamToken::Word || error != std::errc() || stop != end)
        failExpecting(what, token);
    return value;
}

double FoamReader::number(const char* what)
{
    const FoamToken token = next();
    double value = 0;
    if (token.kind != FoamToken::Word || !foamNumber(token.text, value))
        failExpecting(what, token);
    return value;
}

// ---- head and entries ---------------------------------------------------------------------------------------------

const FoamHeader& FoamReader::readHeader()
{
    while (sees('#')) { // nothing is included; what stands behind is the file's own
        const std::string directive = word("a directive");
        _header.directives.push_back(directive + " \"" + word("something behind a directive") + '"');
    }
    if (!sees('F') || !_source.ensure(8) || std::memcmp(_source.begin(), "FoamFile", 8) != 0)
        return _header;
    next();
    expect('{');
    while (!sees('}')) {
        const std::string key = word("an entry of FoamFile");
        std::string value;
        for (FoamToken token = next(); !token.is(';'); token = next()) {
            if (token.kind == FoamToken::End || token.is('}'))
                failExpecting("';' after '" + shortened(key) + "'", token);
            value += token.text;
        }
        if (key == "format") {
            if (value != "ascii" && value != "binary")
                fail("expected the format ascii or binary, found '" + shortened(value) + "'");
            _header.isBinary = value == "binary";
        } else if (key == "class")
            _header.className = value;
        else if (key == "version")
            _header.version = value;
        else if (key == "note")
            _header.note = value;
        else if (key == "arch") {
            _header.isBigEndian = value.find("MSB") != std::string::npos;
            _header.labelBytes = value.find("label=64") != std::string::npos ? 8 : 4;
            _header.scalarBytes = value.find("scalar=32") != std::string::npos ? 4 : 8;
        }
    }
    expect('}');
    return _header;
}

const FoamHeader& FoamReader::readHeader(const std::vector<std::string>& classNames)
{
    readHeader();
    const auto isExpected = [this](const std::string& name) { return name == _header.className; };
    if (_header.className.empty() ||
        (!classNames.empty() && std::none_of(classNames.begin(), classNames.end(), isExpected))) {
        std::string expected;
        for (const std::string& name : classNames)
            expected += (expected.empty() ? "" : " or ") + name;
        fail("expected a head FoamFile with the class " + (expected.empty() ? "of its data" : expected) + ", found " +
             (_header.className.empty() ? "none" : "'" + shortened(_header.className) + "'"));
    }
    return _header;
}

void FoamReader::skipEntry()
{
    int depth = 0;
    for (;;) {
        const FoamToken token = next();
        if (token.kind == FoamToken::End)
            failExpecting("the end of an entry", token);
        if (token.kind == FoamToken::Word && token.text.rfind("List<", 0) == 0)
            skipList(token.text);
        else if (token.is('{') || token.is('(') || token.is('['))
            ++depth;
        else if (token.is('}') || token.is(')') || token.is(']')) {
            if (--depth < 0)
                failExpecting("';'", token);
            if (depth == 0 && token.is('}'))
                return;
        } else if (depth == 0 && token.is(';'))
            return;
    }
}

} // namespace meridyn::polymesh
