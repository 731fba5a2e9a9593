#include "KelConsumer.h"
#include "KelLocationModel.h"
#include "KelSetting.h"
#include "Trace.h"

#include <algorithm>
#include <limits>

namespace meridyn {

KelConsumer::KelConsumer(const std::string& applicationName)
    : _dataPrecision(KEL_PRECISION_AS_GIVEN), _inheritVariableAttributes(false)
{
    setApplicationName(applicationName);
}

KelConsumer::KelConsumer() : KelConsumer("Unknown")
{}

KelConsumer::~KelConsumer() = default;

void KelConsumer::log(std::vector<std::pair<std::string, std::string>>, KelDataClass)
{}

void KelConsumer::setCompression(int)
{}

void KelConsumer::setIOMode(KelIOMode)
{}

void KelConsumer::setMPIComm(void*)
{}

bool KelConsumer::startWriting(KelDataClass)
{
    return false;
}

bool KelConsumer::endWriting(KelDataClass)
{
    return false;
}

bool KelConsumer::isWritingData()
{
    return false;
}

void KelConsumer::writeSettingStrings(const std::vector<std::pair<std::string, std::string>>& pairs, KelDataClass,
                                      const std::string&) const
{
    printFlushedLine("  " + std::to_string(pairs.size()) + " key-value pairs.");
}

void KelConsumer::writeSetting(KelSetting& setting, const std::string& key, KelDataClass dataClass,
                               const std::string& group) const
{
    if (!setting)
        return;
    writeSettingStrings({{key, setting.toSettingString()}}, dataClass, group);
}

void KelConsumer::writeMeshAttributes() const
{}

void KelConsumer::setLocalElemIdsInZone(int, const unsigned64*, unsigned64)
{}

void KelConsumer::startWritingTimeLevel(int level) const
{
    if (level == KEL_LATEST_TIME_LEVEL) {
        const std::vector<int>& known = getTimeLevels();
        level = known.empty() ? std::numeric_limits<int>::max() : *std::max_element(known.begin(), known.end());
    }
    addTimeLevel(level); // which ignores a negative or known one
    if (!setTimeLevel(level))
        printErrorLine("KelConsumer::startWritingTimeLevel(): Invalid Time Level");
}

void KelConsumer::endWritingTimeLevel() const
{}

void KelConsumer::setDataPrecision(KelDataPrecisionType precision)
{
    _dataPrecision = precision;
}

KelDataPrecisionType KelConsumer::getDataPrecision() const
{
    return _dataPrecision;
}

void KelConsumer::setLocationModel(const KelLocationModel* model) const
{
    if (!model)
        return;
    locationModel()->reset(model->state());
    cacheLocationModelState(locationModel()->state());
}

void KelConsumer::writeMeshSize() const
{
    writeMeshAttributes();
}

void KelConsumer::cacheLocationModelState(const std::string&) const
{}

int KelConsumer::getLastLogIndex(KelDataClass) const
{
    return -1;
}

} // namespace meridyn
