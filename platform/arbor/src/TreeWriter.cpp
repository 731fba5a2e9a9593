#include "arbor/TPropertyType.h"
#include "arbor/TZone.h"
#include "ClassRegistry.h"
#include "PropertyFactory.h"
#include "ValueText.h"
#include "XmlNames.h"
#include "XmlText.h"

#include <algorithm>
#include <string_view>

namespace arbor {

namespace {

// Deeper lines keep this margin, so that the text stays linear in the size of the tree.
constexpr int maxMarginLevels = 16;

} // namespace

/// Writes a tree as XML text.
class TreeWriter {
public:
    std::string write(const TObject& root)
    {
        _out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
        writeObject(root, 0);
        return std::move(_out);
    }

private:
    // Recursion is bounded by TObject::maxDepth.
    void writeObject(const TObject& object, int level)
    {
        const std::string& tag = ClassRegistry::instance().find(TBase::className(&object))->tag;
        open(tag, level);
        if (level == 0)
            attribute(xml::versionAttribute, xml::version);
        writeNames(object);
        const auto* zone = object.isZone() ? dynamic_cast<const TZone*>(&object) : nullptr;
        if (zone != nullptr && zone->kind() != TZone::None)
            attribute(xml::kindAttribute, xml::kindNames[zone->kind()]);
        if (object.nProperty() == 0 && object.nChild() == 0) {
            _out += "/>\n";
            return;
        }
        _out += ">\n";
        for (int i = 0; i < object.nProperty(); ++i)
            writeProperty(*object.property(i), level + 1);
        for (int i = 0; i < object.nChild(); ++i)
            writeObject(*object.child(i), level + 1);
        close(tag, level);
    }

    void writeProperty(const TProperty& property, int level)
    {
        open(xml::propertyTag, level);
        writeNames(property);
        attribute(xml::typeAttribute, PropertyFactory::xmlType(PropertyFactory::kindOf(&property)));
        if (!property.getUnit().empty())
            attribute(xml::unitAttribute, property.getUnit());
        const auto* list = PropertyFactory::textList(property);
        if (list != nullptr && !list->empty()) {
            _out += ">\n";
            writeItems(*list, level + 1);
            close(xml::propertyTag, level);
            return;
        }
        if (list == nullptr)
            attribute(xml::valueAttribute, exactText(property));
        _out += "/>\n";
    }

    void writeItems(const std::vector<std::string>& items, int level)
    {
        for (const std::string& item : items) {
            open(xml::itemTag, level);
            attribute(xml::valueAttribute, item);
            _out += "/>\n";
        }
    }

    const std::string& exactText(const TProperty& property)
    {
        _text.clear();
        property.appendExactText(_text);
        return _text;
    }

    void writeNames(const TBase& entry)
    {
        attribute(xml::nameAttribute, entry.name());
        if (!entry.secondName().empty())
            attribute(xml::secondNameAttribute, entry.secondName());
    }

    void open(std::string_view tag, int level)
    {
        margin(level);
        _out += '<';
        _out += tag;
    }

    void close(std::string_view tag, int level)
    {
        margin(level);
        _out += "</";
        _out += tag;
        _out += ">\n";
    }

    void attribute(std::string_view name, std::string_view value)
    {
        _out += ' ';
        _out += name;
        _out += "=\"";
        xml::appendEscaped(_out, value);
        _out += '"';
    }

    void margin(int level) { _out.append(2 * static_cast<std::size_t>(std::min(level, maxMarginLevels)), ' '); }

    std::string _out;
    std::string _text;
};

std::string TObject::toXMLString(const TObject* object)
{
    return object == nullptr ? std::string() : TreeWriter().write(*object);
}

} // namespace arbor
