#include "Command.h"
#include "Conversion.h"
#include "Json.h"
#include "Numbers.h"
#include "PathWords.h"

#include <memory>

namespace meridyn::tool {

namespace {

struct Options {
    ConversionOptions conversion;
    std::string precision;
    bool strict = false;
    bool json = false;
};

void printResult(Terminal& terminal, const Options& options, const ConversionResult& result)
{
    for (const std::string& file : result.files)
        terminal.print("{} {}\n", terminal.styled(Style::Good, "written"), printable(file));
    for (const std::string& file : result.removed)
        terminal.print("removed {}, which would have become a part of the new model\n", printable(file));
    if (!result.dropped.empty())
        terminal.print("dropped {} of it, from {} on\n", counted(result.dropped.size(), "time level", "time levels"),
                       options.conversion.fromLevel);
    terminal.print("{} in {} s\n", byteText(static_cast<double>(result.bytes)), shortNumber(result.seconds, 3));
    if (result.losses.empty()) {
        terminal.write("Nothing was lost.\n");
        return;
    }
    terminal.print("\n{}:\n", terminal.styled(options.strict ? Style::Bad : Style::Heading,
                                              counted(result.losses.size(), "loss", "losses")));
    for (const KelLoss& loss : result.losses)
        terminal.print("  {}\n", printable(withWordsForPaths(loss.line())));
}

Json jsonResult(const Options& options, const ConversionResult& result)
{
    Json losses = Json::array();
    for (const KelLoss& loss : result.losses)
        losses.push_back({{"family", formatFamilyName(loss.family)},
                          {"item", loss.levels.empty() ? loss.item : loss.item + ", " + loss.when()},
                          {"reason", loss.text}});
    return {{"source", options.conversion.source},
            {"format", result.format},
            {"files", result.files},
            {"removed", result.removed},
            {"droppedTimeLevels", result.dropped},
            {"bytes", result.bytes},
            {"seconds", jsonNumber(result.seconds)},
            {"losses", losses}};
}

void runConvert(Options& options, Session& session)
{
    if (!options.precision.empty())
        options.conversion.precision = options.precision == "single" ? KEL_PRECISION_SINGLE : KEL_PRECISION_DOUBLE;
    const ConversionResult result = convert(options.conversion, session.terminal);
    if (options.json)
        session.terminal.write(documentText(jsonResult(options, result)));
    else
        printResult(session.terminal, options, result);
    session.exitCode = options.strict && !result.losses.empty() ? EXIT_NO : EXIT_GOOD;
}

} // namespace

void addConvertCommand(CLI::App& tool, Session& session)
{
    CLI::App* command =
        addCommand(tool, "convert", "Converts a model to another format, and reports what is lost",
                   {"kel convert case/constant/polyMesh cavity.case.kel",
                    "kel convert --strict --verify a.case.kel b.case.kel   # exit code 1 when anything was lost",
                    "kel convert --time 1,5-8,0.9s,last --compress 1 run.data.kel small.data.kel",
                    "kel convert --from-level 4 run2.data.kel run1.data.kel   # a restart that went back",
                    "kel convert \"box:20x20x20 fields:3\" box.case.kel"});
    auto options = std::make_shared<Options>();
    ConversionOptions& conversion = options->conversion;
    command->add_option("IN", conversion.source, "Model to read")->required();
    command->add_option("OUT", conversion.target, "Model to write")->required();
    addMeshOptions(*command, conversion.mesh);
    addInputOptions(*command, conversion.sourceFormat);
    command->add_option("--to", conversion.targetFormat, "Format of OUT, instead of the one of its suffix")
        ->type_name("FORMAT");
    command
        ->add_option("--time", conversion.timeLevels,
                     "Time levels to copy: numbers, times as in 0.5s, ranges of either, 'last'; all unless given")
        ->type_name("LEVELS");
    command
        ->add_option("--from-level", conversion.fromLevel,
                     "Keep the data of OUT, but for its time levels from this one on, and add those of IN from it on")
        ->type_name("LEVEL")
        ->excludes("--time");
    command->add_option("--compress", conversion.compression, "0 none to 9 smallest")->check(CLI::Range(0, 9));
    command
        ->add_option("--precision", options->precision,
                     "Of coordinates and values; unless given, each keeps the one that IN stores it in, double where "
                     "that is not known")
        ->check(CLI::IsMember({"single", "double"}));
    command->add_flag("--case-only", conversion.caseOnly, "Leave the data out")->excludes("--from-level");
    command->add_flag("--data-only", conversion.dataOnly, "Leave the case out")->excludes("--case-only");
    command->add_flag("--force", conversion.force, "Replace the model of that name, if there is one");
    command->add_flag("--verify", conversion.verify, "Read OUT back, and report what is not as it was");
    command->add_flag("--strict", options->strict, "Exit with 1 when anything was lost");
    addJsonOption(*command, options->json);
    command->callback([options, &session] { runConvert(*options, session); });
}

} // namespace meridyn::tool
