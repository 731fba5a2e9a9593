// Does what its arguments say, in order, with an object of the interface library, and prints what there is to see.
// The discovery of mapping files happens once in a process; this is that process.
//
//   warnings          the texts of all warnings, and forgets them
//   another           goes on with a second object
//   none              as the first command: there is no object yet
//   list              the mapping files that are used, one line each
//   rename=FROM>TO    puts a file in the place of another
//   solver=TYPE       sets the solver type
//   route=FROM>TO     chooses the provider
//   remove=PATH       deletes a file
//   own               installs a provider of its own, which answers "own"
//   drop              installs none
//   set=NAME>VALUE    sets an environment variable
//   environment       looks for mapping files once more
//   key=KEY           the mapped key, "none" without a provider
//   dataset=KEY       the dataset name, in brackets
//   visible           whether variables are visible by default, 1 or 0
//   value=KEY>NAME    the value of an attribute, in brackets
//   target            the vocabulary that was chosen last, in brackets
#include "KelBase.h"
#include "KelMappingFiles.h"
#include "KelVariableAttributeProvider.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>

namespace {

class Own : public meridyn::KelVariableAttributeProvider {
public:
    std::string getMappedKey(const std::string&) override { return "own"; }
    std::vector<std::string> getSupportedAttributes(const std::string&) const override { return {}; }
    std::string getAttributeValue(const std::string&, const std::string&) override { return {}; }
};

class Probe : public meridyn::KelBase {
public:
    void run(const std::string& command, const std::string& first, const std::string& second)
    {
        if (command == "warnings")
            printWarnings();
        else if (command == "solver")
            setSolverType(first);
        else if (command == "route")
            initializeVariableAttributeProvider(first, second);
        else if (command == "remove")
            std::remove(first.c_str());
        else if (command == "rename")
            std::rename(first.c_str(), second.c_str());
        else if (command == "own")
            setVariableAttributeProvider(new Own, true);
        else if (command == "drop")
            setVariableAttributeProvider(nullptr, false);
        else if (command == "set")
            setenv(first.c_str(), second.c_str(), 1);
        else if (command == "environment")
            initializeVariableMappingConfigurations();
        else if (command == "dataset")
            std::cout << "[" << attributeProvider()->getDatasetName(first) << "]\n";
        else if (command == "visible")
            std::cout << attributeProvider()->getDefaultVariableVisibility() << "\n";
        else if (command == "key")
            std::cout << (attributeProvider() != nullptr ? attributeProvider()->getMappedKey(first) : "none") << "\n";
        else if (command == "value")
            std::cout << "[" << attributeProvider()->getAttributeValue(first, second) << "]\n";
        else if (command == "target")
            std::cout << "[" << variableMappingSource() << "]\n";
        else
            std::cout << "unknown command " << command << "\n";
    }

private:
    void printWarnings()
    {
        for (const std::string& text : getWarnings(false, true))
            std::cout << text << "\n";
    }
};

void list()
{
    for (const meridyn::KelMappingFile& file : meridyn::KelMappingFiles::discovered()) {
        std::cout << file.source << ">" << file.target << " " << file.mappedKeyAttribute
                  << (file.isUsed ? " used: " : " : ");
        for (std::size_t i = 0; i < file.keys.size(); ++i)
            std::cout << (i > 0 ? " " : "") << file.keys[i];
        std::cout << " " << file.path << (file.problem.empty() ? "" : " ") << file.problem << "\n";
    }
}

} // namespace

int main(int argc, char** argv)
{
    const bool beginsWithout = argc > 1 && argv[1] == std::string("none");
    auto probe = beginsWithout ? nullptr : std::make_unique<Probe>();
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "list")
            list();
        if (argument == "list" || argument == "none")
            continue;
        if (argument == "another") {
            probe = std::make_unique<Probe>();
            continue;
        }
        const std::size_t equals = std::min(argument.find('='), argument.size());
        const std::size_t greater = std::min(argument.find('>'), argument.size());
        const std::string first = equals < argument.size() ? argument.substr(equals + 1, greater - equals - 1) : "";
        const std::string second = greater < argument.size() ? argument.substr(greater + 1) : "";
        probe->run(argument.substr(0, equals), first, second);
    }
    return 0;
}
