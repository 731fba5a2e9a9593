#include "formats/hdf5/file/FileChannel.h"
#include "formats/hdf5/file/FormatError.h"
#include "KelFormat.h"
#include "KelHdf5Consumer.h"
#include "KelHdf5Provider.h"

#include <cstring>
#include <filesystem>
#include <fstream>

namespace meridyn {

namespace {

const char caseSuffix[] = ".case.kel";
const char dataSuffix[] = ".data.kel";

bool takeSuffix(std::string& path, const std::string& suffix)
{
    if (path.size() <= suffix.size() || path.compare(path.size() - suffix.size(), suffix.size(), suffix) != 0)
        return false;
    path.resize(path.size() - suffix.size());
    return true;
}

bool startsAsHdf5(const std::string& path)
{
    char start[8] = {};
    std::ifstream file(path, std::ios::binary);
    return file.read(start, sizeof start) && std::memcmp(start, "\211HDF\r\n\032\n", sizeof start) == 0;
}

bool exists(const std::string& path)
{
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored);
}

KelFormatFiles filesOf(const std::string& path, bool forWriting)
{
    std::string stem = path;
    if (!takeSuffix(stem, caseSuffix))
        takeSuffix(stem, dataSuffix);
    KelFormatFiles files{stem + caseSuffix, stem + dataSuffix};
    if (forWriting)
        return files;
    if (!exists(files.caseFile))
        files.caseFile.clear();
    if (!exists(files.dataFile))
        files.dataFile.clear();
    return files;
}

// Whether nobody can look into a file now, because another program has it for itself.
bool isLocked(const std::string& path)
{
    try {
        hdf5::LockSettings once;
        once.timeout = 0;
        const hdf5::FileChannel channel(path, hdf5::FileChannel::Mode::Read, once);
        return false;
    } catch (const hdf5::FormatError&) {
        return true;
    }
}

bool hasSuffix(std::string path)
{
    return takeSuffix(path, caseSuffix) || takeSuffix(path, dataSuffix);
}

// A file of ours opens as case or as data; a reader of its own keeps what it has to say about others to itself. A
// locked one is ours by its name: who reads it then waits, and says for whom.
bool opens(const std::string& path)
{
    if (!startsAsHdf5(path))
        return false;
    if (hasSuffix(path) && isLocked(path))
        return true;
    KelHdf5Provider reader;
    return reader.startReading(path, KEL_CASE) || reader.startReading(path, KEL_DATA);
}

// A file of another kind beside name.case.kel does not hide the model "name"; a file name of ours stands for no other.
bool probe(const std::string& path)
{
    if (exists(path) && opens(path))
        return true;
    std::string stem = path;
    if (takeSuffix(stem, caseSuffix) || takeSuffix(stem, dataSuffix))
        return false;
    const KelFormatFiles files = filesOf(path, false);
    return opens(files.caseFile) || opens(files.dataFile);
}

} // namespace

KelFormat hdf5Format()
{
    KelFormat format;
    format.name = "hdf5";
    format.description = "Case and data files of the Kel family on HDF5";
    format.suffixes = {caseSuffix, dataSuffix};
    format.reads = allFormatFamilies;
    format.writes = allFormatFamilies;
    format.probe = probe;
    format.files = filesOf;
    format.makeReader = [] { return std::make_unique<KelHdf5Provider>(); };
    format.makeWriter = [] { return std::make_unique<KelHdf5Consumer>(); };
    return format;
}

} // namespace meridyn
