// Fields: values of cells, faces and points, boundary values, times and phases.
#include "ReadingHelpers.h"
#include "SmallCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace meridyn;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

struct BoundaryRow {
    const char* className;
    const char* inner;
    const char* condition; ///< of the patch "right"
    std::vector<double> expected;
};

TEST(PolyMeshFields, BoundaryValuesWhereTheyAreKnown)
{
    const BoundaryRow rows[] = {
        {"volScalarField", "nonuniform List<scalar> 2(3 4)", "right { type zeroGradient; value uniform 9; }", {4}},
        {"volScalarField", "uniform 5", "right { type slip; }", {5}},
        {"volScalarField", "uniform 5", "right { type fixedValue; value uniform 7; }", {7}},
        {"volScalarField", "uniform 5", "right { type calculated; value nonuniform List<scalar> 1(8); }", {8}},
        {"volScalarField", "uniform 5", "right { type fixedValue; value $internalField; }", {5}},
        {"volScalarField", "nonuniform List<scalar> 2(3 4)", "right { type fixedValue; value $internalField; }", {}},
        {"volScalarField", "uniform 5", "right { type totalPressure; p0 uniform 1; }", {}},
        {"volScalarField", "uniform 5", "right { type empty; }", {}},
        {"volScalarField", "uniform 5", "hot { type fixedValue; value uniform 7; }", {7}}, // a group of the patch
        {"volScalarField", "uniform 5", "\"r.*\" { type fixedValue; value uniform 7; }", {7}},
        {"volScalarField", "uniform 5", "\"r\" { type fixedValue; value uniform 7; }", {}}, // matches whole names
        {"volScalarField",
         "uniform 5",
         "right { type zeroGradient; } \"r.*\" { type fixedValue; value uniform 7; }",
         {5}},
        {"volScalarField",
         "uniform 5",
         "hot { type zeroGradient; } \"r.*\" { type fixedValue; value uniform 7; }",
         {5}},
        {"volScalarField", "uniform 5", "\"(\" { type zeroGradient; }", {}}, // no pattern
        {"volScalarField", "uniform 5", "#includeEtc \"x\"\n $common; right { type zeroGradient; }", {5}},
        {"volScalarField", "uniform 5", "left { type zeroGradient; }", {}},
    };
    for (const BoundaryRow& row : rows) {
        const SmallCase small;
        small.write("1/p", SmallCase::field(row.className, row.inner, row.condition));
        small.replace("constant/polyMesh/boundary", "sides", "others");
        KelPolyMeshProvider reader;
        ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
        std::vector<int> zones;
        valuesOf(reader, KEL_FACE_ZONE, "p", &zones);
        std::vector<double> found(1);
        const bool hasRight = std::count(zones.begin(), zones.end(), 4) == 1;
        found.resize(reader.getValuesOfPhaseVariableForElementsInZone(4, found.data(), 1));
        EXPECT_EQ(hasRight, !row.expected.empty()) << row.condition;
        EXPECT_EQ(found, row.expected) << row.condition;
        EXPECT_THAT(reader.getErrors(false, true), IsEmpty()) << row.condition;
    }
}

TEST(PolyMeshFields, VectorsAndTensorsAreOneVariable)
{
    const SmallCase small;
    small.write("1/U", SmallCase::field("volVectorField", "nonuniform List<vector> 2((1 2 3)(4 5 6))",
                                        "left { type noSlip; } right { type slip; }"
                                        "sides { type fixedValue; value uniform (7 8 9); }"));
    small.write("1/R", SmallCase::field("volSymmTensorField", "uniform (1 2 3 4 5 6)"));
    small.write("1/G", SmallCase::field("volTensorField", "uniform (1 2 3 4 5 6 7 8 9)"));
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    std::vector<std::string> names;
    reader.getPhaseVariablesOfCategory(KEL_CELL_ZONE, names);
    EXPECT_THAT(names, ElementsAre("G", "R", "U"));
    std::vector<int> zones;
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "G", zones), 9u);
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "R", zones), 6u);
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "U", zones), 3u);
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "U"), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "R"), ElementsAre(1, 2, 3, 4, 5, 6, 1, 2, 3, 4, 5, 6));
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "G"),
                ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 2, 3, 4, 5, 6, 7, 8, 9));
    const std::vector<double> ofFaces = valuesOf(reader, KEL_FACE_ZONE, "U", &zones);
    ASSERT_EQ(ofFaces.size(), 27u);
    EXPECT_THAT(std::vector<double>(ofFaces.begin(), ofFaces.begin() + 6), ElementsAre(0, 0, 0, 7, 8, 9));
    EXPECT_THAT(zones, ElementsAre(3, 5)); // what slip leaves of a vector needs the normals
    EXPECT_EQ(attribute(reader, "U", "Parent Name"), "");
    EXPECT_EQ(attribute(reader, "U", "Component Names"), "U-x,U-y,U-z");
    EXPECT_EQ(attribute(reader, "R", "Component Names"), "R-xx,R-xy,R-xz,R-yy,R-yz,R-zz");
    EXPECT_EQ(attribute(reader, "G", "Component Names"), "G-xx,G-xy,G-xz,G-yx,G-yy,G-yz,G-zx,G-zy,G-zz");
    EXPECT_EQ(attribute(reader, "U", "Long Name"), "U");
    EXPECT_EQ(attribute(reader, "U", "Units"), "m s^-1");
}

TEST(PolyMeshFields, ABufferGetsWholeVectors)
{
    const SmallCase small;
    small.write("1/U", SmallCase::field("volVectorField", "nonuniform List<vector> 2((1 2 3)(4 5 6))"));
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    std::vector<int> zones;
    ASSERT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "U", zones), 3u);
    double values[6] = {-1, -1, -1, -1, -1, -1};
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInRange(1, 2, values, 5), 3u);
    EXPECT_THAT(values, ElementsAre(1, 2, 3, -1, -1, -1));
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInRange(1, 2, values, 2), 0u);
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInRange(2, 2, values, 6), 3u);
    EXPECT_THAT(values, ElementsAre(4, 5, 6, -1, -1, -1));
}

TEST(PolyMeshFields, SphericalTensorsAreOneNumberInParentheses)
{
    const SmallCase small;
    small.write("1/S", SmallCase::field("volSphericalTensorField", "nonuniform List<sphericalTensor> 2((3)(4))",
                                        "left { type fixedValue; value uniform (7); }"));
    small.write("1/T", SmallCase::field("volSphericalTensorField", "uniform 3"));
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    std::vector<std::string> names;
    reader.getPhaseVariablesOfCategory(KEL_CELL_ZONE, names);
    EXPECT_THAT(names, ElementsAre("S", "T"));
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "S"), ElementsAre(3, 4));
    EXPECT_THAT(valuesOf(reader, KEL_FACE_ZONE, "S"), ElementsAre(7));
    EXPECT_EQ(attribute(reader, "S", "Long Name"), "S");
    EXPECT_EQ(attribute(reader, "S", "Component Names"), "S-ii"); // tells it from a scalar
    EXPECT_THAT(reader.getErrors(false, true), IsEmpty());
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "T"), IsEmpty());
    EXPECT_THAT(reader.getErrors(false, true), ElementsAre(small.file("1/T") + ": line 3: expected '(', found '3'"));
}

TEST(PolyMeshFields, BinaryFieldsInBothWidths)
{
    const SmallCase small;
    const auto write = [&](const char* name, const char* scalar, const std::string& one, const std::string& two) {
        small.write(name, SmallCase::head("volScalarField",
                                          std::string("binary; arch \"LSB;label=32;scalar=") + scalar + "\";") +
                              "dimensions [0 0 0 0 0];\ninternalField nonuniform List<scalar> " + two +
                              ";\nboundaryField { left { type x; gradient nonuniform List<scalar> " + two +
                              "; other List<label> 0; value nonuniform List<scalar> " + one + "; } }");
    };
    write("1/p", "64", SmallCase::raw<double>({0.25}), SmallCase::raw<double>({1.5, 2.5}));
    write("1/q", "32", SmallCase::raw<float>({0.25F}), SmallCase::raw<float>({1.5F, 2.5F}));
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    for (const char* name : {"p", "q"}) {
        EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, name), ElementsAre(1.5, 2.5));
        EXPECT_THAT(valuesOf(reader, KEL_FACE_ZONE, name), ElementsAre(0.25));
        EXPECT_EQ(attribute(reader, name, "Units"), "");
    }
    EXPECT_THAT(reader.getErrors(false, true), IsEmpty());
}

TEST(PolyMeshFields, FieldsOfFacesAndPoints)
{
    const SmallCase small;
    small.write("1/phi", SmallCase::field("surfaceScalarField", "nonuniform List<scalar> 1(3)",
                                          "left { type calculated; value uniform -1; } sides { type calculated; }"));
    small.write("1/d", SmallCase::field("pointScalarField", "uniform 2"));
    small.write("1/s", SmallCase::field("volScalarField::Internal", "uniform 2"));
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    std::vector<std::string> names;
    reader.getPhaseVariablesOfCategory(KEL_FACE_ZONE, names);
    EXPECT_THAT(names, ElementsAre("phi"));
    reader.getPhaseVariablesOfCategory(KEL_NODE_ZONE, names);
    EXPECT_THAT(names, ElementsAre("d"));
    std::vector<int> zones;
    EXPECT_THAT(valuesOf(reader, KEL_FACE_ZONE, "phi", &zones), ElementsAre(3, -1));
    EXPECT_THAT(zones, ElementsAre(2, 3));
    float values[3];
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInRange(1, 2, values, 2), 2u);
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInRange(1, 3, values, 3), 0u); // face 3 has no value
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "phi"), IsEmpty());
    EXPECT_EQ(valuesOf(reader, KEL_NODE_ZONE, "d"), std::vector<double>(12, 2));
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "s"), ElementsAre(2, 2));
}

TEST(PolyMeshFields, NamesOfEntriesBeforeStandForTheirValues)
{
    const SmallCase small;
    small.write("1/U",
                SmallCase::head("volVectorField") +
                    "inlet (1 2 3); list nonuniform List<vector> 1((7 8 9));\ninternalField uniform $inlet;\n"
                    "boundaryField { left { type a; value $internalField; } right { type a; value uniform $inlet; }"
                    "sides { type a; value uniform $other; } }");
    small.write("1/p", SmallCase::head("volScalarField") + "a uniform 4; internalField $a; boundaryField { }");
    small.write("1/q", SmallCase::head("volScalarField") + "a $a; internalField $a; boundaryField { }");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "U"), ElementsAre(1, 2, 3, 1, 2, 3));
    std::vector<int> zones;
    EXPECT_THAT(valuesOf(reader, KEL_FACE_ZONE, "U", &zones), ElementsAre(1, 2, 3, 1, 2, 3));
    EXPECT_THAT(zones, ElementsAre(3, 4)); // there is no entry "other"
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "p"), ElementsAre(4, 4));
    EXPECT_THAT(reader.getErrors(false, true), IsEmpty());
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "q"), IsEmpty()); // and no circle
    EXPECT_EQ(reader.getErrors(false, true).size(), 1u);
}

TEST(PolyMeshFields, NamesMayStandInAFileOfTheCaseThatIsIncluded)
{
    const SmallCase small;
    small.write("1/include/conditions", "flow (1 2 3); pressure 5;");
    small.write("system/pressure", SmallCase::head("dictionary") + "pressure 6;");
    const auto field = [&](const std::string& file) {
        return SmallCase::head("volScalarField") + "#include \"" + file + "\"\ninternalField uniform $pressure;";
    };
    small.write("1/p", field("include/conditions"));
    small.write("1/q", field("../system/pressure"));
    small.write("1/r", field("../../pressure"));         // outside of the case
    small.write("1/s", field("include/nothing"));        // not there
    small.write("1/t", field("../system/../1/../../x")); // outside, the long way
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "p"), ElementsAre(5, 5));
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "q"), ElementsAre(6, 6));
    EXPECT_THAT(reader.getErrors(false, true), IsEmpty());
    for (const char* name : {"r", "s", "t"}) {
        EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, name), IsEmpty());
        EXPECT_THAT(reader.getErrors(false, true),
                    ElementsAre(small.file(std::string("1/") + name) +
                                ": line 3: expected values as internalField, found a reference to values elsewhere"));
    }
}

TEST(PolyMeshFields, UnitsInWordsStay)
{
    const SmallCase small;
    const std::pair<const char*, const char*> rows[] = {
        {"[Pa]", "Pa"}, {"[kg m^-3]", "kg m^-3"}, {"[]", ""}, {"[0 2 -2 0 0]", "m^2 s^-2"}, {"[m/s]", "m/s"}};
    for (const auto& [text, units] : rows) {
        small.write("1/p", SmallCase::head("volScalarField") + "dimensions " + text + "; internalField uniform 3;");
        KelPolyMeshProvider reader;
        ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
        EXPECT_EQ(attribute(reader, "p", "Units"), units);
        EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "p"), ElementsAre(3, 3));
    }
}

TEST(PolyMeshFields, FluxesAreOriented)
{
    const SmallCase small;
    small.write("1/phi",
                SmallCase::head("surfaceScalarField") +
                    "dimensions [0 3 -1 0 0 0 0]; oriented oriented; internalField uniform 3; boundaryField { }");
    small.write("1/rho", SmallCase::field("surfaceScalarField", "uniform 3"));
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    EXPECT_EQ(attribute(reader, "phi", "Oriented"), "True");
    EXPECT_EQ(attribute(reader, "rho", "Oriented"), "");
}

TEST(PolyMeshFields, BigEndianFieldsAndIncludesInFront)
{
    const SmallCase small;
    std::string values = SmallCase::raw<double>({1.5, 2.5});
    const std::size_t from = values.find('(') + 1;
    for (const std::size_t n : {from, from + 8})
        std::reverse(values.begin() + static_cast<std::ptrdiff_t>(n),
                     values.begin() + static_cast<std::ptrdiff_t>(n + 8));
    small.write("1/p", "#include \"x\"\n" +
                           SmallCase::head("volScalarField", "binary; arch \"MSB;label=32;scalar=64\";") +
                           "internalField nonuniform List<scalar> " + values + ";");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "p"), ElementsAre(1.5, 2.5));
}

TEST(PolyMeshFields, TimeLevelsAreFoldersInTheOrderOfTheirValues)
{
    const SmallCase small;
    for (const char* time : {"0.5", "10", "2e-1", "9"})
        small.write(std::string(time) + "/p", SmallCase::field("volScalarField", std::string("uniform ") + time));
    small.write("9/q", SmallCase::field("volScalarField", "uniform 1"));
    small.write("0.orig/p", SmallCase::field("volScalarField", "uniform 1"));
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    EXPECT_THAT(reader.getTimeLevels(), ElementsAre(0, 1, 2, 3));
    EXPECT_EQ(reader.getTimeLevel(), 0);
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "p"), ElementsAre(0.2, 0.2));
    reader.startReadingTimeLevel(std::numeric_limits<int>::min());
    EXPECT_EQ(reader.getTimeLevel(), 3);
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "p"), ElementsAre(10, 10));
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "q"), IsEmpty()); // not at this time
    reader.startReadingTimeLevel(2);
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "q"), ElementsAre(1, 1));
    std::vector<std::string> keys;
    reader.getSettingsKeysOfGroup(KEL_DATA, "timeLevels", keys);
    EXPECT_THAT(keys, ElementsAre("0", "1", "2", "3"));
    std::string text = "untouched";
    reader.getSettingString(KEL_DATA, "4", text, "timeLevels");
    EXPECT_EQ(text, "untouched");
    reader.getSettingString(KEL_DATA, "0", text, "timeLevels");
    EXPECT_EQ(text, "0.2");
    EXPECT_THAT(reader.getErrors(false, true), IsEmpty());
}

TEST(PolyMeshFields, EndingsOfNamesArePhases)
{
    const SmallCase small;
    for (const char* name : {"alpha.oil", "alpha.oilMean", "p", "T.oil", "k.gas", "UMean.oil"})
        small.write(std::string("1/") + name, SmallCase::field("volScalarField", "uniform 1"));
    small.write("1/U.water", SmallCase::field("volVectorField", "uniform (1 2 3)"));
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    std::vector<short> phases;
    reader.getPhaseIds(phases);
    EXPECT_THAT(phases, ElementsAre(-1, 1, 2));
    EXPECT_EQ(static_cast<const KelProvider&>(reader).getPhaseName(1), "oil");
    EXPECT_EQ(static_cast<const KelProvider&>(reader).getPhaseName(2), "water");
    std::vector<std::string> names;
    reader.startReadingPhase(1);
    reader.getPhaseVariablesOfCategory(KEL_CELL_ZONE, names);
    EXPECT_THAT(names, ::testing::UnorderedElementsAre("T", "UMean", "alpha", "alphaMean"));
    reader.startReadingPhase(-1);
    reader.getPhaseVariablesOfCategory(KEL_CELL_ZONE, names);
    EXPECT_THAT(names, ::testing::UnorderedElementsAre("k.gas", "p"));
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "U"), IsEmpty()); // of another phase
    reader.startReadingPhase(2);
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "U"), ElementsAre(1, 2, 3, 1, 2, 3));
}

} // namespace
