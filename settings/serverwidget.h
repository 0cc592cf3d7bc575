// The settings page: back up, restore and reset the settings that the N6 holds for the whole system. The main
// window owns the page; the page owns the one transfer that may be under way.
#pragma once

#include <QHostAddress>
#include <QMessageBox>
#include <QNetworkReply>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QUrl>
#include <QWidget>

#include <memory>

class QFile;
class QNetworkAccessManager;
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
    void uploadFinished();
    void uploadError(QNetworkReply::NetworkError error);
    /// Tries once to fetch the archive for this file; it grows under a ".part" name.
    void downloadFile(const QString &fileName);
    void downloadFinished();
    void downloadReadyRead();
    void downloadError(QNetworkReply::NetworkError error);

private:
    void setButtonsEnabled(bool enabled);
    void sendCommand(const QByteArray &datagram);
    void sendTwice(void (ServerWidget::*send)());
    QNetworkRequest freshRequest();
    void watch(QNetworkReply *reply);
    void tryDownload();
    bool sealPartFile();
    void reportLater(void (ServerWidget::*report)(int error));
    void reportUpload(int error);
    void reportDownload(int error);
    bool isUnderWay() const;
    void closeTransfer();
    void dropTransfer();
    bool showBox(QMessageBox::Icon icon, const QString &title, const QString &text,
                 QMessageBox::StandardButtons buttons = QMessageBox::Ok);

    std::unique_ptr<Ui::ServerControl> ui;
    udpHBClient *client;
    QHostAddress serverAddress;
    QString serverSerial;
    QString defaultFolder;
    QUdpSocket *udpSocket;
    QNetworkAccessManager *network;
    QUrl archiveUrl;
    QUrl transferUrl; // as archiveUrl was when the transfer under way was begun
    QPointer<QFile> currentFile;
    QPointer<QNetworkReply> currentReply;
    int lastError = 0;
    int attemptsLeft;
    bool busy = false;
    QString backupTarget;
    QTimer pollTimer{this};
    QTimer stallTimer{this};
};
