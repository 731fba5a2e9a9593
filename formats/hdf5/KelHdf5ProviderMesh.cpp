#include "Attributes.h"
#include "ProviderData.h"

#include <algorithm>

namespace meridyn {

using namespace hdf5;

// Every operation is one question to the mesh of the case file.
#define KEL_ASK_MESH(function, question)                                                                               \
    return _data->askMesh(function, unsigned64{0}, [&](const MeshReader& mesh) { return mesh.question; })

namespace {

bool answered(const std::optional<int>& value, short* out)
{
    if (value && out != nullptr)
        *out = static_cast<short>(*value);
    return value.has_value();
}

struct IdRange {
    unsigned64 first = 0;
    unsigned64 last = 0;
};

IdRange rangeOf(const KelBase& base, int zoneId)
{
    IdRange range;
    base.getZoneSizeInfo(zoneId, KEL_ZONE_FIRST_ID, range.first);
    base.getZoneSizeInfo(zoneId, KEL_ZONE_LAST_ID, range.last);
    return range;
}

std::unique_ptr<ArrayReader> interfaceArray(const MeshReader& mesh, int zoneId, const char* name)
{
    const Handle group = findGroup(mesh.group(), {"faces", "interface", std::to_string(zoneId)});
    return group && hasLink(group.get(), name) ? ArrayReader::open(mesh.file(), group.get(), name) : nullptr;
}

template <class T>
unsigned64 readList(const MeshReader& mesh, int zoneId, const char* name, T* values, unsigned64 capacity)
{
    const auto array = interfaceArray(mesh, zoneId, name);
    if (!array || capacity == 0)
        return 0;
    const unsigned64 n = std::min(capacity, array->shape().valueCount());
    array->read(0, n, values);
    return n;
}

template <class T>
unsigned64 readInterface(const MeshReader& mesh, int zoneId, T* a, unsigned64 na, T* b, unsigned64 nb, unsigned64* ids0,
                         unsigned64 count0, unsigned64* ids1, unsigned64 count1)
{
    return readList(mesh, zoneId, "share0", a, na) + readList(mesh, zoneId, "share1", b, nb) +
           readList(mesh, zoneId, "face0", ids0, count0) + readList(mesh, zoneId, "face1", ids1, count1);
}

} // namespace

// ---- nodes and edges ----

unsigned64 KelHdf5Provider::getLocalElemIdsInZone(int zoneId, unsigned64* ids, unsigned64 capacity) const
{
    return _data->askMesh("getLocalElemIdsInZone", unsigned64{0}, [&](const MeshReader& mesh) {
        const Handle group = findGroup(mesh.group(), {"local_ids"});
        const std::string name = std::to_string(zoneId);
        if (!group || !hasLink(group.get(), name))
            return unsigned64{0};
        const auto array = ArrayReader::open(mesh.file(), group.get(), name);
        const unsigned64 n = std::min(capacity, array->shape().valueCount());
        array->read(0, n, ids);
        return n;
    });
}

unsigned64 KelHdf5Provider::getCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, double* xyz,
                                                          unsigned64 capacity) const
{
    KEL_ASK_MESH("getCoordinatesForNodesInRange", coordinates(firstId, lastId, xyz, capacity));
}

unsigned64 KelHdf5Provider::getCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, float* xyz,
                                                          unsigned64 capacity) const
{
    KEL_ASK_MESH("getCoordinatesForNodesInRange", coordinates(firstId, lastId, xyz, capacity));
}

bool KelHdf5Provider::hasUniformNodeCountForEdgesInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCount) const
{
    return _data->askMesh("hasUniformNodeCountForEdgesInRange", false, [&](const MeshReader& mesh) {
        return answered(mesh.uniformCount(Lists::EdgeNodes, firstId, lastId), nodeCount);
    });
}

unsigned64 KelHdf5Provider::getNodeCountsForEdgesInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCounts,
                                                         unsigned64 capacity) const
{
    KEL_ASK_MESH("getNodeCountsForEdgesInRange", counts(Lists::EdgeNodes, firstId, lastId, nodeCounts, capacity));
}

unsigned64 KelHdf5Provider::getNodeIdsForEdgesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* nodeIds,
                                                      unsigned64 capacity) const
{
    KEL_ASK_MESH("getNodeIdsForEdgesInRange", listIds(Lists::EdgeNodes, firstId, lastId, nodeIds, capacity));
}

// ---- faces ----

bool KelHdf5Provider::hasUniformNodeCountForFacesInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCount) const
{
    return _data->askMesh("hasUniformNodeCountForFacesInRange", false, [&](const MeshReader& mesh) {
        return answered(mesh.uniformCount(Lists::FaceNodes, firstId, lastId), nodeCount);
    });
}

unsigned64 KelHdf5Provider::getNodeCountsForFacesInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCounts,
                                                         unsigned64 capacity) const
{
    KEL_ASK_MESH("getNodeCountsForFacesInRange", counts(Lists::FaceNodes, firstId, lastId, nodeCounts, capacity));
}

unsigned64 KelHdf5Provider::getNodeIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* nodeIds,
                                                      unsigned64 capacity) const
{
    KEL_ASK_MESH("getNodeIdsForFacesInRange", listIds(Lists::FaceNodes, firstId, lastId, nodeIds, capacity));
}

unsigned64 KelHdf5Provider::getCell0sForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* cellIds,
                                                     unsigned64 capacity) const
{
    KEL_ASK_MESH("getCell0sForFacesInRange", ids(Ids::Cell0, firstId, lastId, cellIds, capacity));
}

unsigned64 KelHdf5Provider::getCell1sForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* cellIds,
                                                     unsigned64 capacity) const
{
    KEL_ASK_MESH("getCell1sForFacesInRange", ids(Ids::Cell1, firstId, lastId, cellIds, capacity));
}

unsigned64 KelHdf5Provider::getShadowFaceIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId,
                                                            unsigned64* shadowFaceIds, unsigned64 capacity) const
{
    KEL_ASK_MESH("getShadowFaceIdsForFacesInRange", ids(Ids::ShadowFace, firstId, lastId, shadowFaceIds, capacity));
}

void KelHdf5Provider::startReadingInterfaceDataForFaces(std::vector<int>& zoneIds0, std::vector<int>& zoneIds1)
{
    std::vector<int>* const lists[] = {&zoneIds0, &zoneIds1};
    for (std::vector<int>* list : lists)
        list->clear();
    _data->askMesh("startReadingInterfaceDataForFaces", false, [&](const MeshReader& mesh) {
        const Handle group = findGroup(mesh.group(), {"faces", "interface"});
        for (int side = 0; group && side < 2; ++side)
            for (const std::int64_t id :
                 readNumbers(group.get(), "zones" + std::to_string(side)).value_or(std::vector<std::int64_t>()))
                lists[side]->push_back(static_cast<int>(id));
        return true;
    });
}

bool KelHdf5Provider::getInterfaceDataSizesForFacesInZone(int zoneId, unsigned64& na, unsigned64& nb,
                                                          unsigned64& count0, unsigned64& count1) const
{
    return _data->askMesh("getInterfaceDataSizesForFacesInZone", false, [&](const MeshReader& mesh) {
        const char* const names[] = {"share0", "share1", "face0", "face1"};
        unsigned64* const sizes[] = {&na, &nb, &count0, &count1};
        unsigned64 found[4] = {};
        for (int i = 0; i < 4; ++i) {
            const auto array = interfaceArray(mesh, zoneId, names[i]);
            if (!array)
                return false;
            found[i] = array->shape().valueCount();
        }
        for (int i = 0; i < 4; ++i)
            *sizes[i] = found[i];
        return true;
    });
}

unsigned64 KelHdf5Provider::getInterfaceDataForFacesInZone(int zoneId, float* a, unsigned64 na, float* b, unsigned64 nb,
                                                           unsigned64* ids0, unsigned64 count0, unsigned64* ids1,
                                                           unsigned64 count1) const
{
    return _data->askMesh("getInterfaceDataForFacesInZone", unsigned64{0}, [&](const MeshReader& mesh) {
        return readInterface(mesh, zoneId, a, na, b, nb, ids0, count0, ids1, count1);
    });
}

unsigned64 KelHdf5Provider::getInterfaceDataForFacesInZone(int zoneId, double* a, unsigned64 na, double* b,
                                                           unsigned64 nb, unsigned64* ids0, unsigned64 count0,
                                                           unsigned64* ids1, unsigned64 count1) const
{
    return _data->askMesh("getInterfaceDataForFacesInZone", unsigned64{0}, [&](const MeshReader& mesh) {
        return readInterface(mesh, zoneId, a, na, b, nb, ids0, count0, ids1, count1);
    });
}

unsigned64 KelHdf5Provider::getChildFaceCountsForFacesInRange(unsigned64 firstId, unsigned64 lastId, short* childCounts,
                                                              unsigned64 capacity) const
{
    KEL_ASK_MESH("getChildFaceCountsForFacesInRange",
                 counts(Lists::FaceChildren, firstId, lastId, childCounts, capacity));
}

unsigned64 KelHdf5Provider::getChildFaceIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* childIds,
                                                           unsigned64 capacity) const
{
    KEL_ASK_MESH("getChildFaceIdsForFacesInRange", listIds(Lists::FaceChildren, firstId, lastId, childIds, capacity));
}

// ---- cells ----

bool KelHdf5Provider::hasUniformTypeForCellsInZone(int zoneId, KelCellType* type) const
{
    return _data->askMesh("hasUniformTypeForCellsInZone", false, [&](const MeshReader& mesh) {
        const auto [first, last] = rangeOf(*this, zoneId);
        const std::optional<int> value = mesh.uniformInt(Ints::CellTypes, first, last);
        if (value && type != nullptr)
            *type = static_cast<KelCellType>(*value);
        return value.has_value();
    });
}

unsigned64 KelHdf5Provider::getTypesForCellsInRange(unsigned64 firstId, unsigned64 lastId, KelCellType* types,
                                                    unsigned64 capacity) const
{
    static_assert(sizeof(KelCellType) == sizeof(int));
    KEL_ASK_MESH("getTypesForCellsInRange",
                 ints(Ints::CellTypes, firstId, lastId, reinterpret_cast<int*>(types), capacity));
}

bool KelHdf5Provider::hasUniformNodeCountForCellsInZone(int zoneId, short* nodeCount) const
{
    return _data->askMesh("hasUniformNodeCountForCellsInZone", false, [&](const MeshReader& mesh) {
        const auto [first, last] = rangeOf(*this, zoneId);
        return answered(mesh.uniformCount(Lists::CellNodes, first, last), nodeCount);
    });
}

unsigned64 KelHdf5Provider::getNodeCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCounts,
                                                         unsigned64 capacity) const
{
    KEL_ASK_MESH("getNodeCountsForCellsInRange", counts(Lists::CellNodes, firstId, lastId, nodeCounts, capacity));
}

unsigned64 KelHdf5Provider::getNodeIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* nodeIds,
                                                      unsigned64 capacity) const
{
    KEL_ASK_MESH("getNodeIdsForCellsInRange", listIds(Lists::CellNodes, firstId, lastId, nodeIds, capacity));
}

bool KelHdf5Provider::hasUniformFaceCountForCellsInZone(int zoneId, short* faceCount) const
{
    return _data->askMesh("hasUniformFaceCountForCellsInZone", false, [&](const MeshReader& mesh) {
        const auto [first, last] = rangeOf(*this, zoneId);
        return answered(mesh.uniformCount(Lists::CellFaces, first, last), faceCount);
    });
}

unsigned64 KelHdf5Provider::getFaceCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, short* faceCounts,
                                                         unsigned64 capacity) const
{
    KEL_ASK_MESH("getFaceCountsForCellsInRange", counts(Lists::CellFaces, firstId, lastId, faceCounts, capacity));
}

unsigned64 KelHdf5Provider::getFaceIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* faceIds,
                                                      unsigned64 capacity) const
{
    KEL_ASK_MESH("getFaceIdsForCellsInRange", listIds(Lists::CellFaces, firstId, lastId, faceIds, capacity));
}

unsigned64 KelHdf5Provider::getPartitionIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, int* partitionIds,
                                                           unsigned64 capacity) const
{
    KEL_ASK_MESH("getPartitionIdsForCellsInRange", ints(Ints::CellPartitions, firstId, lastId, partitionIds, capacity));
}

int KelHdf5Provider::getPartitionCountOfCells() const
{
    return _data->askMesh("getPartitionCountOfCells", 0, [](const MeshReader& mesh) { return mesh.partitionCount(); });
}

unsigned64 KelHdf5Provider::getChildCellCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, short* childCounts,
                                                              unsigned64 capacity) const
{
    KEL_ASK_MESH("getChildCellCountsForCellsInRange",
                 counts(Lists::CellChildren, firstId, lastId, childCounts, capacity));
}

unsigned64 KelHdf5Provider::getChildCellIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* childIds,
                                                           unsigned64 capacity) const
{
    KEL_ASK_MESH("getChildCellIdsForCellsInRange", listIds(Lists::CellChildren, firstId, lastId, childIds, capacity));
}

} // namespace meridyn
