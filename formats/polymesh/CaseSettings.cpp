#include "CaseSettings.h"

#include "ByteSource.h"
#include "CaseFiles.h"
#include "CaseFolder.h"
#include "FieldFile.h"
#include "FoamError.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace meridyn::polymesh {

namespace {

using Values = CaseSettings::Values;
using Items = std::vector<KelSourceItem>;

/// A dictionary of more bytes is left out.
constexpr std::uint64_t largestDictionary = std::uint64_t{16} << 20U;

/// The newest version of files that is known.
constexpr double newestVersion = 2.0;

bool contains(const std::string& text, const char* piece)
{
    return text.find(piece) != std::string::npos;
}

bool isDictionary(const std::string& className)
{
    return contains(className, "ictionary") || className.rfind("uniformDimensioned", 0) == 0;
}

/// A text that is one quoted piece, without its quotes.
std::string unquoted(const std::string& text)
{
    const bool isQuoted = text.size() >= 2 && text.front() == '"' && text.find('"', 1) == text.size() - 1;
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

/// Takes the entries of one file apart: into settings, and into what is none.
class Collector {
public:
    Collector(std::string group, Values& values, Items& leftOut)
        : _group(std::move(group)), _values(values), _leftOut(leftOut)
    {}

    /// The head says how the file is to be read, which is no setting; but also what kind of data it is.
    void takeHead(const FoamHeader& head)
    {
        double version = 0;
        if (foamNumber(head.version, version) && version > newestVersion)
            leave("FoamFile/version", KelNotRead::NotKnown,
                  "expected 2.0 at most, found " + head.version + "; read as 2.0");
        for (const std::string& directive : head.directives)
            leaveDirective(directive);
        if (!head.note.empty())
            _values.emplace_back("FoamFile/note", head.note);
    }

    void take(const std::string& key, const std::string& text) { _values.emplace_back(key, unquoted(text)); }

    /// Takes the entries of a dictionary, except those that `isElsewhere` says are handed over in another way.
    template <class IsElsewhere>
    void take(const FoamDictionary& dictionary, const std::string& path, const IsElsewhere& isElsewhere)
    {
        for (const FoamDictionary::Entry& entry : dictionary.entries) {
            const std::string key = path.empty() ? entry.name : path + "/" + entry.name;
            if (entry.kind == FoamDictionary::Entry::Directive)
                leaveDirective(key);
            else if (isElsewhere(key, entry))
                continue;
            else if (entry.kind == FoamDictionary::Entry::Dictionary)
                take(entry.dictionary, key, isElsewhere);
            else if (entry.kind == FoamDictionary::Entry::LongList)
                leave(key, KelNotRead::NoPlace, "a list of more than 1000 entries, or of more than a megabyte");
            else
                take(key, entry.text);
        }
    }

    /// Of several entries with one path the last one counts, as it does for the programs that the case is made for.
    void dropOutranked()
    {
        std::set<std::string> seen;
        Values kept;
        for (auto value = _values.rbegin(); value != _values.rend(); ++value)
            if (seen.insert(value->first).second)
                kept.push_back(*value);
            else
                leave(value->first, KelNotRead::Outranked, "given once more further down, which counts");
        _values.assign(kept.rbegin(), kept.rend());
    }

    void leave(const std::string& key, KelNotRead reason, const std::string& text)
    {
        _leftOut.push_back({KEL_FAMILY_SETTINGS, _group + ": " + key, reason, text});
    }

private:
    void leaveDirective(const std::string& key) { leave(key, KelNotRead::NotKnown, "directives are not followed"); }

    std::string _group;
    Values& _values;
    Items& _leftOut;
};

/// Reads "n ( name { ... } ... )" as a dictionary.
FoamDictionary readNamed(FoamReader& reader)
{
    FoamDictionary all;
    const std::uint64_t count = reader.count("the number of entries");
    if (count == 0)
        return all;
    reader.expect('(');
    for (std::uint64_t n = 0; n < count; ++n) {
        FoamDictionary::Entry entry;
        entry.kind = FoamDictionary::Entry::Dictionary;
        entry.name = reader.word("the name of an entry");
        reader.expect('{');
        entry.dictionary = FoamDictionary::readBlock(reader);
        all.entries.push_back(std::move(entry));
    }
    reader.expect(')');
    return all;
}

/// Whether the values of an entry are on some patch, as FieldFile finds them.
bool isOnPatches(const FieldFile& field, const std::vector<PolyPatch>& patches, const std::string& name)
{
    return std::any_of(patches.begin(), patches.end(), [&](const PolyPatch& patch) {
        const PatchValues* entry = field.storedOn(patch);
        return entry != nullptr && (entry->isPattern ? '"' + entry->name + '"' : entry->name) == name;
    });
}

/// The field of a dictionary that was read whole: its kind and its conditions, without values.
FieldFile outlineOf(const FoamDictionary& dictionary, const FieldKind& kind)
{
    FieldFile field;
    field.kind = kind;
    const FoamDictionary::Entry* boundary = dictionary.find("boundaryField");
    if (boundary == nullptr)
        return field;
    for (const FoamDictionary::Entry& patch : boundary->dictionary.entries) {
        const FoamDictionary::Entry* value = patch.dictionary.find("value");
        PatchValues values{patch.plainName(), patch.isQuoted, patch.dictionary.text("type"), {}};
        values.value.isKnown = value != nullptr && !contains(value->text, "$") && !contains(value->text, "#");
        field.patches.push_back(std::move(values));
    }
    return field;
}

// What is handed over as something else than a setting.

bool isNowhereElse(const std::string&, const FoamDictionary::Entry&)
{
    return false;
}

/// The kind and the range of a face zone.
bool isOfFaceZone(const std::string&, const FoamDictionary::Entry& entry)
{
    static const std::set<std::string> names = {"type", "nFaces", "startFace"};
    return entry.kind != FoamDictionary::Entry::Dictionary && names.count(entry.name) != 0;
}

/// The elements of a cell zone or of a set.
bool isOfZone(const std::string&, const FoamDictionary::Entry& entry)
{
    static const std::set<std::string> names = {"type", "flipMap", "cellLabels", "faceLabels", "pointLabels"};
    return entry.kind != FoamDictionary::Entry::Dictionary && names.count(entry.name) != 0;
}

/// Values of a field: of its elements, and in lists of the faces of a patch. One value for a whole patch is a setting
/// too.
bool isOfVariable(const FieldFile& field, const std::vector<PolyPatch>& patches, const std::string& key,
                  const FoamDictionary::Entry& entry)
{
    if (key == "internalField" || (key == "value" && !field.kind.hasBoundary))
        return true;
    const std::vector<std::string> pieces = piecesOf(key);
    const bool isList = entry.kind == FoamDictionary::Entry::LongList || entry.text.rfind("nonuniform", 0) == 0;
    return isList && pieces.size() == 3 && pieces[0] == "boundaryField" && pieces[2] == "value" &&
           isOnPatches(field, patches, pieces[1]);
}

} // namespace

void CaseSettings::find(KelDataClass dataClass)
{
    for (auto file = _files.begin(); file != _files.end();)
        file = file->second.dataClass == dataClass ? _files.erase(file) : std::next(file);
    _groups[dataClass].clear();
    _leftOut[dataClass].clear();
    _lastGroup.clear();
    if (dataClass == KEL_CASE) {
        findInFolder(KEL_CASE, "constant", true);
        findInFolder(KEL_CASE, "system", true);
        findMeshFiles();
        return;
    }
    for (const CaseFolder::Time& time : _folder.times()) {
        findInFolder(KEL_DATA, time.name, false);
        findInFolder(KEL_DATA, time.name + "/uniform", true);
    }
}

/// A mesh folder holds lists of numbers, except for the entries of patches and zones.
void CaseSettings::findMeshFiles()
{
    std::set<std::string> known;
    for (std::size_t mesh = 0; mesh < _folder.meshes().size(); ++mesh)
        for (const char* name : {"boundary", "cellZones", "faceZones", "pointZones"}) {
            const std::string path = _folder.meshFile(mesh, name);
            const std::string group = path.substr(_folder.path().size() + 1);
            if (ByteSource::exists(path) && known.insert(group).second)
                add(KEL_CASE, group, name == std::string("boundary") ? Form::Patches : Form::Zones);
        }
}

void CaseSettings::findInFolder(KelDataClass dataClass, const std::string& folder, bool withSubfolders)
{
    const std::vector<std::string> names =
        withSubfolders ? CaseFiles::below(_folder.path() + "/" + folder).files : _folder.filesIn(folder);
    for (const std::string& name : names) {
        const std::vector<std::string> pieces = piecesOf(name);
        if (std::find(pieces.begin(), pieces.end(), "polyMesh") != pieces.end())
            continue;
        const std::string group = folder + "/" + name;
        try {
            ByteSource source(_folder.path() + "/" + group);
            const std::string className = FoamReader(source).readHeader().className;
            const bool isField = !withSubfolders && FieldKind::of(className).place != FieldKind::None; // of a time
            if (isField || (isDictionary(className) && source.leftAtMost() <= largestDictionary * 8))
                add(dataClass, group, isField ? Form::Field : Form::Dictionary);
            else
                _leftOut[dataClass].push_back({KEL_FAMILY_COUNT, group, KelNotRead::NotKnown,
                                               className.empty() ? "a file without a head FoamFile that names its class"
                                               : isDictionary(className) ? "a dictionary of more than 128 megabytes"
                                                                         : "a file of the class '" + className + "'"});
        } catch (const FoamError& error) {
            _leftOut[dataClass].push_back(
                {KEL_FAMILY_COUNT, group, KelNotRead::NotReadable, error.withoutPath(_folder.path() + "/" + group)});
        }
    }
}

/// A dictionary, patches and zones that say nothing beside numbers are no group.
void CaseSettings::add(KelDataClass dataClass, const std::string& group, Form form)
{
    _files[group] = {form, dataClass};
    if (form == Form::Field || !content(group).values.empty())
        _groups[dataClass].push_back(group);
}

const CaseSettings::Values& CaseSettings::values(KelDataClass dataClass, const std::string& group) const
{
    static const Values none;
    const std::vector<std::string>& groups = _groups[dataClass];
    return std::find(groups.begin(), groups.end(), group) != groups.end() ? content(group).values : none;
}

std::string CaseSettings::text(const std::string& group) const
{
    const auto file = _files.find(group);
    std::string text;
    if (file == _files.end() || file->second.form != Form::Dictionary)
        return text;
    for (ByteSource source(_folder.path() + "/" + group); source.ensure(1); source.advance(source.end()))
        text.append(source.begin(), source.end());
    return text;
}

std::vector<KelSourceItem> CaseSettings::leftOut(KelDataClass dataClass) const
{
    std::vector<KelSourceItem> items = _leftOut[dataClass];
    for (const auto& [group, file] : _files) {
        if (file.dataClass != dataClass)
            continue;
        const std::vector<KelSourceItem>& found = content(group).leftOut;
        items.insert(items.end(), found.begin(), found.end());
    }
    return items;
}

const CaseSettings::Content& CaseSettings::content(const std::string& group) const
{
    if (group != _lastGroup) {
        try {
            _last = read(group, _files.at(group).form);
        } catch (const FoamError& error) {
            _last = {{},
                     {{KEL_FAMILY_SETTINGS, group, KelNotRead::NotReadable,
                       error.withoutPath(_folder.path() + "/" + group)}}};
        }
        _lastGroup = group;
    }
    return _last;
}

CaseSettings::Content CaseSettings::read(const std::string& group, Form form) const
{
    Content content;
    Collector collector(group, content.values, content.leftOut);
    ByteSource source(_folder.path() + "/" + group);
    FoamReader reader(source);
    collector.takeHead(reader.readHeader());
    if (form == Form::Patches)
        collector.take(readNamed(reader), {}, isOfFaceZone);
    else if (form == Form::Zones)
        collector.take(readNamed(reader), {}, isOfZone);
    else if (form == Form::Dictionary)
        collector.take(FoamDictionary::read(reader), {}, isNowhereElse);
    else {
        const FieldKind kind = FieldKind::of(reader.header().className);
        const FoamDictionary dictionary = FoamDictionary::read(reader);
        const FieldFile field = outlineOf(dictionary, kind);
        const std::vector<PolyPatch> patches = patchesAt(piecesOf(group).front());
        collector.take("FoamFile/class", reader.header().className);
        collector.take(dictionary, {}, [&](const std::string& key, const FoamDictionary::Entry& entry) {
            return isOfVariable(field, patches, key, entry);
        });
    }
    collector.dropOutranked();
    return content;
}

/// Names, types and groups of the patches of the mesh to which a time belongs.
std::vector<PolyPatch> CaseSettings::patchesAt(const std::string& time) const
{
    const auto& times = _folder.times();
    const auto found = std::find_if(times.begin(), times.end(), [&](const auto& one) { return one.name == time; });
    const std::size_t mesh = _folder.meshOfTime(static_cast<std::size_t>(found - times.begin()));
    ByteSource source(_folder.meshFile(mesh, "boundary"));
    FoamReader reader(source);
    reader.readHeader();
    std::vector<PolyPatch> patches;
    for (const FoamDictionary::Entry& entry : readNamed(reader).entries) {
        PolyPatch patch;
        patch.name = entry.name;
        patch.type = entry.dictionary.text("type");
        patch.groups = wordsInParentheses(entry.dictionary.text("inGroups"));
        patch.count = entry.dictionary.text("nFaces") == "0" ? 0 : 1; // only whether there are any
        patches.push_back(std::move(patch));
    }
    return patches;
}

} // namespace meridyn::polymesh
