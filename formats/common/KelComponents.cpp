#include "KelComponents.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <utility>

namespace meridyn {

namespace {

using Names = std::vector<std::string>;

const Names& labelsOf(unsigned64 count)
{
    static const Names vector = {"x", "y", "z"};
    static const Names symmetric = {"xx", "xy", "xz", "yy", "yz", "zz"};
    static const Names tensor = {"xx", "xy", "xz", "yx", "yy", "yz", "zx", "zy", "zz"};
    static const Names none;
    return count == 3 ? vector : count == 6 ? symmetric : count == 9 ? tensor : none;
}

std::string upper(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::toupper(c); });
    return text;
}

/// A name without its ending, of one of the ways to write endings.
struct Stem {
    std::string name;
    std::string separator; ///< between the name and the label
    bool isUpper = false;
};

/// All ways in which a name may end with a label.
std::vector<std::pair<Stem, std::string>> stemsOf(const std::string& name)
{
    std::vector<std::pair<Stem, std::string>> stems;
    for (const std::string& label : labelsOf(9))
        for (const std::string& ending : {label.substr(1), label})
            for (const bool isUpper : {false, true}) {
                const std::string written = isUpper ? upper(ending) : ending;
                if (name.size() <= written.size() || name.substr(name.size() - written.size()) != written)
                    continue;
                const std::string rest = name.substr(0, name.size() - written.size());
                const bool isSeparated = std::string("-_.:").find(rest.back()) != std::string::npos;
                if (isSeparated && rest.size() > 1)
                    stems.push_back({{rest.substr(0, rest.size() - 1), {rest.back()}, isUpper}, ending});
                else if (!isSeparated && isUpper) // in small letters it would be the end of some word
                    stems.push_back({{rest, {}, isUpper}, ending});
            }
    return stems;
}

/// Finds the variables that are written in one way; nothing unless all components of a kind are there.
class Grouping {
public:
    explicit Grouping(const Names& names) : _names(names)
    {
        for (std::size_t n = 0; n < names.size(); ++n)
            _places.emplace(names[n], n);
    }

    std::vector<KelComponentGroup> groups()
    {
        for (const unsigned64 count : {9, 6, 3}) // a tensor has the names of a symmetric one as well
            for (const std::string& name : _names)
                for (const auto& [stem, label] : stemsOf(name))
                    if (label.size() == labelsOf(count).front().size())
                        take(stem, count);
        std::vector<KelComponentGroup> all;
        for (std::size_t n = 0; n < _names.size(); ++n)
            if (_firsts.count(n) != 0)
                all.push_back(_firsts.at(n));
            else if (_taken.count(n) == 0)
                all.push_back({_names[n], {n}});
        return all;
    }

private:
    void take(const Stem& stem, unsigned64 count)
    {
        KelComponentGroup group{stem.name, {}};
        for (const std::string& label : labelsOf(count)) {
            const auto place = _places.find(stem.name + stem.separator + (stem.isUpper ? upper(label) : label));
            if (place == _places.end() || _taken.count(place->second) != 0)
                return;
            group.members.push_back(place->second);
        }
        if (_places.count(stem.name) != 0 || !_groupNames.insert(stem.name).second)
            return;
        _taken.insert(group.members.begin(), group.members.end());
        const std::size_t first = *std::min_element(group.members.begin(), group.members.end());
        _firsts[first] = std::move(group);
    }

    const Names& _names;
    std::map<std::string, std::size_t> _places;
    std::set<std::size_t> _taken;
    std::set<std::string> _groupNames;
    std::map<std::size_t, KelComponentGroup> _firsts; ///< by the place of the first of their names
};

} // namespace

Names componentLabels(unsigned64 count)
{
    if (count <= 1 || !labelsOf(count).empty())
        return labelsOf(count);
    Names labels;
    for (unsigned64 n = 1; n <= count; ++n)
        labels.push_back(std::to_string(n));
    return labels;
}

Names componentNames(const std::string& variable, unsigned64 count)
{
    if (count == 1)
        return {variable};
    Names names = componentLabels(count);
    for (std::string& name : names)
        name = variable + "-" + name;
    return names;
}

Names componentNames(const std::string& variable, unsigned64 count, const std::string& attribute)
{
    Names names = splitComponentNames(attribute);
    return names.size() == count ? names : componentNames(variable, count);
}

std::vector<KelComponentGroup> groupComponents(const Names& names)
{
    return Grouping(names).groups();
}

std::string joinComponentNames(const Names& names)
{
    std::string text;
    for (std::size_t n = 0; n < names.size(); ++n) {
        if (n > 0)
            text += ',';
        for (const char c : names[n]) {
            if (c == ',' || c == '\\')
                text += '\\';
            text += c;
        }
    }
    return text;
}

Names splitComponentNames(const std::string& text)
{
    if (text.empty())
        return {};
    Names names(1);
    for (std::size_t n = 0; n < text.size(); ++n)
        if (text[n] == ',')
            names.emplace_back();
        else {
            n += text[n] == '\\' && n + 1 < text.size() ? 1 : 0;
            names.back() += text[n];
        }
    return names;
}

} // namespace meridyn
