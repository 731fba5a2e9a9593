#pragma once

#include "NameHash.h"

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace arbor {

/// Finds entries by their name(). Holds no two entries of one name, and no names: these stay with the entries.
template <class Entry>
class NameTable {
public:
    /// The entry of that name, or null.
    Entry* find(std::string_view name) const
    {
        if (_slots.empty())
            return nullptr;
        const std::uint64_t hash = NameHash()(name);
        for (std::size_t i = home(hash); _slots[i].entry != nullptr; i = next(i))
            if (_slots[i].hash == hash && _slots[i].entry->name() == name)
                return _slots[i].entry;
        return nullptr;
    }

    /// Adds an entry and gives null; when its name is taken gives the holder and changes nothing.
    Entry* insert(Entry* entry)
    {
        if (2 * (_count + 1) > _slots.size())
            grow();
        const std::uint64_t hash = NameHash()(entry->name());
        std::size_t i = home(hash);
        for (; _slots[i].entry != nullptr; i = next(i))
            if (_slots[i].hash == hash && _slots[i].entry->name() == entry->name())
                return _slots[i].entry;
        _slots[i] = {hash, entry};
        ++_count;
        return nullptr;
    }

    /// Puts an entry of the same name in the place of a held one.
    void replace(Entry* held, Entry* other) { _slots[slotOf(held)].entry = other; }

    /// Drops a held entry.
    void erase(Entry* held)
    {
        std::size_t hole = slotOf(held);
        _slots[hole] = {};
        --_count;
        // What stood behind it moves up, unless that would put it in front of its home.
        for (std::size_t i = next(hole); _slots[i].entry != nullptr; i = next(i))
            if (distance(home(_slots[i].hash), i) >= distance(hole, i)) {
                std::swap(_slots[hole], _slots[i]);
                hole = i;
            }
    }

private:
    struct Slot {
        std::uint64_t hash = 0;
        Entry* entry = nullptr;
    };

    std::size_t mask() const { return _slots.size() - 1; }
    std::size_t home(std::uint64_t hash) const { return hash & mask(); }
    std::size_t next(std::size_t slot) const { return (slot + 1) & mask(); }
    std::size_t distance(std::size_t from, std::size_t to) const { return (to - from) & mask(); }

    std::size_t slotOf(const Entry* held) const
    {
        std::size_t i = home(NameHash()(held->name()));
        while (_slots[i].entry != held)
            i = next(i);
        return i;
    }

    void grow()
    {
        constexpr std::size_t smallest = 64;
        std::vector<Slot> old(_slots.empty() ? smallest : 2 * _slots.size());
        old.swap(_slots);
        for (const Slot& slot : old) {
            if (slot.entry == nullptr)
                continue;
            std::size_t i = home(slot.hash);
            while (_slots[i].entry != nullptr)
                i = next(i);
            _slots[i] = slot;
        }
    }

    std::vector<Slot> _slots; // a power of two of them, at least half of them free
    std::size_t _count = 0;
};

} // namespace arbor
