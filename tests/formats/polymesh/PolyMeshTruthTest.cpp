// Every case that is kept here against what the tools that wrote it say about it, in its truth.json.
#include "KelComponents.h"
#include "MeshGeometry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <numeric>

using namespace meridyn;
using nlohmann::json;

namespace {

const std::string cases[] = {"bubble-column",    "cavity-ascii", "cavity-ascii-gz", "cavity-binary",
                             "cavity-binary-gz", "dambreak",     "duct-poly",       "duct-tetra",
                             "mixed-cells",      "mixer-zones",  "pipe-cyclic",     "sphere-snappy"};

std::string folderOf(const std::string& name)
{
    return std::string(KEL_SOURCE_DIR) + "/tests/data/polymesh/" + name;
}

/// The phase and the variable of a field file.
struct Variable {
    std::string phase, name;
};

Variable variableOf(const std::string& caseName, const std::string& file)
{
    if (caseName != "bubble-column" && caseName != "dambreak")
        return {"phase-1", file};
    static const std::map<std::string, Variable> named = {{"U.air", {"air", "U"}},
                                                          {"U.airMean", {"air", "UMean"}},
                                                          {"U.water", {"water", "U"}},
                                                          {"U.waterMean", {"water", "UMean"}},
                                                          {"alpha.air", {"air", "alpha"}},
                                                          {"alpha.airMean", {"air", "alphaMean"}},
                                                          {"alpha.water", {"water", "alpha"}},
                                                          {"phi.air", {"air", "phi"}},
                                                          {"phi.water", {"water", "phi"}},
                                                          {"alphaPhi0.water", {"water", "alphaPhi0"}}};
    const auto found = named.find(file);
    return found != named.end() ? found->second : Variable{"<Mixture>", file};
}

std::vector<double> numbers(const json& value)
{
    return value.is_array() ? value.get<std::vector<double>>() : std::vector<double>{value.get<double>()};
}

class Truth : public ::testing::TestWithParam<std::string> {
protected:
    void SetUp() override
    {
        std::ifstream file(folderOf(GetParam()) + "/truth.json");
        truth = json::parse(file).at("regions").at("region0");
        ASSERT_TRUE(reader.startReading(folderOf(GetParam()), KEL_CASE)) << errors();
        ASSERT_TRUE(reader.startReading(folderOf(GetParam()), KEL_DATA)) << errors();
    }

    void TearDown() override { EXPECT_EQ(errors(), ""); }

    std::string errors()
    {
        std::string all;
        for (const auto& list : {reader.getErrors(false, false), reader.getWarnings(false, false)})
            for (const std::string& text : list)
                all += text + "\n";
        return all;
    }

    /// Names of the times, by value.
    std::vector<std::string> times() const
    {
        std::vector<std::string> names;
        for (const auto& [time, entry] : truth["times"].items())
            names.push_back(time);
        std::sort(names.begin(), names.end(), [](const auto& a, const auto& b) { return std::stod(a) < std::stod(b); });
        return names;
    }

    std::vector<MeshGeometry::Zone> zones(KelZoneCategory category) const
    {
        return MeshGeometry::zones(reader, category);
    }

    MeshGeometry::Zone zoneNamed(KelZoneCategory category, const std::string& name) const
    {
        for (const MeshGeometry::Zone& zone : zones(category))
            if (zone.name == name)
                return zone;
        ADD_FAILURE() << "no zone " << name;
        return {};
    }

    KelPolyMeshProvider reader;
    json truth;
};

TEST_P(Truth, CountsOfTheMesh)
{
    const json& stats = truth["mesh"]["stats"];
    unsigned64 sizes[5];
    for (int n = 0; n < 5; ++n)
        reader.getMeshSize(static_cast<KelMeshSizeType>(n), sizes[n]);
    EXPECT_EQ(sizes[0], 3u);
    EXPECT_EQ(sizes[1], stats["points"]);
    EXPECT_EQ(sizes[2], 0u);
    EXPECT_EQ(sizes[3], stats["faces"]);
    EXPECT_EQ(sizes[4], stats["cells"]);
    EXPECT_EQ(zoneNamed(KEL_FACE_ZONE, "interior").count, stats["internal_faces"]);
    EXPECT_EQ(zones(KEL_FACE_ZONE).size(), stats["boundary_patches"].get<std::size_t>() + 1);
    EXPECT_EQ(zones(KEL_NODE_ZONE).at(0).count, stats["points"]);
}

TEST_P(Truth, TypesOfCells)
{
    const MeshGeometry mesh(reader);
    std::map<KelCellType, int> found;
    std::map<std::string, int> polyhedra;
    for (std::size_t cell = 0; cell < mesh.types.size(); ++cell) {
        ++found[mesh.types[cell]];
        if (mesh.types[cell] == KEL_CELL_POLYHEDRON)
            ++polyhedra[std::to_string(mesh.faceCounts[cell])];
    }
    const json& types = truth["mesh"]["cell_types"];
    EXPECT_EQ(found[KEL_CELL_HEXAHEDRON], types["hexahedra"]);
    EXPECT_EQ(found[KEL_CELL_PRISM], types["prisms"]);
    EXPECT_EQ(found[KEL_CELL_PYRAMID], types["pyramids"]);
    EXPECT_EQ(found[KEL_CELL_TETRAHEDRON], types["tetrahedra"]);
    EXPECT_EQ(found[KEL_CELL_POLYHEDRON], types["polyhedra"]);
    if (truth["mesh"].contains("polyhedra_by_number_of_faces") &&
        truth["mesh"]["polyhedra_by_number_of_faces"].is_object()) {
        EXPECT_EQ(json(polyhedra), truth["mesh"]["polyhedra_by_number_of_faces"]);
    }
}

TEST_P(Truth, NodesOfCellsFitTheirFaces)
{
    const MeshGeometry mesh(reader);
    std::vector<std::set<unsigned64>> around(mesh.types.size());
    for (std::size_t face = 0; face < mesh.cell0s.size(); ++face)
        for (const unsigned64 cell : {mesh.cell0s[face], mesh.cell1s[face]})
            if (cell != 0)
                around[cell - 1].merge(mesh.nodesOfFaces(face + 1, face + 1));
    for (std::size_t cell = 0; cell < mesh.types.size(); ++cell) {
        const auto count = static_cast<std::size_t>(reader.getNodeCountForCell(cell + 1));
        std::vector<unsigned64> nodes(count);
        ASSERT_EQ(reader.getNodeIdsForCell(cell + 1, nodes.data(), count), count);
        if (mesh.types[cell] == KEL_CELL_POLYHEDRON) {
            ASSERT_EQ(count, 0u);
            continue;
        }
        ASSERT_EQ(std::set<unsigned64>(nodes.begin(), nodes.end()), around[cell]) << "cell " << cell + 1;
        const auto a = mesh.node(nodes[0]);
        const auto normal = MeshGeometry::cross(MeshGeometry::minus(mesh.node(nodes[1]), a),
                                                MeshGeometry::minus(mesh.node(nodes[2]), a));
        const auto inward = MeshGeometry::minus(mesh.cellCentres[cell], a);
        ASSERT_GT(MeshGeometry::dot(normal, inward), 0) << "cell " << cell + 1;
    }
}

TEST_P(Truth, FacesOfCellsAreTheirFaces)
{
    const MeshGeometry mesh(reader);
    std::vector<std::vector<unsigned64>> expected(mesh.types.size());
    for (std::size_t face = 0; face < mesh.cell0s.size(); ++face)
        for (const unsigned64 cell : {mesh.cell0s[face], mesh.cell1s[face]})
            if (cell != 0)
                expected[cell - 1].push_back(face + 1);
    for (std::size_t cell = 0; cell < expected.size(); ++cell) {
        std::vector<unsigned64> faces(static_cast<std::size_t>(reader.getFaceCountForCell(cell + 1)));
        reader.getFaceIdsForCell(cell + 1, faces.data(), faces.size());
        ASSERT_EQ(faces, expected[cell]) << "cell " << cell + 1;
    }
}

TEST_P(Truth, BoundingBoxAndVolumes)
{
    const MeshGeometry mesh(reader);
    const json& box = truth["mesh"]["bounding_box"];
    for (std::size_t d = 0; d < 3; ++d) {
        double least = mesh.xyz[d], most = mesh.xyz[d];
        for (std::size_t n = d; n < mesh.xyz.size(); n += 3) {
            least = std::min(least, mesh.xyz[n]);
            most = std::max(most, mesh.xyz[n]);
        }
        EXPECT_DOUBLE_EQ(least, box["min"][d]);
        EXPECT_DOUBLE_EQ(most, box["max"][d]);
    }
    const json& geometry = truth["cell_geometry"]["cell_volume"];
    const auto [least, most] = std::minmax_element(mesh.volumes.begin(), mesh.volumes.end());
    const double sum = std::accumulate(mesh.volumes.begin(), mesh.volumes.end(), 0.0);
    const double near = 1e-9 * geometry["max"].get<double>();
    EXPECT_NEAR(*least, geometry["min"], near);
    EXPECT_NEAR(*most, geometry["max"], near);
    EXPECT_NEAR(sum, truth["mesh"]["total_volume"], 1e-9 * sum);
    const json& centre = truth["cell_geometry"]["cell_centre"];
    for (std::size_t d = 0; d < 3; ++d) {
        double average = 0, largest = 0;
        for (std::size_t cell = 0; cell < mesh.volumes.size(); ++cell) {
            average += mesh.volumes[cell] * mesh.cellCentres[cell][d] / sum;
            largest = std::max(largest, std::abs(mesh.cellCentres[cell][d]));
        }
        EXPECT_NEAR(average, centre["volAverage"][d], 1e-9 * largest);
    }
}

TEST_P(Truth, PatchesAreFaceZones)
{
    const MeshGeometry mesh(reader);
    const auto faceZones = zones(KEL_FACE_ZONE);
    ASSERT_EQ(faceZones.size(), truth["patches"].size() + 1);
    for (std::size_t n = 0; n < truth["patches"].size(); ++n) {
        const json& patch = truth["patches"][n];
        const MeshGeometry::Zone& zone = faceZones[n + 1];
        EXPECT_EQ(zone.id, static_cast<int>(n) + 3);
        EXPECT_EQ(zone.name, patch["name"]);
        EXPECT_EQ(zone.kind, patch["type"]);
        EXPECT_EQ(zone.count, patch["n_faces"]);
        EXPECT_EQ(zone.first, patch["start_face"].get<unsigned64>() + 1);
        const std::set<unsigned64> nodes = mesh.nodesOfFaces(zone.first, zone.last);
        EXPECT_EQ(nodes.size(), patch["n_points"]);
        double area = 0;
        for (unsigned64 id = zone.first; id <= zone.last; ++id) {
            area += MeshGeometry::length(mesh.areas[id - 1]);
            ASSERT_EQ(mesh.cell1s[id - 1], 0u);
            const auto out = MeshGeometry::minus(mesh.faceCentres[id - 1], mesh.cellCentres[mesh.cell0s[id - 1] - 1]);
            ASSERT_GT(MeshGeometry::dot(mesh.areas[id - 1], out), 0);
        }
        if (patch.contains("area") && patch["area"].is_number()) {
            EXPECT_NEAR(area, patch["area"], 1e-9 * area);
        }
    }
}

TEST_P(Truth, CellZones)
{
    const MeshGeometry mesh(reader);
    unsigned64 next = 1;
    for (const MeshGeometry::Zone& zone : zones(KEL_CELL_ZONE))
        if (zone.count > 0) {
            EXPECT_EQ(zone.first, next);
            next = zone.last + 1;
        }
    EXPECT_EQ(next, mesh.types.size() + 1);
    for (const json& expected : truth["cell_zones"]) {
        const MeshGeometry::Zone zone = zoneNamed(KEL_CELL_ZONE, expected["name"]);
        EXPECT_EQ(zone.count, expected["n_cells"]);
        double volume = 0;
        for (unsigned64 id = zone.first; zone.count > 0 && id <= zone.last; ++id)
            volume += mesh.volumes[id - 1];
        if (expected.contains("volume") && expected["volume"].is_number()) {
            EXPECT_NEAR(volume, expected["volume"], 1e-9 * volume);
        }
    }
}

TEST_P(Truth, FaceZonesAreSets)
{
    const MeshGeometry mesh(reader);
    std::vector<std::string> names;
    reader.getSetNames(KEL_FACE_ZONE, names);
    ASSERT_EQ(names.size(), truth["face_zones"].size());
    for (const json& expected : truth["face_zones"]) {
        ASSERT_TRUE(reader.startReadingSet(expected["name"]));
        EXPECT_EQ(reader.getCategoryOfSet(), KEL_FACE_ZONE);
        std::vector<unsigned64> sizes, least, most;
        reader.getSizesAndMinMaxIdsForSet(sizes, least, most);
        ASSERT_EQ(sizes.size(), 1u);
        ASSERT_EQ(sizes[0], expected["n_faces"]);
        std::vector<unsigned64> ids(sizes[0]);
        ASSERT_EQ(reader.getIdsForSetInRange(1, ids.size(), ids.data(), ids.size()), ids.size());
        std::set<unsigned64> nodes;
        double area = 0;
        for (const unsigned64 id : ids) {
            nodes.merge(mesh.nodesOfFaces(id, id));
            area += MeshGeometry::length(mesh.areas[id - 1]);
        }
        EXPECT_EQ(nodes.size(), expected["n_points"]);
        EXPECT_NEAR(area, expected["surfaceFieldValue_area"], 1e-9 * area);
        reader.endReadingSet();
    }
}

/// The values of a field by component; elements without values are not a number.
class Values {
public:
    Values(KelPolyMeshProvider& reader, KelZoneCategory category, const Variable& variable, unsigned components,
           unsigned64 elements)
    {
        short phase = -1;
        std::vector<short> phases;
        reader.getPhaseIds(phases);
        for (const short id : phases)
            if (static_cast<const KelProvider&>(reader).getPhaseName(id) == variable.phase)
                phase = id;
        EXPECT_TRUE(reader.startReadingPhase(phase)) << variable.phase;
        EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(category, variable.name, zoneIds), components)
            << variable.name;
        values.assign(components, std::vector<double>(elements, std::nan("")));
        for (const int id : zoneIds) {
            const MeshGeometry::Zone zone = MeshGeometry::zone(reader, id);
            std::vector<double> all(components * zone.count);
            EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInZone(id, all.data(), all.size()), all.size());
            for (unsigned c = 0; c < components; ++c)
                splitComponent(all.data(), zone.count, components, c, &values[c][zone.first - 1]);
        }
    }

    double magnitude(std::size_t n) const
    {
        double sum = 0;
        for (const auto& component : values)
            sum += component[n] * component[n];
        return std::sqrt(sum);
    }

    std::vector<int> zoneIds;
    std::vector<std::vector<double>> values;
};

/// Least, largest and weighted average of some elements.
struct Statistics {
    double least = INFINITY, most = -INFINITY, largest = 0, sum = 0, weighted = 0, weight = 0;

    void add(double value, double by)
    {
        least = std::min(least, value);
        most = std::max(most, value);
        largest = std::max(largest, std::abs(value));
        sum += value;
        weighted += by * value;
        weight += by;
    }

    void check(const json& expected, std::size_t component, const char* averageKey, const std::string& what) const
    {
        SCOPED_TRACE(what + " component " + std::to_string(component));
        ASSERT_TRUE(std::isfinite(sum));
        EXPECT_NEAR(least, numbers(expected["min"])[component], 2e-15 * std::abs(least));
        EXPECT_NEAR(most, numbers(expected["max"])[component], 2e-15 * std::abs(most));
        EXPECT_NEAR(weighted / weight, numbers(expected[averageKey])[component], 1e-9 * largest);
    }
};

TEST_P(Truth, FieldsOfCells)
{
    const MeshGeometry mesh(reader);
    int level = 0, checked = 0;
    ASSERT_EQ(reader.getTimeLevels().size(), times().size());
    for (const std::string& time : times()) {
        reader.startReadingTimeLevel(level++);
        for (const auto& [file, expected] : truth["times"][time]["fields"].items()) {
            if (expected["class"].get<std::string>().rfind("vol", 0) != 0)
                continue;
            const unsigned components = expected["class"] == "volVectorField" ? 3 : 1;
            const Values field(reader, KEL_CELL_ZONE, variableOf(GetParam(), file), components, mesh.types.size());
            std::string what = time + "/" + file;
            Statistics size;
            for (unsigned c = 0; c < components; ++c) {
                Statistics all;
                for (std::size_t cell = 0; cell < mesh.types.size(); ++cell)
                    all.add(field.values[c][cell], mesh.volumes[cell]);
                all.check(expected["cells"], c, "volAverage", what);
                const double cells = static_cast<double>(mesh.types.size());
                EXPECT_NEAR(all.sum, numbers(expected["cells"]["sum"])[c], 1e-9 * all.largest * cells) << what;
                ++checked;
            }
            if (components == 3) {
                for (std::size_t cell = 0; cell < mesh.types.size(); ++cell)
                    size.add(field.magnitude(cell), mesh.volumes[cell]);
                size.check(expected["cells"]["magnitude"], 0, "volAverage", what + " magnitude");
            }
            if (!expected.contains("cell_zones"))
                continue;
            for (const auto& [name, zoneTruth] : expected["cell_zones"].items()) {
                const MeshGeometry::Zone zone = zoneNamed(KEL_CELL_ZONE, name);
                for (unsigned c = 0; c < components && zone.count > 0; ++c) {
                    Statistics part;
                    for (unsigned64 id = zone.first; id <= zone.last; ++id)
                        part.add(field.values[c][id - 1], mesh.volumes[id - 1]);
                    EXPECT_NEAR(part.weighted / part.weight, numbers(zoneTruth["volAverage"])[c], 1e-9 * part.largest)
                        << what << " in " << name;
                }
            }
        }
    }
    EXPECT_GT(checked, 0);
}

TEST_P(Truth, BoundaryValues)
{
    const MeshGeometry mesh(reader);
    int level = 0, checked = 0;
    for (const std::string& time : times()) {
        reader.startReadingTimeLevel(level++);
        for (const auto& [file, expected] : truth["times"][time]["fields"].items()) {
            const std::string className = expected["class"];
            const unsigned components = className == "volVectorField" ? 3 : 1;
            const Values field(reader, KEL_FACE_ZONE, variableOf(GetParam(), file), components, mesh.cell0s.size());
            for (const auto& [name, patch] : expected["patches"].items()) {
                const MeshGeometry::Zone zone = zoneNamed(KEL_FACE_ZONE, name);
                const std::string what = time + "/" + file + " on " + name;
                if (GetParam() == std::string("dambreak") && what == "0/p_rgh on atmosphere") {
                    EXPECT_THAT(field.zoneIds, ::testing::Not(::testing::Contains(zone.id))); // totalPressure, no value
                    continue;
                }
                for (unsigned c = 0; c < components; ++c) {
                    Statistics all;
                    for (unsigned64 id = zone.first; id <= zone.last; ++id)
                        all.add(field.values[c][id - 1], MeshGeometry::length(mesh.areas[id - 1]));
                    if (patch.contains("sum")) {
                        EXPECT_NEAR(all.sum, patch["sum"], 1e-9 * all.largest * static_cast<double>(zone.count))
                            << what;
                    } else
                        all.check(patch, c, "areaAverage", what);
                    ++checked;
                }
            }
        }
    }
    EXPECT_GT(checked, 0);
}

TEST_P(Truth, FluxThroughFaceZonesCountsTheFlips)
{
    const MeshGeometry mesh(reader);
    int level = 0;
    for (const std::string& time : times()) {
        reader.startReadingTimeLevel(level++);
        for (const auto& [file, expected] : truth["times"][time]["fields"].items()) {
            if (!expected.contains("face_zones"))
                continue;
            const Values field(reader, KEL_FACE_ZONE, variableOf(GetParam(), file), 1, mesh.cell0s.size());
            for (const auto& [name, zone] : expected["face_zones"].items()) {
                ASSERT_TRUE(reader.startReadingSet(name));
                std::vector<unsigned64> sizes, least, most;
                reader.getSizesAndMinMaxIdsForSet(sizes, least, most);
                std::vector<unsigned64> ids(sizes.at(0));
                std::vector<int> flips(sizes.at(0));
                unsigned64 perMember = 0;
                reader.getIdsForSetInRange(1, ids.size(), ids.data(), ids.size());
                EXPECT_EQ(reader.startReadingDataOfVariableForSet("flipMap", perMember), KEL_PLAIN_UNSIGNED_CHAR);
                reader.getDataOfVariableForSetInRange(1, ids.size(), flips.data(), ids.size());
                double sum = 0, largest = 0;
                for (std::size_t n = 0; n < ids.size(); ++n) {
                    sum += (flips[n] != 0 ? -1 : 1) * field.values[0][ids[n] - 1];
                    largest = std::max(largest, std::abs(field.values[0][ids[n] - 1]));
                }
                EXPECT_NEAR(sum, zone["sum"], 1e-9 * largest * static_cast<double>(ids.size())) << time << "/" << file;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, Truth, ::testing::ValuesIn(cases), [](const auto& row) {
    std::string name = row.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

} // namespace
