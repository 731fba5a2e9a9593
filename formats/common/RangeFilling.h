#pragma once

#include "KelValues.h"

#include <algorithm>
#include <utility>

namespace meridyn {

/// Stores one value for each id of a range, converted, as many as fit: their number. Nothing for a buffer of no type.
///
/// @param get  gives the value of an id
template <class Get>
unsigned64 fillSingle(unsigned64 first, unsigned64 last, const KelBuffer& buffer, const Get& get)
{
    const unsigned64 count = std::min(last - first + 1, buffer.capacity);
    const bool isStored = buffer.visit([&](auto* to) {
        using T = std::remove_pointer_t<decltype(to)>;
        for (unsigned64 n = 0; n < count; ++n)
            to[n] = convertedValue<T>(get(first + n));
    });
    return isStored ? count : 0;
}

/// Stores all values of each id of a range, converted, those of as many ids as fit: the number of values.
///
/// @param list  gives the begin and the end of the values of an id, which stay until it is called again
template <class List>
unsigned64 fillLists(unsigned64 first, unsigned64 last, const KelBuffer& buffer, const List& list)
{
    unsigned64 stored = 0;
    buffer.visit([&](auto* to) {
        using T = std::remove_pointer_t<decltype(to)>;
        for (unsigned64 id = first; id <= last; ++id) {
            const auto [begin, end] = list(id);
            if (static_cast<unsigned64>(end - begin) > buffer.capacity - stored)
                break;
            for (auto at = begin; at != end; ++at)
                to[stored++] = convertedValue<T>(*at);
        }
    });
    return stored;
}

} // namespace meridyn
