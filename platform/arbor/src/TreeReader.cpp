#include "TreeReader.h"

#include "arbor/TProperty.h"
#include "arbor/TZone.h"
#include "ClassRegistry.h"
#include "PropertyFactory.h"
#include "XmlNames.h"
#include "XmlText.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace arbor {

namespace {

using Token = xml::Reader::Token;

// In the order of TreeReader::Field.
constexpr std::string_view fieldNames[] = {xml::versionAttribute, xml::nameAttribute, xml::secondNameAttribute,
                                           xml::kindAttribute,    xml::typeAttribute, xml::unitAttribute,
                                           xml::valueAttribute};

constexpr std::size_t propertyAndItem = 2; // levels of elements below the deepest node

constexpr unsigned bit(unsigned field)
{
    return 1U << field;
}

bool readKind(const std::string& word, TZone& zone)
{
    for (const TZone::Kind kind : {TZone::Cell, TZone::Face, TZone::Node})
        if (word == xml::kindNames[kind]) {
            zone.setKind(kind);
            return true;
        }
    return false;
}

} // namespace

TreeReader::TreeReader(const std::string& text) : _reader(text, TObject::maxDepth + propertyAndItem)
{}

TreeReader::~TreeReader() = default;

std::unique_ptr<TObject> TreeReader::read()
{
    for (;;) {
        const Token token = _reader.next();
        if (token == Token::End)
            return std::move(_root);
        if (token == Token::Close)
            close();
        else if (token == Token::Bad || ++_entryCount > TObject::maxEntries || !open())
            return nullptr;
    }
}

bool TreeReader::readFields()
{
    _present = 0;
    for (const auto& attribute : _reader.attributes()) {
        const auto found = std::find(std::begin(fieldNames), std::end(fieldNames), attribute.name);
        const auto field = static_cast<unsigned>(found - std::begin(fieldNames));
        if (field == FieldCount || (_present & bit(field)) != 0 || !xml::unescape(attribute.value, _fields[field]))
            return false;
        _present |= bit(field);
    }
    return true;
}

bool TreeReader::hasFields(unsigned required, unsigned optional) const
{
    return (_present & required) == required && (_present & ~(required | optional)) == 0;
}

bool TreeReader::open()
{
    if (_isInItem || !readFields())
        return false;
    if (_isInProperty)
        return openItem();
    return _reader.name() == xml::propertyTag ? openProperty() : openObject();
}

bool TreeReader::openObject()
{
    const ObjectClass* type = ClassRegistry::instance().findTag(_reader.name());
    const bool isRoot = _object == nullptr;
    const unsigned required = bit(Name) | (isRoot ? bit(Version) : 0U);
    if (type == nullptr || !hasFields(required, bit(SecondName) | bit(Kind)))
        return false;
    if (isRoot && _fields[Version] != xml::version)
        return false;

    TObject* object = TObject::newObject(*type, _fields[Name], _object);
    if (object == nullptr || object->parent() != _object) {
        delete object;
        return false;
    }
    if (isRoot)
        _root.reset(object);
    _object = object;
    if ((_present & bit(SecondName)) != 0)
        object->setSecondName(_fields[SecondName]);
    if ((_present & bit(Kind)) == 0)
        return true;
    auto* zone = dynamic_cast<TZone*>(object);
    return zone != nullptr && readKind(_fields[Kind], *zone);
}

bool TreeReader::openProperty()
{
    const PropertyKind kind = PropertyFactory::kindOfXmlType(_fields[Type]);
    const unsigned required = bit(Name) | bit(Type);
    if (_object == nullptr || kind == PropertyKind::Unknown || (_present & bit(Type)) == 0)
        return false;
    auto property = PropertyFactory::make(kind, _fields[Name]);
    auto* list = PropertyFactory::textList(*property);
    if (!hasFields(list == nullptr ? required | bit(Value) : required, bit(SecondName) | bit(Unit)))
        return false;
    if (list == nullptr && !property->fromString(_fields[Value]))
        return false;
    if ((_present & bit(SecondName)) != 0)
        property->setSecondName(_fields[SecondName]);
    if ((_present & bit(Unit)) != 0)
        property->setUnit(_fields[Unit]);
    _items = list;
    _isInProperty = true;
    return PropertyFactory::handOver(std::move(property), _object) != nullptr;
}

bool TreeReader::openItem()
{
    if (_items == nullptr || _reader.name() != xml::itemTag || !hasFields(bit(Value), 0))
        return false;
    _items->push_back(_fields[Value]);
    _isInItem = true;
    return true;
}

void TreeReader::close()
{
    if (_isInItem)
        _isInItem = false;
    else if (_isInProperty)
        _isInProperty = false;
    else
        _object = _object->parent();
}

TObject* TObject::fromXMLString(const std::string& text)
{
    return text.size() > maxTextSize ? nullptr : TreeReader(text).read().release();
}

} // namespace arbor
