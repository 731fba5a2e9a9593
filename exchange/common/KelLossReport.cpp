#include "KelLossReport.h"

#include <algorithm>

namespace meridyn {

std::string KelLoss::when() const
{
    const auto numbered = [this](std::size_t n) { return std::to_string(levels[n]); };
    const std::size_t count = levels.size();
    if (count == 0)
        return "";
    if (count == 1)
        return "time level " + numbered(0);
    if (count > 4) {
        const auto [least, most] = std::minmax_element(levels.begin(), levels.end());
        return std::to_string(count) + " time levels from " + std::to_string(*least) + " to " + std::to_string(*most);
    }
    std::string list = "time levels " + numbered(0);
    for (std::size_t n = 1; n < count; ++n)
        list += (n + 1 < count ? ", " : " and ") + numbered(n);
    return list;
}

std::string KelLoss::line() const
{
    const std::string name = formatFamilyName(family);
    const std::string at = when();
    return (name.empty() ? "" : name + ": ") + item + (at.empty() ? "" : ", " + at) + ": " + text;
}

void KelLossReport::add(const KelLoss& loss)
{
    const Key key(loss.family, static_cast<int>(loss.reason), loss.item, loss.text);
    const auto [known, isNew] = _known.emplace(key, _losses.size());
    if (isNew) {
        _losses.push_back(loss);
        return;
    }
    std::vector<int>& levels = _losses[known->second].levels;
    for (const int level : loss.levels)
        if (std::find(levels.begin(), levels.end(), level) == levels.end())
            levels.push_back(level);
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
    std::string lines;
    for (const KelLoss& loss : _losses)
        lines += loss.line() + "\n";
    return lines;
}

} // namespace meridyn
