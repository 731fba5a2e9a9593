#pragma once

#include "KelBase.h"

#include <string>
#include <utility>
#include <vector>

namespace meridyn {

class KelSetting;

/// Writer frame: a client hands over a mesh and a solution, one array at a time.
///
/// Order     startWriting, then per array: start marker, values, end marker; endWriting.
/// Forms     per element, per id range, per zone. A format overrides the range form only; the other two are
///           written here and reach it through the virtual table. The zone form finds the zone's first and last
///           element id; an unknown zone arrives as 0 and 0.
/// Ids       element ids count from 1 over the whole mesh of one element kind; 0 stands for "none".
/// Buffers   stay the caller's and are read before the call returns. `count` is the number of values in the
///           buffer, not of elements. Where elements have different numbers of values, the values of all elements
///           of the range follow each other, in ascending order of the elements.
/// Defaults  a range form prints one trace line and an empty line, unless its text says otherwise; markers and
///           switches do nothing unless a trace is given; queries answer "no". A bare writer is therefore a trace.
/// Threads   one thread at a time per object.
///
/// Groups    1 run   2 nodes   3 edges   4 faces   5 cells   6 case sections   7 phases and variables
///           8 sets and set data   9 particle tracks   10 for formats
///
/// The order of the virtual operations is binary interface: never sort, insert or move one.
class KEL_API KelConsumer : public virtual KelBase {
public:
    /// Makes a writer on behalf of the named application.
    explicit KelConsumer(const std::string& applicationName);

    /// The same for the application "Unknown".
    KelConsumer();

    ~KelConsumer() override;

    // clang-format off
    // ---- 1 run ----------------------------------------------------------------------------------------------------

    /// Appends entries to the log of a data class: pairs of a title and a text, in order. Does nothing here.
    virtual void log(std::vector<std::pair<std::string, std::string>> entries, KelDataClass dataClass);

    /// @name Switches of the run, before startWriting
    /// Do nothing here; a format that has no use for one ignores it.
    /// @{
    virtual void setCompression(int level);    ///< 0 none (default) to 9 smallest
    virtual void setIOMode(KelIOMode mode);    ///< how several processes share the file
    virtual void setMPIComm(void* communicator); ///< address of the MPI communicator of those processes, not owned
    /// @}

    /// @name Start and end of a data class
    /// False here; a format answers whether it could, and after endWriting whether the file is complete.
    /// @{
    virtual bool startWriting(KelDataClass dataClass);
    virtual bool endWriting(KelDataClass dataClass);
    virtual bool isWritingData(); ///< whether a data class is being written now
    /// @}

    /// @name Settings
    /// Without a group: the group "settings", under which the common settings of a file lie.
    /// @{
    /// Takes pairs of key and text for a group of settings of a data class.
    /// Trace: "  <number of pairs> key-value pairs." without an empty line.
    virtual void writeSettingStrings(const std::vector<std::pair<std::string, std::string>>& pairs, KelDataClass dataClass, const std::string& group = _defaultSettingsPath) const;

    /// Writes a settings tree as one pair of the key and the tree's text form, through writeSettingStrings.
    /// An invalid setting writes nothing.
    virtual void writeSetting(KelSetting& setting, const std::string& key, KelDataClass dataClass, const std::string& group = _defaultSettingsPath) const;
    /// @}

    /// Hook at the end of writing: a format stores the sizes, units and zones that KelBase holds. Nothing here.
    virtual void writeMeshAttributes() const;

    /// Further ids of a zone's elements, in ascending order of the elements: the numbers that these elements bear in
    /// the application or partition they come from. Nothing here.
    virtual void setLocalElemIdsInZone(int zoneId, const unsigned64* ids, unsigned64 count);

    // ---- 2 nodes --------------------------------------------------------------------------------------------------

    /// @name Zones of a category
    /// Brackets everything that belongs to the zones of one category; optional. Nothing here.
    /// @{
    virtual void startWritingZonesOfCategory(KelZoneCategory category);
    virtual void endWritingZonesOfCategory();
    /// @}

    /// @name Coordinates of nodes
    /// Mesh-dimension values per node (x, y, z of node 1, of node 2, ...), in the units of getMeshUnits.
    /// Trace of the range forms: "  <dimension>-D coordinates (<count of nodes>)"; of the start markers: the zones.
    /// @{
    virtual void startWritingNodes               (const std::vector<int>& zoneIds);
    virtual void startWritingCoordinatesForNodes (const std::vector<int>& zoneIds);
    virtual void setCoordinatesForNode           (unsigned64 nodeId, const double* xyz, unsigned64 count);
    virtual void setCoordinatesForNode           (unsigned64 nodeId, const float*  xyz, unsigned64 count);
    virtual void setCoordinatesForNodesInZone    (int zoneId, const double* xyz, unsigned64 count);
    virtual void setCoordinatesForNodesInZone    (int zoneId, const float*  xyz, unsigned64 count);
    virtual void setCoordinatesForNodesInRange   (unsigned64 firstId, unsigned64 lastId, const double* xyz, unsigned64 count);
    virtual void setCoordinatesForNodesInRange   (unsigned64 firstId, unsigned64 lastId, const float*  xyz, unsigned64 count);
    virtual void endWritingCoordinatesForNodes   ();
    virtual void endWritingNodes                 ();
    /// @}

    // ---- 3 edges --------------------------------------------------------------------------------------------------

    /// @name Nodes of edges
    /// Counts: one per edge (2 for a straight edge). Ids: the nodes of each edge, from end to end.
    /// Trace: "  Edge-node count (<n>)", "  Constant edge-node count (<n>)", "  Edge-node id (<first>, <last>)".
    /// @{
    virtual void startWritingEdges                  (const std::vector<int>& zoneIds);
    virtual void startWritingNodesForEdges          (const std::vector<int>& zoneIds);
    virtual void setUniformNodeCountForEdgesInRange (unsigned64 firstId, unsigned64 lastId, short nodeCount);
    virtual void setUniformNodeCountForEdgesInZone  (int zoneId, short nodeCount);
    virtual void setNodeCountForEdge                (unsigned64 edgeId, short nodeCount);
    virtual void setNodeCountsForEdgesInRange       (unsigned64 firstId, unsigned64 lastId, const short* nodeCounts, unsigned64 count);
    virtual void setNodeCountsForEdgesInZone        (int zoneId, const short* nodeCounts, unsigned64 count);
    virtual void startWritingNodeCountsForEdges     ();
    virtual void startWritingNodeIdsForEdges        ();
    virtual void setNodeIdsForEdge                  (unsigned64 edgeId, const unsigned64* nodeIds, unsigned64 count);
    virtual void setNodeIdsForEdgesInRange          (unsigned64 firstId, unsigned64 lastId, const unsigned64* nodeIds, unsigned64 count);
    virtual void setNodeIdsForEdgesInZone           (int zoneId, const unsigned64* nodeIds, unsigned64 count);
    virtual void endWritingNodeIdsForEdges          (); ///< Trace: an empty line.
    virtual void endWritingNodeCountsForEdges       ();
    virtual void endWritingNodesForEdges            ();
    virtual void endWritingEdges                    ();
    /// @}

    // ---- 4 faces --------------------------------------------------------------------------------------------------

    /// @name Nodes of faces
    /// Counts: one per face. Ids: the nodes of each face in order around it; seen from cell 0, the normal of the face
    /// points away, towards cell 1.
    /// Trace: "  Face-node count (<n>)", "  Constant face-node count (<n>)", "  Face-node id (<first>, <last>)".
    /// @{
    virtual void startWritingFaces                  (const std::vector<int>& zoneIds);
    virtual void startWritingNodesForFaces          (const std::vector<int>& zoneIds);
    virtual void startWritingNodeCountsForFaces     ();
    virtual void setUniformNodeCountForFacesInRange (unsigned64 firstId, unsigned64 lastId, short nodeCount);
    virtual void setUniformNodeCountForFacesInZone  (int zoneId, short nodeCount);
    virtual void setNodeCountForFace                (unsigned64 faceId, short nodeCount);
    virtual void setNodeCountsForFacesInRange       (unsigned64 firstId, unsigned64 lastId, const short* nodeCounts, unsigned64 count);
    virtual void setNodeCountsForFacesInZone        (int zoneId, const short* nodeCounts, unsigned64 count);
    virtual void endWritingNodeCountsForFaces       ();
    virtual void startWritingNodeIdsForFaces        ();
    virtual void setNodeIdsForFace                  (unsigned64 faceId, const unsigned64* nodeIds, unsigned64 count);
    virtual void setNodeIdsForFacesInRange          (unsigned64 firstId, unsigned64 lastId, const unsigned64* nodeIds, unsigned64 count);
    virtual void setNodeIdsForFacesInZone           (int zoneId, const unsigned64* nodeIds, unsigned64 count);
    virtual void endWritingNodeIdsForFaces          (); ///< Trace: an empty line.
    virtual void endWritingNodesForFaces            ();
    /// @}

    /// @name Cell 0 of faces
    /// Id of the cell on side 0: one value per face. Every face has one.
    /// Trace: "  Face-C0 id: (<first>, <last>)".
    /// @{
    virtual void startWritingCell0sForFaces (const std::vector<int>& zoneIds);
    virtual void setCell0ForFace            (unsigned64 faceId, unsigned64 cellId);
    virtual void setCell0sForFacesInRange   (unsigned64 firstId, unsigned64 lastId, const unsigned64* cellIds, unsigned64 count);
    virtual void setCell0sForFacesInZone    (int zoneId, const unsigned64* cellIds, unsigned64 count);
    virtual void endWritingCell0sForFaces   ();
    /// @}

    /// @name Cell 1 of faces
    /// Id of the cell on side 1: one value per face, 0 for none. Boundary faces need not be handed over.
    /// Trace: "  Face-C1 id: (<first>, <last>)".
    /// The zone form reaches setCell0sForFacesInRange, not its own range form: existing writers rely on it. Hand cell 1
    /// over by range.
    /// @{
    virtual void startWritingCell1sForFaces (const std::vector<int>& zoneIds);
    virtual void setCell1ForFace            (unsigned64 faceId, unsigned64 cellId);
    virtual void setCell1sForFacesInRange   (unsigned64 firstId, unsigned64 lastId, const unsigned64* cellIds, unsigned64 count);
    virtual void setCell1sForFacesInZone    (int zoneId, const unsigned64* cellIds, unsigned64 count);
    virtual void endWritingCell1sForFaces   ();
    /// @}

    /// @name Shadow faces
    /// Id of the partner face of a periodic pair: one value per face, 0 for none.
    /// Trace: "  Face-shadow id: (<first>, <last>)".
    /// @{
    virtual void startWritingShadowFaceIdsForFaces (const std::vector<int>& zoneIds);
    virtual void setShadowFaceIdForFace            (unsigned64 faceId, unsigned64 shadowFaceId);
    virtual void setShadowFaceIdsForFacesInRange   (unsigned64 firstId, unsigned64 lastId, const unsigned64* shadowFaceIds, unsigned64 count);
    virtual void setShadowFaceIdsForFacesInZone    (int zoneId, const unsigned64* shadowFaceIds, unsigned64 count);
    virtual void endWritingShadowFaceIdsForFaces   ();
    /// @}

    /// @name Interface data of faces
    /// A non-conformal interface couples the zones `zoneIds0` with the zones `zoneIds1`. For a face zone that holds the
    /// coupling: `ids0` and `ids1` are the faces that meet, side 0 against side 1, and `a` and `b` the shares of their
    /// areas that meet (0 to 1), on side 0 and side 1. A format keeps the four lists as they come, whatever their lengths.
    /// Trace of the values: "  Interface-faces: (zone-<zone id>)"; of the start marker: the first list of zones.
    /// @{
    virtual void startWritingInterfaceDataForFaces (const std::vector<int>& zoneIds0, const std::vector<int>& zoneIds1);
    virtual void setInterfaceDataForFacesInZone    (int zoneId, const float*  a, unsigned64 na, const float*  b, unsigned64 nb, const unsigned64* ids0, unsigned64 count0, const unsigned64* ids1, unsigned64 count1);
    virtual void setInterfaceDataForFacesInZone    (int zoneId, const double* a, unsigned64 na, const double* b, unsigned64 nb, const unsigned64* ids0, unsigned64 count0, const unsigned64* ids1, unsigned64 count1);
    virtual void endWritingInterfaceDataForFaces   (); ///< Trace: an empty line.
    /// @}

    /// @name Child faces
    /// The faces into which a refined (parent) face was split. Counts: one per face, 0 for an unrefined one. Ids: the
    /// children of each face. Trace: "  Face-child count: (<first>, <last>)", "  Uniform face-child count: (...)",
    /// "  Face-child id: (...)"; of the start markers of counts and ids and of the end of the counts: an empty line.
    /// @{
    virtual void startWritingChildFacesForFaces          (const std::vector<int>& zoneIds);
    virtual void startWritingChildFaceCountsForFaces     ();
    virtual void setChildFaceCountForFace                (unsigned64 faceId, short childCount);
    virtual void setChildFaceCountsForFacesInRange       (unsigned64 firstId, unsigned64 lastId, const short* childCounts, unsigned64 count);
    virtual void setChildFaceCountsForFacesInZone        (int zoneId, const short* childCounts, unsigned64 count);
    virtual void setUniformChildFaceCountForFacesInRange (unsigned64 firstId, unsigned64 lastId, short childCount);
    virtual void setUniformChildFaceCountForFacesInZone  (int zoneId, short childCount);
    virtual void endWritingChildFaceCountsForFaces       ();
    virtual void startWritingChildFaceIdsForFaces        ();
    virtual void setChildFaceIdsForFace                  (unsigned64 faceId, const unsigned64* childIds, unsigned64 count);
    virtual void setChildFaceIdsForFacesInRange          (unsigned64 firstId, unsigned64 lastId, const unsigned64* childIds, unsigned64 count);
    virtual void setChildFaceIdsForFacesInZone           (int zoneId, const unsigned64* childIds, unsigned64 count);
    virtual void endWritingChildFaceIdsForFaces          ();
    virtual void endWritingChildFacesForFaces            ();
    virtual void endWritingFaces                         ();
    /// @}

    // ---- 5 cells --------------------------------------------------------------------------------------------------

    /// @name Types of cells
    /// Shape of each cell. `types` of the start marker: per zone the type that all its cells share, or -1 where they
    /// differ; or empty. A zone whose type is given there is complete without further calls.
    /// Trace: "  Cell-type id: (<first>, <last>)".
    /// @{
    virtual void startWritingCells         (const std::vector<int>& zoneIds);
    virtual void startWritingTypesForCells (const std::vector<int>& zoneIds, const std::vector<KelCellType>& types);
    virtual void setTypeForCell            (unsigned64 cellId, KelCellType type);
    virtual void setTypesForCellsInRange   (unsigned64 firstId, unsigned64 lastId, const KelCellType* types, unsigned64 count);
    virtual void setTypesForCellsInZone    (int zoneId, const KelCellType* types, unsigned64 count);
    virtual void endWritingTypesForCells   ();
    /// @}

    /// @name Nodes of cells
    /// Counts: one per cell. Ids: the nodes of each cell, in the order that KelCellType has.
    /// Trace: "  cell-node count (<n>)" (sic), "  Constant cell-node count (<n>)", "  Face-node id (<first>, <last>)" (sic);
    /// of the start marker of the counts: an empty line.
    /// @{
    virtual void startWritingNodesForCells          (const std::vector<int>& zoneIds);
    virtual void startWritingNodeCountsForCells     ();
    virtual void setNodeCountForCell                (unsigned64 cellId, short nodeCount);
    virtual void setNodeCountsForCellsInRange       (unsigned64 firstId, unsigned64 lastId, const short* nodeCounts, unsigned64 count);
    virtual void setNodeCountsForCellsInZone        (int zoneId, const short* nodeCounts, unsigned64 count);
    virtual void setUniformNodeCountForCellsInRange (unsigned64 firstId, unsigned64 lastId, short nodeCount);
    virtual void setUniformNodeCountForCellsInZone  (int zoneId, short nodeCount);
    virtual void endWritingNodeCountsForCells       ();
    virtual void startWritingNodeIdsForCells        ();
    virtual void setNodeIdsForCell                  (unsigned64 cellId, const unsigned64* nodeIds, unsigned64 count);
    virtual void setNodeIdsForCellsInRange          (unsigned64 firstId, unsigned64 lastId, const unsigned64* nodeIds, unsigned64 count);
    virtual void setNodeIdsForCellsInZone           (int zoneId, const unsigned64* nodeIds, unsigned64 count);
    virtual void endWritingNodeIdsForCells          ();
    virtual void endWritingNodesForCells            ();
    /// @}

    /// @name Faces of cells
    /// Counts: one per cell. Ids: the faces that bound each cell. No trace: the only silent family of the topology.
    /// @{
    virtual void startWritingFacesForCells          (const std::vector<int>& zoneIds);
    virtual void startWritingFaceCountsForCells     ();
    virtual void setFaceCountForCell                (unsigned64 cellId, short faceCount);
    virtual void setFaceCountsForCellsInRange       (unsigned64 firstId, unsigned64 lastId, const short* faceCounts, unsigned64 count);
    virtual void setFaceCountsForCellsInZone        (int zoneId, const short* faceCounts, unsigned64 count);
    virtual void setUniformFaceCountForCellsInRange (unsigned64 firstId, unsigned64 lastId, short faceCount);
    virtual void setUniformFaceCountForCellsInZone  (int zoneId, short faceCount);
    virtual void endWritingFaceCountsForCells       ();
    virtual void startWritingFaceIdsForCells        ();
    virtual void setFaceIdsForCell                  (unsigned64 cellId, const unsigned64* faceIds, unsigned64 count);
    virtual void setFaceIdsForCellsInRange          (unsigned64 firstId, unsigned64 lastId, const unsigned64* faceIds, unsigned64 count);
    virtual void setFaceIdsForCellsInZone           (int zoneId, const unsigned64* faceIds, unsigned64 count);
    virtual void endWritingFaceIdsForCells          ();
    virtual void endWritingFacesForCells            ();
    /// @}

    /// @name Partitions of cells
    /// Partition of each cell: one value per cell. `partitionCount`: how many partitions there are.
    /// Trace: "  Cell-partition id: (<first>, <last>)"; of the end marker: an empty line.
    /// @{
    virtual void startWritingPartitionIdsForCells (const std::vector<int>& zoneIds, int partitionCount);
    virtual void setPartitionIdForCell            (unsigned64 cellId, int partitionId);
    virtual void setPartitionIdsForCellsInRange   (unsigned64 firstId, unsigned64 lastId, const int* partitionIds, unsigned64 count);
    virtual void setPartitionIdsForCellsInZone    (int zoneId, const int* partitionIds, unsigned64 count);
    virtual void endWritingPartitionIdsForCells   ();
    /// @}

    /// @name Child cells
    /// The cells into which a refined (parent) cell was split, as for faces.
    /// Trace: "  Cell-child count: (<first>, <last>)", "  Uniform cell-child count: (...)", "  Cell-child id: (...)"; of the
    /// start markers of counts and ids and of the end of the counts: an empty line.
    /// @{
    virtual void startWritingChildCellsForCells          (const std::vector<int>& zoneIds);
    virtual void startWritingChildCellCountsForCells     ();
    virtual void setChildCellCountForCell                (unsigned64 cellId, short childCount);
    virtual void setChildCellCountsForCellsInRange       (unsigned64 firstId, unsigned64 lastId, const short* childCounts, unsigned64 count);
    virtual void setChildCellCountsForCellsInZone        (int zoneId, const short* childCounts, unsigned64 count);
    virtual void setUniformChildCellCountForCellsInRange (unsigned64 firstId, unsigned64 lastId, short childCount);
    virtual void setUniformChildCellCountForCellsInZone  (int zoneId, short childCount);
    virtual void endWritingChildCellCountsForCells       ();
    virtual void startWritingChildCellIdsForCells        ();
    virtual void setChildCellIdsForCell                  (unsigned64 cellId, const unsigned64* childIds, unsigned64 count);
    virtual void setChildCellIdsForCellsInRange          (unsigned64 firstId, unsigned64 lastId, const unsigned64* childIds, unsigned64 count);
    virtual void setChildCellIdsForCellsInZone           (int zoneId, const unsigned64* childIds, unsigned64 count);
    virtual void endWritingChildCellIdsForCells          ();
    virtual void endWritingChildCellsForCells            ();
    virtual void endWritingCells                         ();
    /// @}

    // ---- 6 case sections ------------------------------------------------------------------------------------------

    /// @name Case sections
    /// Further named data of the mesh's elements that belong to the case. First the names of a category's sections, then
    /// per section its zones, value type and number of values per element (`size`), then the values, whose buffer holds
    /// `count` values of that type (`size` per element).
    /// Trace: "  <Node|Face|Cell>-zone variable names = <names>.", "  Variable-<name>, Zones = <ids>.",
    /// "  Element id: (<first>, <last>)". Categories other than node, face and cell are reported on standard output.
    /// @{
    virtual void startWritingCaseSectionCategories      (KelZoneCategory category, const std::vector<std::string>& names);
    virtual void startWritingCaseSectionDataForCategory (const std::string& name, const std::vector<int>& zoneIds, KelPlainDataType type, unsigned64 size);
    virtual void setCaseSectionDataForElementsInRange   (unsigned64 firstId, unsigned64 lastId, const void* values, unsigned64 count);
    virtual void setCaseSectionDataForElementsInZone    (int zoneId, const void* values, unsigned64 count);
    virtual void endWritingCaseSectionDataForCategory   ();
    virtual void endWritingCaseSectionCategories        ();
    /// @}

    // ---- 7 phases and variables -----------------------------------------------------------------------------------
    // Registration is kept in the solution model of KelBase, so that a format finds phases, variables, dataset names
    // and attributes there before its own overrides are called. False: unknown phase or variable, or no active phase.

    /// Hook for a text attribute of the file as a whole: section, group, name, value. False here.
    virtual bool addStringAttribute(const std::string& section, const std::string& group, const std::string& name, const std::string& value) const;

    /// Gives the phase of this unique name, made if missing; a new one gets the attribute "Long Name" = name.
    virtual bool addPhaseName(const std::string& name, short& phaseId) const;

    /// The same for several, in order; `phaseIds` is emptied first. Stops with false at the first failure; the ids
    /// gathered so far stay.
    virtual bool addPhaseNames(const std::vector<std::string>& names, std::vector<short>& phaseIds) const;

    /// @name Attributes of a phase: of the active one, by its unique name, by its id
    /// @{
    virtual bool setAttributeValueOfPhase(const std::string& attribute, const std::string& value) const;
    virtual bool setAttributeValueOfPhase(const std::string& phaseName, const std::string& attribute, const std::string& value) const;
    virtual bool setAttributeValueOfPhase(short phaseId, const std::string& attribute, const std::string& value) const;
    /// @}

    /// Starts afresh: drops all phases, variables and their categories, then adds the named phases.
    virtual bool setPhaseNames(const std::vector<std::string>& names, std::vector<short>& phaseIds) const;

    /// What follows belongs to this phase. A format makes it the active one; this body only traces:
    /// "  Phase-id = <id>".
    virtual void startWritingPhase(short phaseId) const;

    /// Whether addPhaseVariable copies the attributes that the variable attribute provider has. Default false.
    virtual void inheritVariableAttributes(bool on);

    /// @name Variables: in the active phase, by phase name, by phase id
    /// Gives the variable of this unique name, made if missing. A new one gets its dataset name from the variable attribute
    /// provider (else its own name) and, when that was asked for, the provider's attributes and "Long Name".
    /// @{
    virtual bool addPhaseVariable(const std::string& name, int& variableId) const;
    virtual bool addPhaseVariable(const std::string& phaseName, const std::string& name, int& variableId) const;
    virtual bool addPhaseVariable(short phaseId, const std::string& name, int& variableId) const;
    /// @}

    /// @name Variables of the active phase that live on zones of a category
    /// By names (missing variables are added; ids appended to `variableIds`) or by ids (all of which must exist).
    /// @{
    virtual bool setPhaseVariablesOfCategory(KelZoneCategory category, const std::vector<std::string>& names) const;
    virtual bool setPhaseVariablesOfCategory(KelZoneCategory category, const std::vector<std::string>& names, std::vector<int>& variableIds) const;
    virtual bool setPhaseVariablesOfCategory(KelZoneCategory category, const std::vector<int>& variableIds) const;
    /// @}

    virtual void endWritingPhase() const; ///< End of startWritingPhase. Nothing here.

    /// @name Attributes of a variable: in the active phase, by phase id, by variable id
    /// @{
    virtual bool setAttributeValueOfPhaseVariable(const std::string& variableName, const std::string& attribute, const std::string& value) const;
    virtual bool setAttributeValueOfPhaseVariable(short phaseId, const std::string& variableName, const std::string& attribute, const std::string& value) const;
    virtual bool setAttributeValueOfPhaseVariable(int variableId, const std::string& attribute, const std::string& value) const;
    /// @}

    /// @name Values of a variable of the phase being written
    /// On zones of one category; `size` is the number of values per element (1 for a scalar). The values of the zones'
    /// elements follow by range or zone, `size` per element.
    /// Trace: "  <Node|Face|Cell>-data, var = <name or id>, Zones = <ids>.", "  Element id: (<first>, <last>)".
    /// Categories other than node, face and cell are reported on standard output.
    /// The two forms with a constant list, `{20}` for example, hand a copy of it to the others.
    /// @{
    virtual void startWritingPhaseVariableInZonesOfCategory  (KelZoneCategory category, const std::string& variableName, std::vector<int>& zoneIds, unsigned64 size);
    virtual void startWritingPhaseVariableInZonesOfCategory  (KelZoneCategory category, int variableId, std::vector<int>& zoneIds, unsigned64 size);
    void         startWritingPhaseVariableInZonesOfCategory  (KelZoneCategory category, const std::string& variableName, const std::vector<int>& zoneIds, unsigned64 size);
    void         startWritingPhaseVariableInZonesOfCategory  (KelZoneCategory category, int variableId, const std::vector<int>& zoneIds, unsigned64 size);
    virtual void setValuesOfPhaseVariableForElementsInRange  (unsigned64 firstId, unsigned64 lastId, const float*  values, unsigned64 count);
    virtual void setValuesOfPhaseVariableForElementsInRange  (unsigned64 firstId, unsigned64 lastId, const double* values, unsigned64 count);
    virtual void setValuesOfPhaseVariableForElementsInZone   (int zoneId, const float*  values, unsigned64 count);
    virtual void setValuesOfPhaseVariableForElementsInZone   (int zoneId, const double* values, unsigned64 count);
    virtual void endWritingPhaseVariableInZonesOfCategory    ();
    /// @}

    // ---- 8 sets and set data --------------------------------------------------------------------------------------

    /// @name Sets
    /// A set is a named list of mesh elements of one category, kept with the data class that is being written (with its
    /// time level, for data), carrying variables of its own. Its members stand at the positions 1 to n.
    /// @{
    virtual void startWritingSet(const std::string& name, KelZoneCategory category);

    /// Declares the members by blocks (say, one per partition): per block its number of members and the smallest and
    /// largest element id in it (0 and 0 for an empty block). The set has the sum of the sizes as its number of members.
    virtual void setSizesAndMinMaxIdsForSet(const std::vector<unsigned64>& sizes, const std::vector<unsigned64>& minIds, const std::vector<unsigned64>& maxIds);

    /// Element ids of the members at the given positions, in their own order; repeats are kept.
    virtual void startWritingIdsForSet();
    virtual void setIdsForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const unsigned64* ids, unsigned64 count);
    virtual void endWritingIdsForSet();
    /// @}

    /// @name Lengths of a variable-length variable of a set
    /// One length per member: an array for the positions, or one value for all of them. `sizes` repeats the sizes of the
    /// set's blocks, or is empty. `type` is the type in which the lengths come.
    /// @{
    virtual void startWritingSizeOfVariableForSet(const std::string& name, std::vector<unsigned64> sizes, KelPlainDataType type);
    virtual void setSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const int*        lengths, unsigned64 count);
    virtual void setSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const short*      lengths, unsigned64 count);
    virtual void setSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const unsigned64* lengths, unsigned64 count);
    virtual void setSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, int        length);
    virtual void setSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, short      length);
    virtual void setSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned64 length);
    virtual void endWritingSizeOfVariableForSet();
    /// @}

    /// @name Values of a variable of a set, the same number for each member
    /// `valuesPerMember` values of `type` per member, for the members at the given positions. `sizes` as above.
    /// @{
    virtual void startWritingDataOfVariableForSet(const std::string& name, std::vector<unsigned64> sizes, unsigned64 valuesPerMember, KelPlainDataType type);
    virtual void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const unsigned char* values, unsigned64 count);
    virtual void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const char* values, unsigned64 count);
    virtual void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const short* values, unsigned64 count);
    virtual void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const unsigned int* values, unsigned64 count);
    virtual void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const int* values, unsigned64 count);
    virtual void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const long* values, unsigned64 count);
    virtual void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const unsigned64* values, unsigned64 count);
    virtual void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const signed64* values, unsigned64 count);
    virtual void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const float* values, unsigned64 count);
    virtual void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const double* values, unsigned64 count);
    virtual void endWritingDataOfVariableForSet();
    /// @}

    /// @name Values of a variable-length variable of a set
    /// As many values per member as its length says, which is handed over first (under the same name).
    /// @{
    virtual void startWritingVariableLengthedDataOfVariableForSet(const std::string& name, std::vector<unsigned64> sizes, KelPlainDataType type);
    virtual void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const unsigned char* values, unsigned64 count);
    virtual void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const char* values, unsigned64 count);
    virtual void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const short* values, unsigned64 count);
    virtual void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const unsigned int* values, unsigned64 count);
    virtual void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const int* values, unsigned64 count);
    virtual void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const long* values, unsigned64 count);
    virtual void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const unsigned64* values, unsigned64 count);
    virtual void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const signed64* values, unsigned64 count);
    virtual void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const float* values, unsigned64 count);
    virtual void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const double* values, unsigned64 count);
    virtual void endWritingVariableLengthedDataOfVariableForSet();
    /// @}

    /// @name Other data of a set
    /// A named block of `count` values, or a named text, kept with the set and returned as it came, type included.
    /// @{
    virtual void writeOtherDataForSet(const std::string& name, const unsigned char* values, unsigned64 count);
    virtual void writeOtherDataForSet(const std::string& name, const char* values, unsigned64 count);
    virtual void writeOtherDataForSet(const std::string& name, const short* values, unsigned64 count);
    virtual void writeOtherDataForSet(const std::string& name, const unsigned int* values, unsigned64 count);
    virtual void writeOtherDataForSet(const std::string& name, const int* values, unsigned64 count);
    virtual void writeOtherDataForSet(const std::string& name, const long* values, unsigned64 count);
    virtual void writeOtherDataForSet(const std::string& name, const unsigned64* values, unsigned64 count);
    virtual void writeOtherDataForSet(const std::string& name, const signed64* values, unsigned64 count);
    virtual void writeOtherDataForSet(const std::string& name, const float* values, unsigned64 count);
    virtual void writeOtherDataForSet(const std::string& name, const double* values, unsigned64 count);
    virtual void writeStringDataForSet(const std::string& name, const std::string& text);
    virtual void endWritingSet();
    /// @}

    /// @name Set data
    /// A named set of things that are not mesh elements (particles of an injection, probes, ...) of the phase being written,
    /// with `memberCount` members that have ids of their own. Values come in the order of the members; several calls
    /// continue each other. The operations that take values return how many of them were taken: 0 here.
    /// @{
    virtual void       startWritingSetData(const std::string& name, unsigned64 memberCount);
    virtual void       startWritingIdsForSetData();
    virtual unsigned64 setIdsForSetData(const unsigned64* ids, unsigned64 count);
    virtual void       endWritingIdsForSetData();

    /// `valuesPerMember` values of `type` per member.
    virtual void       startWritingVariableForSetData(const std::string& name, unsigned64 valuesPerMember, KelPlainDataType type);
    virtual unsigned64 setVariableForSetData(const unsigned char* values, unsigned64 count);
    virtual unsigned64 setVariableForSetData(const char* values, unsigned64 count);
    virtual unsigned64 setVariableForSetData(const short* values, unsigned64 count);
    virtual unsigned64 setVariableForSetData(const unsigned int* values, unsigned64 count);
    virtual unsigned64 setVariableForSetData(const int* values, unsigned64 count);
    virtual unsigned64 setVariableForSetData(const long* values, unsigned64 count);
    virtual unsigned64 setVariableForSetData(const unsigned64* values, unsigned64 count);
    virtual unsigned64 setVariableForSetData(const signed64* values, unsigned64 count);
    virtual unsigned64 setVariableForSetData(const float* values, unsigned64 count);
    virtual unsigned64 setVariableForSetData(const double* values, unsigned64 count);
    virtual void       endWritingVariableForSetData();

    /// As many values per member as its length says: `lengthCount` members at a time, `count` values for them.
    virtual void       startWritingVariableLengthVariableForSetData(const std::string& name, KelPlainDataType type, KelPlainDataType lengthType);
    virtual unsigned64 setVariableLengthVariableForSetData(const unsigned char* values, unsigned64 count, const int* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const unsigned char* values, unsigned64 count, const short* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const unsigned char* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const char* values, unsigned64 count, const int* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const char* values, unsigned64 count, const short* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const char* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const short* values, unsigned64 count, const int* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const short* values, unsigned64 count, const short* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const short* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const unsigned int* values, unsigned64 count, const int* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const unsigned int* values, unsigned64 count, const short* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const unsigned int* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const int* values, unsigned64 count, const int* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const int* values, unsigned64 count, const short* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const int* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const long* values, unsigned64 count, const int* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const long* values, unsigned64 count, const short* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const long* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const unsigned64* values, unsigned64 count, const int* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const unsigned64* values, unsigned64 count, const short* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const unsigned64* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const signed64* values, unsigned64 count, const int* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const signed64* values, unsigned64 count, const short* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const signed64* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const float* values, unsigned64 count, const int* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const float* values, unsigned64 count, const short* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const float* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const double* values, unsigned64 count, const int* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const double* values, unsigned64 count, const short* lengths, unsigned64 lengthCount);
    virtual unsigned64 setVariableLengthVariableForSetData(const double* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount);
    virtual void       endWritingVariableLengthVariableForSetData();

    /// A named block of `count` values, or a named text, kept with the set data and returned as it came.
    virtual void writeOtherDataForSetData(const std::string& name, const unsigned char* values, unsigned64 count);
    virtual void writeOtherDataForSetData(const std::string& name, const char* values, unsigned64 count);
    virtual void writeOtherDataForSetData(const std::string& name, const short* values, unsigned64 count);
    virtual void writeOtherDataForSetData(const std::string& name, const unsigned int* values, unsigned64 count);
    virtual void writeOtherDataForSetData(const std::string& name, const int* values, unsigned64 count);
    virtual void writeOtherDataForSetData(const std::string& name, const long* values, unsigned64 count);
    virtual void writeOtherDataForSetData(const std::string& name, const unsigned64* values, unsigned64 count);
    virtual void writeOtherDataForSetData(const std::string& name, const signed64* values, unsigned64 count);
    virtual void writeOtherDataForSetData(const std::string& name, const float* values, unsigned64 count);
    virtual void writeOtherDataForSetData(const std::string& name, const double* values, unsigned64 count);
    virtual void writeStringDataForSetData(const std::string& name, const std::string& text);
    virtual void endWritingSetData();
    /// @}

    // ---- 9 particle tracks ----------------------------------------------------------------------------------------

    /// @name Particle tracks
    /// Tracks of one phase, for one mesh, target and partition (-1 for none), in named groups; a group comes in chunks of
    /// `pointCount` track points, numbered as the client likes. Which point belongs to which track is a variable like any
    /// other. A variable is named, or given by its id in the solution model, which stands for its unique name; its values are
    /// the same number per point. startWritingParticleTracks is false here: the format does not take tracks.
    /// The names with the extra syllable are the interface's own. // sic
    /// @{
    virtual bool startWritingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId);
    virtual void startWritingPartiticleTrackGroup(const std::string& name);
    virtual void startWritingChunkInPartiticleTrackGroup(int chunkId, unsigned64 pointCount);
    virtual void setValuesOfParticleTrackVariable(int variableId, const unsigned char* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(int variableId, const char* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(int variableId, const short* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(int variableId, const unsigned int* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(int variableId, const int* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(int variableId, const long* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(int variableId, const unsigned64* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(int variableId, const signed64* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(int variableId, const float* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(int variableId, const double* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(const std::string& variableName, const unsigned char* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(const std::string& variableName, const char* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(const std::string& variableName, const short* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(const std::string& variableName, const unsigned int* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(const std::string& variableName, const int* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(const std::string& variableName, const long* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(const std::string& variableName, const unsigned64* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(const std::string& variableName, const signed64* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(const std::string& variableName, const float* values, unsigned64 count);
    virtual void setValuesOfParticleTrackVariable(const std::string& variableName, const double* values, unsigned64 count);
    virtual void endWritingChunkInPartiticleTrackGroup();
    virtual void endWritingPartiticleTrackGroup();
    virtual void endWritingParticleTracks();
    /// @}

    // ---- not virtual ----------------------------------------------------------------------------------------------

    /// What follows belongs to this time level, which is added to the known ones if it is new. KEL_LATEST_TIME_LEVEL means
    /// the largest known level, or 2147483647 when none is known. A level that cannot be selected (another negative one) is
    /// reported on standard error, and what follows then belongs to the level from before; two lines tell:
    ///
    /// @code
    /// writer.startWritingTimeLevel(level);
    /// if (writer.getTimeLevel() != level) ... // not selected
    /// @endcode
    void startWritingTimeLevel(int level) const;

    /// End of startWritingTimeLevel. Does nothing.
    void endWritingTimeLevel() const;

    /// Precision in which a format stores coordinates and values of variables from now on.
    void setDataPrecision(KelDataPrecisionType precision);

    /// Copies the location model into the writer's own and hands its state to the format (cacheLocationModelState).
    /// Null does nothing.
    void setLocationModel(const KelLocationModel* model) const;

    /// Calls writeMeshAttributes.
    void writeMeshSize() const;

protected:
    /// The precision last set.
    KelDataPrecisionType getDataPrecision() const;

    /// The flag set by inheritVariableAttributes(bool).
    bool inheritVariableAttributes() const;

    // ---- 10 for formats -------------------------------------------------------------------------------------------

    /// Receives the state text of the location model, once per setLocationModel. Nothing here.
    virtual void cacheLocationModelState(const std::string& state) const;

    /// Index of the last log entry of a data class, counted from 0; -1 for none, as here.
    virtual int getLastLogIndex(KelDataClass dataClass) const;
    // clang-format on

private:
    void copyProviderAttributes(const std::string& name, int variableId) const;

    KelDataPrecisionType _dataPrecision;
    bool _inheritVariableAttributes;
};

} // namespace meridyn
