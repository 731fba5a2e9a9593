// Fails with what is no exception of the standard library.
#include "KelFormatPlugin.h"

const meridyn::KelFormatPlugin* kelFormatPlugin()
{
    throw 42;
}
