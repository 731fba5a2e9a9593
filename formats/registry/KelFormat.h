#pragma once

#include "KelExport.h"
#include "KelFormatFamily.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace meridyn {

class KelFileConsumer;
class KelFileProvider;

/// The files of a model. Either may be empty: a case without data, or data alone.
struct KelFormatFiles {
    std::string caseFile; ///< handed to the reader or writer for KEL_CASE
    std::string dataFile; ///< handed to it for KEL_DATA
};

/// One format, as data: what it is, what it carries, how to recognise a file, how to make its reader and writer.
struct KelFormat {
    std::string name;                  ///< unique, short, lower case: "hdf5"
    std::string description;           ///< one line
    std::vector<std::string> suffixes; ///< of the names it writes, with the point: ".case.kel"; may be empty
    KelFormatFamilies reads = 0;       ///< families that the reader gives back; 0 when there is no reader
    KelFormatFamilies writes = 0;      ///< families that the writer takes; 0 when there is no writer

    /// Whether what lies at a path, or a text that stands for a model, is of this format, by its content. Never throws.
    std::function<bool(const std::string& path)> probe;

    /// The files behind what a user names: "cube", "cube.case.kel" and "cube.data.kel" are one model.
    /// For reading only what exists is named.
    std::function<KelFormatFiles(const std::string& path, bool forWriting)> files;

    /// Makes a reader; null when the format has none. The caller names the files with setFile and owns it.
    std::function<std::unique_ptr<KelFileProvider>()> makeReader;

    /// Makes a writer; null when the format has none.
    std::function<std::unique_ptr<KelFileConsumer>()> makeWriter;

    /// Begins the names of models that are no files ("memory:"); empty for a format of files.
    std::string prefix;

    /// Names of models that can be read wherever the format is: what a format without a writer is tested with.
    std::vector<std::string> samples;
};

} // namespace meridyn
