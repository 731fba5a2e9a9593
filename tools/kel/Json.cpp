#include "Json.h"

#include "Numbers.h"

#include <cmath>

namespace meridyn::tool {

Json jsonNumber(double value)
{
    return std::isfinite(value) ? Json(value) : Json(exactNumber(value));
}

std::string documentText(const Json& document)
{
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace meridyn::tool
