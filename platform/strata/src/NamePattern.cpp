#include "NamePattern.h"

namespace strata {

namespace {

constexpr char16_t anyRun = 256;
constexpr char16_t anyCharacter = 257;

char16_t valueOf(char byte)
{
    return static_cast<unsigned char>(byte);
}

} // namespace

std::size_t characterLength(std::string_view text, std::size_t at)
{
    const char16_t lead = valueOf(text[at]);
    const std::size_t length = lead < 0xC2 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 1;
    if (length > text.size() - at)
        return 1;
    for (std::size_t i = 1; i < length; ++i)
        if ((valueOf(text[at + i]) & 0xC0) != 0x80)
            return 1;
    return length;
}

void NamePattern::addLiteral(char byte)
{
    if (isLiteral())
        _literalPrefix += byte;
    _symbols += valueOf(byte);
}

void NamePattern::addAnyRun()
{
    if (_symbols.empty() || _symbols.back() != anyRun) // two in a row are as one
        _symbols += anyRun;
}

void NamePattern::addAnyCharacter()
{
    _symbols += anyCharacter;
}

bool NamePattern::matches(std::string_view name) const
{
    // Only the last run needs to be tried again: an earlier one that took more would leave less for what follows.
    constexpr std::size_t none = static_cast<std::size_t>(-1);
    std::size_t symbol = 0;
    std::size_t at = 0;
    std::size_t lastRun = none;
    std::size_t lastRunEnd = 0;
    while (at < name.size()) {
        const bool more = symbol < _symbols.size();
        if (more && _symbols[symbol] == anyRun) {
            lastRun = symbol++;
            lastRunEnd = at;
        } else if (more && _symbols[symbol] == anyCharacter) {
            ++symbol;
            at += characterLength(name, at);
        } else if (more && _symbols[symbol] == valueOf(name[at])) {
            ++symbol;
            ++at;
        } else if (lastRun != none) {
            lastRunEnd += characterLength(name, lastRunEnd);
            at = lastRunEnd;
            symbol = lastRun + 1;
        } else {
            return false;
        }
    }
    while (symbol < _symbols.size() && _symbols[symbol] == anyRun)
        ++symbol;
    return symbol == _symbols.size();
}

} // namespace strata
