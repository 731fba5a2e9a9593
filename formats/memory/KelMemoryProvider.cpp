#include "KelMemoryProvider.h"

#include "KelLocationModel.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelSolutionModel.h"

#include <algorithm>
#include <set>

namespace meridyn {

KelMemoryProvider::KelMemoryProvider() = default;
KelMemoryProvider::~KelMemoryProvider() = default;

// ---- open and close ----------------------------------------------------------------------------------------------

bool KelMemoryProvider::openData(KelDataClass dataClass, const std::string& fileName)
{
    const KelMemoryStore::File file = KelMemoryStore::find(fileName, dataClass);
    if (!file) {
        getMessageRegistrar()->registerMessage(KelError(fileName + ": there is no such file", "KelMemoryProvider"));
        return false;
    }
    _files[dataClass] = file;
    _current = dataClass;
    std::string version, solver;
    getSettingString(dataClass, "Version", version, _defaultSettingsPath);
    getSettingString(dataClass, "Solver", solver, _defaultSettingsPath);
    setFileVersion(dataClass, version);
    if (!solver.empty())
        setSolverType(solver);
    if (select(dataClass))
        return true;
    closeData(dataClass);
    return false;
}

bool KelMemoryProvider::closeData(KelDataClass dataClass)
{
    if (!file(dataClass))
        return false;
    forgetOpenParts();
    _models[dataClass] = nullptr;
    _files[dataClass] = nullptr;
    _current = _files[KEL_DATA] ? KEL_DATA : KEL_CASE;
    return true;
}

bool KelMemoryProvider::updateData(KelDataClass dataClass)
{
    if (!file(dataClass) || !select(dataClass))
        return false;
    // Phases of the mesh before would keep the data from being asked for.
    return dataClass == KEL_DATA || !_files[KEL_DATA] || select(KEL_DATA);
}

/// Makes the mesh that is wanted the current one and declares what it has.
bool KelMemoryProvider::select(KelDataClass dataClass)
{
    forgetOpenParts();
    _models[dataClass] = nullptr;
    for (const auto& [context, model] : _files[dataClass]->models) {
        const auto [mesh, target, partition] = context;
        const bool isPartition = target == KEL_PARTITIONED_POST && getPartitionId() >= 0;
        if ((getMeshId() >= 1 && mesh != getMeshId()) || (isPartition && partition != getPartitionId()) ||
            (getTarget() != KEL_DEFAULT_TARGET && target != getTarget()))
            continue;
        setMeshContext(mesh, target, partition, KEL_UPDATE_NONE);
        _models[dataClass] = &model;
        dataClass == KEL_CASE ? declareMesh() : declareSolution();
        return true;
    }
    if (dataClass == KEL_DATA)
        solutionModel()->clearModel();
    getMessageRegistrar()->registerMessage(
        KelError(getFile(dataClass) + ": has no mesh " + std::to_string(getMeshId()) + " for target " +
                     std::to_string(getTarget()) + " and partition " + std::to_string(getPartitionId()),
                 "KelMemoryProvider"));
    return false;
}

void KelMemoryProvider::forgetOpenParts()
{
    _sectionCategory = KelZoneCategory(-1);
    _section = nullptr;
    _field = nullptr;
    endReadingSet();
    endReadingParticleTracks();
}

// ---- what KelBase is told ----------------------------------------------------------------------------------------

void KelMemoryProvider::declareMesh()
{
    const KelMemoryModel& mesh = *_models[KEL_CASE];
    setMeshSize(mesh.sizes[0], mesh.sizes[1], mesh.sizes[2], mesh.sizes[3], mesh.sizes[4]);
    setMeshUnits(mesh.units);
    if (!locationModel()->reset(mesh.locations))
        locationModel()->clearTopology();
    declareZones(mesh);

    std::map<int, std::list<int>> side0, side1, around;
    for (const KelMemoryZone& zone : mesh.zones) {
        if (zone.category == KEL_FACE_ZONE) {
            side0[zone.id] = zone.side0;
            side1[zone.id] = zone.side1;
        } else if (zone.category == KEL_CELL_ZONE)
            around[zone.id] = zone.around;
    }
    setFaceCellZone0Ids(side0);
    setFaceCellZone1Ids(side1);
    setCellFaceZoneIds(around);
}

/// Sets number n of a zone, in the order of its category's KelXZoneInfoType.
static void setZoneNumber(KelBase& base, const KelMemoryZone& zone, int number, int value)
{
    switch (zone.category) {
    case KEL_NODE_ZONE:
        return base.setNodeZoneInfo(zone.id, KelNodeZoneInfoType(number), value);
    case KEL_EDGE_ZONE:
        return base.setEdgeZoneInfo(zone.id, KelEdgeZoneInfoType(number), value);
    case KEL_FACE_ZONE:
        return base.setFaceZoneInfo(zone.id, KelFaceZoneInfoType(number), value);
    case KEL_CELL_ZONE:
        return base.setCellZoneInfo(zone.id, KelCellZoneInfoType(number), value);
    }
}

void KelMemoryProvider::declareZones(const KelMemoryModel& mesh)
{
    std::vector<int> ids[4];
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE}) {
        // An id of the file before would keep its category.
        getZoneIds(category, ids[category]);
        setZoneIds(category, {});
        setZoneCategory(ids[category], KelZoneCategory(-1));
        ids[category].clear();
    }
    for (const KelMemoryZone& zone : mesh.zones)
        ids[zone.category].push_back(zone.id);
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE})
        setZoneIds(category, ids[category]);
    for (const KelMemoryZone& zone : mesh.zones) {
        setZoneSizeInfo(zone.id, KEL_ZONE_FIRST_ID, zone.sizes[0]);
        setZoneSizeInfo(zone.id, KEL_ZONE_LAST_ID, zone.sizes[1]);
        setZoneSizeInfo(zone.id, KEL_ZONE_EXTRA_SIZE, zone.sizes[2]);
        setZoneStringInfo(zone.id, KEL_ZONE_STRING_0, zone.texts[0]);
        setZoneStringInfo(zone.id, KEL_ZONE_STRING_1, zone.texts[1]);
        for (std::size_t n = 0; n < zone.numbers.size(); ++n)
            setZoneNumber(*this, zone, static_cast<int>(n), zone.numbers[n]);
        if (zone.category == KEL_FACE_ZONE)
            setAllFaceZoneFlags(zone.id, zone.flags);
    }
}

void KelMemoryProvider::declareSolution()
{
    const KelMemoryModel& solution = *_models[KEL_DATA];
    KelSolutionModel& known = *solutionModel();
    known.clearModel();
    clearVariablesOfCategories();
    for (const int timeLevel : solution.timeLevels)
        addTimeLevel(timeLevel);
    const std::vector<int>& levels = solution.timeLevels;
    if (!levels.empty() && std::count(levels.begin(), levels.end(), getTimeLevel()) == 0)
        setTimeLevel(levels.front());

    std::map<short, short> phaseIds = {{short(-1), short(-1)}}; // the mixture comes with its first variable
    for (const KelMemoryPhase& phase : solution.phases)
        if (phase.id != -1)
            known.createPhase(phase.name, phaseIds[phase.id]);
    std::vector<KelMemoryVariable> variables = solution.variables; // created in the order in which they were
    std::sort(variables.begin(), variables.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
    for (const KelMemoryVariable& variable : variables) {
        int id = 0;
        known.createVariable(phaseIds[variable.phaseId], variable.name, id);
        for (const auto& [name, value] : variable.attributes)
            known.addAttributeOfVariable(id, name, value);
        for (const KelZoneCategory category : variable.categories)
            addVariableOfCategory(id, category);
    }
    for (const KelMemoryPhase& phase : solution.phases)
        for (const auto& [name, value] : phase.attributes)
            known.addAttributeOfPhase(phaseIds[phase.id], name, value);
    short active = 0;
    if (!getActivePhase(active) && !solution.phases.empty())
        setActivePhase(phaseIds[solution.phases.front().id]);
}

// ---- run ---------------------------------------------------------------------------------------------------------

void KelMemoryProvider::getLog(KelDataClass dataClass, std::vector<std::pair<Text, Text>>& entries) const
{
    entries = file(dataClass) ? file(dataClass)->log : KelMemoryPairs();
}

const KelMemoryList<std::string>* KelMemoryProvider::settings(KelDataClass dataClass, const Text& group) const
{
    return file(dataClass) ? file(dataClass)->settings.find(group) : nullptr;
}

void KelMemoryProvider::getSettingString(KelDataClass dataClass, const Text& key, Text& text, const Text& group) const
{
    const KelMemoryList<std::string>* texts = settings(dataClass, group);
    if (const std::string* found = texts ? texts->find(key) : nullptr)
        text = *found;
}

void KelMemoryProvider::getSettingsGroups(KelDataClass dataClass, Names& groups) const
{
    groups = file(dataClass) ? file(dataClass)->settings.names : Names();
}

void KelMemoryProvider::getSettingsKeysOfGroup(KelDataClass dataClass, const Text& group, Names& keys) const
{
    const KelMemoryList<std::string>* texts = settings(dataClass, group);
    keys = texts ? texts->names : Names();
}

std::vector<int> KelMemoryProvider::availableMeshIds(KelDataClass dataClass) const
{
    std::set<int> ids;
    if (file(dataClass))
        for (const auto& entry : file(dataClass)->models)
            ids.insert(std::get<0>(entry.first));
    return {ids.begin(), ids.end()};
}

std::vector<KelTargetCategory> KelMemoryProvider::availableTargets(int meshId, KelDataClass dataClass) const
{
    std::set<KelTargetCategory> targets;
    if (file(dataClass))
        for (const auto& entry : file(dataClass)->models)
            if (std::get<0>(entry.first) == (meshId == -1 ? getMeshId() : meshId))
                targets.insert(std::get<1>(entry.first));
    return {targets.begin(), targets.end()};
}

std::vector<int> KelMemoryProvider::availablePartitionIds(int meshId, KelDataClass dataClass) const
{
    std::set<int> ids;
    if (file(dataClass))
        for (const auto& entry : file(dataClass)->models)
            if (std::get<0>(entry.first) == (meshId == -1 ? getMeshId() : meshId) && std::get<2>(entry.first) >= 0)
                ids.insert(std::get<2>(entry.first));
    return {ids.begin(), ids.end()};
}

// ---- mesh --------------------------------------------------------------------------------------------------------

const KelMemoryArray& KelMemoryProvider::array(const char* name) const
{
    static const KelMemoryArray nothing;
    const KelMemoryArray* found = _models[KEL_CASE] ? findIn(_models[KEL_CASE]->arrays, name) : nullptr;
    return found ? *found : nothing;
}

bool KelMemoryProvider::uniform(const char* counts, Id first, Id last, short* count) const
{
    const std::optional<long> value = array(counts).uniformValue(first, last);
    if (value && count)
        *count = static_cast<short>(*value);
    return value.has_value();
}

bool KelMemoryProvider::uniformInZone(const char* counts, int zoneId, short* count) const
{
    Id first = 0, last = 0;
    getZoneSizeInfo(zoneId, KEL_ZONE_FIRST_ID, first);
    getZoneSizeInfo(zoneId, KEL_ZONE_LAST_ID, last);
    return uniform(counts, first, last, count);
}

unsigned64 KelMemoryProvider::getLocalElemIdsInZone(int zoneId, Id* ids, Id capacity) const
{
    const std::vector<Id>* found = _models[KEL_CASE] ? findIn(_models[KEL_CASE]->localIds, zoneId) : nullptr;
    const Id count = found ? std::min<Id>(found->size(), capacity) : 0;
    if (count > 0)
        std::copy_n(found->begin(), count, ids);
    return count;
}

unsigned64 KelMemoryProvider::getCell1sForFacesInRange(Id first, Id last, Id* v, Id n) const
{
    const KelMemoryArray& cell0 = array("cell 0");
    return array("cell 1").get(
        first, last, v, n, [&cell0](Id face) { return cell0.at(face) ? std::optional<Id>(1) : std::optional<Id>(); });
}

void KelMemoryProvider::startReadingInterfaceDataForFaces(std::vector<int>& zones0, std::vector<int>& zones1)
{
    zones0 = _models[KEL_CASE] ? _models[KEL_CASE]->interfaceZones[0] : std::vector<int>();
    zones1 = _models[KEL_CASE] ? _models[KEL_CASE]->interfaceZones[1] : std::vector<int>();
}

const KelMemoryInterface* KelMemoryProvider::interfaceOf(int zone) const
{
    return _models[KEL_CASE] ? findIn(_models[KEL_CASE]->interfaces, zone) : nullptr;
}

bool KelMemoryProvider::getInterfaceDataSizesForFacesInZone(int zone, Id& na, Id& nb, Id& n0, Id& n1) const
{
    const KelMemoryInterface* data = interfaceOf(zone);
    if (!data)
        return false;
    na = copyValues<char>(&data->shares0, nullptr, 0);
    nb = copyValues<char>(&data->shares1, nullptr, 0);
    n0 = copyValues<char>(&data->faces0, nullptr, 0);
    n1 = copyValues<char>(&data->faces1, nullptr, 0);
    return true;
}

bool KelMemoryProvider::hasUniformTypeForCellsInZone(int zoneId, KelCellType* type) const
{
    short number = 0;
    if (!uniformInZone("cell types", zoneId, &number))
        return false;
    if (type)
        *type = KelCellType(number);
    return true;
}

unsigned64 KelMemoryProvider::getTypesForCellsInRange(Id first, Id last, KelCellType* types, Id capacity) const
{
    // One type per cell; the enumeration is none of the value types.
    const Id count = last < first ? 0 : std::min(capacity, last - first + 1);
    std::vector<int> numbers(count);
    const Id stored = array("cell types").get(first, last, numbers.data(), count);
    std::transform(numbers.begin(), numbers.begin() + static_cast<std::ptrdiff_t>(stored), types,
                   [](int number) { return KelCellType(number); });
    return stored;
}

short KelMemoryProvider::getFaceCountForCell(Id cellId) const
{
    short count = 0;
    return getFaceCountsForCellsInRange(cellId, cellId, &count, 1) == 1 ? count : short(0);
}

void KelMemoryProvider::startReadingCaseSectionCategories(KelZoneCategory category, Names& names)
{
    const bool isKnown = _models[KEL_CASE] && category >= 0 && category <= KEL_CELL_ZONE;
    _sectionCategory = isKnown ? category : KelZoneCategory(-1);
    names = isKnown ? _models[KEL_CASE]->sections[category].names : Names();
}

KelPlainDataType KelMemoryProvider::startReadingCaseSectionForCategory(const Text& name, std::vector<int>& zoneIds)
{
    _section = _models[KEL_CASE] && _sectionCategory != -1 ? _models[KEL_CASE]->sections[_sectionCategory].find(name)
                                                           : nullptr;
    if (!_section)
        return KelPlainDataType(-1);
    zoneIds = _section->zoneIds;
    return _section->type;
}

bool KelMemoryProvider::hasUniformCaseSectionDataCountForZone(int zoneId, Id* count) const
{
    if (!_section || std::count(_section->zoneIds.begin(), _section->zoneIds.end(), zoneId) == 0)
        return false;
    if (count)
        *count = _section->size;
    return true;
}

unsigned64 KelMemoryProvider::getCaseSectionDataForElementsInRange(Id first, Id last, void* values, Id capacity) const
{
    Id stored = 0;
    if (_section)
        visitEmptyValues(_section->type, [&](auto list) {
            stored =
                _section->values.get(first, last, static_cast<typename decltype(list)::value_type*>(values), capacity);
        });
    return stored;
}

} // namespace meridyn
