// Calls that a writer cannot follow: named once, and no file is left that looks whole.
#include "Hdf5TestSupport.h"

#include <functional>
#include <gmock/gmock.h>

using namespace hdf5test;

namespace {

constexpr unsigned64 tooMany = (1ULL << 56) + 1;
constexpr auto noType = static_cast<KelPlainDataType>(12);

const unsigned64 ids[] = {1, 2, 3};
const double reals[] = {1, 2, 3};
const float singles[] = {1, 2, 3};
const short lengths[] = {2, 1};

/// A set of two cells.
void startSet(Writer& w)
{
    w.startWritingSet("set", KEL_CELL_ZONE);
    w.setSizesAndMinMaxIdsForSet({2}, {1}, {2});
}

/// Lengths 1 and 1 of the variable "l" of that set.
void giveLengths(Writer& w)
{
    startSet(w);
    w.startWritingSizeOfVariableForSet("l", {}, KEL_PLAIN_SHORT);
    w.setSizeOfVariableForSetInRange(1, 2, short{1});
}

/// A case section of the cells, one float each.
void startSection(Writer& w)
{
    w.startWritingCaseSectionCategories(KEL_CELL_ZONE, {"s"});
    w.startWritingCaseSectionDataForCategory("s", {21}, KEL_PLAIN_FLOAT, 1);
}

/// The phase "gas" with the variable "p", active; gives its id.
short startPhase(Writer& w)
{
    short phase = 0;
    int variable = 0;
    w.addPhaseName("gas", phase);
    w.addPhaseVariable(phase, "p", variable);
    w.startWritingPhase(phase);
    return phase;
}

void startVariable(Writer& w, unsigned64 size)
{
    std::vector<int> zones{21};
    w.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, "p", zones, size);
}

void startSetData(Writer& w)
{
    startPhase(w);
    w.startWritingSetData("injection", 2);
}

/// A chunk of two points.
void startChunk(Writer& w)
{
    w.startWritingParticleTracks(startPhase(w), 1, KEL_DEFAULT_TARGET, -1);
    w.startWritingPartiticleTrackGroup("group");
    w.startWritingChunkInPartiticleTrackGroup(0, 2);
}

struct Refusal {
    const char* name;
    KelDataClass dataClass;
    std::function<void(Writer&)> ask;
    const char* words; ///< somewhere behind the path of the file
};

void PrintTo(const Refusal& row, std::ostream* out)
{
    *out << row.name;
}

// clang-format off
const Refusal refusals[] = {
    {"HugeMesh", KEL_CASE, [](Writer& w) { w.zone(KEL_NODE_ZONE, 1, 1, 1ULL << 61); w.setCoordinatesForNodesInRange(1, 1, reals, 3); }, "/nodes/coordinates would have 2305843009213693952 times 3 values"},
    {"NoDimension", KEL_CASE, [](Writer& w) { w.setMeshSize(KEL_MESH_DIMENSION, 0); w.setCoordinatesForNodesInRange(1, 12, reals, 3); }, "/nodes/coordinates has 3 values for the elements 1 to 12, 12 expected"},
    {"Cell0s", KEL_CASE, [](Writer& w) { w.setCell0sForFacesInRange(1, 2, ids, 1); }, "/faces/cell0 has 1 values for the elements 1 to 2, 2 expected"},
    {"NodeCounts", KEL_CASE, [](Writer& w) { w.setNodeCountsForFacesInRange(1, 2, lengths, 1); }, "/faces/node_counts has 1 values for the elements 1 to 2, 2 expected"},
    {"CellTypes", KEL_CASE, [](Writer& w) { const KelCellType type = KEL_CELL_PRISM; w.setTypesForCellsInRange(1, 2, &type, 1); }, "/cells/type has 1 values for the elements 1 to 2, 2 expected"},
    {"NodeCountsLate", KEL_CASE, [](Writer& w) { w.setUniformNodeCountForFacesInRange(1, 11, 3); w.setNodeIdsForFacesInRange(1, 1, ids, 3); w.setUniformNodeCountForFacesInRange(1, 1, 4); }, "/faces/node_counts change after the counts of all elements and ids were handed over"},
    {"LocalIds", KEL_CASE, [](Writer& w) { w.setLocalElemIdsInZone(21, ids, 1); }, "zone 21 has 1 local ids, 2 expected"},
    {"SectionCategory", KEL_CASE, [](Writer& w) { w.startWritingCaseSectionCategories(static_cast<KelZoneCategory>(7), {"s"}); }, "zone category 7, 0 to 3 expected"},
    {"SectionType", KEL_CASE, [](Writer& w) { w.startWritingCaseSectionDataForCategory("s", {21}, noType, 1); }, "case section 's' has the value type 12, 0 to 9 expected"},
    {"SectionSize", KEL_CASE, [](Writer& w) { w.startWritingCaseSectionDataForCategory("s", {21}, KEL_PLAIN_FLOAT, 0); }, "/case_sections/cells/s/values has 0 values per element, 1 or more expected"},
    {"SectionZone", KEL_CASE, [](Writer& w) { w.startWritingCaseSectionCategories(KEL_CELL_ZONE, {"s"}); w.startWritingCaseSectionDataForCategory("s", {11}, KEL_PLAIN_FLOAT, 1); }, "zone 11 is not among the cells zones of the mesh"},
    {"SectionNotStarted", KEL_CASE, [](Writer& w) { w.setCaseSectionDataForElementsInRange(1, 2, singles, 2); }, "values of a case section that was not started"},
    {"SectionValues", KEL_CASE, [](Writer& w) { startSection(w); w.setCaseSectionDataForElementsInRange(1, 2, singles, 3); }, "/case_sections/cells/s/values: 3 values for the elements 1 to 2, 1 each expected"},
    {"SectionElement", KEL_CASE, [](Writer& w) { startSection(w); w.setCaseSectionDataForElementsInRange(2, 3, singles, 2); }, "/case_sections/cells/s/values: element 3 is in none of its zones"},
    {"SectionGap", KEL_CASE, [](Writer& w) { startSection(w); w.setCaseSectionDataForElementsInRange(1, 1, singles, 1); }, "/case_sections/cells/s/values lacks the values of the elements 2 to 2"},
    {"NoSet", KEL_CASE, [](Writer& w) { w.setIdsForSetInRange(1, 2, ids, 2); }, "no set was started"},
    {"SetBlocks", KEL_CASE, [](Writer& w) { w.startWritingSet("set", KEL_CELL_ZONE); w.setSizesAndMinMaxIdsForSet({2, 1}, {1}, {2, 3}); }, "2 sizes of blocks with 1 smallest and 2 largest ids"},
    {"SetOfTooMany", KEL_CASE, [](Writer& w) { w.startWritingSet("set", KEL_CELL_ZONE); w.setSizesAndMinMaxIdsForSet({tooMany - 1, 1}, {1, 1}, {2, 2}); }, "a set of more than 2^56 members"},
    {"SetBlocksLate", KEL_CASE, [](Writer& w) { startSet(w); w.setIdsForSetInRange(1, 2, ids, 2); w.setSizesAndMinMaxIdsForSet({2}, {1}, {2}); }, "the blocks of a set come before its members"},
    {"SetPositionZero", KEL_CASE, [](Writer& w) { startSet(w); w.setIdsForSetInRange(0, 1, ids, 2); }, "positions 0 to 1, ascending ones from 1 expected"},
    {"SetPositionsDescend", KEL_CASE, [](Writer& w) { startSet(w); w.setIdsForSetInRange(2, 1, ids, 2); }, "positions 2 to 1, ascending ones from 1 expected"},
    {"SetValuesForPositions", KEL_CASE, [](Writer& w) { startSet(w); w.setIdsForSetInRange(1, 2, ids, 3); }, "/sets/set/ids: 3 values for 2 positions, 2 expected"},
    {"SetVariableNotStarted", KEL_CASE, [](Writer& w) { startSet(w); w.setDataOfVariableForSetInRange(1, 2, reals, 2); }, "values of a variable of a set that was not started"},
    {"SetVariableSize", KEL_CASE, [](Writer& w) { startSet(w); w.startWritingDataOfVariableForSet("v", {}, 0, KEL_PLAIN_INT); }, "'v' has 0 values per member, 1 or more expected"},
    {"SetLengthType", KEL_CASE, [](Writer& w) { startSet(w); w.startWritingSizeOfVariableForSet("l", {}, noType); }, "'l' has the value type 12, 0 to 9 expected"},
    {"SetLengthBelowZero", KEL_CASE, [](Writer& w) { startSet(w); w.startWritingSizeOfVariableForSet("l", {}, KEL_PLAIN_INT); w.setSizeOfVariableForSetInRange(1, 2, -1); }, "'l' has the length -1"},
    {"SetLengthBeyondInt64", KEL_CASE, [](Writer& w) { startSet(w); w.startWritingSizeOfVariableForSet("l", {}, KEL_PLAIN_UNSIGNED64); w.setSizeOfVariableForSetInRange(1, 2, ~unsigned64{0}); }, "'l' has the length "},
    {"SetLengthsLate", KEL_CASE, [](Writer& w) { giveLengths(w); w.startWritingVariableLengthedDataOfVariableForSet("l", {}, KEL_PLAIN_DOUBLE); w.setSizeOfVariableForSetInRange(1, 2, lengths, 2); }, "lengths of 'l' after its values"},
    {"SetLengthsMissing", KEL_CASE, [](Writer& w) { startSet(w); w.startWritingSizeOfVariableForSet("l", {}, KEL_PLAIN_SHORT); w.setSizeOfVariableForSetInRange(1, 1, short{1}); w.startWritingVariableLengthedDataOfVariableForSet("l", {}, KEL_PLAIN_DOUBLE); }, "values of 'l' before the lengths of all members"},
    {"SetListPositions", KEL_CASE, [](Writer& w) { giveLengths(w); w.startWritingVariableLengthedDataOfVariableForSet("l", {}, KEL_PLAIN_DOUBLE); w.setVariableLengthedDataOfVariableForSetInRange(1, 3, reals, 3); }, "values of 'l' for the positions 1 to 3 of a set of 2"},
    {"SetListValues", KEL_CASE, [](Writer& w) { giveLengths(w); w.startWritingVariableLengthedDataOfVariableForSet("l", {}, KEL_PLAIN_DOUBLE); w.setVariableLengthedDataOfVariableForSetInRange(1, 2, reals, 3); }, "/sets/set/lists/l/values: 3 values for 2 positions, 2 expected"},
    {"NoPhase", KEL_DATA, [](Writer& w) { w.startWritingSetData("injection", 2); }, "no phase is active"},
    {"UnknownPhase", KEL_DATA, [](Writer& w) { w.startWritingPhase(99); }, "phase 99 is unknown"},
    {"NoPhaseForVariable", KEL_DATA, [](Writer& w) { startVariable(w, 1); }, "no phase is active for the variable 'p'"},
    {"UnknownVariable", KEL_DATA, [](Writer& w) { startPhase(w); std::vector<int> z; w.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, "q", z, 1); }, "variable 'q' is unknown in the active phase"},
    {"UnknownVariableId", KEL_DATA, [](Writer& w) { startPhase(w); std::vector<int> z; w.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, 77, z, 1); }, "variable 77 is unknown in the active phase"},
    {"VariableCategory", KEL_DATA, [](Writer& w) { startPhase(w); std::vector<int> z; w.startWritingPhaseVariableInZonesOfCategory(static_cast<KelZoneCategory>(4), "p", z, 1); }, "zone category 4, 0 to 3 expected"},
    {"VariableNotStarted", KEL_DATA, [](Writer& w) { startPhase(w); w.setValuesOfPhaseVariableForElementsInRange(1, 2, reals, 2); }, "values of a variable that was not started"},
    {"SingleVariableNotStarted", KEL_DATA, [](Writer& w) { startPhase(w); w.setValuesOfPhaseVariableForElementsInRange(1, 2, singles, 2); }, "values of a variable that was not started"},
    {"VariableOfTwoSizes", KEL_DATA, [](Writer& w) { startPhase(w); startVariable(w, 1); startVariable(w, 3); }, "none/gas/p has 1 values per element, now 3"},
    {"NoSetData", KEL_DATA, [](Writer& w) { EXPECT_EQ(w.setIdsForSetData(ids, 2), 0u); }, "no set data was started"},
    {"SetDataOfTooMany", KEL_DATA, [](Writer& w) { startPhase(w); w.startWritingSetData("injection", tooMany); }, "set data of more than 2^56 members"},
    {"SetDataVariableNotStarted", KEL_DATA, [](Writer& w) { startSetData(w); EXPECT_EQ(w.setVariableForSetData(reals, 2), 0u); }, "values of a variable of set data that was not started"},
    {"SetDataListNotStarted", KEL_DATA, [](Writer& w) { startSetData(w); EXPECT_EQ(w.setVariableLengthVariableForSetData(reals, 3, lengths, 2), 0u); }, "values of a variable of set data that was not started"},
    {"SetDataListType", KEL_DATA, [](Writer& w) { startSetData(w); w.startWritingVariableLengthVariableForSetData("l", noType, KEL_PLAIN_INT); }, "'l' has the value type 12, 0 to 9 expected"},
    {"SetDataListValues", KEL_DATA, [](Writer& w) { startSetData(w); w.startWritingVariableLengthVariableForSetData("l", KEL_PLAIN_DOUBLE, KEL_PLAIN_SHORT); EXPECT_EQ(w.setVariableLengthVariableForSetData(reals, 2, lengths, 2), 0u); }, "'l' has 2 values, 3 expected after their lengths"},
    {"SetDataTooManyIds", KEL_DATA, [](Writer& w) { startSetData(w); EXPECT_EQ(w.setIdsForSetData(ids, 3), 0u); }, "/set_data/injection/ids has 2 rows, the positions 1 to 3 are not among them"},
    {"SetDataGap", KEL_DATA, [](Writer& w) { startSetData(w); EXPECT_EQ(w.setIdsForSetData(ids, 1), 1u); w.endWritingSetData(); }, "/set_data/injection/ids lacks the values of the positions 2 to 2"},
    {"NoTracks", KEL_DATA, [](Writer& w) { w.startWritingPartiticleTrackGroup("group"); }, "no particle tracks was started"},
    {"TracksOfUnknownPhase", KEL_DATA, [](Writer& w) { EXPECT_FALSE(w.startWritingParticleTracks(9, 1, KEL_DEFAULT_TARGET, -1)); }, "phase 9 is unknown"},
    {"ChunkOutsideAGroup", KEL_DATA, [](Writer& w) { startChunk(w); w.endWritingPartiticleTrackGroup(); w.startWritingChunkInPartiticleTrackGroup(4, 2); }, "chunk 4 of particle tracks outside a group"},
    {"ChunkOfTooMany", KEL_DATA, [](Writer& w) { startChunk(w); w.startWritingChunkInPartiticleTrackGroup(4, tooMany); }, "chunk 4 of particle tracks with more than 2^56 points"},
    {"TrackOutsideAChunk", KEL_DATA, [](Writer& w) { startChunk(w); w.endWritingChunkInPartiticleTrackGroup(); w.setValuesOfParticleTrackVariable("x", reals, 2); }, "values of the particle tracks' variable 'x' outside a chunk"},
    {"TrackValues", KEL_DATA, [](Writer& w) { startChunk(w); w.setValuesOfParticleTrackVariable("x", reals, 3); }, "the particle tracks' variable 'x' has 3 values, a multiple of 2 expected"},
    {"TrackOfUnknownVariable", KEL_DATA, [](Writer& w) { startChunk(w); w.setValuesOfParticleTrackVariable(77, reals, 2); }, "variable 77 is unknown"},
};
// clang-format on

} // namespace

class Refusals : public ::testing::TestWithParam<Refusal> {};

TEST_P(Refusals, AreNamedOnceAndLeaveNoFile)
{
    const Refusal& row = GetParam();
    const Folder folder;
    Writer writer;
    TwoCells::declare(writer);
    ASSERT_TRUE(writer.startWriting(folder / "r.kel", row.dataClass));
    row.ask(writer);
    EXPECT_FALSE(writer.endWriting(row.dataClass));
    const std::vector<std::string> found = writer.getErrors(false, true);
    ASSERT_EQ(found.size(), 1u) << ::testing::PrintToString(found);
    EXPECT_THAT(found[0], ::testing::StartsWith((folder / "r.kel") + ": "));
    EXPECT_THAT(found[0], ::testing::HasSubstr(row.words));
    EXPECT_TRUE(folder.names().empty());
    EXPECT_FALSE(writer.isWritingData());
}

INSTANTIATE_TEST_SUITE_P(Files, Refusals, ::testing::ValuesIn(refusals),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Refusals, WithoutAFileAreReportedAndChangeNothing)
{
    Writer writer;
    writer.startWritingSet("set", KEL_CELL_ZONE);
    writer.startWritingPhase(9); // no values: nothing is missing
    EXPECT_FALSE(writer.startWritingParticleTracks(1, 1, KEL_DEFAULT_TARGET, -1));
    EXPECT_THAT(writer.getErrors(false, true),
                ::testing::ElementsAre("no case file is being written", "no data file is being written"));
}
