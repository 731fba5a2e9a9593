#pragma once

#include "KelConsumer.h"
#include "KelFileIO.h"

#include <string>

namespace meridyn {

/// Base of every file writer: opens the file of a data class at startWriting, and at endWriting writes the mesh
/// attributes and the common settings ("Solver", "Version", "Origin" in the group "settings") and closes it.
///
/// A format overrides openData, closeData and the range operations. Whether a file is open is not tracked here.
class KEL_API KelFileConsumer : public KelConsumer, public KelFileIO {
public:
    /// A writer for the application "Unknown"; setApplicationName names it.
    KelFileConsumer();
    ~KelFileConsumer() override;

    /// Opens the file named for the data class; false when none is, or openData's answer.
    bool startWriting(KelDataClass dataClass) override;

    /// Names the file and opens it.
    bool startWriting(const std::string& fileName, KelDataClass dataClass);

    /// Mesh attributes, then common settings, then closeData, whose answer it gives; false and nothing else when no
    /// file is named for the data class.
    bool endWriting(KelDataClass dataClass) override;

    /// @name Switches, before startWriting. Nothing here.
    /// @{
    virtual void setAppendOn(bool on);               ///< whether a file that exists is added to
    virtual void setCombineContinuousZones(bool on); ///< whether zones with adjoining ids may be written as one
    virtual void setOverrideSettingsOn(bool on);     ///< whether settings that the file has already are replaced
    virtual void setWriteSettingsOn(bool on);        ///< whether settings are written at all
    /// @}

    /// Writes one pair of the group "settings".
    void writeGenericSettings(KelDataClass dataClass, std::string key, std::string value);

    /// @name Names of the data sets in the file. False for an unknown phase or variable, or an empty name.
    /// @{
    virtual bool setDatasetNameOfPhase(short phaseId, const std::string& name);
    virtual bool setDatasetNameOfVariable(int variableId, const std::string& name);
    /// @}

protected:
    /// @name For formats: open and close the file of a data class. False here.
    /// @{
    virtual bool openData(KelDataClass dataClass, const std::string& fileName);
    virtual bool closeData(KelDataClass dataClass);
    /// @}

    /// Writes the solver type, the interface version and the application as three pairs of the group "settings".
    void writeCommonSettings(KelDataClass dataClass);
};

} // namespace meridyn
