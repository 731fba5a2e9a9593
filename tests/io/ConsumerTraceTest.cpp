#include "io/ConsumerRows.h"
#include "KelSetting.h"
#include "KelVariant.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <locale>
#include <map>
#include <regex>
#include <sstream>

namespace meridyn {

static std::string contentOf(const std::string& path)
{
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::vector<std::string> declaredConsumerOperations()
{
    std::string header = contentOf(KEL_SOURCE_DIR "/include/KelConsumer.h");
    header.erase(header.find("\nprotected:"));
    const std::regex declaration("virtual +[a-z0-9]+ +(\\w+) *\\(");
    std::vector<std::string> names;
    for (std::sregex_iterator match(header.begin(), header.end(), declaration), end; match != end; ++match)
        names.push_back((*match)[1]);
    return names;
}

namespace {

const unsigned64 ids[] = {41, 42, 43};
const short counts[] = {4, 5, 6};
const int partitions[] = {1, 2};
const double doubles[] = {0.5, 1.5, 2.5};
const float floats[] = {0.25F, 1.25F, 2.25F};
const KelCellType types[] = {KEL_CELL_HEXAHEDRON};
std::vector<int> zones37 = {3, 7};
std::vector<int> noZones;
short phaseId = 0;
int variableId = 0;
std::vector<short> phaseIds;
std::vector<int> variableIds;
KelSetting noSetting;

const char* const silent = "";
const char* const emptyLine = "\n";
const char* const zonesLine = "  Zones = 3, 7.\n\n";

// clang-format off
const ConsumerRow rows[] = {
    KEL_ROW(log, ({{"t", "x"}}, KEL_CASE), silent),
    KEL_ROW(setCompression, (9), silent),
    KEL_ROW(setIOMode, (KEL_IO_SERIAL), silent),
    KEL_ROW(setMPIComm, (nullptr), silent),
    KEL_ROW(startWriting, (KEL_CASE), silent),
    KEL_ROW(endWriting, (KEL_CASE), silent),
    KEL_ROW(isWritingData, (), silent),
    KEL_ROW(writeSettingStrings, ({{"a", "b"}}, KEL_CASE, "g"), "  1 key-value pairs.\n"), // no empty line
    KEL_ROW(writeSettingStrings, ({}, KEL_DATA, ""), "  0 key-value pairs.\n"),
    KEL_ROW(writeSettingStrings, ({{"a", ""}, {"b", ""}, {"c", ""}}, KEL_DATA, ""), "  3 key-value pairs.\n"),
    KEL_ROW(writeSetting, (noSetting, "k", KEL_CASE, "g"), silent),
    KEL_ROW(writeMeshAttributes, (), silent),
    KEL_ROW(setLocalElemIdsInZone, (7, ids, 3), silent),

    KEL_ROW(startWritingZonesOfCategory, (KEL_FACE_ZONE), silent),
    KEL_ROW(endWritingZonesOfCategory, (), silent),
    KEL_ROW(startWritingNodes, (zones37), zonesLine),
    KEL_ROW(startWritingNodes, ({}), emptyLine),
    KEL_ROW(startWritingCoordinatesForNodes, (zones37), zonesLine),
    KEL_ROW(setCoordinatesForNode, (12, doubles, 3), "  3-D coordinates (1)\n\n"),
    KEL_ROW(setCoordinatesForNode, (12, floats, 3), "  3-D coordinates (1)\n\n"),
    KEL_ROW(setCoordinatesForNodesInZone, (1, doubles, 3), "  3-D coordinates (500)\n\n"),
    KEL_ROW(setCoordinatesForNodesInZone, (1, floats, 3), "  3-D coordinates (500)\n\n"),
    KEL_ROW(setCoordinatesForNodesInRange, (1, 500, doubles, 3), "  3-D coordinates (500)\n\n"),
    KEL_ROW(setCoordinatesForNodesInRange, (11, 20, floats, 3), "  3-D coordinates (10)\n\n"),
    KEL_ROW(endWritingCoordinatesForNodes, (), silent),
    KEL_ROW(endWritingNodes, (), silent),

    KEL_ROW(startWritingEdges, (zones37), zonesLine),
    KEL_ROW(startWritingNodesForEdges, (zones37), zonesLine),
    KEL_ROW(setUniformNodeCountForEdgesInRange, (11, 20, 2), "  Constant edge-node count (10)\n\n"),
    KEL_ROW(setUniformNodeCountForEdgesInZone, (3, 2), "  Constant edge-node count (4)\n\n"),
    KEL_ROW(setNodeCountForEdge, (12, 2), "  Edge-node count (1)\n\n"),
    KEL_ROW(setNodeCountsForEdgesInRange, (11, 20, counts, 3), "  Edge-node count (10)\n\n"),
    KEL_ROW(setNodeCountsForEdgesInZone, (3, counts, 3), "  Edge-node count (4)\n\n"),
    KEL_ROW(startWritingNodeCountsForEdges, (), silent),
    KEL_ROW(startWritingNodeIdsForEdges, (), silent),
    KEL_ROW(setNodeIdsForEdge, (12, ids, 2), "  Edge-node id (12, 12)\n\n"),
    KEL_ROW(setNodeIdsForEdgesInRange, (11, 20, ids, 3), "  Edge-node id (11, 20)\n\n"),
    KEL_ROW(setNodeIdsForEdgesInZone, (3, ids, 3), "  Edge-node id (101, 104)\n\n"),
    KEL_ROW(endWritingNodeIdsForEdges, (), emptyLine),
    KEL_ROW(endWritingNodeCountsForEdges, (), silent),
    KEL_ROW(endWritingNodesForEdges, (), silent),
    KEL_ROW(endWritingEdges, (), silent),

    KEL_ROW(startWritingFaces, (zones37), zonesLine),
    KEL_ROW(startWritingNodesForFaces, (zones37), zonesLine),
    KEL_ROW(startWritingNodeCountsForFaces, (), silent),
    KEL_ROW(setUniformNodeCountForFacesInRange, (11, 20, 4), "  Constant face-node count (10)\n\n"),
    KEL_ROW(setUniformNodeCountForFacesInZone, (7, 4), "  Constant face-node count (10)\n\n"),
    KEL_ROW(setNodeCountForFace, (12, 4), "  Face-node count (1)\n\n"),
    KEL_ROW(setNodeCountsForFacesInRange, (11, 20, counts, 3), "  Face-node count (10)\n\n"),
    KEL_ROW(setNodeCountsForFacesInZone, (7, counts, 3), "  Face-node count (10)\n\n"),
    KEL_ROW(endWritingNodeCountsForFaces, (), silent),
    KEL_ROW(startWritingNodeIdsForFaces, (), silent),
    KEL_ROW(setNodeIdsForFace, (12, ids, 3), "  Face-node id (12, 12)\n\n"),
    KEL_ROW(setNodeIdsForFacesInRange, (11, 20, ids, 3), "  Face-node id (11, 20)\n\n"),
    KEL_ROW(setNodeIdsForFacesInZone, (7, ids, 3), "  Face-node id (11, 20)\n\n"),
    KEL_ROW(endWritingNodeIdsForFaces, (), emptyLine),
    KEL_ROW(endWritingNodesForFaces, (), silent),
    KEL_ROW(startWritingCell0sForFaces, (zones37), zonesLine),
    KEL_ROW(setCell0ForFace, (12, 41), "  Face-C0 id: (12, 12)\n\n"),
    KEL_ROW(setCell0sForFacesInRange, (11, 20, ids, 3), "  Face-C0 id: (11, 20)\n\n"),
    KEL_ROW(setCell0sForFacesInZone, (7, ids, 3), "  Face-C0 id: (11, 20)\n\n"),
    KEL_ROW(endWritingCell0sForFaces, (), silent),
    KEL_ROW(startWritingCell1sForFaces, (zones37), zonesLine),
    KEL_ROW(setCell1ForFace, (12, 41), "  Face-C1 id: (12, 12)\n\n"),
    KEL_ROW(setCell1sForFacesInRange, (11, 20, ids, 3), "  Face-C1 id: (11, 20)\n\n"),
    KEL_ROW(setCell1sForFacesInZone, (7, ids, 3), "  Face-C0 id: (11, 20)\n\n"), // kept: cell 0
    KEL_ROW(endWritingCell1sForFaces, (), silent),
    KEL_ROW(startWritingShadowFaceIdsForFaces, (zones37), zonesLine),
    KEL_ROW(setShadowFaceIdForFace, (12, 41), "  Face-shadow id: (12, 12)\n\n"),
    KEL_ROW(setShadowFaceIdsForFacesInRange, (11, 20, ids, 3), "  Face-shadow id: (11, 20)\n\n"),
    KEL_ROW(setShadowFaceIdsForFacesInZone, (7, ids, 3), "  Face-shadow id: (11, 20)\n\n"),
    KEL_ROW(endWritingShadowFaceIdsForFaces, (), silent),
    KEL_ROW(startWritingInterfaceDataForFaces, (zones37, {9}), zonesLine), // the first list only
    KEL_ROW(startWritingInterfaceDataForFaces, ({}, {9}), emptyLine),
    KEL_ROW(setInterfaceDataForFacesInZone, (7, floats, 3, floats, 3, ids, 3, ids, 3), "  Interface-faces: (zone-7)\n\n"),
    KEL_ROW(setInterfaceDataForFacesInZone, (-9, doubles, 3, doubles, 3, ids, 3, ids, 3), "  Interface-faces: (zone--9)\n\n"),
    KEL_ROW(endWritingInterfaceDataForFaces, (), emptyLine),
    KEL_ROW(startWritingChildFacesForFaces, (zones37), zonesLine),
    KEL_ROW(startWritingChildFaceCountsForFaces, (), emptyLine),
    KEL_ROW(setChildFaceCountForFace, (12, 4), "  Face-child count: (12, 12)\n\n"),
    KEL_ROW(setChildFaceCountsForFacesInRange, (11, 20, counts, 3), "  Face-child count: (11, 20)\n\n"),
    KEL_ROW(setChildFaceCountsForFacesInZone, (7, counts, 3), "  Face-child count: (11, 20)\n\n"),
    KEL_ROW(setUniformChildFaceCountForFacesInRange, (11, 20, 4), "  Uniform face-child count: (11, 20)\n\n"),
    KEL_ROW(setUniformChildFaceCountForFacesInZone, (7, 4), "  Uniform face-child count: (11, 20)\n\n"),
    KEL_ROW(endWritingChildFaceCountsForFaces, (), emptyLine),
    KEL_ROW(startWritingChildFaceIdsForFaces, (), emptyLine),
    KEL_ROW(setChildFaceIdsForFace, (12, ids, 1), "  Face-child id: (12, 12)\n\n"),
    KEL_ROW(setChildFaceIdsForFacesInRange, (11, 20, ids, 3), "  Face-child id: (11, 20)\n\n"),
    KEL_ROW(setChildFaceIdsForFacesInZone, (7, ids, 3), "  Face-child id: (11, 20)\n\n"),
    KEL_ROW(endWritingChildFaceIdsForFaces, (), silent),
    KEL_ROW(endWritingChildFacesForFaces, (), silent),
    KEL_ROW(endWritingFaces, (), silent),

    KEL_ROW(startWritingCells, ({4}), "  Zones = 4.\n\n"),
    KEL_ROW(startWritingCells, ({}), emptyLine),
    KEL_ROW(startWritingCells, ({3, 5, 7}), "  Zones = 3, 5, 7.\n\n"),
    KEL_ROW(startWritingTypesForCells, (zones37, {KEL_CELL_HEXAHEDRON, KEL_CELL_PRISM}), zonesLine),
    KEL_ROW(setTypeForCell, (12, KEL_CELL_PRISM), "  Cell-type id: (12, 12)\n\n"),
    KEL_ROW(setTypesForCellsInRange, (11, 20, types, 1), "  Cell-type id: (11, 20)\n\n"),
    KEL_ROW(setTypesForCellsInZone, (5, types, 1), "  Cell-type id: (4294967297, 4294967304)\n\n"),
    KEL_ROW(endWritingTypesForCells, (), silent),
    KEL_ROW(startWritingNodesForCells, (zones37), zonesLine),
    KEL_ROW(startWritingNodeCountsForCells, (), emptyLine),
    KEL_ROW(setNodeCountForCell, (12, 8), "  cell-node count (1)\n\n"), // kept: lower case, as its siblings below
    KEL_ROW(setNodeCountsForCellsInRange, (1, 8, counts, 3), "  cell-node count (8)\n\n"),
    KEL_ROW(setNodeCountsForCellsInZone, (5, counts, 3), "  cell-node count (8)\n\n"),
    KEL_ROW(setUniformNodeCountForCellsInRange, (11, 20, 8), "  Constant cell-node count (10)\n\n"),
    KEL_ROW(setUniformNodeCountForCellsInZone, (5, 8), "  Constant cell-node count (8)\n\n"),
    KEL_ROW(endWritingNodeCountsForCells, (), silent),
    KEL_ROW(startWritingNodeIdsForCells, (), silent),
    KEL_ROW(setNodeIdsForCell, (12, ids, 3), "  Face-node id (12, 12)\n\n"), // kept: the faces' text, as below
    KEL_ROW(setNodeIdsForCellsInRange, (1, 8, ids, 3), "  Face-node id (1, 8)\n\n"),
    KEL_ROW(setNodeIdsForCellsInZone, (5, ids, 3), "  Face-node id (4294967297, 4294967304)\n\n"),
    KEL_ROW(endWritingNodeIdsForCells, (), silent),
    KEL_ROW(endWritingNodesForCells, (), silent),
    KEL_ROW(startWritingFacesForCells, (zones37), silent), // kept: the whole family says nothing
    KEL_ROW(startWritingFaceCountsForCells, (), silent),
    KEL_ROW(setFaceCountForCell, (12, 6), silent),
    KEL_ROW(setFaceCountsForCellsInRange, (11, 20, counts, 3), silent),
    KEL_ROW(setFaceCountsForCellsInZone, (5, counts, 3), silent),
    KEL_ROW(setUniformFaceCountForCellsInRange, (11, 20, 6), silent),
    KEL_ROW(setUniformFaceCountForCellsInZone, (5, 6), silent),
    KEL_ROW(endWritingFaceCountsForCells, (), silent),
    KEL_ROW(startWritingFaceIdsForCells, (), silent),
    KEL_ROW(setFaceIdsForCell, (12, ids, 3), silent),
    KEL_ROW(setFaceIdsForCellsInRange, (11, 20, ids, 3), silent),
    KEL_ROW(setFaceIdsForCellsInZone, (5, ids, 3), silent),
    KEL_ROW(endWritingFaceIdsForCells, (), silent),
    KEL_ROW(endWritingFacesForCells, (), silent),
    KEL_ROW(startWritingPartitionIdsForCells, (zones37, 4), zonesLine),
    KEL_ROW(setPartitionIdForCell, (12, 1), "  Cell-partition id: (12, 12)\n\n"),
    KEL_ROW(setPartitionIdsForCellsInRange, (11, 20, partitions, 2), "  Cell-partition id: (11, 20)\n\n"),
    KEL_ROW(setPartitionIdsForCellsInZone, (5, partitions, 2), "  Cell-partition id: (4294967297, 4294967304)\n\n"),
    KEL_ROW(endWritingPartitionIdsForCells, (), emptyLine),
    KEL_ROW(startWritingChildCellsForCells, (zones37), zonesLine),
    KEL_ROW(startWritingChildCellCountsForCells, (), emptyLine),
    KEL_ROW(setChildCellCountForCell, (12, 8), "  Cell-child count: (12, 12)\n\n"),
    KEL_ROW(setChildCellCountsForCellsInRange, (11, 20, counts, 3), "  Cell-child count: (11, 20)\n\n"),
    KEL_ROW(setChildCellCountsForCellsInZone, (5, counts, 3), "  Cell-child count: (4294967297, 4294967304)\n\n"),
    KEL_ROW(setUniformChildCellCountForCellsInRange, (11, 20, 8), "  Uniform cell-child count: (11, 20)\n\n"),
    KEL_ROW(setUniformChildCellCountForCellsInZone, (5, 8), "  Uniform cell-child count: (4294967297, 4294967304)\n\n"),
    KEL_ROW(endWritingChildCellCountsForCells, (), emptyLine),
    KEL_ROW(startWritingChildCellIdsForCells, (), emptyLine),
    KEL_ROW(setChildCellIdsForCell, (12, ids, 3), "  Cell-child id: (12, 12)\n\n"),
    KEL_ROW(setChildCellIdsForCellsInRange, (11, 20, ids, 3), "  Cell-child id: (11, 20)\n\n"),
    KEL_ROW(setChildCellIdsForCellsInZone, (5, ids, 3), "  Cell-child id: (4294967297, 4294967304)\n\n"),
    KEL_ROW(endWritingChildCellIdsForCells, (), silent),
    KEL_ROW(endWritingChildCellsForCells, (), silent),
    KEL_ROW(endWritingCells, (), silent),

    KEL_ROW(startWritingCaseSectionCategories, (KEL_CELL_ZONE, {"density", "pressure"}), "  Cell-zone variable names = density, pressure.\n\n"),
    KEL_ROW(startWritingCaseSectionCategories, (KEL_FACE_ZONE, {"a"}), "  Face-zone variable names = a.\n\n"),
    KEL_ROW(startWritingCaseSectionCategories, (KEL_NODE_ZONE, {"a"}), "  Node-zone variable names = a.\n\n"),
    KEL_ROW(startWritingCaseSectionCategories, (KEL_NODE_ZONE, {}), emptyLine),
    KEL_ROW(startWritingCaseSectionCategories, (KEL_EDGE_ZONE, {"a"}), "KelConsumer::startWritingCaseSectionCategories(): Invalid ZoneCategory.\n  -zone variable names = a.\n\n"),
    KEL_ROW(startWritingCaseSectionCategories, (KelZoneCategory(-1), {}), "KelConsumer::startWritingCaseSectionCategories(): Invalid ZoneCategory.\n\n"),
    KEL_ROW(startWritingCaseSectionDataForCategory, ("temperature", {4, 9}, KEL_PLAIN_DOUBLE, 1), "  Variable-temperature, Zones = 4, 9.\n\n"),
    KEL_ROW(startWritingCaseSectionDataForCategory, ("temperature", {}, KEL_PLAIN_DOUBLE, 1), emptyLine),
    KEL_ROW(setCaseSectionDataForElementsInRange, (11, 20, doubles, 3), "  Element id: (11, 20)\n\n"),
    KEL_ROW(setCaseSectionDataForElementsInZone, (7, doubles, 3), "  Element id: (11, 20)\n\n"),
    KEL_ROW(endWritingCaseSectionDataForCategory, (), silent),
    KEL_ROW(endWritingCaseSectionCategories, (), silent),

    KEL_ROW(addStringAttribute, ("s", "g", "n", "v"), silent),
    KEL_ROW(addPhaseName, ("air", phaseId), silent),
    KEL_ROW(addPhaseNames, ({"air", "oil"}, phaseIds), silent),
    KEL_ROW(setAttributeValueOfPhase, ("a", "v"), silent),
    KEL_ROW(setAttributeValueOfPhase, ("air", "a", "v"), silent),
    KEL_ROW(setAttributeValueOfPhase, (short(1), "a", "v"), silent),
    KEL_ROW(setPhaseNames, ({"air"}, phaseIds), silent),
    KEL_ROW(startWritingPhase, (-1), "  Phase-id = -1\n\n"),
    KEL_ROW(inheritVariableAttributes, (true), silent),
    KEL_ROW(addPhaseVariable, ("p", variableId), silent),
    KEL_ROW(addPhaseVariable, ("air", "p", variableId), silent),
    KEL_ROW(addPhaseVariable, (short(1), "p", variableId), silent),
    KEL_ROW(setPhaseVariablesOfCategory, (KEL_CELL_ZONE, std::vector<std::string>{"p"}), silent),
    KEL_ROW(setPhaseVariablesOfCategory, (KEL_CELL_ZONE, std::vector<std::string>{"p"}, variableIds), silent),
    KEL_ROW(setPhaseVariablesOfCategory, (KEL_CELL_ZONE, std::vector<int>{1}), silent),
    KEL_ROW(endWritingPhase, (), silent),
    KEL_ROW(setAttributeValueOfPhaseVariable, ("p", "a", "v"), silent),
    KEL_ROW(setAttributeValueOfPhaseVariable, (short(1), "p", "a", "v"), silent),
    KEL_ROW(setAttributeValueOfPhaseVariable, (1, "a", "v"), silent),
    KEL_ROW(startWritingPhaseVariableInZonesOfCategory, (KEL_CELL_ZONE, "pressure", zones37, 1), "  Cell-data, var = pressure, Zones = 3, 7.\n\n"),
    KEL_ROW(startWritingPhaseVariableInZonesOfCategory, (KEL_NODE_ZONE, "pressure", noZones, 1), emptyLine),
    KEL_ROW(startWritingPhaseVariableInZonesOfCategory, (KEL_EDGE_ZONE, "p", zones37, 1), "KelConsumer::startWritingPhaseVariableOfCategory(): Invalid ZoneCategory.\n  -data, var = p, Zones = 3, 7.\n\n"), // kept: the shorter name
    KEL_ROW(startWritingPhaseVariableInZonesOfCategory, (KEL_FACE_ZONE, 12, zones37, 1), "  Face-data, var = 12, Zones = 3, 7.\n\n"),
    KEL_ROW(startWritingPhaseVariableInZonesOfCategory, (KEL_CELL_ZONE, "pressure", {20}, 1), "  Cell-data, var = pressure, Zones = 20.\n\n"),
    KEL_ROW(startWritingPhaseVariableInZonesOfCategory, (KEL_FACE_ZONE, 12, {20, 21}, 1), "  Face-data, var = 12, Zones = 20, 21.\n\n"),
    KEL_ROW(startWritingPhaseVariableInZonesOfCategory, (KEL_NODE_ZONE, -12, zones37, 3), "  Node-data, var = -12, Zones = 3, 7.\n\n"),
    KEL_ROW(startWritingPhaseVariableInZonesOfCategory, (KelZoneCategory(4), 12, noZones, 1), "KelConsumer::startWritingPhaseVariableInZonesOfCategory(): Invalid ZoneCategory.\n\n"),
    KEL_ROW(setValuesOfPhaseVariableForElementsInRange, (11, 20, floats, 3), "  Element id: (11, 20)\n\n"),
    KEL_ROW(setValuesOfPhaseVariableForElementsInRange, (1, 1, doubles, 3), "  Element id: (1, 1)\n\n"),
    KEL_ROW(setValuesOfPhaseVariableForElementsInZone, (7, floats, 3), "  Element id: (11, 20)\n\n"),
    KEL_ROW(setValuesOfPhaseVariableForElementsInZone, (7, doubles, 3), "  Element id: (11, 20)\n\n"),
    KEL_ROW(endWritingPhaseVariableInZonesOfCategory, (), silent),
};
// clang-format on

std::string printedBy(const ConsumerRow& row)
{
    KelConsumer bare("TraceTest");
    declareRowZones(bare);
    ::testing::internal::CaptureStdout();
    row.call(bare);
    return ::testing::internal::GetCapturedStdout();
}

TEST(ConsumerTrace, EachOperationPrintsItsText)
{
    for (const ConsumerRow& row : rows)
        EXPECT_EQ(printedBy(row), row.expected) << row.operation;
}

TEST(ConsumerTrace, TheTableHasEveryOperationUpToTheSets)
{
    std::map<std::string, int> missing;
    for (const std::string& name : declaredConsumerOperations()) {
        if (name == "startWritingSet") // from here on ConsumerSetsTest.cpp
            break;
        ++missing[name];
    }
    EXPECT_EQ(declaredConsumerOperations().size(), 309U);
    for (const ConsumerRow& row : rows)
        --missing[row.operation];
    for (const auto& [name, count] : missing)
        EXPECT_LE(count, 0) << name << " lacks a row";
}

/// Keeps what is written and notes its length at each flush.
class FlushedText : public std::stringbuf {
public:
    std::vector<std::size_t> lengths;

private:
    int sync() override
    {
        lengths.push_back(str().size());
        return 0;
    }
};

TEST(ConsumerTrace, EachLineIsFlushedBeforeTheNext)
{
    KelConsumer bare;
    FlushedText text;
    std::streambuf* const before = std::cout.rdbuf(&text);
    bare.setCell0sForFacesInRange(11, 20, ids, 3);
    bare.startWritingCells({4});
    bare.endWritingNodeIdsForFaces();
    bare.writeSettingStrings({}, KEL_CASE, "g");
    std::cout.rdbuf(before);
    EXPECT_EQ(text.str(), "  Face-C0 id: (11, 20)\n\n  Zones = 4.\n\n\n  0 key-value pairs.\n");
    EXPECT_EQ(text.lengths, (std::vector<std::size_t>{23, 24, 37, 38, 39, 60}));
}

TEST(ConsumerTrace, CoordinatesBeforeAMeshIsDeclaredHaveNoDimension)
{
    KelConsumer bare;
    ::testing::internal::CaptureStdout();
    bare.setCoordinatesForNodesInRange(1, 2, doubles, 3);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "  0-D coordinates (2)\n\n");
}

TEST(ConsumerTrace, CountsWrapLikeIds)
{
    KelConsumer bare;
    ::testing::internal::CaptureStdout();
    bare.setNodeCountsForFacesInRange(5, 4, counts, 3);
    bare.setNodeCountsForFacesInRange(5, 3, counts, 3);
    bare.setNodeCountsForFacesInRange(1, 18446744073709551615U, counts, 3);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "  Face-node count (0)\n\n"
                                                        "  Face-node count (18446744073709551615)\n\n"
                                                        "  Face-node count (18446744073709551615)\n\n");
}

TEST(ConsumerTrace, AnUnknownZoneIsTracedAsElementZero)
{
    KelConsumer bare;
    ::testing::internal::CaptureStdout();
    bare.setNodeIdsForFacesInZone(9, ids, 3);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Warning: KelBase::getZoneSizeInfo: Invalid zone id (9).\n"
                                                        "Warning: KelBase::getZoneSizeInfo: Invalid zone id (9).\n"
                                                        "  Face-node id (0, 0)\n\n");
}

/// A small mesh as a client writes it: one node zone, one face zone, one cell zone.
void writeSmallMesh(KelConsumer& writer)
{
    declareRowZones(writer);
    writer.startWritingZonesOfCategory(KEL_NODE_ZONE);
    writer.startWritingNodes({1});
    writer.startWritingCoordinatesForNodes({1});
    writer.setCoordinatesForNodesInZone(1, doubles, 3);
    writer.endWritingCoordinatesForNodes();
    writer.endWritingNodes();
    writer.endWritingZonesOfCategory();

    writer.startWritingFaces({7});
    writer.startWritingNodesForFaces({7});
    writer.startWritingNodeCountsForFaces();
    writer.setUniformNodeCountForFacesInZone(7, 4);
    writer.endWritingNodeCountsForFaces();
    writer.startWritingNodeIdsForFaces();
    writer.setNodeIdsForFacesInZone(7, ids, 3);
    writer.endWritingNodeIdsForFaces();
    writer.endWritingNodesForFaces();
    writer.startWritingCell0sForFaces({7});
    writer.setCell0sForFacesInZone(7, ids, 3);
    writer.endWritingCell0sForFaces();
    writer.startWritingCell1sForFaces({7});
    writer.setCell1sForFacesInZone(7, ids, 3);
    writer.setCell1ForFace(20, 0);
    writer.endWritingCell1sForFaces();
    writer.endWritingFaces();

    writer.startWritingCells({5});
    writer.startWritingTypesForCells({5}, {KEL_CELL_HEXAHEDRON});
    writer.endWritingTypesForCells();
    writer.startWritingPartitionIdsForCells({5}, 2);
    writer.setPartitionIdsForCellsInZone(5, partitions, 2);
    writer.endWritingPartitionIdsForCells();
    writer.endWritingCells();
}

TEST(ConsumerTrace, ASmallMesh)
{
    KelConsumer bare("TraceTest");
    ::testing::internal::CaptureStdout();
    writeSmallMesh(bare);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), contentOf(KEL_TEST_DIR "/golden/small-mesh.trace"));
}

struct CommaPoint : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(ConsumerTrace, NumbersDependNeitherOnTheLocaleNorOnTheStream)
{
    KelConsumer bare("TraceTest");
    ::testing::internal::CaptureStdout();
    const std::ios::fmtflags flags = std::cout.setf(std::ios::hex | std::ios::showbase | std::ios::showpos);
    const std::locale before = std::cout.imbue(std::locale(std::locale::classic(), new CommaPoint));
    bare.startWritingCell0sForFaces({1234567});
    bare.setCell0sForFacesInRange(1000001, 2000002, ids, 3);
    bare.setZoneSizeInfo(1234567, KEL_ZONE_FIRST_ID, 1);
    bare.writeSettingStrings(std::vector<std::pair<std::string, std::string>>(10), KEL_CASE, "settings");
    std::cout.imbue(before);
    std::cout.flags(flags);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "  Zones = 1234567.\n\n"
              "  Face-C0 id: (1000001, 2000002)\n\n"
              "Warning: KelBase::setZoneSizeInfo: Invalid zone id (1234567).\n"
              "  10 key-value pairs.\n");
}

TEST(ConsumerTrace, ASmallSolution)
{
    KelConsumer bare("TraceTest");
    declareRowZones(bare);
    std::vector<int> cellZones = {5};
    ::testing::internal::CaptureStdout();
    ASSERT_TRUE(bare.setPhaseNames({"mixture", "air"}, phaseIds));
    bare.startWritingTimeLevel(3);
    for (const short phase : phaseIds) {
        bare.startWritingPhase(phase);
        ASSERT_TRUE(bare.addPhaseVariable(phase, "pressure", variableId));
        bare.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, "pressure", cellZones, 1);
        bare.setValuesOfPhaseVariableForElementsInZone(5, doubles, 3);
        bare.endWritingPhaseVariableInZonesOfCategory();
        bare.endWritingPhase();
    }
    bare.endWritingTimeLevel();
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), contentOf(KEL_TEST_DIR "/golden/small-solution.trace"));
}

} // namespace
} // namespace meridyn
