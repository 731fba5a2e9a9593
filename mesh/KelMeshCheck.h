#pragma once

#include "KelExport.h"
#include "KelMeshReport.h"

#include <functional>
#include <string>

namespace meridyn {

class KelProvider;

/// How strictly a mesh is checked, how much is told, and who is told how far the check is.
struct KelMeshCheckOptions {
    /// How far the area vectors of a cell may be from cancelling each other, as a share of the cell's surface.
    double closureTolerance = 1e-6;
    /// Exceptions that are named per rule; all are counted.
    unsigned64 named = 5;
    /// Told every few thousand elements what is being looked at, and how many of how many; false cancels the check.
    std::function<bool(const std::string& task, unsigned64 done, unsigned64 total)> progress;
};

/// Checks the topology and the geometry of a mesh whose case is open. The rules are those of KelMeshRule.
///
/// Cells     those that faces name are judged by their faces, all others by their nodes and the order that KelTypes.h
///           gives them; where a cell has both, they must agree. What a cell has neither of is named as not looked at.
/// Damage    a face that names what does not exist is left out with the cells that it names, so that one wrong id is
///           not ten exceptions; a cell that it should name is open. Cracks and overlaps are looked for only in a mesh
///           that is sound otherwise.
/// Geometry  the area of a face is the sum of triangles about its centre, the volume of a cell that of the pyramids
///           over its faces: exact for flat faces, and faces that are not flat close a cell all the same. In two
///           dimensions faces are lines and volumes are areas.
/// Parents   faces of zones of the type KEL_FACE_ZONE_TYPE_PARENT were replaced by their children: they bound no cell.
/// Memory    24 bytes per node and 72 per cell, 130 per face that one cell has; for cells that no face names 16 per
///           side instead. Faces between cells take none.
class KEL_API KelMeshCheck {
public:
    /// The reader stays the caller's; its case must be open while the check runs.
    explicit KelMeshCheck(KelProvider& reader, KelMeshCheckOptions options = {});

    /// Checks. False when the mesh could not be read as a whole, or the check was cancelled: see problem().
    [[nodiscard]] bool run();

    /// What the last run found; only part of it after a run that gave false.
    const KelMeshReport& report() const;

    /// Why run gave false; empty otherwise.
    const std::string& problem() const;

    /// Whether the last run ended because the progress function gave false.
    bool wasCancelled() const;

private:
    KelProvider& _reader;
    KelMeshCheckOptions _options;
    KelMeshReport _report;
    std::string _problem;
    bool _cancelled = false;
};

} // namespace meridyn
