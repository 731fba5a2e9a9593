// A format that can do nothing.
#include "KelFormatPlugin.h"

const meridyn::KelFormatPlugin* kelFormatPlugin()
{
    static meridyn::KelFormatPlugin plugin;
    plugin.format.name = "useless";
    return &plugin;
}
