#pragma once

#include "KelExport.h"
#include "KelTypes.h"

#include <cstddef>
#include <string>
#include <vector>

namespace meridyn {

// Vectors and tensors are one variable of the field's name with several values per element: a vector 3 (x y z), a
// symmetric tensor 6 (xx xy xz yy yz zz), a tensor 9 (row by row: xx xy xz yx yy yz zx zy zz). A file or a program that
// holds each component by itself is joined and split with what stands here.

/// The labels of that many components: x y z for 3, those above for 6 and 9; for every other number "1", "2" ..., and
/// none for 1 and less.
KEL_API std::vector<std::string> componentLabels(unsigned64 count);

/// The names of the components of a variable: its name, "-" and the label: "U-x", "U-y", "U-z". Of one component the
/// name itself.
KEL_API std::vector<std::string> componentNames(const std::string& variable, unsigned64 count);

/// The names that the attribute "Component Names" of a variable gives, where there are as many as components; else
/// those of componentNames().
///
/// @param attribute  its value, empty where the variable has none
KEL_API std::vector<std::string> componentNames(const std::string& variable, unsigned64 count,
                                                const std::string& attribute);

/// Names as one text, the value of the attribute "Component Names": with commas between. A comma or a backslash within
/// a name has a backslash before it, as in `div(phi\,U)-x`.
KEL_API std::string joinComponentNames(const std::vector<std::string>& names);

/// The names in such a text; none for an empty one.
KEL_API std::vector<std::string> splitComponentNames(const std::string& text);

/// Variables of a source that are the components of one, or a variable that stands alone.
struct KelComponentGroup {
    std::string name;                 ///< of the variable that they make: what their names have in common
    std::vector<std::size_t> members; ///< places in the list of names, in the order of the components
};

/// Finds vectors and tensors among names: 9, 6 or 3 names that differ in their endings only, which are the labels of
/// componentLabels, all behind one "-", "_", "." or ":", or in capitals right behind the name: "U-x", "u_y",
/// "VelocityZ".
///
/// Names are left apart when what they have in common is empty, or is the name of another variable.
///
/// @return  the groups, in the order of their first names; each name is in exactly one of them
KEL_API std::vector<KelComponentGroup> groupComponents(const std::vector<std::string>& names);

/// Puts components together: the values of an element one after the other.
///
/// @param components  for each component its values, as many as there are elements
/// @param values      receives elements * components.size() values
template <class T>
void joinComponents(const std::vector<const T*>& components, unsigned64 elements, T* values)
{
    for (unsigned64 element = 0; element < elements; ++element)
        for (const T* component : components)
            *values++ = component[element];
}

/// Takes one component out of the values of all.
///
/// @param values     elements * count values, those of an element one after the other
/// @param component  which one, from 0
/// @param taken      receives as many values as there are elements
template <class T>
void splitComponent(const T* values, unsigned64 elements, unsigned64 count, unsigned64 component, T* taken)
{
    for (unsigned64 element = 0; element < elements; ++element)
        taken[element] = values[element * count + component];
}

} // namespace meridyn
