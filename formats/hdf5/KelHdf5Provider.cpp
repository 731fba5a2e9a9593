#include "KelHdf5Provider.h"

#include "Attributes.h"
#include "KelLocationModel.h"
#include "ProviderData.h"
#include "ZoneStore.h"

#include <algorithm>
#include <charconv>
#include <list>

namespace meridyn {

using namespace hdf5;

namespace {

void setInfos(KelBase& base, const ZoneRecord& zone)
{
    switch (zone.category) {
    case KEL_NODE_ZONE:
        base.setNodeZoneInfo(zone.id, KEL_NODE_ZONE_INFO_0, zone.infos[0]);
        break;
    case KEL_EDGE_ZONE:
        for (int i = 0; i < 2; ++i)
            base.setEdgeZoneInfo(zone.id, static_cast<KelEdgeZoneInfoType>(i), zone.infos[i]);
        break;
    case KEL_FACE_ZONE:
        for (int i = 0; i < 6; ++i)
            base.setFaceZoneInfo(zone.id, static_cast<KelFaceZoneInfoType>(i), zone.infos[i]);
        base.setAllFaceZoneFlags(zone.id, zone.flags);
        break;
    default:
        for (int i = 0; i < 2; ++i)
            base.setCellZoneInfo(zone.id, static_cast<KelCellZoneInfoType>(i), zone.infos[i]);
    }
}

std::optional<int> levelOf(const std::string& name)
{
    int level = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), level);
    return error == std::errc() && end == name.data() + name.size() ? std::optional<int>(level) : std::nullopt;
}

} // namespace

hdf5::Handle findGroup(hid_t group, const std::vector<std::string>& path)
{
    Handle found;
    for (const std::string& name : path) {
        if (!hasLink(group, name))
            return {};
        found = openGroup(group, name);
        group = found.get();
    }
    return found;
}

KelHdf5Provider::KelHdf5Provider() : _data(std::make_unique<Data>(*this))
{}

KelHdf5Provider::~KelHdf5Provider() = default;

bool KelHdf5Provider::isReadingData() const
{
    return _data->sessions[KEL_CASE] || _data->sessions[KEL_DATA];
}

void KelHdf5Provider::setSkipReadZoneTopology(bool on)
{
    _data->skipsZones = on;
}

// ---- opening and closing ----

bool KelHdf5Provider::openData(KelDataClass dataClass, const std::string& fileName)
{
    if (dataClass != KEL_CASE && dataClass != KEL_DATA)
        return false;
    _data->forget(dataClass); // another file may have been open
    _data->sessions[dataClass] = std::make_unique<Data::Session>();
    _data->sessions[dataClass]->path = fileName;
    const bool isOpen = _data->ask(dataClass, "startReading", false, [&](Data::Session& session) {
        _data->open(session, dataClass);
        return true;
    });
    if (isOpen) {
        _data->current = dataClass;
    } else {
        _data->forget(dataClass);
        _data->sessions[dataClass].reset();
    }
    return isOpen;
}

void KelHdf5Provider::Data::open(Session& session, KelDataClass dataClass)
{
    session.file = Hdf5File::openForReading(session.path);
    const hid_t root = session.file->id();
    const std::string version = readIdentity(root, dataClass);
    const KelReadable readable = reader.isSupported(version);
    if (readable == KEL_NOT_READABLE_NEWER_MAJOR || readable == KEL_READABLE_UNKNOWN)
        throw FormatError("has the format version '" + version + "', " + formatVersion() + " or older can be read");
    reader.setFileVersion(dataClass, version);
    if (readable == KEL_READABLE_NEWER_MINOR)
        reader.getMessageRegistrar()->registerMessage(
            KelWarning(session.path + ": has the newer format version " + version + "; what is new in it is not read",
                       "startReading"));
    const auto key = findBestMesh(meshKeys(root), chosenMesh());
    if (!key)
        throw FormatError("has no mesh with the id " + std::to_string(reader.getMeshId()));
    if (dataClass == KEL_CASE)
        loadCase(session, *key);
    else
        loadSolution(session, *key);
    if (const auto solver = readSetting(root, _defaultSettingsPath, "Solver"); solver && !solver->empty())
        reader.setSolverType(*solver);
    if (wasAskedForLocations)
        loadLocations();
}

MeshKey KelHdf5Provider::Data::chosenMesh() const
{
    return {reader.getMeshId(), reader.getTarget(), reader.getPartitionId()};
}

bool KelHdf5Provider::Data::hasMesh() const
{
    unsigned64 dimension = 0;
    reader.getMeshSize(KEL_MESH_DIMENSION, dimension);
    bool hasZones = false;
    for (int category = 0; category < categoryCount; ++category)
        hasZones = hasZones || reader.getNumZones(static_cast<KelZoneCategory>(category)) > 0;
    return dimension != 0 || hasZones;
}

// Zone ids of another mesh may be of other kinds now. Only a change of context forgets them.
void KelHdf5Provider::Data::clearMesh()
{
    if (!hasMesh())
        return;
    const KelTargetCategory target = reader.getTarget();
    const KelTargetCategory other = target == KEL_SOLVER ? KEL_POST : KEL_SOLVER;
    reader.setMeshContext(-1, other, -1, KEL_UPDATE_NONE);
    reader.setMeshContext(-1, target, -1, KEL_UPDATE_NONE);
}

void KelHdf5Provider::Data::adopt(const MeshKey& key)
{
    reader.setMeshContext(key.meshId, static_cast<KelTargetCategory>(key.target), key.partitionId, KEL_UPDATE_NONE);
}

void KelHdf5Provider::Data::loadCase(Session& session, const MeshKey& key)
{
    mesh.reset();
    section.reset();
    session.mesh = openMesh(session.file->id(), key);
    auto loaded = std::make_unique<MeshReader>(*session.file, session.mesh.get());
    const auto sizes = readNumbers(session.mesh.get(), "sizes").value_or(std::vector<std::int64_t>());
    const auto units = readText(session.mesh.get(), "units").value_or("");
    clearMesh();
    adopt(key);
    reader.setMeshSize(KEL_MESH_DIMENSION, loaded->dimension());
    for (std::size_t i = 0; i < std::min<std::size_t>(sizes.size(), 4); ++i)
        reader.setMeshSize(static_cast<KelMeshSizeType>(KEL_MESH_SIZE_1 + i), static_cast<unsigned64>(sizes[i]));
    reader.setMeshUnits(units);
    if (!skipsZones)
        applyZones(session);
    mesh = std::move(loaded);
}

void KelHdf5Provider::Data::applyZones(Session& session)
{
    const std::vector<ZoneRecord> zones = readZones(*session.file, session.mesh.get());
    std::vector<int> ids[categoryCount];
    for (const ZoneRecord& zone : zones)
        ids[zone.category].push_back(zone.id);
    for (int category = 0; category < categoryCount; ++category)
        reader.setZoneIds(static_cast<KelZoneCategory>(category), ids[category]);
    std::map<int, std::list<int>> beside[2];
    std::map<int, std::list<int>> around;
    for (const ZoneRecord& zone : zones) {
        reader.setZoneSizeInfo(zone.id, KEL_ZONE_FIRST_ID, zone.first);
        reader.setZoneSizeInfo(zone.id, KEL_ZONE_LAST_ID, zone.last);
        reader.setZoneSizeInfo(zone.id, KEL_ZONE_EXTRA_SIZE, zone.extra);
        reader.setZoneStringInfo(zone.id, KEL_ZONE_STRING_0, zone.texts[0]);
        reader.setZoneStringInfo(zone.id, KEL_ZONE_STRING_1, zone.texts[1]);
        setInfos(reader, zone);
        for (int side = 0; side < 2; ++side)
            if (zone.category == KEL_FACE_ZONE && !zone.neighbours[side].empty())
                beside[side][zone.id].assign(zone.neighbours[side].begin(), zone.neighbours[side].end());
        if (zone.category == KEL_CELL_ZONE && !zone.neighbours[0].empty())
            around[zone.id].assign(zone.neighbours[0].begin(), zone.neighbours[0].end());
    }
    reader.setFaceCellZone0Ids(beside[0]);
    reader.setFaceCellZone1Ids(beside[1]);
    reader.setCellFaceZoneIds(around);
}

void KelHdf5Provider::Data::loadSolution(Session& session, const MeshKey& key)
{
    values.reset();
    session.mesh = openMesh(session.file->id(), key);
    Catalogue loaded = Catalogue::load(session.mesh.get());
    levels.clear();
    std::vector<int> numbers;
    if (const Handle group = findGroup(session.mesh.get(), {"levels"}))
        for (const std::string& name : linkNames(group.get())) {
            levels.insert(name);
            if (const auto level = levelOf(name))
                numbers.push_back(*level);
        }
    if (!hasMesh()) { // data alone: its zones are all there is
        adopt(key);
        if (!skipsZones)
            applyZones(session);
    }
    catalogue = std::move(loaded);
    for (const int level : numbers)
        reader.addTimeLevel(level);
    reader.solutionModel()->clearModel();
    reader.clearVariablesOfCategories();
    const std::map<int, int> ids = catalogue.restore(*reader.solutionModel());
    for (const Catalogue::Phase& phase : catalogue.phases())
        for (const Catalogue::Variable& entry : phase.variables)
            for (const int category : entry.categories)
                reader.addVariableOfCategory(ids.at(entry.id), static_cast<KelZoneCategory>(category));
    selectFirst(numbers);
}

void KelHdf5Provider::Data::selectFirst(const std::vector<int>& timeLevels)
{
    const std::vector<int>& known = reader.getTimeLevels();
    if (!timeLevels.empty() && std::find(known.begin(), known.end(), reader.getTimeLevel()) == known.end())
        reader.setTimeLevel(timeLevels.front());
    short phaseId = 0;
    std::vector<short> phaseIds;
    reader.getPhaseIds(phaseIds);
    if (!phaseIds.empty() && !reader.getActivePhase(phaseId))
        reader.setActivePhase(phaseIds.front());
}

bool KelHdf5Provider::updateData(KelDataClass dataClass)
{
    return _data->ask(dataClass, "updateData", false, [&](Data::Session& session) {
        const MeshKey wanted = _data->chosenMesh();
        _data->forget(dataClass);
        const auto key = findMesh(meshKeys(session.file->id()), wanted);
        if (!key)
            throw FormatError("has no mesh " + std::to_string(wanted.meshId) + " with target " +
                              std::to_string(wanted.target) + " and partition " + std::to_string(wanted.partitionId));
        if (dataClass == KEL_CASE)
            _data->loadCase(session, *key);
        else
            _data->loadSolution(session, *key);
        return true;
    });
}

void KelHdf5Provider::Data::forget(KelDataClass dataClass)
{
    set.reset();
    setVariable.reset();
    setOffsets.reset();
    if (dataClass == KEL_CASE) {
        section.reset();
        mesh.reset();
    } else if (dataClass == KEL_DATA) {
        values.reset();
        setData.reset();
        chunk = Handle();
        trackGroup = Handle();
        tracks = Handle();
        levels.clear();
        catalogue = Catalogue();
    }
}

bool KelHdf5Provider::closeData(KelDataClass dataClass)
{
    if (_data->session(dataClass) == nullptr)
        return false;
    _data->forget(dataClass);
    _data->sessions[dataClass].reset();
    _data->current = _data->sessions[KEL_CASE] ? KEL_CASE : KEL_DATA;
    return true;
}

void KelHdf5Provider::initLocationModel() const
{
    _data->wasAskedForLocations = true;
    _data->loadLocations();
}

void KelHdf5Provider::Data::loadLocations() const
{
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA}) {
        const bool isLoaded = ask(dataClass, "getLocationModel", false, [&](Session& session) {
            const auto state = readLongText(*session.file, session.file->id(), "locations");
            if (state && !reader.locationModel()->reset(*state))
                throw FormatError("/locations is no state of a location model");
            return state.has_value();
        });
        if (isLoaded)
            return;
    }
}

// ---- settings and log ----

void KelHdf5Provider::getLog(KelDataClass dataClass, std::vector<std::pair<std::string, std::string>>& entries) const
{
    entries = _data->ask(dataClass, "getLog", TextPairs(),
                         [](Data::Session& session) { return readLog(*session.file, session.file->id()); });
}

void KelHdf5Provider::getSettingsKeys(KelDataClass dataClass, std::vector<std::string>& keys) const
{
    getSettingsKeysOfGroup(dataClass, _defaultSettingsPath, keys);
}

void KelHdf5Provider::getSettingsKeysOfGroup(KelDataClass dataClass, const std::string& group,
                                             std::vector<std::string>& keys) const
{
    keys = _data->ask(dataClass, "getSettingsKeysOfGroup", std::vector<std::string>(),
                      [&group](Data::Session& session) { return settingsKeys(session.file->id(), group); });
}

void KelHdf5Provider::getSettingsGroups(KelDataClass dataClass, std::vector<std::string>& groups) const
{
    groups = _data->ask(dataClass, "getSettingsGroups", std::vector<std::string>(),
                        [](Data::Session& session) { return settingsGroups(session.file->id()); });
}

void KelHdf5Provider::getSettingString(KelDataClass dataClass, const std::string& key, std::string& text,
                                       const std::string& group) const
{
    const auto found = _data->ask(dataClass, "getSettingString", std::optional<std::string>(),
                                  [&](Data::Session& session) { return readSetting(session.file->id(), group, key); });
    if (found)
        text = *found;
}

// ---- meshes of the file ----

std::vector<int> KelHdf5Provider::availableMeshIds(KelDataClass dataClass) const
{
    return _data->ask(dataClass, "availableMeshIds", std::vector<int>(), [](Data::Session& session) {
        std::vector<int> ids;
        for (const MeshKey& key : meshKeys(session.file->id()))
            if (std::find(ids.begin(), ids.end(), key.meshId) == ids.end())
                ids.push_back(key.meshId);
        return ids;
    });
}

std::vector<KelTargetCategory> KelHdf5Provider::availableTargets(int meshId, KelDataClass dataClass) const
{
    return _data->ask(dataClass, "availableTargets", std::vector<KelTargetCategory>(), [&](Data::Session& session) {
        std::vector<KelTargetCategory> targets;
        for (const MeshKey& key : meshKeys(session.file->id())) {
            const auto target = static_cast<KelTargetCategory>(key.target);
            if (key.meshId == (meshId == -1 ? getMeshId() : meshId) &&
                std::find(targets.begin(), targets.end(), target) == targets.end())
                targets.push_back(target);
        }
        return targets;
    });
}

std::vector<int> KelHdf5Provider::availablePartitionIds(int meshId, KelDataClass dataClass) const
{
    return _data->ask(dataClass, "availablePartitionIds", std::vector<int>(), [&](Data::Session& session) {
        std::vector<int> ids;
        for (const MeshKey& key : meshKeys(session.file->id()))
            if (key.meshId == (meshId == -1 ? getMeshId() : meshId) && key.partitionId >= 0 &&
                std::find(ids.begin(), ids.end(), key.partitionId) == ids.end())
                ids.push_back(key.partitionId);
        return ids;
    });
}

} // namespace meridyn
