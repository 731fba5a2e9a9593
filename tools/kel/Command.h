#pragma once

#include "Failure.h"
#include "Model.h"
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

/// Adds all commands to the tool, in the order in which its help lists them; the list is in Commands.cpp. A command
/// runs as its callback, sets the session's exit code, and may throw Failure.
void addCommands(CLI::App& tool, Session& session);

/// Makes a subcommand whose help ends with examples, one per line.
CLI::App* addCommand(CLI::App& tool, const std::string& name, const std::string& description,
                     const std::vector<std::string>& examples);

/// Adds the option --json.
void addJsonOption(CLI::App& command, bool& json);

/// Adds what every command that opens a model has: --from, which names the format of the input, and --plugin, which
/// loads a further format first.
void addInputOptions(CLI::App& command, std::string& format);

/// Adds --mesh, --target and --partition, for the commands that look at one mesh.
void addMeshOptions(CLI::App& command, MeshChoice& choice);

/// Adds --plugin alone.
void addPluginOption(CLI::App& command);

/// Adds an option whose value is a number of type double from 0 up; anything else is refused in one short line.
CLI::Option* addToleranceOption(CLI::App& command, const std::string& name, double& value, const std::string& text);

} // namespace meridyn::tool
