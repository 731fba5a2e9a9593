#include "KelSettingsParser.h"

namespace meridyn {

KelSettingsParser::KelSettingsParser() = default;
KelSettingsParser::KelSettingsParser(const KelSettingsParser& other) = default;
KelSettingsParser& KelSettingsParser::operator=(const KelSettingsParser& other) = default;
KelSettingsParser::~KelSettingsParser() = default;

} // namespace meridyn
