// The local side of a backup: an archive grows under a ".part" name and takes its final name only when it is
// whole and on the disk.
#pragma once

#include "settings/gzipend.h"

#include <QFile>
#include <QSaveFile>
#include <QString>

namespace archivefile
{

/// The name under which the archive for this file grows.
QString partName(const QString &fileName);

/// The name that a finished part file takes: every ".part" is removed, also from its folders.
QString finalName(QString partName);

/// Why the file could not be opened or written, in the user's language: the toolkit leaves what the system
/// said as it is.
QString reasonOf(const QFileDevice &file);

/// Puts a finished part file in its final place, a piece at a time, so that a large archive does not hold up
/// the window. Until the last piece an older file of that name stays as it is.
class Placing
{
public:
    /// An older file is replaced only where its name is the one that the user confirmed.
    Placing(const QString &part, const QString &confirmed);

    enum class Progress {
        More,       ///< call goOn() again
        Placed,     ///< the archive is on the disk under its final name
        Unfinished, ///< the archive is one that its writer has not finished yet; nothing was placed
        Unreadable, ///< the part file could not be read, or the disk did not take the archive
        NoPlace     ///< no file of that name can be made; why() tells the reason
    };
    Progress goOn();

    QString name() const { return target.fileName(); }
    QString why() const { return reason; }

private:
    bool open();

    QFile source;
    QSaveFile target;
    const bool mayReplace;
    QString reason;
    GzipEnd end;
};

} // namespace archivefile
