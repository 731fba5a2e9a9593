#pragma once

#include "KelFormat.h"
#include "KelTypes.h"

#include <string>
#include <vector>

namespace meridyn::conformance {

/// A count per element, and as many ids per element one after the other.
struct Ragged {
    std::vector<short> counts;
    std::vector<unsigned64> ids;

    /// Where the ids of element number n (from 0) begin; n may be the number of elements.
    std::size_t begin(std::size_t n) const;
    /// Adds an element.
    void add(const std::vector<unsigned64>& elementIds);
};

struct Zone {
    int id;
    KelZoneCategory category;
    unsigned64 first; ///< 0 for a zone without elements
    unsigned64 last;
    std::string name;
    int kind;

    unsigned64 count() const { return first == 0 ? 0 : last - first + 1; }
};

/// A mesh as plain data: what a writer is given and a reader must give back. Arrays cover all elements of their kind;
/// an empty one is not written.
struct Mesh {
    unsigned64 dimension = 3;
    std::vector<Zone> zones;
    std::vector<double> coordinates;
    Ragged edgeNodes, faceNodes, childFaces, cellNodes, cellFaces, childCells;
    std::vector<unsigned64> cell0, cell1, shadows;
    std::vector<KelCellType> types;
    std::vector<int> partitions;
    int partitionCount = 0;

    /// Number of elements of a kind: the last id of its zones.
    unsigned64 count(KelZoneCategory category) const;
    /// The zones of a category that have elements.
    std::vector<Zone> zonesOf(KelZoneCategory category) const;
    /// The zone of an id; it must exist.
    const Zone& zone(int id) const;
};

/// A box of cells, from a line of KelGeneratedProvider, with faces of cells, and edges along a side of each face.
Mesh boxMesh(const std::string& line);

/// The mesh that most checks use: few cells, two cell zones, partitions.
Mesh smallMesh();

/// Three quadrilaterals in a plane: nodes with two coordinates, faces that are lines.
Mesh planeMesh();

} // namespace meridyn::conformance
