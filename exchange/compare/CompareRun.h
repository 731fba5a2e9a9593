#pragma once

#include "exchange/common/Model.h"
#include "KelCompare.h"
#include "KelProvider.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

namespace meridyn {

/// What the parts of one comparison share: both models with their meshes, the tolerances and the differences found.
class CompareRun {
public:
    CompareRun(KelProvider& one, KelProvider& other, const KelCompareOptions& chosen, std::vector<KelDifference>& found)
        : first(one), second(other), options(chosen), _found(found)
    {}

    /// Notes a difference at the current time level, if any; of the current zone, if any.
    void differ(KelFormatFamily family, const std::string& item, unsigned64 id, const std::string& one,
                const std::string& other);

    /// Notes two texts if they differ; whether they are equal. Texts that are not there are empty ones.
    bool same(KelFormatFamily family, const std::string& item, const std::string& one, const std::string& other);

    /// Notes the names that only one of two lists has, and gives those that both have, in the order of the first.
    std::vector<std::string> common(KelFormatFamily family, const std::string& what,
                                    const std::vector<std::string>& one, const std::vector<std::string>& other);

    /// Zones of a category that both meshes have with the same elements.
    std::vector<KelZoneDescription> zones(KelZoneCategory category) const;

    template <class T>
    bool isClose(T one, T other) const
    {
        if constexpr (std::is_floating_point_v<T>) {
            if (one == other || (std::isnan(one) && std::isnan(other)))
                return true;
            const double size = std::max(std::fabs(static_cast<double>(one)), std::fabs(static_cast<double>(other)));
            const double distance = std::fabs(static_cast<double>(one) - static_cast<double>(other));
            // A share of infinity is infinity again, and would hide any difference.
            const double allowed = std::isfinite(size) ? options.relativeTolerance * size : 0.0;
            return distance <= options.absoluteTolerance || distance <= allowed;
        } else
            return one == other;
    }

    /// Compares two buffers with the values of elements from `firstId` on; counts the differences of an item.
    template <class T>
    void compareValues(KelFormatFamily family, const std::string& item, unsigned64 firstId, unsigned64 perElement,
                       const std::vector<T>& one, const std::vector<T>& other, unsigned64& differences)
    {
        for (std::size_t n = 0; n < one.size() && n < other.size(); ++n)
            if (!isClose(one[n], other[n]) && differences++ < options.differencesPerItem)
                differ(family, item, firstId + n / perElement, text(one[n]), text(other[n]));
    }

    /// An array that is read by element ids, in both models.
    template <class T>
    struct Array {
        KelFormatFamily family;
        std::string item;
        unsigned64 perElement;
        bool zeroIsNone; ///< an element without values is as good as one of zeros
        std::function<unsigned64(KelProvider&, unsigned64 firstId, unsigned64 lastId, T* values, unsigned64 capacity)>
            read; ///< gives how many there were: all of the range, or none where one of its elements has none
        /// The elements that have values, if the reader knows.
        std::function<std::optional<std::vector<KelIdRange>>(const KelProvider&)> told;
    };

    /// Compares an array in one zone: which elements have values, and the values.
    template <class T>
    void compareArray(const Array<T>& array, const KelZoneDescription& zone)
    {
        const std::optional<std::vector<KelIdRange>> one = array.told(first), other = array.told(second);
        if (one && other && one->empty() && other->empty())
            return;
        unsigned64 differences = 0;
        currentZone = zone.id;
        forChunks(zone, array.perElement,
                  [&](unsigned64 from, unsigned64 to) { comparePiece(array, from, to, differences); });
        noteRest(array.family, array.item, differences);
        currentZone.reset();
    }

    /// Calls `compare(first, last)` for pieces of a zone that need a bounded buffer.
    template <class Compare>
    void forChunks(const KelZoneDescription& zone, unsigned64 perElement, const Compare& compare)
    {
        constexpr unsigned64 chunk = 262144;
        const unsigned64 step = std::max<unsigned64>(1, chunk / std::max<unsigned64>(1, perElement));
        const unsigned64 total = zone.last - zone.first + 1;
        for (unsigned64 done = 0; done < total; done += step)
            compare(zone.first + done, zone.first + std::min(total, done + step) - 1);
    }

    /// Says how many differences of an item were not reported.
    void noteRest(KelFormatFamily family, const std::string& item, unsigned64 differences);

    template <class T>
    static std::string text(T value)
    {
        if constexpr (std::is_floating_point_v<T>)
            return textOfReal(value, std::is_same_v<T, float>);
        else
            return std::to_string(value);
    }

    KelProvider& first;
    KelProvider& second;
    KelMeshDescription firstMesh, secondMesh; ///< those that are compared now
    KelDerived firstDerived, secondDerived;   ///< what of them is no part of the model
    std::optional<int> level;                 ///< the time level that is compared now
    std::optional<int> currentZone;           ///< the zone that is compared now
    const KelCompareOptions& options;

private:
    static std::string textOfReal(double value, bool isFloat);

    /// What a model says of the elements of a piece.
    template <class T>
    unsigned64 readPiece(const Array<T>& array, KelProvider& model, unsigned64 from, unsigned64 to,
                         std::vector<T>& values)
    {
        values.assign((to - from + 1) * array.perElement, T());
        const unsigned64 found = array.read(model, from, to, values.data(), values.size());
        if (found == 0 && array.zeroIsNone && from == to) {
            values.assign(array.perElement, T());
            return array.perElement;
        }
        return found;
    }

    /// Compares a piece. Where one of the models has values for a part of it only, it is halved, down to single
    /// elements, which have values or not.
    template <class T>
    void comparePiece(const Array<T>& array, unsigned64 from, unsigned64 to, unsigned64& differences)
    {
        std::vector<T> one, other;
        const unsigned64 inOne = readPiece(array, first, from, to, one),
                         inOther = readPiece(array, second, from, to, other);
        const unsigned64 expected = one.size();
        if (inOne == expected && inOther == expected)
            return compareValues(array.family, array.item, from, array.perElement, one, other, differences);
        const bool isOdd = (inOne != 0 && inOne != expected) || (inOther != 0 && inOther != expected);
        if (isOdd || from == to) {
            if (inOne != inOther && differences++ < options.differencesPerItem)
                differ(array.family, isOdd ? "number of values of " + array.item : array.item, from,
                       inOne == 0 ? ""
                       : isOdd    ? text(inOne)
                                  : "present",
                       inOther == 0 ? ""
                       : isOdd      ? text(inOther)
                                    : "present");
            return;
        }
        const unsigned64 middle = from + (to - from) / 2;
        comparePiece(array, from, middle, differences);
        comparePiece(array, middle + 1, to, differences);
    }

    std::vector<KelDifference>& _found;
};

void compareMesh(CompareRun& run);                              ///< CompareMesh.cpp: sizes, zones and neighbours
void compareArrays(CompareRun& run);                            ///< CompareArrays.cpp: of the mesh's elements
void compareElementData(CompareRun& run);                       ///< CompareElementData.cpp: interfaces, ids, sections
void compareSettings(CompareRun& run, KelDataClass dataClass);  ///< CompareSettings.cpp: settings, log
void compareLocations(CompareRun& run, KelDataClass dataClass); ///< CompareSettings.cpp
void compareSolution(CompareRun& run);                          ///< CompareSolution.cpp
void compareSets(CompareRun& run, KelDataClass dataClass);      ///< CompareSets.cpp
void compareSetData(CompareRun& run, const std::string& phase); ///< CompareSets.cpp: of the active phases
void compareParticleTracks(CompareRun& run, short firstPhase, short secondPhase,
                           const std::string& phase); ///< CompareSets.cpp

} // namespace meridyn
