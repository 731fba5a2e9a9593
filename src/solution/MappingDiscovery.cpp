#include "solution/MappingDiscovery.h"

#include "KelVersion.h"
#include "solution/MappingTable.h"

#include <boost/filesystem.hpp>
#include <cstdlib>
#include <sstream>

namespace meridyn {

namespace {

namespace fs = boost::filesystem;

constexpr const char* directoryVariable = "KEL_VARIABLE_CONFIG_DIR";

/// Registers every mapping file of the directory; of two for the same vocabularies, the later one.
void registerMappingFiles(const fs::path& directory, MappingRegistry& files)
{
    if (!fs::is_directory(fs::status(directory)))
        return;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
        const std::string path = entry.path().string();
        const auto table = keepMappingTable(path);
        if (table->isMapping())
            files[{table->source, table->target}] = path;
    }
}

std::string unreadableText(const fs::path& directory)
{
    std::ostringstream text;
    text << "It was not possible to read the variable configuration files.\n"
         << "Check existance and permissions of directory '" << directory << "'"; // sic; the path prints quoted
    if (std::getenv(directoryVariable) != nullptr)
        text << " which is defined by the environment variable '" << directoryVariable << "'";
    return text.str();
}

MappingDiscovery discover()
{
    MappingDiscovery discovery;
    bool isNamed = false;
    const fs::path directory = mappingDirectory(isNamed);
    if (isNamed) {
        try {
            registerMappingFiles(directory, discovery.files);
        } catch (const fs::filesystem_error&) { // what was found until then stays
            discovery.problem = unreadableText(directory);
        }
    }
    return discovery;
}

} // namespace

std::string mappingDirectory(bool& isNamed)
{
    isNamed = true;
    if (const char* directory = std::getenv(directoryVariable))
        return directory;
    const std::string rootVariable = "TVR_ROOT" + KelVersion::apiVersionAsString("");
    if (const char* root = std::getenv(rootVariable.c_str()))
        return (fs::path(root) / "commonfiles" / "fluids" / "config" / "variables").string();
    isNamed = false;
    return {};
}

const MappingDiscovery& discoveredMappings()
{
    // Never destroyed: a static of a program may make a reader when the others are gone.
    static const auto* const discovery = new MappingDiscovery(discover());
    return *discovery;
}

} // namespace meridyn
