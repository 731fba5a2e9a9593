#include "KelMessage.h"
#include "support/Captured.h"
#include "support/OpenBase.h"

#include <gtest/gtest.h>

#include <list>
#include <map>
#include <string>
#include <vector>

namespace meridyn {

using Ids = std::list<int>;
using Texts = std::vector<std::string>;

// Zones: 1, 2, 3 face, of which 3 was dropped by a redefinition; 11, 12, 13 cell, likewise 13.
class Adjacency : public ::testing::Test {
protected:
    Adjacency()
    {
        base.setZoneIds(KEL_FACE_ZONE, {1, 2, 3});
        base.setZoneIds(KEL_FACE_ZONE, {1, 2});
        base.setZoneIds(KEL_CELL_ZONE, {11, 12, 13});
        base.setZoneIds(KEL_CELL_ZONE, {11, 12});
    }

    Ids cellZones0(int id)
    {
        Ids ids{-5};
        base.getFaceCellZone0Ids(id, ids);
        return ids;
    }
    Ids cellZones1(int id)
    {
        Ids ids{-5};
        base.getFaceCellZone1Ids(id, ids);
        return ids;
    }
    Ids faceZones(int id)
    {
        Ids ids{-5};
        base.getCellFaceZoneIds(id, ids);
        return ids;
    }

    OpenBase base;
};

TEST_F(Adjacency, IsEmptyAtFirst)
{
    EXPECT_EQ(cellZones0(1), Ids());
    EXPECT_EQ(cellZones1(1), Ids());
    EXPECT_EQ(faceZones(11), Ids());
    EXPECT_FALSE(base.hasError());
}

TEST_F(Adjacency, SidesAreKeptApart)
{
    base.setFaceCellZone0Ids({{1, {12, 11}}, {2, {11}}});
    base.setFaceCellZone1Ids({{1, {12}}});
    base.setCellFaceZoneIds({{11, {2, 1}}, {12, {1}}});
    EXPECT_EQ(cellZones0(1), (Ids{12, 11}));
    EXPECT_EQ(cellZones0(2), (Ids{11}));
    EXPECT_EQ(cellZones1(1), (Ids{12}));
    EXPECT_EQ(cellZones1(2), Ids());
    EXPECT_EQ(faceZones(11), (Ids{2, 1}));
    EXPECT_EQ(faceZones(12), (Ids{1}));
}

TEST_F(Adjacency, SettingAgainReplacesTheListsThatAreGiven)
{
    base.setFaceCellZone0Ids({{1, {11}}, {2, {12}}});
    base.setFaceCellZone0Ids({{1, {}}});
    EXPECT_EQ(cellZones0(1), Ids());
    EXPECT_EQ(cellZones0(2), (Ids{12}));
}

TEST_F(Adjacency, IdsBelow1AreLeftOutAndTheRestKeepsItsOrder)
{
    const Ids ids{0, 12, -1, 11, 12, -2147483647 - 1, 2147483647};
    const Ids zones{12, 11, 12, 2147483647};
    base.setFaceCellZone0Ids({{1, ids}});
    base.setFaceCellZone1Ids({{1, ids}});
    base.setCellFaceZoneIds({{11, ids}});
    EXPECT_EQ(cellZones0(1), zones);
    EXPECT_EQ(cellZones1(1), zones);
    EXPECT_EQ(faceZones(11), zones);
}

TEST_F(Adjacency, KeysOfOtherCategoriesAreSkippedSilently)
{
    EXPECT_EQ(printedBy([&] {
                  base.setFaceCellZone0Ids({{99, {1}}, {11, {1}}, {3, {1}}, {1, {11}}});
                  base.setFaceCellZone1Ids({{99, {1}}, {11, {1}}, {3, {1}}, {1, {12}}});
                  base.setCellFaceZoneIds({{99, {1}}, {1, {1}}, {13, {1}}, {11, {2}}});
              }),
              "");
    EXPECT_FALSE(base.hasError() || base.hasWarning());
    EXPECT_EQ(cellZones0(1), (Ids{11}));
    EXPECT_EQ(cellZones1(1), (Ids{12}));
    EXPECT_EQ(faceZones(11), (Ids{2}));
}

TEST_F(Adjacency, FaceInfo6And7ReplaceOneSide)
{
    base.setFaceCellZone0Ids({{1, {11, 12}}});
    base.setFaceZoneInfo(1, static_cast<KelFaceZoneInfoType>(6), 12);
    EXPECT_EQ(cellZones0(1), (Ids{12}));
    EXPECT_EQ(cellZones1(1), Ids());
    base.setFaceZoneInfo(1, static_cast<KelFaceZoneInfoType>(7), 11);
    EXPECT_EQ(cellZones0(1), (Ids{12}));
    EXPECT_EQ(cellZones1(1), (Ids{11}));
    base.setFaceZoneInfo(1, static_cast<KelFaceZoneInfoType>(6), -1);
    EXPECT_EQ(cellZones0(1), Ids());
}

TEST_F(Adjacency, DroppedZoneHasNoneAndIsNoError)
{
    EXPECT_EQ(cellZones0(3), Ids());
    EXPECT_EQ(cellZones1(3), Ids());
    EXPECT_EQ(faceZones(13), Ids());
    EXPECT_FALSE(base.hasError());
}

TEST_F(Adjacency, BadIdsPostErrors)
{
    EXPECT_EQ(printedBy([&] {
                  EXPECT_EQ(cellZones0(99), Ids());
                  EXPECT_EQ(cellZones1(11), Ids());
                  EXPECT_EQ(faceZones(-4), Ids());
                  EXPECT_EQ(faceZones(1), Ids());
              }),
              "");
    EXPECT_FALSE(base.hasWarning());
    EXPECT_EQ(base.getErrors(true, true),
              (Texts{"Error:\n\tInvalid face-zone id (99).", "Error:\n\tInvalid face-zone id (11).",
                     "Error:\n\tInvalid cell-zone id (-4).", "Error:\n\tInvalid cell-zone id (1)."}));
}

TEST_F(Adjacency, HookRunsOncePerObjectWhateverTheId)
{
    EXPECT_EQ(base.adjacencyRuns, 0);
    cellZones0(99);
    EXPECT_EQ(base.adjacencyRuns, 1);
    cellZones0(1);
    cellZones1(1);
    faceZones(11);
    EXPECT_EQ(base.adjacencyRuns, 1);
    base.setMeshId(4); // another mesh does not make it run again
    faceZones(11);
    EXPECT_EQ(base.adjacencyRuns, 1);
}

TEST_F(Adjacency, AnyOfTheThreeRunsTheHookBeforeTheIdIsLookedAt)
{
    for (int operation = 0; operation < 3; ++operation) {
        OpenBase reader;
        reader.onAdjacency = [](OpenBase& self) {
            self.setZoneIds(KEL_FACE_ZONE, {1});
            self.setZoneIds(KEL_CELL_ZONE, {11});
            self.setFaceCellZone0Ids({{1, {11}}});
            self.setFaceCellZone1Ids({{1, {11}}});
            self.setCellFaceZoneIds({{11, {1}}});
        };
        Ids ids;
        switch (operation) {
        case 0:
            reader.getFaceCellZone0Ids(1, ids);
            EXPECT_EQ(ids, (Ids{11}));
            break;
        case 1:
            reader.getFaceCellZone1Ids(1, ids);
            EXPECT_EQ(ids, (Ids{11}));
            break;
        default:
            reader.getCellFaceZoneIds(11, ids);
            EXPECT_EQ(ids, (Ids{1}));
        }
        EXPECT_FALSE(reader.hasError()) << operation;
        EXPECT_EQ(reader.adjacencyRuns, 1);
    }
}

TEST_F(Adjacency, HookMayAskForWhatItHasSet)
{
    Ids seen;
    base.onAdjacency = [&seen](OpenBase& self) {
        self.setFaceCellZone0Ids({{1, {12}}});
        self.getFaceCellZone0Ids(1, seen);
    };
    EXPECT_EQ(cellZones0(1), (Ids{12}));
    EXPECT_EQ(seen, (Ids{12}));
    EXPECT_EQ(base.adjacencyRuns, 1);
}

TEST_F(Adjacency, OtherQuestionsDoNotRunTheHook)
{
    int value = 0;
    base.getFaceZoneInfo(1, KEL_FACE_ZONE_INFO_0, value);
    base.setFaceCellZone0Ids({{1, {11}}});
    EXPECT_EQ(base.adjacencyRuns, 0);
}

} // namespace meridyn
