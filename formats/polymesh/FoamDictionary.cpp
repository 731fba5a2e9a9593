#include "FoamDictionary.h"

#include <algorithm>

namespace meridyn::polymesh {

namespace {

constexpr int largestDepth = 64;

/// Entries of a list that is kept as text; one with more is data, not a setting.
constexpr std::uint64_t longestList = 1000;

/// Bytes of an entry that is kept as text.
constexpr std::size_t longestText = std::size_t{1} << 20U;

/// Adds a token to the text of an entry.
void append(std::string& text, const FoamToken& token)
{
    const bool isClosing = token.is(')') || token.is(']') || token.is('}');
    const bool isOpened = !text.empty() && (text.back() == '(' || text.back() == '[' || text.back() == '{');
    if (!text.empty() && !isClosing && !isOpened)
        text += ' ';
    text += token.kind == FoamToken::Text ? '"' + token.text + '"' : token.text;
}

/// Reads the rest of an entry after its name: up to ";" outside all brackets. False when a list in it is longer than a
/// dictionary keeps.
bool readText(FoamReader& reader, FoamToken token, std::string& text)
{
    int depth = 0;
    bool isWhole = true;
    for (;; token = reader.next()) {
        if (token.kind == FoamToken::End)
            reader.failExpecting("';'", token);
        if (token.is(';') && depth == 0)
            return isWhole;
        depth += token.is('(') || token.is('[') || token.is('{') ? 1 : 0;
        depth -= token.is(')') || token.is(']') || token.is('}') ? 1 : 0;
        if (depth < 0)
            reader.failExpecting("';'", token);
        if (token.kind == FoamToken::Word && token.text.compare(0, 5, "List<") == 0) {
            const std::optional<std::string> list = reader.listText(token.text, longestList);
            isWhole = isWhole && list;
            token.text = list.value_or("");
        }
        if (text.size() > longestText)
            isWhole = false;
        if (isWhole)
            append(text, token);
    }
}

} // namespace

FoamDictionary::Entry FoamDictionary::readRest(FoamReader& reader, const FoamToken& name, int depth)
{
    Entry entry;
    entry.isQuoted = name.kind == FoamToken::Text;
    entry.name = entry.isQuoted ? '"' + name.text + '"' : name.text;
    if (!entry.isQuoted && name.text[0] == '#') { // its argument is one token, and nothing is included or computed
        append(entry.name, reader.next());
        entry.kind = Entry::Directive;
        return entry;
    }
    FoamToken token = reader.next();
    if (token.is('{')) {
        entry.kind = Entry::Dictionary;
        entry.dictionary = readBlock(reader, depth + 1);
    } else if (!entry.isQuoted && name.text[0] == '$' && token.is(';')) {
        entry.kind = Entry::Directive;
        entry.name += ';';
    } else if (!readText(reader, std::move(token), entry.text)) {
        entry.kind = Entry::LongList;
        entry.text.clear();
    }
    return entry;
}

namespace {

FoamDictionary readEntries(FoamReader& reader, int depth)
{
    FoamDictionary dictionary;
    if (depth > largestDepth)
        reader.fail("dictionaries lie more than " + std::to_string(largestDepth) + " deep in each other");
    for (;;) {
        const FoamToken token = reader.next();
        if (token.kind == FoamToken::End && depth == 0)
            return dictionary;
        if (token.is('}') && depth > 0)
            return dictionary;
        if (token.is(';'))
            continue;
        if ((token.kind != FoamToken::Word && token.kind != FoamToken::Text) || token.text.empty())
            reader.failExpecting("the name of an entry", token);
        dictionary.entries.push_back(FoamDictionary::readRest(reader, token, depth));
    }
}

} // namespace

const FoamDictionary::Entry* FoamDictionary::find(const std::string& name) const
{
    const auto found =
        std::find_if(entries.rbegin(), entries.rend(), [&name](const Entry& entry) { return entry.name == name; });
    return found != entries.rend() ? &*found : nullptr;
}

std::string FoamDictionary::text(const std::string& name, const std::string& otherwise) const
{
    const Entry* entry = find(name);
    return entry != nullptr && entry->kind == Entry::Text ? entry->text : otherwise;
}

FoamDictionary FoamDictionary::read(FoamReader& reader)
{
    return readEntries(reader, 0);
}

FoamDictionary FoamDictionary::readBlock(FoamReader& reader, int depth)
{
    return readEntries(reader, depth);
}

} // namespace meridyn::polymesh
