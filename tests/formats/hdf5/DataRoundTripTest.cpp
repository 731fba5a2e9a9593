#include "Hdf5TestSupport.h"

#include <climits>

using namespace hdf5test;

namespace {

/// Cell-centred values of a variable for the two cells, and for the 10 wall faces.
bool writeLevel(Writer& writer, int level, double value)
{
    writer.startWritingTimeLevel(level);
    short phase = 0;
    int id = 0;
    writer.addPhaseName("gas", phase);
    writer.startWritingPhase(phase);
    writer.addPhaseVariable("pressure", id);
    std::vector<int> zones{21};
    writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, "pressure", zones, 1);
    const double values[] = {value, value + 0.5};
    writer.setValuesOfPhaseVariableForElementsInZone(21, values, 2);
    writer.endWritingPhaseVariableInZonesOfCategory();
    writer.endWritingTimeLevel();
    return !writer.hasError();
}

double firstPressure(Reader& reader, int level)
{
    reader.startReadingTimeLevel(level);
    reader.setActivePhase("gas");
    std::vector<int> zones;
    double values[2] = {-1, -1};
    if (reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "pressure", zones) == 1)
        reader.getValuesOfPhaseVariableForElementsInZone(21, values, 2);
    return values[0];
}

} // namespace

TEST(Solution, PhasesVariablesAndAttributesComeBack)
{
    const Folder folder;
    Writer writer;
    TwoCells::declare(writer);
    short water = 0;
    short gas = 0;
    int p = 0;
    int v = 0;
    int p2 = 0;
    writer.addPhaseName("water/1", water);
    writer.addPhaseName("gas", gas);
    writer.setAttributeValueOfPhase(gas, "State", std::string("va\0por", 6));
    writer.addPhaseVariable(gas, "p", p);
    writer.addPhaseVariable(gas, "v", v);
    writer.addPhaseVariable(water, "p", p2);
    int mixed = 0;
    writer.addPhaseVariable(-1, "T", mixed);
    writer.setAttributeValueOfPhaseVariable(p, "Units", "Pa");
    writer.setAttributeValueOfPhaseVariable(p, "kel_id", "not the number");
    writer.setAttributeValueOfPhaseVariable(p, "", "no name");
    writer.setDatasetNameOfVariable(p, "SV_P");
    writer.setDatasetNameOfVariable(v, "SV_P"); // the same name twice in a phase
    writer.setDatasetNameOfPhase(water, "phase#2");
    writer.startWritingPhase(gas);
    writer.setPhaseVariablesOfCategory(KEL_CELL_ZONE, std::vector<int>{p, v});
    writer.setPhaseVariablesOfCategory(KEL_FACE_ZONE, std::vector<int>{v});
    ASSERT_TRUE(writer.startWriting(folder / "a.data.kel", KEL_DATA));
    const float velocity[] = {1, 2, 3, 4, 5, 6};
    const float pressure[] = {7, 8};
    std::vector<int> zones{21};
    writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, v, zones, 3);
    writer.setValuesOfPhaseVariableForElementsInRange(1, 2, velocity, 6);
    writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, "p", zones, 1);
    writer.setValuesOfPhaseVariableForElementsInRange(1, 2, pressure, 2);
    ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();

    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "a.data.kel", KEL_DATA)) << reader.errors();
    std::vector<short> phases;
    reader.getPhaseIds(phases);
    EXPECT_EQ(phases, (std::vector<short>{-1, water, gas}));
    EXPECT_EQ(reader.getPhaseName(water), "water/1");
    std::string text;
    EXPECT_TRUE(reader.getAttributeValueOfPhase(gas, "State", text));
    EXPECT_EQ(text, std::string("va\0por", 6));
    EXPECT_TRUE(reader.getAttributeValueOfPhase(gas, "Long Name", text));
    EXPECT_EQ(text, "gas");
    EXPECT_TRUE(reader.getDatasetNameOfPhase(water, text));
    EXPECT_EQ(text, "phase#2");
    int id = 0;
    EXPECT_TRUE(reader.getVariableId("gas", "p", id));
    EXPECT_EQ(id, p);
    EXPECT_TRUE(reader.getVariableId(-1, "T", id));
    EXPECT_EQ(id, mixed);
    EXPECT_TRUE(reader.getVariableId(water, "p", id));
    EXPECT_EQ(id, p2);
    EXPECT_TRUE(reader.getDatasetNameOfVariable(v, text));
    EXPECT_EQ(text, "SV_P");
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(p, "Units", text));
    EXPECT_EQ(text, "Pa");
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(p, "kel_id", text));
    EXPECT_EQ(text, "not the number");
    std::vector<std::string> names;
    reader.getAttributesOfPhaseVariable(p, names);
    EXPECT_EQ(names, (std::vector<std::string>{"", "Units", "kel_id"}));
    ASSERT_TRUE(reader.startReadingPhase(gas));
    std::vector<int> ids;
    reader.getPhaseVariablesOfCategory(KEL_CELL_ZONE, ids);
    EXPECT_EQ(ids, (std::vector<int>{p, v}));
    reader.getPhaseVariablesOfCategory(KEL_FACE_ZONE, ids);
    EXPECT_EQ(ids, std::vector<int>{v});
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, v, zones), 3u);
    EXPECT_EQ(zones, std::vector<int>{21});
    double values[6] = {};
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInRange(2, 2, values, 6), 3u);
    EXPECT_EQ(values[2], 6);
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInZone(21, values, 6), 6u); // zones of the data file
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "p", zones), 1u);
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInRange(1, 2, values, 6), 2u);
    EXPECT_EQ(values[0], 7);
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_FACE_ZONE, "v", zones), 0u);
    EXPECT_TRUE(zones.empty());
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInRange(1, 2, values, 6), 0u);
    EXPECT_EQ(reader.errors(), "");
}

TEST(Solution, MixtureBeforeThePhasesKeepsItsIds)
{
    const Folder folder;
    Writer writer;
    int id = 0;
    short phase = 0;
    writer.addPhaseVariable(-1, "T", id);
    writer.addPhaseName("late", phase);
    ASSERT_EQ(phase, 0);
    ASSERT_TRUE(writer.startWriting(folder / "m.data.kel", KEL_DATA));
    ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "m.data.kel", KEL_DATA)) << reader.errors();
    EXPECT_EQ(reader.getPhaseName(0), "late");
    EXPECT_EQ(reader.getPhaseName(-1), "<Mixture>");
}

TEST(Solution, VariablesLiveInSomeZonesOnly)
{
    const Folder folder;
    Writer writer;
    TwoCells::declare(writer);
    short phase = 0;
    int id = 0;
    writer.addPhaseName("gas", phase);
    writer.startWritingPhase(phase);
    writer.addPhaseVariable("flux", id);
    ASSERT_TRUE(writer.startWriting(folder / "s.data.kel", KEL_DATA));
    std::vector<double> values(10, 1.5);
    values[9] = 2;
    std::vector<int> walls{12};
    writer.startWritingPhaseVariableInZonesOfCategory(KEL_FACE_ZONE, "flux", walls, 1);
    writer.setValuesOfPhaseVariableForElementsInRange(8, 11, values.data() + 6, 4);
    writer.setValuesOfPhaseVariableForElementsInRange(2, 7, values.data(), 6);
    writer.endWritingPhaseVariableInZonesOfCategory();
    ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "s.data.kel", KEL_DATA));
    reader.startReadingPhase(phase);
    std::vector<int> zones;
    ASSERT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_FACE_ZONE, id, zones), 1u);
    EXPECT_EQ(zones, std::vector<int>{12});
    double back[10] = {};
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInZone(12, back, 10), 10u);
    EXPECT_EQ(back[9], 2);
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInZone(11, back, 10), 0u);
}

TEST(Solution, PrecisionIsTheOneAskedFor)
{
    const Folder folder;
    const struct {
        KelDataPrecisionType precision;
        bool isSingle;
    } cases[] = {{KEL_PRECISION_AS_GIVEN, false}, {KEL_PRECISION_SINGLE, true}, {KEL_PRECISION_DOUBLE, false}};
    for (const auto& row : cases) {
        Writer writer;
        TwoCells::declare(writer);
        writer.setDataPrecision(row.precision);
        ASSERT_TRUE(writer.startWriting(folder / "p.data.kel", KEL_DATA));
        ASSERT_TRUE(writeLevel(writer, 1, 0.1));
        ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
        Reader reader;
        ASSERT_TRUE(reader.startReading(folder / "p.data.kel", KEL_DATA));
        EXPECT_EQ(firstPressure(reader, 1), row.isSingle ? static_cast<double>(0.1f) : 0.1) << row.precision;
    }
}

TEST(Solution, LevelsAreReadOneByOneAndTheLatest)
{
    const Folder folder;
    Writer writer;
    TwoCells::declare(writer);
    ASSERT_TRUE(writer.startWriting(folder / "l.data.kel", KEL_DATA));
    for (const int level : {20, 5, 30, 10})
        ASSERT_TRUE(writeLevel(writer, level, level)) << writer.errors();
    ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();

    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "l.data.kel", KEL_DATA));
    EXPECT_EQ(reader.getTimeLevels(), (std::vector<int>{20, 5, 30, 10}));
    EXPECT_EQ(firstPressure(reader, 99), 20); // none chosen yet: the first
    EXPECT_EQ(firstPressure(reader, 5), 5);
    EXPECT_EQ(firstPressure(reader, 20), 20);
    EXPECT_EQ(firstPressure(reader, INT_MIN), 30);
}

TEST(Solution, ValuesWithoutALevelComeBack)
{
    const Folder folder;
    Writer writer;
    TwoCells::declare(writer);
    short phase = 0;
    int id = 0;
    writer.addPhaseName("gas", phase);
    writer.startWritingPhase(phase);
    writer.addPhaseVariable("pressure", id);
    ASSERT_TRUE(writer.startWriting(folder / "n.data.kel", KEL_DATA));
    std::vector<int> zones; // all zones
    const double values[] = {4, 5};
    writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, id, zones, 1);
    writer.setValuesOfPhaseVariableForElementsInRange(1, 2, values, 2);
    ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "n.data.kel", KEL_DATA));
    EXPECT_TRUE(reader.getTimeLevels().empty());
    EXPECT_EQ(firstPressure(reader, 0), 4);
}

TEST(Solution, EmptyAttributesComeBack)
{
    const Folder folder;
    Writer writer;
    short phase = 0;
    int variable = 0;
    writer.addPhaseName("gas", phase);
    writer.addPhaseVariable(phase, "p", variable);
    writer.solutionModel()->addAttributeOfPhase(phase, "Note", "");
    writer.solutionModel()->addAttributeOfVariable(variable, "Units", "");
    ASSERT_TRUE(writer.startWriting(folder / "e.data.kel", KEL_DATA));
    ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "e.data.kel", KEL_DATA)) << reader.errors();
    std::string text = "x";
    EXPECT_TRUE(reader.solutionModel()->getAttributeOfPhase(phase, "Note", text));
    EXPECT_EQ(text, "");
    text = "x";
    EXPECT_TRUE(reader.solutionModel()->getAttributeOfVariable(variable, "Units", text));
    EXPECT_EQ(text, "");
}

TEST(Solution, ValuesWithoutALevelStayBesideTheLevels)
{
    const Folder folder;
    Writer writer;
    TwoCells::declare(writer);
    ASSERT_TRUE(writer.startWriting(folder / "n.data.kel", KEL_DATA));
    writer.startWritingSet("of none", KEL_CELL_ZONE);
    writer.setSizesAndMinMaxIdsForSet({}, {}, {});
    writer.endWritingSet();
    ASSERT_TRUE(writeLevel(writer, 3, 30));
    ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "n.data.kel", KEL_DATA)) << reader.errors();
    EXPECT_TRUE(reader.hasDataAtNoLevel());
    std::vector<std::string> names;
    EXPECT_FALSE(reader.getSetNames(KEL_DATA, names));
    EXPECT_EQ(firstPressure(reader, 3), 30);
    reader.chooseNoLevel(true);
    EXPECT_TRUE(reader.getSetNames(KEL_DATA, names));
    EXPECT_EQ(names, std::vector<std::string>{"of none"});
    EXPECT_EQ(firstPressure(reader, 3), -1) << "the pressure has a level";
    reader.chooseNoLevel(false);
    EXPECT_EQ(firstPressure(reader, 3), 30);
}

TEST(Append, LevelAfterLevelStaysReadable)
{
    const Folder folder;
    const std::string path = folder / "a.data.kel";
    for (int level = 1; level <= 30; ++level) {
        Writer writer;
        TwoCells::declare(writer);
        writer.setAppendOn(true);
        ASSERT_TRUE(writer.startWriting(path, KEL_DATA)) << writer.errors();
        ASSERT_TRUE(writeLevel(writer, level, level)) << writer.errors();
        ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    }
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.data.kel"});
    Reader reader;
    ASSERT_TRUE(reader.startReading(path, KEL_DATA)) << reader.errors();
    EXPECT_EQ(reader.getTimeLevels().size(), 30u);
    for (int level = 1; level <= 30; ++level)
        EXPECT_EQ(firstPressure(reader, level), level);
    EXPECT_EQ(reader.errors(), "");
}

TEST(Append, ALevelThatExistsIsReplacedAndNewVariablesJoin)
{
    const Folder folder;
    const std::string path = folder / "r.data.kel";
    for (const double value : {1.0, 2.0}) {
        Writer writer;
        TwoCells::declare(writer);
        writer.setAppendOn(true);
        ASSERT_TRUE(writer.startWriting(path, KEL_DATA)) << writer.errors();
        ASSERT_TRUE(writeLevel(writer, 7, value)) << writer.errors();
        ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    }
    Writer third;
    TwoCells::declare(third);
    third.setAppendOn(true);
    short phase = 0;
    int id = 0;
    third.addPhaseName("liquid", phase); // takes the id that "gas" has in the file
    third.addPhaseVariable(phase, "alpha", id);
    third.startWritingPhase(phase);
    ASSERT_TRUE(third.startWriting(path, KEL_DATA)) << third.errors();
    third.startWritingTimeLevel(7);
    std::vector<int> zones{21};
    const float alpha[] = {0.25f, 0.75f};
    third.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, "alpha", zones, 1);
    third.setValuesOfPhaseVariableForElementsInRange(1, 2, alpha, 2);
    ASSERT_TRUE(third.endWriting(KEL_DATA)) << third.errors();
    Reader reader;
    ASSERT_TRUE(reader.startReading(path, KEL_DATA)) << reader.errors();
    EXPECT_EQ(reader.getTimeLevels(), std::vector<int>{7});
    EXPECT_EQ(firstPressure(reader, 7), 2);
    ASSERT_TRUE(reader.setActivePhase("liquid"));
    ASSERT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "alpha", zones), 1u);
    double values[2] = {};
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInRange(1, 2, values, 2), 2u);
    EXPECT_EQ(values[1], 0.75);
}

TEST(Append, SettingsOfTheFileCanBeKept)
{
    const Folder folder;
    const std::string path = folder / "s.data.kel";
    for (const bool overrides : {true, false}) {
        Writer writer;
        writer.setAppendOn(true);
        writer.setOverrideSettingsOn(overrides);
        ASSERT_TRUE(writer.startWriting(path, KEL_DATA)) << writer.errors();
        writer.writeSettingStrings({{"key", overrides ? "first" : "second"}}, KEL_DATA, "settings");
        writer.log({{"entry", overrides ? "1" : "2"}}, KEL_DATA);
        ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    }
    Reader reader;
    ASSERT_TRUE(reader.startReading(path, KEL_DATA));
    std::string text;
    reader.getSettingString(KEL_DATA, "key", text, "settings");
    EXPECT_EQ(text, "first");
    std::vector<std::pair<std::string, std::string>> log;
    reader.getLog(KEL_DATA, log);
    EXPECT_EQ(log.size(), 2u);
}

TEST(Append, AnErrorLeavesTheFileAsItWas)
{
    const Folder folder;
    const std::string path = folder / "e.data.kel";
    Writer first;
    TwoCells::declare(first);
    ASSERT_TRUE(first.startWriting(path, KEL_DATA));
    ASSERT_TRUE(writeLevel(first, 1, 1));
    ASSERT_TRUE(first.endWriting(KEL_DATA)) << first.errors();
    const Bytes before = bytesOf(path);
    Writer second;
    TwoCells::declare(second);
    second.setAppendOn(true);
    ASSERT_TRUE(second.startWriting(path, KEL_DATA));
    ASSERT_TRUE(writeLevel(second, 2, 2));
    std::vector<int> zones{12};
    second.startWritingPhaseVariableInZonesOfCategory(KEL_FACE_ZONE, "pressure", zones, 1); // and no values
    EXPECT_FALSE(second.endWriting(KEL_DATA));
    EXPECT_NE(second.errors().find("lacks the values"), std::string::npos);
    EXPECT_EQ(bytesOf(path), before);
}
