#include "KelBase.h"
#include "KelMessage.h"
#include "KelTypes.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace meridyn {

// The numbers are part of the interface; none of these may ever be adapted to the code.

struct Number {
    const char* name;
    int actual;
    int expected;
};

// clang-format off
const Number numbers[] = {
    {"NODE_ZONE", KEL_NODE_ZONE, 0}, {"EDGE_ZONE", KEL_EDGE_ZONE, 1},
    {"FACE_ZONE", KEL_FACE_ZONE, 2}, {"CELL_ZONE", KEL_CELL_ZONE, 3},
    {"PARTITIONED_POST", KEL_PARTITIONED_POST, 2},
    {"CASE", KEL_CASE, 0}, {"DATA", KEL_DATA, 1},
    {"UPDATE_NONE", KelBase::KEL_UPDATE_NONE, 0}, {"UPDATE_CASE", KelBase::KEL_UPDATE_CASE, 1},
    {"UPDATE_DATA", KelBase::KEL_UPDATE_DATA, 2}, {"UPDATE_CASE_AND_DATA", KelBase::KEL_UPDATE_CASE_AND_DATA, 3},
    {"MESSAGE_FATAL", KelMessage::KEL_MESSAGE_FATAL, 0}, {"MESSAGE_ERROR", KelMessage::KEL_MESSAGE_ERROR, 1},
    {"MESSAGE_WARNING", KelMessage::KEL_MESSAGE_WARNING, 2}, {"MESSAGE_INFO", KelMessage::KEL_MESSAGE_INFO, 3},
    {"MESSAGE_INTERNAL", KelMessage::KEL_MESSAGE_INTERNAL, 4},
    {"ZONE_FIRST_ID", KEL_ZONE_FIRST_ID, 0}, {"ZONE_LAST_ID", KEL_ZONE_LAST_ID, 1},
    {"ZONE_ELEMENT_COUNT", KEL_ZONE_ELEMENT_COUNT, 2}, {"ZONE_EXTRA_SIZE", KEL_ZONE_EXTRA_SIZE, 3},
    {"ZONE_STRING_0", KEL_ZONE_STRING_0, 0}, {"ZONE_STRING_1", KEL_ZONE_STRING_1, 1},
    {"MESH_DIMENSION", KEL_MESH_DIMENSION, 0}, {"MESH_SIZE_1", KEL_MESH_SIZE_1, 1},
    {"MESH_SIZE_2", KEL_MESH_SIZE_2, 2}, {"MESH_SIZE_3", KEL_MESH_SIZE_3, 3}, {"MESH_SIZE_4", KEL_MESH_SIZE_4, 4},
    {"NODE_ZONE_INFO_0", KEL_NODE_ZONE_INFO_0, 0},
    {"EDGE_ZONE_INFO_0", KEL_EDGE_ZONE_INFO_0, 0}, {"EDGE_ZONE_INFO_1", KEL_EDGE_ZONE_INFO_1, 1},
    {"CELL_ZONE_INFO_0", KEL_CELL_ZONE_INFO_0, 0}, {"CELL_ZONE_INFO_1", KEL_CELL_ZONE_INFO_1, 1},
    {"FACE_ZONE_INFO_0", KEL_FACE_ZONE_INFO_0, 0}, {"FACE_ZONE_INFO_1", KEL_FACE_ZONE_INFO_1, 1},
    {"FACE_ZONE_INFO_2", KEL_FACE_ZONE_INFO_2, 2}, {"FACE_ZONE_INFO_3", KEL_FACE_ZONE_INFO_3, 3},
    {"FACE_ZONE_INFO_4", KEL_FACE_ZONE_INFO_4, 4}, {"FACE_ZONE_INFO_TYPE", KEL_FACE_ZONE_INFO_TYPE, 5},
    {"FACE_ZONE_PROP_0", KEL_FACE_ZONE_PROP_0, 0}, {"FACE_ZONE_PROP_1", KEL_FACE_ZONE_PROP_1, 1},
    {"FACE_ZONE_PROP_2", KEL_FACE_ZONE_PROP_2, 2}, {"FACE_ZONE_PROP_3", KEL_FACE_ZONE_PROP_3, 3},
    {"FACE_ZONE_PROP_4", KEL_FACE_ZONE_PROP_4, 4}, {"FACE_ZONE_PROP_5", KEL_FACE_ZONE_PROP_5, 5},
    {"FACE_ZONE_PROP_6", KEL_FACE_ZONE_PROP_6, 6},
    {"READABLE_UNKNOWN", KEL_READABLE_UNKNOWN, -1}, {"READABLE", KEL_READABLE, 0},
    {"READABLE_NEWER_MINOR", KEL_READABLE_NEWER_MINOR, 1},
    {"NOT_READABLE_NEWER_MAJOR", KEL_NOT_READABLE_NEWER_MAJOR, 2},
};
// clang-format on

TEST(Enumerations, HaveTheirNumbers)
{
    for (const Number& number : numbers) {
        EXPECT_EQ(number.actual, number.expected) << number.name;
    }
}

template <class Enumeration>
constexpr bool isOpenInt =
    std::is_same_v<std::underlying_type_t<Enumeration>, int>&& std::is_convertible_v<Enumeration, int>; // unscoped

TEST(Enumerations, AreUnscopedInts)
{
    static_assert(isOpenInt<KelZoneCategory> && isOpenInt<KelTargetCategory> && isOpenInt<KelDataClass>);
    static_assert(isOpenInt<KelZoneSizeType> && isOpenInt<KelZoneStringInfoType> && isOpenInt<KelMeshSizeType>);
    static_assert(isOpenInt<KelNodeZoneInfoType> && isOpenInt<KelEdgeZoneInfoType>);
    static_assert(isOpenInt<KelFaceZoneInfoType> && isOpenInt<KelCellZoneInfoType>);
    static_assert(isOpenInt<KelFaceZonePropType> && isOpenInt<KelFaceZoneType> && isOpenInt<KelEdgeZoneType>);
    static_assert(isOpenInt<KelReadable> && isOpenInt<KelPlainDataType> && isOpenInt<KelDataPrecisionType>);
    static_assert(isOpenInt<KelCellType> && isOpenInt<KelIOMode> && isOpenInt<KelDataCacheMode>);
    static_assert(isOpenInt<KelMessage::Type> && isOpenInt<KelBase::UpdateMethod>);
    static_assert(sizeof(unsigned64) == 8 && std::is_unsigned_v<unsigned64>);
    static_assert(sizeof(signed64) == 8 && !std::is_same_v<signed64, long>);
    EXPECT_EQ(KelBase::_defaultSettingsPath, "settings");
}

} // namespace meridyn
