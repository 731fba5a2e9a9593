#include "Checks.h"

#include "KelValueTypes.h"

#include <limits>

namespace meridyn::conformance {

namespace {

using Names = std::vector<std::string>;

constexpr unsigned64 memberCount = 7;
const std::vector<unsigned64> blockSizes = {4, 0, 3};
const std::vector<unsigned64> memberIds = {9, 2, 2, 30, 5, 6, 7}; // in their own order, repeats kept
const std::vector<unsigned64> lengths = {2, 0, 1, 3, 0, 0, 4};
constexpr unsigned64 lengthSum = 10;

/// Calls `visit(null pointer to the type, its number, its name)` for the ten value types.
template <class Visit>
void forTypes(const Visit& visit)
{
    for (int type = KEL_PLAIN_UNSIGNED_CHAR; type <= KEL_PLAIN_DOUBLE; ++type)
        visitPlainType(static_cast<KelPlainDataType>(type), [&](auto* null) {
            visit(null, static_cast<KelPlainDataType>(type), "type " + std::to_string(type));
        });
}

unsigned64 perMember(KelPlainDataType type)
{
    return type % 2 == 0 ? 1 : 3;
}

void sameType(Case& test, const std::string& what, KelPlainDataType expected, KelPlainDataType found)
{
    test.same("type of " + what, std::vector<int>{expected}, {found});
}

template <class T>
std::vector<T> narrowed(const std::vector<unsigned64>& values)
{
    return {values.begin(), values.end()};
}

// ---- sets

void writeSetIds(KelFileConsumer& writer)
{
    writer.setSizesAndMinMaxIdsForSet(blockSizes, {2, 0, 5}, {30, 0, 7});
    writer.startWritingIdsForSet();
    writer.setIdsForSetInRange(1, 3, memberIds.data(), 3);
    writer.setIdsForSetInRange(4, 7, memberIds.data() + 3, 4);
    writer.endWritingIdsForSet();
}

/// Lengths in one of the types and forms in which they may come.
void writeLengths(KelFileConsumer& writer, const std::string& name, KelPlainDataType type)
{
    writer.startWritingSizeOfVariableForSet(name, blockSizes, type);
    if (type == KEL_PLAIN_INT)
        writer.setSizeOfVariableForSetInRange(1, memberCount, narrowed<int>(lengths).data(), memberCount);
    else if (type == KEL_PLAIN_SHORT)
        writer.setSizeOfVariableForSetInRange(1, memberCount, narrowed<short>(lengths).data(), memberCount);
    else {
        writer.setSizeOfVariableForSetInRange(1, 3, lengths.data(), 3);
        writer.setSizeOfVariableForSetInRange(4, 4, lengths[3]); // the same for all of a range
        writer.setSizeOfVariableForSetInRange(5, 6, unsigned64{0});
        writer.setSizeOfVariableForSetInRange(7, 7, lengths.data() + 6, 1);
    }
    writer.endWritingSizeOfVariableForSet();
}

KelPlainDataType lengthTypeOf(KelPlainDataType type)
{
    static const KelPlainDataType types[] = {KEL_PLAIN_INT, KEL_PLAIN_SHORT, KEL_PLAIN_UNSIGNED64};
    return types[type % 3];
}

void writeSet(KelFileConsumer& writer, const std::string& name)
{
    writer.startWritingSet(name, KEL_CELL_ZONE);
    writeSetIds(writer);
    forTypes([&](auto* null, KelPlainDataType type, const std::string& label) {
        using T = std::remove_pointer_t<decltype(null)>;
        const unsigned64 size = perMember(type);
        const std::vector<T> values = someValues<T>(memberCount * size, type);
        writer.startWritingDataOfVariableForSet("constant " + label, blockSizes, size, type);
        writer.setDataOfVariableForSetInRange(1, 2, values.data(), 2 * size);
        writer.setDataOfVariableForSetInRange(3, memberCount, values.data() + 2 * size, (memberCount - 2) * size);
        writer.endWritingDataOfVariableForSet();

        writeLengths(writer, "ragged " + label, lengthTypeOf(type));
        const std::vector<T> ragged = someValues<T>(lengthSum, type + 1);
        writer.startWritingVariableLengthedDataOfVariableForSet("ragged " + label, blockSizes, type);
        writer.setVariableLengthedDataOfVariableForSetInRange(1, 3, ragged.data(), 3);
        writer.setVariableLengthedDataOfVariableForSetInRange(4, memberCount, ragged.data() + 3, lengthSum - 3);
        writer.endWritingVariableLengthedDataOfVariableForSet();

        const std::vector<T> block = someValues<T>(5, type + 2);
        writer.writeOtherDataForSet("block " + label, block.data(), block.size());
    });
    writer.writeOtherDataForSet("block without values", static_cast<const int*>(nullptr), 0);
    for (const std::string& text : hostileNames())
        writer.writeStringDataForSet(text, text + "!");
    writer.endWritingSet();
}

void expectSetIds(Case& test, KelFileProvider& reader)
{
    std::vector<unsigned64> sizes, minIds, maxIds, ids(memberCount + 1);
    test.same("category of the set", std::vector<int>{KEL_CELL_ZONE}, {reader.getCategoryOfSet()});
    reader.getSizesAndMinMaxIdsForSet(sizes, minIds, maxIds);
    test.same("sizes of the blocks", blockSizes, sizes);
    test.same("smallest ids of the blocks", {2, 0, 5}, minIds);
    test.same("largest ids of the blocks", {30, 0, 7}, maxIds);
    reader.startReadingIdsForSet();
    ids.resize(reader.getIdsForSetInRange(1, memberCount, ids.data(), ids.size()));
    test.same("ids of the members", memberIds, ids);
    ids.assign(2, 0);
    ids.resize(reader.getIdsForSetInRange(4, 5, ids.data(), 2));
    test.same("ids of members 4 and 5", {30, 5}, ids);
    reader.endReadingIdsForSet();
}

template <class T>
void expectSetVariables(Case& test, KelFileProvider& reader, KelPlainDataType type, const std::string& label)
{
    const unsigned64 size = perMember(type);
    unsigned64 foundSize = 0;
    sameType(test, "constant " + label, type, reader.startReadingDataOfVariableForSet("constant " + label, foundSize));
    test.same("values per member of " + label, size, foundSize);
    std::vector<T> found(memberCount * size + 1);
    found.resize(reader.getDataOfVariableForSetInRange(1, memberCount, found.data(), found.size()));
    test.same("constant " + label, someValues<T>(memberCount * size, type), found);
    std::vector<double> converted(size);
    converted.resize(reader.getDataOfVariableForSetInRange(2, 2, converted.data(), size));
    const std::vector<T> all = someValues<T>(memberCount * size, type);
    test.same("constant " + label + ", member 2 as double",
              std::vector<double>(all.begin() + static_cast<std::ptrdiff_t>(size),
                                  all.begin() + static_cast<std::ptrdiff_t>(2 * size)),
              converted);
    reader.endReadingDataOfVariableForSet();

    sameType(test, "lengths of " + label, lengthTypeOf(type),
             reader.startReadingSizeOfVariableLengthedVarForSet("ragged " + label));
    std::vector<unsigned64> foundLengths(memberCount);
    foundLengths.resize(reader.getSizeOfVariableForSetInRange(1, memberCount, foundLengths.data(), memberCount));
    test.same("lengths of " + label, lengths, foundLengths);
    reader.endReadingSizeOfVariableLengthedVarForSet();
    sameType(test, "ragged " + label, type, reader.startReadingVariableLengthedDataOfVariableForSet("ragged " + label));
    const std::vector<T> ragged = someValues<T>(lengthSum, type + 1);
    found.assign(lengthSum + 1, T());
    found.resize(reader.getVariableLengthedDataOfVariableForSetInRange(1, memberCount, found.data(), found.size()));
    test.same("ragged " + label, ragged, found);
    found.assign(4, T());
    found.resize(reader.getVariableLengthedDataOfVariableForSetInRange(3, 4, found.data(), 4));
    test.same("ragged " + label + ", members 3 and 4", std::vector<T>(ragged.begin() + 2, ragged.begin() + 6), found);
    reader.endReadingVariableLengthedDataOfVariableForSet();

    sameType(test, "block " + label, type, reader.getDataTypeOfOtherDataForSet("block " + label));
    test.same("number of values of block " + label, 5,
              reader.getOtherDataForSet("block " + label, static_cast<T*>(nullptr), 0));
    found.assign(6, T());
    found.resize(reader.getOtherDataForSet("block " + label, found.data(), found.size()));
    test.same("block " + label, someValues<T>(5, type + 2), found);
}

void expectSet(Case& test, KelFileProvider& reader, const std::string& name)
{
    if (!test.expect(reader.startReadingSet(name), "set '" + name + "' cannot be opened"))
        return;
    expectSetIds(test, reader);
    Names constant, ragged, blocks, texts, expected, expectedRagged, expectedBlocks;
    forTypes([&](auto* null, KelPlainDataType type, const std::string& label) {
        expected.push_back("constant " + label);
        expectedRagged.push_back("ragged " + label);
        expectedBlocks.push_back("block " + label);
        expectSetVariables<std::remove_pointer_t<decltype(null)>>(test, reader, type, label);
    });
    expectedBlocks.emplace_back("block without values");
    reader.getVariablesInSet(constant);
    reader.getVariableLengthedVariablesInSet(ragged);
    reader.getOtherVariablesInSet(blocks);
    reader.getStringVariablesInSet(texts);
    test.same("variables of the set", expected, constant);
    test.same("variables with lengths of the set", expectedRagged, ragged);
    test.same("blocks of the set", expectedBlocks, blocks);
    test.same("texts of the set", hostileNames(), texts);
    for (const std::string& key : hostileNames()) {
        std::string text;
        test.same("length of text " + Case::quoted(key), key.size() + 1, reader.getStringDataForSet(key, text));
        test.same("text " + Case::quoted(key), key + "!", text);
    }
    unsigned64 size = 0;
    test.expect(reader.startReadingDataOfVariableForSet("no such variable", size) == -1,
                "a variable that is not there has a type");
    reader.endReadingSet();
    test.expect(!reader.startReadingSet("no such set"), "a set that is not there is opened");
}

void setsOfTheCase(Case& test)
{
    const auto write = [](KelFileConsumer& writer) {
        writeSet(writer, "set \"one\"/#1");
        writer.startWritingSet("empty", KEL_NODE_ZONE);
        writer.setSizesAndMinMaxIdsForSet({}, {}, {});
        writer.endWritingSet();
    };
    roundTrip(test, smallMesh(), write, nullptr, [&](KelFileProvider& reader) {
        Names names, ofNodes;
        test.expect(reader.getSetNames(KEL_CASE, names), "there are no sets");
        test.same("names of sets", Names{"set \"one\"/#1", "empty"}, names);
        reader.getSetNames(KEL_NODE_ZONE, ofNodes);
        test.same("names of sets of nodes", Names{"empty"}, ofNodes);
        expectSet(test, reader, "set \"one\"/#1");
    });
}

/// The same name at two levels; each level gives its own.
void setsOfTheData(Case& test)
{
    const auto write = [](KelFileConsumer& writer) {
        std::vector<short> phases;
        writer.setPhaseNames({"water"}, phases);
        for (const int level : {1, 2}) {
            writer.startWritingTimeLevel(level);
            if (level == 1)
                writeSet(writer, "drops");
            writer.startWritingSet("level " + std::to_string(level), KEL_FACE_ZONE);
            writer.setSizesAndMinMaxIdsForSet({1}, {4}, {4});
            writer.startWritingIdsForSet();
            const unsigned64 id = 4;
            writer.setIdsForSetInRange(1, 1, &id, 1);
            writer.endWritingIdsForSet();
            writer.endWritingSet();
        }
    };
    roundTrip(test, smallMesh(), nullptr, write, [&](KelFileProvider& reader) {
        for (const int level : {2, 1}) {
            Names names, expected = {"drops", "level 1"};
            reader.startReadingTimeLevel(level);
            reader.getSetNames(KEL_DATA, names);
            test.same("names of sets at level " + std::to_string(level), level == 1 ? expected : Names{"level 2"},
                      names);
        }
        expectSet(test, reader, "drops");
    });
}

// ---- set data

template <class T, class Length>
void writeRaggedSetData(KelFileConsumer& writer, Case& test, const std::string& label, const std::vector<T>& values)
{
    const std::vector<Length> own = narrowed<Length>(lengths);
    test.same("values taken of ragged " + label, 3,
              writer.setVariableLengthVariableForSetData(values.data(), 3, own.data(), 3));
    test.same(
        "values taken of ragged " + label, lengthSum - 3,
        writer.setVariableLengthVariableForSetData(values.data() + 3, lengthSum - 3, own.data() + 3, memberCount - 3));
}

void writeSetData(KelFileConsumer& writer, Case& test, const std::string& name)
{
    writer.startWritingSetData(name, memberCount);
    writer.startWritingIdsForSetData();
    test.same("ids taken", 4, writer.setIdsForSetData(memberIds.data(), 4));
    test.same("ids taken", 3, writer.setIdsForSetData(memberIds.data() + 4, 3));
    writer.endWritingIdsForSetData();
    forTypes([&](auto* null, KelPlainDataType type, const std::string& label) {
        using T = std::remove_pointer_t<decltype(null)>;
        const unsigned64 size = perMember(type);
        const std::vector<T> values = someValues<T>(memberCount * size, type);
        writer.startWritingVariableForSetData("constant " + label, size, type);
        test.same("values taken of " + label, size, writer.setVariableForSetData(values.data(), size));
        test.same("values taken of " + label, (memberCount - 1) * size,
                  writer.setVariableForSetData(values.data() + size, (memberCount - 1) * size));
        writer.endWritingVariableForSetData();

        const std::vector<T> ragged = someValues<T>(lengthSum, type + 1);
        writer.startWritingVariableLengthVariableForSetData("ragged " + label, type, lengthTypeOf(type));
        if (lengthTypeOf(type) == KEL_PLAIN_INT)
            writeRaggedSetData<T, int>(writer, test, label, ragged);
        else if (lengthTypeOf(type) == KEL_PLAIN_SHORT)
            writeRaggedSetData<T, short>(writer, test, label, ragged);
        else
            writeRaggedSetData<T, unsigned64>(writer, test, label, ragged);
        writer.endWritingVariableLengthVariableForSetData();

        const std::vector<T> block = someValues<T>(5, type + 2);
        writer.writeOtherDataForSetData("block " + label, block.data(), block.size());
    });
    writer.writeStringDataForSetData("text", "of the set data");
    writer.endWritingSetData();
}

void expectSetData(Case& test, KelFileProvider& reader, const std::string& name)
{
    unsigned64 members = 0;
    if (!test.expect(reader.startReadingSetData(name, members), "set data '" + name + "' cannot be opened"))
        return;
    test.same("members", memberCount, members);
    std::vector<unsigned64> ids = {1};
    test.expect(reader.getIdsForSetData(ids), "there are no ids");
    test.same("ids of the members", memberIds, ids);
    Names constant, ragged, blocks, texts, expected, expectedRagged, expectedBlocks;
    forTypes([&](auto* null, KelPlainDataType type, const std::string& label) {
        using T = std::remove_pointer_t<decltype(null)>;
        expected.push_back("constant " + label);
        expectedRagged.push_back("ragged " + label);
        expectedBlocks.push_back("block " + label);
        std::vector<T> values(1);
        unsigned64 size = 0;
        sameType(test, "constant " + label, type, reader.getDataTypeOfDataForSetData("constant " + label));
        test.expect(reader.getDataOfConstantLengthVarForSetData("constant " + label, values, size),
                    "constant " + label + " is not there");
        test.same("values per member of " + label, perMember(type), size);
        test.same("constant " + label, someValues<T>(memberCount * perMember(type), type), values);
        sameType(test, "ragged " + label, type, reader.getDataTypeOfDataForSetData("ragged " + label));
        sameType(test, "lengths of " + label, lengthTypeOf(type),
                 reader.getDataTypeOfSizeForSetData("ragged " + label));
        std::vector<unsigned64> foundLengths;
        test.expect(reader.getSizeOfVariableLengthVarForSetData("ragged " + label, foundLengths),
                    "lengths of " + label + " are not there");
        test.same("lengths of " + label, lengths, foundLengths);
        test.expect(reader.getDataOfVariableLengthVarForSetData("ragged " + label, values),
                    "ragged " + label + " is not there");
        test.same("ragged " + label, someValues<T>(lengthSum, type + 1), values);
        sameType(test, "block " + label, type, reader.getDataTypeOfDataForSetData("block " + label));
        test.expect(reader.getOtherDataForSetData("block " + label, values), "block " + label + " is not there");
        test.same("block " + label, someValues<T>(5, type + 2), values);
    });
    reader.getConstantLengthVariablesInSetData(constant);
    reader.getVariableLengthVariablesInSetData(ragged);
    reader.getOtherVariablesInSetData(blocks);
    reader.getStringVariablesInSetData(texts);
    test.same("variables of the set data", expected, constant);
    test.same("variables with lengths of the set data", expectedRagged, ragged);
    test.same("blocks of the set data", expectedBlocks, blocks);
    test.same("texts of the set data", Names{"text"}, texts);
    std::string text;
    test.same("length of the text", 15, reader.getStringDataForSetData("text", text));
    test.same("text of the set data", "of the set data", text);
    reader.endReadingSetData();
    test.expect(!reader.startReadingSetData("no such set", members), "set data that is not there is opened");
}

void setData(Case& test)
{
    const auto write = [&](KelFileConsumer& writer) {
        std::vector<short> phases;
        writer.setPhaseNames({"water", "coal"}, phases);
        writer.startWritingTimeLevel(1);
        writer.startWritingPhase(phases[1]);
        writeSetData(writer, test, "injection \xC3\xA4/1");
        writeSetData(writer, test, "another");
        writer.endWritingPhase();
    };
    roundTrip(test, smallMesh(), nullptr, write, [&](KelFileProvider& reader) {
        Names names;
        reader.startReadingTimeLevel(1);
        reader.startReadingPhase(1);
        reader.getSetDataNames(names);
        test.same("set data of a phase without", Names{}, names);
        reader.startReadingPhase(2);
        reader.getSetDataNames(names);
        test.same("names of set data", Names{"injection \xC3\xA4/1", "another"}, names);
        test.expect(reader.hasParticles(), "set data are no particles");
        names.clear();
        reader.getInjectionNames(names);
        test.same("names of injections", Names{"injection \xC3\xA4/1", "another"}, names);
        expectSetData(test, reader, "injection \xC3\xA4/1");
    });
}

// ---- particle tracks

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

void addSetChecks(Checks& checks)
{
    const KelFormatFamilies phases = families({KEL_FAMILY_PHASES});
    checks.push_back({"sets-of-the-case", families({KEL_FAMILY_SETS}), setsOfTheCase});
    checks.push_back({"sets-of-the-data", families({KEL_FAMILY_SETS, KEL_FAMILY_TIME_LEVELS}) | phases, setsOfTheData});
    checks.push_back({"set-data", families({KEL_FAMILY_SET_DATA}) | phases, setData});
    checks.push_back({"particle-tracks", families({KEL_FAMILY_PARTICLE_TRACKS}) | phases, particleTracks});
}

} // namespace meridyn::conformance
