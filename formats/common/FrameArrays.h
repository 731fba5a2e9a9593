#pragma once

#include "KelArrays.h"
#include "KelConsumer.h"
#include "KelFormatFamily.h"
#include "KelProvider.h"

#include <optional>
#include <variant>
#include <vector>

namespace meridyn {

// The arrays of a mesh that both frames have, one row each: what an array is, and which operations write and read it.
// Whoever does something with every array (a transfer, a comparison, the suite of checks) loops over these rows, so
// that a new array is a new row and nothing else. tests/formats/common/FrameArraysTest.cpp holds them against the
// headers.

/// What is known of every array.
struct FrameArray {
    KelArray array;                       ///< in the list of all arrays; of lists the array of the ids
    KelFormatFamily family;               ///< what a format says it carries
    KelZoneCategory category;             ///< of its elements
    std::optional<KelZoneCategory> idsOf; ///< of the elements whose ids it holds; none: its values are no ids
    bool zeroIsNone;                      ///< 0, of lists no ids at all, says as much as being absent

    const char* name() const { return nameOf(array); } ///< "nodes of faces"
};

/// What the start marker of an array is told beside the zones, where it is told more.
struct FrameStart {
    std::vector<KelCellType> types; ///< of cells: the type of all cells of a zone, or -1, per zone
    int partitionCount = 0;         ///< of partitions of cells
};

/// An array with one value for each element; coordinates have as many as the mesh has dimensions.
template <class T>
struct FixedFrameArray : FrameArray {
    void (*start)(KelConsumer&, const std::vector<int>& zoneIds, const FrameStart&);
    void (*setOne)(KelConsumer&, unsigned64, const T*, unsigned64 count);
    void (KelConsumer::*setRange)(unsigned64, unsigned64, const T*, unsigned64);
    void (KelConsumer::*setZone)(int, const T*, unsigned64); ///< null for cell 1, whose zone form sets cell 0
    void (KelConsumer::*end)();

    void (KelProvider::*startReading)(const std::vector<int>&);
    unsigned64 (*getOne)(const KelProvider&, unsigned64, T*, unsigned64 capacity);
    unsigned64 (KelProvider::*getRange)(unsigned64, unsigned64, T*, unsigned64) const;
    unsigned64 (KelProvider::*getZone)(int, T*, unsigned64) const;
    bool (KelProvider::*isUniform)(int, T*) const; ///< of a zone; null where there is no such question
    void (KelProvider::*endReading)();
};

/// An array with a count per element, and as many ids.
struct RaggedFrameArray : FrameArray {
    void (KelConsumer::*start)(const std::vector<int>&);
    void (KelConsumer::*startCounts)();
    void (KelConsumer::*setCount)(unsigned64, short);
    void (KelConsumer::*setCountRange)(unsigned64, unsigned64, const short*, unsigned64);
    void (KelConsumer::*setCountZone)(int, const short*, unsigned64);
    void (KelConsumer::*setUniformRange)(unsigned64, unsigned64, short);
    void (KelConsumer::*setUniformZone)(int, short);
    void (KelConsumer::*endCounts)();
    void (KelConsumer::*startIds)();
    void (KelConsumer::*setIds)(unsigned64, const unsigned64*, unsigned64);
    void (KelConsumer::*setIdRange)(unsigned64, unsigned64, const unsigned64*, unsigned64);
    void (KelConsumer::*setIdZone)(int, const unsigned64*, unsigned64);
    void (KelConsumer::*endIds)();
    void (KelConsumer::*end)();

    void (KelProvider::*startReading)(const std::vector<int>&);
    void (KelProvider::*startReadingCounts)();
    bool (KelProvider::*isUniformRange)(unsigned64, unsigned64, short*) const; ///< null where there is no such question
    bool (KelProvider::*isUniform)(int, short*) const;                         ///< of a zone; null likewise
    short (KelProvider::*getCount)(unsigned64) const;
    unsigned64 (KelProvider::*getCountRange)(unsigned64, unsigned64, short*, unsigned64) const;
    unsigned64 (KelProvider::*getCountZone)(int, short*, unsigned64) const;
    void (KelProvider::*endReadingCounts)();
    void (KelProvider::*startReadingIds)();
    unsigned64 (KelProvider::*getIds)(unsigned64, unsigned64*, unsigned64) const;
    unsigned64 (KelProvider::*getIdRange)(unsigned64, unsigned64, unsigned64*, unsigned64) const;
    unsigned64 (KelProvider::*getIdZone)(int, unsigned64*, unsigned64) const;
    void (KelProvider::*endReadingIds)();
    void (KelProvider::*endReading)();
};

/// The markers around all arrays of a category's elements.
struct FrameMarkers {
    KelZoneCategory category;
    void (KelConsumer::*startWriting)(const std::vector<int>&);
    void (KelConsumer::*endWriting)();
    void (KelProvider::*startReading)(const std::vector<int>&);
    void (KelProvider::*endReading)();
};

/// The markers of the four categories, in their order.
const std::vector<FrameMarkers>& frameMarkers();

/// A row.
using AnyFrameArray = std::variant<FixedFrameArray<double>, FixedFrameArray<unsigned64>, FixedFrameArray<KelCellType>,
                                   FixedFrameArray<int>, RaggedFrameArray>;

/// The rows, in the order of the frames.
const std::vector<AnyFrameArray>& frameArrays();

/// Calls `visit` with each row, in its own type.
template <class Visit>
void forFrameArrays(const Visit& visit)
{
    for (const AnyFrameArray& row : frameArrays())
        std::visit(visit, row);
}

/// Calls `visit` with each row of a category's elements.
template <class Visit>
void forFrameArrays(KelZoneCategory category, const Visit& visit)
{
    forFrameArrays([&](const auto& row) {
        if (row.category == category)
            visit(row);
    });
}

} // namespace meridyn
