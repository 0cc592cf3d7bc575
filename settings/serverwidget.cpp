#include "settings/serverwidget.h"

#include "discovery/n6commands.h"
#include "discovery/protocol.h"
#include "discovery/udphbclient.h"
#include "settings/archivedialog.h"
#include "ui_servercontrol.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QPointer>
#include <QSpacerItem>
#include <QStandardPaths>
#include <QTimer>
#include <QUdpSocket>

namespace
{

// Room in a title bar for its buttons, beside the title.
constexpr int titleBarButtonsPx = 140;

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

// Boxes are as wide as their text, which is shorter than some titles.
void makeRoomForTitle(QMessageBox &box)
{
    const int width = box.fontMetrics().horizontalAdvance(box.windowTitle()) + titleBarButtonsPx;
    if (auto *layout = qobject_cast<QGridLayout *>(box.layout()))
        layout->addItem(new QSpacerItem(width, 0), layout->rowCount(), 0, 1, layout->columnCount());
}

} // namespace

ServerWidget::ServerWidget(QWidget *parent, udpHBClient *sharedClient)
    : QWidget(parent), form(std::make_unique<Ui::ServerControl>()), client(sharedClient),
      defaultFolder(documentsOrHome()), udpSocket(new QUdpSocket(this)), archiveUrl(archiveWithoutHost())
{
    qRegisterMetaType<QNetworkReply::NetworkError>();
    form->setupUi(this);
    form->label_CurrentServer->setTextFormat(Qt::PlainText);
    setButtonsEnabled(false);
    connect(client, &udpHBClient::listUpdated, this, &ServerWidget::updateGUI);
    connect(client, &udpHBClient::n6BeaconReceived, this, &ServerWidget::updateGUI);

    connect(form->backupButton, &QPushButton::clicked, this, &ServerWidget::startBackup);
    connect(form->restoreButton, &QPushButton::clicked, this, &ServerWidget::startRestore);
    connect(form->factoryButton, &QPushButton::clicked, this, &ServerWidget::startFactoryReset);

    connect(&transfer, &ArchiveTransfer::attemptFailed, this, [this] { busy = false; });
    // The page answers with a box, which runs an event loop of its own: nothing of the transfer may be on the
    // stack of it.
    connect(&transfer, &ArchiveTransfer::ended, this, &ServerWidget::transferEnded, Qt::QueuedConnection);
    updateGUI();
}

ServerWidget::~ServerWidget() = default;

void ServerWidget::updateGUI()
{
    serverSerial = client->n6Device().online ? client->n6Device().serial : QString();
    serverAddress = client->serverAddress();
    archiveUrl.setHost(serverAddress.toString());
    //: The serial number of the N6 follows at once: keep the blanks
    const QString current = tr("Current server:  ") + serverSerial;
    form->label_CurrentServer->setText(serverSerial.isEmpty() ? tr("No server configured.") : current);
    if (!busy && !serverAddress.isNull())
        setButtonsEnabled(true);
    followTarget();
}

// The N6 that is writing an archive may get another address meanwhile, or another one may get its address.
void ServerWidget::followTarget()
{
    if (serverSerial.isEmpty() || target.serial.isEmpty())
        return;
    const QHostAddress &heardFrom = client->n6Device().address;
    if (serverSerial == target.serial) {
        target.address = heardFrom;
        transfer.follow(heardFrom.toString());
    } else if (heardFrom == target.address) {
        transfer.giveUp();
    }
}

void ServerWidget::startBackup()
{
    if (serverAddress.isNull())
        return;
    const Instrument asked = shownServer();
    const QPointer<ServerWidget> self = this;
    const QString chosen =
        archivedialog::fileForBackup(this, defaultFolder, defaultFolder + defaultBackupName());
    if (!self || chosen.isEmpty())
        return;
    if (!isMeant(asked) && !isServerNow(asked.serial)) {
        transferEnded(ArchiveTransfer::Outcome::FetchFailed, QString());
        return;
    }
    updateGUI();
    // An earlier backup that is still polling gives way to this one.
    target = shownServer();
    transfer.fetchSoon(archiveUrl, chosen);
    sendTwice([this] { sendBackup(); });
    setBusy();
    disconnect(client, &udpHBClient::listUpdated, this, &ServerWidget::updateGUI);
}

void ServerWidget::startRestore()
{
    if (serverAddress.isNull())
        return;
    const Instrument asked = shownServer();
    const QPointer<ServerWidget> self = this;
    const QString chosen = archivedialog::fileForRestore(this, defaultFolder);
    if (!self || chosen.isEmpty())
        return;
    // A backup that was still polling is given up, and with it its hold on the page.
    transfer.drop();
    connect(client, &udpHBClient::listUpdated, this, &ServerWidget::updateGUI, Qt::UniqueConnection);
    if (!isMeant(asked)) {
        endRestore(false);
        return;
    }
    updateGUI();
    setBusy();
    uploadFile(chosen);
}

void ServerWidget::startFactoryReset()
{
    if (serverAddress.isNull())
        return;
    const Instrument asked = shownServer();
    // A notice rather than a question: the box has one button, and closing it in any way leads on.
    //: The title of a box
    if (showBox(QMessageBox::Warning, tr("Factory Reset"),
                //: However the box is closed, all settings are then deleted: it has to be unmistakable
                tr("Warning: All settings will be deleted from the server.\nDo you want to continue?"),
                QMessageBox::Yes) &&
        isMeant(asked)) {
        updateGUI();
        sendTwice([this] { sendFactoryReset(); });
    }
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
    target = shownServer();
    transfer.store(archiveUrl, fileName);
}

void ServerWidget::downloadFile(const QString &fileName)
{
    target = shownServer();
    transfer.fetch(archiveUrl, fileName);
}

void ServerWidget::transferEnded(ArchiveTransfer::Outcome outcome, const QString &detail)
{
    using Outcome = ArchiveTransfer::Outcome;
    switch (outcome) {
    case Outcome::Fetched:
        //: The title of a box, like all these with "!"
        endBackup(QMessageBox::Information, tr("Backup download complete!"), tr("Settings backup complete."));
        break;
    case Outcome::NotReady:
        endBackup(QMessageBox::Warning, tr("Backup download failed!"),
                  tr("Kelvora server was not able to backup your settings."));
        break;
    case Outcome::FetchFailed:
        endBackup(QMessageBox::Critical, tr("Backup download failed!"),
                  tr("Can not access backup on server.\nTry again when a server is available."));
        break;
    case Outcome::NotPlaced:
        endBackup(QMessageBox::Critical, tr("Unable to create backup!"), detail);
        break;
    case Outcome::NoPartFile:
        // The buttons stay as they are.
        showBox(QMessageBox::Critical, tr("Unable to create backup!"), detail);
        break;
    case Outcome::Stored:
    case Outcome::StoreFailed:
        endRestore(outcome == Outcome::Stored);
        break;
    }
}

void ServerWidget::endBackup(QMessageBox::Icon icon, const QString &title, const QString &text)
{
    // Another transfer may have been started while the box was open.
    if (!showBox(icon, title, text) || transfer.isUnderWay())
        return;
    busy = false;
    connect(client, &udpHBClient::listUpdated, this, &ServerWidget::updateGUI, Qt::UniqueConnection);
    updateGUI();
}

void ServerWidget::endRestore(bool isStored)
{
    // The restore command must not reach another instrument than the one that got the archive.
    const bool isComplete = isStored && isMeant(target);
    if (isComplete)
        sendTwice([this] { sendRestore(); });
    else
        busy = false;
    const bool closed = isComplete
                            ? showBox(QMessageBox::Information, tr("Backup upload complete!"),
                                      tr("Settings upload complete."))
                            : showBox(QMessageBox::Critical, tr("Settings upload failed!"),
                                      tr("Can not upload to system.\nTry again when server is available."));
    // The buttons come back with the next heartbeat.
    if (closed && !transfer.isUnderWay())
        busy = false;
}

// As the client knows it at this moment. What the page shows follows with the next heartbeat only.
ServerWidget::Instrument ServerWidget::currentServer() const
{
    const N6Device &n6 = client->n6Device();
    return {client->serverAddress(), n6.online ? n6.serial : QString()};
}

// Whether the user's choice still holds: boxes, dialogs and transfers take their time.
bool ServerWidget::isMeant(const Instrument &instrument) const
{
    return currentServer() == instrument;
}

// Whether the N6 with this serial is the server, at whichever address.
bool ServerWidget::isServerNow(const QString &serial) const
{
    return !serial.isEmpty() && isMeant({client->n6Device().address, serial});
}

void ServerWidget::setBusy()
{
    busy = true;
    setButtonsEnabled(false);
}

void ServerWidget::setButtonsEnabled(bool enabled)
{
    form->backupButton->setEnabled(enabled);
    form->restoreButton->setEnabled(enabled);
    form->factoryButton->setEnabled(enabled);
}

template <typename Send>
void ServerWidget::sendTwice(Send send)
{
    send();
    // What was meant for one N6 must not be repeated to another.
    QTimer::singleShot(protocol::commandRepeatMs, this, [this, send, receiver = shownServer()] {
        if (isMeant(receiver))
            send();
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
    // The window's, not the page's: a page that is locked meanwhile would lock its box, and the window behind
    // it.
    const QPointer<QMessageBox> box = new QMessageBox(icon, title, text, buttons, window());
    connect(this, &QObject::destroyed, box, &QObject::deleteLater);
    // File and device names are shown as they are.
    box->setTextFormat(Qt::PlainText);
    makeRoomForTitle(*box);
    box->exec();
    if (!box)
        return false;
    const bool closed = !box->isVisible();
    delete box;
    return closed;
}
