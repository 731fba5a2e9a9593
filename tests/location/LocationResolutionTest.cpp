#include "KelLocationModel.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace meridyn;
using Ints = std::vector<int>;

class Resolution : public ::testing::Test {
protected:
    Resolution()
    {
        model.createPart(3, "part", part);
        EXPECT_TRUE(model.createBody(part, "core", core));
        EXPECT_TRUE(model.createBody(part, "bare", bare));
        EXPECT_TRUE(model.createFace(part, "wall", wall));
        EXPECT_TRUE(model.createFace(part, "cut", cut));
        EXPECT_TRUE(model.createFace(part, "lost", lost));
        int id = 0;
        EXPECT_TRUE(model.createFaceUse(core, wall, 0, id));
        EXPECT_TRUE(model.createFaceUse(core, cut, 1, id));
        EXPECT_TRUE(model.createComposite(part, "group", group));
        EXPECT_TRUE(model.createComposite(part, "inner", inner));
        EXPECT_TRUE(model.setBodyZones(core, 0, {5}));
        EXPECT_TRUE(model.setFaceUseZoneSides(wall, 0, {4, -4}));
    }

    bool resolve(const std::string& location, int ignored = 0, int map = 0)
    {
        return model.resolveLocation(location, ignored, map, cells, sides);
    }

    KelLocationModel model;
    int part = 0;
    int core = 0;
    int bare = 0;
    int wall = 0;
    int cut = 0;
    int lost = 0;
    int group = 0;
    int inner = 0;
    Ints cells;
    Ints sides;
};

TEST_F(Resolution, AnUnknownLocationChangesNothing)
{
    cells = {9, 5, 9};
    sides = {3, -3, 3};
    for (const char* location : {"", ",", "unknown", "lost", "inner", "part/unknown", "\"core"}) {
        EXPECT_FALSE(resolve(location)) << location;
        EXPECT_EQ(cells, (Ints{9, 5, 9}));
        EXPECT_EQ(sides, (Ints{3, -3, 3}));
    }
}

TEST_F(Resolution, AddsToWhatIsThereThenSortsAndDropsRepeats)
{
    cells = {9, 5};
    sides = {7, -9, 7};
    EXPECT_TRUE(resolve("core"));
    EXPECT_EQ(cells, (Ints{5, 9}));
    EXPECT_EQ(sides, (Ints{-9, -4, 4, 7}));
}

TEST_F(Resolution, ZoneSidesSortAsInts)
{
    EXPECT_TRUE(resolve("wall"));
    EXPECT_EQ(sides, (Ints{-4, 4}));
    EXPECT_TRUE(cells.empty());
    constexpr int least = std::numeric_limits<int>::min();
    sides.clear();
    ASSERT_TRUE(model.setFaceUseZoneSides(wall, 0, {0, least, 1}));
    EXPECT_TRUE(resolve("wall"));
    EXPECT_EQ(sides, (Ints{least, 0, 1}));
}

TEST_F(Resolution, ABodyWithoutZonesGivesFalseUnlessTheVectorsHeldSome)
{
    EXPECT_FALSE(resolve("bare"));
    EXPECT_FALSE(resolve("core", 0, 1)) << "nothing under that map";
    EXPECT_TRUE(cells.empty());
    sides = {2, 1, 2};
    EXPECT_TRUE(resolve("bare"));
    EXPECT_EQ(sides, (Ints{1, 2}));
}

TEST_F(Resolution, TheFirstNumberIsIgnored)
{
    for (const int ignored : {-1, 0, 1, 2, 4711, std::numeric_limits<int>::min()}) {
        cells.clear();
        sides.clear();
        EXPECT_TRUE(resolve("core", ignored)) << ignored;
        EXPECT_EQ(cells, Ints{5});
        EXPECT_EQ(sides, (Ints{-4, 4}));
        EXPECT_TRUE(model.resolveLocation(std::vector<std::string>{"core"}, ignored, 0, cells, sides)) << ignored;
    }
}

TEST_F(Resolution, AListIsItsTextsJoinedByCommas)
{
    const auto list = [this](const std::vector<std::string>& locations) {
        cells.clear();
        sides.clear();
        return model.resolveLocation(locations, 0, 0, cells, sides);
    };
    EXPECT_TRUE(list({"", "wall"}));
    EXPECT_TRUE(cells.empty());
    EXPECT_EQ(sides, (Ints{-4, 4}));
    EXPECT_TRUE(list({"core", " \t\r\n", "wall,bare"}));
    EXPECT_EQ(cells, Ints{5});
    EXPECT_FALSE(list({}));
    EXPECT_FALSE(list({"", " "}));
    EXPECT_FALSE(list({"\"co", "re\""})) << "the comma that joins stands in the quotes";
    ASSERT_TRUE(model.setBodyName(core, "co,re"));
    EXPECT_TRUE(list({"\"co", "re\""}));
    EXPECT_EQ(cells, Ints{5});
}

TEST_F(Resolution, OnlyTheAskedMapCounts)
{
    ASSERT_TRUE(model.setBodyZones(core, -3, {8, 7}));
    EXPECT_TRUE(resolve("core", 0, -3));
    EXPECT_EQ(cells, (Ints{7, 8}));
    EXPECT_TRUE(sides.empty());
}

// ---- composites ----------------------------------------------------------------------

TEST_F(Resolution, CompositesAddWhatTheyStandFor)
{
    ASSERT_TRUE(model.setCompositeComponents(inner, {core}, {lost}, {-cut}, {}));
    ASSERT_TRUE(model.setCompositeComponents(group, {core, bare, core}, {cut}, {wall, -cut}, {inner}));
    Ints bodies{9};
    Ints faces{9};
    Ints uses{9};
    EXPECT_TRUE(model.resolveComposite(group, bodies, faces, uses));
    EXPECT_EQ(bodies, (Ints{9, core, bare}));
    EXPECT_EQ(faces, (Ints{9, cut, lost}));
    EXPECT_EQ(uses, (Ints{9, wall, -cut}));
    EXPECT_TRUE(resolve("group"));
    EXPECT_EQ(cells, Ints{5});
    EXPECT_EQ(sides, (Ints{-4, 4}));
}

TEST_F(Resolution, ComponentsAreTheDirectMembers)
{
    ASSERT_TRUE(model.setCompositeComponents(inner, {bare}, {}, {}, {}));
    ASSERT_TRUE(model.setCompositeComponents(group, {core}, {cut}, {-cut, wall}, {inner}));
    Ints bodies{9};
    Ints faces{9};
    Ints uses{9};
    Ints composites{9};
    EXPECT_TRUE(model.getCompositeComponents(group, bodies, faces, uses, composites));
    EXPECT_EQ(bodies, Ints{core});
    EXPECT_EQ(faces, Ints{cut});
    EXPECT_EQ(uses, (Ints{wall, -cut}));
    EXPECT_EQ(composites, Ints{inner});
    EXPECT_TRUE(model.setCompositeComponents(group, {}, {}, {}, {}));
    EXPECT_TRUE(model.getCompositeComponents(group, bodies, faces, uses, composites));
    EXPECT_TRUE(bodies.empty() && faces.empty() && uses.empty() && composites.empty());
}

TEST_F(Resolution, OneBadMemberRefusesAll)
{
    ASSERT_TRUE(model.setCompositeComponents(group, {core}, {wall}, {}, {inner}));
    const std::string before = model.state();
    EXPECT_FALSE(model.setCompositeComponents(group, {bare, 99, core}, {}, {}, {}));
    EXPECT_FALSE(model.setCompositeComponents(group, {bare}, {0}, {}, {}));
    EXPECT_FALSE(model.setCompositeComponents(group, {bare}, {}, {-wall}, {})) << "no face use on that side";
    EXPECT_FALSE(model.setCompositeComponents(group, {bare}, {}, {0}, {}));
    EXPECT_FALSE(model.setCompositeComponents(group, {bare}, {}, {std::numeric_limits<int>::min()}, {}));
    EXPECT_FALSE(model.setCompositeComponents(group, {bare}, {}, {}, {99}));
    EXPECT_FALSE(model.setCompositeComponents(group, {bare}, {}, {}, {group})) << "itself";
    EXPECT_FALSE(model.setCompositeComponents(inner, {bare}, {}, {}, {group})) << "a circle";
    EXPECT_EQ(model.state(), before);
}

TEST_F(Resolution, DeletedMembersAreGone)
{
    ASSERT_TRUE(model.setCompositeComponents(group, {core, bare}, {wall}, {wall, -cut}, {inner}));
    ASSERT_TRUE(model.deleteBody(core));
    ASSERT_TRUE(model.deleteFace(wall));
    ASSERT_TRUE(model.deleteComposite(inner));
    Ints bodies;
    Ints faces;
    Ints uses;
    Ints composites;
    EXPECT_TRUE(model.getCompositeComponents(group, bodies, faces, uses, composites));
    EXPECT_EQ(bodies, Ints{bare});
    EXPECT_TRUE(faces.empty() && uses.empty() && composites.empty());
}

// ---- explanations --------------------------------------------------------------------

TEST_F(Resolution, ExplainsEntryByEntry)
{
    using Entries = std::vector<std::pair<std::string, std::vector<std::string>>>;
    ASSERT_TRUE(model.setFaceUseName(wall, "hot"));
    ASSERT_TRUE(model.setFaceName(cut, "a, b"));
    Entries entries{{"left over", {}}};
    model.explainLocation(" core ,, pa*, hot,\"a, b\",gro?p,part/x", entries);
    EXPECT_EQ(entries, (Entries{{"core", {"body part/core"}},
                                {"pa*", {"part part"}},
                                {"hot", {"face use part/hot"}},
                                {"\"a, b\"", {"face part/\"a, b\""}},
                                {"gro?p", {"composite part/group"}},
                                {"part/x", {}}}));
    model.explainLocation("", entries);
    EXPECT_TRUE(entries.empty());
}

} // namespace
