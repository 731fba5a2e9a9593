#pragma once

#include "KelTypes.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace meridyn::polymesh {

class CaseFolder;

/// A boundary patch: faces `first` to `first + count - 1`, from 0.
struct PolyPatch {
    std::string name;
    std::string type;
    std::string neighbour; ///< the patch on the other side of a periodic or non-conformal pair
    std::vector<std::string> groups;
    std::uint64_t first = 0;
    std::uint64_t count = 0;
};

/// A named list of cells, faces or points, from 0, as the case numbers them.
struct PolySelection {
    std::string name;
    std::vector<std::uint32_t> labels;
    std::vector<unsigned char> flips; ///< of faces only: 1 where the face counts as turned
    KelZoneCategory category = KEL_CELL_ZONE;
};

/// A zone as it is declared to clients; ids count from 1, `last` < `first` when the zone is empty.
struct PolyZone {
    int id;
    KelZoneCategory category;
    std::string name;
    std::string kind;
    std::uint64_t first;
    std::uint64_t last;
    KelFaceZoneType faceType = KEL_FACE_ZONE_TYPE_INTERIOR;
};

/// A mesh in memory. Labels count from 0; faces and points keep those of the case, cells are ordered by zones.
struct PolyMesh {
    std::vector<double> points; ///< x, y, z of each
    std::vector<std::uint64_t> faceOffsets;
    std::vector<std::uint32_t> faceNodes;
    std::vector<std::uint32_t> owner;
    std::vector<std::uint32_t> neighbour; ///< of the interior faces, which come first
    std::vector<PolyPatch> patches;
    std::vector<PolySelection> cellZones, faceZones, pointZones;
    std::vector<PolySelection> sets;                          ///< of cells, faces and points
    std::vector<std::pair<std::string, std::string>> badSets; ///< files of sets that cannot be read, and why
    std::vector<std::uint32_t> caseCells; ///< the case's label of each cell; empty when nothing was reordered
    std::vector<PolyZone> zones;
    std::uint64_t cellCount = 0;
    bool hasOverlappingCellZones = false;

    std::uint64_t pointCount() const { return points.size() / 3; }
    std::uint64_t faceCount() const { return owner.size(); }
    std::uint64_t interiorCount() const { return neighbour.size(); }

    /// The patch that is joined to this one face by face, or null.
    const PolyPatch* partner(const PolyPatch& patch) const;

    /// Reads a mesh of a case. @throws FoamError
    static PolyMesh read(const CaseFolder& folder, std::size_t mesh);
};

/// The words in "2(wall hot)".
std::vector<std::string> wordsInParentheses(const std::string& text);

/// Makes the zones of a mesh that was just read, and puts its cells in their order.
void mapZones(PolyMesh& mesh);

} // namespace meridyn::polymesh
