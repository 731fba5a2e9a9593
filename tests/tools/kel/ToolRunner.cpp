#include "ToolRunner.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <nlohmann/json.hpp>
#include <poll.h>
#include <pty.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace meridyn::tool {

// ---- folder -------------------------------------------------------------------------------------------------------

TemporaryFolder::TemporaryFolder()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "kel-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    _path = pattern;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code error;
    std::filesystem::remove_all(_path, error);
}

std::string TemporaryFolder::file(const std::string& name, const std::string& content) const
{
    std::ofstream(_path / name, std::ios::binary) << content;
    return *this / name;
}

std::vector<std::string> TemporaryFolder::names() const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(_path))
        names.push_back(entry.path().filename().string());
    return names;
}

// ---- running ------------------------------------------------------------------------------------------------------

[[noreturn]] static void becomeKel(const std::vector<std::string>& arguments, const Variables& variables)
{
    for (const char* name : {"NO_COLOR", "KEL_VARIABLE_CONFIG_DIR", "TVR_ROOT251", "KEL_REPORT_VARIABLE_CONFIGS"})
        unsetenv(name);
    setenv("TERM", "xterm", 1);
    setenv("KEL_FORMAT_PLUGIN_DIR", KEL_TEST_PLUGINS, 1);
    for (const auto& [name, value] : variables)
        setenv(name.c_str(), value.c_str(), 1);
    std::vector<char*> argv = {const_cast<char*>("kel")};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    execv(KEL_TOOL, argv.data());
    _exit(127);
}

/// Reads what a process writes until it has closed all of its ends.
static void readAll(std::vector<std::pair<int, std::string*>> ends)
{
    std::array<char, 4096> buffer{};
    while (!ends.empty()) {
        std::vector<pollfd> waiting;
        for (const auto& [fd, text] : ends)
            waiting.push_back({fd, POLLIN, 0});
        poll(waiting.data(), waiting.size(), -1);
        for (std::size_t n = waiting.size(); n-- > 0;) {
            if (waiting[n].revents == 0)
                continue;
            const ssize_t count = read(ends[n].first, buffer.data(), buffer.size());
            if (count > 0) {
                ends[n].second->append(buffer.data(), static_cast<std::size_t>(count));
                continue;
            }
            close(ends[n].first);
            ends.erase(ends.begin() + static_cast<std::ptrdiff_t>(n));
        }
    }
}

static void waitFor(pid_t process, Ran& ran)
{
    int status = 0;
    waitpid(process, &status, 0);
    if (WIFEXITED(status))
        ran.code = WEXITSTATUS(status);
    else
        ran.signal = WTERMSIG(status);
}

Ran runKel(const std::vector<std::string>& arguments, const Variables& variables,
           const std::function<void(pid_t)>& whileRunning, const char* outFile)
{
    int out[2], err[2];
    if (pipe(out) != 0 || pipe(err) != 0)
        throw std::runtime_error("no pipe");
    const pid_t process = fork();
    if (process == 0) {
        dup2(outFile != nullptr ? open(outFile, O_WRONLY) : out[1], STDOUT_FILENO);
        dup2(err[1], STDERR_FILENO);
        for (const int fd : {out[0], out[1], err[0], err[1]})
            close(fd);
        becomeKel(arguments, variables);
    }
    close(out[1]);
    close(err[1]);
    if (whileRunning)
        whileRunning(process);
    Ran ran;
    readAll({{out[0], &ran.out}, {err[0], &ran.err}});
    waitFor(process, ran);
    return ran;
}

Ran runKelInTerminal(const std::vector<std::string>& arguments, const Variables& variables)
{
    winsize size = {};
    size.ws_row = 24;
    size.ws_col = 100;
    int terminal = -1;
    const pid_t process = forkpty(&terminal, nullptr, nullptr, &size);
    if (process == 0)
        becomeKel(arguments, variables);
    Ran ran;
    readAll({{terminal, &ran.out}});
    waitFor(process, ran);
    return ran;
}

bool isJson(const std::string& text)
{
    return nlohmann::json::accept(text);
}

} // namespace meridyn::tool
