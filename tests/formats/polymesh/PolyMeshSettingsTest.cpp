// Settings of cases: dictionaries, entries of patches and of boundary conditions, times.
#include "KelSetting.h"
#include "KelVariant.h"
#include "ReadingHelpers.h"
#include "SmallCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace meridyn;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

std::vector<std::string> groupsOf(const KelProvider& reader, KelDataClass dataClass)
{
    std::vector<std::string> groups;
    reader.getSettingsGroups(dataClass, groups);
    return groups;
}

std::vector<std::string> keysOf(const KelProvider& reader, KelDataClass dataClass, const std::string& group)
{
    std::vector<std::string> keys;
    reader.getSettingsKeysOfGroup(dataClass, group, keys);
    return keys;
}

std::string setting(const KelProvider& reader, KelDataClass dataClass, const std::string& group, const std::string& key)
{
    std::string text = "(none)";
    reader.getSettingString(dataClass, key, text, group);
    return text;
}

TEST(PolyMeshSettings, DictionariesComeOver)
{
    const SmallCase small;
    small.write("system/controlDict", SmallCase::head("dictionary") +
                                          "application icoFoam;\n// steps\ndeltaT 0.005; writeFormat \"binary\";\n"
                                          "functions { probes { fields (p U); } }\n#include \"more\"\n");
    small.write("constant/transportProperties", SmallCase::head("dictionary") + "nu [0 2 -1 0 0 0 0] 0.01;");
    small.write("system/broken", SmallCase::head("dictionary") + "a { b 1;");
    small.write("system/other", "no dictionary");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
    std::vector<std::string> names;
    reader.getSettingsGroups(KEL_CASE, names);
    EXPECT_THAT(names, ElementsAre("constant/transportProperties", "system/controlDict", "constant/polyMesh/boundary"));
    reader.getSettingsKeysOfGroup(KEL_CASE, "system/controlDict", names);
    EXPECT_THAT(names, ElementsAre("application", "deltaT", "writeFormat", "functions/probes/fields"));
    std::string text;
    reader.getSettingString(KEL_CASE, "functions/probes/fields", text, "system/controlDict");
    EXPECT_EQ(text, "(p U)");
    reader.getSettingString(KEL_CASE, "writeFormat", text, "system/controlDict");
    EXPECT_EQ(text, "binary");
    reader.getSettingString(KEL_CASE, "nu", text, "constant/transportProperties");
    EXPECT_EQ(text, "[0 2 -1 0 0 0 0] 0.01");
    EXPECT_EQ(reader.getSettings(KEL_CASE, "system/controlDict/deltaT", -1).asString(), "0.005");
    EXPECT_EQ(reader.getSettings(KEL_CASE, "Solver", -1).asString(), "OPENFOAM");
    EXPECT_THAT(reader.getWarnings(false, true),
                ElementsAre("settings left out: " + small.file("system/broken") +
                            ": line 2: expected the name of an entry, found the end of the file"));
}

TEST(PolyMeshSettings, ProgramTextIsTakenAsItIs)
{
    const SmallCase small;
    small.write("system/controlDict",
                SmallCase::head("dictionary") + "code #{ if (a) { b; } #}; quoted \"a \\\"b\\\"; {\"; after 1;");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
    std::vector<std::string> names;
    reader.getSettingsKeysOfGroup(KEL_CASE, "system/controlDict", names);
    EXPECT_THAT(names, ElementsAre("code", "quoted", "after"));
    std::string text;
    reader.getSettingString(KEL_CASE, "code", text, "system/controlDict");
    EXPECT_EQ(text, " if (a) { b; } ");
    EXPECT_FALSE(reader.addSetting(KEL_CASE, "d", "code #{ b;", "OPENFOAM")); // never closed
}

TEST(PolyMeshSettings, TheParserIsRegistered)
{
    KelPolyMeshProvider reader;
    EXPECT_TRUE(reader.addSetting(KEL_CASE, "d", "a { b 2; }", KelPolyMeshProvider::parserName()));
    EXPECT_EQ(reader.getSettings(KEL_CASE, "d/a/b", -1).asString(), "2");
    EXPECT_TRUE(reader.addSettingsDataSet(KEL_CASE, "e", "a 1; b { c 2; } x 3;", "OPENFOAM", {"b", "x"}));
    EXPECT_EQ(reader.getSettings(KEL_CASE, "e/b/c", -1).asString(), "2");
    EXPECT_EQ(reader.getSettings(KEL_CASE, "e/a", -1).asString(), "");
    EXPECT_FALSE(reader.addSetting(KEL_CASE, "d", "a { b", "OPENFOAM"));
    EXPECT_FALSE(reader.addSetting(KEL_CASE, "d", "", "OPENFOAM"));
    EXPECT_FALSE(reader.addSettingsDataSet(KEL_CASE, "e", "a { b", "OPENFOAM", {"a"}));
}

TEST(PolyMeshSettings, AFileIsAGroupByItsPathSoThatNamesNeverMeet)
{
    const SmallCase small;
    for (const char* file : {"constant/a", "system/a", "system/air/a", "constant/settings", "constant/timeLevels"})
        small.write(file, SmallCase::head("dictionary") + "name \"" + file + "\";");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
    const std::vector<std::string> groups = {"constant/a", "constant/settings", "constant/timeLevels", "system/a",
                                             "system/air/a"};
    for (const std::string& group : groups)
        EXPECT_EQ(setting(reader, KEL_CASE, group, "name"), group);
    EXPECT_THAT(groupsOf(reader, KEL_CASE), ElementsAre("constant/a", "constant/settings", "constant/timeLevels",
                                                        "system/a", "system/air/a", "constant/polyMesh/boundary"));
}

TEST(PolyMeshSettings, EntriesOfPatchesAndZonesThatAreNoNumbers)
{
    const SmallCase small;
    small.replace("constant/polyMesh/boundary", "inGroups 2(wall hot);",
                  "inGroups 2(wall hot); transform rotational; rotationAxis (1 0 0);");
    small.write("constant/polyMesh/cellZones",
                SmallCase::head("regIOobject") +
                    "1 ( a { type cellZone; cellLabels List<label> 1(1); made byHand; } )");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
    EXPECT_THAT(keysOf(reader, KEL_CASE, "constant/polyMesh/boundary"),
                ElementsAre("right/inGroups", "right/transform", "right/rotationAxis"));
    EXPECT_EQ(setting(reader, KEL_CASE, "constant/polyMesh/boundary", "right/inGroups"), "2 (wall hot)");
    EXPECT_EQ(setting(reader, KEL_CASE, "constant/polyMesh/boundary", "right/rotationAxis"), "(1 0 0)");
    EXPECT_THAT(keysOf(reader, KEL_CASE, "constant/polyMesh/cellZones"), ElementsAre("a/made"));
}

TEST(PolyMeshSettings, APatchMayBearTheNameOfAnEntry)
{
    const SmallCase small;
    small.replace("constant/polyMesh/boundary", "right {", "type {");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
    EXPECT_THAT(keysOf(reader, KEL_CASE, "constant/polyMesh/boundary"), ElementsAre("type/inGroups"));
}

TEST(PolyMeshSettings, BoundaryConditionsAreSettingsOfTheData)
{
    const SmallCase small;
    small.write(
        "0/U",
        SmallCase::head("volVectorField") +
            "dimensions [0 1 -1 0 0 0 0];\ninternalField uniform (1 2 3);\nboundaryField {"
            "left { type inletOutlet; phi phi; inletValue uniform (1 0 0); value uniform (1 2 3); }"
            "\"(ri|si).*\" { type flowRate; rate table ((0 1)(1 2)); value nonuniform List<vector> 1((1 2 3)); } }");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    EXPECT_THAT(groupsOf(reader, KEL_DATA), ElementsAre("timeLevels", "0/U"));
    EXPECT_THAT(keysOf(reader, KEL_DATA, "0/U"),
                ElementsAre("FoamFile/class", "dimensions", "boundaryField/left/type", "boundaryField/left/phi",
                            "boundaryField/left/inletValue", "boundaryField/left/value",
                            "boundaryField/\"(ri|si).*\"/type", "boundaryField/\"(ri|si).*\"/rate"));
    EXPECT_EQ(setting(reader, KEL_DATA, "0/U", "FoamFile/class"), "volVectorField");
    EXPECT_EQ(setting(reader, KEL_DATA, "0/U", "dimensions"), "[0 1 -1 0 0 0 0]");
    EXPECT_EQ(setting(reader, KEL_DATA, "0/U", "boundaryField/left/inletValue"), "uniform (1 0 0)");
    EXPECT_EQ(setting(reader, KEL_DATA, "0/U", "boundaryField/\"(ri|si).*\"/rate"), "table ((0 1) (1 2))");
}

TEST(PolyMeshSettings, ShortListsInBinaryFormAreText)
{
    const SmallCase small;
    const std::string two = SmallCase::raw<double>({0.1, 2}), six = SmallCase::raw<double>({1, 2, 3, 4, 5, 6.5});
    std::string vectors = six;
    vectors.replace(vectors.find("6"), 1, "2");
    small.write(
        "0/p",
        SmallCase::head("volScalarField", "binary; arch \"LSB;label=32;scalar=64\";") +
            "dimensions [];\ninternalField uniform 1;\nboundaryField { left { type x; a nonuniform List<scalar> " +
            two + "; b List<vector> " + vectors + "; c List<label> " + SmallCase::raw<int>({7, 8, 9}) +
            "; d List<scalar> 0; e List<word> 2(x y); f List<bool> " + SmallCase::raw<char>({1, 0}) + "; } }");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    const std::string left = "boundaryField/left/";
    EXPECT_EQ(setting(reader, KEL_DATA, "0/p", left + "a"), "nonuniform List<scalar> 2 (0.1 2)");
    EXPECT_EQ(setting(reader, KEL_DATA, "0/p", left + "b"), "List<vector> 2 ((1 2 3) (4 5 6.5))");
    EXPECT_EQ(setting(reader, KEL_DATA, "0/p", left + "c"), "List<label> 3 (7 8 9)");
    EXPECT_EQ(setting(reader, KEL_DATA, "0/p", left + "d"), "List<scalar> 0");
    EXPECT_EQ(setting(reader, KEL_DATA, "0/p", left + "e"), "List<word> 2 (x y)");
    EXPECT_EQ(setting(reader, KEL_DATA, "0/p", left + "f"), "List<bool> 2 (1 0)");
    EXPECT_THAT(reader.getErrors(false, true), IsEmpty());
}

TEST(PolyMeshSettings, TimesAreThoseOfUniformTimeOrOfTheFolder)
{
    const SmallCase small;
    for (const char* time : {"0", "2e-1", "0.3"})
        small.write(std::string(time) + "/p", SmallCase::field("volScalarField", "uniform 1"));
    small.write("0.3/uniform/time", SmallCase::head("dictionary") + "value 0.3000001; name \"0.3\"; index 30;");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    EXPECT_EQ(setting(reader, KEL_DATA, "timeLevels", "0"), "0");
    EXPECT_EQ(setting(reader, KEL_DATA, "timeLevels", "1"), "0.2");
    EXPECT_EQ(setting(reader, KEL_DATA, "timeLevels", "2"), "0.3000001");
    EXPECT_EQ(setting(reader, KEL_DATA, "0.3/uniform/time", "index"), "30");
}

} // namespace
