#include "KelFormatProvider.h"

#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelSolutionModel.h"

#include <algorithm>

namespace meridyn {

namespace {

constexpr short mixture = -1;

template <class List, class T>
bool contains(const List& list, const T& value)
{
    return std::find(list.begin(), list.end(), value) != list.end();
}

/// One item of each of the keys that belong to a mesh, in order, each once.
template <class T, class Item>
std::vector<T> listOf(const std::vector<KelMeshKey>& keys, const Item& item)
{
    std::vector<T> items;
    for (const KelMeshKey& key : keys)
        if (const std::optional<T> found = item(key); found && !contains(items, *found))
            items.push_back(*found);
    return items;
}

} // namespace

KelFormatProvider::KelFormatProvider() = default;
KelFormatProvider::~KelFormatProvider() = default;

// ---- the ledger

std::vector<KelSourceItem> KelFormatProvider::notHandedOver(KelDataClass dataClass) const
{
    return dataClass == KEL_CASE || dataClass == KEL_DATA ? _notRead[dataClass].items : std::vector<KelSourceItem>();
}

std::optional<std::vector<KelMeshKey>> KelFormatProvider::meshesOf(KelDataClass dataClass) const
{
    return meshKeys(dataClass);
}

void KelFormatProvider::chooseNoLevel(bool on)
{
    _isAtNoLevel = on;
}

std::optional<int> KelFormatProvider::chosenLevel() const
{
    const bool isKnown = !_isAtNoLevel && contains(getTimeLevels(), getTimeLevel());
    return isKnown ? std::optional<int>(getTimeLevel()) : std::nullopt;
}

void KelFormatProvider::noteNotRead(KelDataClass dataClass, const KelSourceItem& item) const
{
    NotRead& noted = _notRead[dataClass == KEL_DATA ? 1 : 0];
    if (noted.known.emplace(item.family, item.place, static_cast<int>(item.reason), item.text).second)
        noted.items.push_back(item);
}

void KelFormatProvider::warnOfSource(KelDataClass dataClass, const KelSourceItem& item,
                                     const std::string& operation) const
{
    noteNotRead(dataClass, item);
    getMessageRegistrar()->registerMessage(KelWarning(item.place + ": " + item.text, operation));
}

// ---- settings, meshes and cells

void KelFormatProvider::getSettingsKeys(KelDataClass dataClass, std::vector<std::string>& keys) const
{
    getSettingsKeysOfGroup(dataClass, _defaultSettingsPath, keys);
}

std::vector<int> KelFormatProvider::availableMeshIds(KelDataClass dataClass) const
{
    return listOf<int>(meshKeys(dataClass), [](const KelMeshKey& key) { return std::optional<int>(key.meshId); });
}

std::vector<KelTargetCategory> KelFormatProvider::availableTargets(int meshId, KelDataClass dataClass) const
{
    const int wanted = meshId == -1 ? getMeshId() : meshId;
    return listOf<KelTargetCategory>(meshKeys(dataClass), [wanted](const KelMeshKey& key) {
        return key.meshId == wanted ? std::optional(static_cast<KelTargetCategory>(key.target)) : std::nullopt;
    });
}

std::vector<int> KelFormatProvider::availablePartitionIds(int meshId, KelDataClass dataClass) const
{
    const int wanted = meshId == -1 ? getMeshId() : meshId;
    return listOf<int>(meshKeys(dataClass), [wanted](const KelMeshKey& key) {
        return key.meshId == wanted && key.partitionId >= 0 ? std::optional(key.partitionId) : std::nullopt;
    });
}

short KelFormatProvider::getFaceCountForCell(unsigned64 cellId) const
{
    short count = 0;
    return getFaceCountsForCellsInRange(cellId, cellId, &count, 1) == 1 ? count : static_cast<short>(0);
}

// ---- forms of one operation

unsigned64 KelFormatProvider::startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, int variableId,
                                                                           std::vector<int>& zoneIds)
{
    short phaseId = 0;
    if (getActivePhase(phaseId) && solutionModel()->hasVariable(phaseId, variableId))
        return startReadingZonesOfCategoryWithPhaseVariable(category, variableName(variableId), zoneIds);
    zoneIds.clear();
    return notStartedVariable(variableId);
}

bool KelFormatProvider::hasParticles() const
{
    std::string phase;
    return getActivePhase(phase) && hasParticles(phase);
}

bool KelFormatProvider::hasParticles(const std::string&) const
{
    return false;
}

bool KelFormatProvider::hasParticles(short phaseId) const
{
    std::string phase;
    return getPhaseName(phaseId, phase) && hasParticles(phase);
}

bool KelFormatProvider::startReadingParticles()
{
    return hasParticles();
}

bool KelFormatProvider::startReadingParticles(const std::string& phaseName)
{
    return setActivePhase(phaseName) && startReadingParticles();
}

bool KelFormatProvider::startReadingParticles(short phaseId)
{
    return setActivePhase(phaseId) && startReadingParticles();
}

void KelFormatProvider::getInjectionNames(std::vector<std::string>& names) const
{
    getSetDataNames(names);
}

bool KelFormatProvider::hasParticleTracks() const
{
    std::vector<short> phaseIds;
    getPhaseIds(phaseIds);
    return std::any_of(phaseIds.begin(), phaseIds.end(), [this](short id) { return hasParticleTracks(id); });
}

bool KelFormatProvider::hasParticleTracks(short phaseId) const
{
    std::string phase;
    return getPhaseName(phaseId, phase) && hasParticleTracks(phase);
}

bool KelFormatProvider::hasParticleTracksInActivePhase() const
{
    std::string phase;
    return getActivePhase(phase) && hasParticleTracks(phase);
}

std::vector<short> KelFormatProvider::getPhasesWithParticleTracks(int meshId, KelTargetCategory target,
                                                                  int partitionId) const
{
    std::vector<short> all, phaseIds;
    getPhaseIds(all);
    std::copy_if(all.begin(), all.end(), std::back_inserter(phaseIds),
                 [&](short id) { return hasParticleTracks(id, meshId, target, partitionId); });
    return phaseIds;
}

void KelFormatProvider::getParticleTrackVariables(std::vector<std::string>& names) const
{
    names = namesIn(KelCollection::TrackChunk, KelPart::Variables);
    std::sort(names.begin(), names.end());
}

KelPlainDataType KelFormatProvider::getDataTypeOfDataForSetData(const std::string& name) const
{
    for (const KelPart part : {KelPart::Variables, KelPart::Lists, KelPart::Others})
        if (const auto array = describe(KelCollection::SetData, part, name))
            return array->type;
    return static_cast<KelPlainDataType>(-1);
}

bool KelFormatProvider::getSetNames(std::vector<std::string>& names) const
{
    std::vector<std::string> ofData;
    const bool hasCase = getSetNames(KEL_CASE, names);
    const bool hasData = getSetNames(KEL_DATA, ofData);
    names.insert(names.end(), ofData.begin(), ofData.end());
    return hasCase || hasData;
}

/// A zone of other elements has no cells, whatever its range.
std::pair<unsigned64, unsigned64> KelFormatProvider::rangeOfCellZone(int zoneId) const
{
    std::vector<int> ids;
    getZoneIds(KEL_CELL_ZONE, ids);
    return contains(ids, zoneId) ? rangeOfZone(zoneId) : std::pair<unsigned64, unsigned64>(0, 0);
}

KelPlainDataType KelFormatProvider::typeOf(KelCollection in, KelPart part, const std::string& name) const
{
    const auto array = describe(in, part, name);
    return array ? array->type : static_cast<KelPlainDataType>(-1);
}

unsigned64 KelFormatProvider::countOf(KelCollection in, KelPart part, const std::string& name) const
{
    const auto array = describe(in, part, name);
    return array ? array->valueCount : 0;
}

bool KelFormatProvider::getSize(KelCollection in, const std::string& name, unsigned64& size) const
{
    const auto array = describe(in, KelPart::Variables, name);
    if (array)
        size = array->size;
    return array.has_value();
}

unsigned64 KelFormatProvider::giveUpTo(KelCollection in, KelPart part, const std::string& name,
                                       const KelBuffer& values) const
{
    unsigned64 stored = 0;
    const bool isThere = giveWhole(in, part, name, [&](unsigned64 count) {
        stored = std::min(count, values.capacity);
        return KelBuffer(values.data, stored, values.type);
    });
    return isThere ? stored : 0;
}

// ---- what a format overrides

unsigned64 KelFormatProvider::give(KelArray, unsigned64, unsigned64, const KelBuffer&) const
{
    return 0;
}

std::optional<signed64> KelFormatProvider::uniformValue(KelArray, unsigned64, unsigned64) const
{
    return std::nullopt;
}

unsigned64 KelFormatProvider::giveInterface(int, const KelInterfaceBuffers&) const
{
    return 0;
}

std::vector<std::string> KelFormatProvider::namesIn(KelCollection, KelPart) const
{
    return {};
}

std::optional<KelFormatProvider::KelArrayInfo> KelFormatProvider::describe(KelCollection, KelPart,
                                                                           const std::string&) const
{
    return std::nullopt;
}

bool KelFormatProvider::giveWhole(KelCollection, KelPart, const std::string&, const KelRoom&) const
{
    return false;
}

unsigned64 KelFormatProvider::giveText(KelCollection, const std::string&, std::string&) const
{
    return 0;
}

std::vector<KelMeshKey> KelFormatProvider::meshKeys(KelDataClass) const
{
    return {};
}

// ---- what KelBase is told

void KelFormatProvider::declareMesh(const KelMeshDescription& mesh)
{
    meridyn::declareMesh(*this, mesh);
}

void KelFormatProvider::declareZones(const std::vector<KelZoneDescription>& zones)
{
    meridyn::declareZones(*this, zones);
}

void KelFormatProvider::declareSolution(const KelSolutionDescription& solution)
{
    for (const int level : solution.timeLevels)
        addTimeLevel(level);
    solutionModel()->clearModel();
    clearVariablesOfCategories();
    declareVariablesAndPhases(solution);

    if (!solution.timeLevels.empty() && !contains(solution.timeLevels, getTimeLevel()))
        setTimeLevel(solution.timeLevels.front());
    short active = 0;
    std::vector<short> phaseIds;
    getPhaseIds(phaseIds);
    if (!phaseIds.empty() && !getActivePhase(active))
        setActivePhase(phaseIds.front());
}

// Ids come from the order of creation. A phase 0 means that the mixture was there before the first phase, and so was
// its first variable.
void KelFormatProvider::declareVariablesAndPhases(const KelSolutionDescription& solution)
{
    KelSolutionModel& model = *solutionModel();
    std::vector<KelVariableDescription> variables = solution.variables;
    std::stable_sort(variables.begin(), variables.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
    std::map<short, short> phaseIds{{mixture, mixture}}; // here, by the one in the description
    auto next = variables.begin();
    const auto createNext = [&] {
        const KelVariableDescription& variable = *next++;
        const auto phase = phaseIds.find(variable.phaseId);
        int id = 0;
        model.createVariable(phase == phaseIds.end() ? variable.phaseId : phase->second, variable.uniqueName, id);
        for (const auto& [name, value] : variable.attributes)
            model.addAttributeOfVariable(id, name, value);
        for (const int category : variable.categories)
            addVariableOfCategory(id, static_cast<KelZoneCategory>(category));
    };
    const auto has = [](const auto& list, const auto& isIt) { return std::any_of(list.begin(), list.end(), isIt); };
    const bool hasZero = has(solution.phases, [](const auto& phase) { return phase.id == 0; });
    const bool hasMixture = has(variables, [](const auto& variable) { return variable.phaseId == mixture; });
    while (hasZero && hasMixture && !model.hasPhase(mixture))
        createNext();
    for (const KelPhaseDescription& phase : solution.phases)
        if (phase.id != mixture)
            model.createPhase(phase.uniqueName, phaseIds[phase.id]);
    while (next != variables.end())
        createNext();
    for (const KelPhaseDescription& phase : solution.phases)
        for (const auto& [name, value] : phase.attributes)
            model.addAttributeOfPhase(phaseIds[phase.id], name, value);
}

std::pair<unsigned64, unsigned64> KelFormatProvider::rangeOfZone(int zoneId) const
{
    std::pair<unsigned64, unsigned64> range;
    getZoneSizeInfo(zoneId, KEL_ZONE_FIRST_ID, range.first);
    getZoneSizeInfo(zoneId, KEL_ZONE_LAST_ID, range.second);
    return range;
}

std::string KelFormatProvider::variableName(int variableId) const
{
    std::string name;
    solutionModel()->getUniqueNameOfVariable(variableId, name);
    return name;
}

} // namespace meridyn
