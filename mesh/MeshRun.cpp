#include "mesh/MeshRun.h"

#include "KelProvider.h"
#include "mesh/FaceStream.h"
#include "mesh/MeshText.h"
#include "mesh/Stopped.h"

#include <algorithm>
#include <limits>
#include <set>

namespace meridyn::mesh {

namespace {

constexpr unsigned64 chunk = 65536;
constexpr KelZoneCategory allCategories[] = {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE};

/// Number of elements of a category that the mesh is said to have.
unsigned64 meshSize(const KelBase& base, KelZoneCategory category)
{
    static constexpr KelMeshSizeType slots[] = {KEL_MESH_SIZE_1, KEL_MESH_SIZE_2, KEL_MESH_SIZE_3, KEL_MESH_SIZE_4};
    unsigned64 size = 0;
    base.getMeshSize(slots[category], size);
    return size;
}

} // namespace

MeshRun::MeshRun(const KelProvider& reader, const KelMeshCheckOptions& options, KelMeshReport& report)
    : _reader(reader), _options(options), _report(report), _zones(4)
{}

void MeshRun::run()
{
    readSizes();
    for (const KelZoneCategory category : allCategories)
        checkZones(category, _report.sizes[static_cast<std::size_t>(category)]);
    readCoordinates();
    readCellTypes();
    reserveCells();
    forFaces("faces", [this](const Zone& zone, const FaceBlock& block) { checkFaces(zone, block); });
    if (!_report.hasFaces)
        return;
    checkUnusedNodes();
    for (Cell& each : _cells)
        if (each.faces > 0)
            each.centre = 1.0 / each.faces * each.centre;
    forFaces("geometry", [this](const Zone& zone, const FaceBlock& block) { addGeometry(zone, block); });
    for (std::size_t n = 0; n < _cells.size(); ++n)
        checkCell(n + 1, _cells[n]);
}

void MeshRun::stop(const std::string& problem) const
{
    throw Stopped{problem, false};
}

void MeshRun::tell(const std::string& task, unsigned64 done, unsigned64 total)
{
    if (_options.progress && !_options.progress(task, done, total))
        throw Stopped{"interrupted", true};
}

// ---- zones --------------------------------------------------------------------------------------------------------

void MeshRun::readSizes()
{
    unsigned64 dimension = 0;
    _reader.getMeshSize(KEL_MESH_DIMENSION, dimension);
    if (dimension != 2 && dimension != 3)
        stop("the mesh has " + std::to_string(dimension) + " dimensions, 2 or 3 expected");
    _report.dimension = static_cast<int>(dimension);
    for (const KelZoneCategory category : allCategories)
        _report.sizes[static_cast<std::size_t>(category)] = meshSize(_reader, category);
}

void MeshRun::checkZones(KelZoneCategory category, unsigned64 size)
{
    const auto offends = [&](const std::string& line, unsigned64 count) {
        _report.add(KelMeshRule::Zones, std::string(categoryName(category)) + ": " + line, _options.named, count);
    };
    std::vector<Zone>& zones = _zones[static_cast<std::size_t>(category)];
    zones.clear();
    std::vector<int> ids;
    _reader.getZoneIds(category, ids);
    for (const int id : ids) {
        Zone zone{id, 0, 0, false, false};
        _reader.getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, zone.first);
        _reader.getZoneSizeInfo(id, KEL_ZONE_LAST_ID, zone.last);
        if (category == KEL_FACE_ZONE) {
            KelFaceZoneType type = KEL_FACE_ZONE_TYPE_INTERIOR;
            _reader.getFaceZoneType(id, type);
            zone.isInterior = type == KEL_FACE_ZONE_TYPE_INTERIOR;
            zone.isParent = type == KEL_FACE_ZONE_TYPE_PARENT;
        }
        if (zone.first == 0)
            continue;
        if (zone.first > zone.last || zone.last > size)
            offends("zone " + zoneLabel(_reader, id) + " has the ids " + grouped(zone.first) + " to " +
                        grouped(zone.last) + ", the mesh has " + grouped(size),
                    1);
        else
            zones.push_back(zone);
    }
    std::sort(zones.begin(), zones.end(), [](const Zone& a, const Zone& b) { return a.first < b.first; });
    unsigned64 covered = 0;
    for (const Zone& zone : zones) {
        if (zone.first <= covered)
            offends("zone " + zoneLabel(_reader, zone.id) + " begins at " + grouped(zone.first) +
                        ", which is in another zone",
                    std::min(covered, zone.last) - zone.first + 1);
        else if (zone.first > covered + 1)
            offends(grouped(covered + 1) + " to " + grouped(zone.first - 1) + " are in no zone",
                    zone.first - covered - 1);
        covered = std::max(covered, zone.last);
    }
    if (covered < size && (covered > 0 || category != KEL_EDGE_ZONE)) // a mesh may count edges that it does not have
        offends(grouped(covered + 1) + " to " + grouped(size) + " are in no zone", size - covered);
}

// ---- nodes --------------------------------------------------------------------------------------------------------

void MeshRun::readCoordinates()
{
    const auto dimension = static_cast<std::size_t>(_report.dimension);
    std::vector<double> buffer;
    for (const Zone& zone : _zones[KEL_NODE_ZONE]) {
        std::array<double, 3> probe{};
        // Memory is taken only for what the last node shows to be there.
        if (_reader.getCoordinatesForNode(zone.last, probe.data(), dimension) != dimension)
            stop("the coordinates of node " + grouped(zone.last) + " could not be read");
        if (_nodes.size() < zone.last)
            _nodes.resize(zone.last, {std::numeric_limits<double>::quiet_NaN(), 0.0, 0.0});
        for (unsigned64 first = zone.first; first <= zone.last; first += chunk) {
            const unsigned64 last = std::min(zone.last, first + chunk - 1);
            buffer.resize((last - first + 1) * dimension);
            if (_reader.getCoordinatesForNodesInRange(first, last, buffer.data(), buffer.size()) != buffer.size())
                stop("the coordinates of the nodes " + grouped(first) + " to " + grouped(last) + " could not be read");
            for (unsigned64 id = first; id <= last; ++id) {
                const double* xyz = buffer.data() + (id - first) * dimension;
                const Vector3 point{xyz[0], xyz[1], dimension == 3 ? xyz[2] : 0.0};
                _nodes[id - 1] = point;
                if (!isFinite(point)) {
                    _report.add(KelMeshRule::Coordinates, "node " + grouped(id), _options.named);
                    continue;
                }
                const std::array<double, 3> at{point.x, point.y, point.z};
                if (!_report.hasBox)
                    _report.boxMin = _report.boxMax = at;
                _report.hasBox = true;
                for (std::size_t d = 0; d < 3; ++d) {
                    _report.boxMin[d] = std::min(_report.boxMin[d], at[d]);
                    _report.boxMax[d] = std::max(_report.boxMax[d], at[d]);
                }
            }
            tell("nodes", last, _report.sizes[KEL_NODE_ZONE]);
        }
    }
    _isUsed.assign(_nodes.size(), false);
}

void MeshRun::checkUnusedNodes()
{
    for (const Zone& zone : _zones[KEL_NODE_ZONE])
        for (unsigned64 id = zone.first; id <= zone.last; ++id)
            if (!_isUsed[id - 1]) {
                _isUsed[id - 1] = true; // once, also where zones overlap
                _report.add(KelMeshRule::UsedNodes, "node " + grouped(id), _options.named);
            }
}

// ---- cells --------------------------------------------------------------------------------------------------------

void MeshRun::readCellTypes()
{
    std::vector<KelCellType> types;
    for (const Zone& zone : _zones[KEL_CELL_ZONE]) {
        KelCellType uniform = KEL_CELL_POLYHEDRON;
        if (_reader.hasUniformTypeForCellsInZone(zone.id, &uniform)) {
            _report.cellTypes[uniform] += zone.last - zone.first + 1;
            continue;
        }
        for (unsigned64 first = zone.first; first <= zone.last; first += chunk) {
            const unsigned64 last = std::min(zone.last, first + chunk - 1);
            types.resize(last - first + 1);
            const unsigned64 found = _reader.getTypesForCellsInRange(first, last, types.data(), types.size());
            if (found == 0 && first == zone.first)
                break; // the format has no types
            if (found != types.size())
                stop("the types of the cells " + grouped(first) + " to " + grouped(last) + " could not be read");
            for (const KelCellType type : types)
                ++_report.cellTypes[type];
            tell("cells", last, _report.sizes[KEL_CELL_ZONE]);
        }
    }
}

/// A cell has a place only if a face could name it, so that a damaged size takes no memory.
void MeshRun::reserveCells()
{
    unsigned64 cells = 0, faces = 0;
    for (const Zone& zone : _zones[KEL_CELL_ZONE])
        cells = std::max(cells, zone.last);
    for (const Zone& zone : _zones[KEL_FACE_ZONE]) {
        unsigned64 cell0 = 0;
        if (_reader.getCell0sForFacesInRange(zone.last, zone.last, &cell0, 1) == 1) {
            faces = std::max(faces, zone.last);
            _report.hasFaces = true;
        }
    }
    if (!_report.hasFaces)
        return;
    if (cells / 2 > faces) // a cell has at least three faces, and a face two cells
        stop("the mesh has " + grouped(cells) + " cells, but only " + grouped(faces) + " faces");
    _cells.assign(cells, Cell());
    _isSpoiled.assign(faces, false);
}

MeshRun::Cell* MeshRun::cell(unsigned64 id)
{
    return id >= 1 && id <= _cells.size() ? &_cells[id - 1] : nullptr;
}

void MeshRun::checkCell(unsigned64 id, const Cell& cell)
{
    const std::string name = "cell " + grouped(id);
    if (cell.isDamaged)
        return;
    const unsigned enough = _report.dimension == 3 ? 4 : 3;
    if (cell.faces < enough) {
        _report.add(KelMeshRule::CellFaces, name + " has " + counted(cell.faces, "face", "faces"), _options.named);
        return;
    }
    const double gap = cell.surface > 0.0 ? length(cell.areas) / cell.surface : 1.0;
    if (!(gap <= _options.closureTolerance))
        _report.add(KelMeshRule::Closed, name + " is open by " + shortNumber(gap, 3) + " of its surface",
                    _options.named);
    if (!(cell.volume > 0.0))
        _report.add(KelMeshRule::Volumes, name + " has the volume " + shortNumber(cell.volume), _options.named);
    _report.volume += cell.volume;
    if (_report.smallestCell == 0 || cell.volume < _report.smallestVolume) {
        _report.smallestVolume = cell.volume;
        _report.smallestCell = id;
    }
    if (_report.largestCell == 0 || cell.volume > _report.largestVolume) {
        _report.largestVolume = cell.volume;
        _report.largestCell = id;
    }
}

// ---- faces --------------------------------------------------------------------------------------------------------

template <class Visit>
void MeshRun::forFaces(const std::string& task, const Visit& visit)
{
    if (!_report.hasFaces)
        return;
    FaceBlock block;
    for (const Zone& zone : _zones[KEL_FACE_ZONE]) {
        FaceStream stream(_reader, zone.id, zone.first, zone.last);
        while (stream.next(block)) {
            visit(zone, block);
            tell(task, stream.position() - 1, _report.sizes[KEL_FACE_ZONE]);
        }
        if (stream.isCut())
            stop("face zone " + zoneLabel(_reader, zone.id) + ": the nodes or cells from face " +
                 grouped(stream.position()) + " on could not be read");
    }
}

std::string MeshRun::label(const Zone& zone, unsigned64 faceId) const
{
    return "face " + grouped(faceId) + " of zone " + zoneLabel(_reader, zone.id);
}

void MeshRun::checkFaces(const Zone& zone, const FaceBlock& block)
{
    for (std::size_t n = 0; n < block.size(); ++n) {
        const unsigned64 id = block.first + n;
        const bool isGood = checkFace(zone, block, n);
        if (zone.isParent)
            continue;
        if (!isGood) {
            if (id <= _isSpoiled.size())
                _isSpoiled[id - 1] = true;
            damageCells(block, n);
            continue;
        }
        const Vector3 centre = centreOf(block, n);
        for (Cell* side : {cell(block.cell0s[n]), cell(block.cell1s[n])})
            if (side != nullptr) {
                side->centre += centre;
                ++side->faces;
            }
    }
}

bool MeshRun::checkFace(const Zone& zone, const FaceBlock& block, std::size_t face)
{
    const bool hasGoodNodes = checkNodes(zone, block, face);
    const bool hasGoodCells = zone.isParent || checkCells(zone, block, face);
    return hasGoodNodes && hasGoodCells;
}

bool MeshRun::checkNodes(const Zone& zone, const FaceBlock& block, std::size_t face)
{
    const unsigned64* nodes = block.nodesOf(face);
    const auto count = static_cast<std::size_t>(block.counts[face]);
    const unsigned64 id = block.first + face;
    bool isGood = true;
    for (std::size_t n = 0; n < count; ++n) {
        if (nodes[n] >= 1 && nodes[n] <= _nodes.size()) {
            _isUsed[nodes[n] - 1] = true;
            isGood = isGood && isFinite(_nodes[nodes[n] - 1]);
            continue;
        }
        if (isGood)
            _report.add(KelMeshRule::Ids,
                        label(zone, id) + " names node " + grouped(nodes[n]) + " of " + grouped(_nodes.size()),
                        _options.named);
        isGood = false;
    }
    const std::set<unsigned64> different(nodes, nodes + count);
    const std::size_t enough = _report.dimension == 3 ? 3 : 2;
    if (different.size() < enough)
        _report.add(KelMeshRule::FaceNodes,
                    label(zone, id) + " has " + counted(different.size(), "different node", "different nodes"),
                    _options.named);
    return isGood && different.size() >= enough;
}

bool MeshRun::checkCells(const Zone& zone, const FaceBlock& block, std::size_t face)
{
    const unsigned64 cell0 = block.cell0s[face];
    const unsigned64 cell1 = block.cell1s[face];
    const unsigned64 id = block.first + face;
    if (cell(cell0) == nullptr || (cell1 != 0 && cell(cell1) == nullptr)) {
        const bool isFirst = cell(cell0) == nullptr;
        _report.add(KelMeshRule::Ids,
                    label(zone, id) + " names cell " + grouped(isFirst ? cell0 : cell1) + " of " +
                        grouped(_cells.size()) + " on side " + (isFirst ? "0" : "1"),
                    _options.named);
        return false;
    }
    if (cell0 != cell1 && (cell1 != 0 || !zone.isInterior))
        return true;
    _report.add(KelMeshRule::FaceCells,
                label(zone, id) + (cell1 == 0 ? " has no cell 1" : " has cell " + grouped(cell0) + " on both sides"),
                _options.named);
    return false;
}

void MeshRun::damageCells(const FaceBlock& block, std::size_t face)
{
    for (Cell* side : {cell(block.cell0s[face]), cell(block.cell1s[face])})
        if (side != nullptr)
            side->isDamaged = true;
}

// ---- geometry -----------------------------------------------------------------------------------------------------

Vector3 MeshRun::centreOf(const FaceBlock& block, std::size_t face) const
{
    const unsigned64* nodes = block.nodesOf(face);
    Vector3 sum;
    for (short n = 0; n < block.counts[face]; ++n)
        sum += _nodes[nodes[n] - 1];
    return 1.0 / block.counts[face] * sum;
}

/// Area vector of a face, by the order of its nodes.
Vector3 MeshRun::areaOf(const FaceBlock& block, std::size_t face, const Vector3& centre) const
{
    const unsigned64* nodes = block.nodesOf(face);
    const auto count = static_cast<std::size_t>(block.counts[face]);
    const auto arm = [&](std::size_t n) { return _nodes[nodes[n] - 1] - centre; };
    if (_report.dimension == 2) { // the line, drawn up in z, is a face like any other
        const Vector3 line = arm(count - 1) - arm(0);
        return {line.y, -line.x, 0.0};
    }
    Vector3 area;
    for (std::size_t n = 0; n < count; ++n)
        area += 0.5 * cross(arm(n), arm(n + 1 < count ? n + 1 : 0));
    return area;
}

void MeshRun::addGeometry(const Zone& zone, const FaceBlock& block)
{
    for (std::size_t n = 0; n < block.size() && !zone.isParent; ++n) {
        const unsigned64 id = block.first + n;
        if (id <= _isSpoiled.size() && _isSpoiled[id - 1])
            continue;
        const Vector3 centre = centreOf(block, n);
        const Vector3 area = areaOf(block, n, centre);
        Cell* cell1 = cell(block.cell1s[n]);
        const double above0 = addSide(*cell(block.cell0s[n]), area, centre);
        const double above1 = cell1 != nullptr ? addSide(*cell1, -1.0 * area, centre) : above0;
        // A face of a cell that is not convex may look inwards from one centre, a face turned round does from both.
        if (above0 < 0.0 && above1 < 0.0)
            _report.add(KelMeshRule::Orientation,
                        label(zone, id) + " points " +
                            (cell1 != nullptr
                                 ? "from cell " + grouped(block.cell1s[n]) + " to cell " + grouped(block.cell0s[n])
                                 : "into cell " + grouped(block.cell0s[n])),
                        _options.named);
    }
}

/// Adds a face to the sums of a cell; the area points out of it. Gives the volume of the pyramid that it stands for.
double MeshRun::addSide(Cell& cell, const Vector3& area, const Vector3& centre) const
{
    // The triangles of the face all have their tip in its centre, so that the sum of their pyramids is this one
    // product.
    const double pyramid = dot(area, centre - cell.centre) / _report.dimension;
    cell.areas += area;
    cell.surface += length(area);
    cell.volume += pyramid;
    return pyramid;
}

} // namespace meridyn::mesh
