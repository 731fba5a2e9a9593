#include "KelLossReport.h"

namespace meridyn {

void KelLossReport::add(const std::string& family, const std::string& item, const std::string& reason)
{
    _losses.push_back({family, item, reason});
}

bool KelLossReport::empty() const
{
    return _losses.empty();
}

const std::vector<KelLoss>& KelLossReport::losses() const
{
    return _losses;
}

std::string KelLossReport::text() const
{
    std::string text;
    for (const KelLoss& loss : _losses)
        text += loss.family + ": " + loss.item + ": " + loss.reason + "\n";
    return text;
}

} // namespace meridyn
