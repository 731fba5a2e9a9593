// Opening and declaring; the values of the mesh, of the solution and of sets are in files of their own.
#include "KelPolyMeshProvider.h"

#include "CaseLedger.h"
#include "FoamError.h"
#include "Guarded.h"
#include "KelLocationModel.h"
#include "KelPolyMeshSettingsParser.h"
#include "PolyMeshCase.h"
#include "RangeFilling.h"

#include <algorithm>
#include <map>
#include <span>
#include <utility>

namespace meridyn {

using namespace polymesh;

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
    const auto add = [this](std::span<const PolySelection> zones, KelZoneCategory elements, const char* kind) {
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
    for (const PolySelection& one : mesh->sets)
        add({&one, 1}, one.category, "set");
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
            declareOpenMesh();
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
        return dimension == 0 && !declareOpenMesh() ? false : dataClass == KEL_CASE || declareSolution();
    });
}

bool KelPolyMeshProvider::declareOpenMesh()
{
    declareMesh(_case->describeMesh());
    if (_wasDeclared) // KelBase asks for it once only
        initLocationModel();
    _wasDeclared = true;
    for (const auto& [file, problem] : _case->mesh->badSets) {
        const std::string place = file.substr(_case->folder.path().size() + 1);
        noteNotRead(KEL_CASE, {KEL_FAMILY_SETS, place, KelNotRead::NotReadable, problem});
        getMessageRegistrar()->registerMessage(KelWarning("set left out: " + file + ": " + problem, "openData"));
    }
    return true;
}

KelMeshDescription KelPolyMeshProvider::Case::describeMesh() const
{
    KelMeshDescription description;
    const unsigned64 sizes[] = {3, mesh->pointCount(), 0, mesh->faceCount(), mesh->cellCount};
    std::copy(std::begin(sizes), std::end(sizes), description.sizes);
    description.units = "m";
    for (const PolyZone& zone : mesh->zones) {
        KelZoneDescription one = freshZone(zone.category, zone.id);
        one.texts[0] = zone.name;
        one.texts[1] = zone.kind;
        if (zone.last >= zone.first) {
            one.first = zone.first;
            one.last = zone.last;
        }
        if (zone.category == KEL_FACE_ZONE)
            one.infos[KEL_FACE_ZONE_INFO_TYPE] = zone.faceType;
        description.zones.push_back(std::move(one));
    }
    describeNeighbours(description);
    return description;
}

/// Looks at the cells beside each face. Cells are ordered by zones, so that a cell's zone is found by its place.
void KelPolyMeshProvider::Case::describeNeighbours(KelMeshDescription& description) const
{
    std::vector<KelZoneDescription*> cellZones;
    for (KelZoneDescription& zone : description.zones)
        if (zone.category == KEL_CELL_ZONE && zone.first > 0)
            cellZones.push_back(&zone);
    const auto zoneOf = [&](std::uint32_t cell) {
        return *std::find_if(cellZones.begin(), cellZones.end(),
                             [cell](const auto* zone) { return cell < zone->last; });
    };
    for (KelZoneDescription& zone : description.zones) {
        if (zone.category != KEL_FACE_ZONE || zone.first == 0)
            continue;
        std::map<int, KelZoneDescription*> beside[2]; // ascending by id
        const KelZoneDescription* last[2] = {};       // nearly always the same for many faces
        const auto add = [&](int side, std::uint32_t cell) {
            KelZoneDescription* const cells = zoneOf(cell);
            if (cells != std::exchange(last[side], cells))
                beside[side].emplace(cells->id, cells);
        };
        for (std::uint64_t face = zone.first - 1; face < zone.last; ++face) {
            add(0, mesh->owner[face]);
            if (face < mesh->interiorCount())
                add(1, mesh->neighbour[face]);
        }
        for (int side = 0; side < 2; ++side)
            for (const auto& [id, cells] : beside[side])
                zone.neighbours[side].push_back(id);
        beside[0].merge(beside[1]);
        for (const auto& [id, cells] : beside[0])
            cells->neighbours[0].push_back(zone.id);
    }
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

std::vector<KelSourceItem> KelPolyMeshProvider::notHandedOver(KelDataClass dataClass) const
{
    std::vector<KelSourceItem> items = KelFormatProvider::notHandedOver(dataClass);
    if (!_case || !_case->isOpen[dataClass == KEL_DATA ? 1 : 0])
        return items;
    const auto isNoted = [noted =
                              items](const KelSourceItem& item) { // the same mistake, met in reading a field or a set
        return std::any_of(noted.begin(), noted.end(), [&](const KelSourceItem& other) {
            return other.place == item.place && other.text == item.text;
        });
    };
    for (KelSourceItem& item : ledgerOf(_case->folder, _case->settingsOf(dataClass), dataClass))
        if (!isNoted(item))
            items.push_back(std::move(item));
    return items;
}

/// Where zones put cells into another order, the labels of the case are their ids elsewhere.
unsigned64 KelPolyMeshProvider::getLocalElemIdsInZone(int zoneId, unsigned64* ids, unsigned64 capacity) const
{
    std::vector<int> zones;
    getZoneIds(KEL_CELL_ZONE, zones);
    if (!_case || _case->mesh->caseCells.empty() || std::find(zones.begin(), zones.end(), zoneId) == zones.end())
        return 0;
    const auto [first, last] = rangeOfZone(zoneId);
    return first == 0 ? 0 : fillSingle(first, last, {ids, capacity}, [this](unsigned64 id) {
        return _case->mesh->caseCells[id - 1] + unsigned64{1};
    });
}

std::vector<KelMeshKey> KelPolyMeshProvider::meshKeys(KelDataClass) const
{
    std::vector<KelMeshKey> keys;
    for (std::size_t n = 0; _case && n < _case->folder.meshes().size(); ++n)
        keys.push_back({static_cast<int>(n) + 1, KEL_DEFAULT_TARGET, -1});
    return keys;
}

} // namespace meridyn
