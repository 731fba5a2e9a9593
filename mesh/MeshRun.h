#pragma once

#include "KelMeshCheck.h"
#include "mesh/Vector3.h"

#include <string>
#include <vector>

namespace meridyn::mesh {

struct FaceBlock;

/// One run of a check: reads the mesh once and fills the report.
class MeshRun {
public:
    MeshRun(const KelProvider& reader, const KelMeshCheckOptions& options, KelMeshReport& report);

    /// Checks. @throws Stopped when the mesh could not be read as a whole, or the check was cancelled
    void run();

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
    const KelMeshCheckOptions& _options;
    KelMeshReport& _report;

    std::vector<std::vector<Zone>> _zones; ///< by category, ascending by first element
    std::vector<Vector3> _nodes;
    std::vector<bool> _isUsed;    ///< per node
    std::vector<bool> _isSpoiled; ///< per face: left out of the geometry
    std::vector<Cell> _cells;
};

} // namespace meridyn::mesh
