#include "TransferRun.h"

#include <utility>

namespace meridyn {

namespace {

/// Copies the particle tracks of one phase for one mesh.
class TrackCopy {
public:
    TrackCopy(TransferRun& run, std::string item) : _run(run), _item(std::move(item)) {}

    void copy()
    {
        std::vector<std::string> groups;
        _run.source.getParticleTrackGroups(groups);
        for (const std::string& group : groups)
            copyGroup(group);
    }

private:
    void copyGroup(const std::string& group)
    {
        _run.source.startReadingParticleTrackGroup(group);
        _run.target.startWritingPartiticleTrackGroup(group);
        std::vector<int> chunks;
        _run.source.getChunksInParticleTrackGroup(chunks);
        for (const int chunk : chunks) {
            _run.source.startReadingChunkInParticleTrackGroup(chunk);
            _run.target.startWritingChunkInPartiticleTrackGroup(chunk, _run.source.getPointCountOfParticleTrackChunk());
            std::vector<std::string> variables;
            _run.source.getParticleTrackVariables(variables);
            for (const std::string& variable : variables)
                copyVariable(variable, "variable '" + variable + "' of chunk " + std::to_string(chunk) + " of group '" +
                                           group + "' of " + _item);
            _run.target.endWritingChunkInPartiticleTrackGroup();
            _run.source.endReadingChunkInParticleTrackGroup();
        }
        _run.target.endWritingPartiticleTrackGroup();
        _run.source.endReadingParticleTrackGroup();
    }

    void copyVariable(const std::string& name, const std::string& item)
    {
        const KelPlainDataType type = _run.source.getDataTypeOfParticleTrackVariable(name);
        _run.withType(KEL_FAMILY_PARTICLE_TRACKS, item, type, [&](auto* null) {
            std::vector<std::remove_pointer_t<decltype(null)>> values(
                _run.source.getValueCountOfParticleTrackVariable(name));
            const unsigned64 found = _run.source.getValuesOfParticleTrackVariable(name, values.data(), values.size());
            if (found != values.size())
                stopShort("particle track variable '" + name + "'", found, values.size());
            _run.target.setValuesOfParticleTrackVariable(name, values.data(), values.size());
            _run.tell("particle tracks", 0, 0, values.size() * sizeof(*null));
        });
    }

    TransferRun& _run;
    std::string _item;
};

} // namespace

void copyParticleTracks(TransferRun& run, short sourcePhase, short targetPhase)
{
    const std::string phase = static_cast<const KelProvider&>(run.source).getPhaseName(sourcePhase);
    for (const KelMeshKey& key : meshesWithTracks(run.source, sourcePhase)) {
        const auto target = static_cast<KelTargetCategory>(key.target);
        const std::string item = "phase '" + phase + "', " + meshLabel(key);
        if (!run.carries(KEL_FAMILY_PARTICLE_TRACKS, item))
            continue;
        if (!run.target.startWritingParticleTracks(targetPhase, key.meshId, target, key.partitionId)) {
            run.target.getErrors(false, true); // says the same
            run.refused(KEL_FAMILY_PARTICLE_TRACKS, item);
            continue;
        }
        run.source.startReadingParticleTracks(sourcePhase, key.meshId, target, key.partitionId);
        TrackCopy(run, item).copy();
        run.target.endWritingParticleTracks();
        run.source.endReadingParticleTracks();
        run.settle(KEL_FAMILY_PARTICLE_TRACKS, item);
    }
}

} // namespace meridyn
