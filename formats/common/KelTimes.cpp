#include "KelTimes.h"

#include "KelConsumer.h"
#include "KelProvider.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace meridyn {

const char* const KelTimes::group = "timeLevels";

bool KelTimes::set(const KelConsumer& writer, int level, double seconds)
{
    if (level < 0 || !std::isfinite(seconds))
        return false;
    writer.writeSettingStrings({{std::to_string(level), text(seconds)}}, KEL_DATA, group);
    return true;
}

bool KelTimes::get(const KelProvider& reader, int level, double& seconds)
{
    std::string stored;
    reader.getSettingString(KEL_DATA, std::to_string(level), stored, group);
    return parse(stored, seconds);
}

bool KelTimes::find(const KelProvider& reader, double seconds, int& level)
{
    constexpr double tolerance = 1e-9; // of the larger of the two: typed times are rounded, computed ones as well
    double smallest = 0.0;
    bool isFound = false;
    for (const int known : reader.getTimeLevels()) {
        double time = 0.0;
        if (!get(reader, known, time))
            continue;
        const double distance = std::abs(time - seconds);
        if (distance <= tolerance * std::max(std::abs(time), std::abs(seconds)) && (!isFound || distance < smallest)) {
            isFound = true;
            smallest = distance;
            level = known;
        }
    }
    return isFound;
}

std::string KelTimes::text(double seconds)
{
    std::array<char, 32> digits{};
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), seconds).ptr};
}

bool KelTimes::parse(const std::string& text, double& seconds)
{
    double found = 0.0;
    const char* const end = text.data() + text.size();
    const auto [at, error] = std::from_chars(text.data(), end, found);
    if (text.empty() || error != std::errc() || at != end || !std::isfinite(found))
        return false;
    seconds = found;
    return true;
}

} // namespace meridyn
