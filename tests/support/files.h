// Whole files.
#pragma once

#include <QFile>

/// Writes a file, and returns its name; null when it cannot be written.
inline QString write(const QString &name, const QByteArray &bytes)
{
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? name : QString();
}

/// Empty when the file is not there.
inline QByteArray contents(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
