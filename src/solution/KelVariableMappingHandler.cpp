#include "solution/KelVariableMappingHandler.h"

#include "KelAttributes.h"

#include <algorithm>
#include <iterator>
#include <xercesc/sax/AttributeList.hpp>

namespace meridyn {

static void appendCodePoint(std::string& text, char32_t point)
{
    const auto tail = [point](int shift) { return static_cast<char>(0x80 | (point >> shift & 0x3F)); };
    if (point < 0x80)
        text += static_cast<char>(point);
    else if (point < 0x800)
        text += {static_cast<char>(0xC0 | point >> 6), tail(0)};
    else if (point < 0x10000)
        text += {static_cast<char>(0xE0 | point >> 12), tail(6), tail(0)};
    else
        text += {static_cast<char>(0xF0 | point >> 18), tail(12), tail(6), tail(0)};
}

/// UTF-8 rather than the code page of the locale: names keep every character, and a file means the same everywhere.
static std::string toBytes(const XMLCh* text)
{
    if (text == nullptr)
        return {};
    const XMLCh* end = text;
    while (*end != 0 && *end < 0x80)
        ++end;
    std::string bytes(text, end); // for most texts that is all
    for (; *end != 0; ++end) {
        char32_t point = *end;
        const bool isPair = (end[0] & 0xFC00) == 0xD800 && (end[1] & 0xFC00) == 0xDC00;
        if (isPair) {
            point = 0x10000 + ((point & 0x3FF) << 10) + (end[1] & 0x3FF);
            ++end;
        }
        appendCodePoint(bytes, point);
    }
    return bytes;
}

KelVariableMappingHandler::KelVariableMappingHandler() = default;

KelVariableMappingHandler::~KelVariableMappingHandler() = default;

void KelVariableMappingHandler::startElement(const XMLCh* name, xercesc::AttributeList& attributes)
{
    const std::string element = toBytes(name);
    if (_document.root.empty())
        _document.root = element;
    if (element != "attribute") {
        _scopes.emplace();
        return;
    }
    if (_scopes.empty())
        return;
    std::string key;
    std::string value;
    for (XMLSize_t i = 0; i < attributes.getLength(); ++i) {
        const std::string kind = toBytes(attributes.getName(i));
        if (kind == "key")
            key = toBytes(attributes.getValue(i));
        else if (kind == "value")
            value = toBytes(attributes.getValue(i));
    }
    if (!key.empty() && !value.empty()) // kept: an attribute cannot be set to nothing
        _scopes.top().insert_or_assign(std::move(key), std::move(value));
}

void KelVariableMappingHandler::endElement(const XMLCh* name)
{
    if (_scopes.empty())
        return;
    const std::string element = toBytes(name);
    if (element == "attribute")
        return;
    if (element == "mapping")
        _document.header = std::move(_scopes.top());
    else if (element == "variable")
        moveVariable(_scopes.top());
    _scopes.pop();
}

void KelVariableMappingHandler::moveVariable(Texts& scope)
{
    const auto key = scope.extract("Name");
    if (key.empty())
        return;
    const std::string& name = key.mapped();
    _document.keys.push_back(name.substr(0, name.find('#')));
    const std::string prefix = name + '#';
    auto place = _document.entries.lower_bound(prefix); // the entries of one variable follow one another
    while (!scope.empty()) {
        auto entry = scope.extract(scope.begin());
        if (entry.key() == KelAttributes::datasetName) // '/' would be a path in a file
            std::replace(entry.mapped().begin(), entry.mapped().end(), '/', ' ');
        entry.key().insert(0, prefix);
        place = std::next(moveEntry(std::move(entry), _document.entries, place));
    }
}

void KelVariableMappingHandler::fatalError(const xercesc::SAXParseException&)
{
    _document = {};
    _scopes = {};
}

MappingDocument& KelVariableMappingHandler::document()
{
    return _document;
}

} // namespace meridyn
