#include "PolyMesh.h"

#include "ByteSource.h"
#include "CaseFolder.h"
#include "FoamDictionary.h"
#include "FoamError.h"
#include "FoamReader.h"

#include <algorithm>
#include <charconv>
#include <sstream>

namespace meridyn::polymesh {

namespace {

void readPoints(const std::string& path, PolyMesh& mesh)
{
    ByteSource source(path);
    FoamReader reader(source);
    reader.readHeader({"vectorField", "pointField"});
    mesh.points = reader.scalars("points", 3, true, FoamReader::anyCount);
}

void readFaces(const std::string& path, PolyMesh& mesh)
{
    ByteSource source(path);
    FoamReader reader(source);
    reader.readHeader({"faceList", "faceCompactList"});
    reader.faces(mesh.faceOffsets, mesh.faceNodes, mesh.pointCount());
}

/// Owners or neighbours. No cell can be bounded by less than one face, which bounds the labels.
std::vector<std::uint32_t> readCells(const std::string& path, const char* what, std::uint64_t faceCount)
{
    ByteSource source(path);
    FoamReader reader(source);
    reader.readHeader({"labelList"});
    return reader.labels(what, 2 * faceCount, faceCount);
}

void checkCells(const std::string& ownerPath, PolyMesh& mesh)
{
    const std::uint64_t faceCount = mesh.faceOffsets.size() - 1;
    if (mesh.owner.size() != faceCount)
        throw FoamError(ownerPath + ": expected " + std::to_string(faceCount) + " owners, as there are faces, found " +
                        std::to_string(mesh.owner.size()));
    std::uint32_t largest = 0;
    for (const auto* labels : {&mesh.owner, &mesh.neighbour})
        for (const std::uint32_t label : *labels)
            largest = std::max(largest, label);
    mesh.cellCount = faceCount > 0 ? std::uint64_t{largest} + 1 : 0;
    std::vector<bool> isBounded(mesh.cellCount);
    for (const auto* labels : {&mesh.owner, &mesh.neighbour})
        for (const std::uint32_t label : *labels)
            isBounded[label] = true;
    const auto loose = std::find(isBounded.begin(), isBounded.end(), false);
    if (loose != isBounded.end())
        throw FoamError(ownerPath + ": expected each of the cells 0 to " + std::to_string(largest) +
                        " to have faces, found none of cell " + std::to_string(loose - isBounded.begin()));
}

std::uint64_t sizeOf(const FoamReader& reader, const FoamDictionary& dictionary, const std::string& patch,
                     const char* key)
{
    const std::string text = dictionary.text(key);
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value > FoamReader::anyCount)
        reader.fail(std::string("expected a count as ") + key + " of patch '" + patch + "', found '" + text + "'");
    return value;
}

/// The patches, which have to follow each other from the first face behind the interior ones to the last one.
void readBoundary(const std::string& path, PolyMesh& mesh)
{
    ByteSource source(path);
    FoamReader reader(source);
    reader.readHeader({"polyBoundaryMesh"});
    const std::uint64_t count = reader.count("the number of patches");
    std::uint64_t next = mesh.interiorCount();
    reader.expect('(');
    for (std::uint64_t n = 0; n < count; ++n) {
        PolyPatch patch;
        patch.name = reader.word("the name of a patch");
        reader.expect('{');
        const FoamDictionary dictionary = FoamDictionary::readBlock(reader);
        patch.type = dictionary.text("type");
        patch.neighbour = dictionary.text("neighbourPatch");
        patch.groups = wordsInParentheses(dictionary.text("inGroups"));
        patch.first = sizeOf(reader, dictionary, patch.name, "startFace");
        patch.count = sizeOf(reader, dictionary, patch.name, "nFaces");
        if (patch.first != next || patch.count > mesh.faceCount() - next)
            reader.fail("expected patch '" + patch.name + "' to begin at face " + std::to_string(next) +
                        " and to end before face " + std::to_string(mesh.faceCount()) + ", found " +
                        std::to_string(patch.count) + " faces from " + std::to_string(patch.first) + " on");
        next += patch.count;
        mesh.patches.push_back(std::move(patch));
    }
    reader.expect(')');
    if (next != mesh.faceCount())
        reader.fail("expected patches for all faces before " + std::to_string(mesh.faceCount()) +
                    ", found them up to face " + std::to_string(next));
}

/// One entry of a zone: its name, then a dictionary with a list of labels.
PolySelection readZone(FoamReader& reader, const std::string& labelsKey, const char* what, std::uint64_t limit)
{
    PolySelection zone;
    zone.name = reader.word("the name of a zone");
    const auto skipType = [&reader](const char* type) {
        if (reader.sees('L'))
            reader.word(type);
    };
    reader.expect('{');
    while (!reader.sees('}')) {
        const std::string key = reader.word("an entry of a zone");
        if (key == labelsKey) {
            skipType("the type of a list");
            zone.labels = reader.labels(what, limit, limit);
            reader.expect(';');
        } else if (key == "flipMap") {
            skipType("the type of a list");
            zone.flips = reader.flags("flips", limit);
            reader.expect(';');
        } else
            reader.skipEntry();
    }
    reader.expect('}');
    if (!zone.flips.empty() && zone.flips.size() != zone.labels.size())
        reader.fail("expected " + std::to_string(zone.labels.size()) + " flips of zone '" + zone.name + "', found " +
                    std::to_string(zone.flips.size()));
    return zone;
}

/// The zones of one kind; a case without the file has none.
std::vector<PolySelection> readZones(const std::string& path, const std::string& labelsKey, const char* what,
                                     std::uint64_t limit)
{
    std::vector<PolySelection> zones;
    if (!ByteSource::exists(path))
        return zones;
    ByteSource source(path);
    FoamReader reader(source);
    reader.readHeader({});
    const std::uint64_t count = reader.count("the number of zones");
    if (count == 0)
        return zones;
    reader.expect('(');
    for (std::uint64_t n = 0; n < count; ++n)
        zones.push_back(readZone(reader, labelsKey, what, limit));
    reader.expect(')');
    return zones;
}

/// Reads a file of the folder "sets": the labels stand there as text, also in cases in binary form.
PolySelection readSet(const std::string& path, const PolyMesh& mesh)
{
    PolySelection set;
    set.name = path.substr(path.rfind('/') + 1);
    ByteSource source(path);
    FoamReader reader(source);
    const std::string className = reader.readHeader({"cellSet", "faceSet", "pointSet"}).className;
    set.category = className == "cellSet" ? KEL_CELL_ZONE : className == "faceSet" ? KEL_FACE_ZONE : KEL_NODE_ZONE;
    const std::uint64_t limit = className == "cellSet"   ? mesh.cellCount
                                : className == "faceSet" ? mesh.faceCount()
                                                         : mesh.pointCount();
    set.labels = reader.textLabels("members of a set", limit, limit);
    return set;
}

/// Sets are made by hand and by the way; one that does not fit the mesh is left out, as the mesh does not need it.
void readSets(const std::vector<std::string>& paths, PolyMesh& mesh)
{
    for (const std::string& path : paths)
        try {
            mesh.sets.push_back(readSet(path, mesh));
        } catch (const FoamError& error) {
            mesh.badSets.emplace_back(path, error.withoutPath(path));
        }
}

} // namespace

std::vector<std::string> wordsInParentheses(const std::string& text)
{
    const std::size_t from = text.find('('), to = text.find(')');
    std::vector<std::string> words;
    if (from == std::string::npos || to == std::string::npos || to < from)
        return words;
    std::istringstream stream(text.substr(from + 1, to - from - 1));
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

const PolyPatch* PolyMesh::partner(const PolyPatch& patch) const
{
    if (patch.type != "cyclic")
        return nullptr;
    for (const PolyPatch& other : patches)
        if (other.name == patch.neighbour && other.type == "cyclic" && other.count == patch.count && &other != &patch)
            return &other;
    return nullptr;
}

PolyMesh PolyMesh::read(const CaseFolder& folder, std::size_t number)
{
    PolyMesh mesh;
    const auto file = [&](const char* name) { return folder.meshFile(number, name); };
    readPoints(file("points"), mesh);
    readFaces(file("faces"), mesh);
    const std::uint64_t faceCount = mesh.faceOffsets.size() - 1;
    mesh.owner = readCells(file("owner"), "owners", faceCount);
    mesh.neighbour = readCells(file("neighbour"), "neighbours", faceCount);
    checkCells(file("owner"), mesh);
    readBoundary(file("boundary"), mesh);
    mesh.cellZones = readZones(file("cellZones"), "cellLabels", "cells of a zone", mesh.cellCount);
    mesh.faceZones = readZones(file("faceZones"), "faceLabels", "faces of a zone", faceCount);
    mesh.pointZones = readZones(file("pointZones"), "pointLabels", "points of a zone", mesh.pointCount());
    readSets(folder.setsOfMesh(number), mesh);
    mapZones(mesh);
    return mesh;
}

} // namespace meridyn::polymesh
