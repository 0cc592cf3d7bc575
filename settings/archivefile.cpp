#include "settings/archivefile.h"

#include <QCoreApplication>

namespace
{

// Small enough for painting and input to notice nothing, also where a piece unpacks to a thousand times its
// size, which takes some 10 ms.
constexpr qint64 pieceBytes = qint64(4) * 1024;

} // namespace

QString archivefile::partName(const QString &fileName)
{
    return fileName + QLatin1String(".part");
}

QString archivefile::finalName(QString partName)
{
    return partName.remove(QLatin1String(".part"));
}

QString archivefile::reasonOf(const QFileDevice &file)
{
    return QCoreApplication::translate("QIODevice", file.errorString().toUtf8());
}

archivefile::Placing::Placing(const QString &part, const QString &confirmed)
    : source(part), target(finalName(part)), mayReplace(target.fileName() == confirmed)
{
}

archivefile::Placing::Progress archivefile::Placing::goOn()
{
    if (!target.isOpen() && !open())
        return source.isOpen() ? Progress::NoPlace : Progress::Unreadable;
    const QByteArray piece = source.read(pieceBytes);
    if (source.error() != QFileDevice::NoError || target.write(piece) != piece.size())
        return Progress::Unreadable;
    end.feed(piece.constData(), piece.size());
    if (!source.atEnd())
        return Progress::More;
    if (end.isMissing())
        return Progress::Unfinished;
    // Waits for the disk: the name must not outlive a power cut that the bytes do not.
    if (target.commit())
        return Progress::Placed;
    // Windows replaces no file that another program has open.
    reason = reasonOf(target);
    return target.error() == QFileDevice::RenameError ? Progress::NoPlace : Progress::Unreadable;
}

bool archivefile::Placing::open()
{
    if (!source.open(QIODevice::ReadOnly))
        return false;
    if (!mayReplace && QFile::exists(target.fileName())) {
        reason = QCoreApplication::translate("ArchiveFile", "The file exists already");
        return false;
    }
    if (target.open(QIODevice::WriteOnly))
        return true;
    reason = reasonOf(target);
    return false;
}
