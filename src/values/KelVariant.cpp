#include "KelVariant.h"

#include "arbor/TDomain.h"
#include "arbor/TProperty.h"
#include "arbor/TZone.h"
#include "KelUtilities.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <type_traits>

namespace meridyn {

namespace {

using Texts = std::vector<std::string>;

constexpr char separator = ',';

enum class ZoneKind {
    Cell,
    Face,
    Node
};

/// The property that lists zones of a kind, which is also the front of an entry of that kind.
const char* listName(ZoneKind kind)
{
    switch (kind) {
    case ZoneKind::Cell:
        return "cellZones";
    case ZoneKind::Face:
        return "faceZones";
    case ZoneKind::Node:
        break;
    }
    return "nodeZones";
}

bool isOfKind(const arbor::TZone& zone, ZoneKind kind)
{
    switch (kind) {
    case ZoneKind::Cell:
        return zone.isCellZone();
    case ZoneKind::Face:
        return zone.isFaceZone();
    case ZoneKind::Node:
        break;
    }
    return zone.isNodeZone();
}

const arbor::TBase* baseOf(const void* entry)
{
    return static_cast<const arbor::TBase*>(entry);
}

const arbor::TObject* asObject(const arbor::TBase* entry)
{
    return entry != nullptr && entry->isObject() ? dynamic_cast<const arbor::TObject*>(entry) : nullptr;
}

const arbor::TProperty* asProperty(const arbor::TBase* entry)
{
    return entry != nullptr && entry->isProperty() ? dynamic_cast<const arbor::TProperty*>(entry) : nullptr;
}

const arbor::TZone* asZone(const arbor::TBase* entry)
{
    const arbor::TObject* object = asObject(entry);
    return object != nullptr && object->isZone() ? dynamic_cast<const arbor::TZone*>(object) : nullptr;
}

std::string ownEntry(const arbor::TZone& zone, ZoneKind kind)
{
    return std::string(listName(kind)) + "/" + zone.name();
}

/// The texts of a property that lists names; none when it is missing or holds numbers.
Texts listOf(const arbor::TObject& object, const char* propertyName)
{
    const arbor::TProperty* property = object.property(propertyName);
    if (property == nullptr)
        return {};
    if (property->isVector())
        return property->toStringVector();
    return property->isString() ? Texts{property->toString()} : Texts();
}

Texts zonesOf(const arbor::TBase* entry, ZoneKind kind)
{
    const arbor::TZone* zone = asZone(entry);
    if (zone == nullptr)
        return {};
    return isOfKind(*zone, kind) ? Texts{ownEntry(*zone, kind)} : listOf(*zone, listName(kind));
}

/// The zones of one kind that a zone lists, and then its own entry.
Texts withOwnEntry(Texts zones, const arbor::TZone& zone, ZoneKind kind)
{
    zones.push_back(ownEntry(zone, kind));
    return zones;
}

std::string joined(const Texts& texts)
{
    std::string result;
    for (std::size_t i = 0; i < texts.size(); ++i)
        result.append(i == 0 ? 0 : 1, separator).append(texts[i]);
    return result;
}

/// The number that a text begins with, as a stream reads it under the rules of no locale: 0 when there is none, the end
/// of the range for a number beyond it.
template <class T>
T streamed(const std::string& text)
{
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    T value{};
    stream >> value;
    return value;
}

/// The part of a text that is a real number: from `first` to the result, which is `first` when there is none. Knows
/// infinities and nans, which streams do not.
template <class Real>
const char* scanReal(const std::string& text, const char*& first, Real& value)
{
    const std::size_t start = text.find_first_not_of(" \t\r\n\v\f");
    first = start == std::string::npos ? text.data() + text.size() : text.data() + start;
    return std::from_chars(first, text.data() + text.size(), value).ptr;
}

template <class Real>
Real readReal(const std::string& text)
{
    const auto value = streamed<Real>(text);
    if (value != 0)
        return value;
    Real scanned = value;
    const char* first = nullptr;
    scanReal(text, first, scanned);
    return scanned;
}

/// A number with an exponent is read whole: cut at its "e", as a stream would, it is another number.
int readInt(const std::string& text)
{
    double real = 0.0;
    const char* first = nullptr;
    const char* end = scanReal(text, first, real);
    const bool hasExponent = std::isfinite(real) && std::find(first, end, 'e') != end;
    if (!hasExponent)
        return streamed<int>(text);
    constexpr double least = std::numeric_limits<int>::min();
    constexpr double most = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(real, least, most));
}

template <class T>
T numberOf(const std::string& text)
{
    const auto word = streamed<std::string>(text);
    if (word == "true" || word == "false")
        return static_cast<T>(word == "true");
    if constexpr (std::is_floating_point_v<T>)
        return readReal<T>(text);
    else
        return static_cast<T>(readInt(text));
}

template <class T>
T numberOf(const arbor::TProperty& property)
{
    if (property.isScalar())
        return numberOf<T>(property.toString());
    if (!property.isVector())
        return T();
    const Texts texts = property.toStringVector();
    if (texts.empty())
        throw std::out_of_range("invalid vector subscript");
    return numberOf<T>(texts.front());
}

template <class T>
T numberOf(const arbor::TBase* entry)
{
    if (const arbor::TObject* object = asObject(entry))
        return static_cast<T>(object->getContentNames().size());
    const arbor::TProperty* property = asProperty(entry);
    return property == nullptr ? T() : numberOf<T>(*property);
}

} // namespace

struct KelVariant::Record {
    const void* entry;
};

const void* KelVariant::entry() const
{
    return _record == nullptr ? nullptr : _record->entry;
}

KelVariant::KelVariant() = default;

KelVariant::KelVariant(const void* entry) : _record(std::make_unique<Record>(Record{entry}))
{}

KelVariant::KelVariant(const KelVariant& other)
    : _record(other.isValid() ? std::make_unique<Record>(*other._record) : nullptr)
{}

KelVariant& KelVariant::operator=(const KelVariant& other)
{
    if (this != &other)
        _record = other.isValid() ? std::make_unique<Record>(*other._record) : nullptr;
    return *this;
}

KelVariant::~KelVariant() = default;

bool KelVariant::isValid() const
{
    return _record != nullptr && _record->entry != nullptr;
}

int KelVariant::asInt() const
{
    return numberOf<int>(baseOf(entry()));
}

double KelVariant::asDouble() const
{
    return numberOf<double>(baseOf(entry()));
}

float KelVariant::asFloat() const
{
    return numberOf<float>(baseOf(entry()));
}

bool KelVariant::asBool() const
{
    return numberOf<bool>(baseOf(entry()));
}

std::string KelVariant::asString() const
{
    if (const arbor::TObject* object = asObject(baseOf(entry())))
        return joined(object->getContentNames());
    const arbor::TProperty* property = asProperty(baseOf(entry()));
    if (property == nullptr)
        return {};
    const std::string text = property->toString();
    return property->getUnit().empty() ? text : text + " " + property->getUnit();
}

KelVariant::operator std::string() const
{
    return asString();
}

std::vector<std::string> KelVariant::asStringVector() const
{
    const std::string text = asString();
    Texts pieces;
    if (!text.empty())
        KelUtilities::splitString(text, pieces, false, separator);
    return pieces;
}

KelVariant::operator std::vector<std::string>() const
{
    if (const arbor::TObject* object = asObject(baseOf(entry())))
        return object->getContentNames();
    const arbor::TProperty* property = asProperty(baseOf(entry()));
    return property == nullptr ? Texts() : property->toStringVector();
}

std::string KelVariant::unit() const
{
    const arbor::TProperty* property = asProperty(baseOf(entry()));
    return property == nullptr ? std::string() : property->getUnit();
}

std::vector<std::string> KelVariant::cellZones() const
{
    return zonesOf(baseOf(entry()), ZoneKind::Cell);
}

std::vector<std::string> KelVariant::faceZones() const
{
    return zonesOf(baseOf(entry()), ZoneKind::Face);
}

std::vector<std::string> KelVariant::nodeZones() const
{
    return zonesOf(baseOf(entry()), ZoneKind::Node);
}

std::vector<std::string> KelVariant::bounds() const
{
    const arbor::TZone* zone = asZone(baseOf(entry()));
    return zone != nullptr && zone->isCellZone() ? listOf(*zone, "bounds") : Texts();
}

std::vector<std::string> KelVariant::location() const
{
    if (const arbor::TZone* zone = asZone(baseOf(entry()))) {
        if (zone->isCellZone())
            return withOwnEntry(faceZones(), *zone, ZoneKind::Cell);
        if (zone->isFaceZone())
            return withOwnEntry(cellZones(), *zone, ZoneKind::Face);
        return zone->isNodeZone() ? Texts{ownEntry(*zone, ZoneKind::Node)} : Texts();
    }
    const arbor::TObject* object = asObject(baseOf(entry()));
    return object != nullptr && object->isDomain() ? listOf(*object, "location") : Texts();
}

} // namespace meridyn
