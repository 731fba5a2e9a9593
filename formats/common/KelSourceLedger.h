#pragma once

#include "KelArrays.h"
#include "KelExport.h"
#include "KelFormatFamily.h"
#include "KelMeshKey.h"
#include "KelTypes.h"

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace meridyn {

/// Why a reader did not hand over something that its source holds.
enum class KelNotRead : int {
    NotOpened,   ///< a file, folder or group that lies in the source and that the reader never looked into
    NotKnown,    ///< the reader looked, and does not know what it is: an unknown key, an entry of no known name
    NoPlace,     ///< the reader knows what it is, but the frames have no operation for it
    NotReadable, ///< damaged, or in a form that the reader does not understand
    Outranked,   ///< another entry of the same name was handed over in its place
    Adjusted     ///< handed over, but not as it stands in the source: numbers that were renumbered, a unit left out
};

/// Name of a reason as people read it ("never opened"); empty for a number outside the list.
KEL_API std::string notReadName(KelNotRead reason);

/// One thing that a source holds and that its reader did not hand over, or not as it stands there.
struct KelSourceItem {
    KelFormatFamily family = KEL_FAMILY_COUNT; ///< what it would have been; KEL_FAMILY_COUNT when that is not known
    std::string place;                         ///< where: a path in the source, or "file: path within the file"
    KelNotRead reason = KelNotRead::NotOpened; ///< why
    std::string text; ///< what was expected and what was found, or what is lost by it; may be empty

    friend bool operator==(const KelSourceItem& a, const KelSourceItem& b)
    {
        return a.family == b.family && a.place == b.place && a.reason == b.reason && a.text == b.text;
    }
};

/// Ids of elements, the first and the last included.
struct KelIdRange {
    unsigned64 first; ///< from 1
    unsigned64 last;  ///< not below the first
};

/// What a reader worked out itself because its source does not say it. Such a value is no part of the model: a copy
/// need not have it, and a comparison takes it for "not given".
struct KelDerived {
    bool sizes[5] = {};                       ///< in the order of KelMeshSizeType
    bool adjacency = false;                   ///< the neighbours of all zones
    std::set<std::pair<int, int>> neighbours; ///< where only some were: zone and side, which is 0 for a cell zone
    std::set<KelArray> arrays;                ///< of the mesh; of lists the array of the ids
};

/// What a reader says about its source beside the frames: what it did not hand over, what it added, and what there is
/// that the frames have no question for.
///
/// A reader implements it by also deriving from it; whoever reads finds it with dynamic_cast. The readers of our
/// formats do, see KelFormatProvider. Without one nobody can tell whether a model was read completely, and a loss
/// report says so.
///
/// Items     every file that is never opened, every key that is never read, every value that is left out, and every
///           warning about the source. Not: what a caller asked wrongly.
/// When      complete once the data class was opened and all that it has was read; a reader that finds out only while
///           it reads adds to it then. Opening the class anew starts it anew.
class KEL_API KelSourceLedger {
public:
    virtual ~KelSourceLedger();

    /// What was not handed over of a data class, in the order in which it was found, each item once.
    virtual std::vector<KelSourceItem> notHandedOver(KelDataClass dataClass) const = 0;

    /// What was worked out and not given by the source, of the current mesh. Nothing here.
    virtual KelDerived derived() const;

    /// The type in which the source holds coordinates, or values of the variable that was started: KEL_PLAIN_FLOAT or
    /// KEL_PLAIN_DOUBLE. -1, as here, when it cannot be told; values are then read and copied as double.
    virtual KelPlainDataType storedType(KelArray array) const;

    /// The meshes of the open file of a data class, in its order. None, as here, when the reader cannot tell: the lists
    /// of the frame are asked then, which leave open which target goes with which partition.
    virtual std::optional<std::vector<KelMeshKey>> meshesOf(KelDataClass dataClass) const;

    /// The meshes for which a phase has particle tracks at the chosen time level, also those that the file does not
    /// have, and the mesh id -1. None, as here, when the reader cannot tell: the meshes of the file are tried then.
    virtual std::optional<std::vector<KelMeshKey>> meshesWithTracks(short phaseId) const;

    /// The state of the location model as the open file of a data class holds it, empty when it holds none. None, as
    /// here, when the reader cannot tell: its one location model then stands for the case.
    virtual std::optional<std::string> locationState(KelDataClass dataClass) const;

    /// Whether the data have anything at no time level although they have time levels. False here.
    virtual bool hasDataAtNoLevel() const;
    /// Chooses what lies at no time level, until it is called with false: then the chosen time level counts again.
    /// Does nothing here.
    virtual void chooseNoLevel(bool on);

    /// The elements among `firstId` to `lastId` that have values of an array (lists: a count), ascending and without
    /// overlap; of values of variables and case sections those of what was started. None, as here, when the reader
    /// cannot tell without reading: whoever asks then finds out by reading, down to single elements.
    virtual std::optional<std::vector<KelIdRange>> elementsWithValues(KelArray array, unsigned64 firstId,
                                                                      unsigned64 lastId) const;
};

} // namespace meridyn
