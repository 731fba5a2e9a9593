#include "KelLocationModel.h"
#include "StrataIds.h"

#include <gtest/gtest.h>

#include <limits>
#include <type_traits>

namespace {

using namespace meridyn;
using Ints = std::vector<int>;

constexpr int leastInt = std::numeric_limits<int>::min();
constexpr int greatestInt = std::numeric_limits<int>::max();

static_assert(!std::is_copy_constructible_v<KelLocationModel> && !std::is_copy_assignable_v<KelLocationModel>);
static_assert(!std::is_polymorphic_v<KelLocationModel>);
static_assert(sizeof(KelLocationModel) == sizeof(void*));

class LocationModel : public ::testing::Test {
protected:
    LocationModel()
    {
        model.createPart(3, "first", first);
        model.createPart(2, "second", second);
        EXPECT_TRUE(model.createBody(first, "core", body));
        EXPECT_TRUE(model.createBody(first, "ring", otherBody));
        EXPECT_TRUE(model.createFace(first, "wall", face));
        EXPECT_TRUE(model.createFace(second, "wall", otherFace));
    }

    KelLocationModel model;
    int first = 0;
    int second = 0;
    int body = 0;
    int otherBody = 0;
    int face = 0;
    int otherFace = 0;
    int id = 4711;
};

TEST_F(LocationModel, CountsEachKindFromOne)
{
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 2);
    EXPECT_EQ(body, 1);
    EXPECT_EQ(otherBody, 2);
    EXPECT_EQ(face, 1);
    EXPECT_EQ(otherFace, 2);
    EXPECT_TRUE(model.createComposite(second, "all", id));
    EXPECT_EQ(id, 1);
}

TEST_F(LocationModel, FaceUseIdsAreSignedFaceIds)
{
    EXPECT_TRUE(model.createFaceUse(body, otherFace, 0, id));
    EXPECT_EQ(id, otherFace);
    EXPECT_TRUE(model.createFaceUse(body, otherFace, 1, id));
    EXPECT_EQ(id, -otherFace);
}

TEST_F(LocationModel, ATakenSideIsReusedByItsBodyAlone)
{
    EXPECT_TRUE(model.createFaceUse(body, face, 1, id));
    EXPECT_TRUE(model.setFaceUseName(id, "kept"));
    id = 4711;
    EXPECT_TRUE(model.createFaceUse(body, face, 1, id));
    EXPECT_EQ(id, -face);
    std::string name;
    EXPECT_TRUE(model.getFaceUseName(-face, name));
    EXPECT_EQ(name, "kept");
    id = 4711;
    EXPECT_FALSE(model.createFaceUse(otherBody, face, 1, id));
    EXPECT_EQ(id, 4711);
    EXPECT_TRUE(model.createFaceUse(otherBody, face, 0, id));
    EXPECT_EQ(id, face);
}

TEST_F(LocationModel, SidesOtherThanZeroAndOneAreRefused)
{
    for (const int side : {-1, 2, leastInt, greatestInt}) {
        EXPECT_FALSE(model.createFaceUse(body, face, side, id)) << side;
        EXPECT_EQ(id, 4711);
    }
    Ints uses;
    EXPECT_TRUE(model.getBodyBoundary(body, uses));
    EXPECT_TRUE(uses.empty());
}

TEST_F(LocationModel, MissingRegionsGiveFalseAndTouchNothing)
{
    const std::string before = model.state();
    std::string name = "before";
    Ints list{7};
    int other = 4711;
    int third = 4711;
    for (const int none : {0, -1, 3, leastInt, greatestInt}) {
        SCOPED_TRACE(none);
        EXPECT_FALSE(model.createBody(none, "x", id));
        EXPECT_FALSE(model.createFace(none, "x", id));
        EXPECT_FALSE(model.createComposite(none, "x", id));
        EXPECT_FALSE(model.createFaceUse(none, face, 0, id));
        EXPECT_FALSE(model.createFaceUse(body, none, 0, id));
        EXPECT_FALSE(model.deletePart(none));
        EXPECT_FALSE(model.deleteBody(none));
        EXPECT_FALSE(model.deleteFace(none));
        EXPECT_FALSE(model.deleteComposite(none));
        EXPECT_FALSE(model.deleteFaceUse(none));
        EXPECT_FALSE(model.findBody(none, "core", id));
        EXPECT_FALSE(model.findFace(none, "wall", id));
        EXPECT_FALSE(model.findComposite(none, "x", id));
        EXPECT_FALSE(model.findFaceUse(none, "x", id));
        EXPECT_FALSE(model.getPartName(none, name));
        EXPECT_FALSE(model.getBodyName(none, name));
        EXPECT_FALSE(model.getFaceName(none, name));
        EXPECT_FALSE(model.getCompositeName(none, name));
        EXPECT_FALSE(model.getFaceUseName(none, name));
        EXPECT_FALSE(model.getFaceUseRelativeName(none, name));
        EXPECT_FALSE(model.setPartName(none, "x"));
        EXPECT_FALSE(model.setBodyName(none, "x"));
        EXPECT_FALSE(model.setFaceName(none, "x"));
        EXPECT_FALSE(model.setCompositeName(none, "x"));
        EXPECT_FALSE(model.setFaceUseName(none, "x"));
        EXPECT_FALSE(model.getPartBodies(none, list));
        EXPECT_FALSE(model.getPartFaces(none, list));
        EXPECT_FALSE(model.getPartComposites(none, list));
        EXPECT_FALSE(model.getPartFaceUses(none, list));
        EXPECT_FALSE(model.getBodyBoundary(none, list));
        EXPECT_FALSE(model.getPartDimensionality(none, id));
        EXPECT_FALSE(model.getBodyPart(none, id));
        EXPECT_FALSE(model.getFacePart(none, id));
        EXPECT_FALSE(model.getFaceUsePart(none, id));
        EXPECT_FALSE(model.getFaceSides(none, id, other));
        EXPECT_FALSE(model.getFaceUseDefinition(none, id, other, third));
        EXPECT_FALSE(model.setBodyZones(none, 0, {1}));
        EXPECT_FALSE(model.setFaceZones(none, 0, {1}));
        EXPECT_FALSE(model.setFaceUseZoneSides(none, 0, {1}));
        EXPECT_FALSE(model.resolveComposite(none, list, list, list));
        EXPECT_FALSE(model.getCompositeComponents(none, list, list, list, list));
        EXPECT_FALSE(model.setCompositeComponents(none, {}, {}, {}, {}));
    }
    EXPECT_EQ(id, 4711);
    EXPECT_EQ(other, 4711);
    EXPECT_EQ(third, 4711);
    EXPECT_EQ(name, "before");
    EXPECT_EQ(list, Ints{7});
    EXPECT_EQ(model.state(), before);
}

TEST_F(LocationModel, AFaceWithoutAUseOnTheSideHasNoFaceUse)
{
    ASSERT_TRUE(model.createFaceUse(body, face, 1, id));
    EXPECT_FALSE(model.deleteFaceUse(face));
    EXPECT_FALSE(model.getFaceUsePart(face, id));
    EXPECT_TRUE(model.deleteFaceUse(-face));
    EXPECT_FALSE(model.deleteFaceUse(-face));
}

TEST_F(LocationModel, DeletedIdsStayAway)
{
    EXPECT_TRUE(model.deleteBody(otherBody));
    EXPECT_FALSE(model.deleteBody(otherBody));
    EXPECT_TRUE(model.createBody(first, "ring", id));
    EXPECT_EQ(id, 3);
    model.clearTopology();
    Ints parts{9};
    model.getParts(parts);
    EXPECT_TRUE(parts.empty());
    model.createPart(3, "first", id);
    EXPECT_EQ(id, 3);
}

TEST_F(LocationModel, ABodyLeavesItsFacesBehind)
{
    ASSERT_TRUE(model.createFaceUse(body, face, 0, id));
    EXPECT_TRUE(model.deleteBody(body));
    int side0 = 9;
    int side1 = 9;
    EXPECT_TRUE(model.getFaceSides(face, side0, side1));
    EXPECT_EQ(side0, 0);
    EXPECT_EQ(side1, 0);
}

TEST_F(LocationModel, TakenNamesAreRefused)
{
    EXPECT_FALSE(model.createBody(first, "core", id));
    EXPECT_FALSE(model.createFace(first, "wall", id));
    EXPECT_EQ(id, 4711);
    EXPECT_FALSE(model.setBodyName(otherBody, "core"));
    EXPECT_TRUE(model.setBodyName(otherBody, "ring"));
    std::string name;
    EXPECT_TRUE(model.getBodyName(otherBody, name));
    EXPECT_EQ(name, "ring");
    EXPECT_TRUE(model.createBody(second, "core", id));
    EXPECT_TRUE(model.createFace(first, "core", id));
    model.createPart(1, "first", id);
    EXPECT_EQ(id, 3);
    EXPECT_TRUE(model.findPart("first", id));
    EXPECT_EQ(id, first);
}

TEST_F(LocationModel, FindsByNameWithinThePart)
{
    ASSERT_TRUE(model.createComposite(second, "all", id));
    ASSERT_TRUE(model.createFaceUse(body, otherFace, 1, id));
    ASSERT_TRUE(model.setFaceUseName(-otherFace, "seen"));
    EXPECT_TRUE(model.findBody(first, "ring", id) && id == otherBody);
    EXPECT_TRUE(model.findFace(first, "wall", id) && id == face);
    EXPECT_TRUE(model.findFace(second, "wall", id) && id == otherFace);
    EXPECT_TRUE(model.findComposite(second, "all", id) && id == 1);
    EXPECT_TRUE(model.findFaceUse(first, "seen", id) && id == -otherFace) << "the part is that of the body";
    EXPECT_FALSE(model.findFaceUse(second, "seen", id));
    EXPECT_FALSE(model.findBody(second, "core", id));
    EXPECT_FALSE(model.findBody(first, "", id));
    EXPECT_FALSE(model.findPart("", id));
    EXPECT_FALSE(model.findPart("third", id));
    EXPECT_EQ(id, -otherFace);
    int part = 0;
    EXPECT_TRUE(model.getFaceUsePart(-otherFace, part));
    EXPECT_EQ(part, first);
}

TEST_F(LocationModel, OnlyAnUnnamedFaceUseHasNoNameToGive)
{
    ASSERT_TRUE(model.createFaceUse(body, face, 0, id));
    std::string name = "before";
    EXPECT_FALSE(model.getFaceUseName(face, name));
    EXPECT_EQ(name, "before");
    EXPECT_TRUE(model.getFaceUseRelativeName(face, name));
    EXPECT_EQ(name, "core:wall");
    EXPECT_TRUE(model.setFaceUseName(face, "seen"));
    EXPECT_TRUE(model.getFaceUseName(face, name));
    EXPECT_EQ(name, "seen");
    EXPECT_TRUE(model.setFaceUseName(face, ""));
    EXPECT_FALSE(model.getFaceUseName(face, name));
    EXPECT_TRUE(model.setBodyName(body, ""));
    EXPECT_TRUE(model.getBodyName(body, name));
    EXPECT_EQ(name, "");
}

TEST_F(LocationModel, ListsAreReplaced)
{
    ASSERT_TRUE(model.createFaceUse(body, otherFace, 1, id));
    ASSERT_TRUE(model.createFaceUse(body, face, 0, id));
    ASSERT_TRUE(model.createFaceUse(otherBody, face, 1, id));
    Ints list{9, 9};
    model.getParts(list);
    EXPECT_EQ(list, (Ints{1, 2}));
    EXPECT_TRUE(model.getPartBodies(first, list));
    EXPECT_EQ(list, (Ints{1, 2}));
    EXPECT_TRUE(model.getPartFaces(second, list));
    EXPECT_EQ(list, Ints{2});
    EXPECT_TRUE(model.getPartFaceUses(first, list));
    EXPECT_EQ(list, (Ints{1, -1, -2}));
    EXPECT_TRUE(model.getBodyBoundary(body, list));
    EXPECT_EQ(list, (Ints{1, -2}));
    EXPECT_TRUE(model.getPartComposites(first, list));
    EXPECT_TRUE(list.empty());
}

TEST_F(LocationModel, TellsRelations)
{
    ASSERT_TRUE(model.createFaceUse(otherBody, face, 1, id));
    int side0 = 9;
    int side1 = 9;
    EXPECT_TRUE(model.getFaceSides(face, side0, side1));
    EXPECT_EQ(side0, 0);
    EXPECT_EQ(side1, -face);
    int bodyId = 0;
    int faceId = 0;
    int side = 0;
    EXPECT_TRUE(model.getFaceUseDefinition(-face, bodyId, faceId, side));
    EXPECT_EQ(bodyId, otherBody);
    EXPECT_EQ(faceId, face);
    EXPECT_EQ(side, 1);
    EXPECT_TRUE(model.getBodyPart(body, id) && id == first);
    EXPECT_TRUE(model.getFacePart(otherFace, id) && id == second);
    EXPECT_TRUE(model.getPartDimensionality(second, id) && id == 2);
}

// ---- zones ---------------------------------------------------------------------------

TEST_F(LocationModel, ZonesAreOrderedSetsPerMap)
{
    Ints zones{8};
    EXPECT_TRUE(model.setBodyZones(body, 0, {5, -3, 5, greatestInt, leastInt, 0}));
    EXPECT_TRUE(model.setBodyZones(body, -1, {6}));
    EXPECT_TRUE(model.getBodyZones(body, 0, zones));
    EXPECT_EQ(zones, (Ints{leastInt, -3, 0, 5, greatestInt}));
    EXPECT_TRUE(model.setBodyZones(body, 0, {7}));
    EXPECT_TRUE(model.getBodyZones(body, 0, zones));
    EXPECT_EQ(zones, Ints{7});
    EXPECT_TRUE(model.getBodyZones(body, -1, zones));
    EXPECT_EQ(zones, Ints{6});
    EXPECT_TRUE(model.setFaceZones(face, 0, {4, 2}));
    EXPECT_TRUE(model.setFaceZones(otherFace, 0, {4}));
    EXPECT_TRUE(model.getFaceZones(face, 0, zones));
    EXPECT_EQ(zones, (Ints{2, 4}));
    EXPECT_TRUE(model.getFaceZones(face, 3, zones));
    EXPECT_TRUE(zones.empty());
}

TEST_F(LocationModel, ZoneGettersClearFirstAndThenLook)
{
    Ints zones{8};
    EXPECT_FALSE(model.getBodyZones(99, 0, zones));
    EXPECT_TRUE(zones.empty());
    zones = {8};
    EXPECT_FALSE(model.getFaceZones(99, 0, zones));
    EXPECT_TRUE(zones.empty());
    zones = {8};
    EXPECT_FALSE(model.getFaceUseZoneSides(face, 0, zones));
    EXPECT_TRUE(zones.empty());
    zones = {8};
    EXPECT_TRUE(model.getBodyZones(body, 0, zones));
    EXPECT_TRUE(zones.empty());
}

TEST_F(LocationModel, ZoneSidesComeBackSigned)
{
    ASSERT_TRUE(model.createFaceUse(body, face, 1, id));
    Ints sides;
    EXPECT_TRUE(model.setFaceUseZoneSides(-face, 0, {3, -3, 3}));
    EXPECT_TRUE(model.getFaceUseZoneSides(-face, 0, sides));
    EXPECT_EQ(sides, (Ints{3, -3}));
    EXPECT_TRUE(model.setFaceUseZoneSides(-face, 0, {leastInt, greatestInt, -greatestInt, 0, -7}));
    EXPECT_TRUE(model.getFaceUseZoneSides(-face, 0, sides));
    EXPECT_EQ(sides, (Ints{0, -7, greatestInt, -greatestInt, leastInt}));
    EXPECT_FALSE(model.setFaceUseZoneSides(face, 0, {1}));
    EXPECT_TRUE(model.setFaceUseZoneSides(-face, 0, {0}));
    EXPECT_NE(model.state().find("zones f1:1 0 -0\n"), std::string::npos) << "0 is the far side of zone 0";
}

TEST_F(LocationModel, ReadingLeavesTheStateAlone)
{
    const std::string before = model.state();
    Ints zones;
    EXPECT_TRUE(model.getBodyZones(body, 12, zones));
    EXPECT_TRUE(model.setBodyZones(body, 13, {}));
    EXPECT_FALSE(model.resolveLocation("core", 0, 14, zones, zones));
    EXPECT_EQ(model.state(), before);
}

// ---- state ---------------------------------------------------------------------------

TEST_F(LocationModel, StateGoesRound)
{
    ASSERT_TRUE(model.createFaceUse(body, face, 1, id));
    ASSERT_TRUE(model.setFaceUseZoneSides(-face, 4, {3, -3, leastInt}));
    ASSERT_TRUE(model.setFaceName(face, std::string("a,\"<&>\r\n\0 \xFF", 11)));
    ASSERT_TRUE(model.createComposite(first, "all", id));
    ASSERT_TRUE(model.setCompositeComponents(id, {body}, {otherFace}, {-face}, {}));
    ASSERT_TRUE(model.deleteBody(otherBody));
    const std::string state = model.state();
    KelLocationModel other;
    int old = 0;
    other.createPart(3, "old", old);
    ASSERT_TRUE(other.reset(state));
    EXPECT_EQ(other.state(), state);
    std::string name;
    EXPECT_TRUE(other.getFaceName(face, name));
    EXPECT_EQ(name, std::string("a,\"<&>\r\n\0 \xFF", 11));
    Ints sides;
    EXPECT_TRUE(other.getFaceUseZoneSides(-face, 4, sides));
    EXPECT_EQ(sides, (Ints{3, -3, leastInt}));
    EXPECT_TRUE(other.createBody(first, "next", id));
    EXPECT_EQ(id, 3) << "the deleted body's id is not given again";
    EXPECT_FALSE(other.findPart("old", old));
}

TEST_F(LocationModel, BadStatesLeaveTheModelAlone)
{
    const std::string state = model.state();
    for (const std::string& bad : {std::string(), std::string("state"), state.substr(0, state.size() - 1),
                                   state.substr(1), state + state, std::string(100000, '\0')})
        EXPECT_FALSE(model.reset(bad));
    EXPECT_EQ(model.state(), state);
    EXPECT_TRUE(model.findBody(first, "core", id));
    EXPECT_TRUE(model.reset(state));
}

// ---- ids -----------------------------------------------------------------------------

template <class Exception>
std::string thrownBy(const std::string& strataId)
{
    try {
        toIntId(strataId);
    } catch (const Exception& exception) {
        return exception.what();
    }
    return "nothing";
}

TEST(StrataIds, AreAnythingAndANumber)
{
    EXPECT_EQ(toStrataId('b', 12), "b12");
    EXPECT_EQ(toStrataId('f', 2147483648), "f2147483648");
    EXPECT_EQ(toIntId("b12"), 12);
    EXPECT_EQ(toIntId("p2147483647"), 2147483647);
    EXPECT_EQ(thrownBy<std::invalid_argument>(""), "invalid stoi argument");
    EXPECT_EQ(thrownBy<std::invalid_argument>("b"), "invalid stoi argument");
    EXPECT_EQ(thrownBy<std::invalid_argument>("bx"), "invalid stoi argument");
    EXPECT_EQ(thrownBy<std::invalid_argument>("b1x"), "invalid stoi argument");
    EXPECT_EQ(thrownBy<std::out_of_range>("b2147483648"), "stoi argument out of range");
}

} // namespace
