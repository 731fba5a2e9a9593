#include "io/ConsumerRows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace meridyn {
namespace {

const unsigned64 ids[] = {41, 42, 43};
const int lengths[] = {1, 2, 3};
const short shorts[] = {1, 2, 3};
const char* const silent = "";

// clang-format off
const ConsumerRow plainRows[] = {
    KEL_ROW(startWritingSet, ("s", KEL_CELL_ZONE), silent),
    KEL_ROW(setSizesAndMinMaxIdsForSet, ({1}, {2}, {3}), silent),
    KEL_ROW(startWritingIdsForSet, (), silent),
    KEL_ROW(setIdsForSetInRange, (1, 3, ids, 3), silent),
    KEL_ROW(endWritingIdsForSet, (), silent),
    KEL_ROW(startWritingSizeOfVariableForSet, ("v", {1}, KEL_PLAIN_INT), silent),
    KEL_ROW(setSizeOfVariableForSetInRange, (1, 3, lengths, 3), silent),
    KEL_ROW(setSizeOfVariableForSetInRange, (1, 3, shorts, 3), silent),
    KEL_ROW(setSizeOfVariableForSetInRange, (1, 3, ids, 3), silent),
    KEL_ROW(setSizeOfVariableForSetInRange, (1, 3, 2), silent),
    KEL_ROW(setSizeOfVariableForSetInRange, (1, 3, short(2)), silent),
    KEL_ROW(setSizeOfVariableForSetInRange, (1, 3, unsigned64(2)), silent),
    KEL_ROW(endWritingSizeOfVariableForSet, (), silent),
    KEL_ROW(startWritingDataOfVariableForSet, ("v", {1}, 3, KEL_PLAIN_INT), silent),
    KEL_ROW(endWritingDataOfVariableForSet, (), silent),
    KEL_ROW(startWritingVariableLengthedDataOfVariableForSet, ("v", {1}, KEL_PLAIN_INT), silent),
    KEL_ROW(endWritingVariableLengthedDataOfVariableForSet, (), silent),
    KEL_ROW(writeStringDataForSet, ("n", "text"), silent),
    KEL_ROW(endWritingSet, (), silent),
    KEL_ROW(startWritingSetData, ("s", 3), silent),
    KEL_ROW(startWritingIdsForSetData, (), silent),
    KEL_ROW(setIdsForSetData, (ids, 3), silent),
    KEL_ROW(endWritingIdsForSetData, (), silent),
    KEL_ROW(startWritingVariableForSetData, ("v", 3, KEL_PLAIN_INT), silent),
    KEL_ROW(endWritingVariableForSetData, (), silent),
    KEL_ROW(startWritingVariableLengthVariableForSetData, ("v", KEL_PLAIN_INT, KEL_PLAIN_SHORT), silent),
    KEL_ROW(endWritingVariableLengthVariableForSetData, (), silent),
    KEL_ROW(writeStringDataForSetData, ("n", "text"), silent),
    KEL_ROW(endWritingSetData, (), silent),
    KEL_ROW(startWritingParticleTracks, (1, -1, KEL_DEFAULT_TARGET, -1), silent),
    KEL_ROW(startWritingPartiticleTrackGroup, ("g"), silent),             // sic
    KEL_ROW(startWritingChunkInPartiticleTrackGroup, (0, 3), silent),     // sic
    KEL_ROW(endWritingChunkInPartiticleTrackGroup, (), silent),           // sic
    KEL_ROW(endWritingPartiticleTrackGroup, (), silent),                  // sic
    KEL_ROW(endWritingParticleTracks, (), silent),
};

/// The rows of one of the ten value types.
template <class T>
std::vector<ConsumerRow> rowsOfType()
{
    static const T values[] = {T(1), T(2), T(3)};
    return {
        KEL_ROW(setDataOfVariableForSetInRange, (1, 3, values, 3), silent),
        KEL_ROW(setVariableLengthedDataOfVariableForSetInRange, (1, 3, values, 3), silent),
        KEL_ROW(writeOtherDataForSet, ("n", values, 3), silent),
        KEL_ROW(setVariableForSetData, (values, 3), silent),
        KEL_ROW(setVariableLengthVariableForSetData, (values, 3, lengths, 3), silent),
        KEL_ROW(setVariableLengthVariableForSetData, (values, 3, shorts, 3), silent),
        KEL_ROW(setVariableLengthVariableForSetData, (values, 3, ids, 3), silent),
        KEL_ROW(writeOtherDataForSetData, ("n", values, 3), silent),
        KEL_ROW(setValuesOfParticleTrackVariable, (1, values, 3), silent),
        KEL_ROW(setValuesOfParticleTrackVariable, ("v", values, 3), silent),
    };
}
// clang-format on

std::vector<ConsumerRow> allRows()
{
    std::vector<ConsumerRow> rows(std::begin(plainRows), std::end(plainRows));
    const auto add = [&rows](const std::vector<ConsumerRow>& more) {
        rows.insert(rows.end(), more.begin(), more.end());
    };
    add(rowsOfType<unsigned char>());
    add(rowsOfType<char>());
    add(rowsOfType<short>());
    add(rowsOfType<unsigned int>());
    add(rowsOfType<int>());
    add(rowsOfType<long>());
    add(rowsOfType<unsigned64>());
    add(rowsOfType<signed64>());
    add(rowsOfType<float>());
    add(rowsOfType<double>());
    return rows;
}

TEST(ConsumerSets, EveryOperationIsSilent)
{
    for (const ConsumerRow& row : allRows()) {
        KelConsumer bare("SetsTest");
        ::testing::internal::CaptureStdout();
        row.call(bare);
        EXPECT_EQ(::testing::internal::GetCapturedStdout(), row.expected) << row.operation;
    }
}

TEST(ConsumerSets, TheTableHasEveryOperationFromTheSetsOn)
{
    const std::vector<std::string> declared = declaredConsumerOperations();
    std::map<std::string, int> missing;
    for (auto name = std::find(declared.begin(), declared.end(), "startWritingSet"); name != declared.end(); ++name)
        ++missing[*name];
    EXPECT_EQ(missing["setValuesOfParticleTrackVariable"], 20);
    EXPECT_EQ(missing["setVariableLengthVariableForSetData"], 30);
    for (const ConsumerRow& row : allRows())
        --missing[row.operation];
    for (const auto& [name, count] : missing)
        EXPECT_EQ(count, 0) << name;
}

template <class T>
void expectNothingTaken()
{
    KelConsumer bare;
    const T values[] = {T(1), T(2), T(3)};
    EXPECT_EQ(bare.setVariableForSetData(values, 3), 0U);
    EXPECT_EQ(bare.setVariableLengthVariableForSetData(values, 3, lengths, 3), 0U);
    EXPECT_EQ(bare.setVariableLengthVariableForSetData(values, 3, shorts, 3), 0U);
    EXPECT_EQ(bare.setVariableLengthVariableForSetData(values, 3, ids, 3), 0U);
}

TEST(ConsumerSets, SetDataTakesNoValues)
{
    expectNothingTaken<unsigned char>();
    expectNothingTaken<char>();
    expectNothingTaken<short>();
    expectNothingTaken<unsigned int>();
    expectNothingTaken<int>();
    expectNothingTaken<long>();
    expectNothingTaken<unsigned64>();
    expectNothingTaken<signed64>();
    expectNothingTaken<float>();
    expectNothingTaken<double>();
    KelConsumer bare;
    EXPECT_EQ(bare.setIdsForSetData(ids, 3), 0U);
}

TEST(ConsumerSets, ParticleTracksAreNotTaken)
{
    KelConsumer bare;
    EXPECT_FALSE(bare.startWritingParticleTracks(1, -1, KEL_DEFAULT_TARGET, -1));
}

} // namespace
} // namespace meridyn
