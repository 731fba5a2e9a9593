#pragma once

#include "KelArrays.h"
#include "MeshLayout.h"

namespace meridyn::hdf5 {

/// What an array of the frames is in the file.
struct MeshArray {
    enum class Kind {
        None,        ///< not an array of the mesh
        Coordinates, ///< of nodes
        Ids,         ///< `ids` says which
        Ints,        ///< `ints` says which
        Lists        ///< `lists` says which; of their counts too, see isOfCounts
    };

    Kind kind = Kind::None;
    Ids ids{};
    Ints ints{};
    Lists lists{};

    constexpr MeshArray(Kind which) : kind(which) {}
    constexpr MeshArray(Ids which) : kind(Kind::Ids), ids(which) {}
    constexpr MeshArray(Ints which) : kind(Kind::Ints), ints(which) {}
    constexpr MeshArray(Lists which) : kind(Kind::Lists), lists(which) {}
};

MeshArray meshArrayOf(KelArray array);

} // namespace meridyn::hdf5
