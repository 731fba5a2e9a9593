#include "Command.h"
#include "Json.h"
#include "KelMeshCheck.h"
#include "Model.h"
#include "Numbers.h"
#include "Progress.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace meridyn::tool {

namespace {

struct Options {
    std::string file;
    std::string format;
    MeshChoice mesh;
    double tolerance = KelMeshCheckOptions().closureTolerance;
    unsigned named = 5;
    bool json = false;
};

/// A mesh with what the check found of it.
struct CheckedMesh {
    MeshName key;
    std::string unit;
    KelMeshReport report;
};

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
    if (report.thinWallPairs != 0)
        terminal.print("  thin walls    {}\n", counted(report.thinWallPairs, "pair of faces", "pairs of faces"));
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

void printRule(Terminal& terminal, KelMeshRule rule, const KelMeshReport::Outcome& outcome)
{
    if (outcome.offenders == 0) {
        const bool isLookedAt = outcome.lookedAt != 0;
        terminal.print("  {}  {}\n",
                       terminal.styled(isLookedAt ? Style::Good : Style::Note, isLookedAt ? "good  " : "  -   "),
                       textOf(rule).text);
        return;
    }
    terminal.print("  {}  {}: {}\n", terminal.styled(Style::Bad, "FAILED"), textOf(rule).text,
                   counted(outcome.offenders, "exception", "exceptions"));
    for (const KelMeshFinding& finding : outcome.named)
        terminal.print("            {}\n", printable(finding.text));
    if (outcome.offenders > outcome.named.size())
        terminal.write("            ...\n");
}

/// What of a mesh was not looked at, in one line.
std::string unseenText(const KelMeshReport& report)
{
    std::string text;
    for (const KelMeshUnseen& unseen : report.unseen())
        text += (text.empty() ? "" : "; ") + unseen.text;
    return text;
}

/// "mesh 2, target 1, partition 3"; the target and the partition only where they say something.
std::string nameOf(const MeshName& key)
{
    std::string name = "mesh " + std::to_string(key.mesh);
    if (key.target != KEL_DEFAULT_TARGET)
        name += ", target " + std::to_string(key.target);
    if (key.partition >= 0)
        name += ", partition " + std::to_string(key.partition);
    return name;
}

void printReports(Terminal& terminal, const Model& model, const std::vector<CheckedMesh>& meshes)
{
    std::string unseen;
    bool isFaulty = false;
    for (const CheckedMesh& mesh : meshes) {
        terminal.print("{}{}\n", printable(model.path()), meshes.size() > 1 ? ", " + nameOf(mesh.key) : "");
        printFigures(terminal, mesh.report, mesh.unit);
        terminal.write("\n");
        for (const KelMeshRule rule : meshRules())
            printRule(terminal, rule, mesh.report.outcome(rule));
        terminal.write("\n");
        isFaulty = isFaulty || mesh.report.hasOffenders();
        if (!mesh.report.unseen().empty())
            unseen += (unseen.empty() ? "" : "; ") + (meshes.size() > 1 ? nameOf(mesh.key) + ": " : "") +
                      unseenText(mesh.report);
    }
    const bool areMany = meshes.size() > 1;
    if (isFaulty && !unseen.empty())
        terminal.print("Not looked at: {}.\n", printable(unseen));
    if (isFaulty)
        terminal.print("{}\n",
                       terminal.styled(Style::Bad, areMany ? "The meshes are not all good." : "The mesh is not good."));
    else if (!unseen.empty())
        terminal.print("{}\n",
                       terminal.styled(Style::Note, "No fault found, but not looked at: " + printable(unseen) + "."));
    else
        terminal.print(
            "{}\n", terminal.styled(Style::Good, areMany ? "All " + std::to_string(meshes.size()) + " meshes are good."
                                                         : "The mesh is good."));
}

Json jsonPoint(const std::array<double, 3>& point, int dimension)
{
    Json json = Json::array();
    for (int axis = 0; axis < dimension; ++axis)
        json.push_back(jsonNumber(point[static_cast<std::size_t>(axis)]));
    return json;
}

void addChecks(Json& json, const KelMeshReport& report)
{
    Json& checks = json["checks"] = Json::array();
    for (const KelMeshRule rule : meshRules()) {
        const KelMeshReport::Outcome& outcome = report.outcome(rule);
        std::vector<std::string> first;
        for (const KelMeshFinding& finding : outcome.named)
            first.push_back(finding.text);
        checks.push_back({{"check", textOf(rule).key},
                          {"text", textOf(rule).text},
                          {"lookedAt", outcome.lookedAt},
                          {"exceptions", outcome.offenders},
                          {"first", first}});
    }
    Json& unseen = json["notLookedAt"] = Json::array();
    for (const KelMeshUnseen& item : report.unseen())
        unseen.push_back(item.text);
}

/// Adds all that is known of one mesh.
void addReport(Json& json, const CheckedMesh& mesh)
{
    const KelMeshReport& report = mesh.report;
    json["mesh"] = mesh.key.mesh;
    json["target"] = targetName(mesh.key.target);
    json["partition"] = mesh.key.partition;
    json["good"] = report.isGood();
    json["dimension"] = report.dimension;
    json["unit"] = mesh.unit;
    for (const KelZoneCategory category : allCategories)
        json[categoryName(category)] = report.sizes[static_cast<std::size_t>(category)];
    json["cellTypes"] = Json::object();
    for (const auto& [type, count] : report.cellTypes)
        json["cellTypes"][cellTypeName(type)] = count;
    if (report.hasBox)
        json["boundingBox"] = {{"min", jsonPoint(report.boxMin, report.dimension)},
                               {"max", jsonPoint(report.boxMax, report.dimension)}};
    if (report.smallestCell != 0)
        json["volume"] = {{"total", jsonNumber(report.volume)},
                          {"smallest", jsonNumber(report.smallestVolume)},
                          {"smallestCell", report.smallestCell},
                          {"largest", jsonNumber(report.largestVolume)},
                          {"largestCell", report.largestCell}};
    json["facesChecked"] = report.hasFaces;
    json["thinWallPairs"] = report.thinWallPairs;
    addChecks(json, report);
}

/// One mesh is one object with all that is known of it; of several, each is such an object in a list.
Json jsonReport(const Model& model, const std::vector<CheckedMesh>& meshes)
{
    Json json = {{"file", model.path()}};
    if (meshes.size() == 1) {
        addReport(json, meshes.front());
        return json;
    }
    json["good"] =
        std::all_of(meshes.begin(), meshes.end(), [](const CheckedMesh& mesh) { return mesh.report.isGood(); });
    Json& list = json["meshes"] = Json::array();
    for (const CheckedMesh& mesh : meshes)
        addReport(list.emplace_back(Json::object()), mesh);
    return json;
}

CheckedMesh checkMesh(Model& model, const MeshName& key, const Options& options, Progress& progress)
{
    KelMeshCheckOptions checkOptions;
    checkOptions.closureTolerance = options.tolerance;
    checkOptions.named = options.named;
    checkOptions.progress = [&](const std::string& task, unsigned64 done, unsigned64 total) {
        return progress(task, done, total);
    };
    model.openMesh(KEL_CASE, key);
    KelMeshCheck check(model.reader(), checkOptions);
    if (!check.run()) {
        if (check.wasCancelled())
            throw Interrupted(aboutFile(options.file, "interrupted"));
        throw model.failure(check.problem(), KEL_CASE);
    }
    model.expectNoErrors();
    CheckedMesh mesh{key, "", check.report()};
    model.reader().getMeshUnits(mesh.unit);
    return mesh;
}

ExitCode exitCodeOf(const std::vector<CheckedMesh>& meshes)
{
    ExitCode code = EXIT_GOOD;
    for (const CheckedMesh& mesh : meshes) {
        if (mesh.report.hasOffenders())
            return EXIT_NO;
        if (!mesh.report.isGood())
            code = EXIT_NOT_ALL;
    }
    return code;
}

void runCheck(const Options& options, Session& session)
{
    Model model(options.file, options.format, options.mesh);
    model.open(KEL_CASE);
    const std::vector<MeshName> keys = model.chosenMeshes(KEL_CASE);
    Progress progress(session.terminal);
    std::vector<CheckedMesh> meshes;
    for (const MeshName& key : keys)
        meshes.push_back(checkMesh(model, key, options, progress));
    progress.finish();
    if (options.json)
        session.terminal.write(documentText(jsonReport(model, meshes)));
    else
        printReports(session.terminal, model, meshes);
    session.exitCode = exitCodeOf(meshes);
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
    addToleranceOption(*command, "--tolerance", options->tolerance,
                       "How far a cell may be open, as a share of its surface; 1e-6 unless given");
    command->add_option("--named", options->named, "Exceptions that are named per check; 5 unless given");
    addMeshOptions(*command, options->mesh);
    addInputOptions(*command, options->format);
    addJsonOption(*command, options->json);
    command->callback([options, &session] { runCheck(*options, session); });
}

} // namespace meridyn::tool
