// What a client does not say about a mesh and what its zones and arrays tell.
#include "MemoryFiles.h"

#include <list>

namespace meridyn {
namespace {

/// A writer whose protected operations the tests reach.
class Writer : public KelMemoryConsumer {
public:
    using KelBase::setCellFaceZoneIds;
    using KelBase::setFaceCellZone0Ids;
};

class MemoryDerived : public MemoryFiles {
protected:
    Writer writer;
    using Zones = std::list<int>;

    /// Faces 1 (zone 3), 2 and 3 (zone 4), cells 1 and 2 (zone 6), 3 (zone 5).
    void start()
    {
        declare(KEL_FACE_ZONE, {{3, 1, 1}, {4, 2, 3}});
        declare(KEL_CELL_ZONE, {{6, 1, 2}, {5, 3, 3}});
        ASSERT_TRUE(writer.startWriting(name, KEL_CASE));
    }
    void declare(KelZoneCategory category, const std::vector<Zone>& zones)
    {
        std::vector<int> ids;
        for (const Zone& zone : zones)
            ids.push_back(zone.id);
        writer.setZoneIds(category, ids);
        for (const Zone& zone : zones) {
            writer.setZoneSizeInfo(zone.id, KEL_ZONE_FIRST_ID, zone.first);
            writer.setZoneSizeInfo(zone.id, KEL_ZONE_LAST_ID, zone.last);
        }
    }
    void finish()
    {
        ASSERT_TRUE(writer.endWriting(KEL_CASE));
        ASSERT_TRUE(reader.startReading(name, KEL_CASE));
    }
    Zones side(int number, int faceZone)
    {
        Zones ids;
        number == 0 ? reader.getFaceCellZone0Ids(faceZone, ids) : reader.getFaceCellZone1Ids(faceZone, ids);
        return ids;
    }
    Zones around(int cellZone)
    {
        Zones ids;
        reader.getCellFaceZoneIds(cellZone, ids);
        return ids;
    }
    const KelDerivedValues& marks() const
    {
        file = KelMemoryStore::find(name, KEL_CASE);
        return file->meshes.begin()->second.derived;
    }
    mutable KelTreeFile file;
};

TEST_F(MemoryDerived, AreThereWhenNothingWasSaid)
{
    start();
    const unsigned64 cell0s[] = {1, 2, 3}, cell1s[] = {3};
    writer.setCell0sForFacesInRange(1, 3, cell0s, 3);
    writer.setCell1sForFacesInRange(1, 1, cell1s, 1);
    finish();
    unsigned64 faces = 0, cells = 0;
    reader.getMeshSize(KEL_MESH_SIZE_3, faces);
    reader.getMeshSize(KEL_MESH_SIZE_4, cells);
    EXPECT_EQ(faces, 3U);
    EXPECT_EQ(cells, 3U);
    EXPECT_EQ(side(0, 3), Zones{6});
    EXPECT_EQ(side(1, 3), Zones{5});
    EXPECT_EQ(side(0, 4), (Zones{6, 5}));
    EXPECT_EQ(side(1, 4), Zones{});
    EXPECT_EQ(around(6), (Zones{3, 4}));
    EXPECT_EQ(around(5), (Zones{3, 4}));
    EXPECT_EQ(marks(),
              (KelDerivedValues{{KEL_MESH_SIZE_3, KEL_MESH_SIZE_4}, {{3, 0}, {3, 1}, {4, 0}, {6, 0}, {5, 0}}}));
    EXPECT_TRUE(reader.derived().adjacency);
    EXPECT_TRUE(reader.derived().sizes[KEL_MESH_SIZE_4]);
    EXPECT_FALSE(reader.derived().sizes[KEL_MESH_SIZE_1]);
}

TEST_F(MemoryDerived, DoNotReplaceWhatWasGiven)
{
    writer.setMeshSize(KEL_MESH_SIZE_4, 2);
    start();
    const unsigned64 cell0s[] = {3, 3, 3}, again[] = {1, 2};
    writer.setCell0sForFacesInRange(1, 3, cell0s, 3);
    writer.setCell0sForFacesInRange(2, 3, again, 2); // the last values count
    writer.setFaceCellZone0Ids({{3, {6}}});
    writer.setCellFaceZoneIds({{5, {4}}});
    finish();
    unsigned64 cells = 0;
    reader.getMeshSize(KEL_MESH_SIZE_4, cells);
    EXPECT_EQ(cells, 2U);
    EXPECT_EQ(side(0, 3), Zones{6});
    EXPECT_EQ(side(0, 4), Zones{6});
    EXPECT_EQ(around(5), Zones{4});
    EXPECT_EQ(around(6), (Zones{3, 4}));
    EXPECT_EQ(marks(), (KelDerivedValues{{KEL_MESH_SIZE_3}, {{4, 0}, {6, 0}}}));
}

TEST_F(MemoryDerived, AreWorkedOutAnewWhenAMeshIsWrittenAgain)
{
    start();
    const unsigned64 cell0s[] = {1, 2, 3}, others[] = {3, 3, 3};
    writer.setCell0sForFacesInRange(1, 3, cell0s, 3);
    finish();
    writer.setAppendOn(true);
    ASSERT_TRUE(writer.startWriting(name, KEL_CASE));
    writer.setCell0sForFacesInRange(1, 3, others, 3);
    finish();
    EXPECT_EQ(side(0, 4), Zones{5});
    EXPECT_EQ(around(6), Zones{});
    EXPECT_EQ(marks().neighbours, (std::set<std::pair<int, int>>{{3, 0}, {4, 0}, {5, 0}}));
}

} // namespace
} // namespace meridyn
