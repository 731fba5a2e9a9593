#include "KelHdf5Consumer.h"

#include "ConsumerData.h"
#include "formats/hdf5/file/Attributes.h"
#include "formats/hdf5/model/FileIdentity.h"
#include "formats/hdf5/model/MeshReader.h"
#include "formats/hdf5/model/ZoneStore.h"

#include <unistd.h>

namespace meridyn {

using namespace hdf5;

KelHdf5Consumer::KelHdf5Consumer() : _data(std::make_unique<Data>(*this))
{}

KelHdf5Consumer::~KelHdf5Consumer() = default;

void KelHdf5Consumer::setLockTimeout(double seconds)
{
    if (const std::string complaint = _data->locks.setTimeout(seconds); !complaint.empty())
        getMessageRegistrar()->registerMessage(KelWarning(complaint, "setLockTimeout"));
}

hdf5::LockSettings KelHdf5Consumer::Data::lockSettings() const
{
    std::string complaint;
    const LockSettings settings = locks.settings(complaint);
    if (!complaint.empty())
        writer.getMessageRegistrar()->registerMessage(KelWarning(complaint, "startWriting"));
    return settings;
}

void KelHdf5Consumer::setCompression(int level)
{
    _data->compression = std::clamp(level, 0, 9);
}

bool KelHdf5Consumer::isWritingData()
{
    return _data->sessions[KEL_CASE] || _data->sessions[KEL_DATA];
}

bool KelHdf5Consumer::openData(KelDataClass dataClass, const std::string& fileName)
{
    if (dataClass != KEL_CASE && dataClass != KEL_DATA)
        return false;
    if (_data->sessions[dataClass]) {
        _data->post(_data->sessions[dataClass]->path + ": is being written already", "startWriting");
        return false;
    }
    _data->sessions[dataClass] = std::make_unique<Data::Session>();
    _data->sessions[dataClass]->path = fileName;
    _data->droppedWhileSelected.reset();
    const bool isOpen =
        _data->attempt(dataClass, "startWriting", [&](Data::Session& target) { _data->open(target, dataClass); });
    if (isOpen) {
        _data->current = dataClass;
        setFileVersion(dataClass, formatVersion());
    } else {
        _data->forget(dataClass);
        _data->sessions[dataClass].reset();
    }
    return isOpen;
}

void KelHdf5Consumer::Data::open(Session& target, KelDataClass dataClass)
{
    if (writer.isAppendOn() && ::access(target.path.c_str(), F_OK) == 0) {
        target.file = Hdf5File::openForAppending(target.path, lockSettings());
        const std::string version = readIdentity(target.file->id(), dataClass);
        if (writer.isSupported(version) != KEL_READABLE)
            throw FormatError("has the format version '" + version + "', " + formatVersion() +
                              " or older can be added to");
        target.log = readLog(*target.file, target.file->id());
    } else {
        target.file = Hdf5File::create(target.path, lockSettings());
    }
    writeIdentity(target.file->id(), dataClass);
}

// ---- the mesh that is written ----

std::vector<ZoneRange> KelHdf5Consumer::Data::zoneRanges(KelZoneCategory category) const
{
    std::vector<int> ids;
    writer.getZoneIds(category, ids);
    std::vector<ZoneRange> zones;
    for (const int id : ids) {
        const auto [first, last] = writer.rangeOfZone(id);
        zones.push_back({id, first, last});
    }
    return zones;
}

unsigned64 KelHdf5Consumer::Data::meshSize(int type) const
{
    unsigned64 size = 0;
    writer.getMeshSize(static_cast<KelMeshSizeType>(type), size);
    return size;
}

MeshDescription KelHdf5Consumer::Data::currentMesh() const
{
    return {[this](KelZoneCategory category) { return zoneRanges(category); },
            [this](KelZoneCategory category) { return meshSize(KEL_MESH_SIZE_1 + static_cast<int>(category)); },
            [this] { return meshSize(KEL_MESH_DIMENSION); }};
}

MeshDescription KelHdf5Consumer::Data::MeshState::description() const
{
    return {[this](KelZoneCategory category) {
                std::vector<ZoneRange> ranges;
                for (const ZoneRecord& zone : zones)
                    if (zone.category == category)
                        ranges.push_back({zone.id, zone.first, zone.last});
                return ranges;
            },
            [this](KelZoneCategory category) { return sizes[KEL_MESH_SIZE_1 + static_cast<int>(category)]; },
            [this] { return sizes[KEL_MESH_DIMENSION]; }};
}

KelHdf5Consumer::Data::MeshState KelHdf5Consumer::Data::takeState() const
{
    return {writer.describeMesh()};
}

void KelHdf5Consumer::Data::followMesh(Session& target, KelDataClass dataClass)
{
    const MeshKey key = MeshKey::ofContext(writer.getMeshId(), writer.getTarget(), writer.getPartitionId());
    if (target.key == key)
        return;
    if (target.key) {
        if (!target.stored)
            throw FormatError("another mesh was chosen, but writeMeshSize has not stored the zones of " +
                              target.key->groupName());
        finishMesh(target, dataClass, std::move(*target.stored));
    }
    startMesh(target, dataClass, key);
}

void KelHdf5Consumer::Data::startMesh(Session& target, KelDataClass dataClass, const MeshKey& key)
{
    const Handle meshes = openOrCreateGroup(target.file->id(), "meshes");
    if (dataClass == KEL_CASE) {
        target.mesh = replaceGroup(*target.file, meshes.get(), key.groupName());
        mesh = std::make_unique<MeshWriter>(*target.file, target.mesh.get(), currentMesh(), compression);
    } else {
        target.mesh = openOrCreateGroup(meshes.get(), key.groupName());
        solution = std::make_unique<DataWriter>(*target.file, target.mesh.get(), compression);
    }
    target.key = key;
}

void KelHdf5Consumer::Data::finishMesh(Session& target, KelDataClass dataClass, MeshState state)
{
    if (set && setClass == dataClass)
        set->finish();
    const KelDerivedValues derived = dataClass == KEL_CASE ? finishCase(state) : finishSolution(state);
    writeZones(*target.file, target.mesh.get(), state.zones, derived);
    forget(dataClass);
    target.mesh = Handle();
    target.key.reset();
    target.stored.reset();
}

void KelHdf5Consumer::writeMeshAttributes() const
{
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA})
        if (Data::Session* const session = _data->session(dataClass))
            session->stored = _data->takeState();
}

bool KelHdf5Consumer::closeData(KelDataClass dataClass)
{
    if (_data->session(dataClass) == nullptr) {
        _data->post(getFile(dataClass) + ": is not being written", "endWriting");
        return false;
    }
    bool isComplete = _data->attempt(dataClass, "endWriting", [&](Data::Session& target) {
        _data->followMesh(target, dataClass);
        _data->finishMesh(target, dataClass, _data->takeState());
        if (_data->hasLocations[dataClass])
            writeLongText(*target.file, target.file->id(), "locations", _data->locations);
        if (target.hasNewLog)
            writeLog(*target.file, target.file->id(), target.log);
    });
    _data->forget(dataClass);
    isComplete =
        isComplete && _data->attempt(dataClass, "endWriting", [](Data::Session& target) { target.file->commit(); });
    _data->sessions[dataClass].reset();
    _data->current = _data->sessions[KEL_CASE] ? KEL_CASE : KEL_DATA;
    return isComplete;
}

void KelHdf5Consumer::Data::forget(KelDataClass dataClass)
{
    if (setClass == dataClass)
        set.reset();
    if (dataClass == KEL_DATA) {
        setData.reset();
        tracks.reset();
        values = nullptr;
        solution.reset();
        return;
    }
    section = nullptr;
    sections.clear();
    mesh.reset();
    for (std::vector<int>& zones : interfaceZones)
        zones.clear();
}

KelDerivedValues KelHdf5Consumer::Data::finishCase(MeshState& state)
{
    for (const auto& [path, field] : sections)
        field->finish();
    mesh->finish(state.description());
    const MeshReader written(mesh->file(), mesh->group());
    KelDerivedValues derived = completeMesh(state, [&written](auto&&... asked) { written.showIds(asked...); });
    completed[*sessions[KEL_CASE]->key] = state;
    writeNumbers(mesh->group(), "sizes", {state.sizes + KEL_MESH_SIZE_1, state.sizes + KEL_MESH_SIZE_4 + 1});
    if (!derived.meshSizes.empty())
        writeNumbers(mesh->group(), "derived_sizes", {derived.meshSizes.begin(), derived.meshSizes.end()});
    writeText(mesh->group(), "units", state.units);
    const hid_t faces = mesh->groupOf(KEL_FACE_ZONE);
    if (!hasLink(faces, "interface"))
        return derived;
    const Handle group = openGroup(faces, "interface");
    for (int side = 0; side < 2; ++side)
        writeNumbers(group.get(), "zones" + std::to_string(side),
                     {interfaceZones[side].begin(), interfaceZones[side].end()});
    return derived;
}

/// A data file has no arrays of the mesh, but this writer may have seen them: neighbours are those of its case.
KelDerivedValues KelHdf5Consumer::Data::finishSolution(MeshState& state)
{
    if (setData)
        setData->finish();
    if (!solution->hasLevel() && selectedLevel() && selectedLevel() != droppedWhileSelected)
        solution->level(selectedLevel()); // a level without values
    mergeCatalogue();
    solution->finish();
    const auto known = completed.find(*sessions[KEL_DATA]->key);
    return known == completed.end() ? KelDerivedValues() : completeFrom(state, known->second);
}

bool KelHdf5Consumer::dropTimeLevelsFrom(int level)
{
    return _data->attempt(KEL_DATA, "dropTimeLevelsFrom",
                          [&](Data::Session& target) { _data->dropLevelsFrom(target, level); });
}

void KelHdf5Consumer::Data::dropLevelsFrom(Session& target, int level)
{
    if (setData || tracks || (set && setClass == KEL_DATA))
        throw FormatError("time levels cannot be dropped before the end marker of a set, set data or particle tracks");
    values = nullptr;
    if (solution)
        solution->abandonLevelFrom(level);
    if (const std::optional<int> selected = selectedLevel(); selected && *selected >= level)
        droppedWhileSelected = selected;
    hdf5::dropLevelsFrom(*target.file, level);
}

void KelHdf5Consumer::writeSettingStrings(const std::vector<std::pair<std::string, std::string>>& pairs,
                                          KelDataClass dataClass, const std::string& group) const
{
    if (!isWriteSettingsOn())
        return;
    _data->attempt(dataClass, "writeSettingStrings", [&](Data::Session& target) {
        writeSettings(target.file->id(), group, pairs, isOverrideSettingsOn());
    });
}

bool KelHdf5Consumer::addStringAttribute(const std::string& section, const std::string& group, const std::string& name,
                                         const std::string& value) const
{
    return _data->attempt(_data->current, "addStringAttribute", [&](Data::Session& target) {
        writeSettings(target.file->id(), section + "/" + group, {{name, value}}, true);
    });
}

void KelHdf5Consumer::log(std::vector<std::pair<std::string, std::string>> entries, KelDataClass dataClass)
{
    _data->attempt(dataClass, "log", [&](Data::Session& target) {
        target.log.insert(target.log.end(), entries.begin(), entries.end());
        target.hasNewLog = true;
    });
}

int KelHdf5Consumer::getLastLogIndex(KelDataClass dataClass) const
{
    const Data::Session* const session = _data->session(dataClass);
    return session == nullptr ? -1 : static_cast<int>(session->log.size()) - 1;
}

void KelHdf5Consumer::cacheLocationModelState(const std::string& state) const
{
    const bool isData = !_data->sessions[KEL_CASE] && _data->sessions[KEL_DATA];
    _data->locations = state;
    _data->hasLocations[KEL_CASE] = !isData;
    _data->hasLocations[KEL_DATA] = isData;
}

} // namespace meridyn
