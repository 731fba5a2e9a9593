// Sets of KelPolyMeshProvider: the zones of a case that may overlap.
#include "KelPolyMeshProvider.h"
#include "PolyMeshCase.h"
#include "RangeFilling.h"

#include <algorithm>

namespace meridyn {

bool KelPolyMeshProvider::getSetNames(std::vector<std::string>& names) const
{
    return getSetNames(KEL_CASE, names);
}

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

unsigned64 KelPolyMeshProvider::getIdsForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned64* ids,
                                                    unsigned64 capacity) const
{
    if (!_case || _case->set == nullptr ||
        !Case::hasIds(firstPosition, lastPosition, _case->set->members->labels.size()))
        return 0;
    const std::vector<unsigned64> all = _case->idsOfSet();
    return fillSingle(firstPosition, lastPosition, ids, capacity, [&all](unsigned64 n) { return all[n]; });
}

void KelPolyMeshProvider::getVariablesInSet(std::vector<std::string>& names) const
{
    names.clear();
    if (_case && _case->set != nullptr && !_case->set->members->flips.empty())
        names.emplace_back("flipMap");
}

KelPlainDataType KelPolyMeshProvider::startReadingDataOfVariableForSet(const std::string& name,
                                                                       unsigned64& valuesPerMember)
{
    std::vector<std::string> names;
    getVariablesInSet(names);
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

template <class T>
unsigned64 KelPolyMeshProvider::readSetData(unsigned64 firstPosition, unsigned64 lastPosition, T* values,
                                            unsigned64 capacity) const
{
    if (!_case || _case->set == nullptr || !_case->isReadingFlips ||
        !Case::hasIds(firstPosition, lastPosition, _case->set->members->flips.size()))
        return 0;
    const auto& flips = _case->set->members->flips;
    return fillSingle(firstPosition, lastPosition, values, capacity, [&flips](unsigned64 n) { return flips[n]; });
}

// The ten value types.
#define KEL_DEFINE(T)                                                                                                  \
    unsigned64 KelPolyMeshProvider::getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition,  \
                                                                   T* values, unsigned64 capacity) const               \
    {                                                                                                                  \
        return readSetData(firstPosition, lastPosition, values, capacity);                                             \
    }
KEL_DEFINE(unsigned char)
KEL_DEFINE(char)
KEL_DEFINE(short)
KEL_DEFINE(unsigned int)
KEL_DEFINE(int)
KEL_DEFINE(long)
KEL_DEFINE(unsigned64)
KEL_DEFINE(signed64)
KEL_DEFINE(float)
KEL_DEFINE(double)
#undef KEL_DEFINE

} // namespace meridyn
