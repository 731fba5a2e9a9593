#include "text/Printing.h"

#include "KelOutput.h"

#include <iostream>

namespace meridyn {

void printLine(const std::string& line)
{
    KelOutput::print(KEL_STANDARD_OUTPUT, line);
}

void printFlushedLine(const std::string& line)
{
    printLine(line);
    std::cout << std::flush;
}

void printErrorLine(const std::string& line)
{
    KelOutput::print(KEL_STANDARD_ERROR, line); // which the system does not hold back
}

void printLines(const std::string& text)
{
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = text.find('\n', begin)) != std::string::npos; begin = end + 1)
        printLine(text.substr(begin, end - begin));
}

} // namespace meridyn
