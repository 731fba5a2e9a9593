#include "KelSettingObject.h"

#include <ostream>

namespace meridyn {

namespace {

constexpr std::size_t labelWidth = 30;

} // namespace

// Registers the class while the library is loaded, before any setting can exist.
const bool KelSettingObject::_isRegistered = KelSettingObject::registerClass();

bool KelSettingObject::registerClass()
{
    return arbor::TObject::registerNewObjectClass("meridyn::KelSettingObject", &KelSettingObject::create, "TObject",
                                                  "kelSettingObject") &&
           arbor::TObject::registerClassShortName("KelSettingObject", "meridyn::KelSettingObject");
}

arbor::TObject* KelSettingObject::create(const std::string& name, arbor::TObject* parent)
{
    return new KelSettingObject(name, parent);
}

KelSettingObject::KelSettingObject(const std::string& name, arbor::TObject* parent) : TObject(name, parent)
{}

KelSettingObject::~KelSettingObject() = default;

void KelSettingObject::print(std::ostream& out, int indent, bool recursive, bool objectsOnly) const
{
    std::string line = std::string(static_cast<std::size_t>(indent), ' ') + "/" + name();
    if (line.size() < labelWidth)
        line.resize(labelWidth, ' ');
    if (!secondName().empty() && secondName() != name())
        line += " " + secondName();
    out << line << '\n';
    printContent(out, indent, recursive, objectsOnly);
}

} // namespace meridyn
