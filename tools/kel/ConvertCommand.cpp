#include "Command.h"
#include "Conversion.h"
#include "JsonWriter.h"
#include "Numbers.h"

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
    terminal.print("{} in {} s\n", byteText(static_cast<double>(result.bytes)), shortNumber(result.seconds, 3));
    if (result.losses.empty()) {
        terminal.write("Nothing was lost.\n");
        return;
    }
    terminal.print("\n{}:\n", terminal.styled(options.strict ? Style::Bad : Style::Heading,
                                              counted(result.losses.size(), "loss", "losses")));
    for (const KelLoss& loss : result.losses)
        terminal.print("  {}\n", printable(loss.line()));
}

std::string jsonText(const Options& options, const ConversionResult& result)
{
    JsonWriter json;
    json.beginObject().member("source", options.conversion.source).member("format", result.format);
    json.member("files", result.files).member("bytes", result.bytes).member("seconds", result.seconds);
    json.key("losses").beginArray();
    for (const KelLoss& loss : result.losses)
        json.beginObject()
            .member("family", formatFamilyName(loss.family))
            .member("item", loss.levels.empty() ? loss.item : loss.item + ", " + loss.when())
            .member("reason", loss.text)
            .endObject();
    json.endArray().endObject();
    return json.text();
}

void runConvert(Options& options, Session& session)
{
    if (!options.precision.empty())
        options.conversion.precision = options.precision == "single" ? KEL_PRECISION_SINGLE : KEL_PRECISION_DOUBLE;
    const ConversionResult result = convert(options.conversion, session.terminal);
    if (options.json)
        session.terminal.write(jsonText(options, result));
    else
        printResult(session.terminal, options, result);
    session.exitCode = options.strict && !result.losses.empty() ? EXIT_NO : EXIT_GOOD;
}

} // namespace

void addConvertCommand(CLI::App& tool, Session& session)
{
    CLI::App* command =
        addCommand(tool, "convert", "Converts a model to another format, and reports what is lost",
                   {"kel convert case/constant/polyMesh cube.case.kel",
                    "kel convert --strict --verify a.case.kel b.case.kel   # exit code 1 when anything was lost",
                    "kel convert --time 1,5-8,last --compress 1 run.data.kel small.data.kel",
                    "kel convert \"box:20x20x20 fields:3\" box.case.kel"});
    auto options = std::make_shared<Options>();
    ConversionOptions& conversion = options->conversion;
    command->add_option("IN", conversion.source, "Model to read")->required();
    command->add_option("OUT", conversion.target, "Model to write")->required();
    addInputFormatOption(*command, conversion.sourceFormat);
    command->add_option("--to", conversion.targetFormat, "Format of OUT, instead of the one of its suffix")
        ->type_name("FORMAT");
    command
        ->add_option("--time", conversion.timeLevels, "Time levels to copy: numbers, ranges, 'last'; all unless given")
        ->type_name("LEVELS");
    command->add_option("--compress", conversion.compression, "0 none to 9 smallest")->check(CLI::Range(0, 9));
    command->add_option("--precision", options->precision, "Of coordinates and values; as they are unless given")
        ->check(CLI::IsMember({"single", "double"}));
    command->add_flag("--case-only", conversion.caseOnly, "Leave the data out");
    command->add_flag("--data-only", conversion.dataOnly, "Leave the case out")->excludes("--case-only");
    command->add_flag("--force", conversion.force, "Replace files that exist");
    command->add_flag("--verify", conversion.verify, "Read OUT back, and report what is not as it was");
    command->add_flag("--strict", options->strict, "Exit with 1 when anything was lost");
    addJsonOption(*command, options->json);
    command->callback([options, &session] { runConvert(*options, session); });
}

} // namespace meridyn::tool
