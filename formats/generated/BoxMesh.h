#pragma once

#include "BoxDescription.h"

#include <array>
#include <string>
#include <vector>

namespace meridyn {

/// A box of divided blocks in which every element is computed from its id alone.
///
/// Blocks (i, j, k) are numbered with i fastest; cells block by block; nodes lattice first, then block centres or the
/// nodes that the hanging plane adds. Faces: inside blocks, across x, across y, across z, the children of the hanging
/// plane, then the six boundaries, then the parents of the hanging plane.
class BoxMesh {
public:
    struct Zone {
        int id;
        KelZoneCategory category;
        std::string name;
        int kind; ///< KelFaceZoneType of a face zone, -1 otherwise
        unsigned64 first;
        unsigned64 last; ///< first - 1 for an empty zone
    };

    struct Face {
        std::array<unsigned64, 4> nodes{};
        short nodeCount = 0;
        unsigned64 cell0 = 0;
        unsigned64 cell1 = 0;
        unsigned64 shadow = 0;
        std::array<unsigned64, 4> children{};
        short childCount = 0;
    };

    explicit BoxMesh(const BoxDescription& description);

    const BoxDescription& description() const { return _box; }
    const std::vector<Zone>& zones() const { return _zones; }
    unsigned64 nodeCount() const { return _nodeCount; }
    unsigned64 faceCount() const { return _faceCount; }
    unsigned64 cellCount() const { return _blockCount * _template.cells().size(); }

    std::array<double, 3> coordinates(unsigned64 nodeId) const;
    Face face(unsigned64 faceId) const;
    KelCellType cellType(unsigned64 cellId) const;
    std::vector<unsigned64> cellNodes(unsigned64 cellId) const; ///< empty for a polyhedron
    std::array<double, 3> cellCentre(unsigned64 cellId) const;
    int cellPartition(unsigned64 cellId) const;

    /// Node counts that all faces, or all cells, of an id range share; 0 where they differ.
    short uniformFaceNodeCount(unsigned64 first, unsigned64 last) const;
    short uniformCellNodeCount() const;

    /// Whether all cells of an id range have one type.
    bool hasUniformType(unsigned64 first, unsigned64 last, KelCellType& type) const;

private:
    using Position = std::array<unsigned64, 3>;

    /// Faces of one kind whose ids follow each other.
    struct Group {
        enum class Kind {
            Inner,
            Across,
            Children,
            Boundary,
            Parents
        } kind;
        int direction;
        int side; ///< of a boundary: 0 near, 1 far
        unsigned64 first;
        unsigned64 count;
    };

    void addGroup(Group::Kind kind, int direction, int side, unsigned64 count);
    void addZones();
    const Group& groupOf(unsigned64 faceId) const;
    Position blockPosition(unsigned64 block, const Position& extent) const;
    unsigned64 block(const Position& at) const;
    unsigned64 cell(const Position& at, int inBlock) const;
    unsigned64 node(const Position& at, int local) const;
    unsigned64 planeNode(unsigned64 u, unsigned64 v) const;
    Face templateFace(const BlockTemplate::Face& face, const Position& at) const;
    Face acrossFace(const Group& group, unsigned64 index) const;
    Face boundaryFace(const Group& group, unsigned64 index) const;
    Face childFace(unsigned64 index) const;
    Face parentFace(unsigned64 index) const;
    bool touchesPlane(unsigned64 layer) const;

    BoxDescription _box;
    BlockTemplate _template;
    unsigned64 _blockCount = 0;
    unsigned64 _latticeNodes = 0;
    unsigned64 _nodeCount = 0;
    unsigned64 _faceCount = 0;
    unsigned64 _plane = 0; ///< layer above the hanging plane, 0 for none
    std::vector<Group> _groups;
    std::vector<Zone> _zones;
};

} // namespace meridyn
