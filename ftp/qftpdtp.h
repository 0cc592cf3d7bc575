// The data connection of one FTP session. It connects to where the server says or waits for the server to
// connect, moves bytes between the socket and a device or memory, and turns listings into entries. What a
// transfer is, an upload, a download or a listing, is said once, when it is set up. Its interpreter owns it.
#pragma once

#include "ftp/linesplitter.h"
#include "ftp/qurlinfo.h"

#include <QAbstractSocket>
#include <QBuffer>
#include <QByteArray>
#include <QHostAddress>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTcpServer>

#include <memory>

class QIODevice;
class QTcpSocket;
class SessionEvents;
class UploadPump;

class QFtpDTP : public QObject
{
    Q_OBJECT

public:
    enum ConnectState { CsHostFound, CsConnected, CsClosed, CsHostNotFound, CsConnectionRefused };
    Q_ENUM(ConnectState)

    enum class Transfer {
        None,
        Upload,
        Download,     ///< into the device
        ReadByCaller, ///< a download whose bytes wait for read() and readAll()
        Listing,
        Abandoned ///< whatever still arrives is thrown away
    };

    /// sessionEvents has to outlive it.
    QFtpDTP(QObject *interpreter, SessionEvents *sessionEvents);
    ~QFtpDTP() override;

    // Each ends the last transfer and forgets all of it: connection, source or sink, error and unread data.

    /// The bytes are copied.
    void prepareUpload(const QByteArray &bytes);
    void prepareUpload(QIODevice *source);
    /// Into the sink, or for read() and readAll() where there is none.
    void prepareDownload(QIODevice *sink);
    void prepareListing() { setTransfer(Transfer::Listing); }
    void prepareNoTransfer() { setTransfer(Transfer::None); }

    Transfer transfer() const { return kind; }
    /// Uploads these bytes; they are copied.
    void setData(const QByteArray *bytes);
    /// Uploads from or downloads into this device, which has to be open.
    void setDevice(QIODevice *sourceOrSink);
    /// Starts the count of a transfer; 0 when its size is not known.
    void setBytesTotal(qint64 bytes);

    /// What this side did wrong, or what the server wrote instead of a listing.
    bool hasError() const { return !err.isNull(); }
    QString errorMessage() const { return err; }
    void clearError() { err = QString(); }
    /// Why the transfer, which the server calls complete, is not; null when it is.
    QString shortfall() const;

    /// Passive mode: connects to where the server listens.
    void connectToHost(const QString &host, quint16 port);
    /// Active mode: waits for the server, and for nobody else, to connect; returns the port, or -1.
    int setupListener(const QHostAddress &address, const QHostAddress &server);
    /// Accepts a connection that has already arrived; does not block.
    void waitForConnection();
    /// Closes the connection at once. Nothing is told of it.
    void abortConnection();
    /// Stops a transfer, but leaves its connection open: for a server its end would be that of the file.
    void abandon();
    /// The command is over. What the caller has not read yet stays for him.
    void endTransfer();
    QAbstractSocket::SocketState state() const;
    /// Bytes may still go to and fro, or the end of the connection has not been told yet.
    bool isOpen() const { return connection == Connection::Open; }
    /// The server's last word comes too early: its data connection is still open. That of an upload for which
    /// there was no go-ahead is no reason to wait.
    bool isBusy() const { return isOpen() && (kind != Transfer::Upload || pump); }
    bool isAwaitingServer() const { return connection == Connection::Listening; }
    /// The other side has ended the connection too early, as shortfall() tells.
    bool isCutShort() const;
    /// Leaves the socket to the caller.
    std::unique_ptr<QTcpSocket> takeSocket();

    /// Starts the upload: the server has given its go-ahead.
    void writeData();

    qint64 bytesAvailable() const;
    qint64 read(char *buffer, qint64 maxlen);
    QByteArray readAll();

signals:
    void listInfo(const QUrlInfo &info);
    void readyRead();
    void dataTransferProgress(qint64 done, qint64 total);
    void connectState(int connectState);
    /// The transfer has gone on, before anyone is told how far.
    void bytesMoved();
    /// The transfer cannot go on for a reason on this side, which errorMessage() tells.
    void failed();

public slots:
    void socketConnected();
    void socketReadyRead();
    void socketError(QAbstractSocket::SocketError socketError);
    void socketConnectionClosed();
    void socketBytesWritten(qint64 bytes);
    void setupSocket();
    void dataReadyRead();

private:
    enum class Connection { None, Listening, Connecting, Open, Closed };

    void setTransfer(Transfer next);
    static QString sourceFailure();
    bool isAllSent() const;
    void forgetUpload();
    void useSocket(QTcpSocket *next, const QString &name);
    void countSent(qint64 bytes);
    void finishUpload();
    void fail(const QString &reason);
    void discardArrived();
    void readListing();
    void readIntoDevice();
    void announceArrived();

    SessionEvents *const events;
    Transfer kind = Transfer::None;
    Connection connection = Connection::None;
    std::unique_ptr<QTcpSocket> socket;
    QTcpServer listener;
    QHostAddress serverAddress;
    QBuffer bytesToUpload;
    QPointer<QIODevice> device;
    std::unique_ptr<UploadPump> pump;
    FtpLineSplitter listing;
    qint64 bytesDone = 0;
    qint64 bytesTotal = 0;
    QString err;
};
