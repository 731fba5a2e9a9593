#include "KelMemoryProvider.h"

#include "KelLocationModel.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelSolutionModel.h"
#include "KelValueTypes.h"

namespace meridyn {

const KelMemoryFile KelMemoryProvider::noFile;

KelMemoryProvider::KelMemoryProvider() = default;
KelMemoryProvider::~KelMemoryProvider() = default;

// ---- open and close

bool KelMemoryProvider::openData(KelDataClass dataClass, const Text& fileName)
{
    const KelMemoryStore::File found = KelMemoryStore::find(fileName, dataClass);
    if (!found)
        return fail(fileName + ": there is no such file");
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

bool KelMemoryProvider::closeData(KelDataClass dataClass)
{
    if (!isOpen(dataClass))
        return false;
    forgetOpenParts();
    _meshes[dataClass] = nullptr;
    _files[dataClass] = nullptr;
    _current = _files[KEL_DATA] ? KEL_DATA : KEL_CASE;
    return true;
}

bool KelMemoryProvider::updateData(KelDataClass dataClass)
{
    if (!isOpen(dataClass) || !select(dataClass))
        return false;
    // Phases of the mesh before would keep the data from being asked for.
    return dataClass == KEL_DATA || !_files[KEL_DATA] || select(KEL_DATA);
}

bool KelMemoryProvider::fail(const Text& text) const
{
    getMessageRegistrar()->registerMessage(KelError(text, "KelMemoryProvider"));
    return false;
}

/// Makes the mesh that is wanted the current one and declares what it has.
bool KelMemoryProvider::select(KelDataClass dataClass)
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

std::vector<KelMeshKey> KelMemoryProvider::meshKeys(KelDataClass dataClass) const
{
    std::vector<KelMeshKey> keys;
    for (const auto& entry : file(dataClass).meshes)
        keys.push_back(entry.first);
    return keys;
}

// ---- mesh

unsigned64 KelMemoryProvider::getCell1sForFacesInRange(Id first, Id last, Id* v, Id n) const
{
    const Id stored = getCell0sForFacesInRange(first, last, v, n);
    for (Id face = first; face < first + stored; ++face)
        if (array("cell 1").get(face, face, v + (face - first), 1) == 0)
            v[face - first] = 0;
    return stored;
}

unsigned64 KelMemoryProvider::getCaseSectionDataForElementsInRange(Id first, Id last, void* values, Id n) const
{
    Id stored = 0;
    visitPlainType(_section->type,
                   [&](auto* null) { stored = _section->get(first, last, static_cast<decltype(null)>(values), n); });
    return stored;
}

// ---- solution and sets

void KelMemoryProvider::getVariablesOfInjection(const Text& injection, Names& names) const
{
    names = setData()[injection]["variables"].names();
    const Names lists = setData()[injection]["lists"].names();
    names.insert(names.end(), lists.begin(), lists.end());
}

bool KelMemoryProvider::getSetNames(KelZoneCategory category, Names& names) const
{
    names.clear();
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA})
        for (const Node& set : tree(dataClass)["sets"].children)
            if (set.category == category)
                names.push_back(set.name);
    return !names.empty();
}

KelPlainDataType KelMemoryProvider::getDataTypeOfDataForSetData(const Text& name) const
{
    for (const char* kind : {"variables", "lists", "others"})
        if (const Node& found = (*_set)[kind][name])
            return found.type;
    return KelPlainDataType(-1);
}

} // namespace meridyn
