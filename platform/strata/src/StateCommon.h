#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace strata {

// What the writer and the reader of the state text agree on.

constexpr std::string_view stateVersion = "1";
constexpr std::string_view upperHexDigits = "0123456789ABCDEF";

/// The last line of a state, without a line feed: "end" and the FNV-1a hash of what stands before it.
inline std::string checksumLine(std::string_view before)
{
    std::uint64_t hash = 14695981039346656037U;
    for (const char byte : before)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 1099511628211U;
    std::string line = "end ";
    for (int shift = 60; shift >= 0; shift -= 4)
        line += upperHexDigits[(hash >> static_cast<unsigned>(shift)) & 15U];
    return line;
}

} // namespace strata
