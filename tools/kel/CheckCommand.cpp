#include "Command.h"
#include "JsonWriter.h"
#include "KelMeshCheck.h"
#include "Model.h"
#include "Numbers.h"
#include "Progress.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

namespace meridyn::tool {

namespace {

struct Options {
    std::string file;
    std::string format;
    double tolerance = KelMeshCheckOptions().closureTolerance;
    unsigned named = 5;
    bool json = false;
    std::optional<int> mesh, target, partition;
};

/// One mesh of a file.
struct MeshKey {
    int mesh = -1;
    KelTargetCategory target = KEL_DEFAULT_TARGET;
    int partition = -1;
};

/// A mesh with what the check found of it.
struct CheckedMesh {
    MeshKey key;
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
std::string nameOf(const MeshKey& key)
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

void writePoint(JsonWriter& json, const char* name, const std::array<double, 3>& point, int dimension)
{
    json.key(name).beginArray().value(point[0]).value(point[1]);
    if (dimension == 3)
        json.value(point[2]);
    json.endArray();
}

void writeChecks(JsonWriter& json, const KelMeshReport& report)
{
    json.key("checks").beginArray();
    for (const KelMeshRule rule : meshRules()) {
        const KelMeshReport::Outcome& outcome = report.outcome(rule);
        std::vector<std::string> first;
        for (const KelMeshFinding& finding : outcome.named)
            first.push_back(finding.text);
        json.beginObject().member("check", textOf(rule).key).member("text", textOf(rule).text);
        json.member("lookedAt", outcome.lookedAt).member("exceptions", outcome.offenders);
        json.member("first", first).endObject();
    }
    json.endArray().key("notLookedAt").beginArray();
    for (const KelMeshUnseen& unseen : report.unseen())
        json.value(unseen.text);
    json.endArray();
}

void writeReport(JsonWriter& json, const CheckedMesh& mesh)
{
    const KelMeshReport& report = mesh.report;
    json.member("mesh", mesh.key.mesh).member("target", static_cast<int>(mesh.key.target));
    json.member("partition", mesh.key.partition).member("good", report.isGood());
    json.member("dimension", report.dimension).member("unit", mesh.unit);
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
    json.member("facesChecked", report.hasFaces).member("thinWallPairs", report.thinWallPairs);
    writeChecks(json, report);
}

/// One mesh is one object with all that is known of it; of several, each is such an object in a list.
std::string jsonReport(const Model& model, const std::vector<CheckedMesh>& meshes)
{
    JsonWriter json;
    json.beginObject().member("file", model.path());
    if (meshes.size() == 1)
        writeReport(json, meshes.front());
    else {
        const bool areGood =
            std::all_of(meshes.begin(), meshes.end(), [](const CheckedMesh& mesh) { return mesh.report.isGood(); });
        json.member("good", areGood).key("meshes").beginArray();
        for (const CheckedMesh& mesh : meshes) {
            json.beginObject();
            writeReport(json, mesh);
            json.endObject();
        }
        json.endArray();
    }
    json.endObject();
    return json.text();
}

/// The meshes of an open file that the options ask for; without options all.
std::vector<MeshKey> meshesOf(const KelProvider& reader, const Options& options)
{
    std::vector<MeshKey> keys;
    std::vector<int> ids = reader.availableMeshIds(KEL_CASE);
    if (ids.empty()) // the format does not tell: what is open is all there is
        ids.push_back(reader.getMeshId());
    for (const int id : ids) {
        std::vector<KelTargetCategory> targets = reader.availableTargets(id, KEL_CASE);
        if (targets.empty())
            targets.push_back(reader.getTarget());
        for (const KelTargetCategory target : targets) {
            std::vector<int> partitions;
            if (target == KEL_PARTITIONED_POST)
                partitions = reader.availablePartitionIds(id, KEL_CASE);
            if (partitions.empty())
                partitions.push_back(-1);
            for (const int partition : partitions)
                if (options.mesh.value_or(id) == id && options.target.value_or(target) == target &&
                    options.partition.value_or(partition) == partition)
                    keys.push_back({id, target, partition});
        }
    }
    return keys;
}

/// Opens the case again with another mesh, which is chosen while the file is closed.
void openMesh(Model& model, const MeshKey& key)
{
    KelFileProvider& reader = model.reader();
    if (reader.getMeshId() == key.mesh && reader.getTarget() == key.target && reader.getPartitionId() == key.partition)
        return;
    model.close();
    reader.setMeshId(key.mesh);
    reader.setTarget(key.target);
    if (key.partition >= 0)
        reader.setPartitionId(key.partition);
    reader.getErrors(true, true); // what a closed reader says of a mesh that it cannot load yet
    model.open(KEL_CASE);
}

CheckedMesh checkMesh(Model& model, const MeshKey& key, const Options& options, Progress& progress)
{
    KelMeshCheckOptions checkOptions;
    checkOptions.closureTolerance = options.tolerance;
    checkOptions.named = options.named;
    checkOptions.progress = [&](const std::string& task, unsigned64 done, unsigned64 total) {
        return progress(task, done, total);
    };
    openMesh(model, key);
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
    Model model(options.file, options.format);
    model.open(KEL_CASE);
    const std::vector<MeshKey> keys = meshesOf(model.reader(), options);
    if (keys.empty())
        throw Failure(aboutFile(options.file, "has no such mesh, target and partition; 'kel info' lists what it has"));
    Progress progress(session.terminal);
    std::vector<CheckedMesh> meshes;
    for (const MeshKey& key : keys)
        meshes.push_back(checkMesh(model, key, options, progress));
    progress.finish();
    if (options.json)
        session.terminal.write(jsonReport(model, meshes));
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
    command
        ->add_option("--tolerance", options->tolerance,
                     "How far a cell may be open, as a share of its surface; 1e-6 unless given")
        ->check(CLI::NonNegativeNumber);
    command->add_option("--named", options->named, "Exceptions that are named per check; 5 unless given");
    command->add_option("--mesh", options->mesh, "Id of the mesh; all meshes unless given")->type_name("ID");
    command->add_option("--target", options->target, "Target of the mesh, 0 to 3; all unless given")->type_name("ID");
    command->add_option("--partition", options->partition, "Partition of the mesh; all unless given")->type_name("ID");
    addInputFormatOption(*command, options->format);
    addJsonOption(*command, options->json);
    command->callback([options, &session] { runCheck(*options, session); });
}

} // namespace meridyn::tool
