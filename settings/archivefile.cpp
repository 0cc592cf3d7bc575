#include "settings/archivefile.h"

#include <QFileDevice>

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
    return std::filesystem::path(fileName.toStdU16String());
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

// The toolkit has no call that waits for the disk: QFile offers none, and its QSaveFile renames without. This
// one call of the system is worth it, since a rename may otherwise outlive a power cut that its bytes do not.
// It is also where a network drive tells that it is full.
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

void archivefile::replace(const QString &fileName, const QString &newName)
{
    // QFile::rename() would refuse where the new name is taken.
    std::error_code ignored;
    std::filesystem::rename(toPath(fileName), toPath(newName), ignored);
}
