#include "KelFormatConsumer.h"

#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelSolutionModel.h"

#include <algorithm>

namespace meridyn {

KelFormatConsumer::KelFormatConsumer() = default;
KelFormatConsumer::~KelFormatConsumer() = default;

// ---- switches

void KelFormatConsumer::setAppendOn(bool on)
{
    _isAppendOn = on;
}

void KelFormatConsumer::setOverrideSettingsOn(bool on)
{
    _isOverrideSettingsOn = on;
}

void KelFormatConsumer::setWriteSettingsOn(bool on)
{
    _isWriteSettingsOn = on;
}

bool KelFormatConsumer::isAppendOn() const
{
    return _isAppendOn;
}

bool KelFormatConsumer::isOverrideSettingsOn() const
{
    return _isOverrideSettingsOn;
}

bool KelFormatConsumer::isWriteSettingsOn() const
{
    return _isWriteSettingsOn;
}

bool KelFormatConsumer::dropTimeLevelsFrom(int)
{
    const std::string text = getFile(KEL_DATA) + ": the format cannot drop time levels";
    getMessageRegistrar()->registerMessage(KelError(text, "dropTimeLevelsFrom"));
    return false;
}

// ---- forms of one operation

void KelFormatConsumer::startWritingTypesForCells(const std::vector<int>& zoneIds,
                                                  const std::vector<KelCellType>& types)
{
    announce(KelArray::CellTypes, zoneIds);
    for (std::size_t i = 0; i < std::min(zoneIds.size(), types.size()); ++i)
        if (const auto [first, last] = rangeOfZone(zoneIds[i]); types[i] != -1 && first != 0 && last >= first)
            keepUniform(KelArray::CellTypes, first, last, types[i]);
}

// ---- what a format overrides

void KelFormatConsumer::announce(KelArray, const std::vector<int>&)
{}

void KelFormatConsumer::keep(KelArray, unsigned64, unsigned64, const KelValues&)
{}

void KelFormatConsumer::keepUniform(KelArray, unsigned64, unsigned64, signed64)
{}

void KelFormatConsumer::keepInterface(int, const KelInterfaceValues&)
{}

void KelFormatConsumer::startVariable(KelCollection, const std::string&, unsigned64, KelPlainDataType)
{}

void KelFormatConsumer::startLists(KelCollection, const std::string&, KelPlainDataType, KelPlainDataType)
{}

void KelFormatConsumer::startLengths(const std::string&, KelPlainDataType)
{}

bool KelFormatConsumer::append(KelPart, const KelValues&)
{
    return false;
}

bool KelFormatConsumer::appendLists(const KelValues&, const KelValues&)
{
    return false;
}

void KelFormatConsumer::keepBlock(KelCollection, const std::string&, const KelValues&)
{}

void KelFormatConsumer::keepText(KelCollection, const std::string&, const std::string&)
{}

// ---- what KelBase knows

KelMeshDescription KelFormatConsumer::describeMesh() const
{
    return meridyn::describeMesh(*this);
}

KelSolutionDescription KelFormatConsumer::describeSolution() const
{
    return meridyn::describeSolution(*this);
}

std::optional<int> KelFormatConsumer::chosenLevel() const
{
    const std::vector<int>& levels = getTimeLevels();
    const bool isKnown = std::find(levels.begin(), levels.end(), getTimeLevel()) != levels.end();
    return isKnown ? std::optional<int>(getTimeLevel()) : std::nullopt;
}

std::pair<unsigned64, unsigned64> KelFormatConsumer::rangeOfZone(int zoneId) const
{
    std::pair<unsigned64, unsigned64> range;
    getZoneSizeInfo(zoneId, KEL_ZONE_FIRST_ID, range.first);
    getZoneSizeInfo(zoneId, KEL_ZONE_LAST_ID, range.second);
    return range;
}

std::string KelFormatConsumer::variableName(int variableId) const
{
    std::string name;
    solutionModel()->getUniqueNameOfVariable(variableId, name);
    return name;
}

} // namespace meridyn
