#pragma once

#include "ConformanceCase.h"
#include "ConformanceMesh.h"
#include "formats/common/FrameArrays.h"

#include <string>
#include <vector>

namespace meridyn::conformance {

using Ids = std::vector<int>;

/// How arrays are handed over.
enum class Form {
    Range,   ///< a zone at a time, by its ids
    Zone,    ///< a zone at a time, by its name
    Element, ///< one by one
    Pieces,  ///< a few elements at a time
    Uniform  ///< as Zone, but counts and types that all elements of a zone share as one number
};

/// An array with a value per element, and where a mesh as plain data has it.
template <class T>
struct FixedArray : FixedFrameArray<T> {
    std::vector<T> Mesh::*data;

    /// The value that the form for one element gives.
    T one(const KelProvider& reader, unsigned64 id) const
    {
        T value{};
        this->getOne(reader, id, &value, 1);
        return value;
    }
};

/// An array with a count and as many ids per element, and where a mesh as plain data has it.
struct RaggedArray : RaggedFrameArray {
    Ragged Mesh::*data;
};

const std::vector<FixedArray<unsigned64>>& idArrays(); ///< cell 0, cell 1, shadow faces
const FixedArray<KelCellType>& typeArray();
const FixedArray<int>& partitionArray();
const std::vector<RaggedArray>& raggedArrays();

/// Calls `visit` with each array with a value per element.
template <class Visit>
void forFixedArrays(const Visit& visit)
{
    for (const FixedArray<unsigned64>& array : idArrays())
        visit(array);
    visit(typeArray());
    visit(partitionArray());
}

/// Zones in which an array says something: of shadows and children those where one is not 0, else all that have
/// elements. None when the mesh does not have the array.
std::vector<Zone> zonesWith(const FixedArray<unsigned64>& array, const Mesh& mesh);
std::vector<Zone> zonesWith(const FixedArray<KelCellType>& array, const Mesh& mesh);
std::vector<Zone> zonesWith(const FixedArray<int>& array, const Mesh& mesh);
std::vector<Zone> zonesWith(const RaggedArray& array, const Mesh& mesh);

/// The ids of zones.
Ids idsOf(const std::vector<Zone>& zones);

/// Declares sizes, units and zones on a writer.
void declareMesh(KelConsumer& writer, const Mesh& mesh, int meshId = 1);

/// Hands over all arrays of the families that the format takes.
void writeArrays(KelConsumer& writer, const Mesh& mesh, KelFormatFamilies families, Form form);

/// Writes a model with this mesh as its case; false, with the failure noted, when the writer does not take it.
bool writeCase(Case& test, const Mesh& mesh, Form form = Form::Range, int number = 0);

/// Zone of a model that is read which stands for a zone of the mesh: the same id, or, where the format does not keep
/// properties of zones, the same elements; -1 for none.
int zoneIn(const Case& test, const KelProvider& reader, const Zone& zone);

/// Holds all zones and arrays of an open case against the mesh, in every form.
void expectMesh(Case& test, const KelProvider& reader, const Mesh& mesh);

} // namespace meridyn::conformance
