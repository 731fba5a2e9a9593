#include "Command.h"
#include "Json.h"
#include "KelBase.h"
#include "KelVariableAttributeProvider.h"
#include "MappingCheck.h"
#include "Numbers.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <system_error>

namespace meridyn::tool {

namespace {

struct Options {
    std::string name, source, target;
    std::string folder;
    bool check = false;
    bool json = false;
};

/// A base whose translation of names is open.
class Translator : public KelBase {
public:
    /// The provider that leads from one vocabulary to another; null when the files have no way.
    KelVariableAttributeProvider* provider(const std::string& source, const std::string& target)
    {
        initializeVariableAttributeProvider(source, target);
        return attributeProvider();
    }
};

void listFiles(const std::vector<KelMappingFile>& files, const Options& options, Session& session)
{
    if (options.json) {
        Json json = {{"folder", options.folder}, {"files", Json::array()}};
        for (const KelMappingFile& file : files)
            if (file.problem.empty())
                json["files"].push_back({{"source", file.source},
                                         {"target", file.target},
                                         {"path", file.path},
                                         {"used", file.isUsed},
                                         {"variables", file.keys.size()}});
        session.terminal.write(documentText(json));
        return;
    }
    Table table("<<><", {"from", "to", "variables", "file"});
    for (const KelMappingFile& file : files)
        if (file.problem.empty())
            table.add({printable(file.source), printable(file.target), grouped(file.keys.size()),
                       printable(file.path) + (file.isUsed ? "" : " (not used)")});
    session.terminal.write(table.text(session.terminal));
}

void checkFiles(const std::vector<KelMappingFile>& files, const Options& options, Session& session)
{
    const std::vector<MappingProblem> problems = checkMappingFiles(files);
    const auto count = static_cast<std::size_t>(
        std::count_if(files.begin(), files.end(), [](const KelMappingFile& file) { return file.problem.empty(); }));
    session.exitCode = problems.empty() ? EXIT_GOOD : EXIT_NO;
    if (options.json) {
        Json json = {
            {"folder", options.folder}, {"good", problems.empty()}, {"files", count}, {"problems", Json::array()}};
        for (const MappingProblem& problem : problems)
            json["problems"].push_back({{"path", problem.path}, {"text", problem.text}});
        session.terminal.write(documentText(json));
        return;
    }
    for (const MappingProblem& problem : problems)
        session.terminal.print("{}: {}\n", printable(problem.path), printable(problem.text));
    session.terminal.print("{}, {}\n", counted(count, "mapping file", "mapping files"),
                           counted(problems.size(), "problem", "problems"));
}

/// What the files make of a name.
struct Translation {
    std::string mapped;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::string problem; ///< why there is none; empty when the name is translated
};

Translation translationOf(const std::vector<KelMappingFile>& files, const Options& options)
{
    Translator translator;
    Translation found;
    KelVariableAttributeProvider* provider = translator.provider(options.source, options.target);
    if (provider == nullptr) {
        found.problem = "no mapping file leads from " + options.source + " to " + options.target;
        return found;
    }
    found.mapped = provider->getMappedKey(options.name);
    for (const std::string& attribute : provider->getSupportedAttributes(options.name))
        found.attributes.emplace_back(attribute, provider->getAttributeValue(options.name, attribute));
    // A name without a mapped one comes back as it is; one that is mapped to itself bears it in an attribute.
    const bool isMapped = found.mapped != options.name ||
                          std::any_of(found.attributes.begin(), found.attributes.end(),
                                      [&](const auto& attribute) { return attribute.second == found.mapped; });
    const bool arrives =
        options.source == options.target || std::any_of(files.begin(), files.end(), [&](const KelMappingFile& file) {
            return file.target == options.target && file.source != file.target;
        });
    if (found.attributes.empty())
        found.problem = options.source + " has no variable '" + options.name + "'";
    else if (!arrives)
        found.problem = "no file leads to " + options.target + "; the files lead as far as '" + found.mapped + "'";
    else if (!isMapped && options.source != options.target)
        found.problem = "'" + options.name + "' of " + options.source + " has no name in " + options.target;
    return found;
}

void translate(const std::vector<KelMappingFile>& files, const Options& options, Session& session)
{
    const Translation found = translationOf(files, options);
    session.exitCode = found.problem.empty() ? EXIT_GOOD : EXIT_NO;
    if (options.json) {
        Json attributes = Json::object();
        for (const auto& [name, value] : found.attributes)
            attributes[name] = value;
        session.terminal.write(documentText({{"name", options.name},
                                             {"from", options.source},
                                             {"to", options.target},
                                             {"known", !found.attributes.empty()},
                                             {"translated", found.problem.empty()},
                                             {"mapped", found.mapped},
                                             {"attributes", attributes}}));
    } else if (!found.attributes.empty()) {
        session.terminal.print("{}\n", session.terminal.styled(Style::Heading, printable(found.mapped)));
        for (const auto& [name, value] : found.attributes)
            session.terminal.print("  {}: {}\n", printable(name), printable(value));
    }
    if (!found.problem.empty())
        session.terminal.complain(found.problem);
}

void runMap(Options& options, Session& session)
{
    options.folder = KelMappingFiles::folder();
    if (options.folder.empty())
        throw Failure("no folder of mapping files: set KEL_VARIABLE_CONFIG_DIR");
    std::error_code error;
    if (!std::filesystem::is_directory(options.folder, error)) {
        session.terminal.complain(options.folder + ": " +
                                  (error ? error.message() : "expected a folder of mapping files, found a file"));
        session.exitCode = EXIT_NO;
        return;
    }
    std::string problem;
    const std::vector<KelMappingFile> files = KelMappingFiles::inFolder(options.folder, problem);
    if (!problem.empty())
        throw Failure(problem);
    if (!options.name.empty())
        translate(files, options, session);
    else if (options.check)
        checkFiles(files, options, session);
    else
        listFiles(files, options, session);
}

} // namespace

void addMapCommand(CLI::App& tool, Session& session)
{
    CLI::App* command = addCommand(tool, "map", "Lists and checks variable mapping files, and translates names",
                                   {"kel map", "kel map --check      # exit code 1 when something is wrong",
                                    "kel map Temp --from QUORIX --to MERIDYN_GENERIC"});
    command->footer(command->get_footer() + "\n\nThe files are those in the folder KEL_VARIABLE_CONFIG_DIR.");
    auto options = std::make_shared<Options>();
    CLI::Option* name = command->add_option("NAME", options->name, "Variable to translate");
    CLI::Option* from = command->add_option("--from", options->source, "Vocabulary of NAME");
    CLI::Option* to = command->add_option("--to", options->target, "Vocabulary to translate to");
    name->needs(from)->needs(to);
    from->needs(name);
    to->needs(name);
    command
        ->add_flag("--check", options->check,
                   "Look for files that are none, duplicates, unmapped names and keys that do not come back")
        ->excludes(name);
    addJsonOption(*command, options->json);
    command->callback([options, &session] { runMap(*options, session); });
}

} // namespace meridyn::tool
