// Nodes, faces and cells of KelPolyMeshProvider.
#include "KelPolyMeshProvider.h"
#include "PolyMeshCase.h"
#include "RangeFilling.h"

#include <algorithm>

namespace meridyn {

namespace {

/// What all elements of a zone have in common.
///
/// @param get  gives the value of an element, from 0
template <class T, class Get>
bool isUniform(const PolyZone* zone, KelZoneCategory category, T* value, const Get& get)
{
    if (zone == nullptr || zone->category != category || zone->last < zone->first)
        return false;
    const T first = get(zone->first - 1);
    for (unsigned64 n = zone->first; n < zone->last; ++n)
        if (get(n) != first)
            return false;
    *value = first;
    return true;
}

/// Stores lists of ids, one after the other, as long as a whole one fits.
///
/// @param list  gives the begin and the end of the labels of an element, from 0
template <class List>
unsigned64 fillIds(unsigned64 firstId, unsigned64 lastId, unsigned64* ids, unsigned64 capacity, const List& list)
{
    unsigned64 stored = 0;
    for (unsigned64 id = firstId; id <= lastId; ++id) {
        const auto [begin, end] = list(id - 1);
        if (static_cast<unsigned64>(end - begin) > capacity - stored)
            break;
        for (const std::uint32_t* at = begin; at != end; ++at)
            ids[stored++] = *at + unsigned64{1};
    }
    return stored;
}

} // namespace

// ---- nodes --------------------------------------------------------------------------------------------------------

template <class T>
unsigned64 KelPolyMeshProvider::readCoordinates(unsigned64 firstId, unsigned64 lastId, T* xyz,
                                                unsigned64 capacity) const
{
    if (!_case || !_case->hasPoints(firstId, lastId))
        return 0;
    const unsigned64 count = 3 * std::min(lastId - firstId + 1, capacity / 3);
    const double* from = _case->mesh->points.data() + 3 * (firstId - 1);
    std::transform(from, from + count, xyz, [](double value) { return static_cast<T>(value); });
    return count;
}

unsigned64 KelPolyMeshProvider::getCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, float* xyz,
                                                              unsigned64 capacity) const
{
    return readCoordinates(firstId, lastId, xyz, capacity);
}

unsigned64 KelPolyMeshProvider::getCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, double* xyz,
                                                              unsigned64 capacity) const
{
    return readCoordinates(firstId, lastId, xyz, capacity);
}

// ---- faces --------------------------------------------------------------------------------------------------------

bool KelPolyMeshProvider::hasUniformNodeCountForFacesInRange(unsigned64 firstId, unsigned64 lastId,
                                                             short* nodeCount) const
{
    if (!_case || !_case->hasFaces(firstId, lastId))
        return false;
    const auto& offsets = _case->mesh->faceOffsets;
    const std::uint64_t count = offsets[firstId] - offsets[firstId - 1];
    for (unsigned64 id = firstId + 1; id <= lastId; ++id)
        if (offsets[id] - offsets[id - 1] != count)
            return false;
    *nodeCount = static_cast<short>(count);
    return true;
}

unsigned64 KelPolyMeshProvider::getNodeCountsForFacesInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCounts,
                                                             unsigned64 capacity) const
{
    if (!_case || !_case->hasFaces(firstId, lastId))
        return 0;
    const auto& offsets = _case->mesh->faceOffsets;
    return fillSingle(firstId, lastId, nodeCounts, capacity,
                      [&](unsigned64 face) { return offsets[face + 1] - offsets[face]; });
}

unsigned64 KelPolyMeshProvider::getNodeIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* nodeIds,
                                                          unsigned64 capacity) const
{
    if (!_case || !_case->hasFaces(firstId, lastId))
        return 0;
    const PolyMesh& mesh = *_case->mesh;
    return fillIds(firstId, lastId, nodeIds, capacity, [&mesh](unsigned64 face) {
        return std::pair(mesh.faceNodes.data() + mesh.faceOffsets[face],
                         mesh.faceNodes.data() + mesh.faceOffsets[face + 1]);
    });
}

unsigned64 KelPolyMeshProvider::getCell0sForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* cellIds,
                                                         unsigned64 capacity) const
{
    if (!_case || !_case->hasFaces(firstId, lastId))
        return 0;
    const auto& owner = _case->mesh->owner;
    return fillSingle(firstId, lastId, cellIds, capacity,
                      [&owner](unsigned64 face) { return owner[face] + unsigned64{1}; });
}

unsigned64 KelPolyMeshProvider::getCell1sForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* cellIds,
                                                         unsigned64 capacity) const
{
    if (!_case || !_case->hasFaces(firstId, lastId))
        return 0;
    const auto& neighbour = _case->mesh->neighbour;
    return fillSingle(firstId, lastId, cellIds, capacity, [&neighbour](unsigned64 face) {
        return face < neighbour.size() ? neighbour[face] + unsigned64{1} : 0;
    });
}

/// Periodic patches are joined face by face, in their order. Nothing when no face of the range has a partner.
unsigned64 KelPolyMeshProvider::getShadowFaceIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId,
                                                                unsigned64* shadowFaceIds, unsigned64 capacity) const
{
    if (!_case || !_case->hasFaces(firstId, lastId))
        return 0;
    const unsigned64 count = std::min(lastId - firstId + 1, capacity);
    bool hasPartner = false;
    std::fill(shadowFaceIds, shadowFaceIds + count, 0);
    for (const PolyPatch& patch : _case->mesh->patches) {
        const PolyPatch* partner = _case->mesh->partner(patch);
        if (partner == nullptr)
            continue;
        const unsigned64 first = std::max(patch.first + 1, firstId);
        const unsigned64 last = std::min(patch.first + patch.count, firstId + count - 1);
        for (unsigned64 id = first; id <= last; ++id) {
            shadowFaceIds[id - firstId] = id - patch.first + partner->first;
            hasPartner = true;
        }
    }
    return hasPartner ? count : 0;
}

// ---- cells --------------------------------------------------------------------------------------------------------

bool KelPolyMeshProvider::hasUniformTypeForCellsInZone(int zoneId, KelCellType* type) const
{
    return _case && isUniform(_case->zone(zoneId), KEL_CELL_ZONE, type,
                              [this](unsigned64 cell) { return _case->shapes->type(cell); });
}

unsigned64 KelPolyMeshProvider::getTypesForCellsInRange(unsigned64 firstId, unsigned64 lastId, KelCellType* types,
                                                        unsigned64 capacity) const
{
    if (!_case || !_case->hasCells(firstId, lastId))
        return 0;
    return fillSingle(firstId, lastId, types, capacity, [this](unsigned64 cell) { return _case->shapes->type(cell); });
}

bool KelPolyMeshProvider::hasUniformNodeCountForCellsInZone(int zoneId, short* nodeCount) const
{
    return _case && isUniform(_case->zone(zoneId), KEL_CELL_ZONE, nodeCount,
                              [this](unsigned64 cell) { return CellShapes::nodeCount(_case->shapes->type(cell)); });
}

unsigned64 KelPolyMeshProvider::getNodeCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCounts,
                                                             unsigned64 capacity) const
{
    if (!_case || !_case->hasCells(firstId, lastId))
        return 0;
    return fillSingle(firstId, lastId, nodeCounts, capacity,
                      [this](unsigned64 cell) { return CellShapes::nodeCount(_case->shapes->type(cell)); });
}

unsigned64 KelPolyMeshProvider::getNodeIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* nodeIds,
                                                          unsigned64 capacity) const
{
    if (!_case || !_case->hasCells(firstId, lastId))
        return 0;
    std::uint32_t nodes[8];
    return fillIds(firstId, lastId, nodeIds, capacity, [&](unsigned64 cell) {
        const short count = _case->shapes->nodes(cell, nodes);
        return std::pair<const std::uint32_t*, const std::uint32_t*>(nodes, nodes + count);
    });
}

bool KelPolyMeshProvider::hasUniformFaceCountForCellsInZone(int zoneId, short* faceCount) const
{
    return _case && isUniform(_case->zone(zoneId), KEL_CELL_ZONE, faceCount,
                              [this](unsigned64 cell) { return static_cast<short>(_case->shapes->faceCount(cell)); });
}

short KelPolyMeshProvider::getFaceCountForCell(unsigned64 cellId) const
{
    short count = 0;
    getFaceCountsForCellsInRange(cellId, cellId, &count, 1);
    return count;
}

unsigned64 KelPolyMeshProvider::getFaceCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, short* faceCounts,
                                                             unsigned64 capacity) const
{
    if (!_case || !_case->hasCells(firstId, lastId))
        return 0;
    return fillSingle(firstId, lastId, faceCounts, capacity,
                      [this](unsigned64 cell) { return _case->shapes->faceCount(cell); });
}

unsigned64 KelPolyMeshProvider::getFaceIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* faceIds,
                                                          unsigned64 capacity) const
{
    if (!_case || !_case->hasCells(firstId, lastId))
        return 0;
    return fillIds(firstId, lastId, faceIds, capacity, [this](unsigned64 cell) {
        return std::pair(_case->shapes->facesBegin(cell), _case->shapes->facesEnd(cell));
    });
}

} // namespace meridyn
