#pragma once

#include <cstdint>

namespace meridyn {

/// Element ids (from 1), sizes, counts and capacities.
using unsigned64 = std::uint64_t;

/// The signed 64-bit value type. A type of its own beside `long`, on every platform, so that the ten value
/// types of sets and particle tracks are ten overloads everywhere.
using signed64 = long long;

/// In the place of the number of a time level: the largest level known so far. A reader without levels stays where it
/// is; a writer without levels makes level 2147483647, so a writer names its first level itself.
constexpr int KEL_LATEST_TIME_LEVEL = -2147483647 - 1;

// The numbers of all enumerations are part of the interface: formats and callers exchange them as ints.
// A value outside the list is answered as each operation says; -1 stands for "none" or "unknown".

/// Kind of mesh element that a zone holds.
enum KelZoneCategory : int {
    KEL_NODE_ZONE = 0, ///< nodes: the corners of all others
    KEL_EDGE_ZONE = 1, ///< edges
    KEL_FACE_ZONE = 2, ///< faces, in a two-dimensional mesh the lines between cells
    KEL_CELL_ZONE = 3  ///< cells: the volumes, in a two-dimensional mesh the areas
};

/// What the mesh is prepared for. The library distinguishes partitioned post-processing from all others.
enum KelTargetCategory : int {
    KEL_DEFAULT_TARGET = 0,   ///< the target that a fresh mesh context starts with
    KEL_SOLVER = 1,           ///< the mesh as a solver computes on it
    KEL_PARTITIONED_POST = 2, ///< post-processing by partitions: the only target under which a partition id counts
    KEL_POST = 3              ///< post-processing of the whole mesh
};

/// The two data sets of a model.
enum KelDataClass : int {
    KEL_CASE = 0, ///< mesh, zones and case settings
    KEL_DATA = 1  ///< solution: phases and variables
};

/// Sizes that are kept per zone.
enum KelZoneSizeType : int {
    KEL_ZONE_FIRST_ID = 0,      ///< id of the first element, 0 while none is assigned
    KEL_ZONE_LAST_ID = 1,       ///< id of the last element
    KEL_ZONE_ELEMENT_COUNT = 2, ///< last - first + 1, 0 while the first id is 0; cannot be set
    KEL_ZONE_EXTRA_SIZE = 3     ///< one further count, stored and returned as it is
};

/// The two free texts of a zone. Our formats keep its name in the first and the name of its kind in the second.
enum KelZoneStringInfoType : int {
    KEL_ZONE_STRING_0 = 0, ///< the name, in our formats
    KEL_ZONE_STRING_1 = 1  ///< the name of the kind, in our formats
};

/// Mesh-wide sizes. Our formats keep the counts of nodes, edges, faces and cells in the slots 1 to 4.
enum KelMeshSizeType : int {
    KEL_MESH_DIMENSION = 0, ///< spatial dimension; 0 while no mesh is loaded
    KEL_MESH_SIZE_1 = 1,    ///< number of nodes, in our formats
    KEL_MESH_SIZE_2 = 2,    ///< number of edges, in our formats
    KEL_MESH_SIZE_3 = 3,    ///< number of faces, in our formats
    KEL_MESH_SIZE_4 = 4     ///< number of cells, in our formats
};

/// @name Numbers kept per zone
/// Stored and returned without interpretation.
/// @{
enum KelNodeZoneInfoType : int {
    KEL_NODE_ZONE_INFO_0 = 0 ///< default -1
};

enum KelEdgeZoneInfoType : int {
    KEL_EDGE_ZONE_INFO_0 = 0, ///< the same number as the zone's KelEdgeZoneType; default -1
    KEL_EDGE_ZONE_INFO_1 = 1  ///< default -1
};

enum KelFaceZoneInfoType : int {
    KEL_FACE_ZONE_INFO_0 = 0,   ///< 16 bits wide; default -1
    KEL_FACE_ZONE_INFO_1 = 1,   ///< default 0
    KEL_FACE_ZONE_INFO_2 = 2,   ///< default 0
    KEL_FACE_ZONE_INFO_3 = 3,   ///< default 0
    KEL_FACE_ZONE_INFO_4 = 4,   ///< default 0
    KEL_FACE_ZONE_INFO_TYPE = 5 ///< the same number as the zone's KelFaceZoneType; default -1
};

enum KelCellZoneInfoType : int {
    KEL_CELL_ZONE_INFO_0 = 0, ///< 16 bits wide, the width of a phase id; default -1
    KEL_CELL_ZONE_INFO_1 = 1  ///< default 0
};

/// Flags of a face zone: value n is bit n of its flag word.
enum KelFaceZonePropType : int {
    KEL_FACE_ZONE_PROP_0 = 0, ///< bit 0
    KEL_FACE_ZONE_PROP_1 = 1, ///< bit 1
    KEL_FACE_ZONE_PROP_2 = 2, ///< bit 2
    KEL_FACE_ZONE_PROP_3 = 3, ///< bit 3
    KEL_FACE_ZONE_PROP_4 = 4, ///< bit 4
    KEL_FACE_ZONE_PROP_5 = 5, ///< bit 5
    KEL_FACE_ZONE_PROP_6 = 6  ///< bit 6
};
/// @}

/// Kind of a face zone. -1 is none.
enum KelFaceZoneType : int {
    KEL_FACE_ZONE_TYPE_INTERIOR = 0,  ///< between two cells
    KEL_FACE_ZONE_TYPE_WALL = 1,      ///< a solid boundary
    KEL_FACE_ZONE_TYPE_INLET = 2,     ///< where the flow enters
    KEL_FACE_ZONE_TYPE_OUTLET = 3,    ///< where the flow leaves
    KEL_FACE_ZONE_TYPE_SYMMETRY = 4,  ///< a plane of symmetry
    KEL_FACE_ZONE_TYPE_PERIODIC = 5,  ///< its faces have shadow faces in the partner zone
    KEL_FACE_ZONE_TYPE_INTERFACE = 6, ///< non-conformal connection, see the interface data of faces
    KEL_FACE_ZONE_TYPE_EMPTY = 7,     ///< normal to the directions that are not solved
    KEL_FACE_ZONE_TYPE_PARTITION = 8, ///< boundary to another partition
    KEL_FACE_ZONE_TYPE_PARENT = 9,    ///< replaced by child faces
    KEL_FACE_ZONE_TYPE_BOUNDARY = 10  ///< boundary of no special kind
};

/// Kind of an edge zone. -1 is none.
enum KelEdgeZoneType : int {
    KEL_EDGE_ZONE_TYPE_INTERIOR = 0, ///< within the mesh
    KEL_EDGE_ZONE_TYPE_BOUNDARY = 1, ///< on the boundary
    KEL_EDGE_ZONE_TYPE_FEATURE = 2   ///< a sharp edge of the geometry
};

/// Shape of a cell. -1 is the answer for a cell whose type could not be read.
///
/// The type fixes the order of the cell's nodes, counted from 0 here. A volume has its base first, in the order in
/// which its normal, by the right-hand rule, points into the cell. The nodes of a two-dimensional cell go round it
/// counterclockwise. docs/mesh.md shows each type in a picture.
enum KelCellType : int {
    KEL_CELL_POLYHEDRON = 0,   ///< any other volume; its nodes, where it has any, come in any order, each once
    KEL_CELL_TETRAHEDRON = 1,  ///< 4 nodes, 4 faces: base 0 1 2, apex 3
    KEL_CELL_PYRAMID = 2,      ///< 5 nodes, 5 faces: base 0 1 2 3, apex 4
    KEL_CELL_PRISM = 3,        ///< 6 nodes, 5 faces: base 0 1 2, opposite to them 3 4 5
    KEL_CELL_HEXAHEDRON = 4,   ///< 8 nodes, 6 faces: base 0 1 2 3, opposite to them 4 5 6 7
    KEL_CELL_POLYGON = 5,      ///< 5 to 7: cells of a two-dimensional mesh; its nodes go round it
    KEL_CELL_TRIANGLE = 6,     ///< 3 nodes, 3 faces: 0 1 2 go round it
    KEL_CELL_QUADRILATERAL = 7 ///< 4 nodes, 4 faces: 0 1 2 3 go round it
};

/// How a reader of this library version fares with a file's version.
enum KelReadable : int {
    KEL_READABLE_UNKNOWN = -1,       ///< the version text is empty or "Unknown"
    KEL_READABLE = 0,                ///< not newer than the library
    KEL_READABLE_NEWER_MINOR = 1,    ///< same major version, newer minor version
    KEL_NOT_READABLE_NEWER_MAJOR = 2 ///< newer major version
};

/// Element type of a block of plain data: the ten value types in their fixed order. -1 is none.
enum KelPlainDataType : int {
    KEL_PLAIN_UNSIGNED_CHAR = 0, ///< unsigned char
    KEL_PLAIN_CHAR = 1,          ///< char
    KEL_PLAIN_SHORT = 2,         ///< short
    KEL_PLAIN_UNSIGNED_INT = 3,  ///< unsigned int
    KEL_PLAIN_INT = 4,           ///< int
    KEL_PLAIN_LONG = 5,          ///< long
    KEL_PLAIN_UNSIGNED64 = 6,    ///< unsigned64
    KEL_PLAIN_SIGNED64 = 7,      ///< signed64
    KEL_PLAIN_FLOAT = 8,         ///< float
    KEL_PLAIN_DOUBLE = 9         ///< double
};

/// Precision in which a format stores coordinates and values of variables.
enum KelDataPrecisionType : int {
    KEL_PRECISION_AS_GIVEN = 0, ///< that of the call which hands the values over
    KEL_PRECISION_SINGLE = 1,   ///< float: 32 bits
    KEL_PRECISION_DOUBLE = 2    ///< double: 64 bits
};

/// How several processes share a file.
enum KelIOMode : int {
    KEL_IO_SERIAL = 0,      ///< one process only
    KEL_IO_INDEPENDENT = 1, ///< each process on its own
    KEL_IO_COLLECTIVE = 2   ///< all processes in step
};

/// How much bulk data a reader may keep in memory between calls.
enum KelDataCacheMode : int {
    KEL_CACHE_NONE = 0, ///< none: every call reads again
    KEL_CACHE_LAST = 1, ///< what the last call needed
    KEL_CACHE_ALL = 2   ///< all that was read
};

} // namespace meridyn
