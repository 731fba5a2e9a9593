// What a reader tells a caller whose mistake makes its answers empty.
#include "KelGeneratedProvider.h"
#include "KelHdf5Consumer.h"
#include "KelHdf5Provider.h"
#include "KelMemoryConsumer.h"
#include "KelMemoryProvider.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace meridyn {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Texts = std::vector<std::string>;

/// A reader whose messages can be reached.
template <typename Reader>
class Open : public Reader {
public:
    /// The texts of all KelInfo since the last call.
    Texts infos() { return Reader::getInfos(false, true); }
    bool isQuiet() const { return !this->hasError() && !this->hasWarning(); }
};

template <typename Writer>
void declareNodes(Writer& writer)
{
    writer.setZoneIds(KEL_NODE_ZONE, {1});
    writer.setZoneSizeInfo(1, KEL_ZONE_FIRST_ID, 1);
    writer.setZoneSizeInfo(1, KEL_ZONE_LAST_ID, 2);
}

/// Two nodes; phase "air" with a variable "p", phase "water" with "q", which has no values.
template <typename Writer>
void writeModel(Writer& writer, const std::string& caseFile, const std::string& dataFile)
{
    declareNodes(writer);
    writer.startWriting(caseFile, KEL_CASE);
    const double xyz[] = {0, 0, 0, 1, 0, 0};
    writer.setCoordinatesForNodesInZone(1, xyz, 6);
    ASSERT_TRUE(writer.endWriting(KEL_CASE));
    short air = 0, water = 0;
    int p = 0, q = 0;
    writer.addPhaseName("air", air);
    writer.addPhaseName("water", water);
    writer.addPhaseVariable(air, "p", p);
    writer.addPhaseVariable(water, "q", q);
    writer.startWriting(dataFile, KEL_DATA);
    writer.startWritingPhase(air);
    writer.startWritingPhaseVariableInZonesOfCategory(KEL_NODE_ZONE, "p", {1}, 1);
    const double values[] = {5, 6};
    writer.setValuesOfPhaseVariableForElementsInZone(1, values, 2);
    writer.endWritingPhaseVariableInZonesOfCategory();
    writer.endWritingPhase();
    ASSERT_TRUE(writer.endWriting(KEL_DATA));
}

/// Makes every mistake of the list with a reader of that model, each twice.
template <typename Reader>
void expectHelp(Reader& reader, const std::string& caseFile, const std::string& dataFile)
{
    double x[6];
    std::vector<int> zones;
    reader.getCoordinatesForNode(1, x, 3);
    reader.getCoordinatesForNode(1, x, 3);
    EXPECT_THAT(reader.infos(), ElementsAre("coordinates: the case is not open: startReading comes first"));

    ASSERT_TRUE(reader.startReading(caseFile, KEL_CASE));
    ASSERT_TRUE(reader.startReading(dataFile, KEL_DATA));
    EXPECT_EQ(reader.getCoordinatesForNodesInRange(1, 2, x, 6), 6u);
    EXPECT_THAT(reader.infos(), IsEmpty());

    for (int round = 0; round < 2; ++round)
        EXPECT_EQ(reader.getCoordinatesForNodesInRange(0, 1, x, 6), 0u);
    EXPECT_THAT(reader.infos(),
                ElementsAre("coordinates: element 0 was asked for; ids begin with 1, and an unknown zone "
                            "has the elements 0 to 0"));
    for (int round = 0; round < 2; ++round)
        EXPECT_EQ(reader.getCoordinatesForNodesInRange(3, 3, x, 6), 0u);
    EXPECT_THAT(reader.infos(), ElementsAre("coordinates: element 3 was asked for, and the last one is 2"));

    ASSERT_TRUE(reader.startReadingPhase(short{1}));
    for (int round = 0; round < 2; ++round)
        EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInRange(1, 2, x, 2), 0u);
    EXPECT_THAT(reader.infos(),
                ElementsAre("variable: no variable was started: startReadingZonesOfCategoryWithPhaseVariable comes "
                            "first, and gives the number of values per element"));
    for (int round = 0; round < 2; ++round)
        EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_NODE_ZONE, "q", zones), 0u);
    EXPECT_THAT(reader.infos(), ElementsAre("variable 'q' belongs to phase 'water', and 'air' is active: "
                                            "startReadingPhase comes first"));
    for (int round = 0; round < 2; ++round)
        EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_NODE_ZONE, "r", zones), 0u);
    EXPECT_THAT(reader.infos(), ElementsAre("no phase has a variable 'r'"));
}

/// What is right, or absent by right, is not commented on.
template <typename Reader>
void expectNoHelp(Reader& reader, const std::string& caseFile, const std::string& dataFile)
{
    ASSERT_TRUE(reader.startReading(caseFile, KEL_CASE));
    ASSERT_TRUE(reader.startReading(dataFile, KEL_DATA));
    std::vector<int> zones;
    double x[2];
    ASSERT_TRUE(reader.startReadingPhase(short{1}));
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "p", zones), 0u) << "no cells";
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_NODE_ZONE, "p", zones), 1u);
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInRange(1, 2, x, 2), 2u);
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInRange(1, 2, x, 0), 0u) << "no room";
    ASSERT_TRUE(reader.startReadingPhase(short{2}));
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_NODE_ZONE, "q", zones), 0u) << "no values";
    EXPECT_THAT(reader.infos(), IsEmpty());
    EXPECT_TRUE(reader.isQuiet());
}

TEST(Misuse, OfHdf5FilesIsExplainedOncePerKind)
{
    const TemporaryFolder folder;
    KelHdf5Consumer writer;
    writeModel(writer, folder / "m.case.kel", folder / "m.data.kel");
    Open<KelHdf5Provider> reader;
    expectHelp(reader, folder / "m.case.kel", folder / "m.data.kel");
    Open<KelHdf5Provider> careful;
    expectNoHelp(careful, folder / "m.case.kel", folder / "m.data.kel");
}

TEST(Misuse, OfMemoryIsExplainedOncePerKind)
{
    KelMemoryConsumer writer;
    writeModel(writer, "memory:misuse", "memory:misuse");
    Open<KelMemoryProvider> reader;
    expectHelp(reader, "memory:misuse", "memory:misuse");
    Open<KelMemoryProvider> careful;
    expectNoHelp(careful, "memory:misuse", "memory:misuse");
}

TEST(Misuse, OfSetsIsExplained)
{
    Open<KelGeneratedProvider> reader;
    unsigned64 ids[1];
    reader.getIdsForSetInRange(0, 0, ids, 1);
    EXPECT_THAT(reader.infos(), ElementsAre("ids of the set: nothing is open: startReading comes first"));
    ASSERT_TRUE(reader.startReading("box:2x2x2", KEL_CASE));
    for (int round = 0; round < 2; ++round)
        reader.getIdsForSetInRange(0, 0, ids, 1);
    EXPECT_THAT(reader.infos(), ElementsAre("ids of the set: no set was started: startReadingSet comes first"));
}

TEST(Misuse, OfVariableIdsIsExplained)
{
    Open<KelGeneratedProvider> reader;
    std::vector<int> zones{1};
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, 1, zones), 0u);
    EXPECT_THAT(zones, IsEmpty());
    EXPECT_THAT(reader.infos(), ElementsAre("variable 1: the data is not open: startReading comes first"));
    ASSERT_TRUE(reader.startReading("box:2x2x2 fields:1", KEL_DATA));
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, 99, zones), 0u);
    EXPECT_THAT(reader.infos(), ElementsAre("there is no variable 99"));
}

} // namespace
} // namespace meridyn
