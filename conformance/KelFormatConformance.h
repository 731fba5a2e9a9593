#pragma once

#include "KelExport.h"
#include "KelFormat.h"

#include <memory>
#include <string>
#include <vector>

namespace meridyn {

/// Outcome of one check of a format.
struct KelConformanceResult {
    std::string name;   ///< of the check: "mesh-by-zone"
    bool passed = true; ///< whether the format did everything as the frames say
    std::string detail; ///< what it did otherwise, one line each; empty when it passed
};

/// One suite for all formats: what every reader and writer behind the frames owes its clients.
///
/// A format is tested by what it declares: checks of a family run when the format carries it. A format with a writer
/// is tested by round trips; one that only reads, by the models that KelFormat::samples and addSample name. What is not
/// declared is not asked for, and what is declared is expected without exception.
///
/// Round trips    each family, each zone category, each value type, empty, one and many elements, all three forms of
///                the operations, several phases, time levels and meshes, hostile names, special values.
/// Reading        zone, range and element form agree; a small buffer is never overrun; ids and zones that do not exist
///                give nothing; ids lie in the mesh; a second reader gives the same.
/// Order          what is called too early, too late or twice neither crashes nor succeeds; a writer that is dropped
///                before endWriting leaves what was there.
///
/// What a format may refuse although it carries the family (a mesh without elements, a two-dimensional one) it refuses
/// with false and a KelError.
///
/// While checks run, standard output is silent, since the frames print what a format does not override.
///
/// @code
/// KelFormatConformance suite(*KelFormatRegistry::instance().find("mine"), "/tmp/scratch");
/// if (!suite.run())
///     std::cout << suite.text();
/// @endcode
class KEL_API KelFormatConformance {
public:
    /// @param format         is copied
    /// @param scratchFolder  an existing folder in which the checks make their files; it and they stay the caller's
    KelFormatConformance(KelFormat format, std::string scratchFolder);
    ~KelFormatConformance();
    KelFormatConformance(const KelFormatConformance&) = delete;
    KelFormatConformance& operator=(const KelFormatConformance&) = delete;

    /// Adds the name of a model to those that are read. A format that only reads and has no samples of its own is
    /// hardly tested without.
    void addSample(const std::string& name);

    /// Names of the checks that apply to the format, in the order in which they run.
    std::vector<std::string> checks() const;

    /// Runs all checks; whether all passed.
    bool run();

    /// Runs one check and appends its result, which it gives. A name that is none of checks() fails.
    KelConformanceResult run(const std::string& check);

    /// Results so far, in the order in which the checks ran.
    const std::vector<KelConformanceResult>& results() const;

    /// One line per result, "passed  mesh-by-zone" or "FAILED  mesh-by-zone", with the details indented below, and a
    /// last line with the numbers of both.
    std::string text() const;

private:
    KelFormat _format;
    std::string _folder;
    std::vector<KelConformanceResult> _results;
};

} // namespace meridyn
