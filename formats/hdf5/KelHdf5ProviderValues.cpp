#include "formats/hdf5/file/Attributes.h"
#include "formats/hdf5/model/DataWriter.h"
#include "ProviderData.h"

#include <algorithm>

namespace meridyn {

using namespace hdf5;

// ---- where things are ----

hdf5::Handle KelHdf5Provider::Data::levelGroup() const
{
    const Session* const target = session(KEL_DATA);
    const std::string name = levelName(reader.chosenLevel());
    return target != nullptr && levels.count(name) > 0 ? findGroup(target->mesh.get(), {"levels", name}) : Handle();
}

hdf5::Handle KelHdf5Provider::Data::phaseGroup(const std::string& phase) const
{
    const Catalogue::Phase* const entry = catalogue.find(phase);
    const Handle level = levelGroup();
    return entry != nullptr && level ? findGroup(level.get(), {"phases", entry->link}) : Handle();
}

hdf5::Handle KelHdf5Provider::Data::groupInPhase(const std::string& phase, const char* name) const
{
    const Handle group = phaseGroup(phase);
    return group ? findGroup(group.get(), {name}) : Handle();
}

std::string KelHdf5Provider::Data::activePhase() const
{
    std::string phase;
    reader.getActivePhase(phase);
    return phase;
}

const Catalogue::Variable* KelHdf5Provider::Data::variable(const std::string& phase, const std::string& name) const
{
    const Catalogue::Phase* const entry = catalogue.find(phase);
    return entry == nullptr ? nullptr : entry->find(name);
}

// ---- values of variables ----

unsigned64 KelHdf5Provider::startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category,
                                                                         const std::string& variableName,
                                                                         std::vector<int>& zoneIds)
{
    zoneIds.clear();
    _data->values.reset();
    const unsigned64 size =
        _data->ask(KEL_DATA, "startReadingZonesOfCategoryWithPhaseVariable", unsigned64{0}, [&](Data::Session& data) {
            const std::string phase = _data->activePhase();
            const Catalogue::Variable* const variable = _data->variable(phase, variableName);
            if (variable == nullptr || !isCategory(category))
                return unsigned64{0};
            const Handle group = _data->groupInPhase(phase, groupNameOf(category));
            if (!group)
                return unsigned64{0};
            _data->values = FieldReader::open(*data.file, group.get(), variable->link);
            if (!_data->values)
                return unsigned64{0};
            zoneIds = _data->values->zones();
            return _data->values->columns();
        });
    return startedVariable(category, variableName, size);
}

// ---- particles: the set data of a phase ----

namespace {

bool hasAny(const Handle& group)
{
    return group && !linkNames(group.get()).empty();
}

} // namespace

bool KelHdf5Provider::hasParticles(const std::string& phaseName) const
{
    return _data->ask(KEL_DATA, "hasParticles", false,
                      [&](Data::Session&) { return hasAny(_data->groupInPhase(phaseName, "set_data")); });
}

void KelHdf5Provider::getVariablesOfInjection(const std::string& injection, std::vector<std::string>& names) const
{
    names = _data->ask(KEL_DATA, "getVariablesOfInjection", std::vector<std::string>(), [&](Data::Session& data) {
        std::vector<std::string> found;
        if (const auto members = MemberReader::find(*data.file, _data->setDataGroup(), injection))
            for (const KelPart part : {KelPart::Variables, KelPart::Lists})
                for (const std::string& name : members->names(part))
                    found.push_back(name);
        return found;
    });
}

// ---- particle tracks ----

namespace {

std::string trackKey(int meshId, int target, int partitionId)
{
    return MeshKey{meshId, target, partitionId}.groupName();
}

} // namespace

bool KelHdf5Provider::hasParticleTracks(const std::string& phaseName) const
{
    return _data->ask(KEL_DATA, "hasParticleTracks", false,
                      [&](Data::Session&) { return hasAny(_data->groupInPhase(phaseName, "tracks")); });
}

bool KelHdf5Provider::hasParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) const
{
    std::string name;
    if (!getPhaseName(phaseId, name))
        return false;
    return _data->ask(KEL_DATA, "hasParticleTracks", false, [&](Data::Session&) {
        const Handle group = _data->groupInPhase(name, "tracks");
        return group && hasLink(group.get(), trackKey(meshId, target, partitionId));
    });
}

std::optional<std::vector<KelMeshKey>> KelHdf5Provider::meshesWithTracks(short phaseId) const
{
    std::string name;
    std::vector<KelMeshKey> keys;
    if (!getPhaseName(phaseId, name))
        return keys;
    return _data->ask(KEL_DATA, "meshesWithTracks", keys, [&](Data::Session&) {
        for (const std::string& link : decodedNames(_data->groupInPhase(name, "tracks")))
            if (const std::optional<KelMeshKey> key = KelMeshKey::ofGroupName(link))
                keys.push_back(*key);
        return keys;
    });
}

bool KelHdf5Provider::hasDataAtNoLevel() const
{
    return !getTimeLevels().empty() && _data->levels.count(levelName(std::nullopt)) > 0;
}

void KelHdf5Provider::startReadingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId)
{
    endReadingParticleTracks();
    std::string name;
    if (!getPhaseName(phaseId, name))
        return;
    _data->ask(KEL_DATA, "startReadingParticleTracks", false, [&](Data::Session&) {
        if (const Handle group = _data->groupInPhase(name, "tracks"))
            _data->tracks = findGroup(group.get(), {trackKey(meshId, target, partitionId)});
        return true;
    });
}

void KelHdf5Provider::getParticleTrackGroups(std::vector<std::string>& groups) const
{
    groups = _data->ask(KEL_DATA, "getParticleTrackGroups", std::vector<std::string>(),
                        [&](Data::Session&) { return decodedNames(_data->tracks); });
}

void KelHdf5Provider::startReadingParticleTrackGroup(const std::string& group)
{
    endReadingParticleTrackGroup();
    _data->ask(KEL_DATA, "startReadingParticleTrackGroup", false, [&](Data::Session&) {
        if (_data->tracks)
            _data->trackGroup = findGroup(_data->tracks.get(), {encodeName(group)});
        return true;
    });
}

void KelHdf5Provider::getChunksInParticleTrackGroup(std::vector<int>& chunkIds) const
{
    chunkIds.clear();
    _data->ask(KEL_DATA, "getChunksInParticleTrackGroup", false, [&](Data::Session&) {
        if (_data->trackGroup)
            for (const std::string& name : linkNames(_data->trackGroup.get()))
                chunkIds.push_back(static_cast<int>(std::strtol(name.c_str(), nullptr, 10)));
        return true;
    });
}

void KelHdf5Provider::startReadingChunkInParticleTrackGroup(int chunkId)
{
    endReadingChunkInParticleTrackGroup();
    _data->ask(KEL_DATA, "startReadingChunkInParticleTrackGroup", false, [&](Data::Session&) {
        if (_data->trackGroup)
            _data->chunk = findGroup(_data->trackGroup.get(), {std::to_string(chunkId)});
        return true;
    });
}

unsigned64 KelHdf5Provider::getPointCountOfParticleTrackChunk() const
{
    return _data->ask(KEL_DATA, "getPointCountOfParticleTrackChunk", unsigned64{0}, [&](Data::Session&) {
        const std::int64_t points = _data->chunk ? readNumber(_data->chunk.get(), "kel_points").value_or(0) : 0;
        return points < 0 ? unsigned64{0} : static_cast<unsigned64>(points);
    });
}

void KelHdf5Provider::endReadingChunkInParticleTrackGroup()
{
    _data->chunk = Handle();
}

void KelHdf5Provider::endReadingParticleTrackGroup()
{
    _data->chunk = Handle();
    _data->trackGroup = Handle();
}

void KelHdf5Provider::endReadingParticleTracks()
{
    endReadingParticleTrackGroup();
    _data->tracks = Handle();
}

} // namespace meridyn
