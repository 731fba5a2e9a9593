#pragma once

#include <cstdio>
#include <fmt/format.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace meridyn::tool {

/// How a piece of text stands out on a terminal.
enum class Style {
    Heading,
    Good,
    Bad,
    Note
};

/// What the tool writes: answers on standard output, complaints and progress on standard error.
///
/// Colours are used on a terminal only, and there not under NO_COLOR or TERM=dumb.
class Terminal {
public:
    Terminal();

    /// Writes an answer.
    void write(std::string_view text);

    /// Formats and writes an answer.
    template <class... Args>
    void print(fmt::format_string<Args...> format, Args&&... args)
    {
        write(fmt::format(format, std::forward<Args>(args)...));
    }

    /// Writes a heading on a line of its own.
    void heading(std::string_view text);

    /// Writes "kel: <text>" on one line of standard error, whatever the text holds.
    void complain(std::string_view text);

    /// A text as answers show it; unchanged when standard output is no terminal.
    std::string styled(Style style, std::string_view text) const;

    /// Whether progress is shown: standard error is a terminal that can move its cursor.
    bool showsProgress() const { return _showsProgress; }

    /// Overwrites the line of progress on standard error.
    void showProgress(std::string_view line);

    /// Columns of the terminal on standard error, 80 when it does not say.
    int width() const;

    /// Hands everything over to the system. False when not all of it could be written.
    bool flush();

private:
    bool _colours = false;
    bool _showsProgress = false;
    bool _hasProgressLine = false;
};

/// Lines of columns, each as wide as its widest entry.
class Table {
public:
    /// @param columns  one character per column: '<' left, '>' right; the titles are the first row
    Table(std::string columns, std::vector<std::string> titles);

    void add(std::vector<std::string> row);

    /// The text, indented by two blanks; the titles look like headings.
    std::string text(const Terminal& terminal) const;

private:
    std::string _columns;
    std::vector<std::vector<std::string>> _rows;
};

} // namespace meridyn::tool
