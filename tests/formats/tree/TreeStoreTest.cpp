// A store with what no writer of ours makes, and what goes wrong in it.
#include "KelTreeConsumer.h"
#include "KelTreeProvider.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace meridyn {
namespace {

using Texts = std::vector<std::string>;

class Store : public KelTreeStore {
public:
    KelTreeFile load(KelDataClass dataClass, const std::string&) override
    {
        if (isBroken)
            throw std::runtime_error("expected a tree, found sand");
        return files[dataClass];
    }
    void save(KelDataClass dataClass, const std::string&, const KelTreeFile& tree) override
    {
        if (isBroken)
            throw std::runtime_error("no room");
        files[dataClass] = tree;
    }

    KelTreeFile files[2];
    bool isBroken = false;
};

class TreeStore : public ::testing::Test {
protected:
    std::shared_ptr<Store> store = std::make_shared<Store>();
    KelTreeProvider reader{store};
    KelTreeConsumer writer{store};

    /// A file with one mesh, whose tree the test makes.
    template <class Make>
    void keep(KelDataClass dataClass, const Make& make)
    {
        auto file = std::make_shared<KelTree>();
        make(file->meshes[KelMeshKey{1, 0, -1}]);
        store->files[dataClass] = file;
    }
};

TEST_F(TreeStore, SaysWhatWentWrong)
{
    EXPECT_FALSE(reader.startReading("f", KEL_CASE));
    EXPECT_EQ(reader.getErrors(false, true), Texts{"f: there is no such file"});
    store->isBroken = true;
    EXPECT_FALSE(reader.startReading("f", KEL_CASE));
    EXPECT_EQ(reader.getErrors(false, true), Texts{"f: cannot be read: expected a tree, found sand"});
    EXPECT_FALSE(reader.isReadingData());
    ASSERT_TRUE(writer.startWriting("f", KEL_CASE));
    EXPECT_FALSE(writer.endWriting(KEL_CASE));
    EXPECT_EQ(writer.getErrors(false, true), Texts{"f: cannot be written: no room"});
    EXPECT_FALSE(writer.isWritingData());
    writer.setAppendOn(true);
    EXPECT_FALSE(writer.startWriting("f", KEL_CASE));
    EXPECT_EQ(writer.getErrors(false, true), Texts{"f: cannot be added to: expected a tree, found sand"});
    EXPECT_FALSE(writer.isWritingData());
}

TEST_F(TreeStore, HasTwoDataClasses)
{
    for (const int number : {-1, 2, 7}) {
        const auto dataClass = static_cast<KelDataClass>(number);
        EXPECT_FALSE(reader.startReading("f", dataClass));
        EXPECT_EQ(reader.getErrors(false, true), Texts{"f: a file of an unknown data class"});
        EXPECT_FALSE(writer.startWriting("f", dataClass));
        EXPECT_FALSE(reader.endReading(dataClass));
        EXPECT_FALSE(writer.endWriting(dataClass));
    }
}

TEST_F(TreeStore, NamesOfChunksThatAreNoNumbersAreReported)
{
    keep(KEL_DATA, [](KelTree::Mesh& mesh) {
        mesh.solution.phases = {{1, "gas", {}}};
        KelTreeNode& group =
            mesh.tree["level none"]["phases"]["gas"]["tracks"]["mesh_1_target_0_partition_-1"]["group"];
        for (const char* const name : {"3", "", "x", "4x", "99999999999", "-2"})
            group[name].size = 1;
    });
    ASSERT_TRUE(reader.startReading("f", KEL_DATA));
    reader.startReadingParticleTracks(1, 1, KEL_DEFAULT_TARGET, -1);
    reader.startReadingParticleTrackGroup("group");
    std::vector<int> chunks;
    reader.getChunksInParticleTrackGroup(chunks);
    EXPECT_EQ(chunks, (std::vector<int>{3, -2}));
    const Texts errors = reader.getErrors(false, true);
    ASSERT_EQ(errors.size(), 4U);
    EXPECT_EQ(errors[1], "f: chunk 'x' of the particle tracks in 'group': expected a number");
}

TEST_F(TreeStore, Cell1sAreConvertedFromWhateverTypeTheyHave)
{
    keep(KEL_CASE, [](KelTree::Mesh& mesh) {
        KelTreeNode& cell0 = mesh.tree["cell 0 of faces"];
        KelTreeNode& cell1 = mesh.tree["cell 1 of faces"];
        cell0.size = cell1.size = 1;
        cell0.values.put(1, 4, std::vector<short>{1, 2, 3, 4});
        cell1.values.put(2, 2, std::vector<short>{9});
        cell1.values.put(4, 5, std::vector<unsigned char>{7, 8});
    });
    ASSERT_TRUE(reader.startReading("f", KEL_CASE));
    unsigned64 cells[6] = {99, 99, 99, 99, 99, 99};
    EXPECT_EQ(reader.getCell1sForFacesInRange(1, 4, cells, 6), 4U);
    EXPECT_EQ(std::vector<unsigned64>(cells, cells + 6), (std::vector<unsigned64>{0, 9, 0, 7, 99, 99}));
    EXPECT_EQ(reader.getCell1sForFacesInRange(2, 4, cells, 1), 1U) << "as far as there is room";
    EXPECT_EQ(cells[0], 9U);
    EXPECT_EQ(reader.getCell1sForFacesInRange(1, 5, cells, 6), 0U) << "5 has no cell 0";
}

TEST_F(TreeStore, DataAloneDeclareTheirZones)
{
    writer.setZoneIds(KEL_FACE_ZONE, {3});
    writer.setZoneIds(KEL_CELL_ZONE, {5});
    for (const int zone : {3, 5}) {
        writer.setZoneSizeInfo(zone, KEL_ZONE_FIRST_ID, 1);
        writer.setZoneSizeInfo(zone, KEL_ZONE_LAST_ID, 2);
    }
    writer.setFaceZoneType(3, KEL_FACE_ZONE_TYPE_WALL);
    ASSERT_TRUE(writer.startWriting("f", KEL_CASE));
    const unsigned64 cells[] = {1, 2};
    writer.setCell0sForFacesInRange(1, 2, cells, 2);
    ASSERT_TRUE(writer.endWriting(KEL_CASE));
    ASSERT_TRUE(writer.startWriting("f", KEL_DATA));
    ASSERT_TRUE(writer.endWriting(KEL_DATA));
    ASSERT_TRUE(reader.startReading("f", KEL_DATA));
    std::vector<int> zones;
    reader.getZoneIds(KEL_FACE_ZONE, zones);
    EXPECT_EQ(zones, std::vector<int>{3});
    KelFaceZoneType type{};
    reader.getFaceZoneType(3, type);
    EXPECT_EQ(type, KEL_FACE_ZONE_TYPE_WALL);
    std::list<int> beside;
    reader.getFaceCellZone0Ids(3, beside);
    EXPECT_EQ(beside, std::list<int>{5}) << "as in the case that the same writer has written";
    const KelDerivedValues& derived = store->files[KEL_DATA]->meshes.begin()->second.derived;
    EXPECT_EQ(derived.neighbours, (std::set<std::pair<int, int>>{{3, 0}, {5, 0}}));
    EXPECT_TRUE(reader.derived().adjacency);
}

TEST_F(TreeStore, WhatHasNoLevelStaysBesideTheLevels)
{
    ASSERT_TRUE(writer.startWriting("f", KEL_DATA));
    writer.startWritingSet("of none", KEL_CELL_ZONE);
    writer.endWritingSet();
    writer.startWritingTimeLevel(0);
    writer.startWritingSet("of 0", KEL_CELL_ZONE);
    writer.endWritingSet();
    ASSERT_TRUE(writer.endWriting(KEL_DATA));
    const KelTreeNode& tree = store->files[KEL_DATA]->meshes.begin()->second.tree;
    EXPECT_EQ(tree.names(), (Texts{"level none", "level 0"}));
    EXPECT_EQ(tree["level none"]["sets"].names(), Texts{"of none"});
    ASSERT_TRUE(reader.startReading("f", KEL_DATA));
    Texts names;
    reader.getSetNames(KEL_DATA, names);
    EXPECT_EQ(names, Texts{"of 0"});
    EXPECT_TRUE(reader.hasDataAtNoLevel());
    reader.chooseNoLevel(true);
    reader.getSetNames(KEL_DATA, names);
    EXPECT_EQ(names, Texts{"of none"});
    reader.chooseNoLevel(false);
    EXPECT_TRUE(reader.startReadingSet("of 0"));
}

} // namespace
} // namespace meridyn
