// Damaged cases: each is refused with one message that names the file, the place, what was expected and what was found.
#include "KelPolyMeshProvider.h"
#include "SmallCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace meridyn;

namespace {

constexpr const char* mesh = "constant/polyMesh/";

struct Damage {
    const char* name;
    const char* file; ///< in the folder of the mesh
    const char* from; ///< this piece of it ...
    const char* to;   ///< ... becomes that
    const char* expected;
};

void PrintTo(const Damage& damage, std::ostream* out)
{
    *out << damage.name;
}

// clang-format off
const Damage damages[] = {
    {"WordAsCoordinate",     "points",    "(1 0 0)", "(1 zero 0)", "points: line 2: expected a number in the list of points, found 'zero'"},
    {"MissingCoordinate",    "points",    "(1 0 0)", "(1 0)",      "points: line 2: expected a number in the list of points, found ')'"},
    {"FourCoordinates",      "points",    "(1 0 0)", "(1 0 0 0)",  "points: line 2: expected ')', found '0'"},
    {"TooFewPoints",         "points",    "12 (",    "13 (",       "points: line 2: expected 13 entries in the list of points, found 12"},
    {"TooManyPoints",        "points",    "12 (",    "11 (",       "points: line 2: expected ')' after entry 11 of the list of points, found '('"},
    {"HugePointCount",       "points",    "12 (",    "4000000000 (", "points: line 2: the list of points has a count of 4000000000, but the file ends after at most 85 bytes more"},
    {"CountBeyondAllLabels", "points",    "12 (",    "99999999999 (", "points: line 2: expected at most 4294967294 entries in the list of points, found a count of 99999999999"},
    {"NegativeCount",        "points",    "12 (",    "-1 (",       "points: line 2: expected the number of entries of a list, found '-1'"},
    {"WrongClass",           "points",    "vectorField", "labelList", "points: line 1: expected a head FoamFile with the class vectorField or pointField, found 'labelList'"},
    {"NoHead",               "points",    "FoamFile", "Foam",      "points: line 1: expected a head FoamFile with the class vectorField or pointField, found none"},
    {"UnknownFormat",        "points",    "ascii",   "octal",      "points: line 1: expected the format ascii or binary, found 'octal'"},
    {"PointOutOfRange",      "faces",     "4(0 6 9 3)", "4(0 6 12 3)", "faces: line 2: point 2 of face 1 is out of range: expected 0 to 11, found 12"},
    {"FaceOfTwoPoints",      "faces",     "4(0 6 9 3)", "2(0 6)",  "faces: line 2: expected face 1 to have 3 to 32767 points, found 2"},
    {"WrongFaceSize",        "faces",     "4(0 6 9 3)", "5(0 6 9 3)", "faces: line 2: expected 5 entries in the list of points of a face, found 4"},
    {"RepeatedFacePoint",    "faces",     "4(0 6 9 3)", "4000000000{1}", "faces: line 2: expected at most 32767 entries in the list of points of a face, found a count of 4000000000"},
    {"NegativePoint",        "faces",     "4(0 6 9 3)", "4(0 6 -9 3)", "faces: line 2: expected a label in the list of points of a face, found '-9'"},
    {"TooFewOwners",         "owner",     "11(0 0",  "10(0",       "owner: expected 11 owners, as there are faces, found 10"},
    {"TooManyOwners",        "owner",     "11(0 0",  "12(0 0 0",   "owner: line 2: expected at most 11 entries in the list of owners, found a count of 12"},
    {"OwnerOutOfRange",      "owner",     "11(0 0",  "11(0 22",    "owner: line 2: entry 1 of the list of owners is out of range: expected 0 to 21, found 22"},
    {"CellWithoutFaces",     "owner",     "11(0 0",  "11(0 3",     "owner: expected each of the cells 0 to 3 to have faces, found none of cell 2"},
    {"WordAsOwner",          "owner",     "11(0 0",  "11(0 O",     "owner: line 2: expected a label in the list of owners, found 'O'"},
    {"EndlessNeighbours",    "neighbour", "1(1)",    "1(1",        "neighbour: line 2: expected ')' after entry 1 of the list of neighbours, found the end of the file"},
    {"PatchBeginsTooLate",   "boundary",  "startFace 2", "startFace 3", "boundary: line 3: expected patch 'right' to begin at face 2 and to end before face 11, found 1 faces from 3 on"},
    {"PatchBeyondTheFaces",  "boundary",  "nFaces 8", "nFaces 9",  "boundary: line 4: expected patch 'sides' to begin at face 3 and to end before face 11, found 9 faces from 3 on"},
    {"FacesWithoutPatch",    "boundary",  "nFaces 8", "nFaces 7",  "boundary: line 4: expected patches for all faces before 11, found them up to face 10"},
    {"PatchWithoutSize",     "boundary",  "nFaces 8;", "",         "boundary: line 4: expected a count as nFaces of patch 'sides', found ''"},
    {"FewerPatches",         "boundary",  "3 (",     "4 (",        "boundary: line 4: expected the name of a patch, found ')'"},
    {"PatchNotClosed",       "boundary",  "startFace 3; }", "startFace 3;", "boundary: line 4: expected the name of an entry, found ')'"},
    {"CommentNotClosed",     "boundary",  "3 (",     "/* 3 (",     "boundary: line 4: a comment is not closed"},
    {"TextNotClosed",        "boundary",  "type wall", "type \"wall", "boundary: line 4: a quoted text is not closed"},
};
// clang-format on

class Damaged : public ::testing::TestWithParam<Damage> {};

TEST_P(Damaged, CaseIsRefused)
{
    const SmallCase small;
    const Damage& damage = GetParam();
    small.replace(mesh + std::string(damage.file), damage.from, damage.to);
    KelPolyMeshProvider reader;
    EXPECT_FALSE(reader.startReading(small.path(), KEL_CASE));
    EXPECT_THAT(reader.getErrors(false, true), ::testing::ElementsAre(small.file(mesh) + damage.expected));
    EXPECT_EQ(reader.getMeshId(), -1);
    EXPECT_TRUE(reader.availableMeshIds(KEL_CASE).empty());
}

INSTANTIATE_TEST_SUITE_P(Mesh, Damaged, ::testing::ValuesIn(damages), [](const auto& row) { return row.param.name; });

std::vector<std::string> errorsOf(const std::string& path, KelDataClass dataClass = KEL_CASE)
{
    KelPolyMeshProvider reader;
    EXPECT_FALSE(reader.startReading(path, dataClass));
    return reader.getErrors(false, true);
}

TEST(DamagedCase, MissingFilesAreNamed)
{
    for (const char* name : {"points", "faces", "owner", "neighbour", "boundary"}) {
        const SmallCase small;
        small.remove(mesh + std::string(name));
        EXPECT_THAT(errorsOf(small.path()), ::testing::ElementsAre(small.file(mesh) + name +
                                                                   ": there is no such file, nor one with .gz behind "
                                                                   "its name"));
    }
}

TEST(DamagedCase, FoldersThatAreNoCases)
{
    const TemporaryFolder folder;
    EXPECT_THAT(errorsOf(folder.path()),
                ::testing::ElementsAre(folder.path().string() +
                                       ": expected a mesh in constant/polyMesh or in the folder of a "
                                       "time, found none"));
    EXPECT_THAT(errorsOf(folder / "none"),
                ::testing::ElementsAre((folder / "none") + ": expected the folder of a case, found nothing"));
    EXPECT_THAT(errorsOf(folder.write("file", "x")),
                ::testing::ElementsAre((folder / "file") + ": expected the folder of a case, found a file"));
}

TEST(DamagedCase, RefusedCaseLeavesTheOpenOneAlone)
{
    const SmallCase good, bad;
    bad.remove("constant/polyMesh/owner");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(good.path(), KEL_CASE));
    EXPECT_FALSE(reader.startReading(bad.path(), KEL_CASE));
    EXPECT_EQ(reader.getCell1ForFace(1), 2u);
    EXPECT_EQ(reader.getMeshId(), 1);
}

/// Every beginning of a file is shorter than it says; none is taken, and none brings the reader down.
TEST(DamagedCase, EveryTruncationOfABinaryMeshIsRefused)
{
    for (const char* name : {"points", "faces", "owner", "neighbour"}) {
        const SmallCase small;
        small.writeBinary<int, double>();
        const std::string whole = small.read(mesh + std::string(name));
        for (std::size_t size = 0; size + 2 < whole.size(); ++size) { // the last byte is a line end
            small.write(mesh + std::string(name), whole.substr(0, size));
            const std::vector<std::string> errors = errorsOf(small.path());
            ASSERT_EQ(errors.size(), 1u) << name << " " << size;
            ASSERT_EQ(errors[0].rfind(small.file(mesh) + name + ": ", 0), 0u) << errors[0];
        }
    }
}

TEST(DamagedCase, TruncatedBinaryDataNameTheByte)
{
    const SmallCase small;
    small.writeBinary<int, double>();
    const std::string name = mesh + std::string("neighbour"), whole = small.read(name);
    const std::size_t from = whole.find("\n(") + 2;
    small.write(name, whole.substr(0, from + 2));
    EXPECT_THAT(errorsOf(small.path()),
                ::testing::ElementsAre(small.file(name) + ": line 4: the list of neighbours has a count of 1, but the "
                                                          "file ends after at most 2 bytes more"));
    small.write(name, whole.substr(0, from + 4));
    EXPECT_THAT(errorsOf(small.path()), ::testing::ElementsAre(small.file(name) + ": byte " + std::to_string(from + 4) +
                                                               ": expected ')', found the end of the file"));
}

TEST(DamagedCase, NegativeBinaryLabelIsOutOfRange)
{
    const SmallCase small;
    small.writeBinary<long, float>();
    std::string owner = small.read("constant/polyMesh/owner");
    owner.replace(owner.find("\n(") + 2, 8, "\xff\xff\xff\xff\xff\xff\xff\xff");
    small.write("constant/polyMesh/owner", owner);
    EXPECT_THAT(errorsOf(small.path()),
                ::testing::ElementsAre(::testing::HasSubstr("entry 0 of the list of owners is out of range: expected 0 "
                                                            "to 21, found a negative or too large one")));
}

TEST(DamagedCase, TruncatedOrDamagedCompressionIsRefused)
{
    const SmallCase small;
    small.compress("constant/polyMesh/faces");
    const std::string whole = small.read("constant/polyMesh/faces.gz");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        small.write("constant/polyMesh/faces.gz", whole.substr(0, size));
        const std::vector<std::string> errors = errorsOf(small.path());
        ASSERT_EQ(errors.size(), 1u) << size;
        ASSERT_EQ(errors[0].rfind(small.file("constant/polyMesh/faces.gz") + ": ", 0), 0u) << errors[0];
    }
    small.write("constant/polyMesh/faces.gz", whole.substr(0, whole.size() - 4));
    EXPECT_THAT(errorsOf(small.path())[0], ::testing::HasSubstr("the compressed data end too early"));
    std::string changed = whole;
    changed[changed.size() / 2] ^= 0x55;
    small.write("constant/polyMesh/faces.gz", changed);
    EXPECT_EQ(errorsOf(small.path()).size(), 1u);
    small.write("constant/polyMesh/faces.gz", "FoamFile");
    EXPECT_THAT(errorsOf(small.path()), ::testing::ElementsAre(small.file("constant/polyMesh/faces.gz") +
                                                               ": is not compressed with gzip, as its name says"));
}

TEST(DamagedCase, ZonesAreChecked)
{
    const SmallCase small;
    const std::string file = small.file("constant/polyMesh/faceZones");
    const auto refused = [&](const std::string& text) {
        small.write("constant/polyMesh/faceZones", SmallCase::head("regIOobject") + text);
        return errorsOf(small.path());
    };
    EXPECT_THAT(refused("1 ( z { type faceZone; faceLabels List<label> 1(11); flipMap List<bool> 1{0}; } )"),
                ::testing::ElementsAre(file + ": line 2: entry 0 of the list of faces of a zone is out of range: "
                                              "expected 0 to 10, found 11"));
    EXPECT_THAT(refused("1 ( z { type faceZone; faceLabels List<label> 1(1); flipMap List<bool> 2{0}; } )"),
                ::testing::ElementsAre(file + ": line 2: expected 1 flips of zone 'z', found 2"));
    EXPECT_THAT(refused("1 ( z { type faceZone; faceLabels List<label> 1(1); flipMap List<bool> 1(2); } )"),
                ::testing::ElementsAre(file + ": line 2: expected 0 or 1 in the list of flips, found '2'"));
    EXPECT_THAT(refused("1 ( z { type faceZone; faceLabels List<label> 4000000000{1}; } )")[0],
                ::testing::HasSubstr("found a count of 4000000000"));
}

struct FieldDamage {
    const char* text;
    const char* expected;
};

TEST(DamagedField, ValuesAreNotGiven)
{
    const FieldDamage rows[] = {
        {"nonuniform List<scalar> 3(1 2 3)", "line 3: expected at most 2 entries in the list of field values, found a "
                                             "count of 3"},
        {"nonuniform List<scalar> 1(1)", "line 3: expected 2 field values, found 1"},
        {"nonuniform List<vector> 2((1 2 3)(1 2 3))",
         "line 3: expected a list of 1 values per entry as field values, found 'List<vector>'"},
        {"uniform one", "line 3: expected field values, found 'one'"},
        {"uniform (1 2 3)", "line 3: expected field values, found '('"},
        {"$other", "line 5: expected values as internalField, found a reference to values elsewhere"},
        {"nonuniform List<scalar> 2(1 2", "line 3: expected ')' after entry 2 of the list of field values, found ';'"},
    };
    for (const FieldDamage& row : rows) {
        const SmallCase small;
        small.write("1/p", SmallCase::field("volScalarField", row.text));
        KelPolyMeshProvider reader;
        ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
        std::vector<int> zones = {7};
        EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "p", zones), 0u) << row.text;
        EXPECT_TRUE(zones.empty());
        EXPECT_THAT(reader.getErrors(false, true), ::testing::ElementsAre(small.file("1/p: ") + row.expected));
        double value = 0;
        EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInRange(1, 1, &value, 1), 0u);
    }
}

TEST(DamagedField, WrongNumberOfBoundaryValues)
{
    const SmallCase small;
    small.write("1/p", SmallCase::field("volScalarField", "uniform 1",
                                        "left { type fixedValue; value nonuniform List<scalar> 2(1 2); }"));
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    std::vector<int> zones;
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_FACE_ZONE, "p", zones), 0u);
    EXPECT_TRUE(zones.empty());
    EXPECT_THAT(reader.getErrors(false, true),
                ::testing::ElementsAre(small.file("1/p") + ": expected 1 boundary values of patch 'left', found 2"));
}

TEST(DamagedField, KindsThatChangeInTimeAreRefused)
{
    const SmallCase small;
    small.write("0/p", SmallCase::field("volScalarField", "uniform 1"));
    small.write("1/p", SmallCase::field("volVectorField", "uniform (1 2 3)"));
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    std::vector<int> zones;
    reader.startReadingTimeLevel(1);
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "p", zones), 3u);
    reader.startReadingTimeLevel(0);
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "p", zones), 0u);
    EXPECT_THAT(reader.getErrors(false, true),
                ::testing::ElementsAre(small.file("0/p") + ": expected a field of 3 values per entry, as at other "
                                                           "times, found one of 1, or of other elements"));
}

TEST(DamagedField, FieldsWithDamagedHeadsAreLeftOutWithAWarning)
{
    const SmallCase small;
    small.write("1/p", SmallCase::field("volScalarField", "uniform 1"));
    small.write("1/broken", "FoamFile { class volScalarField");
    small.write("1/notes", "nothing that concerns the reader");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    std::vector<std::string> names;
    reader.getPhaseVariablesOfCategory(KEL_CELL_ZONE, names);
    EXPECT_THAT(names, ::testing::ElementsAre("p"));
    EXPECT_THAT(reader.getWarnings(false, true),
                ::testing::ElementsAre("not taken as a field: " + small.file("1/broken") +
                                       ": line 1: expected ';' after 'class', found the end of the file"));
}

} // namespace
