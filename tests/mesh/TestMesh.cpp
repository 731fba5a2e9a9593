#include "TestMesh.h"

#include "KelGeneratedProvider.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace meridyn {

namespace {

constexpr KelZoneCategory categories[] = {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE};

/// Stores one value per element of a range; nothing when the elements or the room are too few.
template <class List, class Value, class Of>
unsigned64 give(const List& list, unsigned64 first, unsigned64 last, Value* to, unsigned64 capacity, const Of& of)
{
    if (first == 0 || last >= list.size() || last - first + 1 > capacity)
        return 0;
    for (unsigned64 id = first; id <= last; ++id)
        *to++ = static_cast<Value>(of(list[id]));
    return last - first + 1;
}

/// Stores the lists of all elements of a range, one behind the other.
template <class List, class Value, class Of>
unsigned64 giveAll(const List& list, unsigned64 first, unsigned64 last, Value* to, unsigned64 capacity, const Of& of)
{
    unsigned64 stored = 0;
    for (unsigned64 id = first; id != 0 && id <= last && id < list.size(); ++id)
        for (const auto& value : of(list[id])) {
            if (stored == capacity)
                return stored;
            to[stored++] = value;
        }
    return stored;
}

} // namespace

TestMesh::TestMesh(const TestMesh& other)
    : KelBase(),
      KelProvider(),
      dimension(other.dimension),
      nodes(other.nodes),
      edges(other.edges),
      faces(other.faces),
      cells(other.cells),
      zones(other.zones),
      sets(other.sets),
      sizes(other.sizes),
      partitions(other.partitions),
      hasTypes(other.hasTypes),
      hasFaceCells(other.hasFaceCells),
      hasFaceLists(other.hasFaceLists),
      hasPartitions(other.hasPartitions)
{}

TestMesh TestMesh::box(const std::string& text)
{
    KelGeneratedProvider from;
    from.setFile(text, KEL_CASE);
    EXPECT_TRUE(from.startReading(KEL_CASE)) << text;
    TestMesh mesh;
    for (const KelZoneCategory category : categories) {
        std::vector<int> ids;
        from.getZoneIds(category, ids);
        for (const int id : ids) {
            Zone zone{id, category, 0, 0, -1};
            from.getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, zone.first);
            from.getZoneSizeInfo(id, KEL_ZONE_LAST_ID, zone.last);
            if (category == KEL_FACE_ZONE)
                from.getFaceZoneInfo(id, KEL_FACE_ZONE_INFO_TYPE, zone.kind);
            mesh.zones.push_back(zone);
        }
    }
    const auto sizeOf = [&](KelMeshSizeType type) {
        unsigned64 size = 0;
        from.getMeshSize(type, size);
        return size;
    };
    for (unsigned64 id = 1; id <= sizeOf(KEL_MESH_SIZE_1); ++id) {
        mesh.nodes.emplace_back(3);
        from.getCoordinatesForNode(id, mesh.nodes.back().data(), 3);
    }
    for (unsigned64 id = 1; id <= sizeOf(KEL_MESH_SIZE_3); ++id) {
        Face face;
        face.nodes.resize(static_cast<std::size_t>(from.getNodeCountForFace(id)));
        from.getNodeIdsForFace(id, face.nodes.data(), face.nodes.size());
        face.cell0 = from.getCell0ForFace(id);
        face.cell1 = from.getCell1ForFace(id);
        face.shadow = from.getShadowFaceIdForFace(id);
        face.children.resize(static_cast<std::size_t>(from.getChildFaceCountForFace(id)));
        from.getChildFaceIdsForFace(id, face.children.data(), face.children.size());
        mesh.faces.push_back(face);
    }
    for (unsigned64 id = 1; id <= sizeOf(KEL_MESH_SIZE_4); ++id) {
        Cell cell;
        cell.type = from.getTypeForCell(id);
        cell.nodes.resize(static_cast<std::size_t>(from.getNodeCountForCell(id)));
        from.getNodeIdsForCell(id, cell.nodes.data(), cell.nodes.size());
        mesh.cells.push_back(cell);
    }
    return mesh;
}

TestMesh TestMesh::plane(unsigned64 nx, unsigned64 ny)
{
    TestMesh mesh;
    mesh.dimension = 2;
    const auto node = [&](unsigned64 i, unsigned64 j) { return i + (nx + 1) * j + 1; };
    const auto cell = [&](unsigned64 i, unsigned64 j) { return i < nx && j < ny ? i + nx * j + 1 : 0; };
    for (unsigned64 j = 0; j <= ny; ++j)
        for (unsigned64 i = 0; i <= nx; ++i)
            mesh.nodes.push_back({static_cast<double>(i), static_cast<double>(j)});
    std::vector<Face> outer;
    // A line goes on its way with cell 0 to its left.
    for (unsigned64 j = 0; j < ny; ++j)
        for (unsigned64 i = 0; i <= nx; ++i) {
            const unsigned64 left = i > 0 ? cell(i - 1, j) : 0, right = cell(i, j);
            Face face{{node(i, j), node(i, j + 1)}, left, right, 0, {}};
            if (left == 0)
                face = {{node(i, j + 1), node(i, j)}, right, 0, 0, {}};
            (left == 0 || right == 0 ? outer : mesh.faces).push_back(face);
        }
    for (unsigned64 j = 0; j <= ny; ++j)
        for (unsigned64 i = 0; i < nx; ++i) {
            const unsigned64 below = j > 0 ? cell(i, j - 1) : 0, above = cell(i, j);
            Face face{{node(i + 1, j), node(i, j)}, below, above, 0, {}};
            if (below == 0)
                face = {{node(i, j), node(i + 1, j)}, above, 0, 0, {}};
            (below == 0 || above == 0 ? outer : mesh.faces).push_back(face);
        }
    const unsigned64 inner = mesh.faces.size() - 1;
    mesh.faces.insert(mesh.faces.end(), outer.begin(), outer.end());
    for (unsigned64 j = 0; j < ny; ++j)
        for (unsigned64 i = 0; i < nx; ++i) {
            Cell square;
            square.type = KEL_CELL_QUADRILATERAL;
            square.nodes = {node(i, j), node(i + 1, j), node(i + 1, j + 1), node(i, j + 1)};
            mesh.cells.push_back(square);
        }
    mesh.zones = {{1, KEL_NODE_ZONE, 1, mesh.nodes.size() - 1, -1},
                  {2, KEL_FACE_ZONE, 1, inner, KEL_FACE_ZONE_TYPE_INTERIOR},
                  {3, KEL_FACE_ZONE, inner + 1, mesh.faces.size() - 1, KEL_FACE_ZONE_TYPE_WALL},
                  {10, KEL_CELL_ZONE, 1, nx * ny, -1}};
    if (inner == 0)
        mesh.zones.erase(mesh.zones.begin() + 1);
    return mesh;
}

void TestMesh::open()
{
    setMeshSize(KEL_MESH_DIMENSION, dimension);
    for (std::size_t n = 0; n < sizes.size(); ++n)
        setMeshSize(static_cast<KelMeshSizeType>(KEL_MESH_SIZE_1 + n), sizes[n]);
    for (const KelZoneCategory category : categories) {
        std::vector<int> ids;
        for (const Zone& each : zones)
            if (each.category == category)
                ids.push_back(each.id);
        setZoneIds(category, ids);
    }
    for (const Zone& each : zones) {
        setZoneSizeInfo(each.id, KEL_ZONE_FIRST_ID, each.first);
        setZoneSizeInfo(each.id, KEL_ZONE_LAST_ID, each.last);
        if (each.category == KEL_FACE_ZONE && each.kind >= 0)
            setFaceZoneType(each.id, static_cast<KelFaceZoneType>(each.kind));
    }
}

TestMesh::Zone& TestMesh::zone(int id)
{
    return *std::find_if(zones.begin(), zones.end(), [id](const Zone& each) { return each.id == id; });
}

// ---- changes ------------------------------------------------------------------------------------------------------

void TestMesh::merge(const std::vector<unsigned64>& group)
{
    const auto isIn = [&](unsigned64 cell) { return std::find(group.begin(), group.end(), cell) != group.end(); };
    // The others close up behind the merged cell, which takes the smallest id.
    std::vector<unsigned64> now(cells.size());
    std::vector<Cell> kept{{}};
    const unsigned64 smallest = *std::min_element(group.begin(), group.end());
    for (unsigned64 id = 1; id < cells.size(); ++id) {
        if (isIn(id) && id != smallest)
            continue;
        kept.push_back(cells[id]);
        now[id] = kept.size() - 1;
    }
    for (const unsigned64 id : group)
        now[id] = now[smallest];
    kept[now[smallest]].type = KEL_CELL_POLYHEDRON;
    kept[now[smallest]].nodes.clear();
    cells = kept;
    zone(10).last = cells.size() - 1;
    for (unsigned64 id = faces.size() - 1; id > 0; --id) {
        Face& face = faces[id];
        face.cell0 = now[face.cell0];
        face.cell1 = face.cell1 == 0 ? 0 : now[face.cell1];
        if (face.cell0 == face.cell1)
            removeFace(id);
    }
}

void TestMesh::removeFace(unsigned64 id)
{
    faces.erase(faces.begin() + static_cast<std::ptrdiff_t>(id));
    for (Zone& each : zones)
        if (each.category == KEL_FACE_ZONE) {
            each.first -= each.first > id ? 1 : 0;
            each.last -= each.last >= id ? 1 : 0;
        }
}

void TestMesh::dropFaces()
{
    faces.resize(1);
    std::erase_if(zones, [](const Zone& each) { return each.category == KEL_FACE_ZONE; });
}

void TestMesh::listFaces()
{
    hasFaceLists = true;
    for (unsigned64 id = 1; id < faces.size(); ++id)
        for (const unsigned64 cell : {faces[id].cell0, faces[id].cell1})
            if (cell != 0)
                cells[cell].faces.push_back(id);
}

void TestMesh::move(unsigned64 node, double x, double y, double z)
{
    nodes[node][0] += x;
    nodes[node][1] += y;
    if (dimension == 3)
        nodes[node][2] += z;
}

unsigned64 TestMesh::copyNode(unsigned64 node)
{
    nodes.push_back(nodes[node]);
    zone(1).last = nodes.size() - 1;
    return nodes.size() - 1;
}

unsigned64 TestMesh::addFace(const Face& face, int zoneId)
{
    faces.push_back(face);
    const auto known = std::find_if(zones.begin(), zones.end(), [&](const Zone& each) { return each.id == zoneId; });
    if (known == zones.end())
        zones.push_back({zoneId, KEL_FACE_ZONE, faces.size() - 1, faces.size() - 1, KEL_FACE_ZONE_TYPE_WALL});
    else
        known->last = faces.size() - 1;
    return faces.size() - 1;
}

void TestMesh::split(unsigned64 id, int zoneId, bool withNewNodes)
{
    const Face face = faces[id];
    removeFace(id);
    addFace({face.nodes, face.cell0, 0, 0, {}}, zoneId);
    Face other{{face.nodes.rbegin(), face.nodes.rend()}, face.cell1, 0, 0, {}};
    if (withNewNodes)
        for (unsigned64& node : other.nodes) {
            const unsigned64 old = node;
            node = copyNode(old);
            // All faces of the cell beyond take the new node, so that it stays closed.
            for (Face& each : faces)
                if (each.cell0 == face.cell1 && each.cell1 == 0)
                    std::replace(each.nodes.begin(), each.nodes.end(), old, node);
            std::replace(cells[face.cell1].nodes.begin(), cells[face.cell1].nodes.end(), old, node);
        }
    addFace(other, zoneId);
}

void TestMesh::shift(KelZoneCategory category, unsigned64 by)
{
    const auto moved = [&](unsigned64 id) { return id == 0 ? 0 : id + by; };
    for (Zone& each : zones)
        if (each.category == category) {
            each.first += by;
            each.last += by;
        }
    if (category == KEL_NODE_ZONE) {
        nodes.insert(nodes.begin() + 1, by, {});
        for (Face& face : faces)
            std::transform(face.nodes.begin(), face.nodes.end(), face.nodes.begin(), moved);
        for (Cell& cell : cells)
            std::transform(cell.nodes.begin(), cell.nodes.end(), cell.nodes.begin(), moved);
    } else if (category == KEL_CELL_ZONE) {
        cells.insert(cells.begin() + 1, by, {});
        for (Face& face : faces) {
            face.cell0 = moved(face.cell0);
            face.cell1 = moved(face.cell1);
        }
    } else {
        faces.insert(faces.begin() + 1, by, {});
        for (Face& face : faces)
            face.shadow = moved(face.shadow);
    }
}

TestMesh& TestMesh::append(const TestMesh& other, double x, double y, double z)
{
    const unsigned64 nodesBefore = nodes.size() - 1, facesBefore = faces.size() - 1, cellsBefore = cells.size() - 1;
    for (unsigned64 id = 1; id < other.nodes.size(); ++id) {
        nodes.push_back(other.nodes[id]);
        move(nodes.size() - 1, x, y, z);
    }
    for (unsigned64 id = 1; id < other.faces.size(); ++id) {
        Face face = other.faces[id];
        for (unsigned64& node : face.nodes)
            node += nodesBefore;
        face.cell0 += cellsBefore;
        face.cell1 += face.cell1 == 0 ? 0 : cellsBefore;
        faces.push_back(face);
    }
    for (unsigned64 id = 1; id < other.cells.size(); ++id) {
        Cell cell = other.cells[id];
        for (unsigned64& node : cell.nodes)
            node += nodesBefore;
        cells.push_back(cell);
    }
    const unsigned64 before[] = {nodesBefore, 0, facesBefore, cellsBefore};
    for (Zone each : other.zones) {
        each.id += 100;
        if (each.first == 0)
            continue; // an empty zone
        each.first += before[each.category];
        each.last += before[each.category];
        zones.push_back(each);
    }
    return *this;
}

// ---- answers ------------------------------------------------------------------------------------------------------

unsigned64 TestMesh::getCoordinatesForNodesInRange(unsigned64 first, unsigned64 last, double* xyz,
                                                   unsigned64 capacity) const
{
    return giveAll(
        nodes, first, last, xyz, capacity, [](const auto& node) -> const auto& { return node; });
}

unsigned64 TestMesh::getNodeCountsForEdgesInRange(unsigned64 first, unsigned64 last, short* counts,
                                                  unsigned64 capacity) const
{
    return give(edges, first, last, counts, capacity, [](const auto& edge) { return edge.size(); });
}

unsigned64 TestMesh::getNodeIdsForEdgesInRange(unsigned64 first, unsigned64 last, unsigned64* ids,
                                               unsigned64 capacity) const
{
    return giveAll(
        edges, first, last, ids, capacity, [](const auto& edge) -> const auto& { return edge; });
}

unsigned64 TestMesh::getNodeCountsForFacesInRange(unsigned64 first, unsigned64 last, short* counts,
                                                  unsigned64 capacity) const
{
    return give(faces, first, last, counts, capacity, [](const Face& face) { return face.nodes.size(); });
}

unsigned64 TestMesh::getNodeIdsForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids,
                                               unsigned64 capacity) const
{
    return giveAll(
        faces, first, last, ids, capacity, [](const Face& face) -> const auto& { return face.nodes; });
}

unsigned64 TestMesh::getCell0sForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids,
                                              unsigned64 capacity) const
{
    return hasFaceCells ? give(faces, first, last, ids, capacity, [](const Face& face) { return face.cell0; }) : 0;
}

unsigned64 TestMesh::getCell1sForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids,
                                              unsigned64 capacity) const
{
    return hasFaceCells ? give(faces, first, last, ids, capacity, [](const Face& face) { return face.cell1; }) : 0;
}

unsigned64 TestMesh::getShadowFaceIdsForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids,
                                                     unsigned64 capacity) const
{
    return give(faces, first, last, ids, capacity, [](const Face& face) { return face.shadow; });
}

unsigned64 TestMesh::getChildFaceCountsForFacesInRange(unsigned64 first, unsigned64 last, short* counts,
                                                       unsigned64 capacity) const
{
    return give(faces, first, last, counts, capacity, [](const Face& face) { return face.children.size(); });
}

unsigned64 TestMesh::getChildFaceIdsForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids,
                                                    unsigned64 capacity) const
{
    return giveAll(
        faces, first, last, ids, capacity, [](const Face& face) -> const auto& { return face.children; });
}

unsigned64 TestMesh::getTypesForCellsInRange(unsigned64 first, unsigned64 last, KelCellType* types,
                                             unsigned64 capacity) const
{
    return hasTypes ? give(cells, first, last, types, capacity, [](const Cell& cell) { return cell.type; }) : 0;
}

unsigned64 TestMesh::getNodeCountsForCellsInRange(unsigned64 first, unsigned64 last, short* counts,
                                                  unsigned64 capacity) const
{
    return give(cells, first, last, counts, capacity, [](const Cell& cell) { return cell.nodes.size(); });
}

unsigned64 TestMesh::getNodeIdsForCellsInRange(unsigned64 first, unsigned64 last, unsigned64* ids,
                                               unsigned64 capacity) const
{
    return giveAll(
        cells, first, last, ids, capacity, [](const Cell& cell) -> const auto& { return cell.nodes; });
}

unsigned64 TestMesh::getFaceCountsForCellsInRange(unsigned64 first, unsigned64 last, short* counts,
                                                  unsigned64 capacity) const
{
    return hasFaceLists ? give(cells, first, last, counts, capacity, [](const Cell& cell) { return cell.faces.size(); })
                        : 0;
}

unsigned64 TestMesh::getFaceIdsForCellsInRange(unsigned64 first, unsigned64 last, unsigned64* ids,
                                               unsigned64 capacity) const
{
    return giveAll(
        cells, first, last, ids, capacity, [](const Cell& cell) -> const auto& { return cell.faces; });
}

unsigned64 TestMesh::getPartitionIdsForCellsInRange(unsigned64 first, unsigned64 last, int* ids,
                                                    unsigned64 capacity) const
{
    return hasPartitions ? give(cells, first, last, ids, capacity, [](const Cell& cell) { return cell.partition; }) : 0;
}

unsigned64 TestMesh::getChildCellCountsForCellsInRange(unsigned64 first, unsigned64 last, short* counts,
                                                       unsigned64 capacity) const
{
    return give(cells, first, last, counts, capacity, [](const Cell& cell) { return cell.children.size(); });
}

unsigned64 TestMesh::getChildCellIdsForCellsInRange(unsigned64 first, unsigned64 last, unsigned64* ids,
                                                    unsigned64 capacity) const
{
    return giveAll(
        cells, first, last, ids, capacity, [](const Cell& cell) -> const auto& { return cell.children; });
}

bool TestMesh::getSetNames(KelDataClass dataClass, std::vector<std::string>& names) const
{
    names.clear();
    if (dataClass == KEL_CASE)
        for (const auto& [name, set] : sets)
            names.push_back(name);
    return !names.empty();
}

bool TestMesh::startReadingSet(const std::string& name)
{
    _open = &sets.at(name);
    return true;
}

void TestMesh::getSizesAndMinMaxIdsForSet(std::vector<unsigned64>& sizesOf, std::vector<unsigned64>& minIds,
                                          std::vector<unsigned64>& maxIds) const
{
    sizesOf = {_open->ids.size()};
    minIds = maxIds = {0};
}

unsigned64 TestMesh::getIdsForSetInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64) const
{
    std::copy(_open->ids.begin() + static_cast<std::ptrdiff_t>(first - 1),
              _open->ids.begin() + static_cast<std::ptrdiff_t>(last), ids);
    return last - first + 1;
}

} // namespace meridyn
