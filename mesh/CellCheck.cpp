#include "KelProvider.h"
#include "mesh/CellVolumes.h"
#include "mesh/Checks.h"
#include "mesh/CheckState.h"
#include "mesh/FaceGeometry.h"
#include "mesh/FaceStream.h"
#include "mesh/MeshText.h"

#include <map>
#include <unordered_map>
#include <utility>

namespace meridyn::mesh {

namespace {

/// A cell that is open, inside out or not joined: what a second look at its faces needs.
struct Suspect {
    Vector3 centre; ///< mean of the centres of its faces
    unsigned faces = 0;
    bool isTurned = false; ///< open or of negative volume, so that a face of it may be turned round
};

/// Judges the cells by the sums that their faces have left, then looks at the faces of bad cells again to say what is
/// wrong with them.
class CellJudge {
public:
    explicit CellJudge(CheckState& state) : _state(state) {}

    void run();

private:
    /// How often an edge of a cell is passed in each direction, by the places of its nodes, the smaller first.
    using Edges = std::map<std::pair<std::size_t, std::size_t>, std::pair<unsigned, unsigned>>;

    void judge(std::size_t place, const CellSums& cell);
    bool isJoined(std::size_t place, const CellSums& cell) const;
    template <class Visit>
    void forFaces(const Visit& visit);
    void lookAgain();
    void gather(const FaceBlock& block, std::size_t n, const FaceShape& shape);
    void gatherEdges(std::size_t place, const FaceBlock& block, std::size_t n);
    void checkOrientation(const Zone& zone, const FaceBlock& block, std::size_t n, const FaceShape& shape);
    void nameEdges();
    Suspect* suspect(unsigned64 cellId);

    CheckState& _state;
    std::unordered_map<std::size_t, Suspect> _suspects; ///< by place
    std::map<std::size_t, Edges> _edges;                ///< of the first cells that are not joined, by place
    unsigned64 _notJoined = 0;
};

void CellJudge::run()
{
    if (_state.cells.empty())
        return;
    for (const KelMeshRule rule : {KelMeshRule::CellFaces, KelMeshRule::Closed, KelMeshRule::Joined,
                                   KelMeshRule::Volumes, KelMeshRule::Orientation})
        _state.report.addLookedAt(rule, _state.cells.size());
    for (std::size_t place = 0; place < _state.cells.size(); ++place)
        judge(place, _state.cells[place]);
    if (!_suspects.empty())
        lookAgain();
}

void CellJudge::judge(std::size_t place, const CellSums& cell)
{
    if (cell.isDamaged)
        return;
    if (cell.faces == 0 && ((!_state.hasNodes.empty() && _state.hasNodes[place]) ||
                            (!_state.hasChildren.empty() && _state.hasChildren[place])))
        return; // known by its nodes, or replaced by its children
    const unsigned64 id = _state.ids[KEL_CELL_ZONE].idOf(place);
    const std::string name = "cell " + grouped(id);
    if (cell.faces < (_state.isFlat() ? 3U : 4U)) {
        _state.add(KelMeshRule::CellFaces, KEL_CELL_ZONE, id, name + " has " + counted(cell.faces, "face", "faces"));
        return;
    }
    const double gap = cell.surface > 0.0 ? length(cell.areas) / cell.surface : 1.0;
    const bool isClosed = gap <= _state.options.closureTolerance;
    if (!isClosed)
        _state.add(KelMeshRule::Closed, KEL_CELL_ZONE, id,
                   name + " is open by " + shortNumber(gap, 3) + " of its surface");
    if (!isClosed || cell.volume < 0.0)
        _suspects[place].isTurned = true;
    else if (!isJoined(place, cell)) {
        _suspects.try_emplace(place);
        if (++_notJoined <= _state.options.named)
            _edges.try_emplace(place);
    }
    addVolume(_state, id, cell.volume, cell.surface);
}

bool CellJudge::isJoined(std::size_t place, const CellSums& cell) const
{
    if (cell.loop == 0)
        return true;
    const auto correction = _state.corrections.find(place);
    return correction != _state.corrections.end() && cell.loop + correction->second.loop == 0;
}

Suspect* CellJudge::suspect(unsigned64 cellId)
{
    const auto found = _suspects.find(_state.ids[KEL_CELL_ZONE].indexOf(cellId));
    return found == _suspects.end() ? nullptr : &found->second;
}

/// Calls visit(zone, block, n, shape) for the sound faces of suspects. The first pass has named those that are not.
template <class Visit>
void CellJudge::forFaces(const Visit& visit)
{
    FaceBlock block;
    std::vector<Vector3> points;
    for (const Zone& zone : _state.zones[KEL_FACE_ZONE]) {
        if (zone.isParent())
            continue;
        FaceStream stream(_state.reader, zone.id, zone.first, zone.last);
        while (stream.next(block)) {
            for (std::size_t n = 0; n < block.size(); ++n) {
                if (suspect(block.cell0s[n]) == nullptr && suspect(block.cell1s[n]) == nullptr)
                    continue;
                points.clear();
                for (short k = 0; k < block.counts[n]; ++k) {
                    const std::size_t place = _state.ids[KEL_NODE_ZONE].indexOf(block.nodesOf(n)[k]);
                    if (place == ElementIds::none || !isFinite(_state.nodes[place]))
                        break;
                    points.push_back(_state.nodes[place]);
                }
                if (points.size() == static_cast<std::size_t>(block.counts[n]) &&
                    points.size() >= _state.nodesPerFace())
                    visit(zone, block, n, shapeOf(points, _state.report.dimension));
            }
            _state.tell("geometry", stream.position() - 1, _state.ids[KEL_FACE_ZONE].last());
        }
    }
}

void CellJudge::lookAgain()
{
    forFaces([this](const Zone&, const FaceBlock& block, std::size_t n, const FaceShape& shape) {
        gather(block, n, shape);
    });
    nameEdges();
    for (auto& [place, each] : _suspects)
        if (each.faces > 0)
            each.centre = 1.0 / each.faces * each.centre;
    forFaces([this](const Zone& zone, const FaceBlock& block, std::size_t n, const FaceShape& shape) {
        checkOrientation(zone, block, n, shape);
    });
}

void CellJudge::gather(const FaceBlock& block, std::size_t n, const FaceShape& shape)
{
    for (const unsigned64 id : {block.cell0s[n], block.cell1s[n]})
        if (Suspect* each = suspect(id)) {
            each->centre += shape.centre;
            ++each->faces;
            gatherEdges(_state.ids[KEL_CELL_ZONE].indexOf(id), block, n);
        }
}

void CellJudge::gatherEdges(std::size_t place, const FaceBlock& block, std::size_t n)
{
    const auto found = _edges.find(place);
    if (found == _edges.end())
        return;
    const auto count = static_cast<std::size_t>(block.counts[n]);
    const bool isCell0 = _state.ids[KEL_CELL_ZONE].indexOf(block.cell0s[n]) == place;
    for (std::size_t k = 0; k < count; ++k) {
        std::size_t a = _state.ids[KEL_NODE_ZONE].indexOf(block.nodesOf(n)[k]);
        std::size_t b = _state.isFlat() ? a : _state.ids[KEL_NODE_ZONE].indexOf(block.nodesOf(n)[(k + 1) % count]);
        if (_state.isFlat() && k != 0 && k + 1 != count)
            continue;
        const bool isForward = (_state.isFlat() ? k == 0 : a < b) == isCell0;
        auto& ways = found->second[{std::min(a, b), std::max(a, b)}];
        ++(isForward ? ways.first : ways.second);
    }
}

/// One line for each cell that is not joined: the first edge that its faces do not pass once in each direction.
void CellJudge::nameEdges()
{
    unsigned64 unnamed = _notJoined;
    for (const auto& [place, edges] : _edges) {
        const unsigned64 id = _state.ids[KEL_CELL_ZONE].idOf(place);
        std::string what = " has edges that belong to one face only";
        for (const auto& [ends, ways] : edges) {
            if (ways.first == ways.second)
                continue;
            const ElementIds& nodes = _state.ids[KEL_NODE_ZONE];
            what = _state.isFlat() ? " has node " + grouped(nodes.idOf(ends.first))
                                   : " has the edge between node " + grouped(nodes.idOf(ends.first)) + " and node " +
                                         grouped(nodes.idOf(ends.second));
            what += " in " + counted(ways.first + ways.second, "face", "faces");
            break;
        }
        _state.add(KelMeshRule::Joined, KEL_CELL_ZONE, id, "cell " + grouped(id) + what);
        --unnamed;
    }
    if (unnamed > 0)
        _state.add(KelMeshRule::Joined, KEL_CELL_ZONE, 0, "", unnamed);
}

/// A closed cell of positive volume has no face that is turned round, whatever its form. In the others a face of a
/// cell that is not convex may look inwards from one centre, a face turned round does from both.
void CellJudge::checkOrientation(const Zone& zone, const FaceBlock& block, std::size_t n, const FaceShape& shape)
{
    const Suspect* cell0 = suspect(block.cell0s[n]);
    const Suspect* cell1 = suspect(block.cell1s[n]);
    if (cell0 == nullptr || !cell0->isTurned || dot(shape.area, shape.centre - cell0->centre) >= 0.0)
        return;
    const bool isInner = _state.cell(block.cell1s[n]) != nullptr;
    if (isInner && (cell1 == nullptr || !cell1->isTurned || dot(shape.area, shape.centre - cell1->centre) <= 0.0))
        return;
    const unsigned64 id = block.first + n;
    _state.add(KelMeshRule::Orientation, KEL_FACE_ZONE, id,
               _state.label(KEL_FACE_ZONE, zone, id) + " points " +
                   (isInner ? "from cell " + grouped(block.cell1s[n]) + " to cell " + grouped(block.cell0s[n])
                            : "into cell " + grouped(block.cell0s[n])));
}

} // namespace

void checkCellSums(CheckState& state)
{
    CellJudge(state).run();
}

} // namespace meridyn::mesh
