#pragma once

#include "strata/Region.h"

#include <memory>
#include <string>
#include <vector>

namespace strata {

class Body;
class Composite;
class Face;
class FaceUse;
class Topology;
struct PartData;

/// A named group of regions with a dimensionality; the owner of its regions.
///
/// Names are unique among the regions of one kind in one part; empty names are none and do not collide.
class STRATA_API Part {
public:
    ~Part();
    Part(const Part&) = delete;
    Part& operator=(const Part&) = delete;

    /// "p" and the number.
    std::string id() const;
    /// The number in the id: from 1, ascending with creation.
    int number() const;
    /// The number given at creation.
    int dimensionality() const;
    /// The name; may be empty or shared with other parts.
    const std::string& name() const;
    /// Takes another name, any text. Always true: parts may share a name.
    bool rename(const std::string& name);
    /// The topology that the part belongs to.
    Topology* topology() const;

    /// @name Creation
    /// Null when the name is taken by a region of the kind, or when the ids of the kind have run out.
    /// @{
    Body* createBody(const std::string& name);
    Face* createFace(const std::string& name);
    /// Null also when a member is null or of another topology.
    Composite* createComposite(const std::string& name, const RegionSet& members);
    /// @}

    /// @name Look-up by name
    /// Null for an unknown name, and for the empty one.
    /// @{
    Body* findBodyByName(const std::string& name) const;
    Face* findFaceByName(const std::string& name) const;
    Composite* findCompositeByName(const std::string& name) const;
    FaceUse* findFaceUseByName(const std::string& name) const;
    /// @}

    /// @name Regions of the part
    /// By id; face uses by face, then side. The face uses are those of the part's bodies, wherever their faces are.
    /// @{
    std::vector<Body*> bodies() const;
    std::vector<Face*> faces() const;
    std::vector<Composite*> composites() const;
    std::vector<FaceUse*> faceUses() const;
    /// @}

    /// Destroys the part and its regions; uses of its faces by bodies of other parts go with the faces.
    void destroy();

private:
    friend struct Store;
    explicit Part(std::unique_ptr<PartData> data);
    std::unique_ptr<PartData> _data;
};

} // namespace strata
