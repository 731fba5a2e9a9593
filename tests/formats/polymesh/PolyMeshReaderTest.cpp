// What the reader makes of cases, on a mesh of two cells.
#include "KelFormatRegistry.h"
#include "KelLocationModel.h"
#include "ReadingHelpers.h"
#include "SmallCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace meridyn;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

// ---- the mesh in its forms ----------------------------------------------------------------------------------------

TEST(PolyMeshForms, AllFormsOfAMeshAreOne)
{
    const SmallCase text, compressed, wide, narrow;
    for (const char* name : {"points", "faces", "owner", "neighbour", "boundary"})
        compressed.compress(std::string("constant/polyMesh/") + name);
    wide.writeBinary<long, float>();
    narrow.writeBinary<int, double>();
    const Ids nodes = {2,  5, 11, 8,  1,  7, 10, 4, 3, 6, 12, 9, 1, 2, 8, 7, 2,  3,  9, 8, 4,  10,
                       11, 5, 5,  11, 12, 6, 1,  4, 5, 2, 2,  5, 6, 3, 7, 8, 11, 10, 8, 9, 12, 11};
    for (const SmallCase* form : {&text, &compressed, &wide, &narrow}) {
        KelPolyMeshProvider reader;
        ASSERT_TRUE(reader.startReading(form->path(), KEL_CASE));
        const std::vector<double> xyz = coordinatesOf(reader);
        for (std::size_t n = 0; n < 12; ++n)
            EXPECT_THAT((std::vector<double>{xyz[3 * n], xyz[3 * n + 1], xyz[3 * n + 2]}),
                        ElementsAre(n % 3, n / 3 % 2, n / 6));
        EXPECT_EQ(nodesOfFaces(reader), nodes);
        EXPECT_THAT(cell0s(reader), ElementsAre(1, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2));
        EXPECT_EQ(reader.getCell1ForFace(1), 2u);
        EXPECT_EQ(reader.getCell1ForFace(2), 0u);
    }
}

TEST(PolyMeshForms, BigEndianMeshes)
{
    const SmallCase little, big;
    little.writeBinary<long, double>();
    big.writeBinary<long, double>();
    const auto reverse = [](std::string& text, std::size_t from, std::size_t count) {
        for (std::size_t n = 0; n < count; ++n, from += 8)
            std::reverse(text.begin() + static_cast<std::ptrdiff_t>(from),
                         text.begin() + static_cast<std::ptrdiff_t>(from + 8));
    };
    const std::pair<const char*, std::vector<std::size_t>> files[] = {
        {"points", {36}}, {"faces", {12, 44}}, {"owner", {11}}, {"neighbour", {1}}};
    for (const auto& [name, counts] : files) {
        const std::string file = std::string("constant/polyMesh/") + name;
        std::string text = big.read(file);
        std::size_t at = 0;
        for (const std::size_t count : counts) {
            at = text.find("\n(", at) + 2;
            reverse(text, at, count);
            at += 8 * count;
        }
        big.write(file, text.replace(text.find("LSB"), 3, "MSB"));
    }
    KelPolyMeshProvider one, other;
    ASSERT_TRUE(one.startReading(little.path(), KEL_CASE));
    ASSERT_TRUE(other.startReading(big.path(), KEL_CASE));
    EXPECT_EQ(coordinatesOf(other), coordinatesOf(one));
    EXPECT_EQ(nodesOfFaces(other), nodesOfFaces(one));
    EXPECT_EQ(cell0s(other), cell0s(one));
    EXPECT_EQ(other.getCell1ForFace(1), 2u);
}

TEST(PolyMeshForms, TextMayBeWrittenInManyWays)
{
    const SmallCase small;
    small.write("constant/polyMesh/owner",
                "/* a */ " + SmallCase::head("labelList") + "\n// b\n\n( 0 0\t1 0 /* c */ 1\r\n0 1 0 1 0 1 )\n// end");
    small.write("constant/polyMesh/neighbour", SmallCase::head("labelList") + "1{1}");
    small.replace("constant/polyMesh/points", "(1 0 0)", "(+1.0e+00 -0 .0)");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path() + "//", KEL_CASE));
    EXPECT_THAT(cell0s(reader), ElementsAre(1, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2));
    EXPECT_EQ(reader.getCell1ForFace(1), 2u);
    EXPECT_EQ(coordinatesOf(reader)[3], 1);
}

// ---- zones --------------------------------------------------------------------------------------------------------

TEST(PolyMeshZones, NumbersNamesAndKinds)
{
    const SmallCase small;
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
    EXPECT_THAT(zoneNames(reader, KEL_NODE_ZONE), ElementsAre("nodes"));
    EXPECT_THAT(zoneNames(reader, KEL_FACE_ZONE), ElementsAre("interior", "left", "right", "sides"));
    EXPECT_THAT(zoneNames(reader, KEL_CELL_ZONE), ElementsAre("cells"));
    const Ids ranges[] = {{1, 12}, {1, 1}, {2, 2}, {3, 3}, {4, 11}, {1, 2}};
    for (int zone = 1; zone <= 6; ++zone)
        EXPECT_EQ(rangeOf(reader, zone), ranges[zone - 1]) << zone;
    const KelFaceZoneType types[] = {KEL_FACE_ZONE_TYPE_INTERIOR, KEL_FACE_ZONE_TYPE_BOUNDARY, KEL_FACE_ZONE_TYPE_WALL,
                                     KEL_FACE_ZONE_TYPE_SYMMETRY};
    for (int zone = 2; zone <= 5; ++zone) {
        KelFaceZoneType type;
        reader.getFaceZoneType(zone, type);
        EXPECT_EQ(type, types[zone - 2]) << zone;
    }
    std::string kind, units;
    reader.getZoneStringInfo(5, KEL_ZONE_STRING_1, kind);
    EXPECT_EQ(kind, "symmetry");
    reader.getMeshUnits(units);
    EXPECT_EQ(units, "m");
    EXPECT_EQ(reader.getTypeForCell(2), KEL_CELL_HEXAHEDRON);
}

TEST(PolyMeshZones, CellsAreOrderedByZonesAndKeepTheirFacesAndValues)
{
    const SmallCase small;
    small.write("constant/polyMesh/cellZones",
                SmallCase::head("regIOobject") + "1 ( cells { type cellZone; cellLabels List<label> 1(1); } )");
    small.write(
        "1/p", SmallCase::field("volScalarField", "nonuniform List<scalar> 2(10 20)", "\".*\" { type zeroGradient; }"));
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    EXPECT_THAT(zoneNames(reader, KEL_CELL_ZONE), ElementsAre("cells", "cells-2"));
    EXPECT_THAT(cell0s(reader), ElementsAre(2, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1));
    EXPECT_EQ(reader.getCell1ForFace(1), 1u);
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "p"), ElementsAre(20, 10));
    Ids labels(2);
    EXPECT_EQ(reader.getLocalElemIdsInZone(6, labels.data(), 2), 1u); // of the cells of the zone, as the case has them
    EXPECT_EQ(labels[0], 2u);
    EXPECT_EQ(reader.getLocalElemIdsInZone(7, labels.data(), 2), 1u);
    EXPECT_EQ(labels[0], 1u);
    EXPECT_EQ(reader.getLocalElemIdsInZone(2, labels.data(), 2), 0u); // faces keep their order
    EXPECT_THAT(valuesOf(reader, KEL_FACE_ZONE, "p"), ElementsAre(10, 20, 10, 20, 10, 20, 10, 20, 10, 20));
    Ids faces(6);
    reader.getFaceIdsForCell(1, faces.data(), 6);
    EXPECT_THAT(faces, ElementsAre(1, 3, 5, 7, 9, 11));
    std::list<int> beside;
    reader.getFaceCellZone0Ids(2, beside);
    EXPECT_THAT(beside, ElementsAre(7));
    reader.getFaceCellZone1Ids(2, beside);
    EXPECT_THAT(beside, ElementsAre(6));
    reader.getCellFaceZoneIds(6, beside);
    EXPECT_THAT(beside, ElementsAre(2, 4, 5));
}

TEST(PolyMeshZones, OfOverlappingCellZonesTheFirstWinsAndAllAreSets)
{
    const SmallCase small;
    small.write("constant/polyMesh/cellZones", SmallCase::head("regIOobject") +
                                                   "2 ( a { type cellZone; cellLabels List<label> 1(1); }"
                                                   "    b { type cellZone; cellLabels List<label> 2(1 0); } )");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
    EXPECT_THAT(zoneNames(reader, KEL_CELL_ZONE), ElementsAre("a", "b"));
    EXPECT_EQ(rangeOf(reader, 7), (Ids{2, 2}));
    std::vector<std::string> names;
    EXPECT_TRUE(reader.getSetNames(KEL_CELL_ZONE, names));
    EXPECT_THAT(names, ElementsAre("a", "b"));
    ASSERT_TRUE(reader.startReadingSet("b"));
    Ids ids(2);
    EXPECT_EQ(reader.getIdsForSetInRange(1, 2, ids.data(), 2), 2u);
    EXPECT_THAT(ids, ElementsAre(1, 2)); // label 1 is the cell with id 1 here
}

TEST(PolyMeshZones, CellsInTheirOwnOrderHaveNoLocalIds)
{
    const SmallCase small;
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
    Ids labels(2);
    EXPECT_EQ(reader.getLocalElemIdsInZone(6, labels.data(), 2), 0u);
}

TEST(PolyMeshZones, ZonesWithoutElementsHaveNoIds)
{
    const SmallCase small;
    small.replace("constant/polyMesh/boundary", "3 (", "4 ( none { type patch; nFaces 0; startFace 1; }");
    small.write("constant/polyMesh/cellZones",
                SmallCase::head("regIOobject") + "1 ( void { type cellZone; cellLabels 0(); } )");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
    EXPECT_EQ(zoneName(reader, 3), "none");
    EXPECT_EQ(rangeOf(reader, 3), (Ids{0, 0}));
    EXPECT_EQ(zoneName(reader, 7), "void");
    EXPECT_EQ(rangeOf(reader, 7), (Ids{0, 0}));
    EXPECT_EQ(rangeOf(reader, 8), (Ids{1, 2}));
    EXPECT_NE(reader.getLocationModel(), nullptr);
}

TEST(PolyMeshZones, PeriodicPatchesAreShadowsOfEachOther)
{
    const SmallCase small;
    small.write("constant/polyMesh/boundary",
                SmallCase::head("polyBoundaryMesh") +
                    "3 ( left { type cyclic; neighbourPatch right; nFaces 1; startFace 1; }"
                    "right { type cyclic; neighbourPatch left; nFaces 1; startFace 2; }"
                    "sides { type cyclic; neighbourPatch left; nFaces 8; startFace 3; } )");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
    Ids shadows(11, 99);
    EXPECT_EQ(reader.getShadowFaceIdsForFacesInRange(1, 11, shadows.data(), 11), 11u);
    EXPECT_THAT(shadows, ElementsAre(0, 3, 2, 0, 0, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(reader.getShadowFaceIdsForFacesInRange(4, 11, shadows.data(), 11), 0u); // sizes differ: no partner
    KelFaceZoneType type;
    reader.getFaceZoneType(3, type);
    EXPECT_EQ(type, KEL_FACE_ZONE_TYPE_PERIODIC);
    reader.getFaceZoneType(5, type);
    EXPECT_EQ(type, KEL_FACE_ZONE_TYPE_BOUNDARY);
}

TEST(PolyMeshZones, RangesAndBuffers)
{
    const SmallCase small;
    KelPolyMeshProvider reader;
    Ids ids(44);
    EXPECT_EQ(reader.getCell0sForFacesInRange(1, 1, ids.data(), 1), 0u); // nothing is open
    ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
    EXPECT_EQ(reader.getCell0sForFacesInRange(0, 1, ids.data(), 44), 0u);
    EXPECT_EQ(reader.getCell0sForFacesInRange(11, 12, ids.data(), 44), 0u);
    EXPECT_EQ(reader.getCell0sForFacesInRange(3, 2, ids.data(), 44), 0u);
    EXPECT_EQ(reader.getCell0sForFacesInRange(1, ~unsigned64{0}, ids.data(), 44), 0u);
    EXPECT_EQ(reader.getNodeIdsForFacesInRange(1, 11, ids.data(), 7), 4u); // whole faces only
    EXPECT_EQ(reader.getNodeIdsForCellsInRange(1, 2, ids.data(), 15), 8u);
    std::vector<float> xyz(5);
    EXPECT_EQ(reader.getCoordinatesForNodesInRange(1, 12, xyz.data(), 5), 3u);
    short count = -1;
    EXPECT_TRUE(reader.hasUniformNodeCountForFacesInRange(1, 11, &count));
    EXPECT_EQ(count, 4);
    EXPECT_TRUE(reader.hasUniformFaceCountForCellsInZone(6, &count));
    EXPECT_EQ(count, 6);
    EXPECT_TRUE(reader.hasUniformNodeCountForCellsInZone(6, &count));
    EXPECT_EQ(count, 8);
    EXPECT_FALSE(reader.hasUniformNodeCountForCellsInZone(5, &count)); // a face zone
}

TEST(PolyMeshZones, PointZonesAndFaceZonesAreSets)
{
    const SmallCase small;
    small.write("constant/polyMesh/pointZones",
                SmallCase::head("regIOobject") + "1 ( z { type pointZone; pointLabels List<label> 2(11 0); } )");
    small.write("constant/polyMesh/faceZones",
                SmallCase::head("regIOobject") +
                    "1 ( z { type faceZone; faceLabels List<label> 2(0 4); flipMap List<bool> 2(1 0); } )");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
    std::vector<std::string> names;
    EXPECT_TRUE(reader.getSetNames(names));
    EXPECT_THAT(names, ElementsAre("z", "z (points)"));
    EXPECT_FALSE(reader.getSetNames(KEL_DATA, names));
    EXPECT_FALSE(reader.startReadingSet("y"));
    EXPECT_EQ(reader.getCategoryOfSet(), -1);
    ASSERT_TRUE(reader.startReadingSet("z (points)"));
    EXPECT_EQ(reader.getCategoryOfSet(), KEL_NODE_ZONE);
    Ids sizes, least, most;
    reader.getSizesAndMinMaxIdsForSet(sizes, least, most);
    EXPECT_THAT(sizes, ElementsAre(2));
    EXPECT_THAT(least, ElementsAre(1));
    EXPECT_THAT(most, ElementsAre(12));
    reader.getVariablesInSet(names);
    EXPECT_THAT(names, IsEmpty());
    ASSERT_TRUE(reader.startReadingSet("z"));
    unsigned64 perMember = 0;
    double flips[2] = {-1, -1};
    EXPECT_EQ(reader.getDataOfVariableForSetInRange(1, 2, flips, 2), 0u); // not opened yet
    EXPECT_EQ(reader.startReadingDataOfVariableForSet("flips", perMember), -1);
    EXPECT_EQ(reader.startReadingDataOfVariableForSet("flipMap", perMember), KEL_PLAIN_UNSIGNED_CHAR);
    EXPECT_EQ(perMember, 1u);
    EXPECT_EQ(reader.getDataOfVariableForSetInRange(1, 2, flips, 2), 2u);
    EXPECT_THAT(flips, ElementsAre(1, 0));
}

// ---- meshes, settings, locations, registry ------------------------------------------------------------------------

TEST(PolyMeshMeshes, TimesWithAMeshOfTheirOwn)
{
    const SmallCase small;
    std::string moved = small.read("constant/polyMesh/points");
    moved.replace(moved.find("(0 0 0)"), 7, "(0 0 5)");
    small.write("1/polyMesh/points", moved);
    small.write("0/p", SmallCase::field("volScalarField", "uniform 3"));
    small.write("1/p", SmallCase::field("volScalarField", "uniform 4"));
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    EXPECT_THAT(reader.availableMeshIds(KEL_CASE), ElementsAre(1, 2));
    EXPECT_EQ(coordinatesOf(reader)[2], 0);
    ASSERT_TRUE(reader.setMeshId(2));
    EXPECT_EQ(coordinatesOf(reader)[2], 5);
    EXPECT_THAT(zoneNames(reader, KEL_FACE_ZONE), ElementsAre("interior", "left", "right", "sides"));
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "p"), ElementsAre(3, 3)); // the topology is the same
    EXPECT_FALSE(reader.setMeshId(3));
    EXPECT_THAT(reader.getErrors(false, true), ElementsAre(small.path() + ": expected a mesh id from 1 to 2, found 3"));
}

TEST(PolyMeshMeshes, FieldsOfAnotherTopologyAreRefused)
{
    const SmallCase small;
    for (const char* name : {"points", "faces", "owner", "neighbour", "boundary"})
        small.write(std::string("1/polyMesh/") + name, small.read(std::string("constant/polyMesh/") + name));
    small.write("1/p", SmallCase::field("volScalarField", "uniform 4"));
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "p"), IsEmpty());
    EXPECT_THAT(reader.getErrors(false, true),
                ElementsAre(small.file("1/p") + ": expected mesh id 2, to whose cells it belongs, found 1"));
    ASSERT_TRUE(reader.setMeshId(2));
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "p"), ElementsAre(4, 4));
}

TEST(PolyMeshMeshes, AReaderThatIsClosedGivesNothing)
{
    const SmallCase small;
    small.write("constant/polyMesh/faceZones",
                SmallCase::head("regIOobject") + "1 ( z { type faceZone; faceLabels List<label> 1(1); } )");
    KelPolyMeshProvider reader;
    for (const bool wasOpen : {false, true}) {
        if (wasOpen) {
            ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
            EXPECT_THAT(reader.availableTargets(1, KEL_CASE), ElementsAre(KEL_DEFAULT_TARGET));
            EXPECT_TRUE(reader.startReadingSet("z"));
            EXPECT_FALSE(reader.startReadingSet("y"));
            EXPECT_TRUE(reader.endReading(KEL_CASE));
        }
        EXPECT_FALSE(reader.isReadingData());
        EXPECT_FALSE(reader.endReading(KEL_CASE));
        EXPECT_THAT(reader.availableTargets(1, KEL_CASE), IsEmpty());
        EXPECT_FALSE(reader.startReadingSet("z"));
        unsigned64 id = 7;
        EXPECT_EQ(reader.getIdsForSetInRange(1, 1, &id, 1), 0u);
        Ids sizes = {1}, least, most;
        reader.getSizesAndMinMaxIdsForSet(sizes, least, most);
        EXPECT_THAT(sizes, IsEmpty());
        EXPECT_EQ(reader.getCell0sForFacesInRange(1, 1, &id, 1), 0u);
        std::vector<int> zones = {7};
        EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, 1, zones), 0u);
        EXPECT_THAT(zones, IsEmpty());
        EXPECT_EQ(id, 7u);
    }
    EXPECT_THAT(reader.getErrors(false, true), IsEmpty());
}

TEST(PolyMeshLocations, ABodyPerCellZoneAndAFacePerPatch)
{
    const SmallCase small;
    small.write("constant/polyMesh/cellZones",
                SmallCase::head("regIOobject") + "1 ( a { type cellZone; cellLabels List<label> 1(0); } )");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
    const KelLocationModel& model = *reader.getLocationModel();
    std::vector<int> cells, sides;
    EXPECT_TRUE(model.resolveLocation("mesh/a", 0, 0, cells, sides));
    EXPECT_THAT(cells, ElementsAre(6));
    EXPECT_THAT(sides, ElementsAre(3)); // "sides" lies beside both bodies, so that neither uses it
    int part = 0, face = 0;
    ASSERT_TRUE(model.findPart("mesh", part));
    ASSERT_TRUE(model.findFace(part, "sides", face));
    ASSERT_TRUE(model.getFaceZones(face, 0, cells));
    EXPECT_THAT(cells, ElementsAre(5));
}

TEST(PolyMeshFormat, IsRecognisedByItsFolders)
{
    const SmallCase small;
    const TemporaryFolder folder;
    const KelFormat* format = KelFormatRegistry::instance().find("polymesh");
    ASSERT_NE(format, nullptr);
    EXPECT_TRUE(format->probe(small.path()));
    EXPECT_FALSE(format->probe(folder.path()));
    EXPECT_TRUE(format->probe(small.file("constant/polyMesh/points"))); // a file of the mesh leads to its case
    EXPECT_EQ(KelFormatRegistry::instance().probe(small.path()), format);
    EXPECT_EQ(format->files(small.path(), false).caseFile, small.path());
    EXPECT_EQ(format->files(small.path(), false).dataFile, "");
    small.write("0/p", "");
    EXPECT_EQ(format->files(small.path(), false).dataFile, small.path());
    EXPECT_EQ(format->files(folder.path(), false).caseFile, "");
    EXPECT_EQ(format->files(small.path(), true).caseFile, "");
    EXPECT_EQ(format->writes, 0u);
    EXPECT_NE(format->makeReader(), nullptr);
}

} // namespace
