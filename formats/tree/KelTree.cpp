#include "KelTree.h"

#include <algorithm>
#include <utility>

namespace meridyn {

const KelTreeNode KelTreeNode::nothing;

KelTreeNode::KelTreeNode() = default;
KelTreeNode::~KelTreeNode() = default;

KelTreeNode::KelTreeNode(const std::string& name) : _name(name)
{}

// The index holds views of names that live in the children, so a copy makes its own.
KelTreeNode::KelTreeNode(const KelTreeNode& other)
    : text(other.text),
      zoneIds(other.zoneIds),
      category(other.category),
      type(other.type),
      size(other.size),
      values(other.values),
      _name(other._name),
      _children(other._children)
{
    for (KelTreeNode& child : _children)
        _index.emplace(child._name, &child);
}

KelTreeNode::KelTreeNode(KelTreeNode&& other) noexcept : _name(std::move(other._name))
{
    swap(other);
}

KelTreeNode& KelTreeNode::operator=(KelTreeNode other) noexcept
{
    swap(other);
    return *this;
}

// The name stays: the parent finds the node by it.
void KelTreeNode::swap(KelTreeNode& other) noexcept
{
    std::swap(text, other.text);
    std::swap(zoneIds, other.zoneIds);
    std::swap(category, other.category);
    std::swap(type, other.type);
    std::swap(size, other.size);
    std::swap(values, other.values);
    std::swap(_children, other._children);
    std::swap(_index, other._index);
}

KelTreeNode::operator bool() const
{
    return this != &nothing;
}

// ---- children

const std::string& KelTreeNode::name() const
{
    return _name;
}

std::list<KelTreeNode>& KelTreeNode::children()
{
    return _children;
}

const std::list<KelTreeNode>& KelTreeNode::children() const
{
    return _children;
}

std::vector<std::string> KelTreeNode::names() const
{
    std::vector<std::string> list;
    for (const KelTreeNode& child : _children)
        list.push_back(child._name);
    return list;
}

KelTreeNode& KelTreeNode::operator[](const std::string& child)
{
    const auto found = _index.find(child);
    if (found != _index.end())
        return *found->second;
    KelTreeNode& made = _children.emplace_back(KelTreeNode(child));
    _index.emplace(made._name, &made);
    return made;
}

const KelTreeNode& KelTreeNode::operator[](const std::string& child) const
{
    const auto found = _index.find(child);
    return found != _index.end() ? *found->second : nothing;
}

void KelTreeNode::removeChildren(const std::function<bool(const KelTreeNode&)>& isRemoved)
{
    for (auto next = _children.begin(); next != _children.end();) {
        const auto child = next++;
        if (isRemoved(*child)) {
            _index.erase(child->_name);
            _children.erase(child);
        }
    }
}

void KelTreeNode::clear()
{
    *this = KelTreeNode();
}

// ---- values

KelTreeNode& KelTreeNode::counts()
{
    KelTreeNode& node = (*this)[_name + " counts"];
    node.size = 1;
    return node;
}

const KelTreeNode& KelTreeNode::counts() const
{
    return (*this)[_name + " counts"];
}

unsigned64 KelTreeNode::get(unsigned64 first, unsigned64 last, const KelBuffer& out) const
{
    return values.get(first, last, out, counts().values);
}

unsigned64 KelTreeNode::getList(const KelBuffer& out) const
{
    return values.get(1, std::min(out.capacity, length()), out);
}

unsigned64 KelTreeNode::length() const
{
    return values.lastId();
}

} // namespace meridyn
