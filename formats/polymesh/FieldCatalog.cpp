#include "FieldCatalog.h"

#include "CaseFolder.h"
#include "FoamError.h"

#include <algorithm>
#include <map>
#include <set>

namespace meridyn::polymesh {

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

FieldCatalog FieldCatalog::read(const CaseFolder& folder, std::vector<Problem>& problems)
{
    std::map<std::string, std::vector<std::string>> foldersOf; // by the names of files
    for (const CaseFolder::Time& time : folder.times())
        for (const std::string& name : folder.filesIn(time.name))
            foldersOf[name].push_back(time.name);
    FieldCatalog catalog;
    for (const auto& [name, times] : foldersOf)
        catalog.addField(folder, name, times, problems);
    catalog.findPhases();
    catalog.assignPhases();
    return catalog;
}

/// One time at which the head is sound is enough: others may hold the values of the field all the same, or be damaged.
void FieldCatalog::addField(const CaseFolder& folder, const std::string& name, const std::vector<std::string>& times,
                            std::vector<Problem>& problems)
{
    for (auto time = times.rbegin(); time != times.rend(); ++time)
        try {
            Field field{name, name, {}, FieldHead::read(folder.file(*time, name))};
            if (field.head.kind.place == FieldKind::None)
                continue;
            fields.push_back(std::move(field));
            return;
        } catch (const FoamError& error) {
            problems.push_back({*time + "/" + name, error.withoutPath(folder.file(*time, name))});
        }
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

} // namespace meridyn::polymesh
