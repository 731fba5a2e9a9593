#include "ModelSummary.h"

#include "KelLocationModel.h"
#include "Model.h"
#include "Progress.h"

#include <algorithm>
#include <cmath>
#include <limits>

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

static void addMesh(ModelSummary& summary, const KelProvider& reader)
{
    summary.meshId = reader.getMeshId();
    summary.meshIds = reader.availableMeshIds(KEL_CASE);
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

static void addVariables(ModelSummary& summary, KelProvider& reader, bool withRanges, Progress& progress)
{
    for (const auto& [phaseId, phaseName] : summary.phases) {
        if (!reader.startReadingPhase(phaseId))
            continue;
        for (const KelZoneCategory category : allCategories) {
            std::vector<int> ids;
            std::vector<std::string> names;
            reader.getPhaseVariablesOfCategory(category, ids);
            reader.getPhaseVariablesOfCategory(category, names);
            for (std::size_t n = 0; n < ids.size() && n < names.size(); ++n) {
                ModelSummary::Variable variable;
                variable.id = ids[n];
                variable.phase = phaseName;
                variable.name = names[n];
                variable.category = category;
                reader.getAttributeValueOfPhaseVariable(ids[n], "Long Name", variable.longName);
                variable.components =
                    reader.startReadingZonesOfCategoryWithPhaseVariable(category, ids[n], variable.zones);
                if (withRanges && variable.components > 0)
                    findRange(variable, reader, progress);
                summary.variables.push_back(variable);
            }
        }
    }
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

ModelSummary summarise(Model& model, bool withRanges, Progress& progress)
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
    addMesh(summary, reader);
    addLocations(summary, reader);
    if (!model.has(KEL_DATA))
        return summary;
    std::vector<short> phases;
    reader.getPhaseIds(phases);
    for (const short phase : phases)
        summary.phases.emplace_back(phase, static_cast<const KelBase&>(reader).getPhaseName(phase));
    summary.timeLevels = reader.getTimeLevels();
    reader.startReadingTimeLevel(std::numeric_limits<int>::min()); // the largest one
    addVariables(summary, reader, withRanges, progress);
    return summary;
}

} // namespace meridyn::tool
