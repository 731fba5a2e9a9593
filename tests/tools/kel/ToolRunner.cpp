#include "ToolRunner.h"

#include <array>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
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

// ---- JSON ---------------------------------------------------------------------------------------------------------

namespace {

/// Reads JSON by its grammar and keeps nothing.
class JsonReader {
public:
    explicit JsonReader(const std::string& text) : _at(text.c_str()), _end(_at + text.size()) {}

    bool readDocument() { return value() && (skip(), _at == _end); }

private:
    void skip()
    {
        while (_at != _end && std::strchr(" \n\r\t", *_at) != nullptr)
            ++_at;
    }
    bool take(char c)
    {
        skip();
        return _at != _end && *_at == c && (++_at, true);
    }
    bool word(const char* text)
    {
        const std::size_t length = std::strlen(text);
        return static_cast<std::size_t>(_end - _at) >= length && std::strncmp(_at, text, length) == 0 &&
               (_at += length, true);
    }
    bool value()
    {
        skip();
        if (_at == _end)
            return false;
        if (*_at == '"')
            return string();
        if (take('{'))
            return list('}', [this] { return (skip(), string()) && take(':') && value(); });
        if (take('['))
            return list(']', [this] { return value(); });
        return word("true") || word("false") || word("null") || number();
    }
    template <class Member>
    bool list(char close, const Member& member)
    {
        if (take(close))
            return true;
        do
            if (!member())
                return false;
        while (take(','));
        return take(close);
    }
    bool string()
    {
        if (!take('"'))
            return false;
        for (; _at != _end && *_at != '"'; ++_at) {
            if (static_cast<unsigned char>(*_at) < 0x20)
                return false;
            if (*_at == '\\' && (++_at == _end || std::strchr("\"\\/bfnrtu", *_at) == nullptr))
                return false;
        }
        return take('"');
    }
    bool number()
    {
        char* end = nullptr;
        if (*_at != '-' && std::isdigit(static_cast<unsigned char>(*_at)) == 0)
            return false;
        std::strtod(_at, &end);
        const bool isOne = end != _at;
        _at = end;
        return isOne;
    }

    const char* _at;
    const char* _end;
};

} // namespace

bool isJson(const std::string& text)
{
    return JsonReader(text).readDocument();
}

} // namespace meridyn::tool
