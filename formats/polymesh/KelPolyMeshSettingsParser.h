#pragma once

#include "KelSettingsParser.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace meridyn::polymesh {

/// Turns dictionaries into settings: text 1 is the name of the dictionary and stands before every path, text 2 is its
/// text. Dictionaries within it are groups; values are kept as they are written, without quotes where one text is all.
class KelPolyMeshSettingsParser : public KelSettingsParser {
public:
    static constexpr const char* parserName = "OPENFOAM";

    KelPolyMeshSettingsParser();
    ~KelPolyMeshSettingsParser() override;

    std::string name() const override;

    /// The first value of the dictionary; false when there is none.
    bool parseSetting(KelDataClass dataClass, const std::string& text1, const std::string& text2,
                      std::pair<std::string, std::string>& result, DataInterface* data) override;

    /// All values; only the entries of the dictionary that are keywords, if there are keywords.
    bool parseSettingsDataSet(KelDataClass dataClass, const std::string& text1, const std::string& text2,
                              std::map<std::string, std::string>& result, DataInterface* data,
                              const std::vector<std::string>& keywords) override;

    /// The values of a dictionary by path, in the order of the file. Throws FoamError for a text that is none.
    static std::vector<std::pair<std::string, std::string>> values(const std::string& name, const std::string& text);
};

} // namespace meridyn::polymesh
