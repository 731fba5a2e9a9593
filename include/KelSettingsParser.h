#pragma once

#include "KelExport.h"
#include "KelTypes.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace meridyn {

class DataInterface;

/// Turns settings in an application's own text form into settings paths and values.
///
/// Written by formats and applications, registered with KelBase::registerSettingsParser, which does not take
/// ownership. Paths are separated by "/", the last piece names the value, those before it the groups.
/// What the two texts and the keywords mean is between the parser and those who call addSetting.
class KEL_API KelSettingsParser {
public:
    /// A parser holds nothing of its own here; copies and assignments of this class do nothing.
    KelSettingsParser();
    KelSettingsParser(const KelSettingsParser& other);
    KelSettingsParser& operator=(const KelSettingsParser& other);
    virtual ~KelSettingsParser();

    /// The name under which the parser is registered. "MERIDYN_GENERIC" is asked when a name is not registered.
    virtual std::string name() const = 0;

    /// Turns one setting into a path and a value.
    ///
    /// @param result  empty on entry; stored by the caller when the answer is true
    /// @param data    private data of the KelBase that asks; to be handed on, not to be kept
    /// @return whether the setting was understood; after false nothing is stored
    virtual bool parseSetting(KelDataClass dataClass, const std::string& text1, const std::string& text2,
                              std::pair<std::string, std::string>& result, DataInterface* data) = 0;

    /// Turns a block of settings into values by path.
    ///
    /// @param result  empty on entry; stored by the caller, in ascending order of the paths, when the answer is true
    /// @param data    private data of the KelBase that asks; to be handed on, not to be kept
    /// @return whether the block was understood; after false nothing is stored
    virtual bool parseSettingsDataSet(KelDataClass dataClass, const std::string& text1, const std::string& text2,
                                      std::map<std::string, std::string>& result, DataInterface* data,
                                      const std::vector<std::string>& keywords) = 0;
};

} // namespace meridyn
