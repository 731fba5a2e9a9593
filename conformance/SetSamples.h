#pragma once

#include "Checks.h"
#include "KelValueTypes.h"

#include <limits>

// What the checks of sets, of set data and of particle tracks write.
namespace meridyn::conformance {

using Names = std::vector<std::string>;

inline constexpr unsigned64 memberCount = 7;
inline const std::vector<unsigned64> blockSizes = {4, 0, 3};
inline const std::vector<unsigned64> memberIds = {9, 2, 2, 30, 5, 6, 7}; // in their own order, repeats kept
inline const std::vector<unsigned64> lengths = {2, 0, 1, 3, 0, 0, 4};
inline constexpr unsigned64 lengthSum = 10;

/// Calls `visit(null pointer to the type, its number, its name)` for the ten value types.
template <class Visit>
void forTypes(const Visit& visit)
{
    for (int type = KEL_PLAIN_UNSIGNED_CHAR; type <= KEL_PLAIN_DOUBLE; ++type)
        visitPlainType(static_cast<KelPlainDataType>(type), [&](auto* null) {
            visit(null, static_cast<KelPlainDataType>(type), "type " + std::to_string(type));
        });
}

/// Values per member of a variable of that type.
inline unsigned64 perMember(KelPlainDataType type)
{
    return type % 2 == 0 ? 1 : 3;
}

inline void sameType(Case& test, const std::string& what, KelPlainDataType expected, KelPlainDataType found)
{
    test.same("type of " + what, std::vector<int>{expected}, {found});
}

template <class T>
std::vector<T> narrowed(const std::vector<unsigned64>& values)
{
    return {values.begin(), values.end()};
}

/// The type in which the lengths beside values of that type come.
inline KelPlainDataType lengthTypeOf(KelPlainDataType type)
{
    static const KelPlainDataType types[] = {KEL_PLAIN_INT, KEL_PLAIN_SHORT, KEL_PLAIN_UNSIGNED64};
    return types[type % 3];
}

} // namespace meridyn::conformance
