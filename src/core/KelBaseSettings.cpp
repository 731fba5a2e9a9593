#include "core/DataInterface.h"
#include "core/SettingsProvider.h"
#include "KelBase.h"
#include "KelSettingsParser.h"

namespace meridyn {

using SettingsParsers = std::map<std::string, KelSettingsParser*>;

/// The parser of that name, else the generic one, else null.
static KelSettingsParser* findParser(const SettingsParsers& parsers, const std::string& name)
{
    auto found = parsers.find(name);
    if (found == parsers.end()) {
        found = parsers.find("MERIDYN_GENERIC");
    }
    return found == parsers.end() ? nullptr : found->second;
}

void KelBase::registerSettingsParser(KelSettingsParser* parser)
{
    if (parser != nullptr) {
        _settingsParsers[parser->name()] = parser;
    }
}

bool KelBase::addSetting(KelDataClass dataClass, const std::string& text1, const std::string& text2,
                         const std::string& parserName)
{
    KelSettingsParser* const parser = findParser(_settingsParsers, parserName);
    if (parser == nullptr) {
        return false;
    }
    std::pair<std::string, std::string> setting;
    if (!parser->parseSetting(dataClass, text1, text2, setting, _data.get())) {
        return false;
    }
    _data->settings->store(setting.first, setting.second);
    return true;
}

bool KelBase::addSettingsDataSet(KelDataClass dataClass, const std::string& text1, const std::string& text2,
                                 const std::string& parserName, const std::vector<std::string>& keywords)
{
    KelSettingsParser* const parser = findParser(_settingsParsers, parserName);
    if (parser == nullptr) {
        return false;
    }
    std::map<std::string, std::string> settings;
    if (!parser->parseSettingsDataSet(dataClass, text1, text2, settings, _data.get(), keywords)) {
        return false;
    }
    for (const auto& [path, value] : settings) {
        _data->settings->store(path, value);
    }
    return true;
}

const void* KelBase::lookupSetting(const std::string& name, short index) const
{
    return _data->settings->lookup(name, index);
}

const KelSettingObject* KelBase::settingsObject() const
{
    return _data->settings->root();
}

} // namespace meridyn
