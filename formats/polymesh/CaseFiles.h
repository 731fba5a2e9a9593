#pragma once

#include <string>
#include <vector>

namespace meridyn::polymesh {

/// What lies below a folder, as paths within it, ascending; files without ".gz".
///
/// Links are followed, but no folder is entered twice, nor one that lies deeper than folders of cases do.
struct CaseFiles {
    std::vector<std::string> files;
    std::vector<std::string> outranked; ///< "x.gz" beside "x", which is read in its place
    std::vector<std::string> closed;    ///< folders that were not entered: unreadable, too deep, or seen before

    static CaseFiles below(const std::string& folder);
};

/// The pieces of a path: "0/uniform/time" has three.
std::vector<std::string> piecesOf(const std::string& path);

} // namespace meridyn::polymesh
