#include "KelLocationModel.h"
#include "KelProvider.h"
#include "mesh/Checks.h"
#include "mesh/CheckState.h"
#include "mesh/MeshText.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace meridyn::mesh {

namespace {

/// Holds the members of the open set against the elements of its category.
void checkMembers(CheckState& state, const std::string& name)
{
    const KelZoneCategory category = state.reader.getCategoryOfSet();
    if (category < KEL_NODE_ZONE || category > KEL_CELL_ZONE)
        return; // a set of something else than elements
    std::vector<unsigned64> sizes, smallest, largest, ids;
    state.reader.getSizesAndMinMaxIdsForSet(sizes, smallest, largest);
    unsigned64 size = 0;
    for (const unsigned64 each : sizes)
        size += each;
    state.reader.startReadingIdsForSet();
    for (unsigned64 first = 1; first <= size; first += elementsPerChunk) {
        const unsigned64 last = std::min(size, first + elementsPerChunk - 1);
        ids.assign(last - first + 1, 0);
        const unsigned64 found = state.reader.getIdsForSetInRange(first, last, ids.data(), ids.size());
        if (found == 0 && first == 1) {
            state.report.addUnseen({category, size, counted(size, "member", "members") + " of set '" + name + "'"});
            break;
        }
        if (found != ids.size())
            CheckState::stop("the members " + grouped(first) + " to " + grouped(last) + " of set '" + name +
                             "' could not be read");
        state.report.addLookedAt(KelMeshRule::Sets, found);
        for (const unsigned64 id : ids)
            if (!state.ids[category].contains(id))
                state.add(KelMeshRule::Sets, category, id,
                          "set '" + name + "' holds " + elementName(category) + " " + grouped(id) +
                              ", which does not exist");
    }
    state.reader.endReadingIdsForSet();
}

/// The zones behind the regions of a location model.
class LocationPass {
public:
    explicit LocationPass(CheckState& state) : _state(state), _locations(*state.reader.getLocationModel()) {}

    void run()
    {
        std::vector<int> parts, members, zones;
        _locations.getParts(parts);
        for (const int part : parts) {
            _locations.getPartBodies(part, members);
            for (const int body : members)
                if (_locations.getBodyZones(body, 0, zones)) {
                    std::string name;
                    _locations.getBodyName(body, name);
                    check("body '" + name + "'", KEL_CELL_ZONE, zones);
                }
            _locations.getPartFaces(part, members);
            for (const int face : members)
                if (_locations.getFaceZones(face, 0, zones)) {
                    std::string name;
                    _locations.getFaceName(face, name);
                    check("face '" + name + "'", KEL_FACE_ZONE, zones);
                }
            _locations.getPartFaceUses(part, members);
            for (const int use : members)
                if (_locations.getFaceUseZoneSides(use, 0, zones)) {
                    std::string name;
                    _locations.getFaceUseName(use, name);
                    for (int& side : zones) // the far side of a zone is its number with the sign changed
                        side = side < 0 && side != std::numeric_limits<int>::min() ? -side : side;
                    check("face use '" + name + "'", KEL_FACE_ZONE, zones);
                }
        }
    }

private:
    void check(const std::string& region, KelZoneCategory category, const std::vector<int>& zones)
    {
        std::vector<int> known;
        _state.reader.getZoneIds(category, known);
        _state.report.addLookedAt(KelMeshRule::Locations, zones.size());
        for (const int zone : zones)
            if (std::find(known.begin(), known.end(), zone) == known.end())
                _state.add(KelMeshRule::Locations, category, 0,
                           region + " names the " + elementName(category) + " zone " + std::to_string(zone) +
                               ", which does not exist");
    }

    CheckState& _state;
    const KelLocationModel& _locations;
};

} // namespace

void checkSets(CheckState& state)
{
    std::vector<std::string> names;
    state.reader.getSetNames(KEL_CASE, names);
    for (const std::string& name : names) {
        if (!state.reader.startReadingSet(name))
            continue;
        checkMembers(state, name);
        state.reader.endReadingSet();
    }
}

void checkLocations(CheckState& state)
{
    LocationPass(state).run();
}

} // namespace meridyn::mesh
