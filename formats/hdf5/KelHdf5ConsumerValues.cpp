#include "ConsumerData.h"

#include "Attributes.h"

#include <algorithm>

namespace meridyn {

using namespace hdf5;

namespace {

// Zones of the list with their ranges; an empty list stands for all zones of the category, and without zones for all
// elements of the mesh.
void addZones(FieldWriter& field, const KelBase& base, KelZoneCategory category, const std::vector<int>& zoneIds)
{
    std::vector<int> ids = zoneIds;
    if (ids.empty())
        base.getZoneIds(category, ids);
    std::vector<int> known;
    base.getZoneIds(category, known);
    std::vector<ZoneRange> zones;
    for (const int id : ids) {
        if (std::find(known.begin(), known.end(), id) == known.end())
            throw FormatError("zone " + std::to_string(id) + " is not among the " + groupNameOf(category) +
                              " zones of the mesh");
        ZoneRange zone{id, 0, 0};
        base.getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, zone.first);
        base.getZoneSizeInfo(id, KEL_ZONE_LAST_ID, zone.last);
        zones.push_back(zone);
    }
    if (!zones.empty()) {
        field.addZones(zones);
        return;
    }
    unsigned64 count = 0;
    base.getMeshSize(static_cast<KelMeshSizeType>(KEL_MESH_SIZE_1 + static_cast<int>(category)), count);
    field.addElements(1, count);
}

std::optional<Stored> storedFor(KelDataPrecisionType precision)
{
    if (precision == KEL_PRECISION_SINGLE)
        return Stored::F32;
    if (precision == KEL_PRECISION_DOUBLE)
        return Stored::F64;
    return std::nullopt;
}

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
        addZones(*section, *this, category, zoneIds);
        _data->section = section.get();
        _data->sectionType = type;
    });
}

void KelHdf5Consumer::setCaseSectionDataForElementsInRange(unsigned64 firstId, unsigned64 lastId, const void* values,
                                                           unsigned64 count)
{
    _data->attemptOnMesh(KEL_CASE, "setCaseSectionDataForElementsInRange", [&](Data::Session&) {
        if (_data->section == nullptr)
            throw FormatError("values of a case section that was not started");
        const auto write = [&](auto* typed) { _data->section->write(firstId, lastId, typed, count); };
        switch (storedTypeOfPlain(_data->sectionType)) {
        case Stored::U8:
            return write(static_cast<const unsigned char*>(values));
        case Stored::I8:
            return write(static_cast<const char*>(values));
        case Stored::I16:
            return write(static_cast<const short*>(values));
        case Stored::U32:
            return write(static_cast<const unsigned int*>(values));
        case Stored::I32:
            return write(static_cast<const int*>(values));
        case Stored::I64:
            return write(static_cast<const signed64*>(values));
        case Stored::U64:
            return write(static_cast<const unsigned64*>(values));
        case Stored::F32:
            return write(static_cast<const float*>(values));
        case Stored::F64:
            return write(static_cast<const double*>(values));
        }
    });
}

void KelHdf5Consumer::endWritingCaseSectionDataForCategory()
{
    _data->section = nullptr;
}

void KelHdf5Consumer::endWritingCaseSectionCategories()
{
    _data->section = nullptr;
}

// ---- values of variables ----

void KelHdf5Consumer::startWritingPhase(short phaseId) const
{
    if (!setActivePhase(phaseId) && _data->session(KEL_DATA) != nullptr)
        _data->attemptOnMesh(KEL_DATA, "startWritingPhase", [phaseId](Data::Session&) {
            throw FormatError("phase " + std::to_string(phaseId) + " is unknown");
        });
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
    FieldWriter& field = solution->field(selectedLevel(), phase(phaseId).link, category, link,
                                         storedFor(writer.getDataPrecision()), size);
    addZones(field, writer, category, zoneIds);
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

void KelHdf5Consumer::setValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId,
                                                                 const float* values, unsigned64 count)
{
    _data->attemptOnMesh(KEL_DATA, "setValuesOfPhaseVariableForElementsInRange", [&](Data::Session&) {
        if (_data->values == nullptr)
            throw FormatError("values of a variable that was not started");
        _data->values->write(firstId, lastId, values, count);
    });
}

void KelHdf5Consumer::setValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId,
                                                                 const double* values, unsigned64 count)
{
    _data->attemptOnMesh(KEL_DATA, "setValuesOfPhaseVariableForElementsInRange", [&](Data::Session&) {
        if (_data->values == nullptr)
            throw FormatError("values of a variable that was not started");
        _data->values->write(firstId, lastId, values, count);
    });
}

void KelHdf5Consumer::endWritingPhaseVariableInZonesOfCategory()
{
    _data->values = nullptr;
}

} // namespace meridyn
