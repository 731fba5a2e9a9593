#pragma once

#include "mesh/Vector3.h"

#include <cstddef>
#include <cstdint>

namespace meridyn::mesh {

/// What the faces of a cell add up to while they pass by: enough to judge the cell without keeping its faces.
struct CellSums {
    Vector3 areas;           ///< sum of the area vectors, outwards
    double surface = 0.0;    ///< sum of their lengths
    double volume = 0.0;     ///< sum of the pyramids from the faces to the reference node
    std::uint64_t loop = 0;  ///< signed sum of the fingerprints of directed edges: 0 when each edge has its opposite
    std::uint64_t shape = 0; ///< sum of the fingerprints of faces, whichever way round they are
    std::uint32_t reference = 0; ///< place of the first node of the first face, shifted by one; 0 for none
    std::uint32_t faces = 0;
    std::uint32_t corners = 0; ///< nodes of all faces
    bool isDamaged = false;    ///< has a face that could not be used
    bool hasChildFaces = false;
};

/// Spreads a number over all 64 bits, so that sums of such numbers are 0 by construction only.
inline std::uint64_t spread(std::uint64_t x)
{
    x ^= x >> 30;
    x *= 0xbf58476d1ce4e5b9ULL;
    x ^= x >> 27;
    x *= 0x94d049bb133111ebULL;
    return x ^ (x >> 31);
}

/// Fingerprint of the edge between two nodes, the same from both ends.
inline std::uint64_t edgePrint(std::uint64_t a, std::uint64_t b)
{
    const std::uint64_t low = a < b ? a : b, high = a < b ? b : a;
    return spread(low * 0x9e3779b97f4a7c15ULL + spread(high + 0x7f4a7c15ULL));
}

/// Fingerprints of a face.
struct FacePrint {
    std::uint64_t loop = 0;  ///< changes its sign when the face is turned round
    std::uint64_t edges = 0; ///< the same for faces with the same edges
};

/// The fingerprints of a face by its nodes in order. In two dimensions a face is a line, which begins and ends.
template <class Node>
FacePrint printOf(const Node* nodes, std::size_t count, int dimension)
{
    FacePrint print;
    if (dimension == 2) {
        print.edges = edgePrint(nodes[0], nodes[count - 1]);
        print.loop = spread(nodes[count - 1] + 1) - spread(nodes[0] + 1);
        return print;
    }
    for (std::size_t n = 0; n < count; ++n) {
        const std::uint64_t a = nodes[n], b = nodes[n + 1 < count ? n + 1 : 0];
        const std::uint64_t edge = edgePrint(a, b);
        print.edges += edge;
        print.loop += a < b ? edge : 0 - edge;
    }
    return print;
}

} // namespace meridyn::mesh
