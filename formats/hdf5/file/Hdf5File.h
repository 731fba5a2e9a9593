#pragma once

#include "FileLock.h"
#include "Hdf5Handle.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace meridyn::hdf5 {

class FileChannel;

/// What the layers above keep with an open file, such as the buffers that its arrays share. It goes with the file.
struct FileAttachment {
    virtual ~FileAttachment() = default;
};

/// An open HDF5 file: for reading, for writing anew, for adding to it.
///
/// A file that is read stays what it was at opening, see FileChannel. A new file is written beside its final name
/// ("<name>.tmp") and gets the name at commit; until then a file that already bears it stays what it is. A file that is
/// added to is protected by its channel, see FileChannel.
class Hdf5File {
public:
    /// @name Opening
    /// Symbolic links are followed to the file that they lead to. Locks that others hold are waited for.
    /// @throws FormatError; for writing also when the name is that of something else than a regular file
    /// @{
    static std::unique_ptr<Hdf5File> openForReading(const std::string& path, const LockSettings& locks = {});
    static std::unique_ptr<Hdf5File> create(const std::string& path, const LockSettings& locks = {});
    static std::unique_ptr<Hdf5File> openForAppending(const std::string& path, const LockSettings& locks = {});
    /// @}

    /// Drops what was written unless it was committed.
    ~Hdf5File();
    Hdf5File(const Hdf5File&) = delete;
    Hdf5File& operator=(const Hdf5File&) = delete;

    hid_t id() const { return _file.get(); }
    FileChannel& channel() const { return *_channel; }
    bool isAppending() const { return _isAppending; }

    /// Whether the name of an open file is found to be another one's, or nobody's: true once.
    bool noticesReplacement();

    /// Room for values on their way, small enough to stay in the processor's cache.
    std::vector<unsigned char>& buffer() { return _buffer; }

    /// Place for the one attachment of a file, empty at first; see ChunkWorkspace.
    std::unique_ptr<FileAttachment>& attachment() { return _attachment; }

    /// Links an object under a name at commit, in place of what bears it now: until then nothing of the old file's
    /// space is given back, and so nothing new is written over it.
    void linkAtCommit(hid_t object, hid_t group, const std::string& name);

    /// Takes an object out of a group. It stays in the file, where nothing leads to it any more, until commit gives its
    /// space back: nothing new is written over it before.
    void removeAtCommit(hid_t group, const std::string& name);

    /// Closes the file, brings it to the disk and, for a new one, gives it its name. Nothing may be used afterwards.
    /// @throws FormatError; the change is then dropped
    void commit();

private:
    explicit Hdf5File(std::string path);
    void closeForGood() noexcept;
    void linkAll();

    struct PendingLink {
        Handle object;
        Handle group;
        std::string name;
    };

    std::string _path;
    std::string _temporaryPath; // empty but for a new file
    std::shared_ptr<FileChannel> _channel;
    Handle _file;
    std::vector<PendingLink> _pendingLinks;
    std::vector<Handle> _removed; // objects that have no link any more: HDF5 drops them with their last handle
    std::vector<unsigned char> _buffer;
    std::unique_ptr<FileAttachment> _attachment;
    bool _isAppending = false;
    bool _isOpen = false;
    bool _isKnownToBeReplaced = false;
    std::chrono::steady_clock::time_point _lastLook{}; // at the name
};

/// @name Groups
/// Paths are relative to the given group and made of link names. Only hard links count, at every step: what a soft or
/// an external link leads to, in another file perhaps, is not there.
/// @{
bool hasLink(hid_t group, const std::string& name);

/// Gives an object that was made without a name its link. Nothing is made with its name at once: where the group is
/// damaged, HDF5 1.10 keeps what it made and cannot close the file any more.
void linkNew(const Handle& object, hid_t group, const std::string& name);

Handle openGroup(hid_t group, const std::string& name);

/// A group that need not be there, along link names; invalid as soon as one is missing.
Handle findGroup(hid_t group, const std::vector<std::string>& path);

Handle createGroup(hid_t group, const std::string& name); ///< keeps the order in which links and attributes are made
Handle openOrCreateGroup(hid_t group, const std::string& name);
Handle replaceGroup(Hdf5File& file, hid_t group, const std::string& name); ///< empty; an old one stays until commit
std::vector<std::string> linkNames(hid_t group);                           ///< in the order in which they were made
void removeLink(hid_t group, const std::string& name);
/// @}

/// @name Names
/// Link and attribute names hold any bytes: those that HDF5 cannot carry, and '%', are written as % and two hexadecimal
/// digits; an empty name is "%".
/// @{
std::string encodeName(const std::string& name);
std::string encodeAttributeName(const std::string& name); ///< also keeps clear of the names that begin with "kel_"
std::string decodeName(const std::string& name);
std::vector<std::string> decodedNames(const Handle& group); ///< of the links, in their order; of no group none
/// @}

/// Path of an object for messages, e.g. "/faces/cell0".
std::string pathOf(hid_t object);

} // namespace meridyn::hdf5
