#include "ftp/qftpdtp.h"

#include "ftp/ftplisting.h"
#include "ftp/networksession.h"
#include "ftp/sessionevents.h"
#include "ftp/uploadpump.h"

#include <QOperatingSystemVersion>
#include <QTcpSocket>

#include <algorithm>
#include <utility>

namespace
{

// What a download holds unread: the network waits for a slow disk instead of filling the memory.
constexpr qint64 readBufferBytes = qint64(64) * 1024;

} // namespace

QFtpDTP::QFtpDTP(QObject *interpreter, SessionEvents *sessionEvents)
    : QObject(interpreter), events(sessionEvents), listener(this)
{
    listener.setObjectName(QStringLiteral("QFtpDTP active state server"));
    events->connectQueued(&listener, &QTcpServer::newConnection, this, [this] { setupSocket(); });
}

QFtpDTP::~QFtpDTP() = default;

void QFtpDTP::prepareUpload(const QByteArray &bytes)
{
    setTransfer(Transfer::Upload);
    setData(&bytes);
    setBytesTotal(bytes.size());
}

void QFtpDTP::prepareUpload(QIODevice *source)
{
    setTransfer(Transfer::Upload);
    setDevice(source);
    setBytesTotal(source->isSequential() ? 0 : source->size());
}

void QFtpDTP::prepareDownload(QIODevice *sink)
{
    setTransfer(sink ? Transfer::Download : Transfer::ReadByCaller);
    setDevice(sink);
}

void QFtpDTP::setTransfer(Transfer next)
{
    abortConnection();
    socket.reset();
    connection = Connection::None;
    kind = next;
    forgetUpload();
    listing.clear();
    bytesDone = 0;
    bytesTotal = 0;
    clearError();
}

void QFtpDTP::forgetUpload()
{
    bytesToUpload.close();
    bytesToUpload.setData(QByteArray());
}

void QFtpDTP::setData(const QByteArray *bytes)
{
    bytesToUpload.setData(*bytes);
    bytesToUpload.open(QIODevice::ReadOnly);
    setDevice(&bytesToUpload);
}

void QFtpDTP::setDevice(QIODevice *sourceOrSink)
{
    device = sourceOrSink;
}

void QFtpDTP::setBytesTotal(qint64 bytes)
{
    bytesTotal = bytes;
    bytesDone = 0;
    emit dataTransferProgress(0, bytesTotal);
}

QString QFtpDTP::sourceFailure()
{
    return tr("The file to upload cannot be read");
}

bool QFtpDTP::isAllSent() const
{
    // A stream has no end that could be missed, but what was never connected has taken none of it.
    const bool isStream = !device.isNull() && device->isSequential();
    return pump && (pump->hasSentAll() || (isStream && pump->hasStarted()));
}

QString QFtpDTP::shortfall() const
{
    if (kind == Transfer::Abandoned)
        return tr("Aborted");
    if (kind == Transfer::Upload && !isAllSent())
        return tr("The data connection ended before all of the file was sent");
    const bool isDownload = kind == Transfer::Download || kind == Transfer::ReadByCaller;
    if (isDownload && bytesDone + bytesAvailable() < bytesTotal)
        return tr("The data connection ended before all of the file had arrived");
    return {};
}

void QFtpDTP::connectToHost(const QString &host, quint16 port)
{
    useSocket(new QTcpSocket(this), QStringLiteral("QFtpDTP Passive state socket"));
    connection = Connection::Connecting;
    copyNetworkSession(this, socket.get());
    // For an upload saves the socket's own copy of each block. On Windows the event loop turns for ever, and
    // does nothing else, once the other side of such a socket has closed.
    const bool savesCopies = kind == Transfer::Upload &&
                             QOperatingSystemVersion::currentType() != QOperatingSystemVersion::Windows;
    socket->connectToHost(host, port,
                          QIODevice::ReadWrite | (savesCopies ? QIODevice::Unbuffered : QIODevice::NotOpen));
}

int QFtpDTP::setupListener(const QHostAddress &address, const QHostAddress &server)
{
    copyNetworkSession(this, &listener);
    serverAddress = server;
    if (!listener.isListening() && !listener.listen(address, 0))
        return -1;
    connection = Connection::Listening;
    return listener.serverPort();
}

void QFtpDTP::setupSocket()
{
    while (QTcpSocket *const accepted = listener.nextPendingConnection()) {
        if (!accepted->peerAddress().isEqual(serverAddress)) {
            delete accepted;
            continue;
        }
        useSocket(accepted, QStringLiteral("QFtpDTP Active state socket"));
        connection = Connection::Open;
        listener.close();
        // The server may have answered before it connected, and sent or closed before it was accepted.
        if (pump)
            pump->start(socket.get());
        if (socket->bytesAvailable() > 0)
            events->post(socket.get(), [this] { socketReadyRead(); });
        if (state() == QAbstractSocket::UnconnectedState)
            events->post(socket.get(), [this] { socketConnectionClosed(); });
        return;
    }
}

void QFtpDTP::useSocket(QTcpSocket *next, const QString &name)
{
    socket.reset(next);
    socket->setParent(this);
    socket->setObjectName(name);
    // The caller may read when it is all there.
    socket->setReadBufferSize(kind == Transfer::ReadByCaller ? 0 : readBufferBytes);
    events->connectQueued(next, &QTcpSocket::connected, this, [this] { socketConnected(); });
    events->connectQueued(next, &QTcpSocket::readyRead, this, [this] { socketReadyRead(); });
    events->connectQueued(next, &QTcpSocket::errorOccurred, this,
                          [this](QAbstractSocket::SocketError error) { socketError(error); });
    events->connectQueued(next, &QTcpSocket::disconnected, this, [this] { socketConnectionClosed(); });
    events->connectQueued(next, &QTcpSocket::bytesWritten, this,
                          [this](qint64 bytes) { socketBytesWritten(bytes); });
}

void QFtpDTP::waitForConnection()
{
    if (listener.isListening())
        listener.waitForNewConnection(0);
    setupSocket();
}

void QFtpDTP::abortConnection()
{
    pump.reset();
    listener.close();
    if (connection != Connection::None)
        connection = Connection::Closed;
    if (kind != Transfer::None)
        kind = Transfer::Abandoned;
    if (socket)
        socket->abort();
}

void QFtpDTP::abandon()
{
    // A transfer whose connection has ended is over already.
    if (kind == Transfer::None || connection == Connection::Closed)
        return;
    kind = Transfer::Abandoned;
    pump.reset();
    if (!isOpen())
        abortConnection();
}

void QFtpDTP::endTransfer()
{
    if (isOpen() || kind != Transfer::ReadByCaller)
        abortConnection();
    listener.close();
    kind = Transfer::None;
    forgetUpload();
}

QAbstractSocket::SocketState QFtpDTP::state() const
{
    return socket ? socket->state() : QAbstractSocket::UnconnectedState;
}

bool QFtpDTP::isCutShort() const
{
    return connection == Connection::Closed && !shortfall().isNull();
}

std::unique_ptr<QTcpSocket> QFtpDTP::takeSocket()
{
    return std::move(socket);
}

void QFtpDTP::writeData()
{
    if (kind != Transfer::Upload || pump)
        return;
    if (!device) {
        fail(sourceFailure());
        return;
    }
    pump = std::make_unique<UploadPump>(device, bytesTotal, events, this);
    connect(pump.get(), &UploadPump::sent, this, &QFtpDTP::countSent);
    connect(pump.get(), &UploadPump::sentAll, this, &QFtpDTP::finishUpload);
    connect(pump.get(), &UploadPump::sourceFailed, this, [this] { fail(sourceFailure()); });
    // A stream that has paused goes on, or has come to its end.
    events->connectQueued(device.data(), &QIODevice::readyRead, pump.get(), [this] { dataReadyRead(); });
    events->connectQueued(device.data(), &QIODevice::readChannelFinished, pump.get(),
                          [this] { dataReadyRead(); });
    // An unbuffered socket leaves it to its owner to end a broken connection.
    connect(pump.get(), &UploadPump::refused, this, [this] { socket->abort(); });
    if (connection == Connection::Open)
        pump->start(socket.get());
}

void QFtpDTP::countSent(qint64 bytes)
{
    bytesDone += bytes;
    emit bytesMoved();
    emit dataTransferProgress(bytesDone, bytesTotal);
}

void QFtpDTP::finishUpload()
{
    const QPointer<QFtpDTP> self = this;
    if (bytesDone == 0)
        emit dataTransferProgress(0, bytesTotal);
    // An abort in a slot leaves the connection open until the server has answered it.
    if (self && kind == Transfer::Upload)
        socket->close();
}

void QFtpDTP::fail(const QString &reason)
{
    err = reason;
    emit failed();
}

void QFtpDTP::dataReadyRead()
{
    if (pump)
        pump->resume();
}

void QFtpDTP::socketConnected()
{
    connection = Connection::Open;
    bytesDone = 0;
    emit connectState(CsConnected);
}

void QFtpDTP::socketReadyRead()
{
    if (!isOpen())
        return;
    emit bytesMoved();
    switch (kind) {
    case Transfer::Listing:
        readListing();
        break;
    case Transfer::Download:
        readIntoDevice();
        break;
    case Transfer::ReadByCaller:
        announceArrived();
        break;
    case Transfer::None:
    case Transfer::Upload: // nothing that a server sends during one may end up in the source
    case Transfer::Abandoned:
        discardArrived();
        break;
    }
}

// An unbuffered socket tells only the one who reads that the other side has closed.
void QFtpDTP::discardArrived()
{
    if (!socket->isOpen())
        return;
    const qint64 count = socket->skip(std::max<qint64>(1, socket->bytesAvailable()));
    if (count < 0 && state() == QAbstractSocket::UnconnectedState)
        socketConnectionClosed();
}

void QFtpDTP::readListing()
{
    const QPointer<QFtpDTP> self = this;
    listing.append(socket->read(socket->bytesAvailable()));
    // An abort in a slot makes it another kind: the lines that are left are not told any more.
    while (kind == Transfer::Listing) {
        const std::optional<QByteArray> line = listing.takeLine();
        if (!line)
            return;
        if (const std::optional<QUrlInfo> info = ftplisting::parseLine(QString::fromLatin1(*line)))
            emit listInfo(*info);
        else if (line->endsWith("No such file or directory\r\n"))
            err = QString::fromLatin1(*line);
        if (!self)
            return;
    }
}

void QFtpDTP::readIntoDevice()
{
    const QPointer<QFtpDTP> self = this;
    while (self && kind == Transfer::Download && socket && socket->bytesAvailable() > 0) {
        const QByteArray bytes = socket->read(socket->bytesAvailable());
        bytesDone += bytes.size();
        // A full disk must not pass for a finished download.
        if (!device || device->write(bytes) != bytes.size()) {
            fail(device ? device->errorString() : tr("The file to download into is gone"));
            return;
        }
        emit dataTransferProgress(bytesDone, bytesTotal);
    }
}

void QFtpDTP::announceArrived()
{
    const QPointer<QFtpDTP> self = this;
    if (socket->bytesAvailable() == 0)
        return;
    emit dataTransferProgress(bytesDone + socket->bytesAvailable(), bytesTotal);
    if (self && kind == Transfer::ReadByCaller)
        emit readyRead();
}

void QFtpDTP::socketError(QAbstractSocket::SocketError socketError)
{
    // Of a connection that was there its end is told, and a socket that still tries goes on.
    if (connection != Connection::Connecting || state() != QAbstractSocket::UnconnectedState)
        return;
    connection = Connection::Closed;
    emit connectState(socketError == QAbstractSocket::HostNotFoundError ? CsHostNotFound
                                                                        : CsConnectionRefused);
}

void QFtpDTP::socketConnectionClosed()
{
    const QPointer<QFtpDTP> self = this;
    if (!isOpen())
        return;
    // What came last must not be lost.
    if (kind == Transfer::Listing || kind == Transfer::Download)
        socketReadyRead();
    if (!self || !isOpen())
        return;
    connection = Connection::Closed;
    emit connectState(CsClosed);
}

void QFtpDTP::socketBytesWritten(qint64 bytes)
{
    if (pump)
        pump->bytesWritten(bytes);
}

qint64 QFtpDTP::bytesAvailable() const
{
    // What a transfer without a device left unread is still in the socket after its end.
    return socket && socket->isOpen() ? socket->bytesAvailable() : 0;
}

qint64 QFtpDTP::read(char *buffer, qint64 maxlen)
{
    const qint64 count = bytesAvailable() > 0 ? socket->read(buffer, maxlen) : 0;
    bytesDone += std::max<qint64>(count, 0);
    return count;
}

QByteArray QFtpDTP::readAll()
{
    QByteArray all = bytesAvailable() > 0 ? socket->read(bytesAvailable()) : QByteArray();
    bytesDone += all.size();
    return all;
}
