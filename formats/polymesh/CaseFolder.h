#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace meridyn::polymesh {

/// The folders of a case: where its times and its meshes are. Looks at names only, opens nothing.
class CaseFolder {
public:
    /// A folder named by a number.
    struct Time {
        std::string name;
        double value;
    };

    /// @throws FoamError when there is no folder, or no mesh in it
    explicit CaseFolder(const std::string& path);

    /// Whether a folder holds a mesh, in constant/polyMesh or in a time.
    static bool isCase(const std::string& path);

    const std::string& path() const { return _path; }

    /// By value, then by name: "0.5" before "0.50".
    const std::vector<Time>& times() const { return _times; }

    /// Folders with points or faces of a mesh, oldest first: "constant", then names of times. Mesh id n is number n
    /// - 1.
    const std::vector<std::string>& meshes() const { return _meshes; }

    /// The mesh that belongs to a time: the last one not after it.
    std::size_t meshOfTime(std::size_t time) const;

    /// The last mesh up to one that has faces of its own: equal ones share their topology.
    std::size_t topologyOfMesh(std::size_t mesh) const;

    /// A file of a mesh, without ".gz", from the last mesh folder that has it. Points may come from any folder before,
    /// what refers to faces only from those since the faces changed. The path in the mesh's own folder if none has it.
    std::string meshFile(std::size_t mesh, const std::string& name) const;

    /// The files that are read for a mesh, as meshFile names them, sets included.
    std::vector<std::string> filesOfMesh(std::size_t mesh) const;

    /// The files of sets of a mesh: those of the last mesh folder that has any, since the faces changed.
    std::vector<std::string> setsOfMesh(std::size_t mesh) const;

    /// The regular files of a folder below the case, ascending, without ".gz".
    std::vector<std::string> filesIn(const std::string& folder) const;

    /// The path of a file below the case.
    std::string file(const std::string& folder, const std::string& name) const;

private:
    std::string _path;
    std::vector<Time> _times;
    std::vector<std::string> _meshes;
};

} // namespace meridyn::polymesh
