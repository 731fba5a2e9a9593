#include "TrackWriter.h"

#include "formats/hdf5/file/Attributes.h"
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"

#include <algorithm>

namespace meridyn::hdf5 {

TrackWriter::TrackWriter(Hdf5File& file, hid_t phaseGroup, const MeshKey& mesh, int compression)
    : _file(file), _compression(compression)
{
    const Handle all = openOrCreateGroup(phaseGroup, "tracks");
    _tracks = openOrCreateGroup(all.get(), mesh.groupName());
}

void TrackWriter::startGroup(const std::string& name)
{
    _chunk = Handle();
    _group = openOrCreateGroup(_tracks.get(), encodeName(name));
}

void TrackWriter::startChunk(int chunkId, std::uint64_t points)
{
    if (!_group)
        throw FormatError("chunk " + std::to_string(chunkId) + " of particle tracks outside a group");
    if (points > 1ULL << 56)
        throw FormatError("chunk " + std::to_string(chunkId) + " of particle tracks with more than 2^56 points");
    _chunk = replaceGroup(_file, _group.get(), std::to_string(chunkId));
    _points = points;
    writeNumber(_chunk.get(), "kel_points", static_cast<std::int64_t>(points));
}

void TrackWriter::writeValues(const std::string& variable, const KelValues& values)
{
    const std::uint64_t count = values.count;
    if (!_chunk)
        throw FormatError("values of the particle tracks' variable '" + variable + "' outside a chunk");
    if (_points == 0 ? count != 0 : count % _points != 0)
        throw FormatError("the particle tracks' variable '" + variable + "' has " + std::to_string(count) +
                          " values, a multiple of " + std::to_string(_points) + " expected");
    const std::uint64_t columns = _points == 0 ? 1 : std::max<std::uint64_t>(1, count / _points);
    const ArrayShape shape{storedTypeOfPlain(values.type), count / columns, columns};
    const auto array = ArrayWriter::create(_file, _chunk.get(), encodeName(variable), shape, _compression);
    writeNumber(array->id(), "kel_type", values.type);
    array->write(0, count, sourceOf(values, shape.type));
    array->finish();
}

void TrackWriter::endGroup()
{
    _chunk = Handle();
    _group = Handle();
}

} // namespace meridyn::hdf5
