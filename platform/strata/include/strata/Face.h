#pragma once

#include "strata/Region.h"

namespace strata {

class FaceUse;

/// A surface with two sides, each of which one body may use.
class STRATA_API Face : public Region {
public:
    ~Face() override;

    /// The face use on side 0 or 1; null where there is none, and for every other side.
    FaceUse* faceUse(int side) const;

    /// Destroys the face and its face uses.
    void destroy();

private:
    friend struct Store;
    using Region::Region;
};

} // namespace strata
