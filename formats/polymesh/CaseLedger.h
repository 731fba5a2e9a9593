#pragma once

#include "KelSourceLedger.h"

#include <vector>

namespace meridyn::polymesh {

class CaseFolder;
class CaseSettings;

/// Everything that lies in the folder of a case and is neither handed over nor, as a whole file, part of something that
/// is: the files that the reader never opens, and what CaseSettings tells of the others.
std::vector<KelSourceItem> ledgerOf(const CaseFolder& folder, const CaseSettings& settings, KelDataClass dataClass);

} // namespace meridyn::polymesh
