#include "KelGeneratedProvider.h"
#include "KelLocationModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <list>

namespace meridyn {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// A box with case and data open.
class OpenBox : public KelGeneratedProvider {
public:
    explicit OpenBox(const std::string& line)
    {
        setFile(line, KEL_CASE);
        setFile(line, KEL_DATA);
        if (!startReading(KEL_CASE) || !startReading(KEL_DATA))
            throw std::runtime_error(getErrors(false, true).front());
    }
    unsigned64 size(KelMeshSizeType type) const
    {
        unsigned64 value = 0;
        getMeshSize(type, value);
        return value;
    }
    std::string zone(int id) const
    {
        std::string name;
        unsigned64 first = 0, last = 0;
        getZoneStringInfo(id, KEL_ZONE_STRING_0, name);
        getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, first);
        getZoneSizeInfo(id, KEL_ZONE_LAST_ID, last);
        return name + " " + std::to_string(first) + "-" + std::to_string(last);
    }
};

// ---- grammar

TEST(GeneratedGrammar, TakesOptionsInAnyOrder)
{
    for (const char* line :
         {"box:1x1x1", "  box:2x3x4  ", "box:2x2x2 zones:2 periodic size:1x2.5x1e-3", "box:2x2x2\tfields:0\nlevels:1",
          "box:2x2x2 hanging cells:hex", "box:1x1x10000 zones:10000", "box:2x2x2 phases:1000 levels:1000000",
          "box:17592186044416x1x1", "box:100000x100000x1000"})
        EXPECT_TRUE(KelGeneratedProvider::understands(line)) << line;
}

TEST(GeneratedGrammar, NamesTheWordAtFault)
{
    const struct {
        const char* line;
        const char* word;
    } rows[] = {
        {"", "an empty text"},
        {"   ", "an empty text"},
        {"cube:2x2x2", "'cube:2x2x2' is not known here"},
        {"zones:2 box:2x2x2", "'zones:2' is not known here"},
        {"box:2x2x2 box:2x2x2", "'box:2x2x2' is not known here"},
        {"box:2x2x2 colour:red", "'colour:red' is not known here"},
        {"Box:2x2x2", "'Box:2x2x2' is not known here"},
        {"box", "box: expected three numbers from 1"},
        {"box:", "box:: expected three numbers from 1"},
        {"box:2x2", "box:2x2: expected"},
        {"box:2x2x2x2", "box:2x2x2x2: expected"},
        {"box:0x2x2", "box:0x2x2: expected"},
        {"box:-2x2x2", "box:-2x2x2: expected"},
        {"box:2x2x2.0", "box:2x2x2.0: expected"},
        {"box:2x2x99999999999999999999", "expected three numbers"},
        {"box:17592186044416x2x1", "at most 2^44 blocks"},
        {"box:4294967296x4294967296x4294967296", "at most 2^44 blocks"},
        {"box:2x2x2 size:1x1x0", "'size:1x1x0': expected three lengths above 0"},
        {"box:2x2x2 size:1x1xinf", "'size:1x1xinf': expected three lengths above 0"},
        {"box:2x2x2 size:1x1xnan", "'size:1x1xnan': expected three lengths above 0"},
        {"box:2x2x2 size:1,5x1x1", "'size:1,5x1x1': expected three lengths above 0"},
        {"box:2x2x2 cells:cube", "'cells:cube': expected hex, tet, prism, pyramid or poly"},
        {"box:2x2x2 zones:0", "'zones:0': expected a number from 1 to 10000"},
        {"box:2x2x2 zones:3", "'zones:3': more than the 2 layers in z"},
        {"box:2x2x2 zones:two", "'zones:two': expected a number"},
        {"box:2x2x2 fields:-1", "'fields:-1': expected a number from 0 to 10000"},
        {"box:2x2x2 phases:", "'phases:': expected a number from 1 to 1000"},
        {"box:2x2x2 levels:1000001", "'levels:1000001': expected a number"},
        {"box:2x2x2 partitions:0", "'partitions:0': expected a number"},
        {"box:2x2x2 periodic:yes", "'periodic:yes': expected no value"},
        {"box:2x2x1 hanging", "'hanging': expected hexahedra and at least two layers in z"},
        {"box:2x2x2 hanging cells:tet", "'hanging': expected hexahedra"},
    };
    for (const auto& row : rows) {
        EXPECT_FALSE(KelGeneratedProvider::understands(row.line)) << row.line;
        KelGeneratedProvider box;
        EXPECT_FALSE(static_cast<KelFileProvider&>(box).startReading(row.line, KEL_CASE)) << row.line;
        if (*row.line == '\0')
            continue; // no file name at all: the frame does not ask the reader
        ASSERT_TRUE(box.hasError()) << row.line;
        EXPECT_THAT(box.getErrors(false, true).front(), HasSubstr(row.word)) << row.line;
        EXPECT_FALSE(box.isReadingData());
    }
}

// ---- numbers of elements and zones

TEST(GeneratedCounts, FollowFromTheDivision)
{
    const struct {
        const char* line;
        unsigned64 nodes, faces, cells;
    } rows[] = {
        // hex: nx(ny)(nz) blocks; faces (nx+1)ny nz + nx(ny+1)nz + nx ny(nz+1)
        {"box:2x3x4", 60, 98, 24},
        // tet: 6 per block, 6 inner triangles per block, 2 triangles per side
        {"box:2x3x4 cells:tet", 60, 24 * 6 + 2 * 98, 144},
        // prism: 2 per block, 1 inner face, sides in z have two triangles (5 planes of 6 blocks)
        {"box:2x3x4 cells:prism", 60, 24 + 98 + 30, 48},
        // pyramid: 6 per block, 12 inner triangles, a node in each block
        {"box:2x3x4 cells:pyramid", 84, 24 * 12 + 98, 144},
        // poly: one cell per block, sides in z have two triangles
        {"box:2x3x4 cells:poly", 60, 98 + 30, 24},
        // hanging: the middle plane's 6 faces become 24 children and stay as parents; nodes in the middle of its
        // edges (2*4 + 3*3) and faces (6)
        {"box:2x3x4 hanging", 60 + 8 + 9 + 6, 98 + 24, 24},
        {"box:1x1x1", 8, 6, 1},
    };
    for (const auto& row : rows) {
        const OpenBox box(row.line);
        EXPECT_EQ(box.size(KEL_MESH_DIMENSION), 3U);
        EXPECT_EQ(box.size(KEL_MESH_SIZE_1), row.nodes) << row.line;
        EXPECT_EQ(box.size(KEL_MESH_SIZE_2), 0U) << row.line;
        EXPECT_EQ(box.size(KEL_MESH_SIZE_3), row.faces) << row.line;
        EXPECT_EQ(box.size(KEL_MESH_SIZE_4), row.cells) << row.line;
    }
}

TEST(GeneratedZones, AreNamedAndNumbered)
{
    OpenBox box("box:2x3x4 hanging zones:3 periodic");
    std::vector<int> ids;
    std::string units;
    box.getMeshUnits(units);
    EXPECT_EQ(units, "m");
    box.getZoneIds(KEL_NODE_ZONE, ids);
    EXPECT_THAT(ids, ElementsAre(1));
    box.getZoneIds(KEL_EDGE_ZONE, ids);
    EXPECT_THAT(ids, ElementsAre());
    box.getZoneIds(KEL_FACE_ZONE, ids);
    EXPECT_THAT(ids, ElementsAre(2, 3, 4, 5, 6, 7, 8, 9));
    box.getZoneIds(KEL_CELL_ZONE, ids);
    EXPECT_THAT(ids, ElementsAre(10, 11, 12));
    // across x 1*3*4, across y 2*2*4, across z 2*3*(3-1), children 24; then 12+12+8+8+6+6 and 6 parents
    EXPECT_EQ(box.zone(1), "nodes 1-83");
    EXPECT_EQ(box.zone(2), "interior 1-64");
    EXPECT_EQ(box.zone(3), "x-min 65-76");
    EXPECT_EQ(box.zone(4), "x-max 77-88");
    EXPECT_EQ(box.zone(8), "z-max 111-116");
    EXPECT_EQ(box.zone(9), "parents 117-122");
    EXPECT_EQ(box.zone(10), "cells-1 1-6"); // layers 0, 1 and 2 to 3
    EXPECT_EQ(box.zone(11), "cells-2 7-12");
    EXPECT_EQ(box.zone(12), "cells-3 13-24");
    const int kinds[] = {KEL_FACE_ZONE_TYPE_INTERIOR, KEL_FACE_ZONE_TYPE_PERIODIC, KEL_FACE_ZONE_TYPE_PERIODIC,
                         KEL_FACE_ZONE_TYPE_WALL,     KEL_FACE_ZONE_TYPE_WALL,     KEL_FACE_ZONE_TYPE_WALL,
                         KEL_FACE_ZONE_TYPE_WALL,     KEL_FACE_ZONE_TYPE_PARENT};
    for (int id = 2; id <= 9; ++id) {
        KelFaceZoneType type{};
        box.getFaceZoneType(id, type);
        EXPECT_EQ(type, kinds[id - 2]) << id;
    }
    const OpenBox one("box:1x1x1");
    EXPECT_EQ(one.zone(2), "interior 0-0"); // no elements
    EXPECT_EQ(one.zone(10), "cells 1-1");
}

TEST(GeneratedZones, KnowTheirNeighbours)
{
    OpenBox box("box:2x2x4 zones:2");
    std::list<int> ids;
    box.getFaceCellZone0Ids(2, ids);
    EXPECT_THAT(ids, ElementsAre(10, 11));
    box.getFaceCellZone1Ids(2, ids);
    EXPECT_THAT(ids, ElementsAre(10, 11));
    box.getFaceCellZone0Ids(7, ids);
    EXPECT_THAT(ids, ElementsAre(10));
    box.getFaceCellZone1Ids(7, ids);
    EXPECT_THAT(ids, ElementsAre());
    box.getFaceCellZone0Ids(8, ids);
    EXPECT_THAT(ids, ElementsAre(11));
    box.getCellFaceZoneIds(10, ids);
    EXPECT_THAT(ids, ElementsAre(2, 3, 4, 5, 6, 7));
    box.getCellFaceZoneIds(11, ids);
    EXPECT_THAT(ids, ElementsAre(2, 3, 4, 5, 6, 8));
}

TEST(GeneratedLocations, FollowTheZones)
{
    OpenBox box("box:2x2x2");
    std::vector<int> cells, sides;
    EXPECT_TRUE(box.getLocationModel()->resolveLocation("box", 0, 0, cells, sides));
    EXPECT_THAT(cells, ElementsAre(10));
    EXPECT_THAT(sides, ElementsAre(3, 4, 5, 6, 7, 8));
    sides.clear();
    EXPECT_TRUE(box.getLocationModel()->resolveLocation("z-max", 0, 0, cells, sides));
    EXPECT_THAT(sides, ElementsAre(8));
}

// ---- the solution

TEST(GeneratedSolution, DiffersByPhaseFieldAndLevel)
{
    OpenBox box("box:2x2x2 fields:2 phases:2 levels:3");
    EXPECT_THAT(box.getTimeLevels(), ElementsAre(1, 2, 3));
    std::set<double> values;
    for (const short phase : {1, 2})
        for (const char* field : {"field-1", "field-2"})
            for (const int level : {1, 2, 3}) {
                std::vector<int> zones;
                ASSERT_TRUE(box.startReadingPhase(phase));
                box.startReadingTimeLevel(level);
                EXPECT_EQ(box.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, field, zones), 1U);
                EXPECT_THAT(zones, ElementsAre(10));
                double value = 0;
                EXPECT_EQ(box.getValuesOfPhaseVariableForElementsInRange(5, 5, &value, 1), 1U);
                values.insert(value);
                float single = 0;
                EXPECT_EQ(box.getValuesOfPhaseVariableForElementsInRange(5, 5, &single, 1), 1U);
                EXPECT_EQ(single, static_cast<float>(value));
            }
    EXPECT_EQ(values.size(), 12U);
    std::vector<int> zones = {-1};
    EXPECT_EQ(box.startReadingZonesOfCategoryWithPhaseVariable(KEL_FACE_ZONE, "field-1", zones), 0U);
    EXPECT_THAT(zones, ElementsAre());
    double value = 0;
    EXPECT_EQ(box.getValuesOfPhaseVariableForElementsInRange(1, 1, &value, 1), 0U);
    std::string text;
    EXPECT_TRUE(box.getAttributeValueOfPhaseVariable("phase-1", "field-2", "Long Name", text));
    EXPECT_EQ(text, "Field 2");
}

TEST(GeneratedSolution, OpensWithoutTheCase)
{
    KelGeneratedProvider box;
    std::vector<int> zones;
    box.setFile("box:2x2x2 fields:1", KEL_DATA);
    ASSERT_TRUE(box.startReading(KEL_DATA));
    EXPECT_EQ(box.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "field-1", zones), 1U);
    std::vector<double> values(8);
    EXPECT_EQ(box.getValuesOfPhaseVariableForElementsInZone(10, values.data(), 8), 8U);
    EXPECT_EQ(box.getCell0ForFace(1), 0U); // the mesh is in the case
}

TEST(GeneratedMeshes, ThereIsOne)
{
    OpenBox box("box:2x2x2");
    EXPECT_THAT(box.availableMeshIds(KEL_CASE), ElementsAre(1));
    EXPECT_TRUE(box.hasMeshId(1));
    EXPECT_FALSE(box.hasMeshId(2));
    EXPECT_THAT(box.availableTargets(), ElementsAre(KEL_DEFAULT_TARGET));
    EXPECT_THAT(box.availableTargets(2, KEL_CASE), ElementsAre());
    EXPECT_EQ(box.getMeshId(), 1);
    EXPECT_FALSE(box.setMeshId(2));
    EXPECT_TRUE(box.setMeshId(1));
    EXPECT_EQ(box.zone(10), "cells 1-8");
}

// ---- huge boxes

TEST(GeneratedHuge, AnyRangeCostsWhatItHolds)
{
    OpenBox box("box:100000x100000x1000 cells:tet zones:10 periodic partitions:1000 fields:1");
    EXPECT_EQ(box.size(KEL_MESH_SIZE_4), unsigned64{60000000000000});
    const unsigned64 lastCell = box.size(KEL_MESH_SIZE_4), lastFace = box.size(KEL_MESH_SIZE_3);
    std::vector<unsigned64> ids(12);
    EXPECT_EQ(box.getNodeIdsForCellsInRange(lastCell - 2, lastCell, ids.data(), 12), 12U);
    for (const unsigned64 id : ids) {
        EXPECT_GE(id, 1U);
        EXPECT_LE(id, box.size(KEL_MESH_SIZE_1));
    }
    EXPECT_GT(box.getCell0ForFace(lastFace), lastCell - 6);
    double xyz[3] = {};
    EXPECT_EQ(box.getCoordinatesForNode(box.size(KEL_MESH_SIZE_1), xyz, 3), 3U);
    EXPECT_THAT(xyz, ElementsAre(1.0, 1.0, 1.0));
    EXPECT_EQ(box.getPartitionIdForCell(lastCell), 999);
    KelCellType type{};
    EXPECT_TRUE(box.hasUniformTypeForCellsInZone(19, &type));
    EXPECT_EQ(type, KEL_CELL_TETRAHEDRON);
    short count = 0;
    EXPECT_TRUE(box.hasUniformNodeCountForFacesInZone(2, &count));
    EXPECT_EQ(count, 3);
    std::vector<int> zones;
    double value = 0;
    EXPECT_EQ(box.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "field-1", zones), 1U);
    EXPECT_EQ(box.getValuesOfPhaseVariableForElementsInRange(lastCell, lastCell, &value, 1), 1U);
    EXPECT_EQ(box.getCell0ForFace(lastFace + 1), 0U);
}

TEST(GeneratedHuge, NumbersDoNotWrapAtTheLargest)
{
    OpenBox box("box:17592186044416x1x1 cells:tet partitions:1000000 zones:1");
    const unsigned64 lastCell = box.size(KEL_MESH_SIZE_4);
    EXPECT_EQ(lastCell, 6 * unsigned64{17592186044416});
    EXPECT_EQ(box.getPartitionIdForCell(lastCell), 999999);
    EXPECT_EQ(box.getPartitionIdForCell(1), 0);
    unsigned64 last = 0;
    box.getZoneSizeInfo(10, KEL_ZONE_LAST_ID, last);
    EXPECT_EQ(last, lastCell);
}

// ---- partitions, uniform queries

TEST(GeneratedPartitions, AreSlabsAlongX)
{
    OpenBox box("box:6x1x2 partitions:3");
    std::vector<int> found(12);
    EXPECT_EQ(box.getPartitionIdsForCellsInRange(1, 12, found.data(), 12), 12U);
    EXPECT_THAT(found, ElementsAre(0, 0, 1, 1, 2, 2, 0, 0, 1, 1, 2, 2));
    EXPECT_EQ(box.getPartitionCountOfCells(), 3);
    OpenBox without("box:6x1x2");
    EXPECT_EQ(without.getPartitionIdsForCellsInRange(1, 12, found.data(), 12), 0U);
    EXPECT_EQ(without.getPartitionCountOfCells(), 0);
}

TEST(GeneratedUniform, IsTrueOnlyWhereItIs)
{
    for (const char* line : {"box:3x2x6 zones:3 hanging", "box:3x2x2 cells:prism", "box:3x2x2 cells:poly",
                             "box:2x2x2 cells:pyramid", "box:2x2x2 cells:tet", "box:4x4x5 zones:5"}) {
        OpenBox box(line);
        std::vector<int> zones;
        box.getZoneIds(KEL_CELL_ZONE, zones);
        for (const int zone : zones) {
            unsigned64 first = 0, last = 0;
            box.getZoneSizeInfo(zone, KEL_ZONE_FIRST_ID, first);
            box.getZoneSizeInfo(zone, KEL_ZONE_LAST_ID, last);
            std::set<int> types;
            for (unsigned64 cell = first; cell <= last; ++cell)
                types.insert(box.getTypeForCell(cell));
            KelCellType type{};
            EXPECT_EQ(box.hasUniformTypeForCellsInZone(zone, &type), types.size() == 1) << line << " zone " << zone;
            if (types.size() == 1) {
                EXPECT_EQ(type, *types.begin());
            }
        }
        const unsigned64 faces = box.size(KEL_MESH_SIZE_3);
        for (unsigned64 first = 1; first <= faces; first += 5)
            for (const unsigned64 last : {first, std::min(first + 4, faces), faces}) {
                std::set<short> counts;
                for (unsigned64 face = first; face <= last; ++face)
                    counts.insert(box.getNodeCountForFace(face));
                short count = -1;
                EXPECT_EQ(box.hasUniformNodeCountForFacesInRange(first, last, &count), counts.size() == 1)
                    << line << " faces " << first << " to " << last;
                EXPECT_EQ(count, counts.size() == 1 ? *counts.begin() : -1);
            }
        short count = -1;
        EXPECT_FALSE(box.hasUniformNodeCountForFacesInRange(1, faces + 1, &count)) << line;
        EXPECT_FALSE(box.hasUniformNodeCountForFacesInRange(0, 1, &count)) << line;
    }
}

} // namespace
} // namespace meridyn
