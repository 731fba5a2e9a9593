#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Characters of XML text, and how any bytes are carried by them.
///
/// A byte that is no part of a character that XML allows (control characters, broken UTF-8) is written as "\xHH", and a
/// backslash as "\\". On top of that come the references that XML itself asks for.
namespace arbor::xml {

/// Number of bytes of the XML character in front of a text that is not empty; 0 when there is none.
std::size_t characterLength(std::string_view text);

/// Whether a text consists of XML characters in UTF-8.
bool isCharacters(std::string_view text);

/// Appends any bytes as the value of an attribute.
void appendEscaped(std::string& out, std::string_view bytes);

/// The bytes that the value of an attribute carries, from what stands between its quotes.
///
/// @return false for an unknown reference or escape, and for a "<"; `bytes` is undefined then
bool unescape(std::string_view value, std::string& bytes);

} // namespace arbor::xml
