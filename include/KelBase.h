#pragma once

#include "KelExport.h"
#include "KelTypes.h"
#include "KelVersion.h"

#include <list>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace meridyn {

class DataInterface;
class KelLocationModel;
class KelMessageRegistrar;
class KelSettingObject;
class KelSettingsParser;
class KelSolutionModel;
class KelVariableAttributeProvider;

/// What every reader and writer knows about its mesh and its solution.
///
/// Base of KelProvider and KelConsumer, inherited virtually, so that a format has exactly one. It keeps zones and
/// their properties, the mesh context, time levels, phases and variables, settings, locations and messages, and
/// interprets as little of them as it can.
///
/// Reports   three channels, fixed per operation: one line on standard output; a record in the message store;
///           a bool or a default value. Nothing throws, and a rejected call changes nothing.
/// Zones     ids are any int, unique over all four categories. Element ids count from 1; 0 is none.
/// Memory    what it creates it owns; what is handed to it stays the caller's unless said otherwise.
/// Threads   one thread at a time per object. Objects of different threads are made and used at any time: what the
///           process does once is guarded, and nothing else is shared.
///
/// Groups    1 life and switches   2 messages   3 zones   4 zone information   5 adjacency   6 mesh context
///           7 time levels and phases   8 mesh sizes   9 applications and variable names   10 settings
///           11 hooks   12 for readers and writers
class KEL_API KelBase : public KelVersion {
public:
    // ---- 1 life and switches ---------------------------------------------------------

    /// What setMeshContext loads again after the context changed: a set of bits.
    enum UpdateMethod : int {
        KEL_UPDATE_NONE = 0,         ///< nothing: the client opens the data classes itself
        KEL_UPDATE_CASE = 1,         ///< the case, while no mesh is loaded (dimension 0)
        KEL_UPDATE_DATA = 2,         ///< the data, while no phase is defined
        KEL_UPDATE_CASE_AND_DATA = 3 ///< both, the case first
    };

    /// The settings group that readers and writers use when none is named: "settings".
    static const std::string _defaultSettingsPath;

    /// No mesh (id -1, dimension 0), no zones, no phases, solver type "MERIDYN_GENERIC". The first one of a process
    /// looks for variable mapping files: others that are made meanwhile, by other threads, wait for the answer. What
    /// could not be read, and the report that KEL_REPORT_VARIABLE_CONFIGS asks for, come from one object of the
    /// process.
    KelBase();
    KelBase(const KelBase&) = delete;
    KelBase& operator=(const KelBase&) = delete;
    virtual ~KelBase();

    /// Switches the diagnostics of a format. Does nothing here.
    virtual void setDebugOn(bool on);
    /// Switches the reading of interface data of a format. Does nothing here.
    virtual void setReadNCIOn(bool on);

    // ---- 2 messages ------------------------------------------------------------------
    // The store is a lazy mailbox: records of a severity stay until it has been collected, and the first record
    // of that severity posted afterwards sweeps those that were there.

    /// Whether a record of the severity is stored, collected or not.
    /// @{
    bool hasError() const;
    bool hasWarning() const;
    bool hasInfo() const;
    /// @}

    /// Collects the texts of a severity, oldest first.
    ///
    /// @param formatted  puts the severity in front: "Error:", "Warning:" or "Info:", a line end and a tab
    /// @param clear      drops the records at once; otherwise they stay until the next one of their severity
    /// @{
    std::vector<std::string> getErrors(bool formatted, bool clear);
    std::vector<std::string> getWarnings(bool formatted, bool clear);
    std::vector<std::string> getInfos(bool formatted, bool clear);
    /// @}

    /// The object's own message store, to post to. Stays the object's.
    KelMessageRegistrar* getMessageRegistrar() const;

    // ---- 3 zones ---------------------------------------------------------------------

    /// Number of zones of a category; 0 with a warning line for one outside 0..3.
    virtual unsigned64 getNumZones(KelZoneCategory category) const;

    /// Ids of a category's zones in the order in which they were declared; empty with a warning line for a category
    /// outside 0..3.
    virtual void getZoneIds(KelZoneCategory category, std::vector<int>& ids) const;

    /// Declares all zones of a category, and so resets every value of that category, also of zones that stay.
    ///
    /// Refused with a warning line, in this order: an id given twice; an id in use in another category; a category
    /// outside 0..3. An id that is left out keeps answering its category, but has no values any more: reads give
    /// 0 or an empty text without a warning, writes are dropped.
    void setZoneIds(KelZoneCategory category, const std::vector<int>& ids);

    /// Sets a size of a zone.
    ///
    /// An id never declared gives a warning line; a zone dropped by a later setZoneIds ignores the call; a type
    /// that cannot be set, KEL_ZONE_ELEMENT_COUNT among them, posts a KelWarning. A last id below the first is
    /// accepted.
    void setZoneSizeInfo(int zoneId, KelZoneSizeType type, unsigned64 value);

    /// Gives one size of a zone.
    ///
    /// @param type   KEL_ZONE_ELEMENT_COUNT is derived: last - first + 1, or 0 while the first id is 0; it wraps
    ///               when the last id is below the first
    /// @param value  set to 0 first, and 0 whenever there is no answer
    ///
    /// An id never declared gives a warning line, a zone that was dropped answers 0 silently, an unknown type
    /// posts a KelWarning.
    void getZoneSizeInfo(int zoneId, KelZoneSizeType type, unsigned64& value) const;

    /// Sets a text of a zone. An id never declared, or dropped, is ignored silently; an unknown type posts a
    /// KelWarning.
    void setZoneStringInfo(int zoneId, KelZoneStringInfoType type, const std::string& text);

    /// Gives a text of a zone. An id never declared gives a warning line and leaves `text` alone; a dropped zone
    /// and an unknown type give an empty text, the latter with a KelWarning.
    void getZoneStringInfo(int zoneId, KelZoneStringInfoType type, std::string& text) const;

    // ---- 4 zone information ----------------------------------------------------------

    /// @name Numbers of a zone
    /// Kept and returned without interpretation, 32 bits wide except value 0 of faces and cells, which keeps 16
    /// and returns them with their sign.
    /// An id that is no zone of the category gives a warning line, a dropped zone ignores the call.
    /// A getter sets `value` to -1 first; for a dropped zone it gives -1 for nodes and cells, 0 for edges and faces.
    /// An unknown type gives a warning line, for edges a KelWarning record; the getters of edges and faces then
    /// give 0, those of nodes and cells -1.
    /// setFaceZoneInfo also takes 6 and 7: the zone's list of cell zones on side 0 or 1 becomes that one value.
    /// @{
    void setNodeZoneInfo(int zoneId, KelNodeZoneInfoType type, int value) const;
    void getNodeZoneInfo(int zoneId, KelNodeZoneInfoType type, int& value) const;
    void setEdgeZoneInfo(int zoneId, KelEdgeZoneInfoType type, int value);
    void getEdgeZoneInfo(int zoneId, KelEdgeZoneInfoType type, int& value) const;
    void setFaceZoneInfo(int zoneId, KelFaceZoneInfoType type, int value) const;
    void getFaceZoneInfo(int zoneId, KelFaceZoneInfoType type, int& value) const;
    void setCellZoneInfo(int zoneId, KelCellZoneInfoType type, int value);
    void getCellZoneInfo(int zoneId, KelCellZoneInfoType type, int& value) const;
    /// @}

    /// @name Kind of a zone
    /// The same number as KEL_EDGE_ZONE_INFO_0 and KEL_FACE_ZONE_INFO_TYPE. The setters ignore an id that is no
    /// zone of the category. The getters give -1 and a warning line for it, and 0 for a dropped zone.
    /// @{
    void setEdgeZoneType(int zoneId, KelEdgeZoneType type);
    void getEdgeZoneType(int zoneId, KelEdgeZoneType& type) const;
    void setFaceZoneType(int zoneId, KelFaceZoneType type);
    void getFaceZoneType(int zoneId, KelFaceZoneType& type) const;
    /// @}

    /// Sets bit `property` of a face zone's flags; there is no way to clear a single one. An id that is no face
    /// zone, and a property outside 0..6, give a warning line.
    void setFaceZoneProp(int zoneId, KelFaceZonePropType property);
    /// Whether bit `property` of a face zone's flags is set. False for a dropped zone; false with a warning line for
    /// an id that is no face zone and for a property outside 0..6.
    bool getFaceZoneProp(int zoneId, KelFaceZonePropType property) const;

    /// Replaces all 32 flags of a face zone. Silent for an id that is no declared face zone.
    void setAllFaceZoneFlags(int zoneId, int flags);
    /// Gives all 32 flags of a face zone, 0 for an id that is no declared face zone.
    void getAllFaceZoneFlags(int zoneId, int& flags) const;

    // ---- 5 adjacency -----------------------------------------------------------------

    /// @name Zones beside a zone
    /// The cell zones on side 0 and on side 1 of a face zone, and the face zones around a cell zone, in stored order;
    /// ids below 1 stand for "no zone on this side" and are left out. The first call of any of the three on an
    /// object runs setZoneAdjacency, whatever the id. `ids` is replaced; an id of another category or none gives an
    /// empty list and posts a KelError, a dropped zone an empty list.
    /// @{
    void getFaceCellZone0Ids(int faceZoneId, std::list<int>& ids);
    void getFaceCellZone1Ids(int faceZoneId, std::list<int>& ids);
    void getCellFaceZoneIds(int cellZoneId, std::list<int>& ids);
    /// @}

    // ---- 6 mesh context --------------------------------------------------------------

    /// Id of the mesh, -1 until one is chosen.
    int getMeshId() const;
    /// Id of the partition, -1 until one is chosen.
    int getPartitionId() const;
    /// What the mesh is prepared for, 0 at first.
    KelTargetCategory getTarget() const;

    /// @name Choosing a mesh
    /// Each changes one item through setMeshContext with KEL_UPDATE_CASE_AND_DATA and gives its answer: whether
    /// what had to be loaded was. An id below 1, a target of -1 and a negative partition keep what is there.
    /// @{
    bool setMeshId(int meshId);
    bool setTarget(KelTargetCategory target);
    bool setPartitionId(int partitionId); ///< Kept only under KEL_PARTITIONED_POST, see setMeshContext.
    /// @}

    // ---- 7 time levels and phases ----------------------------------------------------

    /// The time level chosen last, 0 at first.
    int getTimeLevel() const;
    /// All known time levels, in the order in which they were added. Valid as long as the object.
    const std::vector<int>& getTimeLevels() const;

    /// Replaces `phaseIds` with the ids of all phases, ascending; -1 is the mixture.
    void getPhaseIds(std::vector<short>& phaseIds) const;
    /// Gives the unique name of a phase and true; an empty name and false for an unknown phase.
    bool getPhaseName(short phaseId, std::string& name) const;
    /// The unique name of a phase, empty for an unknown phase.
    std::string getPhaseName(short phaseId) const;

    // ---- 8 mesh sizes ----------------------------------------------------------------

    /// Sets a mesh-wide size. A type outside 0..4 gives a warning line.
    void setMeshSize(KelMeshSizeType type, unsigned64 size);
    /// Gives a mesh-wide size. A type outside 0..4 gives 0 and a warning line.
    void getMeshSize(KelMeshSizeType type, unsigned64& size) const;

    /// Sets the unit of the coordinates, any text.
    void setMeshUnits(const std::string& units);
    /// Gives the unit of the coordinates, empty until set.
    void getMeshUnits(std::string& units) const;

    // ---- 9 applications and variable names -------------------------------------------

    /// Chooses the solver whose names the variables bear, and installs the matching attribute provider if there is
    /// one. Nothing happens when it is the current one.
    virtual void setSolverType(std::string solverType);
    /// The solver type, "MERIDYN_GENERIC" at first.
    std::string getSolverType() const;

    /// Sets the name of the calling application.
    void setApplicationName(const std::string& name);

    /// Installs a provider of variable names and attributes, or none.
    ///
    /// @param provider  may be null
    /// @param owns      whether the object deletes it when it is replaced or the object ends; otherwise it must
    ///                  outlive its being installed
    ///
    /// Never install the provider that is installed: it would be destroyed and stay installed.
    void setVariableAttributeProvider(const KelVariableAttributeProvider* provider, bool owns);

    /// The model of named locations. The first call runs initLocationModel. Stays the object's.
    const KelLocationModel* getLocationModel() const;

    // ---- 10 settings -----------------------------------------------------------------

    /// Registers a parser under its name(), in place of the one that had it. The parser stays the caller's and must
    /// outlive the last addSetting.
    void registerSettingsParser(KelSettingsParser* parser);

    /// Has a parser turn one setting into a path and a value, and stores it.
    ///
    /// @param parserName  a registered name; for any other the parser "MERIDYN_GENERIC" is asked
    /// @return the parser's answer; false when there is no parser. Nothing is stored then.
    bool addSetting(KelDataClass dataClass, const std::string& text1, const std::string& text2,
                    const std::string& parserName);

    /// Has a parser turn a block of settings into paths and values, and stores them in ascending order of the
    /// paths. Otherwise as addSetting.
    bool addSettingsDataSet(KelDataClass dataClass, const std::string& text1, const std::string& text2,
                            const std::string& parserName, const std::vector<std::string>& keywords);

protected:
    // ---- 11 hooks --------------------------------------------------------------------

    /// Fills the adjacency of the zones, once per object, when it is first asked for. Does nothing here.
    virtual void setZoneAdjacency();
    /// Fills the location model, once per object, when it is first asked for. Does nothing here.
    virtual void initLocationModel() const;
    /// Loads a data set again and says whether it could. Gives false here.
    virtual bool updateData(KelDataClass dataClass);

    // ---- 12 for readers and writers --------------------------------------------------

    /// The category of a zone id, -1 for one never declared.
    KelZoneCategory getZoneCategory(int zoneId) const;
    /// Gives ids a category without any check and without making zones of them.
    void setZoneCategory(const std::vector<int>& zoneIds, KelZoneCategory category);

    /// Gives the zones of a category with their first element ids, ascending by first id. Of zones with the same
    /// first id only the one declared last is given, and the slots behind it are not written; those that `zones`
    /// already had keep their old contents. A category outside 0..3 leaves `zones` alone.
    void getSortedMinIdZoneId(KelZoneCategory category, std::vector<std::pair<unsigned64, int>>& zones) const;

    /// @name Setting zones beside a zone
    /// By zone id. Ids that are no zones of the category are skipped.
    /// @{
    void setFaceCellZone0Ids(const std::map<int, std::list<int>>& cellZoneIds);
    void setFaceCellZone1Ids(const std::map<int, std::list<int>>& cellZoneIds);
    void setCellFaceZoneIds(const std::map<int, std::list<int>>& faceZoneIds);
    /// @}

    /// Changes the mesh context and loads what is missing.
    ///
    /// @param meshId       below 1: keeps the current one
    /// @param target       -1: keeps the current one
    /// @param partitionId  negative: keeps the current one
    /// @param method       what to load, see UpdateMethod
    /// @return false when updateData was called and failed; after a failed case no data is asked for
    ///
    /// Any change drops sizes, units and zones, and leaves the solution model, time levels and active phase alone.
    /// A partition id is kept only when `target` is KEL_PARTITIONED_POST; under another one a new partition id
    /// drops the mesh data all the same.
    bool setMeshContext(int meshId, KelTargetCategory target, int partitionId, UpdateMethod method);

    /// Drops sizes, units and zones, as a change of the mesh context does, and with them what zone ids are used for;
    /// the context itself stays. A reader calls it before it declares another mesh.
    void dropMesh();

    /// Adds a time level; a negative or known one is ignored.
    void addTimeLevel(int timeLevel) const;
    /// Chooses a known time level, or the largest for KEL_LATEST_TIME_LEVEL. False, and no change, when it is unknown.
    bool setTimeLevel(int timeLevel) const;

    /// @name Active phase
    /// Set by id or unique name, got as one or the other; 0 at first. False for a phase that the solution model
    /// does not have: nothing is set, and the getters give 0 or an empty name.
    /// @{
    bool setActivePhase(short phaseId) const;
    bool setActivePhase(const std::string& name) const;
    bool getActivePhase(short& phaseId) const;
    bool getActivePhase(std::string& name) const;
    /// @}

    /// The group of a phase in a file: its dataset name, or its unique name when that is missing or empty; empty
    /// for an unknown phase.
    std::string getGroupNameForPhase(short phaseId) const;

    /// Sets all five mesh-wide sizes in the order of KelMeshSizeType.
    void setMeshSize(unsigned64 dimension, unsigned64 size1, unsigned64 size2, unsigned64 size3, unsigned64 size4);

    /// The name of the calling application, empty until set.
    std::string getApplicationName() const;

    /// How this library fares with a file's version: a major number, optionally a point and a minor number.
    /// A text without a leading number, or with one beyond an int, gives KEL_READABLE; such a minor number counts
    /// as 0.
    KelReadable isSupported(const std::string& version) const;

    /// The model of phases and variables. Stays the object's.
    KelSolutionModel* solutionModel() const;
    /// The model of named locations, without running initLocationModel. Stays the object's.
    KelLocationModel* locationModel() const;

    /// The installed provider of variable attributes, may be null.
    const KelVariableAttributeProvider* variableAttributeProvider() const;
    /// The same, for the questions that are not const: this is the one place where the const is cast away.
    KelVariableAttributeProvider* attributeProvider() const;

    /// The vocabulary to which the current provider translates, second argument of
    /// initializeVariableAttributeProvider; empty until set.
    const std::string& variableMappingSource() const;
    /// Sets the vocabulary alone: the provider stays as it is.
    void setVariableMappingSource(const std::string& vocabulary);

    /// Looks for variable mapping files, once per process.
    void initializeVariableMappingConfigurations();
    /// Installs the provider that leads from the vocabulary `source` to `target`, if there is one; an empty target
    /// stands for the source. Keeps the target as variableMappingSource.
    void initializeVariableAttributeProvider(const std::string& source, const std::string& target);

    /// @name Variables by zone category
    /// @{
    /// Notes that a variable has values in zones of a category; a category outside 0..3 is ignored.
    void addVariableOfCategory(int variableId, KelZoneCategory category) const;
    /// Replaces `variableIds` with the noted ones, ascending; empty for a category outside 0..3.
    void getVariablesOfCategory(KelZoneCategory category, std::vector<int>& variableIds) const;
    /// Forgets all of them, in every category.
    void clearVariablesOfCategories() const;
    /// @}

    /// Looks an entry of the settings up.
    ///
    /// @param name   "/"-separated path to a value or a group
    /// @param index  negative: the entry itself, a value before a group of the same name; n >= 0: the n-th group
    ///               that bears the last piece of the path as its name
    /// @return the arbor entry, for a KelVariant, or null. Belongs to the settings.
    const void* lookupSetting(const std::string& name, short index) const;
    /// The root of all settings that addSetting stored. Stays the object's.
    const KelSettingObject* settingsObject() const;

private:
    /// Runs setZoneAdjacency if it has not run yet.
    void prepareAdjacency();

    std::unique_ptr<DataInterface> _data;
    const KelVariableAttributeProvider* _variableAttributeProvider = nullptr;
    std::string _applicationName;
    std::string _solverType;
    std::string _variableMappingSource;
    mutable bool _locationModelReady = false;
    std::unique_ptr<KelLocationModel> _locationModel;
    std::map<std::string, KelSettingsParser*> _settingsParsers;
    bool _ownsVariableAttributeProvider = false;
};

} // namespace meridyn
