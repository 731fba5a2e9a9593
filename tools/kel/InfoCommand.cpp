#include "Command.h"
#include "JsonWriter.h"
#include "Model.h"
#include "ModelSummary.h"
#include "Numbers.h"
#include "Progress.h"

#include <algorithm>
#include <memory>

namespace meridyn::tool {

namespace {

struct Options {
    std::string file;
    std::string format;
    bool stats = false;
    bool json = false;
};

const char* className(KelDataClass dataClass)
{
    return dataClass == KEL_CASE ? "case" : "data";
}

// ---- text ---------------------------------------------------------------------------------------------------------

void printFiles(Terminal& terminal, const ModelSummary& summary)
{
    terminal.print("{}\n", terminal.styled(Style::Heading, printable(summary.path)));
    terminal.print("  format       {} - {}\n", summary.format, printable(summary.formatDescription));
    for (const ModelSummary::File& file : summary.files)
        terminal.print("  {} file    {} (version {})\n", className(file.dataClass), printable(file.path),
                       printable(file.version));
    terminal.print("  solver       {}\n", printable(summary.solver));
    std::string mesh = std::to_string(summary.meshId);
    if (summary.meshIds.size() > 1)
        mesh += " of " + counted(summary.meshIds.size(), "mesh", "meshes");
    if (summary.dimension > 0) // data alone knows its zones, but no mesh
        terminal.print("  mesh         {}, {} dimensions{}\n", mesh, summary.dimension,
                       summary.unit.empty() ? "" : ", in " + printable(summary.unit));
    for (const KelZoneCategory category : allCategories)
        if (const unsigned64 size = summary.sizes[static_cast<std::size_t>(category)]; size > 0)
            terminal.print("  {:<12} {}\n", categoryName(category), grouped(size));
}

void printZones(Terminal& terminal, const ModelSummary& summary)
{
    terminal.heading("Zones");
    Table table(">"
                "<"
                "<"
                "<"
                ">"
                ">"
                ">",
                {"id", "of", "name", "kind", "count", "first", "last"});
    for (const ModelSummary::Zone& zone : summary.zones)
        table.add({std::to_string(zone.id), categoryName(zone.category), printable(zone.name), printable(zone.kind),
                   grouped(zone.count), grouped(zone.first), grouped(zone.last)});
    terminal.write(table.text(terminal));
}

std::string levelsText(const std::vector<int>& levels)
{
    constexpr std::size_t shown = 10;
    std::string text;
    for (std::size_t n = 0; n < std::min(levels.size(), shown); ++n)
        text += (n > 0 ? ", " : "") + std::to_string(levels[n]);
    if (levels.size() > shown)
        text += " ... " + std::to_string(levels.back());
    return text;
}

void printSolution(Terminal& terminal, const ModelSummary& summary, bool stats)
{
    terminal.heading("Solution");
    for (const auto& [id, name] : summary.phases)
        terminal.print("  phase        {} '{}'\n", id, printable(name));
    if (!summary.timeLevels.empty())
        terminal.print("  time levels  {}\n", levelsText(summary.timeLevels));
    if (summary.variables.empty())
        return;
    terminal.write("\n");
    Table table(stats ? "<<<>>>>" : "<<<>>", {"phase", "variable", "of", "values", "zones"});
    if (stats)
        table = Table("<<<>>>>", {"phase", "variable", "of", "values", "zones", "smallest", "largest"});
    unsigned64 notFinite = 0;
    for (const ModelSummary::Variable& variable : summary.variables) {
        std::vector<std::string> row = {printable(variable.phase), printable(variable.name),
                                        categoryName(variable.category), std::to_string(variable.components),
                                        std::to_string(variable.zones.size())};
        if (stats) {
            row.push_back(variable.hasRange ? shortNumber(variable.smallest) : "-");
            row.push_back(variable.hasRange ? shortNumber(variable.largest) : "-");
        }
        notFinite += variable.notFinite;
        table.add(row);
    }
    terminal.write(table.text(terminal));
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

// ---- JSON ---------------------------------------------------------------------------------------------------------

void writeMesh(JsonWriter& json, const ModelSummary& summary)
{
    json.key("mesh").beginObject().member("id", summary.meshId).member("ids", summary.meshIds);
    json.member("dimension", summary.dimension).member("unit", summary.unit);
    for (const KelZoneCategory category : allCategories)
        json.member(categoryName(category), summary.sizes[static_cast<std::size_t>(category)]);
    json.endObject().key("zones").beginArray();
    for (const ModelSummary::Zone& zone : summary.zones) {
        json.beginObject().member("id", zone.id).member("of", categoryName(zone.category)).member("name", zone.name);
        json.member("kind", zone.kind).member("first", zone.first).member("last", zone.last);
        json.member("count", zone.count).endObject();
    }
    json.endArray();
}

void writeSolution(JsonWriter& json, const ModelSummary& summary)
{
    json.key("phases").beginArray();
    for (const auto& [id, name] : summary.phases)
        json.beginObject().member("id", static_cast<int>(id)).member("name", name).endObject();
    json.endArray().member("timeLevels", summary.timeLevels).key("variables").beginArray();
    for (const ModelSummary::Variable& variable : summary.variables) {
        json.beginObject().member("phase", variable.phase).member("name", variable.name);
        json.member("longName", variable.longName).member("of", categoryName(variable.category));
        json.member("valuesPerElement", variable.components).member("zones", variable.zones);
        if (variable.hasRange)
            json.member("smallest", variable.smallest).member("largest", variable.largest);
        if (variable.notFinite > 0)
            json.member("notFinite", variable.notFinite);
        json.endObject();
    }
    json.endArray();
}

std::string jsonText(const ModelSummary& summary)
{
    JsonWriter json;
    json.beginObject().member("file", summary.path).member("format", summary.format).key("files").beginArray();
    for (const ModelSummary::File& file : summary.files)
        json.beginObject()
            .member("class", className(file.dataClass))
            .member("path", file.path)
            .member("version", file.version)
            .endObject();
    json.endArray().member("solver", summary.solver);
    writeMesh(json, summary);
    writeSolution(json, summary);
    json.key("settings").beginArray();
    for (const ModelSummary::Settings& group : summary.settings)
        json.beginObject()
            .member("class", className(group.dataClass))
            .member("group", group.group)
            .member("entries", group.keys)
            .endObject();
    json.endArray().key("parts").beginArray();
    for (const ModelSummary::Part& part : summary.parts)
        json.beginObject()
            .member("name", part.name)
            .member("bodies", part.bodies)
            .member("faces", part.faces)
            .member("composites", part.composites)
            .endObject();
    json.endArray().endObject();
    return json.text();
}

void runInfo(const Options& options, Session& session)
{
    Model model(options.file, options.format);
    model.openAll();
    Progress progress(session.terminal);
    const ModelSummary summary = summarise(model, options.stats, progress);
    progress.finish();
    model.expectNoErrors();
    if (options.json) {
        session.terminal.write(jsonText(summary));
        return;
    }
    printFiles(session.terminal, summary);
    if (!summary.zones.empty())
        printZones(session.terminal, summary);
    if (!summary.phases.empty())
        printSolution(session.terminal, summary, options.stats);
    printRest(session.terminal, summary);
}

} // namespace

void addInfoCommand(CLI::App& tool, Session& session)
{
    CLI::App* command =
        addCommand(tool, "info", "Shows what is in a model",
                   {"kel info cube.case.kel", "kel info --stats cube        # with the range of each variable",
                    "kel info --json \"box:8x8x8 fields:2\""});
    auto options = std::make_shared<Options>();
    command->add_option("FILE", options->file, "Model to look at")->required();
    command->add_flag("--stats", options->stats, "Read all values of the last time level and show their range");
    addInputFormatOption(*command, options->format);
    addJsonOption(*command, options->json);
    command->callback([options, &session] { runInfo(*options, session); });
}

} // namespace meridyn::tool
