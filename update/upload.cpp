#include "update/upload.h"

#include "discovery/protocol.h"
#include "ftp/qftp.h"

#include <QFile>
#include <QProgressBar>

#include <limits>
#include <memory>

bool upload::queue(QFtp *ftp, const QString &host, const QString &fileName)
{
    ftp->connectToHost(host, protocol::ftpPort);
    ftp->login(protocol::ftpUser, protocol::ftpPassword);
    ftp->cd(QStringLiteral("update"));

    auto file = std::make_unique<QFile>(fileName, ftp);
    if (!file->open(QIODevice::ReadOnly))
        return false;
    ftp->put(file.release(), QStringLiteral("image"), QFtp::Binary);
    ftp->close();
    return true;
}

void upload::retire(QFtp *ftp)
{
    if (!ftp)
        return;
    ftp->disconnect();
    ftp->deleteLater();
}

void upload::showProgress(QProgressBar *bar, qint64 doneBytes, qint64 totalBytes)
{
    constexpr qint64 largestRange = std::numeric_limits<int>::max();
    const qint64 bytesPerStep = (totalBytes - 1) / largestRange + 1;
    bar->setMaximum(static_cast<int>(totalBytes / bytesPerStep));
    bar->setValue(static_cast<int>(qMin(doneBytes / bytesPerStep, largestRange)));
}
