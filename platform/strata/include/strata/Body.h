#pragma once

#include "strata/Region.h"

namespace strata {

class Face;
class FaceUse;

/// A volume, bounded by face uses.
class STRATA_API Body : public Region {
public:
    ~Body() override;

    /// Takes one side of a face into the boundary of this body.
    ///
    /// @param side  0 or 1
    /// @param name  may be empty
    ///
    /// Null when the face is null or of another topology, the side is neither 0 nor 1 or is in use already, or when
    /// the name is taken by a face use of this body's part.
    FaceUse* createFaceUse(Face* face, int side, const std::string& name);

    /// The face uses of this body, by face, then side.
    std::vector<FaceUse*> boundary() const;

    /// Destroys the body and its face uses.
    ///
    /// @param withFaces  whether the faces that it used, and that no body uses then, are destroyed as well
    void destroy(bool withFaces);

private:
    friend struct Store;
    using Region::Region;
};

} // namespace strata
