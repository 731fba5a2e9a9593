#include "KelMemoryConsumer.h"

#include "KelLocationModel.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelSolutionModel.h"
#include "KelValueTypes.h"

namespace meridyn {

KelMemoryConsumer::KelMemoryConsumer() = default;
KelMemoryConsumer::~KelMemoryConsumer() = default;

// ---- run

bool KelMemoryConsumer::openData(KelDataClass dataClass, const Text& fileName)
{
    if (dataClass != KEL_CASE && dataClass != KEL_DATA)
        return fail("a file of an unknown data class");
    if (isOpen(dataClass)) // and begins anew
        forgetOpenParts();
    const KelMemoryStore::File old = _append ? KelMemoryStore::find(fileName, dataClass) : nullptr;
    _files[dataClass] = old ? std::make_shared<KelMemoryFile>(*old) : std::make_shared<KelMemoryFile>();
    _current = dataClass;
    return true;
}

bool KelMemoryConsumer::closeData(KelDataClass dataClass)
{
    if (!isOpen(dataClass))
        return fail("the end of a file that was not started");
    forgetOpenParts();
    KelMemoryStore::publish(getFile(dataClass), dataClass, std::move(_files[dataClass]));
    _current = _files[KEL_DATA] ? KEL_DATA : KEL_CASE;
    return true;
}

bool KelMemoryConsumer::fail(const Text& what) const
{
    getMessageRegistrar()->registerMessage(KelError(getFile(_current) + ": " + what, "KelMemoryConsumer"));
    return false;
}

void KelMemoryConsumer::writeSettingStrings(const Pairs& pairs, KelDataClass dataClass, const Text& group) const
{
    if (!_writeSettings || !started(dataClass))
        return;
    Node& settings = _files[dataClass]->settings[group];
    for (const auto& [key, text] : pairs)
        if (_overrideSettings || !std::as_const(settings)[key])
            settings[key].text = text;
}

bool KelMemoryConsumer::addStringAttribute(const Text& section, const Text& group, const Text& name,
                                           const Text& value) const
{
    if (started(_current))
        _files[_current]->settings[section + "/" + group][name].text = value;
    return isOpen(_current);
}

void KelMemoryConsumer::writeMeshAttributes() const
{
    if (KelMemoryFile::Mesh* to = mesh(KEL_CASE)) {
        to->mesh = describeMesh();
        to->locations = locationModel()->state();
    }
    if (KelMemoryFile::Mesh* to = mesh(KEL_DATA)) {
        std::vector<int> levels = to->solution.timeLevels;
        to->solution = describeSolution();
        for (const int level : to->solution.timeLevels)
            if (std::count(levels.begin(), levels.end(), level) == 0)
                levels.push_back(level);
        to->solution.timeLevels = levels;
    }
}

/// Opens an array that goes on with what is there for other zones, unless it has another type or size.
KelMemoryNode* KelMemoryConsumer::openField(Node* parent, const Text& name, const Zones& zones, Type type, Id size)
{
    Node* field = open(parent, {name});
    if (field && (field->type != type || field->size != size))
        renew(field, size)->type = type;
    for (const int zone : zones)
        if (field && std::count(field->zoneIds.begin(), field->zoneIds.end(), zone) == 0)
            field->zoneIds.push_back(zone);
    return field;
}

void KelMemoryConsumer::store(Node* to, Id first, Id last, KelMemoryValues values) const
{
    if (to &&
        !(to->size > 0 ? to->values.put(first, last, std::move(values), to->size)
                       : to->values.putRagged(first, last, std::move(values), std::as_const(*to).counts().values)))
        fail(to->name + ", " + std::to_string(first) + " to " + std::to_string(last) +
             ": no range of ids, or not the right number of values");
}

void KelMemoryConsumer::storeUniform(Node* to, Id first, Id last, long value) const
{
    if (to && (value < 0 || !to->values.putUniform(first, last, copyOf(&value, 1))))
        fail(to->name + ", " + std::to_string(first) + " to " + std::to_string(last) +
             ": no range of ids, or negative");
}

// ---- mesh and solution

void KelMemoryConsumer::startWritingTypesForCells(const Zones& zones, const std::vector<KelCellType>& types)
{
    for (std::size_t n = 0; n < std::min(zones.size(), types.size()); ++n)
        if (const auto [first, last] = rangeOfZone(zones[n]); types[n] != -1 && first != 0)
            storeUniform(array("cell types", 1), first, last, types[n]);
}

void KelMemoryConsumer::startWritingCaseSectionDataForCategory(const Text& name, const Zones& zones, Type type, Id size)
{
    const bool isKnown =
        (type >= 0 && type <= KEL_PLAIN_DOUBLE && size > 0) || fail("section '" + name + "': no values");
    _section = isKnown ? openField(started(_sections), name, zones, type, size) : nullptr;
}

void KelMemoryConsumer::setCaseSectionDataForElementsInRange(Id first, Id last, const void* values, Id n)
{
    if (Node* to = started(_section))
        visitPlainType(to->type, [&](auto* null) {
            store(to, first, last, copyOf(static_cast<const std::remove_pointer_t<decltype(null)>*>(values), n));
        });
}

void KelMemoryConsumer::startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, const Text& name,
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

bool KelMemoryConsumer::startWritingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId)
{
    endWritingParticleTracks();
    if (getPhaseName(phaseId).empty())
        return fail("particle tracks of an unknown phase");
    _tracks = open(tree(KEL_DATA),
                   {"phases", getPhaseName(phaseId), "tracks", KelMeshKey{meshId, target, partitionId}.groupName()});
    return _tracks != nullptr;
}

void KelMemoryConsumer::keepTrack(const Text& name, KelMemoryValues values, Id count) const
{
    Node* chunk = started(_chunk);
    const bool isWhole = chunk && !name.empty() && (chunk->size > 0 ? count % chunk->size : count) == 0;
    if (isWhole ||
        (chunk && fail("variable '" + name + "' of particle tracks: no name, or not the same for each point")))
        keepList(open(chunk, {name}), std::move(values));
}

} // namespace meridyn
