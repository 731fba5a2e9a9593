#include "KelMeshReport.h"

#include <algorithm>

namespace meridyn {

const KelMeshRuleText& textOf(KelMeshRule rule)
{
    static const std::array<KelMeshRuleText, meshRuleCount> texts = {{
        {"zones", "zones hold each element once"},
        {"coordinates", "coordinates are finite"},
        {"ids", "faces name nodes and cells that exist"},
        {"face-nodes", "faces have enough different nodes"},
        {"face-cells", "interior faces have two different cells"},
        {"used-nodes", "every node belongs to a face"},
        {"cell-faces", "cells have enough faces"},
        {"closed", "cells are closed"},
        {"volumes", "volumes are positive"},
        {"orientation", "faces point from cell 0 to cell 1"},
    }};
    return texts[static_cast<std::size_t>(rule)];
}

void KelMeshReport::add(KelMeshRule rule, const std::string& line, unsigned64 limit, unsigned64 count)
{
    Outcome& outcome = _outcomes[static_cast<std::size_t>(rule)];
    outcome.offenders += count;
    if (outcome.named.size() < limit)
        outcome.named.push_back(line);
}

bool KelMeshReport::isGood() const
{
    return std::all_of(_outcomes.begin(), _outcomes.end(),
                       [](const Outcome& outcome) { return outcome.offenders == 0; });
}

} // namespace meridyn
