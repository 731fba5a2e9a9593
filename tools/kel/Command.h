#pragma once

#include "Failure.h"
#include "QuietLibrary.h"
#include "Terminal.h"

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace meridyn::tool {

/// What a run of the tool hands to its one command, and gets back.
struct Session {
    Terminal terminal;
    QuietLibrary library;
    ExitCode exitCode = EXIT_GOOD;
};

/// Adds a subcommand to the tool. The command runs as its callback, sets the session's exit code, and may throw
/// Failure.
/// @{
void addInfoCommand(CLI::App& tool, Session& session);
void addConvertCommand(CLI::App& tool, Session& session);
void addCheckCommand(CLI::App& tool, Session& session);
void addDiffCommand(CLI::App& tool, Session& session);
void addTraceCommand(CLI::App& tool, Session& session);
void addSettingsCommand(CLI::App& tool, Session& session);
void addMapCommand(CLI::App& tool, Session& session);
void addLocateCommand(CLI::App& tool, Session& session);
void addFormatsCommand(CLI::App& tool, Session& session);
void addConformCommand(CLI::App& tool, Session& session);
/// @}

/// Makes a subcommand whose help ends with examples, one per line.
CLI::App* addCommand(CLI::App& tool, const std::string& name, const std::string& description,
                     const std::vector<std::string>& examples);

/// Adds the option --json.
void addJsonOption(CLI::App& command, bool& json);

/// Adds the option --from, which names the format of the input.
void addInputFormatOption(CLI::App& command, std::string& format);

} // namespace meridyn::tool
