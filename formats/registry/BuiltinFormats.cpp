#include "BuiltinFormats.h"

namespace meridyn {

// A new format: define its function in its own folder and add its line here.
// clang-format off
#define KEL_FOR_EACH_FORMAT(X) \
    X(generatedFormat)         \
    X(hdf5Format)              \
    X(memoryFormat)            \
    X(polymeshFormat)
// clang-format on

#define KEL_DECLARE(format) KelFormat format();
KEL_FOR_EACH_FORMAT(KEL_DECLARE)
#undef KEL_DECLARE

std::vector<KelFormat> builtinFormats()
{
#define KEL_CALL(format) format(),
    return {KEL_FOR_EACH_FORMAT(KEL_CALL)};
#undef KEL_CALL
}

} // namespace meridyn
