#include "FieldCatalog.h"

#include "CaseFolder.h"
#include "FoamError.h"

#include <algorithm>
#include <map>
#include <set>

namespace meridyn {

namespace {

/// Endings by which the case marks fields made from others: means, mean squares, the values of the time before.
constexpr const char* derivedEndings[] = {"", "Mean", "Prime2Mean", "_0"};

/// Parts the name of a field at its last point; false when there is nothing on a side of it.
bool split(const std::string& name, std::string& stem, std::string& ending)
{
    const std::size_t point = name.rfind('.');
    if (point == std::string::npos || point == 0 || point + 1 == name.size())
        return false;
    stem = name.substr(0, point);
    ending = name.substr(point + 1);
    return true;
}

} // namespace

FieldCatalog FieldCatalog::read(const CaseFolder& folder, std::vector<std::string>& problems)
{
    std::map<std::string, std::string> lastFolder;
    for (const CaseFolder::Time& time : folder.times())
        for (const std::string& name : folder.filesIn(time.name))
            lastFolder[name] = time.name;
    FieldCatalog catalog;
    for (const auto& [name, time] : lastFolder) {
        try {
            Field field{name, name, {}, FieldHead::read(folder.file(time, name))};
            if (field.head.kind.place != FieldKind::None)
                catalog.fields.push_back(std::move(field));
        } catch (const FoamError& error) {
            problems.emplace_back(error.what());
        }
    }
    catalog.findPhases();
    catalog.assignPhases();
    return catalog;
}

void FieldCatalog::findPhases()
{
    std::set<std::string> endings;
    std::string stem, ending;
    for (const Field& field : fields)
        if (field.head.kind.place == FieldKind::Cells && split(field.file, stem, ending) &&
            ((stem == "alpha" && field.head.kind.components == 1) || (stem == "U" && field.head.kind.components == 3)))
            endings.insert(ending);
    for (const std::string& name : endings) {
        const bool isDerived =
            std::any_of(std::begin(derivedEndings) + 1, std::end(derivedEndings), [&](const char* end) {
                const std::string tail = end;
                return name.size() > tail.size() && name.compare(name.size() - tail.size(), tail.size(), tail) == 0 &&
                       endings.count(name.substr(0, name.size() - tail.size())) != 0;
            });
        if (!isDerived)
            phases.push_back(name);
    }
}

void FieldCatalog::assignPhases()
{
    std::string stem, ending;
    for (Field& field : fields)
        if (split(field.file, stem, ending))
            for (const std::string& phase : phases)
                for (const char* derived : derivedEndings)
                    if (ending == phase + derived) {
                        field.phase = phase;
                        field.stem = stem + derived;
                    }
}

} // namespace meridyn
