#pragma once

#include "arbor/TObject.h"
#include "KelExport.h"

#include <iosfwd>
#include <string>

namespace meridyn {

/// The node class of settings trees: a TObject with the print form of the settings dump and no data of its own.
///
/// The library registers it with arbor when it is loaded, under the full name "meridyn::KelSettingObject", the short
/// name "KelSettingObject" and the XML tag "kelSettingObject". Nodes are made by arbor only:
/// `arbor::TObject::newObject("meridyn::KelSettingObject", name, parent)`, and by reading XML.
class KEL_API KelSettingObject : public arbor::TObject {
public:
    ~KelSettingObject() override;

    /// Writes the node as text: "/" and the name in a field of 30 columns, then the second name when there is one
    /// that differs from the name; a line "name = value" for each property; what the children write.
    ///
    /// @param indent       blanks in front of the node's line, counted in its field; the content has two more
    /// @param recursive    whether the children are written too
    /// @param objectsOnly  whether the properties are left out
    void print(std::ostream& out, int indent, bool recursive, bool objectsOnly) const override;

private:
    KelSettingObject(const std::string& name, arbor::TObject* parent);

    static arbor::TObject* create(const std::string& name, arbor::TObject* parent);
    static bool registerClass();
    static const bool _isRegistered;
};

} // namespace meridyn
