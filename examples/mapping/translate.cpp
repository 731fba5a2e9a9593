// Translates the variable names of a solver, with the mapping files of the folder that is given as argument:
//
//   QUORIX -> MERIDYN_GENERIC                                 one file
//   QUORIX -> MERIDYN_GENERIC -> MERIDYN_COMMON               two files
//   QUORIX -> MERIDYN_GENERIC -> MERIDYN_COMMON -> HALVAR     three files
//
// A reader does all this by itself once setSolverType and setVariableTarget are called; a format asks the provider for
// the names that it needs, as below.
#include "KelAttributes.h"
#include "KelProvider.h"
#include "KelVariableAttributeProvider.h"

#include <cstdlib>
#include <iostream>

namespace {

class Translator : public meridyn::KelProvider {
public:
    void printNames(const std::string& target)
    {
        setVariableTarget(target);
        std::cout << "QUORIX -> " << target << "\n";
        for (const char* name : {"TEMP", "p", "Vel", "Mach"})
            std::cout << "  " << name << ": " << attributeProvider()->getMappedKey(name) << ", '"
                      << attributeProvider()->getAttributeValue(name, meridyn::KelAttributes::longName) << "'\n";
    }
};

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: " << argv[0] << " FOLDER\n";
        return 2;
    }
    setenv("KEL_VARIABLE_CONFIG_DIR", argv[1], 1); // before the first reader or writer, which looks for the files

    Translator translator;
    translator.setSolverType("QUORIX");
    for (const char* target : {"MERIDYN_GENERIC", "MERIDYN_COMMON", "HALVAR"})
        translator.printNames(target);
    return 0;
}
