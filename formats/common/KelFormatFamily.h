#pragma once

#include "KelExport.h"
#include "KelTypes.h"

#include <string>

namespace meridyn {

/// Families of operations that a format can carry. A set of them is a number with bit n set for family n.
enum KelFormatFamily : int {
    KEL_FAMILY_COORDINATES = 0, ///< of nodes
    KEL_FAMILY_EDGES,           ///< edges and their nodes
    KEL_FAMILY_FACE_NODES,      ///< counts and ids
    KEL_FAMILY_FACE_CELLS,      ///< cell 0 and cell 1
    KEL_FAMILY_SHADOW_FACES,    ///< partners of periodic faces
    KEL_FAMILY_INTERFACE_DATA,  ///< of non-conformal interfaces
    KEL_FAMILY_CHILD_FACES,     ///< of faces that were replaced
    KEL_FAMILY_CELL_TYPES,      ///< shapes
    KEL_FAMILY_CELL_NODES,      ///< counts and ids
    KEL_FAMILY_CELL_FACES,      ///< counts and ids
    KEL_FAMILY_CELL_PARTITIONS, ///< partition of each cell
    KEL_FAMILY_CHILD_CELLS,     ///< of cells that were replaced
    KEL_FAMILY_CASE_SECTIONS,   ///< named values of the mesh's elements
    KEL_FAMILY_ZONE_PROPERTIES, ///< names, kinds, numbers and flags of zones
    KEL_FAMILY_ZONE_ADJACENCY,  ///< which zones lie beside which
    KEL_FAMILY_LOCAL_IDS,       ///< ids of elements elsewhere
    KEL_FAMILY_PHASES,          ///< of the solution
    KEL_FAMILY_VARIABLES,       ///< of the phases, with their values
    KEL_FAMILY_ATTRIBUTES,      ///< of phases and variables, dataset names included
    KEL_FAMILY_TIME_LEVELS,     ///< of the solution
    KEL_FAMILY_SETS,            ///< named lists of elements, with data
    KEL_FAMILY_SET_DATA,        ///< data of things that are no elements, and particles
    KEL_FAMILY_PARTICLE_TRACKS, ///< groups, chunks and their variables
    KEL_FAMILY_SETTINGS,        ///< texts and trees
    KEL_FAMILY_LOG,             ///< titles and texts
    KEL_FAMILY_LOCATIONS,       ///< the state of the location model
    KEL_FAMILY_MESHES,          ///< several mesh ids, targets and partitions
    KEL_FAMILY_MESH_SIZES,      ///< dimension, mesh-wide sizes and units
    KEL_FAMILY_SOLVER,          ///< the solver type whose names the variables bear
    KEL_FAMILY_COUNT            ///< number of families, itself none
};

/// A set of KelFormatFamily values.
using KelFormatFamilies = unsigned64;

/// All families.
constexpr KelFormatFamilies allFormatFamilies = (KelFormatFamilies{1} << KEL_FAMILY_COUNT) - 1;

/// The set of one family.
constexpr KelFormatFamilies formatFamily(KelFormatFamily family)
{
    return KelFormatFamilies{1} << family;
}

/// Name of a family as people read it ("shadow faces"); empty for a number outside the list.
KEL_API std::string formatFamilyName(KelFormatFamily family);

} // namespace meridyn
