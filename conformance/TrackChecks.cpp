#include "SetSamples.h"

namespace meridyn::conformance {

namespace {

constexpr unsigned64 pointCount = 6;

void particleTracks(Case& test)
{
    const std::string group = "group #1/\"a\"";
    const auto write = [&](KelFileConsumer& writer) {
        std::vector<short> phases;
        writer.setPhaseNames({"water", "coal"}, phases);
        writer.startWritingTimeLevel(1);
        int speed = 0;
        writer.addPhaseVariable(phases[1], "speed", speed);
        if (!test.expect(writer.startWritingParticleTracks(phases[1], 1, KEL_DEFAULT_TARGET, -1),
                         "the tracks are not taken"))
            return;
        writer.startWritingPartiticleTrackGroup(group);
        for (const int chunk : {7, -2}) {
            writer.startWritingChunkInPartiticleTrackGroup(chunk, pointCount);
            forTypes([&](auto* null, KelPlainDataType type, const std::string& label) {
                const auto values =
                    someValues<std::remove_pointer_t<decltype(null)>>(pointCount * perMember(type), type + chunk + 9);
                writer.setValuesOfParticleTrackVariable(label, values.data(), values.size());
            });
            const std::vector<double> speeds(pointCount, 0.1 + chunk);
            writer.setValuesOfParticleTrackVariable(speed, speeds.data(), speeds.size());
            writer.endWritingChunkInPartiticleTrackGroup();
        }
        writer.endWritingPartiticleTrackGroup();
        writer.startWritingPartiticleTrackGroup("empty");
        writer.endWritingPartiticleTrackGroup();
        writer.endWritingParticleTracks();
    };
    roundTrip(test, smallMesh(), nullptr, write, [&](KelFileProvider& reader) {
        reader.startReadingTimeLevel(1);
        test.expect(reader.hasParticleTracks(2, 1, KEL_DEFAULT_TARGET, -1), "the phase has no tracks");
        test.expect(!reader.hasParticleTracks(1, 1, KEL_DEFAULT_TARGET, -1), "the other phase has tracks");
        test.expect(!reader.hasParticleTracks(2, 3, KEL_DEFAULT_TARGET, -1), "another mesh has tracks");
        test.same("phases with tracks", std::vector<short>{2},
                  reader.getPhasesWithParticleTracks(1, KEL_DEFAULT_TARGET, -1));
        reader.startReadingParticleTracks(2, 1, KEL_DEFAULT_TARGET, -1);
        Names groups = {"replaced"}, expected;
        reader.getParticleTrackGroups(groups);
        test.same("groups", Names{group, "empty"}, groups);
        reader.startReadingParticleTrackGroup(group);
        std::vector<int> chunks;
        reader.getChunksInParticleTrackGroup(chunks);
        test.same("chunks", {7, -2}, chunks);
        for (const int chunk : {-2, 7}) {
            reader.startReadingChunkInParticleTrackGroup(chunk);
            test.same("points", pointCount, reader.getPointCountOfParticleTrackChunk());
            expected = {"speed"};
            forTypes([&](auto* null, KelPlainDataType type, const std::string& label) {
                using T = std::remove_pointer_t<decltype(null)>;
                expected.push_back(label);
                sameType(test, label, type, reader.getDataTypeOfParticleTrackVariable(label));
                std::vector<T> values(reader.getValueCountOfParticleTrackVariable(label));
                values.resize(reader.getValuesOfParticleTrackVariable(label, values.data(), values.size()));
                test.same(label + " of chunk " + std::to_string(chunk),
                          someValues<T>(pointCount * perMember(type), type + chunk + 9), values);
            });
            Names names;
            reader.getParticleTrackVariables(names);
            test.same("variables", expected, names);
            int speed = 0;
            reader.getVariableId("coal", "speed", speed);
            std::vector<double> speeds(pointCount);
            speeds.resize(reader.getValuesOfParticleTrackVariable(speed, speeds.data(), pointCount));
            test.same("values by variable id", std::vector<double>(pointCount, 0.1 + chunk), speeds);
            reader.endReadingChunkInParticleTrackGroup();
        }
        reader.endReadingParticleTrackGroup();
        reader.endReadingParticleTracks();
    });
}

} // namespace

void addTrackChecks(Checks& checks)
{
    checks.push_back({"particle-tracks", families({KEL_FAMILY_PARTICLE_TRACKS, KEL_FAMILY_PHASES}), particleTracks});
}

} // namespace meridyn::conformance
