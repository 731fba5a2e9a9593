#pragma once

#include "formats/hdf5/file/Hdf5Handle.h"
#include "KelValues.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace meridyn::hdf5 {

/// How values lie in the file: little-endian, fixed width.
enum class Stored : int {
    U8,
    I8,
    I16,
    U32,
    I32,
    I64,
    U64,
    F32,
    F64
};

std::size_t sizeOf(Stored type);
hid_t fileTypeOf(Stored type);

/// What an HDF5 type is for us.
/// @throws FormatError for anything else
Stored storedTypeOf(hid_t type);

template <class T>
constexpr Stored storedAs()
{
    if constexpr (std::is_floating_point_v<T>)
        return sizeof(T) == 4 ? Stored::F32 : Stored::F64;
    else if constexpr (std::is_signed_v<T>)
        return sizeof(T) == 1 ? Stored::I8 : sizeof(T) == 2 ? Stored::I16 : sizeof(T) == 4 ? Stored::I32 : Stored::I64;
    else
        return sizeof(T) == 1 ? Stored::U8 : sizeof(T) == 4 ? Stored::U32 : Stored::U64;
}

/// Type in which plain data are stored; long is 64 bits wide everywhere.
Stored storedTypeOfPlain(KelPlainDataType type);
bool isPlainType(int type);

/// Converts `count` values that do not overlap. Integers wrap as casts do, floating-point values
/// beyond an integer's range become its limit, nan becomes 0.
using Converter = void (*)(const void* from, void* to, std::size_t count);

/// Values in the caller's memory that are to be written, and how they become the stored type.
struct Source {
    const void* values = nullptr;
    std::size_t size = 0; ///< of one value
    Converter convert = nullptr;
    bool isSame = false; ///< the bytes can go as they are
};

/// Room in the caller's memory for values that are to be read.
struct Target {
    void* values = nullptr;
    std::size_t size = 0;
    Converter convert = nullptr;
    bool isSame = false;
};

/// Values that become a stored type.
Source sourceOf(const KelValues& values, Stored type);
template <class T>
Source sourceOf(const T* values, Stored type)
{
    static_assert(plainTypeOf<T>() != -1, "one of the ten value types");
    return sourceOf(KelValues(values, 0), type);
}

/// `count` values from the one at `first` on.
KelValues partOf(const KelValues& values, std::uint64_t first, std::uint64_t count);

/// Room that is filled with values of a stored type.
Target targetOf(const KelBuffer& values, Stored type);
template <class T>
Target targetOf(T* values, Stored type)
{
    return targetOf(KelBuffer(values, 0), type);
}

/// The room behind the first `count` values.
KelBuffer restOf(const KelBuffer& values, std::uint64_t count);

} // namespace meridyn::hdf5
