// Small random meshes, written in random order and pieces, come back whatever they look like.
#include "Hdf5TestSupport.h"

#include <functional>
#include <numeric>
#include <random>

using namespace hdf5test;

namespace {

using Ids = std::vector<unsigned64>;
using IdLists = std::vector<Ids>; // by element of a category, in ascending order of ids

struct Zone {
    int id;
    unsigned64 first;
    unsigned64 count;
};

/// Zones of one category, some of them empty, with gaps between their ids that may be wider than 32 bits.
struct Category {
    std::vector<Zone> zones; ///< in ascending order of their elements
    Ids elements;            ///< all of them

    const unsigned64& any(std::mt19937_64& random) const { return elements[random() % elements.size()]; }
};

class Mesh {
public:
    explicit Mesh(unsigned seed) : _random(seed)
    {
        int nextZone = -3;
        for (Category& category : categories) {
            unsigned64 next = 1;
            for (int n = 1 + static_cast<int>(below(4)); n > 0; --n) {
                if (below(4) == 0)
                    next += 1ULL << below(45);
                const unsigned64 count = n == 1 ? 1 + below(9) : below(9);
                category.zones.push_back({nextZone, count == 0 ? 0 : next, count});
                nextZone += 1 + static_cast<int>(below(3));
                for (unsigned64 i = 0; i < count; ++i)
                    category.elements.push_back(next++);
            }
        }
        coordinates.resize(3 * nodes().elements.size());
        for (double& value : coordinates)
            value = static_cast<double>(_random()) / 1e15;
        faceNodes = lists(faces(), nodes(), 6);
        cellNodes = lists(cells(), nodes(), 9);
        cellFaces = lists(cells(), faces(), 7);
        faceChildren = lists(faces(), faces(), 3);
        for (std::size_t i = 0; i < faces().elements.size(); ++i) {
            cell0.push_back(cells().any(_random));
            cell1.push_back(below(2) == 0 ? 0 : cells().any(_random));
            shadow.push_back(below(3) == 0 ? faces().any(_random) : 0);
        }
        for (std::size_t i = 0; i < cells().elements.size(); ++i) {
            types.push_back(static_cast<KelCellType>(below(8)));
            values.push_back(static_cast<double>(_random()));
        }
    }

    Category categories[4];
    const Category& nodes() const { return categories[KEL_NODE_ZONE]; }
    const Category& faces() const { return categories[KEL_FACE_ZONE]; }
    const Category& cells() const { return categories[KEL_CELL_ZONE]; }
    std::vector<double> coordinates;
    IdLists faceNodes, cellNodes, cellFaces, faceChildren;
    Ids cell0, cell1, shadow;
    std::vector<KelCellType> types;
    std::vector<double> values;

    unsigned64 below(unsigned64 limit) { return _random() % limit; }

    /// Pieces of all zones of a category in random order: first and last id, and index of the first element.
    std::vector<std::array<unsigned64, 3>> pieces(const Category& category)
    {
        std::vector<std::array<unsigned64, 3>> pieces;
        unsigned64 index = 0;
        for (const Zone& zone : category.zones)
            for (unsigned64 done = 0; done < zone.count;) {
                const unsigned64 n = 1 + below(zone.count - done);
                pieces.push_back({zone.first + done, zone.first + done + n - 1, index});
                done += n;
                index += n;
            }
        std::shuffle(pieces.begin(), pieces.end(), _random);
        return pieces;
    }

    std::mt19937_64& random() { return _random; }

private:
    IdLists lists(const Category& of, const Category& to, unsigned64 limit)
    {
        IdLists lists(of.elements.size());
        const bool isUniform = below(3) == 0;
        for (Ids& list : lists) {
            list.resize(isUniform ? limit - 1 : below(limit));
            for (unsigned64& id : list)
                id = to.any(_random);
        }
        return lists;
    }

    std::mt19937_64 _random;
};

void declare(Writer& writer, Mesh& mesh)
{
    writer.setMeshSize(KEL_MESH_DIMENSION, 3);
    for (int category = 0; category < 4; ++category) {
        std::vector<Zone> zones = mesh.categories[category].zones;
        std::shuffle(zones.begin(), zones.end(), mesh.random());
        std::vector<int> ids;
        ids.reserve(zones.size());
        for (const Zone& zone : zones)
            ids.push_back(zone.id);
        writer.setZoneIds(static_cast<KelZoneCategory>(category), ids);
        for (const Zone& zone : zones)
            writer.zone(static_cast<KelZoneCategory>(category), zone.id, zone.first,
                        zone.count == 0 ? 0 : zone.first + zone.count - 1);
    }
}

std::vector<short> countsOf(const IdLists& lists, unsigned64 index, unsigned64 n)
{
    std::vector<short> counts;
    for (unsigned64 i = index; i < index + n; ++i)
        counts.push_back(static_cast<short>(lists[i].size()));
    return counts;
}

Ids idsOf(const IdLists& lists, unsigned64 index, unsigned64 n)
{
    Ids ids;
    for (unsigned64 i = index; i < index + n; ++i)
        ids.insert(ids.end(), lists[i].begin(), lists[i].end());
    return ids;
}

using SetCounts = void (KelConsumer::*)(unsigned64, unsigned64, const short*, unsigned64);
using SetIds = void (KelConsumer::*)(unsigned64, unsigned64, const unsigned64*, unsigned64);
using GetCounts = unsigned64 (KelProvider::*)(unsigned64, unsigned64, short*, unsigned64) const;
using GetIds = unsigned64 (KelProvider::*)(unsigned64, unsigned64, unsigned64*, unsigned64) const;

/// All pieces of work, to be done in any order.
using Jobs = std::vector<std::function<void()>>;

void addLists(Jobs& jobs, Writer& writer, Mesh& mesh, const Category& category, const IdLists& lists,
              SetCounts setCounts, SetIds setIds)
{
    for (const auto& [first, last, index] : mesh.pieces(category))
        jobs.emplace_back([&writer, &lists, setCounts, first = first, last = last, index = index] {
            const auto counts = countsOf(lists, index, last - first + 1);
            (writer.*setCounts)(first, last, counts.data(), counts.size());
        });
    for (const auto& [first, last, index] : mesh.pieces(category))
        jobs.emplace_back([&writer, &lists, setIds, first = first, last = last, index = index] {
            const Ids ids = idsOf(lists, index, last - first + 1);
            (writer.*setIds)(first, last, ids.data(), ids.size());
        });
}

void addIds(Jobs& jobs, Writer& writer, Mesh& mesh, const Category& category, const Ids& ids, SetIds set)
{
    for (const auto& [first, last, index] : mesh.pieces(category))
        jobs.emplace_back([&writer, &ids, set, first = first, last = last, index = index] {
            (writer.*set)(first, last, ids.data() + index, last - first + 1);
        });
}

void expectLists(const Reader& reader, Mesh& mesh, const Category& category, const IdLists& lists, GetCounts getCounts,
                 GetIds getIds)
{
    for (const auto& [first, last, index] : mesh.pieces(category)) {
        const unsigned64 n = last - first + 1;
        std::vector<short> counts(n);
        EXPECT_EQ((reader.*getCounts)(first, last, counts.data(), n), n);
        EXPECT_EQ(counts, countsOf(lists, index, n));
        Ids ids(100);
        ids.resize((reader.*getIds)(first, last, ids.data(), ids.size()));
        EXPECT_EQ(ids, idsOf(lists, index, n));
    }
}

void expectIds(const Reader& reader, Mesh& mesh, const Category& category, const Ids& expected, GetIds get)
{
    for (const auto& [first, last, index] : mesh.pieces(category)) {
        Ids ids(last - first + 1);
        EXPECT_EQ((reader.*get)(first, last, ids.data(), ids.size()), ids.size());
        EXPECT_TRUE(std::equal(ids.begin(), ids.end(), expected.begin() + static_cast<std::ptrdiff_t>(index)));
    }
}

} // namespace

class RandomMesh : public ::testing::TestWithParam<int> {};

TEST_P(RandomMesh, ComesBack)
{
    const Folder folder;
    for (unsigned seed = 1; seed <= 25; ++seed) {
        SCOPED_TRACE(seed);
        Mesh mesh(seed);
        Writer writer;
        writer.setCompression(GetParam());
        declare(writer, mesh);
        ASSERT_TRUE(writer.startWriting(folder / "r.case.kel", KEL_CASE)) << writer.errors();
        Jobs jobs;
        addLists(jobs, writer, mesh, mesh.faces(), mesh.faceNodes, &KelConsumer::setNodeCountsForFacesInRange,
                 &KelConsumer::setNodeIdsForFacesInRange);
        addLists(jobs, writer, mesh, mesh.cells(), mesh.cellNodes, &KelConsumer::setNodeCountsForCellsInRange,
                 &KelConsumer::setNodeIdsForCellsInRange);
        addLists(jobs, writer, mesh, mesh.cells(), mesh.cellFaces, &KelConsumer::setFaceCountsForCellsInRange,
                 &KelConsumer::setFaceIdsForCellsInRange);
        addLists(jobs, writer, mesh, mesh.faces(), mesh.faceChildren, &KelConsumer::setChildFaceCountsForFacesInRange,
                 &KelConsumer::setChildFaceIdsForFacesInRange);
        addIds(jobs, writer, mesh, mesh.faces(), mesh.cell0, &KelConsumer::setCell0sForFacesInRange);
        addIds(jobs, writer, mesh, mesh.faces(), mesh.cell1, &KelConsumer::setCell1sForFacesInRange);
        addIds(jobs, writer, mesh, mesh.faces(), mesh.shadow, &KelConsumer::setShadowFaceIdsForFacesInRange);
        for (const auto& [first, last, index] : mesh.pieces(mesh.nodes()))
            jobs.emplace_back([&writer, &mesh, first = first, last = last, index = index] {
                writer.setCoordinatesForNodesInRange(first, last, mesh.coordinates.data() + 3 * index,
                                                     3 * (last - first + 1));
            });
        for (const auto& [first, last, index] : mesh.pieces(mesh.cells()))
            jobs.emplace_back([&writer, &mesh, first = first, last = last, index = index] {
                writer.setTypesForCellsInRange(first, last, mesh.types.data() + index, last - first + 1);
            });
        // Counts change places with ids of other elements, but an id never comes before the counts are complete and
        // then changed: every job is done once.
        std::shuffle(jobs.begin(), jobs.end(), mesh.random());
        for (const auto& job : jobs)
            job();
        ASSERT_TRUE(writer.endWriting(KEL_CASE)) << writer.errors();

        short phase = 0;
        int variable = 0;
        writer.addPhaseName("gas", phase);
        writer.addPhaseVariable(phase, "v", variable);
        writer.startWritingPhase(phase);
        ASSERT_TRUE(writer.startWriting(folder / "r.data.kel", KEL_DATA)) << writer.errors();
        std::vector<int> zones;
        writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, variable, zones, 1);
        for (const auto& [first, last, index] : mesh.pieces(mesh.cells()))
            writer.setValuesOfPhaseVariableForElementsInRange(first, last, mesh.values.data() + index,
                                                              last - first + 1);
        ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();

        Reader reader;
        ASSERT_TRUE(reader.startReading(folder / "r.case.kel", KEL_CASE)) << reader.errors();
        ASSERT_TRUE(reader.startReading(folder / "r.data.kel", KEL_DATA)) << reader.errors();
        expectLists(reader, mesh, mesh.faces(), mesh.faceNodes, &KelProvider::getNodeCountsForFacesInRange,
                    &KelProvider::getNodeIdsForFacesInRange);
        expectLists(reader, mesh, mesh.cells(), mesh.cellNodes, &KelProvider::getNodeCountsForCellsInRange,
                    &KelProvider::getNodeIdsForCellsInRange);
        expectLists(reader, mesh, mesh.cells(), mesh.cellFaces, &KelProvider::getFaceCountsForCellsInRange,
                    &KelProvider::getFaceIdsForCellsInRange);
        expectLists(reader, mesh, mesh.faces(), mesh.faceChildren, &KelProvider::getChildFaceCountsForFacesInRange,
                    &KelProvider::getChildFaceIdsForFacesInRange);
        expectIds(reader, mesh, mesh.faces(), mesh.cell0, &KelProvider::getCell0sForFacesInRange);
        expectIds(reader, mesh, mesh.faces(), mesh.cell1, &KelProvider::getCell1sForFacesInRange);
        expectIds(reader, mesh, mesh.faces(), mesh.shadow, &KelProvider::getShadowFaceIdsForFacesInRange);
        for (std::size_t i = 0; i < mesh.cells().elements.size(); ++i)
            EXPECT_EQ(reader.getTypeForCell(mesh.cells().elements[i]), mesh.types[i]);
        for (std::size_t i = 0; i < mesh.nodes().elements.size(); ++i) {
            double xyz[3] = {};
            EXPECT_EQ(reader.getCoordinatesForNode(mesh.nodes().elements[i], xyz, 3), 3u);
            EXPECT_EQ(xyz[1], mesh.coordinates[3 * i + 1]);
        }
        reader.startReadingPhase(phase);
        EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, variable, zones), 1u);
        EXPECT_EQ(zones.size(), mesh.cells().zones.size());
        for (const auto& [first, last, index] : mesh.pieces(mesh.cells())) {
            std::vector<double> values(last - first + 1);
            EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInRange(first, last, values.data(), values.size()),
                      values.size());
            EXPECT_EQ(values.front(), mesh.values[index]);
        }
        EXPECT_EQ(reader.errors(), "");
    }
}

INSTANTIATE_TEST_SUITE_P(Plain, RandomMesh, ::testing::Values(0));
INSTANTIATE_TEST_SUITE_P(Compressed, RandomMesh, ::testing::Values(3));
