#include "JsonWriter.h"

#include "Numbers.h"

#include <cmath>
#include <fmt/format.h>

namespace meridyn::tool {

void JsonWriter::newLine()
{
    _text += '\n';
    _text.append(2 * _hasMembers.size(), ' ');
}

void JsonWriter::separate()
{
    if (_afterKey) {
        _afterKey = false;
        return;
    }
    if (_hasMembers.empty())
        return;
    if (_hasMembers.back())
        _text += ',';
    _hasMembers.back() = true;
    newLine();
}

void JsonWriter::open(char bracket)
{
    separate();
    _text += bracket;
    _hasMembers.push_back(false);
}

void JsonWriter::close(char bracket)
{
    const bool hadMembers = _hasMembers.back();
    _hasMembers.pop_back();
    if (hadMembers)
        newLine();
    _text += bracket;
}

JsonWriter& JsonWriter::beginObject()
{
    open('{');
    return *this;
}

JsonWriter& JsonWriter::endObject()
{
    close('}');
    return *this;
}

JsonWriter& JsonWriter::beginArray()
{
    open('[');
    return *this;
}

JsonWriter& JsonWriter::endArray()
{
    close(']');
    return *this;
}

JsonWriter& JsonWriter::key(std::string_view name)
{
    separate();
    quote(name);
    _text += ": ";
    _afterKey = true;
    return *this;
}

JsonWriter& JsonWriter::value(std::string_view text)
{
    separate();
    quote(text);
    return *this;
}

JsonWriter& JsonWriter::value(bool flag)
{
    separate();
    _text += flag ? "true" : "false";
    return *this;
}

JsonWriter& JsonWriter::value(double number)
{
    if (!std::isfinite(number))
        return value(exactNumber(number));
    separate();
    _text += exactNumber(number);
    return *this;
}

JsonWriter& JsonWriter::value(long long number)
{
    separate();
    _text += std::to_string(number);
    return *this;
}

JsonWriter& JsonWriter::value(unsigned64 number)
{
    separate();
    _text += std::to_string(number);
    return *this;
}

JsonWriter& JsonWriter::null()
{
    separate();
    _text += "null";
    return *this;
}

void JsonWriter::quote(std::string_view text)
{
    _text += '"';
    while (!text.empty()) {
        const std::size_t length = utf8Length(text);
        const char c = text[0];
        if (length == 0)
            _text += "\xEF\xBF\xBD";
        else if (c == '"' || c == '\\')
            _text += {'\\', c};
        else if (c == '\n')
            _text += "\\n";
        else if (c == '\t')
            _text += "\\t";
        else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            _text += fmt::format("\\u{:04x}", static_cast<unsigned char>(c));
        else
            _text += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    _text += '"';
}

} // namespace meridyn::tool
