#pragma once

#include "KelExport.h"
#include "KelTypes.h"

#include <array>
#include <map>
#include <string>
#include <vector>

namespace meridyn {

/// What is checked, in the order of the report.
enum class KelMeshRule {
    Zones,       ///< the zones of a category hold each element once
    Coordinates, ///< no infinite ones
    Ids,         ///< faces name nodes and cells that exist
    FaceNodes,   ///< a face has 3 different nodes or more (2 in two dimensions)
    FaceCells,   ///< a face in an interior zone has two different cells
    UsedNodes,   ///< each node belongs to a face
    CellFaces,   ///< a cell has 4 faces or more (3 in two dimensions)
    Closed,      ///< the area vectors of a cell sum up to zero
    Volumes,     ///< volumes are positive
    Orientation  ///< a face points from cell 0 to cell 1, or out of the mesh
};

/// Number of rules.
constexpr std::size_t meshRuleCount = 10;

/// A rule for machines ("face-nodes") and for people ("faces have at least 3 different nodes").
struct KelMeshRuleText {
    const char* key;
    const char* text;
};
/// The texts of a rule.
KEL_API const KelMeshRuleText& textOf(KelMeshRule rule);

/// What a check of a mesh found.
class KEL_API KelMeshReport {
public:
    /// The outcome of one rule.
    struct Outcome {
        unsigned64 offenders = 0;
        std::vector<std::string> named; ///< the first of them, each as one line
    };

    const Outcome& outcome(KelMeshRule rule) const { return _outcomes[static_cast<std::size_t>(rule)]; }

    /// Notes `count` offenders; they share a line, which is kept while fewer than `limit` are named.
    void add(KelMeshRule rule, const std::string& line, unsigned64 limit, unsigned64 count = 1);

    /// Whether nothing offends.
    bool isGood() const;

    int dimension = 0;
    std::array<unsigned64, 4> sizes{};           ///< by KelZoneCategory
    std::map<KelCellType, unsigned64> cellTypes; ///< empty when the reader does not tell
    bool hasFaces = false;                       ///< without them only zones and coordinates are checked
    bool hasBox = false;
    std::array<double, 3> boxMin{}, boxMax{}; ///< corners of the bounding box; z is 0 in two dimensions
    double volume = 0.0;                      ///< of all undamaged cells
    double smallestVolume = 0.0, largestVolume = 0.0;
    unsigned64 smallestCell = 0, largestCell = 0; ///< 0 for none

private:
    std::array<Outcome, meshRuleCount> _outcomes;
};

} // namespace meridyn
