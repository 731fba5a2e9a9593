#include "KelFileConsumer.h"
#include "KelSolutionModel.h"

namespace meridyn {

KelFileConsumer::KelFileConsumer() : KelConsumer("Unknown")
{}

KelFileConsumer::~KelFileConsumer() = default;

bool KelFileConsumer::startWriting(KelDataClass dataClass)
{
    const std::string fileName = getFile(dataClass);
    return !fileName.empty() && openData(dataClass, fileName);
}

bool KelFileConsumer::startWriting(const std::string& fileName, KelDataClass dataClass)
{
    setFile(fileName, dataClass);
    return startWriting(dataClass);
}

bool KelFileConsumer::endWriting(KelDataClass dataClass)
{
    if (getFile(dataClass).empty())
        return false;
    writeMeshAttributes();
    writeCommonSettings(dataClass);
    return closeData(dataClass);
}

void KelFileConsumer::writeCommonSettings(KelDataClass dataClass)
{
    writeSettingStrings({{"Solver", getSolverType()},
                         {"Version", apiVersionAsString(".")},
                         {"Origin", meridynApplicationVersion(getApplicationName())}},
                        dataClass, _defaultSettingsPath);
}

void KelFileConsumer::writeGenericSettings(KelDataClass dataClass, std::string key, std::string value)
{
    writeSettingStrings({{std::move(key), std::move(value)}}, dataClass, _defaultSettingsPath);
}

void KelFileConsumer::setAppendOn(bool)
{}

void KelFileConsumer::setCombineContinuousZones(bool)
{}

void KelFileConsumer::setOverrideSettingsOn(bool)
{}

void KelFileConsumer::setWriteSettingsOn(bool)
{}

bool KelFileConsumer::setDatasetNameOfPhase(short phaseId, const std::string& name)
{
    return solutionModel()->hasPhase(phaseId) && solutionModel()->setDatasetNameOfPhase(phaseId, name);
}

bool KelFileConsumer::setDatasetNameOfVariable(int variableId, const std::string& name)
{
    return solutionModel()->setDatasetNameOfVariable(variableId, name);
}

bool KelFileConsumer::openData(KelDataClass, const std::string&)
{
    return false;
}

bool KelFileConsumer::closeData(KelDataClass)
{
    return false;
}

} // namespace meridyn
