#include "KelPolyMeshSettingsParser.h"

#include "FoamDictionary.h"
#include "FoamError.h"

#include <algorithm>

namespace meridyn::polymesh {

namespace {

using Values = std::vector<std::pair<std::string, std::string>>;

/// A text that is one quoted piece, without its quotes.
std::string unquoted(const std::string& text)
{
    const bool isQuoted = text.size() >= 2 && text.front() == '"' && text.find('"', 1) == text.size() - 1;
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

void collect(const FoamDictionary& dictionary, const std::string& path, Values& values)
{
    for (const FoamDictionary::Entry& entry : dictionary.entries) {
        const std::string name = path.empty() ? entry.name : path + "/" + entry.name;
        if (entry.kind == FoamDictionary::Entry::Dictionary)
            collect(entry.dictionary, name, values);
        else if (entry.kind == FoamDictionary::Entry::Text)
            values.emplace_back(name, unquoted(entry.text));
    }
}

} // namespace

KelPolyMeshSettingsParser::KelPolyMeshSettingsParser() = default;

KelPolyMeshSettingsParser::~KelPolyMeshSettingsParser() = default;

std::string KelPolyMeshSettingsParser::name() const
{
    return parserName;
}

Values KelPolyMeshSettingsParser::values(const std::string& name, const std::string& text)
{
    ByteSource source(name, text);
    FoamReader reader(source);
    reader.readHeader();
    Values values;
    collect(FoamDictionary::read(reader), {}, values);
    return values;
}

bool KelPolyMeshSettingsParser::parseSetting(KelDataClass, const std::string& text1, const std::string& text2,
                                             std::pair<std::string, std::string>& result, DataInterface*)
{
    try {
        const Values all = values(text1, text2);
        if (all.empty())
            return false;
        result = {text1 + "/" + all.front().first, all.front().second};
        return true;
    } catch (const FoamError&) {
        return false;
    }
}

bool KelPolyMeshSettingsParser::parseSettingsDataSet(KelDataClass, const std::string& text1, const std::string& text2,
                                                     std::map<std::string, std::string>& result, DataInterface*,
                                                     const std::vector<std::string>& keywords)
{
    try {
        for (const auto& [path, value] : values(text1, text2)) {
            const std::string first = path.substr(0, path.find('/'));
            if (keywords.empty() || std::find(keywords.begin(), keywords.end(), first) != keywords.end())
                result[text1 + "/" + path] = value;
        }
        return true;
    } catch (const FoamError&) {
        return false;
    }
}

} // namespace meridyn::polymesh
