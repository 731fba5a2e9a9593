#pragma once

#include "strata/Region.h"

namespace strata {

class Body;
class Face;

/// One side of a face, as part of the boundary of a body. It belongs to the part of the body.
class STRATA_API FaceUse : public Region {
public:
    ~FaceUse() override;

    /// The body that is bounded.
    Body* body() const;
    /// The face that bounds it.
    Face* face() const;
    /// The side of the face that the body sees: 0 or 1.
    int side() const;

    /// "<name of the body>:<name of the face>", with ":0" or ":1" behind where the body uses both sides. Made from
    /// the current names, whether or not the face use has one of its own; no part of locations.
    std::string relativeName() const;

    /// Destroys the face use alone.
    void destroy();

private:
    friend struct Store;
    using Region::Region;
};

} // namespace strata
