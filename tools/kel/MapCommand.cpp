#include "Command.h"
#include "JsonWriter.h"
#include "KelBase.h"
#include "KelVariableAttributeProvider.h"
#include "MappingFiles.h"
#include "Numbers.h"

#include <algorithm>
#include <memory>

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

void writeFile(JsonWriter& json, const MappingFile& file)
{
    json.beginObject().member("source", file.source).member("target", file.target).member("path", file.path);
    json.member("used", file.isUsed).member("variables", unsigned64{file.keys.size()}).endObject();
}

void listFiles(const std::vector<MappingFile>& files, const Options& options, Session& session)
{
    if (options.json) {
        JsonWriter json;
        json.beginObject().member("folder", options.folder).key("files").beginArray();
        for (const MappingFile& file : files)
            writeFile(json, file);
        json.endArray().endObject();
        session.terminal.write(json.text());
        return;
    }
    Table table("<<><", {"from", "to", "variables", "file"});
    for (const MappingFile& file : files)
        table.add({printable(file.source), printable(file.target), grouped(file.keys.size()),
                   printable(file.path) + (file.isUsed ? "" : " (not used)")});
    session.terminal.write(table.text(session.terminal));
}

void checkFiles(const std::vector<MappingFile>& files, const Options& options, Session& session)
{
    const std::vector<MappingProblem> problems = checkMappingFiles(files);
    session.exitCode = problems.empty() ? EXIT_GOOD : EXIT_NO;
    if (options.json) {
        JsonWriter json;
        json.beginObject().member("folder", options.folder).member("good", problems.empty());
        json.member("files", unsigned64{files.size()}).key("problems").beginArray();
        for (const MappingProblem& problem : problems)
            json.beginObject().member("path", problem.path).member("text", problem.text).endObject();
        json.endArray().endObject();
        session.terminal.write(json.text());
        return;
    }
    for (const MappingProblem& problem : problems)
        session.terminal.print("{}: {}\n", printable(problem.path), printable(problem.text));
    session.terminal.print("{}, {}\n", counted(files.size(), "mapping file", "mapping files"),
                           counted(problems.size(), "problem", "problems"));
}

void translate(const std::vector<MappingFile>& files, const Options& options, Session& session)
{
    Translator translator;
    KelVariableAttributeProvider* provider = translator.provider(options.source, options.target);
    if (provider == nullptr) {
        session.exitCode = EXIT_NO;
        if (options.json)
            session.terminal.write(
                JsonWriter().beginObject().member("name", options.name).member("known", false).endObject().text());
        session.terminal.complain("no mapping file leads from " + options.source + " to " + options.target);
        return;
    }
    const bool arrives =
        options.source == options.target || std::any_of(files.begin(), files.end(), [&](const MappingFile& file) {
            return file.target == options.target && file.source != file.target;
        });
    const std::string mapped = provider->getMappedKey(options.name);
    const std::vector<std::string> attributes = provider->getSupportedAttributes(options.name);
    if (attributes.empty())
        session.exitCode = EXIT_NO;
    if (options.json) {
        JsonWriter json;
        json.beginObject().member("name", options.name).member("from", options.source).member("to", options.target);
        json.member("known", !attributes.empty()).member("mapped", mapped).key("attributes").beginObject();
        for (const std::string& attribute : attributes)
            json.member(attribute, provider->getAttributeValue(options.name, attribute));
        json.endObject().endObject();
        session.terminal.write(json.text());
        return;
    }
    if (attributes.empty()) {
        session.terminal.complain(options.source + " has no variable '" + options.name + "'");
        return;
    }
    session.terminal.print("{}\n", session.terminal.styled(Style::Heading, printable(mapped)));
    for (const std::string& attribute : attributes)
        session.terminal.print("  {}: {}\n", printable(attribute),
                               printable(provider->getAttributeValue(options.name, attribute)));
    if (!arrives)
        session.terminal.print("No file leads to {}: this is as far as the files go.\n", printable(options.target));
}

void runMap(Options& options, Session& session)
{
    options.folder = mappingFolder();
    if (options.folder.empty())
        throw Failure("no folder of mapping files: set KEL_VARIABLE_CONFIG_DIR");
    const std::vector<MappingFile> files = mappingFilesIn(options.folder);
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
    command->add_flag("--check", options->check, "Look for duplicates, unmapped names and keys that do not come back")
        ->excludes(name);
    addJsonOption(*command, options->json);
    command->callback([options, &session] { runMap(*options, session); });
}

} // namespace meridyn::tool
