#include "Attributes.h"
#include "ConsumerData.h"

#include <algorithm>

namespace meridyn {

using namespace hdf5;

// Every operation is one piece of work on the case file; `mesh` is its writer, `data` what the object keeps.
#define KEL_ON_MESH(function, work)                                                                                    \
    _data->attemptOnMesh(KEL_CASE, function, [&](Data::Session&) {                                                     \
        MeshWriter& mesh = *_data->mesh;                                                                               \
        work;                                                                                                          \
    })

namespace {

template <class T>
Stored storedFor(KelDataPrecisionType precision)
{
    if (precision == KEL_PRECISION_SINGLE)
        return Stored::F32;
    return precision == KEL_PRECISION_DOUBLE ? Stored::F64 : storedAs<T>();
}

void addZones(std::vector<int>& zones, const std::vector<int>& added)
{
    for (const int id : added)
        if (std::find(zones.begin(), zones.end(), id) == zones.end())
            zones.push_back(id);
}

template <class T>
void writeList(Hdf5File& file, hid_t group, const char* name, Stored type, const T* values, unsigned64 count)
{
    const auto array = ArrayWriter::create(file, group, name, {type, count, 1}, 0);
    array->write(0, count, sourceOf(values, type));
}

template <class T>
void writeInterface(MeshWriter& mesh, int zoneId, Stored type, const T* a, unsigned64 na, const T* b, unsigned64 nb,
                    const unsigned64* ids0, unsigned64 count0, const unsigned64* ids1, unsigned64 count1)
{
    const Handle all = openOrCreateGroup(mesh.groupOf(KEL_FACE_ZONE), "interface");
    const Handle group = replaceGroup(mesh.file(), all.get(), std::to_string(zoneId));
    writeList(mesh.file(), group.get(), "share0", type, a, na);
    writeList(mesh.file(), group.get(), "share1", type, b, nb);
    writeList(mesh.file(), group.get(), "face0", Stored::U64, ids0, count0);
    writeList(mesh.file(), group.get(), "face1", Stored::U64, ids1, count1);
}

} // namespace

// ---- zones and nodes ----

void KelHdf5Consumer::setLocalElemIdsInZone(int zoneId, const unsigned64* ids, unsigned64 count)
{
    KEL_ON_MESH("setLocalElemIdsInZone", {
        unsigned64 elements = 0;
        getZoneSizeInfo(zoneId, KEL_ZONE_ELEMENT_COUNT, elements);
        if (count != elements)
            throw FormatError("zone " + std::to_string(zoneId) + " has " + std::to_string(count) + " local ids, " +
                              std::to_string(elements) + " expected");
        const Handle group = openOrCreateGroup(mesh.group(), "local_ids");
        writeList(mesh.file(), group.get(), std::to_string(zoneId).c_str(), Stored::U64, ids, count);
    });
}

void KelHdf5Consumer::startWritingCoordinatesForNodes(const std::vector<int>& zoneIds)
{
    KEL_ON_MESH("startWritingCoordinatesForNodes", mesh.announceCoordinates(zoneIds));
}

void KelHdf5Consumer::setCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, const double* xyz,
                                                    unsigned64 count)
{
    KEL_ON_MESH("setCoordinatesForNodesInRange",
                mesh.setCoordinates(firstId, lastId, xyz, count, storedFor<double>(getDataPrecision())));
}

void KelHdf5Consumer::setCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, const float* xyz,
                                                    unsigned64 count)
{
    KEL_ON_MESH("setCoordinatesForNodesInRange",
                mesh.setCoordinates(firstId, lastId, xyz, count, storedFor<float>(getDataPrecision())));
}

// ---- edges ----

void KelHdf5Consumer::startWritingNodesForEdges(const std::vector<int>& zoneIds)
{
    KEL_ON_MESH("startWritingNodesForEdges", mesh.announce(Lists::EdgeNodes, zoneIds));
}

void KelHdf5Consumer::setUniformNodeCountForEdgesInRange(unsigned64 firstId, unsigned64 lastId, short nodeCount)
{
    KEL_ON_MESH("setUniformNodeCountForEdgesInRange",
                mesh.setUniformCount(Lists::EdgeNodes, firstId, lastId, nodeCount));
}

void KelHdf5Consumer::setNodeCountsForEdgesInRange(unsigned64 firstId, unsigned64 lastId, const short* nodeCounts,
                                                   unsigned64 count)
{
    KEL_ON_MESH("setNodeCountsForEdgesInRange", mesh.setCounts(Lists::EdgeNodes, firstId, lastId, nodeCounts, count));
}

void KelHdf5Consumer::setNodeIdsForEdgesInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64* nodeIds,
                                                unsigned64 count)
{
    KEL_ON_MESH("setNodeIdsForEdgesInRange", mesh.setListIds(Lists::EdgeNodes, firstId, lastId, nodeIds, count));
}

// ---- faces ----

void KelHdf5Consumer::startWritingNodesForFaces(const std::vector<int>& zoneIds)
{
    KEL_ON_MESH("startWritingNodesForFaces", mesh.announce(Lists::FaceNodes, zoneIds));
}

void KelHdf5Consumer::setUniformNodeCountForFacesInRange(unsigned64 firstId, unsigned64 lastId, short nodeCount)
{
    KEL_ON_MESH("setUniformNodeCountForFacesInRange",
                mesh.setUniformCount(Lists::FaceNodes, firstId, lastId, nodeCount));
}

void KelHdf5Consumer::setNodeCountsForFacesInRange(unsigned64 firstId, unsigned64 lastId, const short* nodeCounts,
                                                   unsigned64 count)
{
    KEL_ON_MESH("setNodeCountsForFacesInRange", mesh.setCounts(Lists::FaceNodes, firstId, lastId, nodeCounts, count));
}

void KelHdf5Consumer::setNodeIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64* nodeIds,
                                                unsigned64 count)
{
    KEL_ON_MESH("setNodeIdsForFacesInRange", mesh.setListIds(Lists::FaceNodes, firstId, lastId, nodeIds, count));
}

void KelHdf5Consumer::startWritingCell0sForFaces(const std::vector<int>& zoneIds)
{
    KEL_ON_MESH("startWritingCell0sForFaces", mesh.announce(Ids::Cell0, zoneIds));
}

void KelHdf5Consumer::setCell0sForFacesInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64* cellIds,
                                               unsigned64 count)
{
    KEL_ON_MESH("setCell0sForFacesInRange", mesh.setIds(Ids::Cell0, firstId, lastId, cellIds, count));
}

void KelHdf5Consumer::setCell1sForFacesInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64* cellIds,
                                               unsigned64 count)
{
    KEL_ON_MESH("setCell1sForFacesInRange", mesh.setIds(Ids::Cell1, firstId, lastId, cellIds, count));
}

void KelHdf5Consumer::startWritingShadowFaceIdsForFaces(const std::vector<int>& zoneIds)
{
    KEL_ON_MESH("startWritingShadowFaceIdsForFaces", mesh.announce(Ids::ShadowFace, zoneIds));
}

void KelHdf5Consumer::setShadowFaceIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId,
                                                      const unsigned64* shadowFaceIds, unsigned64 count)
{
    KEL_ON_MESH("setShadowFaceIdsForFacesInRange", mesh.setIds(Ids::ShadowFace, firstId, lastId, shadowFaceIds, count));
}

void KelHdf5Consumer::startWritingInterfaceDataForFaces(const std::vector<int>& zoneIds0,
                                                        const std::vector<int>& zoneIds1)
{
    KEL_ON_MESH("startWritingInterfaceDataForFaces", {
        openOrCreateGroup(mesh.groupOf(KEL_FACE_ZONE), "interface");
        addZones(_data->interfaceZones[0], zoneIds0);
        addZones(_data->interfaceZones[1], zoneIds1);
    });
}

void KelHdf5Consumer::setInterfaceDataForFacesInZone(int zoneId, const float* a, unsigned64 na, const float* b,
                                                     unsigned64 nb, const unsigned64* ids0, unsigned64 count0,
                                                     const unsigned64* ids1, unsigned64 count1)
{
    KEL_ON_MESH("setInterfaceDataForFacesInZone", writeInterface(mesh, zoneId, storedFor<float>(getDataPrecision()), a,
                                                                 na, b, nb, ids0, count0, ids1, count1));
}

void KelHdf5Consumer::setInterfaceDataForFacesInZone(int zoneId, const double* a, unsigned64 na, const double* b,
                                                     unsigned64 nb, const unsigned64* ids0, unsigned64 count0,
                                                     const unsigned64* ids1, unsigned64 count1)
{
    KEL_ON_MESH("setInterfaceDataForFacesInZone", writeInterface(mesh, zoneId, storedFor<double>(getDataPrecision()), a,
                                                                 na, b, nb, ids0, count0, ids1, count1));
}

void KelHdf5Consumer::setChildFaceCountsForFacesInRange(unsigned64 firstId, unsigned64 lastId, const short* childCounts,
                                                        unsigned64 count)
{
    KEL_ON_MESH("setChildFaceCountsForFacesInRange",
                mesh.setCounts(Lists::FaceChildren, firstId, lastId, childCounts, count));
}

void KelHdf5Consumer::setUniformChildFaceCountForFacesInRange(unsigned64 firstId, unsigned64 lastId, short childCount)
{
    KEL_ON_MESH("setUniformChildFaceCountForFacesInRange",
                mesh.setUniformCount(Lists::FaceChildren, firstId, lastId, childCount));
}

void KelHdf5Consumer::setChildFaceIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64* childIds,
                                                     unsigned64 count)
{
    KEL_ON_MESH("setChildFaceIdsForFacesInRange",
                mesh.setListIds(Lists::FaceChildren, firstId, lastId, childIds, count));
}

// ---- cells ----

void KelHdf5Consumer::startWritingTypesForCells(const std::vector<int>& zoneIds, const std::vector<KelCellType>& types)
{
    KEL_ON_MESH("startWritingTypesForCells", {
        mesh.announce(Ints::CellTypes, zoneIds);
        for (std::size_t i = 0; i < std::min(zoneIds.size(), types.size()); ++i) {
            unsigned64 first = 0;
            unsigned64 last = 0;
            getZoneSizeInfo(zoneIds[i], KEL_ZONE_FIRST_ID, first);
            getZoneSizeInfo(zoneIds[i], KEL_ZONE_LAST_ID, last);
            if (types[i] != -1 && first != 0 && last >= first)
                mesh.setUniformInt(Ints::CellTypes, first, last, types[i]);
        }
    });
}

void KelHdf5Consumer::setTypesForCellsInRange(unsigned64 firstId, unsigned64 lastId, const KelCellType* types,
                                              unsigned64 count)
{
    static_assert(sizeof(KelCellType) == sizeof(int));
    KEL_ON_MESH("setTypesForCellsInRange",
                mesh.setInts(Ints::CellTypes, firstId, lastId, reinterpret_cast<const int*>(types), count));
}

void KelHdf5Consumer::startWritingNodesForCells(const std::vector<int>& zoneIds)
{
    KEL_ON_MESH("startWritingNodesForCells", mesh.announce(Lists::CellNodes, zoneIds));
}

void KelHdf5Consumer::setNodeCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const short* nodeCounts,
                                                   unsigned64 count)
{
    KEL_ON_MESH("setNodeCountsForCellsInRange", mesh.setCounts(Lists::CellNodes, firstId, lastId, nodeCounts, count));
}

void KelHdf5Consumer::setUniformNodeCountForCellsInRange(unsigned64 firstId, unsigned64 lastId, short nodeCount)
{
    KEL_ON_MESH("setUniformNodeCountForCellsInRange",
                mesh.setUniformCount(Lists::CellNodes, firstId, lastId, nodeCount));
}

void KelHdf5Consumer::setNodeIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64* nodeIds,
                                                unsigned64 count)
{
    KEL_ON_MESH("setNodeIdsForCellsInRange", mesh.setListIds(Lists::CellNodes, firstId, lastId, nodeIds, count));
}

void KelHdf5Consumer::startWritingFacesForCells(const std::vector<int>& zoneIds)
{
    KEL_ON_MESH("startWritingFacesForCells", mesh.announce(Lists::CellFaces, zoneIds));
}

void KelHdf5Consumer::setFaceCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const short* faceCounts,
                                                   unsigned64 count)
{
    KEL_ON_MESH("setFaceCountsForCellsInRange", mesh.setCounts(Lists::CellFaces, firstId, lastId, faceCounts, count));
}

void KelHdf5Consumer::setUniformFaceCountForCellsInRange(unsigned64 firstId, unsigned64 lastId, short faceCount)
{
    KEL_ON_MESH("setUniformFaceCountForCellsInRange",
                mesh.setUniformCount(Lists::CellFaces, firstId, lastId, faceCount));
}

void KelHdf5Consumer::setFaceIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64* faceIds,
                                                unsigned64 count)
{
    KEL_ON_MESH("setFaceIdsForCellsInRange", mesh.setListIds(Lists::CellFaces, firstId, lastId, faceIds, count));
}

void KelHdf5Consumer::startWritingPartitionIdsForCells(const std::vector<int>& zoneIds, int partitionCount)
{
    KEL_ON_MESH("startWritingPartitionIdsForCells", {
        mesh.announce(Ints::CellPartitions, zoneIds);
        mesh.setPartitionCount(partitionCount);
    });
}

void KelHdf5Consumer::setPartitionIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const int* partitionIds,
                                                     unsigned64 count)
{
    KEL_ON_MESH("setPartitionIdsForCellsInRange",
                mesh.setInts(Ints::CellPartitions, firstId, lastId, partitionIds, count));
}

void KelHdf5Consumer::setChildCellCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const short* childCounts,
                                                        unsigned64 count)
{
    KEL_ON_MESH("setChildCellCountsForCellsInRange",
                mesh.setCounts(Lists::CellChildren, firstId, lastId, childCounts, count));
}

void KelHdf5Consumer::setUniformChildCellCountForCellsInRange(unsigned64 firstId, unsigned64 lastId, short childCount)
{
    KEL_ON_MESH("setUniformChildCellCountForCellsInRange",
                mesh.setUniformCount(Lists::CellChildren, firstId, lastId, childCount));
}

void KelHdf5Consumer::setChildCellIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64* childIds,
                                                     unsigned64 count)
{
    KEL_ON_MESH("setChildCellIdsForCellsInRange",
                mesh.setListIds(Lists::CellChildren, firstId, lastId, childIds, count));
}

} // namespace meridyn
