#pragma once

#include "KelTypes.h"
#include "MeshReport.h"
#include "Vector3.h"

#include <functional>
#include <string>
#include <vector>

namespace meridyn {
class KelProvider;
}

namespace meridyn::tool {

struct FaceBlock;

/// How strictly a mesh is checked.
struct MeshCheckOptions {
    /// How far the area vectors of a cell may be from cancelling each other, as a share of the cell's surface.
    double closureTolerance = 1e-6;
    /// Offenders that are named per check; all are counted.
    unsigned64 named = 5;
    /// Told how far the check is; false cancels it.
    std::function<bool(const std::string& task, unsigned64 done, unsigned64 total)> progress;
};

/// Checks the topology and the geometry of a mesh whose case is open.
///
/// Order     zones, coordinates, faces and their cells, geometry. A damaged face is left out of the geometry with the
///           cells that it names, so that one wrong id is not ten offenders; a cell that it should name is open.
/// Geometry  the area of a face is the sum of triangles about its centre, the volume of a cell that of pyramids from
///           its faces to its centre: exact for flat faces, and faces that are not flat close a cell all the same.
///           In two dimensions faces are lines and volumes are areas.
/// Parents   faces of zones of the type KEL_FACE_ZONE_TYPE_PARENT were replaced by their children: their ids are
///           checked, their geometry is not.
/// Memory    3 numbers per node and 8 per cell.
class MeshCheck {
public:
    /// The reader stays the caller's.
    explicit MeshCheck(const KelProvider& reader, MeshCheckOptions options = {});

    /// Checks. False when the mesh could not be read as a whole, or the check was cancelled: see problem().
    bool run();

    /// What was found.
    const MeshReport& report() const { return _report; }

    /// Why run gave false; empty otherwise.
    const std::string& problem() const { return _problem; }

    bool wasCancelled() const { return _cancelled; }

private:
    struct Zone {
        int id;
        unsigned64 first;
        unsigned64 last;
        bool isInterior;
        bool isParent;
    };

    /// Geometry of a cell as it is summed up.
    struct Cell {
        Vector3 centre;       ///< mean of the centres of its faces
        Vector3 areas;        ///< sum of the area vectors, outwards
        double surface = 0.0; ///< sum of their lengths
        double volume = 0.0;
        unsigned faces = 0;
        bool isDamaged = false; ///< has a face that could not be used
    };

    void readSizes();
    void checkZones(KelZoneCategory category, unsigned64 size);
    void readCoordinates();
    void readCellTypes();
    void reserveCells();
    template <class Visit>
    void forFaces(const std::string& task, const Visit& visit);
    void checkFaces(const Zone& zone, const FaceBlock& block);
    bool checkFace(const Zone& zone, const FaceBlock& block, std::size_t face);
    bool checkNodes(const Zone& zone, const FaceBlock& block, std::size_t face);
    bool checkCells(const Zone& zone, const FaceBlock& block, std::size_t face);
    void addGeometry(const Zone& zone, const FaceBlock& block);
    double addSide(Cell& cell, const Vector3& area, const Vector3& centre) const;
    void checkUnusedNodes();
    void checkCell(unsigned64 id, const Cell& cell);
    Vector3 centreOf(const FaceBlock& block, std::size_t face) const;
    Vector3 areaOf(const FaceBlock& block, std::size_t face, const Vector3& centre) const;
    void damageCells(const FaceBlock& block, std::size_t face);
    Cell* cell(unsigned64 id);
    std::string label(const Zone& zone, unsigned64 faceId) const;
    void tell(const std::string& task, unsigned64 done, unsigned64 total);
    [[noreturn]] void stop(const std::string& problem) const;

    const KelProvider& _reader;
    MeshCheckOptions _options;
    MeshReport _report;
    std::string _problem;
    bool _cancelled = false;

    std::vector<std::vector<Zone>> _zones; ///< by category, ascending by first element
    std::vector<Vector3> _nodes;
    std::vector<bool> _isUsed;    ///< per node
    std::vector<bool> _isSpoiled; ///< per face: left out of the geometry
    std::vector<Cell> _cells;
};

} // namespace meridyn::tool
