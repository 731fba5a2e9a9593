#include "MeshArrays.h"

#include <algorithm>
#include <functional>

namespace meridyn::conformance {

namespace {

std::string ofZone(const char* array, const Zone& zone)
{
    return std::string(array) + " of zone " + std::to_string(zone.id);
}

std::string byRange(const std::string& what, unsigned64 first, unsigned64 last)
{
    return what + ", ids " + std::to_string(first) + " to " + std::to_string(last);
}

/// Reads with a function of buffer and capacity, which is given room to spare; gives what was stored.
template <class T, class Read>
std::vector<T> taken(std::size_t expected, const Read& read)
{
    std::vector<T> values(expected + 2);
    const unsigned64 found = read(values.data(), values.size());
    values.resize(std::min<unsigned64>(found, values.size()));
    return values;
}

/// Ranges of a zone that are read: all of it, its first and last element, a piece in the middle, its second half.
std::vector<std::pair<unsigned64, unsigned64>> rangesOf(const Zone& zone)
{
    const unsigned64 middle = zone.first + zone.count() / 2;
    return {{zone.first, zone.last},
            {zone.first, zone.first},
            {zone.last, zone.last},
            {std::max(zone.first, middle - std::min<unsigned64>(middle, 1)), std::min(middle + 1, zone.last)},
            {middle, zone.last}};
}

// ---- one value per element

template <class T>
void expectArray(Case& test, const KelProvider& reader, const FixedArray<T>& array, const Mesh& mesh)
{
    const std::vector<T>& all = mesh.*array.data;
    const auto part = [&all](unsigned64 first, unsigned64 last) {
        return std::vector<T>(all.begin() + static_cast<std::ptrdiff_t>(first - 1),
                              all.begin() + static_cast<std::ptrdiff_t>(last));
    };
    const auto readRange = [&](unsigned64 first, unsigned64 last) {
        return taken<T>(last - first + 1,
                        [&](T* to, unsigned64 room) { return (reader.*array.getRange)(first, last, to, room); });
    };
    const std::vector<Zone> zones = zonesWith(array, mesh);
    for (const Zone& zone : zones) {
        const std::string what = ofZone(array.name(), zone);
        test.same(what + " by zone", part(zone.first, zone.last), taken<T>(zone.count(), [&](T* to, unsigned64 room) {
                      return (reader.*array.getZone)(zoneIn(test, reader, zone), to, room);
                  }));
        for (const auto& [first, last] : rangesOf(zone))
            test.same(byRange(what, first, last), part(first, last), readRange(first, last));
        for (unsigned64 id = zone.first; id <= zone.last; ++id)
            test.same(byRange(what, id, id) + " alone", part(id, id), {array.one(reader, id)});
    }
    for (std::size_t n = 1; n < zones.size(); ++n)
        if (zones[n - 1].last + 1 == zones[n].first)
            test.same(byRange(std::string(array.name()) + " across zones", zones[n - 1].last, zones[n].first),
                      part(zones[n - 1].last, zones[n].first), readRange(zones[n - 1].last, zones[n].first));
}

// ---- a count and ids per element

void expectRagged(Case& test, const KelProvider& reader, const RaggedArray& array, const Mesh& mesh, const Zone& zone)
{
    const Ragged& all = mesh.*array.data;
    const auto counts = [&all](unsigned64 first, unsigned64 last) {
        return std::vector<short>(all.counts.begin() + static_cast<std::ptrdiff_t>(first - 1),
                                  all.counts.begin() + static_cast<std::ptrdiff_t>(last));
    };
    const auto ids = [&all](unsigned64 first, unsigned64 last) {
        return std::vector<unsigned64>(all.ids.begin() + static_cast<std::ptrdiff_t>(all.begin(first - 1)),
                                       all.ids.begin() + static_cast<std::ptrdiff_t>(all.begin(last)));
    };
    const std::string what = ofZone(array.name(), zone);
    const int id = zoneIn(test, reader, zone);
    const std::vector<unsigned64> zoneIds = ids(zone.first, zone.last);
    test.same(
        "number of " + what + " by zone", counts(zone.first, zone.last),
        taken<short>(zone.count(), [&](short* to, auto room) { return (reader.*array.getCountZone)(id, to, room); }));
    test.same(what + " by zone", zoneIds, taken<unsigned64>(zoneIds.size(), [&](auto* to, auto room) {
                  return (reader.*array.getIdZone)(id, to, room);
              }));
    for (const auto& [from, to] : rangesOf(zone)) {
        const unsigned64 first = from, last = to;
        test.same("number of " + byRange(what, first, last), counts(first, last),
                  taken<short>(last - first + 1, [&](short* buffer, auto room) {
                      return (reader.*array.getCountRange)(first, last, buffer, room);
                  }));
        test.same(byRange(what, first, last), ids(first, last),
                  taken<unsigned64>(ids(first, last).size(), [&](auto* buffer, auto room) {
                      return (reader.*array.getIdRange)(first, last, buffer, room);
                  }));
    }
    for (unsigned64 element = zone.first; element <= zone.last; ++element) {
        test.same("number of " + byRange(what, element, element) + " alone", counts(element, element),
                  {(reader.*array.getCount)(element)});
        test.same(byRange(what, element, element) + " alone", ids(element, element),
                  taken<unsigned64>(ids(element, element).size(),
                                    [&](auto* to, auto room) { return (reader.*array.getIds)(element, to, room); }));
    }
    short uniform = -7;
    if (array.isUniform != nullptr && (reader.*array.isUniform)(id, &uniform))
        test.same("uniform number of " + what, counts(zone.first, zone.last),
                  std::vector<short>(zone.count(), uniform));
}

// ---- coordinates

void expectCoordinates(Case& test, const KelProvider& reader, const Mesh& mesh)
{
    const unsigned64 dimension = mesh.dimension;
    const auto part = [&](unsigned64 first, unsigned64 last) {
        return std::vector<double>(mesh.coordinates.begin() + static_cast<std::ptrdiff_t>((first - 1) * dimension),
                                   mesh.coordinates.begin() + static_cast<std::ptrdiff_t>(last * dimension));
    };
    for (const Zone& zone : mesh.zonesOf(KEL_NODE_ZONE)) {
        const std::string what = ofZone("coordinates", zone);
        const int id = zoneIn(test, reader, zone);
        const std::vector<double> all = part(zone.first, zone.last);
        test.same(what + " by zone", all, taken<double>(all.size(), [&](double* to, auto room) {
                      return reader.getCoordinatesForNodesInZone(id, to, room);
                  }));
        test.same(what + " by zone, single precision", std::vector<float>(all.begin(), all.end()),
                  taken<float>(all.size(), [&](float* to, auto room) {
                      return reader.getCoordinatesForNodesInZone(id, to, room);
                  }));
        for (const auto& [from, to] : rangesOf(zone)) {
            const unsigned64 first = from, last = to;
            test.same(byRange(what, first, last), part(first, last),
                      taken<double>(part(first, last).size(), [&](double* buffer, auto room) {
                          return reader.getCoordinatesForNodesInRange(first, last, buffer, room);
                      }));
        }
        for (unsigned64 node = zone.first; node <= zone.last; ++node)
            test.same(byRange(what, node, node) + " alone", part(node, node),
                      taken<double>(dimension, [&](double* to, auto room) {
                          return reader.getCoordinatesForNode(node, to, room);
                      }));
    }
}

// ---- zones

/// Whether the format knows elements of a kind at all.
bool hasElements(const Case& test, KelZoneCategory category)
{
    const auto one = [&test](std::initializer_list<KelFormatFamily> list) {
        return std::any_of(list.begin(), list.end(), [&test](KelFormatFamily family) { return test.carries(family); });
    };
    switch (category) {
    case KEL_NODE_ZONE:
        return one({KEL_FAMILY_COORDINATES});
    case KEL_EDGE_ZONE:
        return one({KEL_FAMILY_EDGES});
    case KEL_FACE_ZONE:
        return one({KEL_FAMILY_FACE_NODES, KEL_FAMILY_FACE_CELLS});
    case KEL_CELL_ZONE:
        return one({KEL_FAMILY_CELL_TYPES, KEL_FAMILY_CELL_NODES, KEL_FAMILY_CELL_FACES, KEL_FAMILY_FACE_CELLS});
    }
    return false;
}

void expectZones(Case& test, const KelProvider& reader, const Mesh& mesh)
{
    const auto size = [&reader](KelMeshSizeType type) {
        unsigned64 value = 0;
        reader.getMeshSize(type, value);
        return value;
    };
    test.same("dimension of the mesh", mesh.dimension, size(KEL_MESH_DIMENSION));
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE})
        if (hasElements(test, category))
            test.same("number of elements of zone category " + std::to_string(category), mesh.count(category),
                      size(static_cast<KelMeshSizeType>(int{KEL_MESH_SIZE_1} + int{category})));
    for (const Zone& zone : mesh.zones) {
        if (!hasElements(test, zone.category))
            continue;
        const std::string label = "zone " + std::to_string(zone.id);
        const int id = zoneIn(test, reader, zone);
        if (!test.expect(id != -1, label + ": not among the zones of its category"))
            continue;
        unsigned64 first = 0, last = 0;
        reader.getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, first);
        reader.getZoneSizeInfo(id, KEL_ZONE_LAST_ID, last);
        test.same("first id of " + label, zone.first, first);
        test.same("last id of " + label, zone.last, last);
        if (!test.carries(KEL_FAMILY_ZONE_PROPERTIES))
            continue;
        std::string name;
        reader.getZoneStringInfo(id, KEL_ZONE_STRING_0, name);
        test.same("name of " + label, zone.name, name);
    }
}

} // namespace

int zoneIn(const Case& test, const KelProvider& reader, const Zone& zone)
{
    Ids ids;
    reader.getZoneIds(zone.category, ids);
    const auto found = std::find_if(ids.begin(), ids.end(), [&](int id) {
        if (test.carries(KEL_FAMILY_ZONE_PROPERTIES))
            return id == zone.id;
        unsigned64 first = 0;
        reader.getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, first);
        return first == zone.first && zone.first != 0;
    });
    return found != ids.end() ? *found : -1;
}

void expectMesh(Case& test, const KelProvider& reader, const Mesh& mesh)
{
    expectZones(test, reader, mesh);
    if (test.carries(KEL_FAMILY_COORDINATES) && !mesh.coordinates.empty())
        expectCoordinates(test, reader, mesh);
    for (const RaggedArray& array : raggedArrays())
        if (test.carries(array.family))
            for (const Zone& zone : zonesWith(array, mesh))
                expectRagged(test, reader, array, mesh, zone);
    forFixedArrays([&](const auto& array) {
        if (test.carries(array.family))
            expectArray(test, reader, array, mesh);
    });
}

} // namespace meridyn::conformance
