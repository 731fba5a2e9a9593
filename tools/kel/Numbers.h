#pragma once

#include "KelTypes.h"

#include <string>
#include <string_view>

namespace meridyn::tool {

// Texts for people. Nothing here depends on the locale.

/// "1,234,567".
std::string grouped(unsigned64 number);

/// A value in as many digits as tell it from its neighbours, at most `digits`: "0.125", "1e-05", "nan".
std::string shortNumber(double value, int digits = 6);

/// A value in the fewest digits that give it back exactly.
std::string exactNumber(double value);

/// "731 B", "4.2 MB": powers of 1000.
std::string byteText(double bytes);

/// "0:07", "12:30", "1:02:03".
std::string durationText(double seconds);

/// "1 face", "2,000 faces".
std::string counted(unsigned64 count, std::string_view one, std::string_view many);

/// A text of a file as it may be shown: control characters, which could steer a terminal, and bytes that are no UTF-8
/// become \xNN.
std::string printable(std::string_view text);

/// The length in bytes of the UTF-8 character that a text begins with; 0 when it begins with none.
std::size_t utf8Length(std::string_view text);

/// Columns that a text of UTF-8 takes on a terminal, a character counted as one.
std::size_t columns(std::string_view text);

} // namespace meridyn::tool
