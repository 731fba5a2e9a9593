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

namespace {

void describe(CLI::App& tool, Session& session)
{
    tool.set_version_flag("-V,--version",
                          "kel " + KelVersion::apiVersionAsString(".") + "." + std::to_string(KelVersion::getPatch()));
    tool.require_subcommand(1);
    tool.get_formatter()->column_width(34);
    addCommands(tool, session);
    tool.footer("\n'kel help <subcommand>' shows the options and examples of each.\n"
                "FILE is whatever a format recognises: a case or data file, the name that both share, a case folder,\n"
                "or the text of a generated mesh such as \"box:8x8x8 fields:2\".\n"
                "Exit code: 0 good, 1 the answer is no, 2 could not, 3 good as far as it could be looked at.");
}

/// What is wrong with the arguments, in one line, and where to read on.
std::string complaintOf(const CLI::App& tool, const CLI::ParseError& error)
{
    std::string help = "kel";
    for (const CLI::App* command : tool.get_subcommands())
        help += " " + command->get_name();
    return std::string(error.what()) + "; see '" + help + " --help'";
}

std::vector<std::string> namesOf(const CLI::App& tool)
{
    std::vector<std::string> names;
    for (const CLI::App* command : tool.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(command->get_name());
    return names;
}

/// How many letters have to be added, dropped, changed or swapped with their neighbour to make one word of the other.
std::size_t editsBetween(const std::string& a, const std::string& b)
{
    std::vector<std::vector<std::size_t>> edits(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i)
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                edits[i][j] = i + j;
                continue;
            }
            const std::size_t changed = edits[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            edits[i][j] = std::min({edits[i - 1][j] + 1, edits[i][j - 1] + 1, changed});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                edits[i][j] = std::min(edits[i][j], edits[i - 2][j - 2] + 1);
        }
    return edits[a.size()][b.size()];
}

/// "; did you mean 'info'?", or nothing when no command is close: two slips, or one in a word of three letters.
std::string suggestionFor(const std::string& word, const std::vector<std::string>& names)
{
    if (word.size() > 20)
        return "";
    for (const std::string& name : names)
        if (word.size() >= 2 && name.starts_with(word))
            return "; did you mean '" + name + "'?";
    const auto nearest = std::min_element(names.begin(), names.end(), [&](const auto& one, const auto& other) {
        return editsBetween(word, one) < editsBetween(word, other);
    });
    const std::size_t slips = nearest == names.end() ? 99 : editsBetween(word, *nearest);
    return slips <= (word.size() < 4 ? 1U : 2U) ? "; did you mean '" + *nearest + "'?" : "";
}

/// Complains when what should be a command is none; else a missing command would be complained about.
void expectCommand(const CLI::App& tool, const std::string& word)
{
    const std::vector<std::string> names = namesOf(tool);
    if (std::find(names.begin(), names.end(), word) == names.end())
        throw Failure("no command is called '" + word + "'" + suggestionFor(word, names) + "; see 'kel --help'");
}

/// The arguments behind the program's name, "help info" as "info --help". @throws Failure for an unknown command
std::vector<std::string> argumentsOf(const CLI::App& tool, int argc, const char* const* argv)
{
    std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    if (!arguments.empty() && arguments[0] == "help") {
        arguments.erase(arguments.begin());
        arguments.resize(std::min<std::size_t>(arguments.size(), 1)); // what follows the command has no help of its own
        arguments.emplace_back("--help");
    }
    if (!arguments.empty() && (arguments[0].empty() || arguments[0][0] != '-'))
        expectCommand(tool, arguments[0]);
    return arguments;
}

ExitCode parseAndRun(CLI::App& tool, Session& session, int argc, const char* const* argv)
{
    try {
        std::vector<std::string> arguments = argumentsOf(tool, argc, argv);
        std::reverse(arguments.begin(), arguments.end()); // as the parser takes them
        tool.parse(std::move(arguments));
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

} // namespace

std::vector<std::string> commandNames()
{
    Session session;
    CLI::App tool;
    describe(tool, session);
    return namesOf(tool);
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
