// What a test's own process holds.
#pragma once

#include <QFile>

/// In bytes; 0 where the system does not tell.
inline qint64 residentMemory()
{
    QFile statistics(QStringLiteral("/proc/self/statm"));
    constexpr qint64 pageBytes = 4096;
    return statistics.open(QIODevice::ReadOnly)
               ? statistics.readAll().split(' ').value(1).toLongLong() * pageBytes
               : 0;
}
