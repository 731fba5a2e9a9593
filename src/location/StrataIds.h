#pragma once

#include <charconv>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace meridyn {

/// The strata id of an int id: the letter of the kind and the decimal digits.
inline std::string toStrataId(char kind, std::int64_t id)
{
    return std::to_string(id).insert(0, 1, kind);
}

/// The int id of a strata id: what stands behind its first character.
///
/// Ids come from strata alone, so one without a number is a fault of the program: it throws what the standard
/// conversion does, std::invalid_argument("invalid stoi argument") or std::out_of_range("stoi argument out of range").
inline int toIntId(const std::string& strataId)
{
    const char* const end = strataId.data() + strataId.size();
    int id = 0;
    if (strataId.empty())
        throw std::invalid_argument("invalid stoi argument");
    const auto [stop, error] = std::from_chars(strataId.data() + 1, end, id);
    if (error == std::errc::result_out_of_range)
        throw std::out_of_range("stoi argument out of range");
    if (error != std::errc() || stop != end)
        throw std::invalid_argument("invalid stoi argument");
    return id;
}

} // namespace meridyn
