#pragma once

#include "KelFormat.h"

#include <memory>
#include <string>
#include <vector>

namespace meridyn {

/// The formats that exist: our own, those that a program adds, and those loaded from shared objects at run time.
///
/// The registry of the process is made on first use. Any thread may use a registry at any time, also while another one
/// adds to it. What it hands out stays valid, and as it is, as long as the registry lives.
class KEL_API KelFormatRegistry {
public:
    /// A registry of its own, without formats.
    KelFormatRegistry();

    /// Takes the formats over; the other registry may only be destroyed afterwards.
    KelFormatRegistry(KelFormatRegistry&& other) noexcept;
    ~KelFormatRegistry();

    /// The registry of the process. Holds our formats, and on first use loads the plug-ins of every folder in the
    /// environment variable KEL_FORMAT_PLUGIN_DIR (several are separated by ':').
    static KelFormatRegistry& instance();

    /// Adds a format. False, and nothing changes, when its name is empty or taken, when it has neither a reader nor a
    /// writer, no `files`, or no probe where it has a reader.
    bool add(KelFormat format);

    /// All formats in the order in which they were added. A format that is added later is not in this list, but in that
    /// of the next call.
    const std::vector<KelFormat>& formats() const;

    /// The format of exactly this name, or null.
    const KelFormat* find(const std::string& name) const;

    /// The format that recognises what lies at a path by its content, the first added first; or null.
    const KelFormat* probe(const std::string& path) const;

    /// The formats that a name may stand for, for reading. More than one means that the name is in doubt.
    ///
    /// What lies at the very path comes first: where a file or folder of that name is a model, or a part of one (as
    /// "case/constant/polyMesh" is), only the formats that recognise it are given. Then come the formats whose prefix
    /// the name has ("box:..."), and last those for which the name stands for other files: "cube" for "cube.case.kel".
    /// Pointers stay valid until the next add.
    std::vector<const KelFormat*> candidates(const std::string& path) const;

    /// The format that writes names with the prefix or suffix of this path, the longest one first, of equals the first
    /// added; or null.
    const KelFormat* forWriting(const std::string& path) const;

    /// Loads a shared object as a further format: see KelFormatPlugin.h.
    ///
    /// @param problem  what was wrong, with the file's name; untouched on success
    /// @return whether a format was added; a file that is refused leaves nothing behind
    bool loadPlugin(const std::string& path, std::string& problem);

    /// What went wrong with the plug-ins of KEL_FORMAT_PLUGIN_DIR, one line each.
    const std::vector<std::string>& pluginProblems() const;

private:
    struct Lists;

    std::unique_ptr<Lists> _lists;
    std::vector<std::string> _pluginProblems;
};

} // namespace meridyn
