#include "TimeLevels.h"

#include "KelProvider.h"
#include "KelTimes.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <set>
#include <system_error>

namespace meridyn::tool {

std::vector<TimeLevel> timeLevelsOf(const KelProvider& reader)
{
    std::vector<TimeLevel> levels;
    for (const int level : reader.getTimeLevels()) {
        double seconds = 0.0;
        const bool hasTime = KelTimes::get(reader, level, seconds);
        levels.push_back({level, hasTime ? std::optional(seconds) : std::nullopt});
    }
    return levels;
}

static std::string nameOf(const TimeLevel& level)
{
    return std::to_string(level.level) + (level.seconds ? " (" + KelTimes::text(*level.seconds) + " s)" : "");
}

std::string levelsText(const std::vector<TimeLevel>& levels)
{
    constexpr std::size_t shown = 10;
    std::string text;
    for (std::size_t n = 0; n < std::min(levels.size(), shown); ++n)
        text += (n > 0 ? ", " : "") + nameOf(levels[n]);
    if (levels.size() > shown)
        text += " ... " + nameOf(levels.back());
    return text.empty() ? "none" : text;
}

namespace {

/// One end of a range, or an entry of its own.
struct Point {
    bool isTime;
    int level;
    double seconds;
};

/// Times are written in digits, so two that differ by a billionth are the same one.
bool isClose(double one, double other)
{
    return std::abs(one - other) <= 1e-9 * std::max(std::abs(one), std::abs(other));
}

Point pointOf(const std::string& text, const std::string& whole)
{
    Point point{!text.empty() && text.back() == 's', 0, 0.0};
    if (point.isTime && KelTimes::parse(text.substr(0, text.size() - 1), point.seconds))
        return point;
    const char* end = text.data() + text.size();
    const auto [at, error] = std::from_chars(text.data(), end, point.level);
    if (point.isTime || text.empty() || error != std::errc() || at != end || point.level < 0)
        throw BadLevels("'" + whole + "' is no list of time levels; an example is 1,5-8,0.5s,last");
    return point;
}

/// Where an entry is cut in two: at a dash behind a digit or an "s", so that "-0.5s" and "1e-3s" are whole.
std::size_t dashIn(const std::string& entry)
{
    for (std::size_t at = entry.find('-', 1); at != std::string::npos; at = entry.find('-', at + 1))
        if (entry[at - 1] != 'e' && entry[at - 1] != 'E')
            return at;
    return std::string::npos;
}

bool lies(const TimeLevel& level, const Point& first, const Point& last)
{
    if (!first.isTime)
        return level.level >= first.level && level.level <= last.level;
    return level.seconds && (*level.seconds >= first.seconds || isClose(*level.seconds, first.seconds)) &&
           (*level.seconds <= last.seconds || isClose(*level.seconds, last.seconds));
}

/// The levels of one entry of the list; of several at one time the nearest.
std::vector<int> levelsOf(const std::string& entry, const std::string& whole, const std::vector<TimeLevel>& known)
{
    std::vector<TimeLevel> found;
    if (entry == "last") {
        const auto last = std::max_element(known.begin(), known.end(),
                                           [](const auto& a, const auto& b) { return a.level < b.level; });
        return last == known.end() ? std::vector<int>() : std::vector<int>{last->level};
    }
    const std::size_t dash = dashIn(entry);
    const Point first = pointOf(entry.substr(0, dash), whole);
    const Point last = dash == std::string::npos ? first : pointOf(entry.substr(dash + 1), whole);
    if (first.isTime != last.isTime)
        throw BadLevels("'" + whole + "' is no list of time levels: '" + entry + "' goes from a level to a time");
    std::copy_if(known.begin(), known.end(), std::back_inserter(found),
                 [&](const TimeLevel& level) { return lies(level, first, last); });
    if (first.isTime && dash == std::string::npos && found.size() > 1)
        found = {*std::min_element(found.begin(), found.end(), [&](const TimeLevel& a, const TimeLevel& b) {
            return std::abs(*a.seconds - first.seconds) < std::abs(*b.seconds - first.seconds);
        })};
    std::vector<int> levels;
    for (const TimeLevel& level : found)
        levels.push_back(level.level);
    return levels;
}

} // namespace

std::vector<int> chosenLevels(const std::string& text, const std::vector<TimeLevel>& known)
{
    std::set<int> levels;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(',', start), text.size());
        const std::string entry = text.substr(start, end - start);
        const std::vector<int> found = levelsOf(entry, text, known);
        if (found.empty())
            throw Failure("has no time level '" + entry + "'; those that it has: " + levelsText(known));
        levels.insert(found.begin(), found.end());
        start = end + 1;
    }
    return {levels.begin(), levels.end()};
}

} // namespace meridyn::tool
