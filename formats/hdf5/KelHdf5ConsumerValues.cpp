#include "ConsumerData.h"

#include "formats/hdf5/file/Attributes.h"

#include <algorithm>

namespace meridyn {

using namespace hdf5;

namespace {

void checkCategory(int category)
{
    if (!isCategory(category))
        throw FormatError("zone category " + std::to_string(category) + ", 0 to 3 expected");
}

} // namespace

// ---- case sections ----

void KelHdf5Consumer::startWritingCaseSectionCategories(KelZoneCategory category, const std::vector<std::string>& names)
{
    _data->attemptOnMesh(KEL_CASE, "startWritingCaseSectionCategories", [&](Data::Session& target) {
        checkCategory(category);
        _data->sectionCategory = category;
        const Handle all = openOrCreateGroup(target.mesh.get(), "case_sections");
        const Handle group = openOrCreateGroup(all.get(), groupNameOf(category));
        for (const std::string& name : names)
            openOrCreateGroup(group.get(), encodeName(name));
    });
}

void KelHdf5Consumer::startWritingCaseSectionDataForCategory(const std::string& name, const std::vector<int>& zoneIds,
                                                             KelPlainDataType type, unsigned64 size)
{
    _data->attemptOnMesh(KEL_CASE, "startWritingCaseSectionDataForCategory", [&](Data::Session& target) {
        if (!isPlainType(type))
            throw FormatError("case section '" + name + "' has the value type " + std::to_string(type) +
                              ", 0 to 9 expected");
        const KelZoneCategory category = _data->sectionCategory;
        auto& section = _data->sections[std::to_string(category) + "/" + name];
        if (!section) {
            const Handle all = openOrCreateGroup(target.mesh.get(), "case_sections");
            const Handle group = openOrCreateGroup(all.get(), groupNameOf(category));
            const Handle own = openOrCreateGroup(group.get(), encodeName(name));
            writeNumber(own.get(), "kel_type", type);
            section = std::make_unique<FieldWriter>(*target.file, own.get(), "values", storedTypeOfPlain(type), size,
                                                    _data->compression);
        }
        _data->addZones(*section, category, zoneIds);
        _data->section = section.get();
        _data->sectionType = type;
    });
}

void KelHdf5Consumer::setCaseSectionDataForElementsInRange(unsigned64 firstId, unsigned64 lastId, const void* values,
                                                           unsigned64 count)
{
    keep(KelArray::CaseSection, firstId, lastId, {values, count, _data->sectionType});
}

void KelHdf5Consumer::endWritingCaseSectionDataForCategory()
{
    _data->section = nullptr;
}

void KelHdf5Consumer::endWritingCaseSectionCategories()
{
    _data->section = nullptr;
}

// ---- zones and types of values ----

void KelHdf5Consumer::Data::addZones(FieldWriter& field, KelZoneCategory category,
                                     const std::vector<int>& zoneIds) const
{
    const std::vector<ZoneRange> known = zoneRanges(category);
    std::vector<ZoneRange> zones;
    for (const int id : zoneIds) {
        const auto found =
            std::find_if(known.begin(), known.end(), [id](const ZoneRange& zone) { return zone.id == id; });
        if (found == known.end())
            throw FormatError("zone " + std::to_string(id) + " is not among the " + groupNameOf(category) +
                              " zones of the mesh");
        zones.push_back(*found);
    }
    if (zoneIds.empty())
        zones = known;
    if (zones.empty())
        field.addElements(1, meshSize(KEL_MESH_SIZE_1 + static_cast<int>(category)));
    else
        field.addZones(zones);
}

std::optional<Stored> KelHdf5Consumer::Data::precision() const
{
    switch (writer.getDataPrecision()) {
    case KEL_PRECISION_SINGLE:
        return Stored::F32;
    case KEL_PRECISION_DOUBLE:
        return Stored::F64;
    default:
        return std::nullopt;
    }
}

Stored KelHdf5Consumer::Data::realType(const KelValues& reals) const
{
    return precision().value_or(storedTypeOfPlain(reals.type));
}

// ---- values of variables ----

void KelHdf5Consumer::startWritingPhase(short phaseId) const
{
    if (!setActivePhase(phaseId) && _data->session(KEL_DATA) != nullptr)
        _data->refuse(KEL_DATA, "startWritingPhase", "phase " + std::to_string(phaseId) + " is unknown");
}

std::optional<int> KelHdf5Consumer::Data::selectedLevel() const
{
    const std::vector<int>& levels = writer.getTimeLevels();
    const bool isKnown = std::find(levels.begin(), levels.end(), writer.getTimeLevel()) != levels.end();
    return isKnown ? std::optional<int>(writer.getTimeLevel()) : std::nullopt;
}

hid_t KelHdf5Consumer::Data::levelGroup()
{
    if (!solution->isAt(selectedLevel()))
        values = nullptr; // its field is completed with the level before
    return solution->level(selectedLevel());
}

const Catalogue::Phase& KelHdf5Consumer::Data::phase(short phaseId)
{
    std::string name;
    if (!writer.solutionModel()->getUniqueNameOfPhase(phaseId, name))
        throw FormatError("phase " + std::to_string(phaseId) + " is unknown");
    if (solution->catalogue().find(name) == nullptr)
        mergeCatalogue();
    return *solution->catalogue().find(name);
}

const Catalogue::Variable& KelHdf5Consumer::Data::variable(short phaseId, int variableId)
{
    std::string name;
    if (!writer.solutionModel()->hasVariable(phaseId, variableId) ||
        !writer.solutionModel()->getUniqueNameOfVariable(variableId, name))
        throw FormatError("variable " + std::to_string(variableId) + " is unknown in the active phase");
    if (phase(phaseId).find(name) == nullptr)
        mergeCatalogue();
    return *phase(phaseId).find(name);
}

void KelHdf5Consumer::Data::mergeCatalogue()
{
    solution->catalogue().merge(Catalogue::of(writer.describeSolution()));
}

Handle KelHdf5Consumer::Data::phaseGroup(short phaseId)
{
    levelGroup();
    return solution->phaseGroup(selectedLevel(), phase(phaseId).link);
}

Handle KelHdf5Consumer::Data::phaseGroup()
{
    short phaseId = 0;
    if (!writer.getActivePhase(phaseId))
        throw FormatError("no phase is active");
    return phaseGroup(phaseId);
}

void KelHdf5Consumer::Data::startVariable(KelZoneCategory category, int variableId, const std::vector<int>& zoneIds,
                                          unsigned64 size)
{
    checkCategory(category);
    short phaseId = 0;
    if (!writer.getActivePhase(phaseId))
        throw FormatError("no phase is active");
    const std::string link = variable(phaseId, variableId).link;
    writer.addVariableOfCategory(variableId, category);
    levelGroup();
    FieldWriter& field = solution->field(selectedLevel(), phase(phaseId).link, category, link, precision(), size);
    addZones(field, category, zoneIds);
    values = &field;
}

void KelHdf5Consumer::startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category,
                                                                 const std::string& variableName,
                                                                 std::vector<int>& zoneIds, unsigned64 size)
{
    _data->attemptOnMesh(KEL_DATA, "startWritingPhaseVariableInZonesOfCategory", [&](Data::Session&) {
        _data->values = nullptr;
        short phaseId = 0;
        int variableId = 0;
        if (!getActivePhase(phaseId))
            throw FormatError("no phase is active for the variable '" + variableName + "'");
        if (!solutionModel()->findVariableByUniqueName(phaseId, variableName, variableId))
            throw FormatError("variable '" + variableName + "' is unknown in the active phase");
        _data->startVariable(category, variableId, zoneIds, size);
    });
}

void KelHdf5Consumer::startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, int variableId,
                                                                 std::vector<int>& zoneIds, unsigned64 size)
{
    _data->attemptOnMesh(KEL_DATA, "startWritingPhaseVariableInZonesOfCategory", [&](Data::Session&) {
        _data->values = nullptr;
        _data->startVariable(category, variableId, zoneIds, size);
    });
}

void KelHdf5Consumer::endWritingPhaseVariableInZonesOfCategory()
{
    _data->values = nullptr;
}

} // namespace meridyn
