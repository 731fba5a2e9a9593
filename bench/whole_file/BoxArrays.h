#pragma once

#include "KelTypes.h"

#include <vector>

namespace whole_file {

/// The arrays of a box of n times n times n cells, face-based, and five smooth variables on its cells.
struct BoxArrays {
    /// @param scatters  numbers cells, faces and nodes in a random order: the tidy box flatters every compressor
    BoxArrays(meridyn::unsigned64 n, bool scatters);

    meridyn::unsigned64 nodes, faces, interiorFaces, cells;
    std::vector<double> coordinates;             ///< three per node
    std::vector<meridyn::unsigned64> faceNodes;  ///< four per face
    std::vector<meridyn::unsigned64> owners;     ///< cell 0 of all faces
    std::vector<meridyn::unsigned64> neighbours; ///< cell 1 of the interior faces, which come first
    std::vector<double> variables[5];            ///< one per cell

    meridyn::unsigned64 meshBytes() const;
    meridyn::unsigned64 solutionBytes() const;
};

} // namespace whole_file
