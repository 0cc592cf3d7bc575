#include "settings/archivefile.h"

#include <QFile>
#include <QSaveFile>

#include <filesystem>
#include <system_error>

namespace
{

constexpr qint64 copyBlockBytes = 256 * 1024;

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

// QSaveFile::commit() is the one call of the toolkit that waits for the disk, so the archive is written once
// more through it. Settings archives are small, and no system call of our own is needed.
bool archivefile::syncToDisk(const QString &fileName)
{
    QFile source(fileName);
    QSaveFile synced(fileName);
    if (!source.open(QIODevice::ReadOnly) || !synced.open(QIODevice::WriteOnly))
        return false;
    while (!source.atEnd()) {
        const QByteArray block = source.read(copyBlockBytes);
        if (block.isEmpty() || synced.write(block) != block.size())
            return false;
    }
    // An open file cannot be replaced everywhere.
    source.close();
    return synced.commit();
}

void archivefile::replace(const QString &fileName, const QString &newName)
{
    // QFile::rename() would refuse where the new name is taken.
    std::error_code ignored;
    std::filesystem::rename(toPath(fileName), toPath(newName), ignored);
}
