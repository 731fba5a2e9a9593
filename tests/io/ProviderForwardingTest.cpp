#include "support/RecordingProvider.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>

namespace meridyn {
namespace {

/// Room for a few values of any type; hands itself out as a buffer of whatever type is asked for.
struct Room {
    alignas(std::max_align_t) std::array<unsigned char, 64> bytes{};

    template <typename T>
    operator T*()
    {
        return static_cast<T*>(static_cast<void*>(bytes.data()));
    }
    float* floats() { return *this; }
    double* doubles() { return *this; }
};

// ---- one value of one element

struct ScalarCase {
    const char* name;
    long long (*call)(const KelProvider&);
    const char* arrives;
    long long unread; // the answer when the range form does not give exactly one value
};

// clang-format off
#define KEL_SCALAR(OPERATION, ARRIVES, UNREAD) \
    {#OPERATION, [](const KelProvider& r) -> long long { return static_cast<long long>(r.OPERATION(12)); }, ARRIVES "(12, 12, 1)", UNREAD}
const ScalarCase scalarCases[] = {
    KEL_SCALAR(getNodeCountForEdge,       "getNodeCountsForEdgesInRange",      0),
    KEL_SCALAR(getNodeCountForFace,       "getNodeCountsForFacesInRange",      0),
    KEL_SCALAR(getCell0ForFace,           "getCell0sForFacesInRange",          0),
    KEL_SCALAR(getCell1ForFace,           "getCell1sForFacesInRange",          0),
    KEL_SCALAR(getShadowFaceIdForFace,    "getShadowFaceIdsForFacesInRange",   0),
    KEL_SCALAR(getChildFaceCountForFace,  "getChildFaceCountsForFacesInRange", 0),
    KEL_SCALAR(getTypeForCell,            "getTypesForCellsInRange",          -1),
    KEL_SCALAR(getNodeCountForCell,       "getNodeCountsForCellsInRange",      0),
    KEL_SCALAR(getFaceCountForCell,       "getNodeCountsForCellsInRange",      0), // not the face counts
    KEL_SCALAR(getPartitionIdForCell,     "getPartitionIdsForCellsInRange",    0),
    KEL_SCALAR(getChildCellCountForCell,  "getChildCellCountsForCellsInRange", 0),
};
#undef KEL_SCALAR
// clang-format on

TEST(ProviderForwarding, ScalarElementFormGivesTheOneValueOfTheRangeForm)
{
    const RecordingProvider reader;
    for (const ScalarCase& row : scalarCases) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.call(reader), 41);
        EXPECT_EQ(reader.calls(), row.arrives);
    }
}

TEST(ProviderForwarding, ScalarElementFormGivesNothingUnlessExactlyOneValueCame)
{
    RecordingProvider reader;
    for (const unsigned64 stored : {unsigned64{0}, unsigned64{2}, ~unsigned64{0}}) {
        reader.stored = stored;
        for (const ScalarCase& row : scalarCases) {
            SCOPED_TRACE(row.name);
            EXPECT_EQ(row.call(reader), row.unread) << "stored " << stored;
            EXPECT_EQ(reader.calls(), row.arrives);
        }
    }
}

TEST(ProviderForwarding, ScalarElementFormKeepsTheSignOfNarrowValues)
{
    RecordingProvider reader;
    reader.value = -3;
    EXPECT_EQ(reader.getNodeCountForFace(1), -3);
    EXPECT_EQ(reader.getPartitionIdForCell(1), -3);
    EXPECT_EQ(reader.getTypeForCell(1), static_cast<KelCellType>(-3));
}

TEST(ProviderForwarding, LargestElementIdPassesUncut)
{
    const RecordingProvider reader;
    reader.getCell0ForFace(~unsigned64{0});
    EXPECT_EQ(reader.calls(), "getCell0sForFacesInRange(18446744073709551615, 18446744073709551615, 1)");
}

// ---- several values of one element, and zones

struct BufferCase {
    const char* name;
    unsigned64 (*call)(const KelProvider&, int id, Room&);
    const char* arrives;
};

// clang-format off
#define KEL_BUFFER(OPERATION, ROOM, ARRIVES) \
    {#OPERATION, [](const KelProvider& r, int id, Room& room) { return r.OPERATION(id, ROOM, 9); }, ARRIVES}
const BufferCase elementCases[] = {
    KEL_BUFFER(getCoordinatesForNode,  room.floats(),  "getCoordinatesForNodesInRange"),
    KEL_BUFFER(getCoordinatesForNode,  room.doubles(), "getCoordinatesForNodesInRange"),
    KEL_BUFFER(getNodeIdsForEdge,      room,           "getNodeIdsForEdgesInRange"),
    KEL_BUFFER(getNodeIdsForFace,      room,           "getNodeIdsForFacesInRange"),
    KEL_BUFFER(getChildFaceIdsForFace, room,           "getChildFaceIdsForFacesInRange"),
    KEL_BUFFER(getNodeIdsForCell,      room,           "getNodeIdsForCellsInRange"),
    KEL_BUFFER(getFaceIdsForCell,      room,           "getFaceIdsForCellsInRange"),
    KEL_BUFFER(getChildCellIdsForCell, room,           "getChildCellIdsForCellsInRange"),
};

const BufferCase zoneCases[] = {
    KEL_BUFFER(getCoordinatesForNodesInZone,              room.floats(),  "getCoordinatesForNodesInRange"),
    KEL_BUFFER(getCoordinatesForNodesInZone,              room.doubles(), "getCoordinatesForNodesInRange"),
    KEL_BUFFER(getNodeCountsForEdgesInZone,               room,           "getNodeCountsForEdgesInRange"),
    KEL_BUFFER(getNodeIdsForEdgesInZone,                  room,           "getNodeIdsForEdgesInRange"),
    KEL_BUFFER(getNodeCountsForFacesInZone,               room,           "getNodeCountsForFacesInRange"),
    KEL_BUFFER(getNodeIdsForFacesInZone,                  room,           "getNodeIdsForFacesInRange"),
    KEL_BUFFER(getCell0sForFacesInZone,                   room,           "getCell0sForFacesInRange"),
    KEL_BUFFER(getCell1sForFacesInZone,                   room,           "getCell1sForFacesInRange"), // unlike the writer's
    KEL_BUFFER(getShadowFaceIdsForFacesInZone,            room,           "getShadowFaceIdsForFacesInRange"),
    KEL_BUFFER(getChildFaceCountsForFacesInZone,          room,           "getChildFaceCountsForFacesInRange"),
    KEL_BUFFER(getChildFaceIdsForFacesInZone,             room,           "getChildFaceIdsForFacesInRange"),
    KEL_BUFFER(getTypesForCellsInZone,                    room,           "getTypesForCellsInRange"),
    KEL_BUFFER(getNodeCountsForCellsInZone,               room,           "getNodeCountsForCellsInRange"),
    KEL_BUFFER(getNodeIdsForCellsInZone,                  room,           "getNodeIdsForCellsInRange"),
    KEL_BUFFER(getFaceCountsForCellsInZone,               room,           "getFaceCountsForCellsInRange"),
    KEL_BUFFER(getFaceIdsForCellsInZone,                  room,           "getFaceIdsForCellsInRange"),
    KEL_BUFFER(getPartitionIdsForCellsInZone,             room,           "getPartitionIdsForCellsInRange"),
    KEL_BUFFER(getChildCellCountsForCellsInZone,          room,           "getChildCellCountsForCellsInRange"),
    KEL_BUFFER(getChildCellIdsForCellsInZone,             room,           "getChildCellIdsForCellsInRange"),
    KEL_BUFFER(getCaseSectionDataForElementsInZone,       room,           "getCaseSectionDataForElementsInRange"),
    KEL_BUFFER(getValuesOfPhaseVariableForElementsInZone, room.floats(),  "getValuesOfPhaseVariableForElementsInRange"),
    KEL_BUFFER(getValuesOfPhaseVariableForElementsInZone, room.doubles(), "getValuesOfPhaseVariableForElementsInRange"),
};
#undef KEL_BUFFER
// clang-format on

/// Each row brings the caller's own buffer and capacity to the range form, and its answer back.
template <std::size_t N>
void expectForwarded(RecordingProvider& reader, const BufferCase (&rows)[N], int id, const std::string& range)
{
    Room room;
    for (const BufferCase& row : rows) {
        SCOPED_TRACE(row.name);
        for (const unsigned64 stored : {unsigned64{0}, unsigned64{7}}) {
            reader.stored = stored;
            EXPECT_EQ(row.call(reader, id, room), stored);
            EXPECT_EQ(reader.calls(), row.arrives + ("(" + range + ", 9)"));
            EXPECT_EQ(reader.buffer(), room.bytes.data());
        }
    }
}

TEST(ProviderForwarding, ArrayElementFormHandsItsBufferOn)
{
    RecordingProvider reader;
    expectForwarded(reader, elementCases, 12, "12, 12");
}

TEST(ProviderForwarding, ZoneFormGivesTheRangeOfTheZone)
{
    RecordingProvider reader;
    reader.setZoneIds(KEL_FACE_ZONE, {7, -4});
    reader.setZoneSizeInfo(7, KEL_ZONE_FIRST_ID, 11);
    reader.setZoneSizeInfo(7, KEL_ZONE_LAST_ID, 20);
    reader.setZoneSizeInfo(-4, KEL_ZONE_FIRST_ID, 5000000000);
    reader.setZoneSizeInfo(-4, KEL_ZONE_LAST_ID, 5000000001);
    expectForwarded(reader, zoneCases, 7, "11, 20");
    expectForwarded(reader, zoneCases, -4, "5000000000, 5000000001");
}

TEST(ProviderForwarding, UnknownZoneArrivesAsZeroAndZero)
{
    RecordingProvider reader;
    ::testing::internal::CaptureStdout(); // KelBase warns of the zone
    expectForwarded(reader, zoneCases, 9, "0, 0");
    ::testing::internal::GetCapturedStdout();
}

TEST(ProviderForwarding, DroppedZoneArrivesAsZeroAndZero)
{
    RecordingProvider reader;
    reader.setZoneIds(KEL_CELL_ZONE, {7});
    reader.setZoneSizeInfo(7, KEL_ZONE_FIRST_ID, 11);
    reader.setZoneSizeInfo(7, KEL_ZONE_LAST_ID, 20);
    reader.setZoneIds(KEL_CELL_ZONE, {8});
    expectForwarded(reader, zoneCases, 7, "0, 0");
}

TEST(ProviderForwarding, UniformZoneQueryAsksTheRangeQuery)
{
    RecordingProvider reader;
    reader.setZoneIds(KEL_FACE_ZONE, {7});
    reader.setZoneSizeInfo(7, KEL_ZONE_FIRST_ID, 11);
    reader.setZoneSizeInfo(7, KEL_ZONE_LAST_ID, 20);
    short count = 0;
    EXPECT_TRUE(reader.hasUniformNodeCountForFacesInZone(7, &count));
    EXPECT_EQ(reader.calls(), "hasUniformNodeCountForFacesInRange(11, 20, 1)");
    EXPECT_EQ(reader.buffer(), &count);
    EXPECT_EQ(count, 41);
    EXPECT_TRUE(reader.hasUniformNodeCountForEdgesInZone(7, &count));
    EXPECT_EQ(reader.calls(), "hasUniformNodeCountForEdgesInRange(11, 20, 1)");
    reader.stored = 0;
    EXPECT_FALSE(reader.hasUniformNodeCountForFacesInZone(7, &count));
    EXPECT_FALSE(reader.hasUniformNodeCountForEdgesInZone(7, &count));
}

// ---- overriding one overload

/// A format that reads one overload of a family and names the others, as every format must.
class OneOverload : public OpenProvider {
public:
    using KelProvider::getCoordinatesForNodesInRange;
    unsigned64 getCoordinatesForNodesInRange(unsigned64, unsigned64, double* xyz, unsigned64) const override
    {
        xyz[0] = 0.5;
        return 1;
    }

    using KelProvider::getOtherDataForSet;
    unsigned64 getOtherDataForSet(const std::string&, int*, unsigned64) const override { return 3; }
};

TEST(ProviderForwarding, OverloadsBesideAnOverriddenOneStayDefaults)
{
    const OneOverload reader;
    double wide = 0;
    float narrow = 0;
    EXPECT_EQ(reader.getCoordinatesForNode(1, &wide, 1), 1U);
    EXPECT_EQ(wide, 0.5);
    EXPECT_EQ(reader.getCoordinatesForNode(1, &narrow, 1), 0U);
    EXPECT_EQ(reader.getCoordinatesForNodesInRange(1, 1, &narrow, 1), 0U);
    int number = 0;
    long other = 0;
    EXPECT_EQ(reader.getOtherDataForSet("block", &number, 1), 3U);
    EXPECT_EQ(reader.getOtherDataForSet("block", &other, 1), 0U);
}

/// A format with face counts of its own.
class OwnFaceCounts : public RecordingProvider {
public:
    short getFaceCountForCell(unsigned64) const override { return 6; }
};

TEST(ProviderForwarding, FormatMayGiveItsOwnFaceCountOfACell)
{
    const OwnFaceCounts reader;
    EXPECT_EQ(reader.getFaceCountForCell(1), 6);
    EXPECT_EQ(reader.getNodeCountForCell(1), 41);
}

} // namespace
} // namespace meridyn
