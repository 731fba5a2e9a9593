#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace meridyn::tool {

/// What came of a run of the tool.
struct Ran {
    int code = -1;  ///< exit code, -1 when a signal ended it
    int signal = 0; ///< that ended it
    std::string out, err;
};

/// A folder for one test, gone with it.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string operator/(const std::string& name) const { return (_path / name).string(); }
    const std::filesystem::path& path() const { return _path; }

    /// Writes a file and gives its path.
    std::string file(const std::string& name, const std::string& content) const;

    /// Names of what is in it.
    std::vector<std::string> names() const;

private:
    std::filesystem::path _path;
};

using Variables = std::vector<std::pair<std::string, std::string>>;

/// Runs the tool with its output in pipes.
///
/// @param whileRunning  called once with the process id
/// @param outFile       takes standard output instead of the pipe
Ran runKel(const std::vector<std::string>& arguments, const Variables& variables = {},
           const std::function<void(pid_t)>& whileRunning = nullptr, const char* outFile = nullptr);

/// Runs the tool in a terminal of 100 columns; all of its output is in `out`.
Ran runKelInTerminal(const std::vector<std::string>& arguments, const Variables& variables = {});

/// Whether a text is exactly one JSON document.
bool isJson(const std::string& text);

} // namespace meridyn::tool
