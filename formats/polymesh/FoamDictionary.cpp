#include "FoamDictionary.h"

#include <algorithm>

namespace meridyn {

namespace {

constexpr int largestDepth = 64;

/// Adds a token to the text of an entry.
void append(std::string& text, const FoamToken& token)
{
    const bool isClosing = token.is(')') || token.is(']') || token.is('}');
    const bool isOpened = !text.empty() && (text.back() == '(' || text.back() == '[' || text.back() == '{');
    if (!text.empty() && !isClosing && !isOpened)
        text += ' ';
    text += token.kind == FoamToken::Text ? '"' + token.text + '"' : token.text;
}

/// The rest of an entry after its name: up to ";" outside all brackets.
std::string restOfEntry(FoamReader& reader, FoamToken token)
{
    std::string text;
    int depth = 0;
    for (;; token = reader.next()) {
        if (token.kind == FoamToken::End)
            reader.failExpecting("';'", token);
        if (token.is(';') && depth == 0)
            return text;
        depth += token.is('(') || token.is('[') || token.is('{') ? 1 : 0;
        depth -= token.is(')') || token.is(']') || token.is('}') ? 1 : 0;
        if (depth < 0)
            reader.failExpecting("';'", token);
        append(text, token);
    }
}

/// Reads one entry whose name was taken.
void readEntry(FoamReader& reader, const std::string& name, int depth, FoamDictionary& dictionary)
{
    if (name[0] == '#') { // a directive: its argument is one token, and nothing is included or computed
        reader.next();
        return;
    }
    FoamDictionary::Entry entry;
    entry.name = name;
    FoamToken token = reader.next();
    if (token.is('{')) {
        entry.isDictionary = true;
        entry.dictionary = FoamDictionary::readBlock(reader, depth + 1);
    } else if (name[0] == '$' && token.is(';'))
        return; // brings in entries from elsewhere
    else
        entry.text = restOfEntry(reader, std::move(token));
    dictionary.entries.push_back(std::move(entry));
}

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
        readEntry(reader, token.text, depth, dictionary);
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
    return entry != nullptr && !entry->isDictionary ? entry->text : otherwise;
}

FoamDictionary FoamDictionary::read(FoamReader& reader)
{
    return readEntries(reader, 0);
}

FoamDictionary FoamDictionary::readBlock(FoamReader& reader, int depth)
{
    return readEntries(reader, depth);
}

} // namespace meridyn
