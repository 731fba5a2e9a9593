#pragma once

/// Marks what the library exports: everything without it stays inside (hidden visibility).
#if defined(__GNUC__) || defined(__clang__)
#    define KEL_API __attribute__((visibility("default")))
#else
#    define KEL_API
#endif
