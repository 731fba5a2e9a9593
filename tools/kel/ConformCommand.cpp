#include "Command.h"
#include "KelFormatRegistry.h"
#include "Numbers.h"

#include "Interrupt.h"
#include "Json.h"
#include "KelFormatConformance.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>

namespace meridyn::tool {

namespace {

struct Options {
    std::string format, plugin, folder;
    std::vector<std::string> checks, samples;
    bool list = false;
    bool json = false;
};

/// A folder that exists as long as this.
class ScratchFolder {
public:
    explicit ScratchFolder(const std::string& parent)
    {
        std::error_code error;
        std::filesystem::path root = parent;
        if (parent.empty())
            root = std::filesystem::temp_directory_path(error);
        if (error)
            throw Failure("the folder for temporary files: " + error.message());
        _path = (root / "kel-conform-XXXXXX").string();
        if (mkdtemp(_path.data()) == nullptr)
            throw Failure(root.string() + ": " + std::strerror(errno));
    }
    ~ScratchFolder()
    {
        std::error_code error;
        std::filesystem::remove_all(_path, error);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::string& path() const { return _path; }

private:
    std::string _path;
};

const KelFormat& formatOf(const Options& options)
{
    KelFormatRegistry& registry = KelFormatRegistry::instance();
    std::string problem;
    if (!options.plugin.empty() && !registry.loadPlugin(options.plugin, problem))
        throw Failure(problem);
    const std::string name = options.format.empty() ? registry.formats().back().name : options.format;
    const KelFormat* format = registry.find(name);
    if (format == nullptr)
        throw Failure("no format is called '" + name + "'; see 'kel formats'");
    return *format;
}

void printResult(Terminal& terminal, const KelConformanceResult& result)
{
    terminal.print("{}  {}\n",
                   result.passed ? terminal.styled(Style::Good, "passed") : terminal.styled(Style::Bad, "FAILED"),
                   printable(result.name));
    for (std::size_t start = 0; start < result.detail.size();) {
        const std::size_t end = std::min(result.detail.find('\n', start), result.detail.size());
        terminal.print("          {}\n", printable(result.detail.substr(start, end - start)));
        start = end + 1;
    }
}

Json jsonResults(const std::string& format, const std::vector<KelConformanceResult>& results)
{
    Json checks = Json::array();
    for (const KelConformanceResult& result : results)
        checks.push_back({{"check", result.name}, {"passed", result.passed}, {"detail", result.detail}});
    return {{"format", format}, {"checks", checks}};
}

void listChecks(Terminal& terminal, const std::string& format, const std::vector<std::string>& checks, bool json)
{
    if (json)
        terminal.write(documentText({{"format", format}, {"checks", checks}}));
    else
        for (const std::string& check : checks)
            terminal.print("{}\n", check);
}

void runConform(const Options& options, Session& session)
{
    if (options.format.empty() && options.plugin.empty())
        throw CLI::RequiredError("FORMAT or --plugin");
    const KelFormat format = formatOf(options);
    const ScratchFolder folder(options.folder);
    KelFormatConformance suite(format, folder.path());
    for (const std::string& sample : options.samples)
        suite.addSample(sample);
    const std::vector<std::string> checks = options.checks.empty() ? suite.checks() : options.checks;
    if (options.list) {
        listChecks(session.terminal, format.name, checks, options.json);
        return;
    }
    unsigned64 failed = 0;
    for (const std::string& check : checks) {
        if (wasInterrupted())
            throw Interrupted("interrupted");
        const KelConformanceResult result = suite.run(check);
        failed += result.passed ? 0 : 1;
        if (!options.json)
            printResult(session.terminal, result);
    }
    if (options.json)
        session.terminal.write(documentText(jsonResults(format.name, suite.results())));
    else
        session.terminal.print("{} passed, {} failed\n", grouped(checks.size() - failed), grouped(failed));
    session.exitCode = failed == 0 ? EXIT_GOOD : EXIT_NO;
}

} // namespace

void addConformCommand(CLI::App& tool, Session& session)
{
    CLI::App* command = addCommand(tool, "conform", "Runs the suite that every format has to pass",
                                   {"kel conform memory", "kel conform --plugin ./libmyformat.so",
                                    "kel conform --check mesh-by-zone hdf5",
                                    "kel conform polymesh --sample case --sample other/constant/polyMesh"});
    auto options = std::make_shared<Options>();
    command->add_option("FORMAT", options->format, "Name of the format; that of the plug-in unless given");
    command->add_option("--plugin", options->plugin, "Shared object to load first");
    command->add_option("--check", options->checks, "Run this check only; may be repeated")
        ->type_name("CHECK")
        ->allow_extra_args(false);
    command->add_option("--sample", options->samples, "Model to read, for a format without a writer; may be repeated")
        ->allow_extra_args(false);
    command->add_option("--folder", options->folder, "Folder for the files of the checks, instead of the system's");
    command->add_flag("--list", options->list, "List the checks instead of running them");
    addJsonOption(*command, options->json);
    command->callback([options, &session] { runConform(*options, session); });
}

} // namespace meridyn::tool
