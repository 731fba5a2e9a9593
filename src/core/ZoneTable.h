#pragma once

#include "KelTypes.h"

#include <cstddef>
#include <list>
#include <map>
#include <string>
#include <vector>

namespace meridyn {

class KelMessageRegistrar;

/// The zones of one category with what zones of every category have. Values are kept by position; a zone that the
/// table does not have answers 0 or an empty text and takes nothing.
class ZoneTable {
public:
    /// @param registrar  receives the table's warnings; not owned, outlives the table
    explicit ZoneTable(KelMessageRegistrar* registrar);
    virtual ~ZoneTable();
    ZoneTable(const ZoneTable&) = delete;
    ZoneTable& operator=(const ZoneTable&) = delete;

    /// Makes `ids`, which has no repeats, the zones of the table, with default values.
    void reset(const std::vector<int>& ids);

    /// The zones in the order in which they were declared.
    const std::vector<int>& ids() const { return _ids; }
    /// The first element ids, in the same order.
    const std::vector<unsigned64>& firstIds() const { return _firstIds; }

    /// An unknown size type posts a warning; so does the element count when set, since it is derived.
    void setSize(int zoneId, KelZoneSizeType type, unsigned64 value);
    unsigned64 getSize(int zoneId, KelZoneSizeType type) const;

    /// An unknown type of text posts a warning.
    void setString(int zoneId, KelZoneStringInfoType type, const std::string& text);
    std::string getString(int zoneId, KelZoneStringInfoType type) const;

protected:
    static constexpr std::size_t noPosition = static_cast<std::size_t>(-1);

    /// The position of a zone, noPosition for one that the table does not have.
    std::size_t positionOf(int zoneId) const;
    /// Gives `count` zones the default values of what their category has besides.
    virtual void resetInformation(std::size_t count) = 0;

private:
    std::map<int, std::size_t> _index;
    std::vector<int> _ids;
    std::vector<std::string> _strings0;
    KelMessageRegistrar* _registrar;
    std::vector<unsigned64> _extraSizes;
    std::vector<unsigned64> _firstIds;
    std::vector<unsigned64> _lastIds;
    std::vector<std::string> _strings1;
};

/// The table of a category whose zones have an `Information` each.
template <class Information>
class ZoneTableOf : public ZoneTable {
public:
    using ZoneTable::ZoneTable;

    /// The information of a zone, null for one that the table does not have. Valid until the next reset.
    Information* find(int zoneId)
    {
        const std::size_t position = positionOf(zoneId);
        return position == noPosition ? nullptr : &_information[position];
    }

protected:
    void resetInformation(std::size_t count) override { _information.assign(count, Information()); }

private:
    std::vector<Information> _information;
};

// The numbers of a zone by their type. Both operations answer whether the type is known.

struct NodeZone {
    int info0 = -1;

    bool setInfo(int type, int value);
    bool getInfo(int type, int& value) const;
};

struct EdgeZone {
    int info0 = -1; ///< also the kind of the zone
    int info1 = -1;

    bool setInfo(int type, int value);
    bool getInfo(int type, int& value) const;
};

struct FaceZone {
    short info0 = -1;
    int info1 = 0;
    int info2 = 0;
    int info3 = 0;
    int info4 = 0;
    int type = -1; ///< also information 5
    int flags = 0;
    std::list<int> cellZones0; ///< on side 0; ids below 1 mean none
    std::list<int> cellZones1; ///< on side 1

    /// Takes two types more than getInfo gives: 6 and 7 set the list of side 0 and 1 to one cell zone.
    bool setInfo(int type, int value);
    bool getInfo(int type, int& value) const;
};

struct CellZone {
    short info0 = -1;
    int info1 = 0;
    std::list<int> faceZones; ///< around the zone; ids below 1 mean none

    bool setInfo(int type, int value);
    bool getInfo(int type, int& value) const;
};

class FaceZoneTable : public ZoneTableOf<FaceZone> {
public:
    using ZoneTableOf<FaceZone>::ZoneTableOf;

    /// Set once cell zones were given by face zone. Kept for readers, not looked at here.
    bool cellZonesGiven = false;
};

/// The tables of all four categories.
struct ZoneTables {
    explicit ZoneTables(KelMessageRegistrar* registrar);

    /// The table of a category, null for a category outside 0..3.
    ZoneTable* ofCategory(int category);

    ZoneTableOf<NodeZone> nodes;
    ZoneTableOf<EdgeZone> edges;
    FaceZoneTable faces;
    ZoneTableOf<CellZone> cells;
};

} // namespace meridyn
