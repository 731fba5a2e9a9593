#pragma once

#include "KelTree.h"

#include <istream>
#include <ostream>
#include <set>
#include <stdexcept>

/// Puts values into a stream or takes them out of one: one description of a thing serves both directions.
///
/// Numbers lie as the machine has them; texts, lists and maps begin with the number of their items. Taking throws a
/// std::runtime_error when the stream is not what putting made, before memory is asked for that no stream can fill.
class Archive {
public:
    explicit Archive(std::ostream& out) : _out(&out) {}
    Archive(std::istream& in, std::uint64_t bytes) : _in(&in), _left(bytes) {}

    template <class... Items>
    void operator()(Items&... items)
    {
        (exchange(items), ...);
    }

private:
    void bytes(void* data, std::uint64_t count)
    {
        if (_out) {
            _out->write(static_cast<const char*>(data), static_cast<std::streamsize>(count));
            return;
        }
        if (count > _left || !_in->read(static_cast<char*>(data), static_cast<std::streamsize>(count)))
            throw std::runtime_error("it ends too early");
        _left -= count;
    }

    /// The number of items of a container.
    template <class Items>
    std::uint64_t size(const Items& items)
    {
        std::uint64_t count = items.size();
        exchange(count);
        if (_in && count > _left) // an item takes a byte at least
            throw std::runtime_error("it ends too early");
        return count;
    }

    template <class Number>
    std::enable_if_t<std::is_arithmetic_v<Number> || std::is_enum_v<Number>> exchange(Number& number)
    {
        bytes(&number, sizeof number);
    }

    void exchange(std::string& text)
    {
        text.resize(size(text));
        bytes(text.data(), text.size());
    }

    template <class Item, std::size_t count>
    void exchange(Item (&items)[count])
    {
        for (Item& item : items)
            exchange(item);
    }

    template <class Item>
    void exchange(std::vector<Item>& items)
    {
        items.resize(size(items));
        for (Item& item : items)
            exchange(item);
    }

    template <class First, class Second>
    void exchange(std::pair<First, Second>& pair)
    {
        (*this)(pair.first, pair.second);
    }

    /// Sets and maps: their keys do not change in place.
    template <class Item, class Items>
    void exchangeSorted(Items& items)
    {
        std::vector<Item> list(items.begin(), items.end());
        exchange(list);
        items = Items(list.begin(), list.end());
    }

    template <class Item>
    void exchange(std::set<Item>& items)
    {
        exchangeSorted<Item>(items);
    }

    template <class Key, class Value>
    void exchange(std::map<Key, Value>& items)
    {
        exchangeSorted<std::pair<Key, Value>>(items);
    }

    void exchange(meridyn::KelMeshKey& key) { (*this)(key.meshId, key.target, key.partitionId); }

    void exchange(meridyn::KelZoneDescription& zone)
    {
        (*this)(zone.category, zone.id, zone.first, zone.last, zone.extra, zone.infos, zone.flags, zone.texts,
                zone.neighbours);
    }

    void exchange(meridyn::KelMeshDescription& mesh) { (*this)(mesh.sizes, mesh.units, mesh.zones); }

    void exchange(meridyn::KelPhaseDescription& phase) { (*this)(phase.id, phase.uniqueName, phase.attributes); }

    void exchange(meridyn::KelVariableDescription& variable)
    {
        (*this)(variable.id, variable.phaseId, variable.uniqueName, variable.attributes, variable.categories);
    }

    void exchange(meridyn::KelSolutionDescription& solution)
    {
        (*this)(solution.timeLevels, solution.phases, solution.variables);
    }

    void exchange(meridyn::KelElementValues& values)
    {
        auto pieces = values.pieces();
        std::uint64_t count = size(pieces);
        for (std::uint64_t n = 0; n < count; ++n) {
            if (_out)
                put(pieces[n]);
            else
                take(values);
        }
    }

    void put(meridyn::KelElementValues::Piece& piece)
    {
        (*this)(piece.first, piece.last, piece.width, piece.isUniform, piece.values.type, piece.values.count);
        piece.values.visit([&](auto* data) {
            bytes(const_cast<void*>(static_cast<const void*>(data)), piece.values.count * sizeof *data);
        });
    }

    void take(meridyn::KelElementValues& values)
    {
        meridyn::unsigned64 first = 0, last = 0, width = 0, count = 0;
        unsigned char isUniform = 0;
        meridyn::KelPlainDataType type{};
        (*this)(first, last, width, isUniform, type, count);
        meridyn::KelAnyValues list;
        const bool isKnown = count <= _left && meridyn::visitPlainType(type, [&](auto* null) {
                                 auto& typed = list.emplace<std::vector<std::remove_pointer_t<decltype(null)>>>(count);
                                 bytes(typed.data(), count * sizeof *null);
                             });
        if (!isKnown || !(isUniform != 0 ? values.putUniform(first, last, std::move(list))
                                         : values.put(first, last, std::move(list), width)))
            throw std::runtime_error("it has values that go with no ids");
    }

    void exchange(meridyn::KelTreeNode& node)
    {
        if (++_depth > 64) // a tree has some ten floors
            throw std::runtime_error("its tree has no end");
        (*this)(node.text, node.zoneIds, node.category, node.type, node.size, node.values);
        auto next = node.children().begin();
        for (std::uint64_t left = size(node.children()); left > 0; --left) {
            std::string name = _out ? next->name() : "";
            exchange(name);
            exchange(_out ? *next++ : node[name]);
        }
        --_depth;
    }

    void exchange(meridyn::KelDerivedValues& derived) { (*this)(derived.meshSizes, derived.neighbours); }

    void exchange(meridyn::KelTree::Mesh& mesh)
    {
        (*this)(mesh.mesh, mesh.derived, mesh.solution, mesh.locations, mesh.tree);
    }

    std::ostream* _out = nullptr;
    std::istream* _in = nullptr;
    std::uint64_t _left = 0; ///< bytes that are still to be taken
    int _depth = 0;
};
