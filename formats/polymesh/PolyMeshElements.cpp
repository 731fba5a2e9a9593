// Arrays of KelPolyMeshProvider: nodes, faces and cells.
#include "KelPolyMeshProvider.h"
#include "PolyMeshCase.h"
#include "RangeFilling.h"

namespace meridyn {

using namespace polymesh;

namespace {

/// The value that all elements of a range have.
///
/// @param get  gives that of an element, from 0
template <class Get>
std::optional<signed64> commonValue(unsigned64 first, unsigned64 last, const Get& get)
{
    const auto value = get(first - 1);
    for (unsigned64 id = first + 1; id <= last; ++id)
        if (get(id - 1) != value)
            return std::nullopt;
    return static_cast<signed64>(value);
}

/// Stores lists of ids.
///
/// @param list  gives the begin and the end of the labels of an element, both from 0
template <class List>
unsigned64 fillIds(unsigned64 first, unsigned64 last, const KelBuffer& buffer, const List& list)
{
    std::vector<unsigned64> ids;
    return fillLists(first, last, buffer, [&](unsigned64 id) {
        const auto [begin, end] = list(id - 1);
        ids.resize(static_cast<std::size_t>(end - begin));
        std::transform(begin, end, ids.begin(), [](std::uint32_t label) { return label + unsigned64{1}; });
        return std::pair(ids.begin(), ids.end());
    });
}

} // namespace

unsigned64 KelPolyMeshProvider::give(KelArray array, unsigned64 first, unsigned64 last, const KelBuffer& values) const
{
    if (!_case || !_case->has(array, first, last))
        return 0;
    switch (array) {
    case KelArray::Coordinates:
        return _case->giveCoordinates(first, last, values);
    case KelArray::FaceNodes:
    case KelArray::FaceNodeCounts:
    case KelArray::FaceCell0s:
    case KelArray::FaceCell1s:
    case KelArray::FaceShadows:
        return _case->giveFaces(array, first, last, values);
    case KelArray::PhaseVariable:
        return _case->giveValues(first, last, values);
    case KelArray::SetIds:
    case KelArray::SetVariable:
        return _case->giveSet(array, first, last, values);
    default:
        return _case->giveCells(array, first, last, values);
    }
}

/// Whether there are all elements, or positions, of a range.
bool KelPolyMeshProvider::Case::has(KelArray array, unsigned64 first, unsigned64 last) const
{
    switch (array) {
    case KelArray::Coordinates:
        return hasIds(first, last, mesh->pointCount());
    case KelArray::FaceNodes:
    case KelArray::FaceNodeCounts:
    case KelArray::FaceCell0s:
    case KelArray::FaceCell1s:
    case KelArray::FaceShadows:
        return hasIds(first, last, mesh->faceCount());
    case KelArray::CellTypes:
    case KelArray::CellNodes:
    case KelArray::CellNodeCounts:
    case KelArray::CellFaces:
    case KelArray::CellFaceCounts:
        return hasIds(first, last, mesh->cellCount);
    case KelArray::PhaseVariable:
        return isReadingVariable && hasIds(first, last, elementCount(category));
    case KelArray::SetIds:
        return set != nullptr && hasIds(first, last, set->members->labels.size());
    case KelArray::SetVariable:
        return set != nullptr && isReadingFlips && hasIds(first, last, set->members->flips.size());
    default:
        return false;
    }
}

unsigned64 KelPolyMeshProvider::Case::giveCoordinates(unsigned64 first, unsigned64 last, const KelBuffer& values) const
{
    const KelBuffer whole(values.data, values.capacity / 3 * 3, values.type); // three per node
    return fillSingle(3 * first - 2, 3 * last, whole, [this](unsigned64 n) { return mesh->points[n - 1]; });
}

unsigned64 KelPolyMeshProvider::Case::giveFaces(KelArray array, unsigned64 first, unsigned64 last,
                                                const KelBuffer& values) const
{
    switch (array) {
    case KelArray::FaceNodes:
        return fillIds(first, last, values, [this](unsigned64 face) {
            return std::pair(mesh->faceNodes.data() + mesh->faceOffsets[face],
                             mesh->faceNodes.data() + mesh->faceOffsets[face + 1]);
        });
    case KelArray::FaceNodeCounts:
        return fillSingle(first, last, values, [this](unsigned64 id) { return nodeCountOfFace(id - 1); });
    case KelArray::FaceCell0s:
        return fillSingle(first, last, values, [this](unsigned64 id) { return mesh->owner[id - 1] + unsigned64{1}; });
    case KelArray::FaceCell1s:
        return fillSingle(first, last, values, [this](unsigned64 id) {
            return id <= mesh->neighbour.size() ? mesh->neighbour[id - 1] + unsigned64{1} : 0;
        });
    default:
        return giveShadows(first, last, values);
    }
}

/// Periodic patches are joined face by face, in their order. Nothing when no face of the range has a partner.
unsigned64 KelPolyMeshProvider::Case::giveShadows(unsigned64 first, unsigned64 last, const KelBuffer& values) const
{
    const unsigned64 count = std::min(last - first + 1, values.capacity);
    std::vector<unsigned64> shadows(count);
    bool hasPartner = false;
    for (const PolyPatch& patch : mesh->patches) {
        const PolyPatch* partner = mesh->partner(patch);
        if (partner == nullptr)
            continue;
        const unsigned64 begin = std::max(patch.first + 1, first);
        const unsigned64 end = std::min(patch.first + patch.count, first + count - 1);
        for (unsigned64 id = begin; id <= end; ++id) {
            shadows[id - first] = id - patch.first + partner->first;
            hasPartner = true;
        }
    }
    return hasPartner ? fillSingle(first, last, values, [&](unsigned64 id) { return shadows[id - first]; }) : 0;
}

unsigned64 KelPolyMeshProvider::Case::giveCells(KelArray array, unsigned64 first, unsigned64 last,
                                                const KelBuffer& values) const
{
    std::uint32_t nodes[8];
    switch (array) {
    case KelArray::CellTypes:
        return fillSingle(first, last, values,
                          [this](unsigned64 id) { return static_cast<int>(shapes->type(id - 1)); });
    case KelArray::CellNodes:
        return fillIds(first, last, values, [&](unsigned64 cell) {
            const short count = shapes->nodes(cell, nodes);
            return std::pair<const std::uint32_t*, const std::uint32_t*>(nodes, nodes + count);
        });
    case KelArray::CellNodeCounts:
        return fillSingle(first, last, values, [this](unsigned64 id) { return nodeCountOfCell(id - 1); });
    case KelArray::CellFaces:
        return fillIds(first, last, values,
                       [this](unsigned64 cell) { return std::pair(shapes->facesBegin(cell), shapes->facesEnd(cell)); });
    default:
        return fillSingle(first, last, values, [this](unsigned64 id) { return shapes->faceCount(id - 1); });
    }
}

std::optional<signed64> KelPolyMeshProvider::uniformValue(KelArray array, unsigned64 first, unsigned64 last) const
{
    if (!_case || !_case->has(array, first, last))
        return std::nullopt;
    const Case& now = *_case;
    switch (array) {
    case KelArray::FaceNodeCounts:
        return commonValue(first, last, [&now](unsigned64 face) { return now.nodeCountOfFace(face); });
    case KelArray::CellTypes:
        return commonValue(first, last, [&now](unsigned64 cell) { return now.shapes->type(cell); });
    case KelArray::CellNodeCounts:
        return commonValue(first, last, [&now](unsigned64 cell) { return now.nodeCountOfCell(cell); });
    case KelArray::CellFaceCounts:
        return commonValue(first, last, [&now](unsigned64 cell) { return now.shapes->faceCount(cell); });
    default:
        return std::nullopt;
    }
}

} // namespace meridyn
