// Fails while it makes its format.
#include "KelFormatPlugin.h"

#include <stdexcept>

const meridyn::KelFormatPlugin* kelFormatPlugin()
{
    throw std::runtime_error("no licence");
}
