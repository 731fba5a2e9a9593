#include "CaseLedger.h"

#include "ByteSource.h"
#include "CaseFiles.h"
#include "CaseFolder.h"
#include "CaseSettings.h"

#include <algorithm>
#include <set>
#include <string>

namespace meridyn::polymesh {

namespace {

using Pieces = std::vector<std::string>;

/// Goes through the files of a case, and names those that nothing was made of: alone, or by the folder that they are
/// in.
class Ledger {
public:
    Ledger(const CaseFolder& folder, const CaseSettings& settings, KelDataClass dataClass)
        : _folder(folder), _settings(settings), _dataClass(dataClass), _items(settings.leftOut(dataClass))
    {
        for (std::size_t mesh = 0; mesh < folder.meshes().size(); ++mesh)
            for (const std::string& file : folder.filesOfMesh(mesh))
                _meshFiles.insert(file.substr(folder.path().size() + 1));
    }

    std::vector<KelSourceItem> items()
    {
        const CaseFiles all = CaseFiles::below(_folder.path());
        for (const std::string& file : all.files)
            look(file);
        for (const std::string& folder : all.closed)
            if (isOfOurs(piecesOf(folder)))
                name(KEL_FAMILY_COUNT, folder, "a folder that cannot be entered, or leads back to itself");
        for (const std::string& file : all.outranked)
            if (isOfOurs(piecesOf(file)))
                _items.push_back(
                    {KEL_FAMILY_COUNT, file, KelNotRead::Outranked, "the same without '.gz' lies beside it"});
        return std::move(_items);
    }

private:
    bool isTime(const std::string& name) const
    {
        const auto& times = _folder.times();
        return std::any_of(times.begin(), times.end(), [&](const auto& time) { return time.name == name; });
    }

    /// Meshes belong to the case, also those in the folder of a time.
    bool isOfOurs(const Pieces& pieces) const
    {
        const bool isOfData = isTime(pieces.front()) && (pieces.size() < 2 || pieces[1] != "polyMesh");
        return isOfData == (_dataClass == KEL_DATA);
    }

    void look(const std::string& file)
    {
        const Pieces pieces = piecesOf(file);
        if (!isOfOurs(pieces) || _meshFiles.count(file) != 0)
            return;
        const std::string& top = pieces.front();
        const auto part = std::find(pieces.begin(), pieces.end(), "polyMesh");
        if (part != pieces.end() && (isTime(top) || top == "constant" || top == "system"))
            lookAtMesh(file, pieces, static_cast<std::size_t>(part - pieces.begin()));
        else if (isTime(top) && pieces.size() > 2 && pieces[1] == "lagrangian")
            nameFolder(KEL_FAMILY_SET_DATA, pieces, pieces.size() > 3 ? 3 : 2, "particles");
        else if (isTime(top) && pieces.size() > 2 && pieces[1] != "uniform")
            nameFolder(KEL_FAMILY_VARIABLES, pieces, 2, "fields of a region, or files of another program");
        else if (top.rfind("processor", 0) == 0)
            nameFolder(KEL_FAMILY_MESHES, pieces, 1, "a part of the case for one of several processes");
        else if (!isTime(top) && top != "constant" && top != "system")
            nameFolder(KEL_FAMILY_COUNT, pieces, 1, "not known as a part of a case");
    }

    void lookAtMesh(const std::string& file, const Pieces& pieces, std::size_t part)
    {
        if (part > 1)
            nameFolder(KEL_FAMILY_MESHES, pieces, part + 1, "the mesh of a region");
        else
            name(KEL_FAMILY_COUNT, file, "a file of a mesh that is not known, or that no mesh needs");
    }

    /// Names the first pieces of a path, once, in the place of all that lies in that folder.
    void nameFolder(KelFormatFamily family, const Pieces& pieces, std::size_t count, const std::string& what)
    {
        std::string place;
        for (std::size_t n = 0; n < std::min(count, pieces.size()); ++n)
            place += (n > 0 ? "/" : "") + pieces[n];
        if (_named.insert(place).second)
            name(family, place, what);
    }

    void name(KelFormatFamily family, const std::string& place, const std::string& what)
    {
        _items.push_back({family, place, KelNotRead::NotOpened, what});
    }

    const CaseFolder& _folder;
    const CaseSettings& _settings;
    KelDataClass _dataClass;
    std::vector<KelSourceItem> _items;
    std::set<std::string> _meshFiles, _named;
};

} // namespace

std::vector<KelSourceItem> ledgerOf(const CaseFolder& folder, const CaseSettings& settings, KelDataClass dataClass)
{
    return Ledger(folder, settings, dataClass).items();
}

} // namespace meridyn::polymesh
