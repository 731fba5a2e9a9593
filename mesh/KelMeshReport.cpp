#include "KelMeshReport.h"

#include <algorithm>

namespace meridyn {

const KelMeshRuleText& textOf(KelMeshRule rule)
{
    static const std::array<KelMeshRuleText, meshRuleCount> texts = {{
        {"zones", "zones hold each element once"},
        {"coordinates", "coordinates are finite"},
        {"ids", "edges, faces and cells name nodes and cells that exist"},
        {"edge-nodes", "edges have two nodes or more, each once"},
        {"face-nodes", "faces have enough nodes, each once"},
        {"face-shapes", "faces have an area and no spikes"},
        {"face-cells", "interior faces have two different cells, boundary faces one"},
        {"shadows", "shadow faces are each other's"},
        {"child-faces", "child faces exist and have one parent"},
        {"cell-types", "types of cells fit their nodes and faces"},
        {"cell-nodes", "cells name each node once and agree with their faces"},
        {"cell-shapes", "nodes of cells are in the order of the type"},
        {"face-lists", "cells list the faces that name them"},
        {"child-cells", "child cells exist and have one parent"},
        {"partitions", "partition ids are in their range"},
        {"used-nodes", "every node belongs to an edge, a face or a cell"},
        {"cell-faces", "cells have enough faces"},
        {"closed", "cells are closed"},
        {"joined", "edges of cells belong to two of their faces"},
        {"volumes", "volumes are positive"},
        {"orientation", "faces point from cell 0 to cell 1"},
        {"shared", "cells that touch share a face"},
        {"overlaps", "no two cells fill the same place"},
        {"sets", "sets hold elements that exist"},
        {"locations", "locations name zones that exist"},
    }};
    return texts[static_cast<std::size_t>(rule)];
}

const std::array<KelMeshRule, meshRuleCount>& meshRules()
{
    static const std::array<KelMeshRule, meshRuleCount> rules = [] {
        std::array<KelMeshRule, meshRuleCount> all{};
        for (std::size_t n = 0; n < meshRuleCount; ++n)
            all[n] = static_cast<KelMeshRule>(n);
        return all;
    }();
    return rules;
}

const KelMeshReport::Outcome& KelMeshReport::outcome(KelMeshRule rule) const
{
    return _outcomes[static_cast<std::size_t>(rule)];
}

const std::vector<KelMeshUnseen>& KelMeshReport::unseen() const
{
    return _unseen;
}

bool KelMeshReport::hasOffenders() const
{
    return std::any_of(_outcomes.begin(), _outcomes.end(),
                       [](const Outcome& outcome) { return outcome.offenders != 0; });
}

KelMeshVerdict KelMeshReport::verdict() const
{
    if (hasOffenders())
        return KelMeshVerdict::Faulty;
    return _unseen.empty() ? KelMeshVerdict::Good : KelMeshVerdict::NotAllSeen;
}

bool KelMeshReport::isGood() const
{
    return verdict() == KelMeshVerdict::Good;
}

void KelMeshReport::addLookedAt(KelMeshRule rule, unsigned64 count)
{
    _outcomes[static_cast<std::size_t>(rule)].lookedAt += count;
}

void KelMeshReport::add(KelMeshRule rule, const KelMeshFinding& finding, unsigned64 limit, unsigned64 count)
{
    Outcome& outcome = _outcomes[static_cast<std::size_t>(rule)];
    outcome.offenders += count;
    if (outcome.named.size() < limit)
        outcome.named.push_back(finding);
}

void KelMeshReport::addUnseen(const KelMeshUnseen& unseen)
{
    _unseen.push_back(unseen);
}

} // namespace meridyn
