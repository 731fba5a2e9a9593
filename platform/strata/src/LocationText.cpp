#include "LocationText.h"

#include <utility>

namespace strata {

namespace {

/// Where the entry that begins at `from` ends: at the next comma outside quotes.
std::size_t endOfEntry(std::string_view text, std::size_t from)
{
    bool quoted = false; // a doubled quote inside toggles twice
    std::size_t at = from;
    for (; at < text.size() && (quoted || text[at] != ','); ++at)
        if (text[at] == '"')
            quoted = !quoted;
    return at;
}

std::string_view withoutBlanks(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// Reads the pieces of an entry. False, with the entry in any state, when it breaks the grammar.
bool readPieces(std::string_view text, LocationEntry& entry)
{
    NamePattern piece;
    bool quoted = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char byte = text[at];
        if (quoted && byte == '"' && at + 1 < text.size() && text[at + 1] == '"') {
            piece.addLiteral('"');
            ++at;
        } else if (byte == '"') {
            quoted = !quoted;
        } else if (quoted) {
            piece.addLiteral(byte);
        } else if (byte == '/') {
            if (entry.part || piece.isEmpty())
                return false;
            entry.part = std::exchange(piece, NamePattern());
        } else if (byte == '*') {
            piece.addAnyRun();
        } else if (byte == '?') {
            piece.addAnyCharacter();
        } else {
            piece.addLiteral(byte);
        }
    }
    entry.name = std::move(piece);
    return !quoted && !entry.name.isEmpty();
}

} // namespace

std::vector<LocationEntry> parseLocation(std::string_view text)
{
    std::vector<LocationEntry> entries;
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t end = endOfEntry(text, from);
        const std::string_view written = withoutBlanks(text.substr(from, end - from));
        from = end + 1;
        if (written.empty())
            continue;
        LocationEntry& entry = entries.emplace_back();
        entry.text = written;
        entry.valid = readPieces(written, entry);
    }
    return entries;
}

} // namespace strata
