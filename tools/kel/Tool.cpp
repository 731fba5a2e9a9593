#include "Tool.h"

#include "Command.h"
#include "Interrupt.h"
#include "KelVersion.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <sstream>
#include <stdexcept>

namespace meridyn::tool {

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

void addInputFormatOption(CLI::App& command, std::string& format)
{
    command.add_option("--from", format, "Format of FILE, instead of the one that recognises it")->type_name("FORMAT");
}

static void describe(CLI::App& tool, Session& session)
{
    tool.set_version_flag("--version",
                          "kel " + KelVersion::apiVersionAsString(".") + "." + std::to_string(KelVersion::getPatch()));
    tool.require_subcommand(1);
    tool.get_formatter()->column_width(34);
    addInfoCommand(tool, session);
    addConvertCommand(tool, session);
    addCheckCommand(tool, session);
    addDiffCommand(tool, session);
    addTraceCommand(tool, session);
    addSettingsCommand(tool, session);
    addMapCommand(tool, session);
    addLocateCommand(tool, session);
    addFormatsCommand(tool, session);
    addConformCommand(tool, session);
    tool.footer("\n'kel <subcommand> --help' shows the options and examples of each.\n"
                "FILE is whatever a format recognises: a case or data file, the name that both share, a case folder,\n"
                "or the text of a generated mesh such as \"box:8x8x8 fields:2\".\n"
                "Exit code: 0 good, 1 the answer is no, 2 could not.");
}

/// What is wrong with the arguments, in one line, and where to read on.
static std::string complaintOf(const CLI::App& tool, const CLI::ParseError& error)
{
    std::string help = "kel";
    for (const CLI::App* command : tool.get_subcommands())
        help += " " + command->get_name();
    return std::string(error.what()) + "; see '" + help + " --help'";
}

/// Whether the first argument is meant as a command but is none; else a missing command would be complained about.
static bool isUnknownCommand(const CLI::App& tool, const std::string& argument)
{
    const auto commands = tool.get_subcommands([](const CLI::App*) { return true; });
    return !argument.empty() && argument[0] != '-' &&
           std::none_of(commands.begin(), commands.end(),
                        [&](const CLI::App* command) { return command->check_name(argument); });
}

static ExitCode parseAndRun(CLI::App& tool, Session& session, int argc, const char* const* argv)
{
    try {
        if (argc > 1 && isUnknownCommand(tool, argv[1]))
            throw Failure("no command is called '" + std::string(argv[1]) + "'; see 'kel --help'");
        tool.parse(argc, argv);
        return session.exitCode;
    } catch (const CLI::Success& answer) { // --help and --version
        std::ostringstream text;
        tool.exit(answer, text, text);
        session.terminal.write(text.str());
        return EXIT_GOOD;
    } catch (const CLI::ParseError& error) {
        session.terminal.complain(complaintOf(tool, error));
    } catch (const Failure& failure) {
        session.terminal.complain(failure.what());
    } catch (const Interrupted& interrupted) {
        session.terminal.complain(interrupted.what());
    } catch (const std::bad_alloc&) {
        session.terminal.complain("not enough memory");
    } catch (const std::length_error&) { // a size of a file that no vector can have
        session.terminal.complain("not enough memory");
    } catch (const std::exception& error) { // the format of a plug-in may throw anything
        session.terminal.complain(error.what());
    }
    return EXIT_COULD_NOT;
}

int run(int argc, const char* const* argv)
{
    watchForInterrupts();
    Session session;
    CLI::App tool("Looks at, checks, compares and converts CFD cases and solutions", "kel");
    describe(tool, session);
    const ExitCode code = parseAndRun(tool, session, argc, argv);
    errno = 0;
    if (!session.terminal.flush()) {
        session.terminal.complain(std::string("standard output: ") + std::strerror(errno != 0 ? errno : EIO));
        return EXIT_COULD_NOT;
    }
    dieOfInterrupt();
    return code;
}

} // namespace meridyn::tool
