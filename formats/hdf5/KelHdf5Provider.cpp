#include "KelHdf5Provider.h"

#include "formats/hdf5/file/Attributes.h"
#include "formats/hdf5/model/DataWriter.h"
#include "formats/hdf5/model/ZoneStore.h"
#include "KelLocationModel.h"
#include "MeshCompletion.h"
#include "ProviderData.h"

#include <algorithm>

namespace meridyn {

using namespace hdf5;

KelHdf5Provider::KelHdf5Provider() : _data(std::make_unique<Data>(*this))
{}

KelHdf5Provider::~KelHdf5Provider() = default;

void KelHdf5Provider::setLockTimeout(double seconds)
{
    if (const std::string complaint = _data->locks.setTimeout(seconds); !complaint.empty())
        getMessageRegistrar()->registerMessage(KelWarning(complaint, "setLockTimeout"));
}

hdf5::LockSettings KelHdf5Provider::Data::lockSettings() const
{
    std::string complaint;
    const LockSettings settings = locks.settings(complaint);
    if (!complaint.empty())
        reader.getMessageRegistrar()->registerMessage(KelWarning(complaint, "startReading"));
    return settings;
}

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
    session.file = Hdf5File::openForReading(session.path, lockSettings());
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
    const auto key = findBestMesh(hdf5::meshKeys(root), chosenMesh());
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
    reader.declareZones(readZones(*session.file, session.mesh.get()));
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
            if (const auto level = parseLevelName(name))
                numbers.push_back(*level);
        }
    if (!hasMesh()) { // data alone: its zones are all there is
        adopt(key);
        if (!skipsZones)
            applyZones(session);
    }
    catalogue = std::move(loaded);
    KelSolutionDescription solution = catalogue.description();
    solution.timeLevels = numbers;
    reader.declareSolution(solution);
}

bool KelHdf5Provider::updateData(KelDataClass dataClass)
{
    return _data->ask(dataClass, "updateData", false, [&](Data::Session& session) {
        const MeshKey wanted = _data->chosenMesh();
        _data->forget(dataClass);
        const auto key = findMesh(hdf5::meshKeys(session.file->id()), wanted);
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
    setLists.reset();
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

KelDerived KelHdf5Provider::derived() const
{
    const KelDataClass dataClass = _data->sessions[KEL_CASE] ? KEL_CASE : KEL_DATA;
    return _data->ask(dataClass, "derived", KelDerived(), [this](Data::Session& session) {
        return toLedger(readDerived(*session.file, session.mesh.get()), describeMesh(*this).zones);
    });
}

std::optional<std::string> KelHdf5Provider::locationState(KelDataClass dataClass) const
{
    return _data->ask(dataClass, "locationState", std::string(), [](Data::Session& session) {
        return readLongText(*session.file, session.file->id(), "locations").value_or("");
    });
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

std::vector<KelMeshKey> KelHdf5Provider::meshKeys(KelDataClass dataClass) const
{
    return _data->ask(dataClass, "meshKeys", std::vector<KelMeshKey>(),
                      [](Data::Session& session) { return hdf5::meshKeys(session.file->id()); });
}

} // namespace meridyn
