#include "ValueType.h"

#include "formats/hdf5/file/FormatError.h"
#include "KelValueTypes.h"

#include <bit>
#include <cstring>
#include <string>

namespace meridyn::hdf5 {

static_assert(std::endian::native == std::endian::little, "arrays go to the file as they lie in memory");

namespace {

template <class From, class To>
void convertValues(const void* from, void* to, std::size_t count)
{
    const auto* in = static_cast<const From*>(from);
    auto* out = static_cast<To*>(to);
    for (std::size_t i = 0; i < count; ++i)
        out[i] = convertedValue<To>(in[i]);
}

template <class From>
Converter converterTo(Stored type)
{
    switch (type) {
    case Stored::U8:
        return convertValues<From, std::uint8_t>;
    case Stored::I8:
        return convertValues<From, std::int8_t>;
    case Stored::I16:
        return convertValues<From, std::int16_t>;
    case Stored::U32:
        return convertValues<From, std::uint32_t>;
    case Stored::I32:
        return convertValues<From, std::int32_t>;
    case Stored::I64:
        return convertValues<From, std::int64_t>;
    case Stored::U64:
        return convertValues<From, std::uint64_t>;
    case Stored::F32:
        return convertValues<From, float>;
    case Stored::F64:
        break;
    }
    return convertValues<From, double>;
}

template <class To>
Converter converterFrom(Stored type)
{
    switch (type) {
    case Stored::U8:
        return convertValues<std::uint8_t, To>;
    case Stored::I8:
        return convertValues<std::int8_t, To>;
    case Stored::I16:
        return convertValues<std::int16_t, To>;
    case Stored::U32:
        return convertValues<std::uint32_t, To>;
    case Stored::I32:
        return convertValues<std::int32_t, To>;
    case Stored::I64:
        return convertValues<std::int64_t, To>;
    case Stored::U64:
        return convertValues<std::uint64_t, To>;
    case Stored::F32:
        return convertValues<float, To>;
    case Stored::F64:
        break;
    }
    return convertValues<double, To>;
}

} // namespace

std::size_t sizeOf(Stored type)
{
    switch (type) {
    case Stored::U8:
    case Stored::I8:
        return 1;
    case Stored::I16:
        return 2;
    case Stored::U32:
    case Stored::I32:
    case Stored::F32:
        return 4;
    default:
        return 8;
    }
}

hid_t fileTypeOf(Stored type)
{
    switch (type) {
    case Stored::U8:
        return H5T_STD_U8LE;
    case Stored::I8:
        return H5T_STD_I8LE;
    case Stored::I16:
        return H5T_STD_I16LE;
    case Stored::U32:
        return H5T_STD_U32LE;
    case Stored::I32:
        return H5T_STD_I32LE;
    case Stored::I64:
        return H5T_STD_I64LE;
    case Stored::U64:
        return H5T_STD_U64LE;
    case Stored::F32:
        return H5T_IEEE_F32LE;
    case Stored::F64:
        break;
    }
    return H5T_IEEE_F64LE;
}

Stored storedTypeOf(hid_t type)
{
    const H5T_class_t kind = H5Tget_class(type);
    if (kind == H5T_INTEGER || kind == H5T_FLOAT)
        for (int i = 0; i <= static_cast<int>(Stored::F64); ++i)
            if (H5Tequal(type, fileTypeOf(static_cast<Stored>(i))) > 0)
                return static_cast<Stored>(i);
    throw FormatError("has a type of value that these files do not have");
}

bool isPlainType(int type)
{
    return type >= KEL_PLAIN_UNSIGNED_CHAR && type <= KEL_PLAIN_DOUBLE;
}

Stored storedTypeOfPlain(KelPlainDataType type)
{
    switch (type) {
    case KEL_PLAIN_UNSIGNED_CHAR:
        return Stored::U8;
    case KEL_PLAIN_CHAR:
        return Stored::I8;
    case KEL_PLAIN_SHORT:
        return Stored::I16;
    case KEL_PLAIN_UNSIGNED_INT:
        return Stored::U32;
    case KEL_PLAIN_INT:
        return Stored::I32;
    case KEL_PLAIN_LONG:
    case KEL_PLAIN_SIGNED64:
        return Stored::I64;
    case KEL_PLAIN_UNSIGNED64:
        return Stored::U64;
    case KEL_PLAIN_FLOAT:
        return Stored::F32;
    default:
        return Stored::F64;
    }
}

Source sourceOf(const KelValues& values, Stored type)
{
    Source source;
    values.visit([&]<class T>(const T* typed) {
        source = {typed, sizeof(T), converterTo<T>(type), storedAs<T>() == type};
    });
    return source;
}

KelValues partOf(const KelValues& values, std::uint64_t first, std::uint64_t count)
{
    const std::size_t size = sizeOf(storedTypeOfPlain(values.type));
    return {static_cast<const unsigned char*>(values.data) + first * size, count, values.type};
}

Target targetOf(const KelBuffer& values, Stored type)
{
    Target target{values.data, 0, [](const void*, void*, std::size_t) {}, false}; // for none of the ten types
    values.visit([&]<class T>(T* typed) {
        target = {typed, sizeof(T), converterFrom<T>(type), storedAs<T>() == type};
    });
    return target;
}

KelBuffer restOf(const KelBuffer& values, std::uint64_t count)
{
    const std::size_t size = sizeOf(storedTypeOfPlain(values.type));
    return {static_cast<unsigned char*>(values.data) + count * size, values.capacity - count, values.type};
}

} // namespace meridyn::hdf5
