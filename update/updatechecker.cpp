#include "update/updatechecker.h"

#include <QCoreApplication>
#include <QDebug>
#include <QStandardPaths>

namespace
{

// All tools of the product line keep their packages in one folder, so it bears the line's name, not this
// tool's.
QString productLineDataLocation()
{
    const QString applicationName = QCoreApplication::applicationName();
    QCoreApplication::setApplicationName(QStringLiteral("Dokvane"));
    QString location = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    QCoreApplication::setApplicationName(applicationName);
    return location;
}

} // namespace

QDir UpdateChecker::updateDirectory()
{
    const QString firmwareFolder = QStringLiteral("/firmware");
    const QString inAppData = productLineDataLocation() + firmwareFolder;
    if (QDir().mkpath(inAppData))
        return QDir(inAppData);

    qInfo().noquote() << "UpdateChecker: Could not mkpath to app data location";
    const QString inDownloads =
        QStandardPaths::writableLocation(QStandardPaths::DownloadLocation) + firmwareFolder;
    // The download folder is only made ready for the user; the dialog goes on asking for the usual place.
    if (QDir().mkpath(inDownloads))
        return QDir(inAppData);

    qInfo().noquote() << "UpdateChecker: Could not mkpath to download location";
    const QString temporary = QStandardPaths::writableLocation(QStandardPaths::TempLocation);
    QDir().mkpath(temporary);
    return QDir(temporary);
}
