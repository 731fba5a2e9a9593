#pragma once

#include "formats/hdf5/arrays/FieldArray.h"
#include "formats/hdf5/arrays/RaggedArray.h"
#include "MeshArrays.h"
#include "MeshCompletion.h"

namespace meridyn::hdf5 {

/// Reads the arrays of one mesh from its group; each is opened when it is first asked for.
///
/// Elements outside the mesh throw FormatError. A range with elements that have no values gives nothing, but for cell
/// 1, which is 0 there. Where the room ends, the whole elements that fit are given.
class MeshReader {
public:
    MeshReader(Hdf5File& file, hid_t group);

    std::uint64_t dimension() const { return _dimension; }
    int partitionCount() const;
    std::optional<Stored> coordinateType() const; ///< none without coordinates
    hid_t group() const { return _group.get(); }
    Hdf5File& file() const { return _file; }

    /// Values of an array, converted; none of one that is not of the mesh.
    std::uint64_t read(KelArray array, std::uint64_t first, std::uint64_t last, const KelBuffer& values) const;

    /// The number that all elements have, of an array of counts or of small numbers.
    std::optional<int> uniformValue(KelArray array, std::uint64_t first, std::uint64_t last) const;

    /// The ids that the elements of a range have in an array, piece by piece. Elements without any are left out; so is
    /// a whole array that is not there.
    void showIds(KelArray array, std::uint64_t first, std::uint64_t last, const VisitIds& visit) const;

private:
    template <class Reader>
    struct Lazy {
        bool isKnown = false;
        std::unique_ptr<Reader> reader;
    };
    struct PlainArray {
        std::unique_ptr<ArrayReader> array;
        Coverage given;
    };
    struct Rows {
        std::uint64_t first = 0;
        std::uint64_t count = 0;
    };

    Rows rowsOf(KelZoneCategory category, std::uint64_t first, std::uint64_t last) const;
    const PlainArray* plain(Lazy<PlainArray>& lazy, KelZoneCategory category, const char* name) const;
    template <class Reader>
    const Reader* open(Lazy<Reader>& lazy, const ArrayInfo& info) const;
    const RaggedReader* listsOf(Lists lists) const;
    const RunLengthArrayReader* runsOf(const MeshArray& which) const;

    bool hasIds(KelArray array) const;
    void showPiece(KelArray array, std::uint64_t first, std::uint64_t last, std::vector<std::uint64_t>& ids,
                   const VisitIds& visit) const;
    std::uint64_t coordinates(const Rows& rows, const KelBuffer& xyz) const;
    std::uint64_t ids(Ids which, const Rows& rows, const KelBuffer& values) const;
    std::uint64_t listIds(Lists which, const Rows& rows, const KelBuffer& values) const;

    Hdf5File& _file;
    Handle _group;
    std::uint64_t _dimension = 0;
    Handle _groups[categoryCount];
    ElementMap _elements[categoryCount];
    mutable Lazy<PlainArray> _coordinates;
    mutable Lazy<PlainArray> _ids[idsCount];
    mutable Lazy<RunLengthArrayReader> _ints[intsCount];
    mutable Lazy<RaggedReader> _lists[listsCount];
};

} // namespace meridyn::hdf5
