// A shared object that is no plug-in.
#include "KelExport.h"

extern "C" KEL_API int somethingElse();

int somethingElse()
{
    return 0;
}
