#include "KelMappingFiles.h"

#include "solution/MappingDiscovery.h"
#include "solution/MappingTable.h"

#include <algorithm>
#include <boost/filesystem.hpp>
#include <map>
#include <tuple>

namespace meridyn {

namespace {

namespace fs = boost::filesystem;

std::string problemOf(const MappingTable& table)
{
    if (!table.problem.empty())
        return "is no mapping file: " + table.problem;
    if (table.isMapping())
        return {};
    if (table.root != "mapping")
        return "is no mapping file: its root element is '" + table.root + "', 'mapping' expected";
    return std::string("is not used: its header has no '") + (table.source.empty() ? "Source'" : "Target'");
}

bool isListedBefore(const KelMappingFile& a, const KelMappingFile& b)
{
    return std::tie(a.source, a.target, a.path) < std::tie(b.source, b.target, b.path);
}

} // namespace

std::string KelMappingFiles::folder()
{
    bool isNamed = false;
    return mappingDirectory(isNamed);
}

KelMappingFile KelMappingFiles::read(const std::string& path)
{
    const auto table = mappingTable(path);
    return {path, table->source, table->target, table->attributeNameOfMappedKey, table->keys, false, problemOf(*table)};
}

std::vector<KelMappingFile> KelMappingFiles::discovered()
{
    std::vector<KelMappingFile> files;
    for (const auto& [sourceAndTarget, path] : discoveredMappings().files) {
        files.push_back(read(path));
        files.back().isUsed = true;
        std::tie(files.back().source, files.back().target) = sourceAndTarget; // also of a file that has gone
    }
    return files;
}

std::vector<KelMappingFile> KelMappingFiles::inFolder(const std::string& folder, std::string& problem)
{
    std::vector<KelMappingFile> files;
    std::map<std::pair<std::string, std::string>, std::size_t> latest;
    boost::system::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        boost::system::error_code ignored;
        if (fs::is_directory(entry->path(), ignored))
            continue;
        files.push_back(read(entry->path().string()));
        if (files.back().problem.empty())
            latest[{files.back().source, files.back().target}] = files.size() - 1;
    }
    if (error)
        problem = folder + ": " + error.message();
    for (const auto& [sourceAndTarget, index] : latest)
        files[index].isUsed = true;
    std::sort(files.begin(), files.end(), isListedBefore);
    return files;
}

} // namespace meridyn
