#include "Command.h"
#include "Json.h"
#include "KelCompare.h"
#include "Model.h"
#include "Numbers.h"

#include <algorithm>
#include <memory>

namespace meridyn::tool {

namespace {

struct Options {
    std::string first, second;
    MeshChoice mesh;
    KelCompareOptions compare;
    bool caseOnly = false;
    bool dataOnly = false;
    bool json = false;
};

std::string orNothing(const std::string& text)
{
    return text.empty() ? "nothing" : printable(text);
}

/// What a difference is about: "files" where it is no data.
std::string familyOf(const KelDifference& difference)
{
    const std::string name = formatFamilyName(difference.family);
    return name.empty() ? "files" : name;
}

/// "a; b; c; and 4 more"
std::string firstOf(const std::vector<std::string>& lines)
{
    constexpr std::size_t shown = 3;
    std::string text;
    for (std::size_t n = 0; n < std::min(lines.size(), shown); ++n)
        text += (n > 0 ? "; " : "") + lines[n];
    return lines.size() > shown ? text + "; and " + grouped(lines.size() - shown) + " more" : text;
}

void printNotCompared(Terminal& terminal, const std::vector<std::string>& notCompared)
{
    if (notCompared.empty())
        return;
    terminal.print("Not compared:\n");
    for (const std::string& line : notCompared)
        terminal.print("  {}\n", printable(line));
    terminal.write("\n");
}

/// Prints what was found; the last line is the answer.
void printDifferences(Terminal& terminal, const Options& options, const std::vector<KelDifference>& differences,
                      const std::vector<std::string>& notCompared)
{
    if (!differences.empty())
        terminal.print("  {} {}\n  {} {}\n\n", terminal.styled(Style::Bad, "-"), printable(options.first),
                       terminal.styled(Style::Good, "+"), printable(options.second));
    for (const KelDifference& difference : differences)
        terminal.print("{}: {}{}{}: {} against {}\n", familyOf(difference), printable(difference.item),
                       difference.level ? ", time level " + std::to_string(*difference.level) : "",
                       difference.id != 0 ? ", id " + grouped(difference.id) : "",
                       terminal.styled(Style::Bad, orNothing(difference.first)),
                       terminal.styled(Style::Good, orNothing(difference.second)));
    if (!differences.empty())
        terminal.write("\n");
    printNotCompared(terminal, notCompared);
    if (!differences.empty())
        terminal.print("{} shown; the models {}.\n", counted(differences.size(), "difference", "differences"),
                       terminal.styled(Style::Bad, "differ"));
    else if (!notCompared.empty())
        terminal.print("{}\n", terminal.styled(Style::Note, "No difference found, but not compared: " +
                                                                printable(firstOf(notCompared)) + "."));
    else
        terminal.print("{}\n", terminal.styled(Style::Good, "The two models are equal."));
}

Json jsonDifferences(const Options& options, const std::vector<KelDifference>& differences,
                     const std::vector<std::string>& notCompared)
{
    Json list = Json::array();
    for (const KelDifference& difference : differences)
        list.push_back({{"family", familyOf(difference)},
                        {"item", difference.item},
                        {"timeLevel", difference.level ? Json(*difference.level) : Json()},
                        {"id", difference.id != 0 ? Json(difference.id) : Json()},
                        {"first", difference.first},
                        {"second", difference.second}});
    return {{"first", options.first},
            {"second", options.second},
            {"equal", differences.empty() && notCompared.empty()},
            {"complete", notCompared.empty()},
            {"notCompared", notCompared},
            {"differences", list}};
}

/// Whether a data class is compared. One that only one of the models has is a difference of its own.
bool isCompared(const Model& first, const Model& second, KelDataClass dataClass, bool isExcluded,
                std::vector<KelDifference>& differences)
{
    if (isExcluded)
        return false;
    const bool inFirst = first.has(dataClass), inSecond = second.has(dataClass);
    if (inFirst != inSecond)
        differences.push_back({KEL_FAMILY_COUNT,
                               dataClass == KEL_CASE ? "the case" : "the data",
                               0,
                               inFirst ? first.file(dataClass) : "",
                               inSecond ? second.file(dataClass) : "",
                               {},
                               {}});
    return inFirst && inSecond;
}

/// Adds the meshes of a model that the options fit to those that are compared.
void chooseMeshes(Options& options, Model& model)
{
    if (!options.mesh.isGiven())
        return;
    const KelDataClass dataClass = model.has(KEL_CASE) && !options.dataOnly ? KEL_CASE : KEL_DATA;
    model.open(dataClass);
    for (const MeshName& mesh : model.chosenMeshes(dataClass)) {
        const KelMeshKey key{mesh.mesh, mesh.target, mesh.partition};
        if (std::find(options.compare.meshes.begin(), options.compare.meshes.end(), key) ==
            options.compare.meshes.end())
            options.compare.meshes.push_back(key);
    }
    model.close();
}

void runDiff(Options& options, Session& session)
{
    Model first(options.first, "", options.mesh), second(options.second, "", options.mesh);
    chooseMeshes(options, first);
    chooseMeshes(options, second);
    std::vector<KelDifference> differences;
    options.compare.compareCase = isCompared(first, second, KEL_CASE, options.dataOnly, differences);
    options.compare.compareData = isCompared(first, second, KEL_DATA, options.caseOnly, differences);
    // Data belong to the zones of their case; where one has no case, both know the zones that the data tell themselves.
    if (options.compare.compareData && !options.compare.compareCase && first.has(KEL_CASE) && second.has(KEL_CASE))
        for (Model* model : {&first, &second})
            model->open(KEL_CASE);
    if (!options.compare.compareCase && !options.compare.compareData && differences.empty())
        throw Failure(aboutFile(options.first, options.caseOnly ? "has no case" : "has no data"));
    KelCompare compare(first.reader(), second.reader(), options.compare);
    if (!compare.run())
        throw Failure(options.first + ", " + options.second + ": " + compare.problem());
    const auto& found = compare.differences();
    differences.insert(differences.end(), found.begin(), found.end());
    if (options.json)
        session.terminal.write(documentText(jsonDifferences(options, differences, compare.notCompared())));
    else
        printDifferences(session.terminal, options, differences, compare.notCompared());
    session.exitCode = !differences.empty() ? EXIT_NO : compare.isComplete() ? EXIT_GOOD : EXIT_NOT_ALL;
}

} // namespace

void addDiffCommand(CLI::App& tool, Session& session)
{
    CLI::App* command =
        addCommand(tool, "diff", "Compares two models, of one format or two",
                   {"kel diff before.case.kel after.case.kel",
                    "kel diff --rtol 1e-6 cavity.case.kel case/constant/polyMesh   # exit code 1 when they differ",
                    "kel diff --data-only --first 20 run1.data.kel run2.data.kel"});
    auto options = std::make_shared<Options>();
    command->add_option("A", options->first, "First model")->required();
    command->add_option("B", options->second, "Second model")->required();
    addToleranceOption(*command, "--rtol", options->compare.relativeTolerance,
                       "Values that are this close are equal, as a share of the larger one");
    addToleranceOption(*command, "--atol", options->compare.absoluteTolerance, "Values that are this close are equal");
    command->add_option("--first", options->compare.differencesPerItem,
                        "Differences that are shown per array; 5 unless given");
    command->add_flag("--case-only", options->caseOnly, "Compare the cases only");
    command->add_flag("--data-only", options->dataOnly, "Compare the data only")->excludes("--case-only");
    addMeshOptions(*command, options->mesh);
    addPluginOption(*command);
    addJsonOption(*command, options->json);
    command->callback([options, &session] { runDiff(*options, session); });
}

} // namespace meridyn::tool
