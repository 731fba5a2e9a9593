#include "KelVariableAttributeFile.h"

#include "KelAttributes.h"
#include "solution/MappingDocument.h"

#include <algorithm>
#include <map>

namespace meridyn {

/// A to Z only: the locale has no say in what a file means.
static std::string lowerCased(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

static bool isTrue(const std::string& text)
{
    const std::string word = lowerCased(text);
    return word == "on" || word == "t" || word == "true" || word == "yes"; // kept: "1" is not
}

struct KelVariableAttributeFile::Contents {
    bool caseInsensitiveMatch = false;
    bool defaultVariableVisibility = true;
    std::string attributeNameOfMappedKey;
    std::map<std::string, Texts> variables;

    void takeHeader(const Texts& header);
    void moveEntries(Texts& entries);

    std::string tableKey(const std::string& key) const { return caseInsensitiveMatch ? lowerCased(key) : key; }
};

void KelVariableAttributeFile::Contents::takeHeader(const Texts& header)
{
    std::string target;
    for (const auto& [key, value] : header) {
        if (key == "Case Insensitive Match")
            caseInsensitiveMatch = isTrue(value);
        else if (key == "Attribute Name Of Mapped Key")
            attributeNameOfMappedKey = value;
        else if (key == "Target")
            target = value;
        else if (key == "Default Variable Visibility")
            defaultVariableVisibility = isTrue(value);
    }
    if (attributeNameOfMappedKey.empty() && target == "MERIDYN_GENERIC")
        attributeNameOfMappedKey = KelAttributes::commonName;
}

void KelVariableAttributeFile::Contents::moveEntries(Texts& entries)
{
    auto variable = variables.end(); // the one before: keys mostly ascend, each with several entries
    while (!entries.empty()) {
        auto entry = entries.extract(entries.begin());
        const std::size_t separator = entry.key().find('#'); // kept: the first one, even if it is part of the key
        if (separator == std::string::npos)
            continue;
        const std::string key = tableKey(entry.key().substr(0, separator));
        if (variable == variables.end() || variable->first != key)
            variable = variables.try_emplace(variables.end(), key);
        entry.key().erase(0, separator + 1);
        moveEntry(std::move(entry), variable->second, variable->second.end());
    }
}

KelVariableAttributeFile::KelVariableAttributeFile(const std::string& path)
{
    const auto contents = std::make_shared<Contents>();
    if (!path.empty()) {
        MappingDocument document = readMappingFile(path, MappingParts::ALL);
        contents->takeHeader(document.header);
        contents->moveEntries(document.entries);
    }
    _contents = contents;
}

KelVariableAttributeFile::~KelVariableAttributeFile() = default;

bool KelVariableAttributeFile::isMappingFile(const std::string& path,
                                             std::pair<std::string, std::string>& sourceAndTarget)
{
    const MappingDocument document = readMappingFile(path, MappingParts::HEADER);
    const auto source = document.header.find("Source");
    const auto target = document.header.find("Target");
    if (source == document.header.end() || target == document.header.end())
        return false; // neither can be empty: a header has no empty values
    sourceAndTarget = {source->second, target->second};
    return true;
}

bool KelVariableAttributeFile::getDefaultVariableVisibility() const
{
    return _contents->defaultVariableVisibility;
}

std::string KelVariableAttributeFile::getMappedKey(const std::string& key)
{
    if (_contents->attributeNameOfMappedKey.empty())
        return key;
    const std::string mapped = getAttributeValue(key, _contents->attributeNameOfMappedKey);
    return mapped.empty() ? key : mapped;
}

std::string KelVariableAttributeFile::getDatasetName(const std::string& key)
{
    const std::string name = getAttributeValue(key, KelAttributes::datasetName);
    return name.empty() ? key : name;
}

std::vector<std::string> KelVariableAttributeFile::getSupportedAttributes(const std::string& key) const
{
    std::vector<std::string> names;
    const auto variable = _contents->variables.find(_contents->tableKey(key));
    if (variable != _contents->variables.end())
        for (const auto& [name, value] : variable->second)
            names.push_back(name);
    return names;
}

std::string KelVariableAttributeFile::getAttributeValue(const std::string& key, const std::string& attribute)
{
    const auto variable = _contents->variables.find(_contents->tableKey(key));
    if (variable == _contents->variables.end())
        return {};
    const auto value = variable->second.find(attribute);
    return value != variable->second.end() ? value->second : std::string();
}

} // namespace meridyn
