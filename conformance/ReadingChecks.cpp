#include "Checks.h"

#include "KelCompare.h"

#include <filesystem>
#include <fstream>
#include <limits>

namespace meridyn::conformance {

namespace {

constexpr unsigned64 farId = std::numeric_limits<unsigned64>::max();
constexpr unsigned64 mostElements = 100; ///< of a zone that are looked at

/// An array of whatever kind as it is read: a name, a zone category, functions of a range, a zone and one element.
template <class T>
struct Readable {
    std::string name;
    KelZoneCategory category;
    std::function<unsigned64(const KelProvider&, unsigned64, unsigned64, T*, unsigned64)> range;
    std::function<unsigned64(const KelProvider&, int, T*, unsigned64)> zone;
    std::function<unsigned64(const KelProvider&, unsigned64, T*, unsigned64)> one;
};

template <class Visit>
void forReadables(const Visit& visit)
{
    const auto coordinates = [](auto type) {
        using T = decltype(type);
        return Readable<T>{
            "coordinates", KEL_NODE_ZONE,
            [](const auto& r, auto a, auto b, T* v, auto n) { return r.getCoordinatesForNodesInRange(a, b, v, n); },
            [](const auto& r, int z, T* v, auto n) { return r.getCoordinatesForNodesInZone(z, v, n); },
            [](const auto& r, auto a, T* v, auto n) { return r.getCoordinatesForNode(a, v, n); }};
    };
    visit(coordinates(double{}));
    visit(coordinates(float{}));
    for (const RaggedArray& array : raggedArrays()) {
        visit(Readable<short>{
            std::string("number of ") + array.name(), array.category,
            [array](const auto& r, auto a, auto b, short* v, auto n) { return (r.*array.getCountRange)(a, b, v, n); },
            [array](const auto& r, int z, short* v, auto n) { return (r.*array.getCountZone)(z, v, n); }, nullptr});
        visit(Readable<unsigned64>{
            array.name(), array.category,
            [array](const auto& r, auto a, auto b, auto* v, auto n) { return (r.*array.getIdRange)(a, b, v, n); },
            [array](const auto& r, int z, auto* v, auto n) { return (r.*array.getIdZone)(z, v, n); },
            [array](const auto& r, auto a, auto* v, auto n) { return (r.*array.getIds)(a, v, n); }});
    }
    forFixedArrays([&visit](const auto& array) {
        const auto own = array;
        using T = typename std::remove_reference_t<decltype((std::declval<Mesh>().*array.data))>::value_type;
        visit(Readable<T>{own.name(), own.category,
                          [own](const auto& r, auto a, auto b, T* v, auto n) { return (r.*own.getRange)(a, b, v, n); },
                          [own](const auto& r, int z, T* v, auto n) { return (r.*own.getZone)(z, v, n); }, nullptr});
    });
}

/// Zones of an open case as they are, at most some elements each.
std::vector<Zone> zonesOf(const KelProvider& reader, KelZoneCategory category)
{
    Ids ids;
    reader.getZoneIds(category, ids);
    std::vector<Zone> zones;
    for (const int id : ids) {
        Zone zone{id, category, 0, 0, "", -1};
        reader.getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, zone.first);
        reader.getZoneSizeInfo(id, KEL_ZONE_LAST_ID, zone.last);
        if (zone.first != 0 && zone.last >= zone.first)
            zones.push_back(zone);
    }
    return zones;
}

/// Room for all values of a range, with plenty to spare for ids of many-sided elements.
unsigned64 roomFor(unsigned64 elements)
{
    return elements * 64 + 64;
}

template <class T>
std::vector<T> readRange(const KelProvider& reader, const Readable<T>& array, unsigned64 first, unsigned64 last)
{
    std::vector<T> values(roomFor(last - first + 1));
    values.resize(std::min<unsigned64>(array.range(reader, first, last, values.data(), values.size()), values.size()));
    return values;
}

/// The models to read: those of the format, or one that its writer makes.
std::vector<std::string> models(Case& test)
{
    if (!test.format.makeWriter)
        return test.format.samples;
    const Mesh mesh = smallMesh();
    const auto writer = test.writer(90);
    declareMesh(*writer, mesh);
    const bool done =
        test.write(*writer, KEL_CASE, [&] { writeArrays(*writer, mesh, test.format.writes, Form::Range); });
    std::vector<std::string> names = test.format.samples;
    if (done)
        names.push_back(test.name(90));
    return names;
}

/// Opens the case of each model and calls `body(reader)`.
template <class Body>
void forCases(Case& test, const Body& body)
{
    for (const std::string& name : models(test)) {
        const auto reader = test.readerOf(name);
        test.read(*reader, KEL_CASE, [&] { body(*reader, name); });
    }
}

void recognition(Case& test)
{
    for (const std::string& name : models(test)) {
        test.expect(test.format.probe(name), Case::quoted(name) + " is not recognised");
        const KelFormatFiles files = test.format.files(name, false);
        test.expect(!files.caseFile.empty() || !files.dataFile.empty(), Case::quoted(name) + " has no files");
    }
    const std::filesystem::path folder = std::filesystem::path(test.folder()) / "strangers";
    std::filesystem::create_directories(folder / "empty folder");
    std::ofstream(folder / "empty file") << "";
    std::ofstream(folder / "text") << "This is no model.\n";
    std::ofstream(folder / "zeros") << std::string(4096, '\0');
    for (const std::string& stranger :
         {std::string(), (folder / "empty folder").string(), (folder / "empty file").string(),
          (folder / "text").string(), (folder / "zeros").string(), (folder / "missing").string()}) {
        test.expect(!test.format.probe(stranger), Case::quoted(stranger) + " is taken for a model");
        const auto reader = test.format.makeReader();
        for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA}) {
            test.expect(!static_cast<KelFileProvider&>(*reader).startReading(stranger, dataClass),
                        Case::quoted(stranger) + " is opened");
            test.expect(stranger.empty() || reader->hasError(),
                        Case::quoted(stranger) + " is refused without a KelError");
        }
    }
}

void formsAgree(Case& test)
{
    forCases(test, [&](const KelProvider& reader, const std::string& name) {
        forReadables([&](const auto& array) {
            for (const Zone& zone : zonesOf(reader, array.category)) {
                const std::string what =
                    array.name + " of zone " + std::to_string(zone.id) + " of " + Case::quoted(name);
                const unsigned64 last = std::min(zone.last, zone.first + mostElements - 1);
                const auto all = readRange(reader, array, zone.first, last);
                if (all.empty())
                    continue;
                if (last == zone.last) {
                    auto byZone = all;
                    byZone.assign(roomFor(zone.count()), {});
                    byZone.resize(
                        std::min<unsigned64>(array.zone(reader, zone.id, byZone.data(), byZone.size()), byZone.size()));
                    test.same(what + " by zone", all, byZone);
                }
                auto pieces = all, single = all;
                pieces.clear();
                single.clear();
                for (unsigned64 first = zone.first; first <= last; first += 3) {
                    const auto piece = readRange(reader, array, first, std::min(first + 2, last));
                    pieces.insert(pieces.end(), piece.begin(), piece.end());
                }
                test.same(what + " in pieces", all, pieces);
                for (unsigned64 id = zone.first; array.one && id <= last; ++id) {
                    auto values = all;
                    values.assign(roomFor(1), {});
                    values.resize(
                        std::min<unsigned64>(array.one(reader, id, values.data(), values.size()), values.size()));
                    single.insert(single.end(), values.begin(), values.end());
                }
                if (array.one)
                    test.same(what + " one by one", all, single);
            }
        });
        const auto sameOne = [&](const std::string& what, auto expected, auto found) {
            test.expect(expected == found, what + ": the form of one element differs from the range form");
        };
        for (const RaggedArray& array : raggedArrays())
            for (const Zone& zone : zonesOf(reader, array.category)) {
                short count = 0;
                if ((reader.*array.getCountRange)(zone.first, zone.first, &count, 1) == 1)
                    sameOne(array.name(), count, (reader.*array.getCount)(zone.first));
            }
        forFixedArrays([&](const auto& array) {
            for (const Zone& zone : zonesOf(reader, array.category)) {
                auto value = array.one(reader, zone.last), other = value;
                if ((reader.*array.getRange)(zone.last, zone.last, &other, 1) == 1)
                    sameOne(array.name(), other, value);
            }
        });
    });
}

void smallBuffers(Case& test)
{
    forCases(test, [&](const KelProvider& reader, const std::string& name) {
        forReadables([&](const auto& array) {
            for (const Zone& zone : zonesOf(reader, array.category)) {
                const unsigned64 last = std::min(zone.last, zone.first + 9);
                const auto all = readRange(reader, array, zone.first, last);
                using T = typename std::decay_t<decltype(all)>::value_type;
                const T mark = static_cast<T>(77);
                for (const unsigned64 capacity : {unsigned64{0}, unsigned64{1}, all.empty() ? 0 : all.size() - 1}) {
                    if (capacity >= all.size())
                        continue;
                    const std::string what = array.name + " of zone " + std::to_string(zone.id) + " of " +
                                             Case::quoted(name) + " into a buffer of " + std::to_string(capacity);
                    std::vector<T> buffer(all.size() + 4, mark);
                    const unsigned64 found = array.range(reader, zone.first, last, buffer.data(), capacity);
                    test.expect(found <= capacity,
                                what + ": " + std::to_string(found) + " values are said to be stored");
                    test.expect(std::all_of(buffer.begin() + static_cast<std::ptrdiff_t>(capacity), buffer.end(),
                                            [&](const T& value) { return value == mark; }),
                                what + ": values are stored behind its end");
                    for (unsigned64 n = 0; n < std::min(found, capacity); ++n)
                        test.expect(Case::sameValue(buffer[n], all[n]),
                                    what + ": value " + std::to_string(n + 1) + " differs");
                }
            }
        });
    });
}

void idsThatDoNotExist(Case& test)
{
    forCases(test, [&](KelProvider& reader, const std::string& name) {
        forReadables([&](const auto& array) {
            unsigned64 last = 0;
            for (const Zone& zone : zonesOf(reader, array.category))
                last = std::max(last, zone.last);
            auto buffer = readRange(reader, array, 1, 1);
            buffer.assign(roomFor(1), {});
            const auto read = [&](unsigned64 from, unsigned64 to) {
                return array.range(reader, from, to, buffer.data(), buffer.size());
            };
            const std::string what = array.name + " of " + Case::quoted(name);
            test.same(what + ", id 0", 0, read(0, 0));
            test.same(what + ", ids behind the last", 0, read(last + 1, last + 2));
            test.same(what + ", the largest id", 0, read(farId, farId));
            test.same(what + ", a range that ends before it begins", 0, read(2, 1));
            test.expect(read(1, farId) <= buffer.size(),
                        what + ", ids 1 to the largest: more values than there is room for");
            test.same(what + ", a zone that is not there", 0, array.zone(reader, -4711, buffer.data(), buffer.size()));
        });
        test.expect(reader.getTypeForCell(farId) == -1, "the type of a cell that is not there is not -1");
        test.same("cell 0 of a face that is not there", 0, reader.getCell0ForFace(farId));
        short count = 5;
        test.expect(!reader.hasUniformNodeCountForFacesInZone(-4711, &count),
                    "a zone that is not there has uniform counts");
        KelCellType type = KEL_CELL_POLYGON;
        test.expect(!reader.hasUniformTypeForCellsInZone(-4711, &type), "a zone that is not there has a uniform type");
        reader.getErrors(false, true); // may have been reported
    });
}

void idsInTheMesh(Case& test)
{
    forCases(test, [&](const KelProvider& reader, const std::string& name) {
        const auto expectIds = [&](const std::string& what, const std::vector<unsigned64>& ids,
                                   KelZoneCategory category, bool mayBeNone) {
            unsigned64 last = 0;
            for (const Zone& zone : zonesOf(reader, category))
                last = std::max(last, zone.last);
            for (const unsigned64 id : ids)
                test.expect(id <= last && (mayBeNone || id != 0),
                            what + " of " + Case::quoted(name) + ": there is no element " + std::to_string(id));
        };
        for (const RaggedArray& array : raggedArrays()) {
            for (const Zone& zone : zonesOf(reader, array.category)) {
                const unsigned64 last = std::min(zone.last, zone.first + mostElements - 1);
                std::vector<unsigned64> ids(roomFor(mostElements));
                ids.resize(std::min<unsigned64>((reader.*array.getIdRange)(zone.first, last, ids.data(), ids.size()),
                                                ids.size()));
                expectIds(array.name(), ids, array.idsOf.value_or(array.category), false);
                std::vector<short> counts(last - zone.first + 1);
                counts.resize((reader.*array.getCountRange)(zone.first, last, counts.data(), counts.size()));
                unsigned64 sum = 0;
                for (const short count : counts)
                    sum += static_cast<unsigned64>(count);
                if (!counts.empty())
                    test.same(std::string("ids that the numbers of ") + array.name() + " promise", sum, ids.size());
            }
        }
        for (const FixedArray<unsigned64>& array : idArrays())
            for (const Zone& zone : zonesOf(reader, KEL_FACE_ZONE)) {
                std::vector<unsigned64> ids(std::min(zone.count(), mostElements));
                ids.resize((reader.*array.getRange)(zone.first, zone.first + ids.size() - 1, ids.data(), ids.size()));
                expectIds(array.name(), ids, array.idsOf.value_or(array.category), array.zeroIsNone);
            }
    });
}

/// Notes each array of which an object that is not open gives something.
void expectNothing(Case& test, const KelProvider& reader, const std::string& when)
{
    forReadables([&](const auto& array) {
        auto buffer = readRange(reader, array, 1, 1);
        test.expect(buffer.empty(), array.name + " " + when + ": " + std::to_string(buffer.size()) + " values");
    });
    double value = 0;
    test.same("values " + when, 0, reader.getValuesOfPhaseVariableForElementsInRange(1, 1, &value, 1));
    std::vector<std::string> names = {"replaced"};
    std::vector<std::pair<std::string, std::string>> log = {{"replaced", ""}};
    reader.getSettingsKeys(KEL_CASE, names);
    test.expect(names.empty(), "there are settings " + when);
    reader.getLog(KEL_CASE, log);
    test.expect(log.empty(), "there is a log " + when);
    names.clear();
    test.expect(!reader.getSetNames(names), "there are sets " + when);
    test.expect(!reader.isReadingData(), "isReadingData() " + when + " gives true");
}

void readingTooEarlyAndTooLate(Case& test)
{
    test.expect(!test.format.makeReader()->startReading(KEL_CASE), "startReading without a file name gives true");
    for (const std::string& name : models(test)) {
        const auto reader = test.readerOf(name);
        test.expect(!reader->endReading(KEL_CASE), "endReading(KEL_CASE) without startReading gives true");
        test.expect(!reader->endReading(KEL_DATA), "endReading(KEL_DATA) without startReading gives true");
        expectNothing(test, *reader, "before startReading");
        reader->getErrors(false, true);
        test.read(*reader, KEL_CASE, [&] { test.expect(reader->isReadingData(), "isReadingData() gives false"); });
        test.expect(!reader->endReading(KEL_CASE), "a second endReading(KEL_CASE) gives true");
        expectNothing(test, *reader, "after endReading");
    }
}

void compareReaders(Case& test, KelFileProvider& one, KelFileProvider& other, bool withData, const std::string& what)
{
    KelCompareOptions options;
    options.compareData = withData;
    KelCompare compare(one, other, options);
    test.expect(compare.run(), what + ": " + compare.problem());
    test.expect(compare.differences().empty(), what + ": " + compare.text());
}

void readersAgree(Case& test)
{
    for (const std::string& name : models(test)) {
        const bool withData = !test.format.makeWriter && !test.format.files(name, false).dataFile.empty();
        const auto one = test.readerOf(name), other = test.readerOf(name);
        compareReaders(test, *one, *other, withData, "a second reader");
        const auto fresh = test.readerOf(name);
        compareReaders(test, *one, *fresh, withData, "a reader that was open before");
    }
}

void reopening(Case& test)
{
    const std::vector<std::string> names = models(test);
    if (names.empty())
        return;
    const auto reader = test.readerOf(names.front());
    for (const std::string& name : names) { // one reader, one model after the other
        const KelFormatFiles files = test.format.files(name, false);
        reader->setFile(files.caseFile, KEL_CASE);
        const auto fresh = test.readerOf(name);
        compareReaders(test, *fresh, *reader, false, "a reader that goes on to " + Case::quoted(name));
    }
}

} // namespace

void addReadingChecks(Checks& checks)
{
    const auto add = [&checks](const char* name, const std::function<void(Case&)>& run) {
        checks.push_back({name, 0, run, Check::Kind::Reading});
    };
    checks.push_back({"recognition", 0, recognition, Check::Kind::Recognition});
    add("forms-agree", formsAgree);
    add("small-buffers", smallBuffers);
    add("ids-that-do-not-exist", idsThatDoNotExist);
    add("ids-in-the-mesh", idsInTheMesh);
    add("calls-while-nothing-is-read", readingTooEarlyAndTooLate);
    add("readers-agree", readersAgree);
    add("one-reader-for-several-models", reopening);
}

} // namespace meridyn::conformance
