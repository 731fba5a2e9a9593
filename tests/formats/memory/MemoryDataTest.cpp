#include "MemoryFiles.h"

#include "KelSolutionModel.h"

namespace meridyn {
namespace {

class MemoryData : public MemoryFiles {
protected:
    void writeCells(double first)
    {
        const double values[] = {first, first + 1, first + 2};
        std::vector<int> zones = {5};
        writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, "p", zones, 1);
        writer.setValuesOfPhaseVariableForElementsInRange(1, 3, values, 3);
        writer.endWritingPhaseVariableInZonesOfCategory();
    }

    std::vector<double> readCells()
    {
        std::vector<int> zones;
        std::vector<double> values(3);
        reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "p", zones);
        values.resize(reader.getValuesOfPhaseVariableForElementsInRange(1, 3, values.data(), 3));
        return values;
    }

    int variable = 0;
};

using Doubles = std::vector<double>;

TEST_F(MemoryData, PhasesVariablesAndTheirAttributes)
{
    int p = 0, q = 0, t = 0;
    startData();
    writer.addPhaseVariable(short(2), "q", q);
    writer.addPhaseVariable(short(1), "p", p);
    writer.addPhaseVariable(short(-1), "t", t);
    writer.setAttributeValueOfPhase(short(2), "State", "liquid");
    writer.setDatasetNameOfPhase(1, "phase-1");
    writer.setAttributeValueOfPhaseVariable(p, "Units", "Pa");
    writer.setDatasetNameOfVariable(q, "SV_Q");
    writer.setPhaseVariablesOfCategory(KEL_CELL_ZONE, std::vector<int>{p});
    writer.setPhaseVariablesOfCategory(KEL_FACE_ZONE, std::vector<int>{p});
    reopen(KEL_DATA);
    std::vector<short> phases;
    reader.getPhaseIds(phases);
    EXPECT_EQ(phases, (std::vector<short>{-1, 1, 2}));
    EXPECT_EQ(static_cast<const KelMemoryProvider&>(reader).getPhaseName(2), "oil");
    int id = 0;
    EXPECT_TRUE(reader.getVariableId(short(1), "p", id));
    EXPECT_EQ(id, p);
    EXPECT_TRUE(reader.getVariableId(short(2), "q", id));
    EXPECT_EQ(id, q);
    EXPECT_TRUE(reader.getVariableId(short(-1), "t", id));
    EXPECT_EQ(id, t);
    std::string text;
    EXPECT_TRUE(reader.getAttributeValueOfPhase(short(2), "State", text));
    EXPECT_EQ(text, "liquid");
    EXPECT_TRUE(reader.getDatasetNameOfPhase(1, text));
    EXPECT_EQ(text, "phase-1");
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(p, "Units", text));
    EXPECT_EQ(text, "Pa");
    EXPECT_TRUE(reader.getDatasetNameOfVariable(q, text));
    EXPECT_EQ(text, "SV_Q");
    EXPECT_TRUE(reader.startReadingPhase(1));
    Texts names;
    reader.getPhaseVariablesOfCategory(KEL_FACE_ZONE, names);
    EXPECT_EQ(names, Texts{"p"});
    EXPECT_TRUE(reader.startReadingPhase(2));
    reader.getPhaseVariablesOfCategory(KEL_CELL_ZONE, names);
    EXPECT_EQ(names, Texts{});
}

TEST_F(MemoryData, ValuesByTimeLevelAndPhase)
{
    startData();
    writer.addPhaseVariable(short(1), "p", variable);
    writer.addPhaseVariable(short(2), "p", variable);
    for (const int level : {5, 2})
        for (const short phase : {1, 2}) {
            writer.startWritingTimeLevel(level);
            writer.startWritingPhase(phase);
            writeCells(100 * level + 10 * phase);
        }
    reopen(KEL_DATA);
    EXPECT_EQ(reader.getTimeLevels(), (std::vector<int>{5, 2}));
    EXPECT_EQ(reader.getTimeLevel(), 5);
    EXPECT_EQ(readCells(), (Doubles{510, 511, 512})) << "the first level and phase are chosen on opening";
    reader.startReadingTimeLevel(2);
    reader.startReadingPhase(2);
    EXPECT_EQ(readCells(), (Doubles{220, 221, 222}));
}

TEST_F(MemoryData, LevelsAreDroppedAndWrittenAnew)
{
    EXPECT_FALSE(writer.dropTimeLevelsFrom(1)) << "nothing is being written";
    EXPECT_EQ(writer.getErrors(false, true).size(), 1U);
    startData();
    writer.addPhaseVariable(short(1), "p", variable);
    const auto writeLevel = [this](int level, double first) {
        writer.startWritingTimeLevel(level);
        writeCells(first);
        writer.writeSettingStrings({{std::to_string(level), "time"}}, KEL_DATA, "timeLevels");
    };
    for (const int level : {8, 9, 10, 11})
        writeLevel(level, level);
    ASSERT_TRUE(writer.endWriting(KEL_DATA));
    writer.setAppendOn(true);
    ASSERT_TRUE(writer.startWriting(KEL_DATA));
    ASSERT_TRUE(writer.dropTimeLevelsFrom(9));
    writeLevel(10, 100);
    reopen(KEL_DATA);
    EXPECT_EQ(reader.getTimeLevels(), (std::vector<int>{8, 10}));
    EXPECT_EQ(readCells(), (Doubles{8, 9, 10}));
    reader.startReadingTimeLevel(10);
    EXPECT_EQ(readCells(), (Doubles{100, 101, 102}));
    Texts keys;
    reader.getSettingsKeysOfGroup(KEL_DATA, "timeLevels", keys);
    EXPECT_EQ(keys, (Texts{"8", "10"}));
}

TEST_F(MemoryData, ValuesWithoutATimeLevel)
{
    startData();
    writer.addPhaseVariable("p", variable);
    writeCells(1);
    reopen(KEL_DATA);
    EXPECT_EQ(readCells(), (Doubles{1, 2, 3}));
    std::vector<int> zones = {9};
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_FACE_ZONE, "p", zones), 0U);
    EXPECT_EQ(zones, std::vector<int>{});
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, variable, zones), 1U);
    EXPECT_EQ(zones, std::vector<int>({5}));
}

TEST_F(MemoryData, VectorsByZonesAndInSinglePrecision)
{
    const float velocities[] = {1, 2, 3, 4, 5, 6};
    const double pressure[] = {0.1};
    std::vector<int> zones = {3}, more = {4, 3};
    startData();
    writer.addPhaseVariable("v", variable);
    writer.startWritingPhaseVariableInZonesOfCategory(KEL_FACE_ZONE, variable, zones, 3);
    writer.setValuesOfPhaseVariableForElementsInRange(1, 2, velocities, 6);
    writer.startWritingPhaseVariableInZonesOfCategory(KEL_FACE_ZONE, variable, more, 3);
    writer.setValuesOfPhaseVariableForElementsInRange(3, 3, velocities, 3);
    writer.addPhaseVariable("p", variable);
    writer.setDataPrecision(KEL_PRECISION_SINGLE);
    writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, "p", zones, 1);
    writer.setValuesOfPhaseVariableForElementsInRange(1, 1, pressure, 1);
    reopen(KEL_DATA);
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_FACE_ZONE, "v", zones), 3U);
    EXPECT_EQ(zones, (std::vector<int>{3, 4}));
    float values[9] = {};
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInRange(1, 3, values, 9), 9U);
    EXPECT_EQ(values[5], 6.0F);
    reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "p", zones);
    double read = 0;
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInRange(1, 1, &read, 1), 1U);
    EXPECT_EQ(read, static_cast<double>(0.1F));
}

TEST_F(MemoryData, AVariableThatIsNotDeclaredIsRefused)
{
    std::vector<int> zones = {5};
    const double value = 1;
    startData();
    writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, "nobody", zones, 1);
    writer.setValuesOfPhaseVariableForElementsInRange(1, 1, &value, 1);
    const Texts errors = writer.getErrors(false, true);
    ASSERT_EQ(errors.size(), 2U);
    EXPECT_EQ(errors[0], name + ": variable 'nobody': not declared, or no values");
    EXPECT_EQ(errors[1], name + ": values without a start marker");
}

TEST_F(MemoryData, ASetAndSetDataMayBeOpenAtTheSameTime)
{
    const int ofSet[] = {10, 20}, ofData[] = {1, 2};
    startData();
    writer.startWritingSet("wall", KEL_FACE_ZONE);
    writer.startWritingDataOfVariableForSet("v", {}, 1, KEL_PLAIN_INT);
    writer.startWritingSetData("spray", 2);
    writer.startWritingVariableForSetData("v", 1, KEL_PLAIN_INT);
    writer.setDataOfVariableForSetInRange(1, 2, ofSet, 2);
    EXPECT_EQ(writer.setVariableForSetData(ofData, 2), 2U);
    writer.endWritingSetData();
    writer.writeStringDataForSet("kind", "the set is still open");
    writer.endWritingSet();
    reopen(KEL_DATA);

    unsigned64 members = 0, size = 0;
    std::vector<int> values(2), found;
    std::string text;
    ASSERT_TRUE(reader.startReadingSet("wall"));
    ASSERT_TRUE(reader.startReadingSetData("spray", members));
    reader.startReadingDataOfVariableForSet("v", size);
    EXPECT_EQ(reader.getDataOfVariableForSetInRange(1, 2, values.data(), 2), 2U);
    EXPECT_EQ(values, (std::vector<int>{10, 20}));
    EXPECT_TRUE(reader.getDataOfConstantLengthVarForSetData("v", found, size));
    EXPECT_EQ(found, (std::vector<int>{1, 2}));
    reader.endReadingSetData();
    reader.getStringDataForSet("kind", text);
    EXPECT_EQ(text, "the set is still open");
}

template <class T>
class MemorySets : public MemoryFiles {};
using ValueTypes =
    ::testing::Types<unsigned char, char, short, unsigned int, int, long, unsigned64, signed64, float, double>;
TYPED_TEST_SUITE(MemorySets, ValueTypes);

/// The number of a value type.
template <class T>
KelPlainDataType numberOf()
{
    return KelPlainDataType(KelAnyValues(std::vector<T>()).index());
}

TEST(MemorySetTypes, NumbersAreThoseOfTheEnumeration)
{
    EXPECT_EQ(numberOf<unsigned char>(), KEL_PLAIN_UNSIGNED_CHAR);
    EXPECT_EQ(numberOf<int>(), KEL_PLAIN_INT);
    EXPECT_EQ(numberOf<signed64>(), KEL_PLAIN_SIGNED64);
    EXPECT_EQ(numberOf<double>(), KEL_PLAIN_DOUBLE);
}

TYPED_TEST(MemorySets, VariablesOfASet)
{
    using T = TypeParam;
    const T values[] = {T(1), T(2), T(3), T(4), T(5), T(6)};
    const int lengths[] = {2, 0, 1};
    this->startData();
    KelMemoryConsumer& to = this->writer;
    to.startWritingTimeLevel(4);
    to.startWritingSet("s", KEL_FACE_ZONE);
    to.setSizesAndMinMaxIdsForSet({3}, {1}, {9});
    to.startWritingDataOfVariableForSet("pairs", {3}, 2, numberOf<T>());
    to.setDataOfVariableForSetInRange(2, 3, values + 2, 4);
    to.setDataOfVariableForSetInRange(1, 1, values, 2);
    to.endWritingDataOfVariableForSet();
    to.startWritingSizeOfVariableForSet("list", {3}, KEL_PLAIN_INT);
    to.setSizeOfVariableForSetInRange(1, 3, lengths, 3);
    to.startWritingVariableLengthedDataOfVariableForSet("list", {3}, numberOf<T>());
    to.setVariableLengthedDataOfVariableForSetInRange(3, 3, values + 2, 1);
    to.setVariableLengthedDataOfVariableForSetInRange(1, 1, values, 2);
    to.writeOtherDataForSet("block", values, 6);
    to.writeStringDataForSet("text", std::string("a\0b", 3));
    to.endWritingSet();
    this->reopen(KEL_DATA);

    KelMemoryProvider& from = this->reader;
    std::vector<std::string> names;
    unsigned64 perMember = 0;
    T read[6] = {};
    ASSERT_TRUE(from.startReadingSet("s"));
    from.getVariablesInSet(names);
    EXPECT_EQ(names, std::vector<std::string>{"pairs"});
    from.getVariableLengthedVariablesInSet(names);
    EXPECT_EQ(names, std::vector<std::string>{"list"});
    EXPECT_EQ(from.startReadingDataOfVariableForSet("nobody", perMember), KelPlainDataType(-1));
    EXPECT_EQ(from.startReadingDataOfVariableForSet("pairs", perMember), numberOf<T>());
    EXPECT_EQ(perMember, 2U);
    EXPECT_EQ(from.getDataOfVariableForSetInRange(1, 3, read, 6), 6U);
    EXPECT_TRUE(std::equal(values, values + 6, read));
    double doubles[2] = {};
    EXPECT_EQ(from.getDataOfVariableForSetInRange(2, 2, doubles, 2), 2U);
    EXPECT_EQ(doubles[1], 4.0) << "converted";
    EXPECT_EQ(from.startReadingSizeOfVariableLengthedVarForSet("list"), KEL_PLAIN_INT);
    unsigned64 readLengths[3] = {};
    EXPECT_EQ(from.getSizeOfVariableForSetInRange(1, 3, readLengths, 3), 3U);
    EXPECT_EQ(readLengths[2], 1U);
    EXPECT_EQ(from.startReadingVariableLengthedDataOfVariableForSet("list"), numberOf<T>());
    EXPECT_EQ(from.getVariableLengthedDataOfVariableForSetInRange(1, 3, read, 6), 3U);
    EXPECT_EQ(read[2], T(3));
    EXPECT_EQ(from.getDataTypeOfOtherDataForSet("block"), numberOf<T>());
    EXPECT_EQ(from.getOtherDataForSet("block", static_cast<T*>(nullptr), 0), 6U);
    EXPECT_EQ(from.getOtherDataForSet("block", read, 4), 4U);
    std::string text;
    EXPECT_EQ(from.getStringDataForSet("text", text), 3U);
    EXPECT_EQ(from.getStringDataForSet("nobody", text), 0U);
}

TYPED_TEST(MemorySets, SetDataOfAPhase)
{
    using T = TypeParam;
    const T values[] = {T(1), T(2), T(3), T(4)};
    const unsigned64 ids[] = {7, 8};
    const short lengths[] = {3, 1};
    this->startData();
    KelMemoryConsumer& to = this->writer;
    to.startWritingSetData("injection", 2);
    EXPECT_EQ(to.setIdsForSetData(ids, 1), 1U);
    EXPECT_EQ(to.setIdsForSetData(ids + 1, 1), 1U);
    to.startWritingVariableForSetData("x", 2, numberOf<T>());
    EXPECT_EQ(to.setVariableForSetData(values, 3), 3U);
    EXPECT_EQ(to.setVariableForSetData(values + 3, 1), 1U);
    to.startWritingVariableLengthVariableForSetData("y", numberOf<T>(), KEL_PLAIN_SHORT);
    EXPECT_EQ(to.setVariableLengthVariableForSetData(values, 4, lengths, 2), 4U);
    to.writeOtherDataForSetData("block", values, 2);
    to.writeStringDataForSetData("text", "hello");
    to.endWritingSetData();
    this->reopen(KEL_DATA);

    KelMemoryProvider& from = this->reader;
    std::vector<std::string> names;
    EXPECT_TRUE(from.hasParticles("air"));
    EXPECT_FALSE(from.hasParticles("oil"));
    EXPECT_FALSE(from.startReadingParticles("oil"));
    EXPECT_TRUE(from.startReadingParticles(short(1)));
    from.getVariablesOfInjection("injection", names);
    EXPECT_EQ(names, (std::vector<std::string>{"x", "y"}));
    from.getSetDataNames(names);
    EXPECT_EQ(names, std::vector<std::string>{"injection"});
    unsigned64 members = 0, perMember = 0;
    ASSERT_TRUE(from.startReadingSetData("injection", members));
    EXPECT_EQ(members, 2U);
    std::vector<unsigned64> readIds;
    EXPECT_TRUE(from.getIdsForSetData(readIds));
    EXPECT_EQ(readIds, (std::vector<unsigned64>{7, 8}));
    std::vector<T> read;
    EXPECT_TRUE(from.getDataOfConstantLengthVarForSetData("x", read, perMember));
    EXPECT_EQ(read, std::vector<T>(values, values + 4));
    EXPECT_EQ(perMember, 2U);
    EXPECT_EQ(from.getDataTypeOfDataForSetData("y"), numberOf<T>());
    EXPECT_EQ(from.getDataTypeOfDataForSetData("block"), numberOf<T>());
    EXPECT_EQ(from.getDataTypeOfSizeForSetData("y"), KEL_PLAIN_SHORT);
    EXPECT_TRUE(from.getDataOfVariableLengthVarForSetData("y", read));
    std::vector<int> readLengths;
    EXPECT_TRUE(from.getSizeOfVariableLengthVarForSetData("y", readLengths));
    EXPECT_EQ(readLengths, (std::vector<int>{3, 1}));
    EXPECT_TRUE(from.getOtherDataForSetData("block", read));
    EXPECT_EQ(read.size(), 2U);
    std::string text;
    EXPECT_EQ(from.getStringDataForSetData("text", text), 5U);
    EXPECT_FALSE(from.getOtherDataForSetData("nobody", read));
}

TYPED_TEST(MemorySets, ParticleTracks)
{
    using T = TypeParam;
    const T values[] = {T(1), T(2), T(3), T(4)};
    int id = 0;
    this->startData();
    KelMemoryConsumer& to = this->writer;
    to.addPhaseVariable(short(1), "time", id);
    EXPECT_FALSE(to.startWritingParticleTracks(9, -1, KEL_DEFAULT_TARGET, -1)) << "an unknown phase";
    to.getErrors(false, true);
    EXPECT_TRUE(to.startWritingParticleTracks(1, -1, KEL_DEFAULT_TARGET, -1));
    to.startWritingPartiticleTrackGroup("g");
    to.startWritingChunkInPartiticleTrackGroup(7, 2);
    to.setValuesOfParticleTrackVariable(id, values, 2);
    to.setValuesOfParticleTrackVariable("position", values, 4);
    to.endWritingChunkInPartiticleTrackGroup();
    to.endWritingPartiticleTrackGroup();
    to.endWritingParticleTracks();
    this->reopen(KEL_DATA);

    KelMemoryProvider& from = this->reader;
    EXPECT_TRUE(from.hasParticleTracks());
    EXPECT_TRUE(from.hasParticleTracksInActivePhase());
    EXPECT_FALSE(from.hasParticleTracks("oil"));
    EXPECT_EQ(from.getPhasesWithParticleTracks(-1, KEL_DEFAULT_TARGET, -1), std::vector<short>{1});
    EXPECT_FALSE(from.hasParticleTracks(1, 2, KEL_DEFAULT_TARGET, -1));
    std::vector<std::string> names;
    std::vector<int> chunks;
    from.startReadingParticleTracks(1, -1, KEL_DEFAULT_TARGET, -1);
    from.getParticleTrackGroups(names);
    EXPECT_EQ(names, std::vector<std::string>{"g"});
    from.startReadingParticleTrackGroup("g");
    from.getChunksInParticleTrackGroup(chunks);
    EXPECT_EQ(chunks, std::vector<int>{7});
    from.startReadingChunkInParticleTrackGroup(7);
    EXPECT_EQ(from.getPointCountOfParticleTrackChunk(), 2U);
    from.getParticleTrackVariables(names);
    EXPECT_EQ(names, (std::vector<std::string>{"position", "time"}));
    EXPECT_EQ(from.getDataTypeOfParticleTrackVariable("time"), numberOf<T>());
    EXPECT_EQ(from.getDataTypeOfParticleTrackVariable("nobody"), KelPlainDataType(-1));
    EXPECT_EQ(from.getValueCountOfParticleTrackVariable("position"), 4U);
    T read[4] = {};
    EXPECT_EQ(from.getValuesOfParticleTrackVariable("position", read, 4), 4U);
    EXPECT_TRUE(std::equal(values, values + 4, read));
    EXPECT_EQ(from.getValuesOfParticleTrackVariable(id, read, 1), 1U);
    from.endReadingParticleTracks();
    EXPECT_EQ(from.getPointCountOfParticleTrackChunk(), 0U);
}

} // namespace
} // namespace meridyn
