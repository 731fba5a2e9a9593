#pragma once

#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"
#include "formats/hdf5/model/DataWriter.h"
#include "formats/hdf5/model/MeshWriter.h"
#include "formats/hdf5/model/SetWriter.h"
#include "formats/hdf5/model/TrackWriter.h"
#include "formats/hdf5/model/ZoneStore.h"
#include "KelHdf5Consumer.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelSolutionModel.h"

#include <exception>

namespace meridyn {

/// What a writer of files keeps between calls.
struct KelHdf5Consumer::Data {
    explicit Data(KelHdf5Consumer& consumer) : writer(consumer) {}

    /// What KelBase says about a mesh, taken when it is known to be complete.
    struct MeshState : KelMeshDescription {
        hdf5::MeshDescription description() const;
    };

    /// A data class that is being written.
    struct Session {
        std::string path;
        std::unique_ptr<hdf5::Hdf5File> file;
        std::optional<hdf5::MeshKey> key; ///< the mesh that is being written, none before its first array
        hdf5::Handle mesh;                ///< group of that mesh
        std::optional<MeshState> stored;  ///< its zones and sizes, as writeMeshSize found them
        hdf5::TextPairs log;
        bool hasFailed = false;
        bool hasNewLog = false;
    };

    KelHdf5Consumer& writer;
    std::unique_ptr<Session> sessions[2];
    hdf5::LockChoice locks;
    KelDataClass current = KEL_CASE; ///< the class that was opened last and is still open
    int compression = 0;

    std::unique_ptr<hdf5::MeshWriter> mesh;                ///< of the case
    std::map<hdf5::MeshKey, KelMeshDescription> completed; ///< meshes of the case that were finished
    std::unique_ptr<hdf5::DataWriter> solution;            ///< of the data
    hdf5::FieldWriter* values = nullptr;                   ///< the variable that was started, belongs to `solution`
    std::optional<int> droppedWhileSelected;               ///< the level that was selected when it was dropped

    std::map<std::string, std::unique_ptr<hdf5::FieldWriter>> sections; ///< case sections by "<category>/<name>"
    KelZoneCategory sectionCategory = KEL_CELL_ZONE;
    hdf5::FieldWriter* section = nullptr;
    KelPlainDataType sectionType = KEL_PLAIN_DOUBLE;
    std::vector<int> interfaceZones[2];

    std::unique_ptr<hdf5::SetWriter> set;
    KelDataClass setClass = KEL_CASE; ///< that the set belongs to
    std::unique_ptr<hdf5::SetDataWriter> setData;
    std::unique_ptr<hdf5::TrackWriter> tracks;

    std::string locations;
    bool hasLocations[2] = {false, false}; ///< which file gets them

    Session* session(KelDataClass dataClass) const
    {
        return dataClass == KEL_CASE || dataClass == KEL_DATA ? sessions[dataClass].get() : nullptr;
    }

    void post(const std::string& text, const char* function) const
    {
        writer.getMessageRegistrar()->registerMessage(KelError(text, function));
    }

    /// The time level that was chosen, none without one.
    std::optional<int> selectedLevel() const;

    /// Where the values of the chosen time level go; of the active phase in it; of a certain phase.
    /// @{
    hid_t levelGroup();
    hdf5::Handle phaseGroup();
    hdf5::Handle phaseGroup(short phaseId);
    /// @}

    /// What the file calls a phase and a variable of the solution model.
    /// @{
    const hdf5::Catalogue::Phase& phase(short phaseId);
    const hdf5::Catalogue::Variable& variable(short phaseId, int variableId);
    void mergeCatalogue();
    /// @}

    /// Type in which floating-point values are stored, none for the one in which they come; that of some.
    /// @{
    std::optional<hdf5::Stored> precision() const;
    hdf5::Stored realType(const KelValues& reals) const;
    /// @}

    void startVariable(KelZoneCategory category, int variableId, const std::vector<int>& zoneIds, unsigned64 size);

    /// Declares zones of a field. An empty list stands for all zones of the category, and without zones for all
    /// elements of the mesh.
    void addZones(hdf5::FieldWriter& field, KelZoneCategory category, const std::vector<int>& zoneIds) const;

    std::vector<hdf5::ZoneRange> zoneRanges(KelZoneCategory category) const;
    unsigned64 meshSize(int type) const;
    hdf5::MeshDescription currentMesh() const;
    MeshState takeState() const;

    hdf5::LockSettings lockSettings() const; ///< posts what is wrong with those of the environment
    void open(Session& session, KelDataClass dataClass);
    void startMesh(Session& session, KelDataClass dataClass, const hdf5::MeshKey& key);
    void finishMesh(Session& session, KelDataClass dataClass, MeshState state);
    KelDerivedValues finishCase(MeshState& state);
    KelDerivedValues finishSolution(MeshState& state);
    void dropLevelsFrom(Session& session, int level);

    /// Makes the mesh that is current the one that is written. Another one before it is finished with the zones and
    /// sizes that writeMeshSize has stored, since KelBase has them no more.
    void followMesh(Session& session, KelDataClass dataClass);

    /// Drops what refers into the file of a data class.
    void forget(KelDataClass dataClass);

    /// Does a piece of work for a file that is being written. What goes wrong is posted, once per file, and the file is
    /// then not kept; without a file the call is reported and ignored.
    template <class Work>
    bool attempt(KelDataClass dataClass, const char* function, Work&& work) const
    {
        Session* const target = session(dataClass);
        if (target == nullptr) {
            post(std::string("no ") + (dataClass == KEL_DATA ? "data" : "case") + " file is being written", function);
            return false;
        }
        if (target->hasFailed)
            return false;
        try {
            const hdf5::QuietErrors quiet;
            work(*target);
            return true;
        } catch (const std::exception& error) {
            target->hasFailed = true;
            post(target->path + ": " + error.what(), function);
            return false;
        }
    }

    /// The same for work on the current mesh.
    template <class Work>
    bool attemptOnMesh(KelDataClass dataClass, const char* function, Work&& work)
    {
        return attempt(dataClass, function, [&](Session& target) {
            followMesh(target, dataClass);
            work(target);
        });
    }

    /// The same for work that cannot be done.
    void refuse(KelDataClass dataClass, const char* function, const std::string& reason)
    {
        attemptOnMesh(dataClass, function, [&reason](Session&) { throw hdf5::FormatError(reason); });
    }

    /// The same for work on the writer of the mesh, or of what a start marker has opened.
    /// @{
    template <class Work>
    bool onMesh(const char* function, Work&& work)
    {
        return attemptOnMesh(KEL_CASE, function, [&](Session&) { work(*mesh); });
    }

    template <class Work>
    bool onField(KelArray array, const char* function, Work&& work)
    {
        const bool isSection = array == KelArray::CaseSection;
        return attemptOnMesh(isSection ? KEL_CASE : KEL_DATA, function, [&](Session&) {
            hdf5::FieldWriter* const field = isSection ? section : values;
            if (field == nullptr)
                throw hdf5::FormatError(std::string("values of a ") + (isSection ? "case section" : "variable") +
                                        " that was not started");
            work(*field);
        });
    }

    template <class Work>
    bool onSet(const char* function, Work&& work)
    {
        return onStarted(set, setClass, "set", function, work);
    }

    template <class Work>
    bool onSetData(const char* function, Work&& work)
    {
        return onStarted(setData, KEL_DATA, "set data", function, work);
    }

    template <class Work>
    bool onMembers(KelCollection in, const char* function, Work&& work)
    {
        return in == KelCollection::Set ? onSet(function, work) : onSetData(function, work);
    }

    template <class Work>
    bool onTracks(const char* function, Work&& work)
    {
        return onStarted(tracks, KEL_DATA, "particle tracks", function, work);
    }
    /// @}

private:
    template <class Object, class Work>
    bool onStarted(const std::unique_ptr<Object>& object, KelDataClass dataClass, const char* what,
                   const char* function, Work&& work)
    {
        return attemptOnMesh(dataClass, function, [&](Session&) {
            if (!object)
                throw hdf5::FormatError(std::string("no ") + what + " was started");
            work(*object);
        });
    }
};

} // namespace meridyn
