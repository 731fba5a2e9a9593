#include "support/Captured.h"
#include "support/OpenBase.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace meridyn {

using Ids = std::vector<int>;
using Texts = std::vector<std::string>;
using SortedZones = std::vector<std::pair<unsigned64, int>>;

static KelZoneCategory category(int number)
{
    return static_cast<KelZoneCategory>(number);
}

static Ids zoneIds(const KelBase& base, int number)
{
    Ids ids{-77};
    base.getZoneIds(category(number), ids);
    return ids;
}

static unsigned64 sizeOf(const KelBase& base, int zoneId, int type)
{
    unsigned64 value = 99;
    base.getZoneSizeInfo(zoneId, static_cast<KelZoneSizeType>(type), value);
    return value;
}

static std::string textOf(const KelBase& base, int zoneId, int type)
{
    std::string text = "before";
    base.getZoneStringInfo(zoneId, static_cast<KelZoneStringInfoType>(type), text);
    return text;
}

static void setRange(KelBase& base, int zoneId, unsigned64 first, unsigned64 last)
{
    base.setZoneSizeInfo(zoneId, KEL_ZONE_FIRST_ID, first);
    base.setZoneSizeInfo(zoneId, KEL_ZONE_LAST_ID, last);
}

/// Nothing on standard output, nothing in the message store.
template <class Action>
static void expectSilence(KelBase& base, Action&& action)
{
    EXPECT_EQ(printedBy(action), "");
    EXPECT_FALSE(base.hasError() || base.hasWarning() || base.hasInfo());
}

TEST(Zones, FreshObjectHasNone)
{
    OpenBase base;
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(base.getNumZones(category(i)), 0u) << i;
        EXPECT_EQ(zoneIds(base, i), Ids()) << i;
    }
    EXPECT_EQ(base.getZoneCategory(1), -1);
}

TEST(Zones, IdsKeepTheirOrder)
{
    OpenBase base;
    expectSilence(base, [&] { base.setZoneIds(KEL_FACE_ZONE, {3, 1, 2}); });
    EXPECT_EQ(zoneIds(base, 2), (Ids{3, 1, 2}));
    EXPECT_EQ(base.getNumZones(KEL_FACE_ZONE), 3u);
}

TEST(Zones, AnyIntIsAnId)
{
    OpenBase base;
    base.setZoneIds(KEL_NODE_ZONE, {0, -1, INT_MAX, INT_MIN});
    EXPECT_EQ(zoneIds(base, 0), (Ids{0, -1, INT_MAX, INT_MIN}));
    setRange(base, INT_MIN, 1, 5);
    EXPECT_EQ(sizeOf(base, INT_MIN, 2), 5u);
    EXPECT_EQ(base.getZoneCategory(-1), KEL_NODE_ZONE);
}

TEST(Zones, EachCategoryHasItsOwn)
{
    OpenBase base;
    base.setZoneIds(KEL_NODE_ZONE, {1});
    base.setZoneIds(KEL_EDGE_ZONE, {2});
    base.setZoneIds(KEL_FACE_ZONE, {3});
    base.setZoneIds(KEL_CELL_ZONE, {4});
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(zoneIds(base, i), (Ids{i + 1}));
        EXPECT_EQ(base.getZoneCategory(i + 1), i);
    }
}

TEST(Zones, RepeatedIdChangesNothing)
{
    OpenBase base;
    EXPECT_EQ(printedBy([&] {
                  base.setZoneIds(KEL_FACE_ZONE, {5, 7, 5});
              }),
              "Warning: KelBase::setZoneIds: Repeated Id supplied.\n");
    EXPECT_EQ(zoneIds(base, 2), Ids());
    EXPECT_EQ(base.getZoneCategory(5), -1);
    EXPECT_EQ(base.getZoneCategory(7), -1);
    EXPECT_FALSE(base.hasWarning());
}

TEST(Zones, IdOfAnotherCategoryChangesNothing)
{
    OpenBase base;
    base.setZoneIds(KEL_FACE_ZONE, {5});
    base.setZoneIds(KEL_CELL_ZONE, {8});
    EXPECT_EQ(printedBy([&] {
                  base.setZoneIds(KEL_CELL_ZONE, {9, 5, 10});
              }),
              "Warning: KelBase::setZoneIds: Unable to define with Id '5' as it is already in use.\n");
    EXPECT_EQ(zoneIds(base, 3), (Ids{8}));
    EXPECT_EQ(base.getZoneCategory(9), -1);
    EXPECT_EQ(base.getZoneCategory(5), KEL_FACE_ZONE);
    EXPECT_FALSE(base.hasWarning());
}

TEST(Zones, IdOfAnyOtherNumberButMinus1IsInUse)
{
    OpenBase base;
    for (const int declared : {-2, 4, 7, INT_MAX, INT_MIN}) {
        base.setZoneCategory({5}, category(declared));
        EXPECT_EQ(printedBy([&] { base.setZoneIds(KEL_FACE_ZONE, {5}); }),
                  "Warning: KelBase::setZoneIds: Unable to define with Id '5' as it is already in use.\n")
            << declared;
        EXPECT_EQ(base.getZoneCategory(5), declared);
    }
    base.setZoneCategory({5}, category(-1));
    expectSilence(base, [&] { base.setZoneIds(KEL_FACE_ZONE, {5}); });
    EXPECT_EQ(base.getZoneCategory(5), KEL_FACE_ZONE);
}

TEST(Zones, FirstOffenderInGivenOrderIsNamed)
{
    OpenBase base;
    base.setZoneIds(KEL_FACE_ZONE, {-5, 6});
    EXPECT_EQ(printedBy([&] {
                  base.setZoneIds(KEL_CELL_ZONE, {6, -5});
              }),
              "Warning: KelBase::setZoneIds: Unable to define with Id '6' as it is already in use.\n");
    EXPECT_EQ(printedBy([&] {
                  base.setZoneIds(KEL_CELL_ZONE, {-5, 6});
              }),
              "Warning: KelBase::setZoneIds: Unable to define with Id '-5' as it is already in use.\n");
}

TEST(Zones, BadCategoryIsReportedAfterABadList)
{
    OpenBase base;
    base.setZoneIds(KEL_FACE_ZONE, {5});
    for (const int bad : {-1, 4, INT_MAX, INT_MIN}) {
        EXPECT_EQ(printedBy([&] {
                      base.setZoneIds(category(bad), {1, 1});
                  }),
                  "Warning: KelBase::setZoneIds: Repeated Id supplied.\n");
        EXPECT_EQ(printedBy([&] {
                      base.setZoneIds(category(bad), {1, 5});
                  }),
                  "Warning: KelBase::setZoneIds: Unable to define with Id '5' as it is already in use.\n");
        EXPECT_EQ(printedBy([&] { base.setZoneIds(category(bad), {1}); }),
                  "Warning: KelBase::setZoneIds: Invalid ZoneCategory.\n");
        EXPECT_EQ(base.getZoneCategory(1), -1);
    }
}

TEST(Zones, BadCategoryHasNoZones)
{
    OpenBase base;
    base.setZoneIds(KEL_CELL_ZONE, {1});
    for (const int bad : {-1, 4, INT_MAX, INT_MIN}) {
        unsigned64 count = 9;
        Ids ids{1, 2};
        EXPECT_EQ(printedBy([&] { count = base.getNumZones(category(bad)); }),
                  "Warning: KelBase::getNumZones: Invalid ZoneCategory.\n");
        EXPECT_EQ(printedBy([&] { base.getZoneIds(category(bad), ids); }),
                  "Warning: KelBase::getZoneIds: Invalid ZoneCategory.\n");
        EXPECT_EQ(count, 0u);
        EXPECT_EQ(ids, Ids());
    }
    EXPECT_FALSE(base.hasWarning());
}

TEST(Zones, EmptyListDropsAllZonesOfTheCategory)
{
    OpenBase base;
    base.setZoneIds(KEL_FACE_ZONE, {1, 2});
    expectSilence(base, [&] { base.setZoneIds(KEL_FACE_ZONE, {}); });
    EXPECT_EQ(base.getNumZones(KEL_FACE_ZONE), 0u);
    EXPECT_EQ(base.getZoneCategory(1), KEL_FACE_ZONE);
}

TEST(Zones, RedefiningLosesEveryValue)
{
    OpenBase base;
    base.setZoneIds(KEL_FACE_ZONE, {1, 2, 3});
    setRange(base, 1, 11, 20);
    base.setZoneSizeInfo(1, KEL_ZONE_EXTRA_SIZE, 7);
    base.setZoneStringInfo(1, KEL_ZONE_STRING_0, "wall");
    base.setZoneStringInfo(1, KEL_ZONE_STRING_1, "kind");
    base.setZoneIds(KEL_FACE_ZONE, {1, 2});
    for (int type = 0; type < 4; ++type) {
        EXPECT_EQ(sizeOf(base, 1, type), 0u) << type;
    }
    EXPECT_EQ(textOf(base, 1, 0), "");
    EXPECT_EQ(textOf(base, 1, 1), "");
}

TEST(Zones, DroppedIdKeepsItsCategoryAndAnswersNothing)
{
    OpenBase base;
    base.setZoneIds(KEL_FACE_ZONE, {1, 2, 3});
    setRange(base, 3, 5, 6);
    base.setZoneIds(KEL_FACE_ZONE, {1, 2});
    EXPECT_EQ(base.getZoneCategory(3), KEL_FACE_ZONE);
    expectSilence(base, [&] {
        setRange(base, 3, 7, 8);
        base.setZoneStringInfo(3, KEL_ZONE_STRING_0, "x");
        base.setZoneSizeInfo(3, static_cast<KelZoneSizeType>(9), 1); // also with a bad type
        base.setZoneStringInfo(3, static_cast<KelZoneStringInfoType>(9), "x");
        for (int type = -1; type < 5; ++type) {
            EXPECT_EQ(sizeOf(base, 3, type), 0u);
            EXPECT_EQ(textOf(base, 3, type), "");
        }
    });
    EXPECT_EQ(printedBy([&] { base.setZoneIds(KEL_CELL_ZONE, {3}); }), // kept: it is still taken
              "Warning: KelBase::setZoneIds: Unable to define with Id '3' as it is already in use.\n");
    base.setZoneIds(KEL_FACE_ZONE, {3});
    EXPECT_EQ(sizeOf(base, 3, 0), 0u);
}

TEST(Zones, CategoriesCanBeDeclaredWithoutChecksAndWithoutTables)
{
    OpenBase base;
    base.setZoneIds(KEL_FACE_ZONE, {1});
    setRange(base, 1, 4, 6);
    expectSilence(base, [&] {
        base.setZoneCategory({1, 2, 2}, KEL_CELL_ZONE);
        base.setZoneCategory({8}, category(12));
        base.setZoneCategory({9}, category(-1));
    });
    EXPECT_EQ(base.getZoneCategory(1), KEL_CELL_ZONE);
    EXPECT_EQ(base.getZoneCategory(2), KEL_CELL_ZONE);
    EXPECT_EQ(base.getZoneCategory(8), 12);
    EXPECT_EQ(zoneIds(base, 2), (Ids{1}));
    EXPECT_EQ(zoneIds(base, 3), Ids());
    EXPECT_EQ(sizeOf(base, 1, 0), 0u); // asked of the cell table, which does not have it
    EXPECT_EQ(printedBy([&] { sizeOf(base, 8, 0); }), "Warning: KelBase::getZoneSizeInfo: Invalid zone id (8).\n");
    base.setZoneIds(KEL_NODE_ZONE, {9}); // -1 does not count as a category
    EXPECT_EQ(base.getZoneCategory(9), KEL_NODE_ZONE);
}

TEST(ZoneSizes, AreKeptPerZone)
{
    OpenBase base;
    base.setZoneIds(KEL_CELL_ZONE, {4, 2});
    expectSilence(base, [&] {
        setRange(base, 4, 11, 20);
        base.setZoneSizeInfo(4, KEL_ZONE_EXTRA_SIZE, 33);
        setRange(base, 2, 21, 21);
    });
    EXPECT_EQ(sizeOf(base, 4, 0), 11u);
    EXPECT_EQ(sizeOf(base, 4, 1), 20u);
    EXPECT_EQ(sizeOf(base, 4, 2), 10u);
    EXPECT_EQ(sizeOf(base, 4, 3), 33u);
    EXPECT_EQ(sizeOf(base, 2, 2), 1u);
    EXPECT_EQ(sizeOf(base, 2, 3), 0u);
}

TEST(ZoneSizes, ElementCountIsDerived)
{
    OpenBase base;
    base.setZoneIds(KEL_NODE_ZONE, {1});
    base.setZoneSizeInfo(1, KEL_ZONE_LAST_ID, 20);
    EXPECT_EQ(sizeOf(base, 1, 2), 0u); // no first id
    setRange(base, 1, UINT64_C(5000000000), UINT64_C(9000000000));
    EXPECT_EQ(sizeOf(base, 1, 2), UINT64_C(4000000001));
    setRange(base, 1, 1, UINT64_MAX);
    EXPECT_EQ(sizeOf(base, 1, 2), UINT64_MAX);
    setRange(base, 1, 20, 11); // kept: not checked, wraps
    EXPECT_EQ(sizeOf(base, 1, 2), UINT64_MAX - 7);
    setRange(base, 1, 20, 19);
    EXPECT_EQ(sizeOf(base, 1, 2), 0u);
}

TEST(ZoneSizes, UnknownIdIsReportedOnStandardOutput)
{
    OpenBase base;
    base.setZoneIds(KEL_CELL_ZONE, {1});
    for (const int type : {0, 1, 2, 3, -1, 4}) { // the id comes before the type
        EXPECT_EQ(printedBy([&] { base.setZoneSizeInfo(999, static_cast<KelZoneSizeType>(type), 1); }),
                  "Warning: KelBase::setZoneSizeInfo: Invalid zone id (999).\n");
        unsigned64 value = 5;
        EXPECT_EQ(printedBy([&] { base.getZoneSizeInfo(-3, static_cast<KelZoneSizeType>(type), value); }),
                  "Warning: KelBase::getZoneSizeInfo: Invalid zone id (-3).\n");
        EXPECT_EQ(value, 0u);
    }
    EXPECT_FALSE(base.hasWarning());
}

TEST(ZoneSizes, UnknownTypePostsAWarningAndChangesNothing)
{
    OpenBase base;
    base.setZoneIds(KEL_EDGE_ZONE, {1});
    setRange(base, 1, 3, 4);
    for (const int type : {2, 4, -1, INT_MAX, INT_MIN}) {
        EXPECT_EQ(printedBy([&] { base.setZoneSizeInfo(1, static_cast<KelZoneSizeType>(type), 10); }), "");
        EXPECT_EQ(base.getWarnings(true, true), (Texts{"Warning:\n\tInvalid ZoneSizeType."})) << type;
        EXPECT_EQ(sizeOf(base, 1, 2), 2u);
    }
    for (const int type : {4, -1, INT_MAX, INT_MIN}) {
        EXPECT_EQ(printedBy([&] { EXPECT_EQ(sizeOf(base, 1, type), 0u); }), "");
        EXPECT_EQ(base.getWarnings(false, true), (Texts{"Invalid ZoneSizeType."})) << type;
    }
    EXPECT_FALSE(base.hasError());
}

TEST(ZoneTexts, AreKeptPerZone)
{
    OpenBase base;
    base.setZoneIds(KEL_FACE_ZONE, {1, 2});
    EXPECT_EQ(textOf(base, 1, 0), "");
    const std::string bytes("a\0\n\xff", 4);
    expectSilence(base, [&] {
        base.setZoneStringInfo(1, KEL_ZONE_STRING_0, "inlet");
        base.setZoneStringInfo(1, KEL_ZONE_STRING_1, bytes);
    });
    EXPECT_EQ(textOf(base, 1, 0), "inlet");
    EXPECT_EQ(textOf(base, 1, 1), bytes);
    EXPECT_EQ(textOf(base, 2, 0), "");
}

TEST(ZoneTexts, UnknownIdIsSilentWhenSetAndReportedWhenGot)
{
    OpenBase base;
    expectSilence(base, [&] { // kept: the setter says nothing
        base.setZoneStringInfo(999, KEL_ZONE_STRING_0, "x");
        base.setZoneStringInfo(999, static_cast<KelZoneStringInfoType>(7), "x");
    });
    std::string text = "before";
    EXPECT_EQ(printedBy([&] { base.getZoneStringInfo(999, KEL_ZONE_STRING_0, text); }),
              "Warning: KelBase::getZoneStringInfo: Invalid zone id (999).\n");
    EXPECT_EQ(text, "before"); // kept: not emptied
}

TEST(ZoneTexts, UnknownTypePostsAWarning)
{
    OpenBase base;
    base.setZoneIds(KEL_FACE_ZONE, {1});
    base.setZoneStringInfo(1, KEL_ZONE_STRING_0, "a");
    base.setZoneStringInfo(1, KEL_ZONE_STRING_1, "b");
    for (const int type : {2, -1, INT_MAX, INT_MIN}) {
        EXPECT_EQ(printedBy([&] { base.setZoneStringInfo(1, static_cast<KelZoneStringInfoType>(type), "x"); }), "");
        EXPECT_EQ(base.getWarnings(true, true), (Texts{"Warning:\n\tInvalid ZoneStringInfoType."})) << type;
        EXPECT_EQ(printedBy([&] { EXPECT_EQ(textOf(base, 1, type), ""); }), "");
        EXPECT_EQ(base.getWarnings(false, true), (Texts{"Invalid ZoneStringInfoType."})) << type;
    }
    EXPECT_EQ(textOf(base, 1, 0), "a");
    EXPECT_EQ(textOf(base, 1, 1), "b");
}

TEST(SortedZones, AreInOrderOfTheirFirstIds)
{
    OpenBase base;
    base.setZoneIds(KEL_FACE_ZONE, {7, 8, 9});
    base.setZoneSizeInfo(7, KEL_ZONE_FIRST_ID, 21);
    base.setZoneSizeInfo(8, KEL_ZONE_FIRST_ID, UINT64_C(6000000000));
    base.setZoneSizeInfo(9, KEL_ZONE_FIRST_ID, 1);
    SortedZones zones;
    base.getSortedMinIdZoneId(KEL_FACE_ZONE, zones);
    EXPECT_EQ(zones, (SortedZones{{1, 9}, {21, 7}, {UINT64_C(6000000000), 8}}));
}

TEST(SortedZones, EqualFirstIdsShareASlotAndTheLaterOneWins)
{
    OpenBase base;
    base.setZoneIds(KEL_CELL_ZONE, {1, 2, 3, 4});
    const unsigned64 firsts[] = {5, 9, 5, 9};
    for (int i = 0; i < 4; ++i) {
        base.setZoneSizeInfo(i + 1, KEL_ZONE_FIRST_ID, firsts[i]);
    }
    SortedZones zones{{70, 70}, {71, 71}, {72, 72}}; // shorter than the answer
    base.getSortedMinIdZoneId(KEL_CELL_ZONE, zones);
    EXPECT_EQ(zones, (SortedZones{{5, 3}, {71, 71}, {9, 4}, {0, 0}})); // kept: slot 1 as it was, slot 3 fresh
}

TEST(SortedZones, ListIsCutToTheNumberOfZones)
{
    OpenBase base;
    base.setZoneIds(KEL_NODE_ZONE, {6});
    SortedZones zones{{1, 1}, {2, 2}};
    base.getSortedMinIdZoneId(KEL_NODE_ZONE, zones);
    EXPECT_EQ(zones, (SortedZones{{0, 6}}));
    base.getSortedMinIdZoneId(KEL_EDGE_ZONE, zones);
    EXPECT_EQ(zones, SortedZones());
}

TEST(SortedZones, BadCategoryLeavesTheListAloneSilently)
{
    OpenBase base;
    SortedZones zones{{1, 2}};
    for (const int bad : {-1, 4, INT_MAX, INT_MIN}) {
        expectSilence(base, [&] { base.getSortedMinIdZoneId(category(bad), zones); });
        EXPECT_EQ(zones, (SortedZones{{1, 2}}));
    }
}

TEST(ZoneObjects, AreIndependent)
{
    OpenBase one;
    OpenBase other;
    one.setZoneIds(KEL_FACE_ZONE, {1});
    one.setZoneSizeInfo(1, KEL_ZONE_ELEMENT_COUNT, 1); // posts to its own store
    EXPECT_TRUE(one.hasWarning());
    EXPECT_FALSE(other.hasWarning());
    EXPECT_EQ(other.getZoneCategory(1), -1);
}

} // namespace meridyn
