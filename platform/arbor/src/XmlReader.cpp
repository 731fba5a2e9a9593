#include "XmlReader.h"

#include "XmlText.h"

namespace arbor::xml {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isNameStart(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isNamePart(char c)
{
    return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

bool isBlank(char c)
{
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

bool isUtf8(std::string_view encoding)
{
    constexpr std::string_view name = "utf-8";
    if (encoding.size() != name.size())
        return false;
    for (std::size_t i = 0; i < name.size(); ++i)
        if (encoding[i] != name[i] && (i > 2 || encoding[i] != name[i] - 'a' + 'A'))
            return false;
    return true;
}

} // namespace

Reader::Reader(std::string_view text, std::size_t maxDepth) : _rest(text), _maxDepth(maxDepth)
{
    _isBad = !isCharacters(text);
    skip(byteOrderMark);
    if (!_isBad && skip("<?xml") && !readDeclaration())
        fail();
}

Reader::Token Reader::fail()
{
    _isBad = true;
    return Token::Bad;
}

Reader::Token Reader::next()
{
    if (_isBad)
        return Token::Bad;
    if (_isEmptyElement)
        return close();
    for (;;) {
        skipBlanks();
        if (_rest.empty())
            return _hasRoot && _openNames.empty() ? Token::End : fail();
        if (!skip('<'))
            return fail();
        if (skip('/'))
            return readClosingTag();
        if (_rest.empty() || (_rest.front() != '!' && _rest.front() != '?'))
            return open();
        if (!(skip('?') ? skipInstruction() : skip("!--") && skipComment()))
            return fail();
    }
}

Reader::Token Reader::open()
{
    if (_openNames.empty() && _hasRoot)
        return fail();
    if (_openNames.size() >= _maxDepth || !readName(_name) || !readAttributes())
        return fail();
    _isEmptyElement = skip('/');
    if (!skip('>'))
        return fail();
    _openNames.push_back(_name);
    _hasRoot = true;
    return Token::Open;
}

Reader::Token Reader::close()
{
    _isEmptyElement = false;
    _openNames.pop_back();
    return Token::Close;
}

Reader::Token Reader::readClosingTag()
{
    std::string_view name;
    if (!readName(name) || _openNames.empty() || _openNames.back() != name)
        return fail();
    skipBlanks();
    return skip('>') ? close() : fail();
}

bool Reader::readDeclaration()
{
    if (!readAttributes() || !skip("?>") || _attributes.empty() || _attributes[0].name != "version")
        return false;
    for (const Attribute& attribute : _attributes)
        if (attribute.name == "encoding" && !isUtf8(attribute.value))
            return false;
    return _attributes[0].value == "1.0";
}

/// Reads attributes up to what cannot be one. Their names are not compared here: users know which they expect.
bool Reader::readAttributes()
{
    _attributes.clear();
    while (skipBlanks() && !_rest.empty() && isNameStart(_rest.front()))
        if (_attributes.size() == maxAttributes || !readAttribute())
            return false;
    return true;
}

bool Reader::readAttribute()
{
    Attribute attribute;
    if (!readName(attribute.name))
        return false;
    skipBlanks();
    if (!skip('='))
        return false;
    skipBlanks();
    if (_rest.empty() || (_rest.front() != '"' && _rest.front() != '\''))
        return false;
    const std::size_t end = _rest.find(_rest.front(), 1);
    if (end == std::string_view::npos)
        return false;
    attribute.value = _rest.substr(1, end - 1);
    _rest.remove_prefix(end + 1);
    _attributes.push_back(attribute);
    return true;
}

bool Reader::readName(std::string_view& name)
{
    if (_rest.empty() || !isNameStart(_rest.front()))
        return false;
    std::size_t length = 1;
    while (length < _rest.size() && isNamePart(_rest[length]))
        ++length;
    name = _rest.substr(0, length);
    _rest.remove_prefix(length);
    return true;
}

bool Reader::skip(char character)
{
    if (_rest.empty() || _rest.front() != character)
        return false;
    _rest.remove_prefix(1);
    return true;
}

bool Reader::skip(std::string_view word)
{
    if (_rest.substr(0, word.size()) != word)
        return false;
    _rest.remove_prefix(word.size());
    return true;
}

bool Reader::skipBehind(std::string_view word)
{
    const std::size_t found = _rest.find(word);
    if (found == std::string_view::npos)
        return false;
    _rest.remove_prefix(found + word.size());
    return true;
}

/// Whether there was any.
bool Reader::skipBlanks()
{
    std::size_t count = 0;
    while (count < _rest.size() && isBlank(_rest[count]))
        ++count;
    _rest.remove_prefix(count);
    return count > 0;
}

bool Reader::skipComment()
{
    return skipBehind("--") && skip('>'); // two hyphens stand at its end only
}

bool Reader::skipInstruction()
{
    std::string_view target;
    return readName(target) && target != "xml" && skipBehind("?>");
}

} // namespace arbor::xml
