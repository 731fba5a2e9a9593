#pragma once

#include "KelFileIO.h"
#include "KelProvider.h"

#include <string>

namespace meridyn {

/// Base of every file reader: opens the file of a data class at startReading and closes it at endReading.
///
/// A format overrides openData, closeData and the range operations. Whether a file is open is not tracked here.
class KEL_API KelFileProvider : public KelProvider, public KelFileIO {
public:
    /// No file is named and nothing is open.
    KelFileProvider();
    ~KelFileProvider() override;

    /// Opens the file named for the data class; false when none is, or openData's answer.
    bool startReading(KelDataClass dataClass) override;

    /// Names the file and opens it.
    bool startReading(const std::string& fileName, KelDataClass dataClass);

    /// Closes the file: closeData's answer, or false when no file is named for the data class.
    bool endReading(KelDataClass dataClass) override;

    /// @name Names of the data sets in the file
    /// False for an unknown phase or variable.
    /// @{
    virtual bool getDatasetNameOfPhase(short phaseId, std::string& name) const;
    virtual bool getDatasetNameOfVariable(int variableId, std::string& name) const;
    /// @}

protected:
    /// @name For formats: open and close the file of a data class. False here.
    /// @{
    virtual bool openData(KelDataClass dataClass, const std::string& fileName);
    virtual bool closeData(KelDataClass dataClass);
    /// @}
};

} // namespace meridyn
