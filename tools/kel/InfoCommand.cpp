#include "Command.h"
#include "Json.h"
#include "Model.h"
#include "ModelSummary.h"
#include "Numbers.h"
#include "Progress.h"

#include <algorithm>
#include <memory>
#include <set>

namespace meridyn::tool {

namespace {

struct Options {
    std::string file;
    std::string format;
    std::string level;
    MeshChoice mesh;
    bool stats = false;
    bool attributes = false;
    bool json = false;
};

const char* className(KelDataClass dataClass)
{
    return dataClass == KEL_CASE ? "case" : "data";
}

/// "U (3)": the name of a variable with several values per element.
std::string shownName(const ModelSummary::Variable& variable)
{
    return printable(variable.name) + (variable.components > 1 ? " (" + std::to_string(variable.components) + ")" : "");
}

// ---- text ---------------------------------------------------------------------------------------------------------

std::string shownMesh(const MeshName& mesh)
{
    return std::to_string(mesh.mesh) +
           (mesh.target != KEL_DEFAULT_TARGET ? ", target " + targetName(mesh.target) : "") +
           (mesh.partition >= 0 ? ", partition " + std::to_string(mesh.partition) : "");
}

void printFiles(Terminal& terminal, const ModelSummary& summary)
{
    terminal.print("{}\n", terminal.styled(Style::Heading, printable(summary.path)));
    terminal.print("  format       {} - {}\n", summary.format, printable(summary.formatDescription));
    for (const ModelSummary::File& file : summary.files)
        terminal.print("  {} file    {} (version {})\n", className(file.dataClass), printable(file.path),
                       printable(file.version));
    terminal.print("  solver       {}\n", printable(summary.solver));
    std::string mesh = shownMesh(summary.mesh);
    if (summary.meshes.size() > 1)
        mesh += ", one of " + counted(summary.meshes.size(), "mesh", "meshes");
    if (summary.dimension > 0) // data alone knows its zones, but no mesh
        terminal.print("  mesh         {}, {} dimensions{}\n", mesh, summary.dimension,
                       summary.unit.empty() ? "" : ", in " + printable(summary.unit));
    for (const KelZoneCategory category : allCategories)
        if (const unsigned64 size = summary.sizes[static_cast<std::size_t>(category)]; size > 0)
            terminal.print("  {:<12} {}\n", categoryName(category), grouped(size));
}

void printMeshes(Terminal& terminal, const ModelSummary& summary)
{
    terminal.heading("Meshes");
    Table table("><>", {"mesh", "target", "partition"});
    for (const MeshName& mesh : summary.meshes)
        table.add({std::to_string(mesh.mesh), targetName(mesh.target),
                   mesh.partition >= 0 ? std::to_string(mesh.partition) : "-"});
    terminal.write(table.text(terminal));
}

void printZones(Terminal& terminal, const ModelSummary& summary)
{
    terminal.heading("Zones");
    Table table("><<<>>>", {"id", "of", "name", "kind", "count", "first", "last"});
    for (const ModelSummary::Zone& zone : summary.zones)
        table.add({std::to_string(zone.id), categoryName(zone.category), printable(zone.name), printable(zone.kind),
                   grouped(zone.count), grouped(zone.first), grouped(zone.last)});
    terminal.write(table.text(terminal));
}

/// The table of the variables; units and levels have a column where there is something to tell.
void printVariables(Terminal& terminal, const ModelSummary& summary, bool stats)
{
    const auto& variables = summary.variables;
    const bool hasUnits =
        std::any_of(variables.begin(), variables.end(), [](const auto& v) { return !v.units.empty(); });
    const bool hasLevels = std::any_of(variables.begin(), variables.end(),
                                       [&](const auto& v) { return v.components > 0 && v.level != summary.level; });
    std::vector<std::string> titles = {"phase", "variable", "of", "values", "zones"};
    std::string columns = "<<<>>";
    const auto addColumn = [&](bool isWanted, const char* title, char side) {
        if (isWanted) {
            titles.emplace_back(title);
            columns += side;
        }
    };
    addColumn(hasUnits, "units", '<');
    addColumn(hasLevels, "level", '>');
    addColumn(stats, "smallest", '>');
    addColumn(stats, "largest", '>');
    Table table(columns, titles);
    for (const ModelSummary::Variable& variable : variables) {
        std::vector<std::string> row = {printable(variable.phase), shownName(variable), categoryName(variable.category),
                                        std::to_string(variable.components), std::to_string(variable.zones.size())};
        if (hasUnits)
            row.push_back(printable(variable.units));
        if (hasLevels)
            row.push_back(variable.level ? std::to_string(*variable.level) : "-");
        if (stats) {
            row.push_back(variable.hasRange ? shortNumber(variable.smallest) : "-");
            row.push_back(variable.hasRange ? shortNumber(variable.largest) : "-");
        }
        table.add(row);
    }
    terminal.write(table.text(terminal));
}

void printAttributes(Terminal& terminal, const std::string& owner, const ModelSummary::Attributes& attributes)
{
    if (attributes.empty())
        return;
    terminal.print("  {}\n", owner);
    for (const auto& [name, value] : attributes)
        terminal.print("    {}: {}\n", printable(name), printable(value));
}

void printAllAttributes(Terminal& terminal, const ModelSummary& summary)
{
    terminal.heading("Attributes");
    for (const ModelSummary::Phase& phase : summary.phases)
        printAttributes(terminal, "phase '" + printable(phase.name) + "'", phase.attributes);
    std::set<int> shown; // a variable is listed for each kind of zones that it lives on
    for (const ModelSummary::Variable& variable : summary.variables)
        if (shown.insert(variable.id).second)
            printAttributes(terminal, "'" + printable(variable.name) + "' of phase '" + printable(variable.phase) + "'",
                            variable.attributes);
}

void printSolution(Terminal& terminal, const ModelSummary& summary, bool stats)
{
    terminal.heading("Solution");
    for (const ModelSummary::Phase& phase : summary.phases)
        terminal.print("  phase        {} '{}'\n", phase.id, printable(phase.name));
    if (!summary.timeLevels.empty())
        terminal.print("  time levels  {}\n", levelsText(summary.timeLevels));
    if (summary.variables.empty())
        return;
    if (summary.level)
        for (const TimeLevel& level : summary.timeLevels)
            if (level.level == *summary.level)
                terminal.print("  values       of time level {}\n", levelsText({level}));
    terminal.write("\n");
    printVariables(terminal, summary, stats);
    unsigned64 notFinite = 0;
    for (const ModelSummary::Variable& variable : summary.variables)
        notFinite += variable.notFinite;
    if (notFinite > 0)
        terminal.print("  {} infinite or not a number\n", counted(notFinite, "value is", "values are"));
}

void printRest(Terminal& terminal, const ModelSummary& summary)
{
    if (!summary.settings.empty()) {
        terminal.heading("Settings");
        for (const ModelSummary::Settings& group : summary.settings)
            terminal.print("  {}  {}: {}\n", className(group.dataClass), printable(group.group),
                           counted(group.keys, "entry", "entries"));
    }
    if (!summary.parts.empty()) {
        terminal.heading("Locations");
        for (const ModelSummary::Part& part : summary.parts)
            terminal.print("  part {}: {}, {}, {}\n", printable(part.name), counted(part.bodies, "body", "bodies"),
                           counted(part.faces, "face", "faces"), counted(part.composites, "composite", "composites"));
    }
}

/// What lies in the source and was not read, the first twenty lines of it.
void printNotRead(Terminal& terminal, const ModelSummary& summary)
{
    constexpr std::size_t shown = 20;
    if (!summary.saysWhatIsNotRead)
        terminal.write("\n  not read: the reader of this format does not say what it leaves out\n");
    if (!summary.notRead.empty())
        terminal.write("\n");
    for (std::size_t n = 0; n < std::min(summary.notRead.size(), shown); ++n) {
        const ModelSummary::NotRead& item = summary.notRead[n];
        terminal.print("  not read: {}{}: {}{}\n", item.family.empty() ? "" : item.family + ": ", printable(item.place),
                       item.reason, item.text.empty() ? "" : ": " + printable(item.text));
    }
    if (summary.notRead.size() > shown)
        terminal.print("  not read: {} more; --json shows all\n", grouped(summary.notRead.size() - shown));
}

// ---- JSON ---------------------------------------------------------------------------------------------------------

Json jsonMesh(const ModelSummary& summary)
{
    Json ids = Json::array();
    for (const MeshName& mesh : summary.meshes)
        if (std::find(ids.begin(), ids.end(), mesh.mesh) == ids.end())
            ids.push_back(mesh.mesh);
    Json json = {{"id", summary.mesh.mesh},
                 {"target", targetName(summary.mesh.target)},
                 {"partition", summary.mesh.partition},
                 {"ids", ids},
                 {"dimension", summary.dimension},
                 {"unit", summary.unit}};
    for (const KelZoneCategory category : allCategories)
        json[categoryName(category)] = summary.sizes[static_cast<std::size_t>(category)];
    return json;
}

Json jsonAttributes(const ModelSummary::Attributes& attributes)
{
    Json json = Json::object();
    for (const auto& [name, value] : attributes)
        json[name] = value;
    return json;
}

Json jsonVariable(const ModelSummary::Variable& variable, bool attributes)
{
    Json json = {{"phase", variable.phase},
                 {"name", variable.name},
                 {"longName", variable.longName},
                 {"units", variable.units},
                 {"of", categoryName(variable.category)},
                 {"valuesPerElement", variable.components},
                 {"timeLevel", variable.level ? Json(*variable.level) : Json()},
                 {"zones", variable.zones}};
    if (variable.hasRange) {
        json["smallest"] = jsonNumber(variable.smallest);
        json["largest"] = jsonNumber(variable.largest);
    }
    if (variable.notFinite > 0)
        json["notFinite"] = variable.notFinite;
    if (attributes)
        json["attributes"] = jsonAttributes(variable.attributes);
    return json;
}

void addSolution(Json& json, const ModelSummary& summary, bool attributes)
{
    Json& phases = json["phases"] = Json::array();
    for (const ModelSummary::Phase& phase : summary.phases) {
        phases.push_back({{"id", phase.id}, {"name", phase.name}});
        if (attributes)
            phases.back()["attributes"] = jsonAttributes(phase.attributes);
    }
    Json& levels = json["timeLevels"] = Json::array();
    Json& times = json["times"] = Json::array();
    for (const TimeLevel& level : summary.timeLevels) {
        levels.push_back(level.level);
        times.push_back(level.seconds ? Json(*level.seconds) : Json());
    }
    json["timeLevel"] = summary.level ? Json(*summary.level) : Json();
    Json& variables = json["variables"] = Json::array();
    for (const ModelSummary::Variable& variable : summary.variables)
        variables.push_back(jsonVariable(variable, attributes));
}

Json jsonSummary(const ModelSummary& summary, bool attributes)
{
    Json json = {{"file", summary.path}, {"format", summary.format}};
    Json& files = json["files"] = Json::array();
    for (const ModelSummary::File& file : summary.files)
        files.push_back({{"class", className(file.dataClass)}, {"path", file.path}, {"version", file.version}});
    json["solver"] = summary.solver;
    json["mesh"] = jsonMesh(summary);
    Json& meshes = json["meshes"] = Json::array();
    for (const MeshName& mesh : summary.meshes)
        meshes.push_back({{"id", mesh.mesh}, {"target", targetName(mesh.target)}, {"partition", mesh.partition}});
    Json& zones = json["zones"] = Json::array();
    for (const ModelSummary::Zone& zone : summary.zones)
        zones.push_back({{"id", zone.id},
                         {"of", categoryName(zone.category)},
                         {"name", zone.name},
                         {"kind", zone.kind},
                         {"first", zone.first},
                         {"last", zone.last},
                         {"count", zone.count}});
    addSolution(json, summary, attributes);
    Json& settings = json["settings"] = Json::array();
    for (const ModelSummary::Settings& group : summary.settings)
        settings.push_back({{"class", className(group.dataClass)}, {"group", group.group}, {"entries", group.keys}});
    Json& parts = json["parts"] = Json::array();
    for (const ModelSummary::Part& part : summary.parts)
        parts.push_back(
            {{"name", part.name}, {"bodies", part.bodies}, {"faces", part.faces}, {"composites", part.composites}});
    Json& notRead = json["notRead"] = Json::array();
    for (const ModelSummary::NotRead& item : summary.notRead)
        notRead.push_back({{"class", className(item.dataClass)},
                           {"family", item.family},
                           {"place", item.place},
                           {"reason", item.reason},
                           {"text", item.text}});
    json["saysWhatIsNotRead"] = summary.saysWhatIsNotRead;
    return json;
}

// ---- command ------------------------------------------------------------------------------------------------------

/// The one time level that --time names.
std::optional<int> chosenLevel(const Options& options, const Model& model, const KelProvider& reader)
{
    if (options.level.empty())
        return std::nullopt;
    if (!model.has(KEL_DATA))
        throw Failure(aboutFile(options.file, "has no data, and so no time levels"));
    try {
        const std::vector<int> levels = chosenLevels(options.level, timeLevelsOf(reader));
        if (levels.size() == 1)
            return levels.front();
    } catch (const BadLevels&) {
        throw;
    } catch (const Failure& failure) {
        throw Failure(aboutFile(model.file(KEL_DATA), failure.what()));
    }
    throw Failure("--time: '" + options.level + "' names several time levels, one can be shown");
}

void runInfo(const Options& options, Session& session)
{
    Model model(options.file, options.format, options.mesh);
    model.openAll();
    Progress progress(session.terminal);
    const ModelSummary summary = summarise(model, options.stats, chosenLevel(options, model, model.reader()), progress);
    progress.finish();
    model.expectNoErrors();
    if (options.json) {
        session.terminal.write(documentText(jsonSummary(summary, options.attributes)));
        return;
    }
    printFiles(session.terminal, summary);
    if (summary.meshes.size() > 1)
        printMeshes(session.terminal, summary);
    if (!summary.zones.empty())
        printZones(session.terminal, summary);
    if (!summary.phases.empty())
        printSolution(session.terminal, summary, options.stats);
    if (options.attributes)
        printAllAttributes(session.terminal, summary);
    printRest(session.terminal, summary);
    printNotRead(session.terminal, summary);
}

} // namespace

void addInfoCommand(CLI::App& tool, Session& session)
{
    CLI::App* command =
        addCommand(tool, "info", "Shows what is in a model",
                   {"kel info cube.case.kel", "kel info --stats cube        # with the range of each variable",
                    "kel info --time 0.5s --attributes run.data.kel", "kel info --json \"box:8x8x8 fields:2\""});
    auto options = std::make_shared<Options>();
    command->add_option("FILE", options->file, "Model to look at")->required();
    command->add_flag("--stats", options->stats, "Read all values of the time level and show their range");
    command->add_flag("--attributes", options->attributes, "Show all attributes of phases and variables");
    command
        ->add_option("--time", options->level,
                     "Time level whose values are shown: its number, its time as in 0.5s, or 'last', which it is "
                     "unless given")
        ->type_name("LEVEL");
    addMeshOptions(*command, options->mesh);
    addInputOptions(*command, options->format);
    addJsonOption(*command, options->json);
    command->callback([options, &session] { runInfo(*options, session); });
}

} // namespace meridyn::tool
