#pragma once

#include "KelBase.h"
#include "KelSetting.h"
#include "KelVariant.h"

#include <string>
#include <utility>
#include <vector>

namespace meridyn {

class KelVariableRecipeProvider;

/// Reader frame: a client asks for a mesh and a solution, one array at a time. The mirror image of KelConsumer.
///
/// Order     startReading, then per array: start marker, values, end marker; endReading. Zones, sizes, phases and
///           variables are in KelBase as soon as the data class is open.
/// Forms     per element, per id range, per zone. A format overrides the range form only; the other two are written
///           here and reach it through the virtual table. The zone form finds the zone's first and last element id; an
///           unknown zone arrives as 0 and 0.
/// Returns   range and zone forms and element forms with a buffer return how many values they stored; element forms of
///           one value return it, or 0 when it could not be read (-1 for the type of a cell).
/// Buffers   are the caller's; `capacity` is the room in values. Shapes are those of the writer: where elements have
///           different numbers of values, the values of all elements of the range follow each other.
/// Defaults  a range form reads nothing (0); markers do nothing; queries answer false, an empty list or -1.
/// Overloads a format that overrides one overload repeats the others with a using line, or hides them.
/// Threads   one thread at a time per object.
///
/// Groups    1 run   2 mesh queries   3 nodes   4 edges   5 faces   6 cells   7 case sections   8 phases and variables
///           9 particles and particle tracks   10 sets and set data   11 run-time hooks
///
/// The order of the virtual operations is binary interface: never sort, insert or move one.
class KEL_API KelProvider : public virtual KelBase {
public:
    /// A reader of nothing: no variable target, no recipes, no settings read.
    KelProvider();
    ~KelProvider() override;

    // clang-format off
    // ---- 1 run ----------------------------------------------------------------------------------------------------

    /// The application whose variable names are wanted; a change chooses the variable attribute provider anew.
    virtual void setVariableTarget(const std::string& target);

    /// Recipes that rewrite attribute values of variables; not owned, null for none.
    virtual void setVariableRecipeProvider(KelVariableRecipeProvider* provider);

    /// @name Start and end of a data class
    /// False here.
    /// @{
    virtual bool startReading(KelDataClass dataClass);
    virtual bool endReading(KelDataClass dataClass);
    virtual bool isReadingData() const; ///< whether a data class is being read now
    /// @}

    virtual void setIOMode(KelIOMode mode);      ///< How several processes share the file. Nothing here.
    virtual void setMPIComm(void* communicator); ///< Address of the MPI communicator of those processes, not owned. Nothing here.

    /// Log of a data class: pairs of a title and a text, oldest first. Replaces `entries`; empty here.
    virtual void getLog(KelDataClass dataClass, std::vector<std::pair<std::string, std::string>>& entries) const;

    /// @name Settings
    /// @{
    virtual void getSettingsKeys(KelDataClass dataClass, std::vector<std::string>& keys) const; ///< Keys of the default group, in the order written. Empties `keys` here.

    /// Text of a key in a group of settings; `text` is left alone when there is none, as here.
    virtual void getSettingString(KelDataClass dataClass, const std::string& key, std::string& text, const std::string& group = _defaultSettingsPath) const;

    /// The settings tree of which getSettingString gives the text form; invalid when there is none. The caller's handle owns it.
    virtual KelSetting getSetting(const std::string& key, KelDataClass dataClass, const std::string& group = _defaultSettingsPath) const;
    /// @}

    // ---- 2 mesh queries -------------------------------------------------------------------------------------------

    /// @name Meshes, targets and partitions in the file
    /// Mesh id -1 is the current mesh. A format overrides the three lists, which are empty here; the questions are answered
    /// from the lists of KEL_CASE.
    /// @{
    virtual bool                           hasMeshId(int meshId) const;
    virtual std::vector<int>               availableMeshIds(KelDataClass dataClass) const;
    virtual bool                           hasTarget(int meshId, KelTargetCategory target) const;
    virtual std::vector<KelTargetCategory> availableTargets(int meshId, KelDataClass dataClass) const;
    virtual bool                           hasPartition(int meshId, int partitionId) const;
    virtual unsigned64                     getPartitionCount(int meshId) const;
    virtual std::vector<int>               availablePartitionIds(int meshId, KelDataClass dataClass) const;
    /// @}

    /// @name The same for the current mesh of the case
    /// @{
    bool                           hasTarget(KelTargetCategory target) const;
    std::vector<KelTargetCategory> availableTargets() const;
    bool                           hasPartition(int partitionId) const;
    unsigned64                     getPartitionCount() const;
    std::vector<int>               availablePartitionIds() const;
    /// @}

    // ---- 3 nodes --------------------------------------------------------------------------------------------------
    // Start markers name the zones that are about to be read; so in all groups.

    /// @name Coordinates of nodes
    /// Mesh-dimension values per node.
    /// @{
    virtual void startReadingNodes(const std::vector<int>& zoneIds);
    virtual void startReadingCoordinatesForNodes(const std::vector<int>& zoneIds);
    virtual unsigned64 getCoordinatesForNode(unsigned64 nodeId, float* xyz, unsigned64 capacity) const;
    virtual unsigned64 getCoordinatesForNode(unsigned64 nodeId, double* xyz, unsigned64 capacity) const;
    virtual unsigned64 getCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, float* xyz, unsigned64 capacity) const;
    virtual unsigned64 getCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, double* xyz, unsigned64 capacity) const;
    virtual unsigned64 getCoordinatesForNodesInZone(int zoneId, float* xyz, unsigned64 capacity) const;
    virtual unsigned64 getCoordinatesForNodesInZone(int zoneId, double* xyz, unsigned64 capacity) const;
    virtual void endReadingCoordinatesForNodes();
    virtual void endReadingNodes();
    /// @}

    // ---- 4 edges --------------------------------------------------------------------------------------------------

    /// @name Nodes of edges
    /// Counts: one per edge. Ids: the nodes of each edge. The uniform queries: whether all edges have one count, and which;
    /// false also when that is not known. The zone query asks the range query; so in all groups that have both.
    /// @{
    virtual void startReadingEdges(const std::vector<int>& zoneIds);
    virtual void startReadingNodesForEdges(const std::vector<int>& zoneIds);
    virtual void startReadingNodeCountsForEdges();
    virtual bool hasUniformNodeCountForEdgesInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCount) const;
    virtual bool hasUniformNodeCountForEdgesInZone(int zoneId, short* nodeCount) const;
    virtual short getNodeCountForEdge(unsigned64 edgeId) const;
    virtual unsigned64 getNodeCountsForEdgesInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCounts, unsigned64 capacity) const;
    virtual unsigned64 getNodeCountsForEdgesInZone(int zoneId, short* nodeCounts, unsigned64 capacity) const;
    virtual void endReadingNodeCountsForEdges();
    virtual void startReadingNodeIdsForEdges();
    virtual unsigned64 getNodeIdsForEdge(unsigned64 edgeId, unsigned64* nodeIds, unsigned64 capacity) const;
    virtual unsigned64 getNodeIdsForEdgesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* nodeIds, unsigned64 capacity) const;
    virtual unsigned64 getNodeIdsForEdgesInZone(int zoneId, unsigned64* nodeIds, unsigned64 capacity) const;
    virtual void endReadingNodeIdsForEdges();
    virtual void endReadingNodesForEdges();
    virtual void endReadingEdges();
    /// @}

    // ---- 5 faces --------------------------------------------------------------------------------------------------

    /// @name Nodes of faces
    /// Counts: one per face. Ids: the nodes of each face in order around it.
    /// @{
    virtual void startReadingFaces(const std::vector<int>& zoneIds);
    virtual void startReadingNodesForFaces(const std::vector<int>& zoneIds);
    virtual void startReadingNodeCountsForFaces();
    virtual bool hasUniformNodeCountForFacesInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCount) const;
    virtual bool hasUniformNodeCountForFacesInZone(int zoneId, short* nodeCount) const;
    virtual short getNodeCountForFace(unsigned64 faceId) const;
    virtual unsigned64 getNodeCountsForFacesInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCounts, unsigned64 capacity) const;
    virtual unsigned64 getNodeCountsForFacesInZone(int zoneId, short* nodeCounts, unsigned64 capacity) const;
    virtual void endReadingNodeCountsForFaces();
    virtual void startReadingNodeIdsForFaces();
    virtual unsigned64 getNodeIdsForFace(unsigned64 faceId, unsigned64* nodeIds, unsigned64 capacity) const;
    virtual unsigned64 getNodeIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* nodeIds, unsigned64 capacity) const;
    virtual unsigned64 getNodeIdsForFacesInZone(int zoneId, unsigned64* nodeIds, unsigned64 capacity) const;
    virtual void endReadingNodeIdsForFaces();
    virtual void endReadingNodesForFaces();
    /// @}

    /// @name Cell 0 of faces
    /// Id of the cell on side 0: one value per face.
    /// @{
    virtual void startReadingCell0sForFaces(const std::vector<int>& zoneIds);
    virtual unsigned64 getCell0ForFace(unsigned64 faceId) const;
    virtual unsigned64 getCell0sForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* cellIds, unsigned64 capacity) const;
    virtual unsigned64 getCell0sForFacesInZone(int zoneId, unsigned64* cellIds, unsigned64 capacity) const;
    virtual void endReadingCell0sForFaces();
    /// @}

    /// @name Cell 1 of faces
    /// Id of the cell on side 1, 0 for none: one value per face.
    /// @{
    virtual void startReadingCell1sForFaces(const std::vector<int>& zoneIds);
    virtual unsigned64 getCell1ForFace(unsigned64 faceId) const;
    virtual unsigned64 getCell1sForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* cellIds, unsigned64 capacity) const;
    virtual unsigned64 getCell1sForFacesInZone(int zoneId, unsigned64* cellIds, unsigned64 capacity) const;
    virtual void endReadingCell1sForFaces();
    /// @}

    /// @name Shadow faces
    /// Id of the partner face of a periodic pair: one value per face, 0 for none.
    /// @{
    virtual void startReadingShadowFaceIdsForFaces(const std::vector<int>& zoneIds);
    virtual unsigned64 getShadowFaceIdForFace(unsigned64 faceId) const;
    virtual unsigned64 getShadowFaceIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* shadowFaceIds, unsigned64 capacity) const;
    virtual unsigned64 getShadowFaceIdsForFacesInZone(int zoneId, unsigned64* shadowFaceIds, unsigned64 capacity) const;
    virtual void endReadingShadowFaceIdsForFaces();
    /// @}

    /// @name Interface data of faces
    /// The writer's four lists of a zone: shares of area on side 0 and side 1, faces of side 0 and side 1.
    /// startReading replaces its two lists by the zones of side 0 and side 1; it does nothing here. The size query gives the
    /// lengths of the four lists, false without data. The getters fill as much as there is room for and return the number of
    /// values stored in all four; a capacity of 0 skips a list.
    /// @{
    virtual void startReadingInterfaceDataForFaces(std::vector<int>& zoneIds0, std::vector<int>& zoneIds1);
    virtual bool getInterfaceDataSizesForFacesInZone(int zoneId, unsigned64& na, unsigned64& nb, unsigned64& count0, unsigned64& count1) const;
    virtual unsigned64 getInterfaceDataForFacesInZone(int zoneId, float* a, unsigned64 na, float* b, unsigned64 nb, unsigned64* ids0, unsigned64 count0, unsigned64* ids1, unsigned64 count1) const;
    virtual unsigned64 getInterfaceDataForFacesInZone(int zoneId, double* a, unsigned64 na, double* b, unsigned64 nb, unsigned64* ids0, unsigned64 count0, unsigned64* ids1, unsigned64 count1) const;
    virtual void endReadingInterfaceDataForFaces();
    /// @}

    /// @name Child faces
    /// Counts: one per face, 0 for an unrefined one. Ids: the children of each face.
    /// @{
    virtual void startReadingChildFacesForFaces(const std::vector<int>& zoneIds);
    virtual void startReadingChildFaceCountsForFaces();
    virtual short getChildFaceCountForFace(unsigned64 faceId) const;
    virtual unsigned64 getChildFaceCountsForFacesInRange(unsigned64 firstId, unsigned64 lastId, short* childCounts, unsigned64 capacity) const;
    virtual unsigned64 getChildFaceCountsForFacesInZone(int zoneId, short* childCounts, unsigned64 capacity) const;
    virtual void endReadingChildFaceCountsForFaces();
    virtual void startReadingChildFaceIdsForFaces();
    virtual unsigned64 getChildFaceIdsForFace(unsigned64 faceId, unsigned64* childIds, unsigned64 capacity) const;
    virtual unsigned64 getChildFaceIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* childIds, unsigned64 capacity) const;
    virtual unsigned64 getChildFaceIdsForFacesInZone(int zoneId, unsigned64* childIds, unsigned64 capacity) const;
    virtual void endReadingChildFaceIdsForFaces();
    virtual void endReadingChildFacesForFaces();
    virtual void endReadingFaces();
    /// @}

    // ---- 6 cells --------------------------------------------------------------------------------------------------

    /// @name Types of cells
    /// Shape of each cell; a single cell that cannot be read gives -1.
    /// @{
    virtual void startReadingCells(const std::vector<int>& zoneIds);
    virtual void startReadingTypesForCells(const std::vector<int>& zoneIds);
    virtual bool hasUniformTypeForCellsInZone(int zoneId, KelCellType* type) const;
    virtual KelCellType getTypeForCell(unsigned64 cellId) const;
    virtual unsigned64 getTypesForCellsInRange(unsigned64 firstId, unsigned64 lastId, KelCellType* types, unsigned64 capacity) const;
    virtual unsigned64 getTypesForCellsInZone(int zoneId, KelCellType* types, unsigned64 capacity) const;
    virtual void endReadingTypesForCells();
    /// @}

    /// @name Nodes of cells
    /// Counts: one per cell. Ids: the nodes of each cell, in the order that KelCellType has.
    /// @{
    virtual void startReadingNodesForCells(const std::vector<int>& zoneIds);
    virtual void startReadingNodeCountsForCells();
    virtual bool hasUniformNodeCountForCellsInZone(int zoneId, short* nodeCount) const;
    virtual short getNodeCountForCell(unsigned64 cellId) const;
    virtual unsigned64 getNodeCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCounts, unsigned64 capacity) const;
    virtual unsigned64 getNodeCountsForCellsInZone(int zoneId, short* nodeCounts, unsigned64 capacity) const;
    virtual void endReadingNodeCountsForCells();
    virtual void startReadingNodeIdsForCells();
    virtual unsigned64 getNodeIdsForCell(unsigned64 cellId, unsigned64* nodeIds, unsigned64 capacity) const;
    virtual unsigned64 getNodeIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* nodeIds, unsigned64 capacity) const;
    virtual unsigned64 getNodeIdsForCellsInZone(int zoneId, unsigned64* nodeIds, unsigned64 capacity) const;
    virtual void endReadingNodeIdsForCells();
    virtual void endReadingNodesForCells();
    /// @}

    /// @name Faces of cells
    /// Counts: one per cell. Ids: the faces that bound each cell.
    /// getFaceCountForCell asks getNodeCountsForCellsInRange, as getNodeCountForCell does: a format with face counts of
    /// its own overrides it.
    /// @{
    virtual void startReadingFacesForCells(const std::vector<int>& zoneIds);
    virtual void startReadingFaceCountsForCells();
    virtual bool hasUniformFaceCountForCellsInZone(int zoneId, short* faceCount) const;
    virtual short getFaceCountForCell(unsigned64 cellId) const;
    virtual unsigned64 getFaceCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, short* faceCounts, unsigned64 capacity) const;
    virtual unsigned64 getFaceCountsForCellsInZone(int zoneId, short* faceCounts, unsigned64 capacity) const;
    virtual void endReadingFaceCountsForCells();
    virtual void startReadingFaceIdsForCells();
    virtual unsigned64 getFaceIdsForCell(unsigned64 cellId, unsigned64* faceIds, unsigned64 capacity) const;
    virtual unsigned64 getFaceIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* faceIds, unsigned64 capacity) const;
    virtual unsigned64 getFaceIdsForCellsInZone(int zoneId, unsigned64* faceIds, unsigned64 capacity) const;
    virtual void endReadingFaceIdsForCells();
    virtual void endReadingFacesForCells();
    /// @}

    /// @name Partitions of cells
    /// Partition of each cell: one value per cell.
    /// @{
    virtual void startReadingPartitionIdsForCells(const std::vector<int>& zoneIds);
    virtual int getPartitionIdForCell(unsigned64 cellId) const;
    virtual unsigned64 getPartitionIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, int* partitionIds, unsigned64 capacity) const;
    virtual unsigned64 getPartitionIdsForCellsInZone(int zoneId, int* partitionIds, unsigned64 capacity) const;
    virtual void endReadingPartitionIdsForCells();
    /// @}

    /// @name Child cells
    /// Counts: one per cell, 0 for an unrefined one. Ids: the children of each cell.
    /// @{
    virtual void startReadingChildCellsForCells(const std::vector<int>& zoneIds);
    virtual void startReadingChildCellCountsForCells();
    virtual short getChildCellCountForCell(unsigned64 cellId) const;
    virtual unsigned64 getChildCellCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, short* childCounts, unsigned64 capacity) const;
    virtual unsigned64 getChildCellCountsForCellsInZone(int zoneId, short* childCounts, unsigned64 capacity) const;
    virtual void endReadingChildCellCountsForCells();
    virtual void startReadingChildCellIdsForCells();
    virtual unsigned64 getChildCellIdsForCell(unsigned64 cellId, unsigned64* childIds, unsigned64 capacity) const;
    virtual unsigned64 getChildCellIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* childIds, unsigned64 capacity) const;
    virtual unsigned64 getChildCellIdsForCellsInZone(int zoneId, unsigned64* childIds, unsigned64 capacity) const;
    virtual void endReadingChildCellIdsForCells();
    virtual void endReadingChildCellsForCells();
    virtual void endReadingCells();
    /// @}

    // ---- 7 case sections ------------------------------------------------------------------------------------------

    /// @name Case sections
    /// startReadingCaseSectionCategories replaces `names` by the sections of a category, in the order written (it does
    /// nothing here). startReadingCaseSectionForCategory opens one of them: replaces `zoneIds` by its zones and returns the
    /// type of its values; -1 and nothing else for an unknown one, as here. The getters then give its values (`capacity`
    /// values of that type), the uniform query the number of values per element in a zone.
    /// @{
    virtual void             startReadingCaseSectionCategories(KelZoneCategory category, std::vector<std::string>& names);
    virtual KelPlainDataType startReadingCaseSectionForCategory(const std::string& name, std::vector<int>& zoneIds);
    virtual bool             hasUniformCaseSectionDataCountForZone(int zoneId, unsigned64* count) const;
    virtual unsigned64       getCaseSectionDataForElementsInRange(unsigned64 firstId, unsigned64 lastId, void* values, unsigned64 capacity) const;
    virtual unsigned64       getCaseSectionDataForElementsInZone(int zoneId, void* values, unsigned64 capacity) const;
    virtual void             endReadingCaseSectionForCategory();
    virtual void             endReadingCaseSectionCategories();
    /// @}

    // ---- 8 phases and variables -----------------------------------------------------------------------------------

    /// What follows concerns this phase: makes it the active one. False for an unknown phase.
    virtual bool startReadingPhase(short phaseId) const;

    /// @name Attributes of a phase: by its id, by its unique name, of the active one
    /// False for an unknown phase or attribute; `value` is then left alone, while `names` is replaced in any case. The list
    /// never holds "Dataset Name".
    /// @{
    virtual bool getAttributesOfPhase(short phaseId, std::vector<std::string>& names) const;
    virtual bool getAttributesOfPhase(const std::string& phaseName, std::vector<std::string>& names) const;
    virtual bool getAttributesOfPhase(std::vector<std::string>& names) const;
    virtual bool getAttributeValueOfPhase(short phaseId, const std::string& attribute, std::string& value) const;
    virtual bool getAttributeValueOfPhase(const std::string& phaseName, const std::string& attribute, std::string& value) const;
    virtual bool getAttributeValueOfPhase(const std::string& attribute, std::string& value) const;
    /// @}

    /// @name Variables of the active phase that live on zones of a category
    /// Replaces the list, ids ascending; empty without an active phase.
    /// @{
    virtual unsigned64 getPhaseVariableCountOfCategory(KelZoneCategory category) const;
    virtual void       getPhaseVariablesOfCategory(KelZoneCategory category, std::vector<int>& variableIds) const;
    virtual void       getPhaseVariablesOfCategory(KelZoneCategory category, std::vector<std::string>& names) const;
    /// @}

    /// @name Attributes of a variable: by its id, by phase id and name, by phase name and name, in the active phase
    /// The variable attribute provider comes before what the file holds; "User Visible" has a default when there is a
    /// provider; a variable's recipe rewrites every other value. `value` is emptied first; false when it stays empty. For a
    /// variable that the phase does not have the provider alone is asked, by the name given. `names` is replaced in any case:
    /// ascending, those of the provider and of the file, which never gives "Dataset Name"; false when neither knows the variable.
    /// @{
    virtual bool getAttributesOfPhaseVariable(int variableId, std::vector<std::string>& names) const;
    virtual bool getAttributesOfPhaseVariable(short phaseId, const std::string& variableName, std::vector<std::string>& names) const;
    bool getAttributesOfPhaseVariable(const std::string& phaseName, const std::string& variableName, std::vector<std::string>& names) const;
    bool getAttributesOfPhaseVariable(const std::string& variableName, std::vector<std::string>& names) const;
    virtual bool getAttributeValueOfPhaseVariable(int variableId, const std::string& attribute, std::string& value) const;
    virtual bool getAttributeValueOfPhaseVariable(short phaseId, const std::string& variableName, const std::string& attribute, std::string& value) const;
    virtual bool getAttributeValueOfPhaseVariable(const std::string& phaseName, const std::string& variableName, const std::string& attribute, std::string& value) const;
    virtual bool getAttributeValueOfPhaseVariable(const std::string& variableName, const std::string& attribute, std::string& value) const;
    /// @}

    /// @name Attributes of a variable as they are stored
    /// What the file holds, or what was set since, whatever provider or recipe there is. False for an unknown variable or
    /// attribute; `value` is then left alone, while `names` is replaced in any case, ascending. The list never holds
    /// "Dataset Name", which has a value all the same.
    /// @{
    bool getStoredAttributesOfPhaseVariable(int variableId, std::vector<std::string>& names) const;
    bool getStoredAttributeValueOfPhaseVariable(int variableId, const std::string& attribute, std::string& value) const;
    /// @}

    /// @name Values of a variable of the active phase
    /// startReading opens a variable on the zones of a category: replaces `zoneIds` by those that carry it and returns the
    /// number of values per element (0 when there are none, as here). The getters then give the values, that many per element.
    /// @{
    virtual unsigned64 startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, const std::string& variableName, std::vector<int>& zoneIds);
    virtual unsigned64 startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, int variableId, std::vector<int>& zoneIds);
    virtual unsigned64 getValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId, float*  values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId, double* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfPhaseVariableForElementsInZone(int zoneId, float*  values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfPhaseVariableForElementsInZone(int zoneId, double* values, unsigned64 capacity) const;
    /// @}

    // ---- 9 particles and particle tracks --------------------------------------------------------------------------

    /// @name Particles: of the active phase, by phase name, by phase id
    /// Particles are the set data of a phase (see there), one per injection. startReadingParticles makes the phase's set data
    /// those that follow. False here; the forms with a phase ask the one without.
    /// @{
    virtual bool hasParticles() const;
    virtual bool hasParticles(const std::string& phaseName) const;
    virtual bool hasParticles(short phaseId) const;
    virtual bool startReadingParticles();
    virtual bool startReadingParticles(const std::string& phaseName);
    virtual bool startReadingParticles(short phaseId);
    virtual void getInjectionNames(std::vector<std::string>& names) const; ///< Names of the set data of the phase.
    virtual void getVariablesOfInjection(const std::string& injection, std::vector<std::string>& names) const; ///< Its variables, constant and variable length.
    virtual void endReadingParticles();
    /// @}

    /// @name Particle tracks
    /// What the writer was given: groups of a phase (for one mesh, target and partition; -1 for none), their chunks, the
    /// variables of a chunk. List getters replace their list; nothing and false here.
    /// @{
    virtual bool hasParticleTracks() const;
    virtual bool hasParticleTracks(const std::string& phaseName) const;
    virtual bool hasParticleTracks(short phaseId) const;
    virtual bool hasParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) const;
    virtual bool hasParticleTracksInActivePhase() const;
    virtual std::vector<short> getPhasesWithParticleTracks(int meshId, KelTargetCategory target, int partitionId) const; ///< Empty here.
    virtual void startReadingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId);
    virtual void getParticleTrackGroups(std::vector<std::string>& groups) const; ///< In the order written.
    virtual void startReadingParticleTrackGroup(const std::string& group);
    virtual void getChunksInParticleTrackGroup(std::vector<int>& chunkIds) const; ///< In the order written.
    virtual void startReadingChunkInParticleTrackGroup(int chunkId);
    virtual unsigned64 getPointCountOfParticleTrackChunk() const; ///< Number of track points of the open chunk.
    virtual void getParticleTrackVariables(std::vector<std::string>& names) const; ///< Of the open chunk, ascending.
    virtual KelPlainDataType getDataTypeOfParticleTrackVariable(const std::string& variableName) const; ///< -1 here.
    virtual unsigned64 getValueCountOfParticleTrackVariable(const std::string& variableName) const; ///< In the open chunk.
    /// All values of a variable in the open chunk, converted to the type of the buffer.
    virtual unsigned64 getValuesOfParticleTrackVariable(int variableId, unsigned char* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(int variableId, char* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(int variableId, short* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(int variableId, unsigned int* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(int variableId, int* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(int variableId, long* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(int variableId, unsigned64* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(int variableId, signed64* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(int variableId, float* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(int variableId, double* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, unsigned char* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, char* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, short* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, unsigned int* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, int* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, long* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, unsigned64* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, signed64* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, float* values, unsigned64 capacity) const;
    virtual unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, double* values, unsigned64 capacity) const;
    virtual void endReadingChunkInParticleTrackGroup();
    virtual void endReadingParticleTrackGroup();
    virtual void endReadingParticleTracks();
    /// @}

    // ---- 10 sets and set data -------------------------------------------------------------------------------------

    /// @name Sets
    /// getSetNames: all sets of what is being read, those of a data class, those of a category; replaces `names`, in the
    /// order written. startReadingSet opens one. All false, 0 or nothing here.
    /// @{
    virtual bool getSetNames(std::vector<std::string>& names) const;
    virtual bool getSetNames(KelDataClass dataClass, std::vector<std::string>& names) const;
    virtual bool getSetNames(KelZoneCategory category, std::vector<std::string>& names) const;
    virtual bool startReadingSet(const std::string& name);
    virtual KelZoneCategory getCategoryOfSet() const; ///< Category of the open set's members; -1 here.
    virtual void getSizesAndMinMaxIdsForSet(std::vector<unsigned64>& sizes, std::vector<unsigned64>& minIds, std::vector<unsigned64>& maxIds) const; ///< By block, as declared.
    virtual void startReadingIdsForSet();
    virtual unsigned64 getIdsForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned64* ids, unsigned64 capacity) const;
    virtual void endReadingIdsForSet();
    virtual void getVariablesInSet(std::vector<std::string>& names) const;              ///< Variables with one number of values per member.
    virtual void getVariableLengthedVariablesInSet(std::vector<std::string>& names) const; ///< Variables with a length per member.
    virtual void getOtherVariablesInSet(std::vector<std::string>& names) const;         ///< Other data: blocks.
    virtual void getStringVariablesInSet(std::vector<std::string>& names) const;        ///< Other data: texts.
    /// @}

    /// @name Lengths of a variable-length variable of a set
    /// Opens the variable and returns the type in which its lengths came (-1 here); then one length per member.
    /// @{
    virtual KelPlainDataType startReadingSizeOfVariableLengthedVarForSet(const std::string& name);
    virtual unsigned64 getSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, int* lengths, unsigned64 capacity) const;
    virtual unsigned64 getSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, short* lengths, unsigned64 capacity) const;
    virtual unsigned64 getSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned64* lengths, unsigned64 capacity) const;
    virtual void endReadingSizeOfVariableLengthedVarForSet();
    /// @}

    /// @name Values of a variable of a set
    /// Opens the variable: its type (-1 here) and, for the first form, the number of values per member. Values come converted
    /// to the type of the buffer.
    /// @{
    virtual KelPlainDataType startReadingDataOfVariableForSet(const std::string& name, unsigned64& valuesPerMember);
    virtual unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned char* values, unsigned64 capacity) const;
    virtual unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, char* values, unsigned64 capacity) const;
    virtual unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, short* values, unsigned64 capacity) const;
    virtual unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned int* values, unsigned64 capacity) const;
    virtual unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, int* values, unsigned64 capacity) const;
    virtual unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, long* values, unsigned64 capacity) const;
    virtual unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned64* values, unsigned64 capacity) const;
    virtual unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, signed64* values, unsigned64 capacity) const;
    virtual unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, float* values, unsigned64 capacity) const;
    virtual unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, double* values, unsigned64 capacity) const;
    virtual void endReadingDataOfVariableForSet();
    virtual KelPlainDataType startReadingVariableLengthedDataOfVariableForSet(const std::string& name);
    virtual unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned char* values, unsigned64 capacity) const;
    virtual unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, char* values, unsigned64 capacity) const;
    virtual unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, short* values, unsigned64 capacity) const;
    virtual unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned int* values, unsigned64 capacity) const;
    virtual unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, int* values, unsigned64 capacity) const;
    virtual unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, long* values, unsigned64 capacity) const;
    virtual unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned64* values, unsigned64 capacity) const;
    virtual unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, signed64* values, unsigned64 capacity) const;
    virtual unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, float* values, unsigned64 capacity) const;
    virtual unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, double* values, unsigned64 capacity) const;
    virtual void endReadingVariableLengthedDataOfVariableForSet();
    /// @}

    /// @name Other data of a set
    /// A named block, converted to the type of the buffer: the number of values stored; a null buffer only counts. Or a
    /// named text: its length, 0 when there is none (`text` is then left alone).
    /// @{
    virtual KelPlainDataType getDataTypeOfOtherDataForSet(const std::string& name) const; ///< -1 here.
    virtual unsigned64 getOtherDataForSet(const std::string& name, unsigned char* values, unsigned64 capacity) const;
    virtual unsigned64 getOtherDataForSet(const std::string& name, char* values, unsigned64 capacity) const;
    virtual unsigned64 getOtherDataForSet(const std::string& name, short* values, unsigned64 capacity) const;
    virtual unsigned64 getOtherDataForSet(const std::string& name, unsigned int* values, unsigned64 capacity) const;
    virtual unsigned64 getOtherDataForSet(const std::string& name, int* values, unsigned64 capacity) const;
    virtual unsigned64 getOtherDataForSet(const std::string& name, long* values, unsigned64 capacity) const;
    virtual unsigned64 getOtherDataForSet(const std::string& name, unsigned64* values, unsigned64 capacity) const;
    virtual unsigned64 getOtherDataForSet(const std::string& name, signed64* values, unsigned64 capacity) const;
    virtual unsigned64 getOtherDataForSet(const std::string& name, float* values, unsigned64 capacity) const;
    virtual unsigned64 getOtherDataForSet(const std::string& name, double* values, unsigned64 capacity) const;
    virtual unsigned64 getStringDataForSet(const std::string& name, std::string& text) const;
    virtual void endReadingSet();
    /// @}

    /// @name Set data
    /// Of the active phase, as the writer was given it. startReadingSetData opens one set and tells its number of members.
    /// The getters fill a vector with all values, converted to its type, and answer whether there are any. False or -1 here.
    /// @{
    virtual void getSetDataNames(std::vector<std::string>& names) const; ///< In the order written. Nothing here.
    virtual bool startReadingSetData(const std::string& name, unsigned64& memberCount);
    virtual bool getIdsForSetData(std::vector<unsigned64>& ids) const;
    virtual void getConstantLengthVariablesInSetData(std::vector<std::string>& names) const;
    virtual void getVariableLengthVariablesInSetData(std::vector<std::string>& names) const;
    virtual void getOtherVariablesInSetData(std::vector<std::string>& names) const;
    virtual void getStringVariablesInSetData(std::vector<std::string>& names) const;
    virtual KelPlainDataType getDataTypeOfDataForSetData(const std::string& name) const; ///< Of a variable of either kind, or of other data.
    virtual KelPlainDataType getDataTypeOfSizeForSetData(const std::string& name) const; ///< In which the lengths came.
    virtual bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<unsigned char>& values, unsigned64& valuesPerMember) const;
    virtual bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<char>& values, unsigned64& valuesPerMember) const;
    virtual bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<short>& values, unsigned64& valuesPerMember) const;
    virtual bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<unsigned int>& values, unsigned64& valuesPerMember) const;
    virtual bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<int>& values, unsigned64& valuesPerMember) const;
    virtual bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<long>& values, unsigned64& valuesPerMember) const;
    virtual bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<unsigned64>& values, unsigned64& valuesPerMember) const;
    virtual bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<signed64>& values, unsigned64& valuesPerMember) const;
    virtual bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<float>& values, unsigned64& valuesPerMember) const;
    virtual bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<double>& values, unsigned64& valuesPerMember) const;
    virtual bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<unsigned char>& values) const;
    virtual bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<char>& values) const;
    virtual bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<short>& values) const;
    virtual bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<unsigned int>& values) const;
    virtual bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<int>& values) const;
    virtual bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<long>& values) const;
    virtual bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<unsigned64>& values) const;
    virtual bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<signed64>& values) const;
    virtual bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<float>& values) const;
    virtual bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<double>& values) const;
    virtual bool getSizeOfVariableLengthVarForSetData(const std::string& name, std::vector<int>& lengths) const;
    virtual bool getSizeOfVariableLengthVarForSetData(const std::string& name, std::vector<short>& lengths) const;
    virtual bool getSizeOfVariableLengthVarForSetData(const std::string& name, std::vector<unsigned64>& lengths) const;
    virtual bool getOtherDataForSetData(const std::string& name, std::vector<unsigned char>& values) const;
    virtual bool getOtherDataForSetData(const std::string& name, std::vector<char>& values) const;
    virtual bool getOtherDataForSetData(const std::string& name, std::vector<short>& values) const;
    virtual bool getOtherDataForSetData(const std::string& name, std::vector<unsigned int>& values) const;
    virtual bool getOtherDataForSetData(const std::string& name, std::vector<int>& values) const;
    virtual bool getOtherDataForSetData(const std::string& name, std::vector<long>& values) const;
    virtual bool getOtherDataForSetData(const std::string& name, std::vector<unsigned64>& values) const;
    virtual bool getOtherDataForSetData(const std::string& name, std::vector<signed64>& values) const;
    virtual bool getOtherDataForSetData(const std::string& name, std::vector<float>& values) const;
    virtual bool getOtherDataForSetData(const std::string& name, std::vector<double>& values) const;
    virtual unsigned64 getStringDataForSetData(const std::string& name, std::string& text) const; ///< Length of the text; 0 here.
    virtual void endReadingSetData();
    /// @}

    // ---- 11 run-time hooks ----------------------------------------------------------------------------------------

    virtual void setHeavyDataCacheMode(KelDataCacheMode mode); ///< How much bulk data may stay in memory. Nothing here.
    virtual void setReadAllSettings(bool on);                  ///< Whether all groups of settings are read when opening. Nothing here.
    virtual void setSkipReadZoneTopology(bool on);             ///< Whether the zones of the mesh are left out when opening. Nothing here.
    virtual void getSettingsGroups(KelDataClass dataClass, std::vector<std::string>& groups) const; ///< Groups of settings. Empties `groups` here.
    virtual void getSettingsKeysOfGroup(KelDataClass dataClass, const std::string& group, std::vector<std::string>& keys) const; ///< Empties `keys` here.
    virtual unsigned64 getLocalElemIdsInZone(int zoneId, unsigned64* ids, unsigned64 capacity) const; ///< See the writer's setLocalElemIdsInZone. 0 here.
    virtual int getPartitionCountOfCells() const; ///< The number the writer gave with the partitions of cells. 0 here.

    virtual void dump(std::string fileName) const; ///< Writes the settings of KelBase as XML text to the named file; silent when it cannot.
    virtual void print(bool flag) const;           ///< Prints the settings of KelBase on standard output; `flag`: with all groups below.

    // ---- not virtual ----------------------------------------------------------------------------------------------

    /// What follows concerns this time level; KEL_LATEST_TIME_LEVEL means the largest known one. An unknown level changes
    /// nothing, silently, and what is read is then of the level from before; two lines tell:
    ///
    /// @code
    /// reader.startReadingTimeLevel(level);
    /// if (reader.getTimeLevel() != level) ... // the file has no such level
    /// @endcode
    void startReadingTimeLevel(int level) const;

    /// @name Id of a variable: by phase name, in the active phase, by phase id
    /// @{
    bool getVariableId(const std::string& phaseName, const std::string& variableName, int& variableId) const;
    bool getVariableId(const std::string& variableName, int& variableId) const;
    bool getVariableId(short phaseId, const std::string& variableName, int& variableId) const;
    /// @}

    /// A setting as a read-only value: the attribute `name` of the data class's "Common" setting, which the file is asked for
    /// once; else what the settings of KelBase hold under the "/"-separated `name` (the n-th of several groups of that name
    /// for an index n of 0 and above). The variant stays valid as long as the reader.
    KelVariant getSettings(KelDataClass dataClass, const std::string& name, short index) const;

protected:
    /// Lets the recipe that the variable names in its attribute "Recipe" rewrite a value of another attribute. Nothing happens
    /// without such a recipe, and when it does not apply to the attribute.
    void applyVariableRecipe(int variableId, std::string attribute, std::string& value) const;

    /// Whether the file can be opened for reading.
    bool fileExists(const std::string& path) const;
    // clang-format on

private:
    const KelSetting& commonSetting(KelDataClass dataClass) const;

    KelVariableRecipeProvider* _variableRecipeProvider;
    std::string _variableTarget;
    mutable KelSetting _commonSettings[2];
};

} // namespace meridyn
