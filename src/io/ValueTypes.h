#pragma once

#include "KelTypes.h"

// The ten value types in their fixed order. KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE) expands KEL_DEFINE(T) once for each;
// undefine KEL_DEFINE right behind it.
#define KEL_FOR_EACH_VALUE_TYPE(DEFINE)                                                                                \
    DEFINE(unsigned char)                                                                                              \
    DEFINE(char)                                                                                                       \
    DEFINE(short)                                                                                                      \
    DEFINE(unsigned int)                                                                                               \
    DEFINE(int)                                                                                                        \
    DEFINE(long)                                                                                                       \
    DEFINE(unsigned64)                                                                                                 \
    DEFINE(signed64)                                                                                                   \
    DEFINE(float)                                                                                                      \
    DEFINE(double)
