#pragma once

#include "KelExport.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace meridyn {

/// Named regions over the mesh, tied to its zones: the topology that a reader or writer carries, in plain ints.
///
/// Regions   A part owns bodies (volumes), faces (surfaces), face uses (one side of a face as a body sees it) and
///           composites (named groups of other regions). A face has two slots for face uses, side 0 and side 1;
///           each holds at most one. A body may use a face of another part, a composite may hold regions of other
///           parts; a face use belongs to the part of its body.
/// Ids       Parts, bodies, faces and composites are counted from 1, each kind on its own. An id is stable while
///           its region lives and is not given again until the model is reset. The id of a face use is that of its
///           face: + for side 0, - for side 1. 0 and ids of nothing are answered with false.
/// Names     Are unique within their part and kind: creating or renaming onto a taken name fails. An empty name is
///           no name: any number of regions may bear none, and no look-up finds them. Parts may share a name;
///           findPart then gives the one of the lowest id. Any byte may stand in a name.
/// Zones     Each zone operation names a mesh map by a number, any int; maps are independent of each other.
///           Body and face zones are zone ids. A zone side z is zone |z|: its near side when z >= 1, its far side
///           when z < 1 (so -7 is the far side of zone 7). Sets hold no duplicates; zones are listed ascending,
///           zone sides by zone, the near side before the far one. Regions may share zones.
/// Failure   The bool result, and nothing else: a missing region, a refused name or member gives false, changes
///           nothing and leaves outputs as they were, except where an operation clears its output first.
/// Outputs   Lists are replaced, except that resolveLocation and resolveComposite add to what they are given.
///           Regions are listed by ascending id; face uses by face, side 0 before side 1.
/// Cost      Look-ups by id or by name are logarithmic; an operation on a list is n log n in its length at worst.
/// Threads   One thread at a time per object, for the const operations too.
///
/// Groups    1 creation and deletion   2 look-up by name   3 names and relations   4 zones   5 resolution   6 state
class KEL_API KelLocationModel {
public:
    /// An empty model: no parts.
    KelLocationModel();
    ~KelLocationModel();
    KelLocationModel(const KelLocationModel&) = delete;
    KelLocationModel& operator=(const KelLocationModel&) = delete;

    // ---- 1 creation and deletion -----------------------------------------------------

    /// Adds a part of a dimensionality, which is kept as it is given. A name that is taken is no failure; should
    /// the ids ever run out, nothing is created and `id` is left as it was.
    void createPart(int dimensionality, const std::string& name, int& id);

    /// @name Regions of a part
    /// False for an unknown part or when the part has a region of that kind and name. A composite starts empty.
    /// @{
    bool createBody(int partId, const std::string& name, int& id);
    bool createFace(int partId, const std::string& name, int& id);
    bool createComposite(int partId, const std::string& name, int& id);
    /// @}

    /// Gives the use of a face's side by a body, made without a name where there is none yet.
    ///
    /// @param side  0 or 1
    /// @param id    + faceId for side 0, - faceId for side 1
    ///
    /// False for an unknown body or face, another side, or a side that another body uses.
    bool createFaceUse(int bodyId, int faceId, int side, int& id);

    /// @name Deletion
    /// With a region go what cannot be without it, its zones and its places in composites: a part takes all that
    /// it owns and all uses of its faces along, a body and a face their face uses. Faces outlive the bodies that
    /// use them. False for an unknown region.
    /// @{
    bool deletePart(int partId);
    bool deleteBody(int bodyId);
    bool deleteFace(int faceId);
    bool deleteComposite(int compositeId);
    bool deleteFaceUse(int faceUseId);
    /// @}

    /// Deletes all parts with all that they own. Ids go on from where they were.
    void clearTopology();

    // ---- 2 look-up by name -----------------------------------------------------------

    /// @name Look-up by name
    /// Names are compared byte by byte. False for an unknown part or name; the empty name is always unknown.
    /// @{
    bool findPart(const std::string& name, int& id) const;
    bool findBody(int partId, const std::string& name, int& id) const;
    bool findFace(int partId, const std::string& name, int& id) const;
    bool findComposite(int partId, const std::string& name, int& id) const;
    bool findFaceUse(int partId, const std::string& name, int& id) const;
    /// @}

    // ---- 3 names and relations -------------------------------------------------------

    /// @name Names
    /// True whenever the region exists, also when its name is empty.
    /// @{
    bool getPartName(int partId, std::string& name) const;
    bool getBodyName(int bodyId, std::string& name) const;
    bool getFaceName(int faceId, std::string& name) const;
    bool getCompositeName(int compositeId, std::string& name) const;
    /// @}

    /// Unlike the other names, that of a face use which has none gives false.
    bool getFaceUseName(int faceUseId, std::string& name) const;

    /// What a face use may be called for the reader of a list, whether or not it has a name: "<body>:<face>", with
    /// ":0" or ":1" behind where the body uses both sides of the face.
    bool getFaceUseRelativeName(int faceUseId, std::string& name) const;

    /// @name Renaming
    /// False for an unknown region and for a name that another region of the part and kind bears (parts may share
    /// theirs). The name that a region already has is accepted, and so is the empty one.
    /// @{
    bool setPartName(int partId, const std::string& name);
    bool setBodyName(int bodyId, const std::string& name);
    bool setFaceName(int faceId, const std::string& name);
    bool setCompositeName(int compositeId, const std::string& name);
    bool setFaceUseName(int faceUseId, const std::string& name);
    /// @}

    /// Gives the ids of all parts.
    void getParts(std::vector<int>& ids) const;

    /// @name Regions that a part owns
    /// False for an unknown part.
    /// @{
    bool getPartBodies(int partId, std::vector<int>& ids) const;
    bool getPartFaces(int partId, std::vector<int>& ids) const;
    bool getPartComposites(int partId, std::vector<int>& ids) const;
    bool getPartFaceUses(int partId, std::vector<int>& ids) const;
    /// @}

    /// Gives the face uses of a body.
    bool getBodyBoundary(int bodyId, std::vector<int>& faceUseIds) const;

    /// Gives the number that createPart was called with.
    bool getPartDimensionality(int partId, int& dimensionality) const;

    /// @name Owning part
    /// @{
    bool getBodyPart(int bodyId, int& partId) const;
    bool getFacePart(int faceId, int& partId) const;
    bool getFaceUsePart(int faceUseId, int& partId) const;
    /// @}

    /// Gives the face-use ids of a face's two sides, 0 for a side without one.
    bool getFaceSides(int faceId, int& side0, int& side1) const;

    /// Gives what a face use consists of; `side` is 0 or 1.
    bool getFaceUseDefinition(int faceUseId, int& bodyId, int& faceId, int& side) const;

    // ---- 4 zones ---------------------------------------------------------------------

    /// @name Cell zones of bodies, face zones of faces
    /// Setting replaces what was there. Getting clears `zones` first, also when the region is unknown, and gives
    /// true for every region that exists.
    /// @{
    bool setBodyZones(int bodyId, int mapId, const std::vector<int>& zones);
    bool getBodyZones(int bodyId, int mapId, std::vector<int>& zones) const;
    bool setFaceZones(int faceId, int mapId, const std::vector<int>& zones);
    bool getFaceZones(int faceId, int mapId, std::vector<int>& zones) const;
    /// @}

    /// @name Zone sides of face uses
    /// As the zones above. 0 is the far side of zone 0, the smallest int the far side of zone 2147483648.
    /// @{
    bool setFaceUseZoneSides(int faceUseId, int mapId, const std::vector<int>& sides);
    bool getFaceUseZoneSides(int faceUseId, int mapId, std::vector<int>& sides) const;
    /// @}

    // ---- 5 resolution ----------------------------------------------------------------

    /// Adds the zones behind a location: the cell zones of the bodies it covers and the zone sides of the face
    /// uses it covers. Both vectors end up ascending and free of repeats, with what they held before.
    ///
    /// @param location  comma-separated entries: `name` or `part/name`, `*` and `?` as wildcards, double quotes
    ///                  around what is meant literally. A part stands for its bodies and their face uses, a body for
    ///                  itself and its face uses, a face for its face uses, a composite for its members
    /// @param ignored   without effect
    ///
    /// False, with both vectors exactly as they were, when the location covers no body and no face use. Otherwise
    /// whether one of the two holds anything in the end: a body without zones under the map gives false. Entries
    /// that name nothing are passed over.
    bool resolveLocation(const std::string& location, int ignored, int mapId, std::vector<int>& cellZones,
                         std::vector<int>& faceZoneSides) const;

    /// As above for several locations. Blank ones are left out.
    bool resolveLocation(const std::vector<std::string>& locations, int ignored, int mapId, std::vector<int>& cellZones,
                         std::vector<int>& faceZoneSides) const;

    /// Tells what each entry of a location names, for messages and tools.
    ///
    /// @param entries  one pair per entry that is not blank, in the order of the text: the entry as it was written
    ///                 and what it names, as "<kind> <name>" with a kind of "part", "body", "face", "face use" or
    ///                 "composite" and a name that is itself a location ("body fluid/core"). An entry that names
    ///                 nothing, or breaks the grammar, has an empty list
    void explainLocation(const std::string& location,
                         std::vector<std::pair<std::string, std::vector<std::string>>>& entries) const;

    /// Adds the bodies, faces and face uses that a composite stands for, those of composites in it included, each
    /// once. The outputs are not cleared. False for an unknown composite.
    bool resolveComposite(int compositeId, std::vector<int>& bodies, std::vector<int>& faces,
                          std::vector<int>& faceUses) const;

    /// Gives the members of a composite as they were set. False for an unknown composite, without clearing.
    bool getCompositeComponents(int compositeId, std::vector<int>& bodies, std::vector<int>& faces,
                                std::vector<int>& faceUses, std::vector<int>& composites) const;

    /// Replaces the members of a composite. False, and the composite as it was, when the composite or a member is
    /// unknown, or when the composite would come to hold itself, directly or through others.
    bool setCompositeComponents(int compositeId, const std::vector<int>& bodies, const std::vector<int>& faces,
                                const std::vector<int>& faceUses, const std::vector<int>& composites);

    // ---- 6 state ---------------------------------------------------------------------

    /// The whole model as a text, for files: printable ASCII and line feeds. Equal models give equal texts.
    std::string state() const;

    /// Rebuilds the model from such a text, ids and the point from which they go on included. A text that is empty,
    /// cut, damaged or of another version gives false and leaves the model as it was.
    bool reset(const std::string& state);

private:
    struct Record;
    std::unique_ptr<Record> _record;
};

} // namespace meridyn
