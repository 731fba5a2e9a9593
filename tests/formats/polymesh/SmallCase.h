#pragma once

#include "support/TemporaryFolder.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>
#include <zlib.h>

/// A case of two hexahedra along x, written file by file; a test changes what it is about.
class SmallCase {
public:
    SmallCase()
    {
        write("constant/polyMesh/points", head("vectorField") + "12 ((0 0 0)(1 0 0)(2 0 0)(0 1 0)(1 1 0)(2 1 0)"
                                                                "(0 0 1)(1 0 1)(2 0 1)(0 1 1)(1 1 1)(2 1 1))");
        write("constant/polyMesh/faces", head("faceList") +
                                             "11 (4(1 4 10 7) 4(0 6 9 3) 4(2 5 11 8) 4(0 1 7 6) 4(1 2 8 7) 4(3 9 10 4) "
                                             "4(4 10 11 5) 4(0 3 4 1) 4(1 4 5 2) 4(6 7 10 9) 4(7 8 11 10))");
        write("constant/polyMesh/owner", head("labelList") + "11(0 0 1 0 1 0 1 0 1 0 1)");
        write("constant/polyMesh/neighbour", head("labelList") + "1(1)");
        write("constant/polyMesh/boundary", head("polyBoundaryMesh") +
                                                "3 ( left { type patch; nFaces 1; startFace 1; }\n"
                                                "right { type wall; inGroups 2(wall hot); nFaces 1; startFace 2; }\n"
                                                "sides { type symmetry; nFaces 8; startFace 3; } )");
    }

    static std::string head(const std::string& className, const std::string& more = "")
    {
        return "FoamFile { version 2.0; format " + (more.empty() ? std::string("ascii;") : more) + " class " +
               className + "; }\n";
    }

    static std::string field(const std::string& className, const std::string& inner, const std::string& boundary = "")
    {
        return head(className) + "dimensions [0 1 -1 0 0 0 0];\ninternalField " + inner + ";\nboundaryField { " +
               boundary + " }\n";
    }

    std::string path() const { return _folder.path(); }
    std::string file(const std::string& name) const { return _folder / name; }

    void write(const std::string& name, const std::string& text) const
    {
        std::filesystem::create_directories(std::filesystem::path(file(name)).parent_path());
        _folder.write(name, text);
    }

    std::string read(const std::string& name) const
    {
        std::ifstream stream(file(name), std::ios::binary);
        std::ostringstream text;
        text << stream.rdbuf();
        return text.str();
    }

    void remove(const std::string& name) const { std::filesystem::remove(file(name)); }

    /// Replaces the first occurrence of a piece of a file.
    void replace(const std::string& name, const std::string& from, const std::string& to) const
    {
        std::string text = read(name);
        const std::size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        write(name, text.replace(at, from.size(), to));
    }

    /// Puts the compressed file in place of the plain one.
    void compress(const std::string& name) const
    {
        const std::string text = read(name);
        gzFile out = gzopen(file(name + ".gz").c_str(), "wb");
        gzwrite(out, text.data(), static_cast<unsigned>(text.size()));
        gzclose(out);
        remove(name);
    }

    /// The bytes of numbers, for lists in binary form.
    template <class T>
    static std::string raw(const std::vector<T>& values)
    {
        std::string bytes(values.size() * sizeof(T), '\0');
        std::memcpy(bytes.data(), values.data(), bytes.size());
        return "\n" + std::to_string(values.size()) + "\n(" + bytes + ")\n";
    }

    /// The same mesh in binary form, in the widths of the two types.
    template <class Label, class Scalar>
    void writeBinary() const
    {
        const std::string widths = "binary; arch \"LSB;label=" + std::to_string(8 * sizeof(Label)) +
                                   ";scalar=" + std::to_string(8 * sizeof(Scalar)) + "\";";
        std::vector<Scalar> xyz;
        for (int n = 0; n < 12; ++n)
            for (const int x : {n % 3, n / 3 % 2, n / 6})
                xyz.push_back(static_cast<Scalar>(x));
        std::string points = raw(xyz);
        points.replace(points.find("36"), 2, "12");
        write("constant/polyMesh/points", head("vectorField", widths) + points);
        const std::vector<Label> offsets = {0, 4, 8, 12, 16, 20, 24, 28, 32, 36, 40, 44};
        const std::vector<Label> nodes = {1,  4, 10, 7,  0,  6, 9, 3, 2, 5, 11, 8, 0, 1, 7, 6, 1,  2, 8, 7, 3,  9,
                                          10, 4, 4,  10, 11, 5, 0, 3, 4, 1, 1,  4, 5, 2, 6, 7, 10, 9, 7, 8, 11, 10};
        write("constant/polyMesh/faces", head("faceCompactList", widths) + raw(offsets) + raw(nodes));
        write("constant/polyMesh/owner",
              head("labelList", widths) + raw(std::vector<Label>{0, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1}));
        write("constant/polyMesh/neighbour", head("labelList", widths) + raw(std::vector<Label>{1}));
    }

private:
    TemporaryFolder _folder;
};
