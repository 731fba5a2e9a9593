#include "Checks.h"

#include <limits>

namespace meridyn::conformance {

namespace {

constexpr KelZoneCategory withValues[] = {KEL_NODE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE};

struct Field {
    std::string phase;
    std::string name;
    KelZoneCategory category;
    unsigned64 size;
    Ids zones;
    int number; ///< different for each field
};

std::vector<Field> someFields()
{
    return {{"water", "pressure", KEL_CELL_ZONE, 1, {10, 11}, 1}, {"water", "velocity", KEL_CELL_ZONE, 3, {10, 11}, 2},
            {"air", "pressure", KEL_CELL_ZONE, 1, {11}, 3},       {"water", "flux", KEL_FACE_ZONE, 1, {2, 3, 5}, 4},
            {"water", "pressure", KEL_NODE_ZONE, 1, {1}, 5},      {"air", "shift", KEL_NODE_ZONE, 3, {1}, 6},
            {"air", "traction", KEL_FACE_ZONE, 3, {3, 4}, 7}};
}

/// Values of a field in a zone, exact in single precision.
template <class T>
std::vector<T> valuesOf(const Field& field, const Zone& zone, int level)
{
    std::vector<T> values;
    for (unsigned64 id = zone.first; id <= zone.last; ++id)
        for (unsigned64 n = 0; n < field.size; ++n)
            values.push_back(static_cast<T>(level * 4096 + field.number * 512 + static_cast<int>(id)) +
                             static_cast<T>(n) / 4);
    return values;
}

/// Values in a zone: half of the zones by their id, the others in two ranges.
template <class T>
void writeValues(KelFileConsumer& writer, const Field& field, const Zone& zone, int level)
{
    const std::vector<T> values = valuesOf<T>(field, zone, level);
    if (zone.id % 2 == 0 || zone.count() == 1)
        return writer.setValuesOfPhaseVariableForElementsInZone(zone.id, values.data(), values.size());
    writer.setValuesOfPhaseVariableForElementsInRange(zone.first, zone.first, values.data(), field.size);
    writer.setValuesOfPhaseVariableForElementsInRange(zone.first + 1, zone.last, values.data() + field.size,
                                                      values.size() - field.size);
}

void registerPhases(KelFileConsumer& writer, const std::vector<Field>& fields)
{
    std::vector<std::string> names;
    for (const Field& field : fields)
        if (std::find(names.begin(), names.end(), field.phase) == names.end())
            names.push_back(field.phase);
    std::vector<short> ids;
    writer.setPhaseNames(names, ids);
}

/// Writes the fields at the current time level, phase by phase.
template <class T>
void writeFields(KelFileConsumer& writer, const Mesh& mesh, const std::vector<Field>& fields, int level)
{
    std::vector<short> phases;
    writer.getPhaseIds(phases);
    for (const short phase : phases) {
        const std::string name = static_cast<const KelBase&>(writer).getPhaseName(phase);
        writer.startWritingPhase(phase);
        for (const KelZoneCategory category : withValues) {
            std::vector<std::string> names;
            for (const Field& field : fields)
                if (field.phase == name && field.category == category)
                    names.push_back(field.name);
            std::vector<int> ids;
            if (!names.empty())
                writer.setPhaseVariablesOfCategory(category, names, ids);
        }
        for (const Field& field : fields) {
            if (field.phase != name)
                continue;
            Ids zones = field.zones;
            writer.startWritingPhaseVariableInZonesOfCategory(field.category, field.name, zones, field.size);
            for (const int zone : field.zones)
                writeValues<T>(writer, field, mesh.zone(zone), level);
            writer.endWritingPhaseVariableInZonesOfCategory();
        }
        writer.endWritingPhase();
    }
}

bool openPhase(Case& test, KelFileProvider& reader, const std::string& name)
{
    std::vector<short> ids;
    reader.getPhaseIds(ids);
    for (const short id : ids)
        if (static_cast<const KelBase&>(reader).getPhaseName(id) == name)
            return test.expect(reader.startReadingPhase(id), "phase '" + name + "' cannot be opened");
    return test.expect(false, "there is no phase '" + name + "'");
}

template <class T>
void expectValues(Case& test, const KelFileProvider& reader, const Field& field, const Zone& zone, int level)
{
    const std::string what = "'" + field.name + "' of '" + field.phase + "' at level " + std::to_string(level) +
                             ", zone " + std::to_string(zone.id);
    const std::vector<T> expected = valuesOf<T>(field, zone, level);
    std::vector<T> found(expected.size() + 1);
    found.resize(
        reader.getValuesOfPhaseVariableForElementsInZone(zoneIn(test, reader, zone), found.data(), found.size()));
    test.same(what, expected, found);
    found.assign(field.size, T());
    found.resize(reader.getValuesOfPhaseVariableForElementsInRange(zone.last, zone.last, found.data(), found.size()));
    test.same(what + ", last element",
              std::vector<T>(expected.end() - static_cast<std::ptrdiff_t>(field.size), expected.end()), found);
}

void expectFields(Case& test, KelFileProvider& reader, const Mesh& mesh, const std::vector<Field>& fields, int level)
{
    for (const Field& field : fields) {
        if (!openPhase(test, reader, field.phase))
            continue;
        const std::string what = "'" + field.name + "' of '" + field.phase + "'";
        Ids zones = {-99}, expectedZones;
        for (const int zone : field.zones)
            expectedZones.push_back(zoneIn(test, reader, mesh.zone(zone)));
        const unsigned64 size = reader.startReadingZonesOfCategoryWithPhaseVariable(field.category, field.name, zones);
        test.same("values per element of " + what, field.size, size);
        std::sort(zones.begin(), zones.end());
        std::sort(expectedZones.begin(), expectedZones.end());
        test.same("zones of " + what, expectedZones, zones);
        for (const int zone : field.zones) {
            expectValues<double>(test, reader, field, mesh.zone(zone), level);
            expectValues<float>(test, reader, field, mesh.zone(zone), level);
        }
        std::vector<std::string> names;
        reader.getPhaseVariablesOfCategory(field.category, names);
        test.expect(std::find(names.begin(), names.end(), field.name) != names.end(),
                    what + " is not among the variables of its zone category");
    }
    Ids none = {-99};
    test.same("values per element of a variable that is not there", 0,
              reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "no such variable", none));
    test.same("zones of a variable that is not there", Ids{}, none);
    double nothing = 0;
    test.same("values of a variable that is not there", 0,
              reader.getValuesOfPhaseVariableForElementsInRange(1, 1, &nothing, 1));
}

template <class T>
void fieldsRoundTrip(Case& test)
{
    const Mesh mesh = smallMesh();
    const std::vector<Field> fields = someFields();
    const auto write = [&](KelFileConsumer& writer) {
        registerPhases(writer, fields);
        writer.startWritingTimeLevel(1);
        writeFields<T>(writer, mesh, fields, 1);
        writer.endWritingTimeLevel();
    };
    roundTrip(test, mesh, nullptr, write, [&](KelFileProvider& reader) {
        reader.startReadingTimeLevel(1);
        expectFields(test, reader, mesh, fields, 1);
    });
}

void variablesById(Case& test)
{
    const Mesh mesh = smallMesh();
    const Field field = {"water", "heat", KEL_CELL_ZONE, 1, {10, 11}, 9};
    const auto write = [&](KelFileConsumer& writer) {
        registerPhases(writer, {field});
        writer.startWritingTimeLevel(1);
        writer.startWritingPhase(1);
        int id = 0;
        writer.addPhaseVariable("heat", id);
        Ids zones = field.zones;
        writer.setPhaseVariablesOfCategory(KEL_CELL_ZONE, std::vector<int>{id});
        writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, id, zones, 1);
        for (const int zone : field.zones)
            writeValues<double>(writer, field, mesh.zone(zone), 1);
        writer.endWritingPhaseVariableInZonesOfCategory();
        writer.endWritingPhase();
    };
    roundTrip(test, mesh, nullptr, write, [&](KelFileProvider& reader) {
        expectFields(test, reader, mesh, {field}, 1);
        int id = 0;
        Ids zones;
        test.expect(reader.getVariableId("water", "heat", id), "the variable has no id");
        test.same("values per element by id", 1,
                  reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, id, zones));
        expectValues<double>(test, reader, field, mesh.zone(10), 1);
    });
}

void specialValues(Case& test)
{
    using Limits = std::numeric_limits<double>;
    const Mesh mesh = smallMesh();
    const Zone& zone = mesh.zone(10);
    std::vector<double> values(zone.count(), 0.1);
    const std::vector<double> special = {-0.0,          Limits::infinity(), -Limits::infinity(),  Limits::quiet_NaN(),
                                         Limits::max(), Limits::min(),      Limits::denorm_min(), Limits::lowest(),
                                         1.0 / 3.0};
    std::copy(special.begin(), special.end(), values.begin());
    const auto write = [&](KelFileConsumer& writer) {
        registerPhases(writer, {{"water", "x", KEL_CELL_ZONE, 1, {10}, 1}});
        writer.startWritingTimeLevel(1);
        writer.startWritingPhase(1);
        Ids zones = {10};
        writer.setPhaseVariablesOfCategory(KEL_CELL_ZONE, std::vector<std::string>{"x"});
        writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, "x", zones, 1);
        writer.setValuesOfPhaseVariableForElementsInZone(10, values.data(), values.size());
        writer.endWritingPhaseVariableInZonesOfCategory();
        writer.endWritingPhase();
    };
    roundTrip(test, mesh, nullptr, write, [&](KelFileProvider& reader) {
        Ids zones;
        openPhase(test, reader, "water");
        reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "x", zones);
        std::vector<double> found(values.size());
        found.resize(
            reader.getValuesOfPhaseVariableForElementsInRange(zone.first, zone.last, found.data(), found.size()));
        test.same("values", values, found);
    });
}

/// Levels out of order; each is read in an order of its own, one of them twice.
void timeLevels(Case& test)
{
    const Mesh mesh = smallMesh();
    const std::vector<Field> fields = {{"water", "pressure", KEL_CELL_ZONE, 1, {10, 11}, 1},
                                       {"water", "flux", KEL_FACE_ZONE, 1, {2}, 2}};
    const auto write = [&](KelFileConsumer& writer) {
        registerPhases(writer, fields);
        for (const int level : {3, 0, 12}) {
            writer.startWritingTimeLevel(level);
            writeFields<double>(writer, mesh, fields, level);
            writer.endWritingTimeLevel();
        }
    };
    roundTrip(test, mesh, nullptr, write, [&](KelFileProvider& reader) {
        std::vector<int> levels = reader.getTimeLevels();
        std::sort(levels.begin(), levels.end());
        test.same("time levels", {0, 3, 12}, levels);
        for (const int level : {12, 0, 3, 12}) {
            reader.startReadingTimeLevel(level);
            test.same("current time level", static_cast<unsigned64>(level),
                      static_cast<unsigned64>(reader.getTimeLevel()));
            expectFields(test, reader, mesh, fields, level);
        }
        reader.startReadingTimeLevel(std::numeric_limits<int>::lowest());
        expectFields(test, reader, mesh, fields, 12);
        reader.startReadingTimeLevel(7); // unknown: nothing changes
        expectFields(test, reader, mesh, fields, 12);
    });
}

void phasesWithoutVariables(Case& test)
{
    const auto write = [&](KelFileConsumer& writer) {
        std::vector<short> ids;
        writer.setPhaseNames({"b", "a", "c"}, ids);
        writer.startWritingTimeLevel(1);
    };
    roundTrip(test, smallMesh(), nullptr, write, [&](KelFileProvider& reader) {
        std::vector<short> ids;
        std::vector<std::string> names;
        reader.getPhaseIds(ids);
        names.reserve(ids.size());
        for (const short id : ids)
            names.push_back(static_cast<const KelBase&>(reader).getPhaseName(id));
        test.same("phases", {"b", "a", "c"}, names);
        std::vector<int> variables = {-1};
        openPhase(test, reader, "a");
        reader.getPhaseVariablesOfCategory(KEL_CELL_ZONE, variables);
        test.same("variables of a phase without", std::vector<int>{}, variables);
    });
}

void mixture(Case& test)
{
    const Mesh mesh = smallMesh();
    const Field field = {"<Mixture>", "density", KEL_CELL_ZONE, 1, {10}, 1};
    const auto write = [&](KelFileConsumer& writer) {
        std::vector<short> ids;
        int id = 0;
        writer.setPhaseNames({"water"}, ids);
        writer.addPhaseVariable(short{-1}, "density", id);
        writer.startWritingTimeLevel(1);
        writeFields<double>(writer, mesh, {field}, 1);
    };
    roundTrip(test, mesh, nullptr, write, [&](KelFileProvider& reader) {
        std::vector<short> ids;
        reader.getPhaseIds(ids);
        test.same("phase ids", {-1, 1}, ids);
        expectFields(test, reader, mesh, {field}, 1);
    });
}

void hostileSolutionNames(Case& test)
{
    const Mesh mesh = smallMesh();
    std::vector<Field> fields;
    int number = 0;
    for (const std::string& name : hostileNames())
        fields.push_back({number % 2 == 0 ? "water" : name, name, KEL_CELL_ZONE, 1, {10}, ++number});
    const auto write = [&](KelFileConsumer& writer) {
        registerPhases(writer, fields);
        writer.startWritingTimeLevel(1);
        writeFields<double>(writer, mesh, fields, 1);
    };
    roundTrip(test, mesh, nullptr, write,
              [&](KelFileProvider& reader) { expectFields(test, reader, mesh, fields, 1); });
}

void attributes(Case& test)
{
    const Mesh mesh = smallMesh();
    const std::vector<std::string>& hostile = hostileNames();
    const auto write = [&](KelFileConsumer& writer) {
        registerPhases(writer, {{"water", "p", KEL_CELL_ZONE, 1, {10}, 1}});
        writer.startWritingTimeLevel(1);
        writeFields<double>(writer, mesh, {{"water", "p", KEL_CELL_ZONE, 1, {10}, 1}}, 1);
        writer.setAttributeValueOfPhase("water", "Long Name", "the water");
        int id = 0;
        writer.addPhaseVariable("water", "p", id);
        for (const std::string& name : hostile) {
            writer.setAttributeValueOfPhase("water", name, "value of " + name);
            writer.setAttributeValueOfPhaseVariable(id, name, name + " and its value");
        }
        writer.setAttributeValueOfPhaseVariable(id, "Long Name", "the \"pressure\"\n<p>");
        writer.setDatasetNameOfPhase(1, "phase set");
        writer.setDatasetNameOfVariable(id, "SV_P");
    };
    roundTrip(test, mesh, nullptr, write, [&](KelFileProvider& reader) {
        std::string value;
        const auto ofPhase = [&](const std::string& name) {
            value.clear();
            reader.getAttributeValueOfPhase("water", name, value);
            return value;
        };
        const auto ofVariable = [&](const std::string& name) {
            reader.getAttributeValueOfPhaseVariable("water", "p", name, value);
            return value;
        };
        test.same("long name of the phase", "the water", ofPhase("Long Name"));
        test.same("dataset name of the phase", "phase set", ofPhase("Dataset Name"));
        test.same("long name of the variable", "the \"pressure\"\n<p>", ofVariable("Long Name"));
        test.same("dataset name of the variable", "SV_P", ofVariable("Dataset Name"));
        for (const std::string& name : hostile) {
            test.same("attribute " + Case::quoted(name) + " of the phase", "value of " + name, ofPhase(name));
            test.same("attribute " + Case::quoted(name) + " of the variable", name + " and its value",
                      ofVariable(name));
        }
        std::vector<std::string> names, expected = hostile;
        expected.emplace_back("Long Name");
        std::sort(expected.begin(), expected.end());
        reader.getAttributesOfPhaseVariable("water", "p", names);
        test.same("attributes of the variable", expected, names);
    });
}

} // namespace

void addSolutionChecks(Checks& checks)
{
    const KelFormatFamilies variables = families({KEL_FAMILY_PHASES, KEL_FAMILY_VARIABLES});
    checks.push_back({"values-in-double-precision", variables, fieldsRoundTrip<double>});
    checks.push_back({"values-in-single-precision", variables, fieldsRoundTrip<float>});
    checks.push_back({"variables-by-id", variables, variablesById});
    checks.push_back({"special-values", variables, specialValues});
    checks.push_back({"time-levels", variables | formatFamily(KEL_FAMILY_TIME_LEVELS), timeLevels});
    checks.push_back({"phases-without-variables", families({KEL_FAMILY_PHASES}), phasesWithoutVariables});
    checks.push_back({"mixture", variables, mixture});
    checks.push_back({"names-of-phases-and-variables", variables, hostileSolutionNames});
    checks.push_back({"attributes", variables | formatFamily(KEL_FAMILY_ATTRIBUTES), attributes});
}

} // namespace meridyn::conformance
