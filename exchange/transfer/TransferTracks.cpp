#include "TransferRun.h"

namespace meridyn {

namespace {

void copyTrackVariable(TransferRun& run, const std::string& name)
{
    const KelPlainDataType type = run.source.getDataTypeOfParticleTrackVariable(name);
    run.withType(KEL_FAMILY_PARTICLE_TRACKS, "variable '" + name + "'", type, [&](auto* null) {
        std::vector<std::remove_pointer_t<decltype(null)>> values(
            run.source.getValueCountOfParticleTrackVariable(name));
        const unsigned64 found = run.source.getValuesOfParticleTrackVariable(name, values.data(), values.size());
        if (found != values.size())
            stopShort("particle track variable '" + name + "'", found, values.size());
        run.target.setValuesOfParticleTrackVariable(name, values.data(), values.size());
        run.tell("particle tracks", 0, 0, values.size() * sizeof(*null));
    });
}

void copyTrackGroup(TransferRun& run, const std::string& group)
{
    run.source.startReadingParticleTrackGroup(group);
    run.target.startWritingPartiticleTrackGroup(group);
    std::vector<int> chunks;
    run.source.getChunksInParticleTrackGroup(chunks);
    for (const int chunk : chunks) {
        run.source.startReadingChunkInParticleTrackGroup(chunk);
        run.target.startWritingChunkInPartiticleTrackGroup(chunk, run.source.getPointCountOfParticleTrackChunk());
        std::vector<std::string> variables;
        run.source.getParticleTrackVariables(variables);
        for (const std::string& variable : variables)
            copyTrackVariable(run, variable);
        run.target.endWritingChunkInPartiticleTrackGroup();
        run.source.endReadingChunkInParticleTrackGroup();
    }
    run.target.endWritingPartiticleTrackGroup();
    run.source.endReadingParticleTrackGroup();
}

} // namespace

void copyParticleTracks(TransferRun& run, short sourcePhase, short targetPhase)
{
    const int mesh = run.source.getMeshId(), partition = run.source.getPartitionId();
    const KelTargetCategory target = run.source.getTarget();
    if (!run.source.hasParticleTracks(sourcePhase, mesh, target, partition))
        return;
    const std::string item = "phase " + std::to_string(sourcePhase);
    if (!run.carries(KEL_FAMILY_PARTICLE_TRACKS, item))
        return;
    if (!run.target.startWritingParticleTracks(targetPhase, mesh, target, partition))
        return run.refused(KEL_FAMILY_PARTICLE_TRACKS, item);
    run.source.startReadingParticleTracks(sourcePhase, mesh, target, partition);
    std::vector<std::string> groups;
    run.source.getParticleTrackGroups(groups);
    for (const std::string& group : groups)
        copyTrackGroup(run, group);
    run.target.endWritingParticleTracks();
    run.source.endReadingParticleTracks();
}

} // namespace meridyn
