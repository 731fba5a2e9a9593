#include "Command.h"
#include "JsonWriter.h"
#include "KelCompare.h"
#include "Model.h"
#include "Numbers.h"

#include <memory>

namespace meridyn::tool {

namespace {

struct Options {
    std::string first, second;
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

void printNotCompared(Terminal& terminal, const std::vector<std::string>& notCompared)
{
    if (notCompared.empty())
        return;
    terminal.print("Not compared:\n");
    for (const std::string& line : notCompared)
        terminal.print("  {}\n", printable(line));
}

void printDifferences(Terminal& terminal, const Options& options, const std::vector<KelDifference>& differences,
                      const std::vector<std::string>& notCompared)
{
    if (differences.empty()) {
        terminal.print("{}\n", notCompared.empty() ? terminal.styled(Style::Good, "The two models are equal.")
                                                   : "No difference was found in what could be compared.");
        return printNotCompared(terminal, notCompared);
    }
    terminal.print("  {} {}\n  {} {}\n\n", terminal.styled(Style::Bad, "-"), printable(options.first),
                   terminal.styled(Style::Good, "+"), printable(options.second));
    for (const KelDifference& difference : differences)
        terminal.print("{}: {}{}{}: {} against {}\n", familyOf(difference), printable(difference.item),
                       difference.level ? ", time level " + std::to_string(*difference.level) : "",
                       difference.id != 0 ? ", id " + grouped(difference.id) : "",
                       terminal.styled(Style::Bad, orNothing(difference.first)),
                       terminal.styled(Style::Good, orNothing(difference.second)));
    terminal.print("\n{} shown; the models {}.\n", counted(differences.size(), "difference", "differences"),
                   terminal.styled(Style::Bad, "differ"));
    printNotCompared(terminal, notCompared);
}

std::string jsonDifferences(const Options& options, const std::vector<KelDifference>& differences,
                            const std::vector<std::string>& notCompared)
{
    JsonWriter json;
    json.beginObject().member("first", options.first).member("second", options.second);
    json.member("equal", differences.empty() && notCompared.empty());
    json.member("complete", notCompared.empty()).member("not_compared", notCompared);
    json.key("differences").beginArray();
    for (const KelDifference& difference : differences) {
        json.beginObject().member("family", familyOf(difference));
        json.member("item", difference.item);
        json.key("time_level");
        if (difference.level)
            json.value(*difference.level);
        else
            json.null();
        json.key("id");
        if (difference.id != 0)
            json.value(difference.id);
        else
            json.null();
        json.member("first", difference.first).member("second", difference.second).endObject();
    }
    json.endArray().endObject();
    return json.text();
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

void runDiff(Options& options, Session& session)
{
    Model first(options.first), second(options.second);
    std::vector<KelDifference> differences;
    options.compare.compareCase = isCompared(first, second, KEL_CASE, options.dataOnly, differences);
    options.compare.compareData = isCompared(first, second, KEL_DATA, options.caseOnly, differences);
    if (options.compare.compareData && !options.compare.compareCase) // data needs the zones of its case
        for (Model* model : {&first, &second})
            if (model->has(KEL_CASE))
                model->open(KEL_CASE);
    if (!options.compare.compareCase && !options.compare.compareData && differences.empty())
        throw Failure(aboutFile(options.first, options.caseOnly ? "has no case" : "has no data"));
    KelCompare compare(first.reader(), second.reader(), options.compare);
    if (!compare.run())
        throw Failure(options.first + ", " + options.second + ": " + compare.problem());
    const auto& found = compare.differences();
    differences.insert(differences.end(), found.begin(), found.end());
    if (options.json)
        session.terminal.write(jsonDifferences(options, differences, compare.notCompared()));
    else
        printDifferences(session.terminal, options, differences, compare.notCompared());
    session.exitCode = !differences.empty() ? EXIT_NO : compare.isComplete() ? EXIT_GOOD : EXIT_INCOMPLETE;
}

} // namespace

void addDiffCommand(CLI::App& tool, Session& session)
{
    CLI::App* command =
        addCommand(tool, "diff", "Compares two models, of one format or two",
                   {"kel diff before.case.kel after.case.kel",
                    "kel diff --rtol 1e-6 cube.case.kel case/constant/polyMesh   # exit code 1 when they differ",
                    "kel diff --data-only --first 20 run1.data.kel run2.data.kel"});
    auto options = std::make_shared<Options>();
    command->add_option("A", options->first, "First model")->required();
    command->add_option("B", options->second, "Second model")->required();
    command
        ->add_option("--rtol", options->compare.relativeTolerance,
                     "Values that are this close are equal, as a share of the larger one")
        ->check(CLI::NonNegativeNumber);
    command->add_option("--atol", options->compare.absoluteTolerance, "Values that are this close are equal")
        ->check(CLI::NonNegativeNumber);
    command->add_option("--first", options->compare.differencesPerItem,
                        "Differences that are shown per array; 5 unless given");
    command->add_flag("--case-only", options->caseOnly, "Compare the cases only");
    command->add_flag("--data-only", options->dataOnly, "Compare the data only")->excludes("--case-only");
    addJsonOption(*command, options->json);
    command->callback([options, &session] { runDiff(*options, session); });
}

} // namespace meridyn::tool
