#include "KelArrays.h"

namespace meridyn {

const char* nameOf(KelArray array)
{
    static const char* const names[] = {"coordinates",
                                        "nodes of edges",
                                        "node counts of edges",
                                        "nodes of faces",
                                        "node counts of faces",
                                        "cell 0 of faces",
                                        "cell 1 of faces",
                                        "shadow faces",
                                        "child faces",
                                        "counts of child faces",
                                        "types of cells",
                                        "nodes of cells",
                                        "node counts of cells",
                                        "faces of cells",
                                        "face counts of cells",
                                        "partitions of cells",
                                        "child cells",
                                        "counts of child cells",
                                        "case section",
                                        "variable",
                                        "ids of the set",
                                        "variable of the set",
                                        "variable-length variable of the set",
                                        "lengths of the set"};
    static_assert(sizeof(names) / sizeof(*names) == static_cast<int>(KelArray::SetListLengths) + 1);
    return names[static_cast<int>(array)];
}

} // namespace meridyn
