#include "StateText.h"

#include "Numbers.h"
#include "StateCommon.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

namespace strata {

namespace {

/// The words of one line, taken from front to back. Once a word is missing or not what was asked for, all that
/// follows fails too, so that a record is read in one go and asked once.
class Words {
public:
    explicit Words(std::string_view line) : _rest(line), _hasMore(true) {}

    bool isGood() const { return _good; }
    bool isDone() const { return _good && !_hasMore; }
    bool hasMore() const { return _good && _hasMore; }
    void fail() { _good = false; }

    std::string_view word()
    {
        if (!hasMore()) {
            fail();
            return {};
        }
        const std::size_t end = _rest.find(' ');
        const std::string_view next = _rest.substr(0, end);
        _hasMore = end != std::string_view::npos;
        _rest.remove_prefix(_hasMore ? end + 1 : _rest.size());
        return next;
    }
    std::int64_t number(std::int64_t least, std::int64_t greatest)
    {
        std::int64_t value = least;
        if (!readNumber(word(), least, greatest, value))
            fail();
        return value;
    }
    int anyInt() { return static_cast<int>(number(std::numeric_limits<int>::min(), std::numeric_limits<int>::max())); }
    std::string name();

private:
    std::string_view _rest;
    bool _hasMore;
    bool _good = true;
};

std::string Words::name()
{
    const std::string_view text = word();
    if (text.empty() || text[0] != '=')
        fail();
    std::string name;
    for (std::size_t at = 1; _good && at < text.size(); ++at) {
        if (text[at] != '%') {
            name += text[at];
            continue;
        }
        const std::size_t high = at + 1 < text.size() ? upperHexDigits.find(text[at + 1]) : std::string_view::npos;
        const std::size_t low = at + 2 < text.size() ? upperHexDigits.find(text[at + 2]) : std::string_view::npos;
        if (high == std::string_view::npos || low == std::string_view::npos)
            fail();
        name += static_cast<char>((high * 16 + low) & 255U);
        at += 2;
    }
    return name;
}

template <class T>
T* at(const std::map<int, std::unique_ptr<T>>& all, std::int64_t number)
{
    const auto found = all.find(static_cast<int>(number));
    return found == all.end() ? nullptr : found->second.get();
}

/// The region of an id as Region::id gives it; null when there is none.
Region* findRegion(const Store& store, std::string_view id)
{
    std::int64_t number = 0;
    const std::string_view digits = id.substr(id.empty() ? 0 : 1, id.find(':') - 1);
    if (id.empty() || !readNumber(digits, 1, greatestNumber, number))
        return nullptr;
    const std::string_view side = id.substr(1 + digits.size());
    if (id[0] == 'f' && !side.empty()) {
        const Face* face = at(store.faces, number);
        return face != nullptr && (side == ":0" || side == ":1") ? face->faceUse(side[1] - '0') : nullptr;
    }
    switch (side.empty() ? id[0] : ' ') {
    case 'b':
        return at(store.bodies, number);
    case 'f':
        return at(store.faces, number);
    case 'c':
        return at(store.composites, number);
    default:
        return nullptr;
    }
}

bool readNext(Words& words, Store& store)
{
    for (std::int64_t* next : {&store.nextPart, &store.nextBody, &store.nextFace, &store.nextComposite})
        *next = words.number(1, greatestNumber + 1);
    return words.isDone();
}

bool readPart(Words& words, Store& store)
{
    const std::int64_t number = words.number(1, store.nextPart - 1);
    const int dimensionality = words.anyInt();
    const std::string name = words.name();
    if (!words.isDone() || at(store.parts, number) != nullptr)
        return false;
    store.addPart(static_cast<int>(number), dimensionality, name);
    return true;
}

template <class T>
bool readRegion(Words& words, Store& store, const std::map<int, std::unique_ptr<T>>& all, std::int64_t next,
                T* (Store::*add)(Part&, int, const std::string&))
{
    const std::int64_t number = words.number(1, next - 1);
    Part* part = at(store.parts, words.number(1, greatestNumber));
    const std::string name = words.name();
    if (!words.isDone() || part == nullptr || at(all, number) != nullptr)
        return false;
    return (store.*add)(*part, static_cast<int>(number), name) != nullptr;
}

bool readUse(Words& words, Store& store)
{
    Face* face = at(store.faces, words.number(1, greatestNumber));
    const auto side = static_cast<int>(words.number(0, 1));
    Body* body = at(store.bodies, words.number(1, greatestNumber));
    const std::string name = words.name();
    return words.isDone() && face != nullptr && body != nullptr &&
           store.addFaceUse(*body, *face, side, name) != nullptr;
}

/// Circles are looked for once, when all members are known.
bool readMembers(Words& words, Store& store)
{
    Composite* composite = at(store.composites, words.number(1, greatestNumber));
    RegionSet members;
    while (words.hasMore()) {
        Region* member = findRegion(store, words.word());
        if (member == nullptr)
            return false;
        members.insert(member);
    }
    if (!words.isDone() || composite == nullptr)
        return false;
    Store::setMembers(*composite, members);
    return true;
}

ExternalFaceSide readSide(Words& words)
{
    std::string_view text = words.word();
    const bool farSide = !text.empty() && text[0] == '-';
    text.remove_prefix(farSide ? 1 : 0);
    std::int64_t zone = 0;
    if (!readNumber(text, 0, greatestNumber + (farSide ? 1 : 0), zone))
        words.fail();
    return {zone, farSide};
}

template <class External, class Read>
bool readZoneSet(Words& words, ZonesByMap<External>& all, Read read)
{
    const int map = words.anyInt();
    std::set<External> zones;
    while (words.hasMore())
        zones.insert(zones.end(), read(words));
    if (!words.isDone() || zones.empty())
        return false;
    return all.emplace(map, std::move(zones)).second;
}

bool readZones(Words& words, Store& store)
{
    const Region* region = findRegion(store, words.word());
    if (region == nullptr)
        return false;
    switch (region->kind()) {
    case Region::Kind::Body:
        return readZoneSet(words, Store::data(static_cast<const Body&>(*region)).zones,
                           [](Words& from) { return ExternalBody(from.anyInt()); });
    case Region::Kind::Face:
        return readZoneSet(words, Store::data(static_cast<const Face&>(*region)).zones,
                           [](Words& from) { return ExternalFace(from.anyInt()); });
    case Region::Kind::FaceUse:
        return readZoneSet(words, Store::data(static_cast<const FaceUse&>(*region)).zones, readSide);
    case Region::Kind::Composite:
        break;
    }
    return false;
}

bool readRecord(std::string_view line, std::string& modelName, Store& store)
{
    Words words(line);
    const std::string_view kind = words.word();
    if (kind == "model") {
        modelName = words.name();
        return words.isDone();
    }
    if (kind == "next")
        return readNext(words, store);
    if (kind == "part")
        return readPart(words, store);
    if (kind == "body")
        return readRegion(words, store, store.bodies, store.nextBody, &Store::addBody);
    if (kind == "face")
        return readRegion(words, store, store.faces, store.nextFace, &Store::addFace);
    if (kind == "use")
        return readUse(words, store);
    if (kind == "composite")
        return readRegion(words, store, store.composites, store.nextComposite, &Store::addComposite);
    if (kind == "members")
        return readMembers(words, store);
    return kind == "zones" && readZones(words, store);
}

/// Whether composites hold themselves: takes away, again and again, those that no remaining one holds.
bool hasCircle(const Store& store)
{
    std::unordered_map<const Region*, std::size_t> holders;
    std::vector<const Region*> free;
    for (const auto& [number, composite] : store.composites) {
        const std::size_t count = Store::data(static_cast<const Region&>(*composite)).owners.size();
        holders[composite.get()] = count;
        if (count == 0)
            free.push_back(composite.get());
    }
    std::size_t taken = 0;
    for (; !free.empty(); ++taken) {
        const auto& composite = static_cast<const Composite&>(*free.back());
        free.pop_back();
        for (const Region* member : Store::data(composite).composites)
            if (--holders[member] == 0)
                free.push_back(member);
    }
    return taken != store.composites.size();
}

} // namespace

bool readState(std::string_view text, std::string& modelName, Store& store)
{
    const std::size_t lastLine = text.rfind('\n') + 1; // 0 for a text of one line
    const std::string_view records = text.substr(0, lastLine);
    const std::string firstLine = "strata " + std::string(stateVersion) + '\n';
    if (records.substr(0, firstLine.size()) != firstLine || text.substr(lastLine) != checksumLine(records))
        return false;
    for (std::size_t from = firstLine.size(); from < records.size();) {
        const std::size_t end = records.find('\n', from);
        if (!readRecord(records.substr(from, end - from), modelName, store))
            return false;
        from = end + 1;
    }
    // What is left to check, the order of records and words and their number, shows by writing the same text again.
    return !hasCircle(store) && writeState(modelName, store) == text;
}

} // namespace strata
