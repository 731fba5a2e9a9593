#pragma once

#include <gtest/gtest.h>
#include <hdf5.h>
#include <string>
#include <vector>

namespace hdf5test {

/// A Kel file opened with the HDF5 library alone, to change what our writer would not write.
class FileEdit {
public:
    explicit FileEdit(const std::string& path) : _file(H5Fopen(path.c_str(), H5F_ACC_RDWR, H5P_DEFAULT))
    {
        EXPECT_GE(_file, 0) << path;
    }
    ~FileEdit() { H5Fclose(_file); }
    FileEdit(const FileEdit&) = delete;
    FileEdit& operator=(const FileEdit&) = delete;

    void remove(const std::string& path) { EXPECT_GE(H5Ldelete(_file, path.c_str(), H5P_DEFAULT), 0) << path; }

    /// Puts an array in place of what is there, if anything.
    /// @param extent   no number: a single value
    /// @param values   null: nothing is written
    /// @param creation how the array is laid out
    void array(const std::string& path, hid_t type, const std::vector<hsize_t>& extent, const void* values,
               hid_t creation = H5P_DEFAULT)
    {
        if (H5Lexists(_file, path.c_str(), H5P_DEFAULT) > 0)
            remove(path);
        const hid_t space = extent.empty() ? H5Screate(H5S_SCALAR)
                                           : H5Screate_simple(static_cast<int>(extent.size()), extent.data(), nullptr);
        const hid_t set = H5Dcreate2(_file, path.c_str(), type, space, H5P_DEFAULT, creation, H5P_DEFAULT);
        EXPECT_GE(set, 0) << path;
        if (values != nullptr) {
            EXPECT_GE(H5Dwrite(set, type, H5S_ALL, H5S_ALL, H5P_DEFAULT, values), 0) << path;
        }
        H5Dclose(set);
        H5Sclose(space);
    }

    void numbers(const std::string& object, const std::string& name, const std::vector<long long>& values)
    {
        const hsize_t count = values.size();
        attribute(object, name, H5T_STD_I64LE, H5Screate_simple(1, &count, nullptr), values.data());
    }

    void text(const std::string& object, const std::string& name, const std::string& value)
    {
        const hid_t type = H5Tcopy(H5T_C_S1);
        H5Tset_size(type, value.size());
        attribute(object, name, type, H5Screate(H5S_SCALAR), value.data());
        H5Tclose(type);
    }

    void removeAttribute(const std::string& object, const std::string& name)
    {
        EXPECT_GE(H5Adelete_by_name(_file, object.c_str(), name.c_str(), H5P_DEFAULT), 0) << object << "@" << name;
    }

    /// The cells of a table of whole numbers, row after row.
    std::vector<long long> table(const std::string& path) const
    {
        const hid_t set = H5Dopen2(_file, path.c_str(), H5P_DEFAULT), space = H5Dget_space(set);
        std::vector<long long> cells(static_cast<std::size_t>(H5Sget_simple_extent_npoints(space)));
        EXPECT_GE(H5Dread(set, H5T_NATIVE_LLONG, H5S_ALL, H5S_ALL, H5P_DEFAULT, cells.data()), 0) << path;
        H5Sclose(space);
        H5Dclose(set);
        return cells;
    }

private:
    /// Takes the space over.
    void attribute(const std::string& object, const std::string& name, hid_t type, hid_t space, const void* value)
    {
        const hid_t owner = H5Oopen(_file, object.c_str(), H5P_DEFAULT);
        EXPECT_GE(owner, 0) << object;
        if (H5Aexists(owner, name.c_str()) > 0)
            H5Adelete(owner, name.c_str());
        const hid_t made = H5Acreate2(owner, name.c_str(), type, space, H5P_DEFAULT, H5P_DEFAULT);
        EXPECT_GE(H5Awrite(made, type, value), 0) << object << "@" << name;
        H5Aclose(made);
        H5Sclose(space);
        H5Oclose(owner);
    }

    hid_t _file;
};

/// The mesh of the sample in both files.
inline const std::string sampleMesh = "/meshes/mesh_4_target_0_partition_-1";

} // namespace hdf5test
