#pragma once

#include <iostream>
#include <string>

namespace meridyn {

/// Prints a report of KelBase: one line on standard output. The text is built as a whole first, so that no number is
/// written in the stream's locale.
inline void printLine(const std::string& text)
{
    std::cout << text + '\n';
}

/// The same with the offending zone id at the end, in the parenthesis that `text` opens.
inline void printInvalidId(const char* text, int zoneId)
{
    printLine(text + std::to_string(zoneId) + ").");
}

} // namespace meridyn
