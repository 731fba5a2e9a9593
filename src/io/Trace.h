#pragma once

#include "KelTypes.h"
#include "text/Printing.h"

#include <string>
#include <type_traits>
#include <vector>

/// What the bare writer says on standard output. Each line is flushed, so that a trace is complete up to a crash.
namespace meridyn::trace {

/// An empty line.
inline void emptyLine()
{
    printFlushedLine("");
}

/// @name A part of a line as text
/// Numbers are written here, so that neither the locale nor the flags that the program gave the stream change a trace.
/// @{
template <typename Number, std::enable_if_t<std::is_integral_v<Number>, int> = 0>
std::string text(Number number)
{
    return std::to_string(number);
}

inline const std::string& text(const std::string& part)
{
    return part;
}

inline const char* text(const char* part)
{
    return part;
}
/// @}

/// The parts in a row, then an empty line.
template <typename... Parts>
void line(const Parts&... parts)
{
    std::string whole;
    (whole.append(text(parts)), ...);
    printFlushedLine(whole);
    emptyLine();
}

/// The ids of a range behind a label that ends in "(".
inline void range(const char* label, unsigned64 firstId, unsigned64 lastId)
{
    line(label, firstId, ", ", lastId, ")");
}

/// The number of elements of a range behind a label that ends in "(".
inline void count(const std::string& label, unsigned64 firstId, unsigned64 lastId)
{
    line(label, lastId - firstId + 1, ")");
}

/// "  <label> = <items>." unless there are none, then an empty line in any case.
template <typename T>
void list(const std::string& label, const std::vector<T>& items)
{
    if (!items.empty()) {
        std::string line = "  " + label + " = ";
        const char* separator = "";
        for (const T& item : items) {
            line.append(separator).append(text(item));
            separator = ", ";
        }
        printFlushedLine(line + ".");
    }
    emptyLine();
}

/// The zones that a start marker names.
inline void zones(const std::vector<int>& zoneIds)
{
    list("Zones", zoneIds);
}

} // namespace meridyn::trace
