#include "KelMemoryConsumer.h"

#include "KelSolutionModel.h"

#include <algorithm>
#include <numeric>

namespace meridyn {

// ---- solution ----------------------------------------------------------------------------------------------------

void KelMemoryConsumer::startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, const Text& name,
                                                                   std::vector<int>& zoneIds, Id size)
{
    KelMemoryLevel* open = level(KEL_DATA);
    short phaseId = 0;
    int variableId = 0;
    _field = nullptr;
    if (!report(open && size > 0 && getActivePhase(phaseId) &&
                    solutionModel()->findVariableByUniqueName(phaseId, name, variableId),
                "values of a variable"))
        return;
    addVariableOfCategory(variableId, category);
    _field = &open->fields[{getPhaseName(phaseId), category, name}];
    if (_field->size != size)
        *_field = {{}, size, {}};
    for (const int zone : zoneIds)
        if (std::count(_field->zoneIds.begin(), _field->zoneIds.end(), zone) == 0)
            _field->zoneIds.push_back(zone);
}

void KelMemoryConsumer::startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, int variableId,
                                                                   std::vector<int>& zoneIds, Id size)
{
    startWritingPhaseVariableInZonesOfCategory(category, variableName(variableId), zoneIds, size);
}

std::string KelMemoryConsumer::variableName(int variableId) const
{
    std::string name;
    solutionModel()->getUniqueNameOfVariable(variableId, name);
    return name;
}

void KelMemoryConsumer::keepValues(Id first, Id last, KelMemoryValues values)
{
    report(_field && _field->values.put(first, last, inPrecision(std::move(values)), _field->size),
           "values of a variable", first, last);
}

// ---- sets and set data -------------------------------------------------------------------------------------------

void KelMemoryConsumer::startWritingSet(const Text& name, KelZoneCategory category)
{
    endWritingSet();
    if (KelMemoryLevel* open = level(_current); report(open, "a set")) {
        _set = &(open->sets[name] = {});
        _set->category = category;
    }
}

void KelMemoryConsumer::setSizesAndMinMaxIdsForSet(const std::vector<Id>& sizes, const std::vector<Id>& minIds,
                                                   const std::vector<Id>& maxIds)
{
    if (!report(_set, "sizes of a set"))
        return;
    _set->sizes = sizes;
    _set->minIds = minIds;
    _set->maxIds = maxIds;
}

void KelMemoryConsumer::startVariable(KelMemoryList<KelMemorySetVariable> KelMemorySet::*list, const Text& name,
                                      Id valuesPerMember, KelPlainDataType type)
{
    _setVariable = _set ? &(_set->*list)[name] : nullptr;
    if (!report(_setVariable, "a variable of a set"))
        return;
    _setVariable->type = type;
    _setVariable->valuesPerMember = valuesPerMember;
}

void KelMemoryConsumer::startWritingSizeOfVariableForSet(const Text& name, std::vector<Id>, KelPlainDataType type)
{
    startVariable(&KelMemorySet::variableLength, name, 0, KelPlainDataType(-1));
    if (_setVariable)
        _setVariable->lengthType = type;
}

void KelMemoryConsumer::keepLengths(Id first, Id last, KelMemoryValues lengths, bool isUniform)
{
    report(_setVariable && (isUniform ? _setVariable->lengths.putUniform(first, last, std::move(lengths))
                                      : _setVariable->lengths.put(first, last, std::move(lengths), 1)),
           "lengths of a variable of a set", first, last);
}

void KelMemoryConsumer::startWritingDataOfVariableForSet(const Text& name, std::vector<Id>, Id valuesPerMember,
                                                         KelPlainDataType type)
{
    startVariable(&KelMemorySet::constant, name, valuesPerMember, type);
}

void KelMemoryConsumer::startWritingVariableLengthedDataOfVariableForSet(const Text& name, std::vector<Id>,
                                                                         KelPlainDataType type)
{
    startVariable(&KelMemorySet::variableLength, name, 0, type);
}

void KelMemoryConsumer::keepSetValues(Id first, Id last, KelMemoryValues values)
{
    KelMemorySetVariable* variable = _setVariable;
    report(variable && (variable->valuesPerMember > 0
                            ? variable->values.put(first, last, std::move(values), variable->valuesPerMember)
                            : variable->values.putRagged(first, last, std::move(values), variable->lengths)),
           "values of a variable of a set", first, last);
}

void KelMemoryConsumer::startWritingSetData(const Text& name, Id memberCount)
{
    endWritingSet();
    std::string phase;
    KelMemoryLevel* open = level(KEL_DATA);
    if (report(open && getActivePhase(phase), "set data")) {
        _set = &(open->setData[phase][name] = {});
        _set->memberCount = memberCount;
    }
}

void KelMemoryConsumer::startWritingVariableForSetData(const Text& name, Id valuesPerMember, KelPlainDataType type)
{
    startVariable(&KelMemorySet::constant, name, valuesPerMember, type);
}

void KelMemoryConsumer::startWritingVariableLengthVariableForSetData(const Text& name, KelPlainDataType type,
                                                                     KelPlainDataType lengthType)
{
    startVariable(&KelMemorySet::variableLength, name, 0, type);
    if (_setVariable)
        _setVariable->lengthType = lengthType;
}

bool KelMemoryConsumer::appendSetData(KelMemoryValues values)
{
    return report(_setVariable && _setVariable->values.append(std::move(values)), "values of set data");
}

bool KelMemoryConsumer::appendSetData(KelMemoryValues values, KelMemoryValues lengths)
{
    const auto sum = [](const auto& list) { return std::accumulate(list.begin(), list.end(), 0.0); };
    const auto size = [](const auto& list) { return static_cast<double>(list.size()); };
    return report(std::visit(sum, lengths) == std::visit(size, values), "lengths of set data") &&
           appendSetData(std::move(values)) && _setVariable->lengths.append(std::move(lengths));
}

void KelMemoryConsumer::keepOther(const Text& name, KelMemoryValues values)
{
    if (report(_set, "other data of a set"))
        _set->others[name] = std::move(values);
}

void KelMemoryConsumer::keepText(const Text& name, const Text& text)
{
    if (report(_set, "a text of a set"))
        _set->texts[name] = text;
}

// ---- particle tracks ---------------------------------------------------------------------------------------------

bool KelMemoryConsumer::startWritingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId)
{
    endWritingParticleTracks();
    KelMemoryLevel* open = level(KEL_DATA);
    const std::string phase = getPhaseName(phaseId);
    if (report(open && !phase.empty(), "particle tracks"))
        _tracks = &open->tracks[{phase, meshId, target, partitionId}];
    return _tracks != nullptr;
}

void KelMemoryConsumer::startWritingPartiticleTrackGroup(const Text& name)
{
    endWritingPartiticleTrackGroup();
    if (report(_tracks, "a group of particle tracks"))
        _group = &(*_tracks)[name];
}

void KelMemoryConsumer::startWritingChunkInPartiticleTrackGroup(int chunkId, Id pointCount)
{
    _chunk = nullptr;
    if (!report(_group, "a chunk of particle tracks"))
        return;
    if (_group->chunks.count(chunkId) == 0)
        _group->chunkIds.push_back(chunkId);
    _chunk = &(_group->chunks[chunkId] = {pointCount, {}});
}

void KelMemoryConsumer::keepTrack(const Text& name, KelMemoryValues values)
{
    const auto count = std::visit([](const auto& list) { return list.size(); }, values);
    if (report(_chunk && !name.empty() && (_chunk->pointCount == 0 ? count == 0 : count % _chunk->pointCount == 0),
               "a variable of particle tracks"))
        _chunk->variables[name] = std::move(values);
}

} // namespace meridyn
