#include "ftp/qftppi.h"

#include "ftp/networksession.h"
#include "ftp/passivereply.h"
#include "ftp/qftp.h"
#include "ftp/socketsignal.h"

#include <QHostAddress>
#include <QPointer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace
{

constexpr qint64 readBufferBytes = qint64(16) * 1024;

constexpr int codeSuperfluous = 202;
constexpr int codeFileStatus = 213;
constexpr int codeNoTransfer = 225;
constexpr int codeTransferComplete = 226;
constexpr int codePassive = 227;
constexpr int codeExtendedPassive = 229;
constexpr int codeLoggedIn = 230;
constexpr int codeFileActionDone = 250;

bool isCommand(const QString &line, const char *name)
{
    return line.startsWith(QLatin1String(name));
}

} // namespace

// Remembers the command that runs when a signal is emitted. A slot may delete everything, end the command or
// start the next one; whatever follows the signal is then none of this command's business.
class QFtpPI::Turn
{
public:
    explicit Turn(QFtpPI *interpreter) : pi(interpreter), number(interpreter->turnNumber) {}
    bool isOver() const { return pi.isNull() || pi->turnNumber != number; }

private:
    QPointer<QFtpPI> pi;
    quint64 number;
};

QFtpPI::QFtpPI(QObject *parent) : QObject(parent), commandSocket(new QTcpSocket(this)), dtp(this)
{
    commandSocket->setObjectName(QStringLiteral("QFtpPI_socket"));
    commandSocket->setReadBufferSize(readBufferBytes);
    connect(commandSocket, &QTcpSocket::hostFound, this, &QFtpPI::hostFound);
    connect(commandSocket, &QTcpSocket::connected, this, &QFtpPI::connected);
    connect(commandSocket, &QTcpSocket::disconnected, this, &QFtpPI::connectionClosed);
    connect(commandSocket, &QTcpSocket::readyRead, this, &QFtpPI::readyRead);
    connect(commandSocket, &QTcpSocket::errorOccurred, this,
            QOverload<QAbstractSocket::SocketError>::of(&QFtpPI::error));
    connect(&dtp, &QFtpDTP::connectState, this, &QFtpPI::dtpConnectState);
}

QFtpPI::~QFtpPI()
{
    dtp.disconnect();
    SocketSignal::dispose(commandSocket, this);
}

void QFtpPI::connectToHost(const QString &host, quint16 port)
{
    const QPointer<QFtpPI> self = this;
    if (commandSocket->state() != QAbstractSocket::UnconnectedState)
        commandSocket->abort();
    if (!self)
        return;
    resetSession();
    hostName = host;
    const Turn turn(this);
    emit connectState(QFtp::HostLookup);
    if (turn.isOver())
        return;
    copyNetworkSession(this, commandSocket);
    copyNetworkSession(this, &dtp);
    // A socket is not fit for a new connection while it still tells of the end of the last one.
    QTimer::singleShot(0, this, [this, turn, host, port] {
        if (!turn.isOver())
            commandSocket->connectToHost(host, port);
    });
}

// What a session has left behind must not be taken for part of the next one.
void QFtpPI::resetSession()
{
    clearPendingCommands();
    replies.clear();
    rawCommand = false;
    abortState = None;
    state = Begin;
}

void QFtpPI::beginTurn()
{
    ++turnNumber;
}

bool QFtpPI::sendCommands(const QStringList &lines)
{
    if (!pendingCommands.isEmpty())
        return false;
    if (commandSocket->state() != QAbstractSocket::ConnectedState || state != Idle) {
        emit error(QFtp::NotConnected, tr("Not connected"));
        return true;
    }
    beginTurn();
    pendingCommands = lines;
    startNextCmd();
    return true;
}

bool QFtpPI::isStoring() const
{
    const auto stores = [](const QString &line) { return isCommand(line, "STOR "); };
    return stores(currentCmd) || std::any_of(pendingCommands.cbegin(), pendingCommands.cend(), stores);
}

void QFtpPI::clearPendingCommands()
{
    beginTurn();
    pendingCommands.clear();
    currentCmd.clear();
    state = Idle;
    waitForDtpToConnect = false;
    replyText.clear();
    // Replies that waited behind the one that is given up still have to be read.
    if (std::exchange(waitForDtpToClose, false))
        QTimer::singleShot(0, this, &QFtpPI::readyRead);
    dtp.abortConnection();
}

void QFtpPI::abort()
{
    pendingCommands.clear();
    if (abortState != None || !commandSocket->isOpen() ||
        commandSocket->state() == QAbstractSocket::UnconnectedState)
        return;
    // Without a line in flight the server answers nothing but the ABOR itself.
    abortState = state == Waiting || state == Begin ? AbortStarted : WaitForAbortToFinish;
    commandSocket->write("ABOR\r\n");
    const QPointer<QFtpPI> self = this;
    const bool isOpening = std::exchange(waitForDtpToConnect, false);
    if (isOpening || waitForDtpToClose || isCommand(currentCmd, "STOR "))
        dtp.abortConnection();
    // An object that is going away has no later chance to send it. Comes last, for a flush that finds the
    // connection broken tells the user of it.
    if (self && commandSocket->state() == QAbstractSocket::ConnectedState)
        commandSocket->flush();
}

void QFtpPI::hostFound()
{
    const SocketSignal onStack;
    emit connectState(QFtp::Connecting);
}

void QFtpPI::connected()
{
    const SocketSignal onStack;
    state = Begin;
    commandSocket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    emit connectState(QFtp::Connected);
}

void QFtpPI::connectionClosed()
{
    const SocketSignal onStack;
    commandSocket->close();
    emit connectState(QFtp::Unconnected);
}

void QFtpPI::delayedCloseFinished()
{
    emit connectState(QFtp::Unconnected);
}

void QFtpPI::error(QAbstractSocket::SocketError socketError)
{
    const SocketSignal onStack;
    if (socketError == QAbstractSocket::HostNotFoundError)
        reportUnreachable(QFtp::HostNotFound, tr("Host %1 not found").arg(hostName));
    else if (socketError == QAbstractSocket::ConnectionRefusedError)
        reportUnreachable(QFtp::ConnectionRefused, tr("Connection refused to host %1").arg(hostName));
    else if (socketError == QAbstractSocket::SocketTimeoutError)
        reportUnreachable(QFtp::ConnectionRefused, tr("Connection timed out to host %1").arg(hostName));
}

void QFtpPI::reportUnreachable(int code, const QString &text)
{
    const Turn turn(this);
    emit connectState(QFtp::Unconnected);
    if (!turn.isOver())
        emit error(code, text);
}

void QFtpPI::readyRead()
{
    const SocketSignal onStack;
    const QPointer<QFtpPI> self = this;
    while (self && !waitForDtpToClose) {
        const std::optional<FtpReply> reply = replies.next();
        if (reply) {
            replyCode = reply->digits;
            replyText = reply->text;
            handleReply();
        } else if (commandSocket->bytesAvailable() > 0) {
            replies.append(commandSocket->read(commandSocket->bytesAvailable()));
        } else {
            return;
        }
    }
}

void QFtpPI::handleReply()
{
    const QPointer<QFtpPI> self = this;
    // A slot that processed events may have let the next reply come to wait.
    if (processReply() && self && !waitForDtpToClose)
        replyText.clear();
}

// False: the reply has to wait until the data connection is closed.
bool QFtpPI::processReply()
{
    const int code = 100 * replyCode[0] + 10 * replyCode[1] + replyCode[2];
    const QString text = replyText;
    const QPointer<QFtpPI> self = this;
    const bool isHeld = mustAwaitData(code);
    if (!self)
        return true;
    if (isHeld) {
        waitForDtpToClose = true;
        return false;
    }
    if (takeAbortReply(code) || !advance(code))
        return true;
    const Turn turn(this);
    emit rawFtpReply(code, text);
    if (turn.isOver())
        return true;
    if (!std::exchange(rawCommand, false))
        interpret(code, text);
    if (!turn.isOver())
        react(text);
    return true;
}

// A transfer is complete only when its last bytes have come out of the data connection. A server's own
// connection may still wait to be accepted, with all the data in it.
bool QFtpPI::mustAwaitData(int code)
{
    const bool endsTransfer =
        code == codeTransferComplete || (code == codeFileActionDone && isCommand(currentCmd, "RETR"));
    if (!endsTransfer || state != Waiting)
        return false;
    const QPointer<QFtpPI> self = this;
    dtp.waitForConnection();
    return !self.isNull() && dtp.state() != QAbstractSocket::UnconnectedState;
}

// Two replies follow an ABOR: the aborted line's, which is handled like any, and its own, which is swallowed.
// A server that sees nothing to cut off yet answers for both at once.
bool QFtpPI::takeAbortReply(int code)
{
    if (abortState == AbortStarted) {
        abortState = code == codeNoTransfer ? None : WaitForAbortToFinish;
        return false;
    }
    if (abortState == None)
        return false;
    abortState = None;
    // An abort between two lines leaves nothing else that could end the command.
    if (state == Idle && !currentCmd.isEmpty())
        startNextCmd();
    return true;
}

// Moves the state on; false for a reply that asks for nothing more.
bool QFtpPI::advance(int code)
{
    const int kind = replyCode[0];
    if (state == Begin && kind == 2) {
        state = Idle;
        emit finished(tr("Connected to host %1").arg(hostName));
        return false;
    }
    if (state != Waiting)
        return false;
    // The server did not do what it was asked to.
    if (code == codeSuperfluous) {
        state = Failure;
        return true;
    }
    static constexpr std::array<State, 5> states{Waiting, Success, Idle, Failure, Failure};
    state = states.at(static_cast<std::size_t>(kind - 1));
    return true;
}

void QFtpPI::interpret(int code, const QString &text)
{
    if (code == codePassive) {
        if (const std::optional<PassiveEndpoint> server = passiveEndpoint(text))
            openDataConnection(server->host, server->port);
    } else if (code == codeExtendedPassive) {
        if (const std::optional<quint16> port = extendedPassivePort(text))
            openDataConnection(commandSocket->peerAddress().toString(), *port);
    } else if (code == codeLoggedIn) {
        if (isCommand(currentCmd, "USER ") && !pendingCommands.isEmpty() &&
            isCommand(pendingCommands.first(), "PASS "))
            pendingCommands.removeFirst();
        emit connectState(QFtp::LoggedIn);
    } else if (code == codeFileStatus) {
        // A negative size is as good as none.
        if (isCommand(currentCmd, "SIZE "))
            dtp.setBytesTotal(std::max<qint64>(0, text.simplified().toLongLong()));
    } else if (code < 200 && isCommand(currentCmd, "STOR ")) {
        const QPointer<QFtpPI> self = this;
        dtp.waitForConnection();
        if (self)
            dtp.writeData();
    }
}

void QFtpPI::openDataConnection(const QString &host, quint16 port)
{
    waitForDtpToConnect = true;
    dtp.connectToHost(host, port);
}

void QFtpPI::react(const QString &text)
{
    const Turn turn(this);
    if (state == Waiting)
        return;
    if (state == Failure) {
        if (!fallBack())
            emit error(QFtp::UnknownError, text);
    } else if (dtp.hasError()) {
        const QString dataError = dtp.errorMessage();
        dtp.clearError();
        emit error(QFtp::UnknownError, dataError);
    }
    if (turn.isOver())
        return;
    state = Idle;
    startNextCmd();
}

// Old servers know only the plain forms. An aborted command is not tried again.
bool QFtpPI::fallBack()
{
    if (abortState != None)
        return false;
    if (isCommand(currentCmd, "EPSV"))
        pendingCommands.prepend(QStringLiteral("PASV\r\n"));
    else if (isCommand(currentCmd, "EPRT"))
        pendingCommands.prepend(QStringLiteral("PORT\r\n"));
    else
        return false;
    transferConnectionExtended = false;
    return true;
}

bool QFtpPI::startNextCmd()
{
    if (waitForDtpToConnect)
        return true;
    if (pendingCommands.isEmpty()) {
        currentCmd.clear();
        const QString text = replyText;
        emit finished(text);
        return false;
    }
    if (state != Idle)
        return true;
    currentCmd = pendingCommands.takeFirst();
    if (!extendLine(currentCmd)) {
        dataConnectionRefused();
        return false;
    }
    state = Waiting;
    send(currentCmd);
    return true;
}

// Completes the lines that open a data connection; false when no address can be told to the server.
bool QFtpPI::extendLine(QString &line)
{
    const QHostAddress local = commandSocket->localAddress();
    const bool isIPv6 = local.protocol() == QAbstractSocket::IPv6Protocol;
    if (isCommand(line, "PASV") && isIPv6 && transferConnectionExtended)
        line = QStringLiteral("EPSV\r\n");
    if (!isCommand(line, "PORT"))
        return true;
    if (isIPv6 && !transferConnectionExtended)
        return false;
    const int port = dtp.setupListener(local);
    if (port < 0)
        return false;
    line = portLine(local, static_cast<quint16>(port));
    return true;
}

void QFtpPI::send(const QString &line)
{
    if (commandSocket->state() == QAbstractSocket::ConnectedState)
        commandSocket->write(line.toLatin1());
}

void QFtpPI::dtpConnectState(int dataState)
{
    switch (dataState) {
    case QFtpDTP::CsClosed:
        dataConnectionClosed();
        break;
    case QFtpDTP::CsConnected:
        if (std::exchange(waitForDtpToConnect, false))
            startNextCmd();
        break;
    case QFtpDTP::CsHostNotFound:
    case QFtpDTP::CsConnectionRefused:
        dataConnectionRefused();
        break;
    default:
        break;
    }
}

void QFtpPI::dataConnectionClosed()
{
    if (!std::exchange(waitForDtpToClose, false))
        return;
    const QPointer<QFtpPI> self = this;
    handleReply();
    if (self)
        readyRead();
}

void QFtpPI::dataConnectionRefused()
{
    waitForDtpToConnect = false;
    const Turn turn(this);
    emit error(QFtp::ConnectionRefused, tr("Connection refused for data connection"));
    if (!turn.isOver())
        startNextCmd();
}
