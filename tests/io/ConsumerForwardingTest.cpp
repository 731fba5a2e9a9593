#include "io/ConsumerRows.h"
#include "support/RecordingConsumer.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>

namespace meridyn {
namespace {

const unsigned64 ids[] = {41, 42, 43};
const short counts[] = {4, 5, 6};
const int partitions[] = {-1, 0, 8};
const double doubles[] = {0.5, 1.5, 2.5};
const float floats[] = {0.25F, 1.25F, 2.25F};
const KelCellType types[] = {KEL_CELL_HEXAHEDRON, KEL_CELL_PRISM, KEL_CELL_POLYHEDRON};
const char bytes[] = "abc";

// clang-format off
const ConsumerRow rows[] = {
    KEL_ROW(setCoordinatesForNode, (12, doubles, 3), "setCoordinatesForNodesInRange(12, 12, double [0.5 1.5 2.5], 3)"),
    KEL_ROW(setCoordinatesForNode, (12, floats, 3), "setCoordinatesForNodesInRange(12, 12, float [0.25 1.25 2.25], 3)"),
    KEL_ROW(setCoordinatesForNodesInZone, (1, doubles, 3), "setCoordinatesForNodesInRange(1, 500, double [0.5 1.5 2.5], 3)"),
    KEL_ROW(setCoordinatesForNodesInZone, (1, floats, 3), "setCoordinatesForNodesInRange(1, 500, float [0.25 1.25 2.25], 3)"),
    KEL_ROW(setCoordinatesForNodesInZone, (9, doubles, 3), "setCoordinatesForNodesInRange(0, 0, double [0.5 1.5 2.5], 3)"),

    KEL_ROW(setUniformNodeCountForEdgesInZone, (3, 2), "setUniformNodeCountForEdgesInRange(101, 104, 2)"),
    KEL_ROW(setUniformNodeCountForEdgesInZone, (9, 2), "setUniformNodeCountForEdgesInRange(0, 0, 2)"),
    KEL_ROW(setNodeCountForEdge, (12, 2), "setNodeCountsForEdgesInRange(12, 12, [2], 1)"),
    KEL_ROW(setNodeCountsForEdgesInZone, (3, counts, 3), "setNodeCountsForEdgesInRange(101, 104, [4 5 6], 3)"),
    KEL_ROW(setNodeIdsForEdge, (12, ids, 2), "setNodeIdsForEdgesInRange(12, 12, [41 42], 2)"),
    KEL_ROW(setNodeIdsForEdgesInZone, (3, ids, 3), "setNodeIdsForEdgesInRange(101, 104, [41 42 43], 3)"),

    KEL_ROW(setUniformNodeCountForFacesInZone, (7, 4), "setUniformNodeCountForFacesInRange(11, 20, 4)"),
    KEL_ROW(setNodeCountForFace, (12, -3), "setNodeCountsForFacesInRange(12, 12, [-3], 1)"),
    KEL_ROW(setNodeCountsForFacesInZone, (7, counts, 3), "setNodeCountsForFacesInRange(11, 20, [4 5 6], 3)"),
    KEL_ROW(setNodeIdsForFace, (12, ids, 3), "setNodeIdsForFacesInRange(12, 12, [41 42 43], 3)"),
    KEL_ROW(setNodeIdsForFacesInZone, (7, ids, 3), "setNodeIdsForFacesInRange(11, 20, [41 42 43], 3)"),
    KEL_ROW(setCell0ForFace, (12, 41), "setCell0sForFacesInRange(12, 12, [41], 1)"),
    KEL_ROW(setCell0sForFacesInZone, (7, ids, 3), "setCell0sForFacesInRange(11, 20, [41 42 43], 3)"),
    KEL_ROW(setCell0sForFacesInZone, (9, ids, 3), "setCell0sForFacesInRange(0, 0, [41 42 43], 3)"),
    KEL_ROW(setCell1ForFace, (12, 41), "setCell1sForFacesInRange(12, 12, [41], 1)"),
    KEL_ROW(setCell1sForFacesInZone, (7, ids, 3), "setCell0sForFacesInRange(11, 20, [41 42 43], 3)"), // kept: cell 0
    KEL_ROW(setCell1sForFacesInZone, (9, ids, 3), "setCell0sForFacesInRange(0, 0, [41 42 43], 3)"),   // kept: cell 0
    KEL_ROW(setShadowFaceIdForFace, (12, 18446744073709551615U), "setShadowFaceIdsForFacesInRange(12, 12, [18446744073709551615], 1)"),
    KEL_ROW(setShadowFaceIdsForFacesInZone, (7, ids, 3), "setShadowFaceIdsForFacesInRange(11, 20, [41 42 43], 3)"),
    KEL_ROW(setChildFaceCountForFace, (12, 4), "setChildFaceCountsForFacesInRange(12, 12, [4], 1)"),
    KEL_ROW(setChildFaceCountsForFacesInZone, (7, counts, 3), "setChildFaceCountsForFacesInRange(11, 20, [4 5 6], 3)"),
    KEL_ROW(setUniformChildFaceCountForFacesInZone, (7, 4), "setUniformChildFaceCountForFacesInRange(11, 20, 4)"),
    KEL_ROW(setChildFaceIdsForFace, (12, ids, 1), "setChildFaceIdsForFacesInRange(12, 12, [41], 1)"),
    KEL_ROW(setChildFaceIdsForFacesInZone, (7, ids, 3), "setChildFaceIdsForFacesInRange(11, 20, [41 42 43], 3)"),

    KEL_ROW(setTypeForCell, (12, KEL_CELL_HEXAHEDRON), "setTypesForCellsInRange(12, 12, [4], 1)"),
    KEL_ROW(setTypesForCellsInZone, (5, types, 3), "setTypesForCellsInRange(4294967297, 4294967304, [4 3 0], 3)"),
    KEL_ROW(setNodeCountForCell, (12, 8), "setNodeCountsForCellsInRange(12, 12, [8], 1)"),
    KEL_ROW(setNodeCountsForCellsInZone, (5, counts, 3), "setNodeCountsForCellsInRange(4294967297, 4294967304, [4 5 6], 3)"),
    KEL_ROW(setUniformNodeCountForCellsInZone, (5, 8), "setUniformNodeCountForCellsInRange(4294967297, 4294967304, 8)"),
    KEL_ROW(setNodeIdsForCell, (12, ids, 3), "setNodeIdsForCellsInRange(12, 12, [41 42 43], 3)"),
    KEL_ROW(setNodeIdsForCellsInZone, (5, ids, 3), "setNodeIdsForCellsInRange(4294967297, 4294967304, [41 42 43], 3)"),
    KEL_ROW(setFaceCountForCell, (12, 6), "setFaceCountsForCellsInRange(12, 12, [6], 1)"),
    KEL_ROW(setFaceCountsForCellsInZone, (5, counts, 3), "setFaceCountsForCellsInRange(4294967297, 4294967304, [4 5 6], 3)"),
    KEL_ROW(setUniformFaceCountForCellsInZone, (5, 6), "setUniformFaceCountForCellsInRange(4294967297, 4294967304, 6)"),
    KEL_ROW(setFaceIdsForCell, (12, ids, 3), "setFaceIdsForCellsInRange(12, 12, [41 42 43], 3)"),
    KEL_ROW(setFaceIdsForCellsInZone, (5, ids, 3), "setFaceIdsForCellsInRange(4294967297, 4294967304, [41 42 43], 3)"),
    KEL_ROW(setPartitionIdForCell, (12, -1), "setPartitionIdsForCellsInRange(12, 12, [-1], 1)"),
    KEL_ROW(setPartitionIdsForCellsInZone, (5, partitions, 3), "setPartitionIdsForCellsInRange(4294967297, 4294967304, [-1 0 8], 3)"),
    KEL_ROW(setChildCellCountForCell, (12, 8), "setChildCellCountsForCellsInRange(12, 12, [8], 1)"),
    KEL_ROW(setChildCellCountsForCellsInZone, (5, counts, 3), "setChildCellCountsForCellsInRange(4294967297, 4294967304, [4 5 6], 3)"),
    KEL_ROW(setUniformChildCellCountForCellsInZone, (5, 8), "setUniformChildCellCountForCellsInRange(4294967297, 4294967304, 8)"),
    KEL_ROW(setChildCellIdsForCell, (12, ids, 3), "setChildCellIdsForCellsInRange(12, 12, [41 42 43], 3)"),
    KEL_ROW(setChildCellIdsForCellsInZone, (5, ids, 3), "setChildCellIdsForCellsInRange(4294967297, 4294967304, [41 42 43], 3)"),

    KEL_ROW(setCaseSectionDataForElementsInZone, (7, bytes, 3), "setCaseSectionDataForElementsInRange(11, 20, [a b c], 3)"),
    KEL_ROW(setValuesOfPhaseVariableForElementsInZone, (5, floats, 3), "setValuesOfPhaseVariableForElementsInRange(4294967297, 4294967304, float [0.25 1.25 2.25], 3)"),
    KEL_ROW(setValuesOfPhaseVariableForElementsInZone, (5, doubles, 3), "setValuesOfPhaseVariableForElementsInRange(4294967297, 4294967304, double [0.5 1.5 2.5], 3)"),
    KEL_ROW(setValuesOfPhaseVariableForElementsInZone, (9, doubles, 0), "setValuesOfPhaseVariableForElementsInRange(0, 0, double [], 0)"),
};
// clang-format on

/// Makes one call; the warning lines about unknown zones are not this file's concern.
std::string callsReceived(const ConsumerRow& row)
{
    RecordingConsumer writer;
    declareRowZones(writer);
    ::testing::internal::CaptureStdout();
    row.call(writer);
    ::testing::internal::GetCapturedStdout();
    return writer.calls();
}

TEST(ConsumerForwarding, ZoneAndElementFormsReachTheRangeForm)
{
    for (const ConsumerRow& row : rows)
        EXPECT_EQ(callsReceived(row), row.expected) << row.operation;
}

TEST(ConsumerForwarding, TheTableHasEveryForm)
{
    const std::regex element("set.*For(Node|Edge|Face|Cell)");
    const std::regex zone("set.*InZone");
    const std::set<std::string> withoutRange = {"setLocalElemIdsInZone", "setInterfaceDataForFacesInZone"};

    std::multiset<std::string> present;
    for (const ConsumerRow& row : rows)
        present.insert(row.operation);

    std::multiset<std::string> declared;
    for (const std::string& name : declaredConsumerOperations())
        if ((std::regex_match(name, element) || std::regex_match(name, zone)) && withoutRange.count(name) == 0)
            declared.insert(name);

    EXPECT_EQ(declared.size(), 47U);
    for (const std::string& name : declared)
        EXPECT_GE(present.count(name), declared.count(name)) << name << " lacks a row";
}

TEST(ConsumerForwarding, BuffersArriveAsTheyAre)
{
    RecordingConsumer writer;
    declareRowZones(writer);
    writer.setNodeIdsForFace(12, ids, 3);
    EXPECT_EQ(writer.buffer(), ids);
    writer.setNodeCountsForCellsInZone(5, counts, 3);
    EXPECT_EQ(writer.buffer(), counts);
    writer.setCoordinatesForNode(1, doubles, 3);
    EXPECT_EQ(writer.buffer(), doubles);
    writer.setCoordinatesForNodesInZone(1, floats, 3);
    EXPECT_EQ(writer.buffer(), floats);
    writer.setChildCellIdsForCell(1, nullptr, 0);
    EXPECT_EQ(writer.buffer(), nullptr);
}

TEST(ConsumerForwarding, ADroppedZoneArrivesAsZeroWithoutAWarning)
{
    RecordingConsumer writer;
    declareRowZones(writer);
    writer.setZoneIds(KEL_FACE_ZONE, {8});
    ::testing::internal::CaptureStdout();
    writer.setCell0sForFacesInZone(7, ids, 3);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(writer.calls(), "setCell0sForFacesInRange(0, 0, [41 42 43], 3)");
}

TEST(ConsumerForwarding, AReversedZoneArrivesAsItIs)
{
    RecordingConsumer writer;
    declareRowZones(writer);
    writer.setZoneSizeInfo(7, KEL_ZONE_FIRST_ID, 20);
    writer.setZoneSizeInfo(7, KEL_ZONE_LAST_ID, 11);
    writer.setUniformNodeCountForFacesInZone(7, 4);
    EXPECT_EQ(writer.calls(), "setUniformNodeCountForFacesInRange(20, 11, 4)");
}

/// A format that knows one type of values and keeps the others with a using line.
class FormatOfIntBlocks : public KelConsumer {
public:
    using KelConsumer::writeOtherDataForSet;
    void writeOtherDataForSet(const std::string& name, const int*, unsigned64 count) override
    {
        written += name + "(" + std::to_string(count) + ")";
    }
    using KelConsumer::setVariableForSetData;
    unsigned64 setVariableForSetData(const double*, unsigned64 count) override { return count; }

    std::string written;
};

TEST(ConsumerForwarding, AFormatThatOverridesOneOverloadKeepsItsSiblings)
{
    FormatOfIntBlocks format;
    const int values[] = {1, 2};
    format.writeOtherDataForSet("ints", values, 2);
    format.writeOtherDataForSet("floats", floats, 3);
    format.writeOtherDataForSet("chars", bytes, 3);
    static_cast<KelConsumer&>(format).writeOtherDataForSet("again", values, 1);
    EXPECT_EQ(format.written, "ints(2)again(1)");
    EXPECT_EQ(format.setVariableForSetData(doubles, 3), 3U);
    EXPECT_EQ(format.setVariableForSetData(floats, 3), 0U);
}

} // namespace
} // namespace meridyn
