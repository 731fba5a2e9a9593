#pragma once

#include "arbor/TObject.h"

#include <string>

namespace arbor {

/// A node that stands for a zone of the mesh. Its kind is None until it is set and travels with the XML text.
/// Made as "TZone" by newObject().
class ARBOR_API TZone : public TObject {
public:
    /// What the zone holds.
    enum Kind : int {
        None, ///< not set
        Cell, ///< cells
        Face, ///< faces
        Node  ///< nodes
    };

    bool isZone() const override;
    ~TZone() override;

    virtual bool isCellZone() const; ///< whether the kind is Cell
    virtual bool isFaceZone() const; ///< whether the kind is Face
    virtual bool isNodeZone() const; ///< whether the kind is Node

    /// The kind of the zone.
    Kind kind() const { return _kind; }

    /// Sets the kind; a number outside of Kind counts as None.
    void setKind(Kind kind);

protected:
    /// See TObject.
    TZone(const std::string& name, TObject* parent);

private:
    friend class ClassRegistry;
    static TObject* create(const std::string& name, TObject* parent);

    Kind _kind = None;
};

} // namespace arbor
