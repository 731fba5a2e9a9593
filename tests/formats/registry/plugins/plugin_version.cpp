// Made for another version: its layout behind the number must never be looked at.
#include "KelExport.h"

extern "C" KEL_API const unsigned int* kelFormatPlugin();

const unsigned int* kelFormatPlugin()
{
    static const unsigned int version = 2400;
    return &version;
}
