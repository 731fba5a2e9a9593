#pragma once

#include "KelTypes.h"

#include <cmath>
#include <limits>
#include <type_traits>

/// The ten value types in the order of KelPlainDataType. KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE) expands KEL_DEFINE(T) once
/// for each; undefine KEL_DEFINE right behind it.
#define KEL_FOR_EACH_VALUE_TYPE(DEFINE)                                                                                \
    DEFINE(unsigned char)                                                                                              \
    DEFINE(char)                                                                                                       \
    DEFINE(short)                                                                                                      \
    DEFINE(unsigned int)                                                                                               \
    DEFINE(int)                                                                                                        \
    DEFINE(long)                                                                                                       \
    DEFINE(meridyn::unsigned64)                                                                                        \
    DEFINE(meridyn::signed64)                                                                                          \
    DEFINE(float)                                                                                                      \
    DEFINE(double)

namespace meridyn {

/// The KelPlainDataType of one of the ten value types.
template <class T>
constexpr KelPlainDataType plainTypeOf()
{
    int type = 0;
    int found = -1;
#define KEL_DEFINE(Known)                                                                                              \
    found = std::is_same_v<T, Known> ? type : found;                                                                   \
    ++type;
    KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE
    return static_cast<KelPlainDataType>(found);
}

/// Calls `visit` with a null pointer to the value type that a KelPlainDataType stands for. False for none of the ten.
template <class Visit>
bool visitPlainType(KelPlainDataType type, const Visit& visit)
{
    switch (type) {
#define KEL_DEFINE(T)                                                                                                  \
    case plainTypeOf<T>():                                                                                             \
        visit(static_cast<T*>(nullptr));                                                                               \
        return true;
        KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE
    }
    return false;
}

/// A value in another type. Integers wrap as casts do; floating-point values beyond an integer's range become its
/// limit, nan becomes 0.
template <class To, class From>
To convertedValue(From value)
{
    if constexpr (std::is_floating_point_v<From> && std::is_integral_v<To>) {
        if (std::isnan(value))
            return 0;
        // 2^digits and not the largest value, which may not be exact as a floating-point number
        const From limit = std::ldexp(static_cast<From>(1), std::numeric_limits<To>::digits);
        if (value >= limit)
            return std::numeric_limits<To>::max();
        if (value <= static_cast<From>(std::numeric_limits<To>::min()))
            return std::numeric_limits<To>::min();
    }
    return static_cast<To>(value);
}

} // namespace meridyn
