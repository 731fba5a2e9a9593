#pragma once

#include "NamePattern.h"

#include <map>
#include <set>
#include <string>
#include <utility>

namespace strata {

/// Who bears which name. Empty names are none: they are neither kept nor found.
template <class T, class Less>
class NameIndex {
public:
    using Bearers = std::set<T*, Less>;

    void add(const std::string& name, T* bearer)
    {
        if (!name.empty())
            _bearers[name].insert(bearer);
    }

    void remove(const std::string& name, T* bearer)
    {
        const auto found = _bearers.find(name);
        if (found == _bearers.end())
            return;
        found->second.erase(bearer);
        if (found->second.empty())
            _bearers.erase(found);
    }

    /// Null for a name that nobody bears.
    const Bearers* find(const std::string& name) const
    {
        const auto found = _bearers.find(name);
        return found == _bearers.end() ? nullptr : &found->second;
    }

    /// Calls `visit` for every bearer of a name that matches; looks only at names that begin as the pattern does.
    template <class Visit>
    void forEachMatch(const NamePattern& pattern, Visit visit) const
    {
        const std::string& prefix = pattern.literalPrefix();
        for (auto name = _bearers.lower_bound(prefix); name != _bearers.end(); ++name) {
            if (name->first.compare(0, prefix.size(), prefix) != 0)
                break;
            if (pattern.isLiteral() && name->first.size() > prefix.size())
                break;
            if (!pattern.matches(name->first))
                continue;
            for (T* bearer : name->second)
                visit(bearer);
        }
    }

    void clear() { _bearers.clear(); }

private:
    std::map<std::string, Bearers> _bearers;
};

} // namespace strata
