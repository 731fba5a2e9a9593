// Thousands of random operations on a location model and on a plain list of records: both must tell the same.
#include "KelLocationModel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <tuple>
#include <utility>

namespace {

using namespace meridyn;
using Ints = std::vector<int>;
using IntSet = std::set<int>;

/// One part (p), body (b), face (f), face use (u, with its signed id) or composite (c).
struct Record {
    char kind;
    int id;
    int part;
    std::string name;
    int body = 0;                           // of a face use
    std::set<std::pair<char, int>> members; // of a composite
    std::map<int, IntSet> zones;            // by map
};

/// Zone sides in the order of the model: by zone, near before far.
Ints orderedSides(const IntSet& sides)
{
    Ints ordered(sides.begin(), sides.end());
    std::sort(ordered.begin(), ordered.end(),
              [](int a, int b) { return std::abs(a) != std::abs(b) ? std::abs(a) < std::abs(b) : a > b; });
    return ordered;
}

class Oracle {
public:
    const Record* find(char kind, int id) const
    {
        for (const Record& record : _records)
            if (record.kind == kind && record.id == id)
                return &record;
        return nullptr;
    }
    Record* find(char kind, int id) { return const_cast<Record*>(std::as_const(*this).find(kind, id)); }

    bool isTaken(char kind, int part, const std::string& name, int except = 0) const
    {
        return !name.empty() && std::any_of(_records.begin(), _records.end(), [&](const Record& record) {
            return record.kind == kind && record.part == part && record.name == name && record.id != except;
        });
    }

    bool create(char kind, int part, const std::string& name, int& id)
    {
        if (kind != 'p' && (find('p', part) == nullptr || isTaken(kind, part, name)))
            return false;
        id = ++_last[kind];
        _records.push_back({kind, id, part, name, 0, {}, {}});
        return true;
    }

    bool createFaceUse(int body, int face, int side, int& id)
    {
        const Record* owner = find('b', body);
        if (owner == nullptr || find('f', face) == nullptr || side < 0 || side > 1)
            return false;
        const int use = side == 0 ? face : -face;
        const Record* taken = find('u', use);
        if (taken != nullptr && taken->body != body)
            return false;
        if (taken == nullptr)
            _records.push_back({'u', use, owner->part, "", body, {}, {}});
        id = use;
        return true;
    }

    bool remove(char kind, int id)
    {
        if (find(kind, id) == nullptr)
            return false;
        std::vector<std::pair<char, int>> dependants;
        for (const Record& record : _records) {
            const bool owned = kind == 'p' && record.kind != 'p' && record.part == id;
            const bool used = record.kind == 'u' &&
                              ((kind == 'f' && std::abs(record.id) == id) || (kind == 'b' && record.body == id));
            if (owned || used)
                dependants.emplace_back(record.kind, record.id);
        }
        for (const auto& [otherKind, otherId] : dependants)
            remove(otherKind, otherId);
        for (Record& record : _records)
            record.members.erase({kind, id});
        _records.erase(std::remove_if(_records.begin(), _records.end(),
                                      [&](const Record& record) { return record.kind == kind && record.id == id; }),
                       _records.end());
        return true;
    }

    bool holds(const std::pair<char, int>& member, int composite) const
    {
        if (member.first != 'c')
            return false;
        if (member.second == composite)
            return true;
        const auto& inner = find('c', member.second)->members;
        return std::any_of(inner.begin(), inner.end(), [&](const auto& next) { return holds(next, composite); });
    }

    /// What a region covers: bodies ('b') or face uses ('u').
    void cover(const Record& record, char wanted, IntSet& covered) const
    {
        if (record.kind == wanted)
            covered.insert(record.id);
        for (const Record& other : _records) {
            const bool bodyOfPart = record.kind == 'p' && other.kind == 'b' && other.part == record.id;
            const bool useOfBody = record.kind == 'b' && other.kind == 'u' && other.body == record.id;
            const bool useOfFace = record.kind == 'f' && other.kind == 'u' && std::abs(other.id) == record.id;
            if (bodyOfPart || ((useOfBody || useOfFace) && wanted == 'u'))
                cover(other, wanted, covered);
        }
        for (const auto& [kind, id] : record.members)
            cover(*find(kind, id), wanted, covered);
    }

    bool resolve(const std::string& name, int map, IntSet& cells, IntSet& sides) const
    {
        IntSet bodies;
        IntSet uses;
        for (const Record& record : _records)
            if (name == "*" ? !record.name.empty() : record.name == name) {
                cover(record, 'b', bodies);
                cover(record, 'u', uses);
            }
        if (bodies.empty() && uses.empty())
            return false;
        for (const auto& [kind, ids, zones] : {std::tuple{'b', &bodies, &cells}, std::tuple{'u', &uses, &sides}})
            for (const int id : *ids) {
                const Record* record = find(kind, id);
                const auto found = record->zones.find(map);
                if (found != record->zones.end())
                    zones->insert(found->second.begin(), found->second.end());
            }
        return !cells.empty() || !sides.empty();
    }

    /// The ids of a kind in a part, as the model lists them.
    Ints list(char kind, int part) const
    {
        Ints ids;
        for (const Record& record : _records)
            if (record.kind == kind && (kind == 'p' || record.part == part))
                ids.push_back(record.id);
        return kind == 'u' ? orderedSides(IntSet(ids.begin(), ids.end())) : ids;
    }

private:
    std::vector<Record> _records;
    std::map<char, int> _last;
};

/// A run begins with an empty model, so that ids stay in the range from which the operations draw.
class RandomRuns : public ::testing::TestWithParam<unsigned> {
public:
    int below(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }
    std::string someName() { return names[static_cast<std::size_t>(below(6))]; }
    int someId() { return below(40); }
    int someUse() { return below(2) == 0 ? someId() : -someId(); }
    char someKind() { return "pbfcu"[below(5)]; }

    void create();
    void remove();
    void rename();
    void setZones();
    void setMembers();
    void resolve();
    void compare();

    std::mt19937 random{GetParam()};
    const char* const names[6] = {"", "a", "b", "c", "d", "e"};
    KelLocationModel model;
    Oracle oracle;
};

void RandomRuns::create()
{
    const char kind = someKind();
    const int owner = kind == 'u' ? someId() : below(8);
    const std::string name = someName();
    const int face = someId();
    const int side = below(3);
    int id = 0;
    int expected = 0;
    bool made = true;
    switch (kind) {
    case 'p':
        model.createPart(3, name, id);
        break;
    case 'b':
        made = model.createBody(owner, name, id);
        break;
    case 'f':
        made = model.createFace(owner, name, id);
        break;
    case 'c':
        made = model.createComposite(owner, name, id);
        break;
    default:
        made = model.createFaceUse(owner, face, side, id);
    }
    ASSERT_EQ(made, kind == 'u' ? oracle.createFaceUse(owner, face, side, expected)
                                : oracle.create(kind, owner, name, expected));
    ASSERT_EQ(id, expected);
}

void RandomRuns::remove()
{
    const char kind = someKind();
    const int id = kind == 'u' ? someUse() : someId();
    if (kind == 'p' && below(8) != 0)
        return; // or nothing would ever grow
    const bool removed = kind == 'p'   ? model.deletePart(id)
                         : kind == 'b' ? model.deleteBody(id)
                         : kind == 'f' ? model.deleteFace(id)
                         : kind == 'c' ? model.deleteComposite(id)
                                       : model.deleteFaceUse(id);
    ASSERT_EQ(removed, oracle.remove(kind, id)) << kind << id;
}

void RandomRuns::rename()
{
    const char kind = someKind();
    const int id = kind == 'u' ? someUse() : someId();
    const std::string name = someName();
    const bool renamed = kind == 'p'   ? model.setPartName(id, name)
                         : kind == 'b' ? model.setBodyName(id, name)
                         : kind == 'f' ? model.setFaceName(id, name)
                         : kind == 'c' ? model.setCompositeName(id, name)
                                       : model.setFaceUseName(id, name);
    Record* record = oracle.find(kind, id);
    const bool expected = record != nullptr && (kind == 'p' || !oracle.isTaken(kind, record->part, name, id));
    ASSERT_EQ(renamed, expected) << kind << id;
    if (expected)
        record->name = name;
}

void RandomRuns::setZones()
{
    const char kind = "bfu"[below(3)];
    const int id = kind == 'u' ? someUse() : someId();
    const int map = below(2);
    Ints zones;
    for (int n = below(4); n > 0; --n)
        zones.push_back(below(20) - 10);
    const bool done = kind == 'b'   ? model.setBodyZones(id, map, zones)
                      : kind == 'f' ? model.setFaceZones(id, map, zones)
                                    : model.setFaceUseZoneSides(id, map, zones);
    Record* record = oracle.find(kind, id);
    ASSERT_EQ(done, record != nullptr);
    if (record != nullptr)
        record->zones[map] = IntSet(zones.begin(), zones.end());
}

void RandomRuns::setMembers()
{
    const int id = someId();
    std::map<char, Ints> members;
    std::set<std::pair<char, int>> all;
    for (int n = below(4); n > 0; --n) {
        const char kind = "bfuc"[below(4)];
        members[kind].push_back(kind == 'u' ? someUse() : someId());
        all.emplace(kind, members[kind].back());
    }
    Record* record = oracle.find('c', id);
    const bool expected = record != nullptr && std::all_of(all.begin(), all.end(), [&](const auto& member) {
                              return oracle.find(member.first, member.second) != nullptr && !oracle.holds(member, id);
                          });
    ASSERT_EQ(model.setCompositeComponents(id, members['b'], members['f'], members['u'], members['c']), expected);
    if (expected)
        record->members = all;
}

void RandomRuns::resolve()
{
    const std::string name = below(4) == 0 ? "*" : someName();
    const int map = below(2);
    Ints cells;
    Ints sides;
    IntSet expectedCells;
    IntSet expectedSides;
    const bool found = model.resolveLocation(name, 0, map, cells, sides);
    ASSERT_EQ(found, !name.empty() && oracle.resolve(name, map, expectedCells, expectedSides)) << name;
    ASSERT_EQ(cells, Ints(expectedCells.begin(), expectedCells.end())) << name;
    ASSERT_EQ(sides, Ints(expectedSides.begin(), expectedSides.end())) << name;
}

void RandomRuns::compare()
{
    Ints ids;
    model.getParts(ids);
    ASSERT_EQ(ids, oracle.list('p', 0));
    for (const int part : Ints(ids)) {
        ASSERT_TRUE(model.getPartBodies(part, ids));
        ASSERT_EQ(ids, oracle.list('b', part));
        ASSERT_TRUE(model.getPartFaces(part, ids));
        ASSERT_EQ(ids, oracle.list('f', part));
        for (const int face : Ints(ids)) {
            Ints zones;
            ASSERT_TRUE(model.getFaceZones(face, 0, zones));
            const IntSet& expected = oracle.find('f', face)->zones[0];
            ASSERT_EQ(zones, Ints(expected.begin(), expected.end()));
        }
        ASSERT_TRUE(model.getPartComposites(part, ids));
        ASSERT_EQ(ids, oracle.list('c', part));
        ASSERT_TRUE(model.getPartFaceUses(part, ids));
        ASSERT_EQ(ids, oracle.list('u', part));
        for (const int use : Ints(ids)) {
            Ints sides;
            ASSERT_TRUE(model.getFaceUseZoneSides(use, 0, sides));
            ASSERT_EQ(sides, orderedSides(oracle.find('u', use)->zones[0]));
        }
    }
    const std::string state = model.state();
    ASSERT_TRUE(model.reset(state));
    ASSERT_EQ(model.state(), state);
}

TEST_P(RandomRuns, TellTheSame)
{
    void (RandomRuns::*const operations[])() = {&RandomRuns::create,     &RandomRuns::create, &RandomRuns::create,
                                                &RandomRuns::remove,     &RandomRuns::rename, &RandomRuns::setZones,
                                                &RandomRuns::setMembers, &RandomRuns::resolve};
    for (int step = 0; step < 1000; ++step) {
        SCOPED_TRACE(step);
        (this->*operations[below(8)])();
        if (step % 50 == 0)
            compare();
        if (HasFatalFailure())
            return;
    }
}

INSTANTIATE_TEST_SUITE_P(Location, RandomRuns, ::testing::Range(1U, 21U));

} // namespace
