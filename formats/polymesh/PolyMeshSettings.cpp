// Settings of KelPolyMeshProvider: the dictionaries of a case, and the names of its times.
#include "ByteSource.h"
#include "FoamError.h"
#include "FoamReader.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelPolyMeshProvider.h"
#include "KelPolyMeshSettingsParser.h"
#include "KelSetting.h"
#include "KelSettingAttribute.h"
#include "PolyMeshCase.h"

#include <algorithm>

namespace meridyn {

namespace {

constexpr const char* timesGroup = "timeLevels";

/// A dictionary of more bytes is left out.
constexpr std::uint64_t largestDictionary = std::uint64_t{16} << 20U;

/// The text of a file that is a dictionary by its head; empty for any other.
std::string dictionaryText(const std::string& path)
{
    ByteSource head(path);
    if (FoamReader(head).readHeader().className != "dictionary" || head.leftAtMost() > largestDictionary * 8)
        return {};
    std::string text;
    for (ByteSource source(path); source.ensure(1); source.advance(source.end())) {
        text.append(source.begin(), source.end());
        if (text.size() > largestDictionary)
            return {};
    }
    return text;
}

} // namespace

/// A dictionary that cannot be read is reported and left out: the mesh does not need it.
void KelPolyMeshProvider::readSettings()
{
    _case->dictionaries.clear();
    for (const char* folder : {"constant", "system"})
        for (const std::string& name : _case->folder.filesIn(folder)) {
            try {
                const std::string path = _case->folder.file(folder, name);
                const std::string text = dictionaryText(path);
                if (text.empty())
                    continue;
                _case->dictionaries[name] = KelPolyMeshSettingsParser::values(path, text);
                addSettingsDataSet(KEL_CASE, name, text, parserName(), {});
            } catch (const FoamError& error) {
                getMessageRegistrar()->registerMessage(
                    KelWarning(std::string("settings left out: ") + error.what(), "openData"));
            }
        }
}

void KelPolyMeshProvider::getSettingsGroups(KelDataClass dataClass, std::vector<std::string>& groups) const
{
    groups.clear();
    if (_case && dataClass == KEL_CASE)
        for (const auto& [name, values] : _case->dictionaries)
            groups.push_back(name);
    if (_case && dataClass == KEL_DATA && !_case->folder.times().empty())
        groups.emplace_back(timesGroup);
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
    if (_case && dataClass == KEL_CASE && _case->dictionaries.count(group) != 0)
        for (const auto& [key, value] : _case->dictionaries.at(group))
            if (std::find(keys.begin(), keys.end(), key) == keys.end())
                keys.push_back(key);
    if (_case && dataClass == KEL_DATA && group == timesGroup)
        for (std::size_t level = 0; level < _case->folder.times().size(); ++level)
            keys.push_back(std::to_string(level));
}

/// Of several entries of one name the last one counts.
void KelPolyMeshProvider::getSettingString(KelDataClass dataClass, const std::string& key, std::string& text,
                                           const std::string& group) const
{
    if (_case && dataClass == KEL_CASE && _case->dictionaries.count(group) != 0)
        for (const auto& [path, value] : _case->dictionaries.at(group))
            if (path == key)
                text = value;
    if (_case && dataClass == KEL_DATA && group == timesGroup)
        for (std::size_t level = 0; level < _case->folder.times().size(); ++level)
            if (std::to_string(level) == key)
                text = _case->folder.times()[level].name;
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
