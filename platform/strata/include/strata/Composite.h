#pragma once

#include "strata/Region.h"

namespace strata {

/// The direct members of a composite, each list by RegionLess.
struct CompositeComponents {
    std::vector<Region*> primitives;    ///< bodies, faces, face uses
    std::vector<Composite*> composites; ///< not expanded
};

/// A named group of regions, of any part of the topology, other composites included; never of itself.
class STRATA_API Composite : public Region {
public:
    ~Composite() override;

    /// The direct members.
    CompositeComponents components() const;

    /// The bodies, faces and face uses that the composite stands for, composites in it expanded, each once, by
    /// RegionLess.
    std::vector<Region*> resolve() const;

    /// Replaces the members. False, with the members as they were, when one is null or of another topology, or when
    /// the composite would come to hold itself, directly or through others.
    bool modify(const RegionSet& members);

    /// Destroys the composite, not its members.
    void destroy();

private:
    friend struct Store;
    using Region::Region;
};

} // namespace strata
