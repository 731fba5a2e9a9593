#pragma once

#include <charconv>
#include <cstdint>
#include <string_view>

namespace strata {

/// Reads a decimal number of a range. True only for the one text that writing the number gives: no sign but a minus,
/// no blanks, no leading zeros.
inline bool readNumber(std::string_view text, std::int64_t least, std::int64_t greatest, std::int64_t& number)
{
    const std::string_view digits = text.substr(!text.empty() && text[0] == '-' ? 1 : 0);
    if (digits.empty() || (digits[0] == '0' && text.size() > 1))
        return false;
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < least || value > greatest)
        return false;
    number = value;
    return true;
}

} // namespace strata
