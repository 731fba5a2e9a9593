#include "Command.h"
#include "Json.h"
#include "KelFormatRegistry.h"
#include "Numbers.h"

#include <memory>

namespace meridyn::tool {

namespace {

bool has(KelFormatFamilies families, int family)
{
    return (families & formatFamily(static_cast<KelFormatFamily>(family))) != 0;
}

/// "r", "w", "rw" or a blank.
std::string access(const KelFormat& format, int family)
{
    return std::string(has(format.reads, family) ? "r" : "") + (has(format.writes, family) ? "w" : "");
}

std::string joined(const std::vector<std::string>& texts)
{
    std::string all;
    for (const std::string& text : texts)
        all += (all.empty() ? "" : " ") + text;
    return all;
}

void printText(Terminal& terminal, const std::vector<KelFormat>& formats)
{
    Table list("<<<<", {"format", "can be", "suffixes", "what it is"});
    for (const KelFormat& format : formats)
        list.add({format.name,
                  format.reads == 0    ? "written"
                  : format.writes == 0 ? "read"
                                       : "read, written",
                  joined(format.suffixes), printable(format.description)});
    terminal.print("\n{}\n", list.text(terminal));
    std::vector<std::string> titles = {"carries"};
    for (const KelFormat& format : formats)
        titles.push_back(format.name);
    Table matrix(std::string(titles.size(), '<'), titles);
    for (int family = 0; family < KEL_FAMILY_COUNT; ++family) {
        std::vector<std::string> row = {formatFamilyName(static_cast<KelFormatFamily>(family))};
        for (const KelFormat& format : formats)
            row.push_back(access(format, family));
        matrix.add(row);
    }
    terminal.print("{}\n  r is read, w is written\n", matrix.text(terminal));
}

void printMarkdown(Terminal& terminal, const std::vector<KelFormat>& formats)
{
    std::string titles = "| |", line = "|---|";
    for (const KelFormat& format : formats) {
        titles += " " + format.name + " |";
        line += ":---:|";
    }
    terminal.print("{}\n{}\n", titles, line);
    for (int family = 0; family < KEL_FAMILY_COUNT; ++family) {
        terminal.print("| {} |", formatFamilyName(static_cast<KelFormatFamily>(family)));
        for (const KelFormat& format : formats)
            terminal.print(" {} |", access(format, family));
        terminal.write("\n");
    }
}

Json jsonFamilies(KelFormatFamilies families)
{
    Json names = Json::array();
    for (int family = 0; family < KEL_FAMILY_COUNT; ++family)
        if (has(families, family))
            names.push_back(formatFamilyName(static_cast<KelFormatFamily>(family)));
    return names;
}

Json jsonFormats(const KelFormatRegistry& registry)
{
    Json formats = Json::array();
    for (const KelFormat& format : registry.formats())
        formats.push_back({{"name", format.name},
                           {"description", format.description},
                           {"suffixes", format.suffixes},
                           {"reads", jsonFamilies(format.reads)},
                           {"writes", jsonFamilies(format.writes)}});
    return {{"formats", formats}, {"pluginProblems", registry.pluginProblems()}};
}

} // namespace

void addFormatsCommand(CLI::App& tool, Session& session)
{
    struct Options {
        bool json = false;
        bool markdown = false;
    };
    CLI::App* command = addCommand(tool, "formats", "Lists the formats and what each of them carries",
                                   {"kel formats", "kel formats --json", "kel formats --markdown"});
    auto options = std::make_shared<Options>();
    addPluginOption(*command);
    addJsonOption(*command, options->json);
    command->add_flag("--markdown", options->markdown, "Print the table of what is carried as Markdown")
        ->excludes("--json");
    command->callback([options, &session] {
        const KelFormatRegistry& registry = KelFormatRegistry::instance();
        if (options->json)
            session.terminal.write(documentText(jsonFormats(registry)));
        else if (options->markdown)
            printMarkdown(session.terminal, registry.formats());
        else
            printText(session.terminal, registry.formats());
        if (options->json)
            return;
        for (const std::string& problem : registry.pluginProblems())
            session.terminal.complain(problem);
    });
}

} // namespace meridyn::tool
