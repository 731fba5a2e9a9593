#include "KelVariableAttributeProvider.h"

namespace meridyn {

KelVariableAttributeProvider::~KelVariableAttributeProvider() = default;

bool KelVariableAttributeProvider::getDefaultVariableVisibility() const
{
    return true;
}

std::string KelVariableAttributeProvider::getMappedKey(const std::string&)
{
    return {};
}

std::string KelVariableAttributeProvider::getDatasetName(const std::string& key)
{
    return key;
}

std::string KelVariableAttributeProvider::getVariableName(const std::string& key)
{
    return key;
}

} // namespace meridyn
