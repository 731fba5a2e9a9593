#include "FieldFile.h"

#include "ByteSource.h"
#include "FoamError.h"
#include "FoamReader.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <regex.h>

namespace meridyn {

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

/// Reads "[0 1 -1 0 0 0 0]": exponents of kg, m, s, K, mol, A, cd.
std::string readUnits(FoamReader& reader)
{
    static const char* const names[] = {"kg", "m", "s", "K", "mol", "A", "cd"};
    std::string text;
    reader.expect('[');
    for (std::size_t n = 0; !reader.sees(']'); ++n) {
        const FoamToken token = reader.next();
        double exponent = 0;
        if (n == std::size(names) || token.kind != FoamToken::Word || !foamNumber(token.text, exponent))
            reader.failExpecting("five to seven exponents and ']'", token);
        if (exponent != 0)
            text += (text.empty() ? "" : " ") + std::string(names[n]) + (exponent != 1 ? "^" + token.text : "");
    }
    reader.expect(']');
    return text;
}

/// Reads "uniform ..." or "nonuniform ..." to its ";". Values that stand elsewhere, as behind "$", are not known.
FieldValues readValues(FoamReader& reader, const FieldKind& kind, const char* what, std::uint64_t largestCount)
{
    FieldValues result;
    const std::string word = reader.seesMark() ? std::string() : reader.word(what);
    if (word == "uniform" && !reader.sees('$') && !reader.sees('#')) {
        if (!kind.isScalar())
            reader.expect('(');
        for (unsigned c = 0; c < kind.components; ++c)
            result.values.push_back(reader.number(what));
        if (!kind.isScalar())
            reader.expect(')');
        result.isUniform = true;
    } else if (word == "nonuniform" && !reader.sees('$') && !reader.sees('#')) {
        if (reader.sees('L')) {
            const std::string type = reader.word("the type of a list");
            const auto isType = [&](const Rank& rank) {
                return type == std::string("List<") + rank.typeName + ">" && rank.className == std::string(kind.rank);
            };
            if (std::none_of(std::begin(ranks), std::end(ranks), isType))
                reader.fail(std::string("expected a list of ") + std::to_string(kind.components) +
                            " values per entry as " + what + ", found '" + type + "'");
        }
        result.values = reader.scalars(what, kind.components, !kind.isScalar(), largestCount);
    } else {
        reader.skipEntry();
        return result;
    }
    reader.expect(';');
    result.isKnown = true;
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

PatchValues readPatch(FoamReader& reader, const FoamToken& name, const FieldKind& kind, std::uint64_t faceCount)
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
            patch.value = readValues(reader, kind, "boundary values", faceCount);
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
    const std::string inner = "::Internal";
    std::string name = className;
    const bool isInner =
        name.size() > inner.size() && name.compare(name.size() - inner.size(), inner.size(), inner) == 0;
    if (isInner)
        name.resize(name.size() - inner.size());
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
        if (key.is("dimensions")) {
            head.units = readUnits(reader);
            break;
        }
        if (key.is("internalField") || key.is("value"))
            break; // the dimensions, if any, stand before
        if (!passOver(reader, key))
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
    const std::uint64_t count = innerCount(mesh, field.kind.place);
    bool hasInner = false;
    for (FoamToken key = reader.next(); key.kind != FoamToken::End; key = reader.next()) {
        if (passOver(reader, key))
            continue;
        if (key.kind == FoamToken::Mark)
            reader.failExpecting("an entry of the field", key);
        if (key.text == "internalField" || (key.text == "value" && !field.kind.hasBoundary)) {
            field.inner = readValues(reader, field.kind, "field values", count);
            hasInner = true;
            const std::uint64_t found = field.inner.values.size() / field.kind.components;
            if (field.inner.isKnown && !field.inner.isUniform && found != count)
                reader.fail("expected " + std::to_string(count) + " field values, found " + std::to_string(found));
        } else if (key.text == "boundaryField" && field.kind.hasBoundary) {
            reader.expect('{');
            for (FoamToken name = reader.next(); !name.is('}'); name = reader.next())
                if (!passOver(reader, name)) {
                    if (name.kind == FoamToken::End || name.kind == FoamToken::Mark)
                        reader.failExpecting("the name of a patch", name);
                    field.patches.push_back(readPatch(reader, name, field.kind, mesh.faceCount()));
                }
        } else
            reader.skipEntry();
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

FieldFile::OnPatch FieldFile::onPatch(const PolyPatch& patch) const
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
    if (!entry->value.isKnown)
        return {};
    const std::uint64_t found = entry->value.values.size() / kind.components;
    if (!entry->value.isUniform && found != patch.count)
        throw FoamError(path + ": expected " + std::to_string(patch.count) + " boundary values of patch '" +
                        patch.name + "', found " + std::to_string(found));
    return {OnPatch::Stored, &entry->value};
}

} // namespace meridyn
