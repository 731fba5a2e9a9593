#include "KelProvider.h"
#include "mesh/Checks.h"
#include "mesh/CheckState.h"
#include "mesh/MeshText.h"

#include <unordered_map>
#include <vector>

namespace meridyn::mesh {

namespace {

/// How the children of one category are read, and what is said of them.
struct Family {
    KelZoneCategory category;
    KelMeshRule rule;
    unsigned64 (KelProvider::*counts)(unsigned64, unsigned64, short*, unsigned64) const;
    unsigned64 (KelProvider::*ids)(unsigned64, unsigned64, unsigned64*, unsigned64) const;
};

constexpr Family faceFamily{KEL_FACE_ZONE, KelMeshRule::ChildFaces, &KelProvider::getChildFaceCountsForFacesInRange,
                            &KelProvider::getChildFaceIdsForFacesInRange};
constexpr Family cellFamily{KEL_CELL_ZONE, KelMeshRule::ChildCells, &KelProvider::getChildCellCountsForCellsInRange,
                            &KelProvider::getChildCellIdsForCellsInRange};

/// Reads the children of all elements of a category and calls visit(parent, child) for those that exist.
class Genealogy {
public:
    Genealogy(CheckState& state, const Family& family) : _state(state), _family(family) {}

    template <class Visit>
    void forChildren(const Visit& visit)
    {
        for (const Zone& zone : _state.zones[_family.category])
            CheckState::forChunks(
                zone, [&](unsigned64 first, unsigned64 last) { return readPiece(zone, first, last, visit); }, 8192);
        findCircles();
    }

private:
    template <class Visit>
    bool readPiece(const Zone& zone, unsigned64 first, unsigned64 last, const Visit& visit)
    {
        const unsigned64 elements = last - first + 1;
        _counts.assign(elements, 0);
        const unsigned64 found = (_state.reader.*_family.counts)(first, last, _counts.data(), elements);
        if (found == 0)
            return true; // children of a part of a zone may be given
        std::size_t total = 0;
        for (const short count : _counts)
            total += count > 0 ? static_cast<std::size_t>(count) : 0;
        if (found != elements)
            cut(first, last);
        if (total == 0)
            return true;
        _children.resize(total);
        if ((_state.reader.*_family.ids)(first, last, _children.data(), total) != total)
            cut(first, last);
        std::size_t at = 0;
        for (unsigned64 n = 0; n < elements; ++n)
            for (short k = 0; k < _counts[n]; ++k)
                addChild(zone, first + n, _children[at++], visit);
        return true;
    }

    [[noreturn]] void cut(unsigned64 first, unsigned64 last) const
    {
        CheckState::stop(std::string("the children of the ") + categoryName(_family.category) + " " + grouped(first) +
                         " to " + grouped(last) + " could not be read");
    }

    template <class Visit>
    void addChild(const Zone& zone, unsigned64 parent, unsigned64 child, const Visit& visit)
    {
        _state.report.addLookedAt(_family.rule, 1);
        const std::string name = std::string(" ") + elementName(_family.category) + " " + grouped(child);
        if (!_state.ids[_family.category].contains(child))
            offend(zone, parent, " has the child" + name + ", which does not exist");
        else if (child == parent)
            offend(zone, parent, " is its own child");
        else if (const auto [known, isNew] = _parents.try_emplace(child, parent); !isNew)
            offend(zone, parent,
                   " has the child" + name + ", which is a child of " + elementName(_family.category) + " " +
                       grouped(known->second) + " as well");
        else
            visit(parent, child);
    }

    void offend(const Zone& zone, unsigned64 parent, const std::string& what)
    {
        _state.add(_family.rule, _family.category, parent, _state.label(_family.category, zone, parent) + what);
    }

    /// Nobody is a descendant of oneself. Each element has one parent by now, so the way up ends or is a circle; what
    /// has been found to end is not walked again.
    void findCircles()
    {
        std::unordered_map<unsigned64, unsigned64> walkOf; // by element: the element whose walk came by
        for (const auto& [start, unused] : _parents) {
            unsigned64 at = start;
            for (auto up = _parents.find(at); up != _parents.end(); up = _parents.find(at)) {
                const auto [walk, isNew] = walkOf.try_emplace(at, start);
                if (!isNew) {
                    if (walk->second == start)
                        _state.add(_family.rule, _family.category, at,
                                   std::string(elementName(_family.category)) + " " + grouped(at) +
                                       " is among its own children's children");
                    break;
                }
                at = up->second;
            }
        }
    }

    CheckState& _state;
    const Family& _family;
    std::vector<short> _counts;
    std::vector<unsigned64> _children;
    std::unordered_map<unsigned64, unsigned64> _parents; ///< by child
};

} // namespace

void checkChildFaces(CheckState& state)
{
    Genealogy(state, faceFamily).forChildren([&](unsigned64 parent, unsigned64 child) {
        const auto [place, isNew] = state.parentByFace.try_emplace(parent, state.parents.size());
        if (isNew) {
            state.parents.emplace_back();
            state.parents.back().id = parent;
        }
        ++state.parents[place->second].expected;
        state.parentByChild.emplace(child, place->second);
    });
}

void checkChildCells(CheckState& state)
{
    Genealogy(state, cellFamily).forChildren([&](unsigned64 parent, unsigned64) {
        if (state.hasChildren.empty())
            state.hasChildren.assign(state.ids[KEL_CELL_ZONE].size(), false);
        state.hasChildren[state.ids[KEL_CELL_ZONE].indexOf(parent)] = true;
    });
}

} // namespace meridyn::mesh
