#include "KelTree.h"

#include <algorithm>

namespace meridyn {

const KelTreeNode KelTreeNode::nothing;

template <class Children>
static auto findNamed(Children& children, const std::string& name)
{
    return std::find_if(children.begin(), children.end(), [&name](const auto& child) { return child.name == name; });
}

KelTreeNode& KelTreeNode::operator[](const std::string& child)
{
    const auto found = findNamed(children, child);
    if (found != children.end())
        return *found;
    children.emplace_back().name = child;
    return children.back();
}

const KelTreeNode& KelTreeNode::operator[](const std::string& child) const
{
    const auto found = findNamed(children, child);
    return found != children.end() ? *found : nothing;
}

std::vector<std::string> KelTreeNode::names() const
{
    std::vector<std::string> list;
    for (const KelTreeNode& child : children)
        list.push_back(child.name);
    return list;
}

KelTreeNode& KelTreeNode::counts()
{
    KelTreeNode& node = (*this)[name + " counts"];
    node.size = 1;
    return node;
}

const KelTreeNode& KelTreeNode::counts() const
{
    return (*this)[name + " counts"];
}

unsigned64 KelTreeNode::get(unsigned64 first, unsigned64 last, const KelBuffer& out) const
{
    return values.get(first, last, out, counts().values);
}

unsigned64 KelTreeNode::getList(const KelBuffer& out) const
{
    return values.get(1, std::min(out.capacity, length()), out);
}

} // namespace meridyn
