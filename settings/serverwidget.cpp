#include "settings/serverwidget.h"

#include "discovery/n6commands.h"
#include "discovery/protocol.h"
#include "discovery/udphbclient.h"
#include "settings/archivedialog.h"
#include "settings/archivefile.h"
#include "ui_servercontrol.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QStandardPaths>
#include <QUdpSocket>

namespace
{

constexpr int downloadAttempts = 15;
constexpr int pollIntervalMs = 1000;
// The network access manager waits for ever for an FTP server that has fallen silent.
constexpr int stallTimeoutMs = 30000;

QUrl archiveWithoutHost()
{
    QUrl url;
    url.setScheme(QStringLiteral("ftp"));
    url.setUserName(protocol::ftpUser);
    url.setPassword(protocol::ftpPassword);
    url.setPath(QStringLiteral("/media/kelvora-server-settings.tar.gz"));
    return url;
}

QString documentsOrHome()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return (QFileInfo(documents).isDir() ? documents : QDir::homePath()) + QLatin1Char('/');
}

// No extension: the dialog adds it.
QString defaultBackupName()
{
    return QLatin1String("kelvora-settings-backup-") +
           QDateTime::currentDateTime().toString(Qt::ISODate).replace(QLatin1Char(':'), QLatin1Char('-'));
}

} // namespace

ServerWidget::ServerWidget(QWidget *parent, udpHBClient *sharedClient)
    : QWidget(parent), ui(std::make_unique<Ui::ServerControl>()), client(sharedClient),
      defaultFolder(documentsOrHome()), udpSocket(new QUdpSocket(this)),
      network(new QNetworkAccessManager(this)), archiveUrl(archiveWithoutHost()),
      attemptsLeft(downloadAttempts)
{
    qRegisterMetaType<QNetworkReply::NetworkError>();
    ui->setupUi(this);
    setButtonsEnabled(false);
    connect(client, &udpHBClient::listUpdated, this, &ServerWidget::updateGUI);
    connect(client, &udpHBClient::n6BeaconReceived, this, &ServerWidget::updateGUI);

    connect(ui->backupButton, &QPushButton::clicked, this, &ServerWidget::startBackup);
    connect(ui->restoreButton, &QPushButton::clicked, this, &ServerWidget::startRestore);
    connect(ui->factoryButton, &QPushButton::clicked, this, &ServerWidget::startFactoryReset);

    pollTimer.setSingleShot(true);
    pollTimer.setInterval(pollIntervalMs);
    connect(&pollTimer, &QTimer::timeout, this, &ServerWidget::tryDownload);
    stallTimer.setSingleShot(true);
    stallTimer.setInterval(stallTimeoutMs);
    connect(&stallTimer, &QTimer::timeout, this, [this] {
        if (currentReply)
            currentReply->abort();
    });
    updateGUI();
}

ServerWidget::~ServerWidget()
{
    dropTransfer();
}

void ServerWidget::updateGUI()
{
    serverSerial = client->n6Device().online ? client->n6Device().serial : QString();
    serverAddress = client->serverAddress();
    archiveUrl.setHost(serverAddress.toString());
    ui->label_CurrentServer->setText(serverSerial.isEmpty() ? tr("No server configured.")
                                                            : tr("Current server:  ") + serverSerial);
    if (!busy && !serverAddress.isNull())
        setButtonsEnabled(true);
}

void ServerWidget::startBackup()
{
    if (serverAddress.isNull())
        return;
    const QPointer<ServerWidget> self = this;
    const QString chosen = archivedialog::run(
        archivedialog::forBackup(this, defaultFolder, defaultFolder + defaultBackupName()));
    if (!self || chosen.isEmpty())
        return;
    // An earlier backup that is still polling gives way to this one.
    dropTransfer();
    sendTwice(&ServerWidget::sendBackup);
    busy = true;
    setButtonsEnabled(false);
    disconnect(client, &udpHBClient::listUpdated, this, &ServerWidget::updateGUI);
    backupTarget = chosen;
    // The N6 that got the command is polled, also when another one has become the server meanwhile: that one
    // may hold an old archive.
    transferUrl = archiveUrl;
    attemptsLeft = downloadAttempts;
    pollTimer.start();
}

void ServerWidget::startRestore()
{
    if (serverAddress.isNull())
        return;
    const QPointer<ServerWidget> self = this;
    const QString chosen = archivedialog::run(archivedialog::forRestore(this, defaultFolder));
    if (!self || chosen.isEmpty())
        return;
    busy = true;
    setButtonsEnabled(false);
    // A backup that was still polling is given up, and with it its hold on the page.
    connect(client, &udpHBClient::listUpdated, this, &ServerWidget::updateGUI, Qt::UniqueConnection);
    uploadFile(chosen);
}

void ServerWidget::startFactoryReset()
{
    if (serverAddress.isNull())
        return;
    // A notice rather than a question: the box has one button, and closing it in any way leads on.
    if (showBox(QMessageBox::Warning, tr("Factory Reset"),
                tr("Warning: All settings will be deleted from the server.\nDo you want to continue?"),
                QMessageBox::Yes))
        sendTwice(&ServerWidget::sendFactoryReset);
}

void ServerWidget::sendBackup()
{
    sendCommand(n6BackupCommand());
}

void ServerWidget::sendRestore()
{
    sendCommand(n6RestoreCommand());
}

void ServerWidget::sendFactoryReset()
{
    sendCommand(n6FactoryResetCommand(serverSerial));
}

void ServerWidget::uploadFile(const QString &fileName)
{
    dropTransfer();
    lastError = QNetworkReply::NoError;
    transferUrl = archiveUrl;
    currentFile = new QFile(fileName);
    // From a file that cannot be read the manager would upload zero bytes and report success.
    if (!currentFile->open(QIODevice::ReadOnly) ||
        (currentFile->peek(1).isEmpty() && currentFile->error() != QFileDevice::NoError)) {
        uploadError(QNetworkReply::UnknownContentError);
        uploadFinished();
        return;
    }
    QNetworkReply *reply = network->put(freshRequest(), currentFile);
    connect(reply, &QNetworkReply::errorOccurred, this, &ServerWidget::uploadError);
    connect(reply, &QNetworkReply::finished, this, &ServerWidget::uploadFinished);
    watch(reply);
}

void ServerWidget::uploadError(QNetworkReply::NetworkError error)
{
    qDebug().noquote() << "upload error:" << error;
    lastError = error;
    busy = false;
}

void ServerWidget::uploadFinished()
{
    // Some servers confirm an archive that has arrived cut off, and a local file may fail under the upload.
    // When another N6 has become the server, or none is left, the restore command would miss the one that got
    // the archive. A server that was away only meanwhile does no harm.
    const bool whole =
        currentFile.isNull() || (currentFile->atEnd() && currentFile->error() == QFileDevice::NoError);
    if (lastError == QNetworkReply::NoError && !(whole && transferUrl == archiveUrl))
        uploadError(QNetworkReply::UnknownContentError);
    closeTransfer();
    if (lastError == QNetworkReply::NoError)
        sendTwice(&ServerWidget::sendRestore);
    reportLater(&ServerWidget::reportUpload);
}

void ServerWidget::reportUpload(int error)
{
    const bool closed = error == QNetworkReply::NoError
                            ? showBox(QMessageBox::Information, tr("Backup upload complete!"),
                                      tr("Settings upload complete."))
                            : showBox(QMessageBox::Critical, tr("Settings upload failed!"),
                                      tr("Can not upload to system.\nTry again when server is available."));
    // The buttons come back with the next heartbeat.
    if (closed && !isUnderWay())
        busy = false;
}

void ServerWidget::downloadFile(const QString &fileName)
{
    backupTarget = fileName;
    transferUrl = archiveUrl;
    tryDownload();
}

void ServerWidget::tryDownload()
{
    dropTransfer();
    lastError = QNetworkReply::NoError;
    currentFile = new QFile(archivefile::partName(backupTarget));
    if (!currentFile->open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        const QString text = currentFile->fileName() + QLatin1Char('\n') + currentFile->errorString();
        closeTransfer();
        showBox(QMessageBox::Critical, tr("Unable to create backup!"), text);
        return;
    }
    QNetworkReply *reply = network->get(freshRequest());
    connect(reply, &QNetworkReply::readyRead, this, &ServerWidget::downloadReadyRead);
    connect(reply, &QNetworkReply::errorOccurred, this, &ServerWidget::downloadError);
    connect(reply, &QNetworkReply::finished, this, &ServerWidget::downloadFinished);
    watch(reply);
}

void ServerWidget::downloadReadyRead()
{
    if (!currentReply || !currentFile)
        return;
    const QByteArray received = currentReply->readAll();
    if (currentFile->write(received) != received.size())
        currentReply->abort();
}

void ServerWidget::downloadError(QNetworkReply::NetworkError error)
{
    qDebug().noquote() << "download error:" << error;
    lastError = error;
    --attemptsLeft;
    busy = false;
}

void ServerWidget::downloadFinished()
{
    qDebug().noquote() << "download finished";
    if (!currentFile)
        return;
    const QString part = currentFile->fileName();
    if (lastError == QNetworkReply::NoError && !sealPartFile())
        downloadError(QNetworkReply::UnknownContentError);
    closeTransfer();
    if (lastError == QNetworkReply::NoError)
        archivefile::takeFinalName(part, backupTarget);
    else
        QFile::remove(part);
    if (lastError == QNetworkReply::ContentNotFoundError && attemptsLeft >= 1) {
        qDebug().noquote() << "backup not ready" << attemptsLeft << "attempts left";
        pollTimer.start();
        return;
    }
    reportLater(&ServerWidget::reportDownload);
}

void ServerWidget::reportDownload(int error)
{
    bool closed = false;
    if (error == QNetworkReply::NoError)
        closed = showBox(QMessageBox::Information, tr("Backup download complete!"),
                         tr("Settings backup complete."));
    else if (error == QNetworkReply::ContentNotFoundError)
        closed = showBox(QMessageBox::Warning, tr("Backup download failed!"),
                         tr("Kelvora server was not able to backup your settings."));
    else
        closed = showBox(QMessageBox::Critical, tr("Backup download failed!"),
                         tr("Can not access backup on server.\nTry again when a server is available."));
    if (!closed || isUnderWay())
        return;
    busy = false;
    connect(client, &udpHBClient::listUpdated, this, &ServerWidget::updateGUI, Qt::UniqueConnection);
    updateGUI();
}

// Finds what the network layer does not report: an archive that ends early, and a disk that does not take it.
bool ServerWidget::sealPartFile()
{
    const QVariant announced =
        currentReply ? currentReply->header(QNetworkRequest::ContentLengthHeader) : QVariant();
    return archivefile::flushToDisk(*currentFile) &&
           (!announced.isValid() || announced.toLongLong() == currentFile->size());
}

// The manager keeps an idle connection for minutes, and would wait in vain on one to an N6 that has restarted
// since.
QNetworkRequest ServerWidget::freshRequest()
{
    network->clearConnectionCache();
    return QNetworkRequest(transferUrl);
}

void ServerWidget::watch(QNetworkReply *reply)
{
    currentReply = reply;
    const auto keepWaiting = [this] { stallTimer.start(); };
    connect(reply, &QNetworkReply::downloadProgress, this, keepWaiting);
    connect(reply, &QNetworkReply::uploadProgress, this, keepWaiting);
    stallTimer.start();
}

// A box runs an event loop of its own, in which the page may go, and the reply with it: none of the reply's
// signals may be on the stack then. Nor would the reply be deleted before the box is closed.
void ServerWidget::reportLater(void (ServerWidget::*report)(int))
{
    QTimer::singleShot(0, this, [this, report, error = lastError] { (this->*report)(error); });
}

// A transfer may have been started between the end of an older one and the closing of its box.
bool ServerWidget::isUnderWay() const
{
    return !currentReply.isNull() || pollTimer.isActive();
}

void ServerWidget::closeTransfer()
{
    stallTimer.stop();
    if (currentReply) {
        currentReply->disconnect(this);
        currentReply->abort();
        // Until its reply has gone, an aborted upload may read on: its file goes along.
        if (currentFile && currentFile->isReadable()) {
            currentFile->setParent(currentReply);
            currentFile.clear();
        }
        currentReply->deleteLater();
        currentReply.clear();
    }
    delete currentFile;
}

// Ends what is under way without a word, as it is replaced or the page goes.
void ServerWidget::dropTransfer()
{
    pollTimer.stop();
    const QString part = currentFile && currentFile->isWritable() ? currentFile->fileName() : QString();
    closeTransfer();
    if (!part.isEmpty())
        QFile::remove(part);
}

void ServerWidget::setButtonsEnabled(bool enabled)
{
    ui->backupButton->setEnabled(enabled);
    ui->restoreButton->setEnabled(enabled);
    ui->factoryButton->setEnabled(enabled);
}

void ServerWidget::sendTwice(void (ServerWidget::*send)())
{
    (this->*send)();
    // What was meant for one N6 must not be repeated to another.
    QTimer::singleShot(protocol::commandRepeatMs, this, [this, send, receiver = serverAddress] {
        if (serverAddress == receiver)
            (this->*send)();
    });
}

void ServerWidget::sendCommand(const QByteArray &datagram)
{
    // The second copy may be due after the server has gone.
    if (!serverAddress.isNull())
        udpSocket->writeDatagram(datagram, serverAddress, protocol::commandPort);
}

// True when the user closed the box; false when the page died or the program was ended under it, after which
// the page must not be touched.
bool ServerWidget::showBox(QMessageBox::Icon icon, const QString &title, const QString &text,
                           QMessageBox::StandardButtons buttons)
{
    const QPointer<QMessageBox> box = new QMessageBox(icon, title, text, buttons, this);
    box->exec();
    if (!box)
        return false;
    const bool closed = !box->isVisible();
    delete box;
    return closed;
}
