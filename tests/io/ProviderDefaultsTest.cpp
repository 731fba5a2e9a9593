#include "support/RecordingProvider.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>

// What a bare reader answers: one row for every overload of every virtual operation. A new operation without a row
// fails ProviderDefaults.EveryVirtualOperationHasItsRow.

namespace meridyn {
namespace {

using Names = std::vector<std::string>;
using Ids = std::vector<int>;

struct DefaultCase {
    const char* name;
    void (*check)(OpenProvider&);
};

const Names left{"left"};
constexpr auto noType = static_cast<KelPlainDataType>(-1);

/// The room that a range, zone or element form must not touch.
template <typename T>
struct Untouched {
    T value = T(7);
    ~Untouched() { EXPECT_EQ(value, T(7)); }
    operator T*() { return &value; }
};

/// An output whose contents do not matter.
template <typename T>
struct Scratch {
    T value;
    operator T&() { return value; }
};

/// Makes a list that the operation has to leave alone, or to empty.
template <typename Action>
void expectLeft(Action&& action)
{
    Names names = left;
    action(names);
    EXPECT_EQ(names, left);
}

template <typename Action>
void expectEmptied(Action&& action)
{
    Names names = left;
    action(names);
    EXPECT_EQ(names, Names());
}

// clang-format off
#define KEL_RUNS(NAME, ...)    {#NAME, [](OpenProvider& r) { r.NAME(__VA_ARGS__); }}
#define KEL_NO(NAME, ...)      {#NAME, [](OpenProvider& r) { EXPECT_FALSE(r.NAME(__VA_ARGS__)); }}
#define KEL_GIVES(NAME, ANSWER, ...) {#NAME, [](OpenProvider& r) { EXPECT_EQ(r.NAME(__VA_ARGS__), ANSWER); }}
#define KEL_ZERO(NAME, ...)    KEL_GIVES(NAME, 0U, __VA_ARGS__)
#define KEL_NOTHING(NAME, ...) {#NAME, [](OpenProvider& r) { EXPECT_TRUE(r.NAME(__VA_ARGS__).empty()); }}
#define KEL_LEAVES(NAME, ...)  {#NAME, [](OpenProvider& r) { expectLeft([&](Names& names) { r.NAME(__VA_ARGS__); }); }}
#define KEL_EMPTIES(NAME, ...) {#NAME, [](OpenProvider& r) { expectEmptied([&](Names& names) { r.NAME(__VA_ARGS__); }); }}
#define KEL_BOUNDED(NAME, T, ...) \
    {#NAME, [](OpenProvider& r) { Untouched<T> room; EXPECT_EQ(r.NAME(__VA_ARGS__, room, 1), 0U); }}
#define KEL_UNIFORM(NAME, T, ...) \
    {#NAME, [](OpenProvider& r) { Untouched<T> value; EXPECT_FALSE(r.NAME(__VA_ARGS__, value)); }}
#define KEL_TEN(FORM, NAME, ...) \
    FORM(NAME, unsigned char, __VA_ARGS__), FORM(NAME, char, __VA_ARGS__), FORM(NAME, short, __VA_ARGS__), \
    FORM(NAME, unsigned int, __VA_ARGS__), FORM(NAME, int, __VA_ARGS__), FORM(NAME, long, __VA_ARGS__), \
    FORM(NAME, unsigned64, __VA_ARGS__), FORM(NAME, signed64, __VA_ARGS__), FORM(NAME, float, __VA_ARGS__), \
    FORM(NAME, double, __VA_ARGS__)
#define KEL_LIST(NAME, T, ...) \
    {#NAME, [](OpenProvider& r) { std::vector<T> values(1); EXPECT_FALSE(r.NAME(__VA_ARGS__, values)); EXPECT_EQ(values.size(), 1U); }}
#define KEL_SIZED_LIST(NAME, T, ...) \
    {#NAME, [](OpenProvider& r) { std::vector<T> values; unsigned64 size = 5; EXPECT_FALSE(r.NAME(__VA_ARGS__, values, size)); EXPECT_EQ(size, 5U); }}

const DefaultCase runCases[] = {
    KEL_RUNS(setVariableTarget, "anything"), KEL_RUNS(setVariableRecipeProvider, nullptr),
    KEL_NO(startReading, KEL_CASE), KEL_NO(endReading, KEL_DATA), KEL_NO(isReadingData),
    KEL_RUNS(setIOMode, KEL_IO_SERIAL), KEL_RUNS(setMPIComm, nullptr),
    {"getLog", [](OpenProvider& r) { std::vector<std::pair<std::string, std::string>> log{{"a", "b"}}; r.getLog(KEL_CASE, log); EXPECT_TRUE(log.empty()); }},
    KEL_EMPTIES(getSettingsKeys, KEL_CASE, names),
    {"getSettingString", [](OpenProvider& r) { std::string text = "left"; r.getSettingString(KEL_CASE, "Common", text, "settings"); EXPECT_EQ(text, "left"); }},
    {"getSetting", [](OpenProvider& r) { EXPECT_FALSE(r.getSetting("Common", KEL_CASE, "settings").isValid()); }},
    KEL_NO(hasMeshId, 5), KEL_NOTHING(availableMeshIds, KEL_CASE),
    KEL_NO(hasTarget, 1, KEL_SOLVER), KEL_NOTHING(availableTargets, 1, KEL_CASE),
    KEL_NO(hasPartition, 1, 2), KEL_ZERO(getPartitionCount, 1), KEL_NOTHING(availablePartitionIds, 1, KEL_DATA),
    KEL_RUNS(setHeavyDataCacheMode, KEL_CACHE_ALL), KEL_RUNS(setReadAllSettings, true), KEL_RUNS(setSkipReadZoneTopology, true),
    KEL_EMPTIES(getSettingsGroups, KEL_CASE, names), KEL_EMPTIES(getSettingsKeysOfGroup, KEL_CASE, "settings", names),
    KEL_BOUNDED(getLocalElemIdsInZone, unsigned64, 9), KEL_GIVES(getPartitionCountOfCells, 0),
};

const DefaultCase meshCases[] = {
    KEL_RUNS(startReadingNodes, {3}), KEL_RUNS(startReadingCoordinatesForNodes, {3}),
    KEL_BOUNDED(getCoordinatesForNode, float, 1), KEL_BOUNDED(getCoordinatesForNode, double, 1),
    KEL_BOUNDED(getCoordinatesForNodesInRange, float, 1, 1), KEL_BOUNDED(getCoordinatesForNodesInRange, double, 1, 1),
    KEL_BOUNDED(getCoordinatesForNodesInZone, float, 3), KEL_BOUNDED(getCoordinatesForNodesInZone, double, 3),
    KEL_RUNS(endReadingCoordinatesForNodes), KEL_RUNS(endReadingNodes),

    KEL_RUNS(startReadingEdges, {3}), KEL_RUNS(startReadingNodesForEdges, {3}), KEL_RUNS(startReadingNodeCountsForEdges),
    KEL_UNIFORM(hasUniformNodeCountForEdgesInRange, short, 1, 1), KEL_UNIFORM(hasUniformNodeCountForEdgesInZone, short, 3),
    KEL_GIVES(getNodeCountForEdge, 0, 1),
    KEL_BOUNDED(getNodeCountsForEdgesInRange, short, 1, 1), KEL_BOUNDED(getNodeCountsForEdgesInZone, short, 3),
    KEL_RUNS(endReadingNodeCountsForEdges), KEL_RUNS(startReadingNodeIdsForEdges),
    KEL_BOUNDED(getNodeIdsForEdge, unsigned64, 1), KEL_BOUNDED(getNodeIdsForEdgesInRange, unsigned64, 1, 1),
    KEL_BOUNDED(getNodeIdsForEdgesInZone, unsigned64, 3),
    KEL_RUNS(endReadingNodeIdsForEdges), KEL_RUNS(endReadingNodesForEdges), KEL_RUNS(endReadingEdges),

    KEL_RUNS(startReadingFaces, {3}), KEL_RUNS(startReadingNodesForFaces, {3}), KEL_RUNS(startReadingNodeCountsForFaces),
    KEL_UNIFORM(hasUniformNodeCountForFacesInRange, short, 1, 1), KEL_UNIFORM(hasUniformNodeCountForFacesInZone, short, 3),
    KEL_GIVES(getNodeCountForFace, 0, 1),
    KEL_BOUNDED(getNodeCountsForFacesInRange, short, 1, 1), KEL_BOUNDED(getNodeCountsForFacesInZone, short, 3),
    KEL_RUNS(endReadingNodeCountsForFaces), KEL_RUNS(startReadingNodeIdsForFaces),
    KEL_BOUNDED(getNodeIdsForFace, unsigned64, 1), KEL_BOUNDED(getNodeIdsForFacesInRange, unsigned64, 1, 1),
    KEL_BOUNDED(getNodeIdsForFacesInZone, unsigned64, 3),
    KEL_RUNS(endReadingNodeIdsForFaces), KEL_RUNS(endReadingNodesForFaces),

    KEL_RUNS(startReadingCell0sForFaces, {3}), KEL_ZERO(getCell0ForFace, 1),
    KEL_BOUNDED(getCell0sForFacesInRange, unsigned64, 1, 1), KEL_BOUNDED(getCell0sForFacesInZone, unsigned64, 3),
    KEL_RUNS(endReadingCell0sForFaces),
    KEL_RUNS(startReadingCell1sForFaces, {3}), KEL_ZERO(getCell1ForFace, 1),
    KEL_BOUNDED(getCell1sForFacesInRange, unsigned64, 1, 1), KEL_BOUNDED(getCell1sForFacesInZone, unsigned64, 3),
    KEL_RUNS(endReadingCell1sForFaces),
    KEL_RUNS(startReadingShadowFaceIdsForFaces, {3}), KEL_ZERO(getShadowFaceIdForFace, 1),
    KEL_BOUNDED(getShadowFaceIdsForFacesInRange, unsigned64, 1, 1), KEL_BOUNDED(getShadowFaceIdsForFacesInZone, unsigned64, 3),
    KEL_RUNS(endReadingShadowFaceIdsForFaces),

    {"startReadingInterfaceDataForFaces", [](OpenProvider& r) {
        Ids side0{3}, side1{4};
        r.startReadingInterfaceDataForFaces(side0, side1);
        EXPECT_EQ(side0, Ids{3});
        EXPECT_EQ(side1, Ids{4});
    }},
    {"getInterfaceDataSizesForFacesInZone", [](OpenProvider& r) {
        unsigned64 a = 1, b = 2, c = 3, d = 4;
        EXPECT_FALSE(r.getInterfaceDataSizesForFacesInZone(3, a, b, c, d));
    }},
    {"getInterfaceDataForFacesInZone", [](OpenProvider& r) {
        Untouched<float> a, b;
        Untouched<unsigned64> ids;
        EXPECT_EQ(r.getInterfaceDataForFacesInZone(3, a, 1, b, 1, ids, 1, ids, 1), 0U);
    }},
    {"getInterfaceDataForFacesInZone", [](OpenProvider& r) {
        Untouched<double> a, b;
        Untouched<unsigned64> ids;
        EXPECT_EQ(r.getInterfaceDataForFacesInZone(3, a, 1, b, 1, ids, 1, ids, 1), 0U);
    }},
    KEL_RUNS(endReadingInterfaceDataForFaces),

    KEL_RUNS(startReadingChildFacesForFaces, {3}), KEL_RUNS(startReadingChildFaceCountsForFaces),
    KEL_GIVES(getChildFaceCountForFace, 0, 1),
    KEL_BOUNDED(getChildFaceCountsForFacesInRange, short, 1, 1), KEL_BOUNDED(getChildFaceCountsForFacesInZone, short, 3),
    KEL_RUNS(endReadingChildFaceCountsForFaces), KEL_RUNS(startReadingChildFaceIdsForFaces),
    KEL_BOUNDED(getChildFaceIdsForFace, unsigned64, 1), KEL_BOUNDED(getChildFaceIdsForFacesInRange, unsigned64, 1, 1),
    KEL_BOUNDED(getChildFaceIdsForFacesInZone, unsigned64, 3),
    KEL_RUNS(endReadingChildFaceIdsForFaces), KEL_RUNS(endReadingChildFacesForFaces), KEL_RUNS(endReadingFaces),

    KEL_RUNS(startReadingCells, {3}), KEL_RUNS(startReadingTypesForCells, {3}),
    KEL_UNIFORM(hasUniformTypeForCellsInZone, KelCellType, 3),
    KEL_GIVES(getTypeForCell, static_cast<KelCellType>(-1), 1),
    KEL_BOUNDED(getTypesForCellsInRange, KelCellType, 1, 1), KEL_BOUNDED(getTypesForCellsInZone, KelCellType, 3),
    KEL_RUNS(endReadingTypesForCells),
    KEL_RUNS(startReadingNodesForCells, {3}), KEL_RUNS(startReadingNodeCountsForCells),
    KEL_UNIFORM(hasUniformNodeCountForCellsInZone, short, 3), KEL_GIVES(getNodeCountForCell, 0, 1),
    KEL_BOUNDED(getNodeCountsForCellsInRange, short, 1, 1), KEL_BOUNDED(getNodeCountsForCellsInZone, short, 3),
    KEL_RUNS(endReadingNodeCountsForCells), KEL_RUNS(startReadingNodeIdsForCells),
    KEL_BOUNDED(getNodeIdsForCell, unsigned64, 1), KEL_BOUNDED(getNodeIdsForCellsInRange, unsigned64, 1, 1),
    KEL_BOUNDED(getNodeIdsForCellsInZone, unsigned64, 3),
    KEL_RUNS(endReadingNodeIdsForCells), KEL_RUNS(endReadingNodesForCells),
    KEL_RUNS(startReadingFacesForCells, {3}), KEL_RUNS(startReadingFaceCountsForCells),
    KEL_UNIFORM(hasUniformFaceCountForCellsInZone, short, 3), KEL_GIVES(getFaceCountForCell, 0, 1),
    KEL_BOUNDED(getFaceCountsForCellsInRange, short, 1, 1), KEL_BOUNDED(getFaceCountsForCellsInZone, short, 3),
    KEL_RUNS(endReadingFaceCountsForCells), KEL_RUNS(startReadingFaceIdsForCells),
    KEL_BOUNDED(getFaceIdsForCell, unsigned64, 1), KEL_BOUNDED(getFaceIdsForCellsInRange, unsigned64, 1, 1),
    KEL_BOUNDED(getFaceIdsForCellsInZone, unsigned64, 3),
    KEL_RUNS(endReadingFaceIdsForCells), KEL_RUNS(endReadingFacesForCells),
    KEL_RUNS(startReadingPartitionIdsForCells, {3}), KEL_GIVES(getPartitionIdForCell, 0, 1),
    KEL_BOUNDED(getPartitionIdsForCellsInRange, int, 1, 1), KEL_BOUNDED(getPartitionIdsForCellsInZone, int, 3),
    KEL_RUNS(endReadingPartitionIdsForCells),
    KEL_RUNS(startReadingChildCellsForCells, {3}), KEL_RUNS(startReadingChildCellCountsForCells),
    KEL_GIVES(getChildCellCountForCell, 0, 1),
    KEL_BOUNDED(getChildCellCountsForCellsInRange, short, 1, 1), KEL_BOUNDED(getChildCellCountsForCellsInZone, short, 3),
    KEL_RUNS(endReadingChildCellCountsForCells), KEL_RUNS(startReadingChildCellIdsForCells),
    KEL_BOUNDED(getChildCellIdsForCell, unsigned64, 1), KEL_BOUNDED(getChildCellIdsForCellsInRange, unsigned64, 1, 1),
    KEL_BOUNDED(getChildCellIdsForCellsInZone, unsigned64, 3),
    KEL_RUNS(endReadingChildCellIdsForCells), KEL_RUNS(endReadingChildCellsForCells), KEL_RUNS(endReadingCells),

    KEL_LEAVES(startReadingCaseSectionCategories, KEL_CELL_ZONE, names),
    {"startReadingCaseSectionForCategory", [](OpenProvider& r) {
        Ids zones{3};
        EXPECT_EQ(r.startReadingCaseSectionForCategory("density", zones), noType);
        EXPECT_EQ(zones, Ids{3});
    }},
    KEL_UNIFORM(hasUniformCaseSectionDataCountForZone, unsigned64, 3),
    KEL_BOUNDED(getCaseSectionDataForElementsInRange, double, 1, 1), KEL_BOUNDED(getCaseSectionDataForElementsInZone, double, 3),
    KEL_RUNS(endReadingCaseSectionForCategory), KEL_RUNS(endReadingCaseSectionCategories),
};

const DefaultCase solutionCases[] = {
    KEL_NO(startReadingPhase, 3),
    KEL_NO(getAttributesOfPhase, short{3}, Scratch<Names>()), KEL_NO(getAttributesOfPhase, "air", Scratch<Names>()),
    KEL_NO(getAttributesOfPhase, Scratch<Names>()),
    KEL_NO(getAttributeValueOfPhase, short{3}, "Long Name", Scratch<std::string>()),
    KEL_NO(getAttributeValueOfPhase, "air", "Long Name", Scratch<std::string>()),
    KEL_NO(getAttributeValueOfPhase, "Long Name", Scratch<std::string>()),
    KEL_ZERO(getPhaseVariableCountOfCategory, KEL_CELL_ZONE),
    {"getPhaseVariablesOfCategory", [](OpenProvider& r) { Ids ids{3}; r.getPhaseVariablesOfCategory(KEL_CELL_ZONE, ids); EXPECT_TRUE(ids.empty()); }},
    KEL_EMPTIES(getPhaseVariablesOfCategory, KEL_CELL_ZONE, names),
    KEL_NO(getAttributesOfPhaseVariable, 3, Scratch<Names>()),
    KEL_NO(getAttributesOfPhaseVariable, short{3}, "p", Scratch<Names>()),
    KEL_NO(getAttributeValueOfPhaseVariable, 3, "User Visible", Scratch<std::string>()),
    KEL_NO(getAttributeValueOfPhaseVariable, short{3}, "p", "User Visible", Scratch<std::string>()),
    KEL_NO(getAttributeValueOfPhaseVariable, "air", "p", "User Visible", Scratch<std::string>()),
    KEL_NO(getAttributeValueOfPhaseVariable, "p", "User Visible", Scratch<std::string>()),
    {"startReadingZonesOfCategoryWithPhaseVariable", [](OpenProvider& r) {
        Ids zones{3};
        EXPECT_EQ(r.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "p", zones), 0U);
        EXPECT_TRUE(zones.empty());
    }},
    {"startReadingZonesOfCategoryWithPhaseVariable", [](OpenProvider& r) {
        Ids zones{3};
        EXPECT_EQ(r.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, 1, zones), 0U);
        EXPECT_TRUE(zones.empty());
    }},
    KEL_BOUNDED(getValuesOfPhaseVariableForElementsInRange, float, 1, 1), KEL_BOUNDED(getValuesOfPhaseVariableForElementsInRange, double, 1, 1),
    KEL_BOUNDED(getValuesOfPhaseVariableForElementsInZone, float, 3), KEL_BOUNDED(getValuesOfPhaseVariableForElementsInZone, double, 3),

    KEL_NO(hasParticles), KEL_NO(hasParticles, "air"), KEL_NO(hasParticles, short{3}),
    KEL_NO(startReadingParticles), KEL_NO(startReadingParticles, "air"), KEL_NO(startReadingParticles, short{3}),
    KEL_LEAVES(getInjectionNames, names), KEL_LEAVES(getVariablesOfInjection, "spray", names), KEL_RUNS(endReadingParticles),
    KEL_NO(hasParticleTracks), KEL_NO(hasParticleTracks, "air"), KEL_NO(hasParticleTracks, short{3}),
    KEL_NO(hasParticleTracks, 3, -1, KEL_DEFAULT_TARGET, -1), KEL_NO(hasParticleTracksInActivePhase),
    KEL_NOTHING(getPhasesWithParticleTracks, -1, KEL_DEFAULT_TARGET, -1),
    KEL_RUNS(startReadingParticleTracks, 3, -1, KEL_DEFAULT_TARGET, -1),
    KEL_LEAVES(getParticleTrackGroups, names), KEL_RUNS(startReadingParticleTrackGroup, "group"),
    {"getChunksInParticleTrackGroup", [](OpenProvider& r) { Ids chunks{3}; r.getChunksInParticleTrackGroup(chunks); EXPECT_EQ(chunks, Ids{3}); }},
    KEL_RUNS(startReadingChunkInParticleTrackGroup, 3), KEL_ZERO(getPointCountOfParticleTrackChunk),
    KEL_LEAVES(getParticleTrackVariables, names), KEL_GIVES(getDataTypeOfParticleTrackVariable, noType, "age"),
    KEL_ZERO(getValueCountOfParticleTrackVariable, "age"),
    KEL_TEN(KEL_BOUNDED, getValuesOfParticleTrackVariable, 1), KEL_TEN(KEL_BOUNDED, getValuesOfParticleTrackVariable, "age"),
    KEL_RUNS(endReadingChunkInParticleTrackGroup), KEL_RUNS(endReadingParticleTrackGroup), KEL_RUNS(endReadingParticleTracks),
};

const DefaultCase setCases[] = {
    KEL_NO(getSetNames, Scratch<Names>()), KEL_NO(getSetNames, KEL_CASE, Scratch<Names>()),
    KEL_NO(getSetNames, KEL_CELL_ZONE, Scratch<Names>()),
    KEL_NO(startReadingSet, "set"), KEL_GIVES(getCategoryOfSet, static_cast<KelZoneCategory>(-1)),
    {"getSizesAndMinMaxIdsForSet", [](OpenProvider& r) {
        std::vector<unsigned64> sizes{1}, least{2}, greatest{3};
        r.getSizesAndMinMaxIdsForSet(sizes, least, greatest);
        EXPECT_EQ(sizes.size() + least.size() + greatest.size(), 3U);
    }},
    KEL_RUNS(startReadingIdsForSet), KEL_BOUNDED(getIdsForSetInRange, unsigned64, 1, 1), KEL_RUNS(endReadingIdsForSet),
    KEL_LEAVES(getVariablesInSet, names), KEL_LEAVES(getVariableLengthedVariablesInSet, names),
    KEL_LEAVES(getOtherVariablesInSet, names), KEL_LEAVES(getStringVariablesInSet, names),
    KEL_GIVES(startReadingSizeOfVariableLengthedVarForSet, noType, "v"),
    KEL_BOUNDED(getSizeOfVariableForSetInRange, int, 1, 1), KEL_BOUNDED(getSizeOfVariableForSetInRange, short, 1, 1),
    KEL_BOUNDED(getSizeOfVariableForSetInRange, unsigned64, 1, 1), KEL_RUNS(endReadingSizeOfVariableLengthedVarForSet),
    {"startReadingDataOfVariableForSet", [](OpenProvider& r) {
        unsigned64 size = 5;
        EXPECT_EQ(r.startReadingDataOfVariableForSet("v", size), noType);
        EXPECT_EQ(size, 5U);
    }},
    KEL_TEN(KEL_BOUNDED, getDataOfVariableForSetInRange, 1, 1), KEL_RUNS(endReadingDataOfVariableForSet),
    KEL_GIVES(startReadingVariableLengthedDataOfVariableForSet, noType, "v"),
    KEL_TEN(KEL_BOUNDED, getVariableLengthedDataOfVariableForSetInRange, 1, 1),
    KEL_RUNS(endReadingVariableLengthedDataOfVariableForSet),
    KEL_GIVES(getDataTypeOfOtherDataForSet, noType, "v"), KEL_TEN(KEL_BOUNDED, getOtherDataForSet, "v"),
    {"getStringDataForSet", [](OpenProvider& r) { std::string text = "left"; EXPECT_EQ(r.getStringDataForSet("v", text), 0U); EXPECT_EQ(text, "left"); }},
    KEL_RUNS(endReadingSet),

    KEL_LEAVES(getSetDataNames, names),
    {"startReadingSetData", [](OpenProvider& r) { unsigned64 count = 5; EXPECT_FALSE(r.startReadingSetData("set", count)); EXPECT_EQ(count, 5U); }},
    {"getIdsForSetData", [](OpenProvider& r) { std::vector<unsigned64> ids{3}; EXPECT_FALSE(r.getIdsForSetData(ids)); EXPECT_EQ(ids.size(), 1U); }},
    KEL_LEAVES(getConstantLengthVariablesInSetData, names), KEL_LEAVES(getVariableLengthVariablesInSetData, names),
    KEL_LEAVES(getOtherVariablesInSetData, names), KEL_LEAVES(getStringVariablesInSetData, names),
    KEL_GIVES(getDataTypeOfDataForSetData, noType, "v"), KEL_GIVES(getDataTypeOfSizeForSetData, noType, "v"),
    KEL_TEN(KEL_SIZED_LIST, getDataOfConstantLengthVarForSetData, "v"), KEL_TEN(KEL_LIST, getDataOfVariableLengthVarForSetData, "v"),
    KEL_LIST(getSizeOfVariableLengthVarForSetData, int, "v"), KEL_LIST(getSizeOfVariableLengthVarForSetData, short, "v"),
    KEL_LIST(getSizeOfVariableLengthVarForSetData, unsigned64, "v"), KEL_TEN(KEL_LIST, getOtherDataForSetData, "v"),
    {"getStringDataForSetData", [](OpenProvider& r) { std::string text = "left"; EXPECT_EQ(r.getStringDataForSetData("v", text), 0U); EXPECT_EQ(text, "left"); }},
    KEL_RUNS(endReadingSetData),
};
// clang-format on

std::vector<DefaultCase> allCases()
{
    std::vector<DefaultCase> all(std::begin(runCases), std::end(runCases));
    all.insert(all.end(), std::begin(meshCases), std::end(meshCases));
    all.insert(all.end(), std::begin(solutionCases), std::end(solutionCases));
    all.insert(all.end(), std::begin(setCases), std::end(setCases));
    return all;
}

TEST(ProviderDefaults, BareReaderReadsNothingAndPrintsNothing)
{
    OpenProvider reader;
    reader.setZoneIds(KEL_CELL_ZONE, {3, 9}); // so that KelBase has nothing to warn of
    for (const DefaultCase& row : allCases()) {
        SCOPED_TRACE(row.name);
        ::testing::internal::CaptureStdout();
        row.check(reader);
        EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    }
    EXPECT_FALSE(reader.hasError());
    EXPECT_FALSE(reader.hasWarning());
}

/// How many overloads of each name the header declares as virtual.
std::map<std::string, int> declaredOperations()
{
    std::ifstream header(KEL_SOURCE_DIR "/include/KelProvider.h");
    const std::regex declaration(R"(^\s*virtual [^(]*?(\w+)\s*\(.*)");
    std::map<std::string, int> operations;
    std::smatch match;
    for (std::string line; std::getline(header, line);) {
        if (std::regex_match(line, match, declaration)) {
            ++operations[match[1]];
        }
    }
    return operations;
}

TEST(ProviderDefaults, FormsThatAreNotVirtualKnowNoVariableEither)
{
    const OpenProvider bare;
    EXPECT_FALSE(bare.getAttributesOfPhaseVariable("air", "p", Scratch<Names>()));
    EXPECT_FALSE(bare.getAttributesOfPhaseVariable("p", Scratch<Names>()));
}

TEST(ProviderDefaults, EveryVirtualOperationHasItsRow)
{
    std::map<std::string, int> missing = declaredOperations();
    ASSERT_GT(missing.size(), 200U);
    for (const DefaultCase& row : allCases()) {
        --missing[row.name];
    }
    for (const char* elsewhere : {"dump", "print"}) { // with output, see ProviderSettingsTest.cpp
        --missing[elsewhere];
    }
    for (const auto& [name, count] : missing) {
        EXPECT_EQ(count, 0) << name;
    }
}

// ---- particles: the forms with a phase ask the one without

class WithParticles : public KelProvider {
public:
    using KelProvider::hasParticles;
    bool hasParticles() const override { return true; }

    using KelProvider::startReadingParticles;
    bool startReadingParticles() override { return true; }
};

TEST(ProviderDefaults, ParticlesOfAPhaseAskForParticlesAtAll)
{
    WithParticles reader;
    EXPECT_TRUE(reader.hasParticles("any phase"));
    EXPECT_TRUE(reader.hasParticles(short{3}));
    EXPECT_TRUE(reader.startReadingParticles("any phase"));
    EXPECT_TRUE(reader.startReadingParticles(short{3}));
    EXPECT_FALSE(reader.hasParticleTracks());
}

} // namespace
} // namespace meridyn
