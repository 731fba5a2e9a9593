#include "KelLocationModel.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelSolutionModel.h"
#include "MeshCompletion.h"
#include "ProviderTree.h"
#include "TreeNames.h"

namespace meridyn {

namespace {

bool isKnownClass(KelDataClass dataClass)
{
    return dataClass == KEL_CASE || dataClass == KEL_DATA;
}

} // namespace

KelTreeProvider::KelTreeProvider(std::shared_ptr<KelTreeStore> store)
    : _data(std::make_unique<Data>(*this, std::move(store)))
{}

KelTreeProvider::~KelTreeProvider() = default;

bool KelTreeProvider::Data::fail(const std::string& text) const
{
    reader.getMessageRegistrar()->registerMessage(KelError(text, "KelTreeProvider"));
    return false;
}

// ---- open and close

bool KelTreeProvider::openData(KelDataClass dataClass, const std::string& fileName)
{
    if (!isKnownClass(dataClass))
        return _data->fail(fileName + ": a file of an unknown data class");
    KelTreeFile found;
    try {
        found = _data->store->load(dataClass, fileName);
    } catch (const std::exception& error) {
        return _data->fail(fileName + ": cannot be read: " + error.what());
    }
    if (!found)
        return _data->fail(fileName + ": there is no such file");
    _data->files[dataClass] = found;
    _data->current = dataClass;
    std::string version, solver;
    getSettingString(dataClass, "Version", version, _defaultSettingsPath);
    getSettingString(dataClass, "Solver", solver, _defaultSettingsPath);
    setFileVersion(dataClass, version);
    if (!solver.empty())
        setSolverType(solver);
    const bool isOpen = _data->select(dataClass);
    if (!isOpen)
        closeData(dataClass);
    return isOpen;
}

bool KelTreeProvider::closeData(KelDataClass dataClass)
{
    if (!_data->isOpen(dataClass))
        return false;
    _data->forgetOpenParts();
    _data->meshes[dataClass] = nullptr;
    _data->files[dataClass] = nullptr;
    _data->current = _data->files[KEL_DATA] ? KEL_DATA : KEL_CASE;
    return true;
}

bool KelTreeProvider::updateData(KelDataClass dataClass)
{
    if (!_data->isOpen(dataClass) || !_data->select(dataClass))
        return false;
    // Phases of the mesh before would keep the data from being asked for.
    return dataClass == KEL_DATA || !_data->files[KEL_DATA] || _data->select(KEL_DATA);
}

bool KelTreeProvider::isReadingData() const
{
    return _data->files[KEL_CASE] || _data->files[KEL_DATA];
}

// ---- meshes

bool KelTreeProvider::Data::fits(const KelMeshKey& key) const
{
    const bool isPartition = key.target == KEL_PARTITIONED_POST && reader.getPartitionId() >= 0;
    return (reader.getMeshId() < 1 || key.meshId == reader.getMeshId()) &&
           (!isPartition || key.partitionId == reader.getPartitionId()) &&
           (reader.getTarget() == KEL_DEFAULT_TARGET || key.target == reader.getTarget());
}

bool KelTreeProvider::Data::hasMesh() const
{
    unsigned64 dimension = 0;
    reader.getMeshSize(KEL_MESH_DIMENSION, dimension);
    bool hasZones = false;
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE})
        hasZones = hasZones || reader.getNumZones(category) > 0;
    return dimension != 0 || hasZones;
}

/// Makes the mesh that is wanted the current one and declares what it has.
bool KelTreeProvider::Data::select(KelDataClass dataClass)
{
    forgetOpenParts();
    meshes[dataClass] = nullptr;
    for (const auto& [key, mesh] : files[dataClass]->meshes) {
        if (!fits(key))
            continue;
        reader.setMeshContext(key.meshId, KelTargetCategory(key.target), key.partitionId, KEL_UPDATE_NONE);
        meshes[dataClass] = &mesh;
        declare(dataClass, mesh);
        return true;
    }
    if (dataClass == KEL_DATA)
        reader.solutionModel()->clearModel();
    return fail(reader.getFile(dataClass) + ": has no mesh " + std::to_string(reader.getMeshId()) + " for target " +
                std::to_string(reader.getTarget()) + " and partition " + std::to_string(reader.getPartitionId()));
}

/// Data say something about the mesh and its locations only where no case does.
void KelTreeProvider::Data::declare(KelDataClass dataClass, const KelTree::Mesh& mesh)
{
    if (dataClass == KEL_CASE || !hasMesh())
        reader.declareMesh(mesh.mesh);
    if (dataClass == KEL_CASE || (!files[KEL_CASE] && !mesh.locations.empty()))
        if (!reader.locationModel()->reset(mesh.locations))
            reader.locationModel()->clearTopology();
    if (dataClass == KEL_DATA)
        reader.declareSolution(mesh.solution);
}

std::vector<KelMeshKey> KelTreeProvider::meshKeys(KelDataClass dataClass) const
{
    std::vector<KelMeshKey> keys;
    for (const auto& entry : _data->file(dataClass).meshes)
        keys.push_back(entry.first);
    return keys;
}

// ---- the ledger

KelDerived KelTreeProvider::derived() const
{
    const KelTree::Mesh* const mesh = _data->meshes[_data->meshes[KEL_CASE] != nullptr ? KEL_CASE : KEL_DATA];
    return mesh != nullptr ? toLedger(mesh->derived, mesh->mesh.zones) : KelDerived();
}

bool KelTreeProvider::hasDataAtNoLevel() const
{
    const KelTree::Mesh* const mesh = _data->meshes[KEL_DATA];
    return mesh != nullptr && !getTimeLevels().empty() && bool(mesh->tree[tree::levelName(std::nullopt)]);
}

std::optional<std::string> KelTreeProvider::locationState(KelDataClass dataClass) const
{
    const bool isThere = _data->isOpen(dataClass) && _data->meshes[dataClass] != nullptr;
    return isThere ? _data->meshes[dataClass]->locations : std::string();
}

// ---- log and settings

void KelTreeProvider::getLog(KelDataClass dataClass, std::vector<std::pair<std::string, std::string>>& entries) const
{
    entries = _data->file(dataClass).log;
}

void KelTreeProvider::getSettingsGroups(KelDataClass dataClass, std::vector<std::string>& groups) const
{
    groups = _data->file(dataClass).settings.names();
}

void KelTreeProvider::getSettingsKeysOfGroup(KelDataClass dataClass, const std::string& group,
                                             std::vector<std::string>& keys) const
{
    keys = _data->file(dataClass).settings[group].names();
}

void KelTreeProvider::getSettingString(KelDataClass dataClass, const std::string& key, std::string& text,
                                       const std::string& group) const
{
    if (const KelTreeNode& setting = _data->file(dataClass).settings[group][key])
        text = setting.text;
}

// ---- where things are

bool KelTreeProvider::Data::isOpen(KelDataClass dataClass) const
{
    return isKnownClass(dataClass) && files[dataClass];
}

const KelTree& KelTreeProvider::Data::file(KelDataClass dataClass) const
{
    static const KelTree none;
    return isOpen(dataClass) ? *files[dataClass] : none;
}

void KelTreeProvider::Data::forgetOpenParts()
{
    for (const KelTreeNode** const opened : {&sections, &section, &field, &tracks, &trackGroup, &variable})
        *opened = &KelTreeNode::nothing;
    open.clear();
}

const KelTreeNode& KelTreeProvider::Data::tree(KelDataClass dataClass) const
{
    if (!isOpen(dataClass) || meshes[dataClass] == nullptr)
        return KelTreeNode::nothing;
    const KelTreeNode& root = meshes[dataClass]->tree;
    if (dataClass == KEL_CASE)
        return root;
    return root[tree::levelName(reader.chosenLevel())];
}

const KelTreeNode& KelTreeProvider::Data::phase(const std::string& name) const
{
    return tree(KEL_DATA)[tree::phases][name];
}

const KelTreeNode& KelTreeProvider::Data::phase() const
{
    std::string name;
    return reader.getActivePhase(name) ? phase(name) : KelTreeNode::nothing;
}

const KelTreeNode& KelTreeProvider::Data::tracksOf(short phaseId, int meshId, KelTargetCategory target,
                                                   int partitionId) const
{
    return phase(reader.getPhaseName(phaseId))[tree::tracks][KelMeshKey{meshId, target, partitionId}.groupName()];
}

const KelTreeNode& KelTreeProvider::Data::nodeOf(KelArray array) const
{
    if (isOfCounts(array))
        return nodeOf(listsOf(array)).counts();
    switch (array) {
    case KelArray::CaseSection:
        return *section;
    case KelArray::PhaseVariable:
        return *field;
    case KelArray::SetIds:
        return opened(KelCollection::Set)[tree::ids];
    case KelArray::SetVariable:
    case KelArray::SetLists:
        return *variable;
    default:
        return tree(KEL_CASE)[nameOf(array)];
    }
}

const KelTreeNode& KelTreeProvider::Data::opened(KelCollection in) const
{
    const auto found = open.find(in);
    return found != open.end() ? *found->second : KelTreeNode::nothing;
}

const KelTreeNode& KelTreeProvider::Data::part(KelCollection in, KelPart part, const std::string& name) const
{
    const KelTreeNode& parts = opened(in)[tree::nameOf(part)];
    if (part == KelPart::Ids)
        return parts;
    return part == KelPart::Lengths ? parts[name].counts() : parts[name];
}

} // namespace meridyn
