#include "KelProvider.h"
#include "mesh/Checks.h"
#include "mesh/CheckState.h"
#include "mesh/MeshText.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace meridyn::mesh {

namespace {

/// A face and the partner that it names.
using Pair = std::pair<unsigned64, unsigned64>;

/// The pairs of all faces that have a shadow. In a periodic zone of which any face has one, all must.
std::vector<Pair> readPairs(CheckState& state)
{
    std::vector<Pair> pairs;
    std::vector<unsigned64> shadows;
    for (const Zone& zone : state.zones[KEL_FACE_ZONE]) {
        const std::size_t before = pairs.size();
        unsigned64 lonely = 0, read = 0;
        CheckState::forChunks(zone, [&](unsigned64 first, unsigned64 last) {
            shadows.assign(last - first + 1, 0);
            read += state.reader.getShadowFaceIdsForFacesInRange(first, last, shadows.data(), shadows.size());
            for (unsigned64 n = 0; n < shadows.size(); ++n)
                if (shadows[n] != 0)
                    pairs.emplace_back(first + n, shadows[n]);
                else if (lonely == 0)
                    lonely = first + n;
            return true;
        });
        if (zone.kind == KEL_FACE_ZONE_TYPE_PERIODIC && lonely != 0 && pairs.size() > before)
            state.add(KelMeshRule::Shadows, KEL_FACE_ZONE, lonely,
                      state.label(KEL_FACE_ZONE, zone, lonely) + " has no shadow face",
                      zone.size() - (pairs.size() - before));
    }
    return pairs;
}

} // namespace

void checkShadows(CheckState& state)
{
    std::vector<Pair> pairs = readPairs(state);
    std::sort(pairs.begin(), pairs.end());
    state.report.addLookedAt(KelMeshRule::Shadows, pairs.size());
    for (const auto& [face, shadow] : pairs) {
        const auto back = std::lower_bound(pairs.begin(), pairs.end(), Pair(shadow, 0));
        const bool isNamed = back != pairs.end() && back->first == shadow;
        if (isNamed && back->second == face && shadow != face)
            continue;
        std::string what = " has the shadow face " + grouped(shadow);
        if (!state.ids[KEL_FACE_ZONE].contains(shadow))
            what += ", which does not exist";
        else if (shadow == face)
            what = " is its own shadow face";
        else if (!isNamed)
            what += ", which has none";
        else
            what += ", which has the shadow face " + grouped(back->second);
        state.add(KelMeshRule::Shadows, KEL_FACE_ZONE, face, "face " + grouped(face) + what);
    }
}

} // namespace meridyn::mesh
