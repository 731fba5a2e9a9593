#include "arbor/TObject.h"
#include "arbor/TProperty.h"
#include "Command.h"
#include "JsonWriter.h"
#include "Model.h"
#include "Numbers.h"

#include <algorithm>
#include <memory>

namespace meridyn::tool {

namespace {

struct Options {
    std::string file, path;
    std::string format;
    bool data = false;
    bool xml = false;
    bool json = false;
};

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

void printTree(Terminal& terminal, const arbor::TObject& tree, int depth)
{
    for (int n = 0; n < tree.nProperty(); ++n)
        terminal.print("{}{} = {}\n", indentation(depth), printable(tree.property(n)->name()),
                       valueText(*tree.property(n)));
    for (int n = 0; n < tree.nChild(); ++n) {
        terminal.print("{}{}\n", indentation(depth), terminal.styled(Style::Heading, printable(tree.child(n)->name())));
        printTree(terminal, *tree.child(n), depth + 1);
    }
}

void printEntry(Terminal& terminal, const Entry& entry, int depth)
{
    if (const Tree tree = entry.tree()) {
        terminal.print("{}{}\n", indentation(depth), terminal.styled(Style::Heading, printable(entry.key)));
        printTree(terminal, *tree, depth + 1);
    } else
        terminal.print("{}{} = {}\n", indentation(depth), printable(entry.key), printable(entry.text));
}

void printAll(Terminal& terminal, const std::vector<Entry>& entries, KelDataClass dataClass)
{
    std::string group;
    bool isFirst = true;
    for (const Entry& entry : entries) {
        if (isFirst || entry.group != group)
            terminal.print("{} {}\n", dataClass == KEL_CASE ? "case" : "data",
                           terminal.styled(Style::Heading, printable(entry.group)));
        isFirst = false;
        group = entry.group;
        printEntry(terminal, entry, 1);
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
bool printInTree(Terminal& terminal, const arbor::TObject& tree, const std::string& path, bool xml)
{
    if (path.empty()) {
        if (xml)
            terminal.print("{}\n", arbor::TObject::toXMLString(&tree));
        else
            printTree(terminal, tree, 0);
        return true;
    }
    if (const arbor::TProperty* value = tree.property(path); value != nullptr && !xml) {
        terminal.print("{}\n", valueText(*value));
        return true;
    }
    // Names may hold a slash: the longest name that fits comes first.
    for (std::size_t end = path.size(); end != std::string::npos && end > 0; end = path.rfind('/', end - 1)) {
        const arbor::TObject* child = tree.child(path.substr(0, end));
        if (child != nullptr && printInTree(terminal, *child, end < path.size() ? path.substr(end + 1) : "", xml))
            return true;
    }
    return false;
}

bool printPath(Terminal& terminal, const std::vector<Entry>& entries, const std::string& path, bool xml)
{
    const std::string inDefaultGroup = KelBase::_defaultSettingsPath + "/" + path;
    for (const std::string& full : {path, inDefaultGroup}) {
        bool isGroup = false;
        for (const Entry& entry : entries) {
            std::string rest;
            if (entry.group == full) {
                isGroup = true;
                if (xml)
                    terminal.print("{}\n", entry.text);
                else
                    printEntry(terminal, entry, 0);
            } else if (leadsInto(full, entry.path(), rest)) {
                const Tree tree = entry.tree();
                if (tree && printInTree(terminal, *tree, rest, xml))
                    return true;
                if (!tree && rest.empty()) {
                    terminal.print("{}\n", xml ? entry.text : printable(entry.text));
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

void writeValue(JsonWriter& json, const arbor::TProperty& value)
{
    if (value.isVector())
        json.value(value.toStringVector());
    else if (value.isBoolean())
        json.value(value.toBool());
    else if (value.isInteger())
        json.value(value.toInt());
    else if (value.isReal() || value.isFloat())
        json.value(value.toDouble());
    else
        json.value(value.toString());
}

/// Names may repeat, so values and groups are lists.
void writeTree(JsonWriter& json, const arbor::TObject& tree)
{
    json.key("values").beginArray();
    for (int n = 0; n < tree.nProperty(); ++n) {
        const arbor::TProperty& value = *tree.property(n);
        json.beginObject().member("name", value.name()).key("value");
        writeValue(json, value);
        json.member("unit", value.getUnit()).endObject();
    }
    json.endArray().key("groups").beginArray();
    for (int n = 0; n < tree.nChild(); ++n) {
        json.beginObject().member("name", tree.child(n)->name());
        writeTree(json, *tree.child(n));
        json.endObject();
    }
    json.endArray();
}

void writeEntries(JsonWriter& json, const std::vector<Entry>& entries, KelDataClass dataClass)
{
    for (const Entry& entry : entries) {
        json.beginObject().member("class", dataClass == KEL_CASE ? "case" : "data");
        json.member("group", entry.group).member("key", entry.key);
        if (const Tree tree = entry.tree())
            writeTree(json, *tree);
        else
            json.member("text", entry.text);
        json.endObject();
    }
}

// ---- command ------------------------------------------------------------------------------------------------------

void runSettings(const Options& options, Session& session)
{
    Model model(options.file, options.format);
    model.openAll();
    JsonWriter json;
    json.beginObject().member("file", options.file).key("settings").beginArray();
    bool isFound = false;
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA}) {
        if (!model.has(dataClass) || (options.data && dataClass == KEL_CASE))
            continue;
        const std::vector<Entry> entries = entriesOf(model.reader(), dataClass);
        model.expectNoErrors();
        if (options.json)
            writeEntries(json, entries, dataClass);
        else if (!options.path.empty())
            isFound = isFound || printPath(session.terminal, entries, options.path, options.xml);
        else if (options.xml)
            for (const Entry& entry : entries)
                session.terminal.print("{}\n", entry.text);
        else
            printAll(session.terminal, entries, dataClass);
    }
    json.endArray().endObject();
    if (options.json)
        session.terminal.write(json.text());
    if (options.path.empty() || isFound)
        return;
    session.terminal.complain(aboutFile(options.file, "has no setting " + options.path));
    session.exitCode = EXIT_NO;
}

} // namespace

void addSettingsCommand(CLI::App& tool, Session& session)
{
    CLI::App* command = addCommand(tool, "settings", "Shows the settings that travel with a model",
                                   {"kel settings cube.case.kel", "kel settings cube.case.kel settings/Solver",
                                    "kel settings --data --xml cube.data.kel Common > common.xml"});
    auto options = std::make_shared<Options>();
    command->add_option("FILE", options->file, "Model whose settings are shown")->required();
    command->add_option("PATH", options->path,
                        "A group, an entry or a value: pieces with '/' between them; the group 'settings' may be left "
                        "out");
    command->add_flag("--data", options->data, "The settings of the data only");
    command->add_flag("--xml", options->xml, "Print the text that the file holds");
    addInputFormatOption(*command, options->format);
    command->add_flag("--json", options->json, "Print JSON, for programs")->excludes("PATH")->excludes("--xml");
    command->callback([options, &session] { runSettings(*options, session); });
}

} // namespace meridyn::tool
