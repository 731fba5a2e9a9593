#pragma once

#include "FieldArray.h"
#include "MeshLayout.h"
#include "RaggedArray.h"

#include <functional>
#include <map>

namespace meridyn::hdf5 {

/// What a writer of a mesh asks about it. Zones may still be declared until the first values of their category come.
struct MeshDescription {
    std::function<std::vector<ZoneRange>(KelZoneCategory)> zones;
    std::function<std::uint64_t(KelZoneCategory)> elementCount; ///< mesh-wide, 0 when not known
    std::function<std::uint64_t()> dimension;
};

/// The element ids of a category: those of its zones, and 1 to the mesh-wide count when that is larger.
ElementMap elementsOf(const MeshDescription& mesh, KelZoneCategory category);

/// Writes the arrays of one mesh into a group.
class MeshWriter {
public:
    MeshWriter(Hdf5File& file, hid_t group, MeshDescription mesh, int compression);
    ~MeshWriter();

    /// @param type  in which coordinates are stored
    template <class T>
    void setCoordinates(std::uint64_t first, std::uint64_t last, const T* xyz, std::uint64_t count, Stored type);

    void setIds(Ids ids, std::uint64_t first, std::uint64_t last, const std::uint64_t* values, std::uint64_t count);
    void setUniformInt(Ints ints, std::uint64_t first, std::uint64_t last, int value);
    void setInts(Ints ints, std::uint64_t first, std::uint64_t last, const int* values, std::uint64_t count);
    void setUniformCount(Lists lists, std::uint64_t first, std::uint64_t last, short value);
    void setCounts(Lists lists, std::uint64_t first, std::uint64_t last, const short* counts, std::uint64_t count);
    void setListIds(Lists lists, std::uint64_t first, std::uint64_t last, const std::uint64_t* ids,
                    std::uint64_t count);

    /// @name Zones whose values will be handed over; those that never are make finish() fail.
    /// @{
    void announceCoordinates(const std::vector<int>& zoneIds);
    void announce(Ids ids, const std::vector<int>& zoneIds);
    void announce(Ints ints, const std::vector<int>& zoneIds);
    void announce(Lists lists, const std::vector<int>& zoneIds);
    /// @}

    void setPartitionCount(int count) { _partitionCount = count; }

    /// Rows of a category's zones.
    std::vector<Coverage::Interval> zoneRows(KelZoneCategory category);

    const MeshDescription& mesh() const { return _mesh; }
    Hdf5File& file() { return _file; }
    hid_t group() const { return _group.get(); }
    hid_t groupOf(KelZoneCategory category);

    /// Writes what is left and checks that everything is there.
    /// @param mesh  the mesh as it is in the end
    void finish(MeshDescription mesh);

private:
    struct PlainArray {
        std::unique_ptr<ArrayWriter> array;
        Coverage coverage;
    };
    struct Announcement {
        KelZoneCategory category;
        std::string name;
        std::vector<int> zoneIds;
        std::function<const Coverage*()> coverage;
    };

    const ElementMap& elements(KelZoneCategory category);
    const ElementMap& checkedElements(KelZoneCategory category, const std::string& name, std::uint64_t first,
                                      std::uint64_t last);
    Stored idTypeFor(KelZoneCategory target);
    void checkIds(const ArrayInfo& info, const char* suffix, const std::uint64_t* ids, std::uint64_t count,
                  bool zeroIsAllowed);
    RunArrayWriter& intsOf(Ints ints);
    RaggedWriter& listsOf(Lists lists);
    std::string labelOf(const ArrayInfo& info) const;
    void finishPlain(PlainArray& plain, const std::string& label, KelZoneCategory category, bool gapsAreAllowed);
    void checkAnnouncements();
    void checkElements();

    Hdf5File& _file;
    Handle _group;
    MeshDescription _mesh;
    int _compression;
    Handle _groups[categoryCount];
    std::optional<ElementMap> _elements[categoryCount];
    PlainArray _coordinates;
    PlainArray _ids[idsCount];
    std::unique_ptr<RunArrayWriter> _ints[intsCount];
    std::unique_ptr<RaggedWriter> _lists[listsCount];
    std::vector<Announcement> _announcements;
    std::optional<int> _partitionCount;
};

} // namespace meridyn::hdf5
