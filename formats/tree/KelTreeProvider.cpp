#include "KelTreeProvider.h"

#include "KelLocationModel.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelSolutionModel.h"

#include <algorithm>

namespace meridyn {

const KelTree KelTreeProvider::noFile;

KelTreeProvider::KelTreeProvider() = default;
KelTreeProvider::~KelTreeProvider() = default;

// ---- open and close

bool KelTreeProvider::openData(KelDataClass dataClass, const Text& fileName)
{
    const KelTreeFile found = load(dataClass, fileName);
    if (!found)
        return false;
    _files[dataClass] = found;
    _current = dataClass;
    Text version, solver;
    getSettingString(dataClass, "Version", version, _defaultSettingsPath);
    getSettingString(dataClass, "Solver", solver, _defaultSettingsPath);
    setFileVersion(dataClass, version);
    if (!solver.empty())
        setSolverType(solver);
    const bool isOpen = select(dataClass);
    if (!isOpen)
        closeData(dataClass);
    return isOpen;
}

bool KelTreeProvider::closeData(KelDataClass dataClass)
{
    if (!isOpen(dataClass))
        return false;
    forgetOpenParts();
    _meshes[dataClass] = nullptr;
    _files[dataClass] = nullptr;
    _current = _files[KEL_DATA] ? KEL_DATA : KEL_CASE;
    return true;
}

bool KelTreeProvider::updateData(KelDataClass dataClass)
{
    if (!isOpen(dataClass) || !select(dataClass))
        return false;
    // Phases of the mesh before would keep the data from being asked for.
    return dataClass == KEL_DATA || !_files[KEL_DATA] || select(KEL_DATA);
}

bool KelTreeProvider::fail(const Text& text) const
{
    getMessageRegistrar()->registerMessage(KelError(text, "KelTreeProvider"));
    return false;
}

/// Makes the mesh that is wanted the current one and declares what it has.
bool KelTreeProvider::select(KelDataClass dataClass)
{
    forgetOpenParts();
    _meshes[dataClass] = nullptr;
    for (const auto& [key, mesh] : _files[dataClass]->meshes) {
        const bool isPartition = key.target == KEL_PARTITIONED_POST && getPartitionId() >= 0;
        if ((getMeshId() >= 1 && key.meshId != getMeshId()) || (isPartition && key.partitionId != getPartitionId()) ||
            (getTarget() != KEL_DEFAULT_TARGET && key.target != getTarget()))
            continue;
        setMeshContext(key.meshId, KelTargetCategory(key.target), key.partitionId, KEL_UPDATE_NONE);
        _meshes[dataClass] = &mesh;
        if (dataClass == KEL_DATA) {
            declareSolution(mesh.solution);
        } else {
            declareMesh(mesh.mesh);
            if (!locationModel()->reset(mesh.locations))
                locationModel()->clearTopology();
        }
        return true;
    }
    if (dataClass == KEL_DATA)
        solutionModel()->clearModel();
    return fail(getFile(dataClass) + ": has no mesh " + std::to_string(getMeshId()) + " for target " +
                std::to_string(getTarget()) + " and partition " + std::to_string(getPartitionId()));
}

// ---- where things are

std::vector<KelMeshKey> KelTreeProvider::meshKeys(KelDataClass dataClass) const
{
    std::vector<KelMeshKey> keys;
    for (const auto& entry : file(dataClass).meshes)
        keys.push_back(entry.first);
    return keys;
}

std::optional<std::vector<KelMeshKey>> KelTreeProvider::meshesWithTracks(short phaseId) const
{
    std::vector<KelMeshKey> keys;
    for (const Text& name : phase(getPhaseName(phaseId))["tracks"].names())
        if (const std::optional<KelMeshKey> key = KelMeshKey::ofGroupName(name))
            keys.push_back(*key);
    return keys;
}

bool KelTreeProvider::hasDataAtNoLevel() const
{
    return isOpen(KEL_DATA) && _meshes[KEL_DATA] && !getTimeLevels().empty() && _meshes[KEL_DATA]->tree["no level"];
}

const KelTreeNode& KelTreeProvider::tree(KelDataClass dataClass) const
{
    const Node& tree = isOpen(dataClass) && _meshes[dataClass] ? _meshes[dataClass]->tree : Node::nothing;
    const std::optional<int> level = chosenLevel();
    return dataClass != KEL_DATA ? tree : level ? tree["level " + std::to_string(*level)] : tree["no level"];
}

const KelTreeNode& KelTreeProvider::nodeOf(KelArray array) const
{
    if (isOfCounts(array))
        return nodeOf(listsOf(array)).counts();
    switch (array) {
    case KelArray::CaseSection:
        return *_section;
    case KelArray::PhaseVariable:
        return *_field;
    case KelArray::SetIds:
        return opened(KelCollection::Set)["ids"];
    case KelArray::SetVariable:
    case KelArray::SetLists:
        return *_variable;
    default:
        return tree(KEL_CASE)[meridyn::nameOf(array)];
    }
}

const KelTreeNode& KelTreeProvider::part(KelCollection in, KelPart part, const Text& name) const
{
    const Node& parts = opened(in)[nameOf(part)];
    return part == KelPart::Ids ? parts : part == KelPart::Lengths ? parts[name].counts() : parts[name];
}

// ---- what the forms of the frame come down to

unsigned64 KelTreeProvider::give(KelArray array, Id first, Id last, const KelBuffer& values) const
{
    if (array != KelArray::FaceCell1s)
        return nodeOf(array).get(first, last, values);
    const Id stored = give(KelArray::FaceCell0s, first, last, values); // has a value for each
    for (Id n = 0; n < stored; ++n)
        if (auto* const cell = static_cast<Id*>(values.data) + n;
            nodeOf(array).get(first + n, first + n, {cell, 1}) == 0)
            *cell = 0;
    return stored;
}

unsigned64 KelTreeProvider::giveInterface(int zoneId, const KelInterfaceBuffers& values) const
{
    Id stored = 0;
    for (std::size_t n = 0; n < values.size(); ++n)
        stored += tree(KEL_CASE)["interfaces"][std::to_string(zoneId)][std::to_string(n)].getList(values[n]);
    return stored;
}

std::optional<KelFormatProvider::KelArrayInfo> KelTreeProvider::describe(KelCollection in, KelPart part,
                                                                         const Text& name) const
{
    const Node& node = this->part(in, part, name);
    return node ? std::optional<KelArrayInfo>({node.type, node.size, node.length()}) : std::nullopt;
}

bool KelTreeProvider::giveWhole(KelCollection in, KelPart part, const Text& name, const KelRoom& room) const
{
    const Node& node = this->part(in, part, name);
    if (node)
        node.getList(room(node.length()));
    return bool(node);
}

// ---- mesh

bool KelTreeProvider::getInterfaceDataSizesForFacesInZone(int zone, Id& na, Id& nb, Id& n0, Id& n1) const
{
    const Node& data = tree(KEL_CASE)["interfaces"][std::to_string(zone)];
    Id* const sizes[] = {&na, &nb, &n0, &n1};
    for (int n = 0; data && n < 4; ++n)
        *sizes[n] = data[std::to_string(n)].length();
    return bool(data);
}

bool KelTreeProvider::hasUniformCaseSectionDataCountForZone(int zone, Id* count) const
{
    const bool hasZone = std::count(_section->zoneIds.begin(), _section->zoneIds.end(), zone) > 0;
    if (hasZone && count)
        *count = _section->size;
    return hasZone;
}

// ---- particles and sets

void KelTreeProvider::getVariablesOfInjection(const Text& injection, Names& names) const
{
    const Node& particles = phase()["set data"][injection];
    names = particles["variables"].names();
    const Names lists = particles["lists"].names();
    names.insert(names.end(), lists.begin(), lists.end());
}

bool KelTreeProvider::getSetNames(KelZoneCategory category, Names& names) const
{
    names.clear();
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA})
        for (const Node& set : tree(dataClass)["sets"].children)
            if (set.category == category)
                names.push_back(set.name);
    return !names.empty();
}

bool KelTreeProvider::startReadingSet(const Text& name)
{
    endReadingSet();
    for (const KelDataClass dataClass : {_current, _current == KEL_CASE ? KEL_DATA : KEL_CASE})
        if (const Node& set = tree(dataClass)["sets"][name]; set && !opened(KelCollection::Set))
            _open[KelCollection::Set] = &set;
    return bool(opened(KelCollection::Set));
}

void KelTreeProvider::getSizesAndMinMaxIdsForSet(Ids& sizes, Ids& minIds, Ids& maxIds) const
{
    listOf(opened(KelCollection::Set)["sizes"], sizes);
    listOf(opened(KelCollection::Set)["min ids"], minIds);
    listOf(opened(KelCollection::Set)["max ids"], maxIds);
}

} // namespace meridyn
