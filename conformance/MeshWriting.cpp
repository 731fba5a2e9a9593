#include "MeshArrays.h"

#include <algorithm>

namespace meridyn::conformance {

namespace {

constexpr unsigned64 pieceSize = 3;

/// Calls `write(first, last)` for the pieces of a zone.
template <class Write>
void forPieces(const Zone& zone, unsigned64 size, const Write& write)
{
    for (unsigned64 first = zone.first; first <= zone.last; first += size)
        write(first, std::min(first + size - 1, zone.last));
}

template <class T>
void writeValues(KelConsumer& writer, const FixedArray<T>& array, const std::vector<T>& values, const Zone& zone,
                 Form form)
{
    const T* all = values.data() - 1; // by element id
    if (form == Form::Element)
        for (unsigned64 id = zone.first; id <= zone.last; ++id)
            array.setOne(writer, id, all + id, 1);
    else if ((form == Form::Zone || form == Form::Uniform) && array.setZone != nullptr)
        (writer.*array.setZone)(zone.id, all + zone.first, zone.count());
    else
        forPieces(zone, form == Form::Pieces ? pieceSize : zone.count(), [&](unsigned64 first, unsigned64 last) {
            (writer.*array.setRange)(first, last, all + first, last - first + 1);
        });
}

template <class T>
void writeArray(KelConsumer& writer, const FixedArray<T>& array, const Mesh& mesh, Form form)
{
    const std::vector<Zone> zones = zonesWith(array, mesh);
    if (zones.empty())
        return;
    array.start(writer, idsOf(zones), {{}, mesh.partitionCount});
    for (const Zone& zone : zones)
        writeValues(writer, array, mesh.*array.data, zone, form);
    (writer.*array.end)();
}

bool haveOneCount(const Ragged& data, const Zone& zone)
{
    const short* counts = data.counts.data() - 1;
    return std::all_of(counts + zone.first, counts + zone.last + 1,
                       [&](short count) { return count == counts[zone.first]; });
}

void writeCounts(KelConsumer& writer, const RaggedArray& array, const Ragged& data, const Zone& zone, Form form)
{
    const short* counts = data.counts.data() - 1;
    if (form == Form::Element)
        for (unsigned64 id = zone.first; id <= zone.last; ++id)
            (writer.*array.setCount)(id, counts[id]);
    else if (form == Form::Uniform && haveOneCount(data, zone) && zone.id % 2 != 0)
        (writer.*array.setUniformRange)(zone.first, zone.last, counts[zone.first]);
    else if (form == Form::Uniform && haveOneCount(data, zone))
        (writer.*array.setUniformZone)(zone.id, counts[zone.first]);
    else if (form == Form::Zone || form == Form::Uniform)
        (writer.*array.setCountZone)(zone.id, counts + zone.first, zone.count());
    else
        forPieces(zone, form == Form::Pieces ? pieceSize : zone.count(), [&](unsigned64 first, unsigned64 last) {
            (writer.*array.setCountRange)(first, last, counts + first, last - first + 1);
        });
}

void writeIds(KelConsumer& writer, const RaggedArray& array, const Ragged& data, const Zone& zone, Form form)
{
    const auto idsOfRange = [&data](unsigned64 first, unsigned64 last, unsigned64& count) {
        const std::size_t begin = data.begin(first - 1);
        count = data.begin(last) - begin;
        return data.ids.data() + begin;
    };
    unsigned64 count = 0;
    if (form == Form::Zone || form == Form::Uniform) {
        const unsigned64* ids = idsOfRange(zone.first, zone.last, count);
        (writer.*array.setIdZone)(zone.id, ids, count);
        return;
    }
    const unsigned64 size = form == Form::Element ? 1 : form == Form::Pieces ? pieceSize : zone.count();
    forPieces(zone, size, [&](unsigned64 first, unsigned64 last) {
        const unsigned64* ids = idsOfRange(first, last, count);
        if (form == Form::Element)
            (writer.*array.setIds)(first, ids, count);
        else
            (writer.*array.setIdRange)(first, last, ids, count);
    });
}

void writeArray(KelConsumer& writer, const RaggedArray& array, const Mesh& mesh, Form form)
{
    const std::vector<Zone> zones = zonesWith(array, mesh);
    if (zones.empty())
        return;
    (writer.*array.start)(idsOf(zones));
    (writer.*array.startCounts)();
    for (const Zone& zone : zones)
        writeCounts(writer, array, mesh.*array.data, zone, form);
    (writer.*array.endCounts)();
    (writer.*array.startIds)();
    for (const Zone& zone : zones)
        writeIds(writer, array, mesh.*array.data, zone, form);
    (writer.*array.endIds)();
    (writer.*array.end)();
}

void writeCoordinates(KelConsumer& writer, const Mesh& mesh, Form form)
{
    const std::vector<Zone> zones = mesh.zonesOf(KEL_NODE_ZONE);
    writer.startWritingNodes(idsOf(zones));
    writer.startWritingCoordinatesForNodes(idsOf(zones));
    for (const Zone& zone : zones) {
        const auto at = [&mesh](unsigned64 id) { return mesh.coordinates.data() + (id - 1) * mesh.dimension; };
        if (form == Form::Zone || form == Form::Uniform)
            writer.setCoordinatesForNodesInZone(zone.id, at(zone.first), zone.count() * mesh.dimension);
        else if (form == Form::Element)
            for (unsigned64 id = zone.first; id <= zone.last; ++id)
                writer.setCoordinatesForNode(id, at(id), mesh.dimension);
        else
            forPieces(zone, form == Form::Pieces ? pieceSize : zone.count(), [&](unsigned64 first, unsigned64 last) {
                writer.setCoordinatesForNodesInRange(first, last, at(first), (last - first + 1) * mesh.dimension);
            });
    }
    writer.endWritingCoordinatesForNodes();
    writer.endWritingNodes();
}

} // namespace

void declareMesh(KelConsumer& writer, const Mesh& mesh, int meshId)
{
    writer.setMeshId(meshId);
    writer.setMeshSize(KEL_MESH_DIMENSION, mesh.dimension);
    writer.setMeshSize(KEL_MESH_SIZE_1, mesh.count(KEL_NODE_ZONE));
    writer.setMeshSize(KEL_MESH_SIZE_2, mesh.count(KEL_EDGE_ZONE));
    writer.setMeshSize(KEL_MESH_SIZE_3, mesh.count(KEL_FACE_ZONE));
    writer.setMeshSize(KEL_MESH_SIZE_4, mesh.count(KEL_CELL_ZONE));
    writer.setMeshUnits("m");
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE}) {
        Ids ids;
        for (const Zone& zone : mesh.zones)
            if (zone.category == category)
                ids.push_back(zone.id);
        writer.setZoneIds(category, ids);
    }
    for (const Zone& zone : mesh.zones) {
        writer.setZoneSizeInfo(zone.id, KEL_ZONE_FIRST_ID, zone.first);
        writer.setZoneSizeInfo(zone.id, KEL_ZONE_LAST_ID, zone.last);
        writer.setZoneStringInfo(zone.id, KEL_ZONE_STRING_0, zone.name);
        if (zone.category == KEL_FACE_ZONE)
            writer.setFaceZoneType(zone.id, static_cast<KelFaceZoneType>(zone.kind));
        else if (zone.category == KEL_EDGE_ZONE)
            writer.setEdgeZoneType(zone.id, static_cast<KelEdgeZoneType>(zone.kind));
    }
}

void writeArrays(KelConsumer& writer, const Mesh& mesh, KelFormatFamilies families, Form form)
{
    const auto takes = [families](KelFormatFamily family) { return (families & formatFamily(family)) != 0; };
    const auto writeOf = [&](KelZoneCategory category) {
        for (const RaggedArray& array : raggedArrays())
            if (array.category == category && takes(array.family))
                writeArray(writer, array, mesh, form);
        forFixedArrays([&](const auto& array) {
            if (array.category == category && takes(array.family))
                writeArray(writer, array, mesh, form);
        });
    };
    if (takes(KEL_FAMILY_COORDINATES) && !mesh.coordinates.empty())
        writeCoordinates(writer, mesh, form);
    writer.startWritingEdges(idsOf(mesh.zonesOf(KEL_EDGE_ZONE)));
    writeOf(KEL_EDGE_ZONE);
    writer.endWritingEdges();
    writer.startWritingFaces(idsOf(mesh.zonesOf(KEL_FACE_ZONE)));
    writeOf(KEL_FACE_ZONE);
    writer.endWritingFaces();
    writer.startWritingCells(idsOf(mesh.zonesOf(KEL_CELL_ZONE)));
    writeOf(KEL_CELL_ZONE);
    writer.endWritingCells();
}

bool writeCase(Case& test, const Mesh& mesh, Form form, int number)
{
    const auto writer = test.writer(number);
    declareMesh(*writer, mesh);
    return test.write(*writer, KEL_CASE, [&] { writeArrays(*writer, mesh, test.format.writes, form); });
}

} // namespace meridyn::conformance
