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
class Part;
struct Store;

/// What one entry of a location names.
struct LocationMatch {
    std::string entry;            ///< the entry as it was written, without the blanks around it
    std::vector<Part*> parts;     ///< parts of that name, by id
    std::vector<Region*> regions; ///< regions of that name, by RegionLess
};

/// What a location covers: see Topology::resolveLocation.
struct LocationRegions {
    std::vector<FaceUse*> boundary; ///< the surfaces, each once, by RegionLess
    std::vector<Body*> interior;    ///< the volumes, each once, by id
};

/// All parts of a model, and the reading of locations.
///
/// A location is a comma-separated list of entries; blanks (space, tab) around an entry are dropped, empty entries
/// are skipped. An entry is `name` or `part/name`:
/// - `name` stands for every part and every region of that name, in all parts; `part/name` for the regions of that
///   name in the parts of that name. Names are compared byte by byte.
/// - `*` stands for any run of characters, also an empty one, `?` for one character (a UTF-8 sequence, or one byte
///   of anything else). Neither reaches across the `/` between part and name.
/// - double quotes take what they enclose literally: commas, slashes, wildcards, blanks. They may enclose a part of
///   an entry; a doubled quote inside stands for one.
/// An entry is at fault, and names nothing, with an unclosed quote (which takes in all that follows), a second `/`
/// or nothing on one of the sides of a `/`. Regions without a name are named by no entry.
class STRATA_API Topology {
public:
    ~Topology();
    Topology(const Topology&) = delete;
    Topology& operator=(const Topology&) = delete;

    /// Adds a part; dimensionality and name are kept as given. Parts may share a name. Null only once all ids up to
    /// 2147483647 have been used.
    Part* createPart(int dimensionality, const std::string& name);

    /// Destroys all parts with all that they own. The id counters go on.
    void clear();

    /// All parts, by id.
    std::vector<Part*> parts() const;

    /// @name Look-up by id
    /// An id is the letter of the kind and the number, as id() gives it; any other text gives null.
    /// @{
    Part* findPartById(const std::string& id) const;
    Body* findBodyById(const std::string& id) const;
    Face* findFaceById(const std::string& id) const;
    Composite* findCompositeById(const std::string& id) const;
    /// @}

    /// The part of that name, of several the one with the lowest id; null for an empty name.
    Part* findPartByName(const std::string& name) const;

    /// The surfaces and the volumes that a location covers, of one reading of its text. As a surface, a part stands for
    /// the face uses of all its bodies, a body for its boundary, a face for its face uses, a face use for itself, a
    /// composite for what its members stand for. As a volume, a part stands for its bodies, a body for itself, a
    /// composite for what its members stand for, faces and face uses for nothing.
    ///
    /// @param unresolved  replaced by the entries that name nothing, each once, in their order. An entry that names
    ///                    a region without any face use is not among them
    LocationRegions resolveLocation(const std::string& location, std::vector<std::string>& unresolved) const;

    /// The surfaces of resolveLocation alone.
    std::vector<FaceUse*> resolveBoundaryLocation(const std::string& location,
                                                  std::vector<std::string>& unresolved) const;

    /// The volumes of resolveLocation alone.
    std::vector<Body*> resolveInteriorLocation(const std::string& location, std::vector<std::string>& unresolved) const;

    /// What each entry of a location names, entry by entry, repeats included.
    std::vector<LocationMatch> explainLocation(const std::string& location) const;

    /// A name as it is written in a location: in quotes where it would otherwise be read as something else.
    static std::string quoted(const std::string& name);

private:
    friend class Model;
    Topology();
    std::unique_ptr<Store> _store;
};

} // namespace strata
