#include "Checks.h"

#include <limits>

namespace meridyn::conformance {

namespace {

constexpr KelFormatFamilies anyMesh = formatFamily(KEL_FAMILY_COORDINATES);

void meshRoundTrip(Case& test, const Mesh& mesh, Form form = Form::Range)
{
    if (!writeCase(test, mesh, form))
        return;
    const auto reader = test.reader();
    test.read(*reader, KEL_CASE, [&] { expectMesh(test, *reader, mesh); });
}

/// A mesh that a format may refuse: then with false and an error, and without leaving a model behind.
void meshRoundTripOrRefusal(Case& test, const Mesh& mesh)
{
    const auto writer = test.writer();
    declareMesh(*writer, mesh);
    bool taken = writer->startWriting(KEL_CASE);
    if (taken) {
        writeArrays(*writer, mesh, test.format.writes, Form::Range);
        taken = writer->endWriting(KEL_CASE);
    }
    const auto reader = test.reader();
    if (taken)
        test.read(*reader, KEL_CASE, [&] { expectMesh(test, *reader, mesh); });
    else {
        test.expect(writer->hasError(), "the writer refuses the mesh without a KelError");
        test.expect(!reader->startReading(KEL_CASE), "the writer refuses the mesh, but a reader opens it");
    }
}

void coordinatesInSinglePrecision(Case& test)
{
    Mesh mesh = smallMesh();
    for (double& value : mesh.coordinates)
        value = static_cast<float>(value);
    const std::vector<float> xyz(mesh.coordinates.begin(), mesh.coordinates.end());
    const auto writer = test.writer();
    declareMesh(*writer, mesh);
    const bool done = test.write(*writer, KEL_CASE, [&] {
        writer->startWritingCoordinatesForNodes({1});
        writer->setCoordinatesForNode(1, xyz.data(), 3);
        writer->setCoordinatesForNodesInRange(2, 4, xyz.data() + 3, 9);
        writer->setCoordinatesForNodesInRange(5, xyz.size() / 3, xyz.data() + 12, xyz.size() - 12);
        writer->endWritingCoordinatesForNodes();
        writeArrays(*writer, mesh, test.format.writes & ~anyMesh, Form::Range);
    });
    const auto reader = test.reader();
    if (done)
        test.read(*reader, KEL_CASE, [&] { expectMesh(test, *reader, mesh); });
}

void specialCoordinates(Case& test)
{
    using Limits = std::numeric_limits<double>;
    Mesh mesh = smallMesh();
    const std::vector<double> special = {-0.0, Limits::max(), Limits::lowest(), Limits::min(), Limits::denorm_min(),
                                         0.1,  1e-300,        -1.0 / 3.0,       1e22,          5e-324};
    std::copy(special.begin(), special.end(), mesh.coordinates.begin());
    if (!writeCase(test, mesh))
        return;
    const auto reader = test.reader();
    test.read(*reader, KEL_CASE, [&] {
        std::vector<double> found(special.size() / 3 * 3);
        found.resize(reader->getCoordinatesForNodesInRange(1, found.size() / 3, found.data(), found.size()));
        test.same("coordinates", std::vector<double>(special.begin(), special.begin() + 9), found);
    });
}

void boundaryCell1LeftOut(Case& test)
{
    const Mesh mesh = smallMesh();
    const auto writer = test.writer();
    declareMesh(*writer, mesh);
    const bool done = test.write(*writer, KEL_CASE, [&] {
        writeArrays(*writer, mesh, test.format.writes & ~formatFamily(KEL_FAMILY_FACE_CELLS), Form::Range);
        const unsigned64 faces = mesh.count(KEL_FACE_ZONE), interior = mesh.zone(2).last;
        writer->startWritingCell0sForFaces(idsOf(mesh.zonesOf(KEL_FACE_ZONE)));
        writer->setCell0sForFacesInRange(1, faces, mesh.cell0.data(), faces);
        writer->endWritingCell0sForFaces();
        writer->startWritingCell1sForFaces({2});
        writer->setCell1sForFacesInRange(1, interior, mesh.cell1.data(), interior);
        writer->endWritingCell1sForFaces();
    });
    const auto reader = test.reader();
    if (done)
        test.read(*reader, KEL_CASE, [&] { expectMesh(test, *reader, mesh); });
}

void typesWithTheZones(Case& test)
{
    const Mesh mesh = smallMesh(); // hexahedra only
    const auto writer = test.writer();
    declareMesh(*writer, mesh);
    const bool done = test.write(*writer, KEL_CASE, [&] {
        writeArrays(*writer, mesh, test.format.writes & ~formatFamily(KEL_FAMILY_CELL_TYPES), Form::Range);
        writer->startWritingTypesForCells({10, 11}, {KEL_CELL_HEXAHEDRON, static_cast<KelCellType>(-1)});
        const Zone& second = mesh.zone(11);
        writer->setTypesForCellsInZone(11, mesh.types.data() + second.first - 1, second.count());
        writer->endWritingTypesForCells();
    });
    const auto reader = test.reader();
    if (done)
        test.read(*reader, KEL_CASE, [&] {
            expectMesh(test, *reader, mesh);
            for (const Zone& zone : mesh.zonesOf(KEL_CELL_ZONE)) {
                KelCellType type = KEL_CELL_POLYGON;
                if (reader->hasUniformTypeForCellsInZone(zoneIn(test, *reader, zone), &type))
                    test.expect(type == KEL_CELL_HEXAHEDRON,
                                "the uniform type of zone " + std::to_string(zone.id) + " is " + std::to_string(type));
            }
        });
}

void childCells(Case& test)
{
    Mesh mesh = smallMesh();
    for (unsigned64 cell = 1; cell <= mesh.types.size(); ++cell)
        mesh.childCells.add(cell == 2   ? std::vector<unsigned64>{5, 6, 7, 8}
                            : cell == 4 ? std::vector<unsigned64>{9}
                                        : std::vector<unsigned64>{});
    meshRoundTrip(test, mesh);
}

void partitionCount(Case& test)
{
    const Mesh mesh = smallMesh();
    roundTrip(test, mesh, nullptr, nullptr, [&](KelFileProvider& reader) {
        test.same("partitions", 3, static_cast<unsigned64>(reader.getPartitionCountOfCells()));
    });
}

} // namespace

void addMeshChecks(Checks& checks)
{
    const auto add = [&checks](const char* name, KelFormatFamilies needs, const std::function<void(Case&)>& run) {
        checks.push_back({name, needs, run});
    };
    const auto roundTripOf = [](const std::string& line, Form form) {
        return [line, form](Case& test) { meshRoundTrip(test, boxMesh(line), form); };
    };
    add("mesh-by-range", anyMesh, [](Case& test) { meshRoundTrip(test, smallMesh(), Form::Range); });
    add("mesh-by-zone", anyMesh, [](Case& test) { meshRoundTrip(test, smallMesh(), Form::Zone); });
    add("mesh-by-element", anyMesh, [](Case& test) { meshRoundTrip(test, smallMesh(), Form::Element); });
    add("mesh-in-pieces", anyMesh, [](Case& test) { meshRoundTrip(test, smallMesh(), Form::Pieces); });
    add("mesh-with-uniform-counts", anyMesh, [](Case& test) { meshRoundTrip(test, smallMesh(), Form::Uniform); });
    add("mesh-of-one-cell", anyMesh, roundTripOf("box:1x1x1", Form::Range));
    add("mesh-of-tetrahedra", anyMesh, roundTripOf("box:2x2x2 cells:tet zones:2", Form::Zone));
    add("mesh-of-prisms", anyMesh, roundTripOf("box:3x2x3 cells:prism zones:3", Form::Pieces));
    add("mesh-of-pyramids", anyMesh, roundTripOf("box:2x2x2 cells:pyramid", Form::Uniform));
    add("mesh-of-polyhedra", anyMesh, roundTripOf("box:2x3x2 cells:poly", Form::Element));
    add("mesh-of-many-cells", anyMesh, roundTripOf("box:9x8x7 zones:3 partitions:4", Form::Range));
    add("mesh-without-elements", anyMesh, [](Case& test) { meshRoundTripOrRefusal(test, Mesh()); });
    add("mesh-of-two-dimensions", anyMesh, [](Case& test) { meshRoundTripOrRefusal(test, planeMesh()); });
    add("coordinates-in-single-precision", anyMesh, coordinatesInSinglePrecision);
    add("coordinates-of-special-values", anyMesh, specialCoordinates);
    add("cell-1-of-boundaries-left-out", families({KEL_FAMILY_FACE_CELLS}), boundaryCell1LeftOut);
    add("cell-types-with-the-zones", families({KEL_FAMILY_CELL_TYPES}), typesWithTheZones);
    add("shadow-faces", families({KEL_FAMILY_SHADOW_FACES}), roundTripOf("box:2x3x2 periodic", Form::Zone));
    add("child-faces", families({KEL_FAMILY_CHILD_FACES}), roundTripOf("box:2x2x4 hanging", Form::Zone));
    add("child-cells", families({KEL_FAMILY_CHILD_CELLS}), childCells);
    add("partition-count", families({KEL_FAMILY_CELL_PARTITIONS}), partitionCount);
}

} // namespace meridyn::conformance
