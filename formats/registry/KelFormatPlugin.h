#pragma once

#include "KelFormat.h"

namespace meridyn {

/// Version of the agreement between the registry and a plug-in. A plug-in built for another one is refused.
///
/// It changes with the major version of the library, which are its hundreds, and whenever KelFormat or the frames
/// change their layout, which the rest counts.
constexpr unsigned int kelFormatPluginVersion = 2502;

/// What a plug-in hands over. The strings and functions in `format` live in the shared object, which is never unloaded.
struct KelFormatPlugin {
    unsigned int version = kelFormatPluginVersion; ///< stays the first member in every version
    KelFormat format;                              ///< is copied into the registry
};

} // namespace meridyn

/// The one symbol that a plug-in exports; gives a KelFormatPlugin that lives as long as the process.
///
/// @code
/// extern "C" KEL_API const meridyn::KelFormatPlugin* kelFormatPlugin();
/// @endcode
extern "C" KEL_API const meridyn::KelFormatPlugin* kelFormatPlugin();
