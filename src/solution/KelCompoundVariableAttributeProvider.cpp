#include "KelCompoundVariableAttributeProvider.h"

#include "KelAttributes.h"

#include <algorithm>
#include <iterator>

namespace meridyn {

// A missing provider answers nothing.

static std::string mappedKeyOf(KelVariableAttributeProvider* provider, const std::string& key)
{
    return provider != nullptr ? provider->getMappedKey(key) : std::string();
}

static std::string variableNameOf(KelVariableAttributeProvider* provider, const std::string& key)
{
    return provider != nullptr ? provider->getVariableName(key) : std::string();
}

static std::string attributeValueOf(KelVariableAttributeProvider* provider, const std::string& key,
                                    const std::string& attribute)
{
    return provider != nullptr ? provider->getAttributeValue(key, attribute) : std::string();
}

static std::vector<std::string> sortedAttributesOf(const KelVariableAttributeProvider* provider, const std::string& key)
{
    std::vector<std::string> names;
    if (provider != nullptr)
        names = provider->getSupportedAttributes(key);
    std::sort(names.begin(), names.end());
    return names;
}

/// The key to ask the second provider with.
static std::string keyForSecond(KelVariableAttributeProvider* first, const std::string& key)
{
    const std::string mapped = mappedKeyOf(first, key);
    return mapped.empty() ? key : mapped;
}

KelCompoundVariableAttributeProvider::KelCompoundVariableAttributeProvider(KelVariableAttributeProvider* first,
                                                                           KelVariableAttributeProvider* second)
    : _first(first), _second(second)
{}

KelCompoundVariableAttributeProvider::~KelCompoundVariableAttributeProvider()
{
    _first.reset(); // before the second, unlike members on their own
}

bool KelCompoundVariableAttributeProvider::getDefaultVariableVisibility() const
{
    if (_first)
        return _first->getDefaultVariableVisibility();
    return _second ? _second->getDefaultVariableVisibility() : true;
}

std::string KelCompoundVariableAttributeProvider::getMappedKey(const std::string& key)
{
    if (!_second)
        return mappedKeyOf(_first.get(), key);
    return _second->getMappedKey(keyForSecond(_first.get(), key)); // kept: also when it is empty
}

std::string KelCompoundVariableAttributeProvider::getVariableName(const std::string& key)
{
    const std::string name = variableNameOf(_second.get(), keyForSecond(_first.get(), key));
    return name.empty() ? variableNameOf(_first.get(), key) : name;
}

std::vector<std::string> KelCompoundVariableAttributeProvider::getSupportedAttributes(const std::string& key) const
{
    std::vector<std::string> ofSecond = sortedAttributesOf(_second.get(), keyForSecond(_first.get(), key));
    const std::vector<std::string> ofFirst = sortedAttributesOf(_first.get(), key);
    if (ofFirst.empty())
        return ofSecond;
    std::vector<std::string> all;
    std::set_union(ofSecond.begin(), ofSecond.end(), ofFirst.begin(), ofFirst.end(), std::back_inserter(all));
    return all;
}

std::string KelCompoundVariableAttributeProvider::getAttributeValue(const std::string& key,
                                                                    const std::string& attribute)
{
    const std::string keyOfSecond = keyForSecond(_first.get(), key);
    // How a variable is built from others is phrased in the names of the source.
    const bool preferFirst = attribute == KelAttributes::componentNames || attribute == KelAttributes::parentName;
    if (preferFirst) {
        const std::string value = attributeValueOf(_first.get(), key, attribute);
        return value.empty() ? attributeValueOf(_second.get(), keyOfSecond, attribute) : value;
    }
    const std::string value = attributeValueOf(_second.get(), keyOfSecond, attribute);
    return value.empty() ? attributeValueOf(_first.get(), key, attribute) : value;
}

} // namespace meridyn
