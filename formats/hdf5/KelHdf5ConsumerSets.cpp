#include "ConsumerData.h"

namespace meridyn {

using namespace hdf5;

// ---- sets ----

void KelHdf5Consumer::startWritingSet(const std::string& name, KelZoneCategory category)
{
    if (!_data->set)
        _data->setClass = _data->current;
    _data->attemptOnMesh(_data->setClass, "startWritingSet", [&](Data::Session&) {
        if (_data->set)
            _data->set->finish();
        _data->set.reset();
        _data->setClass = _data->current;
        const bool isCase = _data->current == KEL_CASE;
        const hid_t scope = isCase ? _data->sessions[KEL_CASE]->mesh.get() : _data->levelGroup();
        Hdf5File& file = *_data->sessions[_data->current]->file;
        _data->set = std::make_unique<SetWriter>(file, scope, name, category, _data->compression);
    });
}

void KelHdf5Consumer::setSizesAndMinMaxIdsForSet(const std::vector<unsigned64>& sizes,
                                                 const std::vector<unsigned64>& minIds,
                                                 const std::vector<unsigned64>& maxIds)
{
    _data->onSet("setSizesAndMinMaxIdsForSet", [&](SetWriter& set) { set.setBlocks(sizes, minIds, maxIds); });
}

void KelHdf5Consumer::startLengths(const std::string& name, KelPlainDataType type)
{
    _data->onSet("startWritingSizeOfVariableForSet", [&](SetWriter& set) { set.startLengths(name, type); });
}

void KelHdf5Consumer::endWritingSet()
{
    _data->onSet("endWritingSet", [&](SetWriter& set) {
        set.finish();
        _data->set.reset();
    });
}

// ---- set data ----

void KelHdf5Consumer::startWritingSetData(const std::string& name, unsigned64 memberCount)
{
    _data->attemptOnMesh(KEL_DATA, "startWritingSetData", [&](Data::Session& target) {
        if (_data->setData)
            _data->setData->finish();
        const Handle scope = _data->phaseGroup();
        _data->setData =
            std::make_unique<SetDataWriter>(*target.file, scope.get(), name, memberCount, _data->compression);
    });
}

bool KelHdf5Consumer::append(KelPart part, const KelValues& values)
{
    if (part == KelPart::Ids)
        return _data->onSetData("setIdsForSetData", [&](SetDataWriter& setData) { setData.addIds(values); });
    return _data->onSetData("setVariableForSetData", [&](SetDataWriter& setData) { setData.addValues(values); });
}

bool KelHdf5Consumer::appendLists(const KelValues& values, const KelValues& lengths)
{
    return _data->onSetData("setVariableLengthVariableForSetData",
                            [&](SetDataWriter& setData) { setData.addLists(values, lengths); });
}

void KelHdf5Consumer::endWritingVariableLengthVariableForSetData()
{
    _data->onSetData("endWritingVariableLengthVariableForSetData", [](SetDataWriter& setData) { setData.endLists(); });
}

void KelHdf5Consumer::endWritingSetData()
{
    _data->onSetData("endWritingSetData", [&](SetDataWriter& setData) {
        setData.finish();
        _data->setData.reset();
    });
}

// ---- what they have in common ----

void KelHdf5Consumer::startVariable(KelCollection in, const std::string& name, unsigned64 valuesPerMember,
                                    KelPlainDataType type)
{
    _data->onMembers(in, "startVariable",
                     [&](MemberWriter& members) { members.startVariable(name, valuesPerMember, type); });
}

void KelHdf5Consumer::startLists(KelCollection in, const std::string& name, KelPlainDataType type,
                                 KelPlainDataType lengthType)
{
    _data->onMembers(in, "startLists", [&](MemberWriter& members) { members.startLists(name, type, lengthType); });
}

void KelHdf5Consumer::keepBlock(KelCollection in, const std::string& name, const KelValues& values)
{
    if (in == KelCollection::TrackChunk)
        _data->onTracks("setValuesOfParticleTrackVariable",
                        [&](TrackWriter& tracks) { tracks.writeValues(name, values); });
    else
        _data->onMembers(in, "writeOtherData", [&](MemberWriter& members) { members.writeOther(name, values); });
}

void KelHdf5Consumer::keepText(KelCollection in, const std::string& name, const std::string& text)
{
    _data->onMembers(in, "writeStringData", [&](MemberWriter& members) { members.writeString(name, text); });
}

// ---- particle tracks ----

bool KelHdf5Consumer::startWritingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId)
{
    return _data->attemptOnMesh(KEL_DATA, "startWritingParticleTracks", [&](Data::Session& session) {
        const Handle group = _data->phaseGroup(phaseId);
        _data->tracks = std::make_unique<TrackWriter>(*session.file, group.get(), MeshKey{meshId, target, partitionId},
                                                      _data->compression);
    });
}

void KelHdf5Consumer::startWritingPartiticleTrackGroup(const std::string& name)
{
    _data->onTracks("startWritingPartiticleTrackGroup", [&](TrackWriter& tracks) { tracks.startGroup(name); });
}

void KelHdf5Consumer::startWritingChunkInPartiticleTrackGroup(int chunkId, unsigned64 pointCount)
{
    _data->onTracks("startWritingChunkInPartiticleTrackGroup",
                    [&](TrackWriter& tracks) { tracks.startChunk(chunkId, pointCount); });
}

void KelHdf5Consumer::keepTrackVariable(int variableId, const KelValues& values)
{
    std::string name;
    if (solutionModel()->getUniqueNameOfVariable(variableId, name))
        keepBlock(KelCollection::TrackChunk, name, values);
    else
        _data->refuse(KEL_DATA, "setValuesOfParticleTrackVariable",
                      "variable " + std::to_string(variableId) + " is unknown");
}

void KelHdf5Consumer::endWritingChunkInPartiticleTrackGroup()
{
    if (_data->tracks)
        _data->tracks->endChunk();
}

void KelHdf5Consumer::endWritingPartiticleTrackGroup()
{
    if (_data->tracks)
        _data->tracks->endGroup();
}

void KelHdf5Consumer::endWritingParticleTracks()
{
    _data->tracks.reset();
}

} // namespace meridyn
