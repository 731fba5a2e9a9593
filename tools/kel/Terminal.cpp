#include "Terminal.h"

#include "Numbers.h"
#include "PathWords.h"

#include <algorithm>
#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>

namespace meridyn::tool {

Terminal::Terminal()
{
    const char* kind = std::getenv("TERM");
    const bool canSteer = kind == nullptr || std::string_view(kind) != "dumb";
    const char* noColour = std::getenv("NO_COLOR");
    _colours = canSteer && (noColour == nullptr || *noColour == '\0') && isatty(STDOUT_FILENO) == 1;
    _showsProgress = canSteer && isatty(STDERR_FILENO) == 1;
}

void Terminal::write(std::string_view text)
{
    showProgress("");
    std::fwrite(text.data(), 1, text.size(), stdout);
}

void Terminal::heading(std::string_view text)
{
    print("\n{}\n", styled(Style::Heading, text));
}

void Terminal::complain(std::string_view text)
{
    showProgress("");
    std::fflush(stdout);
    std::string line(text);
    std::replace(line.begin(), line.end(), '\n', ' ');
    std::fputs(("kel: " + printable(withWordsForPaths(line)) + "\n").c_str(), stderr);
}

std::string Terminal::styled(Style style, std::string_view text) const
{
    if (!_colours || text.empty())
        return std::string(text);
    static const char* const codes[] = {"1", "32", "31", "2"};
    return fmt::format("\x1b[{}m{}\x1b[0m", codes[static_cast<int>(style)], text);
}

void Terminal::showProgress(std::string_view line)
{
    if (!_showsProgress || (line.empty() && !_hasProgressLine))
        return;
    std::fputs(fmt::format("\r\x1b[K{}", line).c_str(), stderr);
    std::fflush(stderr);
    _hasProgressLine = !line.empty();
}

int Terminal::width() const
{
    winsize size = {};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

bool Terminal::flush()
{
    showProgress("");
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

Table::Table(std::string columns, std::vector<std::string> titles) : _columns(std::move(columns))
{
    _rows.push_back(std::move(titles));
}

void Table::add(std::vector<std::string> row)
{
    _rows.push_back(std::move(row));
}

std::string Table::text(const Terminal& terminal) const
{
    std::vector<std::size_t> widths(_columns.size());
    for (const auto& row : _rows)
        for (std::size_t n = 0; n < row.size(); ++n)
            widths[n] = std::max(widths[n], columns(row[n]));
    std::string text;
    for (const auto& row : _rows) {
        std::string line;
        for (std::size_t n = 0; n < row.size(); ++n) {
            const std::string gap(widths[n] - columns(row[n]), ' ');
            line += (n > 0 ? "  " : "") + (_columns[n] == '>' ? gap + row[n] : row[n] + gap);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += "  " + (&row == &_rows.front() ? terminal.styled(Style::Heading, line) : line) + "\n";
    }
    return text;
}

} // namespace meridyn::tool
