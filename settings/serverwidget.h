// The settings page: back up, restore and reset the settings that the N6 holds for the whole system. The main
// window owns the page; the page owns the one transfer that may be under way.
#pragma once

#include "settings/archivetransfer.h"

#include <QHostAddress>
#include <QMessageBox>
#include <QNetworkReply>
#include <QString>
#include <QUrl>
#include <QWidget>

#include <memory>

class QUdpSocket;
class udpHBClient;

namespace Ui
{
class ServerControl;
}

class ServerWidget : public QWidget
{
    Q_OBJECT

public:
    /// The client must outlive the page.
    ServerWidget(QWidget *parent, udpHBClient *sharedClient);
    /// Drops a transfer under way; no part of an archive stays behind.
    ~ServerWidget() override;

public slots:
    /// Shows what the client knows now. Buttons are only ever enabled here, never disabled.
    void updateGUI();
    /// Asks for a file and has the N6 write its archive, then polls until that can be fetched.
    void startBackup();
    /// Asks for a file and uploads it.
    void startRestore();
    /// Announces the reset and, however the box is closed, sends it.
    void startFactoryReset();
    /// The three commands go to the server once each; nowhere while none is known.
    void sendBackup();
    void sendRestore();
    void sendFactoryReset();
    /// Uploads a local archive to the N6, which is then told to take it over.
    void uploadFile(const QString &fileName);
    void uploadFinished() { transfer.uploadFinished(); }
    void uploadError(QNetworkReply::NetworkError error) { transfer.uploadError(error); }
    /// Fetches the archive for this file; it grows under a ".part" name.
    void downloadFile(const QString &fileName);
    void downloadFinished() { transfer.downloadFinished(); }
    void downloadReadyRead() { transfer.downloadReadyRead(); }
    void downloadError(QNetworkReply::NetworkError error) { transfer.downloadError(error); }

private:
    /// Who holds the settings. A command names its receiver by both, so that none reaches another instrument.
    struct Instrument {
        QHostAddress address;
        QString serial; ///< empty while the N6 itself is not heard
        bool operator==(const Instrument &other) const
        {
            return address == other.address && serial == other.serial;
        }
    };

    Instrument shownServer() const { return {serverAddress, serverSerial}; }
    Instrument currentServer() const;
    bool isMeant(const Instrument &instrument) const;
    bool isServerNow(const QString &serial) const;
    void followTarget();
    void setBusy();
    void setButtonsEnabled(bool enabled);
    void sendCommand(const QByteArray &datagram);
    template <typename Send>
    void sendTwice(Send send);
    void transferEnded(ArchiveTransfer::Outcome outcome, const QString &detail);
    void endBackup(QMessageBox::Icon icon, const QString &title, const QString &text);
    void endRestore(bool isStored);
    bool showBox(QMessageBox::Icon icon, const QString &title, const QString &text,
                 QMessageBox::StandardButtons buttons = QMessageBox::Ok);

    std::unique_ptr<Ui::ServerControl> form;
    udpHBClient *client;
    QHostAddress serverAddress;
    QString serverSerial;
    QString defaultFolder;
    QUdpSocket *udpSocket;
    QUrl archiveUrl;
    Instrument target; // of the transfer under way
    bool busy = false;
    ArchiveTransfer transfer{this};
};
