// Sets of KelPolyMeshProvider: the zones of a case that may overlap.
#include "KelPolyMeshProvider.h"
#include "PolyMeshCase.h"
#include "RangeFilling.h"

#include <algorithm>

namespace meridyn {

using namespace polymesh;

bool KelPolyMeshProvider::getSetNames(KelDataClass dataClass, std::vector<std::string>& names) const
{
    names.clear();
    if (_case && dataClass == KEL_CASE)
        for (const Case::Set& set : _case->sets)
            names.push_back(set.name);
    return !names.empty();
}

bool KelPolyMeshProvider::getSetNames(KelZoneCategory category, std::vector<std::string>& names) const
{
    names.clear();
    if (_case)
        for (const Case::Set& set : _case->sets)
            if (set.category == category)
                names.push_back(set.name);
    return !names.empty();
}

bool KelPolyMeshProvider::startReadingSet(const std::string& name)
{
    if (!_case)
        return false;
    const auto found = std::find_if(_case->sets.begin(), _case->sets.end(),
                                    [&name](const Case::Set& set) { return set.name == name; });
    _case->isReadingFlips = false;
    _case->set = found != _case->sets.end() ? &*found : nullptr;
    return _case->set != nullptr;
}

void KelPolyMeshProvider::endReadingSet()
{
    if (_case)
        _case->set = nullptr;
}

KelZoneCategory KelPolyMeshProvider::getCategoryOfSet() const
{
    return _case && _case->set != nullptr ? _case->set->category : static_cast<KelZoneCategory>(-1);
}

/// Members of a set of cells are those of the case by label; here cells are ordered by zones.
std::vector<unsigned64> KelPolyMeshProvider::Case::idsOfSet() const
{
    std::vector<unsigned64> ids;
    for (const std::uint32_t label : set->members->labels)
        ids.push_back(label + unsigned64{1});
    if (set->category != KEL_CELL_ZONE || mesh->caseCells.empty())
        return ids;
    std::vector<std::uint32_t> ours(mesh->cellCount);
    for (std::size_t cell = 0; cell < mesh->caseCells.size(); ++cell)
        ours[mesh->caseCells[cell]] = static_cast<std::uint32_t>(cell);
    for (unsigned64& id : ids)
        id = ours[id - 1] + unsigned64{1};
    return ids;
}

void KelPolyMeshProvider::getSizesAndMinMaxIdsForSet(std::vector<unsigned64>& sizes, std::vector<unsigned64>& minIds,
                                                     std::vector<unsigned64>& maxIds) const
{
    sizes.clear();
    minIds.clear();
    maxIds.clear();
    if (!_case || _case->set == nullptr)
        return;
    const std::vector<unsigned64> ids = _case->idsOfSet();
    const auto [least, most] = std::minmax_element(ids.begin(), ids.end());
    sizes.push_back(ids.size());
    minIds.push_back(ids.empty() ? 0 : *least);
    maxIds.push_back(ids.empty() ? 0 : *most);
}

/// The one variable that a set can have is whether its faces are turned.
std::vector<std::string> KelPolyMeshProvider::namesIn(KelCollection in, KelPart part) const
{
    const bool hasFlips = in == KelCollection::Set && part == KelPart::Variables && _case && _case->set != nullptr &&
                          !_case->set->members->flips.empty();
    return hasFlips ? std::vector<std::string>{"flipMap"} : std::vector<std::string>{};
}

KelPlainDataType KelPolyMeshProvider::startReadingDataOfVariableForSet(const std::string& name,
                                                                       unsigned64& valuesPerMember)
{
    const std::vector<std::string> names = namesIn(KelCollection::Set, KelPart::Variables);
    if (names.empty() || name != names.front())
        return static_cast<KelPlainDataType>(-1);
    _case->isReadingFlips = true;
    valuesPerMember = 1;
    return KEL_PLAIN_UNSIGNED_CHAR;
}

void KelPolyMeshProvider::endReadingDataOfVariableForSet()
{
    if (_case)
        _case->isReadingFlips = false;
}

unsigned64 KelPolyMeshProvider::Case::giveSet(KelArray array, unsigned64 first, unsigned64 last,
                                              const KelBuffer& values) const
{
    if (array == KelArray::SetVariable)
        return fillSingle(first, last, values, [this](unsigned64 n) { return set->members->flips[n - 1]; });
    const std::vector<unsigned64> ids = idsOfSet();
    return fillSingle(first, last, values, [&ids](unsigned64 n) { return ids[n - 1]; });
}

} // namespace meridyn
