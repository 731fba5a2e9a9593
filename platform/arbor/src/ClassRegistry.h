#pragma once

#include "arbor/TObject.h"

#include <map>
#include <string>
#include <string_view>

namespace arbor {

/// A registered class of nodes.
struct ObjectClass {
    std::string name;
    TObject::Factory factory;
    std::string baseName;
    std::string tag;
};

/// The classes of nodes that newObject() and the XML text know.
class ClassRegistry {
public:
    /// The one registry of the process. It is made on first use, so that libraries may register while they load, and
    /// it is never destroyed, since entries refer to the names in it.
    static ClassRegistry& instance();

    bool add(const std::string& name, TObject::Factory factory, const std::string& baseName, const std::string& tag);
    bool addShortName(const std::string& shortName, const std::string& name);

    /// By full or short name; null when there is none.
    const ObjectClass* find(const std::string& name) const;
    const ObjectClass* findTag(std::string_view tag) const;

private:
    ClassRegistry();

    std::map<std::string, ObjectClass> _classes; // addresses stay
    std::map<std::string, ObjectClass*> _shortNames;
    std::map<std::string, ObjectClass*, std::less<>> _tags;
};

} // namespace arbor
