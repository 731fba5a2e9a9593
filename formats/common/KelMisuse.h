#pragma once

namespace meridyn {

/// Why a reader of a format gave nothing although it may have something: what its caller can mend.
enum class KelMisuse {
    NotOpen,         ///< the case, or the data, of the question has not been opened
    IdZero,          ///< element ids begin with 1; a zone that nobody declared has the range from 0 to 0
    BeyondTheEnd,    ///< an element id, or a range, behind the last element
    NoStartMarker,   ///< values of a variable, or of a set, that was not started
    OtherPhase,      ///< the active phase has no such variable, but another one has
    UnknownVariable, ///< no phase has such a variable
    Count            ///< number of kinds, itself none
};

} // namespace meridyn
