#pragma once

#include "PolyMesh.h"

#include <cstdint>
#include <string>
#include <vector>

namespace meridyn::polymesh {

/// What the class of a field file says: where its values are and how many there are of each.
struct FieldKind {
    enum Place {
        None,
        Cells,  ///< of cells, with boundary values on the patches
        Faces,  ///< of interior faces, with values on the patches
        Points, ///< of points
    };
    Place place = None;
    unsigned components = 0;
    bool hasBoundary = false;
    const char* rank = ""; ///< "Scalar", "Vector", "SphericalTensor" and its like

    /// Whether each entry is a plain number; all others stand in parentheses, one value alone too.
    bool isScalar() const;

    /// The kind of "volVectorField" and its like; place None for any other class.
    static FieldKind of(const std::string& className);

    /// Whether each entry is one number that stands for a tensor: it times the unit tensor.
    bool isSphericalTensor() const;
};

/// The head of a field file: what it holds, without its values.
struct FieldHead {
    FieldKind kind;
    std::string units;       ///< in SI units, "m s^-1", or the words of the file; empty for a number without unit
    bool isOriented = false; ///< whether values on faces are counted along the normal

    /// Place None when the file is no field. @throws FoamError
    static FieldHead read(const std::string& path);
};

/// Values as a file gives them: one entry for all elements, or one for each.
struct FieldValues {
    bool isKnown = false;
    bool isUniform = false;
    std::vector<double> values;
};

/// The entry of a boundary condition.
struct PatchValues {
    std::string name; ///< of a patch, of a group of patches, or a pattern
    bool isPattern = false;
    std::string type;
    FieldValues value; ///< not known where the condition keeps none
};

/// A field file in memory.
struct FieldFile {
    std::string path;
    FieldKind kind;
    FieldValues inner;
    std::vector<PatchValues> patches;

    /// @throws FoamError, also when the number of values does not fit the mesh
    static FieldFile read(const std::string& path, const PolyMesh& mesh);

    /// Where the values on a patch come from.
    struct OnPatch {
        enum Source {
            Unknown,
            Zero,
            Cell, ///< the value of the cell beside the face
            Stored
        };
        Source source = Unknown;
        const PatchValues* entry = nullptr; ///< of Stored: where the values are
    };

    /// The entry whose values are those on a patch; null where none are stored.
    const PatchValues* storedOn(const PolyPatch& patch) const;

    /// @throws FoamError when the number of stored values is not that of the faces
    OnPatch onPatch(const PolyPatch& patch) const;

private:
    const PatchValues* entryOf(const PolyPatch& patch) const;
    OnPatch sourceOn(const PolyPatch& patch) const;
};

} // namespace meridyn::polymesh
