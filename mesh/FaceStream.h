#pragma once

#include "KelTypes.h"

#include <vector>

namespace meridyn {
class KelProvider;
}

namespace meridyn::mesh {

/// Some faces that follow each other, with their nodes and cells.
struct FaceBlock {
    int zone = 0;
    unsigned64 first = 0;
    std::vector<short> counts;       ///< nodes per face
    std::vector<std::size_t> starts; ///< where the nodes of each face begin, and the end
    std::vector<unsigned64> nodes;
    std::vector<unsigned64> cell0s;
    std::vector<unsigned64> cell1s; ///< 0 where the reader does not tell
    bool hasCells = false;          ///< whether the reader tells cells on side 0

    std::size_t size() const { return counts.size(); }
    const unsigned64* nodesOf(std::size_t face) const { return nodes.data() + starts[face]; }
};

/// Reads the faces of a zone in blocks that stay small, whatever the counts of the faces are.
class FaceStream {
public:
    /// The zone has the faces `first` to `last`.
    FaceStream(const KelProvider& reader, int zone, unsigned64 first, unsigned64 last);

    /// Reads the next block. False at the end, and when the reader gives less than there should be: see isCut.
    bool next(FaceBlock& block);

    /// Whether the reader gives no nodes for the faces of the zone at all.
    bool isWithoutNodes() const { return _isWithoutNodes; }

    /// Whether the reader gave fewer values than the zone has.
    bool isCut() const { return _isCut; }

    /// Id of the first face of which values are missing.
    unsigned64 position() const { return _next; }

private:
    bool readCounts(FaceBlock& block);
    bool readNodes(FaceBlock& block) const;
    bool readCells(FaceBlock& block) const;

    const KelProvider& _reader;
    int _zone;
    unsigned64 _next;
    unsigned64 _last;
    unsigned64 _first;
    bool _isCut = false;
    bool _isWithoutNodes = false;
};

} // namespace meridyn::mesh
