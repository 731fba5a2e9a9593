#pragma once

#include "KelTypes.h"

#include <algorithm>

namespace meridyn {

/// Puts one value per element of a range, as many as fit; their number.
template <class T, class Get>
unsigned64 fillSingle(unsigned64 firstId, unsigned64 lastId, T* buffer, unsigned64 capacity, const Get& get)
{
    const unsigned64 count = std::min(lastId - firstId + 1, capacity);
    for (unsigned64 n = 0; n < count; ++n)
        buffer[n] = static_cast<T>(get(firstId - 1 + n)); // labels count from 0
    return count;
}

} // namespace meridyn
