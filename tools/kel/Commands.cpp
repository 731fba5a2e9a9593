#include "Command.h"

#include "KelFormatRegistry.h"
#include "KelTimes.h"

#include <charconv>
#include <map>

namespace meridyn::tool {

// A new command: define its function in a source of its own and add its line here. Help, completion and the tests
// follow.
// clang-format off
#define KEL_FOR_EACH_COMMAND(X) \
    X(addInfoCommand)           \
    X(addConvertCommand)        \
    X(addCheckCommand)          \
    X(addDiffCommand)           \
    X(addTraceCommand)          \
    X(addSettingsCommand)       \
    X(addMapCommand)            \
    X(addLocateCommand)         \
    X(addFormatsCommand)        \
    X(addConformCommand)
// clang-format on

#define KEL_DECLARE(add) void add(CLI::App& tool, Session& session);
KEL_FOR_EACH_COMMAND(KEL_DECLARE)
#undef KEL_DECLARE

void addCommands(CLI::App& tool, Session& session)
{
#define KEL_CALL(add) add(tool, session);
    KEL_FOR_EACH_COMMAND(KEL_CALL)
#undef KEL_CALL
}

CLI::App* addCommand(CLI::App& tool, const std::string& name, const std::string& description,
                     const std::vector<std::string>& examples)
{
    CLI::App* command = tool.add_subcommand(name, description);
    std::string footer = "\nExamples:";
    for (const std::string& example : examples)
        footer += "\n  " + example;
    command->footer(footer);
    return command;
}

void addJsonOption(CLI::App& command, bool& json)
{
    command.add_flag("--json", json, "Print JSON, for programs");
}

void addInputOptions(CLI::App& command, std::string& format)
{
    command.add_option("--from", format, "Format of FILE, instead of the one that recognises it")->type_name("FORMAT");
    addPluginOption(command);
}

void addMeshOptions(CLI::App& command, MeshChoice& choice)
{
    static const std::map<std::string, int> targets = {{"default", KEL_DEFAULT_TARGET},
                                                       {"solver", KEL_SOLVER},
                                                       {"partitioned-post", KEL_PARTITIONED_POST},
                                                       {"post", KEL_POST}};
    command.add_option("--mesh", choice.mesh, "Id of the mesh, of a model with several; ids begin with 1")
        ->type_name("ID")
        ->check([](const std::string& text) {
            int id = 0;
            const char* end = text.data() + text.size();
            const bool isNumber = std::from_chars(text.data(), end, id).ptr == end;
            return isNumber && id >= 1 ? std::string() : "'" + text + "' is no mesh: ids begin with 1";
        });
    command
        .add_option("--target", choice.target, "What the mesh is prepared for: default, solver, partitioned-post, post")
        ->type_name("TARGET")
        ->transform(CLI::CheckedTransformer(targets).description(""));
    command.add_option("--partition", choice.partition, "Partition of the mesh, whose target is partitioned-post")
        ->type_name("ID")
        ->check(CLI::NonNegativeNumber);
}

void addPluginOption(CLI::App& command)
{
    command
        .add_option_function<std::vector<std::string>>(
            "--plugin",
            [](const std::vector<std::string>& files) {
                for (const std::string& file : files) {
                    std::string problem;
                    if (!KelFormatRegistry::instance().loadPlugin(file, problem))
                        throw Failure(problem);
                }
            },
            "Shared object with a further format, to load first; may be repeated")
        ->type_name("OBJECT")
        ->allow_extra_args(false); // one for each --plugin
}

CLI::Option* addToleranceOption(CLI::App& command, const std::string& name, double& value, const std::string& text)
{
    return command
        .add_option_function<std::string>(
            name,
            [&value, name](const std::string& given) {
                double number = 0.0;
                if (!KelTimes::parse(given, number) || number < 0.0) {
                    const std::string shown = given.size() > 40 ? given.substr(0, 40) + "..." : given;
                    throw CLI::ValidationError(name, "expected a number from 0 up, found '" + shown + "'");
                }
                value = number;
            },
            text)
        ->type_name("NUMBER");
}

} // namespace meridyn::tool
