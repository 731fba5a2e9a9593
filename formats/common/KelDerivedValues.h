#pragma once

#include "KelTypes.h"

#include <set>
#include <utility>

namespace meridyn {

/// What a writer worked out for itself because its client did not say it. A format keeps it beside the values, so that
/// a comparison can tell them from values that were given.
struct KelDerivedValues {
    std::set<KelMeshSizeType> meshSizes; ///< counted from the zones

    /// Lists of neighbours, found in the cells of faces: zone and side, which is 0 for a cell zone.
    std::set<std::pair<int, int>> neighbours;

    /// Whether everything was given.
    bool isEmpty() const { return meshSizes.empty() && neighbours.empty(); }

    /// Whether the same values are derived.
    friend bool operator==(const KelDerivedValues& a, const KelDerivedValues& b)
    {
        return a.meshSizes == b.meshSizes && a.neighbours == b.neighbours;
    }
};

} // namespace meridyn
