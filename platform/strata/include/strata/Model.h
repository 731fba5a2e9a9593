#pragma once

#include "strata/Export.h"

#include <memory>
#include <string>

namespace strata {

class Topology;
class TopologyMap;

/// A topology of named regions, and the mesh maps that tie the regions to zones.
///
/// Entities  Model -> Topology -> Part -> Body, Face, FaceUse, Composite (the four kinds of Region).
///           TopologyMap ties bodies, faces and face uses to zones of a mesh.
/// Pointers  What the library hands out stays its own. The topology and the maps live as long as the model, also
///           across reset; a part or region lives until it is destroyed, cleared or replaced by reset. A const
///           operation may give a non-const pointer: constness covers the object asked, not the model around it.
/// Failure   A null pointer or false; the model is then as it was. Nothing throws but the allocator.
/// Cost      Look-ups by id and name are logarithmic; everything else is n log n at worst in what it handles.
/// Threads   One thread at a time per model.
class STRATA_API Model {
public:
    /// An empty model; the name is free text that is kept with the state.
    explicit Model(const std::string& name);
    ~Model();
    Model(const Model&) = delete;
    Model& operator=(const Model&) = delete;

    /// The name given at construction, or that of the state which the model was reset to.
    const std::string& name() const;

    /// The one topology, never null and the same for the life of the model.
    Topology* topology() const;

    /// Gives the mesh map of a number, any int; the first call for a number makes it, empty.
    TopologyMap* createMeshMap(int number);

    /// The whole model as a text of printable ASCII and line feeds, which ends without one: format and version, id
    /// counters, regions, members, zones, checksum. Equal models give equal texts; maps without zones leave no trace.
    std::string state() const;

    /// Rebuilds the model from a text made by state(): names, ids, counters, members, zones.
    ///
    /// Any other text gives false and changes nothing; memory and time stay in proportion to its length. On success
    /// all parts and regions are new objects, and zones that the state does not name are gone from the maps.
    bool reset(const std::string& state);

private:
    struct Data;
    std::unique_ptr<Data> _data;
};

} // namespace strata
