#pragma once

#include "CompleteArray.h"
#include "ElementMap.h"

#include <optional>

namespace meridyn::hdf5 {

/// A zone as far as a field needs it.
struct ZoneRange {
    int id = 0;
    std::uint64_t first = 0; ///< 0: no elements
    std::uint64_t last = 0;
};

/// Values per element on some zones of one category, being written.
///
/// In the group: the array <name>, one row per element of the zones, ascending by element id, with the attributes
/// kel_zones (ids of the zones) and kel_ranges (first and last element id of each stretch of rows). Zones that are
/// added later make a further array <name>#2, and so on.
class FieldWriter {
public:
    /// @param type  none: that of the first values
    FieldWriter(Hdf5File& file, hid_t group, std::string name, std::optional<Stored> type, std::uint64_t columns,
                int compression);

    /// Declares zones; those that were declared before change nothing.
    void addZones(const std::vector<ZoneRange>& zones);

    /// Declares the elements of a mesh without zones.
    void addElements(std::uint64_t first, std::uint64_t last);

    void write(std::uint64_t first, std::uint64_t last, const KelValues& values);

    std::uint64_t columns() const { return _columns; }

    /// @throws FormatError unless all elements of all zones have their values
    void finish();

private:
    struct Part {
        std::vector<std::int64_t> zones;
        ElementMap elements;
        std::unique_ptr<CompleteArray> array; // made with its first values
    };

    void open(Part& part, std::size_t index, Stored type);
    static std::vector<Coverage::Interval> gapsOf(const Part& part);
    void writePiece(Part& part, std::uint64_t first, std::uint64_t last, const KelValues& values);

    Hdf5File& _file;
    Handle _group;
    std::string _name;
    std::optional<Stored> _type;
    std::uint64_t _columns;
    int _compression;
    std::vector<Part> _parts;
};

/// Values per element on some zones, as FieldWriter wrote them, being read: any range of elements, whatever the parts.
class FieldReader {
public:
    /// @return null when there is no such field
    static std::unique_ptr<FieldReader> open(Hdf5File& file, hid_t group, const std::string& name);

    std::vector<int> zones() const;
    std::uint64_t columns() const { return _parts.front().array->shape().columns; }
    Stored type() const { return _parts.front().array->shape().type; }
    hid_t id() const { return _parts.front().array->id(); }

    /// Values of the elements, whole elements as far as there is room; none unless all of them have values.
    std::uint64_t read(std::uint64_t first, std::uint64_t last, const KelBuffer& values) const;

private:
    struct Part {
        std::vector<std::int64_t> zones;
        ElementMap elements;
        std::unique_ptr<ArrayReader> array;
    };

    std::vector<Part> _parts;
};

/// Name of the n-th array of a field, n from 0.
std::string partName(const std::string& name, std::size_t index);

} // namespace meridyn::hdf5
