// Settings of KelPolyMeshProvider: the dictionaries of a case, and the names of its times.
#include "ByteSource.h"
#include "FoamDictionary.h"
#include "FoamError.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelPolyMeshProvider.h"
#include "KelPolyMeshSettingsParser.h"
#include "KelSetting.h"
#include "KelSettingAttribute.h"
#include "KelTimes.h"
#include "PolyMeshCase.h"

#include <cmath>

namespace meridyn {

using namespace polymesh;

namespace {

/// The text of an entry of a small dictionary; empty when there is no such file, or it cannot be read.
std::string entryOf(const std::string& path, const char* name)
{
    if (!ByteSource::exists(path))
        return {};
    try {
        ByteSource source(path);
        FoamReader reader(source);
        reader.readHeader();
        return FoamDictionary::read(reader).text(name);
    } catch (const FoamError&) {
        return {}; // the ledger names it
    }
}

} // namespace

/// What the program says that wrote the folder, whose name is rounded; else the number in the name.
double KelPolyMeshProvider::Case::secondsOf(std::size_t time) const
{
    const CaseFolder::Time& level = folder.times()[time];
    double seconds = 0;
    const std::string value = entryOf(folder.file(level.name, "uniform/time"), "value");
    return foamNumber(value, seconds) && std::isfinite(seconds) ? seconds : level.value;
}

const CaseSettings& KelPolyMeshProvider::Case::settingsOf(KelDataClass dataClass)
{
    if (dataClass == KEL_DATA && !hasDataSettings) {
        settings.find(KEL_DATA);
        hasDataSettings = true;
    }
    return settings;
}

/// A dictionary that cannot be read is reported and left out: the mesh does not need it.
void KelPolyMeshProvider::readSettings()
{
    _case->settings.find(KEL_CASE);
    for (const std::string& group : _case->settings.groups(KEL_CASE))
        if (const std::string text = _case->settings.text(group); !text.empty())
            addSettingsDataSet(KEL_CASE, group, text, parserName(), {});
    for (const KelSourceItem& item : _case->settings.leftOut(KEL_CASE))
        if (item.reason == KelNotRead::NotReadable)
            getMessageRegistrar()->registerMessage(KelWarning(
                "settings left out: " + _case->folder.path() + "/" + item.place + ": " + item.text, "openData"));
}

void KelPolyMeshProvider::getSettingsGroups(KelDataClass dataClass, std::vector<std::string>& groups) const
{
    groups.clear();
    if (!_case || (dataClass != KEL_CASE && dataClass != KEL_DATA))
        return;
    if (dataClass == KEL_DATA && !_case->folder.times().empty())
        groups.emplace_back(KelTimes::group);
    const std::vector<std::string>& found = _case->settingsOf(dataClass).groups(dataClass);
    groups.insert(groups.end(), found.begin(), found.end());
}

/// The default group holds nothing but what getSetting makes up.
void KelPolyMeshProvider::getSettingsKeys(KelDataClass, std::vector<std::string>& keys) const
{
    keys.clear();
}

void KelPolyMeshProvider::getSettingsKeysOfGroup(KelDataClass dataClass, const std::string& group,
                                                 std::vector<std::string>& keys) const
{
    keys.clear();
    if (!_case || (dataClass != KEL_CASE && dataClass != KEL_DATA))
        return;
    if (dataClass == KEL_DATA && group == KelTimes::group)
        for (std::size_t level = 0; level < _case->folder.times().size(); ++level)
            keys.push_back(std::to_string(level));
    else
        for (const auto& [key, value] : _case->settingsOf(dataClass).values(dataClass, group))
            keys.push_back(key);
}

void KelPolyMeshProvider::getSettingString(KelDataClass dataClass, const std::string& key, std::string& text,
                                           const std::string& group) const
{
    if (!_case || (dataClass != KEL_CASE && dataClass != KEL_DATA))
        return;
    if (dataClass == KEL_DATA && group == KelTimes::group) {
        for (std::size_t level = 0; level < _case->folder.times().size(); ++level)
            if (std::to_string(level) == key)
                text = KelTimes::text(_case->secondsOf(level));
        return;
    }
    for (const auto& [path, value] : _case->settingsOf(dataClass).values(dataClass, group))
        if (path == key)
            text = value;
    if (key == "Common") {
        const KelSetting setting = getSetting(key, dataClass, group);
        if (setting.isValid())
            text = setting.toSettingString();
    }
}

KelSetting KelPolyMeshProvider::getSetting(const std::string& key, KelDataClass, const std::string& group) const
{
    if (!_case || key != "Common" || group != _defaultSettingsPath)
        return {};
    KelSetting setting = KelSetting::get("Common");
    setting.getAttributeString("Solver", true) = getSolverType();
    setting.getAttributeString("Version", true) = std::string("2.0");
    setting.getAttributeString("Origin", true) = std::string("OpenFOAM case");
    return setting;
}

} // namespace meridyn
