#pragma once

#include "KelCompare.h"
#include "KelFormat.h"
#include "KelProvider.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

namespace meridyn {

/// What the parts of one comparison share: both models, the tolerances and the differences found.
class CompareRun {
public:
    CompareRun(KelProvider& one, KelProvider& other, const KelCompareOptions& chosen, std::vector<KelDifference>& found)
        : first(one), second(other), options(chosen), _found(found)
    {}

    struct Zone {
        int id;
        unsigned64 first;
        unsigned64 last;
        std::string label;
    };

    /// Notes a difference.
    void differ(KelFormatFamily family, const std::string& item, unsigned64 id, const std::string& one,
                const std::string& other)
    {
        _found.push_back({formatFamilyName(family), item, id, one, other});
    }

    /// Notes two texts if they differ; whether they are equal.
    bool same(KelFormatFamily family, const std::string& item, const std::string& one, const std::string& other)
    {
        if (one != other)
            differ(family, item, 0, one, other);
        return one == other;
    }

    /// Notes the names that only one of two lists has, and gives those that both have, in the order of the first.
    std::vector<std::string> common(KelFormatFamily family, const std::string& what,
                                    const std::vector<std::string>& one, const std::vector<std::string>& other);

    /// Zones of a category that both have with the same elements.
    std::vector<Zone> zones(KelZoneCategory category);

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

    /// Reads values of an element range from a model; gives how many there were.
    template <class T>
    using Reader =
        std::function<unsigned64(KelProvider&, unsigned64 firstId, unsigned64 lastId, T* values, unsigned64 capacity)>;

    /// Compares an array with a fixed number of values per element in one zone.
    template <class T>
    void compareArray(KelFormatFamily family, const std::string& item, const Zone& zone, unsigned64 perElement,
                      const Reader<T>& read)
    {
        std::vector<T> one(perElement), other(perElement);
        const bool inOne = read(first, zone.first, zone.first, one.data(), perElement) == perElement;
        const bool inOther = read(second, zone.first, zone.first, other.data(), perElement) == perElement;
        if (inOne != inOther)
            differ(family, item, 0, inOne ? "present" : "", inOther ? "present" : "");
        if (!inOne || !inOther)
            return;
        unsigned64 differences = 0;
        forChunks(zone, perElement, [&](unsigned64 from, unsigned64 to) {
            const unsigned64 count = (to - from + 1) * perElement;
            one.resize(count);
            other.resize(count);
            one.resize(read(first, from, to, one.data(), count));
            other.resize(read(second, from, to, other.data(), count));
            if (one.size() != other.size() && differences++ < options.differencesPerItem)
                differ(family, item + ", number of values", from, text(one.size()), text(other.size()));
            compareValues(family, item, from, perElement, one, other, differences);
        });
        noteRest(family, item, differences);
    }

    /// Calls `compare(first, last)` for pieces of a zone that need a bounded buffer.
    template <class Compare>
    void forChunks(const Zone& zone, unsigned64 perElement, const Compare& compare)
    {
        constexpr unsigned64 chunk = 262144;
        const unsigned64 step = std::max<unsigned64>(1, chunk / std::max<unsigned64>(1, perElement));
        const unsigned64 total = zone.last - zone.first + 1;
        for (unsigned64 done = 0; done < total; done += step)
            compare(zone.first + done, zone.first + std::min(total, done + step) - 1);
    }

    /// Says how many differences of an item were not reported.
    void noteRest(KelFormatFamily family, const std::string& item, unsigned64 differences)
    {
        if (differences > options.differencesPerItem)
            differ(family, item + ", in all", 0, "", text(differences) + " differences");
    }

    template <class T>
    static std::string text(T value)
    {
        if constexpr (std::is_floating_point_v<T>)
            return textOfReal(value);
        else
            return std::to_string(value);
    }

    KelProvider& first;
    KelProvider& second;
    const KelCompareOptions& options;

private:
    static std::string textOfReal(double value);

    std::vector<KelDifference>& _found;
};

void compareZones(CompareRun& run);
void compareTopology(CompareRun& run);
void compareSettings(CompareRun& run, KelDataClass dataClass);
void compareLocations(CompareRun& run);
void compareSolution(CompareRun& run);
void compareSets(CompareRun& run, KelDataClass dataClass);
void compareSetData(CompareRun& run, const std::string& phase);
void compareParticleTracks(CompareRun& run, short firstPhase, short secondPhase, const std::string& phase);

} // namespace meridyn
