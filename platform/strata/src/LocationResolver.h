#pragma once

#include "LocationText.h"
#include "Store.h"
#include "strata/Topology.h"

#include <functional>
#include <initializer_list>
#include <string>
#include <unordered_set>
#include <vector>

namespace strata {

/// Whatever an entry names, parts and regions each by their order.
LocationMatch matchEntry(const Store& store, const LocationEntry& entry);

/// One reading of a location: turns what entries name into bodies, or into face uses. Everything is expanded once,
/// however often the entries name it, and without recursion, however deep composites lie in each other.
class LocationReading {
public:
    enum class Kind {
        Boundary,
        Interior
    };

    explicit LocationReading(Kind kind) : _kind(kind) {}

    void add(const Part& part);
    void add(Region* region);

    /// The regions collected so far, each once, by RegionLess.
    std::vector<Region*> regions() const;

private:
    void expand(Region* region);

    Kind _kind;
    std::unordered_set<const void*> _seen;
    std::vector<Region*> _waiting;
    std::vector<Region*> _collected;
};

/// Adds what a whole location names to each of the readings; `unresolved` is replaced by the entries that name nothing.
void readLocation(const Store& store, const std::string& location, std::initializer_list<LocationReading*> readings,
                  std::vector<std::string>& unresolved);

} // namespace strata
