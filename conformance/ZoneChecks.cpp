#include "Checks.h"

#include "formats/common/BaseAccess.h"
#include "KelValueTypes.h"

#include <limits>
#include <list>

namespace meridyn::conformance {

namespace {

// ---- zones

void zoneProperties(Case& test)
{
    const Mesh mesh = smallMesh();
    const auto writer = test.writer();
    declareMesh(*writer, mesh);
    writer->setZoneStringInfo(3, KEL_ZONE_STRING_1, "wall of glass");
    writer->setZoneSizeInfo(3, KEL_ZONE_EXTRA_SIZE, std::numeric_limits<unsigned64>::max());
    writer->setNodeZoneInfo(1, KEL_NODE_ZONE_INFO_0, -5);
    writer->setFaceZoneInfo(3, KEL_FACE_ZONE_INFO_0, -300);
    for (int type = KEL_FACE_ZONE_INFO_1; type <= KEL_FACE_ZONE_INFO_4; ++type)
        writer->setFaceZoneInfo(3, static_cast<KelFaceZoneInfoType>(type), type * 1000003);
    writer->setFaceZoneType(4, KEL_FACE_ZONE_TYPE_OUTLET);
    writer->setFaceZoneProp(3, KEL_FACE_ZONE_PROP_0);
    writer->setFaceZoneProp(3, KEL_FACE_ZONE_PROP_6);
    writer->setCellZoneInfo(11, KEL_CELL_ZONE_INFO_0, -1);
    writer->setCellZoneInfo(11, KEL_CELL_ZONE_INFO_1, std::numeric_limits<int>::lowest());
    if (!test.write(*writer, KEL_CASE, [&] { writeArrays(*writer, mesh, test.format.writes, Form::Range); }))
        return;
    const auto reader = test.reader();
    test.read(*reader, KEL_CASE, [&] {
        const auto number = [&](const char* what, int expected, int found) {
            test.same(what, std::vector<int>{expected}, {found});
        };
        std::string text;
        unsigned64 size = 0;
        int value = 0;
        reader->getZoneStringInfo(3, KEL_ZONE_STRING_1, text);
        test.same("second text of zone 3", "wall of glass", text);
        reader->getZoneSizeInfo(3, KEL_ZONE_EXTRA_SIZE, size);
        test.same("extra size of zone 3", std::numeric_limits<unsigned64>::max(), size);
        reader->getNodeZoneInfo(1, KEL_NODE_ZONE_INFO_0, value);
        number("number of the node zone", -5, value);
        reader->getFaceZoneInfo(3, KEL_FACE_ZONE_INFO_0, value);
        number("number 0 of zone 3", -300, value);
        for (int type = KEL_FACE_ZONE_INFO_1; type <= KEL_FACE_ZONE_INFO_4; ++type) {
            reader->getFaceZoneInfo(3, static_cast<KelFaceZoneInfoType>(type), value);
            number("number of zone 3", type * 1000003, value);
        }
        reader->getFaceZoneInfo(4, KEL_FACE_ZONE_INFO_TYPE, value);
        number("kind of zone 4", KEL_FACE_ZONE_TYPE_OUTLET, value);
        reader->getAllFaceZoneFlags(3, value);
        number("flags of zone 3", 1 + 64, value);
        reader->getCellZoneInfo(11, KEL_CELL_ZONE_INFO_0, value);
        number("number 0 of zone 11", -1, value);
        reader->getCellZoneInfo(11, KEL_CELL_ZONE_INFO_1, value);
        number("number 1 of zone 11", std::numeric_limits<int>::lowest(), value);
        reader->getMeshUnits(text);
        test.same("unit of the mesh", "m", text);
    });
}

void zoneNames(Case& test)
{
    Mesh mesh = boxMesh("box:2x2x20 zones:20");
    std::size_t n = 0;
    for (Zone& zone : mesh.zones)
        if (zone.category == KEL_CELL_ZONE)
            zone.name = hostileNames()[n++ % hostileNames().size()];
    roundTrip(test, mesh, nullptr, nullptr, [&](KelFileProvider& reader) { expectMesh(test, reader, mesh); });
}

/// Ids as a client may choose them; the last zone has no elements.
void zoneIdsOfAnyKind(Case& test)
{
    Mesh mesh = smallMesh();
    for (Zone& zone : mesh.zones) {
        zone.id = zone.id == 2    ? -7
                  : zone.id == 3  ? 0
                  : zone.id == 4  ? std::numeric_limits<int>::max()
                  : zone.id == 10 ? std::numeric_limits<int>::lowest()
                                  : zone.id;
    }
    mesh.zones.push_back({77, KEL_FACE_ZONE, 0, 0, "nothing here", KEL_FACE_ZONE_TYPE_INLET});
    roundTrip(test, mesh, nullptr, nullptr, [&](KelFileProvider& reader) { expectMesh(test, reader, mesh); });
}

void adjacency(Case& test)
{
    using Lists = std::map<int, std::list<int>>;
    const Mesh mesh = smallMesh();
    const Lists side0 = {{2, {10, 11}}, {3, {10}}, {4, {11, 10}}}, side1 = {{2, {11}}},
                around = {{10, {2, 3}}, {11, {4}}};
    const auto writer = test.writer();
    declareMesh(*writer, mesh);
    BaseAccess::setCellZones0(*writer, side0);
    BaseAccess::setCellZones1(*writer, side1);
    BaseAccess::setFaceZones(*writer, around);
    if (!test.write(*writer, KEL_CASE, [&] { writeArrays(*writer, mesh, test.format.writes, Form::Range); }))
        return;
    const auto reader = test.reader();
    test.read(*reader, KEL_CASE, [&] {
        const auto expectLists = [&](const char* what, const Lists& lists, auto get) {
            for (const auto& [zone, ids] : lists) {
                std::list<int> found;
                ((*reader).*get)(zone, found);
                test.same(what + std::to_string(zone), Ids(ids.begin(), ids.end()), Ids(found.begin(), found.end()));
            }
        };
        expectLists("cell zones on side 0 of zone ", side0, &KelBase::getFaceCellZone0Ids);
        expectLists("cell zones on side 1 of zone ", side1, &KelBase::getFaceCellZone1Ids);
        expectLists("face zones around zone ", around, &KelBase::getCellFaceZoneIds);
    });
}

void localIds(Case& test)
{
    const Mesh mesh = smallMesh();
    const auto idsOfZone = [](const Zone& zone) {
        std::vector<unsigned64> ids(zone.count());
        for (std::size_t n = 0; n < ids.size(); ++n)
            ids[n] = std::numeric_limits<unsigned64>::max() - static_cast<unsigned64>(zone.id) * 1000 - n;
        return ids;
    };
    const auto write = [&](KelFileConsumer& writer) {
        for (const int id : {1, 3, 11})
            writer.setLocalElemIdsInZone(id, idsOfZone(mesh.zone(id)).data(), mesh.zone(id).count());
    };
    roundTrip(test, mesh, write, nullptr, [&](KelFileProvider& reader) {
        for (const int id : {1, 3, 11}) {
            std::vector<unsigned64> found(mesh.zone(id).count() + 1);
            found.resize(reader.getLocalElemIdsInZone(id, found.data(), found.size()));
            test.same("local ids of zone " + std::to_string(id), idsOfZone(mesh.zone(id)), found);
        }
        unsigned64 none = 7;
        test.same("local ids of a zone without", 0, reader.getLocalElemIdsInZone(10, &none, 1));
    });
}

// ---- interface data

template <class T>
void interfaceData(Case& test)
{
    const std::vector<T> a = {T(0.25), T(1), T(0)}, b = {T(0.5), T(1)};
    const std::vector<unsigned64> faces0 = {1, 2, 3, 3}, faces1 = {9};
    const Mesh mesh = smallMesh();
    const auto write = [&](KelFileConsumer& writer) {
        writer.startWritingInterfaceDataForFaces({3, 4}, {5});
        writer.setInterfaceDataForFacesInZone(3, a.data(), a.size(), b.data(), b.size(), faces0.data(), faces0.size(),
                                              faces1.data(), faces1.size());
        writer.endWritingInterfaceDataForFaces();
    };
    roundTrip(test, mesh, write, nullptr, [&](KelFileProvider& reader) {
        Ids zones0, zones1;
        reader.startReadingInterfaceDataForFaces(zones0, zones1);
        test.same("zones of side 0", {3, 4}, zones0);
        test.same("zones of side 1", {5}, zones1);
        unsigned64 na = 0, nb = 0, n0 = 0, n1 = 0;
        test.expect(reader.getInterfaceDataSizesForFacesInZone(3, na, nb, n0, n1), "zone 3 has no interface data");
        test.same("lengths of the interface data", std::vector<unsigned64>{3, 2, 4, 1}, {na, nb, n0, n1});
        test.expect(!reader.getInterfaceDataSizesForFacesInZone(6, na, nb, n0, n1), "zone 6 has interface data");
        std::vector<T> foundA(3), foundB(2);
        std::vector<unsigned64> found0(4), found1(1);
        test.same("values of the interface data", 10,
                  reader.getInterfaceDataForFacesInZone(3, foundA.data(), 3, foundB.data(), 2, found0.data(), 4,
                                                        found1.data(), 1));
        test.same("shares on side 0", a, foundA);
        test.same("shares on side 1", b, foundB);
        test.same("faces of side 0", faces0, found0);
        test.same("faces of side 1", faces1, found1);
        found0.assign(4, 0);
        test.same("values of faces of side 0 alone, 2 wanted", 2,
                  reader.getInterfaceDataForFacesInZone(3, static_cast<T*>(nullptr), 0, nullptr, 0, found0.data(), 2,
                                                        nullptr, 0));
        test.same("faces of side 0, 2 wanted", {1, 2, 0, 0}, found0);
        reader.endReadingInterfaceDataForFaces();
    });
}

// ---- case sections

template <class T>
std::vector<T> sectionValues(const Zone& zone, unsigned64 size)
{
    return someValues<T>(zone.count() * size, zone.id);
}

const std::vector<std::pair<KelZoneCategory, Ids>> sectionZones = {
    {KEL_NODE_ZONE, {1}}, {KEL_FACE_ZONE, {3, 5}}, {KEL_CELL_ZONE, {10, 11}}};

/// Section number n (a type and a size) of each category.
const std::vector<std::string>& sectionNames()
{
    static const std::vector<std::string> names = [] {
        std::vector<std::string> made;
        for (int type = KEL_PLAIN_UNSIGNED_CHAR; type <= KEL_PLAIN_DOUBLE; ++type)
            made.push_back("values of type " + std::to_string(type));
        return made;
    }();
    return names;
}

unsigned64 sectionSize(int type)
{
    return type % 3 == 0 ? 3 : 1;
}

void writeSections(KelFileConsumer& writer, const Mesh& mesh)
{
    for (const auto& [category, zones] : sectionZones) {
        writer.startWritingCaseSectionCategories(category, sectionNames());
        for (int type = KEL_PLAIN_UNSIGNED_CHAR; type <= KEL_PLAIN_DOUBLE; ++type)
            visitPlainType(static_cast<KelPlainDataType>(type), [&, ids = zones](auto* null) {
                using T = std::remove_pointer_t<decltype(null)>;
                const unsigned64 size = sectionSize(type);
                writer.startWritingCaseSectionDataForCategory(sectionNames()[static_cast<std::size_t>(type)], ids,
                                                              static_cast<KelPlainDataType>(type), size);
                for (const int id : ids) {
                    const std::vector<T> values = sectionValues<T>(mesh.zone(id), size);
                    if (id % 2 == 0)
                        writer.setCaseSectionDataForElementsInZone(id, values.data(), values.size());
                    else
                        writer.setCaseSectionDataForElementsInRange(mesh.zone(id).first, mesh.zone(id).last,
                                                                    values.data(), values.size());
                }
                writer.endWritingCaseSectionDataForCategory();
            });
        writer.endWritingCaseSectionCategories();
    }
}

void caseSections(Case& test)
{
    const Mesh mesh = smallMesh();
    roundTrip(
        test, mesh, [&](KelFileConsumer& writer) { writeSections(writer, mesh); }, nullptr,
        [&](KelFileProvider& reader) {
            for (const auto& [category, zones] : sectionZones) {
                std::vector<std::string> names = {"replaced"};
                reader.startReadingCaseSectionCategories(category, names);
                test.same("names of sections", sectionNames(), names);
                for (int type = KEL_PLAIN_UNSIGNED_CHAR; type <= KEL_PLAIN_DOUBLE; ++type)
                    visitPlainType(static_cast<KelPlainDataType>(type), [&, ids = zones](auto* null) {
                        using T = std::remove_pointer_t<decltype(null)>;
                        const std::string& name = sectionNames()[static_cast<std::size_t>(type)];
                        Ids found = {-99};
                        test.same("type of section " + name, static_cast<unsigned64>(type),
                                  static_cast<unsigned64>(reader.startReadingCaseSectionForCategory(name, found)));
                        test.same("zones of section " + name, ids, found);
                        for (const int id : ids) {
                            const Zone& zone = mesh.zone(id);
                            unsigned64 size = 0;
                            test.expect(reader.hasUniformCaseSectionDataCountForZone(id, &size) &&
                                            size == sectionSize(type),
                                        "section " + name + ", zone " + std::to_string(id) + ": values per element");
                            const std::vector<T> expected = sectionValues<T>(zone, sectionSize(type));
                            std::vector<T> values(expected.size());
                            values.resize(reader.getCaseSectionDataForElementsInZone(id, values.data(), values.size()));
                            test.same("section " + name + ", zone " + std::to_string(id), expected, values);
                            values.assign(sectionSize(type), T());
                            values.resize(reader.getCaseSectionDataForElementsInRange(zone.last, zone.last,
                                                                                      values.data(), values.size()));
                            test.same("section " + name + ", last element of zone " + std::to_string(id),
                                      std::vector<T>(expected.end() - static_cast<std::ptrdiff_t>(sectionSize(type)),
                                                     expected.end()),
                                      values);
                        }
                        reader.endReadingCaseSectionForCategory();
                    });
                Ids untouched = {-99};
                test.expect(reader.startReadingCaseSectionForCategory("no such section", untouched) == -1 &&
                                untouched == Ids{-99},
                            "a section that is not there is opened");
                reader.endReadingCaseSectionCategories();
            }
        });
}

// ---- several meshes

void severalMeshes(Case& test)
{
    const Mesh one = smallMesh(), two = boxMesh("box:2x2x2 cells:tet");
    for (const int meshId : {1, 5}) {
        const Mesh& mesh = meshId == 1 ? one : two;
        const auto writer = test.writer();
        writer->setAppendOn(meshId == 5);
        declareMesh(*writer, mesh, meshId);
        if (!test.write(*writer, KEL_CASE, [&] { writeArrays(*writer, mesh, test.format.writes, Form::Range); }))
            return;
    }
    const auto reader = test.reader();
    test.read(*reader, KEL_CASE, [&] {
        test.same("mesh ids", std::vector<int>{1, 5}, reader->availableMeshIds(KEL_CASE));
        reader->setMeshId(5); // its answer is about the data, too, which is not open
        expectMesh(test, *reader, two);
        reader->setMeshId(1);
        expectMesh(test, *reader, one);
        test.expect(!reader->setMeshId(4), "setMeshId(4) gives true, but there is no such mesh");
        reader->getErrors(false, true); // a mesh, or data, that are not there may have been reported
    });
}

} // namespace

void addZoneChecks(Checks& checks)
{
    checks.push_back({"zone-properties", families({KEL_FAMILY_ZONE_PROPERTIES}), zoneProperties});
    checks.push_back({"zone-names", families({KEL_FAMILY_ZONE_PROPERTIES}), zoneNames});
    checks.push_back({"zone-ids-of-any-kind", families({KEL_FAMILY_ZONE_PROPERTIES}), zoneIdsOfAnyKind});
    checks.push_back({"zone-adjacency", families({KEL_FAMILY_ZONE_ADJACENCY}), adjacency});
    checks.push_back({"local-ids", families({KEL_FAMILY_LOCAL_IDS}), localIds});
    checks.push_back({"interface-data", families({KEL_FAMILY_INTERFACE_DATA}), interfaceData<double>});
    checks.push_back(
        {"interface-data-in-single-precision", families({KEL_FAMILY_INTERFACE_DATA}), interfaceData<float>});
    checks.push_back({"case-sections", families({KEL_FAMILY_CASE_SECTIONS}), caseSections});
    checks.push_back({"several-meshes", families({KEL_FAMILY_MESHES}), severalMeshes});
}

} // namespace meridyn::conformance
