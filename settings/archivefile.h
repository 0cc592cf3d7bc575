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

/// Gives a part file its final name, in one step. An older file of that name is replaced only where it is the
/// one that the user confirmed. A refused rename is not reported.
void takeFinalName(const QString &part, const QString &confirmed);

} // namespace archivefile
