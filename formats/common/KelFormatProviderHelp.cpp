// What a reader tells its caller when an answer is empty.
#include "KelFormatProvider.h"

#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelSolutionModel.h"

#include <algorithm>

namespace meridyn {

namespace {

constexpr KelZoneCategory noCategory = static_cast<KelZoneCategory>(-1);

/// The category whose elements the rows of an array of the mesh are; -1 for all others.
KelZoneCategory categoryOf(KelArray array)
{
    if (array == KelArray::Coordinates)
        return KEL_NODE_ZONE;
    if (array <= KelArray::EdgeNodeCounts)
        return KEL_EDGE_ZONE;
    if (array <= KelArray::FaceChildCounts)
        return KEL_FACE_ZONE;
    return array <= KelArray::CellChildCounts ? KEL_CELL_ZONE : noCategory;
}

bool isOfSet(KelArray array)
{
    return array >= KelArray::SetIds;
}

const char* nameOfClass(KelDataClass dataClass)
{
    return dataClass == KEL_CASE ? "case" : "data";
}

std::string asked(KelArray array)
{
    return std::string(nameOf(array)) + ": ";
}

} // namespace

bool KelFormatProvider::startReading(KelDataClass dataClass)
{
    const bool isClass = dataClass == KEL_CASE || dataClass == KEL_DATA;
    if (isClass)
        _notRead[dataClass] = {};
    const bool isOpen = KelFileProvider::startReading(dataClass);
    if (isClass)
        _help.isOpen[dataClass] = isOpen;
    _help.lastIds = {};
    return isOpen;
}

bool KelFormatProvider::endReading(KelDataClass dataClass)
{
    if (dataClass == KEL_CASE || dataClass == KEL_DATA)
        _help.isOpen[dataClass] = false;
    if (dataClass == KEL_DATA)
        _help.variableCategory = noCategory;
    return KelFileProvider::endReading(dataClass);
}

unsigned64 KelFormatProvider::answer(KelArray array, unsigned64 first, unsigned64 last, const KelBuffer& values) const
{
    const unsigned64 count = give(array, first, last, values);
    if (count == 0)
        explain(array, first, last);
    return count;
}

// An empty answer is the normal one for an array that the file does not have, element by element, so this costs a few
// comparisons as long as nothing is wrong.
void KelFormatProvider::explain(KelArray array, unsigned64 first, unsigned64 last) const
{
    if (isOfSet(array))
        return explainMembers(array);
    const bool isValue = array == KelArray::PhaseVariable;
    const KelDataClass dataClass = isValue ? KEL_DATA : KEL_CASE;
    if (!_help.isOpen[dataClass])
        return tell(KelMisuse::NotOpen,
                    asked(array) + "the " + nameOfClass(dataClass) + " is not open: startReading comes first");
    if (isValue && _help.variableCategory == noCategory)
        return tell(KelMisuse::NoStartMarker,
                    asked(array) + "no variable was started: startReadingZonesOfCategoryWithPhaseVariable comes first, "
                                   "and gives the number of values per element");
    explainElements(array, isValue ? _help.variableCategory : categoryOf(array), first, last);
}

void KelFormatProvider::explainMembers(KelArray array) const
{
    if (wasTold(KelMisuse::NoStartMarker))
        return;
    if (!_help.isOpen[KEL_CASE] && !_help.isOpen[KEL_DATA])
        return tell(KelMisuse::NotOpen, asked(array) + "nothing is open: startReading comes first");
    std::vector<unsigned64> sizes, minIds, maxIds;
    getSizesAndMinMaxIdsForSet(sizes, minIds, maxIds);
    if (sizes.empty() && getCategoryOfSet() == noCategory)
        tell(KelMisuse::NoStartMarker, asked(array) + "no set was started: startReadingSet comes first");
}

void KelFormatProvider::explainElements(KelArray array, KelZoneCategory category, unsigned64 first,
                                        unsigned64 last) const
{
    if (first == 0)
        return tell(KelMisuse::IdZero, asked(array) + "element 0 was asked for; ids begin with 1, and an unknown zone "
                                                      "has the elements 0 to 0");
    if (category < KEL_NODE_ZONE || category > KEL_CELL_ZONE || wasTold(KelMisuse::BeyondTheEnd))
        return;
    unsigned64& lastId = _help.lastIds[category];
    if (last > lastId)
        lastId = lastIdOf(category); // zones may have been declared since
    if (last > lastId && lastId != 0)
        tell(KelMisuse::BeyondTheEnd, asked(array) + "element " + std::to_string(last) +
                                          " was asked for, and the last one is " + std::to_string(lastId));
}

unsigned64 KelFormatProvider::startedVariable(KelZoneCategory category, const std::string& variableName,
                                              unsigned64 size)
{
    _help.variableCategory = size > 0 ? category : noCategory;
    if (size == 0 && !_help.isOpen[KEL_DATA])
        tell(KelMisuse::NotOpen, "variable '" + variableName + "': the data is not open: startReading comes first");
    else if (size == 0)
        explainVariable(variableName);
    return size;
}

unsigned64 KelFormatProvider::notStartedVariable(int variableId) const
{
    _help.variableCategory = noCategory;
    const std::string name = variableName(variableId);
    if (!_help.isOpen[KEL_DATA])
        tell(KelMisuse::NotOpen,
             "variable " + std::to_string(variableId) + ": the data is not open: startReading comes first");
    else if (name.empty())
        tell(KelMisuse::UnknownVariable, "there is no variable " + std::to_string(variableId));
    else
        explainVariable(name);
    return 0;
}

void KelFormatProvider::explainVariable(const std::string& variableName) const
{
    short active = 0;
    std::string activeName;
    int ignored = 0;
    const bool isPhaseActive = getActivePhase(active) && getPhaseName(active, activeName);
    if (isPhaseActive && getVariableId(active, variableName, ignored))
        return; // it has no values here: nothing is wrong
    std::vector<short> phaseIds;
    getPhaseIds(phaseIds);
    const auto other = std::find_if(phaseIds.begin(), phaseIds.end(),
                                    [&](short id) { return getVariableId(id, variableName, ignored); });
    if (other == phaseIds.end())
        return tell(KelMisuse::UnknownVariable, "no phase has a variable '" + variableName + "'");
    std::string owner;
    getPhaseName(*other, owner);
    tell(KelMisuse::OtherPhase, "variable '" + variableName + "' belongs to phase '" + owner + "', and " +
                                    (isPhaseActive ? "'" + activeName + "' is active" : "no phase is active") +
                                    ": startReadingPhase comes first");
}

bool KelFormatProvider::wasTold(KelMisuse kind) const
{
    return (_help.told >> static_cast<int>(kind) & 1U) != 0;
}

void KelFormatProvider::tell(KelMisuse kind, const std::string& text) const
{
    if (wasTold(kind))
        return;
    _help.told |= 1U << static_cast<int>(kind);
    getMessageRegistrar()->registerMessage(KelInfo(text, "KelFormatProvider"));
}

unsigned64 KelFormatProvider::lastIdOf(KelZoneCategory category) const
{
    std::vector<int> zoneIds;
    getZoneIds(category, zoneIds);
    unsigned64 lastId = 0;
    for (const int zoneId : zoneIds)
        lastId = std::max(lastId, rangeOfZone(zoneId).second);
    return lastId;
}

} // namespace meridyn
