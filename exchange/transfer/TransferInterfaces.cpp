#include "TransferRun.h"

namespace meridyn {

namespace {

void copyInterface(TransferRun& run, int zone, const std::string& label)
{
    unsigned64 sizes[4] = {};
    run.source.getInterfaceDataSizesForFacesInZone(zone, sizes[0], sizes[1], sizes[2], sizes[3]);
    std::vector<double> a(sizes[0]), b(sizes[1]);
    std::vector<unsigned64> ids0(sizes[2]), ids1(sizes[3]);
    const unsigned64 expected = a.size() + b.size() + ids0.size() + ids1.size();
    const unsigned64 found = run.source.getInterfaceDataForFacesInZone(
        zone, a.data(), a.size(), b.data(), b.size(), ids0.data(), ids0.size(), ids1.data(), ids1.size());
    if (found != expected)
        stopShort("interface data of " + label, found, expected);
    run.target.setInterfaceDataForFacesInZone(zone, a.data(), a.size(), b.data(), b.size(), ids0.data(), ids0.size(),
                                              ids1.data(), ids1.size());
    run.tell("interface data", 0, 0, expected * sizeof(double));
}

} // namespace

void copyInterfaces(TransferRun& run)
{
    std::vector<int> side0, side1;
    const std::vector<int> zones = zonesWithInterfaces(run.source, run.mesh, side0, side1);
    const auto labelOf = [&run](int id) {
        for (const KelZoneDescription& zone : run.mesh.zones)
            if (zone.id == id)
                return zoneLabel(zone);
        return "zone " + std::to_string(id);
    };
    bool isCarried = run.takes(KEL_FAMILY_INTERFACE_DATA);
    for (const int zone : isCarried ? std::vector<int>() : zones)
        run.note(KEL_FAMILY_INTERFACE_DATA, KelLossReason::NotCarried, labelOf(zone), "not carried by the format",
                 zone);
    if (zones.empty() && !(side0.empty() && side1.empty()))
        isCarried = run.carries(KEL_FAMILY_INTERFACE_DATA, "lists of coupled zones");
    if (isCarried && !(zones.empty() && side0.empty() && side1.empty())) {
        run.target.startWritingInterfaceDataForFaces(side0, side1);
        for (const int zone : zones)
            copyInterface(run, zone, labelOf(zone));
        run.target.endWritingInterfaceDataForFaces();
        run.settle(KEL_FAMILY_INTERFACE_DATA, "interface data");
    }
    run.source.endReadingInterfaceDataForFaces();
}

} // namespace meridyn
