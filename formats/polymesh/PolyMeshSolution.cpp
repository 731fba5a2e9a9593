// Phases, variables, time levels and values of KelPolyMeshProvider.
#include "FoamError.h"
#include "Guarded.h"
#include "KelAttributes.h"
#include "KelComponents.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelPolyMeshProvider.h"
#include "KelSolutionModel.h"
#include "PolyMeshCase.h"
#include "RangeFilling.h"

#include <algorithm>

namespace meridyn {

using namespace polymesh;

namespace {

constexpr const char* onlyPhase = "phase-1";

/// Makes the variable of a field: named after it or, where that name is taken, after its file.
int createVariable(KelSolutionModel& model, short phase, const FieldCatalog::Field& field)
{
    int id = 0;
    for (const std::string& name : {field.stem, field.file, field.file + " (field)"})
        if (model.createVariable(phase, name, id))
            break;
    return id;
}

void describeVariable(KelSolutionModel& model, int id, const FieldCatalog::Field& field)
{
    std::string name;
    model.getUniqueNameOfVariable(id, name);
    model.addAttributeOfVariable(id, KelAttributes::longName, field.file);
    if (!field.head.units.empty())
        model.addAttributeOfVariable(id, KelAttributes::units, field.head.units);
    if (field.head.isOriented)
        model.addAttributeOfVariable(id, KelAttributes::oriented, KelAttributes::yes);
    const unsigned count = field.head.kind.components;
    if (count > 1)
        model.addAttributeOfVariable(id, KelAttributes::componentNames,
                                     joinComponentNames(componentNames(name, count)));
    else if (field.head.kind.isSphericalTensor())
        model.addAttributeOfVariable(id, KelAttributes::componentNames, joinComponentNames({name + "-ii"}));
}

} // namespace

bool KelPolyMeshProvider::declareSolution()
{
    std::vector<FieldCatalog::Problem> problems;
    _case->catalog = FieldCatalog::read(_case->folder, problems);
    for (const auto& [place, text] : problems) {
        noteNotRead(KEL_DATA, {KEL_FAMILY_VARIABLES, place, KelNotRead::NotReadable, text});
        getMessageRegistrar()->registerMessage(
            KelWarning("not taken as a field: " + _case->folder.path() + "/" + place + ": " + text, "openData"));
    }
    _case->hasDataSettings = false;
    _case->variables.clear();
    _case->isReadingVariable = false;
    KelSolutionModel& model = *solutionModel();
    model.clearModel();
    clearVariablesOfCategories();
    for (std::size_t level = 0; level < _case->folder.times().size(); ++level)
        addTimeLevel(static_cast<int>(level));
    setTimeLevel(0);
    const bool hasPhases = !_case->catalog.phases.empty();
    for (const std::string& name : hasPhases ? _case->catalog.phases : std::vector<std::string>{onlyPhase}) {
        short phase = 0;
        model.createPhase(name, phase); // before the mixture's first variable, which would shift the ids
        model.addAttributeOfPhase(phase, KelAttributes::longName, name);
    }
    for (std::size_t n = 0; n < _case->catalog.fields.size(); ++n) {
        const FieldCatalog::Field& field = _case->catalog.fields[n];
        short phase = hasPhases ? -1 : 1;
        if (!field.phase.empty())
            model.findPhaseByUniqueName(field.phase, phase);
        const int id = createVariable(model, phase, field);
        describeVariable(model, id, field);
        _case->variables[id] = n;
        const FieldKind& kind = field.head.kind;
        if (kind.place == FieldKind::Cells)
            addVariableOfCategory(id, KEL_CELL_ZONE);
        if (kind.place == FieldKind::Faces || (kind.place == FieldKind::Cells && kind.hasBoundary))
            addVariableOfCategory(id, KEL_FACE_ZONE);
        if (kind.place == FieldKind::Points)
            addVariableOfCategory(id, KEL_NODE_ZONE);
    }
    return setActivePhase(short{1});
}

// ---- one variable -------------------------------------------------------------------------------------------------

/// Reads the field of a variable at a time level, unless it is the one that was read last. False when there is none.
bool KelPolyMeshProvider::Case::readField(std::size_t number, int level)
{
    if (level < 0 || static_cast<std::size_t>(level) >= folder.times().size())
        return false;
    if (field && fieldNumber == number && fieldLevel == level)
        return true;
    const std::size_t time = static_cast<std::size_t>(level);
    const std::string path = folder.file(folder.times()[time].name, catalog.fields[number].file);
    if (!ByteSource::exists(path))
        return false;
    const std::size_t itsMesh = folder.meshOfTime(time);
    if (folder.topologyOfMesh(itsMesh) != folder.topologyOfMesh(meshNumber))
        throw OtherMeshError(path + ": expected mesh id " + std::to_string(itsMesh + 1) +
                             ", to whose cells it belongs, found " + std::to_string(meshNumber + 1));
    field.reset(); // before the next one is in memory as well
    auto read = std::make_unique<FieldFile>(FieldFile::read(path, *mesh));
    const FieldKind& kind = catalog.fields[number].head.kind;
    if (read->kind.place != kind.place || read->kind.components != kind.components)
        throw FoamError(path + ": expected a field of " + std::to_string(kind.components) +
                        " values per entry, as at other times, found one of " + std::to_string(read->kind.components) +
                        ", or of other elements");
    field = std::move(read);
    fieldNumber = number;
    fieldLevel = level;
    return true;
}

/// Finds the patches that have values of the field that was read. @throws FoamError when their number does not fit
void KelPolyMeshProvider::Case::findPatches()
{
    patches.clear();
    for (const PolyPatch& patch : mesh->patches) {
        const FieldFile::OnPatch values = field->onPatch(patch);
        if (values.source != FieldFile::OnPatch::Unknown)
            patches.emplace_back(&patch, values);
    }
}

/// Finds the zones of a category that have values of the field that was read.
void KelPolyMeshProvider::Case::findZones(std::vector<int>& zoneIds)
{
    const FieldKind::Place place = field->kind.place;
    const auto hasPatch = [this](const PolyZone& zone) {
        return std::any_of(patches.begin(), patches.end(),
                           [&zone](const auto& patch) { return patch.first->first + 1 == zone.first; });
    };
    for (const PolyZone& zone : mesh->zones) {
        if (zone.category != category || zone.last < zone.first)
            continue;
        const bool isInterior = category == KEL_FACE_ZONE && zone.last <= mesh->interiorCount();
        if ((category == KEL_NODE_ZONE && place == FieldKind::Points) ||
            (category == KEL_CELL_ZONE && place == FieldKind::Cells) ||
            (category == KEL_FACE_ZONE &&
             (isInterior ? place == FieldKind::Faces : place != FieldKind::Points && hasPatch(zone))))
            zoneIds.push_back(zone.id);
    }
}

/// What is wrong with a field is only known when it is read, and is noted then.
bool KelPolyMeshProvider::readField(std::size_t number)
{
    try {
        if (!_case->readField(number, getTimeLevel()))
            return false;
        _case->findPatches();
        return true;
    } catch (const OtherMeshError&) {
        throw;
    } catch (const FoamError& error) {
        const CaseFolder& folder = _case->folder;
        const std::string& time = folder.times()[static_cast<std::size_t>(getTimeLevel())].name;
        const std::string& file = _case->catalog.fields[number].file;
        noteNotRead(KEL_DATA, {KEL_FAMILY_VARIABLES, time + "/" + file, KelNotRead::NotReadable,
                               error.withoutPath(folder.file(time, file))});
        throw;
    }
}

unsigned64 KelPolyMeshProvider::startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category,
                                                                             const std::string& variableName,
                                                                             std::vector<int>& zoneIds)
{
    zoneIds.clear();
    if (!_case)
        return startedVariable(category, variableName, 0);
    _case->isReadingVariable = false;
    int variableId = 0;
    if (!getVariableId(variableName, variableId)) // in the active phase
        return startedVariable(category, variableName, 0);
    const auto variable = _case->variables.find(variableId);
    if (variable == _case->variables.end())
        return startedVariable(category, variableName, 0);
    guarded(*this, "startReadingZonesOfCategoryWithPhaseVariable", [&] {
        _case->category = category;
        if (readField(variable->second))
            _case->findZones(zoneIds);
        _case->isReadingVariable = !zoneIds.empty();
        return true;
    });
    return startedVariable(category, variableName, _case->isReadingVariable ? _case->field->kind.components : 0);
}

const double* KelPolyMeshProvider::Case::innerValues(std::uint64_t element) const
{
    const FieldValues& inner = field->inner;
    return inner.values.data() + (inner.isUniform ? 0 : element * field->kind.components);
}

/// Cells are ordered by zones here, and as the case likes in its files.
const double* KelPolyMeshProvider::Case::cellValues(std::uint64_t cell) const
{
    return innerValues(mesh->caseCells.empty() ? cell : mesh->caseCells[cell]);
}

/// A patch gives the values of its faces, one by one or as its condition says; other faces have some in fields of
/// faces.
const double* KelPolyMeshProvider::Case::faceValues(std::uint64_t face) const
{
    static constexpr double zeros[9] = {};
    if (face < mesh->interiorCount())
        return field->kind.place == FieldKind::Faces ? innerValues(face) : nullptr;
    const auto next = std::upper_bound(patches.begin(), patches.end(), face,
                                       [](std::uint64_t id, const auto& patch) { return id < patch.first->first; });
    if (next == patches.begin())
        return nullptr;
    const auto& [patch, on] = *std::prev(next);
    if (face >= patch->first + patch->count)
        return nullptr;
    if (on.source == FieldFile::OnPatch::Cell)
        return cellValues(mesh->owner[face]);
    if (on.source == FieldFile::OnPatch::Zero)
        return zeros;
    return on.entry->value.values.data() +
           (on.entry->value.isUniform ? 0 : (face - patch->first) * field->kind.components);
}

const double* KelPolyMeshProvider::Case::valuesOf(std::uint64_t element) const
{
    return category == KEL_CELL_ZONE   ? cellValues(element)
           : category == KEL_NODE_ZONE ? innerValues(element)
                                       : faceValues(element);
}

unsigned64 KelPolyMeshProvider::Case::elementCount(KelZoneCategory of) const
{
    return of == KEL_CELL_ZONE ? mesh->cellCount : of == KEL_NODE_ZONE ? mesh->pointCount() : mesh->faceCount();
}

/// Of whole elements, as many as fit; none when one of them has none.
unsigned64 KelPolyMeshProvider::Case::giveValues(unsigned64 first, unsigned64 last, const KelBuffer& values) const
{
    const unsigned components = field->kind.components;
    const unsigned64 count = std::min(last - first + 1, values.capacity / components);
    if (category == KEL_FACE_ZONE)
        for (unsigned64 n = 0; n < count; ++n)
            if (faceValues(first - 1 + n) == nullptr)
                return 0;
    return fillLists(first, last, values, [&](unsigned64 id) {
        const double* const begin = valuesOf(id - 1);
        return std::pair(begin, begin + components);
    });
}

} // namespace meridyn
