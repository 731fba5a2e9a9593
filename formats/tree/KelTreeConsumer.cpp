#include "KelTreeConsumer.h"

#include "KelLocationModel.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelSolutionModel.h"
#include "MeshCompletion.h"

#include <algorithm>
#include <charconv>

namespace meridyn {

namespace {

/// Works out what was not said about the meshes of a case. Those that a file had before are complete already.
void completeMeshes(KelTree& file)
{
    for (auto& [key, mesh] : file.meshes) {
        const KelTreeNode& tree = mesh.tree;
        const KelDerivedValues derived =
            completeMesh(mesh.mesh, [&tree](KelArray array, unsigned64 first, unsigned64 last, const VisitIds& visit) {
                for (const KelElementValues::Piece& piece : tree[nameOf(array)].values.pieces(first, last))
                    if (piece.values.type == KEL_PLAIN_UNSIGNED64)
                        visit(static_cast<const unsigned64*>(piece.values.data), piece.values.count);
            });
        mesh.derived.meshSizes.insert(derived.meshSizes.begin(), derived.meshSizes.end());
        mesh.derived.neighbours.insert(derived.neighbours.begin(), derived.neighbours.end());
    }
}

/// What the part of a tree is called that belongs to a time level, and the level that a name stands for.
/// @{
std::string levelName(int level)
{
    return "level " + std::to_string(level);
}

std::optional<int> levelOf(const std::string& text)
{
    int level = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), level);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(level) : std::nullopt;
}
/// @}

} // namespace

KelTreeConsumer::KelTreeConsumer() = default;
KelTreeConsumer::~KelTreeConsumer() = default;

// ---- run

bool KelTreeConsumer::openData(KelDataClass dataClass, const Text& fileName)
{
    if (dataClass != KEL_CASE && dataClass != KEL_DATA)
        return fail("a file of an unknown data class");
    if (isOpen(dataClass)) // and begins anew
        forgetOpenParts();
    const KelTreeFile old = isAppendOn() ? load(dataClass, fileName) : nullptr;
    _files[dataClass] = old ? std::make_shared<KelTree>(*old) : std::make_shared<KelTree>();
    _current = dataClass;
    if (dataClass == KEL_DATA)
        _dropped.clear();
    return true;
}

bool KelTreeConsumer::closeData(KelDataClass dataClass)
{
    if (!isOpen(dataClass))
        return fail("the end of a file that was not started");
    forgetOpenParts();
    completeMeshes(*_files[dataClass]);
    const KelTreeFile tree = std::move(_files[dataClass]);
    _current = _files[KEL_DATA] ? KEL_DATA : KEL_CASE;
    return save(dataClass, getFile(dataClass), tree);
}

KelTreeFile KelTreeConsumer::load(KelDataClass, const Text&) const
{
    return nullptr;
}

bool KelTreeConsumer::fail(const Text& what) const
{
    getMessageRegistrar()->registerMessage(KelError(getFile(_current) + ": " + what, "KelTreeConsumer"));
    return false;
}

void KelTreeConsumer::log(Pairs entries, KelDataClass dataClass)
{
    if (started(dataClass))
        _files[dataClass]->log.insert(_files[dataClass]->log.end(), entries.begin(), entries.end());
}

void KelTreeConsumer::writeSettingStrings(const Pairs& pairs, KelDataClass dataClass, const Text& group) const
{
    if (!isWriteSettingsOn() || !started(dataClass))
        return;
    Node& settings = _files[dataClass]->settings[group];
    for (const auto& [key, text] : pairs)
        if (isOverrideSettingsOn() || !std::as_const(settings)[key])
            settings[key].text = text;
}

bool KelTreeConsumer::addStringAttribute(const Text& section, const Text& group, const Text& name,
                                         const Text& value) const
{
    if (started(_current))
        _files[_current]->settings[section + "/" + group][name].text = value;
    return isOpen(_current);
}

void KelTreeConsumer::writeMeshAttributes() const
{
    if (KelTree::Mesh* to = mesh(KEL_CASE)) {
        to->mesh = describeMesh();
        to->derived = {};
        to->locations = locationModel()->state();
    }
    if (KelTree::Mesh* to = mesh(KEL_DATA)) {
        std::vector<int> levels = to->solution.timeLevels;
        to->solution = describeSolution();
        for (const int level : to->solution.timeLevels)
            if (std::count(levels.begin(), levels.end(), level) == 0 &&
                (_dropped.count(level) == 0 || std::as_const(to->tree)[levelName(level)]))
                levels.push_back(level);
        to->solution.timeLevels = levels;
    }
}

bool KelTreeConsumer::dropTimeLevelsFrom(int first)
{
    if (!started(KEL_DATA))
        return false;
    if (_tracks || _open[KelCollection::Set] || _open[KelCollection::SetData])
        return fail("time levels cannot be dropped before the end marker of a set, set data or particle tracks");
    _field = nullptr;
    const auto isDropped = [first](const std::optional<int>& level) { return level && *level >= first; };
    for (auto& [key, mesh] : _files[KEL_DATA]->meshes) {
        std::vector<int>& levels = mesh.solution.timeLevels;
        levels.erase(std::remove_if(levels.begin(), levels.end(), isDropped), levels.end());
        mesh.tree.children.remove_if([&](const Node& node) {
            return node.name.rfind("level ", 0) == 0 && isDropped(levelOf(node.name.substr(6)));
        });
    }
    for (Node& group : _files[KEL_DATA]->settings.children)
        if (group.name == "timeLevels")
            group.children.remove_if([&](const Node& node) { return isDropped(levelOf(node.name)); });
    const std::vector<int>& known = getTimeLevels();
    std::copy_if(known.begin(), known.end(), std::inserter(_dropped, _dropped.end()), isDropped);
    return true;
}

/// Of a case the model is taken when its mesh is complete; of data only what was handed over for them.
void KelTreeConsumer::cacheLocationModelState(const Text& state) const
{
    if (KelTree::Mesh* to = isOpen(KEL_CASE) ? nullptr : mesh(KEL_DATA))
        to->locations = state;
}

// ---- where things go

KelTree::Mesh* KelTreeConsumer::mesh(KelDataClass dataClass) const
{
    const KelMeshKey key = KelMeshKey::ofContext(getMeshId(), getTarget(), getPartitionId());
    return isOpen(dataClass) ? &_files[dataClass]->meshes[key] : nullptr;
}

KelTreeNode* KelTreeConsumer::tree(KelDataClass dataClass) const
{
    Node* tree = started(dataClass) ? &mesh(dataClass)->tree : nullptr;
    const std::optional<int> level = chosenLevel();
    return dataClass != KEL_DATA ? tree : open(tree, {level ? levelName(*level) : "no level"});
}

KelTreeNode* KelTreeConsumer::phase() const
{
    Text name;
    const bool isActive = getActivePhase(name) || fail("values of a phase, but none is active");
    return isActive ? open(tree(KEL_DATA), {"phases", name}) : nullptr;
}

KelTreeNode* KelTreeConsumer::nodeOf(KelArray array)
{
    if (isOfCounts(array)) {
        Node* const lists = nodeOf(listsOf(array));
        return lists ? &lists->counts() : nullptr;
    }
    Id size = isOfLists(array) ? 0 : 1;
    switch (array) {
    case KelArray::CaseSection:
        return started(_section);
    case KelArray::PhaseVariable:
        return started(_field);
    case KelArray::SetIds:
        return open(started(_open[KelCollection::Set]), {"ids"}, size);
    case KelArray::SetVariable:
    case KelArray::SetLists:
        return started(_variable[KelCollection::Set]);
    case KelArray::Coordinates:
        getMeshSize(KEL_MESH_DIMENSION, size);
        [[fallthrough]];
    default:
        return open(tree(KEL_CASE), {nameOf(array)}, size);
    }
}

KelTreeNode* KelTreeConsumer::open(Node* node, std::initializer_list<Text> path, Id size)
{
    for (const Text& name : path)
        node = node ? &(*node)[name] : nullptr;
    if (node && size > 0)
        node->size = size;
    return node;
}

/// Opens an array that goes on with what is there for other zones, unless it has another type or size.
KelTreeNode* KelTreeConsumer::openField(Node* parent, const Text& name, const Zones& zones, Type type, Id size)
{
    Node* field = open(parent, {name});
    if (field && (field->type != type || field->size != size))
        renew(field, size)->type = type;
    for (const int zone : zones)
        if (field && std::count(field->zoneIds.begin(), field->zoneIds.end(), zone) == 0)
            field->zoneIds.push_back(zone);
    return field;
}

// ---- arrays

void KelTreeConsumer::keep(KelArray array, Id first, Id last, const KelValues& values)
{
    const bool isReal = array == KelArray::Coordinates || array == KelArray::PhaseVariable;
    const KelDataPrecisionType precision = isReal ? getDataPrecision() : KelDataPrecisionType(-1);
    KelAnyValues copy = copyOf(values, precision == KEL_PRECISION_SINGLE   ? KEL_PLAIN_FLOAT
                                       : precision == KEL_PRECISION_DOUBLE ? KEL_PLAIN_DOUBLE
                                                                           : values.type);
    Node* const to = nodeOf(array);
    if (to && !(to->size > 0 ? to->values.put(first, last, std::move(copy), to->size)
                             : to->values.putRagged(first, last, std::move(copy), std::as_const(*to).counts().values)))
        fail(to->name + ", " + std::to_string(first) + " to " + std::to_string(last) +
             ": no range of ids, or not the right number of values");
}

void KelTreeConsumer::keepUniform(KelArray array, Id first, Id last, signed64 value)
{
    Node* const to = nodeOf(array);
    if (to && (value < 0 || !to->values.putUniform(first, last, copyOf({&value, 1}))))
        fail(to->name + ", " + std::to_string(first) + " to " + std::to_string(last) +
             ": no range of ids, or negative");
}

bool KelTreeConsumer::keepList(Node* to, const KelValues& values)
{
    if (!renew(to))
        return false;
    to->type = values.type;
    return to->values.append(copyOf(values));
}

void KelTreeConsumer::startWritingInterfaceDataForFaces(const Zones& zones0, const Zones& zones1)
{
    keepList(open(tree(KEL_CASE), {"interface zones 0"}), {zones0.data(), zones0.size()});
    keepList(open(tree(KEL_CASE), {"interface zones 1"}), {zones1.data(), zones1.size()});
}

void KelTreeConsumer::keepInterface(int zoneId, const KelInterfaceValues& values)
{
    for (std::size_t n = 0; n < values.size(); ++n)
        keepList(open(tree(KEL_CASE), {"interfaces", std::to_string(zoneId), std::to_string(n)}), values[n]);
}

void KelTreeConsumer::startWritingCaseSectionCategories(KelZoneCategory category, const std::vector<Text>& names)
{
    _section = nullptr;
    _sections = open(tree(KEL_CASE), {"sections", std::to_string(category)});
    for (const Text& name : names)
        open(_sections, {name});
}

void KelTreeConsumer::startWritingCaseSectionDataForCategory(const Text& name, const Zones& zones, Type type, Id size)
{
    const bool isKnown =
        (type >= 0 && type <= KEL_PLAIN_DOUBLE && size > 0) || fail("section '" + name + "': no values");
    _section = isKnown ? openField(started(_sections), name, zones, type, size) : nullptr;
}

void KelTreeConsumer::startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, const Text& name,
                                                                 Zones& zones, Id size)
{
    short phaseId = 0;
    int id = 0;
    const bool isKnown =
        getActivePhase(phaseId) && solutionModel()->findVariableByUniqueName(phaseId, name, id) && size > 0;
    _field = nullptr;
    if (!isKnown && !fail("variable '" + name + "': not declared, or no values"))
        return;
    addVariableOfCategory(id, category);
    _field = openField(open(phase(), {"fields", std::to_string(category)}), name, zones, Type(-1), size);
}

// ---- sets, set data, particle tracks

void KelTreeConsumer::startWritingSet(const Text& name, KelZoneCategory category)
{
    endWritingSet();
    if (Node* set = _open[KelCollection::Set] = renew(open(tree(_current), {"sets", name})))
        set->category = category;
}

void KelTreeConsumer::setSizesAndMinMaxIdsForSet(const Ids& sizes, const Ids& minIds, const Ids& maxIds)
{
    Node* const set = started(_open[KelCollection::Set]);
    keepList(open(set, {"sizes"}), {sizes.data(), sizes.size()});
    keepList(open(set, {"min ids"}), {minIds.data(), minIds.size()});
    keepList(open(set, {"max ids"}), {maxIds.data(), maxIds.size()});
}

void KelTreeConsumer::startWritingSetData(const Text& name, Id memberCount)
{
    endWritingSetData();
    _open[KelCollection::SetData] = renew(open(phase(), {"set data", name}), memberCount);
}

bool KelTreeConsumer::startWritingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId)
{
    endWritingParticleTracks();
    const Text name = getPhaseName(phaseId);
    if (name.empty())
        return fail("particle tracks of an unknown phase");
    _tracks = open(tree(KEL_DATA), {"phases", name, "tracks", KelMeshKey{meshId, target, partitionId}.groupName()});
    return _tracks != nullptr;
}

void KelTreeConsumer::startVariable(KelCollection in, const Text& name, Id valuesPerMember, Type type)
{
    if ((_variable[in] = open(started(_open[in]), {"variables", name}, valuesPerMember)))
        _variable[in]->type = type;
}

void KelTreeConsumer::startLists(KelCollection in, const Text& name, Type type, Type lengthType)
{
    Node* const lists = _variable[in] = open(started(_open[in]), {"lists", name});
    if (lists && type != -1)
        lists->type = type;
    if (lists && lengthType != -1)
        lists->counts().type = lengthType;
}

bool KelTreeConsumer::append(KelPart part, const KelValues& values)
{
    Node* const to = part == KelPart::Ids ? open(started(_open[KelCollection::SetData]), {"ids"})
                                          : started(_variable[KelCollection::SetData]);
    return to && to->values.append(copyOf(values));
}

bool KelTreeConsumer::appendLists(const KelValues& values, const KelValues& lengths)
{
    double total = 0;
    lengths.visit([&](auto* each) {
        for (Id n = 0; each && n < lengths.count; ++n)
            total += static_cast<double>(each[n]);
    });
    const bool fits =
        total == static_cast<double>(values.count) || fail("lengths that do not go with the number of values");
    Node* const to = fits ? started(_variable[KelCollection::SetData]) : nullptr;
    return to && to->values.append(copyOf(values)) && to->counts().values.append(copyOf(lengths));
}

void KelTreeConsumer::keepBlock(KelCollection in, const Text& name, const KelValues& values)
{
    Node* const to = started(_open[in]);
    const bool isOfChunk = in == KelCollection::TrackChunk;
    if (to && isOfChunk && (name.empty() || (to->size > 0 ? values.count % to->size : values.count) != 0))
        fail("variable '" + name + "' of particle tracks: no name, or not the same for each point");
    else
        keepList(open(to, {isOfChunk ? "variables" : "others", name}), values);
}

} // namespace meridyn
