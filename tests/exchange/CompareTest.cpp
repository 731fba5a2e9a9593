#include "RichModel.h"

#include "KelCompare.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace meridyn {
namespace {

std::vector<KelDifference> differences(const std::string& one, const std::string& other,
                                       const KelCompareOptions& options = {})
{
    KelMemoryProvider first, second;
    setBoth(first, one);
    setBoth(second, other);
    KelCompare compare(first, second, options);
    EXPECT_TRUE(compare.run()) << compare.problem();
    return compare.differences();
}

TEST(Compare, EqualModelsHaveNoDifference)
{
    makeRichModel("memory:one");
    makeRichModel("memory:other");
    EXPECT_TRUE(differences("memory:one", "memory:other").empty());
}

struct Planted {
    const char* name;
    KelDataClass dataClass;
    RichWriter::Change change;
    const char* family;
    const char* item;
    unsigned64 id;
};

void PrintTo(const Planted& row, std::ostream* out)
{
    *out << row.name;
}

const unsigned64 one = 1;
const double zero = 0;

// clang-format off
const Planted planted[] = {
    {"Coordinate", KEL_CASE, [](RichWriter& w) { const double xyz[] = {9, 9, 9}; w.setCoordinatesForNode(7, xyz, 3); }, "coordinates", "coordinates of zone 1 'nodes'", 7},
    {"EdgeNode", KEL_CASE, [](RichWriter& w) { const unsigned64 ids[] = {1, 9}; w.setNodeIdsForEdge(1, ids, 2); }, "edges", "nodes of edges of zone 20", 1},
    {"FaceNode", KEL_CASE, [](RichWriter& w) { const unsigned64 ids[] = {1, 2, 3, 4}; w.setNodeIdsForFace(2, ids, 4); }, "face nodes", "nodes of faces of zone 2 'interior'", 2},
    {"Cell0", KEL_CASE, [](RichWriter& w) { w.setCell0ForFace(3, 24); }, "face cells", "cell 0 of faces of zone 2 'interior'", 3},
    {"Cell1", KEL_CASE, [](RichWriter& w) { w.setCell1ForFace(3, 24); }, "face cells", "cell 1 of faces of zone 2 'interior'", 3},
    {"Shadow", KEL_CASE, [](RichWriter& w) { unsigned64 id = 0; w.getZoneSizeInfo(3, KEL_ZONE_FIRST_ID, id); w.setShadowFaceIdForFace(id, 1); }, "shadow faces", "shadow faces of zone 3 'x-min'", 0},
    {"InterfaceShare", KEL_CASE, [](RichWriter& w) { const double a[] = {0.25, 0.5}; w.setInterfaceDataForFacesInZone(5, a, 2, a, 1, RichWriter::ramp<unsigned64>(2).data(), 2, RichWriter::ramp<unsigned64>(3).data(), 3); }, "interface data", "interface shares on side 0 of zone 5 'y-min'", 2},
    {"InterfaceLength", KEL_CASE, [](RichWriter& w) { const double a[] = {0.25, 1}; w.setInterfaceDataForFacesInZone(5, a, 2, a, 1, RichWriter::ramp<unsigned64>(2).data(), 2, RichWriter::ramp<unsigned64>(2).data(), 2); }, "interface data", "number of interface faces of side 1 of zone 5 'y-min'", 0},
    {"ChildFace", KEL_CASE, [](RichWriter& w) { unsigned64 id = 0; w.getZoneSizeInfo(9, KEL_ZONE_FIRST_ID, id); const unsigned64 ids[] = {1, 2, 3, 4}; w.setChildFaceIdsForFace(id, ids, 4); }, "child faces", "child faces of zone 9 'parents'", 0},
    {"CellType", KEL_CASE, [](RichWriter& w) { w.setTypeForCell(4, KEL_CELL_PRISM); }, "cell types", "types of cells of zone 10 'cells-1'", 4},
    {"CellNode", KEL_CASE, [](RichWriter& w) { w.setNodeIdsForCell(1, RichWriter::ramp<unsigned64>(8).data(), 8); }, "cell nodes", "nodes of cells of zone 10 'cells-1'", 1},
    {"CellFace", KEL_CASE, [](RichWriter& w) { w.setFaceIdsForCell(5, &one, 1); }, "cell faces", "faces of cells of zone 10 'cells-1'", 5},
    {"Partition", KEL_CASE, [](RichWriter& w) { w.setPartitionIdForCell(24, 7); }, "partitions", "partitions of cells of zone 11 'cells-2'", 24},
    {"ChildCellCount", KEL_CASE, [](RichWriter& w) { w.setChildCellCountForCell(5, 1); w.setChildCellIdsForCell(5, &one, 1); }, "child cells", "number of child cells of zone 10 'cells-1'", 5},
    {"LocalId", KEL_CASE, [](RichWriter& w) { std::vector<unsigned64> ids = RichWriter::ramp<unsigned64>(12); ids[3] = 99; w.setLocalElemIdsInZone(10, ids.data(), 12); }, "local ids", "local ids of zone 10 'cells-1'", 4},
    {"Section", KEL_CASE, [](RichWriter& w) { w.addSection(2.5F); }, "case sections", "case section 'heat', zone 11 'cells-2'", 13},
    {"ZoneName", KEL_CASE, [](RichWriter& w) { w.setZoneStringInfo(7, KEL_ZONE_STRING_0, "floor"); }, "zone properties", "text 0 of zone 7 'z-min'", 0},
    {"ZoneNumber", KEL_CASE, [](RichWriter& w) { w.setFaceZoneInfo(5, KEL_FACE_ZONE_INFO_3, 34); }, "zone properties", "number 3 of zone 5 'y-min'", 0},
    {"ZoneFlags", KEL_CASE, [](RichWriter& w) { w.setFaceZoneProp(5, KEL_FACE_ZONE_PROP_1); }, "zone properties", "flags of zone 5 'y-min'", 0},
    {"ZoneMissing", KEL_CASE, [](RichWriter& w) { w.setZoneIds(KEL_EDGE_ZONE, {}); }, "zone properties", "edge zone 20", 0},
    {"MeshUnits", KEL_CASE, [](RichWriter& w) { w.setMeshUnits("mm"); }, "mesh sizes", "mesh units", 0},
    {"Adjacency", KEL_CASE, [](RichWriter& w) { w.setFaceZoneInfo(7, static_cast<KelFaceZoneInfoType>(6), 11); }, "zone adjacency", "cell zones on side 0 of zone 7 'z-min'", 0},
    {"SettingText", KEL_CASE, [](RichWriter& w) { w.writeSettingStrings({{"a", "2"}}, KEL_CASE, "group/one"); }, "settings", "setting 'a' of group 'group/one'", 0},
    {"SettingMore", KEL_DATA, [](RichWriter& w) { w.writeSettingStrings({{"z", ""}}, KEL_DATA, "group"); }, "settings", "group 'group', setting 'z'", 0},
    {"Log", KEL_CASE, [](RichWriter& w) { w.log({{"one", "more"}}, KEL_CASE); }, "log", "number of log entries", 0},
    {"SetText", KEL_CASE, [](RichWriter& w) { w.startWritingSet("set of the case", KEL_CELL_ZONE); w.endWritingSet(); }, "sets", "members of set 'set of the case'", 0},
    {"SetMissing", KEL_DATA, [](RichWriter& w) { w.addSet("another"); }, "sets", "set 'another'", 0},
    {"PhaseAttribute", KEL_DATA, [](RichWriter& w) { w.setAttributeValueOfPhase(short{1}, "Material", "ice"); }, "attributes", "'Material' of phase 'phase-1'", 0},
    {"VariableAttribute", KEL_DATA, [](RichWriter& w) { w.setAttributeValueOfPhaseVariable(1, "Units", "bar"); }, "attributes", "'Units' of variable 'field-1' of phase 'phase-1'", 0},
    {"DatasetName", KEL_DATA, [](RichWriter& w) { w.setDatasetNameOfVariable(2, "SV_Q"); }, "attributes", "'Dataset Name' of variable 'field-2' of phase 'phase-1'", 0},
    {"Phase", KEL_DATA, [](RichWriter& w) { short id = 0; w.addPhaseName("third", id); }, "phases", "phase 'third'", 0},
    {"Variable", KEL_DATA, [](RichWriter& w) { int id = 0; w.addPhaseVariable(short{2}, "more", id); }, "variables", "phase 'phase-2', variable 'more'", 0},
    {"Value", KEL_DATA, [](RichWriter& w) { w.startWritingPhase(2); std::vector<int> z = {10, 11}; w.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, "field-2", z, 1); w.setValuesOfPhaseVariableForElementsInRange(15, 15, &zero, 1); }, "variables", "variable 'field-2' of phase 'phase-2', zone 11 'cells-2'", 15},
    {"MixtureValue", KEL_DATA, [](RichWriter& w) { w.addMixtureValue(3.5); }, "variables", "variable 'density' of phase '<Mixture>', zone 10 'cells-1'", 1},
    {"TimeLevel", KEL_DATA, [](RichWriter& w) { w.startWritingTimeLevel(8); }, "time levels", "data", 0},
    {"SetData", KEL_DATA, [](RichWriter& w) { w.startWritingPhase(2); w.startWritingSetData("injection", 2); w.endWritingSetData(); }, "set data", "members of set data 'injection' of phase 'phase-2'", 0},
    {"Track", KEL_DATA, [](RichWriter& w) { w.addTracks(1.5); }, "particle tracks", "'speed' of chunk 4 of track group 'group' of phase 'phase-2', mesh 1", 1},
};
// clang-format on

class PlantedDifference : public ::testing::TestWithParam<Planted> {};

TEST_P(PlantedDifference, IsFoundAndNamed)
{
    const Planted& row = GetParam();
    makeRichModel("memory:whole");
    makeRichModel("memory:changed", row.dataClass == KEL_CASE ? row.change : nullptr,
                  row.dataClass == KEL_DATA ? row.change : nullptr);
    const std::vector<KelDifference> found = differences("memory:whole", "memory:changed");
    ASSERT_FALSE(found.empty());
    std::string all;
    const KelDifference* named = nullptr;
    for (const KelDifference& difference : found) {
        all += difference.line() + "\n";
        EXPECT_EQ(formatFamilyName(difference.family), row.family) << difference.item;
        if (difference.item == row.item && named == nullptr)
            named = &difference;
    }
    ASSERT_NE(named, nullptr) << "found instead:\n" << all;
    EXPECT_NE(named->first, named->second);
    if (row.id != 0) {
        EXPECT_EQ(named->id, row.id);
    }
}

INSTANTIATE_TEST_SUITE_P(Compare, PlantedDifference, ::testing::ValuesIn(planted),
                         [](const auto& row) { return row.param.name; });

// ---- options

RichWriter::Change mixture(double value)
{
    return [value](RichWriter& writer) { writer.addMixtureValue(value); };
}

TEST(Compare, TolerancesDecide)
{
    makeRichModel("memory:one", nullptr, mixture(100.0));
    makeRichModel("memory:other", nullptr, mixture(101.0));
    const auto equalWith = [](double relative, double absolute) {
        KelCompareOptions options;
        options.relativeTolerance = relative;
        options.absoluteTolerance = absolute;
        return differences("memory:one", "memory:other", options).empty();
    };
    EXPECT_FALSE(equalWith(0, 0));
    EXPECT_FALSE(equalWith(0.0099, 0.99)); // 1 of 101, and 1
    EXPECT_TRUE(equalWith(0.00991, 0));
    EXPECT_TRUE(equalWith(0, 1.0));
}

TEST(Compare, NansAreEqualAndInfinitiesAreNotClose)
{
    const double nan = std::nan(""), infinity = std::numeric_limits<double>::infinity();
    KelCompareOptions loose;
    loose.absoluteTolerance = 1e300;
    loose.relativeTolerance = 0.5;
    makeRichModel("memory:one", nullptr, mixture(nan));
    makeRichModel("memory:other", nullptr, mixture(nan));
    EXPECT_TRUE(differences("memory:one", "memory:other").empty());
    makeRichModel("memory:other", nullptr, mixture(1.0));
    EXPECT_FALSE(differences("memory:one", "memory:other", loose).empty());
    makeRichModel("memory:one", nullptr, mixture(infinity));
    EXPECT_FALSE(differences("memory:one", "memory:other", loose).empty());
    makeRichModel("memory:other", nullptr, mixture(-infinity));
    EXPECT_FALSE(differences("memory:one", "memory:other", loose).empty());
    makeRichModel("memory:other", nullptr, mixture(infinity));
    EXPECT_TRUE(differences("memory:one", "memory:other").empty());
}

TEST(Compare, ReportsTheFirstDifferencesAndTheNumberOfAll)
{
    makeRichModel("memory:one", nullptr, mixture(1.0));
    makeRichModel("memory:other", nullptr, mixture(2.0));
    KelCompareOptions options;
    options.differencesPerItem = 2;
    KelMemoryProvider first, second;
    setBoth(first, "memory:one");
    setBoth(second, "memory:other");
    KelCompare compare(first, second, options);
    ASSERT_TRUE(compare.run());
    const std::string item = "variables: variable 'density' of phase '<Mixture>', zone 10 'cells-1'";
    const std::string at = ", time level 3";
    EXPECT_EQ(compare.text(), item + at + ", id 1: 1 against 2\n" + item + at + ", id 2: 1 against 2\n" + item +
                                  ", in all" + at + ": nothing against 12 differences\n");
    options.compareData = false;
    EXPECT_TRUE(differences("memory:one", "memory:other", options).empty());
}

TEST(Compare, SaysWhichModelCannotBeRead)
{
    makeRichModel("memory:one");
    KelMemoryProvider first, missing;
    setBoth(first, "memory:one");
    setBoth(missing, "memory:missing");
    KelCompare compare(first, missing);
    EXPECT_FALSE(compare.run());
    EXPECT_EQ(compare.problem(), "memory:missing: there is no such file");
    EXPECT_FALSE(first.isReadingData());
    KelProvider bare;
    KelCompare second(bare, first);
    EXPECT_FALSE(second.run());
    EXPECT_EQ(second.problem(), "the first model could not be read");
}

} // namespace
} // namespace meridyn
