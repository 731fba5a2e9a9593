#include "KelGeneratedProvider.h"

#include "BoxMesh.h"
#include "KelLocationModel.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelSolutionModel.h"

#include <algorithm>
#include <list>
#include <map>

namespace meridyn {

namespace {

constexpr int onlyMeshId = 1;

/// Calls `put` for each id of a range, as long as what it needs fits; gives the number of values stored.
///
/// @param put  stores the values of an element at an address, if their number fits into the room, and gives that number
template <class T, class Put>
unsigned64 fill(unsigned64 firstId, unsigned64 lastId, T* buffer, unsigned64 capacity, const Put& put)
{
    unsigned64 stored = 0;
    for (unsigned64 id = firstId; id <= lastId; ++id) {
        const unsigned64 count = put(id, buffer + stored, capacity - stored);
        if (count > capacity - stored)
            break;
        stored += count;
    }
    return stored;
}

/// Puts one value per element.
template <class T, class Get>
unsigned64 fillSingle(unsigned64 firstId, unsigned64 lastId, T* buffer, unsigned64 capacity, const Get& get)
{
    return fill(firstId, lastId, buffer, capacity, [&get](unsigned64 id, T* to, unsigned64 room) {
        if (room > 0)
            *to = static_cast<T>(get(id));
        return unsigned64{1};
    });
}

/// Puts the first `count` values of an array per element.
template <class Values, class T>
unsigned64 putArray(const Values& values, std::size_t count, T* to, unsigned64 room)
{
    if (count <= room)
        std::transform(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(count), to,
                       [](auto value) { return static_cast<T>(value); });
    return count;
}

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
        getMessageRegistrar()->registerMessage(KelError("generated mesh '" + fileName + "': " + problem, "openData"));
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
            model.addAttributeOfVariable(variableId, "Long Name", "Field " + std::to_string(field));
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

std::vector<int> KelGeneratedProvider::availableMeshIds(KelDataClass) const
{
    return isReadingData() ? std::vector<int>{onlyMeshId} : std::vector<int>{};
}

std::vector<KelTargetCategory> KelGeneratedProvider::availableTargets(int meshId, KelDataClass) const
{
    const bool isKnown = isReadingData() && (meshId == -1 || meshId == onlyMeshId);
    return isKnown ? std::vector<KelTargetCategory>{KEL_DEFAULT_TARGET} : std::vector<KelTargetCategory>{};
}

bool KelGeneratedProvider::isOpen(KelDataClass dataClass) const
{
    return _open[dataClass == KEL_DATA ? 1 : 0];
}

bool KelGeneratedProvider::hasFaces(unsigned64 firstId, unsigned64 lastId) const
{
    return isOpen(KEL_CASE) && firstId >= 1 && firstId <= lastId && lastId <= _mesh->faceCount();
}

bool KelGeneratedProvider::hasCells(unsigned64 firstId, unsigned64 lastId, KelDataClass dataClass) const
{
    return isOpen(dataClass) && firstId >= 1 && firstId <= lastId && lastId <= _mesh->cellCount();
}

// ---- nodes --------------------------------------------------------------------------------------------------------

template <class T>
unsigned64 KelGeneratedProvider::readCoordinates(unsigned64 firstId, unsigned64 lastId, T* xyz,
                                                 unsigned64 capacity) const
{
    if (!isOpen(KEL_CASE) || firstId < 1 || lastId > _mesh->nodeCount())
        return 0;
    return fill(firstId, lastId, xyz, capacity, [this](unsigned64 id, T* to, unsigned64 room) {
        return putArray(_mesh->coordinates(id), 3, to, room);
    });
}

unsigned64 KelGeneratedProvider::getCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, float* xyz,
                                                               unsigned64 capacity) const
{
    return readCoordinates(firstId, lastId, xyz, capacity);
}

unsigned64 KelGeneratedProvider::getCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, double* xyz,
                                                               unsigned64 capacity) const
{
    return readCoordinates(firstId, lastId, xyz, capacity);
}

// ---- faces --------------------------------------------------------------------------------------------------------

bool KelGeneratedProvider::hasUniformNodeCountForFacesInRange(unsigned64 firstId, unsigned64 lastId,
                                                              short* nodeCount) const
{
    const short common = hasFaces(firstId, lastId) ? _mesh->uniformFaceNodeCount(firstId, lastId) : short{0};
    if (common != 0)
        *nodeCount = common;
    return common != 0;
}

unsigned64 KelGeneratedProvider::getNodeCountsForFacesInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCounts,
                                                              unsigned64 capacity) const
{
    if (!hasFaces(firstId, lastId))
        return 0;
    return fillSingle(firstId, lastId, nodeCounts, capacity,
                      [this](unsigned64 id) { return _mesh->face(id).nodeCount; });
}

unsigned64 KelGeneratedProvider::getNodeIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* nodeIds,
                                                           unsigned64 capacity) const
{
    if (!hasFaces(firstId, lastId))
        return 0;
    return fill(firstId, lastId, nodeIds, capacity, [this](unsigned64 id, unsigned64* to, unsigned64 room) {
        const BoxMesh::Face face = _mesh->face(id);
        return putArray(face.nodes, static_cast<std::size_t>(face.nodeCount), to, room);
    });
}

unsigned64 KelGeneratedProvider::getCell0sForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* cellIds,
                                                          unsigned64 capacity) const
{
    if (!hasFaces(firstId, lastId))
        return 0;
    return fillSingle(firstId, lastId, cellIds, capacity, [this](unsigned64 id) { return _mesh->face(id).cell0; });
}

unsigned64 KelGeneratedProvider::getCell1sForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* cellIds,
                                                          unsigned64 capacity) const
{
    if (!hasFaces(firstId, lastId))
        return 0;
    return fillSingle(firstId, lastId, cellIds, capacity, [this](unsigned64 id) { return _mesh->face(id).cell1; });
}

unsigned64 KelGeneratedProvider::getShadowFaceIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId,
                                                                 unsigned64* shadowFaceIds, unsigned64 capacity) const
{
    if (!hasFaces(firstId, lastId) || !_mesh->description().periodic)
        return 0;
    return fillSingle(firstId, lastId, shadowFaceIds, capacity,
                      [this](unsigned64 id) { return _mesh->face(id).shadow; });
}

unsigned64 KelGeneratedProvider::getChildFaceCountsForFacesInRange(unsigned64 firstId, unsigned64 lastId,
                                                                   short* childCounts, unsigned64 capacity) const
{
    if (!hasFaces(firstId, lastId) || !_mesh->description().hanging)
        return 0;
    return fillSingle(firstId, lastId, childCounts, capacity,
                      [this](unsigned64 id) { return _mesh->face(id).childCount; });
}

unsigned64 KelGeneratedProvider::getChildFaceIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId,
                                                                unsigned64* childIds, unsigned64 capacity) const
{
    if (!hasFaces(firstId, lastId) || !_mesh->description().hanging)
        return 0;
    return fill(firstId, lastId, childIds, capacity, [this](unsigned64 id, unsigned64* to, unsigned64 room) {
        const BoxMesh::Face face = _mesh->face(id);
        return putArray(face.children, static_cast<std::size_t>(face.childCount), to, room);
    });
}

// ---- cells --------------------------------------------------------------------------------------------------------

bool KelGeneratedProvider::hasUniformTypeForCellsInZone(int zoneId, KelCellType* type) const
{
    if (!isOpen(KEL_CASE))
        return false;
    for (const BoxMesh::Zone& zone : _mesh->zones())
        if (zone.id == zoneId && zone.category == KEL_CELL_ZONE)
            return _mesh->hasUniformType(zone.first, zone.last, *type);
    return false;
}

unsigned64 KelGeneratedProvider::getTypesForCellsInRange(unsigned64 firstId, unsigned64 lastId, KelCellType* types,
                                                         unsigned64 capacity) const
{
    if (!hasCells(firstId, lastId, KEL_CASE))
        return 0;
    return fillSingle(firstId, lastId, types, capacity, [this](unsigned64 id) { return _mesh->cellType(id); });
}

bool KelGeneratedProvider::hasUniformNodeCountForCellsInZone(int zoneId, short* nodeCount) const
{
    KelCellType type = KEL_CELL_POLYHEDRON;
    if (!hasUniformTypeForCellsInZone(zoneId, &type) || type == KEL_CELL_POLYHEDRON ||
        _mesh->uniformCellNodeCount() == 0)
        return false;
    *nodeCount = _mesh->uniformCellNodeCount();
    return true;
}

unsigned64 KelGeneratedProvider::getNodeCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCounts,
                                                              unsigned64 capacity) const
{
    if (!hasCells(firstId, lastId, KEL_CASE) || _mesh->description().shape == BlockTemplate::Shape::Polyhedra)
        return 0;
    return fillSingle(firstId, lastId, nodeCounts, capacity,
                      [this](unsigned64 id) { return _mesh->cellNodes(id).size(); });
}

unsigned64 KelGeneratedProvider::getNodeIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* nodeIds,
                                                           unsigned64 capacity) const
{
    if (!hasCells(firstId, lastId, KEL_CASE))
        return 0;
    return fill(firstId, lastId, nodeIds, capacity, [this](unsigned64 id, unsigned64* to, unsigned64 room) {
        const std::vector<unsigned64> nodes = _mesh->cellNodes(id);
        return putArray(nodes, nodes.size(), to, room);
    });
}

unsigned64 KelGeneratedProvider::getPartitionIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId,
                                                                int* partitionIds, unsigned64 capacity) const
{
    if (!hasCells(firstId, lastId, KEL_CASE) || _mesh->description().partitions == 0)
        return 0;
    return fillSingle(firstId, lastId, partitionIds, capacity,
                      [this](unsigned64 id) { return _mesh->cellPartition(id); });
}

int KelGeneratedProvider::getPartitionCountOfCells() const
{
    return isOpen(KEL_CASE) ? _mesh->description().partitions : 0;
}

// ---- solution -----------------------------------------------------------------------------------------------------

unsigned64 KelGeneratedProvider::startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category,
                                                                              const std::string& variableName,
                                                                              std::vector<int>& zoneIds)
{
    int variableId = 0;
    if (!getVariableId(variableName, variableId))
        variableId = -1;
    return startReadingZonesOfCategoryWithPhaseVariable(category, variableId, zoneIds);
}

unsigned64 KelGeneratedProvider::startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, int variableId,
                                                                              std::vector<int>& zoneIds)
{
    zoneIds.clear();
    _field = 0;
    short phase = 0;
    if (!isOpen(KEL_DATA) || category != KEL_CELL_ZONE || !getActivePhase(phase) ||
        !solutionModel()->hasVariable(phase, variableId))
        return 0;
    _field = (variableId - 1) % _mesh->description().fields + 1; // ids were given phase by phase
    getZoneIds(KEL_CELL_ZONE, zoneIds);
    return 1;
}

/// Smooth in space, and different for every phase, field and time level.
double KelGeneratedProvider::fieldValue(unsigned64 cellId) const
{
    short phase = 0;
    getActivePhase(phase);
    const auto [x, y, z] = _mesh->cellCentre(cellId);
    return phase + 0.1 * _field + 0.01 * getTimeLevel() + x * (1.0 + 0.5 * y) - z * z;
}

template <class T>
unsigned64 KelGeneratedProvider::readValues(unsigned64 firstId, unsigned64 lastId, T* values, unsigned64 capacity) const
{
    if (!hasCells(firstId, lastId, KEL_DATA) || _field == 0)
        return 0;
    return fillSingle(firstId, lastId, values, capacity, [this](unsigned64 id) { return fieldValue(id); });
}

unsigned64 KelGeneratedProvider::getValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId,
                                                                            float* values, unsigned64 capacity) const
{
    return readValues(firstId, lastId, values, capacity);
}

unsigned64 KelGeneratedProvider::getValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId,
                                                                            double* values, unsigned64 capacity) const
{
    return readValues(firstId, lastId, values, capacity);
}

} // namespace meridyn
