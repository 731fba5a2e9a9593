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

    const char* name; ///< for messages, "face nodes"
    Kind kind = Kind::None;
    Ids ids{};
    Ints ints{};
    Lists lists{};

    constexpr MeshArray(const char* text, Kind ofKind = Kind::None) : name(text), kind(ofKind) {}
    constexpr MeshArray(const char* text, Ids which) : name(text), kind(Kind::Ids), ids(which) {}
    constexpr MeshArray(const char* text, Ints which) : name(text), kind(Kind::Ints), ints(which) {}
    constexpr MeshArray(const char* text, Lists which) : name(text), kind(Kind::Lists), lists(which) {}
};

const MeshArray& meshArrayOf(KelArray array);

} // namespace meridyn::hdf5
