#include "StrataSupport.h"

#include <gtest/gtest.h>

namespace {

using namespace strata;

class Entities : public ::testing::Test {
protected:
    Model model{"m"};
    Topology* topology = model.topology();
    Part* fluid = topology->createPart(3, "fluid");
    Part* solid = topology->createPart(2, "solid");
    Body* core = fluid->createBody("core");
    Face* wall = fluid->createFace("wall");
};

TEST_F(Entities, IdsAreLetterAndNumberPerKind)
{
    EXPECT_EQ(fluid->id(), "p1");
    EXPECT_EQ(solid->id(), "p2");
    EXPECT_EQ(core->id(), "b1");
    EXPECT_EQ(wall->id(), "f1");
    EXPECT_EQ(solid->createBody("core")->id(), "b2");
    EXPECT_EQ(solid->createComposite("all", {})->id(), "c1");
    EXPECT_EQ(core->createFaceUse(wall, 1, "")->id(), "f1:1");
    EXPECT_EQ(solid->dimensionality(), 2);
    EXPECT_EQ(model.name(), "m");
}

TEST_F(Entities, OnlyTheExactIdIsFound)
{
    EXPECT_EQ(topology->findPartById("p1"), fluid);
    EXPECT_EQ(topology->findBodyById("b1"), core);
    EXPECT_EQ(topology->findFaceById("f1"), wall);
    EXPECT_EQ(topology->findCompositeById("c1"), nullptr);
    for (const char* id : {"", "b", "b01", "b+1", "b 1", "b1 ", "b0", "b-1", "B1", "1", "f1", "b2", "b1x",
                           "b4294967297", "b99999999999999999999"})
        EXPECT_EQ(topology->findBodyById(id), nullptr) << id;
    EXPECT_EQ(topology->findFaceById("f1:0"), nullptr);
}

TEST_F(Entities, IdsAreNotGivenAgain)
{
    core->destroy(false);
    EXPECT_EQ(topology->findBodyById("b1"), nullptr);
    EXPECT_EQ(fluid->createBody("core")->id(), "b2");
    topology->clear();
    EXPECT_TRUE(topology->parts().empty());
    Part* next = topology->createPart(3, "fluid");
    EXPECT_EQ(next->id(), "p3");
    EXPECT_EQ(next->createBody("core")->id(), "b3");
    EXPECT_EQ(next->createFace("wall")->id(), "f2");
}

TEST_F(Entities, ARefusedCreationUsesUpNoId)
{
    EXPECT_EQ(fluid->createBody("core"), nullptr);
    EXPECT_EQ(fluid->createFace("wall"), nullptr);
    EXPECT_EQ(fluid->createBody("next")->id(), "b2");
    EXPECT_EQ(fluid->createFace("next")->id(), "f2");
}

TEST_F(Entities, NamesAreUniquePerPartAndKind)
{
    EXPECT_NE(fluid->createFace("core"), nullptr);
    EXPECT_NE(fluid->createComposite("core", {}), nullptr);
    EXPECT_EQ(fluid->createComposite("core", {}), nullptr);
    EXPECT_NE(solid->createBody("core"), nullptr);
    EXPECT_NE(core->createFaceUse(wall, 0, "core"), nullptr);
    EXPECT_EQ(core->createFaceUse(wall, 1, "core"), nullptr);
    EXPECT_EQ(fluid->findBodyByName("core"), core);
    EXPECT_EQ(fluid->findFaceByName("core")->id(), "f2");
    EXPECT_EQ(fluid->findCompositeByName("core")->id(), "c1");
    EXPECT_EQ(fluid->findFaceUseByName("core")->id(), "f1:0");
    EXPECT_EQ(fluid->findBodyByName("Core"), nullptr);
}

TEST_F(Entities, RegionsWithoutNameDoNotCollideAndAreNotFound)
{
    EXPECT_NE(fluid->createBody(""), nullptr);
    EXPECT_NE(fluid->createBody(""), nullptr);
    EXPECT_EQ(fluid->findBodyByName(""), nullptr);
    topology->createPart(3, "");
    EXPECT_EQ(topology->findPartByName(""), nullptr);
}

TEST_F(Entities, PartsMayShareANameAndTheFirstIsFound)
{
    Part* third = topology->createPart(3, "fluid");
    ASSERT_NE(third, nullptr);
    EXPECT_EQ(topology->findPartByName("fluid"), fluid);
    EXPECT_TRUE(solid->rename("fluid"));
    fluid->destroy();
    EXPECT_EQ(topology->findPartByName("fluid"), solid);
    EXPECT_EQ(idsOf(topology->parts()), (Ids{"p2", "p3"}));
}

TEST_F(Entities, RenameKeepsTheLookUpsInStep)
{
    Body* other = fluid->createBody("other");
    EXPECT_FALSE(other->rename("core"));
    EXPECT_EQ(other->name(), "other");
    EXPECT_TRUE(other->rename("other"));
    EXPECT_TRUE(core->rename("heart"));
    EXPECT_EQ(fluid->findBodyByName("core"), nullptr);
    EXPECT_EQ(fluid->findBodyByName("heart"), core);
    EXPECT_TRUE(other->rename("core"));
    EXPECT_TRUE(core->rename(""));
    EXPECT_EQ(fluid->findBodyByName("heart"), nullptr);
    EXPECT_TRUE(other->rename(other->name()));
    EXPECT_TRUE(core->rename(other->id()));
    EXPECT_EQ(core->name(), "b2");
    fluid->rename(fluid->name());
    EXPECT_EQ(topology->findPartByName("fluid"), fluid);
}

TEST_F(Entities, ASideTakesOneFaceUse)
{
    FaceUse* use = core->createFaceUse(wall, 0, "");
    ASSERT_NE(use, nullptr);
    EXPECT_EQ(use->body(), core);
    EXPECT_EQ(use->face(), wall);
    EXPECT_EQ(use->side(), 0);
    EXPECT_EQ(use->part(), fluid);
    EXPECT_EQ(wall->faceUse(0), use);
    EXPECT_EQ(wall->faceUse(1), nullptr);
    EXPECT_EQ(wall->faceUse(2), nullptr);
    EXPECT_EQ(wall->faceUse(-1), nullptr);
    Body* other = fluid->createBody("other");
    EXPECT_EQ(other->createFaceUse(wall, 0, ""), nullptr);
    for (const int side : {-1, 2, 1000})
        EXPECT_EQ(other->createFaceUse(wall, side, ""), nullptr) << side;
    EXPECT_EQ(other->createFaceUse(nullptr, 1, ""), nullptr);
    EXPECT_NE(other->createFaceUse(wall, 1, ""), nullptr);
}

TEST_F(Entities, ABodyMayUseAFaceOfAnotherPart)
{
    Body* block = solid->createBody("block");
    FaceUse* use = block->createFaceUse(wall, 1, "outside");
    EXPECT_EQ(use->part(), solid);
    EXPECT_EQ(solid->findFaceUseByName("outside"), use);
    EXPECT_EQ(fluid->findFaceUseByName("outside"), nullptr);
    EXPECT_EQ(idsOf(solid->faceUses()), Ids{"f1:1"});
    EXPECT_TRUE(fluid->faceUses().empty());
}

TEST_F(Entities, AFaceOfAnotherModelIsRefused)
{
    Model other("");
    Face* foreign = other.topology()->createPart(3, "x")->createFace("y");
    EXPECT_EQ(core->createFaceUse(foreign, 0, ""), nullptr);
    EXPECT_EQ(fluid->createComposite("c", {foreign}), nullptr);
    EXPECT_FALSE(fluid->createComposite("c", {})->modify({core, foreign}));
    EXPECT_FALSE(model.createMeshMap(0)->setExternalFaces(foreign, {ExternalFace(1)}, false));
    EXPECT_TRUE(model.createMeshMap(0)->externalFaces(foreign).empty());
    FaceUse* use = foreign->part()->createBody("z")->createFaceUse(foreign, 0, "");
    EXPECT_FALSE(model.createMeshMap(0)->setExternalFaceSides(use, {ExternalFaceSide(1, false)}, false));
    EXPECT_FALSE(model.createMeshMap(0)->setExternalFaceSides(nullptr, {}, false));
    EXPECT_TRUE(model.createMeshMap(0)->externalFaceSides(use).empty());
    EXPECT_TRUE(other.createMeshMap(0)->externalFaceSides(use).empty());
}

TEST_F(Entities, RelativeNameTellsBodyAndFace)
{
    FaceUse* use = core->createFaceUse(wall, 1, "own");
    EXPECT_EQ(use->relativeName(), "core:wall");
    FaceUse* back = core->createFaceUse(wall, 0, "");
    EXPECT_EQ(use->relativeName(), "core:wall:1");
    EXPECT_EQ(back->relativeName(), "core:wall:0");
}

TEST_F(Entities, ListsAreByNumber)
{
    Face* second = fluid->createFace("a");
    second->destroy();
    Face* third = fluid->createFace("b");
    core->createFaceUse(third, 1, "");
    core->createFaceUse(wall, 1, "");
    core->createFaceUse(third, 0, "");
    EXPECT_EQ(idsOf(fluid->faces()), (Ids{"f1", "f3"}));
    EXPECT_EQ(idsOf(core->boundary()), (Ids{"f1:1", "f3:0", "f3:1"}));
    EXPECT_EQ(idsOf(fluid->faceUses()), (Ids{"f1:1", "f3:0", "f3:1"}));
}

// ---- ends ----------------------------------------------------------------------------

TEST_F(Entities, ADestroyedRegionLeavesItsComposites)
{
    FaceUse* use = core->createFaceUse(wall, 0, "");
    Composite* inner = solid->createComposite("inner", {core});
    Composite* outer = solid->createComposite("outer", {core, wall, use, inner});
    EXPECT_EQ(idsOf(core->composites()), (Ids{"c1", "c2"}));
    use->destroy();
    EXPECT_EQ(idsOf(outer->components().primitives), (Ids{"b1", "f1"}));
    inner->destroy();
    EXPECT_TRUE(outer->components().composites.empty());
    EXPECT_EQ(idsOf(core->composites()), Ids{"c2"});
    fluid->destroy();
    EXPECT_EQ(topology->findCompositeById("c2"), outer);
    EXPECT_TRUE(outer->resolve().empty());
}

TEST_F(Entities, AFaceTakesItsUsesAlong)
{
    Body* block = solid->createBody("block");
    core->createFaceUse(wall, 0, "a");
    block->createFaceUse(wall, 1, "b");
    wall->destroy();
    EXPECT_TRUE(core->boundary().empty());
    EXPECT_TRUE(block->boundary().empty());
    EXPECT_EQ(solid->findFaceUseByName("b"), nullptr);
    EXPECT_EQ(topology->findFaceById("f1"), nullptr);
}

TEST_F(Entities, ABodyLeavesItsFacesUnlessAsked)
{
    Body* other = fluid->createBody("other");
    Face* shared = fluid->createFace("shared");
    Face* both = fluid->createFace("both");
    core->createFaceUse(wall, 0, "");
    core->createFaceUse(shared, 0, "");
    other->createFaceUse(shared, 1, "");
    other->createFaceUse(both, 0, "");
    other->createFaceUse(both, 1, "");
    core->destroy(false);
    EXPECT_EQ(wall->faceUse(0), nullptr);
    EXPECT_EQ(idsOf(fluid->faces()), (Ids{"f1", "f2", "f3"}));
    Body* third = fluid->createBody("core");
    third->createFaceUse(shared, 0, "");
    other->destroy(true);
    EXPECT_EQ(idsOf(fluid->faces()), (Ids{"f1", "f2"})) << "the shared one stays, the third body uses it";
}

TEST_F(Entities, APartTakesAllItOwnsAlong)
{
    Body* block = solid->createBody("block");
    Face* side = solid->createFace("side");
    block->createFaceUse(wall, 0, "");
    core->createFaceUse(side, 0, "");
    fluid->createComposite("c", {block, core});
    fluid->destroy();
    EXPECT_EQ(topology->findPartByName("fluid"), nullptr);
    EXPECT_EQ(topology->findBodyById("b1"), nullptr);
    EXPECT_EQ(topology->findCompositeById("c1"), nullptr);
    EXPECT_TRUE(block->boundary().empty()) << "its face was the part's";
    EXPECT_EQ(side->faceUse(0), nullptr) << "its body was the part's";
    EXPECT_TRUE(block->composites().empty());
    std::vector<std::string> unresolved;
    EXPECT_TRUE(topology->resolveInteriorLocation("core", unresolved).empty());
    EXPECT_EQ(unresolved, std::vector<std::string>{"core"});
}

// ---- composites ----------------------------------------------------------------------

TEST_F(Entities, CompositesExpandEachMemberOnce)
{
    FaceUse* use = core->createFaceUse(wall, 1, "");
    Composite* inner = fluid->createComposite("inner", {use, wall});
    Composite* middle = fluid->createComposite("middle", {inner, core});
    Composite* outer = fluid->createComposite("outer", {inner, middle, wall});
    EXPECT_EQ(idsOf(outer->resolve()), (Ids{"b1", "f1", "f1:1"}));
    EXPECT_EQ(idsOf(outer->components().primitives), Ids{"f1"});
    EXPECT_EQ(idsOf(outer->components().composites), (Ids{"c1", "c2"}));
}

TEST_F(Entities, ModifyReplacesOrRefusesAsAWhole)
{
    Composite* a = fluid->createComposite("a", {core});
    Composite* b = fluid->createComposite("b", {a});
    Composite* c = fluid->createComposite("c", {b});
    EXPECT_FALSE(a->modify({a}));
    EXPECT_FALSE(a->modify({wall, b}));
    EXPECT_FALSE(a->modify({wall, c}));
    EXPECT_FALSE(a->modify({nullptr, wall}));
    EXPECT_EQ(idsOf(a->resolve()), Ids{"b1"});
    EXPECT_TRUE(c->modify({wall}));
    EXPECT_TRUE(a->modify({c}));
    EXPECT_EQ(idsOf(b->resolve()), Ids{"f1"});
    EXPECT_FALSE(c->modify({b}));
    EXPECT_TRUE(a->modify({}));
    EXPECT_TRUE(b->resolve().empty());
}

TEST_F(Entities, LongChainsOfCompositesAreBuiltFromEitherEnd)
{
    constexpr int length = 50000; // deep enough to fell any recursion, and any walk down the whole chain per link
    Composite* last = fluid->createComposite("", {core});
    Composite* first = last;
    for (int i = 0; i < length; ++i) {
        Composite* upper = fluid->createComposite("", {});
        ASSERT_TRUE(upper->modify({first}));
        first = upper;
    }
    for (int i = 0; i < length; ++i) {
        Composite* lower = fluid->createComposite("", {});
        ASSERT_TRUE(last->modify({lower}));
        last = lower;
    }
    EXPECT_FALSE(last->modify({first}));
    last->modify({wall});
    EXPECT_EQ(idsOf(first->resolve()), Ids{"f1"});
    const std::string state = model.state();
    EXPECT_TRUE(model.reset(state));
    EXPECT_EQ(model.state(), state);
}

// ---- zones ---------------------------------------------------------------------------

TEST_F(Entities, MapsAreKeptByNumber)
{
    TopologyMap* map = model.createMeshMap(-7);
    EXPECT_EQ(map->number(), -7);
    EXPECT_EQ(model.createMeshMap(-7), map);
    EXPECT_NE(model.createMeshMap(7), map);
}

TEST_F(Entities, ZonesAreReplacedOrMerged)
{
    TopologyMap* map = model.createMeshMap(0);
    using Zones = std::set<ExternalBody>;
    EXPECT_TRUE(map->setExternalBodies(core, {ExternalBody(9), ExternalBody(-5)}, false));
    EXPECT_EQ(map->externalBodies(core), (Zones{ExternalBody(-5), ExternalBody(9)}));
    EXPECT_TRUE(map->setExternalBodies(core, {ExternalBody(9), ExternalBody(1)}, true));
    EXPECT_EQ(map->externalBodies(core), (Zones{ExternalBody(-5), ExternalBody(1), ExternalBody(9)}));
    EXPECT_TRUE(map->setExternalBodies(core, {}, true));
    EXPECT_EQ(map->externalBodies(core).size(), 3U);
    EXPECT_TRUE(map->setExternalBodies(core, {ExternalBody(2)}, false));
    EXPECT_EQ(map->externalBodies(core), Zones{ExternalBody(2)});
    EXPECT_TRUE(model.createMeshMap(1)->externalBodies(core).empty());
    EXPECT_FALSE(map->setExternalBodies(nullptr, {}, false));
    EXPECT_TRUE(map->externalBodies(nullptr).empty());
}

TEST_F(Entities, ZoneSidesStandByZoneAndNearBeforeFar)
{
    TopologyMap* map = model.createMeshMap(0);
    FaceUse* use = core->createFaceUse(wall, 0, "");
    EXPECT_TRUE(map->setExternalFaceSides(use, {{4, true}, {3, true}, {3, false}, {0, true}}, false));
    std::string text;
    for (const ExternalFaceSide& side : map->externalFaceSides(use))
        text += (side.farSide() ? "-" : "+") + std::to_string(side.zone()) + " ";
    EXPECT_EQ(text, "-0 +3 -3 -4 ");
}

TEST_F(Entities, ZoneSidesWithoutSignedFormAreRefused)
{
    TopologyMap* map = model.createMeshMap(0);
    FaceUse* use = core->createFaceUse(wall, 0, "");
    EXPECT_TRUE(map->setExternalFaceSides(use, {{2147483647, false}, {2147483648, true}}, false));
    for (const ExternalFaceSide& side : {ExternalFaceSide(2147483648, false), ExternalFaceSide(2147483649, true),
                                         ExternalFaceSide(-1, false), ExternalFaceSide(-1, true)})
        EXPECT_FALSE(map->setExternalFaceSides(use, {side}, true)) << side.zone();
    EXPECT_EQ(map->externalFaceSides(use).size(), 2U);
}

TEST_F(Entities, ZonesEndWithTheirRegion)
{
    FaceUse* use = core->createFaceUse(wall, 0, "");
    model.createMeshMap(3)->setExternalFaceSides(use, {{1, false}}, false);
    use->destroy();
    use = core->createFaceUse(wall, 0, "");
    EXPECT_TRUE(model.createMeshMap(3)->externalFaceSides(use).empty());
}

} // namespace
