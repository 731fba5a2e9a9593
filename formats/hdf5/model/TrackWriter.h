#pragma once

#include "formats/hdf5/arrays/ArrayStore.h"
#include "MeshLayout.h"

namespace meridyn::hdf5 {

/// Particle tracks of one phase: tracks/<mesh>/<group>/<chunk id>/<variable> in the group of the phase; a chunk has the
/// attribute kel_points, a variable kel_type and one row per point.
class TrackWriter {
public:
    /// @param mesh  the mesh, target and partition that the tracks belong to
    TrackWriter(Hdf5File& file, hid_t phaseGroup, const MeshKey& mesh, int compression);

    void startGroup(const std::string& name);
    void startChunk(int chunkId, std::uint64_t points);
    void writeValues(const std::string& variable, const KelValues& values);
    void endChunk() { _chunk = Handle(); }
    void endGroup();

private:
    Hdf5File& _file;
    Handle _tracks;
    Handle _group;
    Handle _chunk;
    std::uint64_t _points = 0;
    int _compression;
};

} // namespace meridyn::hdf5
