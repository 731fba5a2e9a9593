#pragma once

#include "arbor/TObject.h"

#include <deque>
#include <map>
#include <shared_mutex>
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

/// The classes of nodes that newObject() and the XML text know. Any thread may use it at any time: a plug-in registers
/// its classes while it is loaded, whatever the other threads do. Entries never change and stay for ever, so that a
/// class that was found needs no lock.
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

    const ObjectClass* findUnlocked(const std::string& name) const;
    const ObjectClass& enter(ObjectClass entry);

    mutable std::shared_mutex _mutex;
    std::deque<ObjectClass> _entries;                   // also those that others have replaced
    std::map<std::string, const ObjectClass*> _classes; // the valid entries by name
    std::map<std::string, std::string> _shortNames;     // the names that short ones stand for
    std::map<std::string, const ObjectClass*, std::less<>> _tags;
};

} // namespace arbor
