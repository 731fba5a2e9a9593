// What belongs to the elements of a mesh beside its arrays: interface data, ids elsewhere, case sections.

#include "CompareRun.h"
#include "KelValueTypes.h"

#include <set>

namespace meridyn {

namespace {

using Zone = KelZoneDescription;

constexpr KelZoneCategory categories[] = {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE};

// ---- interfaces

struct Interface {
    std::vector<double> a, b;
    std::vector<unsigned64> ids0, ids1;
};

Interface readInterface(KelProvider& model, int zone)
{
    unsigned64 na = 0, nb = 0, count0 = 0, count1 = 0;
    Interface data;
    if (!model.getInterfaceDataSizesForFacesInZone(zone, na, nb, count0, count1))
        return data;
    data = {std::vector<double>(na), std::vector<double>(nb), std::vector<unsigned64>(count0),
            std::vector<unsigned64>(count1)};
    model.getInterfaceDataForFacesInZone(zone, data.a.data(), na, data.b.data(), nb, data.ids0.data(), count0,
                                         data.ids1.data(), count1);
    return data;
}

void compareInterface(CompareRun& run, int zone, const std::string& label)
{
    constexpr KelFormatFamily family = KEL_FAMILY_INTERFACE_DATA;
    const Interface one = readInterface(run.first, zone), other = readInterface(run.second, zone);
    run.currentZone = zone;
    const auto compare = [&](const std::string& what, const auto& left, const auto& right) {
        const std::string item = "interface " + what + " of " + label;
        unsigned64 differences = 0;
        run.same(family, "number of " + item, std::to_string(left.size()), std::to_string(right.size()));
        run.compareValues(family, item, 1, 1, left, right, differences);
        run.noteRest(family, item, differences);
    };
    compare("shares on side 0", one.a, other.a);
    compare("shares on side 1", one.b, other.b);
    compare("faces of side 0", one.ids0, other.ids0);
    compare("faces of side 1", one.ids1, other.ids1);
    run.currentZone.reset();
}

std::string joined(const std::vector<int>& ids)
{
    std::string list;
    for (const int id : ids)
        list += (list.empty() ? "" : " ") + std::to_string(id);
    return list;
}

void compareInterfaces(CompareRun& run)
{
    constexpr KelFormatFamily family = KEL_FAMILY_INTERFACE_DATA;
    std::vector<int> sides[4];
    const std::vector<int> one = zonesWithInterfaces(run.first, run.firstMesh, sides[0], sides[1]);
    const std::vector<int> other = zonesWithInterfaces(run.second, run.secondMesh, sides[2], sides[3]);
    run.same(family, "coupled zones on side 0", joined(sides[0]), joined(sides[2]));
    run.same(family, "coupled zones on side 1", joined(sides[1]), joined(sides[3]));
    std::set<int> zones(one.begin(), one.end());
    zones.insert(other.begin(), other.end());
    for (const int id : zones) {
        std::string label = "zone " + std::to_string(id);
        for (const Zone& zone : run.firstMesh.zones)
            if (zone.id == id)
                label = zoneLabel(zone);
        compareInterface(run, id, label);
    }
    run.first.endReadingInterfaceDataForFaces();
    run.second.endReadingInterfaceDataForFaces();
}

// ---- ids elsewhere

void compareLocalIds(CompareRun& run, const Zone& zone)
{
    const unsigned64 count = zone.last - zone.first + 1;
    unsigned64 probe = 0;
    if (run.first.getLocalElemIdsInZone(zone.id, &probe, 1) == 0 &&
        run.second.getLocalElemIdsInZone(zone.id, &probe, 1) == 0)
        return;
    std::vector<unsigned64> one(count), other(count);
    one.resize(run.first.getLocalElemIdsInZone(zone.id, one.data(), count));
    other.resize(run.second.getLocalElemIdsInZone(zone.id, other.data(), count));
    const std::string item = "local ids of " + zoneLabel(zone);
    unsigned64 differences = 0;
    run.currentZone = zone.id;
    run.same(KEL_FAMILY_LOCAL_IDS, "number of " + item, std::to_string(one.size()), std::to_string(other.size()));
    run.compareValues(KEL_FAMILY_LOCAL_IDS, item, zone.first, 1, one, other, differences);
    run.noteRest(KEL_FAMILY_LOCAL_IDS, item, differences);
    run.currentZone.reset();
}

// ---- case sections

unsigned64 sectionSize(const KelProvider& model, const std::vector<int>& zones, int zone)
{
    unsigned64 size = 0;
    if (std::find(zones.begin(), zones.end(), zone) != zones.end())
        model.hasUniformCaseSectionDataCountForZone(zone, &size);
    return size;
}

void compareSection(CompareRun& run, KelZoneCategory category, const std::string& name)
{
    constexpr KelFormatFamily family = KEL_FAMILY_CASE_SECTIONS;
    std::vector<int> zonesOne, zonesOther;
    const KelPlainDataType one = run.first.startReadingCaseSectionForCategory(name, zonesOne);
    const KelPlainDataType other = run.second.startReadingCaseSectionForCategory(name, zonesOther);
    const std::string section = "case section '" + name + "'";
    run.same(family, "zones of " + section, joined(zonesOne), joined(zonesOther));
    if (run.same(family, "type of " + section, std::to_string(one), std::to_string(other)))
        for (const Zone& zone : run.zones(category)) {
            const std::string item = section + ", " + zoneLabel(zone);
            const unsigned64 size = sectionSize(run.first, zonesOne, zone.id);
            if (!run.same(family, "values per element of " + item, std::to_string(size),
                          std::to_string(sectionSize(run.second, zonesOther, zone.id))) ||
                size == 0)
                continue;
            visitPlainType(one, [&](auto* null) {
                using T = std::remove_pointer_t<decltype(null)>;
                run.compareArray<T>(
                    {family, item, size, false,
                     [](KelProvider& model, unsigned64 from, unsigned64 to, T* values, unsigned64 room) {
                         return model.getCaseSectionDataForElementsInRange(from, to, values, room);
                     },
                     [](const KelProvider&) { return std::nullopt; }},
                    zone);
            });
        }
    run.first.endReadingCaseSectionForCategory();
    run.second.endReadingCaseSectionForCategory();
}

void compareSections(CompareRun& run, KelZoneCategory category)
{
    std::vector<std::string> one, other;
    run.first.startReadingCaseSectionCategories(category, one);
    run.second.startReadingCaseSectionCategories(category, other);
    for (const std::string& name : run.common(KEL_FAMILY_CASE_SECTIONS, "case section", one, other))
        compareSection(run, category, name);
    run.first.endReadingCaseSectionCategories();
    run.second.endReadingCaseSectionCategories();
}

} // namespace

void compareElementData(CompareRun& run)
{
    compareInterfaces(run);
    for (const KelZoneCategory category : categories) {
        for (const Zone& zone : run.zones(category))
            compareLocalIds(run, zone);
        compareSections(run, category);
    }
}

} // namespace meridyn
