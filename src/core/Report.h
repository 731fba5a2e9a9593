#pragma once

#include "text/Printing.h"

#include <string>

namespace meridyn {

/// Prints a line of KelBase with the offending zone id at the end, in the parenthesis that `text` opens.
inline void printInvalidId(const char* text, int zoneId)
{
    printLine(text + std::to_string(zoneId) + ").");
}

} // namespace meridyn
