#pragma once

#include "KelExport.h"
#include "KelTypes.h"

#include <map>
#include <string>
#include <vector>

namespace meridyn {

/// Remembers, per data class, the name of a file and its version text. Base of the file-bound writer and reader.
class KEL_API KelFileIO {
public:
    /// No file is named for either data class.
    KelFileIO();
    KelFileIO(const KelFileIO& other);
    KelFileIO& operator=(const KelFileIO& other);
    virtual ~KelFileIO();

    /// Names the file of a data class, in place of an earlier one.
    virtual void setFile(const std::string& fileName, KelDataClass dataClass);

    /// Version of a file as numbers. All three are set to -1 first and stay so when the text form gives false; parts
    /// that the text does not have are 0. "17.2.1-beta" is 17, 2, 1.
    /// @throws std::invalid_argument "invalid stoi argument" where a part does not begin with a number
    /// @throws std::out_of_range     "stoi argument out of range" where a part is beyond the range of int
    virtual bool getFileVersion(KelDataClass dataClass, int& major, int& minor, int& patch) const;

    /// Version of a file as text: "Unknown" and false unless the text begins with a decimal digit.
    virtual bool getFileVersion(KelDataClass dataClass, std::string& version) const;

protected:
    /// Keeps the version text of a data class, in place of an earlier one.
    virtual void setFileVersion(KelDataClass dataClass, const std::string& version);

    /// Name of the file of a data class; empty when there is none.
    std::string getFile(KelDataClass dataClass) const;

    /// The data classes that have a file name, ascending.
    std::vector<KelDataClass> getDataClasses() const;

private:
    std::map<KelDataClass, std::string> _files;
    std::map<KelDataClass, std::string> _fileVersions;
};

} // namespace meridyn
