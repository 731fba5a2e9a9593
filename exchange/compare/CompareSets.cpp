#include "CompareRun.h"
#include "KelMeshKey.h"
#include "KelValueTypes.h"

#include <algorithm>
#include <set>

namespace meridyn {

namespace {

using Names = std::vector<std::string>;

/// Reads something of one model into a vector of a value type.
template <class T>
using Whole = std::function<std::vector<T>(KelProvider&)>;

template <class T>
void compareWhole(CompareRun& run, KelFormatFamily family, const std::string& item, const Whole<T>& read)
{
    const std::vector<T> one = read(run.first), other = read(run.second);
    unsigned64 differences = 0;
    run.same(family, "number of values of " + item, std::to_string(one.size()), std::to_string(other.size()));
    run.compareValues(family, item, 1, 1, one, other, differences);
    run.noteRest(family, item, differences);
}

template <class TypeOf>
bool compareType(CompareRun& run, KelFormatFamily family, const std::string& item, const TypeOf& typeOf)
{
    return run.same(family, "type of " + item, std::to_string(typeOf(run.first)), std::to_string(typeOf(run.second)));
}

/// Compares whole blocks whose type the model tells.
template <class TypeOf, class Read>
void compareTyped(CompareRun& run, KelFormatFamily family, const std::string& item, const TypeOf& typeOf,
                  const Read& read)
{
    if (compareType(run, family, item, typeOf))
        visitPlainType(typeOf(run.first), [&](auto* null) {
            using T = std::remove_pointer_t<decltype(null)>;
            compareWhole<T>(run, family, item, [&](KelProvider& model) {
                std::vector<T> values;
                read(model, values);
                return values;
            });
        });
}

/// Names that a getter of both models gives and both have.
Names bothNames(CompareRun& run, KelFormatFamily family, const std::string& what,
                void (KelProvider::*get)(Names&) const)
{
    Names one, other;
    (run.first.*get)(one);
    (run.second.*get)(other);
    return run.common(family, what, one, other);
}

template <class Get>
void compareTexts(CompareRun& run, KelFormatFamily family, const std::string& owner, const Names& names, const Get& get)
{
    for (const std::string& name : names) {
        std::string one, other;
        get(run.first, name, one);
        get(run.second, name, other);
        run.same(family, "text '" + name + "' of " + owner, one, other);
    }
}

// ---- sets

/// Whether both readers opened what both list.
bool bothOpen(CompareRun& run, KelFormatFamily family, const std::string& item, bool one, bool other)
{
    if (one != other)
        run.differ(family, item, 0, one ? "readable" : "", other ? "readable" : "");
    return one && other;
}

unsigned64 membersOf(KelProvider& model)
{
    std::vector<unsigned64> sizes, minIds, maxIds;
    model.getSizesAndMinMaxIdsForSet(sizes, minIds, maxIds);
    unsigned64 members = 0;
    for (const unsigned64 size : sizes)
        members += size;
    return members;
}

const char* const blockLists[] = {"sizes", "smallest ids", "largest ids"};

void compareSet(CompareRun& run, const std::string& set)
{
    constexpr KelFormatFamily family = KEL_FAMILY_SETS;
    run.same(family, "category of " + set, std::to_string(run.first.getCategoryOfSet()),
             std::to_string(run.second.getCategoryOfSet()));
    for (const int list : {0, 1, 2})
        compareWhole<unsigned64>(run, family, std::string(blockLists[list]) + " of the blocks of " + set,
                                 [list](KelProvider& model) {
                                     std::vector<unsigned64> lists[3];
                                     model.getSizesAndMinMaxIdsForSet(lists[0], lists[1], lists[2]);
                                     return lists[list];
                                 });
    const unsigned64 members = membersOf(run.first);
    if (!run.same(family, "members of " + set, std::to_string(members), std::to_string(membersOf(run.second))))
        return;
    compareWhole<unsigned64>(run, family, "ids of " + set, [members](KelProvider& model) {
        std::vector<unsigned64> ids(members);
        model.startReadingIdsForSet();
        if (members > 0)
            ids.resize(model.getIdsForSetInRange(1, members, ids.data(), members));
        model.endReadingIdsForSet();
        return ids;
    });
    for (const std::string& name : bothNames(run, family, set + ", variable", &KelProvider::getVariablesInSet)) {
        const auto sizeOf = [&name](KelProvider& model) {
            unsigned64 values = 0;
            model.startReadingDataOfVariableForSet(name, values);
            model.endReadingDataOfVariableForSet();
            return std::to_string(values);
        };
        run.same(family, "values per member of '" + name + "' of " + set, sizeOf(run.first), sizeOf(run.second));
        compareTyped(
            run, family, "'" + name + "' of " + set,
            [&name](KelProvider& model) {
                unsigned64 perMember = 0;
                const KelPlainDataType type = model.startReadingDataOfVariableForSet(name, perMember);
                model.endReadingDataOfVariableForSet();
                return type;
            },
            [&](KelProvider& model, auto& values) {
                unsigned64 perMember = 0;
                model.startReadingDataOfVariableForSet(name, perMember);
                values.resize(members * perMember);
                if (!values.empty())
                    values.resize(model.getDataOfVariableForSetInRange(1, members, values.data(), values.size()));
                model.endReadingDataOfVariableForSet();
            });
    }
    for (const std::string& name :
         bothNames(run, family, set + ", variable", &KelProvider::getVariableLengthedVariablesInSet)) {
        const auto lengths = [&](KelProvider& model) {
            std::vector<unsigned64> values(members);
            model.startReadingSizeOfVariableLengthedVarForSet(name);
            if (members > 0)
                values.resize(model.getSizeOfVariableForSetInRange(1, members, values.data(), members));
            model.endReadingSizeOfVariableLengthedVarForSet();
            return values;
        };
        compareType(run, family, "lengths of '" + name + "' of " + set, [&name](KelProvider& model) {
            const KelPlainDataType type = model.startReadingSizeOfVariableLengthedVarForSet(name);
            model.endReadingSizeOfVariableLengthedVarForSet();
            return type;
        });
        compareWhole<unsigned64>(run, family, "lengths of '" + name + "' of " + set, lengths);
        compareTyped(
            run, family, "'" + name + "' of " + set,
            [&name](KelProvider& model) {
                const KelPlainDataType type = model.startReadingVariableLengthedDataOfVariableForSet(name);
                model.endReadingVariableLengthedDataOfVariableForSet();
                return type;
            },
            [&](KelProvider& model, auto& values) {
                unsigned64 count = 0;
                for (const unsigned64 length : lengths(model))
                    count += length;
                values.resize(count);
                model.startReadingVariableLengthedDataOfVariableForSet(name);
                if (count > 0)
                    values.resize(
                        model.getVariableLengthedDataOfVariableForSetInRange(1, members, values.data(), count));
                model.endReadingVariableLengthedDataOfVariableForSet();
            });
    }
    for (const std::string& name : bothNames(run, family, set + ", block", &KelProvider::getOtherVariablesInSet))
        compareTyped(
            run, family, "block '" + name + "' of " + set,
            [&name](KelProvider& model) { return model.getDataTypeOfOtherDataForSet(name); },
            [&name](KelProvider& model, auto& values) {
                values.resize(model.getOtherDataForSet(name, values.data(), 0));
                model.getOtherDataForSet(name, values.data(), values.size());
            });
    compareTexts(run, family, set, bothNames(run, family, set + ", text", &KelProvider::getStringVariablesInSet),
                 [](KelProvider& model, const auto& name, auto& text) { model.getStringDataForSet(name, text); });
}

// ---- set data

void compareOneSetData(CompareRun& run, const std::string& set)
{
    constexpr KelFormatFamily family = KEL_FAMILY_SET_DATA;
    compareWhole<unsigned64>(run, family, "ids of " + set, [](KelProvider& model) {
        std::vector<unsigned64> ids;
        model.getIdsForSetData(ids);
        return ids;
    });
    const auto typeOf = [](const std::string& name) {
        return [&name](KelProvider& model) { return model.getDataTypeOfDataForSetData(name); };
    };
    for (const std::string& name :
         bothNames(run, family, set + ", variable", &KelProvider::getConstantLengthVariablesInSetData))
        compareTyped(run, family, "'" + name + "' of " + set, typeOf(name), [&name](KelProvider& model, auto& values) {
            unsigned64 perMember = 0;
            model.getDataOfConstantLengthVarForSetData(name, values, perMember);
        });
    for (const std::string& name :
         bothNames(run, family, set + ", variable", &KelProvider::getVariableLengthVariablesInSetData)) {
        compareType(run, family, "lengths of '" + name + "' of " + set,
                    [&name](KelProvider& model) { return model.getDataTypeOfSizeForSetData(name); });
        compareWhole<unsigned64>(run, family, "lengths of '" + name + "' of " + set, [&name](KelProvider& model) {
            std::vector<unsigned64> lengths;
            model.getSizeOfVariableLengthVarForSetData(name, lengths);
            return lengths;
        });
        compareTyped(run, family, "'" + name + "' of " + set, typeOf(name), [&name](KelProvider& model, auto& values) {
            model.getDataOfVariableLengthVarForSetData(name, values);
        });
    }
    for (const std::string& name : bothNames(run, family, set + ", block", &KelProvider::getOtherVariablesInSetData))
        compareTyped(run, family, "block '" + name + "' of " + set, typeOf(name),
                     [&name](KelProvider& model, auto& values) { model.getOtherDataForSetData(name, values); });
    compareTexts(run, family, set, bothNames(run, family, set + ", text", &KelProvider::getStringVariablesInSetData),
                 [](KelProvider& model, const auto& name, auto& text) { model.getStringDataForSetData(name, text); });
}

// ---- particle tracks

void compareChunk(CompareRun& run, const std::string& chunk)
{
    constexpr KelFormatFamily family = KEL_FAMILY_PARTICLE_TRACKS;
    run.same(family, "points of " + chunk, std::to_string(run.first.getPointCountOfParticleTrackChunk()),
             std::to_string(run.second.getPointCountOfParticleTrackChunk()));
    for (const std::string& name :
         bothNames(run, family, chunk + ", variable", &KelProvider::getParticleTrackVariables))
        compareTyped(
            run, family, "'" + name + "' of " + chunk,
            [&name](KelProvider& model) { return model.getDataTypeOfParticleTrackVariable(name); },
            [&name](KelProvider& model, auto& values) {
                values.resize(model.getValueCountOfParticleTrackVariable(name));
                values.resize(model.getValuesOfParticleTrackVariable(name, values.data(), values.size()));
            });
}

std::string joined(const std::vector<int>& ids)
{
    std::string list;
    for (const int id : ids)
        list += (list.empty() ? "" : " ") + std::to_string(id);
    return list;
}

void compareTrackGroup(CompareRun& run, const std::string& group, const std::string& of)
{
    run.first.startReadingParticleTrackGroup(group);
    run.second.startReadingParticleTrackGroup(group);
    std::vector<int> one, other;
    run.first.getChunksInParticleTrackGroup(one);
    run.second.getChunksInParticleTrackGroup(other);
    const std::string item = "track group '" + group + "'" + of;
    if (one != other)
        run.differ(KEL_FAMILY_PARTICLE_TRACKS, "chunks of " + item, 0, joined(one), joined(other));
    else
        for (const int chunk : one) {
            run.first.startReadingChunkInParticleTrackGroup(chunk);
            run.second.startReadingChunkInParticleTrackGroup(chunk);
            compareChunk(run, "chunk " + std::to_string(chunk) + " of " + item);
            run.first.endReadingChunkInParticleTrackGroup();
            run.second.endReadingChunkInParticleTrackGroup();
        }
    run.first.endReadingParticleTrackGroup();
    run.second.endReadingParticleTrackGroup();
}

} // namespace

void compareSets(CompareRun& run, KelDataClass dataClass)
{
    Names one, other;
    run.first.getSetNames(dataClass, one);
    run.second.getSetNames(dataClass, other);
    for (const std::string& name : run.common(KEL_FAMILY_SETS, "set", one, other)) {
        if (bothOpen(run, KEL_FAMILY_SETS, "set '" + name + "'", run.first.startReadingSet(name),
                     run.second.startReadingSet(name)))
            compareSet(run, "set '" + name + "'");
        run.first.endReadingSet();
        run.second.endReadingSet();
    }
}

void compareSetData(CompareRun& run, const std::string& phase)
{
    const std::string of = " of phase '" + phase + "'";
    for (const std::string& name :
         bothNames(run, KEL_FAMILY_SET_DATA, "set data" + of, &KelProvider::getSetDataNames)) {
        unsigned64 one = 0, other = 0;
        const std::string set = "set data '" + name + "'" + of;
        if (bothOpen(run, KEL_FAMILY_SET_DATA, set, run.first.startReadingSetData(name, one),
                     run.second.startReadingSetData(name, other)) &&
            run.same(KEL_FAMILY_SET_DATA, "members of " + set, std::to_string(one), std::to_string(other)))
            compareOneSetData(run, set);
        run.first.endReadingSetData();
        run.second.endReadingSetData();
    }
}

void compareParticleTracks(CompareRun& run, short firstPhase, short secondPhase, const std::string& phase)
{
    constexpr KelFormatFamily family = KEL_FAMILY_PARTICLE_TRACKS;
    const std::vector<KelMeshKey> one = meshesWithTracks(run.first, firstPhase);
    const std::vector<KelMeshKey> other = meshesWithTracks(run.second, secondPhase);
    std::set<KelMeshKey> keys(one.begin(), one.end());
    keys.insert(other.begin(), other.end());
    for (const KelMeshKey& key : keys) {
        const std::string of = " of phase '" + phase + "', " + meshLabel(key);
        const bool inOne = std::find(one.begin(), one.end(), key) != one.end();
        const bool inOther = std::find(other.begin(), other.end(), key) != other.end();
        if (inOne != inOther)
            run.differ(family, "tracks" + of, 0, inOne ? "present" : "", inOther ? "present" : "");
        if (!inOne || !inOther)
            continue;
        const auto target = static_cast<KelTargetCategory>(key.target);
        run.first.startReadingParticleTracks(firstPhase, key.meshId, target, key.partitionId);
        run.second.startReadingParticleTracks(secondPhase, key.meshId, target, key.partitionId);
        for (const std::string& group :
             bothNames(run, family, "track group" + of, &KelProvider::getParticleTrackGroups))
            compareTrackGroup(run, group, of);
        run.first.endReadingParticleTracks();
        run.second.endReadingParticleTracks();
    }
}

} // namespace meridyn
