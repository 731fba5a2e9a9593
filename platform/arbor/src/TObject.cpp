#include "arbor/TObject.h"

#include "arbor/TProperty.h"
#include "ClassRegistry.h"
#include "Siblings.h"

#include <ostream>

namespace arbor {

struct TObject::Content {
    Siblings<TObject> children;
    Siblings<TProperty> properties;
};

namespace {

const std::string& rootClassName()
{
    static const std::string& name = ClassRegistry::instance().find("TObject")->name;
    return name;
}

} // namespace

TObject::TObject(const std::string& name, TObject* parent) : TBase(name, rootClassName())
{
    if (parent == nullptr || parent->_depth >= maxDepth)
        return;
    parent->content().children.append(this);
    _parent = parent;
    _depth = parent->_depth + 1;
}

TObject* TObject::create(const std::string& name, TObject* parent)
{
    return new TObject(name, parent);
}

TObject::~TObject()
{
    deleteContent();
    if (_parent != nullptr)
        _parent->_content->children.remove(this);
}

/// Deletes from the deepest node upwards, so that the stack does not grow with the depth of the tree.
void TObject::deleteContent()
{
    TObject* node = this;
    for (;;) {
        if (node->nChild() > 0) {
            node->_content->children.dropIndex();
            node = node->child(node->nChild() - 1);
            continue;
        }
        if (node == this)
            break;
        TObject* parent = node->_parent;
        delete node;
        node = parent;
    }
    for (int i = 0; i < nProperty(); ++i) {
        TProperty* leaving = property(i);
        leaving->_owner = nullptr;
        delete leaving;
    }
    _content.reset();
}

TObject::Content& TObject::content()
{
    if (_content == nullptr)
        _content = std::make_unique<Content>();
    return *_content;
}

bool TObject::setName(const std::string& name)
{
    if (_parent == nullptr)
        return TBase::setName(name);
    _parent->_content->children.removeFromIndex(this);
    TBase::setName(name);
    _parent->_content->children.addToIndex(this);
    return true;
}

bool TObject::isObject() const
{
    return true;
}

bool TObject::isRegion() const
{
    return false;
}

bool TObject::isZone() const
{
    return false;
}

bool TObject::isDomain() const
{
    return false;
}

int TObject::nChild() const
{
    return _content == nullptr ? 0 : static_cast<int>(_content->children.size());
}

int TObject::size() const
{
    return nChild();
}

TObject* TObject::child(int index) const
{
    return index < 0 || index >= nChild() ? nullptr : _content->children.at(static_cast<std::size_t>(index));
}

TObject* TObject::child(const std::string& name) const
{
    return _content == nullptr ? nullptr : _content->children.find(name);
}

std::vector<std::string> TObject::getContentNames() const
{
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(nChild()));
    for (int i = 0; i < nChild(); ++i)
        names.push_back(child(i)->name());
    return names;
}

int TObject::nProperty() const
{
    return _content == nullptr ? 0 : static_cast<int>(_content->properties.size());
}

TProperty* TObject::property(int index) const
{
    return index < 0 || index >= nProperty() ? nullptr : _content->properties.at(static_cast<std::size_t>(index));
}

TProperty* TObject::property(const std::string& name) const
{
    return _content == nullptr ? nullptr : _content->properties.find(name);
}

std::vector<std::string> TObject::getPropertiesNames() const
{
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(nProperty()));
    for (int i = 0; i < nProperty(); ++i)
        names.push_back(property(i)->name());
    return names;
}

bool TObject::removeProperty(const std::string& name)
{
    TProperty* leaving = property(name);
    delete leaving;
    return leaving != nullptr;
}

bool TObject::attach(TProperty* property)
{
    if (!content().properties.appendUnique(property))
        return false;
    property->_owner = this;
    return true;
}

void TObject::detach(TProperty* property)
{
    _content->properties.remove(property);
    property->_owner = nullptr;
}

bool TObject::rename(TProperty* property, const std::string& name)
{
    const TProperty* holder = this->property(name);
    if (holder != nullptr)
        return holder == property;
    _content->properties.removeFromIndex(property);
    property->_name = name;
    _content->properties.addToIndex(property);
    return true;
}

void TObject::print(std::ostream& out, int indent, bool recursive, bool objectsOnly) const
{
    out << std::string(static_cast<std::size_t>(indent), ' ') << name() << " (" << className(this) << ")\n";
    printContent(out, indent, recursive, objectsOnly);
}

void TObject::printContent(std::ostream& out, int indent, bool recursive, bool objectsOnly) const
{
    const std::string margin(static_cast<std::size_t>(indent) + 2, ' ');
    if (!objectsOnly)
        for (int i = 0; i < nProperty(); ++i)
            out << margin << property(i)->name() << " = " << property(i)->toString(margin) << '\n';
    if (recursive)
        for (int i = 0; i < size(); ++i)
            child(i)->print(out, indent + 2, recursive, objectsOnly);
}

TObject* TObject::newObject(const std::string& className, const std::string& name, TObject* parent)
{
    const ObjectClass* found = ClassRegistry::instance().find(className);
    return found == nullptr ? nullptr : newObject(*found, name, parent);
}

TObject* TObject::newObject(const ObjectClass& type, const std::string& name, TObject* parent)
{
    if (parent != nullptr && parent->_depth >= maxDepth)
        return nullptr;
    TObject* object = type.factory(name, parent);
    if (object != nullptr)
        object->_className = &type.name;
    return object;
}

bool TObject::registerNewObjectClass(const std::string& className, Factory factory, const std::string& baseClassName,
                                     const std::string& tag)
{
    return ClassRegistry::instance().add(className, factory, baseClassName, tag);
}

bool TObject::registerClassShortName(const std::string& shortName, const std::string& className)
{
    return ClassRegistry::instance().addShortName(shortName, className);
}

std::string TObject::baseClassName(const std::string& className)
{
    const ObjectClass* found = ClassRegistry::instance().find(className);
    return found == nullptr ? std::string() : found->baseName;
}

} // namespace arbor
