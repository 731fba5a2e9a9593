// A solver that goes back: time levels are dropped from one on, and written anew.
#include "Hdf5TestSupport.h"

using namespace hdf5test;

namespace {

using Levels = std::vector<int>;
using Texts = std::vector<std::string>;

/// Values of the variable "p" on the two cells, and a set with one cell, at a level; at none for -1.
void writeLevel(Writer& writer, int level, double value)
{
    if (level >= 0)
        writer.startWritingTimeLevel(level);
    short phase = 0;
    int id = 0;
    writer.addPhaseName("gas", phase);
    writer.startWritingPhase(phase);
    writer.addPhaseVariable("p", id);
    std::vector<int> zones{21};
    const double values[] = {value, value + 0.5};
    writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, "p", zones, 1);
    writer.setValuesOfPhaseVariableForElementsInZone(21, values, 2);
    writer.endWritingPhaseVariableInZonesOfCategory();
    const unsigned64 member[] = {1};
    writer.startWritingSet("probe", KEL_CELL_ZONE);
    writer.setSizesAndMinMaxIdsForSet({1}, {1}, {1});
    writer.setIdsForSetInRange(1, 1, member, 1);
    writer.endWritingSet();
    if (level >= 0)
        writer.writeSettingStrings({{std::to_string(level), std::to_string(level) + ".5"}}, KEL_DATA, "timeLevels");
}

double valueAt(Reader& reader, int level)
{
    reader.startReadingTimeLevel(level);
    reader.setActivePhase("gas");
    std::vector<int> zones;
    double values[2] = {-1, -1};
    if (reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "p", zones) == 1)
        reader.getValuesOfPhaseVariableForElementsInZone(21, values, 2);
    return values[0];
}

class Restart : public ::testing::Test {
protected:
    const Folder folder;
    const std::string path = folder / "r.data.kel";

    /// Levels 8, 9, 10 and 11 in a file, with values 80, 90, ..., and values -10 without a level.
    void SetUp() override
    {
        Writer writer;
        TwoCells::declare(writer);
        ASSERT_TRUE(writer.startWriting(path, KEL_DATA));
        writeLevel(writer, -1, -10);
        for (const int level : {8, 9, 10, 11})
            writeLevel(writer, level, level * 10);
        writer.writeSettingStrings({{"10", "kept"}, {"x", "y"}}, KEL_DATA, "others");
        writer.writeSettingStrings({{"end", "kept"}, {"8x", "kept"}}, KEL_DATA, "timeLevels");
        ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    }

    static void start(Writer& writer, const std::string& file)
    {
        TwoCells::declare(writer);
        writer.setAppendOn(true);
        ASSERT_TRUE(writer.startWriting(file, KEL_DATA)) << writer.errors();
    }
};

} // namespace

TEST_F(Restart, DropsLevelsAndWritesThemAnew)
{
    Writer writer;
    start(writer, path);
    ASSERT_TRUE(writer.dropTimeLevelsFrom(9));
    writeLevel(writer, 10, 1);
    writeLevel(writer, 9, 2);
    writeLevel(writer, 10, 3); // once more, after another level
    ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();

    Reader reader;
    ASSERT_TRUE(reader.startReading(path, KEL_DATA)) << reader.errors();
    EXPECT_EQ(reader.getTimeLevels(), (Levels{8, 10, 9})) << "in the order in which they came";
    EXPECT_EQ(valueAt(reader, 8), 80);
    EXPECT_EQ(valueAt(reader, 9), 2);
    EXPECT_EQ(valueAt(reader, 10), 3);
    Texts keys;
    reader.getSettingsKeysOfGroup(KEL_DATA, "timeLevels", keys);
    EXPECT_EQ(keys, (Texts{"8", "end", "8x", "9", "10"})) << "10 was written last";
    std::string text;
    reader.getSettingString(KEL_DATA, "10", text, "others");
    EXPECT_EQ(text, "kept");
    EXPECT_EQ(reader.errors(), "");
}

TEST_F(Restart, MayLeaveNoneOrAllLevels)
{
    for (const auto& [first, left] : {std::pair{12, Levels{8, 9, 10, 11}}, {11, {8, 9, 10}}, {0, {}}}) {
        Writer writer;
        start(writer, path);
        ASSERT_TRUE(writer.dropTimeLevelsFrom(first));
        ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
        Reader reader;
        ASSERT_TRUE(reader.startReading(path, KEL_DATA)) << reader.errors();
        EXPECT_EQ(reader.getTimeLevels(), left);
        EXPECT_EQ(reader.errors(), "");
    }
    Reader reader; // which has no level any more, but what was written without one
    ASSERT_TRUE(reader.startReading(path, KEL_DATA)) << reader.errors();
    reader.setActivePhase("gas");
    std::vector<int> zones;
    double value = 0;
    ASSERT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "p", zones), 1u);
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInRange(1, 1, &value, 1), 1u);
    EXPECT_EQ(value, -10);
}

TEST_F(Restart, ChangesNothingBeforeTheEnd)
{
    const Bytes before = bytesOf(path);
    {
        Writer writer;
        start(writer, path);
        ASSERT_TRUE(writer.dropTimeLevelsFrom(8));
        writeLevel(writer, 9, 1);
        const Bytes now = bytesOf(path);
        ASSERT_GE(now.size(), before.size());
        EXPECT_TRUE(std::equal(before.begin(), before.end(), now.begin()));
    }
    EXPECT_EQ(bytesOf(path), before);
}

TEST_F(Restart, WorksWithTheWriterThatWroteTheLevels)
{
    Writer writer;
    start(writer, path);
    writeLevel(writer, 12, 120);
    ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    ASSERT_TRUE(writer.startWriting(path, KEL_DATA));
    writeLevel(writer, 13, 130);
    ASSERT_TRUE(writer.dropTimeLevelsFrom(11)); // 13 is selected and being written
    ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    Reader reader;
    ASSERT_TRUE(reader.startReading(path, KEL_DATA)) << reader.errors();
    EXPECT_EQ(reader.getTimeLevels(), (Levels{8, 9, 10}));
}

TEST_F(Restart, DropsTheLevelsOfAllMeshes)
{
    Writer writer;
    TwoCells::declare(writer);
    writer.context(2, 0, -1);
    start(writer, path);
    writeLevel(writer, 9, 900);
    writeLevel(writer, 10, 1000);
    ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    Writer again;
    again.setAppendOn(true);
    ASSERT_TRUE(again.startWriting(path, KEL_DATA));
    ASSERT_TRUE(again.dropTimeLevelsFrom(10));
    ASSERT_TRUE(again.endWriting(KEL_DATA)) << again.errors();
    for (const auto& [mesh, left] : {std::pair{1, Levels{8, 9}}, {2, {9}}}) {
        Reader reader;
        reader.setMeshContext(mesh, KEL_DEFAULT_TARGET, -1, KelBase::KEL_UPDATE_NONE);
        ASSERT_TRUE(reader.startReading(path, KEL_DATA)) << reader.errors();
        EXPECT_EQ(reader.getTimeLevels(), left);
    }
}

TEST_F(Restart, NeedsADataFileAndNoOpenSet)
{
    Writer writer;
    EXPECT_FALSE(writer.dropTimeLevelsFrom(1));
    EXPECT_NE(writer.errors().find("no data file is being written"), std::string::npos);
    start(writer, path);
    writer.startWritingSet("open", KEL_CELL_ZONE);
    EXPECT_FALSE(writer.dropTimeLevelsFrom(1));
    EXPECT_NE(writer.errors().find("r.data.kel: time levels cannot be dropped before the end marker of a set, set data "
                                   "or particle tracks"),
              std::string::npos);
    EXPECT_FALSE(writer.endWriting(KEL_DATA));
    Reader reader;
    ASSERT_TRUE(reader.startReading(path, KEL_DATA)) << reader.errors();
    EXPECT_EQ(reader.getTimeLevels(), (Levels{8, 9, 10, 11}));
}
