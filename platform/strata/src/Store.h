#pragma once

#include "NameIndex.h"
#include "strata/Body.h"
#include "strata/Composite.h"
#include "strata/Face.h"
#include "strata/FaceUse.h"
#include "strata/Part.h"
#include "strata/TopologyMap.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace strata {

struct Store;

/// The largest number of an id: ids travel as ints.
constexpr std::int64_t greatestNumber = 2147483647;

/// The order of parts: by number.
struct PartLess {
    bool operator()(const Part* left, const Part* right) const { return left->number() < right->number(); }
};

/// The zones of one region, by the number of the map. They live with the region, so that the end of a region leaves
/// nothing behind in any map. No set is empty.
template <class External>
using ZonesByMap = std::map<int, std::set<External>>;

/// What every region has.
struct RegionData {
    RegionData(Region::Kind k, int n, Part* p, const std::string& text, int s = 0)
        : kind(k), number(n), side(s), part(p), name(text)
    {}
    virtual ~RegionData() = default;

    /// Where the region stands among all: regions are compared far more often than anything else is done with them.
    std::uint64_t place() const
    {
        return (static_cast<std::uint64_t>(kind) << 32U) | (static_cast<std::uint64_t>(number) << 1U) |
               static_cast<std::uint64_t>(side);
    }

    Region::Kind kind;
    int number; ///< of a face use: that of its face
    int side;   ///< of a face use; 0 for all others
    Part* part;
    std::string name;
    RegionSet owners; ///< the composites that have the region as a member
};

struct BodyData final : RegionData {
    using RegionData::RegionData;
    RegionSet boundary; ///< face uses
    ZonesByMap<ExternalBody> zones;
};

struct FaceData final : RegionData {
    using RegionData::RegionData;
    std::array<std::unique_ptr<FaceUse>, 2> uses; ///< by side
    ZonesByMap<ExternalFace> zones;
};

struct FaceUseData final : RegionData {
    using RegionData::RegionData;
    Body* body = nullptr;
    Face* face = nullptr;
    ZonesByMap<ExternalFaceSide> zones;
};

struct CompositeData final : RegionData {
    using RegionData::RegionData;
    RegionSet primitives; ///< members that are no composites
    RegionSet composites; ///< members that are
};

struct PartData {
    Store* store = nullptr;
    int number = 0;
    int dimensionality = 0;
    std::string name;
    std::array<RegionSet, 4> regions; ///< by Region::Kind
    NameIndex<Region, RegionLess> names;
};

/// All that a topology holds. The regions' own operations come here, so that the indexes are kept in one place.
struct Store {
    Topology* topology = nullptr;

    // In this order, so that regions go before the parts they point to.
    std::map<int, std::unique_ptr<Part>> parts;
    std::map<int, std::unique_ptr<Body>> bodies;
    std::map<int, std::unique_ptr<Face>> faces;
    std::map<int, std::unique_ptr<Composite>> composites;

    NameIndex<Part, PartLess> partNames;
    NameIndex<Region, RegionLess> regionNames;

    // The numbers that come next; one past greatestNumber when there is none left.
    std::int64_t nextPart = 1;
    std::int64_t nextBody = 1;
    std::int64_t nextFace = 1;
    std::int64_t nextComposite = 1;

    /// @name Making
    /// The number must be free; null for a name that is taken. The counters are the caller's.
    /// @{
    Part* addPart(int number, int dimensionality, const std::string& name);
    Body* addBody(Part& part, int number, const std::string& name);
    Face* addFace(Part& part, int number, const std::string& name);
    Composite* addComposite(Part& part, int number, const std::string& name);
    FaceUse* addFaceUse(Body& body, Face& face, int side, const std::string& name);
    /// @}

    /// @name Ending
    /// @{
    void remove(Part& part);
    void remove(Body& body);
    void remove(Face& face);
    void remove(FaceUse& faceUse);
    void remove(Composite& composite);
    void clear();
    /// @}

    bool rename(Region& region, const std::string& name);
    void rename(Part& part, const std::string& name);

    /// Replaces members without asking whether a circle comes about.
    static void setMembers(Composite& composite, const RegionSet& members);

    // clang-format off
    static RegionData&    data(const Region& region)       { return *region._data; }
    static BodyData&      data(const Body& body)           { return static_cast<BodyData&>(*body._data); }
    static FaceData&      data(const Face& face)           { return static_cast<FaceData&>(*face._data); }
    static FaceUseData&   data(const FaceUse& faceUse)     { return static_cast<FaceUseData&>(*faceUse._data); }
    static CompositeData& data(const Composite& composite) { return static_cast<CompositeData&>(*composite._data); }
    static PartData&      data(const Part& part)           { return *part._data; }
    static Store&         of(const Region& region)         { return *data(*data(region).part).store; }
    // clang-format on

private:
    template <class T, class Data>
    T* addNumbered(std::map<int, std::unique_ptr<T>>& all, Region::Kind kind, Part& part, int number,
                   const std::string& name);
    void enter(Region& region);
    void leave(Region& region);
};

/// The region of a kind and name in a part, null for none.
Region* findNamed(const PartData& part, Region::Kind kind, const std::string& name);

/// The regions of a set as a list of their own class, which all of them must be of.
template <class T, class Set>
std::vector<T*> listOf(const Set& set)
{
    std::vector<T*> list;
    list.reserve(set.size());
    for (Region* region : set)
        list.push_back(static_cast<T*>(region));
    return list;
}

} // namespace strata
