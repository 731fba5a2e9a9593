#include "ClassRegistry.h"

#include "arbor/TDomain.h"
#include "arbor/TRegion.h"
#include "arbor/TZone.h"
#include "XmlNames.h"

#include <algorithm>

namespace arbor {

namespace {

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isTagCharacter(char c)
{
    return isLetter(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

bool isTag(const std::string& tag)
{
    return !tag.empty() && isLetter(tag.front()) && std::all_of(tag.begin(), tag.end(), isTagCharacter) &&
           tag != xml::propertyTag && tag != xml::itemTag;
}

} // namespace

ClassRegistry& ClassRegistry::instance()
{
    static ClassRegistry* registry = new ClassRegistry;
    return *registry;
}

ClassRegistry::ClassRegistry()
{
    const auto addBuiltIn = [this](const char* name, TObject::Factory factory, const char* base, const char* tag) {
        ObjectClass& entry = _classes[name];
        entry = {name, factory, base, tag};
        _tags[tag] = &entry;
    };
    addBuiltIn("TObject", &TObject::create, "", "object");
    addBuiltIn("TRegion", &TRegion::create, "TObject", "region");
    addBuiltIn("TZone", &TZone::create, "TObject", "zone");
    addBuiltIn("TDomain", &TDomain::create, "TObject", "domain");
}

bool ClassRegistry::add(const std::string& name, TObject::Factory factory, const std::string& baseName,
                        const std::string& tag)
{
    if (name.empty() || factory == nullptr || _classes.count(baseName) == 0 || baseName == name || !isTag(tag))
        return false;
    if (_shortNames.count(name) != 0)
        return false;
    const auto holder = _tags.find(tag);
    if (holder != _tags.end() && holder->second->name != name)
        return false;

    ObjectClass& entry = _classes[name];
    if (entry.tag != tag)
        _tags.erase(entry.tag);
    entry = {name, factory, baseName, tag};
    _tags[tag] = &entry;
    return true;
}

bool ClassRegistry::addShortName(const std::string& shortName, const std::string& name)
{
    const auto target = _classes.find(name);
    if (shortName.empty() || target == _classes.end() || _classes.count(shortName) != 0)
        return false;
    return _shortNames.emplace(shortName, &target->second).first->second == &target->second;
}

const ObjectClass* ClassRegistry::find(const std::string& name) const
{
    const auto full = _classes.find(name);
    if (full != _classes.end())
        return &full->second;
    const auto shortName = _shortNames.find(name);
    return shortName == _shortNames.end() ? nullptr : shortName->second;
}

const ObjectClass* ClassRegistry::findTag(std::string_view tag) const
{
    const auto found = _tags.find(tag);
    return found == _tags.end() ? nullptr : found->second;
}

} // namespace arbor
