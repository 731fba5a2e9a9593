#pragma once

#include "Failure.h"
#include "KelFileProvider.h"
#include "KelFormat.h"

#include <memory>
#include <string>
#include <vector>

namespace meridyn {
class KelSolutionModel;
}

namespace meridyn::tool {

/// Which mesh of a model a command works on; what is not given is left to the reader, which takes the first.
struct MeshChoice {
    int mesh = 0;       ///< 0: not given
    int target = -1;    ///< a KelTargetCategory; -1: not given
    int partition = -1; ///< -1: not given

    bool isGiven() const { return mesh != 0 || target != -1 || partition != -1; }
};

/// One mesh of a model.
struct MeshName {
    int mesh, target, partition; ///< the partition is -1 for none

    friend bool operator==(const MeshName&, const MeshName&) = default;
};

/// Name of a target: "default", "solver", "partitioned post", "post"; its number for any other.
std::string targetName(int target);

/// A model that lies in files, with the reader of its format.
class Model {
public:
    /// Finds out what lies at a path and makes its reader, with the files named.
    ///
    /// @param formatName  empty: the format that recognises the file
    /// @param choice      the mesh that is opened
    /// @throws Failure when there is nothing, nothing that a format reads, or more than one model of that name
    explicit Model(const std::string& path, const std::string& formatName = "", const MeshChoice& choice = {});

    /// A model whose format and files are known; either file may be empty.
    Model(KelFormat format, std::string path, KelFormatFiles files);
    ~Model();
    Model(const Model&) = delete;
    Model& operator=(const Model&) = delete;

    /// Opens a data class. @throws Failure with the reader's own words, or when the chosen mesh is not there
    void open(KelDataClass dataClass);

    /// Opens what there is of the two data classes.
    void openAll();

    /// Opens a data class with a certain mesh in the place of what is open.
    void openMesh(KelDataClass dataClass, const MeshName& mesh);

    /// Closes what is open.
    void close();

    /// Whether there is a file for a data class.
    bool has(KelDataClass dataClass) const { return !file(dataClass).empty(); }
    const std::string& file(KelDataClass dataClass) const;

    const std::string& path() const { return _path; }
    const KelFormat& format() const { return _format; }
    KelFileProvider& reader() { return *_reader; }

    /// Phases and variables with the attributes that the files hold, whatever mapping files in the environment make of
    /// them.
    const KelSolutionModel& solution() const;

    /// A Failure about one of the model's files: the file's name and the errors that the reader has stored.
    Failure failure(const std::string& otherwise, KelDataClass dataClass);

    /// All meshes of an open data class, in the order of the file; the open one where the format does not tell.
    std::vector<MeshName> meshes(KelDataClass dataClass) const;

    /// Those of them that the choice fits; all without a choice.
    std::vector<MeshName> chosenMeshes(KelDataClass dataClass) const;

    /// Throws Failure when the reader has stored errors: what it gave is then not all that the files hold.
    void expectNoErrors();

private:
    MeshName openedMesh() const;
    void openFile(KelDataClass dataClass);
    void takeChosenMesh(KelDataClass dataClass);

    std::string _path;
    MeshChoice _choice;
    KelFormat _format;
    KelFormatFiles _files;
    std::unique_ptr<KelFileProvider> _reader;
    bool _isOpen[2] = {false, false};
};

/// "<file>: <text>", without the file's name twice: what a text says about the file comes once.
std::string aboutFile(const std::string& file, const std::string& text);

/// The errors that a reader or writer has stored, in one line; `otherwise` when there are none.
std::string errorsOf(KelBase& base, const std::string& otherwise);

/// Name of the kind of a zone: what the file calls it, else that of the enumerator; empty for none.
std::string kindOfZone(const KelBase& base, int zoneId, KelZoneCategory category);

/// "nodes", "edges", "faces", "cells".
const char* categoryName(KelZoneCategory category);

/// "hexahedra", "polyhedra" ...; "kind 17" for an unknown one.
std::string cellTypeName(KelCellType type);

/// Number of elements of a category in the mesh.
unsigned64 meshSize(const KelBase& base, KelZoneCategory category);

/// "7 'wall'".
std::string zoneLabel(const KelBase& base, int zoneId);

/// All four, in the order of their numbers.
extern const std::vector<KelZoneCategory> allCategories;

} // namespace meridyn::tool
