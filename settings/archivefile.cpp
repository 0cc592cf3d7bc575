#include "settings/archivefile.h"

#include <QFile>

#include <cerrno>
#include <filesystem>
#include <system_error>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace
{

std::filesystem::path toPath(const QString &fileName)
{
    // A name may hold what is no text, for instance half of a surrogate pair; converting that would throw.
#ifdef Q_OS_WIN
    return std::filesystem::path(fileName.toStdWString());
#else
    return std::filesystem::path(QFile::encodeName(fileName).toStdString());
#endif
}

} // namespace

QString archivefile::partName(const QString &fileName)
{
    return fileName + QLatin1String(".part");
}

QString archivefile::finalName(QString partName)
{
    return partName.remove(QLatin1String(".part"));
}

// QFile offers no call that waits for the disk, and QSaveFile, which does wait, writes under a name of its
// own instead of the ".part" one. This one call of the system is worth it, since a rename may otherwise
// outlive a power cut that its bytes do not. It is also where a network drive tells that it is full.
bool archivefile::flushToDisk(QFileDevice &file)
{
    if (!file.flush())
        return false;
#ifdef Q_OS_WIN
    return _commit(file.handle()) == 0;
#else
    // Some file systems have nothing to wait for, and say so.
    return fsync(file.handle()) == 0 || errno == EINVAL || errno == ENOTSUP;
#endif
}

void archivefile::takeFinalName(const QString &part, const QString &confirmed)
{
    const QString name = finalName(part);
    if (name != confirmed) {
        // Refuses where the name is taken: about that file nobody was asked.
        QFile::rename(part, name);
        return;
    }
    // QFile::rename() would refuse here too, although the user has agreed to lose the older file.
    std::error_code ignored;
    std::filesystem::rename(toPath(part), toPath(name), ignored);
}
