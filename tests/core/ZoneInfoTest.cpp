#include "support/Captured.h"
#include "support/OpenBase.h"

#include <gtest/gtest.h>

#include <climits>
#include <list>
#include <string>
#include <vector>

namespace meridyn {

using Texts = std::vector<std::string>;

// Zones: 10 node, 20 edge, 30 face, 40 cell; of each category one more (11, 21, 31, 41) that a redefinition dropped.
class ZoneInfo : public ::testing::Test {
protected:
    ZoneInfo()
    {
        base.setZoneIds(KEL_NODE_ZONE, {10, 11});
        base.setZoneIds(KEL_EDGE_ZONE, {20, 21});
        base.setZoneIds(KEL_FACE_ZONE, {30, 31});
        base.setZoneIds(KEL_CELL_ZONE, {40, 41});
        base.setZoneIds(KEL_NODE_ZONE, {10});
        base.setZoneIds(KEL_EDGE_ZONE, {20});
        base.setZoneIds(KEL_FACE_ZONE, {30});
        base.setZoneIds(KEL_CELL_ZONE, {40});
    }

    OpenBase base;
};

/// The four pairs of operations behind one signature.
struct InfoRow {
    const char* name;
    void (*set)(const OpenBase& reader, OpenBase& base, int zoneId, int type, int value);
    void (*get)(const OpenBase& base, int zoneId, int type, int& value);
    int zoneId;               ///< of the category
    int droppedId;            ///< of the category, and not in its table
    std::vector<int> fresh;   ///< values of a fresh zone by type
    int dropped;              ///< answer for a dropped zone
    int unknownType;          ///< answer for an unknown type
    const char* setInvalidId; ///< texts up to the id
    const char* getInvalidId;
    const char* setInvalidType; ///< printed lines, empty where a record is posted
    const char* getInvalidType;
    std::vector<int> badSetTypes;
};

// clang-format off
static const InfoRow infoRows[] = {
    {"Node",
     [](const OpenBase& b, OpenBase&, int id, int type, int v) { b.setNodeZoneInfo(id, static_cast<KelNodeZoneInfoType>(type), v); },
     [](const OpenBase& b, int id, int type, int& v) { b.getNodeZoneInfo(id, static_cast<KelNodeZoneInfoType>(type), v); },
     10, 11, {-1}, -1, -1,
     "Warning: KelBase::setNodeZoneInfo: Invalid node-zone id (",
     "Warning: KelBase::getNodeZoneInfo: Invalid node-zone id (",
     "Warning: KelUtility::setNodeZoneInfo: Invalid ZoneInfoType.\n",
     "Warning: KelUtility::setNodeZoneInfo: Invalid ZoneInfoType.\n", // kept: the setter's text
     {1, 2}},
    {"Edge",
     [](const OpenBase&, OpenBase& b, int id, int type, int v) { b.setEdgeZoneInfo(id, static_cast<KelEdgeZoneInfoType>(type), v); },
     [](const OpenBase& b, int id, int type, int& v) { b.getEdgeZoneInfo(id, static_cast<KelEdgeZoneInfoType>(type), v); },
     20, 21, {-1, -1}, 0, 0,
     "Warning: KelBase::setEdgeZoneInfo: Invalid cell-zone id (", // kept: says cell-zone
     "Warning: KelBase::getEdgeZoneInfo: Invalid edge-zone id (",
     "", "",
     {2, 3}},
    {"Face",
     [](const OpenBase& b, OpenBase&, int id, int type, int v) { b.setFaceZoneInfo(id, static_cast<KelFaceZoneInfoType>(type), v); },
     [](const OpenBase& b, int id, int type, int& v) { b.getFaceZoneInfo(id, static_cast<KelFaceZoneInfoType>(type), v); },
     30, 31, {-1, 0, 0, 0, 0, -1}, 0, 0,
     "Warning: KelBase::setFaceZoneInfo: Invalid face-zone id (",
     "Warning: KelBase::getFaceZoneInfo: Invalid face-zone id (",
     "Warning: KelUtility::setFaceZoneInfo: Invalid ZoneInfoType.\n",
     "Warning: KelUtility::getFaceZoneInfo: Invalid ZoneInfoType.\n",
     {8, 9}}, // 6 and 7 can be set
    {"Cell",
     [](const OpenBase&, OpenBase& b, int id, int type, int v) { b.setCellZoneInfo(id, static_cast<KelCellZoneInfoType>(type), v); },
     [](const OpenBase& b, int id, int type, int& v) { b.getCellZoneInfo(id, static_cast<KelCellZoneInfoType>(type), v); },
     40, 41, {-1, 0}, -1, -1,
     "Warning: KelBase::setCellZoneInfo: Invalid cell-zone id (",
     "Warning: KelBase::getCellZoneInfo: Invalid cell-zone id (",
     "Warning: KelUtility::setCellZoneInfo: Invalid ZoneInfoType.\n",
     "Warning: KelUtility::getCellZoneInfo: Invalid ZoneInfoType.\n",
     {2, 3}},
};
// clang-format on

static int valueOf(const InfoRow& row, const OpenBase& base, int zoneId, int type)
{
    int value = 1234;
    row.get(base, zoneId, type, value);
    return value;
}

static std::string invalidId(const char* text, int zoneId)
{
    return text + std::to_string(zoneId) + ").\n";
}

TEST_F(ZoneInfo, FreshZoneHasTheDefaults)
{
    for (const InfoRow& row : infoRows) {
        for (std::size_t type = 0; type < row.fresh.size(); ++type) {
            EXPECT_EQ(valueOf(row, base, row.zoneId, static_cast<int>(type)), row.fresh[type]) << row.name << type;
        }
    }
}

TEST_F(ZoneInfo, EveryTypeIsKeptOnItsOwn)
{
    for (const InfoRow& row : infoRows) {
        const int count = static_cast<int>(row.fresh.size());
        const std::string printed = printedBy([&] {
            for (int type = 0; type < count; ++type) {
                row.set(base, base, row.zoneId, type, 100 + type);
            }
            for (int type = 0; type < count; ++type) {
                EXPECT_EQ(valueOf(row, base, row.zoneId, type), 100 + type) << row.name << type;
            }
        });
        EXPECT_EQ(printed, "") << row.name;
    }
    EXPECT_FALSE(base.hasWarning() || base.hasError());
}

TEST_F(ZoneInfo, OnlyValue0OfFacesAndCellsIs16BitsWide)
{
    const struct {
        int value;
        int narrow;
    } values[] = {{70000, 4464},   {32767, 32767}, {32768, -32768}, {65535, -1},
                  {-32769, 32767}, {INT_MAX, -1},  {INT_MIN, 0}};
    for (const InfoRow& row : infoRows) {
        const bool isNarrow = row.zoneId == 30 || row.zoneId == 40;
        for (std::size_t type = 0; type < row.fresh.size(); ++type) {
            for (const auto& [value, narrow] : values) {
                row.set(base, base, row.zoneId, static_cast<int>(type), value);
                EXPECT_EQ(valueOf(row, base, row.zoneId, static_cast<int>(type)),
                          isNarrow && type == 0 ? narrow : value)
                    << row.name << type << ": " << value;
            }
        }
    }
}

TEST_F(ZoneInfo, IdOfNoSuchZoneIsReportedAndChangesNothing)
{
    for (const InfoRow& row : infoRows) {
        for (const int id : {10, 20, 30, 40, 999, -999}) {
            if (id == row.zoneId) {
                continue;
            }
            for (const int type : {0, 99}) { // the id comes before the type
                EXPECT_EQ(printedBy([&] { row.set(base, base, id, type, 5); }), invalidId(row.setInvalidId, id));
                EXPECT_EQ(printedBy([&] { EXPECT_EQ(valueOf(row, base, id, type), -1); }),
                          invalidId(row.getInvalidId, id));
            }
        }
    }
    for (const InfoRow& row : infoRows) {
        EXPECT_EQ(valueOf(row, base, row.zoneId, 0), -1) << row.name;
    }
    EXPECT_FALSE(base.hasWarning() || base.hasError());
}

TEST_F(ZoneInfo, DroppedZoneTakesNothingSilently)
{
    for (const InfoRow& row : infoRows) {
        for (const int type : {0, 99, -1}) { // the table comes before the type
            EXPECT_EQ(printedBy([&] {
                          row.set(base, base, row.droppedId, type, 5);
                          EXPECT_EQ(valueOf(row, base, row.droppedId, type), row.dropped) << row.name;
                      }),
                      "");
        }
    }
    EXPECT_FALSE(base.hasWarning() || base.hasError());
}

TEST_F(ZoneInfo, UnknownTypeIsReportedAndChangesNothing)
{
    for (const InfoRow& row : infoRows) {
        std::vector<int> badTypes = row.badSetTypes;
        badTypes.insert(badTypes.end(), {-1, INT_MAX, INT_MIN});
        for (const int type : badTypes) {
            EXPECT_EQ(printedBy([&] { row.set(base, base, row.zoneId, type, 5); }), row.setInvalidType) << row.name;
            EXPECT_EQ(base.hasWarning(), row.zoneId == 20) << row.name;
            EXPECT_EQ(base.getWarnings(true, true),
                      row.zoneId == 20 ? (Texts{"Warning:\n\tInvalid ZoneInfoType."}) : Texts());
            EXPECT_EQ(printedBy([&] { EXPECT_EQ(valueOf(row, base, row.zoneId, type), row.unknownType) << row.name; }),
                      row.getInvalidType);
            EXPECT_EQ(base.getWarnings(false, true), row.zoneId == 20 ? (Texts{"Invalid ZoneInfoType."}) : Texts());
        }
        for (std::size_t type = 0; type < row.fresh.size(); ++type) {
            EXPECT_EQ(valueOf(row, base, row.zoneId, static_cast<int>(type)), row.fresh[type]) << row.name << type;
        }
    }
    EXPECT_FALSE(base.hasError());
}

TEST_F(ZoneInfo, FaceTypes6And7CanBeSetButNotGot)
{
    for (const int type : {6, 7}) {
        int value = 5;
        EXPECT_EQ(printedBy([&] { base.setFaceZoneInfo(30, static_cast<KelFaceZoneInfoType>(type), 12); }), "");
        EXPECT_EQ(printedBy([&] { base.getFaceZoneInfo(30, static_cast<KelFaceZoneInfoType>(type), value); }),
                  "Warning: KelUtility::getFaceZoneInfo: Invalid ZoneInfoType.\n");
        EXPECT_EQ(value, 0);
    }
}

TEST_F(ZoneInfo, RedefiningResetsEveryValue)
{
    for (const InfoRow& row : infoRows) {
        for (std::size_t type = 0; type < row.fresh.size(); ++type) {
            row.set(base, base, row.zoneId, static_cast<int>(type), 5);
        }
    }
    base.setAllFaceZoneFlags(30, 127);
    base.setFaceCellZone0Ids({{30, {40}}});
    base.setFaceCellZone1Ids({{30, {40}}});
    base.setCellFaceZoneIds({{40, {30}}});
    base.setZoneIds(KEL_NODE_ZONE, {10});
    base.setZoneIds(KEL_EDGE_ZONE, {20});
    base.setZoneIds(KEL_FACE_ZONE, {30});
    base.setZoneIds(KEL_CELL_ZONE, {40});
    for (const InfoRow& row : infoRows) {
        for (std::size_t type = 0; type < row.fresh.size(); ++type) {
            EXPECT_EQ(valueOf(row, base, row.zoneId, static_cast<int>(type)), row.fresh[type]) << row.name << type;
        }
    }
    int flags = 1;
    base.getAllFaceZoneFlags(30, flags);
    EXPECT_EQ(flags, 0);
    std::list<int> ids{1};
    base.getFaceCellZone0Ids(30, ids);
    EXPECT_TRUE(ids.empty());
    base.getFaceCellZone1Ids(30, ids);
    EXPECT_TRUE(ids.empty());
    base.getCellFaceZoneIds(40, ids);
    EXPECT_TRUE(ids.empty());
}

// ---- kinds -----------------------------------------------------------------------

static int faceType(const KelBase& base, int zoneId)
{
    auto type = static_cast<KelFaceZoneType>(77);
    base.getFaceZoneType(zoneId, type);
    return type;
}

static int edgeType(const KelBase& base, int zoneId)
{
    auto type = static_cast<KelEdgeZoneType>(77);
    base.getEdgeZoneType(zoneId, type);
    return type;
}

TEST_F(ZoneInfo, KindIsOneOfTheNumbers)
{
    EXPECT_EQ(faceType(base, 30), -1);
    EXPECT_EQ(edgeType(base, 20), -1);
    int value = 0;
    for (const int kind : {3, 0, INT_MAX, INT_MIN}) {
        base.setFaceZoneType(30, static_cast<KelFaceZoneType>(kind));
        base.getFaceZoneInfo(30, KEL_FACE_ZONE_INFO_TYPE, value);
        EXPECT_EQ(value, kind);
        base.setEdgeZoneType(20, static_cast<KelEdgeZoneType>(kind));
        base.getEdgeZoneInfo(20, KEL_EDGE_ZONE_INFO_0, value);
        EXPECT_EQ(value, kind);
    }
    base.setFaceZoneInfo(30, KEL_FACE_ZONE_INFO_TYPE, 8);
    base.setEdgeZoneInfo(20, KEL_EDGE_ZONE_INFO_0, 9);
    base.setEdgeZoneInfo(20, KEL_EDGE_ZONE_INFO_1, 10);
    EXPECT_EQ(faceType(base, 30), 8);
    EXPECT_EQ(edgeType(base, 20), 9);
}

TEST_F(ZoneInfo, KindOfAnotherCategoryIsSilentWhenSetAndReportedWhenGot)
{
    for (const int id : {10, 40, 999}) {
        EXPECT_EQ(printedBy([&] { // kept: the setters say nothing
                      base.setFaceZoneType(id, KEL_FACE_ZONE_TYPE_WALL);
                      base.setEdgeZoneType(id, KEL_EDGE_ZONE_TYPE_FEATURE);
                  }),
                  "");
        EXPECT_EQ(printedBy([&] { EXPECT_EQ(faceType(base, id), -1); }),
                  invalidId("Warning: KelBase::getFaceZoneType: Invalid face-zone id (", id));
        EXPECT_EQ(printedBy([&] { EXPECT_EQ(edgeType(base, id), -1); }),
                  invalidId("Warning: KelBase::getEdgeZoneType: Invalid edge-zone id (", id));
    }
    EXPECT_FALSE(base.hasWarning());
}

TEST_F(ZoneInfo, KindOfADroppedZoneIs0)
{
    EXPECT_EQ(printedBy([&] {
                  base.setFaceZoneType(31, KEL_FACE_ZONE_TYPE_WALL);
                  base.setEdgeZoneType(21, KEL_EDGE_ZONE_TYPE_FEATURE);
                  EXPECT_EQ(faceType(base, 31), 0);
                  EXPECT_EQ(edgeType(base, 21), 0);
              }),
              "");
}

TEST_F(ZoneInfo, KindIsNotSetThroughATableOfAnotherCategory)
{
    base.setZoneCategory({30}, KEL_CELL_ZONE);
    base.setFaceZoneType(30, KEL_FACE_ZONE_TYPE_INLET);
    base.setZoneCategory({30}, KEL_FACE_ZONE);
    EXPECT_EQ(faceType(base, 30), -1);
}

// ---- flags -----------------------------------------------------------------------

static int flagsOf(const KelBase& base, int zoneId)
{
    int flags = 77;
    base.getAllFaceZoneFlags(zoneId, flags);
    return flags;
}

TEST_F(ZoneInfo, PropertiesAreBits)
{
    int expected = 0;
    for (int property = 0; property < 7; ++property) {
        const auto prop = static_cast<KelFaceZonePropType>(property);
        EXPECT_FALSE(base.getFaceZoneProp(30, prop)) << property;
        base.setFaceZoneProp(30, prop);
        base.setFaceZoneProp(30, prop); // once more changes nothing
        expected |= 1 << property;
        EXPECT_TRUE(base.getFaceZoneProp(30, prop)) << property;
        EXPECT_EQ(flagsOf(base, 30), expected);
    }
    base.setAllFaceZoneFlags(30, 0);
    EXPECT_FALSE(base.getFaceZoneProp(30, KEL_FACE_ZONE_PROP_3));
    base.setFaceZoneProp(30, KEL_FACE_ZONE_PROP_3);
    EXPECT_EQ(flagsOf(base, 30), 8);
}

TEST_F(ZoneInfo, AllFlagsAreKept)
{
    for (const int flags : {-1, INT_MIN, 1 << 7, INT_MAX}) {
        base.setAllFaceZoneFlags(30, flags);
        EXPECT_EQ(flagsOf(base, 30), flags);
    }
    base.setAllFaceZoneFlags(30, INT_MIN);
    base.setFaceZoneProp(30, KEL_FACE_ZONE_PROP_0);
    EXPECT_EQ(flagsOf(base, 30), INT_MIN + 1);
}

TEST_F(ZoneInfo, PropertyOfNoFaceZoneIsReported)
{
    for (const int id : {40, 999}) {
        for (const int property : {0, 7}) { // the id comes before the property
            const auto prop = static_cast<KelFaceZonePropType>(property);
            EXPECT_EQ(printedBy([&] { base.setFaceZoneProp(id, prop); }),
                      invalidId("Warning: KelBase::setFaceZoneProp: Invalid face-zone id (", id));
            EXPECT_EQ(printedBy([&] { EXPECT_FALSE(base.getFaceZoneProp(id, prop)); }),
                      invalidId("Warning: KelBase::getFaceZoneProp: Invalid face-zone id (", id));
        }
    }
    EXPECT_EQ(printedBy([&] {
                  base.setFaceZoneProp(31, static_cast<KelFaceZonePropType>(7));
                  EXPECT_FALSE(base.getFaceZoneProp(31, static_cast<KelFaceZonePropType>(7)));
              }),
              "");
}

TEST_F(ZoneInfo, UnknownPropertyIsReported)
{
    base.setAllFaceZoneFlags(30, -1 & ~1);
    for (const int property : {7, 31, 32, -1, INT_MAX, INT_MIN}) {
        const auto prop = static_cast<KelFaceZonePropType>(property);
        EXPECT_EQ(printedBy([&] { base.setFaceZoneProp(30, prop); }),
                  "Warning: KelUtility::setFaceZoneProp: Invalid ZonePropType.\n");
        EXPECT_EQ(printedBy([&] { EXPECT_FALSE(base.getFaceZoneProp(30, prop)); }),
                  "Warning: KelUtility::getFaceZoneProp: Invalid ZonePropType.\n");
        EXPECT_EQ(flagsOf(base, 30), -2);
    }
    EXPECT_FALSE(base.hasWarning());
}

TEST_F(ZoneInfo, FlagsAskTheTableAndNotTheCategory)
{
    EXPECT_EQ(printedBy([&] {
                  for (const int id : {40, 31, 999}) {
                      base.setAllFaceZoneFlags(id, 5);
                      EXPECT_EQ(flagsOf(base, id), 0) << id;
                  }
                  base.setZoneCategory({30}, KEL_CELL_ZONE);
                  base.setAllFaceZoneFlags(30, 6);
                  EXPECT_EQ(flagsOf(base, 30), 6);
              }),
              "");
}

} // namespace meridyn
