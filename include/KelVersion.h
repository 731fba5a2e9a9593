#pragma once

#include "KelExport.h"

#include <string>

namespace meridyn {

/// What the library says about itself: version numbers, release label, build. Everything is static; the class has
/// no data and exists to be derived from.
class KEL_API KelVersion {
public:
    /// There is nothing to construct, copy or destroy.
    /// @{
    KelVersion();
    KelVersion(const KelVersion& other);
    KelVersion& operator=(const KelVersion& other);
    ~KelVersion(); // NOLINT(performance-trivially-destructible): out of line like all of them
    /// @}

    /// Major version of the library and of the file format it writes in full: 25.
    static unsigned int getMajor();
    /// Minor version: 1.
    static unsigned int getMinor();
    /// Patch level: 0.
    static unsigned int getPatch();
    /// Whether this is a beta build: false.
    static bool isBeta();
    /// Source revision that the library was built from: eight hexadecimal digits.
    static std::string getSHA();

    /// Major and minor version in decimal with `separator` between them: 25.1 for ".", 251 for an empty one.
    static std::string apiVersionAsString(const std::string& separator);

    /// "MERIDYN", the application and the release label, a blank between each two. An empty application leaves
    /// both of its blanks.
    static std::string meridynApplicationVersion(const std::string& application);

    /// The one-line legal notice.
    ///
    /// @param withWarning  append, after a blank, the sentence that forbids unauthorised use, distribution or
    ///                     duplication
    static std::string copyright(bool withWarning);
};

/// Prints the start-up notice on standard output, flushing after each line: a welcome with the release, the line of
/// KelVersion::copyright and the legal lines, one statement each.
KEL_API void printCopyrightNotice();

/// Prints the version banner on standard output, flushing after each line: the release with the build in brackets,
/// and the file versions that are written and read. The first call in the process prints the start-up notice above
/// it. When two threads call it for the first time at once, one of them prints the notice.
KEL_API void printSDKVersion();

} // namespace meridyn
