#pragma once

#include "KelValueTypes.h"

#include <functional>

namespace meridyn {

/// Values of one of the ten types in the memory of a caller, who hands them over. Nothing is owned.
struct KelValues {
    const void* data;      ///< the first value, may be null
    unsigned64 count;      ///< how many values
    KelPlainDataType type; ///< of each; none of the ten types: there are no values

    /// Values whose type is known to the compiler.
    template <class T>
    KelValues(const T* values, unsigned64 valueCount) : KelValues(values, valueCount, plainTypeOf<T>())
    {}

    /// Values whose type is only known when the program runs.
    KelValues(const void* values, unsigned64 valueCount, KelPlainDataType valueType)
        : data(values), count(valueCount), type(valueType)
    {}

    /// Calls `work` with the pointer in its own type. False, and nothing is called, for none of the ten types.
    template <class Work>
    bool visit(const Work& work) const
    {
        return visitPlainType(
            type, [&](auto* null) { work(static_cast<const std::remove_pointer_t<decltype(null)>*>(data)); });
    }
};

/// Room for values of one of the ten types in the memory of a caller, who asks for them. Nothing is owned.
struct KelBuffer {
    void* data;            ///< where the first value goes
    unsigned64 capacity;   ///< how many values fit
    KelPlainDataType type; ///< into which they are converted; none of the ten types: nothing is stored

    /// Room whose type is known to the compiler.
    template <class T>
    KelBuffer(T* values, unsigned64 room) : KelBuffer(values, room, plainTypeOf<T>())
    {}

    /// Room whose type is only known when the program runs.
    KelBuffer(void* values, unsigned64 room, KelPlainDataType valueType) : data(values), capacity(room), type(valueType)
    {}

    /// Calls `work` with the pointer in its own type. False, and nothing is called, for none of the ten types.
    template <class Work>
    bool visit(const Work& work) const
    {
        return visitPlainType(type, [&](auto* null) { work(static_cast<decltype(null)>(data)); });
    }
};

/// Makes room for as many values as there are, and tells where.
using KelRoom = std::function<KelBuffer(unsigned64 count)>;

} // namespace meridyn
