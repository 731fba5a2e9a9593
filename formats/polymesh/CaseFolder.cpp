#include "CaseFolder.h"

#include "ByteSource.h"
#include "FoamError.h"
#include "FoamReader.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <system_error>

namespace meridyn::polymesh {

namespace {

namespace fs = std::filesystem;

bool hasMesh(const std::string& folder)
{
    return ByteSource::exists(folder + "/polyMesh/points") || ByteSource::exists(folder + "/polyMesh/faces");
}

std::vector<CaseFolder::Time> findTimes(const std::string& path)
{
    std::vector<CaseFolder::Time> times;
    std::error_code error;
    for (fs::directory_iterator entry(path, error), end; !error && entry != end; entry.increment(error)) {
        std::string name = entry->path().filename().string();
        std::error_code ignored;
        double value = 0;
        if (foamNumber(name, value) && std::isfinite(value) && entry->is_directory(ignored))
            times.push_back({std::move(name), value});
    }
    std::sort(times.begin(), times.end(),
              [](const auto& a, const auto& b) { return a.value != b.value ? a.value < b.value : a.name < b.name; });
    return times;
}

} // namespace

CaseFolder::CaseFolder(const std::string& path) : _path(path)
{
    while (_path.size() > 1 && _path.back() == '/')
        _path.pop_back();
    std::error_code error;
    if (!fs::is_directory(_path, error))
        throw FoamError(path + ": expected the folder of a case, found " +
                        (fs::exists(_path, error) ? "a file" : "nothing"));
    _times = findTimes(_path);
    if (hasMesh(_path + "/constant"))
        _meshes.emplace_back("constant");
    for (const Time& time : _times)
        if (hasMesh(_path + "/" + time.name))
            _meshes.push_back(time.name);
    if (_meshes.empty())
        throw FoamError(_path + ": expected a mesh in constant/polyMesh or in the folder of a time, found none");
}

bool CaseFolder::isCase(const std::string& path)
{
    std::error_code error;
    if (!fs::is_directory(path, error))
        return false;
    if (hasMesh(path + "/constant"))
        return true;
    const std::vector<Time> times = findTimes(path);
    return std::any_of(times.begin(), times.end(), [&](const Time& time) { return hasMesh(path + "/" + time.name); });
}

std::size_t CaseFolder::meshOfTime(std::size_t time) const
{
    std::size_t mesh = 0;
    for (std::size_t n = 0; n <= time && n < _times.size(); ++n)
        if (mesh + 1 < _meshes.size() && _meshes[mesh + 1] == _times[n].name)
            ++mesh;
    return mesh;
}

std::size_t CaseFolder::topologyOfMesh(std::size_t mesh) const
{
    while (mesh > 0 && !ByteSource::exists(file(_meshes[mesh] + "/polyMesh", "faces")))
        --mesh;
    return mesh;
}

std::string CaseFolder::meshFile(std::size_t mesh, const std::string& name) const
{
    const std::size_t oldest = name == "points" ? 0 : topologyOfMesh(mesh);
    for (std::size_t n = mesh + 1; n-- > oldest;)
        if (ByteSource::exists(file(_meshes[n] + "/polyMesh", name)))
            return file(_meshes[n] + "/polyMesh", name);
    return file(_meshes[mesh] + "/polyMesh", name);
}

std::vector<std::string> CaseFolder::filesOfMesh(std::size_t mesh) const
{
    std::vector<std::string> files = setsOfMesh(mesh);
    for (const char* name :
         {"points", "faces", "owner", "neighbour", "boundary", "cellZones", "faceZones", "pointZones"})
        if (std::string path = meshFile(mesh, name); ByteSource::exists(path))
            files.push_back(std::move(path));
    return files;
}

std::vector<std::string> CaseFolder::setsOfMesh(std::size_t mesh) const
{
    std::vector<std::string> files;
    const std::size_t oldest = topologyOfMesh(mesh);
    for (std::size_t n = mesh + 1; n-- > oldest && files.empty();)
        for (const std::string& name : filesIn(_meshes[n] + "/polyMesh/sets"))
            files.push_back(file(_meshes[n] + "/polyMesh/sets", name));
    return files;
}

std::vector<std::string> CaseFolder::filesIn(const std::string& folder) const
{
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(_path + "/" + folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code ignored;
        if (!entry->is_regular_file(ignored))
            continue;
        std::string name = entry->path().filename().string();
        if (name.size() > 3 && name.compare(name.size() - 3, 3, ".gz") == 0)
            name.resize(name.size() - 3);
        names.push_back(std::move(name));
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

std::string CaseFolder::file(const std::string& folder, const std::string& name) const
{
    return _path + "/" + folder + "/" + name;
}

} // namespace meridyn::polymesh
