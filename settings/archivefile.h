// The local side of a backup: an archive grows under a ".part" name and takes its final name only when it is
// whole and on the disk.
#pragma once

#include <QString>

namespace archivefile
{

/// The name under which the archive for this file grows.
QString partName(const QString &fileName);

/// The name that a finished part file takes: every ".part" is removed, also from its folders.
QString finalName(QString partName);

/// Forces the bytes of a closed file to the disk; takes as much free space again for a moment. False when
/// the file cannot be read or the disk does not take them; the file is then as it was.
bool syncToDisk(const QString &fileName);

/// Renames a file, in one step and over an older file of the new name. A refused rename is not reported.
void replace(const QString &fileName, const QString &newName);

} // namespace archivefile
