#include "DescriptionWalk.h"

#include "FileChannel.h"

#include <algorithm>
#include <set>

namespace meridyn::hdf5 {

namespace {

herr_t passBy(hid_t, const char*, const H5A_info_t*, void*)
{
    return 0;
}

class DescriptionWalk {
public:
    explicit DescriptionWalk(Hdf5File& file) : _file(file) {}

    // Without recursion: a file may be as deep as it likes.
    void run()
    {
        visit(_file.id(), "/");
        while (!_groups.empty() && _file.channel().hasRoomForDescriptions()) {
            const Handle group = std::move(_groups.back());
            _groups.pop_back();
            try {
                for (const std::string& name : linkNames(group.get()))
                    if (_file.channel().hasRoomForDescriptions())
                        visit(group.get(), name);
            } catch (const std::exception&) {
                continue; // damaged: see readDescriptions
            }
        }
    }

private:
    void visit(hid_t parent, const std::string& name)
    {
        const unsigned fields = H5O_INFO_BASIC | H5O_INFO_NUM_ATTRS | H5O_INFO_HDR;
        H5O_info_t info{};
        if (H5Oget_info_by_name2(parent, name.c_str(), &info, fields, H5P_DEFAULT) < 0 ||
            !_known.insert(info.addr).second)
            return;
        constexpr std::uint64_t filterMessage = 1ULL << 0x0b; // in headers of arrays in chunks
        const bool isChunked = info.type == H5O_TYPE_DATASET && (info.hdr.mesg.present & filterMessage) != 0;
        if (info.type != H5O_TYPE_GROUP && info.num_attrs == 0 && !isChunked)
            return;
        Handle object(H5Oopen(parent, name.c_str(), H5P_DEFAULT));
        if (!object)
            return;
        hsize_t index = 0;
        if (info.num_attrs > 0)
            H5Aiterate2(object.get(), H5_INDEX_NAME, H5_ITER_NATIVE, &index, passBy, nullptr);
        if (isChunked)
            visitChunks(object.get());
        if (info.type == H5O_TYPE_GROUP)
            _groups.push_back(std::move(object));
    }

    // The index of chunks that never change their number is read in pages of 1,024 entries, whoever of them is asked
    // for; arrays of ours have no other one.
    void visitChunks(hid_t dataSet)
    {
        constexpr hsize_t mostPages = 100000;
        constexpr hsize_t pageEntries = 1024;
        const Handle space(H5Dget_space(dataSet));
        const Handle properties(H5Dget_create_plist(dataSet));
        hsize_t extent[2] = {0, 1};
        hsize_t chunk[2] = {1, 1};
        const int rank = space ? H5Sget_simple_extent_ndims(space.get()) : 0;
        if (rank < 1 || rank > 2 || H5Sget_simple_extent_dims(space.get(), extent, nullptr) < 0 || !properties ||
            H5Pget_chunk(properties.get(), rank, chunk) != rank || chunk[0] == 0 || chunk[1] < extent[1])
            return;
        const hsize_t step = std::max<hsize_t>(1, std::min(extent[0], pageEntries * chunk[0]));
        hsize_t size = 0;
        hsize_t pages = 0;
        for (hsize_t row = 0; row < extent[0] && pages < mostPages; row += step, ++pages) {
            const hsize_t offset[2] = {row / chunk[0] * chunk[0], 0};
            if (H5Dget_chunk_storage_size(dataSet, offset, &size) < 0)
                return;
        }
    }

    Hdf5File& _file;
    std::set<haddr_t> _known;
    std::vector<Handle> _groups; // whose links are still to be looked at
};

} // namespace

void readDescriptions(Hdf5File& file)
{
    const QuietErrors quiet;
    DescriptionWalk(file).run();
}

} // namespace meridyn::hdf5
