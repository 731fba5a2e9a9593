#pragma once

#include "KelTypes.h"

#include <cstddef>
#include <vector>

namespace meridyn::mesh {

/// The ids of one category that are in a zone, numbered without gaps: zones may leave out ids, arrays should not.
class ElementIds {
public:
    /// What indexOf gives for an id that is in no zone.
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    /// Adds the ids of a zone. Zones come in ascending order of their first ids; ids that are known already stay one.
    void add(unsigned64 first, unsigned64 last);

    /// Place of an id, from 0; `none` when it is in no zone.
    std::size_t indexOf(unsigned64 id) const;

    /// The id at a place below size().
    unsigned64 idOf(std::size_t index) const;

    bool contains(unsigned64 id) const { return indexOf(id) != none; }

    /// Number of ids.
    std::size_t size() const { return _size; }

    /// The largest id; 0 when there is none.
    unsigned64 last() const { return _runs.empty() ? 0 : _runs.back().last; }

private:
    /// Ids that follow each other, and the place of the first.
    struct Run {
        unsigned64 first;
        unsigned64 last;
        std::size_t place;
    };

    std::vector<Run> _runs; ///< ascending; two runs neither touch nor overlap
    std::size_t _size = 0;
};

} // namespace meridyn::mesh
