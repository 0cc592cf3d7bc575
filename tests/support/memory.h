// What a test's own process holds.
#pragma once

#include "tests/support/files.h"

/// A sanitizer keeps what was freed.
#ifdef __SANITIZE_ADDRESS__
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

/// In bytes; 0 where the system does not tell.
inline qint64 residentMemory()
{
    constexpr qint64 pageBytes = 4096;
    return contents(QStringLiteral("/proc/self/statm")).split(' ').value(1).toLongLong() * pageBytes;
}
