// Files whose parts do not fit together: what is asked for is refused, in one message that names the part.
#include "FileEdit.h"
#include "KelLocationModel.h"
#include "Sample.h"

#include <functional>
#include <gmock/gmock.h>

using namespace hdf5test;
using ::testing::StartsWith;

namespace {

const std::string phase = sampleMesh + "/levels/20/phases/gas";

/// Opens the case and gives whether it was refused.
bool refusesCase(Reader& reader, const std::string& path)
{
    return !reader.startReading(path, KEL_CASE);
}

/// A mesh that opens, and one operation of it that must give nothing.
template <class Ask>
auto asksMesh(const Ask& ask)
{
    return [ask](Reader& reader, const std::string& path) {
        EXPECT_TRUE(reader.startReading(path, KEL_CASE)) << reader.errors();
        std::vector<unsigned64> ids(64);
        return ask(reader, ids.data()) == 0;
    };
}

/// The same for the data at time level 20, phase "gas".
template <class Ask>
auto asksData(const Ask& ask)
{
    return [ask](Reader& reader, const std::string& path) {
        EXPECT_TRUE(reader.startReading(path, KEL_DATA)) << reader.errors();
        reader.startReadingTimeLevel(20);
        EXPECT_TRUE(reader.setActivePhase("gas"));
        return ask(reader);
    };
}

unsigned64 allFaceNodes(Reader& reader, unsigned64* ids)
{
    return reader.getNodeIdsForFacesInRange(1, 11, ids, 64);
}

unsigned64 allChildFaces(Reader& reader, unsigned64* ids)
{
    return reader.getChildFaceIdsForFacesInRange(1, 11, ids, 64);
}

unsigned64 someChildFaces(Reader& reader, unsigned64* ids) // those that have any
{
    return reader.getChildFaceIdsForFacesInRange(4, 6, ids, 64);
}

unsigned64 allCell0s(Reader& reader, unsigned64* ids)
{
    return reader.getCell0sForFacesInRange(1, 11, ids, 64);
}

void changeZone(FileEdit& file, std::size_t row, std::size_t column, long long value)
{
    std::vector<long long> cells = file.table(sampleMesh + "/zones");
    cells[row * 14 + column] = value;
    file.array(sampleMesh + "/zones", H5T_NATIVE_LLONG, {cells.size() / 14, 14}, cells.data());
}

void changeNumber(FileEdit& file, const std::string& path, std::size_t index, long long value,
                  std::vector<hsize_t> extent = {})
{
    std::vector<long long> numbers = file.table(path);
    numbers.at(index) = value;
    if (extent.empty())
        extent = {numbers.size()};
    file.array(path, H5T_NATIVE_LLONG, extent, numbers.data());
}

struct Damaged {
    const char* name;
    const char* file;
    std::function<void(FileEdit&)> damage;
    std::function<bool(Reader&, const std::string& path)> isRefused;
    const char* words; ///< behind the path of the file; "M" at their beginning stands for the mesh
};

void PrintTo(const Damaged& row, std::ostream* out)
{
    *out << row.name;
}

const int few[] = {1, 2, 3};
const unsigned long long wide[] = {0, 2, 2};

// clang-format off
const Damaged damages[] = {
    {"NoFormat", "d.case.kel", [](FileEdit& f) { f.removeAttribute("/", "format"); }, refusesCase, "is no Kel file, 'Kel case' expected"},
    {"AnotherFormat", "d.case.kel", [](FileEdit& f) { f.text("/", "format", "Other"); }, refusesCase, "is a file of the format 'Other', 'Kel case' expected"},
    {"FormatIsANumber", "d.case.kel", [](FileEdit& f) { f.numbers("/", "format", {1}); }, refusesCase, "attribute @format is no fixed-length text"},
    {"NoVersion", "d.case.kel", [](FileEdit& f) { f.removeAttribute("/", "format_version"); }, refusesCase, "has the format version '', 25.1.0 or older can be read"},
    {"NoMesh", "d.case.kel", [](FileEdit& f) { f.remove("/meshes"); }, refusesCase, "has no mesh with the id "},
    {"DimensionBelowZero", "d.case.kel", [](FileEdit& f) { f.numbers(sampleMesh, "dimension", {-1}); }, refusesCase, "M has the dimension -1"},
    {"TwoDimensions", "d.case.kel", [](FileEdit& f) { f.numbers(sampleMesh, "dimension", {3, 3}); }, refusesCase, "attribute /meshes/mesh_4_target_0_partition_-1@dimension has 2 values, 1 expected"},
    {"DimensionIsAText", "d.case.kel", [](FileEdit& f) { f.text(sampleMesh, "dimension", "3"); }, refusesCase, "attribute /meshes/mesh_4_target_0_partition_-1@dimension is no integer"},
    {"RangesDescend", "d.case.kel", [](FileEdit& f) { f.numbers(sampleMesh + "/faces", "ranges", {5, 4}); }, refusesCase, "M/faces@ranges: range 0 goes from 5 to 4, ascending ranges expected"},
    {"RangesOverlap", "d.case.kel", [](FileEdit& f) { f.numbers(sampleMesh + "/faces", "ranges", {1, 5, 5, 11}); }, refusesCase, "M/faces@ranges: range 1 goes from 5 to 11, ascending ranges expected"},
    {"NarrowZones", "d.case.kel", [](FileEdit& f) { f.array(sampleMesh + "/zones", H5T_NATIVE_INT, {1, 3}, few); }, refusesCase, "M/zones has 3 columns, 14 expected"},
    {"ZoneOfNoCategory", "d.case.kel", [](FileEdit& f) { changeZone(f, 0, 0, 7); }, refusesCase, "M/zones has in row 0 the category 7 and the id 1, a category from 0 to 3 and an id of its own expected"},
    {"ZoneTwice", "d.case.kel", [](FileEdit& f) { changeZone(f, 1, 1, 1); }, refusesCase, "M/zones has in row 1 the category 2 and the id 1, a category from 0 to 3 and an id of its own expected"},
    {"ZoneNameTooLong", "d.case.kel", [](FileEdit& f) { changeZone(f, 0, 12, 1000); }, refusesCase, "M/zone_texts has "},
    {"ZoneNameBelowZero", "d.case.kel", [](FileEdit& f) { changeZone(f, 0, 12, -1); }, refusesCase, "M/zone_texts has "},
    {"ArrayTooShort", "d.case.kel", [](FileEdit& f) { f.array(sampleMesh + "/faces/cell0", H5T_NATIVE_INT, {3}, few); }, asksMesh(allCell0s), "M/faces/cell0 has 3 rows, 11 expected"},
    {"ArrayOfReversedBytes", "d.case.kel", [](FileEdit& f) { f.array(sampleMesh + "/faces/cell0", H5T_STD_I32BE, {3}, few); }, asksMesh(allCell0s), "M/faces/cell0 has a type of value that these files do not have"},
    {"ArrayOfThreeDimensions", "d.case.kel", [](FileEdit& f) { f.array(sampleMesh + "/faces/cell0", H5T_NATIVE_INT, {1, 1, 3}, few); }, asksMesh(allCell0s), "M/faces/cell0 has 3 dimensions, 1 or 2 expected"},
    {"SingleValueForAnArray", "d.case.kel", [](FileEdit& f) { f.array(sampleMesh + "/faces/cell0", H5T_NATIVE_INT, {}, few); }, asksMesh(allCell0s), "M/faces/cell0 has 0 dimensions, 1 or 2 expected"},
    {"ArrayWithoutBytes", "d.case.kel", [](FileEdit& f) { f.array(sampleMesh + "/faces/cell0", H5T_NATIVE_INT, {11}, nullptr); }, asksMesh(allCell0s), "M/faces/cell0 has 44 bytes, which are not in a file of "},
    {"ArrayWithoutColumns", "d.case.kel", [](FileEdit& f) { f.array(sampleMesh + "/faces/cell0", H5T_NATIVE_INT, {11, 0}, nullptr); }, asksMesh(allCell0s), "M/faces/cell0 has an extent of 11 times 0"},
    {"FewerIdsThanCounts", "d.case.kel", [](FileEdit& f) { f.array(sampleMesh + "/faces/node_ids", H5T_NATIVE_INT, {3}, few); }, asksMesh(allFaceNodes), "M/faces/node_ids has 3 ids, 4 for each of 11 rows expected"},
    {"NoOffsets", "d.case.kel", [](FileEdit& f) { f.remove(sampleMesh + "/faces/child_offsets"); }, asksMesh(allChildFaces), "M/faces/child_offsets is missing"},
    {"CountBelowZeroForAll", "d.case.kel", [](FileEdit& f) { f.numbers(sampleMesh + "/faces", "node_counts", {-4}); }, asksMesh(allFaceNodes), "M/faces/node_offsets is missing"},
    {"FewOffsets", "d.case.kel", [](FileEdit& f) { f.array(sampleMesh + "/faces/child_offsets", H5T_NATIVE_ULLONG, {3}, wide); }, asksMesh(allChildFaces), "M/faces/child_offsets has 3 values, one more than the 11 rows expected"},
    {"FewCounts", "d.case.kel", [](FileEdit& f) { f.array(sampleMesh + "/faces/child_counts", H5T_NATIVE_INT, {3}, few); }, asksMesh(allChildFaces), "M/faces/child_counts has 3 values, 11 expected"},
    {"OffsetOfAnotherRow", "d.case.kel", [](FileEdit& f) { changeNumber(f, sampleMesh + "/faces/child_offsets", 4, 1); }, asksMesh(someChildFaces), "M/faces/child_offsets lets row 3 go from 0 to 1 of 3 values, but its length is 2"},
    {"OffsetBeyondTheNext", "d.case.kel", [](FileEdit& f) { changeNumber(f, sampleMesh + "/faces/child_offsets", 4, 3); }, asksMesh(someChildFaces), "M/faces/child_offsets lets row 3 go from 0 to 3 of 3 values, but its length is 2"},
    {"FirstOffset", "d.case.kel", [](FileEdit& f) { changeNumber(f, sampleMesh + "/faces/child_offsets", 0, 1); }, asksMesh(someChildFaces), "M/faces/child_offsets goes from 1 to 3, 0 to 3 expected"},
    {"LastOffset", "d.case.kel", [](FileEdit& f) { changeNumber(f, sampleMesh + "/faces/child_offsets", 11, 2); }, asksMesh(someChildFaces), "M/faces/child_offsets goes from 0 to 2, 0 to 3 expected"},
    {"CountOfAnotherLength", "d.case.kel", [](FileEdit& f) { changeNumber(f, sampleMesh + "/faces/child_counts", 5, 2); }, asksMesh(someChildFaces), "M/faces/child_offsets lets row 5 go from 2 to 3 of 3 values, but its length is 2"},
    {"GivenRowsBeyondTheMesh", "d.case.kel", [](FileEdit& f) { changeNumber(f, sampleMesh + "/faces/child_counts_given", 1, 9, {1, 2}); }, asksMesh(someChildFaces), "M/faces/child_counts_given has 9 rows from row 3 on, ascending stretches of 11 rows expected"},
    {"NoGivenRows", "d.case.kel", [](FileEdit& f) { changeNumber(f, sampleMesh + "/faces/shadow_face_given", 1, 0, {1, 2}); }, asksMesh([](Reader& r, unsigned64* ids) { return r.getShadowFaceIdsForFacesInRange(2, 3, ids, 64); }), "M/faces/shadow_face_given has 0 rows from row 1 on, ascending stretches of 11 rows expected"},
    {"FaceBeyondTheMesh", "d.case.kel", [](FileEdit&) {}, asksMesh([](Reader& r, unsigned64* ids) { return r.getCell0sForFacesInRange(11, 12, ids, 64); }), "M: faces 11 to 12 are not in the mesh, which has 11, the last with id 11"},
    {"NoLocationModel", "d.case.kel", [](FileEdit& f) { f.array("/locations", H5T_NATIVE_UCHAR, {3}, "<x>"); }, asksMesh([](Reader& r, unsigned64*) { std::vector<int> parts; r.getLocationModel()->getParts(parts); return parts.size(); }), "/locations is no state of a location model"},
    {"LogOfATebibyte", "d.case.kel", [](FileEdit& f) { const hid_t creation = H5Pcreate(H5P_DATASET_CREATE); const hsize_t chunk = 1024; H5Pset_chunk(creation, 1, &chunk); f.array("/log", H5T_NATIVE_UCHAR, {1ULL << 40}, nullptr, creation); H5Pclose(creation); }, asksMesh([](Reader& r, unsigned64*) { std::vector<std::pair<std::string, std::string>> log; r.getLog(KEL_CASE, log); return log.size(); }), "/log has 1099511627776 bytes, which are not in a file of "},
    {"LogTooShort", "d.case.kel", [](FileEdit& f) { f.array("/log_lengths", H5T_NATIVE_ULLONG, {1, 2}, wide + 1); f.array("/log", H5T_NATIVE_UCHAR, {3}, "abc"); }, asksMesh([](Reader& r, unsigned64*) { std::vector<std::pair<std::string, std::string>> log; r.getLog(KEL_CASE, log); return log.size(); }), "/log has 3 bytes, fewer than the lengths in log_lengths"},
    {"SectionOfAnotherType", "d.case.kel", [](FileEdit& f) { f.numbers(sampleMesh + "/case_sections/cells/rough", "kel_type", {KEL_PLAIN_DOUBLE}); }, asksMesh([](Reader& r, unsigned64*) { std::vector<std::string> names; std::vector<int> zones; r.startReadingCaseSectionCategories(KEL_CELL_ZONE, names); return r.startReadingCaseSectionForCategory("rough", zones) + 1; }), "M/case_sections/cells/rough@kel_type is 9, not the type of its values"},
    {"FieldOfOtherElements", "d.case.kel", [](FileEdit& f) { f.numbers(sampleMesh + "/case_sections/cells/rough/values", "kel_ranges", {1, 3}); }, asksMesh([](Reader& r, unsigned64*) { std::vector<std::string> names; std::vector<int> zones; r.startReadingCaseSectionCategories(KEL_CELL_ZONE, names); return r.startReadingCaseSectionForCategory("rough", zones) + 1; }), "M/case_sections/cells/rough/values has 2 rows, 3 expected after its ranges"},
    {"MembersBelowZero", "d.case.kel", [](FileEdit& f) { f.numbers(sampleMesh + "/sets/probe%2F1", "kel_members", {-1}); }, asksMesh([](Reader& r, unsigned64*) { return r.startReadingSet("probe/1"); }), "M/sets/probe%2F1 has -1 members"},
    {"MembersOfAnotherNumber", "d.case.kel", [](FileEdit& f) { f.numbers(sampleMesh + "/sets/probe%2F1", "kel_members", {1}); }, asksMesh([](Reader& r, unsigned64* ids) { EXPECT_TRUE(r.startReadingSet("probe/1")); return r.getIdsForSetInRange(1, 1, ids, 64); }), "M/sets/probe%2F1/ids has 2 rows, the 1 members expected"},
    {"MemberBeyondTheSet", "d.case.kel", [](FileEdit&) {}, asksMesh([](Reader& r, unsigned64* ids) { EXPECT_TRUE(r.startReadingSet("probe/1")); return r.getIdsForSetInRange(1, 3, ids, 64); }), "M/sets/probe%2F1/ids has 2 members, positions 1 to 3 asked for"},
    {"MemberZero", "d.case.kel", [](FileEdit&) {}, asksMesh([](Reader& r, unsigned64* ids) { EXPECT_TRUE(r.startReadingSet("probe/1")); return r.getIdsForSetInRange(0, 1, ids, 64); }), "M/sets/probe%2F1/ids has 2 members, positions 0 to 1 asked for"},
    {"FieldWithoutRanges", "d.data.kel", [](FileEdit& f) { f.array(phase + "/cells/pressure", H5T_NATIVE_INT, {3}, few); }, asksData([](Reader& r) { std::vector<int> zones; return r.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "pressure", zones) == 0; }), "M/levels/20/phases/gas/cells/pressure has 3 rows, 0 expected after its ranges"},
    {"ListWithoutType", "d.data.kel", [](FileEdit& f) { f.removeAttribute(phase + "/set_data/injection/lists/path/values", "kel_type"); }, asksData([](Reader& r) { unsigned64 members = 0; EXPECT_TRUE(r.startReadingSetData("injection", members)); return r.getDataTypeOfDataForSetData("path") == -1; }), "M/levels/20/phases/gas/set_data/injection/lists/path/values@kel_type is missing or not from 0 to 9"},
    {"ListOfATebibyte", "d.data.kel", [](FileEdit& f) { const hid_t creation = H5Pcreate(H5P_DATASET_CREATE); const hsize_t chunk = 1024; H5Pset_chunk(creation, 1, &chunk); f.array(phase + "/set_data/injection/lists/path/values", H5T_NATIVE_UCHAR, {1ULL << 40}, nullptr, creation); H5Pclose(creation); }, asksData([](Reader& r) { unsigned64 members = 0; std::vector<int> values; EXPECT_TRUE(r.startReadingSetData("injection", members)); return !r.getDataOfVariableLengthVarForSetData("path", values); }), "M/levels/20/phases/gas/set_data/injection/lists/path/values has 1099511627776 bytes, which are not in a file of "},
    {"ListOfAnotherLength", "d.data.kel", [](FileEdit& f) { changeNumber(f, phase + "/set_data/injection/lists/path/offsets", 1, 0); }, asksData([](Reader& r) { unsigned64 members = 0; std::vector<int> values; EXPECT_TRUE(r.startReadingSetData("injection", members)); return !r.getDataOfVariableLengthVarForSetData("path", values); }), "M/levels/20/phases/gas/set_data/injection/lists/path/offsets lets row 0 go from 0 to 0 of 3 values, but its length is 1"},
    {"ListWithoutOffsets", "d.data.kel", [](FileEdit& f) { f.remove(phase + "/set_data/injection/lists/path/offsets"); }, asksData([](Reader& r) { unsigned64 members = 0; std::vector<int> values; EXPECT_TRUE(r.startReadingSetData("injection", members)); return !r.getDataOfVariableLengthVarForSetData("path", values); }), "M/levels/20/phases/gas/set_data/injection/lists/path lacks its values, offsets or lengths"},
    {"TrackOfNoType", "d.data.kel", [](FileEdit& f) { f.numbers(phase + "/tracks/mesh_4_target_0_partition_-1/group/0/position", "kel_type", {10}); }, asksData([](Reader& r) { const short gas = r.getPhasesWithParticleTracks(4, KEL_DEFAULT_TARGET, -1).at(0); r.startReadingParticleTracks(gas, 4, KEL_DEFAULT_TARGET, -1); r.startReadingParticleTrackGroup("group"); r.startReadingChunkInParticleTrackGroup(0); return r.getDataTypeOfParticleTrackVariable("position") == -1; }), "M/levels/20/phases/gas/tracks/mesh_4_target_0_partition_-1/group/0/position@kel_type is missing or not from 0 to 9"},
};
// clang-format on

} // namespace

class Inconsistent : public ::testing::TestWithParam<Damaged> {};

TEST_P(Inconsistent, PartsAreRefusedAndNamed)
{
    const Damaged& row = GetParam();
    const Folder folder;
    const std::string path = folder / row.file;
    std::string errors;
    ASSERT_TRUE(writeSample(folder / "d.case.kel", folder / "d.data.kel", errors)) << errors;
    {
        FileEdit edit(path);
        row.damage(edit);
    }
    Reader reader;
    EXPECT_TRUE(row.isRefused(reader, path));
    const std::vector<std::string> found = reader.getErrors(false, true);
    ASSERT_EQ(found.size(), 1u) << ::testing::PrintToString(found);
    const std::string words = row.words[0] == 'M' ? sampleMesh + (row.words + 1) : row.words;
    EXPECT_THAT(found[0], StartsWith(path + ": " + words));
}

INSTANTIATE_TEST_SUITE_P(Files, Inconsistent, ::testing::ValuesIn(damages),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ReaderErrors, ValuesThatLackTheirTypeAreReadAllTheSame)
{
    const Folder folder;
    const std::string path = folder / "d.data.kel";
    const std::string chunk = phase + "/tracks/mesh_4_target_0_partition_-1/group/0";
    std::string errors;
    ASSERT_TRUE(writeSample(folder / "d.case.kel", path, errors)) << errors;
    FileEdit(path).removeAttribute(chunk + "/position", "kel_type");
    Reader reader;
    ASSERT_TRUE(reader.startReading(path, KEL_DATA)) << reader.errors();
    reader.startReadingTimeLevel(20);
    const short gas = reader.getPhasesWithParticleTracks(4, KEL_DEFAULT_TARGET, -1).at(0);
    reader.startReadingParticleTracks(gas, 4, KEL_DEFAULT_TARGET, -1);
    reader.startReadingParticleTrackGroup("group");
    reader.startReadingChunkInParticleTrackGroup(0);
    double values[4] = {};
    EXPECT_EQ(reader.getValuesOfParticleTrackVariable("position", values, 4), 4u);
    EXPECT_EQ(values[3], 3.0);
    EXPECT_EQ(reader.errors(), "");
    EXPECT_EQ(reader.getValueCountOfParticleTrackVariable("position"), 4u);
    EXPECT_EQ(reader.getDataTypeOfParticleTrackVariable("position"), -1);
}
