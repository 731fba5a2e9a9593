// Opening and declaring; the values of the mesh, of the solution and of sets are in files of their own.
#include "KelPolyMeshProvider.h"

#include "FoamError.h"
#include "Guarded.h"
#include "KelLocationModel.h"
#include "KelPolyMeshSettingsParser.h"
#include "PolyMeshCase.h"

#include <algorithm>
#include <list>
#include <set>

namespace meridyn {

namespace {

constexpr const char* solverType = "OPENFOAM";

/// One for the process: it keeps nothing.
KelPolyMeshSettingsParser& settingsParser()
{
    static KelPolyMeshSettingsParser parser;
    return parser;
}

} // namespace

KelPolyMeshProvider::KelPolyMeshProvider()
{
    registerSettingsParser(&settingsParser());
}

KelPolyMeshProvider::~KelPolyMeshProvider() = default;

const char* KelPolyMeshProvider::parserName()
{
    return KelPolyMeshSettingsParser::parserName;
}

bool KelPolyMeshProvider::understands(const std::string& path)
{
    return CaseFolder::isCase(path);
}

// ---- the case -----------------------------------------------------------------------------------------------------

const PolyZone* KelPolyMeshProvider::Case::zone(int id) const
{
    const auto found =
        std::find_if(mesh->zones.begin(), mesh->zones.end(), [id](const PolyZone& zone) { return zone.id == id; });
    return found != mesh->zones.end() ? &*found : nullptr;
}

void KelPolyMeshProvider::Case::readMesh(std::size_t number)
{
    auto read = std::make_unique<PolyMesh>(PolyMesh::read(folder, number));
    auto readShapes = std::make_unique<CellShapes>(*read);
    mesh = std::move(read);
    shapes = std::move(readShapes);
    meshNumber = number;
    isReadingVariable = false;
    field.reset();
    set = nullptr;
    makeSets();
}

/// A name that two zones bear is told apart by their kind.
void KelPolyMeshProvider::Case::makeSets()
{
    sets.clear();
    const auto add = [this](const std::vector<PolySelection>& zones, KelZoneCategory elements, const char* kind) {
        for (const PolySelection& zone : zones) {
            std::string name = zone.name;
            while (std::any_of(sets.begin(), sets.end(), [&name](const Set& other) { return other.name == name; }))
                name += std::string(" (") + kind + ")";
            sets.push_back({name, elements, &zone});
        }
    };
    add(mesh->faceZones, KEL_FACE_ZONE, "faces");
    add(mesh->pointZones, KEL_NODE_ZONE, "points");
    if (mesh->hasOverlappingCellZones)
        add(mesh->cellZones, KEL_CELL_ZONE, "cells");
}

// ---- opening and declaring ----------------------------------------------------------------------------------------

bool KelPolyMeshProvider::openData(KelDataClass dataClass, const std::string& fileName)
{
    return guarded(*this, "openData", [&] {
        std::unique_ptr<Case>& known = _case ? _case : _closed;
        const bool isKnown = known && known->folder.path() == CaseFolder(fileName).path();
        auto opened = isKnown ? nullptr : std::make_unique<Case>(fileName);
        Case& current = isKnown ? *known : *opened;
        const int wanted = getMeshId();
        const bool hasWanted = wanted >= 1 && static_cast<std::size_t>(wanted) <= current.folder.meshes().size();
        const std::size_t number = hasWanted ? static_cast<std::size_t>(wanted) - 1 : 0;
        const bool isNewMesh = !current.mesh || current.meshNumber != number;
        if (isNewMesh)
            current.readMesh(number);
        if (opened)
            _case = std::move(opened);
        else if (!_case)
            _case = std::move(_closed);
        if (isNewMesh && wanted == static_cast<int>(number) + 1) // only a change makes KelBase forget the other mesh
            setMeshContext(wanted + 1, KEL_DEFAULT_TARGET, -1, KEL_UPDATE_NONE);
        setFileVersion(dataClass, "2.0");
        setSolverType(solverType);
        _case->isOpen[dataClass == KEL_DATA ? 1 : 0] = true;
        setMeshContext(static_cast<int>(number) + 1, KEL_DEFAULT_TARGET, -1, KEL_UPDATE_NONE);
        unsigned64 dimension = 0;
        getMeshSize(KEL_MESH_DIMENSION, dimension);
        if (dataClass == KEL_CASE || isNewMesh || dimension == 0)
            declareMesh();
        if (dataClass == KEL_CASE)
            readSettings();
        else
            declareSolution();
        return true;
    });
}

bool KelPolyMeshProvider::closeData(KelDataClass dataClass)
{
    bool* isOpen = _case ? &_case->isOpen[dataClass == KEL_DATA ? 1 : 0] : nullptr;
    if (isOpen == nullptr || !*isOpen)
        return false;
    *isOpen = false;
    if (!isReadingData())
        _closed = std::move(_case); // the data, or the case, are often opened next and need the same mesh
    return true;
}

bool KelPolyMeshProvider::isReadingData() const
{
    return _case && (_case->isOpen[0] || _case->isOpen[1]);
}

/// The context changed, so that KelBase has dropped what was declared.
bool KelPolyMeshProvider::updateData(KelDataClass dataClass)
{
    if (!isReadingData() || (dataClass == KEL_DATA && !_case->isOpen[1]))
        return false; // the mesh is there for the data as well
    return guarded(*this, "updateData", [&] {
        const auto meshCount = static_cast<int>(_case->folder.meshes().size());
        if (getMeshId() < 1 || getMeshId() > meshCount)
            throw FoamError(_case->folder.path() + ": expected a mesh id from 1 to " + std::to_string(meshCount) +
                            ", found " + std::to_string(getMeshId()));
        const std::size_t number = static_cast<std::size_t>(getMeshId()) - 1;
        if (_case->meshNumber != number)
            _case->readMesh(number);
        unsigned64 dimension = 0;
        getMeshSize(KEL_MESH_DIMENSION, dimension);
        return dimension == 0 && !declareMesh() ? false : dataClass == KEL_CASE || declareSolution();
    });
}

bool KelPolyMeshProvider::declareMesh()
{
    const PolyMesh& mesh = *_case->mesh;
    setMeshSize(3, mesh.pointCount(), 0, mesh.faceCount(), mesh.cellCount);
    setMeshUnits("m");
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE}) {
        std::vector<int> ids;
        for (const PolyZone& zone : mesh.zones)
            if (zone.category == category)
                ids.push_back(zone.id);
        setZoneIds(category, ids);
    }
    for (const PolyZone& zone : mesh.zones) {
        if (zone.last >= zone.first) {
            setZoneSizeInfo(zone.id, KEL_ZONE_FIRST_ID, zone.first);
            setZoneSizeInfo(zone.id, KEL_ZONE_LAST_ID, zone.last);
        }
        setZoneStringInfo(zone.id, KEL_ZONE_STRING_0, zone.name);
        setZoneStringInfo(zone.id, KEL_ZONE_STRING_1, zone.kind);
        if (zone.category == KEL_FACE_ZONE)
            setFaceZoneType(zone.id, zone.faceType);
    }
    if (_wasDeclared) { // KelBase asks for these once only
        setZoneAdjacency();
        initLocationModel();
    }
    _wasDeclared = true;
    return true;
}

void KelPolyMeshProvider::setZoneAdjacency()
{
    if (!_case)
        return;
    const PolyMesh& mesh = *_case->mesh;
    std::vector<const PolyZone*> cellZones;
    for (const PolyZone& zone : mesh.zones)
        if (zone.category == KEL_CELL_ZONE)
            cellZones.push_back(&zone);
    const auto zoneOf = [&](std::uint32_t cell) {
        const auto found = std::find_if(cellZones.begin(), cellZones.end(),
                                        [cell](const PolyZone* zone) { return cell < zone->last; });
        return (*found)->id;
    };
    std::map<int, std::list<int>> side0, side1, around;
    for (const PolyZone& zone : mesh.zones) {
        if (zone.category != KEL_FACE_ZONE || zone.last < zone.first)
            continue;
        std::set<int> near, far;
        for (std::uint64_t face = zone.first - 1; face < zone.last; ++face) {
            near.insert(zoneOf(mesh.owner[face]));
            if (face < mesh.interiorCount())
                far.insert(zoneOf(mesh.neighbour[face]));
        }
        side0[zone.id].assign(near.begin(), near.end());
        side1[zone.id].assign(far.begin(), far.end());
        near.insert(far.begin(), far.end());
        for (const int cellZone : near)
            around[cellZone].push_back(zone.id);
    }
    setFaceCellZone0Ids(side0);
    setFaceCellZone1Ids(side1);
    setCellFaceZoneIds(around);
}

/// A face of the model has one use per side, so a patch beside several cell zones stays without.
void KelPolyMeshProvider::initLocationModel() const
{
    if (!_case)
        return;
    const PolyMesh& mesh = *_case->mesh;
    KelLocationModel& model = *locationModel();
    model.reset(KelLocationModel().state()); // ids begin anew with each mesh
    int part = 0;
    model.createPart(3, "mesh", part);
    std::vector<std::pair<const PolyZone*, int>> bodies;
    for (const PolyZone& zone : mesh.zones) {
        int body = 0;
        if (zone.category == KEL_CELL_ZONE && model.createBody(part, zone.name, body)) {
            model.setBodyZones(body, 0, {zone.id});
            bodies.emplace_back(&zone, body);
        }
    }
    for (const PolyZone& zone : mesh.zones) {
        int face = 0, use = 0;
        if (zone.category != KEL_FACE_ZONE || zone.faceType == KEL_FACE_ZONE_TYPE_INTERIOR ||
            !model.createFace(part, zone.name, face))
            continue;
        model.setFaceZones(face, 0, {zone.id});
        if (zone.last < zone.first)
            continue;
        const auto [least, most] = std::minmax_element(mesh.owner.begin() + static_cast<std::ptrdiff_t>(zone.first - 1),
                                                       mesh.owner.begin() + static_cast<std::ptrdiff_t>(zone.last));
        for (const auto& [cells, body] : bodies)
            if (*least + std::uint64_t{1} >= cells->first && *most < cells->last &&
                model.createFaceUse(body, face, 0, use))
                model.setFaceUseZoneSides(use, 0, {zone.id});
    }
}

std::vector<KelMeshKey> KelPolyMeshProvider::meshKeys(KelDataClass) const
{
    std::vector<KelMeshKey> keys;
    for (std::size_t n = 0; _case && n < _case->folder.meshes().size(); ++n)
        keys.push_back({static_cast<int>(n) + 1, KEL_DEFAULT_TARGET, -1});
    return keys;
}

} // namespace meridyn
