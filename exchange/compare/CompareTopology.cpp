#include "CompareRun.h"
#include "KelValueTypes.h"

#include <algorithm>

namespace meridyn {

namespace {

using Zone = CompareRun::Zone;
using IdReader = CompareRun::Reader<unsigned64>;
using CountReader = CompareRun::Reader<short>;
using Uniform = std::function<bool(KelProvider&, int zone, short* count)>;

/// Counts of a range, also from a reader that only knows that they are uniform.
CountReader withUniform(const CountReader& read, const Uniform& uniform, int zone)
{
    return [=](KelProvider& model, unsigned64 first, unsigned64 last, short* counts, unsigned64 capacity) {
        const unsigned64 found = read(model, first, last, counts, capacity);
        short count = 0;
        if (found != 0 || !uniform || !uniform(model, zone, &count))
            return found;
        std::fill(counts, counts + capacity, count);
        return capacity;
    };
}

/// Values of a range where 0 stands for none, so that a model without any has as many zeros.
template <class T>
CompareRun::Reader<T> withZeros(const CompareRun::Reader<T>& read)
{
    return [=](KelProvider& model, unsigned64 first, unsigned64 last, T* values, unsigned64 capacity) {
        const unsigned64 found = read(model, first, last, values, capacity);
        if (found != 0)
            return found;
        std::fill(values, values + capacity, T(0));
        return capacity;
    };
}

/// Compares counts, then the ids where the counts are the same.
void compareRagged(CompareRun& run, KelFormatFamily family, const std::string& what, const Zone& zone,
                   const CountReader& readCounts, const Uniform& uniform, const IdReader& readIds)
{
    const CountReader counts = withUniform(readCounts, uniform, zone.id);
    const std::string item = what + " of " + zone.label;
    run.compareArray<short>(family, "number of " + item, zone, 1, counts);
    unsigned64 differences = 0;
    std::vector<short> one, other;
    std::vector<unsigned64> idsOne, idsOther;
    run.forChunks(zone, 8, [&](unsigned64 first, unsigned64 last) {
        one.assign(last - first + 1, 0);
        other = one;
        if (counts(run.first, first, last, one.data(), one.size()) != one.size() ||
            counts(run.second, first, last, other.data(), other.size()) != other.size() || one != other)
            return; // reported above
        unsigned64 sum = 0;
        for (const short count : one)
            sum += static_cast<unsigned64>(std::max<short>(count, 0));
        idsOne.assign(sum, 0);
        idsOther.assign(sum, 0);
        idsOne.resize(readIds(run.first, first, last, idsOne.data(), sum));
        idsOther.resize(readIds(run.second, first, last, idsOther.data(), sum));
        if (idsOne.size() != idsOther.size()) {
            if (differences++ < run.options.differencesPerItem)
                run.differ(family, item + ", number of ids", first, std::to_string(idsOne.size()),
                           std::to_string(idsOther.size()));
        } else if (idsOne != idsOther)
            for (std::size_t element = 0, end = 0, n = 0; element < one.size(); ++element)
                for (end += static_cast<std::size_t>(std::max<short>(one[element], 0)); n < end; ++n)
                    if (n < idsOne.size() && idsOne[n] != idsOther[n] && differences++ < run.options.differencesPerItem)
                        run.differ(family, item, first + element, std::to_string(idsOne[n]),
                                   std::to_string(idsOther[n]));
    });
    run.noteRest(family, item, differences);
}

// clang-format off
void compareFaces(CompareRun& run, const Zone& zone)
{
    compareRagged(run, KEL_FAMILY_FACE_NODES, "nodes of faces", zone,
        [](auto& m, auto a, auto b, auto* v, auto n) { return m.getNodeCountsForFacesInRange(a, b, v, n); },
        [](auto& m, int z, short* c) { return m.hasUniformNodeCountForFacesInZone(z, c); },
        [](auto& m, auto a, auto b, auto* v, auto n) { return m.getNodeIdsForFacesInRange(a, b, v, n); });
    run.compareArray<unsigned64>(KEL_FAMILY_FACE_CELLS, "cell 0 of " + zone.label, zone, 1,
        [](auto& m, auto a, auto b, auto* v, auto n) { return m.getCell0sForFacesInRange(a, b, v, n); });
    run.compareArray<unsigned64>(KEL_FAMILY_FACE_CELLS, "cell 1 of " + zone.label, zone, 1,
        withZeros<unsigned64>([](auto& m, auto a, auto b, auto* v, auto n) { return m.getCell1sForFacesInRange(a, b, v, n); }));
    run.compareArray<unsigned64>(KEL_FAMILY_SHADOW_FACES, "shadow faces of " + zone.label, zone, 1,
        withZeros<unsigned64>([](auto& m, auto a, auto b, auto* v, auto n) { return m.getShadowFaceIdsForFacesInRange(a, b, v, n); }));
    compareRagged(run, KEL_FAMILY_CHILD_FACES, "child faces", zone,
        withZeros<short>([](auto& m, auto a, auto b, auto* v, auto n) { return m.getChildFaceCountsForFacesInRange(a, b, v, n); }), nullptr,
        [](auto& m, auto a, auto b, auto* v, auto n) { return m.getChildFaceIdsForFacesInRange(a, b, v, n); });
}

/// Types of a range, also from a reader that only knows that they are uniform.
unsigned64 readTypes(KelProvider& model, int zone, unsigned64 first, unsigned64 last, int* types, unsigned64 capacity)
{
    KelCellType uniform;
    if (model.hasUniformTypeForCellsInZone(zone, &uniform)) {
        std::fill(types, types + capacity, static_cast<int>(uniform));
        return capacity;
    }
    std::vector<KelCellType> buffer(capacity);
    const unsigned64 found = model.getTypesForCellsInRange(first, last, buffer.data(), capacity);
    std::copy(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(std::min(found, capacity)), types);
    return found;
}

void compareCells(CompareRun& run, const Zone& zone)
{
    run.compareArray<int>(KEL_FAMILY_CELL_TYPES, "type of cells of " + zone.label, zone, 1,
        [&zone](auto& m, auto a, auto b, auto* v, auto n) { return readTypes(m, zone.id, a, b, v, n); });
    compareRagged(run, KEL_FAMILY_CELL_NODES, "nodes of cells", zone,
        [](auto& m, auto a, auto b, auto* v, auto n) { return m.getNodeCountsForCellsInRange(a, b, v, n); },
        [](auto& m, int z, short* c) { return m.hasUniformNodeCountForCellsInZone(z, c); },
        [](auto& m, auto a, auto b, auto* v, auto n) { return m.getNodeIdsForCellsInRange(a, b, v, n); });
    compareRagged(run, KEL_FAMILY_CELL_FACES, "faces of cells", zone,
        [](auto& m, auto a, auto b, auto* v, auto n) { return m.getFaceCountsForCellsInRange(a, b, v, n); },
        [](auto& m, int z, short* c) { return m.hasUniformFaceCountForCellsInZone(z, c); },
        [](auto& m, auto a, auto b, auto* v, auto n) { return m.getFaceIdsForCellsInRange(a, b, v, n); });
    run.compareArray<int>(KEL_FAMILY_CELL_PARTITIONS, "partitions of " + zone.label, zone, 1,
        [](auto& m, auto a, auto b, auto* v, auto n) { return m.getPartitionIdsForCellsInRange(a, b, v, n); });
    compareRagged(run, KEL_FAMILY_CHILD_CELLS, "child cells", zone,
        withZeros<short>([](auto& m, auto a, auto b, auto* v, auto n) { return m.getChildCellCountsForCellsInRange(a, b, v, n); }), nullptr,
        [](auto& m, auto a, auto b, auto* v, auto n) { return m.getChildCellIdsForCellsInRange(a, b, v, n); });
}
// clang-format on

void compareInterfaces(CompareRun& run, const Zone& zone)
{
    struct Data {
        std::vector<double> a, b;
        std::vector<unsigned64> ids0, ids1;
    };
    const auto read = [&zone](KelProvider& model) {
        unsigned64 na = 0, nb = 0, count0 = 0, count1 = 0;
        Data data;
        if (!model.getInterfaceDataSizesForFacesInZone(zone.id, na, nb, count0, count1))
            return data;
        data = {std::vector<double>(na), std::vector<double>(nb), std::vector<unsigned64>(count0),
                std::vector<unsigned64>(count1)};
        model.getInterfaceDataForFacesInZone(zone.id, data.a.data(), na, data.b.data(), nb, data.ids0.data(), count0,
                                             data.ids1.data(), count1);
        return data;
    };
    const Data one = read(run.first), other = read(run.second);
    const auto compare = [&](const std::string& what, const auto& left, const auto& right) {
        const std::string item = "interface " + what + " of " + zone.label;
        unsigned64 differences = 0;
        run.same(KEL_FAMILY_INTERFACE_DATA, "number of " + item, std::to_string(left.size()),
                 std::to_string(right.size()));
        run.compareValues(KEL_FAMILY_INTERFACE_DATA, item, 1, 1, left, right, differences);
        run.noteRest(KEL_FAMILY_INTERFACE_DATA, item, differences);
    };
    compare("shares on side 0", one.a, other.a);
    compare("shares on side 1", one.b, other.b);
    compare("faces of side 0", one.ids0, other.ids0);
    compare("faces of side 1", one.ids1, other.ids1);
}

void compareLocalIds(CompareRun& run, const Zone& zone)
{
    const unsigned64 count = zone.last - zone.first + 1;
    unsigned64 probe = 0;
    if (run.first.getLocalElemIdsInZone(zone.id, &probe, 1) == 0 &&
        run.second.getLocalElemIdsInZone(zone.id, &probe, 1) == 0)
        return;
    std::vector<unsigned64> one(count), other(count);
    one.resize(run.first.getLocalElemIdsInZone(zone.id, one.data(), count));
    other.resize(run.second.getLocalElemIdsInZone(zone.id, other.data(), count));
    const std::string item = "local ids of " + zone.label;
    unsigned64 differences = 0;
    run.same(KEL_FAMILY_LOCAL_IDS, "number of " + item, std::to_string(one.size()), std::to_string(other.size()));
    run.compareValues(KEL_FAMILY_LOCAL_IDS, item, zone.first, 1, one, other, differences);
    run.noteRest(KEL_FAMILY_LOCAL_IDS, item, differences);
}

// ---- case sections

void compareSection(CompareRun& run, KelZoneCategory category, const std::string& name)
{
    std::vector<int> zonesOne, zonesOther;
    const KelPlainDataType one = run.first.startReadingCaseSectionForCategory(name, zonesOne);
    const KelPlainDataType other = run.second.startReadingCaseSectionForCategory(name, zonesOther);
    const std::string section = "case section '" + name + "'";
    if (run.same(KEL_FAMILY_CASE_SECTIONS, "type of " + section, std::to_string(one), std::to_string(other)))
        for (const Zone& zone : run.zones(category)) {
            const bool inOne = std::find(zonesOne.begin(), zonesOne.end(), zone.id) != zonesOne.end();
            const bool inOther = std::find(zonesOther.begin(), zonesOther.end(), zone.id) != zonesOther.end();
            const std::string item = section + ", " + zone.label;
            unsigned64 sizeOne = 0, sizeOther = 0;
            if (inOne)
                run.first.hasUniformCaseSectionDataCountForZone(zone.id, &sizeOne);
            if (inOther)
                run.second.hasUniformCaseSectionDataCountForZone(zone.id, &sizeOther);
            if (run.same(KEL_FAMILY_CASE_SECTIONS, "values per element of " + item, std::to_string(sizeOne),
                         std::to_string(sizeOther)) &&
                sizeOne > 0)
                visitPlainType(one, [&](auto* null) {
                    run.compareArray<std::remove_pointer_t<decltype(null)>>(
                        KEL_FAMILY_CASE_SECTIONS, item, zone, sizeOne, [](auto& m, auto a, auto b, auto* v, auto n) {
                            return m.getCaseSectionDataForElementsInRange(a, b, v, n);
                        });
                });
        }
    run.first.endReadingCaseSectionForCategory();
    run.second.endReadingCaseSectionForCategory();
}

void compareSections(CompareRun& run, KelZoneCategory category)
{
    std::vector<std::string> one, other;
    run.first.startReadingCaseSectionCategories(category, one);
    run.second.startReadingCaseSectionCategories(category, other);
    for (const std::string& name : run.common(KEL_FAMILY_CASE_SECTIONS, "case section", one, other))
        compareSection(run, category, name);
    run.first.endReadingCaseSectionCategories();
    run.second.endReadingCaseSectionCategories();
}

} // namespace

void compareTopology(CompareRun& run)
{
    unsigned64 dimension = 0;
    run.first.getMeshSize(KEL_MESH_DIMENSION, dimension);
    if (dimension > 0)
        for (const Zone& zone : run.zones(KEL_NODE_ZONE))
            run.compareArray<double>(
                KEL_FAMILY_COORDINATES, "coordinates of " + zone.label, zone, dimension,
                [](auto& m, auto a, auto b, auto* v, auto n) { return m.getCoordinatesForNodesInRange(a, b, v, n); });
    for (const Zone& zone : run.zones(KEL_EDGE_ZONE))
        compareRagged(
            run, KEL_FAMILY_EDGES, "nodes of edges", zone,
            [](auto& m, auto a, auto b, auto* v, auto n) { return m.getNodeCountsForEdgesInRange(a, b, v, n); },
            [](auto& m, int z, short* c) { return m.hasUniformNodeCountForEdgesInZone(z, c); },
            [](auto& m, auto a, auto b, auto* v, auto n) { return m.getNodeIdsForEdgesInRange(a, b, v, n); });
    for (const Zone& zone : run.zones(KEL_FACE_ZONE)) {
        compareFaces(run, zone);
        compareInterfaces(run, zone);
    }
    for (const Zone& zone : run.zones(KEL_CELL_ZONE))
        compareCells(run, zone);
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE}) {
        for (const Zone& zone : run.zones(category))
            compareLocalIds(run, zone);
        compareSections(run, category);
    }
}

} // namespace meridyn
