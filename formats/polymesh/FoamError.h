#pragma once

#include <stdexcept>
#include <string>

namespace meridyn::polymesh {

/// Why a case could not be read: the file, where in it, what was expected and what was found.
///
/// Thrown by everything behind the reader and caught there only, where it becomes a record in the message store.
class FoamError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;

    /// The text without the path of the file, for whoever names the file by its place in the case.
    std::string withoutPath(const std::string& path) const
    {
        const std::string text = what();
        for (const std::string& begin : {path + ": ", path + ".gz: "})
            if (text.rfind(begin, 0) == 0)
                return text.substr(begin.size());
        return text;
    }
};

/// The case is sound, but what was asked for belongs to another mesh than the one that is open.
class OtherMeshError : public FoamError {
public:
    using FoamError::FoamError;
};

} // namespace meridyn::polymesh
