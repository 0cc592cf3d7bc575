// The data connection of one FTP session. It connects to where the server says or waits for the server to
// connect, moves bytes between the socket and a device or memory, and turns listings into entries. Its
// interpreter owns it.
#pragma once

#include "ftp/linesplitter.h"
#include "ftp/qurlinfo.h"

#include <QAbstractSocket>
#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTcpServer>

class QFtpPI;
class QHostAddress;
class QIODevice;
class QTcpSocket;

class QFtpDTP : public QObject
{
    Q_OBJECT

public:
    enum ConnectState { CsHostFound, CsConnected, CsClosed, CsHostNotFound, CsConnectionRefused };
    Q_ENUM(ConnectState)

    explicit QFtpDTP(QFtpPI *interpreter);
    ~QFtpDTP() override;

    /// Uploads these bytes next; they are copied.
    void setData(const QByteArray *bytes);
    /// Uploads from or downloads into this device next. nullptr: there should be one, but it cannot be used;
    /// an upload then ends with an error.
    void setDevice(QIODevice *sourceOrSink);
    /// Starts the count of a transfer; 0 when its size is not known.
    void setBytesTotal(qint64 bytes);
    /// Forgets everything of the last transfer: source, sink, error and unread data.
    void resetTransfer();

    bool hasError() const { return !err.isNull(); }
    QString errorMessage() const { return err; }
    void clearError() { err = QString(); }

    /// Passive mode: connects to where the server listens.
    void connectToHost(const QString &host, quint16 port);
    /// Active mode: waits for the server to connect; returns the port, or -1.
    int setupListener(const QHostAddress &address);
    /// Accepts a connection that has already arrived; does not block.
    void waitForConnection();
    void abortConnection();
    QAbstractSocket::SocketState state() const;

    /// Starts the upload, or goes on with it.
    void writeData();

    qint64 bytesAvailable() const;
    qint64 read(char *buffer, qint64 maxlen);
    QByteArray readAll();

signals:
    void listInfo(const QUrlInfo &info);
    void readyRead();
    void dataTransferProgress(qint64 done, qint64 total);
    void connectState(int connectState);

public slots:
    void socketConnected();
    void socketReadyRead();
    void socketError(QAbstractSocket::SocketError socketError);
    void socketConnectionClosed();
    void socketBytesWritten(qint64 bytes);
    void setupSocket();
    void dataReadyRead();

private:
    void replaceSocket(QTcpSocket *next, const QString &name);
    void forgetData();
    void writeBytes();
    void writeBlock();
    void sendBlock(const char *block, qint64 count);
    void pushGatheredBlocks();
    bool isSourceCutShort(qint64 count) const;
    void finishUpload();
    void reportWritten(qint64 bytes);
    void pumpLater();
    void pumpBlocks();
    void discardArrived();
    bool isRetrieving() const;
    void readListing();
    void readIntoDevice();

    QTcpSocket *socket = nullptr;
    QTcpServer listener;
    QFtpPI *const pi;
    QString err;
    qint64 bytesDone = 0;
    qint64 bytesTotal = 0;
    bool callWriteData = false;
    qint64 bytesHandedOver = 0; // to the system by an unbuffered socket, and not reported yet
    bool isPumping = false;
    int blocksGathered = 0;
    QByteArray bytesFromSocket;

    bool is_ba = false;
    QByteArray data;
    bool hasDevice = false;
    QPointer<QIODevice> device;
    FtpLineSplitter listing;
};
