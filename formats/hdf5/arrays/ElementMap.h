#pragma once

#include <cstdint>
#include <utility>
#include <vector>

namespace meridyn::hdf5 {

/// Which row of the arrays of one element kind an element id has: the ids of all zones, ascending, without the gaps
/// between them. In a mesh whose zones follow each other from 1, row = id - 1.
class ElementMap {
public:
    struct Range {
        std::uint64_t first = 0; ///< element id
        std::uint64_t last = 0;  ///< element id, included
        std::uint64_t row = 0;   ///< row of the first
    };

    ElementMap() = default;

    /// Of the given ranges of ids (first, last), in any order; they may overlap. Ranges from 0 and empty ones are left
    /// out.
    explicit ElementMap(std::vector<std::pair<std::uint64_t, std::uint64_t>> ranges);

    /// From the table of a file.
    /// @throws FormatError when the ranges are not ascending and disjoint
    static ElementMap fromTable(const std::vector<std::uint64_t>& table);

    /// Pairs of first and last id.
    std::vector<std::uint64_t> toTable() const;

    const std::vector<Range>& ranges() const { return _ranges; }
    bool isEmpty() const { return _ranges.empty(); }
    std::uint64_t rowCount() const;
    std::uint64_t largestId() const { return _ranges.empty() ? 0 : _ranges.back().last; }
    bool contains(std::uint64_t first, std::uint64_t last) const;

    /// The range that holds an id; null for none.
    const Range* find(std::uint64_t id) const;

    /// The element of a row; 0 for a row too large.
    std::uint64_t idOf(std::uint64_t row) const;

    /// Calls work(row, count, position) for every piece of the ids [first, last] that lies together; `position` counts
    /// from the first id.
    /// @return false, without a call, unless all of them are in the map
    template <class Work>
    bool forEachPiece(std::uint64_t first, std::uint64_t last, Work&& work) const
    {
        if (!contains(first, last))
            return false;
        for (std::size_t i = indexOf(first); i < _ranges.size() && _ranges[i].first <= last; ++i) {
            const std::uint64_t from = first > _ranges[i].first ? first : _ranges[i].first;
            const std::uint64_t to = last < _ranges[i].last ? last : _ranges[i].last;
            work(_ranges[i].row + (from - _ranges[i].first), to - from + 1, from - first);
        }
        return true;
    }

    friend bool operator==(const ElementMap& a, const ElementMap& b) { return a.toTable() == b.toTable(); }

private:
    std::size_t indexOf(std::uint64_t id) const; // of the range that holds it, or of the next one

    std::vector<Range> _ranges;
};

} // namespace meridyn::hdf5
