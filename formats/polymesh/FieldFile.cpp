#include "FieldFile.h"

#include "ByteSource.h"
#include "FoamDictionary.h"
#include "FoamError.h"
#include "FoamReader.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <map>
#include <memory>
#include <regex.h>

namespace meridyn::polymesh {

namespace {

/// What the class of a field and the type of its lists say of one entry.
struct Rank {
    const char* className; ///< between the place and "Field"
    const char* typeName;
    unsigned components;
};

constexpr Rank ranks[] = {
    {"Scalar", "scalar", 1},         {"Vector", "vector", 3}, {"SphericalTensor", "sphericalTensor", 1},
    {"SymmTensor", "symmTensor", 6}, {"Tensor", "tensor", 9},
};

/// Reads "[0 1 -1 0 0 0 0]", exponents of kg, m, s, K, mol, A, cd; or units in words, "[Pa]" and "[kg m^-3]", which
/// stay.
std::string readUnits(FoamReader& reader)
{
    static const char* const names[] = {"kg", "m", "s", "K", "mol", "A", "cd"};
    std::string text, words;
    bool isInWords = false;
    std::size_t count = 0;
    reader.expect('[');
    for (; !reader.sees(']'); ++count) {
        const FoamToken token = reader.next();
        double exponent = 0;
        if (token.kind != FoamToken::Word)
            reader.failExpecting("five to seven exponents, or units, and ']'", token);
        words += (words.empty() ? "" : " ") + token.text;
        isInWords = isInWords || !foamNumber(token.text, exponent);
        if (!isInWords && count == std::size(names))
            reader.failExpecting("five to seven exponents, or units, and ']'", token);
        if (!isInWords && exponent != 0)
            text += (text.empty() ? "" : " ") + std::string(names[count]) + (exponent != 1 ? "^" + token.text : "");
    }
    reader.expect(']');
    return isInWords ? words : text;
}

/// What "$name" can stand for in a field: entries that stand before, in the field or in a file that it includes.
struct Names {
    std::map<std::string, std::string> texts;
    FieldValues inner; ///< of "$internalField"
};

FieldValues readValues(FoamReader& reader, const FieldKind& kind, const char* what, std::uint64_t largestCount,
                       const Names& names);

/// Values behind "$name" or "uniform $name", of an entry of the field that stands before. Not known when there is none,
/// or when values of cells are asked for on faces.
FieldValues resolve(FoamReader& reader, const FieldKind& kind, const char* what, const std::string& before,
                    const std::string& name, const Names& names)
{
    if (before.empty() && name == "$internalField" && names.inner.isUniform)
        return names.inner;
    const auto found = names.texts.find(name.substr(1));
    if (found == names.texts.end())
        return {};
    const std::string text = before + found->second + ";";
    ByteSource source(reader.path() + ": " + found->first, text);
    FoamReader inner(source);
    return readValues(inner, kind, what, 0, {}); // names in it are not looked up, or they could lead in a circle
}

/// Reads what stands behind "uniform".
FieldValues readUniform(FoamReader& reader, const FieldKind& kind, const char* what)
{
    FieldValues result;
    if (!kind.isScalar())
        reader.expect('(');
    for (unsigned c = 0; c < kind.components; ++c)
        result.values.push_back(reader.number(what));
    if (!kind.isScalar())
        reader.expect(')');
    result.isUniform = true;
    return result;
}

/// Reads what stands behind "nonuniform".
FieldValues readList(FoamReader& reader, const FieldKind& kind, const char* what, std::uint64_t largestCount)
{
    FieldValues result;
    if (reader.sees('L')) {
        const std::string type = reader.word("the type of a list");
        const auto isType = [&](const Rank& rank) {
            return type == std::string("List<") + rank.typeName + ">" && rank.className == std::string(kind.rank);
        };
        if (std::none_of(std::begin(ranks), std::end(ranks), isType))
            reader.fail(std::string("expected a list of ") + std::to_string(kind.components) + " values per entry as " +
                        what + ", found '" + type + "'");
    }
    result.values = reader.scalars(what, kind.components, !kind.isScalar(), largestCount);
    return result;
}

/// Reads "uniform ..." or "nonuniform ..." to its ";". Values that stand elsewhere, and cannot be found, are not known.
FieldValues readValues(FoamReader& reader, const FieldKind& kind, const char* what, std::uint64_t largestCount,
                       const Names& names)
{
    FieldValues result;
    const std::string word = reader.seesMark() ? std::string() : reader.word(what);
    const bool isElsewhere = reader.sees('$') || reader.sees('#');
    if (word == "uniform" && reader.sees('$'))
        result = resolve(reader, kind, what, "uniform ", reader.word(what), names);
    else if (!word.empty() && word[0] == '$' && reader.sees(';'))
        result = resolve(reader, kind, what, "", word, names);
    else if (word == "uniform" && !isElsewhere)
        result = readUniform(reader, kind, what);
    else if (word == "nonuniform" && !isElsewhere)
        result = readList(reader, kind, what, largestCount);
    else {
        reader.skipEntry();
        return result;
    }
    result.isKnown = !result.values.empty() || (!result.isUniform && word == "nonuniform");
    if (!result.isKnown)
        reader.skipEntry();
    else
        reader.expect(';');
    return result;
}

/// The rest of an entry that is a word.
std::string readWord(FoamReader& reader, const char* what)
{
    std::string text = reader.word(what);
    reader.expect(';');
    return text;
}

/// Passes over what is not an entry of its own: "#include "file"", "$name;". True if there was such.
bool passOver(FoamReader& reader, const FoamToken& key)
{
    if (key.is(';'))
        return true;
    if (key.kind != FoamToken::Word || (key.text[0] != '#' && key.text[0] != '$'))
        return false;
    const FoamToken argument = reader.next();
    if (argument.is('}') || argument.kind == FoamToken::End)
        reader.failExpecting("something behind '" + key.text + "'", argument);
    return true;
}

/// Adds the entries of a file that a field includes: one inside the case, named from the folder of the field.
void include(FoamReader& reader, Names& names)
{
    namespace fs = std::filesystem;
    const FoamToken argument = reader.next();
    if (argument.kind != FoamToken::Text)
        reader.failExpecting("the name of a file behind '#include'", argument);
    const fs::path folder = fs::path(reader.path()).parent_path(); // of the time, which lies in the case
    const fs::path file = (folder / argument.text).lexically_normal();
    const std::string inCase = file.lexically_relative(folder.parent_path().lexically_normal()).string();
    if (inCase.empty() || inCase.rfind("..", 0) == 0 || !ByteSource::exists(file.string()))
        return;
    ByteSource source(file.string());
    FoamReader included(source);
    included.readHeader();
    for (const FoamDictionary::Entry& entry : FoamDictionary::read(included).entries)
        if (entry.kind == FoamDictionary::Entry::Text)
            names.texts[entry.name] = entry.text;
}

PatchValues readPatch(FoamReader& reader, const FoamToken& name, const FieldKind& kind, std::uint64_t faceCount,
                      const Names& names)
{
    PatchValues patch{name.text, name.kind == FoamToken::Text, {}, {}};
    reader.expect('{');
    for (FoamToken key = reader.next(); !key.is('}'); key = reader.next()) {
        if (passOver(reader, key))
            continue;
        if (key.kind == FoamToken::End || key.kind == FoamToken::Mark)
            reader.failExpecting("an entry of patch '" + patch.name + "'", key);
        if (key.text == "type")
            patch.type = readWord(reader, "the type of a boundary condition");
        else if (key.text == "value")
            patch.value = readValues(reader, kind, "boundary values", faceCount, names);
        else
            reader.skipEntry();
    }
    return patch;
}

std::uint64_t innerCount(const PolyMesh& mesh, FieldKind::Place place)
{
    return place == FieldKind::Cells   ? mesh.cellCount
           : place == FieldKind::Faces ? mesh.interiorCount()
                                       : mesh.pointCount();
}

void readInner(FoamReader& reader, std::uint64_t count, Names& names, FieldFile& field)
{
    field.inner = readValues(reader, field.kind, "field values", count, names);
    const std::uint64_t found = field.inner.values.size() / field.kind.components;
    if (field.inner.isKnown && !field.inner.isUniform && found != count)
        reader.fail("expected " + std::to_string(count) + " field values, found " + std::to_string(found));
    if (field.inner.isUniform)
        names.inner = field.inner;
}

void readBoundary(FoamReader& reader, std::uint64_t faceCount, const Names& names, FieldFile& field)
{
    reader.expect('{');
    for (FoamToken name = reader.next(); !name.is('}'); name = reader.next()) {
        if (passOver(reader, name))
            continue;
        if (name.kind == FoamToken::End || name.kind == FoamToken::Mark)
            reader.failExpecting("the name of a patch", name);
        field.patches.push_back(readPatch(reader, name, field.kind, faceCount, names));
    }
}

/// Whether a name as a whole matches a pattern. Patterns that could take forever match nothing.
bool matches(const std::string& pattern, const std::string& name)
{
    constexpr std::size_t longest = 200;
    if (pattern.size() > longest || name.size() > longest || pattern.find_first_of("{\\") != std::string::npos)
        return false;
    regex_t compiled;
    if (regcomp(&compiled, ("^(" + pattern + ")$").c_str(), REG_EXTENDED | REG_NOSUB) != 0)
        return false;
    const bool isMatch = regexec(&compiled, name.c_str(), 0, nullptr, 0) == 0;
    regfree(&compiled);
    return isMatch;
}

} // namespace

FieldKind FieldKind::of(const std::string& className)
{
    const std::string name = className.substr(0, className.find("::"));
    const std::string behind = className.substr(name.size());
    const bool isInner = behind == "::Internal" || behind == "::DimensionedInternalField";
    if (!isInner && !behind.empty())
        return {};
    for (const auto& [prefix, place] :
         {std::pair{std::string("vol"), Cells}, {std::string("surface"), Faces}, {std::string("point"), Points}})
        for (const Rank& rank : ranks)
            if (name == prefix + rank.className + "Field")
                return {place, rank.components, !isInner && place != Points, rank.className};
    return {};
}

bool FieldKind::isScalar() const
{
    return std::string(rank) == "Scalar";
}

bool FieldKind::isSphericalTensor() const
{
    return std::string(rank) == "SphericalTensor";
}

FieldHead FieldHead::read(const std::string& path)
{
    FieldHead head;
    ByteSource source(path);
    FoamReader reader(source);
    head.kind = FieldKind::of(reader.readHeader().className);
    if (head.kind.place == FieldKind::None)
        return head;
    for (FoamToken key = reader.next(); key.kind != FoamToken::End; key = reader.next()) {
        if (key.is("internalField") || key.is("value"))
            break; // what belongs to the head stands before
        if (key.is("dimensions"))
            head.units = readUnits(reader);
        else if (key.is("oriented"))
            head.isOriented = readWord(reader, "whether the field is oriented") == "oriented";
        else if (!passOver(reader, key))
            reader.skipEntry();
    }
    return head;
}

FieldFile FieldFile::read(const std::string& path, const PolyMesh& mesh)
{
    FieldFile field;
    ByteSource source(path);
    FoamReader reader(source);
    field.path = source.path();
    field.kind = FieldKind::of(reader.readHeader().className);
    if (field.kind.place == FieldKind::None)
        reader.fail("expected the class of a field, found '" + reader.header().className + "'");
    Names names;
    bool hasInner = false;
    for (FoamToken key = reader.next(); key.kind != FoamToken::End; key = reader.next()) {
        if (key.is("#include")) {
            include(reader, names);
            continue;
        }
        if (passOver(reader, key))
            continue;
        if (key.kind == FoamToken::Mark)
            reader.failExpecting("an entry of the field", key);
        if (key.text == "internalField" || (key.text == "value" && !field.kind.hasBoundary)) {
            readInner(reader, innerCount(mesh, field.kind.place), names, field);
            hasInner = true;
        } else if (key.text == "boundaryField" && field.kind.hasBoundary)
            readBoundary(reader, mesh.faceCount(), names, field);
        else if (const FoamDictionary::Entry entry = FoamDictionary::readRest(reader, key);
                 entry.kind == FoamDictionary::Entry::Text)
            names.texts[entry.name] = entry.text;
    }
    if (!hasInner || !field.inner.isKnown)
        reader.fail(hasInner ? "expected values as internalField, found a reference to values elsewhere"
                             : "expected an entry internalField, found none");
    return field;
}

/// A patch's own entry comes before one of its groups, that before a pattern; of several the last.
const PatchValues* FieldFile::entryOf(const PolyPatch& patch) const
{
    const auto last = [this](const auto& fits) -> const PatchValues* {
        const auto found = std::find_if(patches.rbegin(), patches.rend(), fits);
        return found != patches.rend() ? &*found : nullptr;
    };
    const PatchValues* entry = last([&](const PatchValues& p) { return !p.isPattern && p.name == patch.name; });
    if (entry == nullptr)
        entry = last([&](const PatchValues& p) {
            return !p.isPattern && std::find(patch.groups.begin(), patch.groups.end(), p.name) != patch.groups.end();
        });
    return entry != nullptr ? entry
                            : last([&](const PatchValues& p) { return p.isPattern && matches(p.name, patch.name); });
}

FieldFile::OnPatch FieldFile::sourceOn(const PolyPatch& patch) const
{
    static constexpr std::array mirrors = {"slip", "symmetry", "symmetryPlane", "basicSymmetry", "wedge"};
    const PatchValues* entry = kind.hasBoundary && patch.type != "empty" ? entryOf(patch) : nullptr;
    if (entry == nullptr || entry->type == "empty" || patch.count == 0)
        return {};
    if (kind.place == FieldKind::Cells) {
        // A mirror keeps a scalar as it is; of vectors it takes a part away that needs the normals.
        const bool isMirror = std::find(mirrors.begin(), mirrors.end(), entry->type) != mirrors.end();
        if (entry->type == "zeroGradient" || (isMirror && kind.components == 1))
            return {OnPatch::Cell, nullptr};
        if (entry->type == "noSlip")
            return {OnPatch::Zero, nullptr};
    }
    return entry->value.isKnown ? OnPatch{OnPatch::Stored, entry} : OnPatch{};
}

const PatchValues* FieldFile::storedOn(const PolyPatch& patch) const
{
    return sourceOn(patch).entry;
}

FieldFile::OnPatch FieldFile::onPatch(const PolyPatch& patch) const
{
    const OnPatch found = sourceOn(patch);
    if (found.source != OnPatch::Stored)
        return found;
    const std::uint64_t count = found.entry->value.values.size() / kind.components;
    if (!found.entry->value.isUniform && count != patch.count)
        throw FoamError(path + ": expected " + std::to_string(patch.count) + " boundary values of patch '" +
                        patch.name + "', found " + std::to_string(count));
    return found;
}

} // namespace meridyn::polymesh
