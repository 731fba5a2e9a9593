#pragma once

#include "arbor/TBase.h"
#include "NameTable.h"

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
/// Appending, access by position, look-up, and removal at either end take constant time (logarithmic among entries
/// of one name); other removals move pointers only.
template <class Entry>
class Siblings {
public:
    std::size_t size() const { return _entries.size() - _gap; }
    Entry* at(std::size_t index) const { return _entries[_gap + index]; }

    /// The first entry of that name, or null.
    Entry* find(std::string_view name) const
    {
        if (_index != nullptr)
            return _index->first.find(name);
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
        if (_index == nullptr ? find(entry->_name) != nullptr : _index->first.insert(entry) != nullptr)
            return false;
        entry->_order = _nextOrder++;
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
        if (_index == nullptr)
            return;
        const std::string_view name = entry->_name;
        if (_index->first.find(name) != entry) {
            _index->later.erase({name, entry->_order});
            return;
        }
        const auto heir = _index->later.lower_bound({name, 0});
        if (heir == _index->later.end() || heir->first.first != name) {
            _index->first.erase(entry);
        } else {
            _index->first.replace(entry, heir->second);
            _index->later.erase(heir);
        }
    }

    void addToIndex(Entry* entry)
    {
        Entry* holder = _index == nullptr ? nullptr : _index->first.insert(entry);
        if (holder == nullptr)
            return;
        Entry* later = entry;
        if (entry->_order < holder->_order) { // renamed into the name of a younger sibling
            _index->first.replace(holder, entry);
            later = holder;
        }
        _index->later.emplace(Key(later->_name, later->_order), later);
    }

private:
    static constexpr std::size_t smallCount = 16; // up to here a scan is quicker than a table

    using Key = std::pair<std::string_view, std::uint64_t>;

    struct Index {
        NameTable<Entry> first;
        std::map<Key, Entry*> later; // further entries of a name, by name and order
    };

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
