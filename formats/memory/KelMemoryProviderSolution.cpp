#include "KelMemoryProvider.h"

#include "KelSolutionModel.h"

#include <algorithm>

namespace meridyn {

// ---- solution ----------------------------------------------------------------------------------------------------

const KelMemoryLevel* KelMemoryProvider::level(KelDataClass dataClass) const
{
    const bool isKnown = dataClass == KEL_CASE || dataClass == KEL_DATA;
    const KelMemoryModel* model = isKnown ? _models[dataClass] : nullptr;
    return model ? findIn(model->levels, dataClass == KEL_DATA ? getTimeLevel() : 0) : nullptr;
}

std::string KelMemoryProvider::variableName(int variableId) const
{
    std::string name;
    solutionModel()->getUniqueNameOfVariable(variableId, name);
    return name;
}

unsigned64 KelMemoryProvider::startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, const Text& name,
                                                                           std::vector<int>& zoneIds)
{
    std::string phase;
    const KelMemoryLevel* open = level(KEL_DATA);
    _field = open && getActivePhase(phase) ? findIn(open->fields, {phase, category, name}) : nullptr;
    zoneIds = _field ? _field->zoneIds : std::vector<int>();
    return _field ? _field->size : 0;
}

const KelMemoryList<KelMemorySet>* KelMemoryProvider::setDataOf(const Text& phaseName) const
{
    return level(KEL_DATA) ? findIn(level(KEL_DATA)->setData, phaseName) : nullptr;
}

const KelMemoryList<KelMemorySet>* KelMemoryProvider::setData() const
{
    std::string phase;
    return getActivePhase(phase) ? setDataOf(phase) : nullptr;
}

void KelMemoryProvider::getVariablesOfInjection(const Text& injection, Names& names) const
{
    const KelMemorySet* set = setData() ? setData()->find(injection) : nullptr;
    names = set ? set->constant.names : Names();
    if (set)
        names.insert(names.end(), set->variableLength.names.begin(), set->variableLength.names.end());
}

// ---- particle tracks ---------------------------------------------------------------------------------------------

bool KelMemoryProvider::hasParticleTracks() const
{
    return level(KEL_DATA) && !level(KEL_DATA)->tracks.empty();
}

bool KelMemoryProvider::hasParticleTracks(const Text& phaseName) const
{
    if (level(KEL_DATA))
        for (const auto& entry : level(KEL_DATA)->tracks)
            if (std::get<0>(entry.first) == phaseName)
                return true;
    return false;
}

bool KelMemoryProvider::hasParticleTracksInActivePhase() const
{
    std::string phase;
    return getActivePhase(phase) && hasParticleTracks(phase);
}

std::vector<short> KelMemoryProvider::getPhasesWithParticleTracks(int meshId, KelTargetCategory target,
                                                                  int partitionId) const
{
    std::vector<short> ids;
    getPhaseIds(ids);
    ids.erase(std::remove_if(ids.begin(), ids.end(),
                             [&](short id) { return !hasParticleTracks(id, meshId, target, partitionId); }),
              ids.end());
    return ids;
}

const KelMemoryList<KelMemoryTrackGroup>* KelMemoryProvider::tracks(short phaseId, int meshId, KelTargetCategory target,
                                                                    int partitionId) const
{
    const KelMemoryLevel* open = level(KEL_DATA);
    return open ? findIn(open->tracks, {getPhaseName(phaseId), meshId, target, partitionId}) : nullptr;
}

void KelMemoryProvider::startReadingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId)
{
    endReadingParticleTrackGroup();
    _tracks = tracks(phaseId, meshId, target, partitionId);
}

void KelMemoryProvider::startReadingChunkInParticleTrackGroup(int chunkId)
{
    _chunk = _group ? findIn(_group->chunks, chunkId) : nullptr;
}

void KelMemoryProvider::getParticleTrackVariables(Names& names) const
{
    names.clear();
    if (_chunk)
        for (const auto& entry : _chunk->variables)
            names.push_back(entry.first);
}

const KelMemoryValues* KelMemoryProvider::track(const Text& name) const
{
    return _chunk ? findIn(_chunk->variables, name) : nullptr;
}

// ---- sets and set data -------------------------------------------------------------------------------------------

const KelMemoryList<KelMemorySet>* KelMemoryProvider::sets(KelDataClass dataClass) const
{
    return level(dataClass) ? &level(dataClass)->sets : nullptr;
}

bool KelMemoryProvider::getSetNames(Names& names) const
{
    Names dataNames;
    getSetNames(KEL_CASE, names);
    getSetNames(KEL_DATA, dataNames);
    names.insert(names.end(), dataNames.begin(), dataNames.end());
    return !names.empty();
}

bool KelMemoryProvider::getSetNames(KelDataClass dataClass, Names& names) const
{
    names = sets(dataClass) ? sets(dataClass)->names : Names();
    return !names.empty();
}

bool KelMemoryProvider::getSetNames(KelZoneCategory category, Names& names) const
{
    names.clear();
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA})
        if (const KelMemoryList<KelMemorySet>* list = sets(dataClass))
            for (const std::string& name : list->names)
                if (list->find(name)->category == category)
                    names.push_back(name);
    return !names.empty();
}

bool KelMemoryProvider::startReadingSet(const Text& name)
{
    endReadingSet();
    for (const KelDataClass dataClass : {_current, _current == KEL_CASE ? KEL_DATA : KEL_CASE})
        if (!_set && sets(dataClass))
            _set = sets(dataClass)->find(name);
    return _set != nullptr;
}

void KelMemoryProvider::getSizesAndMinMaxIdsForSet(std::vector<Id>& sizes, std::vector<Id>& minIds,
                                                   std::vector<Id>& maxIds) const
{
    sizes = _set ? _set->sizes : std::vector<Id>();
    minIds = _set ? _set->minIds : std::vector<Id>();
    maxIds = _set ? _set->maxIds : std::vector<Id>();
}

bool KelMemoryProvider::startVariable(KelMemoryList<KelMemorySetVariable> KelMemorySet::*list, const Text& name)
{
    _setVariable = _set ? (_set->*list).find(name) : nullptr;
    return _setVariable != nullptr;
}

KelPlainDataType KelMemoryProvider::startReadingDataOfVariableForSet(const Text& name, Id& valuesPerMember)
{
    if (!startVariable(&KelMemorySet::constant, name))
        return KelPlainDataType(-1);
    valuesPerMember = _setVariable->valuesPerMember;
    return _setVariable->type;
}

unsigned64 KelMemoryProvider::getStringDataForSet(const Text& name, Text& text) const
{
    const std::string* found = _set ? _set->texts.find(name) : nullptr;
    if (!found)
        return 0;
    text = *found;
    return text.size();
}

bool KelMemoryProvider::startReadingSetData(const Text& name, Id& memberCount)
{
    endReadingSet();
    _set = setData() ? setData()->find(name) : nullptr;
    if (_set)
        memberCount = _set->memberCount;
    return _set != nullptr;
}

KelPlainDataType KelMemoryProvider::getDataTypeOfDataForSetData(const Text& name) const
{
    for (const auto list : {&KelMemorySet::constant, &KelMemorySet::variableLength})
        if (const KelMemorySetVariable* variable = _set ? (_set->*list).find(name) : nullptr)
            return variable->type;
    return typeOf(other(name));
}

KelPlainDataType KelMemoryProvider::getDataTypeOfSizeForSetData(const Text& name) const
{
    const KelMemorySetVariable* variable = _set ? _set->variableLength.find(name) : nullptr;
    return variable ? variable->lengthType : KelPlainDataType(-1);
}

} // namespace meridyn
