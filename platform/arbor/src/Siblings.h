#pragma once

#include "arbor/TBase.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace arbor {

/// The children or the properties of one node: in order, and found by name.
///
/// Access by position and removal at either end take constant time, appending and look-up logarithmic time whatever the
/// names are, so that no file can be made that is slow to read; other removals move pointers only.
template <class Entry>
class Siblings {
public:
    std::size_t size() const { return _entries.size() - _gap; }
    Entry* at(std::size_t index) const { return _entries[_gap + index]; }

    /// The first entry of that name, or null.
    Entry* find(std::string_view name) const
    {
        if (_index != nullptr) {
            const auto found = _index->lower_bound(Key(name, 0));
            return found != _index->end() && found->first.first == name ? found->second : nullptr;
        }
        for (std::size_t i = 0; i < size(); ++i)
            if (at(i)->_name == name)
                return at(i);
        return nullptr;
    }

    void append(Entry* entry)
    {
        entry->_order = _nextOrder++;
        addToIndex(entry);
        push(entry);
    }

    /// Appends an entry unless there is one of its name.
    bool appendUnique(Entry* entry)
    {
        entry->_order = _nextOrder;
        if (_index == nullptr ? find(entry->_name) != nullptr : !enterUnique(entry))
            return false;
        ++_nextOrder;
        push(entry);
        return true;
    }

    void remove(Entry* entry)
    {
        removeFromIndex(entry);
        const auto first = _entries.begin() + static_cast<std::ptrdiff_t>(_gap);
        const auto position = std::lower_bound(first, _entries.end(), entry->_order,
                                               [](const Entry* e, std::uint64_t order) { return e->_order < order; });
        if (position - first < _entries.end() - position) {
            std::move_backward(first, position, position + 1);
            ++_gap;
            closeGap();
        } else {
            _entries.erase(position);
        }
    }

    /// Forgets the look-up by name, for a node that is about to delete everything.
    void dropIndex() { _index.reset(); }

    /// Around a change of the entry's name: removeFromIndex before it, addToIndex after it.
    void removeFromIndex(Entry* entry)
    {
        if (_index != nullptr)
            _index->erase(Key(entry->_name, entry->_order));
    }

    void addToIndex(Entry* entry)
    {
        if (_index != nullptr)
            _index->emplace(Key(entry->_name, entry->_order), entry);
    }

private:
    static constexpr std::size_t smallCount = 16; // up to here a scan is quicker than a table

    // By name, then order. The names stay with the entries.
    using Key = std::pair<std::string_view, std::uint64_t>;
    using Index = std::map<Key, Entry*>;

    /// Enters an entry unless there is one of its name: whether it was entered.
    bool enterUnique(Entry* entry)
    {
        const Key key(entry->_name, entry->_order);
        const auto next = _index->lower_bound(Key(entry->_name, 0));
        if (next != _index->end() && next->first.first == key.first)
            return false;
        _index->emplace_hint(next, key, entry);
        return true;
    }

    void push(Entry* entry)
    {
        _entries.push_back(entry);
        if (_index == nullptr && size() > smallCount)
            makeIndex();
    }

    void makeIndex()
    {
        _index = std::make_unique<Index>();
        for (std::size_t i = 0; i < size(); ++i)
            addToIndex(at(i));
    }

    void closeGap()
    {
        if (_gap > smallCount && _gap > size()) {
            _entries.erase(_entries.begin(), _entries.begin() + static_cast<std::ptrdiff_t>(_gap));
            _gap = 0;
        }
    }

    std::vector<Entry*> _entries; // behind _gap unused places
    std::size_t _gap = 0;
    std::uint64_t _nextOrder = 0;
    std::unique_ptr<Index> _index; // null while there are few entries
};

} // namespace arbor
