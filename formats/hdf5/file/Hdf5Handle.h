#pragma once

#include <hdf5.h>
#include <string>
#include <utility>

namespace meridyn::hdf5 {

/// Owns one HDF5 id of any kind.
class Handle {
public:
    Handle() = default;
    explicit Handle(hid_t id) : _id(id) {}
    Handle(Handle&& other) noexcept : _id(std::exchange(other._id, H5I_INVALID_HID)) {}
    Handle& operator=(Handle&& other) noexcept
    {
        std::swap(_id, other._id);
        return *this;
    }
    ~Handle();

    hid_t get() const { return _id; }
    hid_t release() { return std::exchange(_id, H5I_INVALID_HID); } ///< the caller closes it
    explicit operator bool() const { return _id >= 0; }

private:
    hid_t _id = H5I_INVALID_HID;
};

/// While it lives, HDF5 prints nothing about errors.
class QuietErrors {
public:
    QuietErrors();
    ~QuietErrors();
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;

private:
    H5E_auto2_t _function = nullptr;
    void* _data = nullptr;
};

/// For what HDF5 calls back: an exception through its frames would leave its objects open.
/// @return negative when the work threw
template <class Work>
herr_t withoutThrowing(Work&& work) noexcept
{
    try {
        work();
        return 0;
    } catch (...) {
        return -1;
    }
}

/// The words of the lowest layer about the last failed HDF5 call.
std::string hdf5Words();

/// Gives the id to a handle.
/// @throws FormatError "<what>: <words of the lowest layer>" for an invalid id
Handle checkedId(hid_t id, const std::string& what);

/// @throws FormatError as checkedId when the result of a call is negative
void checkedCall(long long result, const std::string& what);

} // namespace meridyn::hdf5
