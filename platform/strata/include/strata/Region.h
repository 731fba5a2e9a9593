#pragma once

#include "strata/Export.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace strata {

class Composite;
class Part;
struct RegionData;

/// What bodies, faces, face uses and composites have in common.
///
/// Regions are made by their part (face uses by their body) and end with destroy() or with what they depend on;
/// they then leave all composites and maps.
class STRATA_API Region {
public:
    /// The kinds, in the order in which mixed lists hold them.
    enum class Kind {
        Body,     ///< strata::Body, a volume
        Face,     ///< strata::Face, a surface
        FaceUse,  ///< strata::FaceUse, one side of a face as a body sees it
        Composite ///< strata::Composite, regions under one name
    };

    virtual ~Region();
    Region(const Region&) = delete;
    Region& operator=(const Region&) = delete;

    /// Which of the four classes the region is of.
    Kind kind() const;

    /// The letter of the kind ("b", "f", "c") and the number. A face use has no number of its own: its id is that of
    /// its face, a colon and the side ("f3:1").
    std::string id() const;

    /// The number in the id: from 1, ascending with creation, per kind.
    int number() const;

    /// The name; empty for a region without one.
    const std::string& name() const;

    /// Takes another name; the empty text takes the name away. False when another region of the kind and part bears
    /// it already.
    bool rename(const std::string& name);

    /// The part that owns the region; for a face use that of its body.
    Part* part() const;

    /// The composites of which the region is a direct member, by id.
    std::vector<Composite*> composites() const;

protected:
    /// For the library alone, like all making of regions.
    explicit Region(std::unique_ptr<RegionData> data);
    std::unique_ptr<RegionData> _data; ///< of the type that belongs to the kind

    friend struct Store;
};

/// The order of regions: bodies, faces, face uses, composites; within a kind by number; face uses by face, then side.
/// A null pointer comes first.
struct STRATA_API RegionLess {
    /// Whether one region stands before another.
    bool operator()(const Region* left, const Region* right) const;
};

/// Regions of any kind, each once. To be let go before a region in it is destroyed.
using RegionSet = std::set<Region*, RegionLess>;

} // namespace strata
