#include "ftp/qftpdtp.h"

#include "ftp/ftplisting.h"
#include "ftp/networksession.h"
#include "ftp/qftppi.h"
#include "ftp/socketsignal.h"

#include <QHostAddress>
#include <QIODevice>
#include <QTcpSocket>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace
{

constexpr int uploadBlockBytes = 16384;
// Long enough to spare the event loop most of its turns, short enough for painting and input to notice
// nothing.
constexpr int blocksPerTurn = 64;
// Measured: two cost up to a twentieth more, four vary more from run to run, eight cost a fifth.
constexpr int blocksPerPush = 3;
// What a download holds unread: the network waits for a slow disk instead of filling the memory.
constexpr qint64 readBufferBytes = qint64(64) * 1024;

} // namespace

QFtpDTP::QFtpDTP(QFtpPI *interpreter) : QObject(interpreter), listener(this), pi(interpreter)
{
    listener.setObjectName(QStringLiteral("QFtpDTP active state server"));
    connect(&listener, &QTcpServer::newConnection, this, &QFtpDTP::setupSocket);
}

QFtpDTP::~QFtpDTP()
{
    SocketSignal::dispose(socket, this);
}

void QFtpDTP::setData(const QByteArray *bytes)
{
    forgetData();
    is_ba = true;
    data = *bytes;
}

void QFtpDTP::setDevice(QIODevice *sourceOrSink)
{
    forgetData();
    hasDevice = true;
    device = sourceOrSink;
}

void QFtpDTP::setBytesTotal(qint64 bytes)
{
    bytesTotal = bytes;
    bytesDone = 0;
    emit dataTransferProgress(0, bytesTotal);
}

void QFtpDTP::resetTransfer()
{
    forgetData();
    clearError();
    bytesFromSocket.clear();
    bytesDone = 0;
    bytesTotal = 0;
    listener.close();
    // One that is still open could report on what is no longer running.
    SocketSignal::dispose(std::exchange(socket, nullptr), this);
}

void QFtpDTP::forgetData()
{
    callWriteData = false;
    bytesHandedOver = 0;
    is_ba = false;
    data.clear();
    hasDevice = false;
    device.clear();
    listing.clear();
}

void QFtpDTP::connectToHost(const QString &host, quint16 port)
{
    bytesFromSocket.clear();
    listener.close();
    replaceSocket(new QTcpSocket(this), QStringLiteral("QFtpDTP Passive state socket"));
    copyNetworkSession(this, socket);
    // Saves the socket's own copy of each block.
    const bool isUnbuffered = hasDevice && pi->isStoring();
    socket->connectToHost(host, port,
                          isUnbuffered ? QIODevice::ReadWrite | QIODevice::Unbuffered : QIODevice::ReadWrite);
}

int QFtpDTP::setupListener(const QHostAddress &address)
{
    // The last transfer's socket must not be taken for the one that is to come.
    SocketSignal::dispose(std::exchange(socket, nullptr), this);
    copyNetworkSession(this, &listener);
    if (!listener.isListening() && !listener.listen(address, 0))
        return -1;
    return listener.serverPort();
}

void QFtpDTP::setupSocket()
{
    const SocketSignal onStack;
    QTcpSocket *const accepted = listener.nextPendingConnection();
    if (!accepted)
        return;
    accepted->setParent(this);
    replaceSocket(accepted, QStringLiteral("QFtpDTP Active state socket"));
    listener.close();
    // The server may have answered STOR before it connected.
    if (callWriteData)
        writeData();
}

void QFtpDTP::replaceSocket(QTcpSocket *next, const QString &name)
{
    SocketSignal::dispose(std::exchange(socket, next), this);
    socket->setObjectName(name);
    socket->setReadBufferSize(readBufferBytes);
    connect(socket, &QTcpSocket::connected, this, &QFtpDTP::socketConnected);
    connect(socket, &QTcpSocket::readyRead, this, &QFtpDTP::socketReadyRead);
    connect(socket, &QTcpSocket::errorOccurred, this, &QFtpDTP::socketError);
    connect(socket, &QTcpSocket::disconnected, this, &QFtpDTP::socketConnectionClosed);
    connect(socket, &QTcpSocket::bytesWritten, this, &QFtpDTP::socketBytesWritten);
}

void QFtpDTP::waitForConnection()
{
    if (listener.isListening())
        listener.waitForNewConnection(0);
}

void QFtpDTP::abortConnection()
{
    forgetData();
    listener.close();
    if (socket)
        socket->abort();
}

QAbstractSocket::SocketState QFtpDTP::state() const
{
    return socket ? socket->state() : QAbstractSocket::UnconnectedState;
}

void QFtpDTP::writeData()
{
    if (state() == QAbstractSocket::UnconnectedState) {
        callWriteData = is_ba || hasDevice;
        return;
    }
    if (is_ba)
        writeBytes();
    else if (hasDevice)
        writeBlock();
}

void QFtpDTP::writeBytes()
{
    callWriteData = false;
    if (!data.isEmpty())
        socket->write(data);
    finishUpload();
}

// One block is in flight at a time, so that a transfer needs no more memory than that.
void QFtpDTP::writeBlock()
{
    if (bytesHandedOver > 0 || socket->bytesToWrite() > 0) {
        callWriteData = true;
        return;
    }
    callWriteData = false;
    std::array<char, uploadBlockBytes> block; // left uninitialised, for every block would pay for it
    const qint64 count = device ? device->read(block.data(), uploadBlockBytes) : -1;
    if (count < 0 || (count == 0 && !device->isSequential())) {
        if (isSourceCutShort(count))
            err = tr("The file to upload cannot be read");
        finishUpload();
        return;
    }
    callWriteData = hasDevice;
    if (callWriteData && count > 0)
        sendBlock(block.data(), count);
}

void QFtpDTP::sendBlock(const char *block, qint64 count)
{
    if (socket->write(block, count) < 0) {
        // An unbuffered socket leaves it to its owner to end a broken connection.
        socket->abort();
        return;
    }
    pushGatheredBlocks();
    if (!(socket->openMode() & QIODevice::Unbuffered))
        return;
    // What went out at once the socket does not report.
    bytesHandedOver = count - socket->bytesToWrite();
    if (bytesHandedOver > 0 && !isPumping)
        pumpLater();
}

// The network layer gathers what is written until the other side acknowledges what went before. A few blocks
// in one segment cost less than each by itself; but left to itself it gathers until a server that reads
// steadily has to wait. Switching to low delay sends what was gathered.
void QFtpDTP::pushGatheredBlocks()
{
    if (++blocksGathered < blocksPerPush)
        return;
    blocksGathered = 0;
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 0);
}

// Half a file must not pass for a whole one. A stream has no size, and says -1 at its end.
bool QFtpDTP::isSourceCutShort(qint64 count) const
{
    return device.isNull() || (!device->isSequential() && (count < 0 || device->pos() < bytesTotal));
}

void QFtpDTP::finishUpload()
{
    const QPointer<QTcpSocket> finished = socket;
    forgetData();
    if (bytesDone == 0 && socket->bytesToWrite() == 0)
        emit dataTransferProgress(0, bytesTotal);
    if (finished)
        finished->close();
}

void QFtpDTP::dataReadyRead()
{
    // Before the server's go-ahead, and while a block is in flight, the device keeps its data.
    if (callWriteData)
        writeData();
}

void QFtpDTP::socketConnected()
{
    const SocketSignal onStack;
    bytesDone = 0;
    emit connectState(CsConnected);
}

void QFtpDTP::socketReadyRead()
{
    const SocketSignal onStack;
    const QPointer<QFtpDTP> self = this;
    if (!socket)
        return;
    if (pi->currentCommand().isEmpty()) {
        socket->close();
        if (self)
            emit connectState(CsClosed);
    } else if (pi->isAbortStarted()) {
        discardArrived();
    } else if (pi->currentCommand().startsWith(QLatin1String("LIST"))) {
        readListing();
    } else if (hasDevice) {
        // Nothing that a server sends during an upload may end up in the source.
        if (isRetrieving())
            readIntoDevice();
        else
            discardArrived();
    } else {
        // The caller may read when it is all there.
        if (isRetrieving())
            socket->setReadBufferSize(0);
        emit dataTransferProgress(bytesDone + socket->bytesAvailable(), bytesTotal);
        // An abort from that slot may have ended the command.
        if (!self.isNull() && !pi->currentCommand().isEmpty())
            emit readyRead();
    }
}

// An unbuffered socket tells only the one who reads that the other side has closed.
void QFtpDTP::discardArrived()
{
    const qint64 count = socket->skip(std::max<qint64>(1, socket->bytesAvailable()));
    if (count < 0 && state() == QAbstractSocket::UnconnectedState)
        socketConnectionClosed();
}

bool QFtpDTP::isRetrieving() const
{
    return pi->currentCommand().startsWith(QLatin1String("RETR"));
}

void QFtpDTP::readListing()
{
    const QPointer<QFtpDTP> self = this;
    listing.append(socket->read(socket->bytesAvailable()));
    while (const std::optional<QByteArray> line = listing.takeLine()) {
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
    const QPointer<QTcpSocket> source = socket;
    // Asked again each time: a progress slot may process events.
    while (self && source && source == socket && source->bytesAvailable() > 0) {
        const QByteArray bytes = source->read(source->bytesAvailable());
        if (bytes.isEmpty())
            return;
        bytesDone += bytes.size();
        // A full disk must not pass for a finished download.
        if (device && device->write(bytes) != bytes.size())
            err = device->errorString();
        emit dataTransferProgress(bytesDone, bytesTotal);
    }
}

void QFtpDTP::socketError(QAbstractSocket::SocketError socketError)
{
    const SocketSignal onStack;
    if (socketError == QAbstractSocket::HostNotFoundError)
        emit connectState(CsHostNotFound);
    else if (socketError == QAbstractSocket::ConnectionRefusedError)
        emit connectState(CsConnectionRefused);
}

void QFtpDTP::socketConnectionClosed()
{
    const SocketSignal onStack;
    const QPointer<QFtpDTP> self = this;
    const QPointer<QTcpSocket> closed = socket;
    // A progress slot that processes events keeps the socket from telling of what arrives meanwhile.
    if (hasDevice && isRetrieving() && !pi->isAbortStarted())
        readIntoDevice();
    if (!self || socket != closed)
        return;
    if (hasDevice)
        forgetData();
    // It is shut already where this side ended an upload.
    if (socket->isOpen())
        bytesFromSocket = socket->read(socket->bytesAvailable());
    emit connectState(CsClosed);
}

void QFtpDTP::socketBytesWritten(qint64 bytes)
{
    const SocketSignal onStack;
    const QPointer<QFtpDTP> self = this;
    reportWritten(bytes);
    if (self && callWriteData)
        writeData();
}

void QFtpDTP::reportWritten(qint64 bytes)
{
    bytesDone += bytes;
    // The rest of an upload that the server has already called complete is nobody's progress.
    if (!pi->currentCommand().isEmpty())
        emit dataTransferProgress(bytesDone, bytesTotal);
}

void QFtpDTP::pumpLater()
{
    isPumping = true;
    QMetaObject::invokeMethod(this, &QFtpDTP::pumpBlocks, Qt::QueuedConnection);
}

// Reports the block that went out at once, which lets the next one follow, and so on for a number of blocks.
void QFtpDTP::pumpBlocks()
{
    const QPointer<QFtpDTP> self = this;
    for (int block = 0; block < blocksPerTurn && bytesHandedOver > 0; ++block) {
        socketBytesWritten(std::exchange(bytesHandedOver, 0));
        if (!self)
            return;
    }
    isPumping = false;
    if (bytesHandedOver > 0)
        pumpLater();
}

qint64 QFtpDTP::bytesAvailable() const
{
    return state() == QAbstractSocket::ConnectedState ? socket->bytesAvailable() : bytesFromSocket.size();
}

qint64 QFtpDTP::read(char *buffer, qint64 maxlen)
{
    qint64 count = 0;
    if (state() == QAbstractSocket::ConnectedState) {
        count = socket->read(buffer, maxlen);
    } else {
        count = std::clamp<qint64>(maxlen, 0, bytesFromSocket.size());
        std::memcpy(buffer, bytesFromSocket.constData(), static_cast<std::size_t>(count));
        bytesFromSocket.remove(0, static_cast<int>(count));
    }
    bytesDone += std::max<qint64>(count, 0);
    return count;
}

QByteArray QFtpDTP::readAll()
{
    QByteArray all = state() == QAbstractSocket::ConnectedState
                         ? socket->readAll()
                         : std::exchange(bytesFromSocket, QByteArray());
    bytesDone += all.size();
    return all;
}
