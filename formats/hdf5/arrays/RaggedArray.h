#pragma once

#include "formats/hdf5/file/SpillFile.h"
#include "ListTable.h"
#include "RunLengthArray.h"

#include <functional>

namespace meridyn::hdf5 {

/// Lists of ids, one per element (nodes of faces, children of cells, ...), being written: counts and ids, in any order
/// of calls and rows.
///
/// In the group: the counts as a run array <name>_counts; the ids of all rows one after the other, <name>_ids; and,
/// unless all rows have one count, <name>_offsets, where the ids of each row start (rows + 1 values).
/// Ids go to their place at once when the counts of all rows are there; else through a temporary file.
class RaggedWriter {
public:
    RaggedWriter(Hdf5File& file, hid_t group, std::string name, std::uint64_t rows, Stored idType, int compression);

    void setUniformCount(std::uint64_t row, std::uint64_t count, int value);
    void setCounts(std::uint64_t row, std::uint64_t count, const short* counts);

    /// Looks at ids before they are written, piece by piece, and throws when one is wrong.
    using IdCheck = std::function<void(const std::uint64_t* ids, std::uint64_t count)>;

    /// Ids of the rows, `idCount` in all.
    void setIds(std::uint64_t row, std::uint64_t count, const std::uint64_t* ids, std::uint64_t idCount,
                const IdCheck& check);

    /// @throws FormatError when ids and counts do not add up
    void finish(const std::vector<Coverage::Interval>& zones);

    const Coverage& countCoverage() const { return _counts.coverage(); }
    const std::string& label() const { return _label; }

private:
    struct Segment {
        std::uint64_t row;
        std::uint64_t rows;
        std::uint64_t ids;
        std::uint64_t offset; // in the temporary file
        bool isChecked;       // the counts were known
    };

    void checkOpen() const;
    void settle();
    void writeOffsets();
    std::uint64_t offsetOf(std::uint64_t row);
    std::uint64_t sumOfCounts(std::uint64_t row, std::uint64_t count);
    void place(std::uint64_t row, std::uint64_t count, const std::uint64_t* ids, std::uint64_t idCount,
               const IdCheck& check);
    void keep(std::uint64_t row, std::uint64_t count, const std::uint64_t* ids, std::uint64_t idCount,
              const IdCheck& check);
    void placeSegment(const Segment& segment);
    [[noreturn]] void failSum(std::uint64_t row, std::uint64_t count, std::uint64_t found,
                              std::uint64_t expected) const;

    Hdf5File& _file;
    hid_t _group;
    std::string _name;
    std::string _label;
    std::uint64_t _rows;
    Stored _idType;
    int _compression;
    RunLengthArrayWriter _counts;
    Coverage _given; // rows that have their ids
    bool _isSettled = false;
    std::optional<int> _uniform; // count of all rows, once settled
    std::unique_ptr<ArrayWriter> _offsets;
    std::unique_ptr<ArrayWriter> _ids;
    std::unique_ptr<SpillFile> _spill;
    std::vector<Segment> _segments;
};

/// Lists of ids, as RaggedWriter wrote them, being read: any range of rows.
class RaggedReader {
public:
    /// @return null when there is no such array
    static std::unique_ptr<RaggedReader> open(Hdf5File& file, hid_t group, const std::string& name, std::uint64_t rows);

    const RunLengthArrayReader& counts() const { return *_counts; }

    /// Ids of the rows, whole rows as far as there is room.
    /// @throws FormatError when counts and offsets of the rows contradict each other
    std::uint64_t readIds(std::uint64_t row, std::uint64_t count, const KelBuffer& ids) const;

private:
    ListTable::Stretch find(std::uint64_t row, std::uint64_t count, std::uint64_t capacity) const;

    std::unique_ptr<RunLengthArrayReader> _counts;
    std::unique_ptr<ListTable> _table; // none: all rows have one count
    std::uint64_t _uniform = 0;        // that count
    std::unique_ptr<ArrayReader> _ids;
};

} // namespace meridyn::hdf5
