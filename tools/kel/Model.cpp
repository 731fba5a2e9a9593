#include "Model.h"

#include "KelFormatRegistry.h"
#include "Numbers.h"

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

/// The format of a path: the one whose prefix or content it has; for a damaged file, which none recognises, the one of
/// its suffix, so that its reader tells what is wrong.
static const KelFormat* formatBehind(const std::string& path)
{
    const KelFormatRegistry& registry = KelFormatRegistry::instance();
    for (const KelFormat& format : registry.formats())
        if (!format.prefix.empty() && path.starts_with(format.prefix) && format.makeReader)
            return &format;
    if (const KelFormat* format = registry.probe(path))
        return format;
    std::error_code error;
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

Model::Model(const std::string& path, const std::string& formatName)
    : _path(path), _format(formatOf(path, formatName)), _reader(_format.makeReader())
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
