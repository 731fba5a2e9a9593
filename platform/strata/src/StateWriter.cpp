#include "StateText.h"

#include "StateCommon.h"

#include <charconv>

namespace strata {

namespace {

/// A text that grows by words.
class Lines {
public:
    Lines& word(std::string_view text)
    {
        if (!_text.empty() && _text.back() != '\n')
            _text += ' ';
        _text += text;
        return *this;
    }
    Lines& number(std::int64_t value)
    {
        char digits[24];
        const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
        return word({digits, static_cast<std::size_t>(end - digits)});
    }
    Lines& name(const std::string& text)
    {
        word("=");
        for (const char byte : text)
            if (byte > ' ' && byte < '\x7F' && byte != '%') {
                _text += byte;
            } else {
                const auto value = static_cast<unsigned char>(byte);
                _text += {'%', upperHexDigits[value / 16], upperHexDigits[value % 16]};
            }
        return *this;
    }
    void end() { _text += '\n'; }
    const std::string& text() const { return _text; }

private:
    std::string _text;
};

void writeZone(Lines& lines, const ExternalBody& zone)
{
    lines.number(zone.zone());
}

void writeZone(Lines& lines, const ExternalFace& zone)
{
    lines.number(zone.zone());
}

void writeZone(Lines& lines, const ExternalFaceSide& side)
{
    // Put together by hand: the far side of zone 0 is written "-0".
    std::string text = std::to_string(side.zone());
    if (side.farSide())
        text.insert(0, 1, '-');
    lines.word(text);
}

template <class T>
void writeZones(Lines& lines, const T& region)
{
    for (const auto& [map, zones] : Store::data(region).zones) {
        lines.word("zones").word(region.id()).number(map);
        for (const auto& zone : zones)
            writeZone(lines, zone);
        lines.end();
    }
}

template <class Call>
void forEachUse(const Store& store, Call call)
{
    for (const auto& [number, face] : store.faces)
        for (const auto& use : Store::data(*face).uses)
            if (use != nullptr)
                call(*use);
}

template <class Regions>
void writeRegions(Lines& lines, std::string_view kind, const Regions& regions)
{
    for (const auto& [number, region] : regions)
        lines.word(kind).number(number).number(region->part()->number()).name(region->name()).end();
}

void writeMembers(Lines& lines, const Composite& composite)
{
    const CompositeData& own = Store::data(composite);
    if (own.primitives.empty() && own.composites.empty())
        return;
    lines.word("members").number(composite.number());
    for (const RegionSet* members : {&own.primitives, &own.composites})
        for (const Region* member : *members)
            lines.word(member->id());
    lines.end();
}

} // namespace

std::string writeState(const std::string& modelName, const Store& store)
{
    Lines lines;
    lines.word("strata").word(stateVersion).end();
    lines.word("model").name(modelName).end();
    lines.word("next").number(store.nextPart).number(store.nextBody);
    lines.number(store.nextFace).number(store.nextComposite).end();
    for (const auto& [number, part] : store.parts)
        lines.word("part").number(number).number(part->dimensionality()).name(part->name()).end();
    writeRegions(lines, "body", store.bodies);
    writeRegions(lines, "face", store.faces);
    forEachUse(store, [&lines](const FaceUse& use) {
        lines.word("use").number(use.number()).number(use.side()).number(use.body()->number()).name(use.name()).end();
    });
    writeRegions(lines, "composite", store.composites);
    for (const auto& [number, composite] : store.composites)
        writeMembers(lines, *composite);
    for (const auto& [number, body] : store.bodies)
        writeZones(lines, *body);
    for (const auto& [number, face] : store.faces)
        writeZones(lines, *face);
    forEachUse(store, [&lines](const FaceUse& use) { writeZones(lines, use); });
    return lines.text() + checksumLine(lines.text());
}

} // namespace strata
