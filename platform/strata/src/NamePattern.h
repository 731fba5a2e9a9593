#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace strata {

/// One piece of a location entry: literal bytes and wildcards.
class NamePattern {
public:
    void addLiteral(char byte);
    void addAnyRun();       ///< `*`
    void addAnyCharacter(); ///< `?`

    bool isEmpty() const { return _symbols.empty(); }
    bool isLiteral() const { return _literalPrefix.size() == _symbols.size(); }

    /// The literal bytes before the first wildcard.
    const std::string& literalPrefix() const { return _literalPrefix; }

    /// Whether the whole name is covered. Takes at most the product of the two lengths.
    bool matches(std::string_view name) const;

private:
    std::u16string _symbols; ///< a byte's value, or one of the two wildcards above them
    std::string _literalPrefix;
};

/// Length of the character at a place of a text: of a UTF-8 sequence where there is a whole one, otherwise 1.
std::size_t characterLength(std::string_view text, std::size_t at);

} // namespace strata
