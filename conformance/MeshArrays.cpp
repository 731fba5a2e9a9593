#include "MeshArrays.h"

#include <algorithm>
#include <cassert>

namespace meridyn::conformance {

namespace {

/// Where a mesh as plain data has the values of an array, or null.
std::vector<unsigned64> Mesh::*idsIn(KelArray array)
{
    switch (array) {
    case KelArray::FaceCell0s:
        return &Mesh::cell0;
    case KelArray::FaceCell1s:
        return &Mesh::cell1;
    case KelArray::FaceShadows:
        return &Mesh::shadows;
    default:
        return nullptr;
    }
}

Ragged Mesh::*listsIn(KelArray array)
{
    switch (array) {
    case KelArray::EdgeNodes:
        return &Mesh::edgeNodes;
    case KelArray::FaceNodes:
        return &Mesh::faceNodes;
    case KelArray::FaceChildren:
        return &Mesh::childFaces;
    case KelArray::CellNodes:
        return &Mesh::cellNodes;
    case KelArray::CellFaces:
        return &Mesh::cellFaces;
    case KelArray::CellChildren:
        return &Mesh::childCells;
    default:
        return nullptr;
    }
}

/// The rows of a type, each with its place in a mesh; all of them must have one.
template <class Array, class Row, class Place>
std::vector<Array> placed(const Place& place)
{
    std::vector<Array> arrays;
    for (const AnyFrameArray& row : frameArrays())
        if (const Row* const known = std::get_if<Row>(&row)) {
            assert(place(known->array) != nullptr);
            arrays.push_back({*known, place(known->array)});
        }
    return arrays;
}

} // namespace

const std::vector<FixedArray<unsigned64>>& idArrays()
{
    static const auto arrays = placed<FixedArray<unsigned64>, FixedFrameArray<unsigned64>>(idsIn);
    return arrays;
}

const FixedArray<KelCellType>& typeArray()
{
    static const auto arrays =
        placed<FixedArray<KelCellType>, FixedFrameArray<KelCellType>>([](KelArray) { return &Mesh::types; });
    return arrays.front();
}

const FixedArray<int>& partitionArray()
{
    static const auto arrays =
        placed<FixedArray<int>, FixedFrameArray<int>>([](KelArray) { return &Mesh::partitions; });
    return arrays.front();
}

const std::vector<RaggedArray>& raggedArrays()
{
    static const auto arrays = placed<RaggedArray, RaggedFrameArray>(listsIn);
    return arrays;
}

Ids idsOf(const std::vector<Zone>& zones)
{
    Ids ids;
    for (const Zone& zone : zones)
        ids.push_back(zone.id);
    return ids;
}

namespace {

/// The zones of a category in which `says(index of element)` holds somewhere.
template <class Says>
std::vector<Zone> zonesThatSay(const Mesh& mesh, KelZoneCategory category, const Says& says)
{
    std::vector<Zone> zones = mesh.zonesOf(category);
    zones.erase(std::remove_if(zones.begin(), zones.end(),
                               [&](const Zone& zone) {
                                   for (unsigned64 id = zone.first; id <= zone.last; ++id)
                                       if (says(id - 1))
                                           return false;
                                   return true;
                               }),
                zones.end());
    return zones;
}

} // namespace

std::vector<Zone> zonesWith(const FixedArray<unsigned64>& array, const Mesh& mesh)
{
    const std::vector<unsigned64>& values = mesh.*array.data;
    if (values.empty())
        return {};
    const bool all = !array.zeroIsNone || array.array == KelArray::FaceCell1s; // a face without cell 1 is told so
    return zonesThatSay(mesh, array.category, [&](unsigned64 n) { return all || values[n] != 0; });
}

std::vector<Zone> zonesWith(const FixedArray<KelCellType>& array, const Mesh& mesh)
{
    return (mesh.*array.data).empty() ? std::vector<Zone>{} : mesh.zonesOf(array.category);
}

std::vector<Zone> zonesWith(const FixedArray<int>& array, const Mesh& mesh)
{
    return (mesh.*array.data).empty() ? std::vector<Zone>{} : mesh.zonesOf(array.category);
}

std::vector<Zone> zonesWith(const RaggedArray& array, const Mesh& mesh)
{
    const std::vector<short>& counts = (mesh.*array.data).counts;
    if (counts.empty())
        return {};
    const bool all = !array.zeroIsNone;
    return zonesThatSay(mesh, array.category, [&](unsigned64 n) { return all || counts[n] != 0; });
}

} // namespace meridyn::conformance
