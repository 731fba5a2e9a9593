#include "Command.h"
#include "JsonWriter.h"
#include "KelMeshCheck.h"
#include "Model.h"
#include "Numbers.h"
#include "Progress.h"

#include <memory>

namespace meridyn::tool {

namespace {

struct Options {
    std::string file;
    std::string format;
    double tolerance = KelMeshCheckOptions().closureTolerance;
    unsigned named = 5;
    bool json = false;
};

const std::vector<KelMeshRule>& rules()
{
    static const std::vector<KelMeshRule> all = {
        KelMeshRule::Zones,     KelMeshRule::Coordinates, KelMeshRule::Ids,       KelMeshRule::FaceNodes,
        KelMeshRule::FaceCells, KelMeshRule::UsedNodes,   KelMeshRule::CellFaces, KelMeshRule::Closed,
        KelMeshRule::Volumes,   KelMeshRule::Orientation};
    return all;
}

std::string pointText(const std::array<double, 3>& point, int dimension)
{
    const std::string plane = shortNumber(point[0]) + ", " + shortNumber(point[1]);
    return "(" + plane + (dimension == 3 ? ", " + shortNumber(point[2]) : "") + ")";
}

void printFigures(Terminal& terminal, const KelMeshReport& report, const std::string& unit)
{
    const std::string suffix = unit.empty() ? "" : " " + printable(unit);
    terminal.print("  {}, {}, {}\n", counted(report.sizes[KEL_NODE_ZONE], "node", "nodes"),
                   counted(report.sizes[KEL_FACE_ZONE], "face", "faces"),
                   counted(report.sizes[KEL_CELL_ZONE], "cell", "cells"));
    for (const auto& [type, count] : report.cellTypes)
        terminal.print("    {} {}\n", grouped(count), cellTypeName(type));
    if (report.hasBox)
        terminal.print("  bounding box  {} to {}{}\n", pointText(report.boxMin, report.dimension),
                       pointText(report.boxMax, report.dimension), suffix);
    if (report.smallestCell != 0) {
        const std::string power = suffix.empty() ? "" : suffix + (report.dimension == 3 ? "^3" : "^2");
        terminal.print("  volume        {}{}\n", shortNumber(report.volume), power);
        terminal.print("    smallest    {} (cell {})\n", shortNumber(report.smallestVolume),
                       grouped(report.smallestCell));
        terminal.print("    largest     {} (cell {})\n", shortNumber(report.largestVolume),
                       grouped(report.largestCell));
    }
}

void printReport(Terminal& terminal, const Model& model, const KelMeshReport& report, const std::string& unit)
{
    terminal.print("{}\n", printable(model.path()));
    printFigures(terminal, report, unit);
    terminal.write("\n");
    for (const KelMeshRule rule : rules()) {
        const KelMeshReport::Outcome& outcome = report.outcome(rule);
        if (!report.hasFaces && rule > KelMeshRule::Coordinates) {
            terminal.print("  {}  {}\n", terminal.styled(Style::Note, "  -   "), textOf(rule).text);
            continue;
        }
        if (outcome.offenders == 0) {
            terminal.print("  {}  {}\n", terminal.styled(Style::Good, "good  "), textOf(rule).text);
            continue;
        }
        terminal.print("  {}  {}: {}\n", terminal.styled(Style::Bad, "FAILED"), textOf(rule).text,
                       counted(outcome.offenders, "exception", "exceptions"));
        for (const std::string& line : outcome.named)
            terminal.print("            {}\n", printable(line));
        if (outcome.offenders > outcome.named.size())
            terminal.write("            ...\n");
    }
    if (!report.hasFaces)
        terminal.write("\nThe format gives no cells of faces: topology and geometry were not checked.\n");
    terminal.print("\n{}\n", report.isGood() ? terminal.styled(Style::Good, "The mesh is good.")
                                             : terminal.styled(Style::Bad, "The mesh is not good."));
}

void writePoint(JsonWriter& json, const char* name, const std::array<double, 3>& point, int dimension)
{
    json.key(name).beginArray().value(point[0]).value(point[1]);
    if (dimension == 3)
        json.value(point[2]);
    json.endArray();
}

std::string jsonReport(const Model& model, const KelMeshReport& report, const std::string& unit)
{
    JsonWriter json;
    json.beginObject().member("file", model.path()).member("good", report.isGood());
    json.member("dimension", report.dimension).member("unit", unit);
    for (const KelZoneCategory category : allCategories)
        json.member(categoryName(category), report.sizes[static_cast<std::size_t>(category)]);
    json.key("cellTypes").beginObject();
    for (const auto& [type, count] : report.cellTypes)
        json.member(cellTypeName(type), count);
    json.endObject();
    if (report.hasBox) {
        json.key("boundingBox").beginObject();
        writePoint(json, "min", report.boxMin, report.dimension);
        writePoint(json, "max", report.boxMax, report.dimension);
        json.endObject();
    }
    if (report.smallestCell != 0) {
        json.key("volume").beginObject().member("total", report.volume);
        json.member("smallest", report.smallestVolume).member("smallestCell", report.smallestCell);
        json.member("largest", report.largestVolume).member("largestCell", report.largestCell).endObject();
    }
    json.member("facesChecked", report.hasFaces).key("checks").beginArray();
    for (const KelMeshRule rule : rules()) {
        const KelMeshReport::Outcome& outcome = report.outcome(rule);
        json.beginObject().member("check", textOf(rule).key).member("text", textOf(rule).text);
        json.member("exceptions", outcome.offenders).member("first", outcome.named).endObject();
    }
    json.endArray().endObject();
    return json.text();
}

void runCheck(const Options& options, Session& session)
{
    Model model(options.file, options.format);
    model.open(KEL_CASE);
    Progress progress(session.terminal);
    KelMeshCheckOptions checkOptions;
    checkOptions.closureTolerance = options.tolerance;
    checkOptions.named = options.named;
    checkOptions.progress = [&](const std::string& task, unsigned64 done, unsigned64 total) {
        return progress(task, done, total);
    };
    KelMeshCheck check(model.reader(), checkOptions);
    if (!check.run()) {
        if (check.wasCancelled())
            throw Interrupted(aboutFile(options.file, "interrupted"));
        throw model.failure(check.problem(), KEL_CASE);
    }
    progress.finish();
    model.expectNoErrors();
    std::string unit;
    model.reader().getMeshUnits(unit);
    if (options.json)
        session.terminal.write(jsonReport(model, check.report(), unit));
    else
        printReport(session.terminal, model, check.report(), unit);
    session.exitCode = check.report().isGood() ? EXIT_GOOD : EXIT_NO;
}

} // namespace

void addCheckCommand(CLI::App& tool, Session& session)
{
    CLI::App* command = addCommand(tool, "check", "Checks the topology and the geometry of a mesh",
                                   {"kel check cube.case.kel",
                                    "kel check --json \"box:20x20x20 cells:tet\"   # exit code 1 when a check fails",
                                    "kel check --named 100 case/constant/polyMesh"});
    auto options = std::make_shared<Options>();
    command->add_option("FILE", options->file, "Model whose mesh is checked")->required();
    command
        ->add_option("--tolerance", options->tolerance,
                     "How far a cell may be open, as a share of its surface; 1e-6 unless given")
        ->check(CLI::NonNegativeNumber);
    command->add_option("--named", options->named, "Exceptions that are named per check; 5 unless given");
    addInputFormatOption(*command, options->format);
    addJsonOption(*command, options->json);
    command->callback([options, &session] { runCheck(*options, session); });
}

} // namespace meridyn::tool
