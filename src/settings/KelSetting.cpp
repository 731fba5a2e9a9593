#include "KelSetting.h"

#include "KelSettingObject.h"

#include <sstream>
#include <utility>

namespace meridyn {

namespace {

KelSettingObject* settingObject(arbor::TObject* object)
{
    return dynamic_cast<KelSettingObject*>(object);
}

/// Whether an object is the root of a tree or lies anywhere in it.
bool isWithin(const arbor::TObject* object, const arbor::TObject* root)
{
    while (object != nullptr && object != root)
        object = object->parent();
    return object != nullptr;
}

} // namespace

KelSetting::KelSetting() = default;

KelSetting::KelSetting(KelSettingObject* object, bool owned)
    : _object(object), _owned(owned), _touched(object != nullptr)
{}

KelSetting::KelSetting(const KelSetting& other) : _object(other._object), _touched(other._touched)
{}

KelSetting::KelSetting(KelSetting&& other) noexcept
{
    swap(other);
}

KelSetting& KelSetting::operator=(const KelSetting& other)
{
    if (other._object != _object || _object == nullptr)
        return *this = KelSetting(other);
    _touched = other._touched;
    return *this;
}

KelSetting& KelSetting::operator=(KelSetting&& other) noexcept
{
    if (&other == this)
        return *this;
    KelSetting incoming(std::move(other));
    if (_object != nullptr && incoming._object == _object) {
        incoming._owned = incoming._owned || _owned;
        _owned = false;
    } else if (_owned && isWithin(incoming._object, _object)) {
        incoming._object = nullptr; // it is about to go with the tree
        incoming._owned = incoming._touched = false;
    }
    swap(incoming);
    return *this;
}

KelSetting::~KelSetting()
{
    if (_owned)
        delete _object;
    _object = nullptr;
}

KelSetting KelSetting::get(const std::string& name)
{
    auto* object = settingObject(arbor::TObject::newObject("meridyn::KelSettingObject", name, nullptr));
    return {object, true};
}

KelSetting KelSetting::fromSettingString(const std::string& text)
{
    arbor::TObject* root = arbor::TObject::fromXMLString(text);
    auto* object = settingObject(root);
    if (object == nullptr) {
        delete root;
        return {};
    }
    return {object, true};
}

std::string KelSetting::toSettingString() const
{
    return arbor::TObject::toXMLString(_object);
}

bool KelSetting::isValid() const
{
    return _object != nullptr;
}

KelSetting::operator bool() const
{
    return isValid();
}

bool KelSetting::isTouched() const
{
    return _touched;
}

void KelSetting::setTouched(bool touched)
{
    _touched = touched;
}

KelSetting& KelSetting::setObject(KelSettingObject* object)
{
    _object = object; // kept: the old object stays with the caller, and ownership now means the new one
    _touched = true;
    return *this;
}

KelSetting& KelSetting::swap(KelSetting& other) noexcept
{
    std::swap(_object, other._object);
    std::swap(_owned, other._owned);
    std::swap(_touched, other._touched);
    return *this;
}

// A look-up that misses gives an invalid handle, and the next one is often asked of it in the same line. So an invalid
// handle answers all of them, as a node without anything in it would.

KelSetting KelSetting::group(const std::string& name) const
{
    return isValid() ? KelSetting(settingObject(_object->child(name)), false) : KelSetting();
}

KelSetting KelSetting::group(int index) const
{
    return isValid() ? KelSetting(settingObject(_object->child(index)), false) : KelSetting();
}

int KelSetting::groupCount() const
{
    return isValid() ? _object->nChild() : 0;
}

std::vector<KelSetting> KelSetting::groups() const
{
    std::vector<KelSetting> handles;
    const int count = groupCount();
    handles.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        handles.push_back(group(i));
    return handles;
}

KelSettingAttribute KelSetting::attribute(const std::string& name) const
{
    return KelSettingAttribute(isValid() ? _object->property(name) : nullptr);
}

std::vector<std::string> KelSetting::attributeNames() const
{
    return isValid() ? _object->getPropertiesNames() : std::vector<std::string>();
}

std::vector<KelSettingAttribute> KelSetting::attributes() const
{
    std::vector<KelSettingAttribute> handles;
    const std::vector<std::string> names = attributeNames();
    handles.reserve(names.size());
    for (const std::string& name : names)
        handles.push_back(attribute(name));
    return handles;
}

std::string KelSetting::dump(bool recursive, bool objectsOnly) const
{
    if (!isValid())
        return {};
    std::ostringstream out;
    _object->print(out, 0, recursive, objectsOnly);
    return out.str();
}

} // namespace meridyn
