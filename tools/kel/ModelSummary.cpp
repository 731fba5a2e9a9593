#include "ModelSummary.h"

#include "KelAttributes.h"
#include "KelLocationModel.h"
#include "KelSolutionModel.h"
#include "KelSourceLedger.h"
#include "Progress.h"

#include <algorithm>
#include <cmath>

namespace meridyn::tool {

static void addZones(ModelSummary& summary, const KelProvider& reader)
{
    for (const KelZoneCategory category : allCategories) {
        std::vector<int> ids;
        reader.getZoneIds(category, ids);
        for (const int id : ids) {
            ModelSummary::Zone zone{id, category, "", kindOfZone(reader, id, category), 0, 0, 0};
            reader.getZoneStringInfo(id, KEL_ZONE_STRING_0, zone.name);
            reader.getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, zone.first);
            reader.getZoneSizeInfo(id, KEL_ZONE_LAST_ID, zone.last);
            reader.getZoneSizeInfo(id, KEL_ZONE_ELEMENT_COUNT, zone.count);
            summary.zones.push_back(zone);
        }
    }
}

/// The meshes of both data classes; data alone may have some that the case has not.
static void addMeshes(ModelSummary& summary, const Model& model)
{
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA})
        if (model.has(dataClass))
            for (const MeshName& mesh : model.meshes(dataClass))
                if (std::find(summary.meshes.begin(), summary.meshes.end(), mesh) == summary.meshes.end())
                    summary.meshes.push_back(mesh);
}

static void addMesh(ModelSummary& summary, const KelProvider& reader)
{
    summary.mesh = {reader.getMeshId(), reader.getTarget(),
                    reader.getTarget() == KEL_PARTITIONED_POST ? reader.getPartitionId() : -1};
    summary.solver = reader.getSolverType();
    reader.getMeshUnits(summary.unit);
    reader.getMeshSize(KEL_MESH_DIMENSION, summary.dimension);
    for (const KelZoneCategory category : allCategories)
        summary.sizes[static_cast<std::size_t>(category)] = meshSize(reader, category);
    addZones(summary, reader);
}

/// Looks at the values that startReadingZonesOfCategoryWithPhaseVariable has opened.
static void findRange(ModelSummary::Variable& variable, const KelProvider& reader, Progress& progress)
{
    constexpr unsigned64 chunk = 65536;
    std::vector<double> values;
    for (const int zone : variable.zones) {
        unsigned64 first = 0, last = 0;
        reader.getZoneSizeInfo(zone, KEL_ZONE_FIRST_ID, first);
        reader.getZoneSizeInfo(zone, KEL_ZONE_LAST_ID, last);
        for (; first != 0 && first <= last; first += chunk) {
            const unsigned64 end = std::min(last, first + chunk - 1);
            values.resize((end - first + 1) * variable.components);
            values.resize(reader.getValuesOfPhaseVariableForElementsInRange(first, end, values.data(), values.size()));
            for (const double value : values) {
                if (!std::isfinite(value)) {
                    ++variable.notFinite;
                    continue;
                }
                variable.smallest = variable.hasRange ? std::min(variable.smallest, value) : value;
                variable.largest = variable.hasRange ? std::max(variable.largest, value) : value;
                variable.hasRange = true;
            }
            if (values.empty())
                break;
            if (!progress("values of '" + variable.name + "'", end, last))
                throw Interrupted("interrupted");
        }
    }
}

/// Finds the values of a variable of a phase at the chosen time level, or at the last one that has some.
static void openValues(ModelSummary::Variable& variable, const ModelSummary& summary, KelProvider& reader, short phase)
{
    const auto opens = [&](std::optional<int> level) {
        variable.components =
            reader.startReadingZonesOfCategoryWithPhaseVariable(variable.category, variable.id, variable.zones);
        if (variable.components > 0)
            variable.level = level;
        return variable.components > 0;
    };
    if (opens(summary.level))
        return;
    for (std::size_t n = summary.timeLevels.size(); n-- > 0;) {
        const int level = summary.timeLevels[n].level;
        if (level == summary.level)
            continue;
        reader.startReadingTimeLevel(level);
        if (reader.getTimeLevel() == level && reader.startReadingPhase(phase) && opens(level))
            return;
    }
}

/// The attributes as the model has them, without what mapping files in the environment make of them.
static ModelSummary::Attributes attributesOf(const KelSolutionModel& solution, int variableId)
{
    ModelSummary::Attributes attributes;
    std::vector<std::string> names;
    solution.getAttributeNamesOfVariable(variableId, names);
    for (const std::string& name : names) {
        std::string value;
        solution.getAttributeOfVariable(variableId, name, value);
        attributes.emplace_back(name, value);
    }
    return attributes;
}

static std::string valueOf(const ModelSummary::Attributes& attributes, const std::string& name)
{
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [&](const auto& attribute) { return attribute.first == name; });
    return found != attributes.end() ? found->second : "";
}

static ModelSummary::Attributes attributesOfPhase(const KelProvider& reader, short phase)
{
    ModelSummary::Attributes attributes;
    std::vector<std::string> names;
    reader.getAttributesOfPhase(phase, names);
    for (const std::string& name : names) {
        std::string value;
        reader.getAttributeValueOfPhase(phase, name, value);
        attributes.emplace_back(name, value);
    }
    return attributes;
}

static void addVariables(ModelSummary& summary, KelProvider& reader, const KelSolutionModel& solution, bool withRanges,
                         Progress& progress)
{
    const auto select = [&](short phase) {
        if (summary.level)
            reader.startReadingTimeLevel(*summary.level);
        return reader.startReadingPhase(phase);
    };
    for (const ModelSummary::Phase& phase : summary.phases)
        for (const KelZoneCategory category : allCategories) {
            if (!select(phase.id))
                continue;
            std::vector<int> ids;
            std::vector<std::string> names;
            reader.getPhaseVariablesOfCategory(category, ids);
            reader.getPhaseVariablesOfCategory(category, names);
            for (std::size_t n = 0; n < ids.size() && n < names.size(); ++n) {
                ModelSummary::Variable variable;
                variable.id = ids[n];
                variable.phase = phase.name;
                variable.name = names[n];
                variable.category = category;
                variable.attributes = attributesOf(solution, ids[n]);
                variable.longName = valueOf(variable.attributes, KelAttributes::longName);
                variable.units = valueOf(variable.attributes, KelAttributes::units);
                select(phase.id);
                openValues(variable, summary, reader, phase.id);
                if (withRanges && variable.components > 0)
                    findRange(variable, reader, progress);
                summary.variables.push_back(variable);
            }
        }
}

static void addTimeLevels(ModelSummary& summary, const KelProvider& reader, std::optional<int> level)
{
    summary.timeLevels = timeLevelsOf(reader);
    if (summary.timeLevels.empty())
        return;
    reader.startReadingTimeLevel(level.value_or(KEL_LATEST_TIME_LEVEL));
    summary.level = reader.getTimeLevel();
}

static void addSettings(ModelSummary& summary, const KelProvider& reader, KelDataClass dataClass)
{
    std::vector<std::string> groups;
    reader.getSettingsGroups(dataClass, groups);
    for (const std::string& group : groups) {
        std::vector<std::string> keys;
        reader.getSettingsKeysOfGroup(dataClass, group, keys);
        summary.settings.push_back({dataClass, group, keys.size()});
    }
}

static void addLocations(ModelSummary& summary, const KelProvider& reader)
{
    const KelLocationModel& locations = *reader.getLocationModel();
    std::vector<int> parts;
    locations.getParts(parts);
    for (const int part : parts) {
        std::string name;
        std::vector<int> bodies, faces, composites;
        locations.getPartName(part, name);
        locations.getPartBodies(part, bodies);
        locations.getPartFaces(part, faces);
        locations.getPartComposites(part, composites);
        summary.parts.push_back({name, bodies.size(), faces.size(), composites.size()});
    }
}

/// What the reader left out; a reader finds some of it only while it reads, so this comes last.
static void addNotRead(ModelSummary& summary, const Model& model, const KelProvider& reader)
{
    const auto* ledger = dynamic_cast<const KelSourceLedger*>(&reader);
    summary.saysWhatIsNotRead = ledger != nullptr;
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA})
        if (ledger != nullptr && model.has(dataClass))
            for (const KelSourceItem& item : ledger->notHandedOver(dataClass))
                summary.notRead.push_back(
                    {dataClass, formatFamilyName(item.family), item.place, notReadName(item.reason), item.text});
}

/// The data of a summary: phases, time levels, variables.
static void addSolution(ModelSummary& summary, Model& model, bool withRanges, std::optional<int> level,
                        Progress& progress)
{
    KelFileProvider& reader = model.reader();
    std::vector<short> phases;
    reader.getPhaseIds(phases);
    for (const short phase : phases)
        summary.phases.push_back(
            {phase, static_cast<const KelBase&>(reader).getPhaseName(phase), attributesOfPhase(reader, phase)});
    addTimeLevels(summary, reader, level);
    addVariables(summary, reader, model.solution(), withRanges, progress);
}

ModelSummary summarise(Model& model, bool withRanges, std::optional<int> level, Progress& progress)
{
    ModelSummary summary;
    KelFileProvider& reader = model.reader();
    summary.path = model.path();
    summary.format = model.format().name;
    summary.formatDescription = model.format().description;
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA})
        if (model.has(dataClass)) {
            std::string version;
            reader.getFileVersion(dataClass, version);
            summary.files.push_back({dataClass, model.file(dataClass), version});
            addSettings(summary, reader, dataClass);
        }
    addMeshes(summary, model);
    addMesh(summary, reader);
    addLocations(summary, reader);
    if (model.has(KEL_DATA))
        addSolution(summary, model, withRanges, level, progress);
    addNotRead(summary, model, reader);
    return summary;
}

} // namespace meridyn::tool
