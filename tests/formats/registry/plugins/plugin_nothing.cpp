// Gives no plug-in.
#include "KelFormatPlugin.h"

const meridyn::KelFormatPlugin* kelFormatPlugin()
{
    return nullptr;
}
