#pragma once

#include "Failure.h"
#include "KelFileProvider.h"
#include "KelFormat.h"

#include <memory>
#include <string>
#include <vector>

namespace meridyn::tool {

/// A model that lies in files, with the reader of its format.
class Model {
public:
    /// Finds out what lies at a path and makes its reader, with the files named.
    ///
    /// @param formatName  empty: the format that recognises the file
    /// @throws Failure when there is nothing, or nothing that a format reads
    explicit Model(const std::string& path, const std::string& formatName = "");
    ~Model();
    Model(const Model&) = delete;
    Model& operator=(const Model&) = delete;

    /// Opens a data class. @throws Failure with the reader's own words
    void open(KelDataClass dataClass);

    /// Opens what there is of the two data classes.
    void openAll();

    /// Closes what is open.
    void close();

    /// Whether there is a file for a data class.
    bool has(KelDataClass dataClass) const { return !file(dataClass).empty(); }
    const std::string& file(KelDataClass dataClass) const;

    const std::string& path() const { return _path; }
    const KelFormat& format() const { return _format; }
    KelFileProvider& reader() { return *_reader; }

    /// A Failure about one of the model's files: the file's name and the errors that the reader has stored.
    Failure failure(const std::string& otherwise, KelDataClass dataClass);

    /// Throws Failure when the reader has stored errors: what it gave is then not all that the files hold.
    void expectNoErrors();

private:
    std::string _path;
    KelFormat _format;
    KelFormatFiles _files;
    std::unique_ptr<KelFileProvider> _reader;
    bool _isOpen[2] = {false, false};
};

/// "<file>: <text>", without the file's name twice.
std::string aboutFile(const std::string& file, const std::string& text);

/// The errors that a reader or writer has stored, in one line; `otherwise` when there are none.
std::string errorsOf(KelBase& base, const std::string& otherwise);

/// Name of the kind of a zone: what the file calls it, else that of the enumerator; empty for none.
std::string kindOfZone(const KelBase& base, int zoneId, KelZoneCategory category);

/// "nodes", "edges", "faces", "cells".
const char* categoryName(KelZoneCategory category);

/// "hexahedra", "polyhedra" ...; "kind 17" for an unknown one.
std::string cellTypeName(KelCellType type);

/// Number of elements of a category in the mesh.
unsigned64 meshSize(const KelBase& base, KelZoneCategory category);

/// "7 'wall'".
std::string zoneLabel(const KelBase& base, int zoneId);

/// All four, in the order of their numbers.
extern const std::vector<KelZoneCategory> allCategories;

} // namespace meridyn::tool
