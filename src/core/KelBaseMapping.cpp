#include "KelBase.h"
#include "KelCompoundVariableAttributeProvider.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelVariableAttributeFile.h"
#include "solution/MappingRegistry.h"

#include <boost/filesystem.hpp>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>

namespace meridyn {

namespace fs = boost::filesystem;

static const char directoryVariable[] = "KEL_VARIABLE_CONFIG_DIR";
static const char reportVariable[] = "KEL_REPORT_VARIABLE_CONFIGS";
static const char generic[] = "MERIDYN_GENERIC";
static const char common[] = "MERIDYN_COMMON";

// ---- finding mapping files -------------------------------------------------------------

/// The directory of mapping files, whether it exists or not; none when the environment does not say.
static std::optional<fs::path> mappingDirectory()
{
    if (const char* directory = std::getenv(directoryVariable))
        return fs::path(directory);
    const std::string rootVariable = "TVR_ROOT" + KelVersion::apiVersionAsString("");
    if (const char* root = std::getenv(rootVariable.c_str()))
        return fs::path(root) / "commonfiles" / "fluids" / "config" / "variables";
    return std::nullopt;
}

/// Registers every mapping file of the directory; of two for the same vocabularies, the later one.
static void registerMappingFiles(const fs::path& directory)
{
    if (!fs::is_directory(fs::status(directory)))
        return;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
        const std::string path = entry.path().string();
        std::pair<std::string, std::string> sourceAndTarget;
        if (KelVariableAttributeFile::isMappingFile(path, sourceAndTarget))
            mappingRegistry()[sourceAndTarget] = path;
    }
}

static std::string unreadableText(const fs::path& directory)
{
    std::ostringstream text;
    text << "It was not possible to read the variable configuration files.\n"
         << "Check existance and permissions of directory '" << directory << "'"; // sic; the path prints quoted
    if (std::getenv(directoryVariable) != nullptr)
        text << " which is defined by the environment variable '" << directoryVariable << "'";
    return text.str();
}

static void reportRegistry()
{
    for (const auto& [sourceAndTarget, path] : mappingRegistry())
        std::cout << "Variable Config: \n"
                  << "  Source: " << sourceAndTarget.first << "\n"
                  << "  Target: " << sourceAndTarget.second << "\n"
                  << "  File:   " << path << std::endl;
}

void KelBase::initializeVariableMappingConfigurations()
{
    static bool initialized = false;
    if (initialized)
        return;
    if (const auto directory = mappingDirectory()) {
        try {
            registerMappingFiles(*directory);
        } catch (const fs::filesystem_error&) {
            getMessageRegistrar()->registerMessage(
                KelWarning(unreadableText(*directory), "initializeVariableMappingConfigurations"));
        }
    }
    initialized = true;
    if (std::getenv(reportVariable) != nullptr)
        reportRegistry();
}

// ---- choosing the files that lead from source to target --------------------------------

/// The mapping file's path, or null.
static const std::string* findMapping(const std::string& source, const std::string& target)
{
    const auto found = mappingRegistry().find({source, target});
    return found != mappingRegistry().end() ? &found->second : nullptr;
}

using Chain = std::unique_ptr<KelVariableAttributeProvider>;

/// Lets the mapping file take over where `chain`, which may be null, ends.
static Chain append(Chain chain, const std::string& path)
{
    auto file = std::make_unique<KelVariableAttributeFile>(path);
    return std::make_unique<KelCompoundVariableAttributeProvider>(chain.release(), file.release());
}

/// The chain from source to target, or as far towards it as there are files; null if there are none.
static Chain makeProvider(const std::string& source, const std::string& target)
{
    Chain first;
    if (const std::string* own = findMapping(source, source))
        first = std::make_unique<KelVariableAttributeFile>(*own);
    if (first && source == target)
        return first;
    if (const std::string* direct = findMapping(source, target))
        return append(std::move(first), *direct);

    const std::string* const toGeneric = findMapping(source, generic);
    if (toGeneric == nullptr)
        return first;
    Chain viaGeneric = append(std::move(first), *toGeneric);
    const std::string* const genericToCommon = findMapping(generic, common);
    const std::string* const commonToTarget = findMapping(common, target);
    if (genericToCommon != nullptr && commonToTarget != nullptr) // kept: preferred to the shorter way below
        return append(append(std::move(viaGeneric), *genericToCommon), *commonToTarget);
    if (const std::string* genericToTarget = findMapping(generic, target))
        return append(std::move(viaGeneric), *genericToTarget);
    return viaGeneric;
}

void KelBase::initializeVariableAttributeProvider(const std::string& source, const std::string& target)
{
    const std::string reached = target.empty() ? source : target; // a copy: it may be the member that is set below
    if (source == _solverType && reached == _variableMappingSource && _variableAttributeProvider != nullptr)
        return;
    if (Chain provider = makeProvider(source, reached)) // none: the previous one stays
        setVariableAttributeProvider(provider.release(), true);
    _variableMappingSource = reached;
}

} // namespace meridyn
