#include "KelModelDescription.h"

#include "KelBase.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace meridyn {
namespace {

/// A KelBase whose context and ids can be looked at.
class Base : public KelBase {
public:
    using KelBase::getZoneCategory;
    using KelBase::setMeshContext;
};

std::string textOf(const KelZoneDescription& zone)
{
    std::ostringstream text;
    text << zone.category << " id " << zone.id << " first " << zone.first << " last " << zone.last << " extra "
         << zone.extra << " infos";
    for (const int info : zone.infos)
        text << ' ' << info;
    text << " flags " << zone.flags << " '" << zone.texts[0] << "' '" << zone.texts[1] << "'";
    for (const auto& side : zone.neighbours) {
        text << " |";
        for (const int id : side)
            text << ' ' << id;
    }
    return text.str();
}

std::string textOf(const KelMeshDescription& mesh)
{
    std::ostringstream text;
    for (const unsigned64 size : mesh.sizes)
        text << size << ' ';
    text << "'" << mesh.units << "'\n";
    for (const KelZoneDescription& zone : mesh.zones)
        text << textOf(zone) << '\n';
    return text.str();
}

/// A mesh in which every value that a zone can have is set, and no two are the same.
KelMeshDescription fullMesh()
{
    KelMeshDescription mesh;
    const unsigned64 sizes[] = {3, 100, 200, 300, 400};
    std::copy(std::begin(sizes), std::end(sizes), mesh.sizes);
    mesh.units = "mm";
    const auto add = [&mesh](KelZoneCategory category, int id) -> KelZoneDescription& {
        KelZoneDescription zone = freshZone(category, id);
        zone.first = static_cast<unsigned64>(id) * 1000;
        zone.last = zone.first + 99;
        zone.extra = zone.first + 500;
        zone.texts[0] = "name " + std::to_string(id);
        zone.texts[1] = std::string("kind\n\0") + std::to_string(id);
        for (int type = 0; type < zoneInfoCount(category); ++type)
            zone.infos[type] = 10 * id + type;
        mesh.zones.push_back(zone);
        return mesh.zones.back();
    };
    add(KEL_NODE_ZONE, 9);
    add(KEL_NODE_ZONE, 1); // not in the order of their ids
    add(KEL_EDGE_ZONE, 2);
    KelZoneDescription& wall = add(KEL_FACE_ZONE, 3);
    wall.flags = 0x7f000005;
    wall.neighbours[0] = {5, 4};
    wall.neighbours[1] = {4};
    add(KEL_CELL_ZONE, 4).neighbours[0] = {3, 6};
    add(KEL_CELL_ZONE, 5);
    return mesh;
}

TEST(MeshDescription, WhatIsDeclaredIsDescribed)
{
    const KelMeshDescription mesh = fullMesh();
    KelBase base;
    declareMesh(base, mesh);
    EXPECT_EQ(textOf(describeMesh(base)), textOf(mesh));
    EXPECT_FALSE(base.hasError());
    EXPECT_FALSE(base.hasWarning());
}

TEST(MeshDescription, EachSingleValueIsDescribed)
{
    // One value at a time: none is described from the place of another.
    KelMeshDescription mesh = fullMesh();
    std::vector<std::string> texts = {textOf(mesh)};
    const auto expectAnother = [&](const char* what) {
        KelBase base;
        declareMesh(base, mesh);
        const std::string text = textOf(describeMesh(base));
        EXPECT_EQ(text, textOf(mesh)) << what;
        EXPECT_EQ(std::count(texts.begin(), texts.end(), text), 0) << what;
        texts.push_back(text);
    };
    for (unsigned64& size : mesh.sizes) {
        ++size;
        expectAnother("size");
    }
    for (KelZoneDescription& zone : mesh.zones) {
        for (unsigned64* number : {&zone.first, &zone.last, &zone.extra}) {
            ++*number;
            expectAnother("range");
        }
        for (int type = 0; type < zoneInfoCount(zone.category); ++type) {
            zone.infos[type] -= 7;
            expectAnother("number");
        }
        for (std::string& one : zone.texts) {
            one += "x";
            expectAnother("text");
        }
    }
}

TEST(MeshDescription, AZoneThatWasOnlyDeclaredIsFresh)
{
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE}) {
        KelBase base;
        base.setZoneIds(category, {7});
        const KelMeshDescription mesh = describeMesh(base);
        ASSERT_EQ(mesh.zones.size(), 1u);
        EXPECT_EQ(textOf(mesh.zones.front()), textOf(freshZone(category, 7))) << category;
    }
}

TEST(MeshDescription, NothingIsLeftOfTheMeshBefore)
{
    Base base;
    base.setMeshContext(4, KEL_PARTITIONED_POST, 2, KelBase::KEL_UPDATE_NONE);
    declareMesh(base, fullMesh());
    KelMeshDescription other;
    other.zones = {freshZone(KEL_CELL_ZONE, 3)}; // a face zone before
    declareMesh(base, other);
    EXPECT_EQ(textOf(describeMesh(base)), textOf(other));
    EXPECT_EQ(base.getZoneCategory(9), -1);
    EXPECT_EQ(base.getMeshId(), 4);
    EXPECT_EQ(base.getTarget(), KEL_PARTITIONED_POST);
    EXPECT_EQ(base.getPartitionId(), 2);
}

TEST(MeshDescription, ZonesAloneLeaveSizesAndUnits)
{
    KelBase base;
    declareMesh(base, fullMesh());
    declareZones(base, {freshZone(KEL_NODE_ZONE, 4)});
    KelMeshDescription expected = fullMesh();
    expected.zones = {freshZone(KEL_NODE_ZONE, 4)};
    EXPECT_EQ(textOf(describeMesh(base)), textOf(expected));
}

TEST(MeshDescription, NeighboursBelowOneStandForNoZone)
{
    KelMeshDescription mesh;
    mesh.zones = {freshZone(KEL_FACE_ZONE, 3)};
    mesh.zones[0].neighbours[0] = {0, 5, -1};
    KelBase base;
    declareMesh(base, mesh);
    EXPECT_EQ(describeMesh(base).zones[0].neighbours[0], std::vector<int>{5});
}

TEST(MeshDescription, ZonesOfNoCategoryAreLeftOut)
{
    KelMeshDescription mesh;
    mesh.zones = {freshZone(static_cast<KelZoneCategory>(4), 3), freshZone(static_cast<KelZoneCategory>(-1), 5),
                  freshZone(KEL_CELL_ZONE, 6)};
    KelBase base;
    ::testing::internal::CaptureStdout();
    declareMesh(base, mesh);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(describeMesh(base).zones.size(), 1u);
}

} // namespace
} // namespace meridyn
