#include "ClassRegistry.h"

#include "arbor/TDomain.h"
#include "arbor/TRegion.h"
#include "arbor/TZone.h"
#include "XmlNames.h"

#include <algorithm>
#include <mutex>

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
    enter({"TObject", &TObject::create, "", "object"});
    enter({"TRegion", &TRegion::create, "TObject", "region"});
    enter({"TZone", &TZone::create, "TObject", "zone"});
    enter({"TDomain", &TDomain::create, "TObject", "domain"});
}

const ObjectClass& ClassRegistry::enter(ObjectClass entry)
{
    const ObjectClass& stored = _entries.emplace_back(std::move(entry));
    _classes[stored.name] = &stored;
    _tags[stored.tag] = &stored;
    return stored;
}

bool ClassRegistry::add(const std::string& name, TObject::Factory factory, const std::string& baseName,
                        const std::string& tag)
{
    const std::unique_lock lock(_mutex);
    if (name.empty() || factory == nullptr || _classes.count(baseName) == 0 || baseName == name || !isTag(tag))
        return false;
    if (_shortNames.count(name) != 0)
        return false;
    const auto holder = _tags.find(tag);
    if (holder != _tags.end() && holder->second->name != name)
        return false;

    const auto replaced = _classes.find(name);
    if (replaced != _classes.end())
        _tags.erase(replaced->second->tag);
    enter({name, factory, baseName, tag});
    return true;
}

bool ClassRegistry::addShortName(const std::string& shortName, const std::string& name)
{
    const std::unique_lock lock(_mutex);
    if (shortName.empty() || _classes.count(name) == 0 || _classes.count(shortName) != 0)
        return false;
    return _shortNames.emplace(shortName, name).first->second == name;
}

const ObjectClass* ClassRegistry::findUnlocked(const std::string& name) const
{
    const auto full = _classes.find(name);
    return full == _classes.end() ? nullptr : full->second;
}

const ObjectClass* ClassRegistry::find(const std::string& name) const
{
    const std::shared_lock lock(_mutex);
    if (const ObjectClass* full = findUnlocked(name))
        return full;
    const auto shortName = _shortNames.find(name);
    return shortName == _shortNames.end() ? nullptr : findUnlocked(shortName->second);
}

const ObjectClass* ClassRegistry::findTag(std::string_view tag) const
{
    const std::shared_lock lock(_mutex);
    const auto found = _tags.find(tag);
    return found == _tags.end() ? nullptr : found->second;
}

} // namespace arbor
