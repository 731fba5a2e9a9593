#include "Hdf5Handle.h"

#include "FormatError.h"

#include <atomic>
#include <cstdlib>

namespace meridyn::hdf5 {

namespace {

herr_t keepInnermost(unsigned depth, const H5E_error2_t* error, void* data)
{
    return withoutThrowing([&] {
        if (depth == 0 && error->desc != nullptr)
            *static_cast<std::string*>(data) = error->desc;
    });
}

std::atomic<bool> hasFailed{false}; // a call of HDF5 that we made

herr_t noteFailure(hid_t, void*)
{
    hasFailed = true;
    return 0;
}

// HDF5 1.10 loses blocks of its free lists when an object of a damaged file does not get through its metadata cache. At
// the end of the process it asks for them a hundred times, and prints a letter for each time unless its errors are
// switched off. Nothing else is left to be reported then.
void endQuietly()
{
    if (hasFailed)
        H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
}

} // namespace

Handle::~Handle()
{
    if (_id < 0)
        return;
    const QuietErrors quiet;
    if (H5Iis_valid(_id) > 0) // the file's own close may have closed it already
        H5Idec_ref(_id);
}

QuietErrors::QuietErrors()
{
    H5Eget_auto2(H5E_DEFAULT, &_function, &_data);
    H5Eset_auto2(H5E_DEFAULT, noteFailure, nullptr);
    // What is registered last is called first, and HDF5 has registered its end with the calls above.
    [[maybe_unused]] static const bool isRegistered = std::atexit(endQuietly) == 0;
}

QuietErrors::~QuietErrors()
{
    H5Eset_auto2(H5E_DEFAULT, _function, _data);
}

std::string hdf5Words()
{
    std::string words;
    H5Ewalk2(H5E_DEFAULT, H5E_WALK_UPWARD, keepInnermost, &words);
    return words.empty() ? "HDF5 gives no reason" : words;
}

Handle checkedId(hid_t id, const std::string& what)
{
    if (id < 0)
        throw FormatError(what + ": " + hdf5Words());
    return Handle(id);
}

void checkedCall(long long result, const std::string& what)
{
    if (result < 0)
        throw FormatError(what + ": " + hdf5Words());
}

} // namespace meridyn::hdf5
