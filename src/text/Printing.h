#pragma once

#include <string>

/// The one way in which the library prints, so that KelOutput can redirect all of it.
namespace meridyn {

/// Prints a line on standard output. The text is built as a whole first, so that no number is written in the stream's
/// locale.
void printLine(const std::string& line);

/// Prints a line on standard output and flushes it: what stands before a crash, or before what a solver prints in C, is
/// out.
void printFlushedLine(const std::string& line);

/// Prints a line on standard error.
void printErrorLine(const std::string& line);

/// Prints a text of several lines, each with its line end, on standard output.
void printLines(const std::string& text);

} // namespace meridyn
