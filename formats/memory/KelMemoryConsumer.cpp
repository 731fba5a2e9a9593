#include "KelMemoryConsumer.h"

#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelSolutionModel.h"

#include <algorithm>

namespace meridyn {

KelMemoryConsumer::KelMemoryConsumer() = default;
KelMemoryConsumer::~KelMemoryConsumer() = default;

// ---- open and close ----------------------------------------------------------------------------------------------

bool KelMemoryConsumer::openData(KelDataClass dataClass, const std::string& fileName)
{
    if (dataClass != KEL_CASE && dataClass != KEL_DATA)
        return report(false, "a file of an unknown data class");
    const KelMemoryStore::File old = _append ? KelMemoryStore::find(fileName, dataClass) : nullptr;
    _files[dataClass] = old ? std::make_shared<KelMemoryFile>(*old) : std::make_shared<KelMemoryFile>();
    _current = dataClass;
    return true;
}

bool KelMemoryConsumer::closeData(KelDataClass dataClass)
{
    if (!file(dataClass))
        return report(false, "the end of a file");
    endWritingCaseSectionDataForCategory();
    endWritingPhaseVariableInZonesOfCategory();
    endWritingSet();
    endWritingParticleTracks();
    KelMemoryStore::publish(getFile(dataClass), dataClass, std::move(_files[dataClass]));
    _files[dataClass] = nullptr;
    _current = _files[KEL_DATA] ? KEL_DATA : KEL_CASE;
    return true;
}

bool KelMemoryConsumer::report(bool done, const char* what, Id first, Id last) const
{
    if (!done) {
        std::string text = getFile(_current) + ": " + what;
        if (last != 0)
            text += ", " + std::to_string(first) + " to " + std::to_string(last);
        getMessageRegistrar()->registerMessage(
            KelError(text + ": not started, or not the right number of values", "KelMemoryConsumer"));
    }
    return done;
}

KelMemoryModel* KelMemoryConsumer::model(KelDataClass dataClass) const
{
    const int partition = getTarget() == KEL_PARTITIONED_POST ? getPartitionId() : -1;
    KelMemoryFile* open = file(dataClass);
    return open ? &open->models[{std::max(getMeshId(), 1), getTarget(), partition}] : nullptr;
}

KelMemoryLevel* KelMemoryConsumer::level(KelDataClass dataClass) const
{
    KelMemoryModel* open = model(dataClass);
    return open ? &open->levels[dataClass == KEL_DATA ? getTimeLevel() : 0] : nullptr;
}

// ---- what KelBase knows ------------------------------------------------------------------------------------------

/// Number n of a zone, in the order of its category's KelXZoneInfoType.
static int zoneNumber(const KelBase& base, KelZoneCategory category, int zoneId, int number)
{
    int value = -1;
    switch (category) {
    case KEL_NODE_ZONE:
        base.getNodeZoneInfo(zoneId, KelNodeZoneInfoType(number), value);
        break;
    case KEL_EDGE_ZONE:
        base.getEdgeZoneInfo(zoneId, KelEdgeZoneInfoType(number), value);
        break;
    case KEL_FACE_ZONE:
        base.getFaceZoneInfo(zoneId, KelFaceZoneInfoType(number), value);
        break;
    case KEL_CELL_ZONE:
        base.getCellZoneInfo(zoneId, KelCellZoneInfoType(number), value);
        break;
    }
    return value;
}

/// How many there are, by category.
static constexpr int numbersOfZone[] = {1, 2, 6, 2};

void KelMemoryConsumer::writeMeshAttributes() const
{
    // The adjacency of zones is worked out when it is first asked for, hence its getters are not const.
    if (KelMemoryModel* mesh = model(KEL_CASE))
        describeMesh(const_cast<KelMemoryConsumer&>(*this), *mesh);
    if (KelMemoryModel* solution = model(KEL_DATA))
        describeSolution(*solution);
}

void KelMemoryConsumer::describeMesh(KelBase& base, KelMemoryModel& mesh) const
{
    for (int type = KEL_MESH_DIMENSION; type <= KEL_MESH_SIZE_4; ++type)
        base.getMeshSize(KelMeshSizeType(type), mesh.sizes[type]);
    base.getMeshUnits(mesh.units);
    mesh.locations = _locations;
    mesh.zones.clear();
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE}) {
        std::vector<int> ids;
        base.getZoneIds(category, ids);
        for (const int id : ids) {
            KelMemoryZone& zone = mesh.zones.emplace_back();
            zone.id = id;
            zone.category = category;
            base.getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, zone.sizes[0]);
            base.getZoneSizeInfo(id, KEL_ZONE_LAST_ID, zone.sizes[1]);
            base.getZoneSizeInfo(id, KEL_ZONE_EXTRA_SIZE, zone.sizes[2]);
            base.getZoneStringInfo(id, KEL_ZONE_STRING_0, zone.texts[0]);
            base.getZoneStringInfo(id, KEL_ZONE_STRING_1, zone.texts[1]);
            for (int number = 0; number < numbersOfZone[category]; ++number)
                zone.numbers.push_back(zoneNumber(base, category, id, number));
            if (category == KEL_FACE_ZONE) {
                base.getAllFaceZoneFlags(id, zone.flags);
                base.getFaceCellZone0Ids(id, zone.side0);
                base.getFaceCellZone1Ids(id, zone.side1);
            } else if (category == KEL_CELL_ZONE)
                base.getCellFaceZoneIds(id, zone.around);
        }
    }
}

void KelMemoryConsumer::describeSolution(KelMemoryModel& solution) const
{
    const KelSolutionModel& known = *solutionModel();
    for (const int level : getTimeLevels())
        if (std::count(solution.timeLevels.begin(), solution.timeLevels.end(), level) == 0)
            solution.timeLevels.push_back(level);
    solution.phases.clear();
    solution.variables.clear();

    std::vector<short> phaseIds;
    std::vector<std::string> names;
    known.getPhases(phaseIds);
    for (const short phaseId : phaseIds) {
        KelMemoryPhase& phase = solution.phases.emplace_back(KelMemoryPhase{phaseId, getPhaseName(phaseId), {}});
        known.getAttributeNamesOfPhase(phaseId, names);
        names.emplace_back("Dataset Name");
        for (const std::string& name : names)
            known.getAttributeOfPhase(phaseId, name, phase.attributes[name]);

        std::vector<int> variableIds;
        known.getVariables(phaseId, variableIds);
        for (const int variableId : variableIds) {
            KelMemoryVariable& variable = solution.variables.emplace_back();
            variable.id = variableId;
            variable.phaseId = phaseId;
            known.getUniqueNameOfVariable(variableId, variable.name);
            known.getAttributeNamesOfVariable(variableId, names);
            names.emplace_back("Dataset Name");
            for (const std::string& name : names)
                known.getAttributeOfVariable(variableId, name, variable.attributes[name]);
            for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE}) {
                std::vector<int> ids;
                getVariablesOfCategory(category, ids);
                if (std::binary_search(ids.begin(), ids.end(), variableId))
                    variable.categories.push_back(category);
            }
        }
    }
}

// ---- run ---------------------------------------------------------------------------------------------------------

void KelMemoryConsumer::log(std::vector<std::pair<Text, Text>> entries, KelDataClass dataClass)
{
    if (report(file(dataClass), "the log"))
        file(dataClass)->log.insert(file(dataClass)->log.end(), entries.begin(), entries.end());
}

int KelMemoryConsumer::getLastLogIndex(KelDataClass dataClass) const
{
    return file(dataClass) ? static_cast<int>(file(dataClass)->log.size()) - 1 : -1;
}

void KelMemoryConsumer::writeSettingStrings(const std::vector<std::pair<Text, Text>>& pairs, KelDataClass dataClass,
                                            const Text& group) const
{
    if (!_writeSettings || !report(file(dataClass), "settings"))
        return;
    KelMemoryList<std::string>& settings = file(dataClass)->settings[group];
    for (const auto& [key, text] : pairs)
        if (_overrideSettings || !settings.find(key))
            settings[key] = text;
}

bool KelMemoryConsumer::addStringAttribute(const Text& section, const Text& group, const Text& name,
                                           const Text& value) const
{
    if (!report(file(_current), "a text attribute"))
        return false;
    file(_current)->settings[section + "/" + group][name] = value;
    return true;
}

// ---- mesh --------------------------------------------------------------------------------------------------------

KelMemoryArray* KelMemoryConsumer::array(const char* name)
{
    KelMemoryModel* mesh = model(KEL_CASE);
    return mesh ? &mesh->arrays[name] : nullptr;
}

void KelMemoryConsumer::keep(const char* name, Id first, Id last, KelMemoryValues values)
{
    KelMemoryArray* to = array(name);
    report(to && to->put(first, last, std::move(values), 1), name, first, last);
}

void KelMemoryConsumer::keepUniform(const char* name, Id first, Id last, short count)
{
    KelMemoryArray* to = array(name);
    report(to && count >= 0 && to->putUniform(first, last, copyOfValues(&count, 1)), name, first, last);
}

void KelMemoryConsumer::keepRagged(const char* name, const char* counts, Id first, Id last, const Id* ids, Id count)
{
    KelMemoryArray* to = array(name);
    report(to && to->putRagged(first, last, copyOfValues(ids, count), *array(counts)), name, first, last);
}

KelMemoryValues KelMemoryConsumer::inPrecision(KelMemoryValues values) const
{
    if (getDataPrecision() == KEL_PRECISION_SINGLE)
        if (const auto* doubles = std::get_if<std::vector<double>>(&values))
            return std::vector<float>(doubles->begin(), doubles->end());
    if (getDataPrecision() == KEL_PRECISION_DOUBLE)
        if (const auto* floats = std::get_if<std::vector<float>>(&values))
            return std::vector<double>(floats->begin(), floats->end());
    return values;
}

void KelMemoryConsumer::keepCoordinates(Id first, Id last, KelMemoryValues xyz)
{
    unsigned64 dimension = 0;
    getMeshSize(KEL_MESH_DIMENSION, dimension);
    KelMemoryArray* to = array("coordinates");
    report(to && to->put(first, last, inPrecision(std::move(xyz)), dimension), "coordinates", first, last);
}

void KelMemoryConsumer::setLocalElemIdsInZone(int zoneId, const Id* ids, Id count)
{
    KelMemoryModel* mesh = model(KEL_CASE);
    if (report(mesh && ids, "local ids"))
        mesh->localIds[zoneId].assign(ids, ids + count);
}

void KelMemoryConsumer::startWritingInterfaceDataForFaces(const std::vector<int>& zones0,
                                                          const std::vector<int>& zones1)
{
    if (KelMemoryModel* mesh = model(KEL_CASE); report(mesh, "interface data")) {
        mesh->interfaceZones[0] = zones0;
        mesh->interfaceZones[1] = zones1;
    }
}

void KelMemoryConsumer::keepInterface(int zone, KelMemoryInterface data)
{
    if (KelMemoryModel* mesh = model(KEL_CASE); report(mesh, "interface data"))
        mesh->interfaces[zone] = std::move(data);
}

void KelMemoryConsumer::startWritingTypesForCells(const std::vector<int>& zoneIds,
                                                  const std::vector<KelCellType>& types)
{
    for (std::size_t n = 0; n < std::min(zoneIds.size(), types.size()); ++n) {
        Id first = 0, last = 0;
        getZoneSizeInfo(zoneIds[n], KEL_ZONE_FIRST_ID, first);
        getZoneSizeInfo(zoneIds[n], KEL_ZONE_LAST_ID, last);
        if (types[n] != -1 && first != 0)
            keepUniform("cell types", first, last, static_cast<short>(types[n]));
    }
}

void KelMemoryConsumer::setTypesForCellsInRange(Id first, Id last, const KelCellType* types, Id count)
{
    keep("cell types", first, last, types ? std::vector<int>(types, types + count) : std::vector<int>());
}

void KelMemoryConsumer::startWritingPartitionIdsForCells(const std::vector<int>&, int partitionCount)
{
    if (KelMemoryModel* mesh = model(KEL_CASE); report(mesh, "partitions of cells"))
        mesh->partitionCount = partitionCount;
}

void KelMemoryConsumer::startWritingCaseSectionCategories(KelZoneCategory category, const std::vector<Text>& names)
{
    KelMemoryModel* mesh = model(KEL_CASE);
    _section = nullptr;
    _sectionCategory = category;
    if (report(mesh && category >= 0 && category <= KEL_CELL_ZONE, "case sections"))
        for (const std::string& name : names)
            mesh->sections[category][name];
}

void KelMemoryConsumer::startWritingCaseSectionDataForCategory(const Text& name, const std::vector<int>& zoneIds,
                                                               KelPlainDataType type, Id size)
{
    KelMemoryModel* mesh = model(KEL_CASE);
    const bool isKnown =
        _sectionCategory >= 0 && _sectionCategory <= KEL_CELL_ZONE && type >= 0 && type <= KEL_PLAIN_DOUBLE && size > 0;
    _section = nullptr;
    if (!report(mesh && isKnown, "a case section"))
        return;
    _section = &mesh->sections[_sectionCategory][name];
    if (_section->type != type || _section->size != size)
        *_section = {{}, type, size, {}};
    _section->zoneIds.insert(_section->zoneIds.end(), zoneIds.begin(), zoneIds.end());
}

void KelMemoryConsumer::setCaseSectionDataForElementsInRange(Id first, Id last, const void* values, Id count)
{
    bool done = false;
    if (_section && values)
        visitEmptyValues(_section->type, [&](auto list) {
            const auto* typed = static_cast<const typename decltype(list)::value_type*>(values);
            done = _section->values.put(first, last, copyOfValues(typed, count), _section->size);
        });
    report(done, "case section data", first, last);
}

} // namespace meridyn
