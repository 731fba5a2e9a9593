#pragma once

#include "KelTypes.h"

namespace meridyn {

/// Calls `visit` with a null pointer to the value type that a KelPlainDataType stands for. False for none of the ten.
template <class Visit>
bool visitPlainType(KelPlainDataType type, const Visit& visit)
{
    // clang-format off
    switch (type) {
    case KEL_PLAIN_UNSIGNED_CHAR: visit(static_cast<unsigned char*>(nullptr)); return true;
    case KEL_PLAIN_CHAR:          visit(static_cast<char*>(nullptr));          return true;
    case KEL_PLAIN_SHORT:         visit(static_cast<short*>(nullptr));         return true;
    case KEL_PLAIN_UNSIGNED_INT:  visit(static_cast<unsigned int*>(nullptr));  return true;
    case KEL_PLAIN_INT:           visit(static_cast<int*>(nullptr));           return true;
    case KEL_PLAIN_LONG:          visit(static_cast<long*>(nullptr));          return true;
    case KEL_PLAIN_UNSIGNED64:    visit(static_cast<unsigned64*>(nullptr));    return true;
    case KEL_PLAIN_SIGNED64:      visit(static_cast<signed64*>(nullptr));      return true;
    case KEL_PLAIN_FLOAT:         visit(static_cast<float*>(nullptr));         return true;
    case KEL_PLAIN_DOUBLE:        visit(static_cast<double*>(nullptr));        return true;
    }
    // clang-format on
    return false;
}

} // namespace meridyn
