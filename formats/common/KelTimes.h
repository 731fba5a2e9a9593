#pragma once

#include "KelExport.h"

#include <string>

namespace meridyn {

class KelConsumer;
class KelProvider;

/// The physical times of the time levels of a solution, in seconds, through the frames of any format.
///
/// A time level is a number that counts; at what time it lies is said here. The times travel as settings of the data,
/// in the group KelTimes::group: the key is the number of the level in decimal digits, the text the seconds with as
/// many digits as give the same double again. A format that stores or copies settings therefore stores and copies
/// times.
///
/// @code
/// writer.startWritingTimeLevel(40);
/// KelTimes::set(writer, 40, 0.2);
///
/// double seconds = 0.0;
/// if (KelTimes::get(reader, 40, seconds)) ...
/// @endcode
class KEL_API KelTimes {
public:
    /// The group of settings that holds the times: "timeLevels".
    static const char* const group;

    /// Hands over the time of a level while the data is being written; the last one handed over counts.
    ///
    /// @param level    0 or above; it need not be known yet
    /// @param seconds  finite; may be negative
    /// @return false, and nothing is written, for a negative level and for a time that is infinite or not a number
    static bool set(const KelConsumer& writer, int level, double seconds);

    /// Gives the time of a level while the data is open for reading.
    ///
    /// @param seconds  left alone when the level has no time, or when what is stored is no finite number
    /// @return whether the level has a time
    static bool get(const KelProvider& reader, int level, double& seconds);

    /// Finds the time level that lies at a time, to within a billionth of it; of several the nearest, of equally near
    /// ones the first in the order of getTimeLevels.
    ///
    /// @param level  left alone when no known level lies there
    /// @return whether a level of getTimeLevels lies at that time
    static bool find(const KelProvider& reader, double seconds, int& level);

    /// A time as the settings hold it: "0.1", "1e-07"; the fewest digits that give the same double again.
    static std::string text(double seconds);

    /// Reads what text wrote, or any decimal number alone. False, and `seconds` is left alone, for anything else and
    /// for a number that is not finite.
    static bool parse(const std::string& text, double& seconds);
};

} // namespace meridyn
