#include "solution/MappingTable.h"

#include "KelAttributes.h"
#include "solution/FileStamp.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace meridyn {

namespace {

/// A to Z only: the locale has no say in what a file means.
std::string lowerCased(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

bool isTrue(const std::string& text)
{
    const std::string word = lowerCased(text);
    return word == "on" || word == "t" || word == "true" || word == "yes"; // kept: "1" is not
}

void takeHeader(MappingTable& table, const Texts& header)
{
    for (const auto& [key, value] : header) {
        if (key == "Source")
            table.source = value;
        else if (key == "Target")
            table.target = value;
        else if (key == "Case Insensitive Match")
            table.caseInsensitiveMatch = isTrue(value);
        else if (key == "Attribute Name Of Mapped Key")
            table.attributeNameOfMappedKey = value;
        else if (key == "Default Variable Visibility")
            table.defaultVariableVisibility = isTrue(value);
    }
    if (table.attributeNameOfMappedKey.empty() && table.target == "MERIDYN_GENERIC")
        table.attributeNameOfMappedKey = KelAttributes::commonName;
}

/// Moves the entries of a document, which it empties, to their variables.
void moveEntries(MappingTable& table, Texts& entries)
{
    auto variable = table.variables.end(); // the one before: keys mostly ascend, each with several entries
    while (!entries.empty()) {
        auto entry = entries.extract(entries.begin());
        const std::size_t separator = entry.key().find('#'); // kept: the first one, even if it is part of the key
        if (separator == std::string::npos)
            continue;
        const std::string key = table.tableKey(entry.key().substr(0, separator));
        if (variable == table.variables.end() || variable->first != key)
            variable = table.variables.try_emplace(table.variables.end(), key);
        entry.key().erase(0, separator + 1);
        moveEntry(std::move(entry), variable->second, variable->second.end());
    }
}

std::shared_ptr<const MappingTable> readTable(const std::string& path)
{
    auto table = std::make_shared<MappingTable>();
    MappingDocument document = readMappingFile(path);
    table->problem = std::move(document.problem);
    table->root = std::move(document.root);
    takeHeader(*table, document.header);
    moveEntries(*table, document.entries);
    table->keys = std::move(document.keys);
    return table;
}

/// The tables that the process keeps, each with the state of its file when it was read.
class KeptTables {
public:
    /// The table of a file that is as it was when the table was made; null without one.
    std::shared_ptr<const MappingTable> find(const std::string& path) const
    {
        const std::lock_guard lock(_mutex);
        const auto kept = _tables.find(path);
        return kept != _tables.end() && kept->second.stamp == FileStamp::of(path) ? kept->second.table : nullptr;
    }

    void keep(const std::string& path, const FileStamp& stamp, std::shared_ptr<const MappingTable> table)
    {
        const std::lock_guard lock(_mutex);
        _tables.insert_or_assign(path, Kept{stamp, std::move(table)});
    }

private:
    struct Kept {
        FileStamp stamp;
        std::shared_ptr<const MappingTable> table;
    };

    mutable std::mutex _mutex;
    std::map<std::string, Kept> _tables;
};

/// Never destroyed: a static of a program may hold a reader.
KeptTables& keptTables()
{
    static auto* const tables = new KeptTables;
    return *tables;
}

} // namespace

std::string MappingTable::tableKey(const std::string& key) const
{
    return caseInsensitiveMatch ? lowerCased(key) : key;
}

std::shared_ptr<const MappingTable> mappingTable(const std::string& path)
{
    std::shared_ptr<const MappingTable> kept = keptTables().find(path);
    return kept != nullptr ? kept : readTable(path);
}

std::shared_ptr<const MappingTable> keepMappingTable(const std::string& path)
{
    const FileStamp stamp = FileStamp::of(path); // before the reading: a change during it shows
    std::shared_ptr<const MappingTable> table = readTable(path);
    if (table->isMapping() && stamp.isSettled())
        keptTables().keep(path, stamp, table);
    return table;
}

} // namespace meridyn
