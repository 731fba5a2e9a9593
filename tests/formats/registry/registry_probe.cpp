// Prints the names of the process's formats, then what went wrong with plug-ins.
#include "KelFormatRegistry.h"

#include <iostream>

int main()
{
    const meridyn::KelFormatRegistry& registry = meridyn::KelFormatRegistry::instance();
    for (const meridyn::KelFormat& format : registry.formats())
        std::cout << format.name << '\n';
    for (const std::string& problem : registry.pluginProblems())
        std::cout << "problem: " << problem << '\n';
}
