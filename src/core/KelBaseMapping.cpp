#include "KelBase.h"
#include "KelCompoundVariableAttributeProvider.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelVariableAttributeFile.h"
#include "solution/MappingDiscovery.h"
#include "text/Printing.h"

#include <atomic>
#include <cstdlib>
#include <memory>

namespace meridyn {

namespace {

constexpr const char* reportVariable = "KEL_REPORT_VARIABLE_CONFIGS";
constexpr const char* generic = "MERIDYN_GENERIC";
constexpr const char* common = "MERIDYN_COMMON";

void reportRegistry(const MappingRegistry& files)
{
    for (const auto& [sourceAndTarget, path] : files) {
        printLine("Variable Config: ");
        printLine("  Source: " + sourceAndTarget.first);
        printLine("  Target: " + sourceAndTarget.second);
        printFlushedLine("  File:   " + path);
    }
}

} // namespace

void KelBase::initializeVariableMappingConfigurations()
{
    static std::atomic<bool> isReported{false};
    const MappingDiscovery& discovery = discoveredMappings();
    // The first object tells, and outside of any lock: whoever takes its lines may make a reader.
    if (isReported.exchange(true))
        return;
    if (!discovery.problem.empty())
        getMessageRegistrar()->registerMessage(
            KelWarning(discovery.problem, "initializeVariableMappingConfigurations"));
    if (std::getenv(reportVariable) != nullptr)
        reportRegistry(discovery.files);
}

// ---- choosing the files that lead from source to target --------------------------------

/// The mapping file's path, or null.
static const std::string* findMapping(const std::string& source, const std::string& target)
{
    const MappingRegistry& files = discoveredMappings().files;
    const auto found = files.find({source, target});
    return found != files.end() ? &found->second : nullptr;
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
