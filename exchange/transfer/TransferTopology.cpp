#include "TransferRun.h"

#include <algorithm>
#include <functional>

namespace meridyn {

namespace {

using Zone = TransferRun::ZoneRange;
using Zones = std::vector<Zone>;

/// Whether the target carries a family; if not, notes each zone as lost that `says` something of it.
template <class Says>
bool carriesZones(TransferRun& run, KelFormatFamily family, const Zones& zones, const Says& says)
{
    if (run.takes(family))
        return true;
    for (const Zone& zone : zones)
        if (says(zone))
            run.carries(family, zoneLabel(run.source, zone.id));
    return false;
}

/// Whether one of the values that `read` gives of a zone is not 0, which stands for none.
template <class T, class Read>
bool saysMoreThanNone(const TransferRun& run, const Zone& zone, const Read& read)
{
    std::vector<T> values;
    for (unsigned64 first = zone.first; first <= zone.last && first != 0; first += run.chunkSize) {
        values.assign(std::min(run.chunkSize, zone.last - first + 1), T());
        read(first, first + values.size() - 1, values.data(), values.size());
        if (std::any_of(values.begin(), values.end(), [](T value) { return value != T(); }))
            return true;
    }
    return false;
}

/// Zones of a category whose first element gives a value.
template <class Probe>
Zones zonesThatHave(const TransferRun& run, KelZoneCategory category, const Probe& probe)
{
    Zones zones = run.zonesWithElements(category);
    zones.erase(std::remove_if(zones.begin(), zones.end(), [&](const Zone& zone) { return !probe(zone); }),
                zones.end());
    return zones;
}

// ---- arrays with a fixed number of values per element

template <class T>
struct FixedArray {
    KelFormatFamily family;
    const char* task;
    KelZoneCategory category;
    unsigned64 perElement;
    std::function<unsigned64(unsigned64 first, unsigned64 last, T* values, unsigned64 capacity)> read;
    std::function<void(const std::vector<int>& zones)> start;
    std::function<void(unsigned64 first, unsigned64 last, const T* values, unsigned64 count)> write;
    std::function<void()> end;
};

template <class T>
void copyArray(TransferRun& run, const FixedArray<T>& array)
{
    std::vector<T> buffer(array.perElement);
    const Zones zones = zonesThatHave(run, array.category, [&](const Zone& zone) {
        return array.read(zone.first, zone.first, buffer.data(), array.perElement) == array.perElement;
    });
    const auto says = [&](const Zone& zone) {
        return array.family != KEL_FAMILY_SHADOW_FACES || saysMoreThanNone<T>(run, zone, array.read);
    };
    if (zones.empty() || !carriesZones(run, array.family, zones, says))
        return;
    array.start(TransferRun::idsOf(zones));
    for (const Zone& zone : zones)
        run.forChunks(array.task, zone, array.perElement, sizeof(T), [&](unsigned64 first, unsigned64 last) {
            const unsigned64 count = (last - first + 1) * array.perElement;
            buffer.resize(count);
            const unsigned64 found = array.read(first, last, buffer.data(), count);
            if (found != count)
                stopShort(array.task, run.source, zone.id, first, last, found, count);
            array.write(first, last, buffer.data(), count);
        });
    array.end();
}

// ---- ragged arrays: a count per element, then as many ids

struct RaggedArray {
    KelFormatFamily family;
    const char* task;
    KelZoneCategory category;
    std::function<unsigned64(unsigned64 first, unsigned64 last, short* counts, unsigned64 capacity)> readCounts;
    std::function<bool(const Zone& zone, short* count)> isUniform;
    std::function<unsigned64(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity)> readIds;
    std::function<void(const std::vector<int>& zones)> start;
    std::function<void()> startCounts;
    std::function<void(unsigned64 first, unsigned64 last, short count)> writeUniformCount;
    std::function<void(unsigned64 first, unsigned64 last, const short* counts, unsigned64 count)> writeCounts;
    std::function<void()> endCounts;
    std::function<void()> startIds;
    std::function<void(unsigned64 first, unsigned64 last, const unsigned64* ids, unsigned64 count)> writeIds;
    std::function<void()> endIds;
    std::function<void()> end;
};

void readCounts(const TransferRun& run, const RaggedArray& array, const Zone& zone, unsigned64 first, unsigned64 last,
                std::vector<short>& counts)
{
    counts.resize(last - first + 1);
    const unsigned64 found = array.readCounts(first, last, counts.data(), counts.size());
    if (found != counts.size())
        stopShort(array.task, run.source, zone.id, first, last, found, counts.size());
    const auto negative = std::find_if(counts.begin(), counts.end(), [](short count) { return count < 0; });
    if (negative != counts.end())
        throw TransferStopped(std::string(array.task) + " of " + zoneLabel(run.source, zone.id) +
                                  ": the reader gave a count of " + std::to_string(*negative),
                              false);
}

void copyCounts(TransferRun& run, const RaggedArray& array, const Zones& zones)
{
    std::vector<short> counts;
    array.startCounts();
    for (const Zone& zone : zones) {
        short uniform = 0;
        if (array.isUniform && array.isUniform(zone, &uniform)) {
            array.writeUniformCount(zone.first, zone.last, uniform);
            continue;
        }
        run.forChunks(array.task, zone, 1, sizeof(short), [&](unsigned64 first, unsigned64 last) {
            readCounts(run, array, zone, first, last, counts);
            array.writeCounts(first, last, counts.data(), counts.size());
        });
    }
    array.endCounts();
}

/// Copies the ids of a piece of a zone whose counts are known, in pieces of a chunk at most.
void copyIdsOfPiece(TransferRun& run, const RaggedArray& array, const Zone& zone, unsigned64 first,
                    const std::vector<short>& counts, std::vector<unsigned64>& ids)
{
    for (std::size_t from = 0; from < counts.size();) {
        std::size_t to = from;
        unsigned64 sum = 0;
        do
            sum += static_cast<unsigned64>(counts[to++]);
        while (to < counts.size() && sum + static_cast<unsigned64>(counts[to]) <= run.chunkSize);
        if (sum > 0) {
            ids.resize(sum);
            const unsigned64 found = array.readIds(first + from, first + to - 1, ids.data(), sum);
            if (found != sum)
                stopShort(array.task, run.source, zone.id, first + from, first + to - 1, found, sum);
            array.writeIds(first + from, first + to - 1, ids.data(), sum);
        }
        run.tell(array.task, first + to - zone.first, zone.last - zone.first + 1, sum * sizeof(unsigned64));
        from = to;
    }
}

void copyArray(TransferRun& run, const RaggedArray& array)
{
    const Zones zones = zonesThatHave(run, array.category, [&](const Zone& zone) {
        short count = 0;
        return array.readCounts(zone.first, zone.first, &count, 1) == 1 ||
               (array.isUniform && array.isUniform(zone, &count));
    });
    const auto says = [&](const Zone& zone) {
        return array.isUniform ||
               saysMoreThanNone<short>(run, zone, array.readCounts); // children: none where not split
    };
    if (zones.empty() || !carriesZones(run, array.family, zones, says))
        return;
    array.start(TransferRun::idsOf(zones));
    copyCounts(run, array, zones);
    array.startIds();
    std::vector<short> counts;
    std::vector<unsigned64> ids;
    for (const Zone& zone : zones) {
        short uniform = 0;
        const bool isUniform = array.isUniform && array.isUniform(zone, &uniform);
        run.forChunks(array.task, zone, 1, 0, [&](unsigned64 first, unsigned64 last) {
            if (isUniform)
                counts.assign(last - first + 1, uniform);
            else
                readCounts(run, array, zone, first, last, counts);
            copyIdsOfPiece(run, array, zone, first, counts, ids);
        });
    }
    array.endIds();
    array.end();
}

// ---- the element kinds

void copyNodes(TransferRun& run)
{
    KelProvider& from = run.source;
    KelConsumer& to = run.target;
    unsigned64 dimension = 0;
    from.getMeshSize(KEL_MESH_DIMENSION, dimension);
    if (dimension == 0 || dimension > 16) // no mesh, or no dimension at all
        return;
    to.startWritingNodes(TransferRun::idsOf(run.zonesWithElements(KEL_NODE_ZONE)));
    copyArray<double>(run, {KEL_FAMILY_COORDINATES, "coordinates", KEL_NODE_ZONE, dimension,
                            [&](auto first, auto last, double* xyz, auto n) {
                                return from.getCoordinatesForNodesInRange(first, last, xyz, n);
                            },
                            [&](const auto& zones) { to.startWritingCoordinatesForNodes(zones); },
                            [&](auto first, auto last, const double* xyz, auto n) {
                                to.setCoordinatesForNodesInRange(first, last, xyz, n);
                            },
                            [&] { to.endWritingCoordinatesForNodes(); }});
    to.endWritingNodes();
}

void copyEdges(TransferRun& run)
{
    KelProvider& from = run.source;
    KelConsumer& to = run.target;
    const Zones zones = run.zonesWithElements(KEL_EDGE_ZONE);
    if (zones.empty())
        return;
    to.startWritingEdges(TransferRun::idsOf(zones));
    copyArray(
        run,
        {KEL_FAMILY_EDGES, "nodes of edges", KEL_EDGE_ZONE,
         [&](auto first, auto last, short* counts, auto n) {
             return from.getNodeCountsForEdgesInRange(first, last, counts, n);
         },
         [&](const Zone& zone, short* count) { return from.hasUniformNodeCountForEdgesInZone(zone.id, count); },
         [&](auto first, auto last, auto* ids, auto n) { return from.getNodeIdsForEdgesInRange(first, last, ids, n); },
         [&](const auto& ids) { to.startWritingNodesForEdges(ids); }, [&] { to.startWritingNodeCountsForEdges(); },
         [&](auto first, auto last, short count) { to.setUniformNodeCountForEdgesInRange(first, last, count); },
         [&](auto first, auto last, const short* counts, auto n) {
             to.setNodeCountsForEdgesInRange(first, last, counts, n);
         },
         [&] { to.endWritingNodeCountsForEdges(); }, [&] { to.startWritingNodeIdsForEdges(); },
         [&](auto first, auto last, const auto* ids, auto n) { to.setNodeIdsForEdgesInRange(first, last, ids, n); },
         [&] { to.endWritingNodeIdsForEdges(); }, [&] { to.endWritingNodesForEdges(); }});
    to.endWritingEdges();
}

void copyNodesOfFaces(TransferRun& run)
{
    KelProvider& from = run.source;
    KelConsumer& to = run.target;
    copyArray(
        run,
        {KEL_FAMILY_FACE_NODES, "nodes of faces", KEL_FACE_ZONE,
         [&](auto first, auto last, short* counts, auto n) {
             return from.getNodeCountsForFacesInRange(first, last, counts, n);
         },
         [&](const Zone& zone, short* count) { return from.hasUniformNodeCountForFacesInZone(zone.id, count); },
         [&](auto first, auto last, auto* ids, auto n) { return from.getNodeIdsForFacesInRange(first, last, ids, n); },
         [&](const auto& ids) { to.startWritingNodesForFaces(ids); }, [&] { to.startWritingNodeCountsForFaces(); },
         [&](auto first, auto last, short count) { to.setUniformNodeCountForFacesInRange(first, last, count); },
         [&](auto first, auto last, const short* counts, auto n) {
             to.setNodeCountsForFacesInRange(first, last, counts, n);
         },
         [&] { to.endWritingNodeCountsForFaces(); }, [&] { to.startWritingNodeIdsForFaces(); },
         [&](auto first, auto last, const auto* ids, auto n) { to.setNodeIdsForFacesInRange(first, last, ids, n); },
         [&] { to.endWritingNodeIdsForFaces(); }, [&] { to.endWritingNodesForFaces(); }});
}

void copyCellsOfFaces(TransferRun& run)
{
    KelProvider& from = run.source;
    KelConsumer& to = run.target;
    copyArray<unsigned64>(
        run,
        {KEL_FAMILY_FACE_CELLS, "cell 0 of faces", KEL_FACE_ZONE, 1,
         [&](auto first, auto last, auto* ids, auto n) { return from.getCell0sForFacesInRange(first, last, ids, n); },
         [&](const auto& zones) { to.startWritingCell0sForFaces(zones); },
         [&](auto first, auto last, const auto* ids, auto n) { to.setCell0sForFacesInRange(first, last, ids, n); },
         [&] { to.endWritingCell0sForFaces(); }});
    copyArray<unsigned64>(
        run,
        {KEL_FAMILY_FACE_CELLS, "cell 1 of faces", KEL_FACE_ZONE, 1,
         [&](auto first, auto last, auto* ids, auto n) { return from.getCell1sForFacesInRange(first, last, ids, n); },
         [&](const auto& zones) { to.startWritingCell1sForFaces(zones); },
         [&](auto first, auto last, const auto* ids, auto n) { to.setCell1sForFacesInRange(first, last, ids, n); },
         [&] { to.endWritingCell1sForFaces(); }});
    copyArray<unsigned64>(run, {KEL_FAMILY_SHADOW_FACES, "shadow faces", KEL_FACE_ZONE, 1,
                                [&](auto first, auto last, auto* ids, auto n) {
                                    return from.getShadowFaceIdsForFacesInRange(first, last, ids, n);
                                },
                                [&](const auto& zones) { to.startWritingShadowFaceIdsForFaces(zones); },
                                [&](auto first, auto last, const auto* ids, auto n) {
                                    to.setShadowFaceIdsForFacesInRange(first, last, ids, n);
                                },
                                [&] { to.endWritingShadowFaceIdsForFaces(); }});
}

void copyInterfaces(TransferRun& run)
{
    struct Sizes {
        unsigned64 a = 0, b = 0, ids0 = 0, ids1 = 0;
    };
    KelProvider& from = run.source;
    KelConsumer& to = run.target;
    const auto sizesOf = [&](int zone, Sizes& sizes) {
        return from.getInterfaceDataSizesForFacesInZone(zone, sizes.a, sizes.b, sizes.ids0, sizes.ids1);
    };
    std::vector<int> zones;
    from.getZoneIds(KEL_FACE_ZONE, zones);
    zones.erase(std::remove_if(zones.begin(), zones.end(),
                               [&](int zone) {
                                   Sizes sizes;
                                   return !sizesOf(zone, sizes);
                               }),
                zones.end());
    const bool carried = run.takes(KEL_FAMILY_INTERFACE_DATA);
    for (const int zone : zones)
        run.carries(KEL_FAMILY_INTERFACE_DATA, zoneLabel(from, zone));
    if (zones.empty() || !carried)
        return;
    std::vector<int> side0, side1;
    from.startReadingInterfaceDataForFaces(side0, side1);
    to.startWritingInterfaceDataForFaces(side0, side1);
    for (const int zone : zones) {
        Sizes sizes;
        sizesOf(zone, sizes);
        std::vector<double> a(sizes.a), b(sizes.b);
        std::vector<unsigned64> ids0(sizes.ids0), ids1(sizes.ids1);
        const unsigned64 found = from.getInterfaceDataForFacesInZone(
            zone, a.data(), a.size(), b.data(), b.size(), ids0.data(), ids0.size(), ids1.data(), ids1.size());
        const unsigned64 expected = a.size() + b.size() + ids0.size() + ids1.size();
        if (found != expected)
            stopShort("interface data of " + zoneLabel(from, zone), found, expected);
        to.setInterfaceDataForFacesInZone(zone, a.data(), a.size(), b.data(), b.size(), ids0.data(), ids0.size(),
                                          ids1.data(), ids1.size());
        run.tell("interface data", 0, 0, expected * 8);
    }
    to.endWritingInterfaceDataForFaces();
    from.endReadingInterfaceDataForFaces();
}

void copyChildFaces(TransferRun& run)
{
    KelProvider& from = run.source;
    KelConsumer& to = run.target;
    copyArray(run, {KEL_FAMILY_CHILD_FACES, "child faces", KEL_FACE_ZONE,
                    [&](auto first, auto last, short* counts, auto n) {
                        return from.getChildFaceCountsForFacesInRange(first, last, counts, n);
                    },
                    nullptr,
                    [&](auto first, auto last, auto* ids, auto n) {
                        return from.getChildFaceIdsForFacesInRange(first, last, ids, n);
                    },
                    [&](const auto& ids) { to.startWritingChildFacesForFaces(ids); },
                    [&] { to.startWritingChildFaceCountsForFaces(); },
                    [&](auto first, auto last, short count) {
                        to.setUniformChildFaceCountForFacesInRange(first, last, count);
                    },
                    [&](auto first, auto last, const short* counts, auto n) {
                        to.setChildFaceCountsForFacesInRange(first, last, counts, n);
                    },
                    [&] { to.endWritingChildFaceCountsForFaces(); }, [&] { to.startWritingChildFaceIdsForFaces(); },
                    [&](auto first, auto last, const auto* ids, auto n) {
                        to.setChildFaceIdsForFacesInRange(first, last, ids, n);
                    },
                    [&] { to.endWritingChildFaceIdsForFaces(); }, [&] { to.endWritingChildFacesForFaces(); }});
}

void copyTypesOfCells(TransferRun& run)
{
    KelProvider& from = run.source;
    KelConsumer& to = run.target;
    const auto uniform = [&](const Zone& zone, KelCellType& type) {
        return from.hasUniformTypeForCellsInZone(zone.id, &type);
    };
    const Zones zones = zonesThatHave(run, KEL_CELL_ZONE, [&](const Zone& zone) {
        KelCellType type;
        return uniform(zone, type) || from.getTypesForCellsInRange(zone.first, zone.first, &type, 1) == 1;
    });
    if (zones.empty() || !carriesZones(run, KEL_FAMILY_CELL_TYPES, zones, [](const Zone&) { return true; }))
        return;
    constexpr auto mixed = static_cast<KelCellType>(-1);
    std::vector<KelCellType> types;
    for (const Zone& zone : zones) {
        KelCellType type = mixed;
        types.push_back(uniform(zone, type) ? type : mixed);
    }
    to.startWritingTypesForCells(TransferRun::idsOf(zones), types);
    std::vector<KelCellType> buffer;
    for (std::size_t n = 0; n < zones.size(); ++n) {
        if (types[n] != mixed) // complete with the start marker
            continue;
        run.forChunks("types of cells", zones[n], 1, sizeof(KelCellType), [&](unsigned64 first, unsigned64 last) {
            buffer.resize(last - first + 1);
            const unsigned64 found = from.getTypesForCellsInRange(first, last, buffer.data(), buffer.size());
            if (found != buffer.size())
                stopShort("types of cells", from, zones[n].id, first, last, found, buffer.size());
            to.setTypesForCellsInRange(first, last, buffer.data(), buffer.size());
        });
    }
    to.endWritingTypesForCells();
}

void copyNodesOfCells(TransferRun& run)
{
    KelProvider& from = run.source;
    KelConsumer& to = run.target;
    copyArray(
        run,
        {KEL_FAMILY_CELL_NODES, "nodes of cells", KEL_CELL_ZONE,
         [&](auto first, auto last, short* counts, auto n) {
             return from.getNodeCountsForCellsInRange(first, last, counts, n);
         },
         [&](const Zone& zone, short* count) { return from.hasUniformNodeCountForCellsInZone(zone.id, count); },
         [&](auto first, auto last, auto* ids, auto n) { return from.getNodeIdsForCellsInRange(first, last, ids, n); },
         [&](const auto& ids) { to.startWritingNodesForCells(ids); }, [&] { to.startWritingNodeCountsForCells(); },
         [&](auto first, auto last, short count) { to.setUniformNodeCountForCellsInRange(first, last, count); },
         [&](auto first, auto last, const short* counts, auto n) {
             to.setNodeCountsForCellsInRange(first, last, counts, n);
         },
         [&] { to.endWritingNodeCountsForCells(); }, [&] { to.startWritingNodeIdsForCells(); },
         [&](auto first, auto last, const auto* ids, auto n) { to.setNodeIdsForCellsInRange(first, last, ids, n); },
         [&] { to.endWritingNodeIdsForCells(); }, [&] { to.endWritingNodesForCells(); }});
}

void copyFacesOfCells(TransferRun& run)
{
    KelProvider& from = run.source;
    KelConsumer& to = run.target;
    copyArray(
        run,
        {KEL_FAMILY_CELL_FACES, "faces of cells", KEL_CELL_ZONE,
         [&](auto first, auto last, short* counts, auto n) {
             return from.getFaceCountsForCellsInRange(first, last, counts, n);
         },
         [&](const Zone& zone, short* count) { return from.hasUniformFaceCountForCellsInZone(zone.id, count); },
         [&](auto first, auto last, auto* ids, auto n) { return from.getFaceIdsForCellsInRange(first, last, ids, n); },
         [&](const auto& ids) { to.startWritingFacesForCells(ids); }, [&] { to.startWritingFaceCountsForCells(); },
         [&](auto first, auto last, short count) { to.setUniformFaceCountForCellsInRange(first, last, count); },
         [&](auto first, auto last, const short* counts, auto n) {
             to.setFaceCountsForCellsInRange(first, last, counts, n);
         },
         [&] { to.endWritingFaceCountsForCells(); }, [&] { to.startWritingFaceIdsForCells(); },
         [&](auto first, auto last, const auto* ids, auto n) { to.setFaceIdsForCellsInRange(first, last, ids, n); },
         [&] { to.endWritingFaceIdsForCells(); }, [&] { to.endWritingFacesForCells(); }});
}

void copyChildCells(TransferRun& run)
{
    KelProvider& from = run.source;
    KelConsumer& to = run.target;
    copyArray(run, {KEL_FAMILY_CHILD_CELLS, "child cells", KEL_CELL_ZONE,
                    [&](auto first, auto last, short* counts, auto n) {
                        return from.getChildCellCountsForCellsInRange(first, last, counts, n);
                    },
                    nullptr,
                    [&](auto first, auto last, auto* ids, auto n) {
                        return from.getChildCellIdsForCellsInRange(first, last, ids, n);
                    },
                    [&](const auto& ids) { to.startWritingChildCellsForCells(ids); },
                    [&] { to.startWritingChildCellCountsForCells(); },
                    [&](auto first, auto last, short count) {
                        to.setUniformChildCellCountForCellsInRange(first, last, count);
                    },
                    [&](auto first, auto last, const short* counts, auto n) {
                        to.setChildCellCountsForCellsInRange(first, last, counts, n);
                    },
                    [&] { to.endWritingChildCellCountsForCells(); }, [&] { to.startWritingChildCellIdsForCells(); },
                    [&](auto first, auto last, const auto* ids, auto n) {
                        to.setChildCellIdsForCellsInRange(first, last, ids, n);
                    },
                    [&] { to.endWritingChildCellIdsForCells(); }, [&] { to.endWritingChildCellsForCells(); }});
}

void copyPartitions(TransferRun& run)
{
    KelProvider& from = run.source;
    KelConsumer& to = run.target;
    copyArray<int>(
        run,
        {KEL_FAMILY_CELL_PARTITIONS, "partitions of cells", KEL_CELL_ZONE, 1,
         [&](auto first, auto last, int* ids, auto n) {
             return from.getPartitionIdsForCellsInRange(first, last, ids, n);
         },
         [&](const auto& zones) { to.startWritingPartitionIdsForCells(zones, from.getPartitionCountOfCells()); },
         [&](auto first, auto last, const int* ids, auto n) { to.setPartitionIdsForCellsInRange(first, last, ids, n); },
         [&] { to.endWritingPartitionIdsForCells(); }});
}

} // namespace

void copyTopology(TransferRun& run)
{
    copyNodes(run);
    copyEdges(run);
    const std::vector<int> faceZones = TransferRun::idsOf(run.zonesWithElements(KEL_FACE_ZONE));
    if (!faceZones.empty()) {
        run.target.startWritingFaces(faceZones);
        copyNodesOfFaces(run);
        copyCellsOfFaces(run);
        copyInterfaces(run);
        copyChildFaces(run);
        run.target.endWritingFaces();
    }
    const std::vector<int> cellZones = TransferRun::idsOf(run.zonesWithElements(KEL_CELL_ZONE));
    if (!cellZones.empty()) {
        run.target.startWritingCells(cellZones);
        copyTypesOfCells(run);
        copyNodesOfCells(run);
        copyFacesOfCells(run);
        copyPartitions(run);
        copyChildCells(run);
        run.target.endWritingCells();
    }
}

} // namespace meridyn
