#include "KelVariableAttributeFile.h"

#include "KelAttributes.h"
#include "solution/MappingTable.h"

namespace meridyn {

KelVariableAttributeFile::KelVariableAttributeFile(const std::string& path)
    : _table(path.empty() ? std::make_shared<MappingTable>() : mappingTable(path))
{}

KelVariableAttributeFile::~KelVariableAttributeFile() = default;

bool KelVariableAttributeFile::isMappingFile(const std::string& path,
                                             std::pair<std::string, std::string>& sourceAndTarget)
{
    const auto table = mappingTable(path);
    if (!table->isMapping())
        return false;
    sourceAndTarget = {table->source, table->target};
    return true;
}

bool KelVariableAttributeFile::getDefaultVariableVisibility() const
{
    return _table->defaultVariableVisibility;
}

std::string KelVariableAttributeFile::getMappedKey(const std::string& key)
{
    if (_table->attributeNameOfMappedKey.empty())
        return key;
    const std::string mapped = getAttributeValue(key, _table->attributeNameOfMappedKey);
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
    const auto variable = _table->variables.find(_table->tableKey(key));
    if (variable != _table->variables.end())
        for (const auto& [name, value] : variable->second)
            names.push_back(name);
    return names;
}

std::string KelVariableAttributeFile::getAttributeValue(const std::string& key, const std::string& attribute)
{
    const auto variable = _table->variables.find(_table->tableKey(key));
    if (variable == _table->variables.end())
        return {};
    const auto value = variable->second.find(attribute);
    return value != variable->second.end() ? value->second : std::string();
}

} // namespace meridyn
