#include "MemoryFiles.h"

#include "KelFormatRegistry.h"
#include "KelSetting.h"
#include "KelSettingAttribute.h"

namespace meridyn {
namespace {

class MemoryRun : public MemoryFiles {
protected:
    /// Writes a mesh whose one node lies at x.
    void writeMesh(double x)
    {
        const double xyz[] = {x, 0, 0};
        writer.setMeshSize(KEL_MESH_DIMENSION, 3);
        declare(KEL_NODE_ZONE, {{1, 1, 1}});
        writer.setCoordinatesForNode(1, xyz, 3);
        writer.writeMeshSize();
    }

    double readX()
    {
        double xyz[3] = {-1, -1, -1};
        reader.getCoordinatesForNode(1, xyz, 3);
        return xyz[0];
    }
};

TEST_F(MemoryRun, NothingIsThereBeforeTheEnd)
{
    startCase();
    EXPECT_TRUE(writer.isWritingData());
    EXPECT_EQ(KelMemoryStore::find(name, KEL_CASE), nullptr);
    EXPECT_FALSE(reader.startReading(name, KEL_CASE));
    EXPECT_EQ(reader.getErrors(false, true), Texts{name + ": there is no such file"});
    EXPECT_TRUE(writer.endWriting(KEL_CASE));
    EXPECT_FALSE(writer.isWritingData());
    EXPECT_TRUE(reader.startReading(name, KEL_CASE));
    EXPECT_TRUE(reader.isReadingData());
    EXPECT_FALSE(reader.startReading(name, KEL_DATA)) << "only the case was written";
    EXPECT_TRUE(reader.endReading(KEL_CASE));
    EXPECT_FALSE(reader.isReadingData());
    EXPECT_FALSE(reader.endReading(KEL_CASE));
}

TEST_F(MemoryRun, WithoutAStartNothingIsTaken)
{
    const unsigned64 ids[] = {1};
    writer.setFile(name, KEL_CASE);
    writer.setCell0ForFace(1, 1);
    writer.setLocalElemIdsInZone(1, ids, 1);
    writer.startWritingSet("s", KEL_CELL_ZONE);
    EXPECT_EQ(writer.setIdsForSetData(ids, 1), 0U);
    EXPECT_FALSE(writer.addStringAttribute("s", "g", "n", "v"));
    EXPECT_FALSE(writer.startWritingParticleTracks(1, -1, KEL_DEFAULT_TARGET, -1));
    EXPECT_EQ(writer.getErrors(false, true).size(), 6U);
    EXPECT_FALSE(writer.startWriting("x", KelDataClass(7)));
    EXPECT_FALSE(writer.endWriting(KEL_CASE));
}

TEST_F(MemoryRun, StartingAgainForgetsWhatWasOpen)
{
    const unsigned64 ids[] = {1};
    startCase();
    writer.startWritingSet("s", KEL_CELL_ZONE);
    ASSERT_TRUE(writer.startWriting(KEL_CASE));
    writer.setIdsForSetInRange(1, 1, ids, 1);
    EXPECT_EQ(writer.getErrors(false, true), Texts{name + ": values without a start marker"});
    reopen(KEL_CASE);
    Texts names;
    EXPECT_FALSE(reader.getSetNames(names));
}

TEST_F(MemoryRun, WhatDoesNotFitIsReportedAndLeftOut)
{
    const unsigned64 ids[] = {1, 2, 3};
    startCase();
    writer.setCell0sForFacesInRange(1, 2, ids, 3);
    writer.setCell0sForFacesInRange(2, 1, ids, 3);
    writer.setCell0sForFacesInRange(0, 0, ids, 1);
    writer.setCell0sForFacesInRange(1, 3, nullptr, 3);
    writer.setUniformNodeCountForFacesInRange(1, 3, -1);
    const Texts errors = writer.getErrors(false, true);
    ASSERT_EQ(errors.size(), 5U);
    EXPECT_EQ(errors[0], name + ": cell 0 of faces, 1 to 2: no range of ids, or not the right number of values");
    reopen(KEL_CASE);
    EXPECT_EQ(reader.getCell0ForFace(1), 0U);
}

TEST_F(MemoryRun, AReaderKeepsWhatItOpened)
{
    ASSERT_TRUE(writer.startWriting(name, KEL_CASE));
    writeMesh(1);
    reopen(KEL_CASE);
    ASSERT_TRUE(writer.startWriting(KEL_CASE));
    writeMesh(2);
    ASSERT_TRUE(writer.endWriting(KEL_CASE));
    EXPECT_EQ(readX(), 1.0);
    EXPECT_TRUE(KelMemoryStore::remove(name));
    EXPECT_FALSE(KelMemoryStore::remove(name));
    EXPECT_EQ(readX(), 1.0);
}

TEST_F(MemoryRun, TheSameReaderReadsAnotherFileWhoseZonesHaveOtherCategories)
{
    startCase();
    reopen(KEL_CASE);
    KelMemoryConsumer other;
    other.setZoneIds(KEL_CELL_ZONE, {1});
    other.setZoneIds(KEL_NODE_ZONE, {5});
    ASSERT_TRUE(other.startWriting(name + "2", KEL_CASE));
    ASSERT_TRUE(other.endWriting(KEL_CASE));
    ::testing::internal::CaptureStdout();
    ASSERT_TRUE(reader.startReading(name + "2", KEL_CASE));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    std::vector<int> ids;
    reader.getZoneIds(KEL_CELL_ZONE, ids);
    EXPECT_EQ(ids, std::vector<int>{1});
    reader.getZoneIds(KEL_FACE_ZONE, ids);
    EXPECT_EQ(ids, std::vector<int>{});
    KelMemoryStore::remove(name + "2");
}

TEST_F(MemoryRun, SeveralMeshesTargetsAndPartitions)
{
    ASSERT_TRUE(writer.startWriting(name, KEL_CASE));
    writer.setMeshId(3);
    writeMesh(3);
    writer.setMeshId(7);
    writer.setTarget(KEL_PARTITIONED_POST);
    for (const int partition : {0, 4}) {
        writer.setPartitionId(partition);
        writeMesh(70 + partition);
    }
    reopen(KEL_CASE);
    EXPECT_EQ(reader.availableMeshIds(KEL_CASE), (std::vector<int>{3, 7}));
    EXPECT_EQ(reader.availableTargets(7, KEL_CASE), std::vector<KelTargetCategory>{KEL_PARTITIONED_POST});
    EXPECT_EQ(reader.availablePartitionIds(7, KEL_CASE), (std::vector<int>{0, 4}));
    EXPECT_EQ(reader.availablePartitionIds(3, KEL_CASE), std::vector<int>{});
    EXPECT_EQ(reader.getMeshId(), 3);
    EXPECT_EQ(readX(), 3.0);
    reader.setMeshId(7);
    EXPECT_EQ(reader.getTarget(), KEL_PARTITIONED_POST);
    EXPECT_EQ(reader.getPartitionId(), 0);
    EXPECT_EQ(readX(), 70.0);
    EXPECT_TRUE(reader.hasPartition(4));
    reader.setPartitionId(4);
    EXPECT_EQ(readX(), 74.0);
    EXPECT_FALSE(reader.setMeshId(9));
    EXPECT_EQ(readX(), -1.0) << "nothing of the mesh before is left";
}

TEST_F(MemoryRun, ChangingTheMeshReadsItsSolutionToo)
{
    std::vector<short> phases;
    ASSERT_TRUE(writer.startWriting(name, KEL_CASE));
    ASSERT_TRUE(writer.startWriting(name, KEL_DATA));
    writer.setMeshId(1);
    writer.setPhaseNames({"air"}, phases);
    writeMesh(1);
    writer.setMeshId(2);
    writer.setPhaseNames({"oil", "water"}, phases);
    writeMesh(2);
    ASSERT_TRUE(writer.endWriting(KEL_CASE));
    ASSERT_TRUE(writer.endWriting(KEL_DATA));
    ASSERT_TRUE(reader.startReading(name, KEL_CASE));
    ASSERT_TRUE(reader.startReading(name, KEL_DATA));
    EXPECT_EQ(reader.KelBase::getPhaseName(1), "air");
    EXPECT_TRUE(reader.setMeshId(2));
    EXPECT_EQ(reader.KelBase::getPhaseName(1), "oil");
    EXPECT_EQ(reader.KelBase::getPhaseName(2), "water");
}

TEST_F(MemoryRun, AppendingKeepsWhatIsThere)
{
    for (const int mesh : {1, 2}) {
        KelMemoryConsumer one;
        one.setAppendOn(true);
        one.setMeshId(mesh);
        one.setMeshSize(KEL_MESH_DIMENSION, 1);
        ASSERT_TRUE(one.startWriting(name, KEL_CASE));
        const double x[] = {10.0 * mesh};
        one.setCoordinatesForNode(1, x, 1);
        ASSERT_TRUE(one.endWriting(KEL_CASE));
    }
    ASSERT_TRUE(reader.startReading(name, KEL_CASE));
    EXPECT_EQ(reader.availableMeshIds(KEL_CASE), (std::vector<int>{1, 2}));
    EXPECT_EQ(readX(), 10.0);
    ASSERT_TRUE(writer.startWriting(name, KEL_CASE)); // without appending
    ASSERT_TRUE(writer.endWriting(KEL_CASE));
    ASSERT_TRUE(reader.startReading(name, KEL_CASE));
    EXPECT_EQ(reader.availableMeshIds(KEL_CASE), std::vector<int>{1});
    EXPECT_EQ(readX(), -1.0);
}

TEST_F(MemoryRun, SettingsByGroup)
{
    KelSetting common = KelSetting::get("Common");
    common.getAttributeInt("steps", true);
    startCase();
    writer.writeSettingStrings({{"b", "1"}, {"a", ""}}, KEL_CASE, "mine");
    writer.writeSettingStrings({{"b", "2"}}, KEL_CASE, "mine");
    writer.writeSetting(common, "Common", KEL_CASE, "settings");
    EXPECT_TRUE(writer.addStringAttribute("section", "group", "name", "value"));
    writer.setOverrideSettingsOn(false);
    writer.writeSettingStrings({{"b", "3"}, {"c", "3"}}, KEL_CASE, "mine");
    writer.setOverrideSettingsOn(true);
    writer.setSolverType("OTHER");
    reopen(KEL_CASE);
    Texts names;
    std::string text = "none";
    reader.getSettingsGroups(KEL_CASE, names);
    EXPECT_EQ(names, (Texts{"mine", "settings", "section/group"}));
    reader.getSettingsKeysOfGroup(KEL_CASE, "mine", names);
    EXPECT_EQ(names, (Texts{"b", "a", "c"}));
    reader.getSettingsKeys(KEL_CASE, names);
    EXPECT_EQ(names, (Texts{"Common", "Solver", "Version", "Origin"}));
    reader.getSettingString(KEL_CASE, "nobody", text, "mine");
    EXPECT_EQ(text, "none");
    reader.getSettingString(KEL_CASE, "b", text, "mine");
    EXPECT_EQ(text, "2");
    reader.getSettingString(KEL_CASE, "name", text, "section/group");
    EXPECT_EQ(text, "value");
    EXPECT_TRUE(reader.getSetting("Common", KEL_CASE, "settings").isValid());
    EXPECT_EQ(reader.getSolverType(), "OTHER");
    EXPECT_TRUE(reader.getFileVersion(KEL_CASE, text));
    EXPECT_EQ(text, "25.1");
}

TEST_F(MemoryRun, SettingsCanBeSwitchedOff)
{
    startCase();
    writer.setWriteSettingsOn(false);
    writer.writeSettingStrings({{"b", "1"}}, KEL_CASE, "mine");
    reopen(KEL_CASE);
    Texts names = {"old"};
    reader.getSettingsGroups(KEL_CASE, names);
    EXPECT_EQ(names, Texts{});
}

TEST_F(MemoryRun, Log)
{
    using Entries = std::vector<std::pair<std::string, std::string>>;
    startCase();
    writer.log({{"one", "first"}, {"two", "second"}}, KEL_CASE);
    writer.log({{"one", "again"}}, KEL_CASE);
    reopen(KEL_CASE);
    Entries entries = {{"old", "old"}};
    reader.getLog(KEL_CASE, entries);
    EXPECT_EQ(entries, (Entries{{"one", "first"}, {"two", "second"}, {"one", "again"}}));
    reader.getLog(KEL_DATA, entries);
    EXPECT_EQ(entries, Entries{});
}

TEST_F(MemoryRun, MarkersSayNothing)
{
    startCase();
    ::testing::internal::CaptureStdout();
    writer.startWritingZonesOfCategory(KEL_EDGE_ZONE);
    writer.startWritingEdges({2});
    writer.startWritingNodesForEdges({2});
    writer.endWritingNodeIdsForEdges();
    writer.startWritingShadowFaceIdsForFaces({3});
    writer.startWritingInterfaceDataForFaces({3}, {4});
    writer.endWritingInterfaceDataForFaces();
    writer.startWritingChildFacesForFaces({3});
    writer.startWritingChildFaceCountsForFaces();
    writer.endWritingChildFaceCountsForFaces();
    writer.startWritingChildFaceIdsForFaces();
    writer.startWritingPartitionIdsForCells({5}, 2);
    writer.endWritingPartitionIdsForCells();
    writer.startWritingChildCellsForCells({5});
    writer.startWritingChildCellCountsForCells();
    writer.endWritingChildCellCountsForCells();
    writer.startWritingChildCellIdsForCells();
    writer.startWritingCaseSectionCategories(KEL_CELL_ZONE, {"a"});
    writer.startWritingCaseSectionDataForCategory("a", {5}, KEL_PLAIN_INT, 1);
    writer.startWritingPhase(1);
    writer.writeSettingStrings({{"a", "b"}}, KEL_CASE, "g");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST_F(MemoryRun, ABareReaderAnswersNothing)
{
    std::vector<std::string> names;
    std::vector<int> zones;
    unsigned64 ids[1];
    EXPECT_EQ(reader.getCell1sForFacesInRange(1, 1, ids, 1), 0U);
    EXPECT_FALSE(reader.getSetNames(names));
    EXPECT_FALSE(reader.hasParticles());
    EXPECT_FALSE(reader.hasParticleTracks());
    EXPECT_EQ(reader.startReadingCaseSectionForCategory("s", zones), KelPlainDataType(-1));
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "p", zones), 0U);
    EXPECT_TRUE(reader.availableMeshIds(KelDataClass(9)).empty());
    EXPECT_FALSE(reader.getSetNames(KelDataClass(9), names));
}

TEST_F(MemoryRun, TheRegistryKnowsTheFormat)
{
    const KelFormat* format = KelFormatRegistry::instance().find("memory");
    ASSERT_NE(format, nullptr);
    EXPECT_FALSE(format->probe(name));
    startCase();
    reopen(KEL_CASE);
    EXPECT_TRUE(format->probe(name));
    EXPECT_EQ(format->files(name, false).caseFile, name);
    EXPECT_EQ(format->files(name, false).dataFile, "");
    EXPECT_EQ(format->files(name, true).dataFile, name);
    EXPECT_TRUE(format->makeReader()->startReading(name, KEL_CASE));
    EXPECT_NE(format->makeWriter(), nullptr);
}

} // namespace
} // namespace meridyn
