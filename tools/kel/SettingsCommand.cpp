#include "arbor/TObject.h"
#include "arbor/TProperty.h"
#include "Command.h"
#include "Json.h"
#include "Model.h"
#include "Numbers.h"

#include <algorithm>
#include <map>
#include <memory>

namespace meridyn::tool {

namespace {

struct Options {
    std::string file, path;
    std::string format;
    bool data = false;
    bool caseOnly = false;
    bool xml = false;
    bool json = false;
};

const char* className(KelDataClass dataClass)
{
    return dataClass == KEL_CASE ? "case" : "data";
}

using Tree = std::unique_ptr<const arbor::TObject>;

/// One entry of a group of settings in a file: a tree in XML form, or just a text.
struct Entry {
    std::string group, key, text;

    /// The tree; null when the text is none.
    Tree tree() const { return Tree(arbor::TObject::fromXMLString(text)); }
    std::string path() const { return group + "/" + key; }
};

std::vector<Entry> entriesOf(const KelProvider& reader, KelDataClass dataClass)
{
    std::vector<Entry> entries;
    std::vector<std::string> groups, keys;
    reader.getSettingsGroups(dataClass, groups);
    for (const std::string& group : groups) {
        reader.getSettingsKeysOfGroup(dataClass, group, keys);
        for (const std::string& key : keys) {
            entries.push_back({group, key, ""});
            reader.getSettingString(dataClass, key, entries.back().text, group);
        }
    }
    return entries;
}

// ---- people -------------------------------------------------------------------------------------------------------

/// What is going to be printed: a data class may have the same to say as the other one, which is then said once.
struct Page {
    const Terminal& terminal;
    std::string text;

    template <class... Args>
    void print(fmt::format_string<Args...> format, Args&&... args)
    {
        text += fmt::format(format, std::forward<Args>(args)...);
    }
};

std::string indentation(int depth)
{
    return std::string(2 * static_cast<std::size_t>(depth), ' ');
}

/// A value on one line, with its unit.
std::string valueText(const arbor::TProperty& value)
{
    std::string text = value.toString();
    std::replace(text.begin(), text.end(), '\n', ' ');
    return printable(value.getUnit().empty() ? text : text + " " + value.getUnit());
}

void printTree(Page& page, const arbor::TObject& tree, int depth)
{
    for (int n = 0; n < tree.nProperty(); ++n)
        page.print("{}{} = {}\n", indentation(depth), printable(tree.property(n)->name()),
                   valueText(*tree.property(n)));
    for (int n = 0; n < tree.nChild(); ++n) {
        page.print("{}{}\n", indentation(depth),
                   page.terminal.styled(Style::Heading, printable(tree.child(n)->name())));
        printTree(page, *tree.child(n), depth + 1);
    }
}

void printEntry(Page& page, const Entry& entry, int depth)
{
    if (const Tree tree = entry.tree()) {
        page.print("{}{}\n", indentation(depth), page.terminal.styled(Style::Heading, printable(entry.key)));
        printTree(page, *tree, depth + 1);
    } else
        page.print("{}{} = {}\n", indentation(depth), printable(entry.key), printable(entry.text));
}

void printAll(Page& page, const std::vector<Entry>& entries, KelDataClass dataClass)
{
    std::string group;
    bool isFirst = true;
    for (const Entry& entry : entries) {
        if (isFirst || entry.group != group)
            page.print("{} {}\n", className(dataClass), page.terminal.styled(Style::Heading, printable(entry.group)));
        isFirst = false;
        group = entry.group;
        printEntry(page, entry, 1);
    }
}

// ---- one path -----------------------------------------------------------------------------------------------------

/// Whether a path is an entry's or leads into it; what is left of it then.
bool leadsInto(const std::string& path, const std::string& entry, std::string& rest)
{
    if (path == entry) {
        rest.clear();
        return true;
    }
    if (!path.starts_with(entry + "/"))
        return false;
    rest = path.substr(entry.size() + 1);
    return true;
}

/// Prints what a path within a tree leads to: a value alone, or the tree below. False when it leads nowhere.
bool printInTree(Page& page, const arbor::TObject& tree, const std::string& path, bool xml)
{
    if (path.empty()) {
        if (xml)
            page.print("{}\n", arbor::TObject::toXMLString(&tree));
        else
            printTree(page, tree, 0);
        return true;
    }
    if (const arbor::TProperty* value = tree.property(path); value != nullptr && !xml) {
        page.print("{}\n", valueText(*value));
        return true;
    }
    // Names may hold a slash: the longest name that fits comes first.
    for (std::size_t end = path.size(); end != std::string::npos && end > 0; end = path.rfind('/', end - 1)) {
        const arbor::TObject* child = tree.child(path.substr(0, end));
        if (child != nullptr && printInTree(page, *child, end < path.size() ? path.substr(end + 1) : "", xml))
            return true;
    }
    return false;
}

bool printPath(Page& page, const std::vector<Entry>& entries, const std::string& path, bool xml)
{
    const std::string inDefaultGroup = KelBase::_defaultSettingsPath + "/" + path;
    for (const std::string& full : {path, inDefaultGroup}) {
        bool isGroup = false;
        for (const Entry& entry : entries) {
            std::string rest;
            if (entry.group == full) {
                isGroup = true;
                if (xml)
                    page.print("{}\n", entry.text);
                else
                    printEntry(page, entry, 0);
            } else if (leadsInto(full, entry.path(), rest)) {
                const Tree tree = entry.tree();
                if (tree && printInTree(page, *tree, rest, xml))
                    return true;
                if (!tree && rest.empty()) {
                    page.print("{}\n", xml ? entry.text : printable(entry.text));
                    return true;
                }
            }
        }
        if (isGroup)
            return true;
    }
    return false;
}

// ---- JSON ---------------------------------------------------------------------------------------------------------

Json jsonValue(const arbor::TProperty& value)
{
    if (value.isVector())
        return value.toStringVector();
    if (value.isBoolean())
        return value.toBool();
    if (value.isInteger())
        return value.toInt();
    if (value.isReal() || value.isFloat())
        return jsonNumber(value.toDouble());
    return value.toString();
}

/// Adds the values and groups of a tree. Names may repeat, so both are lists.
void addTree(Json& json, const arbor::TObject& tree)
{
    Json values = Json::array(), groups = Json::array();
    for (int n = 0; n < tree.nProperty(); ++n) {
        const arbor::TProperty& value = *tree.property(n);
        values.push_back({{"name", value.name()}, {"value", jsonValue(value)}, {"unit", value.getUnit()}});
    }
    for (int n = 0; n < tree.nChild(); ++n) {
        groups.push_back({{"name", tree.child(n)->name()}});
        addTree(groups.back(), *tree.child(n));
    }
    json["values"] = values;
    json["groups"] = groups;
}

void addEntries(Json& list, const std::vector<Entry>& entries, KelDataClass dataClass)
{
    for (const Entry& entry : entries) {
        Json json = {{"class", className(dataClass)}, {"group", entry.group}, {"key", entry.key}};
        if (const Tree tree = entry.tree())
            addTree(json, *tree);
        else
            json["text"] = entry.text;
        list.push_back(json);
    }
}

// ---- command ------------------------------------------------------------------------------------------------------

/// What a data class has at the path, or all that it has; empty when it has nothing there.
std::string pageOf(const Options& options, const Terminal& terminal, const std::vector<Entry>& entries,
                   KelDataClass dataClass, bool& isFound)
{
    Page page{terminal, ""};
    if (!options.path.empty())
        isFound = printPath(page, entries, options.path, options.xml);
    else if (options.xml)
        for (const Entry& entry : entries)
            page.print("{}\n", entry.text);
    else
        printAll(page, entries, dataClass);
    return page.text;
}

/// Prints what case and data have at the path: once when they agree, else with the name of the data class above each.
void printPages(Terminal& terminal, const Options& options, const std::map<KelDataClass, std::string>& pages)
{
    const bool differ = pages.size() == 2 && pages.begin()->second != pages.rbegin()->second;
    for (const auto& [dataClass, page] : pages) {
        if (differ && !options.xml)
            terminal.print("{}\n", terminal.styled(Style::Heading, className(dataClass)));
        terminal.write(page);
        if (!differ)
            return;
    }
}

void runSettings(const Options& options, Session& session)
{
    Model model(options.file, options.format);
    model.openAll();
    Json json = {{"file", options.file}, {"settings", Json::array()}};
    std::map<KelDataClass, std::string> pages; // of the classes that have something at the path
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA}) {
        if (!model.has(dataClass) || (options.data && dataClass == KEL_CASE) ||
            (options.caseOnly && dataClass == KEL_DATA))
            continue;
        const std::vector<Entry> entries = entriesOf(model.reader(), dataClass);
        model.expectNoErrors();
        bool isFound = false;
        if (options.json)
            addEntries(json["settings"], entries, dataClass);
        else if (const std::string page = pageOf(options, session.terminal, entries, dataClass, isFound);
                 options.path.empty())
            session.terminal.write(page);
        else if (isFound)
            pages[dataClass] = page;
    }
    if (options.json)
        session.terminal.write(documentText(json));
    if (options.path.empty())
        return;
    printPages(session.terminal, options, pages);
    if (!pages.empty())
        return;
    session.terminal.complain(aboutFile(options.file, "has no setting " + options.path));
    session.exitCode = EXIT_NO;
}

} // namespace

void addSettingsCommand(CLI::App& tool, Session& session)
{
    CLI::App* command = addCommand(tool, "settings", "Shows the settings that travel with a model",
                                   {"kel settings cube.case.kel", "kel settings cube.case.kel settings/Solver",
                                    "kel settings --data --xml run.data.kel timeLevels"});
    auto options = std::make_shared<Options>();
    command->add_option("FILE", options->file, "Model whose settings are shown")->required();
    command->add_option("PATH", options->path,
                        "A group, an entry or a value: pieces with '/' between them; the group 'settings' may be left "
                        "out");
    CLI::Option* data = command->add_flag("--data", options->data, "The settings of the data only");
    command->add_flag("--case", options->caseOnly, "The settings of the case only")->excludes(data);
    command->add_flag("--xml", options->xml, "Print the text that the file holds");
    addInputOptions(*command, options->format);
    command->add_flag("--json", options->json, "Print JSON, for programs")->excludes("PATH")->excludes("--xml");
    command->callback([options, &session] { runSettings(*options, session); });
}

} // namespace meridyn::tool
