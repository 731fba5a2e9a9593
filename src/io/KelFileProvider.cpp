#include "KelFileProvider.h"
#include "KelSolutionModel.h"

namespace meridyn {

KelFileProvider::KelFileProvider() = default;
KelFileProvider::~KelFileProvider() = default;

bool KelFileProvider::startReading(KelDataClass dataClass)
{
    const std::string fileName = getFile(dataClass);
    return !fileName.empty() && openData(dataClass, fileName);
}

bool KelFileProvider::startReading(const std::string& fileName, KelDataClass dataClass)
{
    setFile(fileName, dataClass);
    return startReading(dataClass);
}

bool KelFileProvider::endReading(KelDataClass dataClass)
{
    return !getFile(dataClass).empty() && closeData(dataClass);
}

bool KelFileProvider::getDatasetNameOfPhase(short phaseId, std::string& name) const
{
    return solutionModel()->hasPhase(phaseId) && solutionModel()->getDatasetNameOfPhase(phaseId, name);
}

bool KelFileProvider::getDatasetNameOfVariable(int variableId, std::string& name) const
{
    return solutionModel()->getDatasetNameOfVariable(variableId, name);
}

bool KelFileProvider::openData(KelDataClass, const std::string&)
{
    return false;
}

bool KelFileProvider::closeData(KelDataClass)
{
    return false;
}

} // namespace meridyn
