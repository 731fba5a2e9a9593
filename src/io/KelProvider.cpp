#include "KelProvider.h"

#include "KelSettingObject.h"
#include "text/Printing.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace meridyn {

namespace {

/// Stands for the mesh that is being read now.
constexpr int currentMesh = -1;

template <typename T>
bool contains(const std::vector<T>& list, T value)
{
    return std::find(list.begin(), list.end(), value) != list.end();
}

} // namespace

KelProvider::KelProvider() : _variableRecipeProvider(nullptr)
{}

KelProvider::~KelProvider() = default;

// ---- run

void KelProvider::setVariableTarget(const std::string& target)
{
    if (target == _variableTarget) {
        return;
    }
    initializeVariableAttributeProvider(getSolverType(), target);
    _variableTarget = target;
}

void KelProvider::setVariableRecipeProvider(KelVariableRecipeProvider* provider)
{
    _variableRecipeProvider = provider;
}

bool KelProvider::startReading(KelDataClass)
{
    return false;
}

bool KelProvider::endReading(KelDataClass)
{
    return false;
}

bool KelProvider::isReadingData() const
{
    return false;
}

void KelProvider::setIOMode(KelIOMode)
{}

void KelProvider::setMPIComm(void*)
{}

void KelProvider::getLog(KelDataClass, std::vector<std::pair<std::string, std::string>>& entries) const
{
    entries.clear();
}

// ---- settings

void KelProvider::getSettingsKeys(KelDataClass, std::vector<std::string>& keys) const
{
    keys.clear();
}

void KelProvider::getSettingString(KelDataClass, const std::string&, std::string&, const std::string&) const
{}

KelSetting KelProvider::getSetting(const std::string& key, KelDataClass dataClass, const std::string& group) const
{
    std::string text;
    getSettingString(dataClass, key, text, group);
    return text.empty() ? KelSetting() : KelSetting::fromSettingString(text);
}

KelVariant KelProvider::getSettings(KelDataClass dataClass, const std::string& name, short index) const
{
    if (dataClass == KEL_CASE || dataClass == KEL_DATA) {
        const KelSetting& common = commonSetting(dataClass);
        if (common.isValid()) {
            const KelSettingAttribute attribute = common.attribute(name);
            if (attribute.isValid()) {
                return KelVariant(attribute.property());
            }
        }
    }
    return KelVariant(lookupSetting(name, index));
}

const KelSetting& KelProvider::commonSetting(KelDataClass dataClass) const
{
    KelSetting& common = _commonSettings[dataClass];
    if (!common.isTouched()) {
        KelSetting answer = getSetting("Common", dataClass, _defaultSettingsPath);
        if (answer.isValid()) {
            common.swap(answer);
        }
        // Also without an answer: a file is asked at most once.
        common.setTouched(true);
    }
    return common;
}

void KelProvider::dump(std::string fileName) const
{
    if (const KelSettingObject* settings = settingsObject()) {
        std::ofstream(fileName) << arbor::TObject::toXMLString(settings);
    }
}

void KelProvider::print(bool flag) const
{
    if (const KelSettingObject* settings = settingsObject()) {
        std::ostringstream text;
        settings->print(text, 0, flag, false);
        printLines(text.str());
    }
}

// ---- mesh queries

bool KelProvider::hasMeshId(int meshId) const
{
    return contains(availableMeshIds(KEL_CASE), meshId);
}

std::vector<int> KelProvider::availableMeshIds(KelDataClass) const
{
    return {};
}

bool KelProvider::hasTarget(int meshId, KelTargetCategory target) const
{
    return contains(availableTargets(meshId, KEL_CASE), target);
}

bool KelProvider::hasTarget(KelTargetCategory target) const
{
    return hasTarget(currentMesh, target);
}

std::vector<KelTargetCategory> KelProvider::availableTargets(int, KelDataClass) const
{
    return {};
}

std::vector<KelTargetCategory> KelProvider::availableTargets() const
{
    return availableTargets(currentMesh, KEL_CASE);
}

bool KelProvider::hasPartition(int meshId, int partitionId) const
{
    return contains(availablePartitionIds(meshId, KEL_CASE), partitionId);
}

bool KelProvider::hasPartition(int partitionId) const
{
    return hasPartition(currentMesh, partitionId);
}

unsigned64 KelProvider::getPartitionCount(int meshId) const
{
    return availablePartitionIds(meshId, KEL_CASE).size();
}

unsigned64 KelProvider::getPartitionCount() const
{
    return getPartitionCount(currentMesh);
}

std::vector<int> KelProvider::availablePartitionIds(int, KelDataClass) const
{
    return {};
}

std::vector<int> KelProvider::availablePartitionIds() const
{
    return availablePartitionIds(currentMesh, KEL_CASE);
}

// ---- time levels

void KelProvider::startReadingTimeLevel(int level) const
{
    const std::vector<int>& known = getTimeLevels();
    if (level == KEL_LATEST_TIME_LEVEL ? !known.empty() : level >= 0 && contains(known, level)) {
        setTimeLevel(level);
    }
}

// ---- files

bool KelProvider::fileExists(const std::string& path) const
{
    return std::ifstream(path).good();
}

// ---- run-time hooks

void KelProvider::setHeavyDataCacheMode(KelDataCacheMode)
{}

void KelProvider::setReadAllSettings(bool)
{}

void KelProvider::setSkipReadZoneTopology(bool)
{}

void KelProvider::getSettingsGroups(KelDataClass, std::vector<std::string>& groups) const
{
    groups.clear();
}

void KelProvider::getSettingsKeysOfGroup(KelDataClass, const std::string&, std::vector<std::string>& keys) const
{
    keys.clear();
}

unsigned64 KelProvider::getLocalElemIdsInZone(int, unsigned64*, unsigned64) const
{
    return 0;
}

int KelProvider::getPartitionCountOfCells() const
{
    return 0;
}

} // namespace meridyn
