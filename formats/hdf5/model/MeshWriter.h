#pragma once

#include "formats/hdf5/arrays/FieldArray.h"
#include "formats/hdf5/arrays/RaggedArray.h"
#include "MeshArrays.h"

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

    /// Zones whose values will be handed over; those that never are make finish() fail.
    void announce(KelArray array, const std::vector<int>& zoneIds);

    /// Values of an array of the mesh: ids are unsigned64, counts short, types and partitions int.
    /// @param coordinateType  in which coordinates are stored
    void keep(KelArray array, std::uint64_t first, std::uint64_t last, const KelValues& values, Stored coordinateType);

    /// One count, or one cell type, for all elements of a range.
    void keepUniform(KelArray array, std::uint64_t first, std::uint64_t last, int value);

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

    const ElementMap& elements(KelZoneCategory category);
    const ElementMap& checkedElements(const ArrayInfo& info, std::uint64_t first, std::uint64_t last);
    const ElementMap& checkedElements(const ArrayInfo& info, const char* suffix, std::uint64_t first,
                                      std::uint64_t last, std::uint64_t count);
    Stored idTypeFor(KelZoneCategory target);
    void checkIds(const ArrayInfo& info, const char* suffix, const std::uint64_t* ids, std::uint64_t count,
                  bool zeroIsAllowed);
    void keepCoordinates(std::uint64_t first, std::uint64_t last, const KelValues& values, Stored type);
    void keepIds(Ids ids, std::uint64_t first, std::uint64_t last, const KelValues& values);
    void keepInts(Ints ints, std::uint64_t first, std::uint64_t last, const KelValues& values);
    void keepCounts(Lists lists, std::uint64_t first, std::uint64_t last, const KelValues& counts);
    void keepLists(Lists lists, std::uint64_t first, std::uint64_t last, const KelValues& ids);
    const Coverage& coverageOf(const MeshArray& array) const;
    RunLengthArrayWriter& intsOf(Ints ints);
    RaggedWriter& listsOf(Lists lists);
    std::string labelOf(const ArrayInfo& info) const;
    void finishPlain(PlainArray& plain, const ArrayInfo& info, bool gapsAreAllowed);
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
    std::unique_ptr<RunLengthArrayWriter> _ints[intsCount];
    std::unique_ptr<RaggedWriter> _lists[listsCount];
    std::vector<std::pair<KelArray, std::vector<int>>> _announcements; // and their zones
    std::optional<int> _partitionCount;
};

} // namespace meridyn::hdf5
