#include "Model.h"

#include "KelFormatRegistry.h"
#include "Numbers.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace meridyn::tool {

const std::vector<KelZoneCategory> allCategories = {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE};

/// Why no format takes a path.
static std::string whyUnknown(const std::string& path)
{
    std::error_code error;
    if (!std::filesystem::exists(path, error) && !error)
        return "no such file";
    return error ? error.message() : "no format recognises it; 'kel formats' lists those that can be read";
}

/// The first file that a format has for a name.
static std::string fileBehind(const KelFormat& format, const std::string& path)
{
    const KelFormatFiles files = format.files(path, false);
    return files.caseFile.empty() ? files.dataFile : files.caseFile;
}

/// Refuses a name that could mean two things, with both of them.
static void expectOneMeaning(const std::string& path, const std::vector<const KelFormat*>& formats)
{
    if (formats.size() < 2)
        return;
    std::string meanings;
    for (const KelFormat* format : formats)
        meanings += (meanings.empty() ? "" : " or ") + fileBehind(*format, path) + " (" + format->name + ")";
    throw Failure(path + ": could be " + meanings + "; name the file, or the format with --from");
}

/// The format of a path: the one whose prefix or content it has; for a damaged file, which none recognises, the one of
/// its suffix, so that its reader tells what is wrong. A folder that no format recognises never stands for a file
/// beside it: it may be a model that is damaged.
static const KelFormat* formatBehind(const std::string& path)
{
    const KelFormatRegistry& registry = KelFormatRegistry::instance();
    const std::vector<const KelFormat*> formats = registry.candidates(path);
    expectOneMeaning(path, formats);
    std::error_code error;
    if (!formats.empty()) {
        const std::string file = fileBehind(*formats.front(), path);
        if (formats.front()->prefix.empty() && std::filesystem::is_directory(path, error) &&
            std::filesystem::is_regular_file(file, error))
            throw Failure(path + ": a folder that no format recognises, and beside it " + file + " (" +
                          formats.front()->name + "); name that file if it is meant");
        return formats.front();
    }
    return std::filesystem::is_regular_file(path, error) ? registry.forWriting(path) : nullptr;
}

static KelFormat formatOf(const std::string& path, const std::string& formatName)
{
    const KelFormat* format = formatName.empty() ? formatBehind(path) : KelFormatRegistry::instance().find(formatName);
    if (format == nullptr)
        throw Failure(formatName.empty() ? aboutFile(path, whyUnknown(path))
                                         : "no format is called '" + formatName + "'; see 'kel formats'");
    if (!format->makeReader)
        throw Failure("the format '" + format->name + "' cannot be read");
    return *format;
}

Model::Model(const std::string& path, const std::string& formatName, const MeshChoice& choice)
    : _path(path), _choice(choice), _format(formatOf(path, formatName)), _reader(_format.makeReader())
{
    _files = _format.files ? _format.files(path, false) : KelFormatFiles{path, ""};
    if (!_reader)
        throw Failure("the format '" + _format.name + "' cannot be read");
    if (_files.caseFile.empty() && _files.dataFile.empty())
        throw Failure(aboutFile(path, "no such file"));
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA})
        if (has(dataClass))
            _reader->setFile(file(dataClass), dataClass);
}

Model::Model(KelFormat format, std::string path, KelFormatFiles files)
    : _path(std::move(path)), _format(std::move(format)), _files(std::move(files)), _reader(_format.makeReader())
{
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA})
        if (has(dataClass))
            _reader->setFile(file(dataClass), dataClass);
}

std::string targetName(int target)
{
    static const char* const names[] = {"default", "solver", "partitioned post", "post"};
    return target >= 0 && target <= KEL_POST ? names[target] : std::to_string(target);
}

/// "mesh 2, target post, partition 3"
static std::string nameOf(const MeshName& mesh)
{
    return "mesh " + std::to_string(mesh.mesh) + ", target " + targetName(mesh.target) +
           (mesh.partition >= 0 ? ", partition " + std::to_string(mesh.partition) : "");
}

MeshName Model::openedMesh() const
{
    const KelTargetCategory target = _reader->getTarget();
    return {_reader->getMeshId(), target, target == KEL_PARTITIONED_POST ? _reader->getPartitionId() : -1};
}

std::vector<MeshName> Model::meshes(KelDataClass dataClass) const
{
    std::vector<MeshName> found;
    for (const int mesh : _reader->availableMeshIds(dataClass))
        for (const KelTargetCategory target : _reader->availableTargets(mesh, dataClass)) {
            if (target != KEL_PARTITIONED_POST) {
                found.push_back({mesh, target, -1});
                continue;
            }
            for (const int partition : _reader->availablePartitionIds(mesh, dataClass))
                found.push_back({mesh, target, partition});
        }
    return found.empty() ? std::vector<MeshName>{openedMesh()} : found;
}

std::vector<MeshName> Model::chosenMeshes(KelDataClass dataClass) const
{
    std::vector<MeshName> chosen = meshes(dataClass);
    std::erase_if(chosen, [this](const MeshName& mesh) {
        return (_choice.mesh != 0 && _choice.mesh != mesh.mesh) ||
               (_choice.target != -1 && _choice.target != mesh.target) ||
               (_choice.partition != -1 && _choice.partition != mesh.partition);
    });
    return chosen;
}

void Model::openMesh(KelDataClass dataClass, const MeshName& mesh)
{
    if (_isOpen[dataClass] && openedMesh() == mesh)
        return;
    close();
    // Chosen while nothing is open, so that no mesh between the old and the new one has to exist.
    _reader->setMeshId(mesh.mesh);
    _reader->setTarget(static_cast<KelTargetCategory>(mesh.target));
    if (mesh.partition >= 0)
        _reader->setPartitionId(mesh.partition);
    errorsOf(*_reader, ""); // what a closed reader says of a mesh that it cannot load yet is dropped
    openFile(dataClass);
}

/// A reader opens the mesh that is nearest to its context; the command wants the first one that the choice fits.
void Model::takeChosenMesh(KelDataClass dataClass)
{
    const std::vector<MeshName> chosen = chosenMeshes(dataClass);
    if (!chosen.empty()) {
        if (!_isOpen[dataClass == KEL_CASE ? KEL_DATA
                                           : KEL_CASE]) // the mesh of a second data class is that of the first
            openMesh(dataClass, chosen.front());
        return;
    }
    std::string names;
    for (const MeshName& mesh : meshes(dataClass))
        names += (names.empty() ? "" : "; ") + nameOf(mesh);
    throw Failure(aboutFile(file(dataClass), "has no such mesh; it has " + names));
}

Model::~Model()
{
    close();
}

const std::string& Model::file(KelDataClass dataClass) const
{
    return dataClass == KEL_CASE ? _files.caseFile : _files.dataFile;
}

void Model::open(KelDataClass dataClass)
{
    if (!has(dataClass))
        throw Failure(aboutFile(_path, dataClass == KEL_CASE ? "has no case" : "has no data"));
    openFile(dataClass);
    if (_choice.isGiven())
        takeChosenMesh(dataClass);
}

void Model::openFile(KelDataClass dataClass)
{
    if (!_reader->startReading(dataClass))
        throw failure("could not be read", dataClass);
    _isOpen[dataClass] = true;
}

void Model::openAll()
{
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA})
        if (has(dataClass))
            open(dataClass);
}

void Model::close()
{
    for (const KelDataClass dataClass : {KEL_DATA, KEL_CASE})
        if (_isOpen[dataClass]) {
            _isOpen[dataClass] = false;
            _reader->endReading(dataClass);
        }
}

/// Reaches the solution model of any reader: a pointer to a protected member, named through a derived class, may be
/// used on all of them.
class SolutionAccess : public KelBase {
public:
    static const KelSolutionModel& of(const KelBase& base) { return *(base.*&SolutionAccess::solutionModel)(); }
};

const KelSolutionModel& Model::solution() const
{
    return SolutionAccess::of(*_reader);
}

Failure Model::failure(const std::string& otherwise, KelDataClass dataClass)
{
    return Failure(aboutFile(has(dataClass) ? file(dataClass) : _path, errorsOf(*_reader, otherwise)));
}

void Model::expectNoErrors()
{
    if (!_reader->hasError())
        return;
    const std::string text = errorsOf(*_reader, "");
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA})
        if (has(dataClass) && text.starts_with(file(dataClass)))
            throw Failure(text);
    throw Failure(aboutFile(_path, text));
}

std::string aboutFile(const std::string& file, const std::string& text)
{
    // Formats name the file themselves, with or without its folder.
    const std::string name = std::filesystem::path(file).filename().string();
    if (text.starts_with(file))
        return text;
    return text.starts_with(name + ":") ? file + text.substr(name.size()) : file + ": " + text;
}

std::string errorsOf(KelBase& base, const std::string& otherwise)
{
    std::string text;
    for (const std::string& error : base.getErrors(false, true))
        text += (text.empty() ? "" : "; ") + error;
    return text.empty() ? otherwise : text;
}

const char* categoryName(KelZoneCategory category)
{
    switch (category) {
    case KEL_NODE_ZONE:
        return "nodes";
    case KEL_EDGE_ZONE:
        return "edges";
    case KEL_FACE_ZONE:
        return "faces";
    case KEL_CELL_ZONE:
        return "cells";
    }
    return "";
}

std::string cellTypeName(KelCellType type)
{
    static const char* const names[] = {"polyhedra", "tetrahedra", "pyramids",  "prisms",
                                        "hexahedra", "polygons",   "triangles", "quadrilaterals"};
    const int number = type;
    return number >= 0 && number <= KEL_CELL_QUADRILATERAL ? names[number] : "kind " + std::to_string(number);
}

static std::string faceTypeName(int type)
{
    static const char* const names[] = {"interior",  "wall",  "inlet",     "outlet", "symmetry", "periodic",
                                        "interface", "empty", "partition", "parent", "boundary"};
    return type >= 0 && type <= KEL_FACE_ZONE_TYPE_BOUNDARY ? names[type]
           : type < 0                                       ? ""
                                                            : "kind " + std::to_string(type);
}

static std::string edgeTypeName(int type)
{
    static const char* const names[] = {"interior", "boundary", "feature"};
    return type >= 0 && type <= KEL_EDGE_ZONE_TYPE_FEATURE ? names[type]
           : type < 0                                      ? ""
                                                           : "kind " + std::to_string(type);
}

std::string kindOfZone(const KelBase& base, int zoneId, KelZoneCategory category)
{
    std::string kind;
    base.getZoneStringInfo(zoneId, KEL_ZONE_STRING_1, kind);
    if (!kind.empty())
        return kind;
    int type = -1;
    if (category == KEL_FACE_ZONE) {
        base.getFaceZoneInfo(zoneId, KEL_FACE_ZONE_INFO_TYPE, type);
        return faceTypeName(type);
    }
    if (category == KEL_EDGE_ZONE) {
        base.getEdgeZoneInfo(zoneId, KEL_EDGE_ZONE_INFO_0, type);
        return edgeTypeName(type);
    }
    return "";
}

unsigned64 meshSize(const KelBase& base, KelZoneCategory category)
{
    static constexpr KelMeshSizeType slots[] = {KEL_MESH_SIZE_1, KEL_MESH_SIZE_2, KEL_MESH_SIZE_3, KEL_MESH_SIZE_4};
    unsigned64 size = 0;
    base.getMeshSize(slots[category], size);
    return size;
}

std::string zoneLabel(const KelBase& base, int zoneId)
{
    std::string name;
    base.getZoneStringInfo(zoneId, KEL_ZONE_STRING_0, name);
    return std::to_string(zoneId) + (name.empty() ? "" : " '" + name + "'");
}

} // namespace meridyn::tool
