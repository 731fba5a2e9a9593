#pragma once

namespace meridyn {

/// Names of the attributes of phases and variables that mean something to the library, its formats and its tool.
///
/// Attributes are texts under any name, and these are the names that several programs agree on, letter by letter. What
/// each holds, and who sets it, is told in docs/attributes.md. All of them may be missing.
namespace KelAttributes {

/// Name of the variable or phase in files; the unique name unless something else was set.
inline constexpr char datasetName[] = "Dataset Name";

/// Name to show to people: "Static Pressure".
inline constexpr char longName[] = "Long Name";

/// Name of the variable in the vocabulary that applications share.
inline constexpr char commonName[] = "Common Name";

/// Whether people are to see the variable: `yes` or `no`.
inline constexpr char userVisible[] = "User Visible";

/// Name of the recipe that rewrites the other attributes as they are read.
inline constexpr char recipe[] = "Recipe";

/// Unit of the values: "Pa", "m s^-1". Missing, or empty, for numbers without a unit.
inline constexpr char units[] = "Units";

/// Names of the components of a vector or tensor in the order of its values, with commas between: "U-x,U-y,U-z". See
/// splitComponentNames of KelComponents.h for names that hold a comma.
inline constexpr char componentNames[] = "Component Names";

/// Of a variable that is one component of a vector or tensor: the name of that one.
inline constexpr char parentName[] = "Parent Name";

/// Whether values on faces are counted along the normal, from cell 0 to cell 1, and so change their sign where a face
/// is turned, as a flux does: `yes`. Missing for all other values.
inline constexpr char oriented[] = "Oriented";

/// @name Values of attributes that are yes or no
/// @{
inline constexpr char yes[] = "True";
inline constexpr char no[] = "False";
/// @}

} // namespace KelAttributes

} // namespace meridyn
