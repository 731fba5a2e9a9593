#pragma once

#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"
#include "formats/hdf5/model/Catalogue.h"
#include "formats/hdf5/model/FileIdentity.h"
#include "formats/hdf5/model/MeshReader.h"
#include "formats/hdf5/model/SetReader.h"
#include "KelHdf5Provider.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelSolutionModel.h"

#include <exception>
#include <map>
#include <optional>
#include <set>

namespace meridyn {

/// The type of what is not there.
constexpr auto noType = static_cast<KelPlainDataType>(-1);

/// What a reader of files keeps between calls.
struct KelHdf5Provider::Data {
    explicit Data(KelHdf5Provider& provider) : reader(provider) {}

    /// A data class that is being read.
    struct Session {
        std::string path;
        std::unique_ptr<hdf5::Hdf5File> file;
        hdf5::Handle mesh; ///< group of the mesh, none in a file without meshes
    };

    KelHdf5Provider& reader;
    std::unique_ptr<Session> sessions[2];
    hdf5::LockChoice locks;
    KelDataClass current = KEL_CASE; ///< opened last and still open
    bool skipsZones = false;
    bool wasAskedForLocations = false;

    std::unique_ptr<hdf5::MeshReader> mesh; ///< of the case

    KelZoneCategory sectionCategory = KEL_CELL_ZONE;
    std::unique_ptr<hdf5::FieldReader> section;
    KelPlainDataType sectionType = noType; ///< in which its values came

    hdf5::Catalogue catalogue; ///< of the data
    std::set<std::string> levels;
    std::unique_ptr<hdf5::FieldReader> values;

    std::unique_ptr<hdf5::MemberReader> set;
    KelDataClass setClass = KEL_CASE;               ///< that the set belongs to
    std::unique_ptr<hdf5::ArrayReader> setVariable; ///< values or lengths that were started
    std::unique_ptr<hdf5::ListTable> setLists;
    std::unique_ptr<hdf5::MemberReader> setData;

    hdf5::Handle tracks;
    hdf5::Handle trackGroup;
    hdf5::Handle chunk;

    Session* session(KelDataClass dataClass) const
    {
        return dataClass == KEL_CASE || dataClass == KEL_DATA ? sessions[dataClass].get() : nullptr;
    }

    hdf5::LockSettings lockSettings() const; ///< posts what is wrong with those of the environment
    void open(Session& session, KelDataClass dataClass);
    void loadCase(Session& session, const hdf5::MeshKey& key);
    void loadSolution(Session& session, const hdf5::MeshKey& key);
    void loadLocations() const;
    void applyZones(Session& session);
    void adopt(const hdf5::MeshKey& key);
    void clearMesh();
    bool hasMesh() const;
    hdf5::MeshKey chosenMesh() const;

    /// Drops what refers into the file of a data class.
    void forget(KelDataClass dataClass);

    /// Group of the time level that is read; invalid when there is none.
    hdf5::Handle levelGroup() const;

    /// Group of a phase in it, and a group in that, by path of link names; invalid when there is none.
    /// @{
    hdf5::Handle phaseGroup(const std::string& phase) const;
    hdf5::Handle groupInPhase(const std::string& phase, const char* name) const;
    /// @}

    hdf5::Handle setsGroup(KelDataClass dataClass) const; ///< invalid when there is none
    hdf5::Handle setDataGroup() const;                    ///< of the active phase, invalid when there is none
    std::string activePhase() const;                      ///< its unique name; empty without one
    const hdf5::Catalogue::Variable* variable(const std::string& phase, const std::string& name) const;

    /// @name What was started
    /// @{
    KelDataClass classOf(KelArray array) const;
    KelDataClass classOf(KelCollection in) const { return in == KelCollection::Set ? setClass : KEL_DATA; }
    unsigned64 read(KelArray array, unsigned64 first, unsigned64 last, const KelBuffer& buffer) const;
    unsigned64 readSet(KelArray array, unsigned64 first, unsigned64 last, const KelBuffer& buffer) const;
    const hdf5::MemberReader* members(KelCollection in) const; ///< null when none was started
    std::unique_ptr<hdf5::ArrayReader> array(KelCollection in, KelPart part, const std::string& name) const;
    KelPlainDataType typeOf(KelCollection in, const hdf5::ArrayReader& array) const;
    /// @}

    void post(const Session& session, const std::string& text, const char* function) const
    {
        reader.getMessageRegistrar()->registerMessage(KelError(session.path + ": " + text, function));
    }

    /// The answer of a piece of work on an open file; `absent` without one, or when something goes wrong, which is
    /// posted.
    template <class Answer, class Work>
    Answer ask(KelDataClass dataClass, const char* function, Answer absent, Work&& work) const
    {
        Session* const target = session(dataClass);
        if (target == nullptr)
            return absent;
        try {
            const hdf5::QuietErrors quiet;
            if (target->file && target->file->noticesReplacement())
                reader.getMessageRegistrar()->registerMessage(
                    KelWarning(target->path + ": was replaced or removed since it was opened; what is read is what was "
                                              "opened, until startReading opens the file that now has this name",
                               function));
            return work(*target);
        } catch (const std::exception& error) {
            post(*target, error.what(), function);
            return absent;
        }
    }

    template <class Answer, class Work>
    Answer askMesh(const char* function, Answer absent, Work&& work) const
    {
        if (!mesh)
            return absent;
        return ask(KEL_CASE, function, absent, [&](Session&) { return work(*mesh); });
    }

    template <class Answer, class Work>
    Answer askSet(const char* function, Answer absent, Work&& work) const
    {
        if (!set)
            return absent;
        return ask(setClass, function, absent, [&](Session&) { return work(*set); });
    }
};

} // namespace meridyn
