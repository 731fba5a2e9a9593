#include "ConsumerTree.h"
#include "KelLocationModel.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelSolutionModel.h"
#include "MeshCompletion.h"
#include "TreeNames.h"
#include "TreeParts.h"

#include <algorithm>

namespace meridyn {

namespace {

bool isKnownClass(KelDataClass dataClass)
{
    return dataClass == KEL_CASE || dataClass == KEL_DATA;
}

/// Shows the ids in an array of a case, for completeMesh.
void showIds(const KelTreeNode& tree, KelArray array, unsigned64 first, unsigned64 last, const VisitIds& visit)
{
    for (const KelElementValues::Piece& piece : tree[nameOf(array)].values.pieces(first, last))
        if (piece.values.type == KEL_PLAIN_UNSIGNED64)
            visit(static_cast<const unsigned64*>(piece.values.data), piece.values.count);
}

} // namespace

KelTreeConsumer::KelTreeConsumer(std::shared_ptr<KelTreeStore> store)
    : _data(std::make_unique<Data>(*this, std::move(store)))
{}

KelTreeConsumer::~KelTreeConsumer() = default;

bool KelTreeConsumer::Data::fail(const std::string& text) const
{
    writer.getMessageRegistrar()->registerMessage(KelError(writer.getFile(current) + ": " + text, "KelTreeConsumer"));
    return false;
}

// ---- open and close

bool KelTreeConsumer::openData(KelDataClass dataClass, const std::string& fileName)
{
    if (!isKnownClass(dataClass))
        return _data->fail("a file of an unknown data class");
    if (_data->isOpen(dataClass)) // and begins anew
        _data->forgetOpenParts();
    _data->current = dataClass;
    KelTreeFile old;
    try {
        old = isAppendOn() ? _data->store->load(dataClass, fileName) : nullptr;
    } catch (const std::exception& error) {
        return _data->fail(std::string("cannot be added to: ") + error.what());
    }
    _data->files[dataClass] = old ? std::make_shared<KelTree>(*old) : std::make_shared<KelTree>();
    if (dataClass == KEL_DATA)
        _data->dropped.clear();
    return true;
}

bool KelTreeConsumer::closeData(KelDataClass dataClass)
{
    if (!_data->isOpen(dataClass))
        return _data->fail("the end of a file that was not started");
    _data->forgetOpenParts();
    _data->completeMeshes(dataClass);
    const KelTreeFile tree = std::move(_data->files[dataClass]);
    bool isSaved = true;
    try {
        _data->store->save(dataClass, getFile(dataClass), tree);
    } catch (const std::exception& error) {
        isSaved = _data->fail(std::string("cannot be written: ") + error.what());
    }
    _data->current = _data->files[KEL_DATA] ? KEL_DATA : KEL_CASE;
    return isSaved;
}

bool KelTreeConsumer::isWritingData()
{
    return _data->files[KEL_CASE] || _data->files[KEL_DATA];
}

int KelTreeConsumer::getLastLogIndex(KelDataClass dataClass) const
{
    return _data->isOpen(dataClass) ? static_cast<int>(_data->files[dataClass]->log.size()) - 1 : -1;
}

void KelTreeConsumer::Data::completeMeshes(KelDataClass dataClass)
{
    for (auto& [key, mesh] : files[dataClass]->meshes) {
        const KelTreeNode& tree = mesh.tree;
        KelDerivedValues derived;
        if (dataClass == KEL_CASE) {
            derived = completeMesh(mesh.mesh, [&tree](auto&&... asked) { showIds(tree, asked...); });
            cases[key].mesh = mesh.mesh;
        } else if (const auto known = cases.find(key); known != cases.end()) {
            derived = completeFrom(mesh.mesh, known->second.mesh);
        }
        mesh.derived.meshSizes.insert(derived.meshSizes.begin(), derived.meshSizes.end());
        mesh.derived.neighbours.insert(derived.neighbours.begin(), derived.neighbours.end());
    }
}

// ---- log, settings, what KelBase knows

void KelTreeConsumer::log(std::vector<std::pair<std::string, std::string>> entries, KelDataClass dataClass)
{
    if (!_data->started(dataClass))
        return;
    auto& log = _data->files[dataClass]->log;
    log.insert(log.end(), entries.begin(), entries.end());
}

void KelTreeConsumer::writeSettingStrings(const std::vector<std::pair<std::string, std::string>>& pairs,
                                          KelDataClass dataClass, const std::string& group) const
{
    if (!isWriteSettingsOn() || !_data->started(dataClass))
        return;
    KelTreeNode& settings = _data->files[dataClass]->settings[group];
    for (const auto& [key, text] : pairs)
        if (isOverrideSettingsOn() || !std::as_const(settings)[key])
            settings[key].text = text;
}

bool KelTreeConsumer::addStringAttribute(const std::string& section, const std::string& group, const std::string& name,
                                         const std::string& value) const
{
    if (!_data->started(_data->current))
        return false;
    _data->files[_data->current]->settings[section + "/" + group][name].text = value;
    return true;
}

void KelTreeConsumer::writeMeshAttributes() const
{
    if (KelTree::Mesh* const mesh = _data->mesh(KEL_CASE)) {
        mesh->mesh = describeMesh();
        mesh->derived = {};
        mesh->locations = locationModel()->state();
    }
    if (KelTree::Mesh* const mesh = _data->mesh(KEL_DATA)) {
        mesh->mesh = describeMesh();
        mesh->derived = {};
        _data->keepSolution(*mesh);
    }
}

/// Levels of the file stay, beside those that are known now; but for dropped ones that nothing was written for since.
void KelTreeConsumer::Data::keepSolution(KelTree::Mesh& mesh) const
{
    std::vector<int> levels = mesh.solution.timeLevels;
    mesh.solution = writer.describeSolution();
    for (const int level : mesh.solution.timeLevels) {
        const bool isKnown = std::find(levels.begin(), levels.end(), level) != levels.end();
        if (!isKnown && (dropped.count(level) == 0 || std::as_const(mesh.tree)[tree::levelName(level)]))
            levels.push_back(level);
    }
    mesh.solution.timeLevels = levels;
}

// With a case at hand the locations are its own, and are taken from the model in the end.
void KelTreeConsumer::cacheLocationModelState(const std::string& state) const
{
    if (KelTree::Mesh* const mesh = _data->isOpen(KEL_CASE) ? nullptr : _data->mesh(KEL_DATA))
        mesh->locations = state;
}

// ---- time levels

bool KelTreeConsumer::dropTimeLevelsFrom(int firstDropped)
{
    if (!_data->started(KEL_DATA))
        return false;
    if (_data->tracks != nullptr || _data->open[KelCollection::Set] != nullptr ||
        _data->open[KelCollection::SetData] != nullptr)
        return _data->fail("time levels cannot be dropped before the end marker of a set, set data or particle tracks");
    _data->field = nullptr;
    const auto isDropped = [firstDropped](const std::optional<int>& level) { return level && *level >= firstDropped; };
    KelTree& file = *_data->files[KEL_DATA];
    for (auto& [key, mesh] : file.meshes) {
        std::vector<int>& levels = mesh.solution.timeLevels;
        levels.erase(std::remove_if(levels.begin(), levels.end(), isDropped), levels.end());
        mesh.tree.removeChildren([&](const KelTreeNode& node) { return isDropped(tree::parseLevelName(node.name())); });
    }
    if (std::as_const(file.settings)[tree::timesGroup])
        file.settings[tree::timesGroup].removeChildren(
            [&](const KelTreeNode& node) { return isDropped(tree::parseNumber(node.name())); });
    for (const int level : getTimeLevels())
        if (isDropped(level))
            _data->dropped.insert(level);
    return true;
}

// ---- where things go

bool KelTreeConsumer::Data::isOpen(KelDataClass dataClass) const
{
    return isKnownClass(dataClass) && files[dataClass];
}

bool KelTreeConsumer::Data::started(KelDataClass dataClass) const
{
    return isOpen(dataClass) || fail("a call before startWriting");
}

KelTreeNode* KelTreeConsumer::Data::started(KelTreeNode* node) const
{
    if (node == nullptr)
        fail("values without a start marker");
    return node;
}

KelTree::Mesh* KelTreeConsumer::Data::mesh(KelDataClass dataClass) const
{
    const KelMeshKey key = KelMeshKey::ofContext(writer.getMeshId(), writer.getTarget(), writer.getPartitionId());
    return isOpen(dataClass) ? &files[dataClass]->meshes[key] : nullptr;
}

KelTreeNode* KelTreeConsumer::Data::tree(KelDataClass dataClass) const
{
    KelTreeNode* const root = started(dataClass) ? &mesh(dataClass)->tree : nullptr;
    return dataClass == KEL_DATA ? tree::openNode(root, {tree::levelName(writer.chosenLevel())}) : root;
}

KelTreeNode* KelTreeConsumer::Data::phase() const
{
    std::string name;
    const bool isActive = writer.getActivePhase(name) || fail("values of a phase, but none is active");
    return isActive ? tree::openNode(tree(KEL_DATA), {tree::phases, name}) : nullptr;
}

KelTreeNode* KelTreeConsumer::Data::nodeOf(KelArray array)
{
    if (isOfCounts(array)) {
        KelTreeNode* const lists = nodeOf(listsOf(array));
        return lists != nullptr ? &lists->counts() : nullptr;
    }
    unsigned64 size = isOfLists(array) ? 0 : 1;
    switch (array) {
    case KelArray::CaseSection:
        return started(section);
    case KelArray::PhaseVariable:
        return started(field);
    case KelArray::SetIds:
        return tree::openNode(started(open[KelCollection::Set]), {tree::ids}, size);
    case KelArray::SetVariable:
    case KelArray::SetLists:
        return started(variable[KelCollection::Set]);
    case KelArray::Coordinates:
        writer.getMeshSize(KEL_MESH_DIMENSION, size);
        [[fallthrough]];
    default:
        return tree::openNode(tree(KEL_CASE), {nameOf(array)}, size);
    }
}

void KelTreeConsumer::Data::forgetOpenParts()
{
    sections = nullptr;
    section = nullptr;
    field = nullptr;
    tracks = nullptr;
    trackGroup = nullptr;
    open.clear();
    variable.clear();
}

void KelTreeConsumer::Data::close(KelCollection collection)
{
    open[collection] = nullptr;
    variable[collection] = nullptr;
}

} // namespace meridyn
