#include "KelGeneratedProvider.h"

#include "BoxMesh.h"
#include "KelAttributes.h"
#include "KelLocationModel.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelSolutionModel.h"
#include "KelTimes.h"
#include "RangeFilling.h"

#include <array>
#include <list>
#include <map>

namespace meridyn {

namespace {

constexpr int onlyMeshId = 1;

} // namespace

KelGeneratedProvider::KelGeneratedProvider() = default;

KelGeneratedProvider::~KelGeneratedProvider() = default;

bool KelGeneratedProvider::understands(const std::string& text)
{
    BoxDescription description;
    std::string problem;
    return BoxDescription::parse(text, description, problem);
}

// ---- opening and declaring ----------------------------------------------------------------------------------------

bool KelGeneratedProvider::openData(KelDataClass dataClass, const std::string& fileName)
{
    BoxDescription description;
    std::string problem;
    if (!BoxDescription::parse(fileName, description, problem)) {
        const std::string whole = "'" + fileName + "': "; // where the word at fault is all there is, once is enough
        if (problem.compare(0, whole.size(), whole) == 0)
            problem.erase(0, whole.size());
        getMessageRegistrar()->registerMessage(KelError(fileName + ": " + problem, "openData"));
        return false;
    }
    _mesh = std::make_unique<BoxMesh>(description);
    setFileVersion(dataClass, "1.0");
    _open[dataClass == KEL_DATA ? 1 : 0] = true;
    setMeshContext(onlyMeshId, KEL_DEFAULT_TARGET, -1, KEL_UPDATE_NONE);
    unsigned64 dimension = 0;
    getMeshSize(KEL_MESH_DIMENSION, dimension);
    if (dataClass == KEL_CASE || dimension == 0)
        declareMesh();
    return dataClass == KEL_CASE || declareSolution();
}

bool KelGeneratedProvider::closeData(KelDataClass dataClass)
{
    bool& open = _open[dataClass == KEL_DATA ? 1 : 0];
    const bool wasOpen = open;
    open = false;
    return wasOpen;
}

bool KelGeneratedProvider::isReadingData() const
{
    return isOpen(KEL_CASE) || isOpen(KEL_DATA);
}

bool KelGeneratedProvider::updateData(KelDataClass dataClass)
{
    if (!isOpen(dataClass) || getMeshId() != onlyMeshId)
        return false;
    return dataClass == KEL_CASE ? declareMesh() : declareSolution();
}

bool KelGeneratedProvider::declareMesh()
{
    setMeshSize(3, _mesh->nodeCount(), 0, _mesh->faceCount(), _mesh->cellCount());
    setMeshUnits("m");
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE}) {
        std::vector<int> ids;
        for (const BoxMesh::Zone& zone : _mesh->zones())
            if (zone.category == category)
                ids.push_back(zone.id);
        setZoneIds(category, ids);
    }
    for (const BoxMesh::Zone& zone : _mesh->zones()) {
        if (zone.last >= zone.first) {
            setZoneSizeInfo(zone.id, KEL_ZONE_FIRST_ID, zone.first);
            setZoneSizeInfo(zone.id, KEL_ZONE_LAST_ID, zone.last);
        }
        setZoneStringInfo(zone.id, KEL_ZONE_STRING_0, zone.name);
        if (zone.category == KEL_FACE_ZONE)
            setFaceZoneType(zone.id, static_cast<KelFaceZoneType>(zone.kind));
    }
    declareAdjacency();
    declareLocations();
    return true;
}

bool KelGeneratedProvider::declareSolution()
{
    const BoxDescription& box = _mesh->description();
    KelSolutionModel& model = *solutionModel();
    model.clearModel();
    clearVariablesOfCategories();
    for (int level = 1; level <= box.levels; ++level)
        addTimeLevel(level);
    setTimeLevel(1);
    for (int phase = 1; phase <= box.phases; ++phase) {
        short phaseId = 0;
        model.createPhase("phase-" + std::to_string(phase), phaseId);
        for (int field = 1; field <= box.fields; ++field) {
            int variableId = 0;
            model.createVariable(phaseId, "field-" + std::to_string(field), variableId);
            model.addAttributeOfVariable(variableId, KelAttributes::longName, "Field " + std::to_string(field));
            addVariableOfCategory(variableId, KEL_CELL_ZONE);
        }
    }
    return setActivePhase(short{1});
}

void KelGeneratedProvider::declareAdjacency()
{
    std::list<int> cellZones;
    for (const BoxMesh::Zone& zone : _mesh->zones())
        if (zone.category == KEL_CELL_ZONE)
            cellZones.push_back(zone.id);
    std::map<int, std::list<int>> side0, side1, around;
    for (const BoxMesh::Zone& zone : _mesh->zones()) {
        if (zone.category != KEL_FACE_ZONE || zone.last < zone.first)
            continue;
        side0[zone.id] = cellZones;
        if (zone.kind == KEL_FACE_ZONE_TYPE_INTERIOR || zone.kind == KEL_FACE_ZONE_TYPE_PARENT)
            side1[zone.id] = cellZones;
        else if (zone.name == "z-min")
            side0[zone.id] = {cellZones.front()};
        else if (zone.name == "z-max")
            side0[zone.id] = {cellZones.back()};
        for (const int cellZone : side0[zone.id])
            around[cellZone].push_back(zone.id);
    }
    setFaceCellZone0Ids(side0);
    setFaceCellZone1Ids(side1);
    setCellFaceZoneIds(around);
}

void KelGeneratedProvider::declareLocations()
{
    KelLocationModel& model = *locationModel();
    model.reset(KelLocationModel().state()); // ids begin anew with each mesh
    int part = 0;
    model.createPart(3, "box", part);
    int body = 0;
    for (const BoxMesh::Zone& zone : _mesh->zones())
        if (zone.category == KEL_CELL_ZONE) {
            model.createBody(part, zone.name, body);
            model.setBodyZones(body, 0, {zone.id});
        }
    for (const BoxMesh::Zone& zone : _mesh->zones()) {
        if (zone.category != KEL_FACE_ZONE || zone.kind == KEL_FACE_ZONE_TYPE_INTERIOR ||
            zone.kind == KEL_FACE_ZONE_TYPE_PARENT)
            continue;
        int face = 0, use = 0;
        model.createFace(part, zone.name, face);
        model.setFaceZones(face, 0, {zone.id});
        if (_mesh->description().cellZones == 1 && model.createFaceUse(body, face, 0, use)) // one body can use a side
            model.setFaceUseZoneSides(use, 0, {zone.id});
    }
}

// ---- what there is ------------------------------------------------------------------------------------------------

std::vector<KelMeshKey> KelGeneratedProvider::meshKeys(KelDataClass) const
{
    return isReadingData() ? std::vector<KelMeshKey>{{onlyMeshId, KEL_DEFAULT_TARGET, -1}} : std::vector<KelMeshKey>{};
}

bool KelGeneratedProvider::isOpen(KelDataClass dataClass) const
{
    return _open[dataClass == KEL_DATA ? 1 : 0];
}

/// Whether an array has values for all elements of a range.
bool KelGeneratedProvider::has(KelArray array, unsigned64 first, unsigned64 last) const
{
    if (!isOpen(array == KelArray::PhaseVariable ? KEL_DATA : KEL_CASE))
        return false;
    const BoxDescription& box = _mesh->description();
    const bool isPolyhedral = box.shape == BlockTemplate::Shape::Polyhedra;
    const auto isWithin = [first, last](unsigned64 count) { return first >= 1 && first <= last && last <= count; };
    switch (array) {
    case KelArray::Coordinates:
        return isWithin(_mesh->nodeCount());
    case KelArray::FaceNodes:
    case KelArray::FaceNodeCounts:
    case KelArray::FaceCell0s:
    case KelArray::FaceCell1s:
        return isWithin(_mesh->faceCount());
    case KelArray::FaceShadows:
        return isWithin(_mesh->faceCount()) && box.periodic;
    case KelArray::FaceChildren:
    case KelArray::FaceChildCounts:
        return isWithin(_mesh->faceCount()) && box.hanging;
    case KelArray::CellTypes:
    case KelArray::CellNodes:
        return isWithin(_mesh->cellCount());
    case KelArray::CellNodeCounts:
        return isWithin(_mesh->cellCount()) && !isPolyhedral;
    case KelArray::CellPartitions:
        return isWithin(_mesh->cellCount()) && box.partitions > 0;
    case KelArray::PhaseVariable:
        return isWithin(_mesh->cellCount()) && _field != 0;
    default:
        return false;
    }
}

// ---- arrays -------------------------------------------------------------------------------------------------------

unsigned64 KelGeneratedProvider::give(KelArray array, unsigned64 first, unsigned64 last, const KelBuffer& values) const
{
    if (!has(array, first, last))
        return 0;
    const auto single = [&](const auto& get) { return fillSingle(first, last, values, get); };
    const auto lists = [&](const auto& get) { return fillLists(first, last, values, get); };
    BoxMesh::Face face; // what the lists below give lies in these
    std::array<double, 3> point{};
    std::vector<unsigned64> nodes;
    switch (array) {
    case KelArray::Coordinates:
        return lists([&](unsigned64 id) {
            point = _mesh->coordinates(id);
            return std::pair(point.begin(), point.end());
        });
    case KelArray::FaceNodes:
        return lists([&](unsigned64 id) {
            face = _mesh->face(id);
            return std::pair(face.nodes.begin(), face.nodes.begin() + face.nodeCount);
        });
    case KelArray::FaceNodeCounts:
        return single([this](unsigned64 id) { return _mesh->face(id).nodeCount; });
    case KelArray::FaceCell0s:
        return single([this](unsigned64 id) { return _mesh->face(id).cell0; });
    case KelArray::FaceCell1s:
        return single([this](unsigned64 id) { return _mesh->face(id).cell1; });
    case KelArray::FaceShadows:
        return single([this](unsigned64 id) { return _mesh->face(id).shadow; });
    case KelArray::FaceChildren:
        return lists([&](unsigned64 id) {
            face = _mesh->face(id);
            return std::pair(face.children.begin(), face.children.begin() + face.childCount);
        });
    case KelArray::FaceChildCounts:
        return single([this](unsigned64 id) { return _mesh->face(id).childCount; });
    case KelArray::CellTypes:
        return single([this](unsigned64 id) { return static_cast<int>(_mesh->cellType(id)); });
    case KelArray::CellNodes:
        return lists([&](unsigned64 id) {
            nodes = _mesh->cellNodes(id);
            return std::pair(nodes.begin(), nodes.end());
        });
    case KelArray::CellNodeCounts:
        return single([this](unsigned64 id) { return _mesh->cellNodes(id).size(); });
    case KelArray::CellPartitions:
        return single([this](unsigned64 id) { return _mesh->cellPartition(id); });
    case KelArray::PhaseVariable:
        return single([this](unsigned64 id) { return fieldValue(id); });
    default:
        return 0;
    }
}

std::optional<signed64> KelGeneratedProvider::uniformValue(KelArray array, unsigned64 first, unsigned64 last) const
{
    if (!has(array, first, last))
        return std::nullopt;
    if (array == KelArray::FaceNodeCounts) {
        const short count = _mesh->uniformFaceNodeCount(first, last);
        return count != 0 ? std::optional<signed64>(count) : std::nullopt;
    }
    KelCellType type = KEL_CELL_POLYHEDRON;
    if (!_mesh->hasUniformType(first, last, type))
        return std::nullopt;
    if (array == KelArray::CellTypes)
        return type;
    const short count = type == KEL_CELL_POLYHEDRON ? short{0} : _mesh->uniformCellNodeCount();
    return array == KelArray::CellNodeCounts && count != 0 ? std::optional<signed64>(count) : std::nullopt;
}

int KelGeneratedProvider::getPartitionCountOfCells() const
{
    return isOpen(KEL_CASE) ? _mesh->description().partitions : 0;
}

// ---- times --------------------------------------------------------------------------------------------------------

/// A single level is a steady solution, which has no time.
bool KelGeneratedProvider::hasTimes(KelDataClass dataClass) const
{
    return dataClass == KEL_DATA && isOpen(KEL_DATA) && _mesh->description().levels > 1;
}

void KelGeneratedProvider::getSettingsGroups(KelDataClass dataClass, std::vector<std::string>& groups) const
{
    groups.clear();
    if (hasTimes(dataClass))
        groups.emplace_back(KelTimes::group);
}

void KelGeneratedProvider::getSettingsKeysOfGroup(KelDataClass dataClass, const std::string& group,
                                                  std::vector<std::string>& keys) const
{
    keys.clear();
    if (hasTimes(dataClass) && group == KelTimes::group)
        for (const int level : getTimeLevels())
            keys.push_back(std::to_string(level));
}

void KelGeneratedProvider::getSettingString(KelDataClass dataClass, const std::string& key, std::string& text,
                                            const std::string& group) const
{
    if (!hasTimes(dataClass) || group != KelTimes::group)
        return;
    for (const int level : getTimeLevels())
        if (key == std::to_string(level))
            text = KelTimes::text(level / 10.0);
}

// ---- solution -----------------------------------------------------------------------------------------------------

unsigned64 KelGeneratedProvider::startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category,
                                                                              const std::string& variableName,
                                                                              std::vector<int>& zoneIds)
{
    zoneIds.clear();
    _field = 0;
    int variableId = 0;
    if (!isOpen(KEL_DATA) || category != KEL_CELL_ZONE || !getVariableId(variableName, variableId))
        return startedVariable(category, variableName, 0);
    _field = (variableId - 1) % _mesh->description().fields + 1; // ids were given phase by phase
    getZoneIds(KEL_CELL_ZONE, zoneIds);
    return startedVariable(category, variableName, 1);
}

/// Smooth in space, and different for every phase, field and time level.
double KelGeneratedProvider::fieldValue(unsigned64 cellId) const
{
    short phase = 0;
    getActivePhase(phase);
    const auto [x, y, z] = _mesh->cellCentre(cellId);
    return phase + 0.1 * _field + 0.01 * getTimeLevel() + x * (1.0 + 0.5 * y) - z * z;
}

} // namespace meridyn
