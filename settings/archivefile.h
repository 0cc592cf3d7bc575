// The local side of a backup: an archive grows under a ".part" name and takes its final name only when it is
// whole and on the disk.
#pragma once

#include <QString>

class QFileDevice;

namespace archivefile
{

/// The name under which the archive for this file grows.
QString partName(const QString &fileName);

/// The name that a finished part file takes: every ".part" is removed, also from its folders.
QString finalName(QString partName);

/// Forces what was written to an open file to the disk, and waits for that. False when the disk does not take
/// it.
bool flushToDisk(QFileDevice &file);

/// Renames a file, in one step and over an older file of the new name. A refused rename is not reported.
void replace(const QString &fileName, const QString &newName);

} // namespace archivefile
