#include "Hdf5File.h"

#include "CreationOrder.h"
#include "DescriptionWalk.h"
#include "FileChannel.h"
#include "FileDriver.h"
#include "FormatError.h"
#include "Journal.h"
#include "OutputTarget.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace meridyn::hdf5 {

namespace {

// Nothing of an application's own is called this way, and two writers of one file meet at it.
std::string temporaryFor(const std::string& path)
{
    return path + ".tmp";
}

Handle creationProperties()
{
    Handle properties = checkedId(H5Pcreate(H5P_FILE_CREATE), "file creation properties");
    checkedCall(H5Pset_link_creation_order(properties.get(), H5P_CRT_ORDER_TRACKED | H5P_CRT_ORDER_INDEXED),
                "link order");
    checkedCall(H5Pset_attr_creation_order(properties.get(), H5P_CRT_ORDER_TRACKED | H5P_CRT_ORDER_INDEXED),
                "attribute order");
    return properties;
}

Handle groupProperties()
{
    Handle properties = checkedId(H5Pcreate(H5P_GROUP_CREATE), "group properties");
    constexpr unsigned order = H5P_CRT_ORDER_TRACKED | H5P_CRT_ORDER_INDEXED;
    checkedCall(H5Pset_link_creation_order(properties.get(), order), "link order");
    checkedCall(H5Pset_attr_creation_order(properties.get(), order), "attribute order");
    return properties;
}

herr_t addName(hid_t, const char* name, const H5L_info_t* info, void* names)
{
    return withoutThrowing([&] {
        if (info->type == H5L_TYPE_HARD && std::strchr(name, '/') == nullptr) // none of ours, and a path for HDF5
            static_cast<std::vector<NumberedName>*>(names)->push_back({info->corder_valid ? info->corder : 0, name});
    });
}

bool isHardLink(hid_t group, const std::string& path)
{
    H5L_info_t info{};
    return H5Lget_info(group, path.c_str(), &info, H5P_DEFAULT) >= 0 && info.type == H5L_TYPE_HARD;
}

} // namespace

std::unique_ptr<Hdf5File> Hdf5File::openForReading(const std::string& path, const LockSettings& locks)
{
    const QuietErrors quiet;
    const std::string linked = linkedFile(path);
    std::unique_ptr<Hdf5File> file(new Hdf5File(linked.empty() ? path : linked));
    file->_channel = std::make_shared<FileChannel>(file->_path, FileChannel::Mode::Read, locks);
    file->_isOpen = true;
    const Handle access = accessThrough(file->_channel);
    file->_file = checkedId(H5Fopen(path.c_str(), H5F_ACC_RDONLY, access.get()), "cannot be opened as HDF5 file");
    readDescriptions(*file);
    file->_channel->endOpening();
    return file;
}

std::unique_ptr<Hdf5File> Hdf5File::create(const std::string& path, const LockSettings& locks)
{
    const QuietErrors quiet;
    if (const std::string problem = outputProblem(path); !problem.empty())
        throw FormatError(problem);
    std::unique_ptr<Hdf5File> file(new Hdf5File(linkedFile(path)));
    if (::access(file->_path.c_str(), F_OK) == 0 && ::access(file->_path.c_str(), W_OK) != 0)
        throw FormatError("exists and must not be replaced (" + systemWords("access") + ")");
    const std::string temporaryPath = temporaryFor(file->_path);
    file->_channel = std::make_shared<FileChannel>(temporaryPath, FileChannel::Mode::Create, locks);
    file->_temporaryPath = temporaryPath; // removed from now on: not before, it may be another writer's
    file->_isOpen = true;
    const Handle access = accessThrough(file->_channel);
    file->_file = checkedId(
        H5Fcreate(file->_temporaryPath.c_str(), H5F_ACC_TRUNC, creationProperties().get(), access.get()), "create");
    return file;
}

std::unique_ptr<Hdf5File> Hdf5File::openForAppending(const std::string& path, const LockSettings& locks)
{
    const QuietErrors quiet;
    if (const std::string problem = outputProblem(path); !problem.empty())
        throw FormatError(problem);
    std::unique_ptr<Hdf5File> file(new Hdf5File(linkedFile(path)));
    file->_channel = std::make_shared<FileChannel>(file->_path, FileChannel::Mode::Append, locks);
    file->_isAppending = true;
    file->_isOpen = true;
    const Handle access = accessThrough(file->_channel);
    file->_file = checkedId(H5Fopen(path.c_str(), H5F_ACC_RDWR, access.get()), "cannot be opened as HDF5 file");
    file->_channel->keepEnd();
    return file;
}

Hdf5File::Hdf5File(std::string path) : _path(std::move(path)), _buffer(256 * 1024)
{}

Hdf5File::~Hdf5File()
{
    closeForGood();
}

// Closing writes; a file that is not kept must not fail at that, or HDF5 keeps it for ever.
void Hdf5File::closeForGood() noexcept
{
    if (!_isOpen)
        return;
    _isOpen = false;
    const QuietErrors quiet;
    _channel->discard();
    _pendingLinks.clear();
    _removed.clear();
    if (_file)
        H5Fclose(_file.release());
    if (!_temporaryPath.empty()) // with the lock still in hand: the next file of the name is another writer's
        ::unlink(_temporaryPath.c_str());
    _channel->close();
}

// At most once a millisecond: readers of single elements come here with each of them.
bool Hdf5File::noticesReplacement()
{
    const auto now = std::chrono::steady_clock::now();
    if (_isKnownToBeReplaced || now - _lastLook < std::chrono::milliseconds(1))
        return false;
    _lastLook = now;
    _isKnownToBeReplaced = _channel->isReplaced();
    return _isKnownToBeReplaced;
}

void Hdf5File::linkAtCommit(hid_t object, hid_t group, const std::string& name)
{
    H5Iinc_ref(object);
    H5Iinc_ref(group);
    _pendingLinks.push_back({Handle(object), Handle(group), name});
}

void Hdf5File::removeAtCommit(hid_t group, const std::string& name)
{
    const QuietErrors quiet;
    _removed.push_back(checkedId(H5Oopen(group, name.c_str(), H5P_DEFAULT), pathOf(group) + "/" + name));
    removeLink(group, name);
}

void Hdf5File::linkAll()
{
    for (const PendingLink& pending : _pendingLinks) {
        if (hasLink(pending.group.get(), pending.name))
            removeLink(pending.group.get(), pending.name);
        linkNew(pending.object, pending.group.get(), pending.name);
    }
    _pendingLinks.clear();
    _removed.clear();
}

void Hdf5File::commit()
{
    const QuietErrors quiet;
    try {
        linkAll();
        checkedCall(H5Fflush(_file.get(), H5F_SCOPE_GLOBAL), "flush");
        const hid_t id = _file.release(); // HDF5 must not be asked twice to close a file, even if it cannot
        checkedCall(H5Fclose(id), "close");
        _channel->commit();
        if (const std::string problem = _temporaryPath.empty() ? "" : outputProblem(_path); !problem.empty())
            throw FormatError(problem); // what has come meanwhile
        if (!_temporaryPath.empty() && std::rename(_temporaryPath.c_str(), _path.c_str()) != 0)
            throw FormatError(systemWords("rename"));
    } catch (...) {
        closeForGood();
        throw;
    }
    _isOpen = false;
    if (!_temporaryPath.empty()) {
        syncFolder(folderOf(_path));
        Journal::remove(_path); // of the file that had the name before
    }
    _channel->close();
}

void linkNew(const Handle& object, hid_t group, const std::string& name)
{
    const QuietErrors quiet;
    checkedCall(H5Olink(object.get(), group, name.c_str(), H5P_DEFAULT, H5P_DEFAULT), pathOf(group) + "/" + name);
}

Handle replaceGroup(Hdf5File& file, hid_t group, const std::string& name)
{
    if (!hasLink(group, name))
        return createGroup(group, name);
    const QuietErrors quiet;
    Handle made = checkedId(H5Gcreate_anon(group, groupProperties().get(), H5P_DEFAULT), pathOf(group) + "/" + name);
    file.linkAtCommit(made.get(), group, name);
    return made;
}

bool hasLink(hid_t group, const std::string& name)
{
    const QuietErrors quiet;
    for (std::size_t slash = name.find('/'); slash != std::string::npos; slash = name.find('/', slash + 1))
        if (!isHardLink(group, name.substr(0, slash)))
            return false;
    return isHardLink(group, name);
}

Handle openGroup(hid_t group, const std::string& name)
{
    const QuietErrors quiet;
    if (!hasLink(group, name))
        throw FormatError(pathOf(group) + "/" + name + " is missing");
    return checkedId(H5Gopen2(group, name.c_str(), H5P_DEFAULT), pathOf(group) + "/" + name);
}

Handle findGroup(hid_t group, const std::vector<std::string>& path)
{
    Handle found;
    for (const std::string& name : path) {
        if (!hasLink(group, name))
            return {};
        found = openGroup(group, name);
        group = found.get();
    }
    return found;
}

Handle createGroup(hid_t group, const std::string& name)
{
    const QuietErrors quiet;
    const std::string label = pathOf(group) + "/" + name;
    linkNew(checkedId(H5Gcreate_anon(group, groupProperties().get(), H5P_DEFAULT), label), group, name);
    return openGroup(group, name); // as an object that knows its path
}

Handle openOrCreateGroup(hid_t group, const std::string& name)
{
    return hasLink(group, name) ? openGroup(group, name) : createGroup(group, name);
}

std::vector<std::string> linkNames(hid_t group)
{
    const QuietErrors quiet;
    std::vector<NumberedName> links;
    hsize_t index = 0;
    checkedCall(H5Literate(group, H5_INDEX_NAME, H5_ITER_NATIVE, &index, addName, &links), pathOf(group));
    return inOrderOfCreation(std::move(links));
}

void removeLink(hid_t group, const std::string& name)
{
    const QuietErrors quiet;
    checkedCall(H5Ldelete(group, name.c_str(), H5P_DEFAULT), pathOf(group) + "/" + name);
}

std::string encodeName(const std::string& name)
{
    if (name.empty())
        return "%";
    static const char digits[] = "0123456789ABCDEF";
    const bool isDots = name == "." || name == "..";
    std::string encoded;
    for (const char c : name) {
        if (c != '%' && c != '/' && c != '\0' && !isDots) {
            encoded += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        encoded += {'%', digits[byte >> 4], digits[byte & 15]};
    }
    return encoded;
}

std::string encodeAttributeName(const std::string& name)
{
    std::string encoded = encodeName(name);
    return encoded.rfind("kel_", 0) == 0 ? "%6B" + encoded.substr(1) : encoded;
}

std::string decodeName(const std::string& name)
{
    const auto digit = [](char c) { return c >= '0' && c <= '9' ? c - '0' : c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1; };
    if (name == "%")
        return {};
    std::string decoded;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] == '%' && i + 2 < name.size() && digit(name[i + 1]) >= 0 && digit(name[i + 2]) >= 0) {
            decoded += static_cast<char>(digit(name[i + 1]) * 16 + digit(name[i + 2]));
            i += 2;
        } else {
            decoded += name[i];
        }
    }
    return decoded;
}

std::vector<std::string> decodedNames(const Handle& group)
{
    std::vector<std::string> names = group ? linkNames(group.get()) : std::vector<std::string>();
    std::transform(names.begin(), names.end(), names.begin(), decodeName);
    return names;
}

std::string pathOf(hid_t object)
{
    char name[512] = {};
    const QuietErrors quiet;
    if (H5Iget_name(object, name, sizeof name) < 0 || std::string(name) == "/")
        return {};
    return name;
}

} // namespace meridyn::hdf5
